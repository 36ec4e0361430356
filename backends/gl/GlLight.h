// CGlLight: the light that shades the scene of an OpenGL renderer; switching
// and placement are every backend's (CShadingLight). Type 0 is a directional
// light from position toward the focal point; type 1 a point light at
// position with the distance attenuation; type 2 a spot light along position
// toward the focal point, with its cone angle and exponent. A switched-off
// light leaves the ambient part.
#pragma once

#include "common/ShadingLight.h"

namespace KesraGl
{

class CGlRenderer;

class CGlLight : public KesraBackend::CShadingLight
{
public:
    // renderer is not owned and must outlive the light.
    explicit CGlLight(CGlRenderer& renderer);

    // The core profile has one light per program here: slot 0, handed to the
    // renderer, whose mesh program reads every stored value at each frame.
    void Apply() override;
    // A marker in the light's colour at SymbolPlace, with a line toward the
    // window's middle.
    void DrawSymbol() override;

private:
    CGlRenderer& m_renderer;
};

} // namespace KesraGl
