// CGlRuler: the scale bar drawn over an OpenGL view, in the layout every
// backend shares (CScaleRuler).
#pragma once

#include "common/RulerLayout.h"

namespace KesraGl
{

class CGlRuler : public KesraBackend::CScaleRuler
{
public:
    // Nothing unless renderer is an OpenGL renderer with a context.
    void Draw(KesraEngine::CKesraRenderer& renderer) override;
};

} // namespace KesraGl
