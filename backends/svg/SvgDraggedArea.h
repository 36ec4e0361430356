// CSvgDraggedArea: the rubber-band rectangle of one SVG renderer, dashed in
// the area's colour. The host forwards the mouse (window pixels, y up) to
// OnMouseDown, OnMouseMove and OnMouseUp; the bookkeeping, redraw requests
// and line width are every backend's (CRubberBand).
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

private:
    CSvgRenderer* m_renderer;
    bool m_overlayOpen = false;
};

} // namespace KesraSvg
