#include "gl/GlLight.h"

#include "gl/GlRenderer.h"

#include <cmath>

namespace KesraGl
{

CGlLight::CGlLight(CGlRenderer& renderer) : CShadingLight(renderer), m_renderer(renderer)
{
}

void CGlLight::Apply()
{
    m_backendSlot = 0;
    m_renderer.SetShadingLight(this);
}

void CGlLight::DrawSymbol()
{
    if (!m_renderer.HasContext())
    {
        return;
    }
    double symbolX = 0.0;
    double symbolY = 0.0;
    SymbolPlace(symbolX, symbolY);
    const float x = static_cast<float>(symbolX);
    const float y = static_cast<float>(symbolY);
    const float middleX = 0.5f * static_cast<float>(m_renderer.GetWidth());
    const float middleY = 0.5f * static_cast<float>(m_renderer.GetHeight());
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
