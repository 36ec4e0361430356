// The largest and the smallest value of a scene, and the two tips that point
// them out: "max ..." and "min ..." labels on the ray from a centre through
// their points, as every scene shows them.
#pragma once

#include "Engine/TipManager.h"
#include "common/SceneData.h"

#include <cmath>
#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

namespace KesraBackend
{

struct Extreme
{
    double value = 0.0;
    Vec3 point;
    std::size_t line = 0; // index of the line it lies on
};

struct Extremes
{
    Extreme largest;
    Extreme smallest;
    bool found = false; // false when no value is finite; then both are zero
};

// Over the finite values only (a file's undefined point is not an extreme);
// of equal values the first in line order, then point order, wins.
inline Extremes FindExtremes(const std::vector<ScalarLine>& lines)
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

// "what V<unit>", V printed with numberFormat.
inline std::string ExtremeLabel(const char* what, double value, const char* numberFormat,
                                const std::string& unit)
{
    char number[64];
    std::snprintf(number, sizeof number, numberFormat, value);
    return std::string(what) + " " + number + unit;
}

// Appends "max V<unit>" at the largest and "min V<unit>" at the smallest
// value, V printed with numberFormat (a printf conversion of one double, such
// as "%.2f"), puts both labels on the ray from centre through their point at
// distance from centre, and colours them as the scenes do. Nothing when
// extremes found nothing.
inline void AddExtremeTips(KesraEngine::CKesraTipManager& tips, const Extremes& extremes,
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
    tips.InsertTip(ExtremeLabel("max", extremes.largest.value, numberFormat, unit), largest, largest);
    tips.InsertTip(ExtremeLabel("min", extremes.smallest.value, numberFormat, unit), smallest, smallest);
    const double from[3] = {centre.x, centre.y, centre.z};
    tips.UpdateEffect(KesraEngine::eTipLinkRadial, 0.0, from, distance);
    tips.SetBackgroundColor(255, 252, 228);
    tips.SetLinkingLineColor(90, 90, 90);
}

} // namespace KesraBackend
