// Properties of tubes on random smooth polylines: segments of 0.5 to 2 model
// units turning by at most 30 degrees at a node, radii up to 0.1, so that
// every ring vertex can be carried forward.
#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace
{

using KesraTest::TestStreamline;
using Vec = KesraMathKit::TKesraVector3<double>;

constexpr double kNear = 1e-9;

Vec Unit(Vec v)
{
    v.Normalize();
    return v;
}

Vec Read(bool (TestStreamline::*get)(int, int, double* const) const, const TestStreamline& tube,
         int node, int slice)
{
    Vec v;
    EXPECT_TRUE((tube.*get)(node, slice, &v.x));
    return v;
}

class StreamlinePropertyTest : public ::testing::TestWithParam<unsigned>
{
};

TEST_P(StreamlinePropertyTest, RingsAndNormalsOfASmoothTube)
{
    std::mt19937 random(GetParam());
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    std::normal_distribution<double> gauss;
    const auto randomUnit = [&] { return Unit(Vec(gauss(random), gauss(random), gauss(random))); };

    const int nodeCount = 2 + static_cast<int>(random() % 11);
    const int slices = 3 + static_cast<int>(random() % 22);
    const double radius = 0.02 + 0.08 * unit(random);
    std::vector<Vec> nodes = {randomUnit() * 5.0};
    Vec direction = randomUnit();
    for (int i = 1; i < nodeCount; ++i)
    {
        nodes.push_back(nodes.back() + direction * (0.5 + 1.5 * unit(random)));
        // A push of at most half a unit turns by at most 30 degrees.
        direction = Unit(direction + randomUnit() * (0.5 * unit(random)));
    }
    TestStreamline tube;
    ASSERT_TRUE(tube.Create(nodeCount, slices, radius, 1.0));
    for (int i = 0; i < nodeCount; ++i)
    {
        ASSERT_TRUE(tube.SetNodeCoord(i, &nodes[static_cast<std::size_t>(i)].x));
    }
    ASSERT_TRUE(tube.GenerationStreamline3D());

    for (int i = 0; i < nodeCount; ++i)
    {
        const Vec node = nodes[static_cast<std::size_t>(i)];
        // The axis at ring 0 is the first segment, elsewhere the incoming one.
        const Vec axis = Unit(nodes[static_cast<std::size_t>(i == 0 ? 1 : i)] -
                              nodes[static_cast<std::size_t>(i == 0 ? 0 : i - 1)]);
        const Vec plane = i == 0 || i == nodeCount - 1
                              ? axis
                              : Unit(axis + Unit(nodes[static_cast<std::size_t>(i + 1)] - node));
        for (int j = 0; j < slices; ++j)
        {
            SCOPED_TRACE(::testing::Message() << "node " << i << ", slice " << j);
            const Vec vertex = Read(&TestStreamline::GetSliceNodeCoord, tube, i, j);
            const Vec offset = vertex - node;
            EXPECT_NEAR(0.0, plane.Dot(offset), kNear) << "off the cutting plane";
            // Sliding along a segment keeps the distance from its axis.
            EXPECT_NEAR(radius, (offset - axis * offset.Dot(axis)).Length(), kNear);
            if (i == 0)
            {
                const Vec next = Read(&TestStreamline::GetSliceNodeCoord, tube, 0, (j + 1) % slices);
                EXPECT_GT(offset.Cross(next - node).Dot(axis), 0.0) << "not counter-clockwise";
            }
            else
            {
                const Vec carried = vertex - Read(&TestStreamline::GetSliceNodeCoord, tube, i - 1, j);
                EXPECT_NEAR(0.0, carried.Cross(axis).Length(), kNear) << "not along the segment";
            }
            const Vec normal = Read(&TestStreamline::GetSliceNodeNormal, tube, i, j);
            EXPECT_NEAR(1.0, normal.Length(), kNear);
            EXPECT_GT(normal.Dot(Unit(offset)), 0.5) << "not pointing away from the axis";
        }
    }
}

INSTANTIATE_TEST_SUITE_P(RandomPolylines, StreamlinePropertyTest, ::testing::Range(1u, 41u));

} // namespace
