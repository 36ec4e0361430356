#include "gl/GlScalarBar.h"

#include "common/LegendLabels.h"
#include "gl/GlRenderer.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

namespace KesraGl
{

namespace
{

constexpr float kTick = 5.0f;
constexpr float kGap = 5.0f;

} // namespace

void CGlScalarBar::BarRect(float& left, float& bottom, float& width, float& height) const
{
    if (m_direction == 0)
    {
        left = static_cast<float>(m_startX) + 2.0f * m_equalPartX;
        bottom = static_cast<float>(m_startY) + 1.2f * m_equalPartY;
        width = 8.0f * m_equalPartX;
        height = 7.2f * m_equalPartY;
    }
    else
    {
        left = static_cast<float>(m_startX) + 2.0f * m_equalPartX;
        bottom = static_cast<float>(std::max(m_startY, 25)) + 1.6f * m_equalPartY;
        width = 12.0f * m_equalPartX;
        height = 1.0f * m_equalPartY;
    }
    // Whole pixels: each pixel row (column) of a smooth bar is one value.
    left = std::round(left);
    bottom = std::round(bottom);
    width = std::max(std::round(width), 1.0f);
    height = std::max(std::round(height), 1.0f);
}

int CGlScalarBar::LabelExponent() const
{
    return GetExponentialBase(m_minValue, m_maxValue, m_valueFormat1);
}

std::string CGlScalarBar::FormatLabel(double value, int exponent) const
{
    return KesraBackend::ScaledLabel(value, exponent, m_valueFormat2);
}

std::vector<double> CGlScalarBar::Edges() const
{
    return KesraBackend::BlockEdges(m_minValue, m_maxValue, m_blockNum);
}

void CGlScalarBar::Draw(CGlRenderer& renderer)
{
    if (m_created == 0 || m_visibility == 0 || !renderer.HasContext())
    {
        return;
    }
    DrawBar(renderer);
    DrawTexts(renderer);
    m_modified = 0;
}

void CGlScalarBar::DrawBar(CGlRenderer& renderer) const
{
    float left, bottom, width, height;
    BarRect(left, bottom, width, height);
    CGlCanvas& canvas = renderer.Canvas();
    const bool vertical = m_direction == 0;
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
        const std::vector<double> edges = Edges();
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
            values[static_cast<std::size_t>(p)] = m_minValue + at * (m_maxValue - m_minValue);
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
    const Color line = m_autoTextColor != 0 ? renderer.ContrastingTextColor()
                                            : Color{m_color.red, m_color.green, m_color.blue, 255};
    canvas.Frame(left, bottom, left + width, bottom + height, m_colorBlockLineWidth, line);
}

void CGlScalarBar::DrawTexts(CGlRenderer& renderer) const
{
    float left, bottom, width, height;
    BarRect(left, bottom, width, height);
    CGlCanvas& canvas = renderer.Canvas();
    const Color color = m_autoTextColor != 0 ? renderer.ContrastingTextColor()
                                             : Color{m_color.red, m_color.green, m_color.blue, 255};
    const TextStyle label = renderer.Style(-2);
    const float lineHeight = static_cast<float>(canvas.Ascender(label)) + kGap;
    const int exponent = LabelExponent();
    const std::vector<double> edges = Edges();
    const int n = static_cast<int>(edges.size()) - 1;
    const bool vertical = m_direction == 0;
    const float length = vertical ? height : width;
    // Labels are thinned out so that neighbours keep a line (or a label's
    // width) apart; the two ends always show.
    const float needed = vertical ? lineHeight : canvas.TextWidth(FormatLabel(m_maxValue, exponent), label) + kGap;
    const int step = std::max(1, static_cast<int>(std::ceil(needed / (length / n))));
    for (int k = 0; k <= n; ++k)
    {
        if (k % step != 0 && k != n)
        {
            continue;
        }
        if (k != n && k + step > n && (n - k) * length / n < needed)
        {
            continue;
        }
        const float at = length * static_cast<float>(k) / n;
        const std::string text = FormatLabel(edges[static_cast<std::size_t>(k)], exponent);
        if (vertical)
        {
            const float y = bottom + at;
            canvas.Line(left + width, y, left + width + kTick, y, 1.0f, color);
            canvas.Text(left + width + kTick + 3.0f, y - 0.4f * canvas.Ascender(label), text, label, color);
        }
        else
        {
            const float x = left + at;
            canvas.Line(x, bottom, x, bottom - kTick, 1.0f, color);
            canvas.Text(x, bottom - kTick - 2.0f - canvas.Ascender(label), text, label, color,
                        Anchor::Middle);
        }
    }
    std::string unit = m_unit;
    if (exponent != 0)
    {
        unit += " x10^" + std::to_string(exponent);
    }
    // Above the top label, which is centred on the bar's top edge.
    const float top = bottom + height + (vertical ? 0.6f * lineHeight : 0.0f) + kGap;
    canvas.Text(left, top, unit, label, color);
    canvas.Text(left, top + lineHeight + 2.0f, m_title, renderer.Style(0, true), color);
    const float noteY = vertical ? bottom - lineHeight - kGap
                                 : bottom - kTick - 2.0f - 2.0f * lineHeight - kGap;
    canvas.Text(left, noteY, m_note, label, color);
}

} // namespace KesraGl
