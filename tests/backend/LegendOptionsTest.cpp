// What the legend's options add to its layout in every backend: the log
// scale's ends, block edges and marks, the thinning of uneven marks, the
// NaN, below- and above-range swatches and their row, and that a legend
// without an option lays out as it always did.
#include "BackendTestSupport.h"

#include "common/LegendOptions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace
{

using KesraBackend::LegendLayout;
using KesraBackend::LegendMark;
using KesraBackend::LegendSwatch;
using KesraBackend::LogScaleEnds;
using KesraBackend::MakeLogScaleEnds;
using KesraBackend::SwatchKind;

const KesraTest::FixedMeasure kMeasure;
constexpr double kH = 12.0; // the labels' height in the fixed measure

// A created vertical legend from minimum to maximum, in an 800 x 600 window.
void Prepare(KesraTest::TestLegend& legend, double minimum, double maximum)
{
    ASSERT_TRUE(legend.Create(800, 600, 700, 100));
    legend.SetValueRange(minimum, maximum, true, true);
    legend.SetTitle("Flux", false);
    legend.SetUnit("[W]");
}

bool Overlap(const KesraBackend::Box& a, const KesraBackend::Box& b)
{
    return a.left < b.left + b.width && b.left < a.left + a.width && a.bottom < b.bottom + b.height
           && b.bottom < a.bottom + a.height;
}

TEST(LogScale, EndsFollowTheColourMapsPlacing)
{
    const LogScaleEnds ends = MakeLogScaleEnds(0.01, 1000.0);
    EXPECT_EQ(ends.low, 0.01);
    EXPECT_EQ(ends.high, 1000.0);
    // A minimum that has no logarithm: four decades below the top.
    EXPECT_EQ(MakeLogScaleEnds(0.0, 50.0).low, 50.0 * 0.0001);
    EXPECT_EQ(MakeLogScaleEnds(-3.0, 50.0).low, 50.0 * 0.0001);
    const LogScaleEnds none = MakeLogScaleEnds(-2.0, -1.0);
    EXPECT_EQ(none.high, 1.0);
    EXPECT_EQ(none.low, 0.0001);

    // The ends exactly; between them the value the log placing puts there.
    EXPECT_EQ(KesraBackend::LogScaleValue(ends, 0.0), 0.01);
    EXPECT_EQ(KesraBackend::LogScaleValue(ends, -1.0), 0.01);
    EXPECT_EQ(KesraBackend::LogScaleValue(ends, 1.0), 1000.0);
    EXPECT_EQ(KesraBackend::LogScaleValue(ends, std::nan("")), 0.01);
    KesraTest::TestLegend legend;
    Prepare(legend, 0.01, 1000.0);
    legend.SetLogScale(1);
    for (int k = 0; k <= 40; ++k)
    {
        const double along = k / 40.0;
        const double value = KesraBackend::LogScaleValue(ends, along);
        EXPECT_NEAR(legend.GetScalePosition(value), along, 1e-14) << value;
        EXPECT_EQ(legend.BarValue(along), value);
    }
    EXPECT_NEAR(KesraBackend::LogScaleValue(ends, 0.4), 1.0, 1e-13);
}

TEST(LogScale, BandsChangeColourAtTheirEdges)
{
    const std::vector<double> edges = KesraBackend::LogBlockEdges(MakeLogScaleEnds(1.0, 1e4), 4);
    ASSERT_EQ(edges.size(), 5u);
    EXPECT_EQ(edges.front(), 1.0);
    EXPECT_EQ(edges.back(), 1e4);
    for (std::size_t k = 1; k < 4; ++k)
    {
        EXPECT_NEAR(edges[k], std::pow(10.0, k), 1e-12 * std::pow(10.0, k));
    }
    EXPECT_EQ(KesraBackend::LogBlockEdges(MakeLogScaleEnds(1.0, 1e4), 0),
              std::vector<double>{1.0});

    // Each edge is where the banded log colour changes: just below it the
    // block before, just above it the block it names.
    KesraTest::TestLegend legend;
    Prepare(legend, 1.0, 1e4);
    legend.SetLogScale(1);
    legend.SetBanded(1);
    legend.SetBlockNum(4);
    const LegendLayout layout = legend.Layout(kMeasure);
    ASSERT_EQ(layout.edges, edges) << "the bar's blocks are the log scale's";
    unsigned char below[3], above[3], middle[3];
    for (std::size_t k = 1; k < 4; ++k)
    {
        legend.GetOpenGLColor(below[0], below[1], below[2], edges[k] * (1.0 - 1e-9));
        legend.GetOpenGLColor(above[0], above[1], above[2], edges[k] * (1.0 + 1e-9));
        legend.GetOpenGLColor(middle[0], middle[1], middle[2], 0.5 * (edges[k] + edges[k + 1]));
        EXPECT_NE(std::vector<unsigned char>(below, below + 3),
                  std::vector<unsigned char>(above, above + 3)) << k;
        EXPECT_EQ(std::vector<unsigned char>(middle, middle + 3),
                  std::vector<unsigned char>(above, above + 3)) << "a block's middle, its colour";
    }
}

TEST(LogScale, SmoothMarksStandAtDecadesAsPowersOfTen)
{
    KesraTest::TestLegend legend;
    Prepare(legend, 0.01, 1000.0);
    legend.SetLogScale(1);
    const std::vector<LegendMark> marks = KesraBackend::LogLegendMarks(
        legend, MakeLogScaleEnds(0.01, 1000.0), false, {});
    ASSERT_EQ(marks.size(), 6u);
    for (std::size_t k = 0; k < marks.size(); ++k)
    {
        EXPECT_NEAR(marks[k].along, k / 5.0, 1e-14);
        EXPECT_EQ(marks[k].text, "10");
        EXPECT_EQ(marks[k].superscript, std::to_string(static_cast<int>(k) - 2));
    }
    // A label option: the library's texts, no superscript.
    legend.SetLabelFormat(KesraEngine::eLabelFormatScientific, 1);
    const std::vector<LegendMark> sci = KesraBackend::LogLegendMarks(
        legend, MakeLogScaleEnds(0.01, 1000.0), false, {});
    EXPECT_EQ(sci.front().text, "1.0e-02");
    EXPECT_EQ(sci.back().text, "1.0e+03");
    EXPECT_EQ(sci.back().superscript, "");
}

TEST(LogScale, FewerThanTwoDecadesMarkTheEndsToo)
{
    KesraTest::TestLegend legend;
    Prepare(legend, 0.52, 1.48);
    legend.SetLogScale(1);
    const LogScaleEnds ends = MakeLogScaleEnds(0.52, 1.48);
    const std::vector<LegendMark> marks = KesraBackend::LogLegendMarks(legend, ends, false, {});
    ASSERT_EQ(marks.size(), 3u);
    EXPECT_EQ(marks[0].along, 0.0);
    EXPECT_EQ(marks[0].text, "0.52");
    EXPECT_EQ(marks[1].text + "^" + marks[1].superscript, "10^0");
    EXPECT_NEAR(marks[1].along, std::log(1.0 / 0.52) / std::log(1.48 / 0.52), 1e-14);
    EXPECT_EQ(marks[2].along, 1.0);
    EXPECT_EQ(marks[2].text, "1.5");
    // No decade at all: the two ends alone.
    Prepare(legend, 2.0, 8.0);
    const std::vector<LegendMark> ends28 =
        KesraBackend::LogLegendMarks(legend, MakeLogScaleEnds(2.0, 8.0), false, {});
    ASSERT_EQ(ends28.size(), 2u);
    EXPECT_EQ(ends28[0].text + " " + ends28[1].text, "2 8");
}

TEST(LogScale, LayoutPutsLabelsAndTicksAtTheMarks)
{
    KesraTest::TestLegend legend;
    Prepare(legend, 0.01, 1000.0);
    legend.SetLogScale(1);
    const LegendLayout layout = legend.Layout(kMeasure);
    const KesraBackend::Box& bar = layout.bar;
    ASSERT_EQ(layout.ticks.size(), 6u);
    ASSERT_EQ(layout.labels.size(), 6u) << "360 pixels hold six labels";
    for (std::size_t k = 0; k < 6; ++k)
    {
        const double y = bar.bottom + k / 5.0 * bar.height;
        EXPECT_NEAR(layout.ticks[k].y0, y, 1e-9);
        EXPECT_EQ(layout.ticks[k].x0, bar.left + bar.width);
        EXPECT_NEAR(layout.labels[k].y, y - 0.35 * kH, 1e-9);
        EXPECT_EQ(layout.labels[k].superscript, std::to_string(static_cast<int>(k) - 2));
    }
    legend.SetShowNode(0);
    EXPECT_TRUE(legend.Layout(kMeasure).ticks.empty());
    // Thirty blocks in a short window: the labels thin out, both ends kept.
    legend.SetBanded(1);
    legend.SetBlockNum(30);
    legend.SetWindowSize(800, 200);
    const LegendLayout thin = legend.Layout(kMeasure);
    ASSERT_GE(thin.labels.size(), 2u);
    EXPECT_LT(thin.labels.size(), 31u);
    EXPECT_EQ(thin.labels.front().text, "0.01");
    EXPECT_EQ(thin.labels.back().text, "1e+03");
    for (std::size_t k = 1; k < thin.labels.size(); ++k)
    {
        EXPECT_GE(thin.labels[k].y - thin.labels[k - 1].y, kH + 4.0 - 1e-9) << k;
    }
}

TEST(LogScale, UnevenMarksThinOutWithBothEndsShown)
{
    using KesraBackend::ShownMarks;
    EXPECT_EQ(ShownMarks({0.0, 10.0, 15.0, 30.0, 34.0}, 10.0),
              (std::vector<bool>{true, true, false, false, true}));
    EXPECT_EQ(ShownMarks({0.0, 10.0, 20.0}, 10.0), (std::vector<bool>{true, true, true}));
    EXPECT_EQ(ShownMarks({0.0, 3.0}, 10.0), (std::vector<bool>{true, false}))
        << "ends too near each other: the first only, as the linear labels";
    EXPECT_EQ(ShownMarks({5.0}, 10.0), std::vector<bool>{true});
    EXPECT_TRUE(ShownMarks({}, 10.0).empty());
}

TEST(LegendSwatches, ShowWhileInUseInTheirOrder)
{
    KesraTest::TestLegend legend;
    Prepare(legend, 0.0, 1.0);
    EXPECT_TRUE(KesraBackend::LegendSwatches(legend).empty());
    legend.SetUseNanColor(1);
    legend.SetUseAboveRangeColor(1);
    legend.SetUseBelowRangeColor(1);
    legend.SetNanColor(1, 2, 3);
    legend.SetBelowRangeColor(4, 5, 6);
    legend.SetAboveRangeColor(7, 8, 9);
    std::vector<LegendSwatch> swatches = KesraBackend::LegendSwatches(legend);
    ASSERT_EQ(swatches.size(), 3u);
    EXPECT_EQ(swatches[0].kind, SwatchKind::Below);
    EXPECT_EQ(swatches[0].label.text, "below");
    EXPECT_EQ(swatches[0].fill, (KesraBackend::Color{4, 5, 6, 255}));
    EXPECT_EQ(swatches[1].kind, SwatchKind::Above);
    EXPECT_EQ(swatches[1].fill, (KesraBackend::Color{7, 8, 9, 255}));
    EXPECT_EQ(swatches[2].kind, SwatchKind::NotANumber);
    EXPECT_EQ(swatches[2].label.text, "NaN");
    EXPECT_EQ(swatches[2].fill, (KesraBackend::Color{1, 2, 3, 255}));

    // Fill all range and the single colour leave no value outside the range.
    legend.SetFillAllRange(1);
    ASSERT_EQ(KesraBackend::LegendSwatches(legend).size(), 1u);
    legend.SetFillAllRange(0);
    legend.SetUseSignleColor(1);
    ASSERT_EQ(KesraBackend::LegendSwatches(legend).size(), 1u);
    // The log scale gives NaN and values <= 0 the NaN colour: always shown.
    legend.SetUseSignleColor(0);
    legend.SetUseNanColor(0);
    legend.SetUseBelowRangeColor(0);
    legend.SetUseAboveRangeColor(0);
    legend.SetLogScale(1);
    swatches = KesraBackend::LegendSwatches(legend);
    ASSERT_EQ(swatches.size(), 1u);
    EXPECT_EQ(swatches[0].label.text, "NaN, <= 0");
    // Not created: no swatch, whatever is set.
    legend.Delete();
    EXPECT_TRUE(KesraBackend::LegendSwatches(legend).empty());
}

TEST(LegendSwatches, TakeALineOfTheirOwnAboveTheBar)
{
    KesraTest::TestLegend legend;
    Prepare(legend, 0.0, 1.0);
    const LegendLayout plain = legend.Layout(kMeasure);
    legend.SetUseNanColor(1);
    legend.SetUseBelowRangeColor(1);
    legend.SetUseAboveRangeColor(1);
    const LegendLayout layout = legend.Layout(kMeasure);
    ASSERT_EQ(layout.swatches.size(), 3u);
    double x = layout.bar.left;
    for (const LegendSwatch& swatch : layout.swatches)
    {
        EXPECT_EQ(swatch.box.left, x);
        EXPECT_EQ(swatch.box.bottom, plain.unit.y);
        EXPECT_EQ(swatch.box.width, kH);
        EXPECT_EQ(swatch.box.height, kH);
        EXPECT_EQ(swatch.label.x, x + kH + KesraBackend::kSwatchTextGap);
        EXPECT_EQ(swatch.label.y, plain.unit.y);
        EXPECT_EQ(swatch.label.sizeChange, KesraBackend::kLegendLabelSize);
        const double textWidth = 7.0 * swatch.label.text.size();
        x = swatch.label.x + textWidth + KesraBackend::kSwatchSpacing;
        // Nothing else stands in the row: the unit and the title moved up.
        const KesraBackend::Box text{swatch.label.x, swatch.label.y, textWidth, kH};
        EXPECT_FALSE(Overlap(swatch.box, text));
    }
    EXPECT_EQ(layout.unit.y, plain.unit.y + kH + KesraBackend::kLegendGap);
    EXPECT_EQ(layout.title.y, plain.title.y + kH + KesraBackend::kLegendGap);
    EXPECT_GT(layout.swatches[1].box.left, layout.swatches[0].label.x + 7.0 * 5);
    EXPECT_EQ(layout.labels.size(), plain.labels.size());
    EXPECT_EQ(layout.note.y, plain.note.y);
}

TEST(LegendOptions, NoneSetLaysOutAsEver)
{
    KesraTest::TestLegend legend;
    Prepare(legend, -3.0, 250.0);
    legend.SetBlockNum(12);
    legend.SetNote("peak");
    for (const int direction : {0, 1})
    {
        legend.SetDirection(direction);
        const KesraBackend::LegendInput in = legend.Input();
        EXPECT_FALSE(in.logScale);
        EXPECT_TRUE(in.marks.empty());
        EXPECT_TRUE(in.swatches.empty());
        const LegendLayout layout = legend.Layout(kMeasure);
        const LegendLayout made = KesraBackend::MakeLegendLayout(in, kMeasure);
        EXPECT_EQ(layout.edges, made.edges);
        ASSERT_EQ(layout.labels.size(), made.labels.size());
        for (std::size_t k = 0; k < made.labels.size(); ++k)
        {
            EXPECT_EQ(layout.labels[k].text, made.labels[k].text);
            EXPECT_EQ(layout.labels[k].y, made.labels[k].y);
        }
        EXPECT_EQ(layout.unit.y, made.unit.y);
        EXPECT_EQ(layout.title.y, made.title.y);
        EXPECT_TRUE(layout.swatches.empty());
        // The bar's values are the linear walk, written as ever.
        EXPECT_EQ(legend.BarValue(0.3), -3.0 + 0.3 * (250.0 - -3.0));
    }
}

} // namespace
