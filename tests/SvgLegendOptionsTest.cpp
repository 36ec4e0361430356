// The legend's options as the SVG backend writes them: the swatches of the
// NaN, below- and above-range colours with their texts, the log scale's
// gradient, bands and decade labels, the label formats, the published
// palettes' stops, the contact sheet's strip, and a frame without an option
// byte for byte as before.
#include "support/SvgScene.h"
#include "svg/SvgSheet.h"

#include <gtest/gtest.h>

#include <cmath>
#include <regex>
#include <string>
#include <vector>

namespace
{

using KesraTest::SmallSvgScene;

// The legend's group of the frame.
std::string LegendPart(const std::string& svg)
{
    const std::size_t begin = svg.find("class=\"legend\"");
    return begin == std::string::npos ? std::string() : svg.substr(begin);
}

// Every match of the first group of pattern in text.
std::vector<std::string> Matches(const std::string& text, const std::string& pattern)
{
    std::vector<std::string> found;
    const std::regex re(pattern);
    for (std::sregex_iterator it(text.begin(), text.end(), re), end; it != end; ++it)
    {
        found.push_back((*it)[1]);
    }
    return found;
}

TEST(SvgLegendOptionsTest, SwatchesShowTheirColoursAndTexts)
{
    SmallSvgScene scene;
    EXPECT_EQ(scene.Render().find("range-swatches"), std::string::npos);
    scene.legend.SetUseNanColor(1);
    scene.legend.SetUseBelowRangeColor(1);
    scene.legend.SetUseAboveRangeColor(1);
    scene.legend.SetNanColor(0x12, 0x34, 0x56);
    scene.legend.SetBelowRangeColor(0x01, 0x02, 0x03);
    scene.legend.SetAboveRangeColor(0xfe, 0xdc, 0xba);
    const std::string legend = LegendPart(scene.Render());
    EXPECT_EQ(Matches(legend, "data-kind=\"([a-z]+)\""),
              (std::vector<std::string>{"below", "above", "nan"}));
    EXPECT_EQ(Matches(legend, "fill=\"#([0-9a-f]{6})\"[^>]*data-kind"),
              (std::vector<std::string>{"010203", "fedcba", "123456"}));
    for (const char* text : {">below<", ">above<", ">NaN<"})
    {
        EXPECT_NE(legend.find(text), std::string::npos) << text;
    }
    // Fill all range leaves no value outside: only the NaN swatch stays.
    scene.legend.SetFillAllRange(1);
    EXPECT_EQ(Matches(LegendPart(scene.Render()), "data-kind=\"([a-z]+)\""),
              std::vector<std::string>{"nan"});
}

TEST(SvgLegendOptionsTest, LogScaleLabelsDecadesAndShadesByTheLogarithm)
{
    SmallSvgScene scene;
    scene.legend.SetValueRange(0.01, 1000.0, true, true);
    scene.legend.SetLogScale(1);
    const std::string legend = LegendPart(scene.Render());
    // Labels at the six decades, each "10" with its exponent raised.
    EXPECT_EQ(Matches(legend, ">10<tspan[^>]*>(-?[0-9]+)</tspan>"),
              (std::vector<std::string>{"-2", "-1", "0", "1", "2", "3"}));
    // The gradient's stops walk the logarithm evenly, each in its value's colour.
    const std::regex stop("stop-color=\"#([0-9a-f]{6})\" data-value=\"([^\"]+)\"");
    int k = 0;
    for (std::sregex_iterator it(legend.begin(), legend.end(), stop), end; it != end; ++it, ++k)
    {
        const double value = std::stod((*it)[2]);
        EXPECT_NEAR(std::log10(value), -2.0 + 5.0 * k / 32, 1e-12) << k;
        unsigned char rgb[3];
        scene.legend.GetOpenGLColor(rgb[0], rgb[1], rgb[2], value);
        EXPECT_EQ("#" + (*it)[1].str(), KesraSvg::HexColor(rgb[0], rgb[1], rgb[2]));
    }
    EXPECT_EQ(k, 33);
    // NaN and values <= 0 take the NaN colour: its swatch shows.
    EXPECT_EQ(Matches(legend, "data-kind=\"([a-z]+)\""), std::vector<std::string>{"nan"});
    EXPECT_NE(legend.find(">NaN, &lt;= 0<"), std::string::npos);
}

TEST(SvgLegendOptionsTest, LogBandsAreEqualStepsOfTheLogarithm)
{
    SmallSvgScene scene;
    scene.legend.SetValueRange(1.0, 1e4, true, true);
    scene.legend.SetLogScale(1);
    scene.legend.SetBanded(1);
    scene.legend.SetBlockNum(4);
    const std::string legend = LegendPart(scene.Render());
    const std::vector<std::string> values =
        Matches(legend, "<rect [^>]*data-value=\"([^\"]+)\"");
    ASSERT_EQ(values.size(), 4u);
    std::vector<std::string> fills;
    for (std::size_t k = 0; k < 4; ++k)
    {
        // Each swatch's value lies in its decade, and its colour is that of
        // the decade's start.
        const double value = std::stod(values[k]);
        EXPECT_GT(value, std::pow(10.0, k));
        EXPECT_LT(value, std::pow(10.0, k + 1));
        unsigned char rgb[3];
        unsigned char start[3];
        scene.legend.GetOpenGLColor(rgb[0], rgb[1], rgb[2], value);
        scene.legend.GetOpenGLColor(start[0], start[1], start[2], std::pow(10.0, k) * 1.000001);
        EXPECT_EQ(KesraSvg::HexColor(rgb[0], rgb[1], rgb[2]),
                  KesraSvg::HexColor(start[0], start[1], start[2]));
    }
    // The labels name the edges in the fewest digits that tell them apart.
    for (const char* label : {">1<", ">1e+01<", ">1e+02<", ">1e+03<", ">1e+04<"})
    {
        EXPECT_NE(legend.find(label), std::string::npos) << label;
    }
}

TEST(SvgLegendOptionsTest, LabelFormatsWriteTheLibrarysTexts)
{
    struct Case
    {
        KesraEngine::eScalarBarLabelFormat format;
        int digits;
        int scale;
        std::vector<std::string> labels;
    };
    const Case cases[] = {
        {KesraEngine::eLabelFormatFixed, 3, 0, {"0.000", "2.500", "5.000", "7.500", "10.000"}},
        {KesraEngine::eLabelFormatScientific, 1, 0, {"0.0e+00", "2.5e+00", "1.0e+01"}},
        // One digit already tells 2.5 from 5 ("2" and "5").
        {KesraEngine::eLabelFormatAutomatic, 0, 0, {"0", "2", "5", "8", "1e+01"}},
        {KesraEngine::eLabelFormatFixed, 0, -3, {"0", "2500", "10000"}},
    };
    for (const Case& c : cases)
    {
        SmallSvgScene scene;
        scene.legend.SetBlockNum(4);
        scene.legend.SetLabelFormat(c.format, c.digits);
        scene.legend.SetLabelScale(c.scale);
        const std::string legend = LegendPart(scene.Render());
        for (const std::string& label : c.labels)
        {
            EXPECT_NE(legend.find(">" + label + "<"), std::string::npos) << label;
        }
        EXPECT_EQ(legend.find(">Value (x10^-3)<") != std::string::npos, c.scale != 0);
    }
}

TEST(SvgLegendOptionsTest, PublishedPalettesKeepEachStop)
{
    SmallSvgScene scene;
    scene.legend.SetColorPaletteTurbo();
    const std::string legend = LegendPart(scene.Render());
    const std::vector<std::string> colours =
        Matches(legend, "stop-color=\"#([0-9a-f]{6})\" data-value");
    ASSERT_EQ(colours.size(), 256u);
    unsigned char rgb[3];
    for (const std::size_t k : {std::size_t{0}, std::size_t{100}, std::size_t{255}})
    {
        scene.legend.GetOpenGLColor(rgb[0], rgb[1], rgb[2], 10.0 * k / 255);
        EXPECT_EQ("#" + colours[k], KesraSvg::HexColor(rgb[0], rgb[1], rgb[2])) << k;
    }
}

TEST(SvgLegendOptionsTest, AFrameWithoutAnOptionIsWrittenAsBefore)
{
    // An option set and taken back leaves the frame as a scene that never
    // had it: the same bytes.
    SmallSvgScene plain;
    SmallSvgScene undone;
    undone.legend.SetLogScale(1);
    undone.legend.SetUseNanColor(1);
    undone.legend.SetLabelFormat(KesraEngine::eLabelFormatScientific, 2);
    undone.legend.SetColorPaletteViridis();
    undone.Render();
    undone.legend.SetLogScale(0);
    undone.legend.SetUseNanColor(0);
    undone.legend.SetLabelFormat(KesraEngine::eLabelFormatDefault, 3);
    undone.legend.SetColorPaletteRedBlue();
    std::string before = plain.Render();
    std::string after = undone.Render();
    // The second frame's ids count on from the first's.
    const std::regex ids("legend[0-9]+");
    EXPECT_EQ(std::regex_replace(before, ids, "legend"), std::regex_replace(after, ids, "legend"));
}

TEST(SvgSheetTest, StripFollowsTheGridAtItsCellsSizes)
{
    const KesraSvg::SheetCell view{"a", "<svg/>", 100, 80};
    const KesraSvg::SheetCell key{"key", "<svg/>", 50, 120};
    const std::string plain = KesraSvg::ComposeSheet("T", {view, view}, 2, 100, 80, &key);
    EXPECT_EQ(plain.find("class=\"strip\""), std::string::npos);
    const std::vector<KesraSvg::SheetCell> strip(5, KesraSvg::SheetCell{"s", "<svg/>", 80, 200});
    const std::string sheet = KesraSvg::ComposeSheet("T", {view, view}, 2, 100, 80, &key, strip);
    EXPECT_EQ(Matches(sheet, "class=\"(strip)\"").size(), 5u);
    // Width 12 + 2 x 112 + 50 + 12 = 298: three cells of 80 a row.
    EXPECT_EQ(Matches(sheet, "class=\"strip\"><text x=\"([0-9.]+)\"")[3], "14");
    const std::vector<std::string> tops =
        Matches(sheet, "class=\"strip\">.*?<g transform=\"translate\\([0-9]+ ([0-9]+)\\)\"");
    ASSERT_EQ(tops.size(), 5u);
    // Under the key (40 + 24 + 120 + 12), each row a caption and a cell lower.
    EXPECT_EQ(tops[0], "220");
    EXPECT_EQ(tops[2], "220");
    EXPECT_EQ(tops[3], std::to_string(196 + 24 + 200 + 12 + 24));
    EXPECT_NE(sheet.find("height=\"" + std::to_string(196 + 2 * (24 + 200) + 12 + 24) + "\""),
              std::string::npos);
}

} // namespace
