#include "svg/SvgScalarBar.h"

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

// 17 significant digits give the double back exactly when read.
std::string ExactNumber(double value)
{
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%.17g", value);
    return buffer;
}

const char* SwatchKindName(KesraBackend::SwatchKind kind)
{
    switch (kind)
    {
    case KesraBackend::SwatchKind::Below: return "below";
    case KesraBackend::SwatchKind::Above: return "above";
    case KesraBackend::SwatchKind::NotANumber: break;
    }
    return "nan";
}

} // namespace

void CSvgScalarBar::Draw(KesraEngine::CKesraRenderer& target)
{
    auto* svg = dynamic_cast<CSvgRenderer*>(&target);
    CSvgCanvas* canvas = svg != nullptr ? svg->GetCanvas() : nullptr;
    if (canvas == nullptr || !IsShown())
    {
        return;
    }
    CSvgRenderer& renderer = *svg;
    const KesraBackend::LegendLayout layout = Layout(renderer);
    const Color color = TextColor(renderer.GetBackgroundColor());
    canvas->BeginGroup("legend");
    const Color panel = PanelColor(renderer.GetBackgroundColor());
    canvas->BeginGroup("panel");
    canvas->Writer().Attribute("fill-opacity", panel.alpha / 255.0, 2);
    canvas->Rect(layout.panel.left, layout.panel.bottom, layout.panel.width, layout.panel.height,
                 HexColor(panel.red, panel.green, panel.blue), panel, 0.0);
    canvas->EndGroup();
    DrawBar(renderer, layout, color);
    canvas->BeginGroup("labels");
    for (const KesraBackend::Segment& tick : layout.ticks)
    {
        canvas->Line(tick.x0, tick.y0, tick.x1, tick.y1, color, 1.0);
    }
    for (const KesraBackend::TextLine& label : layout.labels)
    {
        renderer.DrawText(label, color);
    }
    canvas->EndGroup();
    renderer.DrawText(layout.title, color);
    renderer.DrawText(layout.unit, color);
    renderer.DrawText(layout.note, color);
    DrawSwatches(renderer, layout, color);
    canvas->EndGroup();
    m_modified = 0;
}

void CSvgScalarBar::DrawBar(CSvgRenderer& renderer, const KesraBackend::LegendLayout& layout,
                            const Color& line) const
{
    const KesraBackend::Box& bar = layout.bar;
    CSvgCanvas& canvas = *renderer.GetCanvas();
    CSvgWriter& svg = canvas.Writer();
    const double lineWidth = m_colorBlockLineWidth;
    unsigned char red = 0;
    unsigned char green = 0;
    unsigned char blue = 0;
    if (m_banded != 0)
    {
        const std::vector<double>& edges = layout.edges;
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
                svg.Attribute("x", bar.left, 2);
                svg.Attribute("y", canvas.SvgY(bar.bottom + to * bar.height), 2);
                svg.Attribute("width", bar.width, 2);
                svg.Attribute("height", (to - from) * bar.height, 2);
            }
            else
            {
                svg.Attribute("x", bar.left + from * bar.width, 2);
                svg.Attribute("y", canvas.SvgY(bar.bottom + bar.height), 2);
                svg.Attribute("width", (to - from) * bar.width, 2);
                svg.Attribute("height", bar.height, 2);
            }
            svg.Attribute("fill", HexColor(red, green, blue));
            svg.Attribute("stroke", HexColor(line.red, line.green, line.blue));
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
    const int stops = GradientStops();
    for (int k = 0; k <= stops; ++k)
    {
        const double t = static_cast<double>(k) / stops;
        const double value = k == stops && m_logScale == 0 ? m_maxValue : BarValue(t);
        GetOpenGLColor(red, green, blue, value);
        svg.Open("stop");
        svg.Attribute("offset", t, 4);
        svg.Attribute("stop-color", HexColor(red, green, blue));
        svg.Attribute("data-value", ExactNumber(value));
        svg.Close();
    }
    svg.Close();
    svg.Close();
    canvas.Rect(bar.left, bar.bottom, bar.width, bar.height, "url(#" + id + ")", line, lineWidth);
}

int CSvgScalarBar::GradientStops() const
{
    // A published table of many stops keeps each of its stops as a gradient
    // stop, rather than a few samples between which its bends would vanish.
    return std::max(4 * kStopsPerSegment, m_colorStops.count - 1);
}

void CSvgScalarBar::DrawSwatches(CSvgRenderer& renderer, const KesraBackend::LegendLayout& layout,
                                 const Color& line) const
{
    if (layout.swatches.empty())
    {
        return;
    }
    CSvgCanvas& canvas = *renderer.GetCanvas();
    canvas.BeginGroup("range-swatches");
    for (const KesraBackend::LegendSwatch& swatch : layout.swatches)
    {
        const KesraBackend::Box& box = swatch.box;
        const Color& fill = swatch.fill;
        CSvgWriter& svg = canvas.Writer();
        svg.Open("rect");
        svg.Attribute("x", box.left, 2);
        svg.Attribute("y", canvas.SvgY(box.bottom + box.height), 2);
        svg.Attribute("width", box.width, 2);
        svg.Attribute("height", box.height, 2);
        svg.Attribute("fill", HexColor(fill.red, fill.green, fill.blue));
        svg.Attribute("stroke", HexColor(line.red, line.green, line.blue));
        svg.Attribute("stroke-width", 1.0, 2);
        svg.Attribute("data-kind", SwatchKindName(swatch.kind));
        svg.Close();
        renderer.DrawText(swatch.label, line);
    }
    canvas.EndGroup();
}

} // namespace KesraSvg
