// Every operation that takes a double or a float, and the counts and indices
// that take an int, fed the numbers that break arithmetic: NaN, infinities,
// the largest finite numbers, the smallest denormals, -0.0 and the int
// extremes. Each table row states what the object does with the number:
// refuses it (the state stays), clamps it, or stores it bit for bit.
#include "Engine/Curve2D.h"
#include "MathKit/IntrLine3Plane3.h"
#include "MathKit/IntrRay3Plane3.h"
#include "MathKit/Matrix4.h"
#include "support/ObjectState.h"
#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>

namespace
{

using namespace KesraTest;
using D = std::numeric_limits<double>;
using F = std::numeric_limits<float>;
using Mat = KesraMathKit::TKesraMatrix4<double>;
using Vec = KesraMathKit::TKesraVector3<double>;

const double kDoubles[] = {D::quiet_NaN(), -D::quiet_NaN(), D::infinity(), -D::infinity(),
                           D::max(),       -D::max(),       D::denorm_min(), -D::denorm_min(),
                           -0.0};
const float kFloats[] = {F::quiet_NaN(), -F::quiet_NaN(), F::infinity(), -F::infinity(),
                         F::max(),       -F::max(),       F::denorm_min(), -F::denorm_min(),
                         -0.0f};
const int kInts[] = {INT_MIN, INT_MIN + 1, -1, INT_MAX - 1, INT_MAX};

long g_inputs = 0;

class HostileInputReport : public ::testing::Environment
{
public:
    void TearDown() override { std::printf("hostile inputs tried: %ld\n", g_inputs); }
};

const auto* const kReport = ::testing::AddGlobalTestEnvironment(new HostileInputReport);

template <typename T>
bool Same(T a, T b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// Refused: the whole state as it was. Stored: the getter gives the number back.
template <typename Object, typename Set>
void ExpectRefused(Object& object, Set set, const char* what)
{
    const Snapshot before = State(object);
    set(object);
    ++g_inputs;
    EXPECT_TRUE(State(object) == before) << what;
}

bool IsPositiveFinite(double v) { return std::isfinite(v) && v > 0.0; }

TEST(HostileNumberTest, CameraRefusesUnusableScalesAndBoxesAndStoresTheRest)
{
    for (const float v : kFloats)
    {
        TestCamera camera(640, 480);
        if (IsPositiveFinite(v))
        {
            camera.SetScale(v);
            EXPECT_TRUE(Same(camera.GetScale(), v)) << v;
            ++g_inputs;
        }
        else
        {
            ExpectRefused(camera, [v](TestCamera& c) { c.SetScale(v); }, "SetScale");
            ExpectRefused(camera, [v](TestCamera& c) { c.SetScaleNoEventHandler(v); }, "silent SetScale");
            ExpectRefused(camera, [v](TestCamera& c) { c.SetTransformNoEventHandler(Mat::ZERO, 1, 2, v); },
                          "SetTransformNoEventHandler");
        }
        // Translation and rotation centre are stored as given.
        camera.SetTranslation(v, -v);
        camera.SetRotateCenter(v, 0.0f, -v);
        float x = 0, y = 0, cx = 0, cy = 0, cz = 0;
        camera.GetTranslation(x, y);
        camera.GetRotateCenter(cx, cy, cz);
        EXPECT_TRUE(Same(x, v) && Same(y, -v) && Same(cx, v) && Same(cz, -v)) << v;
        g_inputs += 2;

        // A box with a non-finite bound is refused whole.
        const float box[6] = {0.0f, v, -1.0f, 1.0f, -1.0f, 1.0f};
        if (std::isfinite(v))
        {
            camera.ZoomAll(box);
            EXPECT_TRUE(std::isfinite(camera.GetScale()) && camera.GetScale() > 0.0f) << v;
            ++g_inputs;
        }
        else
        {
            ExpectRefused(camera, [&box](TestCamera& c) { c.ZoomAll(box); }, "ZoomAll");
        }
    }
}

TEST(HostileNumberTest, CameraAnglesGiveAFiniteRotationExactlyForFiniteAngles)
{
    for (const double v : kDoubles)
    {
        TestCamera camera(640, 480);
        camera.SetRotateAngle(v, 0.0, -v);
        bool finite = true;
        for (int k = 0; k < 16; ++k)
        {
            finite = finite && std::isfinite(camera.GetRotateMatrix()[k]);
        }
        EXPECT_EQ(finite, std::isfinite(v)) << v;
        double a = 0, b = 0, c = 0;
        camera.GetRotateAngle(a, b, c);
        ++g_inputs;
    }
}

TEST(HostileNumberTest, CameraCountsAreRefusedOrClampedAtTheirLimits)
{
    for (const int n : kInts)
    {
        TestCamera camera(640, 480);
        camera.SetWindowSize(n, n);
        int w = 0, h = 0;
        camera.GetWindowSize(w, h);
        EXPECT_EQ(w, n); // stored; the scale stays as it was
        EXPECT_EQ(camera.HalfWidth(), n / 2);

        camera.SetSmoothRotateFrames(n);
        EXPECT_EQ(camera.GetSmoothRotateFrames(), n > 0 ? n : 5) << n;

        camera.SetSixSidesInspectionSideFrames(n, false);
        EXPECT_EQ(camera.GetSixSidesInspectionSideFrames(), n >= 3 && n <= INT_MAX / 6 ? n : 10) << n;

        camera.SetSixSidesInspectionSidePauses(n, false);
        EXPECT_EQ(camera.GetSixSidesInspectionSidePauses(), n > 0 ? n : 0) << n;
        const long long total = 60LL + 6LL * (n > 0 ? n : 0);
        EXPECT_EQ(camera.GetSixSidesInspectionTotalFrames(), total > INT_MAX ? INT_MAX : total) << n;
        g_inputs += 4;
    }
}

TEST(HostileNumberTest, ScalarBarStoresRangesUnlessReversedAndColoursEveryValue)
{
    for (const double v : kDoubles)
    {
        TestScalarBar bar;
        ASSERT_TRUE(bar.Create(100, 400, 0, 0));
        // (v, 1) is refused exactly when v lies above 1; NaN compares false and
        // is stored.
        if (v > 1.0)
        {
            ExpectRefused(bar, [v](TestScalarBar& b) { b.SetValueRange(v, 1.0, true, true); }, "range");
            ExpectRefused(bar, [v](TestScalarBar& b) { b.SetDisplayRange(v, 1.0); }, "display range");
        }
        else
        {
            bar.SetValueRange(v, 1.0, false, true);
            bar.SetDisplayRange(v, 1.0);
            double lo = 0, hi = 0, dlo = 0, dhi = 0;
            bar.GetValueRange(lo, hi);
            bar.GetDisplayRange(dlo, dhi);
            EXPECT_TRUE(Same(lo, v) && hi == 1.0 && Same(dlo, v) && dhi == 1.0) << v;
            g_inputs += 2;
        }
        // The current value is clamped into the range; NaN passes both tests.
        bar.SetValueRange(0.0, 1.0, v);
        double lo = 0, hi = 0, current = 0;
        bar.GetValueRange(lo, hi, current);
        const double clamped = v < 0.0 ? 0.0 : (v > 1.0 ? 1.0 : v);
        EXPECT_TRUE(Same(current, clamped)) << v;
        ++g_inputs;

        // On the range 0 ... 1: below is -1, above is 1, inside (the ends,
        // -0.0, denormals and NaN) is 0.
        for (const int banded : {0, 1})
        {
            bar.SetBanded(banded);
            unsigned char r = 0, g = 0, b = 0;
            const int expected = v < 0.0 ? -1 : (v > 1.0 ? 1 : 0);
            EXPECT_EQ(bar.GetOpenGLColor(r, g, b, v), expected) << v << " banded " << banded;
            EXPECT_EQ(bar.GetOpenGLColorByValue(r, g, b, v), expected) << v;
            g_inputs += 2;
        }
        // A range at the hostile number itself still colours within the palette.
        bar.SetValueRange(v, v, false, false);
        for (const double w : kDoubles)
        {
            unsigned char r = 0, g = 0, b = 0;
            const int code = bar.GetOpenGLColor(r, g, b, w);
            EXPECT_TRUE(code >= -1 && code <= 1);
            ++g_inputs;
        }
        EXPECT_EQ(TestScalarBar::GetExponentialBase(v, -v, 3) > INT_MIN, true);
        ++g_inputs;
    }
}

TEST(HostileNumberTest, ScalarBarLineWidthIsRefusedUnlessPositive)
{
    for (const float v : kFloats)
    {
        TestScalarBar bar;
        bar.SetColorBlockLineWidth(v);
        EXPECT_TRUE(Same(bar.GetColorBlockLineWidth(), v > 0.0f ? v : 1.0f)) << v;
        ++g_inputs;
    }
}

TEST(HostileNumberTest, ScalarBarCountsAndFormatsKeepTheirLimits)
{
    for (const int n : kInts)
    {
        TestScalarBar bar;
        ASSERT_TRUE(bar.Create(n, n, n, n)) << "any non-zero size is taken";
        bar.SetBlockNum(n);
        EXPECT_EQ(bar.GetBlockNum(), 8) << n;
        bar.SetValueFormat(n, n);
        int first = 0, second = 0;
        bar.GetValueFormat(first, second);
        EXPECT_EQ(first, n >= 1 ? n : 3) << n;
        bar.SetInverse(n);
        EXPECT_EQ(bar.GetInverse(), 1) << "a non-zero switch is stored as 1";
        g_inputs += 4;
    }
}

TEST(HostileNumberTest, RulerRefusesScalesThatAreNotPositiveAndKeepsItsLengthANumber)
{
    for (const float v : kFloats)
    {
        TestRuler ruler;
        ASSERT_TRUE(ruler.Create(800, 600, 10, 10));
        if (v > 0.0f)
        {
            ruler.SetOpenGLScale(v);
            float stored = 0;
            ruler.GetOpenGLScale(stored);
            EXPECT_TRUE(Same(stored, v));
            // inf gives a length of 0; FLT_MAX and denormals a round length.
            EXPECT_TRUE(std::isfinite(ruler.Length()) && ruler.Length() >= 0.0f) << v;
            EXPECT_GE(ruler.PixelWidth(), 0);
            ++g_inputs;
        }
        else
        {
            ExpectRefused(ruler, [v](TestRuler& r) { r.SetOpenGLScale(v); }, "SetOpenGLScale");
        }
    }
    for (const int n : kInts)
    {
        TestRuler ruler;
        ruler.SetWindowSize(n, n);
        ruler.SetStartPosition(~n, n);
        EXPECT_GE(ruler.PixelWidth(), 0) << n;
        ruler.SetRulerWidthScale(n);
        int scale = 0;
        ruler.GetRulerWidthScale(scale);
        EXPECT_EQ(scale, n > 0 ? n : 3) << n;
        ruler.SetRulerHeight(n);
        int height = 0;
        ruler.GetRulerHeight(height);
        EXPECT_EQ(height, n > 10 ? n : 10) << n;
        EXPECT_EQ(ruler.ReducedHeight(), n > 10 ? static_cast<int>(static_cast<float>(n) / 1.5f) : 6);
        g_inputs += 3;
    }
}

TEST(HostileNumberTest, LightRefusesNaNClampsRangesAndStoresVectors)
{
    for (const float v : kFloats)
    {
        TestLight light;
        light.SetIntensity(v);
        EXPECT_TRUE(Same(light.GetIntensity(), v >= 0.0f && v <= 1.0f ? v : 1.0f)) << v;
        light.SetExponent(v);
        light.SetConeAngle(v);
        if (std::isnan(v))
        {
            EXPECT_EQ(light.GetExponent(), 1.0f);
            EXPECT_EQ(light.GetConeAngle(), 180.0f);
        }
        else
        {
            EXPECT_TRUE(Same(light.GetExponent(), std::fmin(std::fmax(v, 0.0f), 128.0f)) ||
                        (v == 0.0f && light.GetExponent() == 0.0f))
                << v;
            EXPECT_EQ(light.GetConeAngle(), std::fmin(std::fmax(v, 0.0f), 180.0f)) << v;
        }
        light.SetAttenuationValues(v, -v, v);
        EXPECT_TRUE(Same(light.GetAttenuationValues().x, static_cast<double>(v)));
        g_inputs += 4;
    }
    for (const double v : kDoubles)
    {
        TestLight light;
        light.SetPosition(Vec(v, 0, -v));
        light.SetFocalPoint(Vec(-v, v, 0));
        EXPECT_TRUE(Same(light.GetPosition().x, v) && Same(light.GetFocalPoint().y, v));
        g_inputs += 2;
    }
}

TEST(HostileNumberTest, RendererAndTriadStoreWhatTheyAreGiven)
{
    for (const float v : kFloats)
    {
        TestRenderer renderer(1, 1);
        renderer.SetPolygonOffsetPara(v, -v);
        float p1 = 0, p2 = 0;
        renderer.GetPolygonOffsetPara(p1, p2);
        EXPECT_TRUE(Same(p1, v) && Same(p2, -v));
        ++g_inputs;
    }
    for (const int n : kInts)
    {
        TestRenderer renderer(1, 1);
        renderer.Resize(n, ~n);
        EXPECT_EQ(renderer.resizedWidth, n);
        TestAxis axis;
        EXPECT_TRUE(axis.Create(n, n));
        EXPECT_TRUE(std::isfinite(axis.ScaleX())) << "80 / n for any non-zero n";
        g_inputs += 2;
    }
}

TEST(HostileNumberTest, StreamlineRefusesRadiiThatAreNotPositiveAndSurvivesAnyCoordinate)
{
    for (const double v : kDoubles)
    {
        TestStreamline tube;
        EXPECT_EQ(tube.Create(3, 4, v, 1.0), v > 0.0) << v;
        EXPECT_EQ(tube.Create(3, 4, 1.0, v), v > 0.0) << v;
        g_inputs += 2;

        ASSERT_TRUE(tube.Create(3, 4, 1.0, 1.0));
        double p[3] = {v, 0.0, -v};
        ASSERT_TRUE(tube.SetNodeCoord(1, p));
        double back[3] = {};
        tube.GetNodeCoord(1, back);
        EXPECT_TRUE(Same(back[0], v) && Same(back[2], -v));
        EXPECT_TRUE(tube.GenerationStreamline3D());
        for (int node = 0; node < 3; ++node)
        {
            for (int slice = 0; slice < 4; ++slice)
            {
                double n[3] = {};
                ASSERT_TRUE(tube.GetSliceNodeNormal(node, slice, n));
                const double length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
                EXPECT_TRUE(std::isnan(length) || length == 0.0 || std::abs(length - 1.0) < 1e-12);
            }
        }
        ++g_inputs;
    }
    for (const int n : kInts)
    {
        TestStreamline tube;
        EXPECT_FALSE(tube.Create(n < 0 ? n : 1, 3, 1.0, 1.0));
        ASSERT_TRUE(tube.Create(2, 2, 1.0, 1.0));
        double p[3] = {};
        EXPECT_FALSE(tube.SetNodeCoord(n, p));
        EXPECT_FALSE(tube.GetSliceNodeCoord(0, n, p));
        g_inputs += 3;
    }
}

TEST(HostileNumberTest, TipsStoreCoordinatesAndMoveLabelsByAnyOffset)
{
    for (const double v : kDoubles)
    {
        ProbedTipManager manager;
        const double original[3] = {1.0, v, -v};
        ASSERT_EQ(manager.InsertTip("t", original, original), 0);
        manager.UpdateEffect(KesraEngine::eTipLinkX, v, nullptr, 0.0);
        double effect[3] = {};
        manager.GetEffectCoord(0, effect);
        EXPECT_TRUE(Same(effect[0], 1.0 + v) || (std::isnan(effect[0]) && std::isnan(v)));
        EXPECT_TRUE(Same(effect[1], v));
        // Radial from the original itself: no direction, the label stays.
        manager.UpdateEffect(KesraEngine::eTipLinkRadial, 0.0, original, v);
        double again[3] = {};
        manager.GetEffectCoord(0, again);
        g_inputs += 2;
    }
}

TEST(HostileNumberTest, CurveStoresEveryNumberAndNaNNeverMovesTheRange)
{
    for (const double v : kDoubles)
    {
        KesraEngine::CKesraCurve2D curve;
        ASSERT_TRUE(curve.InsertNode(v, -v));
        double x = 0, y = 0;
        curve.GetNode(0, x, y);
        EXPECT_TRUE(Same(x, v) && Same(y, -v));
        double xMin = 0, yMin = 0, xMax = 0, yMax = 0;
        curve.GetCureveRange(xMin, yMin, xMax, yMax);
        if (std::isnan(v))
        {
            EXPECT_TRUE(xMin == 1e11 && xMax == -1e11 && yMin == 1e11 && yMax == -1e11);
        }
        else
        {
            EXPECT_TRUE(xMin == std::fmin(v, 1e11) && xMax == std::fmax(v, -1e11)) << v;
        }
        bool changed = true;
        EXPECT_TRUE(curve.SetNodeX(0, v, changed));
        EXPECT_FALSE(changed) << "the same number again moves nothing";
        g_inputs += 2;
    }
}

TEST(HostileNumberTest, MathKitGivesIdentityForUnusableAxesAndNoIntersectionForNaN)
{
    for (const double v : kDoubles)
    {
        Mat rotation;
        rotation.MakeRotation(30.0, v, v, v);
        const bool usableAxis = std::isfinite(v) && v != 0.0;
        EXPECT_EQ(rotation == Mat::IDENTITY, !usableAxis) << v;
        Vec direction(v, v, v);
        direction.Normalize();
        if (!(std::sqrt(3.0 * v * v) > 1e-8))
        {
            EXPECT_TRUE(direction == Vec(0, 0, 0)) << v;
        }

        const KesraMathKit::TKesraPlane3<double> plane(Vec(0, 0, 1), 0.0);
        const KesraMathKit::TKesraLine3<double> line(Vec(0, 0, 1), Vec(0, 0, v));
        KesraMathKit::TKesraIntrLine3Plane3<double> query(line, plane);
        // A direction along the normal meets the plane unless it is NaN or
        // (nearly) zero.
        EXPECT_EQ(query.Find(), std::abs(v) > 1e-8) << v;
        const KesraMathKit::TKesraRay3<double> ray(Vec(0, 0, 1), Vec(0, 0, v));
        KesraMathKit::TKesraIntrRay3Plane3<double> rayQuery(ray, plane);
        // Only a ray pointing down meets it, and an infinite one pointing up,
        // whose parameter -(1 / inf) is -0.0 and so not below 0.
        EXPECT_EQ(rayQuery.Find(), v < -1e-8 || v == D::infinity()) << v;
        g_inputs += 4;
    }
}

} // namespace
