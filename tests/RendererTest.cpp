#include "support/TestDoubles.h"

#include <gtest/gtest.h>

namespace
{

using KesraEngine::CKesraRenderer;
using KesraTest::TestCamera;
using KesraTest::TestRenderer;
using Color = CKesraRenderer::Color;

TEST(RendererTest, Defaults)
{
    const TestRenderer renderer(640, 480);
    EXPECT_EQ(renderer.GetWidth(), 640);
    EXPECT_EQ(renderer.GetHeight(), 480);
    EXPECT_STREQ(renderer.GetName(), "Kesra");
    EXPECT_EQ(renderer.GetTitleColor(), Color(255, 0, 0, 0));
    EXPECT_EQ(renderer.GetBackgroundColor(), Color(255, 255, 255, 255));
    EXPECT_EQ(renderer.GetBackgroundColor2(), Color(255, 255, 255, 255));
    EXPECT_TRUE(renderer.GetDoubleBuffer());
    float para1 = 0.0f;
    float para2 = 0.0f;
    renderer.GetPolygonOffsetPara(para1, para2);
    EXPECT_EQ(para1, 1.0f);
    EXPECT_EQ(para2, 0.5f);
    EXPECT_EQ(renderer.GetCamera(), nullptr);
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
            // No switch moves another.
            for (const Switch& other : switches)
            {
                if (other.get != s.get)
                {
                    EXPECT_EQ((renderer.*other.get)(), other.initial);
                }
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
            seenWidth = GetWidth();
            seenHeight = GetHeight();
        }
        int seenWidth = 0;
        int seenHeight = 0;
    };
    SizeReadingRenderer renderer;
    EXPECT_EQ(renderer.resizeCalls, 0);
    static_cast<CKesraRenderer&>(renderer).Resize(800, 600);
    EXPECT_EQ(renderer.GetWidth(), 800);
    EXPECT_EQ(renderer.GetHeight(), 600);
    EXPECT_EQ(renderer.resizeCalls, 1);
    EXPECT_EQ(renderer.resizedWidth, 800);
    EXPECT_EQ(renderer.resizedHeight, 600);
    EXPECT_EQ(renderer.seenWidth, 800);
    EXPECT_EQ(renderer.seenHeight, 600);
}

TEST(RendererTest, NameAndBackendOnlySettings)
{
    TestRenderer renderer(10, 10);
    renderer.SetName("Front");
    renderer.SetName(nullptr); // ignored
    EXPECT_STREQ(renderer.GetName(), "Front");

    // Blending and the read-only depth buffer are not stored by the base.
    const TestRenderer before(renderer);
    renderer.SetBlendingMode(KesraEngine::eBlendingAlpha);
    renderer.SetReadonlyZBuffer(true);
    EXPECT_STREQ(renderer.GetName(), before.GetName());
    EXPECT_EQ(renderer.GetDoubleBuffer(), before.GetDoubleBuffer());
    EXPECT_EQ(renderer.GetTitleColor(), before.GetTitleColor());
    EXPECT_EQ(renderer.GetBackgroundColor(), before.GetBackgroundColor());
    EXPECT_EQ(renderer.GetGradient(), before.GetGradient());

    // The plain setters store as given, alpha included.
    renderer.SetBackgroundColor(Color(1, 2, 3, 4));
    renderer.SetBackgroundColor2(Color(5, 6, 7, 8));
    renderer.SetDoubleBuffer(false);
    renderer.SetPolygonOffsetPara(-2.5f, 7.0f);
    EXPECT_EQ(renderer.GetBackgroundColor(), Color(1, 2, 3, 4));
    EXPECT_EQ(renderer.GetBackgroundColor2(), Color(5, 6, 7, 8));
    EXPECT_FALSE(renderer.GetDoubleBuffer());
    float para1 = 0.0f;
    float para2 = 0.0f;
    renderer.GetPolygonOffsetPara(para1, para2);
    EXPECT_EQ(para1, -2.5f);
    EXPECT_EQ(para2, 7.0f);
}

TEST(RendererTest, CopiesShareTheCameraButNotTheSettings)
{
    TestCamera camera(640, 480);
    TestRenderer source(640, 480);
    source.SetCamera(&camera);
    source.SetName("Top");
    source.SetLineSmoothing(1);

    TestRenderer copy(source);
    source.SetName("Changed");
    source.SetCamera(nullptr);
    source.Resize(1, 2);
    EXPECT_EQ(copy.GetCamera(), &camera);
    EXPECT_STREQ(copy.GetName(), "Top");
    EXPECT_EQ(copy.GetLineSmoothing(), 1);
    EXPECT_EQ(copy.GetWidth(), 640);

    TestRenderer assigned(1, 1);
    assigned = copy;
    EXPECT_EQ(assigned.GetCamera(), &camera);
    EXPECT_STREQ(assigned.GetName(), "Top");
    EXPECT_EQ(assigned.GetHeight(), 480);
}

} // namespace
