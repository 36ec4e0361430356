// CSvgScalarBar: the colour legend drawn into an SVG frame.
//
// The legend reads its layout from the two layout units of the library (the
// free part of the window from the start position to the far edges, cut
// into equal parts; window y up):
// - direction 0, a vertical bar: the free width is 60 units x, the free
//   height 10 units y. The bar runs from 1.2 to 8.4 units y above the start
//   and 2 to 10 units x right of it; labels stand to its right and the note
//   below it.
// - direction 1, a horizontal bar: the free width is 16 units x, the height
//   above max(start y, 25) is 45 units y. The bar runs from 2 to 14 units x
//   and 1.6 to 2.6 units y; labels stand below it and the note below them.
// In both, the unit line stands above the bar and the title line above that:
// each text has a line of its own, so none can run into another.
// There are block number + 1 labels, at the block edges, thinned out where
// they would overlap. A label is value / 10^e with the second value-format
// number as its decimals, where e = GetExponentialBase(minimum, maximum, first
// value-format number); when e is not 0 the unit line ends in x10 with e
// raised.
// Banded, each block is one swatch in the colour GetOpenGLColor gives for the
// middle of the block; smooth, the bar is a gradient whose stops carry the
// colours GetOpenGLColor gives for their values. Swatches and stops name their
// value in a data-value attribute.
#pragma once

#include "Engine/ScalarBar.h"

#include <string>
#include <vector>

namespace KesraSvg
{

class CSvgRenderer;

class CSvgScalarBar : public KesraEngine::CKesraScalarBar
{
public:
    // Draws the legend into the renderer's frame under way while the legend
    // is created and visible, then clears the modified flag: the frame shows
    // every change.
    void Draw(CSvgRenderer& renderer);

    // The power of ten that the labels are written with.
    int LabelExponent() const;
    // A label as the legend writes it, for a value and the power of ten.
    std::string FormatLabel(double value, int exponent) const;

private:
    struct Layout;
    Layout MakeLayout(const CSvgRenderer& renderer) const;
    // Swatches (banded) or the gradient (smooth) over the bar, the minimum at
    // the bottom (vertical) or on the left.
    void DrawBar(CSvgRenderer& renderer, const Layout& layout) const;
    void DrawLabels(CSvgRenderer& renderer, const Layout& layout) const;
    void DrawTexts(CSvgRenderer& renderer, const Layout& layout) const;
    // The baseline of the labels below a horizontal bar.
    static double LabelBaseline(const Layout& layout);
    // The block edges, accumulated as the banded mapping accumulates them.
    std::vector<double> Edges() const;
};

} // namespace KesraSvg
