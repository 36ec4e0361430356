// The OpenGL backend's overlays and text, drawn headlessly: the ruler's
// blocks, the tips' labels and leader lines, the title, the axis triad's
// arrows, the font files behind a face, and the headless context's refusals.
#include "GlTestSupport.h"

#include "gl/GlAxis.h"
#include "gl/GlCamera.h"
#include "gl/GlFont.h"
#include "gl/GlProgram.h"
#include "gl/GlRuler.h"
#include "gl/GlTipManager.h"

#include <cmath>
#include <string>

namespace
{

using KesraGl::Color;
using KesraTest::ColorNear;
using KesraTest::HeadlessRenderer;
using KesraTest::PixelAt;

constexpr int kWidth = 200;
constexpr int kHeight = 150;
const Color kWhite{255, 255, 255, 255};

TEST(GlRuler, BlocksSpanTheComputedPixelWidth)
{
    HeadlessRenderer gl(kWidth, kHeight);
    ASSERT_TRUE(gl.created);
    KesraGl::CGlRuler ruler;
    ASSERT_TRUE(ruler.Create(kWidth, kHeight, 20, 30));
    ruler.SetRulerHeight(15);
    ruler.SetUnit("m");
    ruler.SetBlock4();
    ruler.SetOpenGLScale(50.0f);
    ruler.SetTextColor({0, 0, 0, 255});
    gl.renderer.SetRuler(&ruler);
    gl.renderer.Render();
    const int width = ruler.GetPixelWidth();
    ASSERT_GT(width, 40);
    EXPECT_EQ(ruler.GetBlockCount(), 4);
    // A round length: its pixels are the length times the scale.
    EXPECT_NEAR(width, ruler.GetRoundLength() * 50.0f, 1.0f);
    const int y = 30 + 5;
    // Dark and light blocks in turn, each a quarter of the bar.
    for (int k = 0; k < 4; ++k)
    {
        const int x = 20 + (2 * k + 1) * width / 8;
        const Color pixel = PixelAt(gl.renderer, x, y);
        EXPECT_TRUE(k % 2 == 0 ? pixel.red < 60 : pixel.red > 200) << "block " << k << " at " << x;
    }
    EXPECT_TRUE(ColorNear(PixelAt(gl.renderer, 20 + width + 3, y), kWhite, 0));

    ruler.SetDrawRuler(0);
    gl.renderer.Render();
    EXPECT_TRUE(ColorNear(PixelAt(gl.renderer, 20 + width / 8, y), kWhite, 0));
}

TEST(GlTips, LabelsSitAtTheEffectPointWithALeaderToTheOriginal)
{
    HeadlessRenderer gl(kWidth, kHeight);
    ASSERT_TRUE(gl.created);
    KesraGl::CGlCamera camera(kWidth, kHeight);
    camera.SetScaleNoEventHandler(0.02f);
    gl.renderer.SetCamera(&camera);
    KesraGl::CGlTipManagerFactory factory;
    KesraEngine::CKesraTipManager* tips = factory.CreateTipManager();
    ASSERT_NE(tips, nullptr);
    const double original[3] = {-1.0, -0.8, 0.0};
    const double effect[3] = {1.0, 0.8, 0.0};
    ASSERT_EQ(tips->InsertTip("peak", original, effect), 0);
    tips->SetBackgroundColor(250, 240, 120);
    tips->SetLinkingLineColor(200, 0, 200);
    gl.renderer.SetTipManager(static_cast<KesraGl::CGlTipManager*>(tips));
    gl.renderer.Render();

    KesraEngine::CKesraCamera::Vector label;
    KesraEngine::CKesraCamera::Vector point;
    camera.ProjectPointWorldToView({effect[0], effect[1], effect[2]}, label);
    camera.ProjectPointWorldToView({original[0], original[1], original[2]}, point);
    // Inside the label, left of its text: the label's background.
    EXPECT_TRUE(ColorNear(PixelAt(gl.renderer, static_cast<int>(label.x) - 14, static_cast<int>(label.y) + 3),
                          Color{250, 240, 120, 255}, 0));
    // Halfway along the leader and at the annotated point: the line colour.
    const int midX = static_cast<int>((label.x + point.x) / 2.0);
    const int midY = static_cast<int>((label.y + point.y) / 2.0);
    EXPECT_TRUE(ColorNear(PixelAt(gl.renderer, midX, midY), Color{200, 0, 200, 255}, 60));
    EXPECT_TRUE(ColorNear(PixelAt(gl.renderer, static_cast<int>(point.x), static_cast<int>(point.y)),
                          Color{200, 0, 200, 255}, 0));

    ASSERT_TRUE(tips->RemoveTip(0));
    gl.renderer.Render();
    EXPECT_TRUE(ColorNear(PixelAt(gl.renderer, static_cast<int>(point.x), static_cast<int>(point.y)),
                          kWhite, 0));
}

TEST(GlTitle, TheNameIsDrawnInTheTitleColourTopLeft)
{
    HeadlessRenderer gl(kWidth, kHeight);
    ASSERT_TRUE(gl.created);
    const auto titlePixels = [&gl](const Color& color) {
        std::vector<unsigned char> rgba(static_cast<std::size_t>(kWidth) * 40 * 4);
        EXPECT_TRUE(gl.renderer.ReadPixels(0, kHeight - 40, kWidth, 40, rgba.data()));
        int count = 0;
        for (std::size_t i = 0; i < rgba.size(); i += 4)
        {
            count += ColorNear({rgba[i], rgba[i + 1], rgba[i + 2], 255}, color, 0) ? 1 : 0;
        }
        return count;
    };
    gl.renderer.SetActive(1);
    gl.renderer.SetName("");
    gl.renderer.Render();
    EXPECT_EQ(titlePixels({255, 0, 0, 255}), 0) << "an empty name draws nothing";
    gl.renderer.SetName("Wake");
    gl.renderer.SetActive(1);
    gl.renderer.Render();
    EXPECT_GT(titlePixels({255, 0, 0, 255}), 20);
    gl.renderer.SetActive(0);
    gl.renderer.Render();
    EXPECT_EQ(titlePixels({255, 0, 0, 255}), 0);
    EXPECT_GT(titlePixels({198, 198, 198, 255}), 20);
}

TEST(GlAxis, ArrowsPointWhereTheRotationSendsTheAxes)
{
    HeadlessRenderer gl(kWidth, kHeight);
    ASSERT_TRUE(gl.created);
    KesraGl::CGlAxis axis(gl.renderer);
    gl.renderer.SetAxis(&axis);
    gl.renderer.Render();
    EXPECT_TRUE(ColorNear(PixelAt(gl.renderer, 60, 44), kWhite, 0)) << "drawn before Create";
    ASSERT_TRUE(axis.Create(kWidth, kHeight));
    gl.renderer.Render();
    // Identity: x to the right (red), y up (green); the labels beyond the tips.
    const Color right = PixelAt(gl.renderer, 44 + 15, 44);
    const Color up = PixelAt(gl.renderer, 44, 44 + 15);
    EXPECT_TRUE(right.red > 2 * right.green && right.red > 2 * right.blue);
    EXPECT_TRUE(up.green > 2 * up.red && up.green > 2 * up.blue);
    float x, y;
    axis.LabelPosition(0, x, y);
    EXPECT_GT(x, 44 + 30);
    EXPECT_EQ(y, 44.0f);
    // A quarter turn about the view's z axis sends x up.
    KesraMathKit::TKesraMatrix4<double> turn;
    turn.MakeRotation(90.0, 0.0, 0.0, 1.0);
    axis.SetRotateMatrix(turn);
    gl.renderer.Render();
    const Color nowUp = PixelAt(gl.renderer, 44, 44 + 15);
    EXPECT_TRUE(nowUp.red > 2 * nowUp.green && nowUp.red > 2 * nowUp.blue);
    axis.LabelPosition(0, x, y);
    EXPECT_NEAR(x, 44.0f, 1e-4);
    EXPECT_GT(y, 44 + 30);
    // Seen from the back x points left, and its label stays whole inside
    // the window's left edge.
    turn.MakeRotation(180.0, 0.0, 0.0, 1.0);
    axis.SetRotateMatrix(turn);
    axis.LabelPosition(0, x, y);
    EXPECT_EQ(x, 8.0f);
    gl.renderer.Render();
    for (int row = 30; row < 60; ++row)
    {
        EXPECT_TRUE(ColorNear(PixelAt(gl.renderer, 0, row), kWhite, 0)) << "row " << row;
    }
}

TEST(GlFont, FacesPickTheirFilesAndTheAtlasMeasures)
{
    KesraGl::CGlFont font;
    EXPECT_EQ(font.GetSize(), 14);
    EXPECT_EQ(font.FontFile(), "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf");
    font.SetBold(2);
    EXPECT_EQ(font.FontFile(), "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf");
    font.SetItalic(1);
    EXPECT_EQ(font.FontFile(), "/usr/share/fonts/truetype/dejavu/DejaVuSans-BoldOblique.ttf");
    font.SetBold(0);
    font.SetFace("DejaVu Sans Mono");
    EXPECT_EQ(font.FontFile(), "/usr/share/fonts/truetype/dejavu/DejaVuSansMono-Oblique.ttf");
    font.SetFace("/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf");
    EXPECT_EQ(font.FontFile(), "/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf");
    font.SetFace("/no/such/font.ttf");
    font.SetItalic(0);
    EXPECT_EQ(font.FontFile(), "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf");

    HeadlessRenderer gl(kWidth, kHeight);
    ASSERT_TRUE(gl.created);
    const KesraGl::CGlyphAtlas atlas(KesraGl::CGlFont().FontFile(), 20);
    EXPECT_GT(atlas.TextWidth("WW"), atlas.TextWidth("ii"));
    EXPECT_EQ(atlas.TextWidth("ab\x01"), atlas.TextWidth("ab"));
    EXPECT_EQ(atlas.Find('\n'), nullptr);
    ASSERT_NE(atlas.Find('g'), nullptr);
    EXPECT_GT(atlas.Find('g')->height, atlas.Find('g')->top) << "g descends";
    EXPECT_GT(atlas.Ascender(), 10);
    // Latin-1 too, as UTF-8 or as a lone byte: the times sign of a power of ten.
    EXPECT_GT(atlas.TextWidth("\xC3\x97"), 0.0f);
    EXPECT_EQ(atlas.TextWidth("\xD7"), atlas.TextWidth("\xC3\x97"));
    EXPECT_NE(atlas.FindCode(0xE9), nullptr);
    EXPECT_EQ(atlas.FindCode(0x100), nullptr);
    EXPECT_EQ(atlas.TextWidth("a\xC4\x80"), atlas.TextWidth("a")) << "beyond Latin-1: nothing";
    try
    {
        const KesraGl::CGlyphAtlas missing("/no/such/font.ttf", 12);
        ADD_FAILURE() << "a missing font loaded";
    }
    catch (const KesraGl::GlError& error)
    {
        EXPECT_NE(std::string(error.what()).find("/no/such/font.ttf"), std::string::npos);
    }
}

TEST(GlText, ASuperscriptIsRaisedAfterItsTextAndTheAnchorPlacesTheWholeLine)
{
    HeadlessRenderer gl(kWidth, kHeight);
    ASSERT_TRUE(gl.created);
    const KesraGl::TextStyle style{KesraGl::CGlFont().FontFile(), 20};
    float base = 0.0f;
    float whole = 0.0f;
    gl.renderer.SetExtraOverlay([&](KesraGl::CGlRenderer& renderer) {
        KesraGl::CGlCanvas& canvas = renderer.Canvas();
        base = canvas.TextWidth("10", style);
        whole = base + canvas.TextWidth("3", {style.file, 15});
        canvas.Text(100.0f, 60.0f, "10", style, Color{0, 0, 0, 255}, KesraGl::Anchor::Middle, "3");
    });
    gl.renderer.Render();
    const auto darkIn = [&gl](int x0, int x1, int y0, int y1) {
        int dark = 0;
        for (int y = y0; y <= y1; ++y)
        {
            for (int x = x0; x <= x1; ++x)
            {
                dark += PixelAt(gl.renderer, x, y).red < 128 ? 1 : 0;
            }
        }
        return dark;
    };
    const int left = static_cast<int>(std::round(100.0f - 0.5f * whole));
    const int exponent = left + static_cast<int>(base);
    // The exponent stands right of "10", its foot 8 pixels up; nothing of it
    // at the baseline, and nothing right of the whole line.
    EXPECT_GT(darkIn(exponent, exponent + 10, 70, 80), 10);
    EXPECT_EQ(darkIn(exponent + 1, exponent + 10, 58, 66), 0);
    EXPECT_GT(darkIn(left, exponent - 1, 60, 70), 10);
    EXPECT_EQ(darkIn(left + static_cast<int>(whole) + 2, kWidth - 1, 50, 90), 0);
}

TEST(GlContext, RefusesWithAReason)
{
    KesraGl::CEglContext context;
    EXPECT_FALSE(context.MakeCurrent());
    EXPECT_FALSE(context.Create(0, 10));
    EXPECT_EQ(context.LastError(), "EGL: a drawable of 0x10 pixels has no area");
    ASSERT_TRUE(context.Create(16, 16)) << context.LastError();
    EXPECT_TRUE(context.LastError().empty());
    EXPECT_NE(context.Framebuffer(), 0u);
    EXPECT_FALSE(context.IsRedrawRequested());
    context.RequestRedraw();
    EXPECT_TRUE(context.IsRedrawRequested());
    context.Destroy();
    EXPECT_FALSE(context.MakeCurrent());
    EXPECT_EQ(context.Framebuffer(), 0u);
}

} // namespace
