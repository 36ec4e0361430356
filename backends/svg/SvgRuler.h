// CSvgRuler: the scale bar drawn into an SVG frame.
//
// The bar starts at the ruler's start position (window pixels, y up), is as
// long as its computed pixel width and as high as the ruler height, and is
// cut into its block count of blocks, filled and empty in turn, in the text
// colour. Ticks of the reduced height mark the block edges. Labels above the
// bar give 0 and the round length with the unit at the ends, and the half
// length in the middle of four blocks. The first label-format number is the
// digits of the power-of-ten rule (GetExponentialBase): a length the rule
// gives a power for is written as a mantissa from 1 to 10 times a raised
// power of ten, as the legend writes one. The second is the decimals.
#pragma once

#include "Engine/Ruler.h"

#include <string>

namespace KesraSvg
{

class CSvgRenderer;

class CSvgRuler : public KesraEngine::CKesraRuler
{
public:
    // Draws the ruler into the renderer's frame under way while it is created
    // and to be drawn and its pixel width is positive.
    void Draw(CSvgRenderer& renderer) const;

    // A length as the ruler writes it: the number, ending in "x10" when it
    // takes a power of ten, whose exponent goes to exponent (else empty).
    std::string FormatLength(double length, std::string& exponent) const;
    // The round length and the pixel width that stands for it.
    float GetRoundLength() const { return m_rulerLength; }
    int GetPixelWidth() const { return m_rulerPixelWidth; }
};

} // namespace KesraSvg
