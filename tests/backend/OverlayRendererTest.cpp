// What every backend's renderer does apart from drawing: the frame's
// sequence, the overlays' order, what follows a resize, the title's place,
// the text sizes and colours; and the rubber band's and factories' shared
// bookkeeping.
#include "BackendTestSupport.h"

#include "common/Factories.h"
#include "common/OverlayRenderer.h"
#include "common/RubberBand.h"
#include "common/ShadingLight.h"
#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

using KesraBackend::Color;
using KesraBackend::Overlay;
using Log = std::vector<std::string>;

// A renderer that writes what it is asked to do into a log.
class LoggingRenderer : public KesraBackend::COverlayRenderer
{
public:
    LoggingRenderer(int width, int height, Log& log) : COverlayRenderer(width, height), m_log(log) {}

    bool CreateContext() override { return m_context = true; }
    void DestroyContext() override { m_context = false; }
    bool MakeCurrent() override { return m_context; }
    void InitializeState() override {}
    void DrawBackground() override { m_log.push_back("background"); }
    void DrawScene() override { m_log.push_back("scene"); }
    void DrawTitle() override { m_log.push_back("title"); }
    void ApplySmoothing() override {}
    void ApplyPolygonOffset() override {}
    void SwapBuffers() override { m_log.push_back("swap"); }
    void Invalidate() override { m_log.push_back("invalidate"); }
    bool ReadPixels(int, int, int, int, unsigned char*) override { return false; }
    float ReadDepth(int, int) override { return 1.0f; }
    double TextWidth(const std::string& text, int) const override { return 7.0 * text.size(); }
    double TextHeight(int sizeChange) const override { return 14.0 + sizeChange; }

    KesraBackend::AttachedOverlays& Attach() { return m_attached; }

protected:
    bool BeginFrame() override { return Note("begin frame"); }
    void EndFrame() override { m_log.push_back("end frame"); }
    bool BeginOverlays() override { return Note("begin overlays"); }
    void EndOverlays() override { m_log.push_back("end overlays"); }
    void DrawAxisTriad(KesraEngine::CKesraAxis& axis) override
    {
        m_log.push_back("axis");
        COverlayRenderer::DrawAxisTriad(axis);
    }
    void DrawOwnOverlay(Overlay overlay) override
    {
        m_log.push_back(overlay == Overlay::CurveInset ? "inset" : "host");
    }
    void ResizeSurface(int width, int height) override
    {
        m_log.push_back("surface " + std::to_string(width) + "x" + std::to_string(height));
    }

private:
    bool Note(const char* what)
    {
        m_log.push_back(what);
        return true;
    }

    Log& m_log;
    bool m_context = false;
};

class LoggingLight : public KesraTest::TestLight
{
public:
    explicit LoggingLight(Log& log) : m_log(log) {}
    void DrawSymbol() override { m_log.push_back("light"); }

private:
    Log& m_log;
};

class LoggingArea : public KesraTest::TestDraggedArea
{
public:
    explicit LoggingArea(Log& log) : TestDraggedArea(10, 10), m_log(log) {}
    void BeginOverlay() override { m_log.push_back("area begin"); }
    void Draw() override { m_log.push_back("area"); }
    void EndOverlay() override { m_log.push_back("area end"); }

private:
    Log& m_log;
};

struct Scene
{
    Scene()
    {
        renderer.CreateContext();
        renderer.SetCamera(&camera);
        camera.note = [this](const char* what) { log.push_back(what); };
        tips.drawn = [this] { log.push_back("tips"); };
        legend.drawn = [this] { log.push_back("legend"); };
        ruler.drawn = [this] { log.push_back("ruler"); };
        KesraBackend::AttachedOverlays& attached = renderer.Attach();
        attached.axis = &axis;
        attached.tips = &tips;
        attached.legend = &legend;
        attached.ruler = &ruler;
        attached.area = &area;
        attached.light = &light;
    }

    Log log;
    LoggingRenderer renderer{400, 300, log};
    KesraTest::NavigatedTestCamera camera{400, 300};
    KesraTest::TestAxis axis;
    KesraTest::TestTipLabels tips;
    KesraTest::TestLegend legend;
    KesraTest::TestScaleRuler ruler;
    LoggingArea area{log};
    LoggingLight light{log};
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

TEST(OverlayRenderer, OnlyWhatIsAttachedAndAskedForIsDrawn)
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
}

TEST(OverlayRenderer, NothingWithoutAContext)
{
    Scene scene;
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
    Scene scene;
    scene.renderer.Resize(640, 480);
    EXPECT_EQ(scene.log, (Log{"surface 640x480", "invalidate"}));
    int width = 0;
    int height = 0;
    scene.camera.GetWindowSize(width, height);
    EXPECT_EQ(width, 640);
    scene.axis.GetWindowSize(width, height);
    EXPECT_EQ(height, 480);
    scene.area.GetWindowSize(width, height);
    EXPECT_EQ(width, 640);
    scene.ruler.GetWindowSize(width, height);
    EXPECT_EQ(width, 640);
    ASSERT_TRUE(scene.legend.Create(10, 10, 0, 0));
    scene.renderer.Resize(320, 200);
    scene.legend.GetWindowSize(width, height);
    EXPECT_EQ(width, 320);
    EXPECT_EQ(height, 200);
    // Nothing attached: only the surface and the redraw.
    scene.renderer.Attach() = {};
    scene.renderer.SetCamera(nullptr);
    scene.log.clear();
    scene.renderer.Resize(100, 100);
    EXPECT_EQ(scene.log, (Log{"surface 100x100", "invalidate"}));
}

TEST(OverlayRenderer, TheTitleStandsInTheTopLeftCorner)
{
    Scene scene;
    scene.renderer.SetName("Wake");
    const KesraBackend::TextLine title = scene.renderer.TitleLine();
    EXPECT_EQ(title.text, "Wake");
    EXPECT_EQ(title.x, 14.0);
    EXPECT_EQ(title.y, 300.0 - 14.0 - 18.0);
    EXPECT_EQ(title.sizeChange, 4);
    EXPECT_TRUE(title.bold);
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
    Scene scene;
    scene.renderer.SetBackgroundColor({10, 10, 10, 255});
    EXPECT_EQ(scene.renderer.ContrastingTextColor(), (Color{255, 255, 255, 255}));
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

TEST(ShadingLight, SwitchingAsksForAFrame)
{
    Scene scene;
    TestShadingLight light(scene.renderer);
    scene.log.clear();
    light.TurnOff();
    EXPECT_EQ(light.GetSwitch(), 0);
    light.TurnOn();
    EXPECT_EQ(light.GetSwitch(), 1);
    EXPECT_EQ(scene.log, (Log{"invalidate", "invalidate"}));
}

TEST(ShadingLight, TheSymbolStandsWhereTheLightComesFromSeenFromTheFront)
{
    Scene scene; // 400 x 300: the rim is 135 pixels out
    TestShadingLight light(scene.renderer);
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
