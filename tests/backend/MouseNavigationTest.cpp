// What a drag, the wheel and a dragged rectangle do to a camera in every
// backend: the rate and the drag's start as the reference of a rotation, the
// pan and zoom arithmetic, the refusals of unusable scales, the notifications,
// and the animation step of the common camera.
#include "BackendTestSupport.h"

#include "support/CameraTestSupport.h"
#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{

using KesraBackend::CMouseNavigation;
using Drag = KesraBackend::CMouseNavigation::Drag;
using Matrix = KesraEngine::CKesraCamera::Matrix;
using KesraTest::RecordingHandler;
using KesraTest::TestCamera;

Matrix Turn(double degrees, double x, double y)
{
    Matrix turn;
    turn.MakeRotation(degrees, x, y, 0.0);
    return turn;
}

TEST(MouseNavigation, RotationTurnsHalfADegreePerPixelAboutTheViewAxisAcrossTheDrag)
{
    TestCamera camera(400, 300);
    CMouseNavigation navigation;
    navigation.Begin(Drag::Rotate, camera, 100, 100);
    navigation.Rotate(camera, 280, 100);
    // 180 pixels to the right: a quarter turn about view y, after the start.
    EXPECT_EQ(camera.GetRotateMatrix(), Matrix::IDENTITY * Turn(90.0, -0.0, 180.0));
    EXPECT_NEAR(camera.GetRotateMatrix()[8], 1.0, 1e-12) << "model z now along view x";
    // 30 up and 40 right: 25 degrees about (-30, 40, 0).
    navigation.Rotate(camera, 140, 130);
    EXPECT_EQ(camera.GetRotateMatrix(), Matrix::IDENTITY * Turn(25.0, -30.0, 40.0));
}

TEST(MouseNavigation, RotationDependsOnlyOnTheDragsStartAndWhereTheMouseIs)
{
    TestCamera wandering(400, 300);
    TestCamera direct(400, 300);
    wandering.SetRotateAngle(30.0, 20.0, 10.0);
    direct.SetRotateAngle(30.0, 20.0, 10.0);
    const Matrix start = wandering.GetRotateMatrix();
    CMouseNavigation a;
    CMouseNavigation b;
    a.Begin(Drag::Rotate, wandering, 10, 10);
    b.Begin(Drag::Rotate, direct, 10, 10);
    for (const auto& [x, y] : {std::pair{50, 30}, {200, -40}, {-70, 300}, {90, 75}})
    {
        a.Rotate(wandering, x, y);
    }
    b.Rotate(direct, 90, 75);
    EXPECT_EQ(wandering.GetRotateMatrix(), direct.GetRotateMatrix()) << "no drift on the way";
    // Back at the start: exactly the start rotation.
    a.Rotate(wandering, 10, 10);
    EXPECT_EQ(wandering.GetRotateMatrix(), start);
}

TEST(MouseNavigation, MovesWithoutTheirDragOrWithoutAChangeSetNothing)
{
    TestCamera camera(400, 300);
    RecordingHandler handler;
    camera.RegisterEventHandler(&handler);
    CMouseNavigation navigation;
    // Without a drag, or during one of another kind.
    navigation.Rotate(camera, 50, 50);
    navigation.Begin(Drag::Pan, camera, 0, 0);
    navigation.Rotate(camera, 50, 50);
    navigation.Zoom(camera, 50, 50);
    navigation.End();
    EXPECT_EQ(navigation.Current(), Drag::None);
    navigation.Pan(camera, 50, 50);
    // Onto what the camera already has: the start, or a sideways zoom drag.
    navigation.Begin(Drag::Rotate, camera, 0, 0);
    navigation.Rotate(camera, 0, 0);
    navigation.Begin(Drag::Pan, camera, 5, 5);
    navigation.Pan(camera, 5, 5);
    navigation.Begin(Drag::Zoom, camera, 5, 5);
    navigation.Zoom(camera, 99, 5);
    EXPECT_TRUE(handler.events.empty());
    EXPECT_EQ(camera.GetRotateMatrix(), Matrix::IDENTITY);
    EXPECT_EQ(camera.GetScale(), 1.0f);
    float x = 1.0f;
    float y = 1.0f;
    camera.GetTranslation(x, y);
    EXPECT_EQ(x, 0.0f);
    EXPECT_EQ(y, 0.0f);
    // A repeated move notifies once.
    navigation.Begin(Drag::Rotate, camera, 0, 0);
    navigation.Rotate(camera, 20, 0);
    navigation.Rotate(camera, 20, 0);
    ASSERT_EQ(handler.events.size(), 1u);
    EXPECT_EQ(handler.events[0].kind, "rotate");
    camera.UnregisterEventHandler(&handler);
}

TEST(MouseNavigation, PanMovesThePictureWithTheMouseFromTheStart)
{
    TestCamera camera(400, 300);
    camera.SetScale(0.5f);
    camera.SetTranslation(1.0f, 2.0f);
    CMouseNavigation navigation;
    navigation.Begin(Drag::Pan, camera, 100, 100);
    navigation.Pan(camera, 130, 90);
    float x = 0.0f;
    float y = 0.0f;
    camera.GetTranslation(x, y);
    EXPECT_EQ(x, 16.0f);
    EXPECT_EQ(y, -3.0f);
    // A point of the model moves by the drag in pixels.
    KesraEngine::CKesraCamera::Vector before;
    KesraEngine::CKesraCamera::Vector after;
    camera.ProjectPointWorldToView({3.0, 4.0, 0.0}, before);
    navigation.Pan(camera, 150, 70);
    camera.ProjectPointWorldToView({3.0, 4.0, 0.0}, after);
    EXPECT_DOUBLE_EQ(after.x - before.x, 20.0);
    EXPECT_DOUBLE_EQ(after.y - before.y, -20.0);
    navigation.Pan(camera, 100, 100);
    camera.GetTranslation(x, y);
    EXPECT_EQ(x, 1.0f);
    EXPECT_EQ(y, 2.0f);
}

TEST(MouseNavigation, ZoomScalesByOnePercentAPixelUpIsCloser)
{
    TestCamera camera(400, 300);
    camera.SetScale(0.05f);
    CMouseNavigation navigation;
    navigation.Begin(Drag::Zoom, camera, 0, 0);
    navigation.Zoom(camera, 0, 10);
    EXPECT_EQ(camera.GetScale(), static_cast<float>(0.05f * std::pow(1.01, -10.0)));
    navigation.Zoom(camera, 123, -20);
    EXPECT_EQ(camera.GetScale(), static_cast<float>(0.05f * std::pow(1.01, 20.0)));
}

TEST(MouseNavigation, WheelZoomsTenPercentAStepAboutTheCursor)
{
    TestCamera camera(400, 300);
    camera.SetScale(0.5f);
    camera.SetTranslation(3.0f, -1.0f);
    CMouseNavigation::WheelZoom(camera, 300, 50, 3);
    const float scale = static_cast<float>(0.5f * std::pow(0.9, 3));
    EXPECT_EQ(camera.GetScale(), scale);
    const double change = static_cast<double>(scale) - 0.5;
    float x = 0.0f;
    float y = 0.0f;
    camera.GetTranslation(x, y);
    EXPECT_EQ(x, static_cast<float>(3.0f + 100.0 * change));
    EXPECT_EQ(y, static_cast<float>(-1.0f - 100.0 * change));
    // The view point under the cursor stays: (pixel - half window) * scale -
    // translation is the same before and after.
    EXPECT_NEAR(100.0 * scale - x, 100.0 * 0.5 - 3.0, 1e-5);
}

TEST(MouseNavigation, ZoomAndWheelRefuseNoChangeAndUnusableScales)
{
    TestCamera camera(400, 300);
    RecordingHandler handler;
    camera.RegisterEventHandler(&handler);
    CMouseNavigation::WheelZoom(camera, 10, 10, 0);
    CMouseNavigation::WheelZoom(camera, 10, 10, 100000);  // to 0
    CMouseNavigation::WheelZoom(camera, 10, 10, -100000); // to infinity
    EXPECT_TRUE(handler.events.empty());
    EXPECT_EQ(camera.GetScale(), 1.0f);
    camera.UnregisterEventHandler(&handler);

    CMouseNavigation navigation;
    camera.SetScale(1e-38f);
    navigation.Begin(Drag::Zoom, camera, 0, 0);
    navigation.Zoom(camera, 0, 10000); // under float: 0
    EXPECT_EQ(camera.GetScale(), 1e-38f);
    camera.SetScale(1e38f);
    navigation.Begin(Drag::Zoom, camera, 0, 0);
    navigation.Zoom(camera, 0, -10000); // beyond float: infinity
    EXPECT_EQ(camera.GetScale(), 1e38f);
}

TEST(MouseNavigation, RectangleCentreComesToTheMiddleAndItsLongerSideSpans)
{
    TestCamera camera(400, 300);
    CMouseNavigation::ZoomToRectangle(camera, 350, 250, 250, 200);
    // 100 x 50 in 400 x 300: the width's quarter wins over the height's sixth.
    EXPECT_EQ(camera.GetScale(), 0.25f);
    float x = 0.0f;
    float y = 0.0f;
    camera.GetTranslation(x, y);
    EXPECT_EQ(x, -100.0f);
    EXPECT_EQ(y, -75.0f);
    KesraEngine::CKesraCamera::Vector middle;
    camera.ProjectPointWorldToView({100.0, 75.0, 0.0}, middle);
    EXPECT_DOUBLE_EQ(middle.x, 200.0);
    EXPECT_DOUBLE_EQ(middle.y, 150.0);
}

TEST(MouseNavigation, RectangleRefusesNoAreaAndUnusableScales)
{
    TestCamera camera(400, 300);
    RecordingHandler handler;
    camera.RegisterEventHandler(&handler);
    CMouseNavigation::ZoomToRectangle(camera, 10, 10, 60, 10);
    CMouseNavigation::ZoomToRectangle(camera, 10, 10, 10, 60);
    TestCamera flat(400, 0);
    CMouseNavigation::ZoomToRectangle(flat, 10, 10, 60, 60);
    EXPECT_EQ(flat.GetScale(), 1.0f);
    camera.SetScaleNoEventHandler(std::numeric_limits<float>::max());
    CMouseNavigation::ZoomToRectangle(camera, 0, 0, 800, 10); // twice the window: infinity
    EXPECT_EQ(camera.GetScale(), std::numeric_limits<float>::max());
    // Corners far apart in int arithmetic still make a rectangle.
    camera.SetScaleNoEventHandler(1e-30f);
    CMouseNavigation::ZoomToRectangle(camera, std::numeric_limits<int>::min(), 0,
                                      std::numeric_limits<int>::max(), 10);
    EXPECT_FLOAT_EQ(camera.GetScale(), static_cast<float>(1e-30f * (4294967295.0 / 400.0)));
    EXPECT_EQ(handler.events.size(), 2u) << "translation and scale of the last one only";
    camera.UnregisterEventHandler(&handler);
}

TEST(NavigatedCamera, StepAnimationRunsTheSmoothRotationThenTheTour)
{
    KesraTest::NavigatedTestCamera camera(400, 300);
    EXPECT_FALSE(camera.StepAnimation());
    camera.SetSmoothRotateFrames(3);
    camera.SetRotateMatrixToTopView(true);
    EXPECT_TRUE(camera.IsAnimating());
    EXPECT_TRUE(camera.StepAnimation());
    EXPECT_TRUE(camera.StepAnimation());
    EXPECT_FALSE(camera.StepAnimation()) << "the third frame ends it";
    KesraTest::NavigatedTestCamera top(400, 300);
    top.SetRotateMatrixToTopView(false);
    for (int k = 0; k < 16; ++k)
    {
        EXPECT_NEAR(camera.GetRotateMatrix()[k], top.GetRotateMatrix()[k], 1e-12) << k;
    }
    camera.SetSixSidesInspection(true, false);
    EXPECT_TRUE(camera.StepAnimation());
    EXPECT_TRUE(camera.StepAnimation()) << "the tour has no end of its own";
    camera.SetSixSidesInspection(false, false);
    EXPECT_FALSE(camera.StepAnimation());
}

} // namespace
