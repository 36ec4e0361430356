#include "MathKit/GenColor.h"
#include "MathKit/Math.h"
#include "MathKit/Matrix4.h"
#include "MathKit/Vector3.h"
#include "support/CameraTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <random>
#include <tuple>
#include <type_traits>

namespace
{

using namespace KesraMathKit;
using KesraTest::ExpectMatrixNear;
using Matrix = TKesraMatrix4<double>;
using Vec = TKesraVector3<double>;
using Color = TKesraGenColor<unsigned char>;

static_assert(sizeof(Matrix) == 16 * sizeof(double), "sixteen elements and nothing else");
static_assert(sizeof(Vec) == 3 * sizeof(double), "x, y, z and nothing else");
static_assert(sizeof(Color) == 4, "four bytes red, green, blue, alpha");
static_assert(std::is_trivially_copyable_v<Matrix> && std::is_trivially_copyable_v<Vec> &&
              std::is_trivially_copyable_v<Color>, "plain value types");

Matrix Diagonal(double a, double b, double c, double d)
{
    Matrix m;
    m(0, 0) = a;
    m(1, 1) = b;
    m(2, 2) = c;
    m(3, 3) = d;
    return m;
}

// Each constant follows from pi in T, so float ones are not narrowed doubles.
template <typename T>
void ExpectConstantsFrom(const T pi)
{
    EXPECT_EQ(TKesraMath<T>::PI, pi);
    EXPECT_EQ(TKesraMath<T>::TWO_PI, pi * T(2));
    EXPECT_EQ(TKesraMath<T>::HALF_PI, pi * T(0.5));
    EXPECT_EQ(TKesraMath<T>::INV_PI, T(1) / pi);
    EXPECT_EQ(TKesraMath<T>::INV_TWO_PI, T(1) / (pi * T(2)));
    EXPECT_EQ(TKesraMath<T>::DEG_TO_RAD, pi / T(180));
    EXPECT_EQ(TKesraMath<T>::RAD_TO_DEG, T(180) / pi);
}

TEST(MathConstantsTest, ConstantsAreComputedInTheirOwnPrecisionFromPi)
{
    ExpectConstantsFrom<double>(4.0 * std::atan(1.0));
    ExpectConstantsFrom<float>(static_cast<float>(4.0 * std::atan(1.0)));
    EXPECT_EQ(TKesraMath<double>::ZERO_TOLERANCE, 1e-08);
}

TEST(VectorTest, DefaultsArithmeticAndProducts)
{
    const Vec zero;
    EXPECT_EQ(zero, Vec(0, 0, 0));
    const Vec a(1, 2, 3);
    const Vec b(4, -5, 6);
    EXPECT_EQ(a + b, Vec(5, -3, 9));
    EXPECT_EQ(a - b, Vec(-3, 7, -3));
    EXPECT_EQ(a * 2.0, Vec(2, 4, 6));
    EXPECT_EQ(a.Dot(b), 4.0 - 10.0 + 18.0);
    EXPECT_EQ(a.Cross(b), Vec(2 * 6 - 3 * -5, 3 * 4 - 1 * 6, 1 * -5 - 2 * 4));
    EXPECT_EQ(Vec(3, 0, 4).Length(), 5.0);
}

TEST(VectorTest, NormalizeGivesUnitLengthOrZeroBelowTolerance)
{
    Vec v(3, 0, 4);
    v.Normalize();
    // Multiplied by 1 / length, not divided: 3 * 0.2 is not 3 / 5.
    EXPECT_EQ(v.x, 3.0 * (1.0 / 5.0));
    EXPECT_NE(v.x, 3.0 / 5.0);
    EXPECT_EQ(v.y, 0.0);
    EXPECT_DOUBLE_EQ(v.z, 0.8);

    // Up to and exactly at the tolerance is "no direction".
    for (const double length : {1e-9, 1e-08})
    {
        Vec tiny(length, 0, 0);
        tiny.Normalize();
        EXPECT_EQ(tiny, Vec(0, 0, 0)) << length;
    }
    Vec justAbove(2e-08, 0, 0);
    justAbove.Normalize();
    EXPECT_DOUBLE_EQ(justAbove.x, 1.0);
}

TEST(ColorTest, DefaultIsTransparentBlackAndEqualityComparesAlpha)
{
    const Color c;
    EXPECT_EQ(c, Color(0, 0, 0, 0));
    EXPECT_NE(Color(10, 20, 30, 255), Color(10, 20, 30, 254));
    EXPECT_EQ(Color(10, 20, 30, 255), Color(10, 20, 30, 255));
    const Color copy = Color(1, 2, 3, 4);
    EXPECT_EQ(std::make_tuple(copy.red, copy.green, copy.blue, copy.alpha),
              std::make_tuple(1, 2, 3, 4));
}

TEST(MatrixTest, DefaultIsZeroStaticMatricesAreConstantAndAccessIsRowByRow)
{
    const Matrix m;
    EXPECT_EQ(m, Matrix::ZERO);
    Matrix identity;
    identity.MakeIdentity();
    EXPECT_EQ(identity, Matrix::IDENTITY);
    for (int k = 0; k < 16; ++k)
    {
        EXPECT_EQ(Matrix::IDENTITY[k], (k % 5 == 0) ? 1.0 : 0.0);
        EXPECT_EQ(TKesraMatrix4<float>::IDENTITY[k], (k % 5 == 0) ? 1.0f : 0.0f);
        EXPECT_EQ(TKesraMatrix4<float>::ZERO[k], 0.0f);
    }
    identity(2, 1) = 7.0;
    EXPECT_EQ(identity[9], 7.0);
    identity[3] = 5.0;
    EXPECT_EQ(identity(0, 3), 5.0);
}

TEST(MatrixTest, ProductReadsRowByRowInOrder)
{
    Matrix a;
    Matrix b;
    for (int k = 0; k < 16; ++k)
    {
        a[k] = k + 1;
        b[k] = 16 - k;
    }
    const Matrix p = a * b;
    for (int r = 0; r < 4; ++r)
    {
        for (int c = 0; c < 4; ++c)
        {
            double expected = 0.0;
            for (int i = 0; i < 4; ++i)
            {
                expected += a(r, i) * b(i, c);
            }
            EXPECT_EQ(p(r, c), expected);
        }
    }
    // A translation in elements 3, 7, 11 moves points.
    Matrix t = Matrix::IDENTITY;
    t(0, 3) = 1.0;
    t(1, 3) = 2.0;
    t(2, 3) = 3.0;
    EXPECT_EQ(t.TransformPoint(Vec(1, 1, 1)), Vec(2, 3, 4));
}

TEST(MatrixTest, ProductSumsInOrderFromPositiveZero)
{
    // Four negative-zero products: only the leading 0 makes the sum +0.
    Matrix a;
    for (int i = 0; i < 4; ++i)
    {
        a(0, i) = -1.0;
    }
    EXPECT_FALSE(std::signbit((a * Matrix::ZERO)(0, 0)));

    // ((1e16 + 1) - 1e16) + 1 is 1 in this order only.
    Matrix b;
    b(0, 0) = 1e16;
    b(0, 1) = 1.0;
    b(0, 2) = -1e16;
    b(0, 3) = 1.0;
    Matrix ones;
    for (int r = 0; r < 4; ++r)
    {
        ones(r, 0) = 1.0;
    }
    EXPECT_EQ((b * ones)(0, 0), 1.0);
}

TEST(MatrixTest, MakeRotationAboutCoordinateAxesRowByRow)
{
    const double c = std::cos(30.0 * TKesraMath<double>::DEG_TO_RAD);
    const double s = std::sin(30.0 * TKesraMath<double>::DEG_TO_RAD);
    const double eps = 1e-15;

    Matrix r;
    r.MakeRotation(30.0, 1.0, 0.0, 0.0);
    ExpectMatrixNear(Matrix(1, 0, 0, 0, 0, c, s, 0, 0, -s, c, 0, 0, 0, 0, 1), r, eps);
    r.MakeRotation(30.0, 0.0, 1.0, 0.0);
    ExpectMatrixNear(Matrix(c, 0, -s, 0, 0, 1, 0, 0, s, 0, c, 0, 0, 0, 0, 1), r, eps);
    r.MakeRotation(30.0, 0.0, 0.0, 1.0);
    ExpectMatrixNear(Matrix(c, s, 0, 0, -s, c, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1), r, eps);

    r.MakeRotation(90.0, 1.0, 0.0, 0.0);
    ExpectMatrixNear(Matrix(1, 0, 0, 0, 0, 0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1), r, eps);
    // Through the half angle, cos 90 is not exactly 0.
    EXPECT_NE(r[5], 0.0);
}

TEST(MatrixTest, MakeRotationFollowsTheHalfAngleStepsExactly)
{
    Matrix m(5, 5, 5, 5, 5, 5, 5, 5, 5, 5, 5, 5, 5, 5, 5, 5);  // all sixteen are overwritten
    m.MakeRotation(37.0, 1.0, 2.0, 2.0);
    const double inv = 1.0 / std::sqrt((1.0 + 4.0) + 4.0);
    const double half = (TKesraMath<double>::DEG_TO_RAD * 37.0) * 0.5;
    const double s = std::sin(half);
    const double w = std::cos(half);
    const double qx = (s * 1.0) * inv;
    const double qy = (s * 2.0) * inv;
    const double qz = (s * 2.0) * inv;
    const double X = qx + qx;
    const double Y = qy + qy;
    const double Z = qz + qz;
    // A zero tolerance: every element to the last bit.
    ExpectMatrixNear(Matrix(1.0 - (Z * qz + Y * qy), Z * w + Y * qx, Z * qx - Y * w, 0,
                            Y * qx - Z * w, 1.0 - (Z * qz + X * qx), X * w + Z * qy, 0,
                            Y * w + Z * qx, Z * qy - X * w, 1.0 - (Y * qy + X * qx), 0,
                            0, 0, 0, 1),
                     m, 0.0);
}

TEST(MatrixTest, MakeRotationIgnoresAxisLength)
{
    Matrix unit;
    unit.MakeRotation(90.0, 0.0, 0.0, 1.0);
    Matrix twice;
    twice.MakeRotation(90.0, 0.0, 0.0, 2.0);
    EXPECT_EQ(unit, twice);

    // Lengths whose squares underflow or overflow still give the rotation.
    for (const double length : {1e-160, 1e-161, 1e-170, 1e-300, 1e170, 1e300,
                                std::numeric_limits<double>::denorm_min()})
    {
        Matrix scaled;
        scaled.MakeRotation(90.0, 0.0, 0.0, length);
        ExpectMatrixNear(unit, scaled, 1e-15);
    }

    Matrix oblique;
    oblique.MakeRotation(50.0, 1.0, 1.0, 1.0);
    Matrix obliqueLong;
    obliqueLong.MakeRotation(50.0, 7.0, 7.0, 7.0);
    ExpectMatrixNear(oblique, obliqueLong, 1e-15);
}

TEST(MatrixTest, MakeRotationOfZeroAngleOrWithoutAxisGivesIdentity)
{
    Matrix zero;
    zero.MakeRotation(0.0, 3.0, -1.0, 2.0);
    EXPECT_EQ(zero, Matrix::IDENTITY);
    const double inf = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const Vec axis : {Vec(0, 0, 0), Vec(inf, 0, 0), Vec(0, nan, 1)})
    {
        Matrix m;
        m[7] = 42.0;
        m.MakeRotation(45.0, axis.x, axis.y, axis.z);
        EXPECT_EQ(m, Matrix::IDENTITY);
    }
    TKesraMatrix4<float> f;
    f.MakeRotation(45.0f, 0.0f, 0.0f, 0.0f);
    EXPECT_EQ(f, TKesraMatrix4<float>::IDENTITY);
}

TEST(MatrixTest, InverseOfDiagonalsTreatsDeterminantAtToleranceAsSingular)
{
    EXPECT_EQ(Matrix::IDENTITY.Inverse(), Matrix::IDENTITY);
    EXPECT_EQ(Diagonal(2, 4, 8, 1).Inverse(), Diagonal(0.5, 0.25, 0.125, 1));
    // det 1e-12
    EXPECT_EQ(Diagonal(0.001, 0.001, 0.001, 0.001).Inverse(), Matrix::ZERO);
    // det exactly 1e-08 is still singular; a little more is not.
    EXPECT_EQ(Diagonal(1e-08, 1, 1, 1).Inverse(), Matrix::ZERO);
    EXPECT_EQ(Diagonal(-1e-08, 1, 1, 1).Inverse(), Matrix::ZERO);
    const Matrix justInvertible = Diagonal(2e-08, 1, 1, 1).Inverse();
    EXPECT_DOUBLE_EQ(justInvertible(0, 0), 5e7);
    EXPECT_EQ(Matrix::ZERO.Inverse(), Matrix::ZERO);
}

TEST(MatrixTest, InverseTimesMatrixIsIdentityOnRandomMatrices)
{
    std::mt19937 generator(7);
    std::uniform_real_distribution<double> value(-10.0, 10.0);
    for (int trial = 0; trial < 200; ++trial)
    {
        Matrix m;
        for (int k = 0; k < 16; ++k)
        {
            m[k] = value(generator);
        }
        // None of these is near singular: each has an inverse.
        const Matrix inverse = m.Inverse();
        ExpectMatrixNear(Matrix::IDENTITY, m * inverse, 1e-9);
        ExpectMatrixNear(Matrix::IDENTITY, inverse * m, 1e-9);
    }
}

// Distinct values 1 ... 16 in argument order, so that any swap shows.
constexpr Matrix kRows = Matrix::FromRows(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);
constexpr Matrix kColumns = Matrix::FromColumns(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);
static_assert(kRows(0, 3) == 4 && kRows(3, 0) == 13, "FromRows: the fourth argument ends row 0");
static_assert(kColumns(3, 0) == 4 && kColumns(0, 3) == 13, "FromColumns: the fourth argument ends column 0");

TEST(MatrixTest, FromRowsAndFromColumnsListTheSameArgumentsAsTransposes)
{
    for (int r = 0; r < 4; ++r)
    {
        for (int c = 0; c < 4; ++c)
        {
            EXPECT_EQ(kRows(r, c), 4 * r + c + 1) << r << ", " << c;
            EXPECT_EQ(kColumns(r, c), 4 * c + r + 1) << r << ", " << c;
        }
    }
    // FromRows stores as the sixteen-value constructor does.
    EXPECT_EQ(kRows, Matrix(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16));
    EXPECT_EQ(kRows.Transposed(), kColumns);

    // A translation listed row by row lands where the point transform reads it.
    const Matrix shift = Matrix::FromRows(1, 0, 0, 5, 0, 1, 0, 6, 0, 0, 1, 7, 0, 0, 0, 1);
    EXPECT_EQ(shift.TransformPoint(Vec(1, 2, 3)), Vec(6, 8, 10));
}

TEST(MatrixTest, TransformPointsEqualsThePointTransformInPlaceToo)
{
    std::mt19937 generator(11);
    std::uniform_real_distribution<double> value(-100.0, 100.0);
    Matrix m;
    for (int k = 0; k < 16; ++k)
    {
        m[k] = value(generator);
    }
    double points[12];
    float floats[12];
    for (int k = 0; k < 12; ++k)
    {
        points[k] = value(generator);
        floats[k] = static_cast<float>(points[k]);
    }

    double out[12];
    m.TransformPoints(points, 4, out);
    // Floats are widened, transformed in double and narrowed, in place here.
    float floatsOut[12];
    std::copy(std::begin(floats), std::end(floats), std::begin(floatsOut));
    m.TransformPoints(floatsOut, 4, floatsOut);
    for (int k = 0; k < 12; k += 3)
    {
        const Vec expected = m.TransformPoint(Vec(points[k], points[k + 1], points[k + 2]));
        EXPECT_EQ(Vec(out[k], out[k + 1], out[k + 2]), expected);
        const Vec widened = m.TransformPoint(Vec(floats[k], floats[k + 1], floats[k + 2]));
        EXPECT_EQ(floatsOut[k], static_cast<float>(widened.x));
        EXPECT_EQ(floatsOut[k + 1], static_cast<float>(widened.y));
        EXPECT_EQ(floatsOut[k + 2], static_cast<float>(widened.z));
    }

    // In place gives the same as into another array: each point is read whole
    // before it is written.
    m.TransformPoints(points, 4, points);
    EXPECT_TRUE(std::equal(std::begin(points), std::end(points), std::begin(out)));
    // No points: nothing is read or written.
    m.TransformPoints<double>(nullptr, 0, nullptr);
}

} // namespace
