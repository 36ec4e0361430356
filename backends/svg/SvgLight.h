// CSvgLight: the light that shades the tubes of one SVG renderer; switching
// and placement are every backend's (CShadingLight). The default, from the
// origin toward (0, 0, -1), is a headlight. Exponent, cone angle, attenuation
// and type have no meaning for an orthographic picture without distances and
// are not used.
#pragma once

#include "Engine/Font.h"
#include "common/ShadingLight.h"

namespace KesraSvg
{

class CSvgRenderer;

class CSvgLight : public KesraBackend::CShadingLight
{
public:
    // A light for renderer, which must outlive it.
    explicit CSvgLight(CSvgRenderer& renderer);

    // Makes this the light that shades the renderer's tubes, in backend slot
    // 0 (SVG frames have a single light).
    void Apply() override;
    // A small sun in the light's colour at SymbolPlace; only while a frame is
    // under way.
    void DrawSymbol() override;

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
