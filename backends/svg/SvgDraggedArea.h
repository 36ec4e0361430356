// CSvgDraggedArea: the rubber-band rectangle of one SVG renderer.
//
// The host forwards the mouse (window pixels, y up) to OnMouseDown,
// OnMouseMove and OnMouseUp, which CRubberBand handles as every backend
// does; a redraw request marks the renderer's picture out of date. The
// renderer draws the rectangle, dashed in the area's colour,
// in every frame written while a drag is under way.
#pragma once

#include "common/RubberBand.h"

namespace KesraSvg
{

class CSvgRenderer;

class CSvgDraggedArea : public KesraBackend::CRubberBand
{
public:
    // An area of width x height pixels for renderer, which must outlive it.
    CSvgDraggedArea(CSvgRenderer& renderer, int width, int height);

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

private:
    CSvgRenderer* m_renderer;
    float m_lineWidth = 1.5f;
    bool m_overlayOpen = false;
};

} // namespace KesraSvg
