#include "svg/SvgDraggedArea.h"

#include "svg/SvgRenderer.h"

#include <algorithm>
#include <cmath>

namespace KesraSvg
{

CSvgDraggedArea::CSvgDraggedArea(CSvgRenderer& renderer, int width, int height)
    : CRubberBand(width, height, renderer), m_renderer(&renderer)
{
}

void CSvgDraggedArea::BeginOverlay()
{
    CSvgCanvas* canvas = m_renderer->GetCanvas();
    if (canvas != nullptr && !m_overlayOpen)
    {
        canvas->BeginGroup("dragged-area");
        m_overlayOpen = true;
    }
}

void CSvgDraggedArea::EndOverlay()
{
    CSvgCanvas* canvas = m_renderer->GetCanvas();
    if (canvas != nullptr && m_overlayOpen)
    {
        canvas->EndGroup();
    }
    m_overlayOpen = false;
}

void CSvgDraggedArea::Draw()
{
    CSvgCanvas* canvas = m_renderer->GetCanvas();
    if (canvas == nullptr)
    {
        return;
    }
    const double left = std::min(m_mouseStartX, m_mouseEndX);
    const double bottom = std::min(m_mouseStartY, m_mouseEndY);
    const double width = std::abs(static_cast<double>(m_mouseEndX) - m_mouseStartX);
    const double height = std::abs(static_cast<double>(m_mouseEndY) - m_mouseStartY);
    CSvgWriter& svg = canvas->Writer();
    svg.Open("rect");
    svg.Attribute("x", left, 0);
    svg.Attribute("y", canvas->SvgY(bottom + height), 0);
    svg.Attribute("width", width, 0);
    svg.Attribute("height", height, 0);
    svg.Attribute("fill", "none");
    svg.Attribute("stroke", HexColor(m_color.red, m_color.green, m_color.blue));
    svg.Attribute("stroke-width", GetLineWidth(), 2);
    svg.Attribute("stroke-dasharray", "6 4");
    svg.Close();
}

} // namespace KesraSvg
