// Tube generation against a saved run: the fingerprints and samples below
// were taken from the generator as first written, one step per vertex through
// the plane query, before it was tuned. Any change of a single bit of a ring
// vertex or normal, the sign of a zero included, changes a fingerprint.
#include "support/TestDoubles.h"
#include "support/TubeScenes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

namespace
{

using KesraTest::GenerateOver;
using KesraTest::HelixNodes;
using KesraTest::KinkedNodes;
using KesraTest::TestStreamline;
using KesraTest::TubeFingerprint;
using Vec = KesraTest::TubeVector;

Vec Vertex(const TestStreamline& tube, int node, int slice)
{
    Vec v(-7, -7, -7);
    tube.GetSliceNodeCoord(node, slice, &v.x);
    return v;
}

Vec Normal(const TestStreamline& tube, int node, int slice)
{
    Vec v(-7, -7, -7);
    tube.GetSliceNodeNormal(node, slice, &v.x);
    return v;
}

// Exact, and -0.0 apart from 0.0.
void ExpectSameBits(const Vec& expected, const Vec& actual)
{
    const double e[3] = {expected.x, expected.y, expected.z};
    const double a[3] = {actual.x, actual.y, actual.z};
    for (int k = 0; k < 3; ++k)
    {
        EXPECT_EQ(e[k], a[k]) << "component " << k;
        EXPECT_EQ(std::signbit(e[k]), std::signbit(a[k])) << "component " << k;
    }
}

TEST(StreamlineReferenceTest, HelixMatchesSavedRun)
{
    TestStreamline tube;
    ASSERT_TRUE(tube.Create(64, 8, 0.4, 1.0));
    ASSERT_TRUE(GenerateOver(tube, HelixNodes(64)));
    EXPECT_EQ(UINT64_C(0x0669b5922efb5b8c), TubeFingerprint(tube));
    ExpectSameBits(Vec(-0x1.4eafb3c89af31p-1, -0x1.635ce53353d56p+1, 0x1.5d7d625cb24ap+2),
                   Vertex(tube, 63, 5));
    ExpectSameBits(Vec(0x1.e23300cf320fcp-3, 0x1.4a47cb4be45c3p-2, -0x1.d56783f5456bp-1),
                   Normal(tube, 63, 5));
    ExpectSameBits(Vec(0x1.77b40935dc45cp-2, -0x1.a7665e3c45c21p+1, 0x1.450460adfdc12p+1),
                   Vertex(tube, 30, 2));
    ExpectSameBits(Vec(0x1.1295584ecd7ccp-3, -0x1.9555f41c25ce1p-1, -0x1.312e035977a55p-1),
                   Normal(tube, 30, 2));

    // An odd ring: no vertex has an opposite one.
    TestStreamline five;
    ASSERT_TRUE(five.Create(64, 5, 0.4, 1.0));
    ASSERT_TRUE(GenerateOver(five, HelixNodes(64)));
    EXPECT_EQ(UINT64_C(0xf56c118c71a10935), TubeFingerprint(five));
}

TEST(StreamlineReferenceTest, TinyAndReversedSegmentsMatchSavedRun)
{
    TestStreamline tube;
    ASSERT_TRUE(tube.Create(16, 8, 0.5, 1.0));
    ASSERT_TRUE(GenerateOver(tube, KinkedNodes()));
    EXPECT_EQ(UINT64_C(0x922ea9c908013cb1), TubeFingerprint(tube));
    // A ring repeated at a reversal has no area: its normals are negated
    // zeros.
    ExpectSameBits(Vec(0x1.c7b23092b44d9p-1, -0x1.c7b23092b44d9p-1, 0x1.a725763f15237p+0),
                   Vertex(tube, 8, 6));
    ExpectSameBits(Vec(-0.0, -0.0, -0.0), Normal(tube, 8, 6));

    // Vertices that cannot be placed keep the previous run's values.
    ASSERT_TRUE(GenerateOver(tube, HelixNodes(16)));
    EXPECT_EQ(UINT64_C(0x3b65216d67e5fa2c), TubeFingerprint(tube));

    TestStreamline thin;
    ASSERT_TRUE(thin.Create(16, 3, 0.05, 1.0));
    ASSERT_TRUE(GenerateOver(thin, KinkedNodes()));
    EXPECT_EQ(UINT64_C(0x0689623a3d13e1f1), TubeFingerprint(thin));
}

TEST(StreamlineReferenceTest, FlatCopyHoldsEveryRingVertexAndNormalInOrder)
{
    TestStreamline tube;
    std::vector<double> vertices(3 * 16 * 5, -7.0);
    EXPECT_FALSE(tube.CopyTubeGeometry(vertices.data(), vertices.data()));
    EXPECT_EQ(-7.0, vertices[0]) << "written while not created";

    ASSERT_TRUE(tube.Create(16, 5, 0.5, 1.0));
    ASSERT_TRUE(GenerateOver(tube, KinkedNodes()));
    std::vector<double> normals(vertices.size(), -7.0);
    ASSERT_TRUE(tube.CopyTubeGeometry(vertices.data(), normals.data()));
    std::vector<float> verticesFloat(vertices.size(), -7.0f);
    std::vector<float> normalsFloat(vertices.size(), -7.0f);
    ASSERT_TRUE(tube.CopyTubeGeometry(verticesFloat.data(), nullptr));
    ASSERT_TRUE(tube.CopyTubeGeometry(nullptr, normalsFloat.data()));
    for (int i = 0; i < 16; ++i)
    {
        for (int j = 0; j < 5; ++j)
        {
            const std::size_t k = 3 * (5 * static_cast<std::size_t>(i) + j);
            ExpectSameBits(Vertex(tube, i, j), Vec(vertices[k], vertices[k + 1], vertices[k + 2]));
            ExpectSameBits(Normal(tube, i, j), Vec(normals[k], normals[k + 1], normals[k + 2]));
            const Vec v = Vertex(tube, i, j);
            const Vec n = Normal(tube, i, j);
            EXPECT_EQ(static_cast<float>(v.y), verticesFloat[k + 1]);
            EXPECT_EQ(static_cast<float>(n.z), normalsFloat[k + 2]);
        }
    }
}

} // namespace
