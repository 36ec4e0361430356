#include "Engine/Axis.h"

#include <limits>

namespace KesraEngine
{

namespace
{

// The triad's extent in pixels, whatever the window size.
constexpr float kTriadPixels = 80.0f;

// The triad's extent as a fraction of a window side of the given pixels. A
// zero side has no fraction; it is given as infinity without dividing by zero.
float TriadScale(int pixels)
{
    if (pixels == 0)
    {
        return std::numeric_limits<float>::infinity();
    }
    return kTriadPixels / static_cast<float>(pixels);
}

} // namespace

CKesraAxis::CKesraAxis()
    : m_created(0),
      m_drawAxis(1),
      m_windowWidth(0),
      m_windowHeight(0),
      m_scaleX(0.0f),
      m_scaleY(0.0f),
      m_rotateMatrix(Matrix::ZERO)
{
}

bool CKesraAxis::Create(int width, int height)
{
    if (width == 0 || height == 0)
    {
        return false;
    }
    SetWindowSize(width, height);
    m_rotateMatrix = Matrix::IDENTITY;
    m_created = 1;
    return true;
}

bool CKesraAxis::Delete()
{
    if (m_created == 0)
    {
        return false;
    }
    m_created = 0;
    return true;
}

void CKesraAxis::SetWindowSize(int width, int height)
{
    m_windowWidth = width;
    m_windowHeight = height;
    m_scaleX = TriadScale(width);
    m_scaleY = TriadScale(height);
}

void CKesraAxis::GetWindowSize(int& width, int& height) const
{
    width = m_windowWidth;
    height = m_windowHeight;
}

} // namespace KesraEngine
