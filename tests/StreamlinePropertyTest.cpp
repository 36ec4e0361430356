// Properties of generated tubes on random smooth polylines: segments of 0.5
// to 2 model units that turn by at most 30 degrees at a node, and radii up to
// 0.1, so that every ring vertex can be carried forward.
#include "MathKit/Vector3.h"
#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <cmath>
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

class SmoothTube
{
public:
    explicit SmoothTube(unsigned seed) : m_random(seed)
    {
        const int nodeCount = Uniform(2, 12);
        slices = Uniform(3, 24);
        radius = Uniform(0.02, 0.1);
        Vec direction = RandomUnit();
        nodes.push_back(Vec(Uniform(-5.0, 5.0), Uniform(-5.0, 5.0), Uniform(-5.0, 5.0)));
        for (int i = 1; i < nodeCount; ++i)
        {
            nodes.push_back(nodes.back() + direction * Uniform(0.5, 2.0));
            // A push of at most half a unit turns by at most 30 degrees.
            direction = Unit(direction + RandomUnit() * Uniform(0.0, 0.5));
        }
        EXPECT_TRUE(tube.Create(nodeCount, slices, radius, 1.0));
        for (int i = 0; i < nodeCount; ++i)
        {
            EXPECT_TRUE(tube.SetNodeCoord(i, &nodes[static_cast<std::size_t>(i)].x));
        }
        EXPECT_TRUE(tube.GenerationStreamline3D());
    }

    int NodeCount() const { return static_cast<int>(nodes.size()); }
    const Vec& Node(int i) const { return nodes[static_cast<std::size_t>(i)]; }
    Vec Incoming(int i) const { return Unit(Node(i) - Node(i - 1)); }

    // The normal of the cutting plane of ring i >= 1.
    Vec CuttingNormal(int i) const
    {
        return i + 1 < NodeCount() ? Unit(Incoming(i) + Incoming(i + 1)) : Incoming(i);
    }

    Vec Vertex(int i, int j) const
    {
        Vec v;
        EXPECT_TRUE(tube.GetSliceNodeCoord(i, j, &v.x));
        return v;
    }

    Vec Normal(int i, int j) const
    {
        Vec n;
        EXPECT_TRUE(tube.GetSliceNodeNormal(i, j, &n.x));
        return n;
    }

    int slices = 0;
    double radius = 0.0;
    std::vector<Vec> nodes;
    TestStreamline tube;

private:
    int Uniform(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_random); }
    double Uniform(double low, double high)
    {
        return std::uniform_real_distribution<double>(low, high)(m_random);
    }
    Vec RandomUnit()
    {
        std::normal_distribution<double> gauss;
        return Unit(Vec(gauss(m_random), gauss(m_random), gauss(m_random)));
    }

    std::mt19937 m_random;
};

class StreamlinePropertyTest : public ::testing::TestWithParam<unsigned>
{
};

TEST_P(StreamlinePropertyTest, FirstRingIsACounterClockwiseCircleAroundTheFirstSegment)
{
    const SmoothTube t(GetParam());
    const Vec axis = t.Incoming(1);
    for (int j = 0; j < t.slices; ++j)
    {
        const Vec offset = t.Vertex(0, j) - t.Node(0);
        const Vec nextOffset = t.Vertex(0, (j + 1) % t.slices) - t.Node(0);
        EXPECT_NEAR(t.radius, offset.Length(), kNear);
        EXPECT_NEAR(0.0, offset.Dot(axis), kNear);
        EXPECT_GT(offset.Cross(nextOffset).Dot(axis), 0.0) << "vertex " << j;
    }
}

TEST_P(StreamlinePropertyTest, LaterRingsLieOnTheirCuttingPlanesAlongTheIncomingSegment)
{
    const SmoothTube t(GetParam());
    for (int i = 1; i < t.NodeCount(); ++i)
    {
        const Vec plane = t.CuttingNormal(i);
        const Vec incoming = t.Incoming(i);
        for (int j = 0; j < t.slices; ++j)
        {
            SCOPED_TRACE(::testing::Message() << "vertex (" << i << ", " << j << ")");
            const Vec vertex = t.Vertex(i, j);
            const Vec carried = vertex - t.Vertex(i - 1, j);
            EXPECT_NEAR(0.0, plane.Dot(vertex - t.Node(i)), kNear);
            EXPECT_NEAR(0.0, carried.Cross(incoming).Length(), kNear);
            EXPECT_GT(carried.Dot(incoming), 0.0);
            // Sliding along the segment keeps the distance from its axis.
            const Vec offset = vertex - t.Node(i);
            EXPECT_NEAR(t.radius, (offset - incoming * offset.Dot(incoming)).Length(), kNear);
        }
    }
}

TEST_P(StreamlinePropertyTest, NormalsAreUnitAndPointAwayFromTheAxis)
{
    const SmoothTube t(GetParam());
    for (int i = 0; i < t.NodeCount(); ++i)
    {
        for (int j = 0; j < t.slices; ++j)
        {
            SCOPED_TRACE(::testing::Message() << "normal (" << i << ", " << j << ")");
            const Vec normal = t.Normal(i, j);
            EXPECT_NEAR(1.0, normal.Length(), kNear);
            EXPECT_GT(normal.Dot(Unit(t.Vertex(i, j) - t.Node(i))), 0.5);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(RandomPolylines, StreamlinePropertyTest, ::testing::Range(1u, 41u));

} // namespace
