// CMouseNavigation: what a mouse drag, the wheel and a dragged rectangle do to
// a camera, the same in every backend. Positions are window pixels with y up,
// as the camera projects; every change goes through the camera's notifying
// setters, so its observers (axis triad, ruler) follow each step, and a step
// that changes nothing notifies nobody.
//
// A drag is measured from where it began, not from the previous mouse
// position: Begin keeps the camera's rotation, translation and scale, and each
// move sets the camera to that start changed by the whole drag so far. So the
// picture depends only on where the mouse is, never on how many motion events
// the window system delivered on the way (a replayed event file gives the same
// picture whatever the spacing of its moves); nothing drifts by rounding; and
// a drag back to its start gives back exactly the start.
// - Rotate: about the view axis perpendicular to the drag, (-dy, dx, 0), by
//   0.5 degree per pixel of the drag's length, applied after the start
//   rotation, so the point under the mouse follows it. 180 pixels turn a
//   quarter, a drag across a 720-pixel window a whole turn.
// - Pan: the picture moves with the mouse; a pixel is scale model units.
// - Zoom: the start scale times 1.01 to the power of the downward drag in
//   pixels: dragging up zooms in, by 1 % a pixel.
// - The wheel: 10 % closer per positive step about the cursor, whose model
//   point stays put.
// - A rectangle: its centre moves to the window's middle and its longer side,
//   relative to the window, spans the window.
// A scale that is not finite and > 0 is refused: the camera keeps its own.
#pragma once

#include "Engine/Camera.h"

#include <cmath>

namespace KesraBackend
{

class CMouseNavigation
{
public:
    using Camera = KesraEngine::CKesraCamera;

    enum class Drag
    {
        None,
        Rotate,
        Pan,
        Zoom
    };

    static constexpr double kDegreesPerPixel = 0.5;
    static constexpr double kZoomPerPixel = 1.01;
    static constexpr double kZoomPerWheelStep = 0.9;

    // Starts a drag of the kind at (x, y) from the camera as it is now.
    void Begin(Drag drag, const Camera& camera, int x, int y)
    {
        m_drag = drag;
        m_startX = x;
        m_startY = y;
        m_startRotation = camera.GetRotateMatrix();
        camera.GetTranslation(m_startTranslationX, m_startTranslationY);
        m_startScale = camera.GetScale();
    }

    // The three moves set the camera for the mouse at (x, y); each does
    // nothing unless a drag of its kind is under way.
    void Rotate(Camera& camera, int x, int y) const
    {
        if (m_drag != Drag::Rotate)
        {
            return;
        }
        const double dx = static_cast<double>(x) - m_startX;
        const double dy = static_cast<double>(y) - m_startY;
        const double pixels = std::sqrt(dx * dx + dy * dy);
        Camera::Matrix rotation = m_startRotation;
        if (pixels != 0.0)
        {
            // MakeRotation read column by column is the turn R; the row-by-row
            // product start * turn, read column by column, is R after start.
            Camera::Matrix turn;
            turn.MakeRotation(kDegreesPerPixel * pixels, -dy, dx, 0.0);
            rotation = m_startRotation * turn;
        }
        if (rotation != camera.GetRotateMatrix())
        {
            camera.SetRotateMatrix(rotation);
        }
    }

    void Pan(Camera& camera, int x, int y) const
    {
        if (m_drag != Drag::Pan)
        {
            return;
        }
        const double scale = camera.GetScale();
        const float translationX =
            static_cast<float>(m_startTranslationX + (static_cast<double>(x) - m_startX) * scale);
        const float translationY =
            static_cast<float>(m_startTranslationY + (static_cast<double>(y) - m_startY) * scale);
        float nowX = 0.0f;
        float nowY = 0.0f;
        camera.GetTranslation(nowX, nowY);
        if (translationX != nowX || translationY != nowY)
        {
            camera.SetTranslation(translationX, translationY);
        }
    }

    void Zoom(Camera& camera, int, int y) const
    {
        if (m_drag != Drag::Zoom)
        {
            return;
        }
        const double down = static_cast<double>(m_startY) - y;
        const float scale = static_cast<float>(m_startScale * std::pow(kZoomPerPixel, down));
        if (Usable(scale) && scale != camera.GetScale())
        {
            camera.SetScale(scale);
        }
    }

    // Later moves do nothing until the next Begin.
    void End() { m_drag = Drag::None; }
    Drag Current() const { return m_drag; }

    static void WheelZoom(Camera& camera, int x, int y, int steps)
    {
        const float oldScale = camera.GetScale();
        const float newScale = static_cast<float>(oldScale * std::pow(kZoomPerWheelStep, steps));
        if (!Usable(newScale) || newScale == oldScale)
        {
            return;
        }
        // The view point under (x, y) is (pixel - half window) * scale -
        // translation; this translation keeps it there at the new scale. The
        // change is taken in double, where it is exact.
        int width = 0;
        int height = 0;
        camera.GetWindowSize(width, height);
        float translationX = 0.0f;
        float translationY = 0.0f;
        camera.GetTranslation(translationX, translationY);
        const double change = static_cast<double>(newScale) - oldScale;
        const float newX = static_cast<float>(translationX + (x - 0.5 * width) * change);
        const float newY = static_cast<float>(translationY + (y - 0.5 * height) * change);
        camera.SetScale(newScale);
        camera.SetTranslation(newX, newY);
    }

    // Refused for a rectangle without area and a window without one.
    static void ZoomToRectangle(Camera& camera, int x0, int y0, int x1, int y1)
    {
        int windowWidth = 0;
        int windowHeight = 0;
        camera.GetWindowSize(windowWidth, windowHeight);
        // In double: the difference of two ints may not fit one.
        const double width = std::abs(static_cast<double>(x1) - x0);
        const double height = std::abs(static_cast<double>(y1) - y0);
        if (width == 0.0 || height == 0.0 || windowWidth <= 0 || windowHeight <= 0)
        {
            return;
        }
        const double oldScale = camera.GetScale();
        const double fill = std::fmax(width / windowWidth, height / windowHeight);
        const float newScale = static_cast<float>(oldScale * fill);
        if (!Usable(newScale))
        {
            return;
        }
        // The centre's offset from the window's middle, at the old scale, is
        // taken out of the translation.
        const double centreX = 0.5 * (static_cast<double>(x0) + x1) - 0.5 * windowWidth;
        const double centreY = 0.5 * (static_cast<double>(y0) + y1) - 0.5 * windowHeight;
        float translationX = 0.0f;
        float translationY = 0.0f;
        camera.GetTranslation(translationX, translationY);
        camera.SetTranslation(static_cast<float>(translationX - centreX * oldScale),
                              static_cast<float>(translationY - centreY * oldScale));
        camera.SetScale(newScale);
    }

private:
    static bool Usable(float scale) { return std::isfinite(scale) && scale > 0.0f; }

    Drag m_drag = Drag::None;
    int m_startX = 0;
    int m_startY = 0;
    Camera::Matrix m_startRotation = Camera::Matrix::IDENTITY;
    float m_startTranslationX = 0.0f;
    float m_startTranslationY = 0.0f;
    float m_startScale = 1.0f;
};

} // namespace KesraBackend
