#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <array>
#include <cfloat>
#include <cmath>
#include <limits>
#include <ostream>
#include <set>
#include <utility>
#include <vector>

namespace
{

using KesraEngine::CKesraScalarBar;
using KesraTest::TestScalarBar;

// Printed by GoogleTest as { red, green, blue }.
using Rgb = std::array<int, 3>;

// One answer of a colour query: the colour and the -1/0/1 result.
struct Answer
{
    Rgb rgb;
    int result;
    bool operator==(const Answer& o) const { return rgb == o.rgb && result == o.result; }
    friend void PrintTo(const Answer& a, std::ostream* os) { *os << testing::PrintToString(a.rgb) << ' ' << a.result; }
};

Answer Query(const CKesraScalarBar& bar, double value, bool byValue = false)
{
    unsigned char r = 7, g = 7, b = 7;
    const int result = byValue ? bar.GetOpenGLColorByValue(r, g, b, value)
                               : bar.GetOpenGLColor(r, g, b, value);
    return {{r, g, b}, result};
}

Rgb Colour(const CKesraScalarBar& bar, double value) { return Query(bar, value).rgb; }

Rgb Placed(const TestScalarBar& bar, double value, double minimum, double maximum, int log)
{
    CKesraScalarBar::Color c(1, 2, 3, 4);
    bar.SetOpenGlColor(c, value, minimum, maximum, log);
    return {c.red, c.green, c.blue};
}

constexpr Rgb kStop0{255, 0, 0};
constexpr Rgb kStop4{0, 0, 255};
constexpr Rgb kWhite{255, 255, 255};

TEST(ScalarBarColorTest, SmoothBytesAtAndAroundStops)
{
    const CKesraScalarBar bar;
    const std::pair<double, Rgb> cases[] = {
        {0.0, kStop0},          {0.1, {255, 102, 0}}, {0.25, {255, 255, 0}},
        {0.5, {0, 255, 0}},     {0.75, {0, 255, 255}}, {0.99, {0, 10, 255}},
        {1.0, kStop4},
        // The channel is 0.3999999999999999: in double times 255 it would
        // truncate to 101; the float step gives 102.
        {0.4, {102, 255, 0}},   {0.45, {51, 255, 0}}, {0.7, {0, 255, 204}},
    };
    for (const auto& [value, rgb] : cases)
    {
        EXPECT_EQ(Query(bar, value), (Answer{rgb, 0})) << value;
    }
}

TEST(ScalarBarColorTest, OutsideTheRangeTakesOverRangeColourOrNearestEnd)
{
    CKesraScalarBar bar;
    EXPECT_EQ(Query(bar, -0.5), (Answer{kWhite, -1}));
    EXPECT_EQ(Query(bar, 1.5).result, 1);
    bar.SetOverRangeColor(9, 8, 7);
    EXPECT_EQ(Query(bar, 1.5).rgb, (Rgb{9, 8, 7}));
    EXPECT_EQ(Query(bar, 1.5, true).result, 1);

    bar.SetFillAllRange(1);
    EXPECT_EQ(Query(bar, -0.5), (Answer{kStop0, 0}));
    EXPECT_EQ(Query(bar, 1.5), (Answer{kStop4, 0}));
}

TEST(ScalarBarColorTest, BandedTakesLowerEdgeOfAccumulatedBlocks)
{
    TestScalarBar bar;
    bar.SetBanded(1);
    EXPECT_EQ(Colour(bar, 0.6), (Rgb{0, 255, 0}));
    EXPECT_EQ(Colour(bar, 0.5), (Rgb{0, 255, 0})) << "lower edge belongs to its block";
    EXPECT_EQ(Colour(bar, 0.4999), (Rgb{127, 255, 0}));
    EXPECT_EQ(Colour(bar, 0.99), (Rgb{0, 127, 255}));
    EXPECT_EQ(Colour(bar, 1.0), kStop4) << "the maximum lies in no block";
    EXPECT_EQ(Query(bar, 0.99, true).rgb, (Rgb{0, 10, 255})) << "by value stays smooth";

    // 0.1 + 0.1 + 0.1 exceeds 0.3, so 0.3 still lies in the block from 0.2;
    // six steps add up to 0.6 exactly, where 6 * 0.1 would exceed it.
    bar.SetBlockNum(10);
    EXPECT_EQ(Colour(bar, 0.3), (Rgb{255, 204, 0}));
    EXPECT_EQ(Colour(bar, 0.6), (Rgb{0, 255, 102}));
    // Nine steps add up to 0.9999999999999999, but the last block ends at the
    // maximum itself, so the value just below it still lies in that block.
    EXPECT_EQ(Colour(bar, std::nextafter(1.0, 0.0)), (Rgb{0, 102, 255}));

    // The workers colour any value; above the range lies in no block.
    unsigned char r = 0, g = 0, b = 0;
    bar.GetOpenGLBandedColorImpl(r, g, b, 1.5);
    EXPECT_EQ((Rgb{r, g, b}), kStop4);
    bar.GetOpenGLColorImpl(r, g, b, -0.5);
    EXPECT_EQ((Rgb{r, g, b}), kStop0);

    bar.SetFillAllRange(1);
    EXPECT_EQ(Colour(bar, -3.0), kStop0);
    EXPECT_EQ(Colour(bar, 3.0), kStop4);
}

TEST(ScalarBarColorTest, BandedGivesExactlyBlockNumberColoursInsideTheRange)
{
    for (int n = 2; n <= 30; ++n)
    {
        CKesraScalarBar bar;
        bar.SetValueRange(-3.0, 7.0, true, true);
        bar.SetBanded(1);
        bar.SetBlockNum(n);
        std::set<Rgb> colours;
        for (int k = 0; k < 2000; ++k)
        {
            colours.insert(Colour(bar, -3.0 + k * 0.005));
        }
        EXPECT_EQ(static_cast<int>(colours.size()), n);
        EXPECT_EQ(colours.count(kStop0), 1u) << "the first block takes stop 0";
    }
}

TEST(ScalarBarColorTest, InverseAndSingleColour)
{
    CKesraScalarBar bar;
    bar.SetInverse(1);
    EXPECT_EQ(Colour(bar, 0.0), kStop4);
    EXPECT_EQ(Colour(bar, 1.0), kStop0);

    bar.SetUseSignleColor(1);
    for (const auto& [v, side] : {std::make_pair(-1.0, -1), std::make_pair(0.0, 0), std::make_pair(0.5, 0),
                                  std::make_pair(2.0, 1)})
    {
        EXPECT_EQ(Query(bar, v), (Answer{{255, 96, 0}, side})) << v;
    }
    bar.SetSingleColor(1, 2, 3);
    EXPECT_EQ(Query(bar, 0.5, true).rgb, (Rgb{1, 2, 3}));

    bar.SetFillAllRange(1);
    EXPECT_EQ(Query(bar, 2.0).result, 0);
    EXPECT_EQ(Query(bar, -1.0).result, 0);
}

TEST(ScalarBarColorTest, PalettesGiveTheirStopsAndLeaveAlpha)
{
    TestScalarBar bar;
    const auto stops = [&bar] {
        std::vector<Rgb> out;
        for (const double p : {0.0, 0.25, 0.5, 0.75, 1.0})
        {
            out.push_back(Placed(bar, p, 0.0, 1.0, 0));
        }
        return out;
    };
    bar.SetColorPaletteGrayScale();
    EXPECT_EQ(stops(), (std::vector<Rgb>{{0, 0, 0}, {63, 63, 63}, {127, 127, 127},
                                         {191, 191, 191}, {255, 255, 255}}));
    bar.SetColorPaletteGreenRed();
    EXPECT_EQ(stops(), (std::vector<Rgb>{{255, 0, 0}, {240, 119, 0}, {224, 228, 0},
                                         {147, 237, 0}, {0, 255, 0}}));
    bar.SetColorPaletteBlueRed();
    EXPECT_EQ(stops(), (std::vector<Rgb>{{0, 0, 255}, {0, 255, 255}, {0, 255, 0},
                                         {255, 255, 0}, {255, 0, 0}}));
    bar.SetColorPaletteRedBlue();
    EXPECT_EQ(stops().front(), kStop0);

    CKesraScalarBar::Color c(0, 0, 0, 77);
    bar.SetOpenGlColor(c, 0.5, 0.0, 1.0, 0);
    EXPECT_EQ(c.alpha, 77);
}

TEST(ScalarBarColorTest, DegenerateRangesUseTheirOwnThresholds)
{
    TestScalarBar bar;
    bar.SetValueRange(5.0, 5.0, true, true);
    EXPECT_EQ(bar.ColorScaleTop(), 6.0);
    EXPECT_EQ(Colour(bar, 5.0), kStop0);
    EXPECT_EQ(Query(bar, 5.5).result, 1);
    bar.SetBanded(1);
    EXPECT_EQ(Colour(bar, 5.0), kStop0);

    const double top1e18 = 1e-18 + 1.0;
    bar.SetValueRange(0.0, 1e-18, true, true);
    EXPECT_EQ(bar.ColorScaleTop(), top1e18);
    EXPECT_EQ(Query(bar, 1e-18, true).rgb, kStop0);
    bar.SetValueRange(0.0, 1e-18, 0.0);
    EXPECT_EQ(bar.ColorScaleTop(), 1e-18);
    EXPECT_EQ(Query(bar, 1e-18, true).rgb, kStop4);

    // Each threshold counts as degenerate itself; twice it does not.
    bar.SetValueRange(0.0, 1e-16, false, false);
    EXPECT_EQ(bar.ColorScaleTop(), 1e-16 + 1.0);
    bar.SetValueRange(0.0, 2e-16, false, false);
    EXPECT_EQ(bar.ColorScaleTop(), 2e-16);
    bar.SetValueRange(0.0, 1e-20, 0.0);
    EXPECT_EQ(bar.ColorScaleTop(), 1e-20 + 1.0);
    bar.SetValueRange(0.0, 2e-20, 0.0);
    EXPECT_EQ(bar.ColorScaleTop(), 2e-20);
}

TEST(ScalarBarColorTest, ValueRangeFormsStoreTheirCompanions)
{
    TestScalarBar bar;
    bar.SetValueRange(2.0, 1.0, true, true);
    bar.SetValueRange(2.0, 1.0, 1.5);
    bar.SetDisplayRange(2.0, 1.0);
    EXPECT_EQ(bar.IsModified(), 0) << "refused ranges change nothing";
    EXPECT_EQ(Colour(bar, 0.5), (Rgb{0, 255, 0}));

    ASSERT_TRUE(bar.Create(100, 100, 0, 0));
    double lo = 0, hi = 0, cur = 0;
    bar.SetValueRange(0.0, 10.0, 12.0);
    bar.GetCurrentUpperValue(cur);
    EXPECT_EQ(cur, 10.0);
    EXPECT_EQ(bar.ValueRangeFlag1() + bar.ValueRangeFlag2(), 2);
    bar.SetValueRange(0.0, 20.0, false, true);
    bar.GetCurrentValueRange(lo, cur);
    EXPECT_EQ(cur, 20.0);
    EXPECT_EQ(std::make_pair(bar.ValueRangeFlag1(), bar.ValueRangeFlag2()), std::make_pair(0, 1));
    bar.GetValueRange(lo, hi, cur);
    EXPECT_EQ(std::make_pair(hi, cur), std::make_pair(20.0, 10.0)) << "the stored current value";
    bar.SetValueRange(4.0, 20.0, -1.0);
    bar.GetCurrentValueRange(lo, cur);
    EXPECT_EQ(std::make_pair(lo, cur), std::make_pair(4.0, 4.0));

    // The display range is stored but colours nothing.
    const Rgb before = Colour(bar, 6.0);
    bar.SetDisplayRange(5.0, 6.0);
    bar.GetDisplayRange(lo, hi);
    EXPECT_EQ(std::make_pair(lo, hi), std::make_pair(5.0, 6.0));
    EXPECT_EQ(Colour(bar, 6.0), before);
}

TEST(ScalarBarColorTest, LogarithmicPlacement)
{
    const TestScalarBar bar;
    EXPECT_EQ(Placed(bar, 10.0, 1.0, 1000.0, 1), (Rgb{170, 255, 0}));
    EXPECT_EQ(Placed(bar, -10.0, 1.0, 1000.0, 1), (Rgb{170, 255, 0})) << "|value| is placed";
    EXPECT_EQ(Placed(bar, 0.1, 0.0, 1000.0, 1), kStop0) << "bottom is top * 0.0001";
    EXPECT_EQ(Placed(bar, 100.0, 0.0, 1000.0, 1), (Rgb{0, 255, 255}));
    EXPECT_EQ(Placed(bar, 0.01, -5.0, -1.0, 1), (Rgb{0, 255, 0})) << "top 1, bottom 1e-4";
    EXPECT_EQ(Placed(bar, 0.0, 1.0, 1000.0, 1), kStop0);
}

TEST(ScalarBarColorTest, UndefinedPositionsStayOnThePalette)
{
    TestScalarBar bar;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(Query(bar, nan), (Answer{kStop0, 0})) << "NaN passes both range tests";
    EXPECT_EQ(Placed(bar, 3.0, 3.0, 3.0, 0), kStop0);
    EXPECT_EQ(Placed(bar, 4.0, 3.0, 3.0, 0), kStop4);
    EXPECT_EQ(Placed(bar, 2.0, 2.0, 2.0, 1), kStop0);
    const double inf = std::numeric_limits<double>::infinity();
    bar.SetFillAllRange(1);
    EXPECT_EQ(Query(bar, inf).rgb, kStop4);
    EXPECT_EQ(Query(bar, -inf).rgb, kStop0);
    bar.SetInverse(1);
    EXPECT_EQ(Query(bar, nan).rgb, kStop0);

    // Adding 1.0 no longer moves the top at 2^53.
    const double big = 9007199254740992.0;
    bar.SetValueRange(big, big, true, true);
    EXPECT_EQ(bar.ColorScaleTop(), big);
    EXPECT_EQ(Query(bar, big).rgb, kStop0);
}

// Whether a colour lies on the RedBlue palette's path through its five stops.
bool OnRedBluePath(const Rgb& c)
{
    return (c[0] == 255 && c[2] == 0) || (c[1] == 255 && c[2] == 0) ||
           (c[0] == 0 && c[1] == 255) || (c[0] == 0 && c[2] == 255);
}

// Every query, with ranges and values from this set, follows the colour table:
// the result tells the side of the range, and the colour is the single colour,
// the over-range colour or one on the palette, never anything else.
TEST(ScalarBarColorTest, NonFiniteSweepFollowsTheColourTable)
{
    const double inf = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double specials[] = {nan, inf, -inf, DBL_MAX, -DBL_MAX, DBL_MIN, 4.9e-324,
                               -4.9e-324, 0.0, -0.0, 1.0, 9007199254740992.0};
    const Rgb overRange{1, 2, 3};
    const Rgb single{4, 5, 6};
    for (const double lo : specials)
    {
        for (const double hi : specials)
        {
            for (const bool withCurrent : {false, true})
            {
                TestScalarBar bar;
                bar.SetOverRangeColor(1, 2, 3);
                bar.SetSingleColor(4, 5, 6);
                withCurrent ? bar.SetValueRange(lo, hi, hi - lo) : bar.SetValueRange(lo, hi, lo == hi, true);
                bar.SetDisplayRange(hi, lo);
                // A refused range leaves 0 to 1.
                const double minimum = lo > hi ? 0.0 : lo;
                const double maximum = lo > hi ? 1.0 : hi;
                for (int mode = 0; mode < 16; ++mode)
                {
                    bar.SetBanded(mode & 1);
                    bar.SetInverse(mode & 2);
                    bar.SetFillAllRange(mode & 4);
                    bar.SetUseSignleColor(mode & 8);
                    for (const double v : specials)
                    {
                        const int side = minimum > v ? -1 : v > maximum ? 1 : 0;
                        for (const bool byValue : {false, true})
                        {
                            const Answer a = Query(bar, v, byValue);
                            const auto at = [&] {
                                return testing::Message() << lo << ' ' << hi << ' ' << withCurrent << ' '
                                                          << mode << ' ' << v << ' ' << byValue << ": "
                                                          << testing::PrintToString(a.rgb);
                            };
                            EXPECT_EQ(a.result, (mode & 4) ? 0 : side) << at();
                            const Rgb fixed = (mode & 8) ? single : overRange;
                            const bool paletteColour = !(mode & 8) && a.result == 0;
                            EXPECT_TRUE(paletteColour ? OnRedBluePath(a.rgb) : a.rgb == fixed) << at();
                        }
                        EXPECT_TRUE(OnRedBluePath(Placed(bar, v, lo, hi, mode & 1)));
                    }
                }
            }
        }
    }
}

} // namespace
