#include "Engine/DraggedArea.h"

namespace KesraEngine
{

CKesraDraggedArea::CKesraDraggedArea(int width, int height)
    : m_enabled(false),
      m_dragged(false),
      m_windowWidth(width),
      m_windowHeight(height),
      m_color(30, 40, 50, 255),
      m_mouseStartX(0),
      m_mouseStartY(0),
      m_mouseEndX(0),
      m_mouseEndY(0),
      m_furtherPointX(0),
      m_furtherPointY(0)
{
}

void CKesraDraggedArea::SetEanble(bool enabled)
{
    m_enabled = enabled;
    m_dragged = false;
}

void CKesraDraggedArea::SetWindowSize(int width, int height)
{
    m_windowWidth = width;
    m_windowHeight = height;
}

void CKesraDraggedArea::GetWindowSize(int& width, int& height) const
{
    width = m_windowWidth;
    height = m_windowHeight;
}

void CKesraDraggedArea::GetMouseStart(int& x, int& y) const
{
    x = m_mouseStartX;
    y = m_mouseStartY;
}

void CKesraDraggedArea::GetMouseEnd(int& x, int& y) const
{
    x = m_mouseEndX;
    y = m_mouseEndY;
}

} // namespace KesraEngine
