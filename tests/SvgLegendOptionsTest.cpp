// The legend's options as the SVG backend writes them: the swatches of the
// NaN, below- and above-range colours with their texts, the log scale's
// gradient and decade labels, the contact sheet's strip, and a frame without
// an option byte for byte as before. (check_svg.py reads the demo's strip:
// the published palettes' stops, the banded log scale and the label formats.)
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
