// CGlRuler: the scale bar drawn over an OpenGL view, in the layout every
// backend shares (CScaleRuler).
#pragma once

#include "common/RulerLayout.h"

namespace KesraGl
{

class CGlRenderer;

class CGlRuler : public KesraBackend::CScaleRuler
{
public:
    // Draws while created, to be drawn and with a length.
    void Draw(CGlRenderer& renderer);
};

} // namespace KesraGl
