#include "svg/SvgLight.h"

#include "svg/SvgRenderer.h"

#include <cmath>

namespace KesraSvg
{

CSvgLight::CSvgLight(CSvgRenderer& renderer) : m_renderer(&renderer)
{
}

void CSvgLight::Apply()
{
    m_backendSlot = 0;
    m_renderer->SetShadingLight(this);
}

void CSvgLight::TurnOn()
{
    SetSwitch(1);
}

void CSvgLight::TurnOff()
{
    SetSwitch(0);
}

void CSvgLight::DrawSymbol()
{
    CSvgCanvas* canvas = m_renderer->GetCanvas();
    if (canvas == nullptr)
    {
        return;
    }
    const Vector toLight = DirectionToLight();
    const double rim = 0.45 * std::fmin(canvas->Width(), canvas->Height());
    const double x = 0.5 * canvas->Width() + rim * toLight.x;
    const double y = 0.5 * canvas->Height() + rim * toLight.y;
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

CSvgLight::Vector CSvgLight::DirectionToLight() const
{
    Vector direction = m_position - m_focalPoint;
    direction.Normalize();
    if (direction.x == 0.0 && direction.y == 0.0 && direction.z == 0.0)
    {
        return Vector(0.0, 0.0, 1.0);
    }
    return direction;
}

} // namespace KesraSvg
