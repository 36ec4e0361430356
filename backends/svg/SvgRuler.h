// CSvgRuler: the scale bar drawn into an SVG frame, in the layout every
// backend shares (CScaleRuler).
#pragma once

#include "common/RulerLayout.h"

namespace KesraSvg
{

class CSvgRenderer;

class CSvgRuler : public KesraBackend::CScaleRuler
{
public:
    // Draws the ruler into the renderer's frame under way while it is created
    // and to be drawn and its pixel width is positive.
    void Draw(CSvgRenderer& renderer) const;
};

} // namespace KesraSvg
