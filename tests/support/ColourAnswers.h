// The batch colour queries against the single one, answer for answer: the
// tables and blockwise paths behind a batch must give every value the
// colour and code the single query gives it.
#pragma once

#include "Engine/ScalarBar.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace KesraTest
{

// Red, green, blue, alpha and the result code of one answer as one number:
// the colour in the low 32 bits (red lowest), the code above.
inline std::uint64_t PackAnswer(const unsigned char* rgba, int code)
{
    return rgba[0] | rgba[1] << 8 | rgba[2] << 16 | std::uint64_t{rgba[3]} << 24 |
           static_cast<std::uint64_t>(static_cast<unsigned char>(code)) << 32;
}

// The single query's answer, alpha 255 as the batch writes it.
inline std::uint64_t SingleAnswer(const KesraEngine::CKesraScalarBar& bar, double value, bool byValue)
{
    unsigned char rgba[4] = {7, 7, 7, 255};
    const int code = byValue ? bar.GetOpenGLColorByValue(rgba[0], rgba[1], rgba[2], value)
                             : bar.GetOpenGLColor(rgba[0], rgba[1], rgba[2], value);
    return PackAnswer(rgba, code);
}

// The number of values whose batch answer (by value or not) differs from the
// single one; the first five are reported as failures with both answers.
inline int BatchMismatches(const KesraEngine::CKesraScalarBar& bar, const std::vector<double>& values, bool byValue)
{
    // Filled with what no answer is, so that a value the batch skips shows.
    std::vector<unsigned char> rgba(4 * values.size(), 7);
    std::vector<signed char> codes(values.size(), 7);
    if (byValue)
    {
        bar.GetOpenGLColorsByValue(values.data(), values.size(), rgba.data(), codes.data());
    }
    else
    {
        bar.GetOpenGLColors(values.data(), values.size(), rgba.data(), codes.data());
    }
    int mismatches = 0;
    for (std::size_t k = 0; k < values.size(); ++k)
    {
        const std::uint64_t batch = PackAnswer(&rgba[4 * k], codes[k]);
        const std::uint64_t single = SingleAnswer(bar, values[k], byValue);
        if (batch == single)
        {
            continue;
        }
        if (++mismatches <= 5)
        {
            ADD_FAILURE() << "value " << values[k] << (byValue ? " by value" : "") << ": batch " << std::hex
                          << batch << ", single " << single << std::dec;
        }
    }
    return mismatches;
}

} // namespace KesraTest
