// CSvgCamera: the camera of an SVG view, and what a mouse does to it.
//
// Mouse positions are window pixels with y up, as the camera projects. A
// drag rotates about the rotation centre (half a degree per pixel, about the
// view axis perpendicular to the drag), pans the picture with the mouse, or
// zooms (dragging up zooms in, by 1 % per pixel). Each step goes through the
// camera's notifying setters, so the observers follow every change.
//
// SVG has no graphics state to load: the renderer projects every point with
// ProjectPointWorldToView and writes the document at the window size. The
// three Apply operations therefore only bring the camera's own derived state
// up to date for the frame about to be drawn.
#pragma once

#include "Engine/Camera.h"

namespace KesraSvg
{

class CSvgCamera : public KesraEngine::CKesraCamera
{
public:
    CSvgCamera(int width, int height);

    // Recomputes the view bounds for the window size; the document's width
    // and height are the viewport.
    void ApplyViewport() override;
    // Recomputes the orthographic view volume (GetParameters); SVG applies it
    // point by point through the world-to-view matrix.
    void ApplyProjection() override;
    // Brings the cached world-to-view matrix up to date, so that the frame's
    // projections reuse it.
    void ApplyModelView() override;
    void BeginRotate(int x, int y) override;
    // Turns from the rotation at BeginRotate by the drag since then.
    void Rotate(int x, int y) override;
    void BeginPan(int x, int y) override;
    // Moves the picture with the mouse since BeginPan.
    void Pan(int x, int y) override;
    void BeginZoom(int x, int y) override;
    // Scales from the scale at BeginZoom by the vertical drag since then.
    void Zoom(int x, int y) override;
    // Later Rotate, Pan and Zoom calls do nothing until the next Begin.
    void EndInteraction() override;
    // Each step zooms by 10 % (positive steps: closer), keeping the model
    // point under (x, y) in place.
    void WheelZoom(int x, int y, int steps) override;
    // Fits the rectangle into the window: its centre moves to the middle and
    // its longer side, relative to the window, spans the window. A rectangle
    // without area is refused.
    void ZoomToRectangle(int x0, int y0, int x1, int y1) override;

private:
    enum class Interaction
    {
        None,
        Rotate,
        Pan,
        Zoom
    };

    void Begin(Interaction interaction, int x, int y);

    Interaction m_interaction = Interaction::None;
    int m_startX = 0;
    int m_startY = 0;
    Matrix m_startRotation;
    float m_startTranslationX = 0.0f;
    float m_startTranslationY = 0.0f;
    float m_startScale = 1.0f;
};

} // namespace KesraSvg
