// The tips as every backend places them: the separation of overlapping
// labels, keeping labels inside the window, and the placement of label, text
// and leader through the camera at the font type's size.
#include "BackendTestSupport.h"

#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace
{

using KesraBackend::LabelBox;
using KesraBackend::SeparateLabels;
using KesraBackend::TipFontSizeChange;

TEST(TipLayout, OnlyOverlappingLabelsMoveApartVerticallyUntilNoneOverlaps)
{
    // 10 apart where 20 + 4 are needed: each moves 7, the upper one up.
    std::vector<LabelBox> boxes{{100.0, 100.0, 40.0, 20.0}, {100.0, 110.0, 40.0, 20.0}};
    SeparateLabels(boxes, 400.0, 300.0);
    EXPECT_EQ(boxes[0].y, 93.0);
    EXPECT_EQ(boxes[1].y, 117.0);
    EXPECT_EQ(boxes[0].x, 100.0);
    // At the same height the earlier one goes up.
    boxes = {{50.0, 50.0, 40.0, 20.0}, {60.0, 50.0, 40.0, 20.0}};
    SeparateLabels(boxes, 400.0, 300.0);
    EXPECT_EQ(boxes[0].y, 62.0);
    EXPECT_EQ(boxes[1].y, 38.0);
    // Side by side, 45 apart where 40 + 4 suffice: they stay.
    boxes = {{100.0, 100.0, 40.0, 20.0}, {145.0, 100.0, 40.0, 20.0}};
    SeparateLabels(boxes, 400.0, 300.0);
    EXPECT_EQ(boxes[0].y, 100.0);
    EXPECT_EQ(boxes[1].y, 100.0);

    // The passes part four labels at one place to a thousandth of a pixel.
    boxes.assign(4, LabelBox{200.0, 150.0, 60.0, 20.0});
    SeparateLabels(boxes, 400.0, 300.0);
    for (std::size_t a = 0; a < boxes.size(); ++a)
    {
        for (std::size_t b = a + 1; b < boxes.size(); ++b)
        {
            EXPECT_GE(std::fabs(boxes[a].y - boxes[b].y), 24.0 - 1e-3) << a << " and " << b;
        }
    }
    EXPECT_GT(boxes[0].y, boxes[3].y) << "the first on top";
}

TEST(TipLayout, LabelsStayInsideTheWindow)
{
    std::vector<LabelBox> boxes{{5.0, 295.0, 40.0, 20.0}, {600.0, -50.0, 40.0, 20.0},
                                {200.0, 150.0, 500.0, 20.0}};
    SeparateLabels(boxes, 400.0, 300.0);
    EXPECT_EQ(boxes[0].x, 22.0);
    EXPECT_EQ(boxes[0].y, 288.0);
    EXPECT_EQ(boxes[1].x, 378.0);
    EXPECT_EQ(boxes[1].y, 12.0);
    EXPECT_EQ(boxes[2].x, 252.0) << "wider than the window: its left edge inside";

    // Three labels whose places lie past the same corner: held at the top
    // edge, the first pushes the others down instead of covering them.
    boxes.assign(3, LabelBox{900.0, 900.0, 60.0, 20.0});
    SeparateLabels(boxes, 400.0, 300.0);
    EXPECT_EQ(boxes[0].y, 288.0);
    for (std::size_t a = 0; a < boxes.size(); ++a)
    {
        EXPECT_EQ(boxes[a].x, 368.0);
        for (std::size_t b = a + 1; b < boxes.size(); ++b)
        {
            EXPECT_GE(std::fabs(boxes[a].y - boxes[b].y), 24.0 - 1e-3) << a << " and " << b;
        }
    }
}

TEST(TipLabels, PlaceProjectsPointAndLabelAndSizesTheBox)
{
    KesraTest::TestCamera camera(400, 300);
    KesraTest::TestTipLabels tips;
    const double original[3] = {-50.0, -40.0, 0.0};
    const double effect[3] = {50.0, 40.0, 0.0};
    ASSERT_EQ(tips.InsertTip("peak", original, effect), 0);
    const KesraTest::FixedMeasure measure;
    std::vector<KesraBackend::TipPlacement> placed = tips.Place(camera, measure, 400.0, 300.0);
    ASSERT_EQ(placed.size(), 1u);
    EXPECT_EQ(placed[0].pointX, 150.0);
    EXPECT_EQ(placed[0].pointY, 110.0);
    // "peak": 28 + 12 wide, 14 + 10 high, centred on (250, 190).
    EXPECT_EQ(placed[0].label.left, 230.0);
    EXPECT_EQ(placed[0].label.bottom, 178.0);
    EXPECT_EQ(placed[0].label.width, 40.0);
    EXPECT_EQ(placed[0].label.height, 24.0);
    EXPECT_EQ(placed[0].text.text, "peak");
    EXPECT_EQ(placed[0].text.x, 250.0);
    EXPECT_DOUBLE_EQ(placed[0].text.y, 190.0 - 0.35 * 14.0);
    EXPECT_EQ(placed[0].text.anchor, KesraBackend::Anchor::Middle);

    // The font type moves the size: huge is 6 pixels larger, an unknown
    // type counts as normal.
    tips.SetTipFontType(KesraEngine::eTipFontHuge);
    placed = tips.Place(camera, measure, 400.0, 300.0);
    EXPECT_EQ(placed[0].text.sizeChange, 6);
    EXPECT_EQ(placed[0].label.height, 30.0);
    EXPECT_EQ(TipFontSizeChange(static_cast<KesraEngine::eTipFontType>(9)), 0);
}

TEST(TipLabels, TwoTipsAtOnePlaceAreSeparatedAndKeepTheirPoints)
{
    KesraTest::TestCamera camera(400, 300);
    KesraTest::TestTipLabels tips;
    const double first[3] = {0.0, 0.0, 0.0};
    const double second[3] = {10.0, 0.0, 0.0};
    const double label[3] = {0.0, 50.0, 0.0};
    tips.InsertTip("first", first, label);
    tips.InsertTip("second", second, label);
    const KesraTest::FixedMeasure measure;
    const std::vector<KesraBackend::TipPlacement> placed = tips.Place(camera, measure, 400.0, 300.0);
    ASSERT_EQ(placed.size(), 2u);
    EXPECT_EQ(placed[0].label.bottom - placed[1].label.bottom, 28.0);
    EXPECT_EQ(placed[0].pointX, 200.0);
    EXPECT_EQ(placed[1].pointX, 210.0);
}

TEST(TipLabels, APointOutsideTheWindowIsPinnedToItsEdgeWithAnArrowTowardIt)
{
    // (-50, -40) of a 400 x 300 camera lies at (150, 110); at (-250, 0) it
    // lies 50 pixels left of the window.
    KesraTest::TestCamera camera(400, 300);
    KesraTest::TestTipLabels tips;
    const double inside[3] = {-50.0, -40.0, 0.0};
    const double outside[3] = {-250.0, 0.0, 0.0};
    const double label[3] = {0.0, 0.0, 0.0};
    tips.InsertTip("in", inside, label);
    tips.InsertTip("out", outside, label);
    const KesraTest::FixedMeasure measure;
    const std::vector<KesraBackend::TipPlacement> placed = tips.Place(camera, measure, 400.0, 300.0);
    ASSERT_EQ(placed.size(), 2u);
    EXPECT_FALSE(placed[0].pinned);
    EXPECT_EQ(placed[0].pointX, 150.0);
    EXPECT_TRUE(placed[1].pinned);
    EXPECT_EQ(placed[1].pointX, KesraBackend::kTipPinInset);
    EXPECT_EQ(placed[1].pointY, 150.0);
    EXPECT_EQ(placed[1].arrowX, -1.0);
    EXPECT_EQ(placed[1].arrowY, 0.0);
    // The arrow's point leads toward the tip's own point, its base across.
    const std::array<double, 6> arrow = KesraBackend::PinArrow(placed[1]);
    EXPECT_DOUBLE_EQ(arrow[0], KesraBackend::kTipPinInset - 0.5 * KesraBackend::kTipArrow);
    EXPECT_DOUBLE_EQ(arrow[2], arrow[4]);
    EXPECT_DOUBLE_EQ(arrow[3] - arrow[5], -KesraBackend::kTipArrow);
}

TEST(TipLayout, LabelsLeaveThePanelsOfOtherOverlaysTheShortestWayInsideTheWindow)
{
    // A legend's panel at the right edge; the first box reaches into it from
    // the left, the second lies beside it.
    const std::vector<KesraBackend::Box> panel{{300.0, 50.0, 90.0, 200.0}};
    std::vector<LabelBox> boxes{{290.0, 150.0, 40.0, 20.0}, {100.0, 150.0, 40.0, 20.0}};
    KesraBackend::KeepOutOf(boxes, panel, 400.0, 300.0);
    EXPECT_EQ(boxes[0].x, 300.0 - KesraBackend::kTipSeparation - 20.0);
    EXPECT_EQ(boxes[0].y, 150.0);
    EXPECT_EQ(boxes[1].x, 100.0);
    // A panel as wide as the window: out under its bottom, the nearer way.
    std::vector<LabelBox> over{{200.0, 80.0, 40.0, 20.0}};
    KesraBackend::KeepOutOf(over, {{0.0, 50.0, 400.0, 200.0}}, 400.0, 300.0);
    EXPECT_EQ(over[0].x, 200.0);
    EXPECT_EQ(over[0].y, 50.0 - KesraBackend::kTipSeparation - 10.0);
}

TEST(TipLabels, TextColourGivesWayOnlyWhereItWouldNotReadOnTheBox)
{
    KesraTest::TestTipLabels tips;
    EXPECT_EQ(tips.TextColor(), (KesraBackend::Color{0, 0, 0, 255})) << "black on cream stays";
    tips.SetBackgroundColor(30, 30, 60);
    EXPECT_EQ(tips.TextColor(), (KesraBackend::Color{255, 255, 255, 255})) << "black on navy";
    tips.SetTextColor(250, 250, 0);
    EXPECT_EQ(tips.TextColor(), (KesraBackend::Color{250, 250, 0, 255})) << "yellow on navy reads";
    tips.SetBackgroundColor(255, 255, 255);
    EXPECT_EQ(tips.TextColor(), (KesraBackend::Color{0, 0, 0, 255})) << "yellow on white does not";
}

} // namespace
