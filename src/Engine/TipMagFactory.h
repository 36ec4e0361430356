// IKesraTipMagFactory: the factory a drawing backend implements to make its
// concrete tip managers. The library defines it and never calls it.
#pragma once

#include "Engine/TipManager.h"
#include "MathKit/Export.h"

namespace KesraEngine
{

class KESRA_ENGINE_API IKesraTipMagFactory
{
public:
    IKesraTipMagFactory() = default;
    IKesraTipMagFactory(const IKesraTipMagFactory&) = default;
    IKesraTipMagFactory& operator=(const IKesraTipMagFactory&) = default;
    virtual ~IKesraTipMagFactory() = default;

    // Makes a new backend tip manager with the default settings and no tips.
    // The factory keeps it and destroys it with itself: the manager's
    // destructor is not virtual, so only the backend, which knows the concrete
    // type, may delete it. Null when the backend cannot make one.
    virtual CKesraTipManager* CreateTipManager() = 0;
};

} // namespace KesraEngine
