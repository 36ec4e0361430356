#include "svg/SvgCurveChart.h"

#include "Engine/Curve2D.h"
#include "Engine/ScalarBar.h"

#include <cmath>
#include <string>

namespace KesraSvg
{

namespace
{

// Three significant digits, enough to read a range at a glance.
std::string ShortNumber(double value)
{
    const double magnitude = std::fabs(value);
    int decimals = 2;
    if (magnitude >= 100.0)
    {
        decimals = 0;
    }
    else if (magnitude >= 10.0)
    {
        decimals = 1;
    }
    else if (magnitude > 0.0 && magnitude < 0.1)
    {
        decimals = 4;
    }
    return FormatNumber(value, decimals);
}

} // namespace

void DrawCurveChart(CSvgRenderer& renderer, const CurveInset& inset)
{
    CSvgCanvas* canvas = renderer.GetCanvas();
    if (canvas == nullptr || inset.curve == nullptr || !(inset.width > 0.0 && inset.height > 0.0))
    {
        return;
    }
    const KesraEngine::CKesraCurve2D& curve = *inset.curve;
    const Color ink{60, 60, 60, 255};
    const TextStyle text = renderer.GetTextStyle(-3, ink);
    TextStyle titleStyle = renderer.GetTextStyle(-2, ink);
    titleStyle.bold = true;

    canvas->BeginGroup("curve");
    CSvgWriter& svg = canvas->Writer();
    svg.Open("rect");
    svg.Attribute("x", inset.x, 1);
    svg.Attribute("y", canvas->SvgY(inset.y + inset.height), 1);
    svg.Attribute("width", inset.width, 1);
    svg.Attribute("height", inset.height, 1);
    svg.Attribute("rx", "4");
    svg.Attribute("fill", "#ffffff");
    svg.Attribute("fill-opacity", "0.85");
    svg.Attribute("stroke", "#a0a0a0");
    svg.Close();

    const double pad = 8.0;
    canvas->Text(inset.x + pad, inset.y + inset.height - pad - titleStyle.size, inset.title,
                 titleStyle, Anchor::Start);
    // Plot area: room on the left for the y range, below for the x range.
    const double left = inset.x + pad + 4.0 * text.size;
    const double right = inset.x + inset.width - pad;
    const double bottom = inset.y + pad + 2.2 * text.size;
    const double top = inset.y + inset.height - 2.0 * pad - titleStyle.size;
    if (!(right > left && top > bottom))
    {
        canvas->EndGroup();
        return;
    }
    canvas->Line(left, bottom, right, bottom, ink, 1.0);
    canvas->Line(left, bottom, left, top, ink, 1.0);

    double xMin = 0.0;
    double yMin = 0.0;
    double xMax = 0.0;
    double yMax = 0.0;
    curve.GetCureveRange(xMin, yMin, xMax, yMax);
    if (!(xMin <= xMax && yMin <= yMax))
    {
        canvas->Text(0.5 * (left + right), 0.5 * (bottom + top), "no visible nodes", text,
                     Anchor::Middle);
        canvas->EndGroup();
        return;
    }
    // A range of one value is shown in the middle of the axis.
    const double xSpan = xMax > xMin ? xMax - xMin : 1.0;
    const double ySpan = yMax > yMin ? yMax - yMin : 1.0;
    const double xFrom = xMax > xMin ? xMin : xMin - 0.5;
    const double yFrom = yMax > yMin ? yMin : yMin - 0.5;
    const auto plotX = [&](double x) { return left + (x - xFrom) / xSpan * (right - left); };
    const auto plotY = [&](double y) { return bottom + (y - yFrom) / ySpan * (top - bottom); };

    canvas->Text(left - 4.0, bottom - 0.35 * text.size, ShortNumber(yMin), text, Anchor::End);
    canvas->Text(left - 4.0, top - 0.7 * text.size, ShortNumber(yMax), text, Anchor::End);
    canvas->Text(left, bottom - 1.2 * text.size, ShortNumber(xMin), text, Anchor::Middle);
    canvas->Text(right, bottom - 1.2 * text.size, ShortNumber(xMax), text, Anchor::End);
    canvas->Text(0.5 * (left + right), bottom - 1.2 * text.size, inset.xLabel, text, Anchor::Middle);
    canvas->Text(left + 4.0, top - 0.7 * text.size, inset.yLabel, text, Anchor::Start);

    int count = 0;
    curve.GetNodes(count);
    bool havePrevious = false;
    double previousX = 0.0;
    double previousY = 0.0;
    for (int i = 0; i < count; ++i)
    {
        bool visible = false;
        double x = 0.0;
        double y = 0.0;
        curve.GetNodeVis(i, visible);
        if (!visible || !curve.GetNode(i, x, y))
        {
            havePrevious = false;
            continue;
        }
        if (havePrevious)
        {
            Color color{35, 75, 160, 255};
            if (inset.legend != nullptr)
            {
                inset.legend->GetOpenGLColor(color.red, color.green, color.blue,
                                             0.5 * (previousY + y));
            }
            canvas->Line(plotX(previousX), plotY(previousY), plotX(x), plotY(y), color, 2.0);
        }
        previousX = x;
        previousY = y;
        havePrevious = true;
    }
    canvas->EndGroup();
}

} // namespace KesraSvg
