// The ruler's label text and layout as every backend draws them: lengths with
// and without a power of ten, blocks, ticks, the three labels and the end
// label kept inside the window; and what the common ruler class reads.
#include "BackendTestSupport.h"

#include <gtest/gtest.h>

namespace
{

using KesraBackend::Anchor;
using KesraBackend::LengthText;
using KesraBackend::PowerText;
using KesraBackend::RulerInput;
using KesraBackend::RulerLayout;

const KesraTest::FixedMeasure kMeasure;

void ExpectText(const PowerText& text, const std::string& number, const std::string& power)
{
    EXPECT_EQ(text.text, number);
    EXPECT_EQ(text.superscript, power);
}

TEST(RulerLengthText, PlainOrMantissaTimesAPowerOfTen)
{
    ExpectText(LengthText(200.0, false, 1), "200.0", "");
    ExpectText(LengthText(2500.0, true, 2), "2.50\xC3\x97" "10", "3");
    ExpectText(LengthText(0.006f, true, 2), "6.00\xC3\x97" "10", "-3");
    ExpectText(LengthText(1.0, true, 0), "1\xC3\x97" "10", "0");
    // Zero has no power of ten.
    ExpectText(LengthText(0.0, true, 2), "0.00", "");
    // Decimals are kept within 0 ... 9.
    ExpectText(LengthText(1.25, false, 12), "1.250000000", "");
    ExpectText(LengthText(1.25, false, -3), "1", "");
}

RulerInput FourBlocks()
{
    RulerInput in;
    in.startX = 10;
    in.startY = 20;
    in.pixelWidth = 200;
    in.height = 12;
    in.tickHeight = 8;
    in.blocks = 4;
    in.windowWidth = 400;
    in.half = {"100.00", ""};
    in.length = {"200.00", ""};
    in.unit = "[m]";
    return in;
}

TEST(RulerLayout, BlocksTicksAndLabelsAboveThemWithAHalfLabelForFourBlocksOnly)
{
    const RulerLayout layout = MakeRulerLayout(FourBlocks(), kMeasure);
    ASSERT_EQ(layout.blocks.size(), 4u);
    ASSERT_EQ(layout.ticks.size(), 5u);
    for (std::size_t k = 0; k < 4; ++k)
    {
        EXPECT_EQ(layout.blocks[k].left, 10.0 + 50.0 * k);
        EXPECT_EQ(layout.blocks[k].bottom, 20.0);
        EXPECT_EQ(layout.blocks[k].width, 50.0);
        EXPECT_EQ(layout.blocks[k].height, 12.0);
    }
    EXPECT_EQ(layout.ticks[4].x0, 210.0);
    EXPECT_EQ(layout.ticks[4].y0, 32.0);
    EXPECT_EQ(layout.ticks[4].y1, 40.0);
    ASSERT_EQ(layout.labels.size(), 3u);
    const char* const texts[] = {"0", "100.00", "200.00"};
    const double xs[] = {10.0, 110.0, 210.0};
    for (std::size_t k = 0; k < 3; ++k)
    {
        EXPECT_EQ(layout.labels[k].text, texts[k]);
        EXPECT_EQ(layout.labels[k].x, xs[k]);
        EXPECT_EQ(layout.labels[k].y, 44.0);
        EXPECT_EQ(layout.labels[k].anchor, Anchor::Middle);
    }
    EXPECT_EQ(layout.labels[2].tail, " [m]");

    RulerInput in = FourBlocks();
    in.blocks = 2;
    const RulerLayout two = MakeRulerLayout(in, kMeasure);
    EXPECT_EQ(two.blocks.size(), 2u);
    ASSERT_EQ(two.labels.size(), 2u);
    EXPECT_EQ(two.labels[1].text, "200.00");
    in.blocks = 0;
    EXPECT_EQ(MakeRulerLayout(in, kMeasure).blocks.size(), 1u) << "at least one block";
}

TEST(RulerLayout, TheEndLabelStaysInsideTheWindow)
{
    RulerInput in = FourBlocks();
    // "200.00 [m]": 70 pixels, so 35 past the bar's end at 210.
    in.windowWidth = 245;
    EXPECT_EQ(MakeRulerLayout(in, kMeasure).labels.back().anchor, Anchor::Middle);
    in.windowWidth = 244;
    const KesraBackend::TextLine end = MakeRulerLayout(in, kMeasure).labels.back();
    EXPECT_EQ(end.anchor, Anchor::End);
    EXPECT_EQ(end.x, 242.0);
    // A raised power counts at its smaller size: 8 bytes, 3 / 4 of 2 bytes and
    // the tail's 4 make 94.5 pixels, 47.25 past the end.
    in.length = {"2.00\xC3\x97" "10", "-3"};
    in.windowWidth = 258;
    EXPECT_EQ(MakeRulerLayout(in, kMeasure).labels.back().anchor, Anchor::Middle);
    in.windowWidth = 257;
    EXPECT_EQ(MakeRulerLayout(in, kMeasure).labels.back().anchor, Anchor::End);
}

TEST(RulerLayout, OnAShortRulerTheHalfAndThenTheStartGiveWayToTheEnd)
{
    // 4 blocks of 20 pixels: "100.00" (42 wide) centred at 50 reaches
    // "200.00 [m]" (70 wide) centred at 90.
    RulerInput in = FourBlocks();
    in.pixelWidth = 80;
    RulerLayout layout = MakeRulerLayout(in, kMeasure);
    ASSERT_EQ(layout.labels.size(), 2u);
    EXPECT_EQ(layout.labels[0].text, "0");
    EXPECT_EQ(layout.labels[1].text, "200.00");
    // 30 pixels: the end's label (5 to 75) reaches back over the start's.
    in.pixelWidth = 30;
    layout = MakeRulerLayout(in, kMeasure);
    ASSERT_EQ(layout.labels.size(), 1u);
    EXPECT_EQ(layout.labels[0].text, "200.00");
    EXPECT_TRUE(layout.labels[0].halo);
}

TEST(ScaleRuler, WritesItsLengthsByItsLabelFormatsAndIsShownOnlyWithALength)
{
    KesraTest::TestScaleRuler ruler;
    EXPECT_FALSE(ruler.IsShown());
    ASSERT_TRUE(ruler.Create(800, 600, 0, 0));
    EXPECT_TRUE(ruler.IsShown());
    // 266 pixels at scale 1: 200 long, 200 pixels, formats 4 and 1.
    EXPECT_EQ(ruler.GetRoundLength(), 200.0f);
    EXPECT_EQ(ruler.GetPixelWidth(), 200);
    std::string exponent = "stale";
    EXPECT_EQ(ruler.FormatLength(ruler.GetRoundLength(), exponent), "200.0");
    EXPECT_TRUE(exponent.empty());
    // 30000 pixels wide: 10000 long with formats 3 and 2, ten to the fourth.
    ruler.SetWindowSize(30000, 600);
    EXPECT_EQ(ruler.FormatLength(ruler.GetRoundLength(), exponent), "1.00\xC3\x97" "10");
    EXPECT_EQ(exponent, "4");
    // 0.006 long: formats 2 and 2, ten to the minus third.
    ruler.SetWindowSize(1000, 600);
    ruler.SetOpenGLScale(50000.0f);
    EXPECT_EQ(ruler.FormatLength(ruler.GetRoundLength(), exponent), "6.00\xC3\x97" "10");
    EXPECT_EQ(exponent, "-3");

    ruler.SetBlock4();
    ruler.SetRulerHeight(15);
    ruler.SetUnit("m");
    const RulerLayout layout = ruler.Layout(kMeasure);
    EXPECT_EQ(layout.blocks.size(), 4u);
    EXPECT_EQ(layout.blocks[0].height, 15.0);
    EXPECT_EQ(layout.ticks[0].y1, 15.0 + 10.0) << "ticks of the reduced height";
    EXPECT_EQ(layout.labels[1].superscript, "-3");
    EXPECT_EQ(layout.labels[2].tail, " m");

    ruler.SetDrawRuler(0);
    EXPECT_FALSE(ruler.IsShown());
    ruler.SetDrawRuler(1);
    ruler.SetWindowSize(2, 600); // less than the width scale: no length
    EXPECT_FALSE(ruler.IsShown());
    ruler.SetTextColor({1, 2, 3, 4});
    EXPECT_EQ(ruler.InkColor(), (KesraBackend::Color{1, 2, 3, 255}));
}

} // namespace
