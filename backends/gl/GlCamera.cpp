#include "gl/GlCamera.h"

#include <cmath>
#include <cstdlib>

namespace KesraGl
{

namespace
{

constexpr double kDegreesPerPixel = 0.4;
constexpr double kZoomPerPixel = 1.01;
constexpr double kWheelStep = 0.9;

bool Usable(float scale)
{
    return std::isfinite(scale) && scale > 0.0f;
}

} // namespace

CGlCamera::CGlCamera(int width, int height) : CKesraCamera(width, height)
{
}

void CGlCamera::ApplyViewport()
{
    UpdateViewPortParameters();
    glViewport(0, 0, m_windowWidth, m_windowHeight);
}

void CGlCamera::ApplyProjection()
{
    float left, right, bottom, top, nearBound, farBound;
    GetParameters(left, right, bottom, top, nearBound, farBound);
    m_projection = Mat4{};
    m_projection[0] = 2.0f / (right - left);
    m_projection[5] = 2.0f / (top - bottom);
    m_projection[10] = -2.0f / (farBound - nearBound);
    m_projection[12] = -(right + left) / (right - left);
    m_projection[13] = -(top + bottom) / (top - bottom);
    m_projection[14] = -(farBound + nearBound) / (farBound - nearBound);
    m_projection[15] = 1.0f;
}

void CGlCamera::ApplyModelView()
{
    // W maps model points to window pixels; taking the window's middle off
    // and multiplying by the scale gives view coordinates in model units,
    // which the projection of GetParameters takes. So the picture and
    // ProjectPointWorldToView agree to float precision.
    const Matrix& toWindow = GetWorldToViewMatrix();
    const double middle[3] = {static_cast<double>(static_cast<float>(m_windowWidth) * 0.5f),
                              static_cast<double>(static_cast<float>(m_windowHeight) * 0.5f), 0.0};
    m_modelView = Mat4{};
    for (int row = 0; row < 3; ++row)
    {
        for (int column = 0; column < 4; ++column)
        {
            const double shift = column == 3 ? middle[row] : 0.0;
            m_modelView[4 * column + row] = static_cast<float>((toWindow(row, column) - shift) * m_scale);
        }
    }
    m_modelView[15] = 1.0f;
}

void CGlCamera::NormalMatrix(float (&columns)[9]) const
{
    for (int column = 0; column < 3; ++column)
    {
        for (int row = 0; row < 3; ++row)
        {
            columns[3 * column + row] = static_cast<float>(m_rotateMatrix[4 * column + row]);
        }
    }
}

void CGlCamera::Start(Drag drag, int x, int y)
{
    m_drag = drag;
    m_lastX = x;
    m_lastY = y;
    m_startY = y;
    m_startScale = m_scale;
}

void CGlCamera::BeginRotate(int x, int y)
{
    Start(Drag::Rotate, x, y);
}

void CGlCamera::Rotate(int x, int y)
{
    if (m_drag != Drag::Rotate || (x == m_lastX && y == m_lastY))
    {
        return;
    }
    const double dx = x - m_lastX;
    const double dy = y - m_lastY;
    m_lastX = x;
    m_lastY = y;
    // The turn about the view axis (-dy, dx, 0) happens after the present
    // rotation: read column by column, current * turn is turn applied last.
    Matrix turn;
    turn.MakeRotation(kDegreesPerPixel * std::hypot(dx, dy), -dy, dx, 0.0);
    SetRotateMatrix(m_rotateMatrix * turn);
}

void CGlCamera::BeginPan(int x, int y)
{
    Start(Drag::Pan, x, y);
}

void CGlCamera::Pan(int x, int y)
{
    if (m_drag != Drag::Pan || (x == m_lastX && y == m_lastY))
    {
        return;
    }
    // One pixel is scale model units of translation.
    const float moveX = static_cast<float>(x - m_lastX) * m_scale;
    const float moveY = static_cast<float>(y - m_lastY) * m_scale;
    m_lastX = x;
    m_lastY = y;
    SetTranslation(m_translationX + moveX, m_translationY + moveY);
}

void CGlCamera::BeginZoom(int x, int y)
{
    Start(Drag::Zoom, x, y);
}

void CGlCamera::Zoom(int, int y)
{
    if (m_drag != Drag::Zoom)
    {
        return;
    }
    const float scale = static_cast<float>(m_startScale * std::pow(kZoomPerPixel, m_startY - y));
    if (Usable(scale) && scale != m_scale)
    {
        SetScale(scale);
    }
}

void CGlCamera::EndInteraction()
{
    m_drag = Drag::None;
}

void CGlCamera::WheelZoom(int x, int y, int steps)
{
    const float scale = static_cast<float>(m_scale * std::pow(kWheelStep, steps));
    if (!Usable(scale) || scale == m_scale)
    {
        return;
    }
    // The view point under the cursor is (pixel - half window) * scale -
    // translation; this translation keeps it under the cursor at the new scale.
    const double change = static_cast<double>(scale) - m_scale;
    const float translationX =
        static_cast<float>(m_translationX + (x - 0.5 * m_windowWidth) * change);
    const float translationY =
        static_cast<float>(m_translationY + (y - 0.5 * m_windowHeight) * change);
    SetScale(scale);
    SetTranslation(translationX, translationY);
}

void CGlCamera::ZoomToRectangle(int x0, int y0, int x1, int y1)
{
    const int width = std::abs(x1 - x0);
    const int height = std::abs(y1 - y0);
    if (width == 0 || height == 0 || m_windowWidth <= 0 || m_windowHeight <= 0)
    {
        return;
    }
    const double share = std::fmax(static_cast<double>(width) / m_windowWidth,
                                   static_cast<double>(height) / m_windowHeight);
    const float scale = static_cast<float>(m_scale * share);
    if (!Usable(scale))
    {
        return;
    }
    // The centre's view offset from the window's middle, at the old scale,
    // is taken out of the translation.
    const double offsetX = 0.5 * (x0 + x1) - 0.5 * m_windowWidth;
    const double offsetY = 0.5 * (y0 + y1) - 0.5 * m_windowHeight;
    SetTranslation(static_cast<float>(m_translationX - offsetX * m_scale),
                   static_cast<float>(m_translationY - offsetY * m_scale));
    SetScale(scale);
}

bool CGlCamera::StepAnimation()
{
    if (IsSmoothRotate())
    {
        SmoothRotateImpl();
    }
    else if (IsSixSidesInspection())
    {
        SixSidesInspectionImpl();
    }
    return IsAnimating();
}

} // namespace KesraGl
