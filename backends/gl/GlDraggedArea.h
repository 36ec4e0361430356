// CGlDraggedArea: the rubber band of an OpenGL view.
//
// Positions are window pixels, y up. CRubberBand tracks the mouse; the
// finished rectangle goes to the host's handler (SetAreaHandler), typically
// the camera's ZoomToRectangle.
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
    // A translucent fill in the colour's alpha and an opaque outline, while a
    // drag is under way; between BeginOverlay and EndOverlay.
    void Draw() override;
    // Every frame is drawn anew, so erasing is asking for a frame without
    // the rectangle; the further point keeps the corner that was drawn.
    void Erase() override;
    // Refused unless width > 0.
    void SetLineWidth(float width) override;
    void RequestRedraw() override;

    float GetLineWidth() const { return m_lineWidth; }

private:
    CGlRenderer& m_renderer;
    float m_lineWidth = 1.0f;
};

} // namespace KesraGl
