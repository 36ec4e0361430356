// CGlDraggedArea: the rubber band of an OpenGL view.
//
// Positions are window pixels, y up. The finished rectangle goes to the
// host's action (SetAreaAction), typically the camera's ZoomToRectangle.
#pragma once

#include "Engine/DraggedArea.h"

#include <functional>

namespace KesraGl
{

class CGlRenderer;

class CGlDraggedArea : public KesraEngine::CKesraDraggedArea
{
public:
    using AreaAction = std::function<void(int x0, int y0, int x1, int y1)>;

    // renderer is not owned and must outlive the area.
    CGlDraggedArea(int width, int height, CGlRenderer& renderer);

    void SetAreaAction(AreaAction action) { m_action = std::move(action); }

    bool OnMouseDown(int x, int y) override;
    bool OnMouseMove(int x, int y) override;
    bool OnMouseUp(int x, int y) override;
    void CancelDrag() override;
    // Runs the host's action, if any.
    void OnAreaSelected(int x0, int y0, int x1, int y1) override;
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
    AreaAction m_action;
    float m_lineWidth = 1.0f;
};

} // namespace KesraGl
