// The legend's layout as every backend draws it: the bar in whole pixels, the
// labels' texts, places and thinning, the ticks, the unit line with its power
// of ten, title and note; and what the common legend class reads.
#include "BackendTestSupport.h"

#include "Engine/ColorMap.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace
{

using KesraBackend::Anchor;
using KesraBackend::LegendInput;
using KesraBackend::LegendLayout;
using KesraBackend::MakeLegendLayout;
using KesraBackend::ShownLabels;

const KesraTest::FixedMeasure kMeasure;
// The labels' height in the fixed measure: 14 - 2.
constexpr double kH = 12.0;

LegendInput Vertical()
{
    // Create(800, 600, 700, 100) with direction 0: units 100 / 60 and 50.
    LegendInput in;
    in.startX = 700;
    in.bottom = 100;
    in.unitX = 100.0f / 60.0f;
    in.unitY = 50.0f;
    in.minimum = 0.0;
    in.maximum = 100.0;
    in.blocks = 4;
    in.decimals = 1;
    in.unit = "[Pa]";
    in.title = "Pressure";
    in.note = "mean";
    return in;
}

TEST(LegendLayout, TheBarStandsOnWholePixels)
{
    const LegendLayout vertical = MakeLegendLayout(Vertical(), kMeasure);
    EXPECT_EQ(vertical.bar.left, 703.0);    // 700 + 3.33
    EXPECT_EQ(vertical.bar.bottom, 160.0);  // 100 + 60
    EXPECT_EQ(vertical.bar.width, 13.0);    // 13.33
    EXPECT_EQ(vertical.bar.height, 360.0);

    LegendInput in = Vertical();
    in.vertical = false;
    in.bottom = 25;
    in.unitX = 6.25f;
    in.unitY = 575.0f / 45.0f;
    const LegendLayout horizontal = MakeLegendLayout(in, kMeasure);
    EXPECT_EQ(horizontal.bar.left, 713.0);  // 712.5 rounds away from zero
    EXPECT_EQ(horizontal.bar.bottom, 45.0); // 25 + 20.44
    EXPECT_EQ(horizontal.bar.width, 75.0);
    EXPECT_EQ(horizontal.bar.height, 13.0); // 12.78

    in.unitX = 0.0f;
    in.unitY = 0.0f;
    const LegendLayout empty = MakeLegendLayout(in, kMeasure);
    EXPECT_EQ(empty.bar.width, 1.0) << "at least a pixel";
    EXPECT_EQ(empty.bar.height, 1.0);
}

TEST(LegendLayout, LabelsStandAtTheEdgesAndEveryTextOnALineOfItsOwn)
{
    const auto top = [](const KesraBackend::TextLine& line) {
        return line.y + kMeasure.TextHeight(line.sizeChange);
    };
    // Vertical: right of its tick on the bar's right edge, each label has
    // its digits' middle (0.35 of the line up) on the tick at its edge.
    const LegendLayout vertical = MakeLegendLayout(Vertical(), kMeasure);
    ASSERT_EQ(vertical.edges.size(), 5u);
    ASSERT_EQ(vertical.labels.size(), 5u);
    ASSERT_EQ(vertical.ticks.size(), 5u);
    const char* const texts[] = {"0.0", "25.0", "50.0", "75.0", "100.0"};
    for (std::size_t k = 0; k < 5; ++k)
    {
        EXPECT_EQ(vertical.labels[k].text, texts[k]);
        EXPECT_EQ(vertical.ticks[k].x0, 716.0);
        EXPECT_EQ(vertical.ticks[k].y0, 160.0 + k * 90.0);
        EXPECT_GT(vertical.labels[k].x, vertical.ticks[k].x1);
        EXPECT_DOUBLE_EQ(vertical.labels[k].y + 0.35 * kH, vertical.ticks[k].y0);
    }
    // The top label straddles the bar's top edge; the unit line clears it,
    // the title the unit, and the note stays below the lowest label.
    EXPECT_GE(vertical.unit.y, top(vertical.labels.back()));
    EXPECT_GE(vertical.title.y, top(vertical.unit));
    EXPECT_LE(top(vertical.note), vertical.labels.front().y);
    EXPECT_EQ(vertical.note.x, 703.0);

    // Horizontal: centred labels under ticks that point down, the note under
    // the labels, unit and title over the bar.
    LegendInput in = Vertical();
    in.vertical = false;
    const LegendLayout horizontal = MakeLegendLayout(in, kMeasure);
    EXPECT_EQ(horizontal.labels.front().anchor, Anchor::Middle);
    EXPECT_LT(horizontal.ticks.front().y1, horizontal.bar.bottom);
    EXPECT_LE(top(horizontal.labels.front()), horizontal.ticks.front().y1);
    EXPECT_LE(top(horizontal.note), horizontal.labels.front().y);
    EXPECT_GE(horizontal.unit.y, horizontal.bar.bottom + horizontal.bar.height);
    EXPECT_GE(horizontal.title.y, top(horizontal.unit));

    // Show node off drops the ticks only.
    in.ticks = false;
    const LegendLayout bare = MakeLegendLayout(in, kMeasure);
    EXPECT_TRUE(bare.ticks.empty());
    EXPECT_EQ(bare.labels.size(), horizontal.labels.size());
}

TEST(LegendLayout, APowerOfTenEndsTheUnitLine)
{
    LegendInput in = Vertical();
    in.minimum = 0.0;
    in.maximum = 25000.0;
    in.exponent = 3;
    const LegendLayout layout = MakeLegendLayout(in, kMeasure);
    EXPECT_EQ(layout.labels.back().text, "25.0");
    EXPECT_EQ(layout.unit.text, "[Pa] \xC3\x97" "10");
    EXPECT_EQ(layout.unit.superscript, "3");
    in.unit.clear();
    in.exponent = -2;
    EXPECT_EQ(MakeLegendLayout(in, kMeasure).unit.text, "\xC3\x97" "10");
    EXPECT_EQ(MakeLegendLayout(in, kMeasure).unit.superscript, "-2");
}

TEST(LegendLayout, LabelsThinOutWithBothEndsShown)
{
    EXPECT_EQ(ShownLabels(4, 50.0, 10.0), std::vector<bool>(5, true));
    // Every third; the last wins over the ninth, which would touch it.
    EXPECT_EQ(ShownLabels(10, 5.0, 12.0),
              (std::vector<bool>{true, false, false, true, false, false, true, false, false, false, true}));
    // Every third, the last among them.
    EXPECT_EQ(ShownLabels(9, 5.0, 12.0),
              (std::vector<bool>{true, false, false, true, false, false, true, false, false, true}));
    EXPECT_EQ(ShownLabels(1, 3.0, 10.0), (std::vector<bool>{true, false})) << "the first stays alone";
    EXPECT_EQ(ShownLabels(4, 3.0, 10.0), (std::vector<bool>{true, false, false, false, true}));
    EXPECT_EQ(ShownLabels(3, 0.0, 10.0), std::vector<bool>(4, true)) << "no length: no thinning";

    // Horizontal: the widest label and 10 pixels decide.
    LegendInput in = Vertical();
    in.vertical = false;
    in.unitX = 6.25f; // a 75-pixel bar: 18.75 a block
    in.unitY = 10.0f;
    const LegendLayout layout = MakeLegendLayout(in, kMeasure);
    // "100.0" is 35 wide: 45 needed, every third edge, and the third gives
    // way to the end.
    ASSERT_EQ(layout.labels.size(), 2u);
    EXPECT_EQ(layout.labels[0].text, "0.0");
    EXPECT_EQ(layout.labels[1].text, "100.0");
}

TEST(LegendLayout, LabelsNameTheColourMapsOwnEdges)
{
    // The colour map's edges, accumulated 0.1 steps and all.
    LegendInput in = Vertical();
    in.minimum = 0.0;
    in.maximum = 1.0;
    in.blocks = 10;
    const LegendLayout ten = MakeLegendLayout(in, kMeasure);
    EXPECT_EQ(ten.edges, KesraEngine::ColorBlockEdges(0.0, 1.0, 10));

    // No block at all: one edge, one label at the bar's start, nothing that
    // is not a number.
    in.blocks = 0;
    const LegendLayout none = MakeLegendLayout(in, kMeasure);
    ASSERT_EQ(none.edges.size(), 1u);
    ASSERT_EQ(none.labels.size(), 1u);
    EXPECT_EQ(none.labels[0].y, none.bar.bottom - 0.35 * kH);
    for (const auto& tick : none.ticks)
    {
        EXPECT_TRUE(std::isfinite(tick.y0) && std::isfinite(tick.y1));
    }
}

TEST(LegendLayout, AWindowThatHoldsTheLegendChangesNothingButThePanel)
{
    LegendInput in = Vertical();
    const LegendLayout free = MakeLegendLayout(in, kMeasure);
    in.windowWidth = 800;
    in.windowHeight = 600;
    const LegendLayout fitted = MakeLegendLayout(in, kMeasure);
    EXPECT_EQ(fitted.bar.left, free.bar.left);
    EXPECT_EQ(fitted.bar.height, free.bar.height);
    // The panel: 4 pixels around the lowest label (its digits' middle on
    // the bar's bottom, descenders a quarter of the line lower) and the
    // title's top.
    EXPECT_DOUBLE_EQ(fitted.panel.bottom, 160.0 - 0.6 * kH - kH - 0.25 * kH - 4.0);
    EXPECT_DOUBLE_EQ(fitted.panel.bottom + fitted.panel.height, fitted.title.y + 14.0 + 4.0);
}

TEST(LegendLayout, ALegendPastTheWindowMovesInThenShrinksAlongItsBar)
{
    LegendInput in = Vertical();
    in.windowWidth = 740;
    in.windowHeight = 480;
    const LegendLayout layout = MakeLegendLayout(in, kMeasure);
    // "100.0" ends 35 pixels right of 725: the whole legend moves left.
    EXPECT_LE(layout.panel.left + layout.panel.width, 738.0);
    EXPECT_LT(layout.bar.left, 703.0);
    EXPECT_EQ(layout.bar.width, 13.0) << "across the bar nothing shrinks";
    // The title stood 600 pixels up: the bar gives up the difference from
    // its top, its bottom stays.
    EXPECT_LE(layout.panel.bottom + layout.panel.height, 478.0);
    EXPECT_EQ(layout.bar.bottom, 160.0);
    EXPECT_LT(layout.bar.height, 360.0);
    EXPECT_EQ(layout.bar.height, std::round(layout.bar.height));

    // Too long a title for the window is cut short with three dots.
    in.title = std::string(200, 'T');
    const LegendLayout cut = MakeLegendLayout(in, kMeasure);
    EXPECT_EQ(cut.title.text.substr(cut.title.text.size() - 3), "...");
    EXPECT_LE(kMeasure.TextWidth(cut.title.text, 0), 740.0 - 12.0);
}

TEST(LegendLayout, ABarTooShortForBothEndsKeepsOnlyTheFirstLabel)
{
    LegendInput in = Vertical();
    in.vertical = false;
    in.unitX = 1.0f; // a 12-pixel bar
    in.unitY = 10.0f;
    const LegendLayout layout = MakeLegendLayout(in, kMeasure);
    ASSERT_EQ(layout.labels.size(), 1u);
    EXPECT_EQ(layout.labels[0].text, "0.0");
}

TEST(LegendBar, ReadsTheLegendWithTheLayoutBottomInOnePlace)
{
    KesraTest::TestLegend legend;
    legend.SetDirection(1);
    ASSERT_TRUE(legend.Create(800, 600, 700, 10));
    legend.SetValueRange(-2.0, 6.0, true, true);
    legend.SetBlockNum(6);
    legend.SetValueFormat(3, 2);
    legend.SetShowNode(0);
    legend.SetUnit("[m]");
    const LegendInput in = legend.Input();
    EXPECT_FALSE(in.vertical);
    EXPECT_EQ(in.bottom, 25) << "a horizontal bar stands no lower than 25";
    EXPECT_EQ(in.unitX, 6.25f);
    EXPECT_EQ(in.blocks, 6);
    EXPECT_EQ(in.decimals, 2);
    EXPECT_FALSE(in.ticks);
    EXPECT_EQ(in.unit, "[m]");
    EXPECT_EQ(in.windowWidth, 800);
    EXPECT_EQ(in.windowHeight, 600);
    float left, bottom, width, height;
    legend.BarRect(left, bottom, width, height);
    EXPECT_EQ(left, 713.0f);
    EXPECT_EQ(bottom, 45.0f);
    legend.SetDirection(0);
    EXPECT_EQ(legend.Input().bottom, 10) << "a vertical bar stands on its start";

    EXPECT_EQ(legend.LabelExponent(), 0);
    EXPECT_EQ(legend.FormatLabel(-0.001, 0), "0.00");
    EXPECT_EQ(legend.FormatLabel(2500.0, 3), "2.50");
}

TEST(LegendBar, LabelOptionsGiveTheLibrarysTextsAndTheTitleThePowerOfTen)
{
    KesraTest::TestLegend legend;
    ASSERT_TRUE(legend.Create(800, 600, 700, 100));
    legend.SetValueRange(0.0, 25000.0, true, true);
    legend.SetBlockNum(4);
    legend.SetValueFormat(3, 1);
    legend.SetTitle("Stress", false);
    // No option: the labels are the backend's own, with its power of ten.
    const LegendInput plain = legend.Input();
    EXPECT_TRUE(plain.labelTexts.empty());
    EXPECT_EQ(plain.exponent, 3);
    EXPECT_EQ(plain.title, "Stress");
    EXPECT_EQ(MakeLegendLayout(plain, kMeasure).labels.back().text, "25.0");
    EXPECT_EQ(KesraBackend::LegendLabelTexts(legend, {2500.0, -0.01}, 3, 1),
              (std::vector<std::string>{"2.5", "0.0"}));

    legend.SetLabelFormat(KesraEngine::eLabelFormatAutomatic, 0);
    legend.SetLabelScale(3);
    const LegendInput in = legend.Input();
    EXPECT_EQ(in.exponent, 0) << "the host's power of ten replaces the backend's";
    EXPECT_EQ(in.title, "Stress (x10^3)");
    // Two significant digits are the fewest that tell 12.5, 18.75 and 25 apart.
    EXPECT_EQ(in.labelTexts, (std::vector<std::string>{"0", "6.2", "12", "19", "25"}));
    const LegendLayout layout = MakeLegendLayout(in, kMeasure);
    EXPECT_EQ(layout.labels.front().text, "0");
    EXPECT_EQ(layout.labels.back().text, "25");
    EXPECT_EQ(layout.unit.superscript, "");
    EXPECT_EQ(layout.title.text, "Stress (x10^3)");
}

TEST(LegendBar, TextColourFollowsTheBackgroundOnlyWhenAsked)
{
    KesraTest::TestLegend legend;
    legend.SetColor({10, 20, 30, 40});
    EXPECT_EQ(legend.TextColor({0, 0, 0, 255}), (KesraBackend::Color{10, 20, 30, 255}));
    legend.SetAutoTextColor(1);
    EXPECT_EQ(legend.TextColor({0, 0, 0, 255}), (KesraBackend::Color{255, 255, 255, 255}));
    EXPECT_EQ(legend.TextColor({250, 250, 250, 255}), (KesraBackend::Color{0, 0, 0, 255}));
    // The panel is the text's opposite, three quarters opaque.
    EXPECT_EQ(legend.PanelColor({250, 250, 250, 255}), (KesraBackend::Color{255, 255, 255, 192}));
    legend.SetAutoTextColor(0);
    legend.SetColor({240, 240, 200, 255});
    EXPECT_EQ(legend.PanelColor({250, 250, 250, 255}), (KesraBackend::Color{0, 0, 0, 192}));
}

} // namespace
