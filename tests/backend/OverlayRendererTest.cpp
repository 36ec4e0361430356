// What every backend's renderer does apart from drawing: the frame's
// sequence, the overlays' order, what follows a resize, the text sizes and
// colours; and the rubber band's, light's and factories' shared bookkeeping.
#include "BackendTestSupport.h"

#include "common/Factories.h"
#include "common/OverlayRenderer.h"
#include "common/RubberBand.h"
#include "common/ShadingLight.h"
#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace
{

using KesraBackend::Color;
using KesraBackend::Overlay;
using Log = std::vector<std::string>;

// A renderer that writes what it is asked to do into the log.
class LoggingRenderer : public KesraBackend::COverlayRenderer, public KesraTest::Logged
{
public:
    LoggingRenderer(int width, int height) : COverlayRenderer(width, height) {}

    bool CreateContext() override { return m_context = true; }
    void DestroyContext() override { m_context = false; }
    bool MakeCurrent() override { return m_context; }
    void InitializeState() override {}
    void DrawBackground() override { LogCall("background"); }
    void DrawScene() override { LogCall("scene"); }
    void DrawTitle() override { LogCall("title"); }
    void ApplySmoothing() override {}
    void ApplyPolygonOffset() override {}
    void SwapBuffers() override { LogCall("swap"); }
    void Invalidate() override { LogCall("invalidate"); }
    bool ReadPixels(int, int, int, int, unsigned char*) override { return false; }
    float ReadDepth(int, int) override { return 1.0f; }
    double TextWidth(const std::string& text, int) const override { return 7.0 * text.size(); }
    double TextHeight(int sizeChange) const override { return 14.0 + sizeChange; }

    KesraBackend::AttachedOverlays& Attach() { return m_attached; }

protected:
    bool BeginFrame() override { return LogCall("begin frame"); }
    void EndFrame() override { LogCall("end frame"); }
    bool BeginOverlays() override { return LogCall("begin overlays"); }
    void EndOverlays() override { LogCall("end overlays"); }
    void DrawAxisTriad(KesraEngine::CKesraAxis& axis) override
    {
        LogCall("axis");
        COverlayRenderer::DrawAxisTriad(axis);
    }
    void DrawOwnOverlay(Overlay overlay) override
    {
        LogCall(overlay == Overlay::CurveInset ? "inset" : "host");
    }
    void ResizeSurface(int width, int height) override
    {
        log->push_back("surface " + std::to_string(width) + "x" + std::to_string(height));
    }

private:
    bool m_context = false;
};

class LoggingLight : public KesraTest::TestLight, public KesraTest::Logged
{
public:
    void DrawSymbol() override { LogCall("light"); }
};

class LoggingArea : public KesraTest::TestDraggedArea, public KesraTest::Logged
{
public:
    LoggingArea() : TestDraggedArea(10, 10) {}
    void BeginOverlay() override { LogCall("area begin"); }
    void Draw() override { LogCall("area"); }
    void EndOverlay() override { LogCall("area end"); }
};

struct Scene
{
    Scene()
    {
        renderer.CreateContext();
        renderer.SetCamera(&camera);
        for (KesraTest::Logged* logged : std::initializer_list<KesraTest::Logged*>{
                 &renderer, &camera, &tips, &legend, &ruler, &area, &light})
        {
            logged->log = &log;
        }
        renderer.Attach() = {&axis, &tips, &legend, &ruler, &area, &light};
    }

    Log log;
    LoggingRenderer renderer{400, 300};
    KesraTest::NavigatedTestCamera camera{400, 300};
    KesraTest::TestAxis axis;
    KesraTest::TestTipLabels tips;
    KesraTest::TestLegend legend;
    KesraTest::TestScaleRuler ruler;
    LoggingArea area;
    LoggingLight light;
};

TEST(OverlayRenderer, AFrameDrawsEveryPartInOrderThenPresents)
{
    Scene scene;
    scene.renderer.SetShowLightSymbol(true);
    scene.area.SimulateDrag(1, 2, 3, 4);
    scene.renderer.Render();
    EXPECT_EQ(scene.log, (Log{"begin frame", "viewport", "projection", "model-view", "background",
                              "scene", "begin overlays", "axis", "tips", "inset", "legend", "ruler",
                              "light", "host", "area begin", "area", "area end", "end overlays",
                              "title", "end frame", "swap"}));
}

TEST(OverlayRenderer, OnlyWhatIsAttachedAndAskedForIsDrawnAndNothingWithoutAContext)
{
    Scene scene;
    scene.renderer.Attach() = {};
    scene.renderer.DrawOverlays();
    EXPECT_EQ(scene.log, (Log{"begin overlays", "inset", "host", "end overlays"}));
    // The light's symbol needs the switch, the rubber band a drag under way.
    scene.log.clear();
    scene.renderer.Attach().light = &scene.light;
    scene.renderer.Attach().area = &scene.area;
    scene.renderer.DrawOverlays();
    EXPECT_EQ(scene.log, (Log{"begin overlays", "inset", "host", "end overlays"}));

    scene.log.clear();
    scene.renderer.DestroyContext();
    scene.renderer.Render();
    EXPECT_TRUE(scene.log.empty());
}

TEST(OverlayRenderer, EachFrameStepsTheCamerasAnimation)
{
    Scene scene;
    scene.camera.SetSmoothRotateFrames(2);
    scene.camera.SetRotateMatrixToLeftView(true);
    scene.renderer.Render();
    EXPECT_TRUE(scene.camera.IsSmoothRotate());
    scene.renderer.DrawFrame();
    EXPECT_FALSE(scene.camera.IsSmoothRotate()) << "two frames, two steps";
}

TEST(OverlayRenderer, AResizeReachesTheSurfaceThenEveryFollower)
{
    const auto size = [](const auto& follower) {
        int width = 0;
        int height = 0;
        follower.GetWindowSize(width, height);
        return std::pair{width, height};
    };
    Scene scene;
    ASSERT_TRUE(scene.legend.Create(10, 10, 0, 0));
    scene.log.clear();
    scene.renderer.Resize(640, 480);
    EXPECT_EQ(scene.log, (Log{"surface 640x480", "invalidate"}));
    EXPECT_EQ(size(scene.camera), std::pair(640, 480));
    EXPECT_EQ(size(scene.axis), std::pair(640, 480));
    EXPECT_EQ(size(scene.legend), std::pair(640, 480));
    EXPECT_EQ(size(scene.ruler), std::pair(640, 480));
    EXPECT_EQ(size(scene.area), std::pair(640, 480));
    // Nothing attached: only the surface and the redraw.
    scene.renderer.Attach() = {};
    scene.renderer.SetCamera(nullptr);
    scene.log.clear();
    scene.renderer.Resize(100, 100);
    EXPECT_EQ(scene.log, (Log{"surface 100x100", "invalidate"}));
}

TEST(OverlayText, TextColourContrastsWithTheBackgroundAtTheMiddle)
{
    EXPECT_EQ(KesraBackend::ContrastingTextColor({255, 255, 255, 255}), (Color{0, 0, 0, 255}));
    EXPECT_EQ(KesraBackend::ContrastingTextColor({129, 129, 129, 255}), (Color{0, 0, 0, 255}));
    EXPECT_EQ(KesraBackend::ContrastingTextColor({127, 127, 127, 255}), (Color{255, 255, 255, 255}));
    // Green weighs most: pure green is light, pure blue dark.
    EXPECT_EQ(KesraBackend::ContrastingTextColor({0, 255, 0, 255}), (Color{0, 0, 0, 255}));
    EXPECT_EQ(KesraBackend::ContrastingTextColor({0, 0, 255, 255}), (Color{255, 255, 255, 255}));
    EXPECT_EQ(KesraBackend::PaperColor({255, 255, 255, 255}), (Color{255, 255, 255, 255}));
    EXPECT_EQ(KesraBackend::PaperColor({0, 0, 40, 255}), (Color{0, 0, 0, 255}));
}

TEST(OverlayText, SizesFollowTheFontWithinLimits)
{
    KesraTest::TestFont font;
    EXPECT_EQ(KesraBackend::TextSize(nullptr, -2), 12);
    font.SetSize(20);
    EXPECT_EQ(KesraBackend::TextSize(&font, 4), 24);
    font.SetSize(5);
    EXPECT_EQ(KesraBackend::TextSize(&font, -4), 4) << "never below 4";
    font.SetSize(400);
    EXPECT_EQ(KesraBackend::TextSize(&font, 6), 400) << "never above 400";
    for (const int unusable : {0, -3, 401})
    {
        font.SetSize(unusable);
        EXPECT_EQ(KesraBackend::TextSize(&font, 0), 14) << unusable;
    }
    const KesraTest::FixedMeasure measure;
    KesraBackend::TextLine line;
    line.text = "ab";
    line.superscript = "-3";
    line.tail = " m";
    EXPECT_EQ(KesraBackend::LineWidth(measure, line), 14.0 + 10.5 + 14.0);
}

class TestRubberBand : public KesraBackend::CRubberBand
{
public:
    explicit TestRubberBand(KesraEngine::CKesraRenderer& renderer) : CRubberBand(100, 100, renderer) {}
    void BeginOverlay() override {}
    void EndOverlay() override {}
    void Draw() override {}
    void FurtherPoint(int& x, int& y) const
    {
        x = m_furtherPointX;
        y = m_furtherPointY;
    }
};

TEST(RubberBand, ErasingAsksForAFrameAndKeepsTheDrawnCorner)
{
    Scene scene;
    TestRubberBand band(scene.renderer);
    EXPECT_EQ(band.GetLineWidth(), 1.5f);
    band.SetLineWidth(0.0f);
    band.SetLineWidth(-2.0f);
    EXPECT_EQ(band.GetLineWidth(), 1.5f) << "refused";
    band.SetLineWidth(3.0f);
    EXPECT_EQ(band.GetLineWidth(), 3.0f);
    band.SetEanble(true);
    band.OnMouseDown(10, 10);
    band.OnMouseMove(30, 40);
    band.OnMouseMove(50, 60);
    int x = 0;
    int y = 0;
    band.FurtherPoint(x, y);
    EXPECT_EQ(x, 30) << "the previous end while the mouse moves";
    scene.log.clear();
    band.Erase();
    band.FurtherPoint(x, y);
    EXPECT_EQ(x, 50);
    EXPECT_EQ(y, 60);
    EXPECT_EQ(scene.log, (Log{"invalidate"}));
}

class TestShadingLight : public KesraBackend::CShadingLight
{
public:
    explicit TestShadingLight(KesraEngine::CKesraRenderer& renderer) : CShadingLight(renderer) {}
    void Apply() override {}
    void DrawSymbol() override {}
};

TEST(ShadingLight, SwitchingAsksForAFrameAndTheSymbolStandsWhereTheLightComesFrom)
{
    Scene scene; // 400 x 300: the rim is 135 pixels out
    TestShadingLight light(scene.renderer);
    scene.log.clear();
    light.TurnOff();
    EXPECT_EQ(light.GetSwitch(), 0);
    light.TurnOn();
    EXPECT_EQ(light.GetSwitch(), 1);
    EXPECT_EQ(scene.log, (Log{"invalidate", "invalidate"}));

    double x = 0.0;
    double y = 0.0;
    light.SetPosition({0.0, 0.0, 0.0});
    light.SetFocalPoint({0.0, 0.0, 0.0});
    EXPECT_EQ(light.DirectionToLight(), (KesraBackend::CShadingLight::Vector{0.0, 0.0, 1.0}));
    light.SymbolPlace(x, y);
    EXPECT_EQ(x, 200.0) << "a headlight: the middle";
    EXPECT_EQ(y, 150.0);
    light.SetPosition({-3.0, 0.0, 4.0});
    light.SymbolPlace(x, y);
    EXPECT_DOUBLE_EQ(x, 200.0 - 0.6 * 135.0) << "from the left, in front: foreshortened";
    EXPECT_DOUBLE_EQ(y, 150.0);
    light.SetPosition({0.0, 2.0, 0.0});
    light.SymbolPlace(x, y);
    EXPECT_DOUBLE_EQ(y, 285.0) << "beside the view: at the rim";
}

TEST(Factories, OwnWhatTheyMakeAtStableAddresses)
{
    KesraBackend::TStreamlineFactory<KesraTest::TestStreamline> tubes;
    KesraEngine::IKesraStreamlineFactory& asInterface = tubes;
    KesraTest::TestStreamline* first = tubes.MakeStreamline();
    for (int k = 0; k < 100; ++k)
    {
        ASSERT_NE(asInterface.MakeStreamline(), first);
    }
    EXPECT_FALSE(first->IsCreate()) << "made, not created";
    KesraBackend::TTipManagerFactory<KesraTest::TestTipLabels> managers;
    KesraTest::TestTipLabels* manager = managers.CreateTipManager();
    EXPECT_EQ(manager->GetTipsNum(), 0);
    EXPECT_NE(managers.CreateTipManager(), manager);
}

} // namespace
