#include "Extremes.h"

#include <cmath>
#include <cstdio>

namespace KesraExamples
{

namespace
{

std::string Label(const char* what, double value, const char* numberFormat, const std::string& unit)
{
    char number[64];
    std::snprintf(number, sizeof number, numberFormat, value);
    return std::string(what) + " " + number + unit;
}

} // namespace

Extremes FindExtremes(const std::vector<ScalarLine>& lines)
{
    Extremes extremes;
    for (std::size_t l = 0; l < lines.size(); ++l)
    {
        const ScalarLine& line = lines[l];
        for (std::size_t i = 0; i < line.values.size(); ++i)
        {
            const double value = line.values[i];
            if (!std::isfinite(value))
            {
                continue;
            }
            if (!extremes.found || value > extremes.largest.value)
            {
                extremes.largest = Extreme{value, line.points[i], l};
            }
            if (!extremes.found || value < extremes.smallest.value)
            {
                extremes.smallest = Extreme{value, line.points[i], l};
            }
            extremes.found = true;
        }
    }
    return extremes;
}

void AddExtremeTips(KesraEngine::CKesraTipManager& tips, const Extremes& extremes,
                    const char* numberFormat, const std::string& unit, const Vec3& centre,
                    double distance)
{
    if (!extremes.found)
    {
        return;
    }
    const Vec3& high = extremes.largest.point;
    const Vec3& low = extremes.smallest.point;
    const double largest[3] = {high.x, high.y, high.z};
    const double smallest[3] = {low.x, low.y, low.z};
    tips.InsertTip(Label("max", extremes.largest.value, numberFormat, unit), largest, largest);
    tips.InsertTip(Label("min", extremes.smallest.value, numberFormat, unit), smallest, smallest);
    const double from[3] = {centre.x, centre.y, centre.z};
    tips.UpdateEffect(KesraEngine::eTipLinkRadial, 0.0, from, distance);
    tips.SetBackgroundColor(255, 252, 228);
    tips.SetLinkingLineColor(90, 90, 90);
}

} // namespace KesraExamples
