#include "svg/SvgRuler.h"

#include "svg/SvgRenderer.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace KesraSvg
{

void CSvgRuler::Draw(CSvgRenderer& renderer) const
{
    CSvgCanvas* canvas = renderer.GetCanvas();
    if (canvas == nullptr || m_created == 0 || m_drawRuler == 0 || m_rulerPixelWidth <= 0)
    {
        return;
    }
    const Color color{m_textColor.red, m_textColor.green, m_textColor.blue, 255};
    const std::string ink = HexColor(color.red, color.green, color.blue);
    const Color paper = renderer.ContrastingTextColor().red == 0 ? Color{255, 255, 255, 255}
                                                                 : Color{0, 0, 0, 255};
    const double left = m_startX;
    const double bottom = m_startY;
    const double width = m_rulerPixelWidth;
    const double height = m_rulerHeight;
    const int blocks = std::max(m_blockCount, 1);
    canvas->BeginGroup("ruler");
    canvas->Writer().Attribute("shape-rendering", renderer.LineRendering());
    for (int k = 0; k < blocks; ++k)
    {
        const double x = left + width * k / blocks;
        const std::string fill = k % 2 == 0 ? ink : HexColor(paper.red, paper.green, paper.blue);
        canvas->Rect(x, bottom, width / blocks, height, fill, color, 1.0);
    }
    for (int k = 0; k <= blocks; ++k)
    {
        const double x = left + width * k / blocks;
        canvas->Line(x, bottom + height, x, bottom + height + m_reducedHeight, color, 1.0);
    }
    TextStyle style = renderer.GetTextStyle(-2, color);
    const double labelY = bottom + height + m_reducedHeight + 4.0;
    std::string exponent;
    canvas->Text(left, labelY, "0", style, Anchor::Middle);
    if (blocks == 4)
    {
        const std::string half = FormatLength(0.5 * m_rulerLength, exponent);
        canvas->Text(left + 0.5 * width, labelY, half, style, Anchor::Middle, exponent);
    }
    const std::string end = FormatLength(m_rulerLength, exponent);
    const std::string unit = " " + m_unit;
    // The end label is centred on the end of the bar unless that would push it
    // out of the window; the library's estimate of its width decides.
    const double estimate = CalculateStringWdith(end + exponent + unit);
    const bool fits = left + width + 0.5 * estimate <= m_windowWidth;
    canvas->Text(fits ? left + width : static_cast<double>(m_windowWidth) - 2.0, labelY,
                 end, style, fits ? Anchor::Middle : Anchor::End, exponent, unit);
    canvas->EndGroup();
}

std::string CSvgRuler::FormatLength(double length, std::string& exponent) const
{
    const int decimals = std::clamp(m_labelFormat2, 0, 9);
    exponent.clear();
    char buffer[64];
    if (GetExponentialBase(0.0, length, m_labelFormat1) != 0 && length > 0.0)
    {
        const int power = static_cast<int>(std::floor(std::log10(length)));
        std::snprintf(buffer, sizeof buffer, "%.*f\xC3\x97" "10", decimals,
                      length / std::pow(10.0, power));
        exponent = std::to_string(power);
    }
    else
    {
        std::snprintf(buffer, sizeof buffer, "%.*f", decimals, length);
    }
    return buffer;
}

} // namespace KesraSvg
