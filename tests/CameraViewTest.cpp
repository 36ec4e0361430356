#include "Engine/Camera.h"
#include "support/CameraTestSupport.h"
#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <vector>

namespace
{

using KesraTest::ExpectMatrixNear;
using KesraTest::ExpectVecNear;
using KesraTest::RecordingHandler;
using KesraTest::TestCamera;
using Matrix = KesraMathKit::TKesraMatrix4<double>;
using Vec = KesraMathKit::TKesraVector3<double>;

constexpr double k = 0.707106;

Vec Angles(const TestCamera& camera)
{
    Vec angles;
    camera.GetRotateAngle(angles.x, angles.y, angles.z);
    return angles;
}

Matrix FromAngles(double a, double b, double c)
{
    TestCamera camera(1, 1);
    camera.SetRotateAngle(a, b, c);
    return camera.GetRotateMatrix();
}

struct StandardView
{
    const char* name;
    void (TestCamera::*set)(bool);
    Matrix matrix;
    Vec angles;
    Vec projected;  // where (1, 2, 3) lands in an 800 x 600 window
};

const std::vector<StandardView>& StandardViews()
{
    static const std::vector<StandardView> views = {
        // x right, z up, -y toward the viewer
        {"front", &TestCamera::SetRotateMatrixToFrontView,
         Matrix(1, 0, 0, 0, 0, 0, -1, 0, 0, 1, 0, 0, 0, 0, 0, 1), Vec(-90, 0, 0),
         Vec(401, 303, -2)},
        // -x right, z up, y toward the viewer
        {"back", &TestCamera::SetRotateMatrixToBackView,
         Matrix(-1, 0, 0, 0, 0, 0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 1), Vec(-90, 0, -180),
         Vec(399, 303, 2)},
        // -y right, z up, -x toward the viewer
        {"left", &TestCamera::SetRotateMatrixToLeftView,
         Matrix(0, 0, -1, 0, -1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1), Vec(-90, 0, 90),
         Vec(398, 303, -1)},
        // y right, z up, x toward the viewer
        {"right", &TestCamera::SetRotateMatrixToRightView,
         Matrix(0, 0, 1, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1), Vec(-90, 0, -90),
         Vec(402, 303, 1)},
        {"top", &TestCamera::SetRotateMatrixToTopView, Matrix::IDENTITY, Vec(0, 0, 0),
         Vec(401, 302, 3)},
        // -x right, y up, -z toward the viewer
        {"bottom", &TestCamera::SetRotateMatrixToBottomView,
         Matrix(-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1), Vec(0, 180, 0),
         Vec(399, 302, -3)},
        {"iso", &TestCamera::SetRotateMatrixToISOView,
         Matrix(k, -0.5, 0.5, 0, k, 0.5, -0.5, 0, 0, k, k, 0, 0, 0, 0, 1), Vec(-45, 0, -45),
         Vec(400 + 3 * k, 300.5 + 3 * k, -0.5 + 3 * k)},
    };
    return views;
}

// ---- Rotation angles and standard views --------------------------------------

TEST(CameraViewTest, StandardViewsImmediatelyAndSmoothly)
{
    for (const StandardView& view : StandardViews())
    {
        SCOPED_TRACE(view.name);
        TestCamera camera(800, 600);
        RecordingHandler handler;
        camera.RegisterEventHandler(&handler);
        camera.SetRotateAngle(12.0, 34.0, 56.0);
        camera.GetWorldToViewMatrix();
        handler.events.clear();
        std::vector<int> modifiedSeen;
        handler.onEvent = [&] { modifiedSeen.push_back(camera.GetModified()); };

        // Immediately: the exact matrix, one notification, then marked modified.
        (camera.*view.set)(false);
        EXPECT_EQ(camera.GetRotateMatrix(), view.matrix);
        ASSERT_EQ(handler.events.size(), 1u);
        EXPECT_EQ(handler.events[0].kind, "rotate");
        EXPECT_EQ(handler.events[0].rotation, view.matrix);
        EXPECT_EQ(modifiedSeen, std::vector<int>{0});
        EXPECT_EQ(camera.GetModified(), 1);
        EXPECT_FALSE(camera.IsSmoothRotate());
        Vec out;
        camera.ProjectPointWorldToView(Vec(1, 2, 3), out);
        ExpectVecNear(view.projected, out, 1e-12);
        // Each view reads back as its angles and is their rotation (the
        // isometric one up to the six-decimal constant).
        ExpectVecNear(view.angles, Angles(camera), 1e-4);
        ExpectMatrixNear(FromAngles(view.angles.x, view.angles.y, view.angles.z), view.matrix,
                         1e-6);

        // Smoothly: the target is set, nothing moves and nobody is told, but
        // the camera is marked modified.
        camera.SetRotateAngle(12.0, 34.0, 56.0);
        camera.GetWorldToViewMatrix();
        handler.events.clear();
        const Matrix before = camera.GetRotateMatrix();
        (camera.*view.set)(true);
        EXPECT_TRUE(handler.events.empty());
        EXPECT_EQ(camera.GetRotateMatrix(), before);
        EXPECT_TRUE(camera.IsSmoothRotate());
        EXPECT_EQ(camera.SmoothTargetAngles(), view.angles);
        ExpectVecNear(Vec(12, 34, 56), camera.SmoothStartAngles(), 1e-12);
        EXPECT_EQ(camera.GetModified(), 1);
    }
}

TEST(CameraViewTest, SetRotateAngleBuildsZYXProductNotifiesAndRoundTrips)
{
    TestCamera camera(800, 600);
    RecordingHandler handler;
    camera.RegisterEventHandler(&handler);
    camera.SetRotateAngle(30.0, 20.0, 10.0);
    Matrix x, y, z;
    x.MakeRotation(30.0, 1.0, 0.0, 0.0);
    y.MakeRotation(20.0, 0.0, 1.0, 0.0);
    z.MakeRotation(10.0, 0.0, 0.0, 1.0);
    EXPECT_EQ(camera.GetRotateMatrix(), (z * y) * x);
    ASSERT_EQ(handler.events.size(), 1u);
    EXPECT_EQ(handler.events[0].kind, "rotate");
    ExpectVecNear(Vec(30, 20, 10), Angles(camera), 1e-12);
    camera.SetRotateAngle(-170.0, -85.0, 175.0);
    ExpectVecNear(Vec(-170, -85, 175), Angles(camera), 1e-9);
    // Angles beyond the range come back inside it.
    camera.SetRotateAngle(200.0, 10.0, -190.0);
    ExpectVecNear(Vec(-160, 10, 170), Angles(camera), 1e-9);
    // The protected extraction is what GetRotateAngle reports.
    double a, b, c;
    camera.GetEulerAngleFormRotMatrix(a, b, c);
    EXPECT_EQ(Vec(a, b, c), Angles(camera));

    camera.SetRotateAngle(-90.0, 0.0, 0.0);
    ExpectMatrixNear(StandardViews()[0].matrix, camera.GetRotateMatrix(), 1e-15);

    // Top and bottom read back exactly.
    camera.SetRotateMatrixToTopView(false);
    EXPECT_EQ(Angles(camera), Vec(0, 0, 0));
    camera.SetRotateMatrixToBottomView(false);
    EXPECT_EQ(Angles(camera), Vec(0, 180, 0));
    camera.SetRotateAngle(0.0, 180.0, 0.0);
    EXPECT_EQ(Angles(camera), Vec(0, 180, 0));
}

TEST(CameraViewTest, GimbalLockPutsTheWholeTurnIntoTheFirstAngle)
{
    const double d = KesraMathKit::TKesraMath<double>::DEG_TO_RAD;
    const double ca = std::cos(25 * d), sa = std::sin(25 * d);
    TestCamera camera(800, 600);

    // Element 8 exactly 1: the second angle is 90.
    camera.SetRotateMatrix(Matrix(0, sa, -ca, 0, 0, ca, sa, 0, 1, 0, 0, 0, 0, 0, 0, 1));
    Vec angles = Angles(camera);
    EXPECT_NEAR(angles.x, 25.0, 1e-12);
    EXPECT_EQ(angles.y, 90.0);
    EXPECT_EQ(angles.z, 0.0);
    EXPECT_TRUE(std::signbit(angles.z));

    // Element 8 exactly -1: the second angle is -90.
    camera.SetRotateMatrix(Matrix(0, -sa, ca, 0, 0, ca, sa, 0, -1, 0, 0, 0, 0, 0, 0, 1));
    angles = Angles(camera);
    EXPECT_EQ(angles.y, -90.0);
    EXPECT_EQ(angles.z, 0.0);

    camera.SetRotateAngle(30.0, 90.0, 10.0);
    ASSERT_EQ(camera.GetRotateMatrix()[8], 1.0);
    ExpectVecNear(Vec(40, 90, 0), Angles(camera), 1e-9);
}

// ---- Smooth rotation --------------------------------------------------------------

TEST(CameraViewTest, SmoothRotationTakesExactlyFramesStepsAndRefusesNoFrames)
{
    TestCamera camera(800, 600);
    RecordingHandler handler;
    camera.RegisterEventHandler(&handler);
    camera.SetSmoothRotateFrames(0);
    camera.SetSmoothRotateFrames(-3);
    EXPECT_EQ(camera.GetSmoothRotateFrames(), 5);
    camera.SetRotateMatrixToFrontView(true);

    const std::vector<double> expected = {-18, -36, -54, -72, -90};
    for (std::size_t i = 0; i < expected.size(); ++i)
    {
        const bool more = camera.SmoothRotateImpl();
        EXPECT_EQ(more, i + 1 < expected.size()) << i;
        ExpectVecNear(Vec(expected[i], 0, 0), Angles(camera), 1e-12);
        EXPECT_EQ(handler.events.size(), i + 1);
    }
    EXPECT_FALSE(camera.IsSmoothRotate());
    EXPECT_EQ(camera.GetRotateMatrix(), FromAngles(-90.0, 0.0, 0.0));

    EXPECT_FALSE(camera.SmoothRotateImpl());
    EXPECT_EQ(handler.events.size(), 5u);

    camera.SetSmoothRotateFrames(1);
    camera.SetRotateMatrixToRightView(true);
    EXPECT_FALSE(camera.SmoothRotateImpl());
    EXPECT_EQ(camera.GetRotateMatrix(), FromAngles(-90.0, 0.0, -90.0));

    // A new frame count during a rotation keeps start and target and runs the
    // steps again from the start.
    camera.SetSmoothRotateFrames(4);
    camera.SetRotateMatrixToTopView(true);
    camera.SmoothRotateImpl();
    camera.SmoothRotateImpl();
    camera.SetSmoothRotateFrames(2);
    EXPECT_TRUE(camera.IsSmoothRotate());
    EXPECT_EQ(camera.SmoothCurrentFrame(), 0);
    EXPECT_EQ(camera.SmoothTargetAngles(), Vec(0, 0, 0));
    EXPECT_TRUE(camera.SmoothRotateImpl());
    ExpectVecNear(Vec(-45, 0, -45), Angles(camera), 1e-9);
    EXPECT_FALSE(camera.SmoothRotateImpl());
}

TEST(CameraViewTest, SmoothRotationStartsAtTheReadBackAnglesAndDoesNotWrap)
{
    TestCamera camera(800, 600);
    camera.SetRotateMatrixToBottomView(false);
    camera.SetRotateMatrixToTopView(true);
    EXPECT_EQ(camera.SmoothStartAngles(), Vec(0, 180, 0));

    camera.SetRotateMatrixToBackView(false);
    camera.SetRotateMatrixToLeftView(true);
    ExpectVecNear(Vec(-90, 0, -180), camera.SmoothStartAngles(), 1e-12);
    camera.SmoothRotateImpl();
    // -180 -> 90 over five frames sweeps 270 degrees: -126 after the first.
    ExpectVecNear(Vec(-90, 0, -126), Angles(camera), 1e-9);
}

TEST(CameraViewTest, SecondSmoothStartRestartsFromTheReachedOrientationUntilAnImmediateView)
{
    TestCamera camera(800, 600);
    camera.SetRotateMatrixToFrontView(true);
    camera.SmoothRotateImpl();
    camera.SmoothRotateImpl();
    camera.SetRotateMatrixToBackView(true);
    ExpectVecNear(Vec(-36, 0, 0), camera.SmoothStartAngles(), 1e-9);
    EXPECT_EQ(camera.SmoothCurrentFrame(), 0);
    camera.SmoothRotateImpl();
    ExpectVecNear(Vec(0.8 * -36 + 0.2 * -90, 0, 0.2 * -180), Angles(camera), 1e-9);

    // Each angle is (1 - t) * start + t * target, in that form: the matrix is
    // that of exactly these angles.
    const Vec start = camera.SmoothStartAngles();
    const Vec target = camera.SmoothTargetAngles();
    camera.SmoothRotateImpl();
    const double t = 2.0 / 5.0;
    EXPECT_EQ(camera.GetRotateMatrix(), FromAngles((1.0 - t) * start.x + t * target.x,
                                                   (1.0 - t) * start.y + t * target.y,
                                                   (1.0 - t) * start.z + t * target.z));

    // SetRotateAngle leaves the rotation running; an immediate view stops it.
    camera.SetRotateAngle(1.0, 2.0, 3.0);
    EXPECT_TRUE(camera.IsSmoothRotate());
    camera.SetRotateMatrixToFrontView(false);
    EXPECT_FALSE(camera.IsSmoothRotate());
    EXPECT_FALSE(camera.SmoothRotateImpl());
    EXPECT_EQ(camera.GetRotateMatrix(), StandardViews()[0].matrix);
}

// ---- Six-sides inspection --------------------------------------------------------

TEST(CameraViewTest, SixSidesSettersRefuseSaturateAndRestartTheTour)
{
    TestCamera camera(800, 600);
    EXPECT_EQ(camera.GetSixSidesInspectionSideFrames(), 10);
    EXPECT_EQ(camera.GetSixSidesInspectionTotalFrames(), 120);

    camera.SetSixSidesInspectionSideFrames(2, false);
    EXPECT_EQ(camera.SixSidesCycleFrames(), 60);
    camera.SetSixSidesInspectionSideFrames(3, false);
    EXPECT_EQ(camera.SixSidesCycleFrames(), 18);
    EXPECT_EQ(camera.GetSixSidesInspectionSideFrames(), 3);
    camera.SetSixSidesInspectionSideFrames(INT_MAX / 6 + 1, false);  // would overflow: ignored
    EXPECT_EQ(camera.SixSidesCycleFrames(), 18);

    camera.SetSixSidesInspectionSidePauses(-5, false);
    EXPECT_EQ(camera.GetSixSidesInspectionSidePauses(), 0);
    EXPECT_EQ(camera.GetSixSidesInspectionTotalFrames(), 18);
    camera.SetSixSidesInspectionSidePauses(1 << 30, false);
    EXPECT_EQ(camera.GetSixSidesInspectionTotalFrames(), 2147483647);

    // Restarting the tour resets frame and pause counter.
    camera.SetSixSidesInspectionSidePauses(1, false);
    camera.SetSixSidesInspection(true, false);
    for (int call = 0; call < 5; ++call)
    {
        camera.SixSidesInspectionImpl();
    }
    ASSERT_EQ(camera.SixSidesCurrentFrame(), 3);
    ASSERT_EQ(camera.SixSidesPauseCounter(), 1);
    camera.SetSixSidesInspectionSidePauses(3, false);
    EXPECT_EQ(camera.SixSidesCurrentFrame(), 0);
    EXPECT_EQ(camera.SixSidesPauseCounter(), 0);
}

TEST(CameraViewTest, SixSidesHoldsTheTopViewForThePausesAndNotifiesEveryCall)
{
    TestCamera camera(800, 600);
    RecordingHandler handler;
    camera.RegisterEventHandler(&handler);
    camera.SetSixSidesInspection(true, false);
    for (int call = 1; call <= 11; ++call)
    {
        EXPECT_TRUE(camera.SixSidesInspectionImpl());
        EXPECT_EQ(camera.GetRotateMatrix(), Matrix::IDENTITY) << call;
        EXPECT_EQ(camera.SixSidesCurrentFrame(), call <= 10 ? 0 : 1) << call;
        EXPECT_EQ(camera.SixSidesPauseCounter(), call <= 10 ? call : 0) << call;
    }
    camera.SixSidesInspectionImpl();
    EXPECT_EQ(camera.SixSidesPhaseAngle(0), 9.0);
    EXPECT_EQ(camera.SixSidesPhaseAngle(1), 0.0);
    ExpectMatrixNear(FromAngles(0.0, 9.0, 0.0), camera.GetRotateMatrix(), 1e-15);
    EXPECT_EQ(handler.events.size(), 12u);

    const std::size_t total = static_cast<std::size_t>(camera.GetSixSidesInspectionTotalFrames());
    while (handler.events.size() < total)
    {
        camera.SixSidesInspectionImpl();
    }
    // The total covers the cycle and the pauses of its six sides.
    EXPECT_EQ(camera.SixSidesCurrentFrame(), 60);

    // Switched off, a step does nothing.
    camera.SetSixSidesInspection(false, false);
    EXPECT_FALSE(camera.SixSidesInspectionImpl());
    EXPECT_EQ(handler.events.size(), total);
    EXPECT_EQ(camera.SixSidesCurrentFrame(), 60);
}

TEST(CameraViewTest, SixSidesFrameSequenceOverTwoCycles)
{
    TestCamera camera(800, 600);
    camera.SetSixSidesInspectionSideFrames(3, false);
    camera.SetSixSidesInspectionSidePauses(1, false);
    camera.SetSixSidesInspection(true, false);
    ASSERT_EQ(camera.GetSixSidesInspectionTotalFrames(), 24);

    // The frame each call shows: sides (multiples of 3) twice, the others
    // once; after 18 the tour goes on at 1.
    const std::vector<int> expected = {0, 0, 1, 2, 3, 3, 4, 5, 6, 6, 7, 8, 9, 9, 10, 11, 12, 12,
                                       13, 14, 15, 15, 16, 17, 18, 18, 1, 2, 3, 3, 4, 5, 6, 6};
    std::vector<int> shown;
    for (std::size_t call = 0; call < expected.size(); ++call)
    {
        shown.push_back(camera.SixSidesCurrentFrame());
        EXPECT_EQ(camera.IsSixSidesInspectionCycleDone(), shown.back() == 17) << call;
        camera.SixSidesInspectionImpl();
    }
    EXPECT_EQ(shown, expected);
}

TEST(CameraViewTest, SixSidesShowsEachSideAsTheStandardViews)
{
    TestCamera camera(800, 600);
    camera.SetSixSidesInspectionSidePauses(0, false);
    camera.SetSixSidesInspection(true, false);
    const int side = camera.GetSixSidesInspectionSideFrames();
    std::vector<Matrix> shownAt(61);
    for (int call = 0; call <= 60; ++call)
    {
        const int frame = camera.SixSidesCurrentFrame();
        camera.SixSidesInspectionImpl();
        shownAt[frame] = camera.GetRotateMatrix();
    }
    const auto& views = StandardViews();
    ExpectMatrixNear(views[4].matrix, shownAt[0], 1e-15);          // top
    // -z right, y up, -x toward the viewer
    ExpectMatrixNear(Matrix(0, 0, -1, 0, 0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 0, 1), shownAt[side], 1e-15);
    ExpectMatrixNear(views[5].matrix, shownAt[2 * side], 1e-15);   // bottom
    ExpectMatrixNear(views[1].matrix, shownAt[3 * side], 1e-15);   // back
    ExpectMatrixNear(views[3].matrix, shownAt[4 * side], 1e-15);   // right
    ExpectMatrixNear(views[0].matrix, shownAt[5 * side], 1e-15);   // front
    ExpectMatrixNear(views[4].matrix, shownAt[6 * side], 1e-15);   // top again
    EXPECT_EQ(camera.SixSidesCurrentFrame(), 1);
}

TEST(CameraViewTest, SixSidesSmoothStartTurnsToTheTopViewFirst)
{
    TestCamera camera(800, 600);
    camera.SetRotateMatrixToFrontView(false);
    camera.SetSixSidesInspectionSideFrames(5, true);  // off: no smooth rotation
    EXPECT_FALSE(camera.IsSmoothRotate());

    camera.SetSixSidesInspection(true, true);
    EXPECT_TRUE(camera.IsSixSidesInspection());
    EXPECT_TRUE(camera.IsSmoothRotate());
    ExpectVecNear(Vec(-90, 0, 0), camera.SmoothStartAngles(), 1e-12);
    EXPECT_EQ(camera.SmoothTargetAngles(), Vec(0, 0, 0));
    while (camera.SmoothRotateImpl())
    {
    }
    EXPECT_EQ(camera.GetRotateMatrix(), Matrix::IDENTITY);
}

} // namespace
