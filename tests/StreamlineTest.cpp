#include "Engine/Streamline.h"
#include "Engine/StreamlineFactory.h"
#include "MathKit/Vector3.h"
#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <vector>

namespace
{

using KesraTest::TestStreamline;
using Vec = KesraMathKit::TKesraVector3<double>;

constexpr double kNear = 1e-12;
const double kHalfSqrt2 = std::sqrt(2.0) / 2.0;

// False when a node is refused.
bool SetNodes(TestStreamline& tube, std::initializer_list<Vec> nodes)
{
    int node = 0;
    for (Vec p : nodes)
    {
        if (!tube.SetNodeCoord(node++, &p.x))
        {
            return false;
        }
    }
    return true;
}

// Creates a tube over the nodes and generates it; false when a step is refused.
bool MakeTube(TestStreamline& tube, int slices, double radius, std::initializer_list<Vec> nodes)
{
    return tube.Create(static_cast<int>(nodes.size()), slices, radius, 1.0) &&
           SetNodes(tube, nodes) && tube.GenerationStreamline3D();
}

Vec Vertex(const TestStreamline& tube, int node, int slice)
{
    Vec v;
    EXPECT_TRUE(tube.GetSliceNodeCoord(node, slice, &v.x));
    return v;
}

Vec Normal(const TestStreamline& tube, int node, int slice)
{
    Vec n;
    EXPECT_TRUE(tube.GetSliceNodeNormal(node, slice, &n.x));
    return n;
}

void ExpectNear(const Vec& expected, const Vec& actual, double tolerance = kNear)
{
    EXPECT_NEAR(expected.x, actual.x, tolerance);
    EXPECT_NEAR(expected.y, actual.y, tolerance);
    EXPECT_NEAR(expected.z, actual.z, tolerance);
}

void ExpectRing(const TestStreamline& tube, int node, std::initializer_list<Vec> ring)
{
    int slice = 0;
    for (const Vec& expected : ring)
    {
        SCOPED_TRACE(::testing::Message() << "ring vertex (" << node << ", " << slice << ")");
        ExpectNear(expected, Vertex(tube, node, slice++));
    }
}

void ExpectNormals(const TestStreamline& tube, int node, std::initializer_list<Vec> normals)
{
    int slice = 0;
    for (const Vec& expected : normals)
    {
        SCOPED_TRACE(::testing::Message() << "normal (" << node << ", " << slice << ")");
        ExpectNear(expected, Normal(tube, node, slice++));
    }
}

// ---- Lifecycle ----------------------------------------------------------------

TEST(StreamlineTest, DefaultsAndEverythingRefusedBeforeCreate)
{
    TestStreamline tube;
    EXPECT_FALSE(tube.IsCreate());
    EXPECT_EQ(0, tube.GetNodes());
    EXPECT_EQ(0, tube.GetSlices());
    EXPECT_TRUE(tube.GetDrawStreamline());
    EXPECT_EQ(1.0, tube.Radius());
    EXPECT_EQ(1.0, tube.AuxiliarySize());

    double xyz[3] = {1, 2, 3};
    unsigned char rgba[4] = {1, 2, 3, 4};
    EXPECT_FALSE(tube.Delete());
    EXPECT_FALSE(tube.GenerationStreamline3D());
    EXPECT_FALSE(tube.SetNodeCoord(0, xyz));
    EXPECT_FALSE(tube.GetNodeCoord(0, xyz));
    EXPECT_FALSE(tube.SetNodeColor(0, rgba));
    EXPECT_FALSE(tube.GetNodeColor(0, rgba));
    EXPECT_FALSE(tube.SetStreamlineNodeColor(0, 1, 2, 3, 4));
    EXPECT_FALSE(tube.SetSliceNodeCoord(0, 0, xyz));
    EXPECT_FALSE(tube.GetSliceNodeCoord(0, 0, xyz));
    EXPECT_FALSE(tube.SetSliceNodeNormal(0, 0, xyz));
    EXPECT_FALSE(tube.GetSliceNodeNormal(0, 0, xyz));
    EXPECT_EQ(1.0, xyz[0]);
    EXPECT_EQ(1, rgba[0]);
}

TEST(StreamlineTest, CreateRefusesBadArgumentsAndKeepsTheOldValues)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    TestStreamline tube;
    EXPECT_FALSE(tube.Create(1, 8, 2.0, 3.0));
    EXPECT_FALSE(tube.Create(2, 0, 2.0, 3.0));
    EXPECT_FALSE(tube.Create(2, 8, 0.0, 3.0));
    EXPECT_FALSE(tube.Create(2, 8, -1.0, 3.0));
    EXPECT_FALSE(tube.Create(2, 8, nan, 3.0));
    EXPECT_FALSE(tube.Create(2, 8, 2.0, 0.0));
    EXPECT_FALSE(tube.Create(2, 8, 2.0, nan));
    EXPECT_FALSE(tube.IsCreate());
    EXPECT_EQ(0, tube.GetNodes());
    EXPECT_EQ(0, tube.GetSlices());
    EXPECT_EQ(1.0, tube.Radius());
    EXPECT_EQ(1.0, tube.AuxiliarySize());
}

TEST(StreamlineTest, CreateSizesZeroedNodesAndRings)
{
    for (const int slices : {1, 5, 30})
    {
        TestStreamline tube;
        ASSERT_TRUE(tube.Create(3, slices, 2.0, 3.0));
        EXPECT_TRUE(tube.IsCreate());
        EXPECT_EQ(3, tube.GetNodes());
        EXPECT_EQ(slices, tube.GetSlices());
        EXPECT_EQ(2.0, tube.Radius());
        EXPECT_EQ(3.0, tube.AuxiliarySize());
        for (int node = 0; node < 3; ++node)
        {
            Vec p(9, 9, 9);
            EXPECT_TRUE(tube.GetNodeCoord(node, &p.x));
            EXPECT_EQ(Vec(0, 0, 0), p);
            EXPECT_EQ(Vec(0, 0, 0), Vertex(tube, node, slices - 1));
            EXPECT_EQ(Vec(0, 0, 0), Normal(tube, node, slices - 1));
            double untouched[3] = {9, 9, 9};
            EXPECT_FALSE(tube.GetSliceNodeCoord(node, slices, untouched));
            EXPECT_FALSE(tube.GetSliceNodeNormal(node, -1, untouched));
            EXPECT_EQ(9.0, untouched[0]);
        }
    }
}

TEST(StreamlineTest, RefusedCreateStillDiscardsTheTube)
{
    TestStreamline tube;
    ASSERT_TRUE(tube.Create(4, 6, 2.0, 3.0));
    EXPECT_FALSE(tube.Create(1, 8, 1.0, 1.0));
    EXPECT_FALSE(tube.IsCreate());
    EXPECT_EQ(4, tube.GetNodes());
    EXPECT_EQ(6, tube.GetSlices());
    EXPECT_EQ(2.0, tube.Radius());
    double xyz[3];
    EXPECT_FALSE(tube.GetNodeCoord(0, xyz));
    EXPECT_FALSE(tube.Delete());
}

TEST(StreamlineTest, CreateAgainStartsFromFreshRecords)
{
    TestStreamline tube;
    ASSERT_TRUE(MakeTube(tube, 4, 1.0, {Vec(1, 2, 3), Vec(4, 5, 6)}));
    ASSERT_TRUE(tube.Create(3, 4, 1.0, 1.0));
    Vec p;
    ASSERT_TRUE(tube.GetNodeCoord(0, &p.x));
    EXPECT_EQ(Vec(0, 0, 0), p);
    EXPECT_EQ(Vec(0, 0, 0), Vertex(tube, 0, 1));
}

TEST(StreamlineTest, DeleteKeepsTheLastCounts)
{
    TestStreamline tube;
    ASSERT_TRUE(tube.Create(5, 7, 1.0, 1.0));
    EXPECT_TRUE(tube.Delete());
    EXPECT_FALSE(tube.IsCreate());
    EXPECT_EQ(5, tube.GetNodes());
    EXPECT_EQ(7, tube.GetSlices());
    EXPECT_FALSE(tube.Delete());
    EXPECT_FALSE(tube.GenerationStreamline3D());
}

TEST(StreamlineTest, DrawFlagIsStoredOnly)
{
    TestStreamline tube;
    tube.SetDrawStreamline(false);
    EXPECT_FALSE(tube.GetDrawStreamline());
    tube.SetDrawStreamline(true);
    EXPECT_TRUE(tube.GetDrawStreamline());
}

// ---- Node and ring accessors -----------------------------------------------------

TEST(StreamlineTest, NodeAccessorsRefuseOutOfRangeAndNullBuffers)
{
    TestStreamline tube;
    ASSERT_TRUE(tube.Create(3, 4, 1.0, 1.0));
    double xyz[3] = {7, 8, 9};
    unsigned char rgba[4] = {7, 8, 9, 10};
    for (const int node : {-1, 3})
    {
        EXPECT_FALSE(tube.SetNodeCoord(node, xyz));
        EXPECT_FALSE(tube.GetNodeCoord(node, xyz));
        EXPECT_FALSE(tube.SetNodeColor(node, rgba));
        EXPECT_FALSE(tube.GetNodeColor(node, rgba));
        EXPECT_FALSE(tube.SetStreamlineNodeColor(node, 1, 2, 3, 4));
    }
    EXPECT_FALSE(tube.SetNodeCoord(0, nullptr));
    EXPECT_FALSE(tube.GetNodeCoord(0, nullptr));
    EXPECT_FALSE(tube.SetNodeColor(0, nullptr));
    EXPECT_FALSE(tube.GetNodeColor(0, nullptr));
    EXPECT_EQ(7.0, xyz[0]);
    EXPECT_EQ(7, rgba[0]);

    ASSERT_TRUE(tube.SetNodeCoord(2, xyz));
    std::array<double, 3> read = {0, 0, 0};
    ASSERT_TRUE(tube.GetNodeCoord(2, read.data()));
    EXPECT_EQ((std::array<double, 3>{7, 8, 9}), read);
}

TEST(StreamlineTest, NodeColorIsReadAsThreeBytes)
{
    TestStreamline tube;
    ASSERT_TRUE(tube.Create(2, 4, 1.0, 1.0));
    ASSERT_TRUE(tube.SetStreamlineNodeColor(0, 10, 20, 30, 40));
    using Bytes = std::array<unsigned char, 4>;
    Bytes buffer = {99, 99, 99, 99};
    ASSERT_TRUE(tube.GetNodeColor(0, buffer.data()));
    EXPECT_EQ((Bytes{10, 20, 30, 99}), buffer);

    Bytes rgba = {1, 2, 3, 4};
    ASSERT_TRUE(tube.SetNodeColor(1, rgba.data()));
    ASSERT_TRUE(tube.GetNodeColor(1, buffer.data()));
    EXPECT_EQ((Bytes{1, 2, 3, 99}), buffer);
}

TEST(StreamlineTest, RingAccessorsTestNodeAndRingIndex)
{
    TestStreamline tube;
    ASSERT_TRUE(tube.Create(2, 3, 1.0, 1.0));
    const double xyz[3] = {1, 2, 3};
    const double normal[3] = {0, 0, 1};
    ASSERT_TRUE(tube.SetSliceNodeCoord(1, 2, xyz));
    ASSERT_TRUE(tube.SetSliceNodeNormal(1, 2, normal));
    EXPECT_EQ(Vec(1, 2, 3), Vertex(tube, 1, 2));
    EXPECT_EQ(Vec(0, 0, 1), Normal(tube, 1, 2));
    EXPECT_EQ(Vec(0, 0, 0), Vertex(tube, 0, 2));

    for (const auto& [node, slice] : std::vector<std::array<int, 2>>{{-1, 0}, {2, 0}, {0, -1}, {0, 3}})
    {
        EXPECT_FALSE(tube.SetSliceNodeCoord(node, slice, xyz));
        EXPECT_FALSE(tube.SetSliceNodeNormal(node, slice, xyz));
        double untouched[3] = {9, 9, 9};
        EXPECT_FALSE(tube.GetSliceNodeCoord(node, slice, untouched));
        EXPECT_FALSE(tube.GetSliceNodeNormal(node, slice, untouched));
        EXPECT_EQ(9.0, untouched[0]);
    }
    EXPECT_FALSE(tube.SetSliceNodeCoord(0, 0, nullptr));
    EXPECT_FALSE(tube.GetSliceNodeNormal(0, 0, nullptr));
}

TEST(StreamlineTest, CopiesAreDeep)
{
    TestStreamline source;
    ASSERT_TRUE(source.Create(3, 5, 0.5, 2.0));
    ASSERT_TRUE(SetNodes(source, {Vec(0, 0, 0), Vec(0, 0, 1), Vec(1, 0, 1)}));
    ASSERT_TRUE(source.GenerationStreamline3D());

    TestStreamline constructed(source);
    TestStreamline assigned;
    assigned = source;
    for (TestStreamline* copy : {&constructed, &assigned})
    {
        EXPECT_TRUE(copy->IsCreate());
        EXPECT_EQ(0.5, copy->Radius());
        EXPECT_EQ(2.0, copy->AuxiliarySize());
        for (int node = 0; node < 3; ++node)
        {
            for (int slice = 0; slice < 5; ++slice)
            {
                EXPECT_EQ(Vertex(source, node, slice), Vertex(*copy, node, slice));
                EXPECT_EQ(Normal(source, node, slice), Normal(*copy, node, slice));
            }
        }
        ASSERT_TRUE(SetNodes(*copy, {Vec(5, 5, 5), Vec(6, 5, 5), Vec(6, 6, 5)}));
        ASSERT_TRUE(copy->GenerationStreamline3D());
    }
    Vec p;
    ASSERT_TRUE(source.GetNodeCoord(0, &p.x));
    EXPECT_EQ(Vec(0, 0, 0), p);
    ExpectRing(source, 2, {Vec(1, 0, 0.5)});
    EXPECT_NE(Vertex(source, 2, 0), Vertex(constructed, 2, 0));
}

TEST(StreamlineTest, FactoryDoubleMakesSeparateUncreatedStreamlines)
{
    KesraTest::TestStreamlineFactory factory;
    KesraEngine::IKesraStreamlineFactory& asInterface = factory;
    KesraEngine::CKesraStreamline* first = asInterface.MakeStreamline();
    KesraEngine::CKesraStreamline* second = asInterface.MakeStreamline();
    ASSERT_NE(nullptr, first);
    ASSERT_NE(first, second);
    EXPECT_EQ(2, factory.MadeCount());
    EXPECT_FALSE(first->IsCreate());
    ASSERT_TRUE(first->Create(2, 3, 1.0, 1.0));
    EXPECT_TRUE(first->GenerationStreamline3D());
    EXPECT_FALSE(second->IsCreate());
}

// ---- Generation: worked cases ----------------------------------------------------

TEST(StreamlineGenerationTest, StraightTube)
{
    TestStreamline tube;
    ASSERT_TRUE(MakeTube(tube, 4, 1.0, {Vec(0, 0, 0), Vec(0, 0, 1), Vec(0, 0, 2)}));
    for (int node = 0; node < 3; ++node)
    {
        const double z = node;
        ExpectRing(tube, node, {Vec(1, 0, z), Vec(0, 1, z), Vec(-1, 0, z), Vec(0, -1, z)});
        ExpectNormals(tube, node, {Vec(1, 0, 0), Vec(0, 1, 0), Vec(-1, 0, 0), Vec(0, -1, 0)});
    }
}

TEST(StreamlineGenerationTest, FirstRingCarriesTheAngleSum)
{
    // Along +z from the origin both rotations are the identity, so ring 0 is
    // exactly (r cos t, r sin t, 0) with t the carried sum of 2 pi / S.
    constexpr int kSlices = 17;
    constexpr double kRadius = 0.75;
    TestStreamline tube;
    ASSERT_TRUE(MakeTube(tube, kSlices, kRadius, {Vec(0, 0, 0), Vec(0, 0, 3)}));

    const double step = 2.0 * std::acos(-1.0) / kSlices;
    double carried = 0.0;
    int differFromProduct = 0;
    for (int j = 0; j < kSlices; ++j)
    {
        const Vec expected(kRadius * std::cos(carried), kRadius * std::sin(carried), 0.0);
        const Vec fromProduct(kRadius * std::cos(j * step), kRadius * std::sin(j * step), 0.0);
        EXPECT_EQ(expected, Vertex(tube, 0, j)) << "vertex " << j;
        differFromProduct += expected != fromProduct ? 1 : 0;
        carried += step;
    }
    EXPECT_GT(differFromProduct, 0) << "S no longer tells the carried sum from j * step";
}

TEST(StreamlineGenerationTest, RightAngleBend)
{
    TestStreamline tube;
    ASSERT_TRUE(MakeTube(tube, 4, 0.5, {Vec(0, 0, 0), Vec(0, 0, 1), Vec(1, 0, 1)}));
    ExpectRing(tube, 1, {Vec(0.5, 0, 0.5), Vec(0, 0.5, 1), Vec(-0.5, 0, 1.5), Vec(0, -0.5, 1)});
    ExpectNormals(tube, 1, {Vec(kHalfSqrt2, 0, -kHalfSqrt2), Vec(0, 1, 0),
                            Vec(-kHalfSqrt2, 0, kHalfSqrt2), Vec(0, -1, 0)});
    ExpectRing(tube, 2, {Vec(1, 0, 0.5), Vec(1, 0.5, 1), Vec(1, 0, 1.5), Vec(1, -0.5, 1)});
    ExpectNormals(tube, 2, {Vec(0, 0, -1), Vec(0, 1, 0), Vec(0, 0, 1), Vec(0, -1, 0)});
}

TEST(StreamlineGenerationTest, FirstSegmentAlongX)
{
    const double h = std::sqrt(3.0) / 2.0;
    for (const double length : {2.0, -2.0})
    {
        SCOPED_TRACE(length);
        TestStreamline tube;
        ASSERT_TRUE(MakeTube(tube, 3, 1.0, {Vec(0, 0, 0), Vec(length, 0, 0)}));
        // u = (0, 0, -d.x), v = (0, 1, 0).
        const double u = length > 0.0 ? -1.0 : 1.0;
        ExpectRing(tube, 0, {Vec(0, 0, u), Vec(0, h, -0.5 * u), Vec(0, -h, -0.5 * u)});
        ExpectRing(tube, 1, {Vec(length, 0, u), Vec(length, h, -0.5 * u), Vec(length, -h, -0.5 * u)});
        for (int node = 0; node < 2; ++node)
        {
            for (int j = 0; j < 3; ++j)
            {
                ExpectNear(Vertex(tube, node, j) - Vec(node * length, 0, 0), Normal(tube, node, j));
            }
        }
    }
}

TEST(StreamlineGenerationTest, CoincidentNodesGiveFlatRingsAndZeroNormals)
{
    TestStreamline tube;
    ASSERT_TRUE(tube.Create(3, 4, 1.0, 1.0));
    ASSERT_TRUE(tube.GenerationStreamline3D());
    for (int node = 0; node < 3; ++node)
    {
        ExpectRing(tube, node, {Vec(1, 0, 0), Vec(0, 1, 0), Vec(-1, 0, 0), Vec(0, -1, 0)});
        for (int j = 0; j < 4; ++j)
        {
            EXPECT_EQ(Vec(0, 0, 0), Normal(tube, node, j));
        }
    }
}

TEST(StreamlineGenerationTest, ReversalRepeatsTheFirstRing)
{
    TestStreamline tube;
    ASSERT_TRUE(MakeTube(tube, 6, 1.0, {Vec(0, 0, 0), Vec(0, 0, 1), Vec(0, 0, 0)}));
    for (int j = 0; j < 6; ++j)
    {
        EXPECT_EQ(Vertex(tube, 0, j), Vertex(tube, 1, j));
        EXPECT_EQ(Vertex(tube, 0, j), Vertex(tube, 2, j));
    }
}

TEST(StreamlineGenerationTest, OneOrTwoVerticesPerRingHaveZeroNormals)
{
    for (const int slices : {1, 2})
    {
        TestStreamline tube;
        ASSERT_TRUE(MakeTube(tube, slices, 1.0, {Vec(0, 0, 0), Vec(0, 1, 1), Vec(1, 1, 2)}));
        for (int node = 0; node < 3; ++node)
        {
            for (int j = 0; j < slices; ++j)
            {
                EXPECT_EQ(Vec(0, 0, 0), Normal(tube, node, j)) << slices << " " << node << " " << j;
            }
        }
    }
}

TEST(StreamlineGenerationTest, SharpBendLeavesUnplaceableVerticesAlone)
{
    TestStreamline tube;
    ASSERT_TRUE(MakeTube(tube, 4, 0.5, {Vec(0, 0, 0), Vec(0, 0, 1), Vec(0, 0.2, 0.2)}));
    EXPECT_EQ(Vec(0, 0, 0), Vertex(tube, 1, 1));
    ExpectNear(Vec(0, -0.5, 5.061553), Vertex(tube, 1, 3), 1e-6);
    EXPECT_EQ(Vec(0, 0, 0), Vertex(tube, 2, 1));
}

TEST(StreamlineGenerationTest, UnplaceableVerticesKeepEarlierValues)
{
    TestStreamline tube;
    ASSERT_TRUE(MakeTube(tube, 4, 0.5, {Vec(0, 0, 0), Vec(0, 0, 1), Vec(0, 0, 2)}));
    const Vec fromStraightRun = Vertex(tube, 1, 1);
    ExpectNear(Vec(0, 0.5, 1), fromStraightRun);

    ASSERT_TRUE(SetNodes(tube, {Vec(0, 0, 0), Vec(0, 0, 1), Vec(0, 0.2, 0.2)}));
    ASSERT_TRUE(tube.GenerationStreamline3D());
    EXPECT_EQ(fromStraightRun, Vertex(tube, 1, 1));

    // A vertex the host wrote is kept the same way, while placed ones are
    // overwritten.
    const double hostVertex[3] = {7, 8, 9};
    ASSERT_TRUE(tube.SetSliceNodeCoord(1, 1, hostVertex));
    ASSERT_TRUE(tube.SetSliceNodeCoord(1, 3, hostVertex));
    ASSERT_TRUE(tube.GenerationStreamline3D());
    EXPECT_EQ(Vec(7, 8, 9), Vertex(tube, 1, 1));
    ExpectNear(Vec(0, -0.5, 5.061553), Vertex(tube, 1, 3), 1e-6);
}

TEST(StreamlineGenerationTest, RepeatedNodeAtABend)
{
    TestStreamline tube;
    ASSERT_TRUE(MakeTube(tube, 4, 0.5, {Vec(0, 0, 0), Vec(0, 0, 1), Vec(0, 0, 1), Vec(1, 0, 1)}));
    ExpectRing(tube, 1, {Vec(0.5, 0, 1), Vec(0, 0.5, 1), Vec(-0.5, 0, 1), Vec(0, -0.5, 1)});
    // The repeated node's segment has no direction: only the vertices already
    // on its cutting plane x = 0 are copied.
    EXPECT_EQ(Vec(0, 0, 0), Vertex(tube, 2, 0));
    EXPECT_EQ(Vertex(tube, 1, 1), Vertex(tube, 2, 1));
    EXPECT_EQ(Vec(0, 0, 0), Vertex(tube, 2, 2));
    EXPECT_EQ(Vertex(tube, 1, 3), Vertex(tube, 2, 3));
    ExpectRing(tube, 3, {Vec(1, 0, 0), Vec(1, 0.5, 1), Vec(1, 0, 0), Vec(1, -0.5, 1)});
}

} // namespace
