// The batches' tables against the single query, byte for byte and code for
// code: every value at which the single query's colour changes, found here
// by a scan and bisection of our own, with its neighbours an ulp either
// side, for every palette, with and without the NaN, below and above
// colours and the log scale; the special doubles; ranges tiny, huge,
// negative, denormal and degenerate; and tables that must not outlive the
// setting they were built for, whether the setting changed through a setter,
// a field written by a derived class, or a copy. The million seeded values
// are in ScalarBarBatchTest.cpp.
#include "support/ColourAnswers.h"
#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>
#include <tuple>
#include <vector>

namespace
{

using KesraEngine::CKesraScalarBar;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// A bar whose fields the test writes directly, as a backend may.
class FieldBar : public CKesraScalarBar
{
public:
    void SetFields(double minimum, double maximum, double top)
    {
        m_minValue = minimum;
        m_maxValue = maximum;
        m_colorScaleTop = top;
    }
    void SetStop(int stop, int channel, double level) { m_palette[stop][channel] = level; }
    void SetBlocksField(int blocks) { m_blockNum = blocks; }
};

// The single query's colour alone (the code left out), as the search for
// its changes compares it.
std::uint32_t SingleColour(const CKesraScalarBar& bar, double value, bool byValue)
{
    return static_cast<std::uint32_t>(KesraTest::SingleAnswer(bar, value, byValue));
}

// Runs both batches over values, repeated to a batch long enough for the
// table (a short one goes without), and compares every value with the
// single query; reports the first few mismatches.
void ExpectBatchesMatch(const CKesraScalarBar& bar, const std::vector<double>& given)
{
    std::vector<double> values = given;
    while (values.size() < 8192)
    {
        values.insert(values.end(), given.begin(), given.end());
    }
    EXPECT_EQ(0, KesraTest::BatchMismatches(bar, values, false));
    EXPECT_EQ(0, KesraTest::BatchMismatches(bar, values, true));
}

// ---- The test's own search for the single query's colour changes ----------------

std::int64_t Order(double value)
{
    std::int64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits < 0 ? -(bits & std::numeric_limits<std::int64_t>::max()) : bits;
}

double FromOrder(std::int64_t order)
{
    const std::uint64_t bits = order < 0 ? (static_cast<std::uint64_t>(-order) | (1ull << 63))
                                         : static_cast<std::uint64_t>(order);
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

// Bisects [a, b] (as neighbouring-double counts) wherever the ends' colours
// differ, adding the first value of each new colour and both neighbours.
void Bisect(const CKesraScalarBar& bar, bool byValue, std::int64_t a, std::int64_t b,
            std::uint32_t ca, std::uint32_t cb, std::vector<double>& found)
{
    if (ca == cb)
    {
        return;
    }
    const std::uint64_t apart = static_cast<std::uint64_t>(b) - static_cast<std::uint64_t>(a);
    if (apart == 1)
    {
        found.insert(found.end(), {FromOrder(a), FromOrder(b), FromOrder(b + 1)});
        return;
    }
    const auto middle = static_cast<std::int64_t>(static_cast<std::uint64_t>(a) + apart / 2);
    const std::uint32_t cm = SingleColour(bar, FromOrder(middle), byValue);
    Bisect(bar, byValue, a, middle, ca, cm, found);
    Bisect(bar, byValue, middle, b, cm, cb, found);
}

// The colour changes between low and high, scanned at samples points evenly
// spaced in value and at samples points evenly spaced in doubles (which
// reaches the changes near zero and the denormals).
std::vector<double> ColorChanges(const CKesraScalarBar& bar, bool byValue, double low,
                                 double high, int samples)
{
    std::vector<double> grid;
    for (int k = 0; k <= samples; ++k)
    {
        grid.push_back(low + (high - low) * (static_cast<double>(k) / samples));
        const std::int64_t a = Order(low);
        const std::uint64_t span = static_cast<std::uint64_t>(Order(high)) - static_cast<std::uint64_t>(a);
        grid.push_back(FromOrder(static_cast<std::int64_t>(
            static_cast<std::uint64_t>(a) + span / static_cast<std::uint64_t>(samples) *
                                                 static_cast<std::uint64_t>(k))));
    }
    grid.push_back(high);
    std::sort(grid.begin(), grid.end());
    std::vector<double> found;
    for (std::size_t k = 1; k < grid.size(); ++k)
    {
        if (!(grid[k - 1] < grid[k]))
        {
            continue;
        }
        Bisect(bar, byValue, Order(grid[k - 1]), Order(grid[k]),
               SingleColour(bar, grid[k - 1], byValue), SingleColour(bar, grid[k], byValue),
               found);
    }
    return found;
}

std::vector<double> SpecialValues(double minimum, double maximum, double top)
{
    std::vector<double> values = {kNaN,    -kNaN,     kInf,     -kInf,     DBL_MAX,       -DBL_MAX,
                                  0.0,     -0.0,      DBL_MIN,  -DBL_MIN,  DBL_TRUE_MIN,  -DBL_TRUE_MIN,
                                  1e-310,  -1e-310,   1e308,    -1e308,    1.0,           -1.0};
    for (const double v : {minimum, maximum, top})
    {
        values.insert(values.end(), {v, std::nextafter(v, -kInf), std::nextafter(v, kInf)});
    }
    return values;
}

using PaletteSetter = void (CKesraScalarBar::*)();
const PaletteSetter kPalettes[] = {
    &CKesraScalarBar::SetColorPaletteRedBlue, &CKesraScalarBar::SetColorPaletteBlueRed,
    &CKesraScalarBar::SetColorPaletteGrayScale, &CKesraScalarBar::SetColorPaletteGreenRed,
    &CKesraScalarBar::SetColorPaletteViridis,   &CKesraScalarBar::SetColorPaletteCividis,
    &CKesraScalarBar::SetColorPaletteCoolWarm,  &CKesraScalarBar::SetColorPaletteTurbo};
constexpr int kPaletteCount = static_cast<int>(std::size(kPalettes));

// The options on top of the first mapping that the batches must follow too:
// none, the NaN, below and above colours, and the log scale (with them).
enum Options
{
    kNoOptions,
    kRangeColours,
    kLogScale
};

void SetOptions(CKesraScalarBar& bar, int options)
{
    const int colours = options != kNoOptions ? 1 : 0;
    bar.SetUseNanColor(colours);
    bar.SetUseBelowRangeColor(colours);
    bar.SetUseAboveRangeColor(colours);
    bar.SetNanColor(7, 8, 9);
    bar.SetBelowRangeColor(10, 11, 12);
    bar.SetAboveRangeColor(13, 14, 15);
    bar.SetLogScale(options == kLogScale ? 1 : 0);
}

struct Range
{
    double minimum;
    double maximum;
};

// Ordinary, negative, tiny (a few ulps), denormal, degenerate (top one
// above), degenerate where adding one changes nothing, huge and overflowing.
const Range kRanges[] = {{0.0, 1.0},
                         {-7.25, -0.5},
                         {1.0, 1.0 + 4 * DBL_EPSILON},
                         {-3 * DBL_TRUE_MIN, 5 * DBL_TRUE_MIN},
                         {0.0, 1e-310},
                         {5.0, 5.0},
                         {0x1p60, 0x1p60},
                         {-1e300, 1e300},
                         {-1e308, 1e308}};

// ---- Every palette and switch, every change of colour ---------------------------

class EveryChange : public testing::TestWithParam<std::tuple<int, int>>
{
};

TEST_P(EveryChange, BatchesMatchTheSingleQueryAtEveryChangeOfColourAndAroundIt)
{
    const int palette = std::get<0>(GetParam());
    const int options = std::get<1>(GetParam());
    for (const Range& range : kRanges)
    {
        for (const int inverse : {0, 1})
        {
            for (const int blocks : {0, 2, 8, 30})
            {
                CKesraScalarBar bar;
                (bar.*kPalettes[palette])();
                bar.SetValueRange(range.minimum, range.maximum, true, true);
                bar.SetInverse(inverse);
                bar.SetBanded(blocks > 0 ? 1 : 0);
                bar.SetBlockNum(blocks);
                SetOptions(bar, options);
                const double top = range.maximum == range.minimum ? range.maximum + 1.0 : range.maximum;
                std::vector<double> values = SpecialValues(range.minimum, range.maximum, top);
                const std::vector<double> changes =
                    ColorChanges(bar, blocks == 0, range.minimum, range.maximum, 64);
                values.insert(values.end(), changes.begin(), changes.end());
                SCOPED_TRACE(testing::Message() << "range " << range.minimum << " .. "
                                                << range.maximum << " inverse " << inverse
                                                << " blocks " << blocks);
                for (const int fill : {0, 1})
                {
                    bar.SetFillAllRange(fill);
                    ExpectBatchesMatch(bar, values);
                }
                bar.SetUseSignleColor(1);
                ExpectBatchesMatch(bar, values);
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(PalettesAndOptions, EveryChange,
                         testing::Combine(testing::Range(0, kPaletteCount),
                                          testing::Values(kNoOptions, kRangeColours, kLogScale)));

// ---- Tables that must not outlive their setting ---------------------------------

TEST(ColorTable, ASettingChangedBetweenTwoBatchesIsNeverServedFromTheOldTable)
{
    FieldBar bar;
    const std::vector<double> values = {-0.5, 0.0, 0.1, 0.3, 0.49, 0.5, 0.77, 0.99, 1.0, 1.5, kNaN};
    ExpectBatchesMatch(bar, values);
    bar.SetInverse(1);
    ExpectBatchesMatch(bar, values);
    bar.SetColorPaletteGreenRed();
    ExpectBatchesMatch(bar, values);
    bar.SetValueRange(0.25, 0.75, true, true);
    ExpectBatchesMatch(bar, values);
    bar.SetBanded(1);
    ExpectBatchesMatch(bar, values);
    bar.SetBlockNum(3);
    ExpectBatchesMatch(bar, values);
    bar.SetFillAllRange(1);
    ExpectBatchesMatch(bar, values);
    // Written behind the setters' backs, as a backend may: no setter runs.
    bar.SetFields(0.0, 1.0, 2.0);
    ExpectBatchesMatch(bar, values);
    bar.SetStop(2, 1, 0.5);
    ExpectBatchesMatch(bar, values);
    bar.SetBlocksField(1000);
    ExpectBatchesMatch(bar, values);
    bar.SetBanded(0);
    bar.SetOverRangeColor(1, 2, 3);
    bar.SetFillAllRange(0);
    ExpectBatchesMatch(bar, values);
}

TEST(ColorTable, CopiesAndAssignmentsAnswerForTheirOwnSettings)
{
    const std::vector<double> values = {-0.5, 0.0, 0.2, 0.5, 0.8, 1.0, 1.5, 3.0};
    CKesraScalarBar original;
    original.SetBanded(1);
    ExpectBatchesMatch(original, values);
    CKesraScalarBar copy(original);
    copy.SetValueRange(0.0, 4.0, true, true);
    copy.SetInverse(1);
    ExpectBatchesMatch(copy, values);
    ExpectBatchesMatch(original, values);
    CKesraScalarBar assigned;
    ExpectBatchesMatch(assigned, values);
    assigned = copy;
    ExpectBatchesMatch(assigned, values);
    assigned = original;
    ExpectBatchesMatch(assigned, values);
}

TEST(ColorTable, PalettesOutsideTheUnitRangeAndReversedRangesStillMatch)
{
    FieldBar bar;
    const std::vector<double> values = {-1.0, 0.0, 0.3, 0.5, 0.7, 1.0, 2.0, kNaN, 0.25, 0.75};
    bar.SetStop(1, 0, 1.5);
    bar.SetStop(3, 2, kNaN);
    ExpectBatchesMatch(bar, values);
    bar.SetColorPaletteGrayScale();
    bar.SetFields(1.0, 0.0, 1.0);
    ExpectBatchesMatch(bar, values);
    bar.SetFields(0.0, 1.0, 0.5);
    ExpectBatchesMatch(bar, values);
    bar.SetFields(0.0, 1.0, -1.0);
    ExpectBatchesMatch(bar, values);
}

} // namespace
