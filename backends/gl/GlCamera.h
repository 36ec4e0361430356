// CGlCamera: the camera of an OpenGL view and what the mouse does to it.
//
// Mouse positions are window pixels with y up. A rotation drag turns the
// model like a trackball: each move turns it about the view axis perpendicular
// to the move, 0.4 degree per pixel, so the point under the mouse follows it.
// A pan drag moves the picture with the mouse; a zoom drag scales by 1 % per
// pixel (up is closer). Each step goes through the camera's notifying setters,
// so the observers (axis triad, ruler) follow every change.
//
// The core profile has no matrix stack: Apply* set the viewport and compute
// the projection and model-view matrices, which the renderer's programs read
// through Projection and ModelView.
#pragma once

#include "Engine/Camera.h"
#include "gl/GlApi.h"

namespace KesraGl
{

class CGlCamera : public KesraEngine::CKesraCamera
{
public:
    CGlCamera(int width, int height);

    // glViewport over the window, view bounds recomputed.
    void ApplyViewport() override;
    // The orthographic volume of GetParameters (model units about the view
    // centre) as the projection matrix.
    void ApplyProjection() override;
    // The world-to-view matrix (recomputed if the camera is modified) brought
    // back to model units as the model-view matrix; with the projection it
    // maps a model point to the pixel ProjectPointWorldToView gives.
    void ApplyModelView() override;
    void BeginRotate(int x, int y) override;
    void Rotate(int x, int y) override;
    void BeginPan(int x, int y) override;
    void Pan(int x, int y) override;
    void BeginZoom(int x, int y) override;
    void Zoom(int x, int y) override;
    // Later Rotate, Pan and Zoom calls do nothing until the next Begin.
    void EndInteraction() override;
    // 10 % per step (positive: closer), the model point under (x, y) stays.
    void WheelZoom(int x, int y, int steps) override;
    // The rectangle's centre moves to the window's middle and its longer side,
    // relative to the window, spans the window. Refused without area.
    void ZoomToRectangle(int x0, int y0, int x1, int y1) override;

    // One frame of the smooth rotation or, without one, of the six-sides
    // tour; true while either runs. The renderer calls it once per redraw.
    bool StepAnimation();
    bool IsAnimating() const { return IsSmoothRotate() || IsSixSidesInspection(); }

    const Mat4& Projection() const { return m_projection; }
    const Mat4& ModelView() const { return m_modelView; }
    // The rotation's upper 3 x 3, column by column, for normals.
    void NormalMatrix(float (&columns)[9]) const;

private:
    enum class Drag
    {
        None,
        Rotate,
        Pan,
        Zoom
    };

    void Start(Drag drag, int x, int y);

    Drag m_drag = Drag::None;
    int m_lastX = 0;
    int m_lastY = 0;
    float m_startScale = 1.0f;
    int m_startY = 0;
    Mat4 m_projection{};
    Mat4 m_modelView{};
};

} // namespace KesraGl
