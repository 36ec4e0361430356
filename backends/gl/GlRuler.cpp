#include "gl/GlRuler.h"

#include "gl/GlRenderer.h"

#include <algorithm>
#include <cstdio>

namespace KesraGl
{

std::string CGlRuler::FormatLength(double length) const
{
    const int decimals = std::clamp(m_labelFormat2, 0, 9);
    const bool scientific = GetExponentialBase(0.0, length, m_labelFormat1) != 0 && length > 0.0;
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, scientific ? "%.*e" : "%.*f", decimals, length);
    return buffer;
}

void CGlRuler::Draw(CGlRenderer& renderer)
{
    if (m_created == 0 || m_drawRuler == 0 || m_rulerPixelWidth <= 0 || !renderer.HasContext())
    {
        return;
    }
    CGlCanvas& canvas = renderer.Canvas();
    const float left = static_cast<float>(m_startX);
    const float bottom = static_cast<float>(m_startY);
    const float width = static_cast<float>(m_rulerPixelWidth);
    const float height = static_cast<float>(std::max(m_reducedHeight, 4));
    const int blocks = std::max(m_blockCount, 1);
    const Color text{m_textColor.red, m_textColor.green, m_textColor.blue, 255};
    for (int k = 0; k < blocks; ++k)
    {
        const float x0 = left + width * static_cast<float>(k) / blocks;
        const float x1 = left + width * static_cast<float>(k + 1) / blocks;
        canvas.Rect(x0, bottom, x1, bottom + height,
                    k % 2 == 0 ? Color{20, 20, 20, 255} : Color{250, 250, 250, 255});
    }
    canvas.Frame(left, bottom, left + width, bottom + height, 1.0f, Color{20, 20, 20, 255});
    const TextStyle style = renderer.Style(-2);
    const float labelY = bottom + height + 4.0f;
    canvas.Text(left, labelY, "0", style, text, Anchor::Middle);
    if (blocks == 4)
    {
        canvas.Text(left + 0.5f * width, labelY, FormatLength(0.5 * m_rulerLength), style, text,
                    Anchor::Middle);
    }
    const std::string end = FormatLength(m_rulerLength) + " " + m_unit;
    // Centred on the bar's end unless that pushes it out of the window.
    const float endWidth = canvas.TextWidth(end, style);
    const bool fits = left + width + 0.5f * endWidth <= static_cast<float>(m_windowWidth);
    canvas.Text(fits ? left + width : static_cast<float>(m_windowWidth) - 2.0f, labelY, end, style,
                text, fits ? Anchor::Middle : Anchor::End);
}

} // namespace KesraGl
