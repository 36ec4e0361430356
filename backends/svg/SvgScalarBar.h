// CSvgScalarBar: the colour legend drawn into an SVG frame, in the layout
// every backend shares (CLegendBar).
//
// Banded, each block is one swatch in the colour GetOpenGLColor gives for the
// middle of the block; smooth, the bar is a gradient whose stops carry the
// colours GetOpenGLColor gives for their values. Swatches and stops name their
// value in a data-value attribute. The NaN, below- and above-range swatches
// are rectangles of a "range-swatches" group, each naming its kind in a
// data-kind attribute ("nan", "below", "above").
#pragma once

#include "common/LegendLayout.h"

namespace KesraSvg
{

class CSvgRenderer;

class CSvgScalarBar : public KesraBackend::CLegendBar
{
public:
    // Nothing unless renderer is an SVG renderer with a frame under way; the
    // frame then shows every change.
    void Draw(KesraEngine::CKesraRenderer& renderer) override;

private:
    // Swatches (banded) or the gradient (smooth) over the bar, the minimum at
    // the bottom (vertical) or on the left.
    void DrawBar(CSvgRenderer& renderer, const KesraBackend::LegendLayout& layout,
                 const Color& line) const;
    // The smooth bar's gradient stops beyond the first.
    int GradientStops() const;
    void DrawSwatches(CSvgRenderer& renderer, const KesraBackend::LegendLayout& layout,
                      const Color& line) const;
};

} // namespace KesraSvg
