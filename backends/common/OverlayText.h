// What every backend's overlays are made of before they are drawn: lines of
// text, segments and boxes placed in window pixels (x to the right, y up from
// the bottom edge, a text's baseline at its y), the text sizes and colours
// they are drawn in, and how a backend measures its texts. The layouts beside
// this header place these with one rule for all backends; each backend turns
// them into its own primitives.
#pragma once

#include "Engine/Font.h"
#include "MathKit/GenColor.h"

#include <algorithm>
#include <string>

namespace KesraBackend
{

using Color = KesraMathKit::TKesraGenColor<unsigned char>;

// Where a text stands relative to its position: starting, centred or ending
// there.
enum class Anchor
{
    Start,
    Middle,
    End
};

// One line of text. A superscript (the exponent of a power of ten) is raised
// after text, and tail follows it back on the baseline. The size is the
// renderer's font size changed by sizeChange pixels; bold and italic add to
// the font's own style.
struct TextLine
{
    double x = 0.0;
    double y = 0.0;
    std::string text;
    std::string superscript;
    std::string tail;
    int sizeChange = 0;
    bool bold = false;
    bool italic = false;
    Anchor anchor = Anchor::Start;
    // Drawn over a halo in the colour opposite to its own (HaloColor), for
    // a text that stands over the scene with no panel behind it.
    bool halo = false;
};

// A straight line from (x0, y0) to (x1, y1).
struct Segment
{
    double x0 = 0.0;
    double y0 = 0.0;
    double x1 = 0.0;
    double y1 = 0.0;
};

// A rectangle by its lower-left corner and its size.
struct Box
{
    double left = 0.0;
    double bottom = 0.0;
    double width = 0.0;
    double height = 0.0;
};

// How a backend's texts measure, for the layouts that keep texts apart or
// inside the window. Both at the renderer's font size changed by sizeChange.
class ITextMeasure
{
public:
    // The advance of text in pixels.
    virtual double TextWidth(const std::string& text, int sizeChange) const = 0;
    // How far a line rises above its baseline; lines are spaced by it.
    virtual double TextHeight(int sizeChange) const = 0;

protected:
    ~ITextMeasure() = default;
};

// A superscript is drawn at this share of the line's size, raised by
// kSuperscriptRaise of it.
constexpr double kSuperscriptScale = 0.75;
constexpr double kSuperscriptRaise = 0.4;

// The width of a whole line: text, superscript at its smaller size, tail.
inline double LineWidth(const ITextMeasure& measure, const TextLine& line)
{
    return measure.TextWidth(line.text, line.sizeChange)
           + kSuperscriptScale * measure.TextWidth(line.superscript, line.sizeChange)
           + measure.TextWidth(line.tail, line.sizeChange);
}

// The pixel size of an overlay text: the font's size (14 without a font, and
// for a size no viewer can show, outside 1 ... 400) changed by sizeChange,
// kept within 4 ... 400 so that a small font still gives legible labels.
inline int TextSize(const KesraEngine::CKesraFont* font, int sizeChange)
{
    const int size = font != nullptr ? font->GetSize() : 14;
    const int usable = (size >= 1 && size <= 400) ? size : 14;
    return std::clamp(usable + sizeChange, 4, 400);
}

// How far below its baseline a line's descenders reach, as a share of the
// line's height.
constexpr double kDescentShare = 0.25;

// The box a line of text covers: its width placed by its anchor, from its
// descenders up to its height, or to the top of a raised superscript.
inline Box TextBox(const ITextMeasure& measure, const TextLine& line)
{
    const double width = LineWidth(measure, line);
    const double h = measure.TextHeight(line.sizeChange);
    const double shift = line.anchor == Anchor::Start    ? 0.0
                         : line.anchor == Anchor::Middle ? 0.5 * width
                                                         : width;
    const double rise = line.superscript.empty() ? 1.0 : kSuperscriptRaise + kSuperscriptScale;
    return Box{line.x - shift, line.y - kDescentShare * h, width, (kDescentShare + std::max(rise, 1.0)) * h};
}

// The smallest box holding both.
inline Box Union(const Box& a, const Box& b)
{
    const double left = std::min(a.left, b.left);
    const double bottom = std::min(a.bottom, b.bottom);
    const double right = std::max(a.left + a.width, b.left + b.width);
    const double top = std::max(a.bottom + a.height, b.bottom + b.height);
    return Box{left, bottom, right - left, top - bottom};
}

// True when the boxes share more than an edge.
inline bool Overlaps(const Box& a, const Box& b)
{
    return a.left < b.left + b.width && b.left < a.left + a.width && a.bottom < b.bottom + b.height
           && b.bottom < a.bottom + a.height;
}

// text cut short with three dots so that it measures at most maxWidth at
// the size; whole when it fits. UTF-8 sequences are never cut apart.
inline std::string ElidedText(const ITextMeasure& measure, const std::string& text, int sizeChange,
                              double maxWidth)
{
    if (measure.TextWidth(text, sizeChange) <= maxWidth)
    {
        return text;
    }
    const std::string ellipsis = "...";
    std::string kept = text;
    while (!kept.empty() && measure.TextWidth(kept + ellipsis, sizeChange) > maxWidth)
    {
        // The last character goes whole: its continuation bytes, then its
        // first byte.
        while (!kept.empty() && (static_cast<unsigned char>(kept.back()) & 0xC0u) == 0x80u)
        {
            kept.pop_back();
        }
        if (!kept.empty())
        {
            kept.pop_back();
        }
    }
    return kept.empty() ? std::string() : kept + ellipsis;
}

// Black on a light background and white on a dark one: the most contrast,
// switching at the middle of the luminance range.
inline Color ContrastingTextColor(const Color& background)
{
    const double luminance =
        0.299 * background.red + 0.587 * background.green + 0.114 * background.blue;
    return luminance >= 128.0 ? Color{0, 0, 0, 255} : Color{255, 255, 255, 255};
}

// The halo around a text in color: the colour that contrasts with it, not
// quite opaque, so that the text reads over any scene.
inline Color HaloColor(const Color& color)
{
    const Color halo = ContrastingTextColor(color);
    return Color{halo.red, halo.green, halo.blue, 160};
}

// The opposite of the text colour on that background: the paper a drawing in
// the text colour stands on.
inline Color PaperColor(const Color& background)
{
    const Color text = ContrastingTextColor(background);
    return text.red == 0 ? Color{255, 255, 255, 255} : Color{0, 0, 0, 255};
}

// The colour byte-for-byte opaque, for backends that draw alpha.
inline Color Opaque(const Color& color)
{
    return Color{color.red, color.green, color.blue, 255};
}

} // namespace KesraBackend
