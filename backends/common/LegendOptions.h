// The parts of the colour legend that only its options bring, alike in every
// backend (window pixels, y up, as in OverlayText.h):
// - On the log scale, the bar's block edges are equal steps of the
//   logarithm, as the colour map cuts them, and its labels and ticks stand
//   at the decades of a smooth bar or at the block edges of a banded one.
// - While the NaN, below-range or above-range colour is in use, a swatch of
//   it with its text stands in a row on a line of its own above the bar.
// Nothing here runs while no option is set, so that such a legend keeps its
// layout to the pixel (LegendLayout.h calls in only for an option).
#pragma once

#include "Engine/ScalarBar.h"
#include "common/OverlayText.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

namespace KesraBackend
{

// The ends of the log scale as the colour map places values between them:
// the colour-scale top, or 1 when it is not positive, and the minimum, or four
// decades below the top when the minimum is not positive.
struct LogScaleEnds
{
    double low = 0.0001;
    double high = 1.0;
};

inline LogScaleEnds MakeLogScaleEnds(double minimum, double scaleTop)
{
    LogScaleEnds ends;
    ends.high = scaleTop > 0.0 ? scaleTop : 1.0;
    ends.low = minimum > 0.0 ? minimum : ends.high * 0.0001;
    return ends;
}

// The value at position (0 at the low end, 1 at the high end) of the log
// scale. The ends come back exactly, so that the bar's ends name them.
inline double LogScaleValue(const LogScaleEnds& ends, double position)
{
    if (!(position > 0.0))
    {
        return ends.low;
    }
    if (position >= 1.0)
    {
        return ends.high;
    }
    const double low = std::log(ends.low);
    return std::exp(low + position * (std::log(ends.high) - low));
}

// The block edges of the log scale: edge k at k / blocks of it, where the
// colour map starts block k's colour. Fewer than one block: the low end alone.
inline std::vector<double> LogBlockEdges(const LogScaleEnds& ends, int blocks)
{
    const int n = std::max(blocks, 0);
    std::vector<double> edges;
    edges.reserve(static_cast<std::size_t>(n) + 1);
    for (int k = 0; k <= n; ++k)
    {
        edges.push_back(n > 0 ? LogScaleValue(ends, static_cast<double>(k) / n) : ends.low);
    }
    return edges;
}

// A labelled place on the bar: its share of the bar's length from the
// minimum's end and its text (a power of ten as "10" and the exponent raised).
struct LegendMark
{
    double along = 0.0;
    std::string text;
    std::string superscript;
};

// The marks of a log legend. Banded, one at each block edge (edges, from
// LogBlockEdges). Smooth, one at each decade within the scale; when fewer
// than two decades fall within, the scale's ends are marked as well, so that
// a bar never reads with a single number. While the bar uses a label option
// every text is the library's; otherwise a decade reads as a power of ten
// and any other value in the fewest digits that tell the marks apart.
inline std::vector<LegendMark> LogLegendMarks(const KesraEngine::CKesraScalarBar& bar,
                                              const LogScaleEnds& ends, bool banded,
                                              const std::vector<double>& edges)
{
    std::vector<double> values;
    std::vector<double> along;
    std::vector<bool> decade;
    if (banded)
    {
        const std::size_t n = edges.size() > 1 ? edges.size() - 1 : 1;
        for (std::size_t k = 0; k < edges.size(); ++k)
        {
            values.push_back(edges[k]);
            along.push_back(static_cast<double>(k) / static_cast<double>(n));
            decade.push_back(false);
        }
    }
    else
    {
        const std::vector<double> decades = bar.GetLogDecades();
        const bool withEnds = decades.size() < 2;
        if (withEnds && (decades.empty() || decades.front() != ends.low))
        {
            values.push_back(ends.low);
            along.push_back(0.0);
            decade.push_back(false);
        }
        for (const double value : decades)
        {
            values.push_back(value);
            along.push_back(std::clamp(bar.GetScalePosition(value), 0.0, 1.0));
            decade.push_back(true);
        }
        if (withEnds && (decades.empty() || decades.back() != ends.high))
        {
            values.push_back(ends.high);
            along.push_back(1.0);
            decade.push_back(false);
        }
    }
    const bool library = bar.UsesLabelOptions();
    const std::vector<std::string> texts =
        library ? bar.GetLabelTexts(values)
                : KesraEngine::CKesraScalarBar::FormatLabels(
                      values, KesraEngine::eLabelFormatAutomatic, 0, 0);
    std::vector<LegendMark> marks;
    for (std::size_t k = 0; k < values.size(); ++k)
    {
        LegendMark mark{along[k], texts[k], ""};
        if (!library && decade[k])
        {
            mark.text = "10";
            mark.superscript = std::to_string(static_cast<int>(std::lround(std::log10(values[k]))));
        }
        marks.push_back(mark);
    }
    return marks;
}

// Which marks at the pixel distances along (rising) from the bar's start
// show, so that shown ones stand at least needed pixels apart: each that
// keeps that distance from the last shown, and the last, before which a too
// near one gives way unless it is the first. The first always shows, and the
// last too unless it would stand too near the first, as the linear labels do.
inline std::vector<bool> ShownMarks(const std::vector<double>& along, double needed)
{
    std::vector<bool> shown(along.size(), false);
    if (along.empty())
    {
        return shown;
    }
    std::size_t last = 0;
    shown[0] = true;
    for (std::size_t k = 1; k < along.size(); ++k)
    {
        if (along[k] - along[last] >= needed)
        {
            shown[k] = true;
            last = k;
        }
    }
    const std::size_t end = along.size() - 1;
    if (!shown[end] && (last != 0 || along[end] - along[0] >= needed))
    {
        shown[last] = last == 0;
        shown[end] = true;
    }
    return shown;
}

// The swatches' kinds, in their order along the row: below, above, NaN, the
// way a horizontal bar runs from the minimum.
enum class SwatchKind
{
    Below,
    Above,
    NotANumber
};

struct LegendSwatch
{
    SwatchKind kind = SwatchKind::NotANumber;
    Box box;
    Color fill;
    TextLine label;
};

// The swatches a legend shows, each with its colour and text, not yet
// placed. Below and above while on and taking effect (fill all range and
// the single colour leave no value outside); NaN while on, and always on the
// log scale, whose values <= 0 take the NaN colour too.
inline std::vector<LegendSwatch> LegendSwatches(const KesraEngine::CKesraScalarBar& bar)
{
    std::vector<LegendSwatch> swatches;
    const bool outside = bar.GetFillAllRange() != 1 && bar.GetUseSignleColor() != 1;
    const auto add = [&swatches](SwatchKind kind, const char* text, unsigned char red,
                                 unsigned char green, unsigned char blue) {
        LegendSwatch swatch;
        swatch.kind = kind;
        swatch.fill = Color{red, green, blue, 255};
        swatch.label.text = text;
        swatches.push_back(swatch);
    };
    unsigned char red = 0;
    unsigned char green = 0;
    unsigned char blue = 0;
    if (outside && bar.GetUseBelowRangeColor() == 1)
    {
        bar.GetBelowRangeColor(red, green, blue);
        add(SwatchKind::Below, "below", red, green, blue);
    }
    if (outside && bar.GetUseAboveRangeColor() == 1)
    {
        bar.GetAboveRangeColor(red, green, blue);
        add(SwatchKind::Above, "above", red, green, blue);
    }
    const bool log = bar.GetLogScale() == 1;
    if (log || bar.GetUseNanColor() == 1)
    {
        bar.GetNanColor(red, green, blue);
        // Every font the backends carry has "<" but not the one-glyph sign.
        add(SwatchKind::NotANumber, log ? "NaN, <= 0" : "NaN", red, green, blue);
    }
    return swatches;
}

// Pixels between a swatch and its text, and after the text.
constexpr double kSwatchTextGap = 4.0;
constexpr double kSwatchSpacing = 12.0;

// Places swatches in a row from left on baseline: each a square a label line
// high, standing on the baseline, its text after it in the labels' size.
// Returns the row's width.
inline double PlaceSwatchRow(std::vector<LegendSwatch>& swatches, double left, double baseline,
                             int sizeChange, const ITextMeasure& measure)
{
    const double side = measure.TextHeight(sizeChange);
    double x = left;
    for (LegendSwatch& swatch : swatches)
    {
        swatch.box = Box{x, baseline, side, side};
        swatch.label.x = x + side + kSwatchTextGap;
        swatch.label.y = baseline;
        swatch.label.sizeChange = sizeChange;
        x = swatch.label.x + LineWidth(measure, swatch.label) + kSwatchSpacing;
    }
    return swatches.empty() ? 0.0 : x - kSwatchSpacing - left;
}

} // namespace KesraBackend
