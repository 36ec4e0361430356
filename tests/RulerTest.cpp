#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <string>
#include <tuple>
#include <utility>

namespace
{

using KesraTest::TestRuler;
using Color = KesraEngine::CKesraRuler::Color;

// One row of the ruler's table: a window, a zoom, and what the bar becomes.
struct RulerCase
{
    int windowWidth;
    float openGLScale;
    int pixelWidth;
    float length;
    int labelFormat1;
    int labelFormat2;
};

TestRuler CreatedRuler(int windowWidth, float openGLScale)
{
    TestRuler ruler;
    EXPECT_TRUE(ruler.Create(windowWidth, 300, 0, 0));
    ruler.SetOpenGLScale(openGLScale);
    return ruler;
}

void ExpectDegenerate(const TestRuler& ruler)
{
    EXPECT_EQ(ruler.PixelWidth(), 0);
    EXPECT_EQ(ruler.Length(), 0.0f);
    EXPECT_EQ(ruler.LabelFormat1(), 2);
    EXPECT_EQ(ruler.LabelFormat2(), 2);
}

TEST(RulerTest, ChoosesRoundLengthAndShortensBarExactlyInFloat)
{
    const RulerCase cases[] = {
        {300, 1.0f, 100, 100.0f, 4, 1},       // exact: the bar keeps its width
        {800, 1.0f, 200, 200.0f, 4, 1},       // 266 -> 200
        {1000, 0.1f, 300, 3000.0f, 3, 2},     // magnitude above 3
        {1000, 10.0f, 300, 30.0f, 4, 1},
        {1000, 100.0f, 300, 3.0f, 2, 2},      // whole units between 1 and 10
        {1000, 1000.0f, 300, 0.3f, 2, 2},     // tenths up to 1
        {1000, 5000.0f, 299, 0.06f, 3, 4},    // float ratio falls just below 300
        {1000, 50000.0f, 300, 0.006f, 2, 2},  // magnitude -3 and below
        {600, 0.2f, 200, 1000.0f, 4, 1},      // 999.99998 rounds to 1000 in float
        {3000, 1.0f, 1000, 1000.0f, 4, 1},
        {30000, 1.0f, 10000, 10000.0f, 3, 2},
        {300, 200.0f, 100, 0.5f, 2, 2},       // exact tenths keep the width
        // The shortening ratio in float: in double these give 69, 73 and 309.
        {300, 0.7f, 70, 100.0f, 4, 1},
        {300, 37.0f, 74, 2.0f, 2, 2},
        {1000, 31.0f, 310, 10.0f, 4, 1},
        {900, 0.3f, 270, 900.0f, 4, 1},       // 300 / 0.3 is 999.99994 in float
        // 1000 free pixels; the unrounded lengths are 5.0009 and 5.0011, on
        // either side of the one-thousandth tolerance for an exact bar.
        {3000, 1000.0f / 5.0009f, 1000, 5.0f, 2, 2},
        {3000, 1000.0f / 5.0011f, 999, 5.0f, 2, 2},
    };
    for (const RulerCase& c : cases)
    {
        const TestRuler ruler = CreatedRuler(c.windowWidth, c.openGLScale);
        SCOPED_TRACE(testing::Message() << "width " << c.windowWidth << ", scale " << c.openGLScale);
        EXPECT_EQ(ruler.PixelWidth(), c.pixelWidth);
        EXPECT_EQ(ruler.Length(), c.length);
        EXPECT_EQ(ruler.LabelFormat1(), c.labelFormat1);
        EXPECT_EQ(ruler.LabelFormat2(), c.labelFormat2);
        EXPECT_EQ(ruler.BlockCount(), 2);
    }
}

TEST(RulerTest, AutoBlockIsDecidedBeforeTheBarIsShortenedUntilAFixedCount)
{
    // 780 and 777 pixels both shorten to a 200-pixel bar.
    for (const auto& [windowWidth, blocks] : {std::make_pair(780, 4), std::make_pair(777, 2)})
    {
        TestRuler ruler;
        ruler.SetAutoBlock(true);
        ASSERT_TRUE(ruler.Create(windowWidth, 300, 0, 0));
        EXPECT_EQ(ruler.PixelWidth(), 200) << windowWidth;
        EXPECT_EQ(ruler.BlockCount(), blocks) << windowWidth;
    }

    // A fixed block count turns the automatic choice off.
    TestRuler ruler = CreatedRuler(800, 1.0f);
    ruler.SetAutoBlock(true);
    ruler.SetBlock4();
    bool autoBlock = true;
    ruler.GetAutoBlock(autoBlock);
    EXPECT_FALSE(autoBlock);
    EXPECT_FALSE(ruler.IsBlock2());
    EXPECT_EQ(ruler.BlockCount(), 4);

    ruler.SetAutoBlock(true); // 266 free pixels
    EXPECT_EQ(ruler.BlockCount(), 4);
    ruler.SetWindowSize(300, 300);
    EXPECT_TRUE(ruler.IsBlock2());
    ruler.SetAutoBlock(false); // keeps the last count
    ruler.SetWindowSize(900, 300);
    EXPECT_TRUE(ruler.IsBlock2());

    ruler.SetAutoBlock(true);
    ASSERT_EQ(ruler.BlockCount(), 4);
    ruler.SetBlock2();
    ruler.GetAutoBlock(autoBlock);
    EXPECT_FALSE(autoBlock);
    EXPECT_TRUE(ruler.IsBlock2());
}

TEST(RulerTest, DegenerateFreeWidthGivesZeroLengthWithoutLogarithm)
{
    TestRuler ruler;
    ASSERT_TRUE(ruler.Create(300, 300, 298, 0)); // free width 2 < width scale 3
    ExpectDegenerate(ruler);
    ruler.SetStartPosition(400, 0); // beyond the window
    ExpectDegenerate(ruler);
    ruler.SetStartPosition(INT_MIN, 0); // no int holds the free width
    ruler.SetWindowSize(INT_MAX, 300);
    ruler.SetRulerWidthScale(1);
    ExpectDegenerate(ruler);

    ruler.SetStartPosition(0, 0);
    ruler.SetOpenGLScale(std::numeric_limits<float>::infinity()); // length 0
    ExpectDegenerate(ruler);
}

TEST(RulerTest, ExtremeZoomsGiveDefinedBars)
{
    // Lengths of 1e32 and 3e-37 are beyond what the ruler supports, but give
    // a bar no longer than the free width.
    for (const float scale : {1e-30f, std::numeric_limits<float>::max()})
    {
        const TestRuler ruler = CreatedRuler(300, scale);
        EXPECT_TRUE(std::isfinite(ruler.Length())) << scale;
        EXPECT_GE(ruler.PixelWidth(), 0) << scale;
        EXPECT_LE(ruler.PixelWidth(), 100) << scale;
    }
}

TEST(RulerTest, RecomputesOnlyWhereItsSettersSay)
{
    TestRuler ruler; // nothing computed yet
    ruler.SetStartPosition(0, 0); // unchanged: no recomputation
    EXPECT_EQ(ruler.PixelWidth(), 0);
    ruler.SetStartPosition(0, 5);
    EXPECT_EQ(ruler.PixelWidth(), 100);

    TestRuler sameSize;
    sameSize.SetWindowSize(300, 300); // recomputes even without a change
    EXPECT_EQ(sameSize.PixelWidth(), 100);
    sameSize.SetRulerWidthScale(2); // 150 free pixels -> 100
    EXPECT_EQ(sameSize.Length(), 100.0f);
    sameSize.SetOpenGLScale(2.0f); // 75 -> 70
    EXPECT_EQ(sameSize.Length(), 70.0f);
    EXPECT_EQ(sameSize.PixelWidth(), 140);

    // The draw switch is stored as 0 or 1.
    EXPECT_EQ(sameSize.GetDrawRuler(), 1);
    sameSize.SetDrawRuler(-4);
    EXPECT_EQ(sameSize.GetDrawRuler(), 1);
    sameSize.SetDrawRuler(0);
    EXPECT_EQ(sameSize.GetDrawRuler(), 0);
}

TEST(RulerTest, RefusesBadArgumentsSilently)
{
    TestRuler ruler = CreatedRuler(800, 1.0f);
    EXPECT_FALSE(ruler.Create(0, 300, 10, 10));
    EXPECT_FALSE(ruler.Create(800, 0, 10, 10));
    int value = -1;
    ruler.GetStartPosition(value, value);
    EXPECT_EQ(value, 0);

    for (const float bad : {0.0f, -1.0f, std::numeric_limits<float>::quiet_NaN()})
    {
        ruler.SetOpenGLScale(bad);
    }
    float scale = 0.0f;
    ruler.GetOpenGLScale(scale);
    EXPECT_EQ(scale, 1.0f);
    ruler.SetRulerWidthScale(0);
    ruler.SetRulerWidthScale(-2);
    ruler.GetRulerWidthScale(value);
    EXPECT_EQ(value, 3);
    EXPECT_EQ(ruler.PixelWidth(), 200);

    ruler.SetUnit("");
    std::string unit;
    ruler.GetUnit(unit);
    EXPECT_EQ(unit, "[mm]");

    for (const auto& [height, reduced] : {std::make_pair(10, 6), std::make_pair(11, 7), std::make_pair(30, 20)})
    {
        ruler.SetRulerHeight(height);
        ruler.GetRulerHeight(value);
        EXPECT_EQ(std::make_pair(value, ruler.ReducedHeight()), std::make_pair(height, reduced));
    }
}

TEST(RulerTest, TextColourAndStartPositionNeedCreate)
{
    TestRuler ruler;
    EXPECT_FALSE(ruler.Delete());
    ruler.SetTextColor(Color(1, 2, 3, 4)); // ignored
    Color color(9, 9, 9, 9);
    ruler.GetTextColor(color); // untouched
    EXPECT_EQ(color, Color(9, 9, 9, 9));
    int x = -1, y = -1;
    ruler.GetStartPosition(x, y);
    EXPECT_EQ(x, -1);

    ASSERT_TRUE(ruler.Create(640, 480, 20, 30));
    ruler.GetTextColor(color);
    EXPECT_EQ(color, Color(0, 0, 0, 255));
    ruler.SetTextColor(Color(1, 2, 3, 4));
    ruler.GetTextColor(color);
    EXPECT_EQ(color, Color(1, 2, 3, 4));
    ruler.GetStartPosition(x, y);
    EXPECT_EQ(y, 30);

    EXPECT_TRUE(ruler.Delete());
    EXPECT_FALSE(ruler.Delete());
    EXPECT_EQ(ruler.PixelWidth(), 200); // Delete keeps everything else
}

TEST(RulerTest, PowerOfTenNeedsMoreThanDigits)
{
    const double inf = std::numeric_limits<double>::infinity();
    const std::tuple<double, double, int, int> cases[] = { // a, b, digits, power
        {0.0, 10.0, 1, 0},   {0.0, 10.5, 1, 2}, {-500.0, 2.0, 1, 3}, {0.0, 500.0, 3, 0},
        {0.0, 5000.0, 3, 4}, {0.0, 0.1, 1, 0},  {0.0, 0.05, 1, -2},  {0.0, -0.005, 1, -3},
        {0.0, 0.05, 2, 0},   {0.0, 0.0, 1, 0},  {0.0, inf, 1, 0}, // no power of ten
    };
    const TestRuler ruler;
    for (const auto& [a, b, digits, power] : cases)
    {
        EXPECT_EQ(ruler.GetExponentialBase(a, b, digits), power) << a << ", " << b;
    }
}

TEST(RulerTest, EstimatesLabelWidthByteByByte)
{
    const TestRuler ruler;
    EXPECT_EQ(ruler.CalculateStringWdith(""), 6);
    EXPECT_EQ(ruler.CalculateStringWdith("[mm]"), 22);
    EXPECT_EQ(ruler.CalculateStringWdith("12"), 18);
    EXPECT_EQ(ruler.CalculateStringWdith("1.25"), 27);
    EXPECT_EQ(ruler.CalculateStringWdith("Ab z\xE9"), 6 + 8 + 5 + 3 + 5 + 3);
}

TEST(RulerTest, CopiesAreIndependent)
{
    TestRuler source = CreatedRuler(800, 1.0f);
    source.SetUnit("[m]");
    TestRuler copy(source);
    source.SetUnit("[km]");
    source.SetWindowSize(300, 300);

    std::string unit;
    copy.GetUnit(unit);
    EXPECT_EQ(unit, "[m]");
    EXPECT_EQ(copy.IsCreate(), 1);
    EXPECT_EQ(copy.PixelWidth(), 200);

    copy = source;
    copy.GetUnit(unit);
    EXPECT_EQ(unit, "[km]");
    EXPECT_EQ(copy.PixelWidth(), 100);
}

} // namespace
