#include "Engine/Camera.h"
#include "support/CameraTestSupport.h"
#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace
{

using KesraTest::ExpectMatrixNear;
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

void ExpectAnglesNear(const Vec& expected, const Vec& actual, double tolerance)
{
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
    EXPECT_NEAR(actual.z, expected.z, tolerance);
}

Matrix FromAngles(double a, double b, double c)
{
    TestCamera camera(1, 1);
    camera.SetRotateAngle(a, b, c);
    return camera.GetRotateMatrix();
}

// The model direction that points toward the viewer: row 2 of F, that is
// elements 2, 6 and 10 of the column-by-column rotation matrix.
Vec TowardViewer(const Matrix& m) { return Vec(m[2], m[6], m[10]); }
Vec Up(const Matrix& m) { return Vec(m[1], m[5], m[9]); }

struct StandardView
{
    const char* name;
    void (TestCamera::*set)(bool);
    Matrix matrix;
    Vec angles;
};

const std::vector<StandardView>& StandardViews()
{
    static const std::vector<StandardView> views = {
        {"front", &TestCamera::SetRotateMatrixToFrontView,
         Matrix(1, 0, 0, 0, 0, 0, -1, 0, 0, 1, 0, 0, 0, 0, 0, 1), Vec(-90, 0, 0)},
        {"back", &TestCamera::SetRotateMatrixToBackView,
         Matrix(-1, 0, 0, 0, 0, 0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 1), Vec(-90, 0, -180)},
        {"left", &TestCamera::SetRotateMatrixToLeftView,
         Matrix(0, 0, -1, 0, -1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1), Vec(-90, 0, 90)},
        {"right", &TestCamera::SetRotateMatrixToRightView,
         Matrix(0, 0, 1, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1), Vec(-90, 0, -90)},
        {"top", &TestCamera::SetRotateMatrixToTopView, Matrix::IDENTITY, Vec(0, 0, 0)},
        {"bottom", &TestCamera::SetRotateMatrixToBottomView,
         Matrix(-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1), Vec(0, 180, 0)},
        {"iso", &TestCamera::SetRotateMatrixToISOView,
         Matrix(k, -0.5, 0.5, 0, k, 0.5, -0.5, 0, 0, k, k, 0, 0, 0, 0, 1), Vec(-45, 0, -45)},
    };
    return views;
}

// ---- Rotation angles and standard views --------------------------------------

TEST(CameraViewTest, ImmediateViewsSetExactMatricesAndNotifyOnceThenMarkModified)
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

        (camera.*view.set)(false);
        EXPECT_EQ(camera.GetRotateMatrix(), view.matrix);
        ASSERT_EQ(handler.events.size(), 1u);
        EXPECT_EQ(handler.events[0].kind, "rotate");
        EXPECT_EQ(handler.events[0].rotation, view.matrix);
        // Notified before the camera is marked modified.
        EXPECT_EQ(modifiedSeen, std::vector<int>{0});
        EXPECT_EQ(camera.GetModified(), 1);
        EXPECT_FALSE(camera.IsSmoothRotate());

        // Smoothly: the target is set, nothing moves and nobody is told.
        camera.SetRotateAngle(12.0, 34.0, 56.0);
        handler.events.clear();
        const Matrix before = camera.GetRotateMatrix();
        (camera.*view.set)(true);
        EXPECT_TRUE(handler.events.empty());
        EXPECT_EQ(camera.GetRotateMatrix(), before);
        EXPECT_EQ(camera.SmoothTargetAngles(), view.angles);
    }
}

TEST(CameraViewTest, ViewsReadBackAsTheirTargetAngles)
{
    for (const StandardView& view : StandardViews())
    {
        SCOPED_TRACE(view.name);
        TestCamera camera(800, 600);
        (camera.*view.set)(false);
        ExpectAnglesNear(view.angles, Angles(camera), 1e-4);
        // Each view is the rotation of its angles (the isometric one up to
        // the six-decimal constant).
        ExpectMatrixNear(FromAngles(view.angles.x, view.angles.y, view.angles.z), view.matrix, 1e-6);
    }
}

TEST(CameraViewTest, TopAndBottomReadBackExactly)
{
    TestCamera camera(800, 600);
    camera.SetRotateMatrixToTopView(false);
    EXPECT_EQ(camera.GetRotateMatrix(), Matrix::IDENTITY);
    EXPECT_EQ(Angles(camera), Vec(0, 0, 0));
    camera.SetRotateMatrixToBottomView(false);
    EXPECT_EQ(Angles(camera), Vec(0, 180, 0));
    camera.SetRotateAngle(0.0, 180.0, 0.0);
    EXPECT_EQ(Angles(camera), Vec(0, 180, 0));
}

TEST(CameraViewTest, ProjectionsAfterStandardViews)
{
    TestCamera camera(800, 600);
    Vec out;
    camera.SetRotateMatrixToFrontView(false);
    camera.ProjectPointWorldToView(Vec(0, 0, 1), out);
    EXPECT_EQ(out, Vec(400, 301, 0));
    camera.ProjectPointWorldToView(Vec(0, 1, 0), out);
    EXPECT_EQ(out, Vec(400, 300, -1));

    camera.SetRotateMatrixToRightView(false);
    camera.ProjectPointWorldToView(Vec(0, 1, 0), out);  // +y to the right
    EXPECT_EQ(out, Vec(401, 300, 0));
    camera.SetRotateMatrixToLeftView(false);
    camera.ProjectPointWorldToView(Vec(1, 1, 1), out);  // -y right, +z up, -x toward viewer
    EXPECT_EQ(out, Vec(399, 301, -1));
    camera.SetRotateMatrixToBackView(false);
    camera.ProjectPointWorldToView(Vec(1, 1, 1), out);  // -x right, +z up, +y toward viewer
    EXPECT_EQ(out, Vec(399, 301, 1));
    camera.SetRotateMatrixToTopView(false);
    camera.ProjectPointWorldToView(Vec(1, 1, 1), out);
    EXPECT_EQ(out, Vec(401, 301, 1));

    camera.SetRotateMatrixToBottomView(false);
    camera.ProjectPointWorldToView(Vec(1, 0, 1), out);  // -x right, -z toward viewer
    EXPECT_EQ(out, Vec(399, 300, -1));

    camera.SetRotateMatrixToISOView(false);
    camera.ProjectPointWorldToView(Vec(1, 0, 0), out);
    EXPECT_DOUBLE_EQ(out.x, 400.707106);
    EXPECT_DOUBLE_EQ(out.y, 299.5);
    EXPECT_DOUBLE_EQ(out.z, 0.5);
}

TEST(CameraViewTest, AnglesRoundTrip)
{
    TestCamera camera(800, 600);
    camera.SetRotateAngle(30.0, 20.0, 10.0);
    ExpectAnglesNear(Vec(30, 20, 10), Angles(camera), 1e-12);
    camera.SetRotateAngle(-170.0, -85.0, 175.0);
    ExpectAnglesNear(Vec(-170, -85, 175), Angles(camera), 1e-9);
    // Angles beyond the range come back inside it.
    camera.SetRotateAngle(200.0, 10.0, -190.0);
    ExpectAnglesNear(Vec(-160, 10, 170), Angles(camera), 1e-9);

    camera.SetRotateAngle(-90.0, 0.0, 0.0);
    ExpectMatrixNear(StandardViews()[0].matrix, camera.GetRotateMatrix(), 1e-15);
}

TEST(CameraViewTest, SetRotateAngleBuildsZYXProductAndNotifies)
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

    // Element table of the angle convention, for one element per row.
    const double d = KesraMathKit::TKesraMath<double>::DEG_TO_RAD;
    const double ca = std::cos(30 * d), sa = std::sin(30 * d);
    const double cb = std::cos(20 * d), sb = std::sin(20 * d);
    const double cc = std::cos(10 * d), sc = std::sin(10 * d);
    EXPECT_NEAR(camera.GetRotateMatrix()[0], cb * cc, 1e-15);
    EXPECT_NEAR(camera.GetRotateMatrix()[1], ca * sc + sa * sb * cc, 1e-15);
    EXPECT_NEAR(camera.GetRotateMatrix()[8], sb, 1e-15);
    EXPECT_NEAR(camera.GetRotateMatrix()[9], -sa * cb, 1e-15);
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
    ExpectAnglesNear(Vec(40, 90, 0), Angles(camera), 1e-9);
}

TEST(CameraViewTest, ProtectedExtractionMatchesGetRotateAngle)
{
    TestCamera camera(800, 600);
    camera.SetRotateAngle(-12.5, 44.0, 100.0);
    double a, b, c;
    camera.GetEulerAngleFormRotMatrix(a, b, c);
    EXPECT_EQ(Vec(a, b, c), Angles(camera));
}

// ---- Smooth rotation --------------------------------------------------------------

TEST(CameraViewTest, SmoothViewStartsWithoutChangingOrNotifying)
{
    TestCamera camera(800, 600);
    RecordingHandler handler;
    camera.RegisterEventHandler(&handler);
    camera.SetRotateAngle(10.0, 0.0, 0.0);
    camera.GetWorldToViewMatrix();
    handler.events.clear();
    const Matrix before = camera.GetRotateMatrix();

    camera.SetRotateMatrixToFrontView(true);
    EXPECT_EQ(camera.GetRotateMatrix(), before);
    EXPECT_TRUE(handler.events.empty());
    EXPECT_TRUE(camera.IsSmoothRotate());
    EXPECT_EQ(camera.SmoothCurrentFrame(), 0);
    EXPECT_EQ(camera.SmoothTargetAngles(), Vec(-90, 0, 0));
    ExpectAnglesNear(Vec(10, 0, 0), camera.SmoothStartAngles(), 1e-12);
    EXPECT_EQ(camera.GetModified(), 1);
}

TEST(CameraViewTest, SmoothRotationTakesExactlyFramesSteps)
{
    TestCamera camera(800, 600);
    RecordingHandler handler;
    camera.RegisterEventHandler(&handler);
    camera.SetRotateMatrixToFrontView(true);

    const std::vector<double> expected = {-18, -36, -54, -72, -90};
    for (std::size_t i = 0; i < expected.size(); ++i)
    {
        const bool more = camera.SmoothRotateImpl();
        EXPECT_EQ(more, i + 1 < expected.size()) << i;
        ExpectAnglesNear(Vec(expected[i], 0, 0), Angles(camera), 1e-12);
        EXPECT_EQ(handler.events.size(), i + 1);
    }
    EXPECT_FALSE(camera.IsSmoothRotate());
    EXPECT_EQ(camera.GetRotateMatrix(), FromAngles(-90.0, 0.0, 0.0));

    EXPECT_FALSE(camera.SmoothRotateImpl());
    EXPECT_EQ(handler.events.size(), 5u);
}

TEST(CameraViewTest, SmoothFramesRefuseNonPositiveAndRestartTheCount)
{
    TestCamera camera(800, 600);
    camera.SetSmoothRotateFrames(0);
    camera.SetSmoothRotateFrames(-3);
    EXPECT_EQ(camera.GetSmoothRotateFrames(), 5);

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
    ExpectAnglesNear(Vec(-45, 0, -45), Angles(camera), 1e-9);
    EXPECT_FALSE(camera.SmoothRotateImpl());
}

TEST(CameraViewTest, SmoothRotationDoesNotWrapAngles)
{
    TestCamera camera(800, 600);
    camera.SetRotateMatrixToBackView(false);
    camera.SetRotateMatrixToLeftView(true);
    ExpectAnglesNear(Vec(-90, 0, -180), camera.SmoothStartAngles(), 1e-12);
    camera.SmoothRotateImpl();
    // -180 -> 90 over five frames sweeps 270 degrees: -126 after the first.
    ExpectAnglesNear(Vec(-90, 0, -126), Angles(camera), 1e-9);
}

TEST(CameraViewTest, SmoothRotationFromBottomStartsAtItsOwnAngles)
{
    TestCamera camera(800, 600);
    camera.SetRotateMatrixToBottomView(false);
    camera.SetRotateMatrixToTopView(true);
    EXPECT_EQ(camera.SmoothStartAngles(), Vec(0, 180, 0));
}

TEST(CameraViewTest, SecondSmoothStartRestartsFromTheReachedOrientation)
{
    TestCamera camera(800, 600);
    camera.SetRotateMatrixToFrontView(true);
    camera.SmoothRotateImpl();
    camera.SmoothRotateImpl();
    camera.SetRotateMatrixToBackView(true);
    ExpectAnglesNear(Vec(-36, 0, 0), camera.SmoothStartAngles(), 1e-9);
    EXPECT_EQ(camera.SmoothCurrentFrame(), 0);
    camera.SmoothRotateImpl();
    ExpectAnglesNear(Vec(0.8 * -36 + 0.2 * -90, 0, 0.2 * -180), Angles(camera), 1e-9);

    // Each angle is (1 - t) * start + t * target, in that form: the matrix is
    // that of exactly these angles.
    const Vec start = camera.SmoothStartAngles();
    const Vec target = camera.SmoothTargetAngles();
    camera.SmoothRotateImpl();
    const double t = 2.0 / 5.0;
    EXPECT_EQ(camera.GetRotateMatrix(), FromAngles((1.0 - t) * start.x + t * target.x,
                                                   (1.0 - t) * start.y + t * target.y,
                                                   (1.0 - t) * start.z + t * target.z));
}

TEST(CameraViewTest, ImmediateViewStopsSmoothRotationButSetRotateAngleDoesNot)
{
    TestCamera camera(800, 600);
    camera.SetRotateMatrixToFrontView(true);
    camera.SmoothRotateImpl();
    camera.SetRotateAngle(1.0, 2.0, 3.0);
    EXPECT_TRUE(camera.IsSmoothRotate());
    camera.SetRotateMatrixToFrontView(false);
    EXPECT_FALSE(camera.IsSmoothRotate());
    EXPECT_EQ(camera.GetRotateMatrix(), StandardViews()[0].matrix);
    EXPECT_FALSE(camera.SmoothRotateImpl());
}

// ---- Six-sides inspection --------------------------------------------------------

TEST(CameraViewTest, SixSidesDefaultsAndSetters)
{
    TestCamera camera(800, 600);
    EXPECT_EQ(camera.GetSixSidesInspectionSideFrames(), 10);
    EXPECT_EQ(camera.GetSixSidesInspectionTotalFrames(), 120);

    camera.SetSixSidesInspectionSideFrames(2, false);
    EXPECT_EQ(camera.SixSidesCycleFrames(), 60);
    camera.SetSixSidesInspectionSideFrames(3, false);
    EXPECT_EQ(camera.SixSidesCycleFrames(), 18);
    EXPECT_EQ(camera.GetSixSidesInspectionSideFrames(), 3);
    camera.SetSixSidesInspectionSideFrames(1 << 30, false);  // would overflow: ignored
    EXPECT_EQ(camera.SixSidesCycleFrames(), 18);

    camera.SetSixSidesInspectionSidePauses(-5, false);
    EXPECT_EQ(camera.GetSixSidesInspectionSidePauses(), 0);
    EXPECT_EQ(camera.GetSixSidesInspectionTotalFrames(), 18);
    camera.SetSixSidesInspectionSidePauses(1 << 30, false);
    EXPECT_EQ(camera.GetSixSidesInspectionTotalFrames(), 2147483647);
}

TEST(CameraViewTest, SixSidesOffDoesNothing)
{
    TestCamera camera(800, 600);
    RecordingHandler handler;
    camera.RegisterEventHandler(&handler);
    EXPECT_FALSE(camera.SixSidesInspectionImpl());
    EXPECT_TRUE(handler.events.empty());
    EXPECT_EQ(camera.SixSidesCurrentFrame(), 0);
}

TEST(CameraViewTest, SixSidesHoldsTheTopViewForThePausesFirst)
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
    std::vector<bool> cycleDone;
    for (std::size_t call = 0; call < expected.size(); ++call)
    {
        shown.push_back(camera.SixSidesCurrentFrame());
        cycleDone.push_back(camera.IsSixSidesInspectionCycleDone());
        camera.SixSidesInspectionImpl();
    }
    EXPECT_EQ(shown, expected);
    for (std::size_t call = 0; call < expected.size(); ++call)
    {
        EXPECT_EQ(cycleDone[call], expected[call] == 17) << call;
    }
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
    ExpectMatrixNear(Matrix(0, 0, -1, 0, 0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 0, 1), shownAt[side], 1e-15);
    EXPECT_NEAR(TowardViewer(shownAt[side]).x, -1.0, 1e-15);       // -x toward the viewer
    EXPECT_NEAR(Up(shownAt[side]).y, 1.0, 1e-15);
    ExpectMatrixNear(views[5].matrix, shownAt[2 * side], 1e-15);   // bottom
    ExpectMatrixNear(views[1].matrix, shownAt[3 * side], 1e-15);   // back
    ExpectMatrixNear(views[3].matrix, shownAt[4 * side], 1e-15);   // right
    ExpectMatrixNear(views[0].matrix, shownAt[5 * side], 1e-15);   // front
    ExpectMatrixNear(views[4].matrix, shownAt[6 * side], 1e-15);   // top again
    EXPECT_EQ(camera.SixSidesCurrentFrame(), 1);
}

TEST(CameraViewTest, SixSidesNotifiesOnEveryCallIncludingPauses)
{
    TestCamera camera(800, 600);
    RecordingHandler handler;
    camera.RegisterEventHandler(&handler);
    camera.SetSixSidesInspection(true, false);
    const int total = camera.GetSixSidesInspectionTotalFrames();
    for (int call = 0; call < total; ++call)
    {
        camera.SixSidesInspectionImpl();
    }
    EXPECT_EQ(handler.Count("rotate"), total);
    camera.SetSixSidesInspection(false, false);
    const int frame = camera.SixSidesCurrentFrame();
    EXPECT_FALSE(camera.SixSidesInspectionImpl());
    EXPECT_EQ(handler.Count("rotate"), total);
    EXPECT_EQ(camera.SixSidesCurrentFrame(), frame);
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
    ExpectAnglesNear(Vec(-90, 0, 0), camera.SmoothStartAngles(), 1e-12);
    EXPECT_EQ(camera.SmoothTargetAngles(), Vec(0, 0, 0));
    while (camera.SmoothRotateImpl())
    {
    }
    EXPECT_EQ(camera.GetRotateMatrix(), Matrix::IDENTITY);

    // Restarting the tour resets frame and pause counter.
    camera.SixSidesInspectionImpl();
    camera.SixSidesInspectionImpl();
    camera.SetSixSidesInspectionSidePauses(3, false);
    EXPECT_EQ(camera.SixSidesCurrentFrame(), 0);
    EXPECT_EQ(camera.SixSidesPauseCounter(), 0);
}

} // namespace
