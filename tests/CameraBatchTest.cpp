// The batch projections against the single ones, bit for bit, on a camera
// whose every input of the world-to-view matrix is off its default.
#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

namespace
{

using KesraTest::TestCamera;
using Vec = KesraMathKit::TKesraVector3<double>;

void Skew(TestCamera& camera)
{
    camera.SetWindowSize(1037, 613);
    camera.SetRotateAngle(17.3, -41.2, 103.9);
    camera.SetScale(0.0173f);
    camera.SetTranslation(3.25f, -1.5f);
    camera.SetRotateCenter(0.5f, -2.25f, 7.0f);
}

// 3 * count coordinates: mostly within a model's size, some far out, and
// the specials.
std::vector<double> Coordinates(std::size_t count)
{
    std::mt19937_64 random(14);
    std::normal_distribution<double> model(0.0, 20.0);
    std::vector<double> xyz = {std::numeric_limits<double>::quiet_NaN(),
                               std::numeric_limits<double>::infinity(), -DBL_MAX,
                               -0.0, DBL_TRUE_MIN, 1e300};
    while (xyz.size() < 3 * count)
    {
        const double scale = random() % 16 == 0 ? 1e12 : 1.0;
        xyz.push_back(model(random) * scale);
    }
    return xyz;
}

template <typename Real>
bool SameBytes(const std::vector<Real>& a, const std::vector<Real>& b)
{
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(Real)) == 0;
}

TEST(CameraBatchTest, BatchProjectionEqualsSingleProjection)
{
    constexpr std::size_t kPoints = 100000;
    const std::vector<double> xyz = Coordinates(kPoints);
    TestCamera camera(800, 600);
    Skew(camera);

    // The batch refreshes the matrix itself: the camera is still modified.
    ASSERT_EQ(1, camera.GetModified());
    std::vector<double> batch(xyz.size(), -7.0);
    camera.ProjectPointsWorldToView(xyz.data(), kPoints, batch.data());
    EXPECT_EQ(0, camera.GetModified());

    std::vector<double> single(xyz.size(), -7.0);
    for (std::size_t k = 0; k < xyz.size(); k += 3)
    {
        Vec out;
        camera.ProjectPointWorldToView(Vec(xyz[k], xyz[k + 1], xyz[k + 2]), out);
        single[k] = out.x;
        single[k + 1] = out.y;
        single[k + 2] = out.z;
    }
    EXPECT_TRUE(SameBytes(single, batch));

    // In place.
    std::vector<double> inPlace = xyz;
    camera.ProjectPointsWorldToView(inPlace.data(), kPoints, inPlace.data());
    EXPECT_TRUE(SameBytes(single, inPlace));

    // Floats: widened, projected in double, narrowed.
    const std::vector<float> xyzFloat(xyz.begin(), xyz.end());
    std::vector<float> batchFloat(xyz.size(), -7.0f);
    camera.ProjectPointsWorldToView(xyzFloat.data(), kPoints, batchFloat.data());
    std::vector<float> singleFloat(xyz.size(), -7.0f);
    for (std::size_t k = 0; k < xyz.size(); k += 3)
    {
        camera.ProjectPointWorldToView(&xyzFloat[k], &singleFloat[k]);
    }
    EXPECT_TRUE(SameBytes(singleFloat, batchFloat));
}

TEST(CameraBatchTest, BatchProjectionSeesTheLatestChangeAndRefusesNull)
{
    TestCamera camera(800, 600);
    Skew(camera);
    const double point[3] = {1.0, 2.0, 3.0};
    double before[3] = {0.0, 0.0, 0.0};
    camera.ProjectPointsWorldToView(point, 1, before);
    camera.SetScale(2.0f);
    double after[3] = {0.0, 0.0, 0.0};
    camera.ProjectPointsWorldToView(point, 1, after);
    Vec single;
    camera.ProjectPointWorldToView(Vec(1.0, 2.0, 3.0), single);
    EXPECT_NE(before[0], after[0]);
    EXPECT_EQ(Vec(after[0], after[1], after[2]), single);

    // Null arrays: nothing written, the matrix not refreshed.
    camera.SetScale(3.0f);
    double untouched[3] = {-7.0, -7.0, -7.0};
    camera.ProjectPointsWorldToView(nullptr, 1, untouched);
    camera.ProjectPointsWorldToView(point, 1, static_cast<double*>(nullptr));
    float pointFloat[3] = {1.0f, 2.0f, 3.0f};
    camera.ProjectPointsWorldToView(pointFloat, 1, static_cast<float*>(nullptr));
    EXPECT_EQ(Vec(-7.0, -7.0, -7.0), Vec(untouched[0], untouched[1], untouched[2]));
    EXPECT_EQ(1, camera.GetModified());
}

} // namespace
