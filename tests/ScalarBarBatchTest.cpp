// The batch colour queries against the single ones, byte for byte: a million
// seeded values, the special ones in every setting, split over every
// combination of palette (five-stop and many-stop), inverse, banded, fill all
// range, single colour, log scale and the NaN, below and above colours, on
// ranges whose block edges are ordinary, empty, or not even ordered.
#include "support/ColourAnswers.h"
#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

namespace
{

using KesraEngine::CKesraScalarBar;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

struct Range
{
    double minimum;
    double maximum;
};

// Ordinary; a degenerate one (top one above); one narrower than 1e-16 (top
// moved away from the maximum); one whose steps vanish against its minimum
// (empty blocks); two whose edges overflow or are not numbers.
const Range kRanges[] = {{0.0, 1.0},  {-3.5, 12.25}, {5.0, 5.0},       {0.0, 1e-18},
                         {1e16, 1e16 + 8.0}, {-DBL_MAX, DBL_MAX}, {-kInf, kInf}};

using PaletteSetter = void (CKesraScalarBar::*)();
const PaletteSetter kPalettes[] = {
    &CKesraScalarBar::SetColorPaletteRedBlue, &CKesraScalarBar::SetColorPaletteBlueRed,
    &CKesraScalarBar::SetColorPaletteGrayScale, &CKesraScalarBar::SetColorPaletteGreenRed,
    &CKesraScalarBar::SetColorPaletteViridis,   &CKesraScalarBar::SetColorPaletteCividis,
    &CKesraScalarBar::SetColorPaletteCoolWarm,  &CKesraScalarBar::SetColorPaletteTurbo};

// The values every setting sees: the ends, the block edges as the bar
// accumulates them and a hair on either side of each, and the specials.
std::vector<double> SpecialValues(const Range& range, int blocks)
{
    std::vector<double> values = {kNaN, -kNaN, kInf, -kInf, DBL_MAX, -DBL_MAX, 0.0, -0.0,
                                  DBL_MIN, -DBL_MIN, DBL_TRUE_MIN, 1.0, -1.0};
    std::vector<double> edges = {range.minimum, range.maximum};
    const double step = (range.maximum - range.minimum) / blocks;
    double edge = range.minimum;
    for (int k = 1; k < blocks; ++k)
    {
        edge += step;
        edges.push_back(edge);
    }
    for (const double e : edges)
    {
        values.insert(values.end(), {e, std::nextafter(e, -kInf), std::nextafter(e, kInf)});
    }
    return values;
}

// Spread over the range and 5 % beyond it, with a share of raw bit patterns
// (every exponent, NaN payloads, subnormals).
double RandomValue(std::mt19937_64& random, const Range& range)
{
    const std::uint64_t bits = random();
    if (bits % 8 == 0)
    {
        double raw = 0.0;
        std::memcpy(&raw, &bits, sizeof raw);
        return raw;
    }
    const double u = std::uniform_real_distribution<double>(-0.05, 1.05)(random);
    return range.minimum + u * (range.maximum - range.minimum);
}

TEST(ScalarBarBatchTest, EqualsSingleQueryForEverySettingAndValue)
{
    constexpr int kValues = 1000000;
    constexpr int kSwitchSets = 64;
    constexpr int kSettings =
        static_cast<int>(std::size(kRanges) * std::size(kPalettes)) * kSwitchSets;
    std::mt19937_64 random(20261125);
    int blocks = 2;
    int failing = 0;
    for (int setting = 0; setting < kSettings; ++setting)
    {
        const int switches = setting % kSwitchSets;
        const int palette = setting / kSwitchSets % static_cast<int>(std::size(kPalettes));
        const Range& range = kRanges[setting / kSwitchSets / std::size(kPalettes)];
        // Every block number from 2 to 30 comes round many times.
        blocks = blocks == 30 ? 2 : blocks + 1;

        CKesraScalarBar bar;
        bar.SetValueRange(range.minimum, range.maximum, true, true);
        (bar.*kPalettes[palette])();
        bar.SetBlockNum(blocks);
        bar.SetInverse(switches & 1);
        bar.SetBanded(switches >> 1 & 1);
        bar.SetFillAllRange(switches >> 2 & 1);
        bar.SetUseSignleColor(switches >> 3 & 1);
        bar.SetLogScale(switches >> 4 & 1);
        bar.SetUseNanColor(switches >> 5 & 1);
        bar.SetUseBelowRangeColor(switches >> 5 & 1);
        bar.SetUseAboveRangeColor(switches >> 5 & 1);
        bar.SetOverRangeColor(1, 2, 3);
        bar.SetSingleColor(4, 5, 6);
        bar.SetNanColor(7, 8, 9);
        bar.SetBelowRangeColor(10, 11, 12);
        bar.SetAboveRangeColor(13, 14, 15);

        std::vector<double> values = SpecialValues(range, blocks);
        for (int k = 0; k < kValues / kSettings; ++k)
        {
            values.push_back(RandomValue(random, range));
        }
        const int wrong =
            KesraTest::BatchMismatches(bar, values, false) + KesraTest::BatchMismatches(bar, values, true);
        failing += wrong != 0 ? 1 : 0;
        EXPECT_EQ(0, wrong) << "range " << range.minimum << " to " << range.maximum
                            << ", palette " << palette << ", switches " << switches
                            << ", blocks " << blocks;
    }
    EXPECT_EQ(0, failing);
}

// A backend may store a block number the setter refuses; the batch then
// walks the blocks as the single query does.
class RawBlocksBar : public CKesraScalarBar
{
public:
    explicit RawBlocksBar(int blocks)
    {
        m_blockNum = blocks;
        SetBanded(1);
        SetValueRange(-1.0, 3.0, true, true);
    }
};

TEST(ScalarBarBatchTest, BlockNumbersBeyondTheSettersLimitsEqualSingleQuery)
{
    for (const int blocks : {0, 1, 31, 64})
    {
        const RawBlocksBar bar(blocks);
        std::vector<double> values = SpecialValues({-1.0, 3.0}, blocks > 0 ? blocks : 1);
        for (int k = 0; k <= 400; ++k)
        {
            values.push_back(-1.2 + 0.011 * k);
        }
        EXPECT_EQ(0, KesraTest::BatchMismatches(bar, values, false)) << blocks << " blocks";
    }
}

TEST(ScalarBarBatchTest, NullArraysWriteNothing)
{
    const CKesraScalarBar bar;
    const double values[2] = {0.5, 2.0};
    unsigned char rgba[8] = {7, 7, 7, 7, 7, 7, 7, 7};
    signed char codes[2] = {7, 7};
    bar.GetOpenGLColors(nullptr, 2, rgba, codes);
    bar.GetOpenGLColorsByValue(values, 2, nullptr, codes);
    for (const unsigned char byte : rgba)
    {
        EXPECT_EQ(7, byte);
    }
    EXPECT_EQ(7, codes[0]);
    EXPECT_EQ(7, codes[1]);

    // Without codes the colours still come, alpha 255.
    bar.GetOpenGLColors(values, 2, rgba);
    const unsigned char expected[8] = {0, 255, 0, 255, 255, 255, 255, 255};
    for (int k = 0; k < 8; ++k)
    {
        EXPECT_EQ(expected[k], rgba[k]) << "byte " << k;
    }
}

} // namespace
