// CShadingLight: the part of every backend's light that does not draw. The
// light shades the scene of one renderer; switching it on or off changes the
// picture, so it asks that renderer for a redraw. Its position and focal
// point are in view space (x right, y up, z toward the viewer), so the light
// stays put while the model turns, as a lamp beside the viewer would. A
// backend's light derives from it and supplies Apply (handing itself to its
// renderer) and the symbol's drawing.
#pragma once

#include "Engine/Light.h"
#include "Engine/Renderer.h"

#include <algorithm>

namespace KesraBackend
{

class CShadingLight : public KesraEngine::CKesraLight
{
public:
    void TurnOn() override
    {
        SetSwitch(1);
        m_renderer->Invalidate();
    }
    void TurnOff() override
    {
        SetSwitch(0);
        m_renderer->Invalidate();
    }

    // Unit vector from a lit surface toward the light, in view space; (0, 0,
    // 1), a headlight, when position and focal point coincide.
    Vector DirectionToLight() const
    {
        Vector direction = m_position - m_focalPoint;
        direction.Normalize();
        if (direction.x == 0.0 && direction.y == 0.0 && direction.z == 0.0)
        {
            return Vector(0.0, 0.0, 1.0);
        }
        return direction;
    }

    // Where the light's symbol stands in the renderer's window (pixels, y
    // up): the light's direction seen from the front, from the window's
    // middle out to 0.45 of its smaller side. A light beside the view stands
    // at that rim, one behind the viewer near the middle.
    void SymbolPlace(double& x, double& y) const
    {
        const Vector toLight = DirectionToLight();
        const double width = m_renderer->GetWidth();
        const double height = m_renderer->GetHeight();
        const double rim = 0.45 * std::min(width, height);
        x = 0.5 * width + rim * toLight.x;
        y = 0.5 * height + rim * toLight.y;
    }

protected:
    // renderer is not owned and must outlive the light.
    explicit CShadingLight(KesraEngine::CKesraRenderer& renderer) : m_renderer(&renderer) {}

private:
    KesraEngine::CKesraRenderer* m_renderer;
};

} // namespace KesraBackend
