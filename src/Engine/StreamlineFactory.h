// IKesraStreamlineFactory: what makes the streamlines of a drawing backend.
//
// The backend implements it; the library neither implements nor calls it.
#pragma once

#include "Engine/Streamline.h"
#include "MathKit/Export.h"

namespace KesraEngine
{

class KESRA_ENGINE_API IKesraStreamlineFactory
{
public:
    IKesraStreamlineFactory() = default;
    IKesraStreamlineFactory(const IKesraStreamlineFactory&) = default;
    IKesraStreamlineFactory& operator=(const IKesraStreamlineFactory&) = default;
    virtual ~IKesraStreamlineFactory() = default;

    // A new backend streamline, not yet created (see CKesraStreamline::Create),
    // or null when none can be made. The factory owns it and destroys it with
    // itself, since a streamline cannot be destroyed through its base class.
    virtual CKesraStreamline* MakeStreamline() = 0;
};

} // namespace KesraEngine
