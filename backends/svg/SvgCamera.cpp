#include "svg/SvgCamera.h"

#include <cmath>
#include <cstdlib>

namespace KesraSvg
{

namespace
{

constexpr double kDegreesPerPixel = 0.5;
constexpr double kZoomPerPixel = 1.01;
constexpr double kZoomPerWheelStep = 0.9;

} // namespace

CSvgCamera::CSvgCamera(int width, int height) : CKesraCamera(width, height)
{
}

void CSvgCamera::ApplyViewport()
{
    UpdateViewPortParameters();
}

void CSvgCamera::ApplyProjection()
{
    float left, right, bottom, top, nearBound, farBound;
    GetParameters(left, right, bottom, top, nearBound, farBound);
}

void CSvgCamera::ApplyModelView()
{
    UpdateWorldToViewMatrix();
}

void CSvgCamera::Begin(Interaction interaction, int x, int y)
{
    m_interaction = interaction;
    m_startX = x;
    m_startY = y;
    m_startRotation = m_rotateMatrix;
    m_startTranslationX = m_translationX;
    m_startTranslationY = m_translationY;
    m_startScale = m_scale;
}

void CSvgCamera::BeginRotate(int x, int y)
{
    Begin(Interaction::Rotate, x, y);
}

void CSvgCamera::Rotate(int x, int y)
{
    if (m_interaction != Interaction::Rotate)
    {
        return;
    }
    const double dx = static_cast<double>(x) - m_startX;
    const double dy = static_cast<double>(y) - m_startY;
    const double pixels = std::sqrt(dx * dx + dy * dy);
    if (pixels == 0.0)
    {
        SetRotateMatrix(m_startRotation);
        return;
    }
    // About the view axis perpendicular to the drag, so that the point under
    // the mouse follows it. MakeRotation read column by column is the
    // rotation R; the row-by-row product start * delta, read column by column,
    // is R applied after the start rotation.
    Matrix delta;
    delta.MakeRotation(kDegreesPerPixel * pixels, -dy, dx, 0.0);
    SetRotateMatrix(m_startRotation * delta);
}

void CSvgCamera::BeginPan(int x, int y)
{
    Begin(Interaction::Pan, x, y);
}

void CSvgCamera::Pan(int x, int y)
{
    if (m_interaction != Interaction::Pan)
    {
        return;
    }
    // A pixel is scale model units; the translation is in model units.
    const double dx = static_cast<double>(x) - m_startX;
    const double dy = static_cast<double>(y) - m_startY;
    SetTranslation(static_cast<float>(m_startTranslationX + dx * m_scale),
                   static_cast<float>(m_startTranslationY + dy * m_scale));
}

void CSvgCamera::BeginZoom(int x, int y)
{
    Begin(Interaction::Zoom, x, y);
}

void CSvgCamera::Zoom(int, int y)
{
    if (m_interaction != Interaction::Zoom)
    {
        return;
    }
    const double dy = static_cast<double>(y) - m_startY;
    // SetScale refuses a scale that under- or overflows to 0 or infinity.
    SetScale(static_cast<float>(m_startScale * std::pow(kZoomPerPixel, -dy)));
}

void CSvgCamera::EndInteraction()
{
    m_interaction = Interaction::None;
}

void CSvgCamera::WheelZoom(int x, int y, int steps)
{
    const float oldScale = m_scale;
    const float newScale = static_cast<float>(oldScale * std::pow(kZoomPerWheelStep, steps));
    if (!(std::isfinite(newScale) && newScale > 0.0f) || newScale == oldScale)
    {
        return;
    }
    // The view point under (x, y) is (x - width / 2) * scale - translation;
    // the translation that keeps it there at the new scale follows.
    const double offsetX = static_cast<double>(x) - 0.5 * m_windowWidth;
    const double offsetY = static_cast<double>(y) - 0.5 * m_windowHeight;
    const float translationX = static_cast<float>(m_translationX + offsetX * (newScale - oldScale));
    const float translationY = static_cast<float>(m_translationY + offsetY * (newScale - oldScale));
    SetScale(newScale);
    SetTranslation(translationX, translationY);
}

void CSvgCamera::ZoomToRectangle(int x0, int y0, int x1, int y1)
{
    const double width = std::abs(static_cast<double>(x1) - x0);
    const double height = std::abs(static_cast<double>(y1) - y0);
    if (width == 0.0 || height == 0.0 || m_windowWidth <= 0 || m_windowHeight <= 0)
    {
        return;
    }
    const double centreX = 0.5 * (static_cast<double>(x0) + x1) - 0.5 * m_windowWidth;
    const double centreY = 0.5 * (static_cast<double>(y0) + y1) - 0.5 * m_windowHeight;
    const double fill = std::fmax(width / m_windowWidth, height / m_windowHeight);
    const float newScale = static_cast<float>(m_scale * fill);
    if (!(std::isfinite(newScale) && newScale > 0.0f))
    {
        return;
    }
    // The rectangle's centre, now centre * scale - translation in the view,
    // moves to the middle of the window.
    const float translationX = static_cast<float>(m_translationX - centreX * m_scale);
    const float translationY = static_cast<float>(m_translationY - centreY * m_scale);
    SetTranslation(translationX, translationY);
    SetScale(newScale);
}

} // namespace KesraSvg
