// The view rotation against oracles of its own: the textbook product
// Rx Ry Rz, angles read back from random rotations, the standard views as
// proper rotations, the tour's clamped phases. What the camera makes of it
// (the exact standard matrices, gimbal lock, the tour's frames) is pinned in
// CameraViewTest.
#include "MathKit/ViewRotation.h"
#include "support/CameraTestSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace
{

using KesraMathKit::eStandardView;
using KesraTest::ExpectMatrixNear;
using KesraTest::ExpectVecNear;
using Matrix = KesraMathKit::TKesraMatrix4<double>;
using Vec = KesraMathKit::TKesraVector3<double>;
using View = KesraMathKit::TKesraViewRotation<double>;

// The textbook right-handed rotation about model axis 0, 1 or 2 for column
// vectors, row by row.
Matrix About(int axis, double degrees)
{
    const double r = degrees * std::acos(-1.0) / 180.0;
    const int i = (axis + 1) % 3;
    const int j = (axis + 2) % 3;
    Matrix m = Matrix::IDENTITY;
    m(i, i) = std::cos(r);
    m(i, j) = -std::sin(r);
    m(j, i) = std::sin(r);
    m(j, j) = std::cos(r);
    return m;
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
        ExpectMatrixNear((About(0, a) * About(1, b)) * About(2, c), View::FromAngles(a, b, c).Transposed(),
                         1e-14);
    }
}

TEST(ViewRotationTest, AnglesReadBackAwayFromGimbalLockAndRebuildTheRotationAtIt)
{
    std::mt19937 generator(5);
    std::uniform_real_distribution<double> outer(-179.9, 179.9);
    std::uniform_real_distribution<double> middle(-89.9, 89.9);
    for (int trial = 0; trial < 200; ++trial)
    {
        const Vec angles(outer(generator), middle(generator), outer(generator));
        ExpectVecNear(angles, View::ToAngles(View::FromAngles(angles.x, angles.y, angles.z)), 1e-9);
    }
    // At b = -90 only a - c = 40 is defined; the angles read back still build
    // the rotation.
    const double r = 40.0 * std::acos(-1.0) / 180.0;
    const double s = std::sin(r);
    const double c = std::cos(r);
    const Vec down = View::ToAngles(Matrix(0, -s, c, 0, 0, c, s, 0, -1, 0, 0, 0, 0, 0, 0, 1));
    EXPECT_NEAR(down.x, 40.0, 1e-12);
    EXPECT_NEAR(down.y, -90.0, 1e-12);
    EXPECT_TRUE(std::signbit(down.z));
    ExpectMatrixNear(View::FromAngles(70, -90, 30), View::FromAngles(down.x, down.y, down.z), 1e-12);
}

TEST(ViewRotationTest, StandardViewsAreProperRotationsOfTheirAngles)
{
    for (int k = 0; k < 7; ++k)
    {
        const auto view = static_cast<eStandardView>(k);
        // The isometric view's six-decimal constant makes it a rotation up to 3e-6.
        const bool iso = view == eStandardView::Iso;
        // F's rows, the model directions shown right, up and toward the
        // viewer: orthonormal and right-handed, no mirror image.
        const Matrix f = View::StandardView(view).Transposed();
        const Vec right(f(0, 0), f(0, 1), f(0, 2));
        const Vec up(f(1, 0), f(1, 1), f(1, 2));
        ExpectMatrixNear(Matrix::IDENTITY, f * f.Transposed(), iso ? 3e-6 : 0.0);
        ExpectVecNear(Vec(f(2, 0), f(2, 1), f(2, 2)), right.Cross(up), iso ? 3e-6 : 0.0);

        const Vec angles = View::StandardViewAngles(view);
        ExpectMatrixNear(View::StandardView(view), View::FromAngles(angles.x, angles.y, angles.z),
                         iso ? 1e-6 : 1e-15);
        ExpectVecNear(angles, View::ToAngles(View::StandardView(view)), 1e-12);
    }
    // Not (-180, 0, -180), the same half turn.
    EXPECT_EQ(View::ToAngles(View::StandardView(eStandardView::Bottom)), Vec(0, 180, 0));
}

TEST(ViewRotationTest, SixSidesTourClampsEachPhaseAndComesBackToTheTop)
{
    double phases[6];
    EXPECT_EQ(View::SixSidesTour(0.0, phases), Matrix::IDENTITY);
    ExpectMatrixNear(Matrix::IDENTITY, View::SixSidesTour(6.0, phases), 1e-15);

    // Phase 0 done, phase 1 at 9 degrees, the rest not begun.
    const Matrix atOnePointOne = View::SixSidesTour(1.1, phases);
    EXPECT_EQ(phases[0], 90.0);
    EXPECT_NEAR(phases[1], 9.0, 1e-12);
    for (int i = 2; i < 6; ++i)
    {
        EXPECT_EQ(phases[i], 0.0) << "phase " << i;
    }
    ExpectMatrixNear(View::FromAngles(0.0, 99.0, 0.0), atOnePointOne, 1e-15);
}

} // namespace
