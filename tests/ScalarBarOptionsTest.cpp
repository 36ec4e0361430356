// The options on top of the first mapping, against their definitions: the
// many-stop palettes hit their published stops exactly and mix between
// them; the log scale places decades and gives NaN and values <= 0 their
// own colour and code whatever else is set; the NaN, below and above colours
// and their codes; the setters' rules; copies; and the label texts. The
// batches against the single query for every option are in
// ScalarBarBatchTest.cpp and ColorTableTest.cpp.
#include "support/TestDoubles.h"

#include "Engine/ColorMap.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace
{

using KesraEngine::CKesraScalarBar;
using KesraEngine::ColorStops;
using KesraEngine::eScalarBarLabelFormat;
using KesraEngine::kColorCodeNotANumber;
using KesraEngine::kColorCodeNotPositive;
using Rgb = std::array<int, 3>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

struct Answer
{
    Rgb rgb;
    int code;
};

Answer Colour(const CKesraScalarBar& bar, double value)
{
    unsigned char r = 7, g = 7, b = 7;
    const int code = bar.GetOpenGLColor(r, g, b, value);
    return {{r, g, b}, code};
}

// The mapping's byte of a channel: float, times 255 in float, truncated.
int Byte(double channel)
{
    return static_cast<unsigned char>(static_cast<float>(channel) * 255.0f);
}

Rgb StopBytes(const ColorStops& stops, int k)
{
    return {Byte(stops.rgb[k][0]), Byte(stops.rgb[k][1]), Byte(stops.rgb[k][2])};
}

using PaletteSetter = void (CKesraScalarBar::*)();

struct ManyStops
{
    const char* name;
    PaletteSetter set;
    ColorStops (*stops)();
    int count;
    // The published first, middle (stop count / 2) and last stops as bytes.
    Rgb first;
    Rgb middle;
    Rgb last;
};

const ManyStops kManyStops[] = {
    {"viridis", &CKesraScalarBar::SetColorPaletteViridis, KesraEngine::ColorStopsViridis, 256,
     {68, 1, 84}, {32, 144, 140}, {253, 231, 36}},
    {"cividis", &CKesraScalarBar::SetColorPaletteCividis, KesraEngine::ColorStopsCividis, 256,
     {0, 34, 77}, {124, 123, 120}, {253, 231, 55}},
    {"cool to warm", &CKesraScalarBar::SetColorPaletteCoolWarm, KesraEngine::ColorStopsCoolWarm,
     33, {58, 76, 192}, {220, 220, 220}, {179, 3, 38}},
    {"turbo", &CKesraScalarBar::SetColorPaletteTurbo, KesraEngine::ColorStopsTurbo, 256,
     {48, 18, 59}, {164, 252, 59}, {122, 4, 2}},
};

// ---- Many-stop palettes ---------------------------------------------------------

TEST(ManyStopPalettes, EveryStopComesOutExactlyAtItsValueAndBackwardsWithInverse)
{
    for (const ManyStops& palette : kManyStops)
    {
        SCOPED_TRACE(palette.name);
        const ColorStops stops = palette.stops();
        ASSERT_EQ(stops.count, palette.count);
        CKesraScalarBar bar;
        (bar.*palette.set)();
        // On 0 to count - 1 the value k has position k / (count - 1), which
        // times count - 1 gives k again: the stop itself, no mix.
        bar.SetValueRange(0.0, palette.count - 1.0, true, true);
        EXPECT_EQ(Colour(bar, 0.0).rgb, palette.first);
        EXPECT_EQ(Colour(bar, palette.count / 2).rgb, palette.middle);
        EXPECT_EQ(Colour(bar, palette.count - 1.0).rgb, palette.last);
        for (int k = 0; k < palette.count; ++k)
        {
            ASSERT_EQ(Colour(bar, k).rgb, StopBytes(stops, k)) << "stop " << k;
        }
        bar.SetInverse(1);
        for (int k = 0; k < palette.count; ++k)
        {
            ASSERT_EQ(Colour(bar, k).rgb, StopBytes(stops, palette.count - 1 - k)) << "stop " << k;
        }
    }
}

TEST(ManyStopPalettes, BetweenStopsTheChannelsMixLinearlyInDouble)
{
    // 33 stops on 0 to 32: k + f has the exact fraction f along segment k.
    CKesraScalarBar bar;
    bar.SetColorPaletteCoolWarm();
    bar.SetValueRange(0.0, 32.0, true, true);
    const ColorStops stops = KesraEngine::ColorStopsCoolWarm();
    for (int k = 0; k < 32; ++k)
    {
        for (const double f : {0.25, 0.5, 0.875})
        {
            Rgb expected;
            for (int c = 0; c < 3; ++c)
            {
                expected[c] = Byte((1.0 - f) * stops.rgb[k][c] + f * stops.rgb[k + 1][c]);
            }
            ASSERT_EQ(Colour(bar, k + f).rgb, expected) << k << " + " << f;
        }
    }
    // 256 stops: every colour between two stops lies between their bytes.
    for (const ManyStops& palette : kManyStops)
    {
        CKesraScalarBar wide;
        (wide.*palette.set)();
        wide.SetValueRange(0.0, palette.count - 1.0, true, true);
        for (int k = 0; k + 1 < palette.count; ++k)
        {
            const Rgb low = StopBytes(palette.stops(), k);
            const Rgb high = StopBytes(palette.stops(), k + 1);
            const Rgb mixed = Colour(wide, k + 0.37).rgb;
            for (int c = 0; c < 3; ++c)
            {
                ASSERT_GE(mixed[c], std::min(low[c], high[c])) << palette.name << " " << k;
                ASSERT_LE(mixed[c], std::max(low[c], high[c])) << palette.name << " " << k;
            }
        }
    }
}

TEST(ManyStopPalettes, AFiveStopPaletteTakesOverAgainAndNoPaletteMarksModified)
{
    CKesraScalarBar bar;
    bar.SetColorPaletteTurbo();
    EXPECT_EQ(bar.IsModified(), 0);
    EXPECT_EQ(Colour(bar, 0.0).rgb, (Rgb{48, 18, 59}));
    // Out of range and the fixed colours are not the palette's.
    EXPECT_EQ(Colour(bar, 2.0).rgb, (Rgb{255, 255, 255}));
    bar.SetColorPaletteGrayScale();
    EXPECT_EQ(Colour(bar, 0.0).rgb, (Rgb{0, 0, 0}));
    EXPECT_EQ(Colour(bar, 0.25).rgb, (Rgb{63, 63, 63}));
    EXPECT_EQ(bar.IsModified(), 0);
}

// ---- NaN, below and above colours ---------------------------------------------

TEST(RangeColours, OffTheyChangeNothingAndANaNStaysAtStopZero)
{
    CKesraScalarBar bar;
    bar.SetNanColor(1, 2, 3);
    bar.SetBelowRangeColor(4, 5, 6);
    bar.SetAboveRangeColor(7, 8, 9);
    const Answer nan = Colour(bar, kNaN);
    EXPECT_EQ(nan.rgb, (Rgb{255, 0, 0}));
    EXPECT_EQ(nan.code, 0);
    EXPECT_EQ(Colour(bar, -0.5).rgb, (Rgb{255, 255, 255}));
    EXPECT_EQ(Colour(bar, 1.5).rgb, (Rgb{255, 255, 255}));
}

TEST(RangeColours, EachReplacesTheOverRangeColourOnItsOwnSideWithTheOldCodes)
{
    CKesraScalarBar bar;
    bar.SetBelowRangeColor(4, 5, 6);
    bar.SetAboveRangeColor(7, 8, 9);
    bar.SetUseBelowRangeColor(1);
    const Answer below = Colour(bar, -0.5);
    EXPECT_EQ(below.rgb, (Rgb{4, 5, 6}));
    EXPECT_EQ(below.code, -1);
    EXPECT_EQ(Colour(bar, 1.5).rgb, (Rgb{255, 255, 255})) << "above is still off";
    bar.SetUseAboveRangeColor(1);
    const Answer above = Colour(bar, 1.5);
    EXPECT_EQ(above.rgb, (Rgb{7, 8, 9}));
    EXPECT_EQ(above.code, 1);
    EXPECT_EQ(Colour(bar, 1.0).rgb, (Rgb{0, 0, 255})) << "the ends lie inside";
    // Fill all range clamps first, and the single colour covers all values.
    bar.SetFillAllRange(1);
    EXPECT_EQ(Colour(bar, -0.5).rgb, (Rgb{255, 0, 0}));
    EXPECT_EQ(Colour(bar, -0.5).code, 0);
    bar.SetFillAllRange(0);
    bar.SetUseSignleColor(1);
    EXPECT_EQ(Colour(bar, -0.5).rgb, (Rgb{255, 96, 0}));
    EXPECT_EQ(Colour(bar, -0.5).code, -1);
}

TEST(RangeColours, ANaNTakesTheNaNColourAndCodeTwoBeforeFillAndSingleColour)
{
    CKesraScalarBar bar;
    bar.SetNanColor(1, 2, 3);
    bar.SetUseNanColor(1);
    for (const int fill : {0, 1})
    {
        for (const int single : {0, 1})
        {
            bar.SetFillAllRange(fill);
            bar.SetUseSignleColor(single);
            const Answer nan = Colour(bar, -kNaN);
            EXPECT_EQ(nan.rgb, (Rgb{1, 2, 3})) << fill << single;
            EXPECT_EQ(nan.code, kColorCodeNotANumber);
        }
    }
    EXPECT_EQ(kColorCodeNotANumber, 2);
    bar.SetUseSignleColor(0);
    EXPECT_EQ(Colour(bar, 0.0).rgb, (Rgb{255, 0, 0})) << "only NaN changes";
    bar.SetBanded(1);
    EXPECT_EQ(Colour(bar, kNaN).rgb, (Rgb{1, 2, 3}));
}

TEST(RangeColours, SwitchesFollowTheFlagRuleAndColoursMarkModifiedWhenTheyChange)
{
    KesraTest::TestScalarBar bar;
    EXPECT_EQ(bar.GetUseNanColor(), -1);
    EXPECT_EQ(bar.GetUseBelowRangeColor(), -1);
    EXPECT_EQ(bar.GetUseAboveRangeColor(), -1);
    EXPECT_EQ(bar.GetLogScale(), -1);
    bar.SetNanColor(128, 128, 128);
    bar.SetBelowRangeColor(0, 0, 0);
    bar.SetAboveRangeColor(255, 255, 255);
    EXPECT_EQ(bar.IsModified(), 0) << "the defaults, unchanged";
    bar.SetAboveRangeColor(255, 255, 254);
    EXPECT_EQ(bar.IsModified(), 1);
    unsigned char r = 0, g = 0, b = 0;
    bar.GetAboveRangeColor(r, g, b);
    EXPECT_EQ((Rgb{r, g, b}), (Rgb{255, 255, 254}));

    ASSERT_TRUE(bar.Create(100, 100, 0, 0));
    EXPECT_EQ(bar.GetUseNanColor(), 0);
    bar.SetUseNanColor(5);
    EXPECT_EQ(bar.GetUseNanColor(), 1);
    bar.SetLogScale(-3);
    EXPECT_EQ(bar.GetLogScale(), 1);
}

// ---- Log scale ------------------------------------------------------------------

TEST(LogScale, DecadesStandAtEqualStepsAndTheLogPlacingIsTheProtectedOnes)
{
    KesraTest::TestScalarBar bar;
    bar.SetValueRange(1e-3, 1e3, true, true);
    bar.SetLogScale(1);
    const std::vector<double> decades = bar.GetLogDecades();
    const std::vector<double> expected = {1e-3, 1e-2, 1e-1, 1.0, 10.0, 100.0, 1000.0};
    EXPECT_EQ(decades, expected);
    for (std::size_t k = 0; k < decades.size(); ++k)
    {
        EXPECT_NEAR(bar.GetScalePosition(decades[k]), k / 6.0, 1e-15);
        // The public scale colours as the protected placing does.
        KesraTest::TestScalarBar::Color placed(0, 0, 0, 0);
        bar.SetOpenGlColor(placed, decades[k], 1e-3, 1e3, 1);
        EXPECT_EQ(Colour(bar, decades[k]).rgb, (Rgb{placed.red, placed.green, placed.blue}));
    }

    bar.SetValueRange(1.0, 1000.0, true, true);
    EXPECT_EQ(Colour(bar, 10.0).rgb, (Rgb{170, 255, 0}));
    // A minimum that is not positive: the scale starts four decades below
    // the top, and the values between lie at its bottom, inside the range.
    bar.SetValueRange(0.0, 1000.0, true, true);
    EXPECT_EQ(bar.GetLogDecades(), (std::vector<double>{0.1, 1.0, 10.0, 100.0, 1000.0}));
    EXPECT_EQ(Colour(bar, 0.1).rgb, (Rgb{255, 0, 0}));
    EXPECT_EQ(Colour(bar, 100.0).rgb, (Rgb{0, 255, 255}));
    EXPECT_EQ(Colour(bar, 0.05).code, 0);
    EXPECT_EQ(Colour(bar, 0.05).rgb, (Rgb{255, 0, 0}));
    // No decades where the scale has no finite, positive ends.
    EXPECT_TRUE(KesraEngine::ColorDecades(0.0, 1e-320).empty());
    EXPECT_TRUE(KesraEngine::ColorDecades(1.0, kInf).empty());
    EXPECT_TRUE(KesraEngine::ColorDecades(kInf, 1.0).empty());
    EXPECT_EQ(KesraEngine::ColorDecades(-1.0, -2.0), (std::vector<double>{1e-4, 1e-3, 1e-2, 0.1, 1.0}));
}

TEST(LogScale, NaNAndValuesWithoutALogarithmNeverTakeTheMinimumsColour)
{
    CKesraScalarBar bar;
    bar.SetValueRange(-5.0, 1000.0, true, true);
    bar.SetLogScale(1);
    bar.SetNanColor(9, 9, 9);
    for (const int fill : {0, 1})
    {
        for (const int single : {0, 1})
        {
            for (const int banded : {0, 1})
            {
                bar.SetFillAllRange(fill);
                bar.SetUseSignleColor(single);
                bar.SetBanded(banded);
                SCOPED_TRACE(testing::Message() << fill << single << banded);
                EXPECT_EQ(Colour(bar, kNaN).code, kColorCodeNotANumber);
                EXPECT_EQ(Colour(bar, kNaN).rgb, (Rgb{9, 9, 9}));
                for (const double notPositive : {0.0, -0.0, -1.0, -5.0, -7.0, -kInf})
                {
                    EXPECT_EQ(Colour(bar, notPositive).code, kColorCodeNotPositive) << notPositive;
                    EXPECT_EQ(Colour(bar, notPositive).rgb, (Rgb{9, 9, 9}));
                }
            }
        }
    }
    EXPECT_EQ(kColorCodeNotPositive, -2);
    // Off again, the old answers: 0 inside at stop 0, -1 below.
    bar.SetUseSignleColor(0);
    bar.SetFillAllRange(0);
    bar.SetBanded(0);
    bar.SetLogScale(0);
    EXPECT_EQ(Colour(bar, kNaN).code, 0);
    EXPECT_EQ(Colour(bar, -7.0).code, -1);
    EXPECT_EQ(Colour(bar, -5.0).rgb, (Rgb{255, 0, 0}));
}

TEST(LogScale, BandedBlocksAreEqualStepsOfTheLogarithm)
{
    CKesraScalarBar bar;
    bar.SetValueRange(1.0, 1e4, true, true);
    bar.SetLogScale(1);
    bar.SetBanded(1);
    bar.SetBlockNum(4);
    // Four blocks, one decade each, coloured as their lower decade.
    EXPECT_EQ(Colour(bar, 1.0).rgb, (Rgb{255, 0, 0}));
    EXPECT_EQ(Colour(bar, 9.99).rgb, (Rgb{255, 0, 0}));
    EXPECT_EQ(Colour(bar, 50.0).rgb, (Rgb{255, 255, 0}));
    EXPECT_EQ(Colour(bar, 999.0).rgb, (Rgb{0, 255, 0}));
    EXPECT_EQ(Colour(bar, 5000.0).rgb, (Rgb{0, 255, 255}));
    // The top lies in no block and takes the top's colour, as on the
    // linear scale.
    EXPECT_EQ(Colour(bar, 1e4).rgb, (Rgb{0, 0, 255}));
    bar.SetInverse(1);
    EXPECT_EQ(Colour(bar, 50.0).rgb, (Rgb{0, 255, 255}));
    // By value stays smooth: 100 lies half way up the scale.
    unsigned char r = 0, g = 0, b = 0;
    bar.GetOpenGLColorByValue(r, g, b, 100.0);
    EXPECT_EQ((Rgb{r, g, b}), (Rgb{0, 255, 0}));
}

// ---- Copies ---------------------------------------------------------------------

TEST(OptionCopies, CopiesAndAssignmentsCarryEveryOption)
{
    CKesraScalarBar bar;
    bar.SetColorPaletteCividis();
    bar.SetLogScale(1);
    bar.SetUseNanColor(1);
    bar.SetNanColor(1, 2, 3);
    bar.SetUseBelowRangeColor(1);
    bar.SetBelowRangeColor(4, 5, 6);
    bar.SetUseAboveRangeColor(1);
    bar.SetAboveRangeColor(7, 8, 9);
    bar.SetValueRange(1.0, 100.0, true, true);
    bar.SetLabelFormat(KesraEngine::eLabelFormatScientific, 1);
    bar.SetLabelScale(2);
    const CKesraScalarBar copy(bar);
    CKesraScalarBar assigned;
    assigned = bar;
    for (const CKesraScalarBar* other : {&copy, static_cast<const CKesraScalarBar*>(&assigned)})
    {
        for (const double value : {kNaN, -1.0, 0.5, 1.0, 10.0, 100.0, 200.0})
        {
            EXPECT_EQ(Colour(*other, value).rgb, Colour(bar, value).rgb) << value;
            EXPECT_EQ(Colour(*other, value).code, Colour(bar, value).code) << value;
        }
        EXPECT_EQ(other->GetLabelTexts({150.0}), (std::vector<std::string>{"1.5e+00"}));
    }
}

// ---- Label texts ----------------------------------------------------------------

std::vector<std::string> Labels(const std::vector<double>& values, eScalarBarLabelFormat format,
                                int digits, int scale = 0)
{
    return CKesraScalarBar::FormatLabels(values, format, digits, scale);
}

using Texts = std::vector<std::string>;

TEST(LabelTexts, FixedAndScientificWriteTheirDigitsWithoutANegativeZero)
{
    EXPECT_EQ(Labels({0.0, 0.25, -1.5, -0.001}, KesraEngine::eLabelFormatFixed, 2),
              (Texts{"0.00", "0.25", "-1.50", "0.00"}));
    EXPECT_EQ(Labels({2.0}, KesraEngine::eLabelFormatFixed, 0), (Texts{"2"}));
    EXPECT_EQ(Labels({1500.0, -0.0, 0.00012, -2e-9}, KesraEngine::eLabelFormatScientific, 2),
              (Texts{"1.50e+03", "0.00e+00", "1.20e-04", "-2.00e-09"}));
    EXPECT_EQ(Labels({kNaN, kInf, -kInf}, KesraEngine::eLabelFormatScientific, 2),
              (Texts{"-", "-", "-"}));
}

TEST(LabelTexts, AutomaticTakesTheFewestDigitsThatTellNeighboursApart)
{
    EXPECT_EQ(Labels({0.0, 0.5, 1.0}, KesraEngine::eLabelFormatAutomatic, 9),
              (Texts{"0", "0.5", "1"}));
    EXPECT_EQ(Labels({1000.0, 1001.0, 1002.0}, KesraEngine::eLabelFormatAutomatic, 0),
              (Texts{"1000", "1001", "1002"}));
    EXPECT_EQ(Labels({0.1, 0.1 + 1e-12}, KesraEngine::eLabelFormatAutomatic, 0),
              (Texts{"0.1", "0.100000000001"}));
    // Equal neighbours need no difference; only neighbours are compared.
    EXPECT_EQ(Labels({2.0, 2.0, 3.0, 2.01}, KesraEngine::eLabelFormatAutomatic, 0),
              (Texts{"2", "2", "3", "2"}));
    // -0 equals 0 and reads as it; NaNs, which no digits tell apart, end
    // the search at 17 digits.
    EXPECT_EQ(Labels({-0.0, 0.0}, KesraEngine::eLabelFormatAutomatic, 0), (Texts{"0", "0"}));
    EXPECT_EQ(Labels({kNaN, kNaN, 0.5}, KesraEngine::eLabelFormatAutomatic, 0),
              (Texts{"-", "-", "0.5"}));
}

TEST(LabelTexts, TheHostsPowerOfTenDividesTheLabelsAndFollowsTheTitle)
{
    EXPECT_EQ(Labels({1500.0, 250.0}, KesraEngine::eLabelFormatFixed, 2, 3),
              (Texts{"1.50", "0.25"}));
    KesraTest::TestScalarBar bar;
    bar.SetTitle("Stress", false);
    EXPECT_FALSE(bar.UsesLabelOptions());
    EXPECT_EQ(bar.GetScaledTitle(), "Stress");
    bar.SetLabelScale(3);
    EXPECT_TRUE(bar.UsesLabelOptions());
    EXPECT_EQ(bar.GetScaledTitle(), "Stress (x10^3)");
    bar.SetValueFormat(3, 1);
    // The Default format writes the second value-format number's decimals.
    EXPECT_EQ(bar.GetLabelTexts({1500.0, -2.0}), (Texts{"1.5", "0.0"}));
    bar.SetTitle("", false);
    bar.SetLabelScale(-2);
    EXPECT_EQ(bar.GetScaledTitle(), "(x10^-2)");
}

TEST(LabelTexts, SettersRefuseWhatTheyCannotWriteAndMarkOnlyChanges)
{
    KesraTest::TestScalarBar bar;
    eScalarBarLabelFormat format = KesraEngine::eLabelFormatAutomatic;
    int digits = 0;
    bar.GetLabelFormat(format, digits);
    EXPECT_EQ(format, KesraEngine::eLabelFormatDefault);
    EXPECT_EQ(digits, 3);
    bar.SetLabelFormat(KesraEngine::eLabelFormatDefault, 3);
    bar.SetLabelScale(0);
    EXPECT_EQ(bar.IsModified(), 0);
    bar.SetLabelFormat(KesraEngine::eLabelFormatFixed, 18);
    bar.SetLabelFormat(KesraEngine::eLabelFormatFixed, -1);
    bar.SetLabelFormat(static_cast<eScalarBarLabelFormat>(4), 2);
    bar.SetLabelScale(309);
    bar.SetLabelScale(-309);
    EXPECT_EQ(bar.IsModified(), 0);
    EXPECT_FALSE(bar.UsesLabelOptions());
    bar.SetLabelFormat(KesraEngine::eLabelFormatScientific, 17);
    EXPECT_EQ(bar.IsModified(), 1);
    bar.GetLabelFormat(format, digits);
    EXPECT_EQ(format, KesraEngine::eLabelFormatScientific);
    EXPECT_EQ(digits, 17);
    bar.SetLabelScale(308);
    EXPECT_EQ(bar.GetLabelScale(), 308);
}

} // namespace
