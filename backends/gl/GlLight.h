// CGlLight: the light that shades the scene of an OpenGL renderer.
//
// Its position and focal point are in view space (x right, y up, z toward
// the viewer, model units), so the light stays put while the model turns, as
// a lamp beside the viewer would. Type 0 is a directional light from position
// toward the focal point; type 1 a point light at position with the distance
// attenuation; type 2 a spot light along position toward the focal point, with
// its cone angle and exponent. A switched-off light leaves the ambient part.
#pragma once

#include "Engine/Light.h"

namespace KesraGl
{

class CGlRenderer;

class CGlLight : public KesraEngine::CKesraLight
{
public:
    // renderer is not owned and must outlive the light.
    explicit CGlLight(CGlRenderer& renderer);

    // The core profile has one light per program here: slot 0, handed to the
    // renderer, whose mesh program reads every stored value at each frame.
    void Apply() override;
    void TurnOn() override;
    void TurnOff() override;
    // A marker in the light's colour, placed around the window's middle in
    // the light's direction, with a line toward the middle.
    void DrawSymbol() override;

private:
    CGlRenderer& m_renderer;
};

} // namespace KesraGl
