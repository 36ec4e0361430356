// The colour map on its own: where ColorBlockEdges puts the block edges
// (accumulated, one block, none), that every banded colour, single and
// batch, is the colour of the lower edge of the value's block among those
// edges, on ordinary, tiny, negative and unordered ranges, and that the map
// refers to its palette and starts as a new legend.
#include "Engine/ColorMap.h"
#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cfloat>
#include <climits>
#include <cmath>
#include <iterator>
#include <limits>
#include <vector>

namespace
{

using KesraEngine::CKesraColorMap;
using KesraEngine::ColorBlockEdges;
using KesraEngine::ColorPalette;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

using Rgb = std::array<int, 3>;

Rgb Single(const CKesraColorMap& map, double value)
{
    unsigned char r = 7, g = 7, b = 7;
    map.ColorOf(r, g, b, value);
    return {r, g, b};
}

Rgb Placed(const CKesraColorMap& map, double value)
{
    unsigned char r = 7, g = 7, b = 7;
    map.PaletteColor(r, g, b, value, map.minimum, map.scaleTop, 0);
    return {r, g, b};
}

// The lower edge of the first block [edge[k], edge[k + 1]) holding value, or
// the last edge when none does: the banded rule read off the edges alone.
double LowerEdgeOf(const std::vector<double>& edges, double value)
{
    for (std::size_t k = 0; k + 1 < edges.size(); ++k)
    {
        if (edges[k] <= value && value < edges[k + 1])
        {
            return edges[k];
        }
    }
    return edges.back();
}

// The ends, every edge and a hair on either side, inside the range, and NaN.
std::vector<double> ProbeValues(const CKesraColorMap& map, const std::vector<double>& edges)
{
    std::vector<double> values = {map.minimum, map.maximum, kNaN};
    for (const double e : edges)
    {
        for (const double v : {e, std::nextafter(e, -kInf), std::nextafter(e, kInf)})
        {
            if (v >= map.minimum && v <= map.maximum)
            {
                values.push_back(v);
            }
        }
    }
    return values;
}

// Every probe takes the colour of LowerEdgeOf on ColorBlockEdges' edges, in
// the single query and in the batch.
void ExpectBandsFollowEdges(const CKesraColorMap& map)
{
    const std::vector<double> edges = ColorBlockEdges(map.minimum, map.maximum, map.blocks);
    const std::vector<double> values = ProbeValues(map, edges);
    std::vector<unsigned char> rgba(4 * values.size());
    map.ColorsOf(values.data(), values.size(), rgba.data());
    for (std::size_t k = 0; k < values.size(); ++k)
    {
        const Rgb expected = Placed(map, LowerEdgeOf(edges, values[k]));
        EXPECT_EQ(expected, Single(map, values[k]))
            << "value " << values[k] << " on " << map.minimum << " to " << map.maximum << ", "
            << map.blocks << " blocks";
        EXPECT_EQ(expected, (Rgb{rgba[4 * k], rgba[4 * k + 1], rgba[4 * k + 2]}))
            << "batch, value " << values[k] << ", " << map.blocks << " blocks";
    }
}

CKesraColorMap BandedMap(double minimum, double maximum, int blocks)
{
    CKesraColorMap map;
    map.minimum = minimum;
    map.maximum = maximum;
    // The top at the maximum even for tiny ranges (the legend would move it
    // one above), so that neighbouring blocks differ in colour.
    map.scaleTop = maximum;
    map.blocks = blocks;
    map.banded = true;
    return map;
}

TEST(ColorBlockEdgesTest, EdgesAccumulateAndEndAtTheMaximum)
{
    const std::vector<double> edges = ColorBlockEdges(0.0, 1.0, 10);
    const std::vector<double> accumulated = {0.0, 0.1, 0.2, 0.30000000000000004, 0.4, 0.5, 0.6,
                                             0.7, 0.7999999999999999, 0.8999999999999999, 1.0};
    EXPECT_EQ(accumulated, edges);
    EXPECT_NE(8 * 0.1, edges[8]) << "not minimum + k * step";

    for (int blocks = 2; blocks <= 30; ++blocks)
    {
        const std::vector<double> e = ColorBlockEdges(-3.3, 1.1, blocks);
        ASSERT_EQ(static_cast<std::size_t>(blocks) + 1, e.size());
        EXPECT_EQ(-3.3, e.front());
        EXPECT_EQ(1.1, e.back()) << blocks << " blocks";
    }
}

TEST(ColorBlockEdgesTest, OneBlockEndsAtMinimumPlusWidthAndFewerIsTheMinimumAlone)
{
    // -3.3 + (1.1 - -3.3) rounds above 1.1, -2.6 + (0.4 - -2.6) below 0.4.
    EXPECT_EQ((std::vector<double>{-3.3, 1.1000000000000005}), ColorBlockEdges(-3.3, 1.1, 1));
    EXPECT_EQ((std::vector<double>{-2.6, 0.3999999999999999}), ColorBlockEdges(-2.6, 0.4, 1));
    ExpectBandsFollowEdges(BandedMap(-2.6, 0.4, 1));
    // So with one block the maximum 0.2 lies in the block, whose upper edge
    // is 0.20000000000000004, and takes the minimum's colour, not stop 4.
    const CKesraColorMap one = BandedMap(-0.1, 0.2, 1);
    EXPECT_EQ((Rgb{255, 0, 0}), Single(one, 0.2));
    ExpectBandsFollowEdges(one);

    for (const int blocks : {0, -1, INT_MIN})
    {
        EXPECT_EQ(std::vector<double>{-2.0}, ColorBlockEdges(-2.0, 5.0, blocks)) << blocks;
        // Every value then takes the minimum's colour, the maximum too.
        const CKesraColorMap none = BandedMap(-2.0, 5.0, blocks);
        EXPECT_EQ((Rgb{255, 0, 0}), Single(none, 5.0));
        ExpectBandsFollowEdges(none);
    }
}

TEST(ColorBlockEdgesTest, BandedColoursFollowTheEdgesOnAwkwardRanges)
{
    struct Range
    {
        double minimum;
        double maximum;
    };
    // Ordinary, negative, widths of 1e-300 (normal and subnormal steps), a
    // 0.1 step, steps lost against the minimum (empty blocks), and edges
    // that overflow to infinity (not even ordered).
    const Range ranges[] = {{0.0, 1.0},       {-3.5, 12.25},        {-7.3, -2.1},
                            {0.0, 1e-300},    {-2e-300, -1e-300},   {1e-300, 1.7e-300},
                            {0.0, 1e-307},    {0.3, 3.3},           {1e16, 1e16 + 8.0},
                            {-DBL_MAX, DBL_MAX}};
    for (const Range& range : ranges)
    {
        // Within the table of the batch, and beyond it where it walks.
        for (const int blocks : {1, 2, 3, 7, 10, 29, 30, 31, 45})
        {
            CKesraColorMap map = BandedMap(range.minimum, range.maximum, blocks);
            ExpectBandsFollowEdges(map);
            map.inverse = true;
            map.fillAllRange = true;
            ExpectBandsFollowEdges(map);
        }
    }
}

TEST(ColorBlockEdgesTest, LegendBandsFollowTheEdges)
{
    // What a backend's legend does: its labels from the edges of the bar's
    // own range and block number, its colours from the bar.
    KesraTest::TestScalarBar bar;
    bar.SetValueRange(-7.3, -2.1, true, true);
    bar.SetBanded(1);
    ASSERT_TRUE(bar.Create(800, 600, 0, 0));
    for (int blocks = 2; blocks <= 30; ++blocks)
    {
        bar.SetBlockNum(blocks);
        const std::vector<double> edges = ColorBlockEdges(-7.3, -2.1, bar.GetBlockNum());
        for (const double edge : edges)
        {
            for (const double v : {edge, std::max(-7.3, std::nextafter(edge, -kInf))})
            {
                KesraEngine::CKesraScalarBar::Color expected(0, 0, 0, 0);
                bar.SetOpenGlColor(expected, LowerEdgeOf(edges, v), -7.3, bar.ColorScaleTop(), 0);
                unsigned char r = 7, g = 7, b = 7;
                bar.GetOpenGLColor(r, g, b, v);
                EXPECT_EQ((Rgb{expected.red, expected.green, expected.blue}), (Rgb{r, g, b}))
                    << v << ", " << blocks << " blocks";
            }
        }
    }
}

TEST(ColorMapTest, DefaultsAnswerAsANewLegend)
{
    const CKesraColorMap map;
    const KesraEngine::CKesraScalarBar bar;
    for (const double v : {-0.5, 0.0, 0.1, 0.25, 0.6, 0.99, 1.0, 1.5, kNaN})
    {
        unsigned char r1 = 7, g1 = 7, b1 = 7, r2 = 9, g2 = 9, b2 = 9;
        EXPECT_EQ(bar.GetOpenGLColor(r1, g1, b1, v), map.ColorOf(r2, g2, b2, v)) << v;
        EXPECT_EQ((Rgb{r1, g1, b1}), (Rgb{r2, g2, b2})) << v;
    }
}

TEST(ColorMapTest, PaletteIsReferredToNotCopied)
{
    ColorPalette ramp = {{0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}, {0.0, 0.0, 0.0},
                         {0.0, 0.0, 0.0}};
    CKesraColorMap map;
    map.palette = &ramp;
    EXPECT_EQ((Rgb{0, 0, 0}), Single(map, 1.0));
    ramp[4][1] = 1.0;
    EXPECT_EQ((Rgb{0, 255, 0}), Single(map, 1.0));
    EXPECT_EQ((Rgb{0, 127, 0}), Single(map, 0.875)) << "half way along the last segment";
}

TEST(ColorMapTest, BatchEqualsSingleWhereTheLegendCannotGo)
{
    // Settings only a map (or a derived legend) can hold: a top far above
    // the maximum, blocks the legend's setter refuses, every switch.
    const double values[] = {kNaN, -kInf, kInf, -3.0, -1.0, -0.5, 0.0, 0.37, 1.0, 2.99, 3.0, 4.0};
    constexpr std::size_t kCount = std::size(values);
    for (const int blocks : {-5, 0, 1, 2, 30, 31, 64})
    {
        for (int switches = 0; switches < 16; ++switches)
        {
            CKesraColorMap map = BandedMap(-1.0, 3.0, blocks);
            map.palette = &KesraEngine::kColorPaletteGreenRed;
            map.scaleTop = 11.0;
            map.inverse = (switches & 1) != 0;
            map.banded = (switches & 2) != 0;
            map.fillAllRange = (switches & 4) != 0;
            map.useSingleColor = (switches & 8) != 0;
            unsigned char rgba[4 * kCount];
            signed char codes[kCount];
            map.ColorsOf(values, kCount, rgba, codes);
            for (std::size_t k = 0; k < kCount; ++k)
            {
                unsigned char r = 7, g = 7, b = 7;
                const int code = map.ColorOf(r, g, b, values[k]);
                EXPECT_EQ((std::array<int, 5>{r, g, b, 255, code}),
                          (std::array<int, 5>{rgba[4 * k], rgba[4 * k + 1], rgba[4 * k + 2],
                                              rgba[4 * k + 3], codes[k]}))
                    << values[k] << ", " << blocks << " blocks, switches " << switches;
            }
        }
    }
}

// A map's own many stops, changed in place between two batches through the
// same tables: the second batch must see the new stops, not the first's
// table, and both must equal the single query.
TEST(ColorMapTest, ManyStopsOfTheHostsOwnAreComparedBitForBitBeforeATableIsReused)
{
    double stops[3][3] = {{0.0, 0.0, 0.0}, {1.0, 0.5, 0.25}, {0.0, 1.0, 0.0}};
    CKesraColorMap map;
    map.stops = KesraEngine::ColorStops{stops, 3};
    KesraEngine::CKesraColorTables tables;
    std::vector<double> values(8192);
    for (std::size_t k = 0; k < values.size(); ++k)
    {
        values[k] = -0.1 + 1.2 * static_cast<double>(k) / static_cast<double>(values.size());
    }
    std::vector<unsigned char> rgba(4 * values.size());
    for (const double middle : {0.5, 0.75})
    {
        stops[1][1] = middle;
        map.ColorsOf(values.data(), values.size(), rgba.data(), nullptr, tables);
        for (std::size_t k = 0; k < values.size(); ++k)
        {
            unsigned char r = 7, g = 7, b = 7;
            map.ColorOf(r, g, b, values[k]);
            ASSERT_EQ((Rgb{r, g, b}), (Rgb{rgba[4 * k], rgba[4 * k + 1], rgba[4 * k + 2]}))
                << values[k] << ", middle green " << middle;
        }
    }
    // Half way the middle stop itself; fewer than two stops fall back to
    // the five.
    EXPECT_EQ(Single(map, 0.5), (Rgb{255, 191, 63}));
    map.stops.count = 1;
    EXPECT_EQ(Single(map, 0.5), (Rgb{0, 255, 0}));
}

} // namespace
