// CGlScalarBar: the colour legend drawn over an OpenGL view, in the layout
// every backend shares (CLegendBar). Banded, each block is one swatch in
// GetOpenGLColor of the block's middle; smooth, every pixel row (column) of
// the bar has GetOpenGLColor of the value at the pixel's centre, so the
// picture shows the mapping's own bytes. The NaN, below- and above-range
// swatches are filled squares framed in the text colour.
#pragma once

#include "common/LegendLayout.h"

namespace KesraGl
{

class CGlRenderer;

class CGlScalarBar : public KesraBackend::CLegendBar
{
public:
    // Nothing unless renderer is an OpenGL renderer with a context.
    void Draw(KesraEngine::CKesraRenderer& renderer) override;

private:
    void DrawBar(CGlRenderer& renderer, const KesraBackend::LegendLayout& layout,
                 const Color& line) const;
};

} // namespace KesraGl
