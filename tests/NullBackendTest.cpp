// The null backend as a host meets it: every class concrete with its base's
// arguments, the answers of a backend without a picture, and the camera's
// model untouched underneath. The test doubles are built on it, so every
// other test runs the bases' own models through these classes.
#include "null/NullBackend.h"
#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

namespace
{

using namespace KesraNull;

template <typename Null, typename Base, typename Double, typename... Args>
constexpr bool IsNullBackendClass()
{
    return std::is_base_of_v<Base, Null> && !std::is_abstract_v<Null> &&
           std::is_constructible_v<Null, Args...> && std::is_copy_constructible_v<Null> &&
           std::is_copy_assignable_v<Null> && std::is_base_of_v<Null, Double>;
}

// Each class has its base's constructor arguments, is copyable like its base,
// and carries the test double of the same base.
static_assert(IsNullBackendClass<CNullCamera, KesraEngine::CKesraCamera, KesraTest::TestCamera, int, int>());
static_assert(IsNullBackendClass<CNullRenderer, KesraEngine::CKesraRenderer, KesraTest::TestRenderer, int, int>());
static_assert(IsNullBackendClass<CNullLight, KesraEngine::CKesraLight, KesraTest::TestLight>());
static_assert(IsNullBackendClass<CNullFont, KesraEngine::CKesraFont, KesraTest::TestFont>());
static_assert(IsNullBackendClass<CNullDraggedArea, KesraEngine::CKesraDraggedArea, KesraTest::TestDraggedArea, int, int>());
static_assert(IsNullBackendClass<CNullAxis, KesraEngine::CKesraAxis, KesraTest::TestAxis>());
static_assert(IsNullBackendClass<CNullStreamline, KesraEngine::CKesraStreamline, KesraTest::TestStreamline>());
static_assert(IsNullBackendClass<CNullTipManager, KesraEngine::CKesraTipManager, KesraTest::TestTipManager>());
static_assert(std::is_destructible_v<CNullFont>, "a host owns a null font as any value");

TEST(NullBackendTest, RendererHasNoContextAndNoPixels)
{
    CNullRenderer renderer(64, 48);
    EXPECT_FALSE(renderer.CreateContext());
    EXPECT_FALSE(renderer.MakeCurrent());
    unsigned char rgba[4] = {1, 2, 3, 4};
    EXPECT_FALSE(renderer.ReadPixels(0, 0, 1, 1, rgba));
    EXPECT_EQ(rgba[0] + rgba[1] + rgba[2] + rgba[3], 10) << "nothing is written";
    EXPECT_EQ(renderer.ReadDepth(0, 0), 0.0f);
    renderer.Render();

    // Resize is the base's: the size is stored before the no-op hook.
    renderer.Resize(320, 200);
    EXPECT_EQ(renderer.GetWidth(), 320);
    EXPECT_EQ(renderer.GetHeight(), 200);
    // Deleting through the base is allowed, as for any backend renderer.
    std::unique_ptr<KesraEngine::CKesraRenderer> owned = std::make_unique<CNullRenderer>(8, 8);
    EXPECT_EQ(owned->GetWidth(), 8);
}

TEST(NullBackendTest, DraggedAreaTakesNoMouseEvent)
{
    CNullDraggedArea area(200, 100);
    area.SetEanble(true);
    EXPECT_FALSE(area.OnMouseDown(10, 10));
    EXPECT_FALSE(area.OnMouseMove(50, 40));
    EXPECT_FALSE(area.OnMouseUp(50, 40));
    EXPECT_FALSE(area.IsDragged());
    int start[2] = {-1, -1};
    int end[2] = {-1, -1};
    area.GetMouseStart(start[0], start[1]);
    area.GetMouseEnd(end[0], end[1]);
    EXPECT_EQ(start[0] | start[1] | end[0] | end[1], 0) << "no position was recorded";
}

TEST(NullBackendTest, CameraFollowsNoMouse)
{
    // The mouse hooks take nothing from the model and add nothing to it: the
    // view is what the same camera without them shows.
    CNullCamera camera(800, 600);
    KesraTest::TestCamera reference(800, 600);
    camera.ZoomAll(-1.0f, 1.0f, -2.0f, 2.0f, -3.0f, 3.0f);
    reference.ZoomAll(-1.0f, 1.0f, -2.0f, 2.0f, -3.0f, 3.0f);
    camera.SetRotateMatrixToISOView(false);
    reference.SetRotateMatrixToISOView(false);
    camera.BeginRotate(0, 0);
    camera.Rotate(300, 200);
    camera.EndInteraction();
    camera.WheelZoom(400, 300, 3);
    camera.ZoomToRectangle(0, 0, 10, 10);
    for (int k = 0; k < 16; ++k)
    {
        EXPECT_EQ(camera.GetWorldToViewMatrix()[k], reference.GetWorldToViewMatrix()[k]) << k;
    }
}

} // namespace
