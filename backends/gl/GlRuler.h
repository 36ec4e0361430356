// CGlRuler: the scale bar drawn over an OpenGL view.
//
// The bar starts at the start position (pixels, y up), is the library's
// computed pixel width long and the reduced height high, cut into its blocks
// filled black and white in turn. Labels stand above it: 0 at the start, the
// half length over the middle with four blocks, the round length and unit at
// the end.
#pragma once

#include "Engine/Ruler.h"

#include <string>

namespace KesraGl
{

class CGlRenderer;

class CGlRuler : public KesraEngine::CKesraRuler
{
public:
    // Draws while created, to be drawn and with a length.
    void Draw(CGlRenderer& renderer);

    int GetPixelWidth() const { return m_rulerPixelWidth; }
    float GetRoundLength() const { return m_rulerLength; }
    int GetBlockCount() const { return m_blockCount; }
    // A length with the second label format's decimals, in scientific form
    // ("2.50e-04") when the label formats call for a power of ten.
    std::string FormatLength(double length) const;
};

} // namespace KesraGl
