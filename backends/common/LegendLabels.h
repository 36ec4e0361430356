// What every backend's colour legend computes the same way: where its block
// edges lie and how a label is written. Header-only, used from the backends'
// sources.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

namespace KesraBackend
{

// The blocks + 1 edges from minimum to maximum (one block for fewer than
// one), accumulated step by step as the banded mapping accumulates them; the
// last is the maximum itself.
inline std::vector<double> BlockEdges(double minimum, double maximum, int blocks)
{
    const int n = std::max(blocks, 1);
    std::vector<double> edges(static_cast<std::size_t>(n) + 1);
    const double step = (maximum - minimum) / n;
    double edge = minimum;
    for (int k = 0; k < n; ++k)
    {
        edges[static_cast<std::size_t>(k)] = edge;
        edge += step;
    }
    edges[static_cast<std::size_t>(n)] = maximum;
    return edges;
}

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

} // namespace KesraBackend
