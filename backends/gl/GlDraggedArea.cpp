#include "gl/GlDraggedArea.h"

#include "gl/GlRenderer.h"

#include <algorithm>

namespace KesraGl
{

CGlDraggedArea::CGlDraggedArea(int width, int height, CGlRenderer& renderer)
    : CRubberBand(width, height, renderer), m_renderer(renderer)
{
}

void CGlDraggedArea::BeginOverlay()
{
    if (m_renderer.HasContext())
    {
        m_renderer.Canvas().Begin(m_windowWidth, m_windowHeight);
    }
}

void CGlDraggedArea::EndOverlay()
{
    if (m_renderer.HasContext())
    {
        m_renderer.Canvas().End();
    }
}

void CGlDraggedArea::Draw()
{
    if (!m_dragged || !m_renderer.HasContext())
    {
        return;
    }
    const float x0 = static_cast<float>(std::min(m_mouseStartX, m_mouseEndX));
    const float x1 = static_cast<float>(std::max(m_mouseStartX, m_mouseEndX));
    const float y0 = static_cast<float>(std::min(m_mouseStartY, m_mouseEndY));
    const float y1 = static_cast<float>(std::max(m_mouseStartY, m_mouseEndY));
    CGlCanvas& canvas = m_renderer.Canvas();
    canvas.Rect(x0, y0, x1, y1, Color{m_color.red, m_color.green, m_color.blue,
                                      static_cast<unsigned char>(m_color.alpha / 4)});
    canvas.Frame(x0, y0, x1, y1, GetLineWidth(), Color{m_color.red, m_color.green, m_color.blue, 255});
}

} // namespace KesraGl
