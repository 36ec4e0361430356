#include "gl/GlScalarBar.h"

#include "gl/GlRenderer.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace KesraGl
{

void CGlScalarBar::Draw(KesraEngine::CKesraRenderer& target)
{
    auto* gl = dynamic_cast<CGlRenderer*>(&target);
    if (!IsShown() || gl == nullptr || !gl->HasContext())
    {
        return;
    }
    CGlRenderer& renderer = *gl;
    const KesraBackend::LegendLayout layout = Layout(renderer);
    const Color color = TextColor(renderer.GetBackgroundColor());
    CGlCanvas& canvas = renderer.Canvas();
    const KesraBackend::Box& panel = layout.panel;
    canvas.Rect(static_cast<float>(panel.left), static_cast<float>(panel.bottom),
                static_cast<float>(panel.left + panel.width), static_cast<float>(panel.bottom + panel.height),
                PanelColor(renderer.GetBackgroundColor()));
    DrawBar(renderer, layout, color);
    for (const KesraBackend::Segment& tick : layout.ticks)
    {
        canvas.Line(static_cast<float>(tick.x0), static_cast<float>(tick.y0),
                    static_cast<float>(tick.x1), static_cast<float>(tick.y1), 1.0f, color);
    }
    for (const KesraBackend::TextLine& label : layout.labels)
    {
        renderer.DrawText(label, color);
    }
    renderer.DrawText(layout.unit, color);
    renderer.DrawText(layout.title, color);
    renderer.DrawText(layout.note, color);
    for (const KesraBackend::LegendSwatch& swatch : layout.swatches)
    {
        const float left = static_cast<float>(swatch.box.left);
        const float bottom = static_cast<float>(swatch.box.bottom);
        const float right = left + static_cast<float>(swatch.box.width);
        const float top = bottom + static_cast<float>(swatch.box.height);
        canvas.Rect(left, bottom, right, top, swatch.fill);
        canvas.Frame(left, bottom, right, top, 1.0f, color);
        renderer.DrawText(swatch.label, color);
    }
    m_modified = 0;
}

void CGlScalarBar::DrawBar(CGlRenderer& renderer, const KesraBackend::LegendLayout& layout,
                           const Color& line) const
{
    const float left = static_cast<float>(layout.bar.left);
    const float bottom = static_cast<float>(layout.bar.bottom);
    const float width = static_cast<float>(layout.bar.width);
    const float height = static_cast<float>(layout.bar.height);
    CGlCanvas& canvas = renderer.Canvas();
    const bool vertical = layout.vertical;
    const float length = vertical ? height : width;
    const auto span = [&](float from, float to, const Color& color) {
        if (vertical)
        {
            canvas.Rect(left, bottom + from, left + width, bottom + to, color);
        }
        else
        {
            canvas.Rect(left + from, bottom, left + to, bottom + height, color);
        }
    };
    Color color{0, 0, 0, 255};
    if (m_banded != 0)
    {
        const std::vector<double>& edges = layout.edges;
        const int n = static_cast<int>(edges.size()) - 1;
        for (int k = 0; k < n; ++k)
        {
            const std::size_t i = static_cast<std::size_t>(k);
            GetOpenGLColor(color.red, color.green, color.blue, 0.5 * (edges[i] + edges[i + 1]));
            span(length * static_cast<float>(k) / n, length * static_cast<float>(k + 1) / n, color);
        }
    }
    else
    {
        const int pixels = std::max(static_cast<int>(std::ceil(length)), 1);
        std::vector<double> values(static_cast<std::size_t>(pixels));
        for (int p = 0; p < pixels; ++p)
        {
            const double at = (p + 0.5) / length;
            values[static_cast<std::size_t>(p)] = BarValue(at);
        }
        std::vector<unsigned char> rgba(4 * values.size());
        GetOpenGLColors(values.data(), values.size(), rgba.data());
        for (int p = 0; p < pixels; ++p)
        {
            const unsigned char* rgb = &rgba[4 * static_cast<std::size_t>(p)];
            const float to = std::min(static_cast<float>(p + 1), length);
            span(static_cast<float>(p), to, Color{rgb[0], rgb[1], rgb[2], 255});
        }
    }
    canvas.Frame(left, bottom, left + width, bottom + height, m_colorBlockLineWidth, line);
}

} // namespace KesraGl
