#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <limits>
#include <sstream>
#include <string>
#include <utility>
#include <tuple>

namespace
{

using KesraEngine::CKesraScalarBar;
using KesraTest::TestScalarBar;

// A backend clears the modified flag after drawing; so does this one.
class DrawnBar : public TestScalarBar
{
public:
    void ClearModified() { m_modified = 0; }
};

// The pixels per unit that the layout computes.
std::pair<float, float> Units(const TestScalarBar& bar) { return {bar.EqualPartX(), bar.EqualPartY()}; }

TEST(ScalarBarLayoutTest, CreateComputesUnitsForEitherDirection)
{
    TestScalarBar bar;
    ASSERT_TRUE(bar.Create(800, 600, 700, 100));
    EXPECT_EQ(Units(bar), std::make_pair(100.0f / 60.0f, 50.0f));

    TestScalarBar upright;
    upright.SetDirection(1);
    ASSERT_TRUE(upright.Create(800, 600, 700, 100));
    EXPECT_EQ(Units(upright), std::make_pair(6.25f, 500.0f / 45.0f));
    upright.SetStartPosition(700, 10);
    EXPECT_EQ(upright.EqualPartY(), 575.0f / 45.0f) << "at least 25 pixels kept below";

    // The pixel differences are 32-bit: beyond that they wrap around.
    ASSERT_TRUE(bar.Create(INT_MIN, INT_MAX, INT_MAX, INT_MIN));
    EXPECT_EQ(Units(bar), std::make_pair(1.0f / 60.0f, -1.0f / 10.0f));
}

TEST(ScalarBarLayoutTest, DirectionTakesEffectAtTheNextLayoutChange)
{
    DrawnBar bar;
    ASSERT_TRUE(bar.Create(800, 600, 700, 100));
    bar.SetDirection(1);
    EXPECT_EQ(bar.EqualPartX(), 100.0f / 60.0f);
    bar.ClearModified();
    bar.SetWindowSize(800, 600);
    bar.SetStartPosition(700, 100);
    EXPECT_EQ(bar.IsModified(), 0) << "unchanged size and position do nothing";
    EXPECT_EQ(bar.EqualPartY(), 50.0f);
    bar.SetWindowSize(800, 610);
    EXPECT_EQ(bar.IsModified(), 1);
    EXPECT_EQ(Units(bar), std::make_pair(6.25f, 510.0f / 45.0f));

    bar.SetDirection(0);
    bar.UpdateEqualPartValue();
    EXPECT_EQ(bar.EqualPartY(), 51.0f);

    TestScalarBar fresh;
    fresh.SetWindowSize(120, 50);
    EXPECT_EQ(Units(fresh), std::make_pair(2.0f, 5.0f)) << "before Create the start position is 0";
}

TEST(ScalarBarLayoutTest, CreateAndDeleteLifecycle)
{
    TestScalarBar bar;
    EXPECT_FALSE(bar.Create(0, 600, 0, 0));
    EXPECT_FALSE(bar.Create(600, 0, 0, 0));
    EXPECT_EQ(bar.IsCreate(), 0);
    EXPECT_EQ(bar.IsModified(), 0);
    EXPECT_FALSE(bar.Delete());
    EXPECT_EQ(bar.deleteCalls, 1);

    EXPECT_TRUE(bar.Create(-10, 600, 0, 0));
    EXPECT_EQ(bar.deleteCalls, 1) << "nothing to delete on first Create";
    EXPECT_EQ(bar.IsCreate(), 1);
    EXPECT_EQ(bar.IsModified(), 1);

    EXPECT_TRUE(bar.Create(300, 200, 5, 6));
    EXPECT_EQ(bar.deleteCalls, 2) << "re-creating deletes through the virtual table";
    EXPECT_EQ(bar.EqualPartX(), 295.0f / 60.0f);

    EXPECT_TRUE(bar.Delete());
    EXPECT_FALSE(bar.Delete());
    EXPECT_EQ(bar.IsModified(), 1);
}

// Everything the getters that answer only while created hand out, read into
// outputs that start as 77 or "x".
std::string CreatedOnlyOutputs(const CKesraScalarBar& bar)
{
    int i[6] = {77, 77, 77, 77, 77, 77};
    double d[7] = {77, 77, 77, 77, 77, 77, 77};
    std::string t = "x", n = "x", u = "x";
    CKesraScalarBar::Color c(77, 77, 77, 77);
    bar.GetWindowSize(i[0], i[1]);
    bar.GetStartPosition(i[2], i[3]);
    bar.GetValueFormat(i[4], i[5]);
    bar.GetValueRange(d[0], d[1]);
    bar.GetValueRange(d[2], d[3], d[4]);
    bar.GetDisplayRange(d[5], d[6]);
    bar.GetTitle(t);
    bar.GetNote(n);
    bar.GetUnit(u);
    bar.GetColor(c);
    std::ostringstream os;
    for (const int v : i) os << v << ' ';
    for (const double v : d) os << v << ' ';
    os << t << n << u << ' ' << +c.red << ' ' << +c.green << ' ' << +c.blue << ' ' << +c.alpha;
    return os.str();
}

// What the getters that answer whether or not the bar is created hand out.
std::string AlwaysOutputs(const CKesraScalarBar& bar)
{
    double d[3] = {77, 77, 77};
    unsigned char c[6] = {77, 77, 77, 77, 77, 77};
    bar.GetCurrentValueRange(d[0], d[1]);
    bar.GetCurrentUpperValue(d[2]);
    bar.GetOverRangeColor(c[0], c[1], c[2]);
    bar.GetSingleColor(c[3], c[4], c[5]);
    std::ostringstream os;
    for (const double v : d) os << v << ' ';
    for (const unsigned char v : c) os << +v << ' ';
    os << bar.GetColorBlockLineWidth();
    return os.str();
}

TEST(ScalarBarLayoutTest, GettersAnswerOnlyWhileCreated)
{
    const std::string untouched = "77 77 77 77 77 77 77 77 77 77 77 77 77 xxx 77 77 77 77";
    const std::string always = "-1 0.5 0.5 1 2 3 4 5 6 2.5";
    TestScalarBar bar;
    bar.SetOverRangeColor(1, 2, 3);
    bar.SetSingleColor(4, 5, 6);
    bar.SetColorBlockLineWidth(2.5f);
    bar.SetTitle("t", true);
    bar.SetNote("n");
    bar.SetUnit("u");
    bar.SetColor({1, 2, 3, 4});
    bar.SetValueFormat(4, 2);
    bar.SetValueRange(-1.0, 1.0, 0.5);
    bar.SetDisplayRange(-2.0, 2.0);
    EXPECT_EQ(CreatedOnlyOutputs(bar), untouched);
    EXPECT_EQ(AlwaysOutputs(bar), always);
    EXPECT_EQ(bar.GetBlockNum(), 0);

    const std::string created = "40 30 1 2 4 2 -1 1 -1 1 0.5 -2 2 tnu 1 2 3 4";
    ASSERT_TRUE(bar.Create(40, 30, 1, 2));
    EXPECT_EQ(CreatedOnlyOutputs(bar), created);
    EXPECT_EQ(AlwaysOutputs(bar), always);
    EXPECT_EQ(bar.GetBlockNum(), 8);

    bar.Delete();
    EXPECT_EQ(CreatedOnlyOutputs(bar), untouched);
    ASSERT_TRUE(bar.Create(40, 30, 1, 2));
    EXPECT_EQ(CreatedOnlyOutputs(bar), created) << "Delete keeps the settings";
}

TEST(ScalarBarLayoutTest, SwitchesFollowTheFlagRule)
{
    struct Switch
    {
        void (CKesraScalarBar::*set)(int);
        int (CKesraScalarBar::*get)() const;
        int initial;
    };
    const Switch switches[] = {
        {&CKesraScalarBar::SetInverse, &CKesraScalarBar::GetInverse, 0},
        {&CKesraScalarBar::SetBanded, &CKesraScalarBar::GetBanded, 0},
        {&CKesraScalarBar::SetFillAllRange, &CKesraScalarBar::GetFillAllRange, 0},
        {&CKesraScalarBar::SetUseSignleColor, &CKesraScalarBar::GetUseSignleColor, 0},
        {&CKesraScalarBar::SetAutoTextColor, &CKesraScalarBar::GetAutoTextColor, 0},
        {&CKesraScalarBar::SetDirection, &CKesraScalarBar::GetDirection, 0},
        {&CKesraScalarBar::SetVisibility, &CKesraScalarBar::GetVisibility, 1},
        {&CKesraScalarBar::SetShowNode, &CKesraScalarBar::GetShowNode, 1},
    };
    for (const Switch& s : switches)
    {
        DrawnBar bar;
        EXPECT_EQ((bar.*s.get)(), -1);
        ASSERT_TRUE(bar.Create(10, 10, 0, 0));
        EXPECT_EQ((bar.*s.get)(), s.initial);
        bar.ClearModified();
        (bar.*s.set)(s.initial);
        EXPECT_EQ(bar.IsModified(), 0);
        (bar.*s.set)(1);
        (bar.*s.set)(0);
        (bar.*s.set)(-7);
        EXPECT_EQ((bar.*s.get)(), 1) << "non-zero is stored as 1";
        bar.ClearModified();
        (bar.*s.set)(2);
        EXPECT_EQ(bar.IsModified(), 1) << "2 differs from the stored 1";
        EXPECT_EQ((bar.*s.get)(), 1);
    }
}

TEST(ScalarBarLayoutTest, SettersRefuseOrSkipUnchangedValues)
{
    DrawnBar bar;
    ASSERT_TRUE(bar.Create(10, 10, 0, 0));
    bar.SetTitle("abc", true);
    bar.ClearModified();
    bar.SetTitle("abc", false);
    bar.SetTitle(std::string("abc\0def", 7), true);
    bar.SetNote(std::string());
    bar.SetUnit(std::string(1, '\0'));
    bar.SetValueFormat(0, 3);
    bar.SetValueFormat(3, 0);
    bar.SetValueFormat(3, 3);
    bar.SetBlockNum(1);
    bar.SetBlockNum(31);
    bar.SetBlockNum(8);
    bar.SetColor({0, 0, 0, 255});
    bar.SetColorBlockLineWidth(0.0f);
    bar.SetColorBlockLineWidth(-1.0f);
    bar.SetColorBlockLineWidth(std::numeric_limits<float>::quiet_NaN());
    bar.SetOverRangeColor(1, 1, 1);
    bar.SetSingleColor(1, 1, 1);
    bar.SetColorPaletteGreenRed();
    EXPECT_EQ(bar.IsModified(), 0);
    std::string title;
    bar.GetTitle(title);
    EXPECT_EQ(title.size(), 3u) << "equal up to the zero byte: kept";
    EXPECT_EQ(bar.GetBlockNum(), 8);
    EXPECT_EQ(bar.GetColorBlockLineWidth(), 1.0f);

    const auto marks = [&bar](auto set) {
        bar.ClearModified();
        set();
        return bar.IsModified() == 1;
    };
    EXPECT_FALSE(marks([&] { bar.SetColorBlockLineWidth(2.5f); })) << "line width never marks";
    EXPECT_EQ(bar.GetColorBlockLineWidth(), 2.5f);
    EXPECT_TRUE(marks([&] { bar.SetBlockNum(30); }));
    EXPECT_EQ(bar.GetBlockNum(), 30);
    EXPECT_TRUE(marks([&] { bar.SetColor({0, 0, 0, 254}); })) << "alpha counts";
    EXPECT_TRUE(marks([&] { bar.SetValueFormat(4, 2); }));
    EXPECT_TRUE(marks([&] { bar.SetDisplayRange(0.0, 2.0); }));
    EXPECT_TRUE(marks([&] { bar.SetStartPosition(1, 0); }));
}

TEST(ScalarBarLayoutTest, CopiesAreIndependent)
{
    TestScalarBar bar;
    bar.SetTitle("legend", true);
    bar.SetColorPaletteGrayScale();
    bar.SetValueRange(0.0, 4.0, true, false);
    ASSERT_TRUE(bar.Create(50, 60, 1, 2));
    TestScalarBar copy(bar);
    TestScalarBar assigned;
    assigned = bar;
    bar.SetTitle("changed", true);
    bar.SetColorPaletteRedBlue();
    for (const TestScalarBar* b : {&copy, &assigned})
    {
        std::string title;
        b->GetTitle(title);
        EXPECT_EQ(title, "legend");
        EXPECT_EQ(b->ValueRangeFlag2(), 0);
        unsigned char r = 0, g = 0, bl = 0;
        b->GetOpenGLColor(r, g, bl, 1.0);
        EXPECT_EQ(r, 63);
        EXPECT_EQ(b->EqualPartX(), 49.0f / 60.0f);
    }
}

TEST(ScalarBarLayoutTest, ExponentialBaseOnBothSidesOfEachThreshold)
{
    const std::tuple<double, double, int, int> cases[] = { // a, b, digits, power
        {1500, 0, 3, 2},   {999, 0, 3, 1},     {101, 0, 3, 1},      {100, 0, 3, 0},
        {50, 0, 3, 0},     {5, 0, 3, 0},       {1, 0, 3, 0},        {0.999, 0, 3, -1},
        {0.5, 0, 3, -1},   {0.05, 0, 3, -2},   {1.1e-12, 0, 3, -12}, {1e-12, 0, 3, 0},
        {1e-13, 0, 3, 0},  {0, 0, 3, 0},       {-2000, 10, 3, 2},   {1500, 0, 0, 0},
        {0.05, 0, 0, 0},   {1500, 0, 4, 1},    {1500, 0, 5, 0},    {1500, 0, -1, 6},    {DBL_MAX, 0, 3, 307},
        {0.5, 0, -2, 2},   {1500, 0, INT_MIN, INT_MAX},
    };
    for (const auto& [a, b, digits, expected] : cases)
    {
        EXPECT_EQ(CKesraScalarBar::GetExponentialBase(a, b, digits), expected) << a << ", " << b << ", " << digits;
    }
    const double inf = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(CKesraScalarBar::GetExponentialBase(inf, 1500, 3), 0);
    EXPECT_EQ(CKesraScalarBar::GetExponentialBase(nan, 1500, 3), 2);
    EXPECT_EQ(CKesraScalarBar::GetExponentialBase(1500, nan, 3), 2);
}

} // namespace
