#include "svg/SvgLight.h"

#include "svg/SvgRenderer.h"

#include <cmath>

namespace KesraSvg
{

CSvgLight::CSvgLight(CSvgRenderer& renderer) : CShadingLight(renderer), m_renderer(&renderer)
{
}

void CSvgLight::Apply()
{
    m_backendSlot = 0;
    m_renderer->SetShadingLight(this);
}

void CSvgLight::DrawSymbol()
{
    CSvgCanvas* canvas = m_renderer->GetCanvas();
    if (canvas == nullptr)
    {
        return;
    }
    double x = 0.0;
    double y = 0.0;
    SymbolPlace(x, y);
    const Color color{m_color.red, m_color.green, m_color.blue, 255};
    canvas->BeginGroup("light");
    for (int ray = 0; ray < 8; ++ray)
    {
        const double angle = ray * 0.25 * 3.14159265358979323846;
        canvas->Line(x + 7.0 * std::cos(angle), y + 7.0 * std::sin(angle),
                     x + 11.0 * std::cos(angle), y + 11.0 * std::sin(angle), Color{60, 60, 60, 255},
                     1.0);
    }
    m_renderer->DrawPoint(x, y, 10.0, color);
    canvas->EndGroup();
}

} // namespace KesraSvg
