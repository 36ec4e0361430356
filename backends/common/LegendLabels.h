// How every backend's colour legend writes a label. Where its block edges lie
// is the colour map's own rule (ColorBlockEdges in Engine/ColorMap.h), so
// that a label always names the value at which its block's colour starts.
// The texts are the backend's own (ScaledLabel) until the host chooses a
// label format or scale; then they are the library's (GetLabelTexts), so
// that every backend writes them alike and the default stays as it was.
#pragma once

#include "Engine/ScalarBar.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

namespace KesraBackend
{

// value / 10^exponent with decimals (clamped to 0 ... 9) digits after the
// point; "-" when that is not a finite number.
inline std::string ScaledLabel(double value, int exponent, int decimals)
{
    const double scaled = value / std::pow(10.0, exponent);
    if (!std::isfinite(scaled))
    {
        return "-";
    }
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*f", std::clamp(decimals, 0, 9), scaled);
    std::string text = buffer;
    // A small negative value rounds to "-0.00", which reads as a sign error.
    if (text[0] == '-' && text.find_first_not_of("-0.") == std::string::npos)
    {
        text.erase(0, 1);
    }
    return text;
}

// The labels of values in order: the bar's own texts while it uses a label
// option, else ScaledLabel of each with exponent and decimals, as ever.
inline std::vector<std::string> LegendLabelTexts(const KesraEngine::CKesraScalarBar& bar,
                                                 const std::vector<double>& values, int exponent,
                                                 int decimals)
{
    if (bar.UsesLabelOptions())
    {
        return bar.GetLabelTexts(values);
    }
    std::vector<std::string> texts;
    texts.reserve(values.size());
    for (const double value : values)
    {
        texts.push_back(ScaledLabel(value, exponent, decimals));
    }
    return texts;
}

} // namespace KesraBackend
