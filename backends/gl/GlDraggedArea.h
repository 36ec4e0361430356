// CGlDraggedArea: the rubber band of an OpenGL view: a translucent fill in
// the colour's alpha and an opaque outline. Positions are window pixels, y
// up; the mouse bookkeeping, redraws and line width are every backend's
// (CRubberBand). The finished rectangle goes to the host's handler
// (SetAreaHandler), typically the camera's ZoomToRectangle.
#pragma once

#include "common/RubberBand.h"

namespace KesraGl
{

class CGlRenderer;

class CGlDraggedArea : public KesraBackend::CRubberBand
{
public:
    // renderer is not owned and must outlive the area.
    CGlDraggedArea(int width, int height, CGlRenderer& renderer);

    // The renderer's overlay canvas over the window (pixels, y up).
    void BeginOverlay() override;
    void EndOverlay() override;
    // The rectangle while a drag is under way; between BeginOverlay and
    // EndOverlay.
    void Draw() override;

private:
    CGlRenderer& m_renderer;
};

} // namespace KesraGl
