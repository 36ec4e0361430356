// The largest and the smallest value of a scene, and the two tips that point
// them out: "max ..." and "min ..." labels on the ray from a centre through
// their points, as both example hosts show them.
#pragma once

#include "Engine/TipManager.h"
#include "SceneData.h"

#include <cstddef>
#include <string>
#include <vector>

namespace KesraExamples
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
Extremes FindExtremes(const std::vector<ScalarLine>& lines);

// Appends "max V<unit>" at the largest and "min V<unit>" at the smallest
// value, V printed with numberFormat (a printf conversion of one double, such
// as "%.2f"), puts both labels on the ray from centre through their point at
// distance from centre, and colours them as the examples do. Nothing when
// extremes found nothing.
void AddExtremeTips(KesraEngine::CKesraTipManager& tips, const Extremes& extremes,
                    const char* numberFormat, const std::string& unit, const Vec3& centre,
                    double distance);

} // namespace KesraExamples
