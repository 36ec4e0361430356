// CSvgLight: the light that shades the tubes of one SVG renderer.
//
// Position and focal point are taken in view space (x right, y up, z toward
// the viewer), so the light moves with the camera; the default, from the
// origin toward (0, 0, -1), is a headlight. The light shines from its position
// toward its focal point. Exponent, cone angle, attenuation and type have no
// meaning for an orthographic picture without distances and are not used.
#pragma once

#include "Engine/Font.h"
#include "Engine/Light.h"

namespace KesraSvg
{

class CSvgRenderer;

class CSvgLight : public KesraEngine::CKesraLight
{
public:
    // A light for renderer, which must outlive it.
    explicit CSvgLight(CSvgRenderer& renderer);

    // Makes this the light that shades the renderer's tubes, in backend slot
    // 0 (SVG frames have a single light).
    void Apply() override;
    // Switch on and off; the next frame shows the change.
    void TurnOn() override;
    void TurnOff() override;
    // A small sun in the light's colour at the rim of the view, on the side
    // the light comes from; only while a frame is under way.
    void DrawSymbol() override;

    // Unit vector from the lit surface toward the light, in view space;
    // (0, 0, 1) when position and focal point coincide.
    Vector DirectionToLight() const;

private:
    CSvgRenderer* m_renderer;
};

// A font is only data to SVG: the renderer writes the face, size and styles
// into each text.
class CSvgFont : public KesraEngine::CKesraFont
{
public:
    CSvgFont() = default;
    ~CSvgFont() = default;
};

} // namespace KesraSvg
