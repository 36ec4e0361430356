#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <string>

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
    EXPECT_EQ(renderer.GetActive(), 1);
    EXPECT_EQ(renderer.GetTitleColor(), Color(255, 0, 0, 0));
    EXPECT_EQ(renderer.GetGradient(), 1);
    EXPECT_EQ(renderer.GetBackgroundColor(), Color(255, 255, 255, 255));
    EXPECT_EQ(renderer.GetBackgroundColor2(), Color(255, 255, 255, 255));
    EXPECT_EQ(renderer.GetPointSmoothing(), 0);
    EXPECT_EQ(renderer.GetLineSmoothing(), 0);
    EXPECT_EQ(renderer.GetPolygonSmoothing(), 0);
    EXPECT_TRUE(renderer.GetDoubleBuffer());
    float para1 = 0.0f;
    float para2 = 0.0f;
    renderer.GetPolygonOffsetPara(para1, para2);
    EXPECT_EQ(para1, 1.0f);
    EXPECT_EQ(para2, 0.5f);
    EXPECT_EQ(renderer.GetCamera(), nullptr);
    EXPECT_EQ(renderer.resizeCalls, 0);
}

TEST(RendererTest, IntegerSwitchesAreStoredAsZeroOrOne)
{
    using Setter = void (CKesraRenderer::*)(int);
    using Getter = int (CKesraRenderer::*)() const;
    struct Switch
    {
        const char* name;
        Setter set;
        Getter get;
    };
    const Switch switches[] = {
        {"active", &CKesraRenderer::SetActive, &CKesraRenderer::GetActive},
        {"gradient", &CKesraRenderer::SetGradient, &CKesraRenderer::GetGradient},
        {"point", &CKesraRenderer::SetPointSmoothing, &CKesraRenderer::GetPointSmoothing},
        {"line", &CKesraRenderer::SetLineSmoothing, &CKesraRenderer::GetLineSmoothing},
        {"polygon", &CKesraRenderer::SetPolygonSmoothing, &CKesraRenderer::GetPolygonSmoothing},
    };
    const int values[] = {7, -1, 0, 1, 0x7fffffff, 0};
    for (const Switch& s : switches)
    {
        TestRenderer renderer(10, 10);
        for (const int value : values)
        {
            (renderer.*s.set)(value);
            EXPECT_EQ((renderer.*s.get)(), value != 0 ? 1 : 0) << s.name << " set to " << value;
        }
    }
}

TEST(RendererTest, SmoothingSwitchesAreIndependent)
{
    TestRenderer renderer(10, 10);
    renderer.SetPolygonSmoothing(1);
    EXPECT_EQ(renderer.GetLineSmoothing(), 0);
    EXPECT_EQ(renderer.GetPointSmoothing(), 0);
    renderer.SetLineSmoothing(1);
    renderer.SetPolygonSmoothing(0);
    EXPECT_EQ(renderer.GetLineSmoothing(), 1);
    EXPECT_EQ(renderer.GetPointSmoothing(), 0);
}

TEST(RendererTest, ActiveFlagRecoloursTitleAndKeepsAlpha)
{
    TestRenderer renderer(10, 10);
    renderer.SetTitleColor(Color(10, 20, 30, 128));
    renderer.SetActive(0);
    EXPECT_EQ(renderer.GetActive(), 0);
    EXPECT_EQ(renderer.GetTitleColor(), Color(198, 198, 198, 128));
    renderer.SetActive(5);
    EXPECT_EQ(renderer.GetActive(), 1);
    EXPECT_EQ(renderer.GetTitleColor(), Color(255, 0, 0, 128));

    // A colour set afterwards stays until the next SetActive.
    renderer.SetTitleColor(Color(1, 2, 3, 4));
    EXPECT_EQ(renderer.GetTitleColor(), Color(1, 2, 3, 4));
    renderer.SetActive(1);
    EXPECT_EQ(renderer.GetTitleColor(), Color(255, 0, 0, 4));
}

TEST(RendererTest, ResizeStoresSizeThenReachesBackendOnce)
{
    TestRenderer renderer(640, 480);
    CKesraRenderer& base = renderer;
    base.Resize(800, 600);
    EXPECT_EQ(renderer.GetWidth(), 800);
    EXPECT_EQ(renderer.GetHeight(), 600);
    EXPECT_EQ(renderer.resizeCalls, 1);
    EXPECT_EQ(renderer.resizedWidth, 800);
    EXPECT_EQ(renderer.resizedHeight, 600);
}

TEST(RendererTest, ResizeCallsBackendAfterStoringSize)
{
    // A backend that reads the size back while it adapts.
    class SizeReadingRenderer : public TestRenderer
    {
    public:
        SizeReadingRenderer() : TestRenderer(1, 1) {}
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
    renderer.Resize(320, 200);
    EXPECT_EQ(renderer.seenWidth, 320);
    EXPECT_EQ(renderer.seenHeight, 200);
}

TEST(RendererTest, StoresSettingsAsGiven)
{
    TestRenderer renderer(10, 10);
    renderer.SetName("Front");
    EXPECT_STREQ(renderer.GetName(), "Front");
    renderer.SetName(nullptr); // ignored
    EXPECT_STREQ(renderer.GetName(), "Front");
    renderer.SetName("");
    EXPECT_STREQ(renderer.GetName(), "");

    renderer.SetBackgroundColor(Color(1, 2, 3, 0));
    renderer.SetBackgroundColor2(Color(4, 5, 6, 7));
    EXPECT_EQ(renderer.GetBackgroundColor(), Color(1, 2, 3, 0));
    EXPECT_EQ(renderer.GetBackgroundColor2(), Color(4, 5, 6, 7));
    renderer.SetDoubleBuffer(false);
    EXPECT_FALSE(renderer.GetDoubleBuffer());
    renderer.SetPolygonOffsetPara(-2.5f, 3.0f);
    float para1 = 0.0f;
    float para2 = 0.0f;
    renderer.GetPolygonOffsetPara(para1, para2);
    EXPECT_EQ(para1, -2.5f);
    EXPECT_EQ(para2, 3.0f);

    // Neither setting is stored in the base class.
    const TestRenderer before(renderer);
    renderer.SetBlendingMode(KesraEngine::eBlendingAlpha);
    renderer.SetReadonlyZBuffer(true);
    EXPECT_STREQ(renderer.GetName(), before.GetName());
    EXPECT_EQ(renderer.GetDoubleBuffer(), before.GetDoubleBuffer());
    EXPECT_EQ(renderer.GetBackgroundColor(), before.GetBackgroundColor());
}

TEST(RendererTest, CopiesShareTheCameraButNotTheSettings)
{
    TestCamera camera(640, 480);
    TestRenderer source(640, 480);
    source.SetCamera(&camera);
    source.SetName("Top");
    source.SetActive(0);
    source.SetLineSmoothing(1);

    TestRenderer copy(source);
    EXPECT_EQ(copy.GetCamera(), &camera);
    EXPECT_STREQ(copy.GetName(), "Top");
    EXPECT_NE(copy.GetName(), source.GetName()); // its own text
    EXPECT_EQ(copy.GetActive(), 0);
    EXPECT_EQ(copy.GetLineSmoothing(), 1);

    source.SetName("Changed");
    source.SetCamera(nullptr);
    source.Resize(1, 2);
    EXPECT_STREQ(copy.GetName(), "Top");
    EXPECT_EQ(copy.GetCamera(), &camera);
    EXPECT_EQ(copy.GetWidth(), 640);

    TestRenderer assigned(1, 1);
    assigned = copy;
    EXPECT_EQ(assigned.GetCamera(), &camera);
    EXPECT_STREQ(assigned.GetName(), "Top");
    EXPECT_EQ(assigned.GetHeight(), 480);
}

} // namespace
