#include "Engine/Camera.h"
#include "support/CameraTestSupport.h"
#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <tuple>

namespace
{

using KesraTest::ExpectVecNear;
using KesraTest::RecordingHandler;
using KesraTest::TestCamera;
using Matrix = KesraMathKit::TKesraMatrix4<double>;
using Vec = KesraMathKit::TKesraVector3<double>;

struct Bounds
{
    float left, right, bottom, top, nearBound, farBound;
    int width, height;
};

Bounds Direct(const TestCamera& camera)
{
    Bounds b{};
    camera.GetParametersDirect(b.left, b.right, b.bottom, b.top, b.nearBound, b.farBound, b.width,
                               b.height);
    return b;
}

// The bounds as a host computes them in float, as every getter reports them.
// The stored bounds are read first: GetParameters recomputes them.
void ExpectBoundsFor(TestCamera& camera, int width, int height, float scale)
{
    const float r = static_cast<float>(width) * 0.5f * scale;
    const float t = static_cast<float>(height) * 0.5f * scale;
    const float n = scale * -10000.0f;
    const float f = scale * 10000.0f;
    const Bounds b = Direct(camera);
    EXPECT_EQ(std::tie(b.left, b.right, b.bottom, b.top, b.nearBound, b.farBound, b.width,
                       b.height),
              std::make_tuple(-r, r, -t, t, n, f, width, height));
    Bounds split{};
    camera.GetWidthParametersDirect(split.left, split.right, split.width);
    camera.GetHeightParametersDirect(split.bottom, split.top, split.height);
    EXPECT_EQ(std::tie(split.left, split.right, split.bottom, split.top, split.width, split.height),
              std::make_tuple(-r, r, -t, t, width, height));
    camera.GetParameters(split.left, split.right, split.bottom, split.top, split.nearBound,
                         split.farBound);
    EXPECT_EQ(std::tie(split.left, split.right, split.bottom, split.top, split.nearBound,
                       split.farBound),
              std::make_tuple(-r, r, -t, t, n, f));
}

Vec Translation(const TestCamera& camera)
{
    float x, y;
    camera.GetTranslation(x, y);
    return Vec(x, y, 0.0);
}

Vec Centre(const TestCamera& camera)
{
    float x, y, z;
    camera.GetRotateCenter(x, y, z);
    return Vec(x, y, z);
}

Matrix RotationAbout(double angle, double x, double y, double z)
{
    Matrix m;
    m.MakeRotation(angle, x, y, z);
    return m;
}

TEST(CameraTest, ConstructorDefaults)
{
    TestCamera camera(800, 600);
    EXPECT_EQ(camera.GetName(), "Default");
    EXPECT_EQ(camera.HalfWidth(), 400);
    EXPECT_EQ(camera.HalfHeight(), 300);
    EXPECT_EQ(Direct(camera).left, -400.0f);
    EXPECT_EQ(Direct(camera).nearBound, -10000.0f);
    ExpectBoundsFor(camera, 800, 600, 1.0f);
    EXPECT_EQ(camera.GetScale(), 1.0f);
    EXPECT_EQ(camera.GetRotateMatrix(), Matrix::IDENTITY);
    EXPECT_EQ(Translation(camera), Vec(0, 0, 0));
    EXPECT_EQ(camera.GetSmoothRotateFrames(), 5);
    EXPECT_FALSE(camera.IsSmoothRotate());
    EXPECT_FALSE(camera.IsSixSidesInspection());
    EXPECT_EQ(camera.GetSixSidesInspectionSideFrames(), 10);
    EXPECT_EQ(camera.GetSixSidesInspectionSidePauses(), 10);
}

TEST(CameraTest, HalvesTruncateButViewBoundsFollowSizeAndScaleInFloat)
{
    TestCamera odd(801, 601);
    EXPECT_EQ(odd.HalfWidth(), 400);
    EXPECT_EQ(Direct(odd).right, 400.5f);
    Vec middle;
    odd.ProjectPointWorldToView(Vec(0, 0, 0), middle);  // the window's middle, not the halves
    EXPECT_EQ(middle, Vec(400.5, 300.5, 0));
    TestCamera negative(-401, 600);
    EXPECT_EQ(negative.HalfWidth(), -200);
    ExpectBoundsFor(negative, -401, 600, 1.0f);

    odd.SetWindowSize(1023, -7);
    EXPECT_EQ(odd.HalfWidth(), 511);
    EXPECT_EQ(odd.HalfHeight(), -3);
    ExpectBoundsFor(odd, 1023, -7, 1.0f);

    TestCamera camera(1023, 767);
    camera.SetScaleNoEventHandler(0.1f);
    ExpectBoundsFor(camera, 1023, 767, 0.1f);
    camera.SetWindowSize(333, 9);
    ExpectBoundsFor(camera, 333, 9, 0.1f);

    // SetTransform replaces all but the centre.
    camera.SetRotateCenter(1.0f, 1.0f, 1.0f);
    const Matrix rotation = RotationAbout(60.0, 0.0, 1.0, 0.0);
    camera.SetTransformNoEventHandler(rotation, -4.0f, 8.0f, 0.037f);
    ExpectBoundsFor(camera, 333, 9, 0.037f);
    EXPECT_EQ(camera.GetRotateMatrix(), rotation);
    EXPECT_EQ(camera.GetScale(), 0.037f);
    EXPECT_EQ(Translation(camera), Vec(-4, 8, 0));
    EXPECT_EQ(Centre(camera), Vec(1, 1, 1));
}

TEST(CameraTest, ProjectionPutsTheCentreInTheMiddleThenShiftsAndScales)
{
    TestCamera camera(800, 600);
    EXPECT_EQ(camera.GetModified(), 1);
    EXPECT_EQ(camera.GetWorldToViewMatrix(),
              Matrix(1, 0, 0, 400, 0, 1, 0, 300, 0, 0, 1, 0, 0, 0, 0, 1));
    EXPECT_EQ(camera.GetModified(), 0);

    Vec out;
    camera.SetRotateCenter(1.0f, 2.0f, 3.0f);
    EXPECT_EQ(Centre(camera), Vec(1, 2, 3));
    camera.ProjectPointWorldToView(Vec(1, 2, 3), out);
    EXPECT_EQ(out, Vec(400, 300, 0));

    camera.SetScale(2.0f);
    camera.SetTranslation(10.0f, 0.0f);
    camera.ProjectPointWorldToView(Vec(13, 2, 3), out);
    EXPECT_EQ(out, Vec(411, 300, 0));
}

TEST(CameraTest, TranslationAndInverseScaleAreDividedInFloat)
{
    TestCamera camera(800, 600);
    camera.SetScaleNoEventHandler(3.0f);
    camera.SetTranslationNoEventHandler(1.0f, 2.0f);
    const Matrix& w = camera.GetWorldToViewMatrix();
    EXPECT_EQ(w(0, 0), static_cast<double>(1.0f / 3.0f));
    EXPECT_NE(w(0, 0), 1.0 / 3.0);
    EXPECT_EQ(w(0, 3), static_cast<double>(1.0f / 3.0f) + 400.0);
    EXPECT_EQ(w(1, 3), static_cast<double>(2.0f / 3.0f) + 300.0);
    EXPECT_EQ(w(2, 3), 0.0);
}

TEST(CameraTest, WorldToViewAppliesCentreThenRotationThenTranslationAndScale)
{
    TestCamera camera(640, 480);
    const Matrix rotation = RotationAbout(40.0, 1.0, 2.0, -0.5);
    camera.SetRotateMatrix(rotation);
    camera.SetRotateCenter(5.0f, -3.0f, 2.0f);
    camera.SetTranslation(7.0f, -11.0f);
    camera.SetScale(0.25f);

    const Vec p(1.5, 4.0, -2.0);
    const Vec d = p - Vec(5.0, -3.0, 2.0);
    // F(r, c) is element 4c + r of the rotation matrix.
    Vec f;
    f.x = rotation[0] * d.x + rotation[4] * d.y + rotation[8] * d.z;
    f.y = rotation[1] * d.x + rotation[5] * d.y + rotation[9] * d.z;
    f.z = rotation[2] * d.x + rotation[6] * d.y + rotation[10] * d.z;

    Vec out;
    camera.ProjectPointWorldToView(p, out);
    ExpectVecNear(Vec(320.0 + (f.x + 7.0) / 0.25, 240.0 + (f.y - 11.0) / 0.25, f.z / 0.25), out,
                  1e-9);

    // The float overload computes in double and narrows; null is refused.
    const float in[3] = {1.5f, 4.0f, -2.0f};
    float narrowed[3] = {0.0f, 0.0f, 0.0f};
    camera.ProjectPointWorldToView(in, narrowed);
    EXPECT_EQ(Vec(narrowed[0], narrowed[1], narrowed[2]),
              Vec(static_cast<float>(out.x), static_cast<float>(out.y), static_cast<float>(out.z)));
    camera.ProjectPointWorldToView(nullptr, narrowed);
    EXPECT_EQ(narrowed[0], static_cast<float>(out.x));
}

TEST(CameraTest, ModifiedFlagLifecycle)
{
    TestCamera camera(800, 600);
    const auto expectMarks = [&](const char* what, const std::function<void()>& change) {
        camera.GetWorldToViewMatrix();
        ASSERT_EQ(camera.GetModified(), 0) << what;
        change();
        EXPECT_EQ(camera.GetModified(), 1) << what;
    };
    expectMarks("SetWindowSize", [&] { camera.SetWindowSize(640, 480); });
    expectMarks("SetTransform",
                [&] { camera.SetTransformNoEventHandler(Matrix::IDENTITY, 1.0f, 2.0f, 0.5f); });
    expectMarks("SetRotateMatrix", [&] { camera.SetRotateMatrix(Matrix::IDENTITY); });
    expectMarks("SetRotateMatrixNo",
                [&] { camera.SetRotateMatrixNoEventHandler(Matrix::IDENTITY); });
    expectMarks("SetScale", [&] { camera.SetScale(2.0f); });
    expectMarks("SetScaleNo", [&] { camera.SetScaleNoEventHandler(3.0f); });
    expectMarks("SetTranslation", [&] { camera.SetTranslation(1.0f, 1.0f); });
    expectMarks("SetTranslationNo", [&] { camera.SetTranslationNoEventHandler(2.0f, 2.0f); });
    expectMarks("SetRotateCenter", [&] { camera.SetRotateCenter(1.0f, 2.0f, 3.0f); });
    expectMarks("ZoomAll", [&] { camera.ZoomAll(0.0f, 1.0f, 0.0f, 1.0f, 0.0f, 1.0f); });
    expectMarks("SetRotateAngle", [&] { camera.SetRotateAngle(10.0, 20.0, 30.0); });
    expectMarks("TopView", [&] { camera.SetRotateMatrixToTopView(true); });
    expectMarks("SmoothRotateImpl", [&] { camera.SmoothRotateImpl(); });
    camera.SetSixSidesInspection(true, false);
    expectMarks("SixSidesInspectionImpl", [&] { camera.SixSidesInspectionImpl(); });

    // Starting or configuring the six-sides tour, recomputing the bounds and
    // reading state leave the flag alone; the cached matrix stands.
    const Matrix cached = camera.GetWorldToViewMatrix();
    camera.SetSixSidesInspection(true, true);
    camera.SetSixSidesInspectionSideFrames(4, true);
    camera.SetSixSidesInspectionSidePauses(1, true);
    camera.SetSmoothRotateFrames(3);
    camera.UpdateViewPortParameters();
    float l, r, b, t, n, f;
    camera.GetParameters(l, r, b, t, n, f);
    double a, b2, c;
    camera.GetRotateAngle(a, b2, c);
    camera.GetCameraLookAt();
    EXPECT_EQ(camera.GetModified(), 0);
    EXPECT_EQ(camera.GetWorldToViewMatrix(), cached);

    // A projection clears the flag and brings the matrix up to date.
    camera.SetTranslationNoEventHandler(100.0f, 2.0f);
    Vec out;
    camera.ProjectPointWorldToView(Vec(1, 1, 1), out);
    EXPECT_EQ(camera.GetModified(), 0);
    EXPECT_NE(camera.GetWorldToViewMatrix(), cached);
}

TEST(CameraTest, ZoomAllFitsTheDiagonalIntoTheSmallerSideAndRecentres)
{
    TestCamera camera(800, 600);
    RecordingHandler handler;
    camera.RegisterEventHandler(&handler);
    camera.SetTranslationNoEventHandler(3.0f, 4.0f);

    camera.ZoomAll(0.0f, 10.0f, 0.0f, 10.0f, 0.0f, 10.0f);
    const float scale = static_cast<float>(std::sqrt(300.0)) / 600.0f;
    EXPECT_EQ(camera.GetScale(), scale);
    EXPECT_NEAR(camera.GetScale(), 0.0288675, 1e-7);
    EXPECT_EQ(Centre(camera), Vec(5, 5, 5));
    EXPECT_EQ(Translation(camera), Vec(0, 0, 0));
    ExpectBoundsFor(camera, 800, 600, scale);
    EXPECT_EQ(camera.GetRotateMatrix(), Matrix::IDENTITY);
    ASSERT_EQ(handler.events.size(), 1u);
    EXPECT_EQ(handler.events[0].Args(), std::make_tuple("transform", 0.0f, 0.0f, scale));

    // A box without extent keeps the scale but still recentres and notifies.
    camera.SetTranslationNoEventHandler(9.0f, 9.0f);
    camera.ZoomAll(2.0f, 2.0f, 4.0f, 4.0f, 6.0f, 6.0f);
    EXPECT_EQ(camera.GetScale(), scale);
    EXPECT_EQ(Centre(camera), Vec(2, 4, 6));
    EXPECT_EQ(Translation(camera), Vec(0, 0, 0));
    ASSERT_EQ(handler.events.size(), 2u);
    EXPECT_EQ(handler.events[1].Args(), std::make_tuple("transform", 0.0f, 0.0f, scale));
    Vec out;
    camera.ProjectPointWorldToView(Vec(2, 4, 6), out);
    EXPECT_EQ(out, Vec(400, 300, 0));
}

TEST(CameraTest, ZoomAllTakesDifferencesAndSumInFloat)
{
    TestCamera camera(800, 600);
    const float box[6] = {0.0f, 0.37f, 0.0f, 0.11f, 0.0f, 0.053f};
    camera.ZoomAll(box);
    const float sum = box[1] * box[1] + box[3] * box[3] + box[5] * box[5];
    const float expected = static_cast<float>(std::sqrt(static_cast<double>(sum))) / 600.0f;
    EXPECT_EQ(camera.GetScale(), expected);
    // The same box in double rounds to a different float.
    const double inDouble = std::sqrt(static_cast<double>(box[1]) * box[1] +
                                      static_cast<double>(box[3]) * box[3] +
                                      static_cast<double>(box[5]) * box[5]) / 600.0;
    EXPECT_NE(camera.GetScale(), static_cast<float>(inDouble));
}

TEST(CameraTest, ZoomAllRefusesZeroWindowAndNonFiniteBox)
{
    TestCamera camera(0, 600);
    RecordingHandler handler;
    camera.RegisterEventHandler(&handler);
    camera.GetWorldToViewMatrix();
    camera.ZoomAll(0.0f, 10.0f, 0.0f, 10.0f, 0.0f, 10.0f);
    EXPECT_EQ(camera.GetScale(), 1.0f);
    EXPECT_EQ(camera.GetModified(), 0);
    camera.SetWindowSize(800, 0);
    camera.GetWorldToViewMatrix();
    camera.ZoomAll(0.0f, 10.0f, 0.0f, 10.0f, 0.0f, 10.0f);
    EXPECT_EQ(camera.GetModified(), 0);

    camera.SetWindowSize(800, 600);
    camera.GetWorldToViewMatrix();
    const float inf = std::numeric_limits<float>::infinity();
    camera.ZoomAll(0.0f, inf, 0.0f, 1.0f, 0.0f, 1.0f);
    camera.ZoomAll(std::nanf(""), 1.0f, 0.0f, 1.0f, 0.0f, 1.0f);
    camera.ZoomAll(nullptr);
    EXPECT_EQ(camera.GetScale(), 1.0f);
    EXPECT_EQ(camera.GetModified(), 0);
    EXPECT_TRUE(handler.events.empty());
}

TEST(CameraTest, ScaleSettersRefuseUnusableScales)
{
    TestCamera camera(800, 600);
    RecordingHandler handler;
    camera.RegisterEventHandler(&handler);
    camera.SetTranslationNoEventHandler(1.0f, 2.0f);
    camera.GetWorldToViewMatrix();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float inf = std::numeric_limits<float>::infinity();
    for (const float bad : {0.0f, -0.0f, -1.0f, nan, inf, -inf})
    {
        camera.SetScale(bad);
        camera.SetScaleNoEventHandler(bad);
        camera.SetTransformNoEventHandler(RotationAbout(30.0, 1.0, 0.0, 0.0), 5.0f, 6.0f, bad);
    }
    EXPECT_EQ(camera.GetScale(), 1.0f);
    EXPECT_EQ(camera.GetRotateMatrix(), Matrix::IDENTITY);
    EXPECT_EQ(Translation(camera), Vec(1, 2, 0));
    EXPECT_EQ(camera.GetModified(), 0);
    ExpectBoundsFor(camera, 800, 600, 1.0f);
    EXPECT_TRUE(handler.events.empty());

    // The smallest positive scale is usable.
    camera.SetScale(std::numeric_limits<float>::denorm_min());
    EXPECT_EQ(camera.GetScale(), std::numeric_limits<float>::denorm_min());
}

TEST(CameraTest, CameraLookAtIsTheWindowMiddleRelativeToTheCentre)
{
    TestCamera camera(800, 600);
    camera.SetTranslation(3.0f, 4.0f);
    EXPECT_EQ(camera.GetCameraLookAt(), Vec(-3, -4, 0));

    const Matrix rotation = RotationAbout(35.0, 1.0, -1.0, 2.0);
    camera.SetRotateMatrix(rotation);
    camera.SetScale(7.0f);
    camera.SetRotateCenter(100.0f, 100.0f, 100.0f);
    const Matrix& r = rotation;
    ExpectVecNear(
        Vec(-(r[0] * 3.0 + r[1] * 4.0), -(r[4] * 3.0 + r[5] * 4.0), -(r[8] * 3.0 + r[9] * 4.0)),
        camera.GetCameraLookAt(), 1e-14);

    // A singular rotation matrix gives (0, 0, 0) through the zero inverse.
    camera.SetRotateMatrix(Matrix::ZERO);
    EXPECT_EQ(camera.GetCameraLookAt(), Vec(0, 0, 0));
}

TEST(CameraTest, CopiesShareObserversButNotState)
{
    TestCamera source(800, 600);
    RecordingHandler handler;
    source.RegisterEventHandler(&handler);
    source.SetName("Main view");
    source.SetRotateAngle(10.0, 20.0, 30.0);
    source.SetScale(2.0f);
    source.GetWorldToViewMatrix();
    handler.events.clear();

    TestCamera copy = source;
    EXPECT_EQ(copy.GetName(), "Main view");
    EXPECT_EQ(copy.GetRotateMatrix(), source.GetRotateMatrix());
    EXPECT_EQ(copy.GetModified(), 0);
    EXPECT_EQ(copy.GetWorldToViewMatrix(), source.GetWorldToViewMatrix());

    copy.SetScale(4.0f);
    EXPECT_EQ(source.GetScale(), 2.0f);
    ASSERT_EQ(handler.events.size(), 1u);  // the copy notifies the same handler
    EXPECT_EQ(handler.events[0].scale, 4.0f);

    // Unregistering from the copy leaves the source's list alone.
    EXPECT_TRUE(copy.UnregisterEventHandler(&handler));
    source.SetScale(3.0f);
    EXPECT_EQ(handler.events.size(), 2u);

    TestCamera assigned(10, 10);
    assigned = source;
    EXPECT_EQ(assigned.GetScale(), 3.0f);
    EXPECT_EQ(assigned.HalfWidth(), 400);
    assigned.SetName("Other");
    EXPECT_EQ(source.GetName(), "Main view");
}

} // namespace
