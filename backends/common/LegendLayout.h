// The colour legend's layout, the same in every backend, and CLegendBar, the
// legend class the backends' legends derive from.
//
// The layout reads the library's two layout units (window pixels, y up):
// - direction 0, a vertical bar from 2 to 10 units x right of the start and
//   from 1.2 to 8.4 units y above it; the labels stand to its right, the note
//   below it.
// - otherwise a horizontal bar from 2 to 14 units x and from 1.6 to 2.6 units
//   y above the layout's base line; the labels stand below it and the note
//   below them.
// The bar is rounded to whole pixels, so that each pixel row (column) of a
// smooth bar stands for one value and edges fall on pixel borders. There are
// block number + 1 labels, at the block edges, thinned out where neighbours
// would touch (the two ends always show), each with a tick while show node is
// on. A label is value / 10^e with the second value-format number as its
// decimals, e = GetExponentialBase(minimum, maximum, first number); when e is
// not 0 the unit line ends in "x10" with e raised. While the host set a label
// format or scale, the labels are the library's texts instead, e is 0 and the
// host's power of ten follows the title. The unit line stands above
// the bar (half a line higher over a vertical bar, whose top label straddles
// its top edge) and the title line above that: each text has a line of its
// own, so none can run into another. Labels and unit are two pixels smaller than the
// renderer's font, the title is its size and bold, the note italic.
//
// In a window of known size everything stays inside it, measured with the
// backend's metrics: where the legend would reach past an edge, its bar
// shrinks along its length (which thins the labels out) and the legend
// moves away from edges across it; a title, unit or note wider than the
// window is cut short. A panel a few pixels larger
// than all of it lies behind, so that the texts read over any scene.
#pragma once

#include "Engine/ColorMap.h"
#include "Engine/Renderer.h"
#include "Engine/ScalarBar.h"
#include "common/LegendLabels.h"
#include "common/LegendOptions.h"
#include "common/OverlayText.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

namespace KesraBackend
{

// What the layout reads from a legend.
struct LegendInput
{
    bool vertical = true;
    int startX = 0;
    // The base line the bar stands on, window pixels.
    int bottom = 0;
    float unitX = 0.0f;
    float unitY = 0.0f;
    double minimum = 0.0;
    double maximum = 1.0;
    int blocks = 1;
    // The power of ten taken out of the labels, and their decimals.
    int exponent = 0;
    int decimals = 2;
    bool ticks = true;
    // The labels' texts, one per block edge, when the legend writes them
    // with a label option (LegendLabelTexts); empty: ScaledLabel of each.
    std::vector<std::string> labelTexts;
    std::string title;
    std::string unit;
    std::string note;
    // The window the legend stays inside, pixels; 0 leaves the layout where
    // the layout units put it.
    int windowWidth = 0;
    int windowHeight = 0;
    // What the options bring (LegendOptions.h; ApplyLegendOptions): on the
    // log scale its block edges and marks in place of the linear ones, and
    // the swatches to place. All empty while no option asks for them.
    bool logScale = false;
    std::vector<double> logEdges;
    std::vector<LegendMark> marks;
    std::vector<LegendSwatch> swatches;
};

struct LegendLayout
{
    bool vertical = true;
    Box bar;
    // The block edges from minimum to maximum; edge k lies at k / blocks of
    // the bar's length.
    std::vector<double> edges;
    std::vector<Segment> ticks;
    // Only the labels that show.
    std::vector<TextLine> labels;
    // An empty text is not drawn.
    TextLine unit;
    TextLine title;
    TextLine note;
    // Everything above with kLegendPadding around it, drawn first.
    Box panel;
    // The NaN, below- and above-range swatches with their texts, placed.
    std::vector<LegendSwatch> swatches;
};

constexpr int kLegendLabelSize = -2;
constexpr int kLegendTitleSize = 0;
// Pixels: the ticks' length, and the space between lines of text.
constexpr double kLegendTick = 5.0;
constexpr double kLegendGap = 6.0;
// Pixels: the panel beyond what it backs, and the panel to the window's edge.
constexpr double kLegendPadding = 4.0;
constexpr double kLegendMargin = 2.0;

// The bar's rectangle, in float as the layout units are, rounded to whole
// pixels and at least one pixel each way.
inline Box LegendBar(const LegendInput& in)
{
    const float startX = static_cast<float>(in.startX);
    const float base = static_cast<float>(in.bottom);
    const float left = std::round(startX + 2.0f * in.unitX);
    const float bottom = std::round(base + (in.vertical ? 1.2f : 1.6f) * in.unitY);
    const float width = std::round((in.vertical ? 8.0f : 12.0f) * in.unitX);
    const float height = std::round((in.vertical ? 7.2f : 1.0f) * in.unitY);
    return Box{left, bottom, std::max(width, 1.0f), std::max(height, 1.0f)};
}

// Which of the labels at n + 1 equally spaced edges, spacing pixels apart,
// show so that shown labels stand at least needed pixels apart: every step-th
// from the first, and the last. When the last is not a step-th, the step-th
// before it stands less than a step from it and gives way. The first always
// shows, and the last unless the whole length is too short for both.
inline std::vector<bool> ShownLabels(int n, double spacing, double needed)
{
    std::vector<bool> shown(static_cast<std::size_t>(std::max(n, 0)) + 1, false);
    int step = 1;
    if (spacing > 0.0 && spacing < needed)
    {
        step = static_cast<int>(std::ceil(needed / spacing));
    }
    int last = 0;
    for (int k = 0; k <= n; k += step)
    {
        shown[static_cast<std::size_t>(k)] = true;
        last = k;
    }
    if (last != n)
    {
        shown[static_cast<std::size_t>(last)] = last == 0;
        shown[static_cast<std::size_t>(n)] = spacing * n >= needed;
    }
    return shown;
}

// What the legend covers: bar, ticks and every text that is drawn.
inline Box LegendExtent(const LegendLayout& layout, const ITextMeasure& measure)
{
    Box extent = layout.bar;
    for (const Segment& tick : layout.ticks)
    {
        extent = Union(extent, Box{std::min(tick.x0, tick.x1), std::min(tick.y0, tick.y1),
                                   std::fabs(tick.x1 - tick.x0), std::fabs(tick.y1 - tick.y0)});
    }
    for (const TextLine& label : layout.labels)
    {
        extent = Union(extent, TextBox(measure, label));
    }
    for (const TextLine* line : {&layout.unit, &layout.title, &layout.note})
    {
        if (!line->text.empty() || !line->superscript.empty())
        {
            extent = Union(extent, TextBox(measure, *line));
        }
    }
    for (const LegendSwatch& swatch : layout.swatches)
    {
        extent = Union(Union(extent, swatch.box), TextBox(measure, swatch.label));
    }
    return extent;
}

inline void ApplyLegendOptions(LegendLayout& layout, const LegendInput& in, const ITextMeasure& measure);

// The legend laid out around a bar already placed.
inline LegendLayout LegendAroundBar(const LegendInput& in, const Box& placedBar, const ITextMeasure& measure)
{
    LegendLayout layout;
    layout.vertical = in.vertical;
    layout.bar = placedBar;
    layout.edges = KesraEngine::ColorBlockEdges(in.minimum, in.maximum, in.blocks);
    const Box& bar = layout.bar;
    const int n = static_cast<int>(layout.edges.size()) - 1;
    const double h = measure.TextHeight(kLegendLabelSize);
    std::vector<std::string> texts;
    double widest = 0.0;
    const bool given = in.labelTexts.size() == layout.edges.size();
    for (std::size_t k = 0; k < layout.edges.size(); ++k)
    {
        texts.push_back(given ? in.labelTexts[k]
                              : ScaledLabel(layout.edges[k], in.exponent, in.decimals));
        widest = std::max(widest, measure.TextWidth(texts.back(), kLegendLabelSize));
    }
    const double length = in.vertical ? bar.height : bar.width;
    const double needed = in.vertical ? h + 4.0 : widest + 10.0;
    // A legend with no block (a block number below one, which only a derived
    // class can set) has a single edge: its label stands at the bar's start.
    const double spacing = n > 0 ? length / n : length;
    const std::vector<bool> shown = ShownLabels(n, spacing, needed);
    // Below a horizontal bar: the labels' baseline, under their ticks.
    const double labelBaseline = bar.bottom - kLegendTick - 2.0 - h;
    for (int k = 0; k <= n; ++k)
    {
        const double along = n > 0 ? static_cast<double>(k) / n * length : 0.0;
        TextLine label;
        label.sizeChange = kLegendLabelSize;
        label.text = texts[static_cast<std::size_t>(k)];
        if (in.vertical)
        {
            const double x = bar.left + bar.width;
            const double y = bar.bottom + along;
            layout.ticks.push_back(Segment{x, y, x + kLegendTick, y});
            label.x = x + kLegendTick + 4.0;
            // Centred on the edge: the middle of a digit's height.
            label.y = y - 0.35 * h;
        }
        else
        {
            const double x = bar.left + along;
            layout.ticks.push_back(Segment{x, bar.bottom, x, bar.bottom - kLegendTick});
            label.x = x;
            label.y = labelBaseline;
            label.anchor = Anchor::Middle;
        }
        if (shown[static_cast<std::size_t>(k)])
        {
            layout.labels.push_back(label);
        }
    }
    if (!in.ticks)
    {
        layout.ticks.clear();
    }

    // A vertical bar's top label is centred on the bar's top edge, half of it
    // above the bar: the unit line stands half a line higher there.
    const double unitY = bar.bottom + bar.height + kLegendGap + 4.0 + (in.vertical ? 0.5 * h : 0.0);
    layout.unit = TextLine{bar.left, unitY, in.unit, "", "", kLegendLabelSize};
    if (in.exponent != 0)
    {
        layout.unit.text = (in.unit.empty() ? std::string() : in.unit + " ") + "\xC3\x97" "10";
        layout.unit.superscript = std::to_string(in.exponent);
    }
    layout.title = TextLine{bar.left, unitY + h + kLegendGap, in.title, "", "", kLegendTitleSize, true};
    // Under the lowest label's descenders too: a vertical bar's first label
    // reaches below the bar.
    const double lowest = in.vertical ? bar.bottom : labelBaseline;
    const double lowestLabel = (in.vertical ? bar.bottom - 0.35 * h : labelBaseline) - kDescentShare * h;
    const double noteTop = std::min(lowest, lowestLabel + kLegendGap);
    layout.note = TextLine{bar.left, noteTop - kLegendGap - h, in.note, "", "", kLegendLabelSize,
                           false, true};
    // The options' marks and swatches before the panel, so that the fit to
    // the window makes room for them too.
    ApplyLegendOptions(layout, in, measure);
    layout.panel = LegendExtent(layout, measure);
    layout.panel.left -= kLegendPadding;
    layout.panel.bottom -= kLegendPadding;
    layout.panel.width += 2.0 * kLegendPadding;
    layout.panel.height += 2.0 * kLegendPadding;
    return layout;
}

// Moves start away from the edge that the extent passes (over past the far
// one, under short of the near one), as far as the other side has room
// unless anyway is set, the near edge first; both are updated.
inline void MoveSpan(double& start, double& over, double& under, bool anyway)
{
    double move = 0.0;
    if (under > 0.0)
    {
        move = std::ceil(anyway ? under : std::min(under, std::max(-over, 0.0)));
    }
    else if (over > 0.0)
    {
        move = -std::ceil(anyway ? over : std::min(over, -under));
    }
    start += move;
    over += move;
    under -= move;
}

// Fits the span from start, length long, so that the extent from low to
// high that goes with it lies between min and max. Along the bar (shrink
// set) the span gives up from its far end what passes max and from its near
// end what falls short of min, down to a pixel; where texts that hang on
// its start (a horizontal bar's title, unit and note) may pass the far edge
// too (moveFirst), it first moves into what room there is. What that cannot
// take is a move. Whole pixels, so that the bar stays on pixel borders.
inline void FitSpan(double& start, double& length, double low, double high, double min, double max,
                    bool shrink, bool moveFirst)
{
    double over = high - max;
    double under = min - low;
    if (moveFirst)
    {
        MoveSpan(start, over, under, false);
    }
    if (shrink)
    {
        const double cutFar = std::min(std::ceil(std::max(over, 0.0)), length - 1.0);
        length -= cutFar;
        over -= cutFar;
        const double cutNear = std::min(std::ceil(std::max(under, 0.0)), length - 1.0);
        start += cutNear;
        length -= cutNear;
        under -= cutNear;
    }
    MoveSpan(start, over, under, true);
}

inline LegendLayout MakeLegendLayout(const LegendInput& given, const ITextMeasure& measure)
{
    LegendInput in = given;
    if (in.windowWidth <= 0 || in.windowHeight <= 0)
    {
        return LegendAroundBar(in, LegendBar(in), measure);
    }
    const double inset = kLegendPadding + kLegendMargin;
    const double right = in.windowWidth - inset;
    const double top = in.windowHeight - inset;
    const double room = right - inset;
    in.title = ElidedText(measure, in.title, kLegendTitleSize, room);
    in.note = ElidedText(measure, in.note, kLegendLabelSize, room);
    if (in.exponent == 0)
    {
        in.unit = ElidedText(measure, in.unit, kLegendLabelSize, room);
    }
    Box bar = LegendBar(in);
    LegendLayout layout = LegendAroundBar(in, bar, measure);
    // A move changes the extent by as much; a shrink may thin the labels out
    // and needs another look.
    for (int pass = 0; pass < 4; ++pass)
    {
        const Box& extent = layout.panel;
        const double low = extent.left + kLegendPadding;
        const double bottom = extent.bottom + kLegendPadding;
        const double high = low + extent.width - 2.0 * kLegendPadding;
        const double up = bottom + extent.height - 2.0 * kLegendPadding;
        if (low >= inset && bottom >= inset && high <= right && up <= top)
        {
            break;
        }
        FitSpan(bar.left, bar.width, low, high, inset, right, !in.vertical, !in.vertical);
        FitSpan(bar.bottom, bar.height, bottom, up, inset, top, in.vertical, false);
        layout = LegendAroundBar(in, bar, measure);
    }
    // The title, unit and note start where the bar does, which the first
    // label may have pushed in from the edge: they are cut again to the room
    // that is left from there.
    const double textRoom = right - bar.left;
    if (textRoom < room)
    {
        in.title = ElidedText(measure, in.title, kLegendTitleSize, textRoom);
        in.note = ElidedText(measure, in.note, kLegendLabelSize, textRoom);
        if (in.exponent == 0)
        {
            in.unit = ElidedText(measure, in.unit, kLegendLabelSize, textRoom);
        }
        layout = LegendAroundBar(in, bar, measure);
    }
    return layout;
}

// The options' parts on top of the layout that MakeLegendLayout made of in.
// On the log scale, the block edges and the labels and ticks are the log
// scale's (thinned out as the linear ones are). Swatches take a line of their
// own where the unit line stood; the unit and the title move up a line.
inline void ApplyLegendOptions(LegendLayout& layout, const LegendInput& in,
                               const ITextMeasure& measure)
{
    const Box& bar = layout.bar;
    const double h = measure.TextHeight(kLegendLabelSize);
    if (in.logScale)
    {
        layout.edges = in.logEdges;
        layout.ticks.clear();
        layout.labels.clear();
        const double length = in.vertical ? bar.height : bar.width;
        std::vector<double> along;
        double widest = 0.0;
        for (const LegendMark& mark : in.marks)
        {
            along.push_back(mark.along * length);
            widest = std::max(widest, LineWidth(measure, TextLine{0.0, 0.0, mark.text,
                                                                  mark.superscript, "",
                                                                  kLegendLabelSize}));
        }
        const std::vector<bool> shown = ShownMarks(along, in.vertical ? h + 4.0 : widest + 10.0);
        for (std::size_t k = 0; k < in.marks.size(); ++k)
        {
            TextLine label{0.0, 0.0, in.marks[k].text, in.marks[k].superscript, "",
                           kLegendLabelSize};
            if (in.vertical)
            {
                const double x = bar.left + bar.width;
                const double y = bar.bottom + along[k];
                layout.ticks.push_back(Segment{x, y, x + kLegendTick, y});
                label.x = x + kLegendTick + 4.0;
                label.y = y - 0.35 * h;
            }
            else
            {
                const double x = bar.left + along[k];
                layout.ticks.push_back(Segment{x, bar.bottom, x, bar.bottom - kLegendTick});
                label.x = x;
                label.y = bar.bottom - kLegendTick - 2.0 - h;
                label.anchor = Anchor::Middle;
            }
            if (shown[k])
            {
                layout.labels.push_back(label);
            }
        }
        if (!in.ticks)
        {
            layout.ticks.clear();
        }
    }
    if (!in.swatches.empty())
    {
        layout.swatches = in.swatches;
        PlaceSwatchRow(layout.swatches, bar.left, layout.unit.y, kLegendLabelSize, measure);
        layout.unit.y += h + kLegendGap;
        layout.title.y += h + kLegendGap;
    }
}

// The legend of a backend: the library's legend with its layout. The backend
// adds only the drawing.
class CLegendBar : public KesraEngine::CKesraScalarBar
{
public:
    // Draws, over its panel, into the frame that renderer, a renderer of the same backend, is
    // drawing, while the legend is shown; then clears the modified flag.
    virtual void Draw(KesraEngine::CKesraRenderer& renderer) = 0;

    // Drawn only while created and visible.
    bool IsShown() const { return m_created != 0 && m_visibility != 0; }

    // The bar's lower-left corner and size in window pixels.
    void BarRect(float& left, float& bottom, float& width, float& height) const
    {
        const Box bar = LegendBar(Input());
        left = static_cast<float>(bar.left);
        bottom = static_cast<float>(bar.bottom);
        width = static_cast<float>(bar.width);
        height = static_cast<float>(bar.height);
    }

    // The power of ten that the labels are written with.
    int LabelExponent() const { return GetExponentialBase(m_minValue, m_maxValue, m_valueFormat1); }
    // A label as the legend writes it, for a value and the power of ten.
    std::string FormatLabel(double value, int exponent) const
    {
        return ScaledLabel(value, exponent, m_valueFormat2);
    }

    LegendLayout Layout(const ITextMeasure& measure) const
    {
        const LegendInput in = Input();
        LegendLayout layout = MakeLegendLayout(in, measure);
        return layout;
    }

    // The value that the bar shows at share along of its length from the
    // minimum's end: linear from the minimum to the maximum, or on the log
    // scale between its ends.
    double BarValue(double along) const
    {
        if (m_logScale != 0)
        {
            return LogScaleValue(MakeLogScaleEnds(m_minValue, m_colorScaleTop), along);
        }
        return m_minValue + along * (m_maxValue - m_minValue);
    }

    // The panel behind the legend: the opposite of the text colour, three
    // quarters opaque, so that the texts read over any scene while the
    // scene still shows through.
    Color PanelColor(const Color& background) const
    {
        const Color paper = ContrastingTextColor(TextColor(background));
        return Color{paper.red, paper.green, paper.blue, 192};
    }

    // The colour of texts, ticks and outline: the one that reads best on the
    // background with auto text colour, else the legend's own.
    Color TextColor(const Color& background) const
    {
        return m_autoTextColor != 0 ? ContrastingTextColor(background) : Opaque(m_color);
    }

protected:
    CLegendBar() = default;

    LegendInput Input() const
    {
        LegendInput in;
        in.vertical = m_direction == 0;
        in.startX = m_startX;
        in.bottom = GetLayoutBottom();
        in.unitX = m_equalPartX;
        in.unitY = m_equalPartY;
        in.minimum = m_minValue;
        in.maximum = m_maxValue;
        in.blocks = m_blockNum;
        in.exponent = LabelExponent();
        in.decimals = m_valueFormat2;
        in.ticks = m_showNode != 0;
        in.title = m_title;
        in.unit = m_unit;
        in.note = m_note;
        if (UsesLabelOptions())
        {
            // The host's power of ten stands after the title; no other.
            in.exponent = 0;
            in.title = GetScaledTitle();
            in.labelTexts = LegendLabelTexts(*this, KesraEngine::ColorBlockEdges(
                                                        m_minValue, m_maxValue, m_blockNum),
                                             0, m_valueFormat2);
        }
        in.windowWidth = m_windowWidth;
        in.windowHeight = m_windowHeight;
        if (m_logScale != 0)
        {
            const LogScaleEnds ends = MakeLogScaleEnds(m_minValue, m_colorScaleTop);
            in.logScale = true;
            in.logEdges = LogBlockEdges(ends, m_blockNum);
            in.marks = LogLegendMarks(*this, ends, m_banded != 0, in.logEdges);
        }
        in.swatches = LegendSwatches(*this);
        return in;
    }
};

} // namespace KesraBackend
