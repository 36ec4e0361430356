// The chart of a two-dimensional curve (CKesraCurve2D) in a panel over an SVG
// frame: the visible nodes joined in list order, inside axes that span the
// curve's range (GetCureveRange), with the range's ends written at the axes.
// A legend, when given, colours each segment by its mean y value. The curve
// has no drawing operation of its own in the library; this is how the
// reference backend shows one.
#pragma once

#include "svg/SvgRenderer.h"

namespace KesraSvg
{

// Draws inset into the renderer's frame under way; an empty range draws the
// panel with a note that there is nothing to show.
void DrawCurveChart(CSvgRenderer& renderer, const CurveInset& inset);

} // namespace KesraSvg
