#include "gl/GlLight.h"

#include "gl/GlRenderer.h"

#include <algorithm>
#include <cmath>

namespace KesraGl
{

CGlLight::CGlLight(CGlRenderer& renderer) : m_renderer(renderer)
{
}

void CGlLight::Apply()
{
    m_backendSlot = 0;
    m_renderer.SetShadingLight(this);
}

void CGlLight::TurnOn()
{
    SetSwitch(1);
    m_renderer.Invalidate();
}

void CGlLight::TurnOff()
{
    SetSwitch(0);
    m_renderer.Invalidate();
}

void CGlLight::DrawSymbol()
{
    if (!m_renderer.HasContext())
    {
        return;
    }
    const Vector toLight = m_position - m_focalPoint;
    const double length = std::sqrt(toLight.x * toLight.x + toLight.y * toLight.y);
    const float reach = 0.4f * static_cast<float>(std::min(m_renderer.GetWidth(), m_renderer.GetHeight()));
    const float middleX = 0.5f * static_cast<float>(m_renderer.GetWidth());
    const float middleY = 0.5f * static_cast<float>(m_renderer.GetHeight());
    const float x = length > 1e-8 ? middleX + reach * static_cast<float>(toLight.x / length) : middleX;
    const float y = length > 1e-8 ? middleY + reach * static_cast<float>(toLight.y / length) : middleY;
    const Color color{m_color.red, m_color.green, m_color.blue, 255};
    CGlCanvas& canvas = m_renderer.Canvas();
    canvas.Line(x, y, middleX, middleY, 1.0f, Color{color.red, color.green, color.blue, 128});
    const float size = 7.0f;
    if (m_renderer.RoundPoints())
    {
        constexpr int kSides = 16;
        for (int k = 0; k < kSides; ++k)
        {
            const float a0 = 6.2831853f * static_cast<float>(k) / kSides;
            const float a1 = 6.2831853f * static_cast<float>(k + 1) / kSides;
            canvas.Triangle({x, y, x + size * std::cos(a0), y + size * std::sin(a0),
                             x + size * std::cos(a1), y + size * std::sin(a1)},
                            color);
        }
    }
    else
    {
        canvas.Rect(x - size, y - size, x + size, y + size, color);
    }
    canvas.Frame(x - size, y - size, x + size, y + size, 1.0f, Color{40, 40, 40, 255});
}

} // namespace KesraGl
