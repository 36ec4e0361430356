// The scale ruler's layout and label text, the same in every backend, and
// CScaleRuler, the ruler class the backends' rulers derive from.
//
// The bar starts at the ruler's start position (window pixels, y up), is its
// computed pixel width long and its ruler height high, cut into its block
// count of blocks, in the text colour and in the paper colour in turn, the
// first inked. Ticks of the reduced height stand on the block edges. Labels
// above the ticks give 0 at the start, the half length in the middle of four
// blocks, and the round length with the unit at the end, centred on the end
// unless that would push it out of the window, then ending 2 pixels inside
// it; where the labels would touch, the half's and then the start's give way
// to the end's. Labels are two pixels smaller than the renderer's font, over halos
// that keep them legible over the scene.
//
// A length is written with the second label-format number as its decimals.
// When the library's power-of-ten rule gives the length a power (with the
// first label-format number as its digits), it is written as a mantissa from
// 1 to 10 and "x10" with the power raised, as the legend writes one.
#pragma once

#include "Engine/Renderer.h"
#include "Engine/Ruler.h"
#include "common/OverlayText.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

namespace KesraBackend
{

// A number that may end in a power of ten: text, then superscript raised.
struct PowerText
{
    std::string text;
    std::string superscript;
};

// length with decimals (clamped to 0 ... 9) digits after the point; in
// scientific form, for a positive length, mantissa "x10" and the power.
inline PowerText LengthText(double length, bool scientific, int decimals)
{
    const int digits = std::clamp(decimals, 0, 9);
    char buffer[64];
    if (scientific && length > 0.0)
    {
        const int power = static_cast<int>(std::floor(std::log10(length)));
        std::snprintf(buffer, sizeof buffer, "%.*f\xC3\x97" "10", digits,
                      length / std::pow(10.0, power));
        return PowerText{buffer, std::to_string(power)};
    }
    std::snprintf(buffer, sizeof buffer, "%.*f", digits, length);
    return PowerText{buffer, ""};
}

// What the layout reads from a ruler.
struct RulerInput
{
    int startX = 0;
    int startY = 0;
    int pixelWidth = 0;
    int height = 0;
    int tickHeight = 0;
    int blocks = 1;
    int windowWidth = 0;
    PowerText half;
    PowerText length;
    std::string unit;
};

struct RulerLayout
{
    // The blocks from the start; the even ones (0, 2, ...) inked.
    std::vector<Box> blocks;
    std::vector<Segment> ticks;
    std::vector<TextLine> labels;
};

constexpr int kRulerLabelSize = -2;

inline RulerLayout MakeRulerLayout(const RulerInput& in, const ITextMeasure& measure)
{
    RulerLayout layout;
    const double left = in.startX;
    const double bottom = in.startY;
    const double width = in.pixelWidth;
    const double height = in.height;
    const int blocks = std::max(in.blocks, 1);
    for (int k = 0; k < blocks; ++k)
    {
        layout.blocks.push_back(Box{left + width * k / blocks, bottom, width / blocks, height});
    }
    for (int k = 0; k <= blocks; ++k)
    {
        const double x = left + width * k / blocks;
        layout.ticks.push_back(Segment{x, bottom + height, x, bottom + height + in.tickHeight});
    }
    const double labelY = bottom + height + in.tickHeight + 4.0;
    TextLine label{left, labelY, "0", "", "", kRulerLabelSize};
    label.anchor = Anchor::Middle;
    label.halo = true;
    layout.labels.push_back(label);
    if (blocks == 4)
    {
        label.x = left + 0.5 * width;
        label.text = in.half.text;
        label.superscript = in.half.superscript;
        layout.labels.push_back(label);
    }
    label.text = in.length.text;
    label.superscript = in.length.superscript;
    label.tail = " " + in.unit;
    const bool fits = left + width + 0.5 * LineWidth(measure, label) <= in.windowWidth;
    label.x = fits ? left + width : in.windowWidth - 2.0;
    label.anchor = fits ? Anchor::Middle : Anchor::End;
    // On a short ruler the end's label gives no room to the others: the
    // half's goes first, then the start's.
    const Box end = TextBox(measure, label);
    if (layout.labels.size() == 2)
    {
        const Box half = TextBox(measure, layout.labels[1]);
        if (Overlaps(half, end) || Overlaps(half, TextBox(measure, layout.labels[0])))
        {
            layout.labels.pop_back();
        }
    }
    if (Overlaps(TextBox(measure, layout.labels[0]), end))
    {
        layout.labels.pop_back();
    }
    layout.labels.push_back(label);
    return layout;
}

// The ruler of a backend: the library's ruler with its layout. The backend
// adds only the drawing.
class CScaleRuler : public KesraEngine::CKesraRuler
{
public:
    // Draws into the frame that renderer, a renderer of the same backend, is
    // drawing, while the ruler is shown.
    virtual void Draw(KesraEngine::CKesraRenderer& renderer) = 0;

    // Drawn only while created, to be drawn and with a length.
    bool IsShown() const { return m_created != 0 && m_drawRuler != 0 && m_rulerPixelWidth > 0; }

    // The round length and the pixel width that stands for it.
    float GetRoundLength() const { return m_rulerLength; }
    int GetPixelWidth() const { return m_rulerPixelWidth; }
    int GetBlockCount() const { return m_blockCount; }

    // A length as the ruler writes it: the number, ending in "x10" when it
    // takes a power of ten, whose exponent goes to exponent (else empty).
    std::string FormatLength(double length, std::string& exponent) const
    {
        PowerText text = Text(length);
        exponent = std::move(text.superscript);
        return text.text;
    }

    RulerLayout Layout(const ITextMeasure& measure) const
    {
        RulerInput in;
        in.startX = m_startX;
        in.startY = m_startY;
        in.pixelWidth = m_rulerPixelWidth;
        in.height = m_rulerHeight;
        in.tickHeight = m_reducedHeight;
        in.blocks = m_blockCount;
        in.windowWidth = m_windowWidth;
        in.half = Text(0.5 * m_rulerLength);
        in.length = Text(m_rulerLength);
        in.unit = m_unit;
        return MakeRulerLayout(in, measure);
    }

    // The colour of the inked blocks, the outlines, ticks and labels.
    Color InkColor() const { return Opaque(m_textColor); }

protected:
    CScaleRuler() = default;

private:
    PowerText Text(double length) const
    {
        return LengthText(length, GetExponentialBase(0.0, length, m_labelFormat1) != 0,
                          m_labelFormat2);
    }
};

} // namespace KesraBackend
