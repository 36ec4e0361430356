// CSvgCamera: the camera of an SVG view. The mouse and the animations are
// every backend's (CNavigatedCamera).
//
// SVG has no graphics state to load: the renderer projects every point with
// ProjectPointWorldToView and writes the document at the window size. The
// three Apply operations therefore only bring the camera's own derived state
// up to date for the frame about to be drawn.
#pragma once

#include "common/NavigatedCamera.h"

namespace KesraSvg
{

class CSvgCamera : public KesraBackend::CNavigatedCamera
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
};

} // namespace KesraSvg
