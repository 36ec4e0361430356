// CGlScalarBar: the colour legend drawn over an OpenGL view.
//
// Layout from the library's two layout units (window y up): direction 0 is a
// vertical bar 2 to 10 units x right of the start and 1.2 to 8.4 units y
// above it, labels on its right; direction 1 a horizontal bar 2 to 14 units x
// and 1.6 to 2.6 units y above max(start y, 25), labels below it. The unit
// line stands above the bar and the title above that; the note below.
// Banded, each block is one swatch in GetOpenGLColor of the block's middle;
// smooth, every pixel row (column) of the bar has GetOpenGLColor of the value
// at the pixel's centre, so the picture shows the mapping's own bytes.
#pragma once

#include "Engine/ScalarBar.h"

#include <string>
#include <vector>

namespace KesraGl
{

class CGlRenderer;

class CGlScalarBar : public KesraEngine::CKesraScalarBar
{
public:
    // Draws while created and visible, then clears the modified flag.
    void Draw(CGlRenderer& renderer);

    // The bar's lower-left corner and size in window pixels, rounded to whole
    // pixels.
    void BarRect(float& left, float& bottom, float& width, float& height) const;
    // A label for value, written with 10^exponent taken out.
    std::string FormatLabel(double value, int exponent) const;
    int LabelExponent() const;

private:
    void DrawBar(CGlRenderer& renderer) const;
    void DrawTexts(CGlRenderer& renderer) const;
    // The block edges, accumulated as the banded mapping accumulates them.
    std::vector<double> Edges() const;
};

} // namespace KesraGl
