#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>

namespace
{

using KesraEngine::CKesraRenderer;
using KesraTest::TestCamera;
using KesraTest::TestRenderer;
using Color = CKesraRenderer::Color;

std::pair<float, float> PolygonOffset(const CKesraRenderer& renderer)
{
    std::pair<float, float> para{0.0f, 0.0f};
    renderer.GetPolygonOffsetPara(para.first, para.second);
    return para;
}

// Everything the base stores that a setter might reach by mistake.
auto Settings(const CKesraRenderer& r)
{
    return std::make_tuple(std::string(r.GetName()), r.GetWidth(), r.GetHeight(),
                           r.GetDoubleBuffer(), r.GetTitleColor(), r.GetBackgroundColor(),
                           r.GetBackgroundColor2(), PolygonOffset(r), r.GetGradient());
}

TEST(RendererTest, DefaultsAndPlainSetters)
{
    TestRenderer renderer(640, 480);
    const Color white(255, 255, 255, 255);
    EXPECT_EQ(Settings(renderer), std::make_tuple(std::string("Kesra"), 640, 480, true,
                                                  Color(255, 0, 0, 0), white, white,
                                                  std::make_pair(1.0f, 0.5f), 1));
    EXPECT_EQ(renderer.GetCamera(), nullptr);

    renderer.SetName("Front");
    renderer.SetName(nullptr); // ignored
    EXPECT_STREQ(renderer.GetName(), "Front");

    // Blending and the read-only depth buffer are not stored by the base.
    const auto before = Settings(renderer);
    renderer.SetBlendingMode(KesraEngine::eBlendingAlpha);
    renderer.SetReadonlyZBuffer(true);
    EXPECT_EQ(Settings(renderer), before);

    // The plain setters store as given, alpha included.
    renderer.SetBackgroundColor(Color(1, 2, 3, 4));
    renderer.SetBackgroundColor2(Color(5, 6, 7, 8));
    renderer.SetDoubleBuffer(false);
    renderer.SetPolygonOffsetPara(-2.5f, 7.0f);
    EXPECT_EQ(Settings(renderer), std::make_tuple(std::string("Front"), 640, 480, false, Color(255, 0, 0, 0),
                                                  Color(1, 2, 3, 4), Color(5, 6, 7, 8),
                                                  std::make_pair(-2.5f, 7.0f), 1));
}

TEST(RendererTest, IntegerSwitchesAreStoredAsZeroOrOne)
{
    struct Switch
    {
        void (CKesraRenderer::*set)(int);
        int (CKesraRenderer::*get)() const;
        int initial;
    };
    const Switch switches[] = {
        {&CKesraRenderer::SetActive, &CKesraRenderer::GetActive, 1},
        {&CKesraRenderer::SetGradient, &CKesraRenderer::GetGradient, 1},
        {&CKesraRenderer::SetPointSmoothing, &CKesraRenderer::GetPointSmoothing, 0},
        {&CKesraRenderer::SetLineSmoothing, &CKesraRenderer::GetLineSmoothing, 0},
        {&CKesraRenderer::SetPolygonSmoothing, &CKesraRenderer::GetPolygonSmoothing, 0},
    };
    for (const Switch& s : switches)
    {
        TestRenderer renderer(10, 10);
        EXPECT_EQ((renderer.*s.get)(), s.initial);
        for (const int value : {7, 0, -1, 0x7fffffff, 1, 0})
        {
            (renderer.*s.set)(value);
            EXPECT_EQ((renderer.*s.get)(), value != 0 ? 1 : 0) << value;
            for (const Switch& other : switches) // no switch moves another
            {
                EXPECT_TRUE(other.get == s.get || (renderer.*other.get)() == other.initial) << value;
            }
        }
    }
}

TEST(RendererTest, ActiveFlagRecoloursTitleAndKeepsAlpha)
{
    TestRenderer renderer(10, 10);
    renderer.SetTitleColor(Color(10, 20, 30, 128));
    renderer.SetActive(0);
    EXPECT_EQ(renderer.GetTitleColor(), Color(198, 198, 198, 128));
    renderer.SetActive(5);
    EXPECT_EQ(renderer.GetTitleColor(), Color(255, 0, 0, 128));

    renderer.SetTitleColor(Color(1, 2, 3, 4)); // stays until the next SetActive
    EXPECT_EQ(renderer.GetTitleColor(), Color(1, 2, 3, 4));
    renderer.SetActive(1);
    EXPECT_EQ(renderer.GetTitleColor(), Color(255, 0, 0, 4));
}

TEST(RendererTest, ResizeStoresSizeThenReachesBackendOnce)
{
    // A backend that reads the size back while it adapts.
    class SizeReadingRenderer : public TestRenderer
    {
    public:
        SizeReadingRenderer() : TestRenderer(640, 480) {}
        void OnResize(int width, int height) override
        {
            TestRenderer::OnResize(width, height);
            seen = {GetWidth(), GetHeight()};
        }
        std::pair<int, int> seen;
    };
    SizeReadingRenderer renderer;
    EXPECT_EQ(renderer.resizeCalls, 0);
    static_cast<CKesraRenderer&>(renderer).Resize(800, 600);
    const std::pair<int, int> size(800, 600);
    EXPECT_EQ(std::make_pair(renderer.GetWidth(), renderer.GetHeight()), size);
    EXPECT_EQ(renderer.resizeCalls, 1);
    EXPECT_EQ(std::make_pair(renderer.resizedWidth, renderer.resizedHeight), size);
    EXPECT_EQ(renderer.seen, size);
}

TEST(RendererTest, CopiesShareTheCameraButNotTheSettings)
{
    TestCamera camera(640, 480);
    TestRenderer source(640, 480);
    source.SetCamera(&camera);
    source.SetName("Top");
    source.SetLineSmoothing(1);

    const auto before = Settings(source);
    TestRenderer copy(source);
    TestRenderer assigned(1, 1);
    assigned = source;
    source.SetName("Changed");
    source.SetCamera(nullptr);
    source.Resize(1, 2);
    for (const TestRenderer* r : {&copy, &assigned})
    {
        EXPECT_EQ(r->GetCamera(), &camera);
        EXPECT_EQ(r->GetLineSmoothing(), 1);
        EXPECT_EQ(Settings(*r), before);
    }
}

} // namespace
