// CSvgDraggedArea: the rubber-band rectangle of one SVG renderer.
//
// The host forwards the mouse (window pixels, y up) to OnMouseDown,
// OnMouseMove and OnMouseUp; the area records the drag in the fields the
// library reads back (IsDragged, GetMouseStart, GetMouseEnd), asks the
// renderer for a redraw while it changes, and hands the finished rectangle to
// the host's handler. The further point keeps the previous end while the
// mouse moves. The renderer draws the rectangle, dashed in the area's colour,
// in every frame written while a drag is under way.
#pragma once

#include "Engine/DraggedArea.h"

#include <functional>

namespace KesraSvg
{

class CSvgRenderer;

class CSvgDraggedArea : public KesraEngine::CKesraDraggedArea
{
public:
    using AreaHandler = std::function<void(int x0, int y0, int x1, int y1)>;

    // An area of width x height pixels for renderer, which must outlive it.
    CSvgDraggedArea(CSvgRenderer& renderer, int width, int height);

    // Starts a drag at (x, y) when enabled.
    bool OnMouseDown(int x, int y) override;
    // Moves the rectangle's end while a drag is under way.
    bool OnMouseMove(int x, int y) override;
    // Ends the drag at (x, y) and hands the rectangle to OnAreaSelected.
    bool OnMouseUp(int x, int y) override;
    // Ends a drag under way without a result.
    void CancelDrag() override;
    // Calls the host's handler, if any, with the rectangle.
    void OnAreaSelected(int x0, int y0, int x1, int y1) override;
    // Opens the group the rectangle is drawn in; SVG coordinates are window
    // pixels already, so no projection needs replacing.
    void BeginOverlay() override;
    // Closes that group.
    void EndOverlay() override;
    // The rectangle between the two mouse positions, dashed, in its colour.
    void Draw() override;
    // Not applicable: SVG frames are written whole, so there is nothing to
    // paint over; the area asks for a redraw, whose frame lacks the rectangle
    // once the drag is over.
    void Erase() override;
    // Outline width in pixels; refused unless > 0.
    void SetLineWidth(float width) override;
    // Marks the renderer's picture as out of date.
    void RequestRedraw() override;

    // Receives every finished rectangle; empty to receive none.
    void SetAreaHandler(AreaHandler handler) { m_handler = std::move(handler); }

private:
    CSvgRenderer* m_renderer;
    AreaHandler m_handler;
    float m_lineWidth = 1.5f;
    bool m_overlayOpen = false;
};

} // namespace KesraSvg
