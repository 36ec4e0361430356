#include "svg/SvgScalarBar.h"

#include "common/LegendLabels.h"
#include "svg/SvgRenderer.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace KesraSvg
{

namespace
{

// Smooth bars get this many gradient stops per palette segment, each in the
// exact colour of its value, so the gradient follows the byte truncation.
constexpr int kStopsPerSegment = 8;
// Pixels: the ticks at the labels, and the space between lines of text.
constexpr double kTick = 5.0;
constexpr double kGap = 6.0;

// 17 significant digits give the double back exactly when read.
std::string ExactNumber(double value)
{
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%.17g", value);
    return buffer;
}

// Which of the labels at n + 1 equally spaced edges to show, so that shown
// labels are at least needed pixels apart; the two ends are always shown.
std::vector<bool> ShownLabels(int n, double spacing, double needed)
{
    std::vector<bool> shown(static_cast<std::size_t>(n) + 1, false);
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
        // The end label wins over a neighbour that would touch it.
        if (last > 0 && (n - last) * spacing < needed)
        {
            shown[static_cast<std::size_t>(last)] = false;
        }
        shown[static_cast<std::size_t>(n)] = true;
    }
    return shown;
}

} // namespace

struct CSvgScalarBar::Layout
{
    bool vertical;
    double left;   // the bar's lower-left corner and size, window pixels, y up
    double bottom;
    double width;
    double height;
    TextStyle text;
    Color lineColor;
};

double CSvgScalarBar::LabelBaseline(const Layout& layout)
{
    return layout.bottom - kTick - 2.0 - layout.text.size;
}

void CSvgScalarBar::Draw(CSvgRenderer& renderer)
{
    CSvgCanvas* canvas = renderer.GetCanvas();
    if (canvas == nullptr || m_created == 0 || m_visibility == 0)
    {
        return;
    }
    const Layout layout = MakeLayout(renderer);
    canvas->BeginGroup("legend");
    DrawBar(renderer, layout);
    DrawLabels(renderer, layout);
    DrawTexts(renderer, layout);
    canvas->EndGroup();
    m_modified = 0;
}

int CSvgScalarBar::LabelExponent() const
{
    return GetExponentialBase(m_minValue, m_maxValue, m_valueFormat1);
}

std::string CSvgScalarBar::FormatLabel(double value, int exponent) const
{
    return KesraBackend::ScaledLabel(value, exponent, m_valueFormat2);
}

CSvgScalarBar::Layout CSvgScalarBar::MakeLayout(const CSvgRenderer& renderer) const
{
    Layout layout{};
    layout.vertical = m_direction == 0;
    const double unitX = m_equalPartX;
    const double unitY = m_equalPartY;
    if (layout.vertical)
    {
        layout.left = m_startX + 2.0 * unitX;
        layout.bottom = m_startY + 1.2 * unitY;
        layout.width = 8.0 * unitX;
        layout.height = 7.2 * unitY;
    }
    else
    {
        const double baseY = std::max(m_startY, 25);
        layout.left = m_startX + 2.0 * unitX;
        layout.bottom = baseY + 1.6 * unitY;
        layout.width = 12.0 * unitX;
        layout.height = 1.0 * unitY;
    }
    const Color color = m_autoTextColor != 0 ? renderer.ContrastingTextColor()
                                             : Color{m_color.red, m_color.green, m_color.blue, 255};
    layout.text = renderer.GetTextStyle(-1, color);
    layout.lineColor = color;
    return layout;
}

std::vector<double> CSvgScalarBar::Edges() const
{
    return KesraBackend::BlockEdges(m_minValue, m_maxValue, m_blockNum);
}

void CSvgScalarBar::DrawBar(CSvgRenderer& renderer, const Layout& layout) const
{
    CSvgCanvas& canvas = *renderer.GetCanvas();
    CSvgWriter& svg = canvas.Writer();
    const double lineWidth = m_colorBlockLineWidth;
    unsigned char red = 0;
    unsigned char green = 0;
    unsigned char blue = 0;
    if (m_banded != 0)
    {
        const std::vector<double> edges = Edges();
        const int n = static_cast<int>(edges.size()) - 1;
        canvas.BeginGroup("swatches");
        svg.Attribute("shape-rendering", renderer.FaceRendering());
        for (int k = 0; k < n; ++k)
        {
            const double value = 0.5 * (edges[static_cast<std::size_t>(k)]
                                         + edges[static_cast<std::size_t>(k) + 1]);
            GetOpenGLColor(red, green, blue, value);
            const double from = static_cast<double>(k) / n;
            const double to = static_cast<double>(k + 1) / n;
            svg.Open("rect");
            if (layout.vertical)
            {
                svg.Attribute("x", layout.left, 2);
                svg.Attribute("y", canvas.SvgY(layout.bottom + to * layout.height), 2);
                svg.Attribute("width", layout.width, 2);
                svg.Attribute("height", (to - from) * layout.height, 2);
            }
            else
            {
                svg.Attribute("x", layout.left + from * layout.width, 2);
                svg.Attribute("y", canvas.SvgY(layout.bottom + layout.height), 2);
                svg.Attribute("width", (to - from) * layout.width, 2);
                svg.Attribute("height", layout.height, 2);
            }
            svg.Attribute("fill", HexColor(red, green, blue));
            svg.Attribute("stroke", HexColor(layout.lineColor.red, layout.lineColor.green,
                                             layout.lineColor.blue));
            svg.Attribute("stroke-width", lineWidth, 2);
            svg.Attribute("data-value", ExactNumber(value));
            svg.Close();
        }
        canvas.EndGroup();
        return;
    }
    const std::string id = canvas.NewId("legend");
    svg.Open("defs");
    svg.Open("linearGradient");
    svg.Attribute("id", id);
    svg.Attribute("x1", "0");
    svg.Attribute("y1", layout.vertical ? "1" : "0");
    svg.Attribute("x2", layout.vertical ? "0" : "1");
    svg.Attribute("y2", "0");
    const int stops = 4 * kStopsPerSegment;
    for (int k = 0; k <= stops; ++k)
    {
        const double t = static_cast<double>(k) / stops;
        const double value = k == stops ? m_maxValue : m_minValue + t * (m_maxValue - m_minValue);
        GetOpenGLColor(red, green, blue, value);
        svg.Open("stop");
        svg.Attribute("offset", t, 4);
        svg.Attribute("stop-color", HexColor(red, green, blue));
        svg.Attribute("data-value", ExactNumber(value));
        svg.Close();
    }
    svg.Close();
    svg.Close();
    canvas.Rect(layout.left, layout.bottom, layout.width, layout.height, "url(#" + id + ")",
                layout.lineColor, lineWidth);
}

void CSvgScalarBar::DrawLabels(CSvgRenderer& renderer, const Layout& layout) const
{
    CSvgCanvas& canvas = *renderer.GetCanvas();
    const std::vector<double> edges = Edges();
    const int n = static_cast<int>(edges.size()) - 1;
    const int exponent = LabelExponent();
    std::vector<std::string> labels;
    double widest = 0.0;
    for (const double edge : edges)
    {
        labels.push_back(FormatLabel(edge, exponent));
        widest = std::max(widest, EstimateTextWidth(labels.back(), layout.text.size));
    }
    const double length = layout.vertical ? layout.height : layout.width;
    const double needed = layout.vertical ? layout.text.size + 4.0 : widest + 10.0;
    const std::vector<bool> shown = ShownLabels(n, length / n, needed);
    canvas.BeginGroup("labels");
    for (int k = 0; k <= n; ++k)
    {
        const double along = static_cast<double>(k) / n * length;
        if (layout.vertical)
        {
            const double x = layout.left + layout.width;
            const double y = layout.bottom + along;
            if (m_showNode != 0)
            {
                canvas.Line(x, y, x + kTick, y, layout.lineColor, 1.0);
            }
            if (shown[static_cast<std::size_t>(k)])
            {
                canvas.Text(x + kTick + 4.0, y - 0.35 * layout.text.size,
                            labels[static_cast<std::size_t>(k)], layout.text, Anchor::Start);
            }
        }
        else
        {
            const double x = layout.left + along;
            const double y = layout.bottom;
            if (m_showNode != 0)
            {
                canvas.Line(x, y, x, y - kTick, layout.lineColor, 1.0);
            }
            if (shown[static_cast<std::size_t>(k)])
            {
                canvas.Text(x, LabelBaseline(layout), labels[static_cast<std::size_t>(k)],
                            layout.text, Anchor::Middle);
            }
        }
    }
    canvas.EndGroup();
}

void CSvgScalarBar::DrawTexts(CSvgRenderer& renderer, const Layout& layout) const
{
    CSvgCanvas& canvas = *renderer.GetCanvas();
    TextStyle titleStyle = layout.text;
    titleStyle.size += 2;
    titleStyle.bold = true;
    const int exponent = LabelExponent();
    // Lines of their own, so that no text can run into another: the unit
    // line above the bar, the title above it, the note below the bar or,
    // when the labels stand below it, below them.
    const double unitY = layout.bottom + layout.height + kGap + 4.0;
    const double titleY = unitY + layout.text.size + kGap;
    if (!m_title.empty())
    {
        canvas.Text(layout.left, titleY, m_title, titleStyle, Anchor::Start);
    }
    if (exponent != 0)
    {
        const std::string unit = m_unit.empty() ? std::string() : m_unit + " ";
        canvas.Text(layout.left, unitY, unit + "\xC3\x97" "10", layout.text, Anchor::Start,
                    std::to_string(exponent));
    }
    else if (!m_unit.empty())
    {
        canvas.Text(layout.left, unitY, m_unit, layout.text, Anchor::Start);
    }
    if (!m_note.empty())
    {
        TextStyle noteStyle = layout.text;
        noteStyle.italic = true;
        const double top = layout.vertical ? layout.bottom : LabelBaseline(layout);
        canvas.Text(layout.left, top - kGap - layout.text.size, m_note, noteStyle, Anchor::Start);
    }
}

} // namespace KesraSvg
