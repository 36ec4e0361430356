#include "MathKit/ViewRotation.h"
#include "support/CameraTestSupport.h"
#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace
{

using KesraMathKit::eStandardView;
using KesraTest::ExpectMatrixNear;
using KesraTest::ExpectVecNear;
using KesraTest::TestCamera;
using Matrix = KesraMathKit::TKesraMatrix4<double>;
using Vec = KesraMathKit::TKesraVector3<double>;
using View = KesraMathKit::TKesraViewRotation<double>;

struct StandardView
{
    eStandardView view;
    void (TestCamera::*set)(bool);
    // The model axes shown to the right, up and toward the viewer.
    Vec right;
    Vec up;
    Vec toward;
};

const StandardView kStandardViews[] = {
    {eStandardView::Front, &TestCamera::SetRotateMatrixToFrontView, {1, 0, 0}, {0, 0, 1}, {0, -1, 0}},
    {eStandardView::Back, &TestCamera::SetRotateMatrixToBackView, {-1, 0, 0}, {0, 0, 1}, {0, 1, 0}},
    {eStandardView::Left, &TestCamera::SetRotateMatrixToLeftView, {0, -1, 0}, {0, 0, 1}, {-1, 0, 0}},
    {eStandardView::Right, &TestCamera::SetRotateMatrixToRightView, {0, 1, 0}, {0, 0, 1}, {1, 0, 0}},
    {eStandardView::Top, &TestCamera::SetRotateMatrixToTopView, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
    {eStandardView::Bottom, &TestCamera::SetRotateMatrixToBottomView, {-1, 0, 0}, {0, 1, 0}, {0, 0, -1}},
};

// The textbook rotations for column vectors, row by row.
Matrix Rx(double degrees)
{
    const double r = degrees * std::acos(-1.0) / 180.0;
    return Matrix::FromRows(1, 0, 0, 0, 0, std::cos(r), -std::sin(r), 0, 0, std::sin(r), std::cos(r), 0,
                            0, 0, 0, 1);
}

Matrix Ry(double degrees)
{
    const double r = degrees * std::acos(-1.0) / 180.0;
    return Matrix::FromRows(std::cos(r), 0, std::sin(r), 0, 0, 1, 0, 0, -std::sin(r), 0, std::cos(r), 0,
                            0, 0, 0, 1);
}

Matrix Rz(double degrees)
{
    const double r = degrees * std::acos(-1.0) / 180.0;
    return Matrix::FromRows(std::cos(r), -std::sin(r), 0, 0, std::sin(r), std::cos(r), 0, 0, 0, 0, 1, 0,
                            0, 0, 0, 1);
}

TEST(ViewRotationTest, StandardViewsTurnTheirAxesOntoTheScreenAxes)
{
    for (const StandardView& v : kStandardViews)
    {
        // F, which maps model directions to view space, in the row-by-row reading.
        const Matrix f = View::StandardView(v.view).Transposed();
        EXPECT_EQ(f.TransformPoint(v.right), Vec(1, 0, 0));
        EXPECT_EQ(f.TransformPoint(v.up), Vec(0, 1, 0));
        EXPECT_EQ(f.TransformPoint(v.toward), Vec(0, 0, 1));
        // Orthonormal with determinant +1: no mirror image.
        EXPECT_EQ(f * f.Transposed(), Matrix::IDENTITY);
        EXPECT_EQ(v.right.Cross(v.up), v.toward);
    }

    // The isometric view's six-decimal constant makes it a rotation up to 3e-6.
    const Matrix f = View::StandardView(eStandardView::Iso).Transposed();
    ExpectMatrixNear(Matrix::IDENTITY, f * f.Transposed(), 3e-6);
    const Vec right(f(0, 0), f(0, 1), f(0, 2));
    const Vec up(f(1, 0), f(1, 1), f(1, 2));
    ExpectVecNear(Vec(f(2, 0), f(2, 1), f(2, 2)), right.Cross(up), 3e-6);
    EXPECT_EQ(up.z, 0.707106);
}

TEST(ViewRotationTest, StandardViewsAreTheRotationsOfTheirAngles)
{
    const eStandardView all[] = {eStandardView::Front, eStandardView::Back,   eStandardView::Left,
                                 eStandardView::Right, eStandardView::Top,    eStandardView::Bottom,
                                 eStandardView::Iso};
    for (const eStandardView view : all)
    {
        const Vec angles = View::StandardViewAngles(view);
        const double tolerance = (view == eStandardView::Iso) ? 1e-6 : 1e-15;
        ExpectMatrixNear(View::StandardView(view), View::FromAngles(angles.x, angles.y, angles.z),
                         tolerance);
        ExpectVecNear(angles, View::ToAngles(View::StandardView(view)), 1e-12);
    }
    // Not (-180, 0, -180), the same half turn.
    EXPECT_EQ(View::ToAngles(View::StandardView(eStandardView::Bottom)), Vec(0, 180, 0));
}

TEST(ViewRotationTest, FromAnglesIsRxRyRzLaidOutColumnByColumn)
{
    std::mt19937 generator(3);
    std::uniform_real_distribution<double> angle(-360.0, 360.0);
    for (int trial = 0; trial < 100; ++trial)
    {
        const double a = angle(generator);
        const double b = angle(generator);
        const double c = angle(generator);
        ExpectMatrixNear((Rx(a) * Ry(b)) * Rz(c), View::FromAngles(a, b, c).Transposed(), 1e-14);
    }
}

TEST(ViewRotationTest, AnglesRoundTripAwayFromGimbalLockAndWrapIntoRange)
{
    ExpectVecNear(Vec(30, 20, 10), View::ToAngles(View::FromAngles(30, 20, 10)), 1e-12);
    ExpectVecNear(Vec(-160, 20, 170), View::ToAngles(View::FromAngles(200, 20, -190)), 1e-12);
    ExpectVecNear(Vec(0, 180, 0), View::ToAngles(View::FromAngles(0, 180, 0)), 1e-12);

    std::mt19937 generator(5);
    std::uniform_real_distribution<double> outer(-179.9, 179.9);
    std::uniform_real_distribution<double> middle(-89.9, 89.9);
    for (int trial = 0; trial < 200; ++trial)
    {
        const Vec angles(outer(generator), middle(generator), outer(generator));
        ExpectVecNear(angles, View::ToAngles(View::FromAngles(angles.x, angles.y, angles.z)), 1e-9);
    }
}

TEST(ViewRotationTest, GimbalLockPutsTheWholeTurnIntoTheFirstAngle)
{
    const double r = 40.0 * std::acos(-1.0) / 180.0;
    const double s = std::sin(r);
    const double c = std::cos(r);
    // Element 8 exactly 1 (b = 90): only a + c = 40 is defined.
    const Vec up = View::ToAngles(Matrix(0, s, -c, 0, 0, c, s, 0, 1, 0, 0, 0, 0, 0, 0, 1));
    EXPECT_NEAR(up.x, 40.0, 1e-12);
    EXPECT_NEAR(up.y, 90.0, 1e-12);
    EXPECT_EQ(up.z, 0.0);
    EXPECT_TRUE(std::signbit(up.z));

    // Element 8 exactly -1 (b = -90): only a - c = 40 is defined.
    const Vec down = View::ToAngles(Matrix(0, -s, c, 0, 0, c, s, 0, -1, 0, 0, 0, 0, 0, 0, 1));
    EXPECT_NEAR(down.x, 40.0, 1e-12);
    EXPECT_NEAR(down.y, -90.0, 1e-12);
    EXPECT_TRUE(std::signbit(down.z));
    ExpectMatrixNear(View::FromAngles(70, -90, 30), View::FromAngles(down.x, down.y, down.z), 1e-12);
}

TEST(ViewRotationTest, SixSidesTourShowsTheSidesInOrderAndClampsThePhases)
{
    double phases[6];
    EXPECT_EQ(View::SixSidesTour(0.0, phases), Matrix::IDENTITY);
    // After one side: -x toward the viewer, y still up.
    ExpectMatrixNear(View::FromAxes({0, 0, 1}, {0, 1, 0}, {-1, 0, 0}), View::SixSidesTour(1.0, phases),
                     1e-15);
    const eStandardView sides[] = {eStandardView::Bottom, eStandardView::Back, eStandardView::Right,
                                   eStandardView::Front};
    for (int i = 0; i < 4; ++i)
    {
        ExpectMatrixNear(View::StandardView(sides[i]), View::SixSidesTour(2.0 + i, phases), 1e-15);
    }
    ExpectMatrixNear(Matrix::IDENTITY, View::SixSidesTour(6.0, phases), 1e-15);

    // Phase 0 done, phase 1 at 9 degrees, the rest not begun.
    const Matrix atOnePointOne = View::SixSidesTour(1.1, phases);
    EXPECT_EQ(phases[0], 90.0);
    EXPECT_NEAR(phases[1], 9.0, 1e-12);
    for (int i = 2; i < 6; ++i)
    {
        EXPECT_EQ(phases[i], 0.0) << "phase " << i;
    }
    Matrix first;
    first.MakeRotation(90.0, 0, 1, 0);
    Matrix second;
    second.MakeRotation(phases[1], 0, 1, 0);
    ExpectMatrixNear(first * second, atOnePointOne, 1e-15);
}

TEST(ViewRotationTest, TheCameraSetsExactlyTheseRotationsAndAngles)
{
    for (const StandardView& v : kStandardViews)
    {
        TestCamera camera(800, 600);
        (camera.*v.set)(false);
        EXPECT_EQ(camera.GetRotateMatrix(), View::StandardView(v.view));
        (camera.*v.set)(true);
        EXPECT_EQ(camera.SmoothTargetAngles(), View::StandardViewAngles(v.view));
    }
    TestCamera camera(800, 600);
    camera.SetRotateMatrixToISOView(false);
    EXPECT_EQ(camera.GetRotateMatrix(), View::StandardView(eStandardView::Iso));

    camera.SetRotateAngle(12.5, -33.0, 171.0);
    EXPECT_EQ(camera.GetRotateMatrix(), View::FromAngles(12.5, -33.0, 171.0));
    Vec angles;
    camera.GetRotateAngle(angles.x, angles.y, angles.z);
    EXPECT_EQ(angles, View::ToAngles(camera.GetRotateMatrix()));

    // The tour's second frame without pauses: progress 1/60 of the way times 6.
    camera.SetSixSidesInspectionSidePauses(0, false);
    camera.SetSixSidesInspection(true, false);
    camera.SixSidesInspectionImpl();
    camera.SixSidesInspectionImpl();
    double phases[6];
    EXPECT_EQ(camera.GetRotateMatrix(), View::SixSidesTour(1.0 / 60.0 * 6.0, phases));
    EXPECT_EQ(camera.SixSidesPhaseAngle(0), phases[0]);
}

} // namespace
