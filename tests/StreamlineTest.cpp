#include "Engine/StreamlineFactory.h"
#include "support/CameraTestSupport.h"
#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <tuple>
#include <utility>
#include <vector>

namespace
{

using KesraTest::ExpectVecNear;
using KesraTest::TestStreamline;
using Vec = KesraMathKit::TKesraVector3<double>;
using Bytes = std::array<unsigned char, 4>;

const double kHalfSqrt2 = std::sqrt(2.0) / 2.0;
const Vec kUntouched(-7, -7, -7);

// False when a node is refused.
bool SetNodes(TestStreamline& tube, std::initializer_list<Vec> nodes)
{
    int node = 0;
    return std::all_of(nodes.begin(), nodes.end(), [&](Vec p) { return tube.SetNodeCoord(node++, &p.x); });
}

// Creates a tube over the nodes and generates it; false when a step is refused.
bool MakeTube(TestStreamline& tube, int slices, double radius, std::initializer_list<Vec> nodes)
{
    return tube.Create(static_cast<int>(nodes.size()), slices, radius, 1.0) &&
           SetNodes(tube, nodes) && tube.GenerationStreamline3D();
}

// What a ring getter hands out, or kUntouched when it refuses.
template <bool (KesraEngine::CKesraStreamline::*Get)(int, int, double* const) const>
Vec Read(const TestStreamline& tube, int node, int slice)
{
    Vec v = kUntouched;
    (tube.*Get)(node, slice, &v.x);
    return v;
}
constexpr auto Vertex = &Read<&KesraEngine::CKesraStreamline::GetSliceNodeCoord>;
constexpr auto Normal = &Read<&KesraEngine::CKesraStreamline::GetSliceNodeNormal>;

Vec NodeCoord(const TestStreamline& tube, int node)
{
    Vec p = kUntouched;
    tube.GetNodeCoord(node, &p.x);
    return p;
}

// Compares ring (or, with Normal, the normals) of node with expected.
void ExpectRing(Vec (*read)(const TestStreamline&, int, int), const TestStreamline& tube, int node,
                std::initializer_list<Vec> expected)
{
    int slice = 0;
    for (const Vec& v : expected)
    {
        SCOPED_TRACE(::testing::Message() << "node " << node << ", slice " << slice);
        ExpectVecNear(v, read(tube, node, slice++), 1e-12);
    }
}

// Every ring operation refuses and leaves the caller's buffer alone.
void ExpectRingRefused(TestStreamline& tube, int node, int slice)
{
    Vec v = kUntouched;
    EXPECT_FALSE(tube.SetSliceNodeCoord(node, slice, &v.x));
    EXPECT_FALSE(tube.GetSliceNodeCoord(node, slice, &v.x));
    EXPECT_FALSE(tube.SetSliceNodeNormal(node, slice, &v.x));
    EXPECT_FALSE(tube.GetSliceNodeNormal(node, slice, &v.x));
    EXPECT_EQ(kUntouched, v);
}

// Every node and ring operation on node refuses.
void ExpectAllRefused(TestStreamline& tube, int node)
{
    Vec v = kUntouched;
    Bytes rgba = {7, 7, 7, 7};
    EXPECT_FALSE(tube.SetNodeCoord(node, &v.x));
    EXPECT_FALSE(tube.GetNodeCoord(node, &v.x));
    EXPECT_FALSE(tube.SetNodeColor(node, rgba.data()));
    EXPECT_FALSE(tube.GetNodeColor(node, rgba.data()));
    EXPECT_FALSE(tube.SetStreamlineNodeColor(node, 1, 2, 3, 4));
    EXPECT_EQ(kUntouched, v);
    EXPECT_EQ((Bytes{7, 7, 7, 7}), rgba);
    ExpectRingRefused(tube, node, 0);
}

// Node count, slice count, radius and auxiliary size.
std::tuple<int, int, double, double> Sizes(const TestStreamline& tube)
{
    return {tube.GetNodes(), tube.GetSlices(), tube.Radius(), tube.AuxiliarySize()};
}

TEST(StreamlineTest, LifecycleAndRefusals)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    TestStreamline tube;
    EXPECT_TRUE(tube.GetDrawStreamline());
    EXPECT_EQ(Sizes(tube), std::make_tuple(0, 0, 1.0, 1.0));
    EXPECT_FALSE(tube.IsCreate());
    ExpectAllRefused(tube, 0);
    EXPECT_FALSE(tube.GenerationStreamline3D());
    EXPECT_FALSE(tube.Delete());
    for (const auto& [nodes, slices, radius, auxiliary] :
         {std::make_tuple(1, 8, 2.0, 3.0), std::make_tuple(2, 0, 2.0, 3.0), std::make_tuple(2, 8, 0.0, 3.0),
          std::make_tuple(2, 8, nan, 3.0), std::make_tuple(2, 8, 2.0, -1.0)})
    {
        EXPECT_FALSE(tube.Create(nodes, slices, radius, auxiliary));
    }
    EXPECT_EQ(Sizes(tube), std::make_tuple(0, 0, 1.0, 1.0));

    ASSERT_TRUE(tube.Create(4, 6, 2.0, 3.0));
    EXPECT_TRUE(tube.IsCreate());
    // A refused Create still discards the tube, but keeps the counts.
    EXPECT_FALSE(tube.Create(1, 8, 1.0, 5.0));
    EXPECT_FALSE(tube.IsCreate());
    EXPECT_EQ(Sizes(tube), std::make_tuple(4, 6, 2.0, 3.0));
    ExpectAllRefused(tube, 0);

    ASSERT_TRUE(tube.Create(5, 7, 1.0, 1.0));
    EXPECT_TRUE(tube.Delete());
    EXPECT_FALSE(tube.Delete());
    EXPECT_EQ(Sizes(tube), std::make_tuple(5, 7, 1.0, 1.0));
    ExpectAllRefused(tube, 0);
    EXPECT_FALSE(tube.GenerationStreamline3D());

    tube.SetDrawStreamline(false);
    EXPECT_FALSE(tube.GetDrawStreamline());
}

TEST(StreamlineTest, CreateMakesZeroedRecordsOfTheSliceCount)
{
    for (const int slices : {1, 5, 30})
    {
        TestStreamline tube;
        ASSERT_TRUE(MakeTube(tube, 4, 1.0, {Vec(1, 2, 3), Vec(4, 5, 6)}));
        // A second Create starts from fresh records.
        ASSERT_TRUE(tube.Create(3, slices, 1.0, 1.0));
        EXPECT_EQ(Vec(0, 0, 0), NodeCoord(tube, 2));
        EXPECT_EQ(Vec(0, 0, 0), Vertex(tube, 0, slices - 1));
        EXPECT_EQ(Vec(0, 0, 0), Normal(tube, 2, 0));
        ExpectRingRefused(tube, 0, slices);
        ExpectRingRefused(tube, 2, -1);
        ExpectAllRefused(tube, 3);
        ExpectAllRefused(tube, -1);
    }
}

TEST(StreamlineTest, NodeAndRingAccessors)
{
    TestStreamline tube;
    ASSERT_TRUE(tube.Create(2, 3, 1.0, 1.0));
    Vec p(1, 2, 3);
    ASSERT_TRUE(tube.SetNodeCoord(1, &p.x));
    EXPECT_EQ(p, NodeCoord(tube, 1));
    ASSERT_TRUE(tube.SetSliceNodeCoord(1, 2, &p.x));
    ASSERT_TRUE(tube.SetSliceNodeNormal(0, 2, &p.x));
    EXPECT_EQ(p, Vertex(tube, 1, 2));
    EXPECT_EQ(p, Normal(tube, 0, 2));
    EXPECT_EQ(Vec(0, 0, 0), Vertex(tube, 0, 2));

    // Colours are read back as three bytes.
    Bytes buffer = {99, 99, 99, 99};
    ASSERT_TRUE(tube.SetStreamlineNodeColor(0, 10, 20, 30, 40));
    ASSERT_TRUE(tube.GetNodeColor(0, buffer.data()));
    EXPECT_EQ((Bytes{10, 20, 30, 99}), buffer);
    Bytes rgba = {1, 2, 3, 4};
    ASSERT_TRUE(tube.SetNodeColor(1, rgba.data()));
    ASSERT_TRUE(tube.GetNodeColor(1, buffer.data()));
    EXPECT_EQ((Bytes{1, 2, 3, 99}), buffer);

    EXPECT_FALSE(tube.SetNodeCoord(0, nullptr));
    EXPECT_FALSE(tube.GetNodeColor(0, nullptr));
    EXPECT_FALSE(tube.SetSliceNodeCoord(0, 0, nullptr));
    EXPECT_FALSE(tube.GetSliceNodeNormal(0, 0, nullptr));
}

TEST(StreamlineTest, CopiesAreDeep)
{
    TestStreamline source;
    ASSERT_TRUE(MakeTube(source, 5, 0.5, {Vec(0, 0, 0), Vec(0, 0, 1), Vec(1, 0, 1)}));
    const Vec vertex = Vertex(source, 2, 3);
    const Vec normal = Normal(source, 1, 4);

    TestStreamline constructed(source);
    TestStreamline assigned;
    assigned = source;
    for (TestStreamline* copy : {&constructed, &assigned})
    {
        EXPECT_EQ(0.5, copy->Radius());
        EXPECT_EQ(vertex, Vertex(*copy, 2, 3));
        EXPECT_EQ(normal, Normal(*copy, 1, 4));
        ASSERT_TRUE(SetNodes(*copy, {Vec(5, 5, 5), Vec(6, 5, 5), Vec(6, 6, 5)}));
        ASSERT_TRUE(copy->GenerationStreamline3D());
        EXPECT_NE(vertex, Vertex(*copy, 2, 3));
    }
    EXPECT_EQ(Vec(0, 0, 1), NodeCoord(source, 1));
    EXPECT_EQ(vertex, Vertex(source, 2, 3));
    EXPECT_EQ(normal, Normal(source, 1, 4));
}

// ---- Generation --------------------------------------------------------------

TEST(StreamlineGenerationTest, StraightTube)
{
    TestStreamline tube;
    ASSERT_TRUE(MakeTube(tube, 4, 1.0, {Vec(0, 0, 0), Vec(0, 0, 1), Vec(0, 0, 2)}));
    for (int node = 0; node < 3; ++node)
    {
        const double z = node;
        ExpectRing(Vertex, tube, node, {Vec(1, 0, z), Vec(0, 1, z), Vec(-1, 0, z), Vec(0, -1, z)});
        ExpectRing(Normal, tube, node, {Vec(1, 0, 0), Vec(0, 1, 0), Vec(-1, 0, 0), Vec(0, -1, 0)});
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
    for (int j = 0; j < kSlices; ++j, carried += step)
    {
        const Vec expected(kRadius * std::cos(carried), kRadius * std::sin(carried), 0.0);
        EXPECT_EQ(expected, Vertex(tube, 0, j)) << "vertex " << j;
        differFromProduct += expected != Vec(kRadius * std::cos(j * step), kRadius * std::sin(j * step), 0.0);
    }
    EXPECT_GT(differFromProduct, 0) << "S no longer tells the carried sum from j * step";
}

TEST(StreamlineGenerationTest, RightAngleBend)
{
    TestStreamline tube;
    ASSERT_TRUE(MakeTube(tube, 4, 0.5, {Vec(0, 0, 0), Vec(0, 0, 1), Vec(1, 0, 1)}));
    ExpectRing(Vertex, tube, 1, {Vec(0.5, 0, 0.5), Vec(0, 0.5, 1), Vec(-0.5, 0, 1.5), Vec(0, -0.5, 1)});
    ExpectRing(Normal, tube, 1, {Vec(kHalfSqrt2, 0, -kHalfSqrt2), Vec(0, 1, 0),
                                 Vec(-kHalfSqrt2, 0, kHalfSqrt2), Vec(0, -1, 0)});
    ExpectRing(Vertex, tube, 2, {Vec(1, 0, 0.5), Vec(1, 0.5, 1), Vec(1, 0, 1.5), Vec(1, -0.5, 1)});
    ExpectRing(Normal, tube, 2, {Vec(0, 0, -1), Vec(0, 1, 0), Vec(0, 0, 1), Vec(0, -1, 0)});
}

TEST(StreamlineGenerationTest, FirstSegmentAlongX)
{
    const double h = std::sqrt(3.0) / 2.0;
    for (const double x : {2.0, -2.0})
    {
        // The ring's frame is u = (0, 0, -d.x), v = (0, 1, 0).
        const double u = x > 0.0 ? -1.0 : 1.0;
        TestStreamline tube;
        ASSERT_TRUE(MakeTube(tube, 3, 1.0, {Vec(0, 0, 0), Vec(x, 0, 0)}));
        ExpectRing(Vertex, tube, 0, {Vec(0, 0, u), Vec(0, h, -0.5 * u), Vec(0, -h, -0.5 * u)});
        ExpectRing(Vertex, tube, 1, {Vec(x, 0, u), Vec(x, h, -0.5 * u), Vec(x, -h, -0.5 * u)});
        ExpectRing(Normal, tube, 1, {Vec(0, 0, u), Vec(0, h, -0.5 * u), Vec(0, -h, -0.5 * u)});
        ExpectRing(Normal, tube, 0, {Vec(0, 0, u), Vec(0, h, -0.5 * u), Vec(0, -h, -0.5 * u)});
    }
}

TEST(StreamlineGenerationTest, TinyFirstSegmentsStillOrientTheFirstRing)
{
    // Only an exactly zero first segment leaves the ring flat in z = 0; a
    // tiny one along x still turns it into x = 0. At 1e-160 the direction's x
    // rounds above 1 and must be limited before asin.
    for (const double length : {1e-9, 1e-160})
    {
        TestStreamline tube;
        ASSERT_TRUE(MakeTube(tube, 3, 1.0, {Vec(0, 0, 0), Vec(length, 0, 0)}));
        const double h = std::sqrt(3.0) / 2.0;
        ExpectRing(Vertex, tube, 0, {Vec(0, 0, -1), Vec(0, h, 0.5), Vec(0, -h, 0.5)});
    }
}

TEST(StreamlineGenerationTest, DegenerateTubesHaveZeroNormals)
{
    // Coincident nodes: flat rings about the origin. One or two vertices per
    // ring: the ring neighbours coincide and the corner terms vanish or cancel.
    for (const auto& [slices, nodes] : {std::make_pair(4, Vec(0, 0, 0)), std::make_pair(1, Vec(0, 1, 1)),
                                        std::make_pair(2, Vec(0, 1, 1))})
    {
        TestStreamline tube;
        ASSERT_TRUE(MakeTube(tube, slices, 1.0, {Vec(0, 0, 0), nodes, nodes * 2.0}));
        for (int node = 0; node < 3; ++node)
        {
            for (int j = 0; j < slices; ++j)
            {
                EXPECT_EQ(Vec(0, 0, 0), Normal(tube, node, j)) << slices << " " << node << " " << j;
            }
        }
    }
    TestStreamline flat;
    ASSERT_TRUE(MakeTube(flat, 4, 1.0, {Vec(0, 0, 0), Vec(0, 0, 0), Vec(0, 0, 0)}));
    ExpectRing(Vertex, flat, 2, {Vec(1, 0, 0), Vec(0, 1, 0), Vec(-1, 0, 0), Vec(0, -1, 0)});
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

TEST(StreamlineGenerationTest, UnplaceableVerticesKeepTheirValues)
{
    const Vec sharpEnd(0, 0.2, 0.2);
    const Vec landed(0, -0.5, 5.061553);
    TestStreamline tube;
    ASSERT_TRUE(MakeTube(tube, 4, 0.5, {Vec(0, 0, 0), Vec(0, 0, 1), sharpEnd}));
    EXPECT_EQ(Vec(0, 0, 0), Vertex(tube, 1, 1));
    ExpectVecNear(landed, Vertex(tube, 1, 3), 1e-6);
    EXPECT_EQ(Vec(0, 0, 0), Vertex(tube, 2, 1));

    // Values of an earlier, straight run, or written by the host, stay; placed
    // vertices are overwritten.
    ASSERT_TRUE(MakeTube(tube, 4, 0.5, {Vec(0, 0, 0), Vec(0, 0, 1), Vec(0, 0, 2)}));
    const Vec straight = Vertex(tube, 1, 1);
    ASSERT_TRUE(SetNodes(tube, {Vec(0, 0, 0), Vec(0, 0, 1), sharpEnd}));
    ASSERT_TRUE(tube.GenerationStreamline3D());
    EXPECT_EQ(straight, Vertex(tube, 1, 1));
    const Vec host(7, 8, 9);
    ASSERT_TRUE(tube.SetSliceNodeCoord(1, 1, &host.x));
    ASSERT_TRUE(tube.SetSliceNodeCoord(1, 3, &host.x));
    ASSERT_TRUE(tube.GenerationStreamline3D());
    EXPECT_EQ(host, Vertex(tube, 1, 1));
    ExpectVecNear(landed, Vertex(tube, 1, 3), 1e-6);
}

TEST(StreamlineGenerationTest, RepeatedNodeAtABend)
{
    TestStreamline tube;
    ASSERT_TRUE(MakeTube(tube, 4, 0.5, {Vec(0, 0, 0), Vec(0, 0, 1), Vec(0, 0, 1), Vec(1, 0, 1)}));
    ExpectRing(Vertex, tube, 1, {Vec(0.5, 0, 1), Vec(0, 0.5, 1), Vec(-0.5, 0, 1), Vec(0, -0.5, 1)});
    // The repeated node's segment has no direction: only the vertices already
    // on its cutting plane x = 0 are copied.
    EXPECT_EQ(Vec(0, 0, 0), Vertex(tube, 2, 0));
    EXPECT_EQ(Vertex(tube, 1, 1), Vertex(tube, 2, 1));
    EXPECT_EQ(Vec(0, 0, 0), Vertex(tube, 2, 2));
    EXPECT_EQ(Vertex(tube, 1, 3), Vertex(tube, 2, 3));
    ExpectRing(Vertex, tube, 3, {Vec(1, 0, 0), Vec(1, 0.5, 1), Vec(1, 0, 0), Vec(1, -0.5, 1)});
}

// A line that zig-zags, doubles back, repeats nodes and runs straight, as
// traced lines do.
std::vector<Vec> TracedLine(std::size_t count)
{
    std::vector<Vec> nodes{Vec(0, 0, 0)};
    unsigned state = 12345u;
    const auto next = [&state]() {
        state = state * 1103515245u + 12345u;
        return static_cast<double>((state >> 8) % 2001u) / 1000.0 - 1.0;
    };
    while (nodes.size() < count)
    {
        const Vec last = nodes.back();
        switch (nodes.size() % 7)
        {
        case 3: nodes.push_back(last); break;                                     // repeated
        case 5: nodes.push_back(nodes[nodes.size() - 2]); break;                  // doubles back
        default: nodes.push_back(last + Vec(next(), next(), 0.5 + next())); break; // zig-zag
        }
    }
    return nodes;
}

std::vector<double> Rings(const TestStreamline& tube, bool normals)
{
    std::vector<double> flat(3 * static_cast<std::size_t>(tube.GetNodes() * tube.GetSlices()));
    tube.CopyTubeGeometry(normals ? nullptr : flat.data(), normals ? flat.data() : nullptr);
    return flat;
}

TEST(StreamlineGenerationTest, PartsContinuingTheirRingsEqualTheWholeLine)
{
    const int slices = 7;
    const std::vector<Vec> line = TracedLine(300);
    const int count = static_cast<int>(line.size());
    TestStreamline whole;
    ASSERT_TRUE(whole.Create(count, slices, 0.3, 1.0));
    for (int i = 0; i < count; ++i)
    {
        Vec p = line[static_cast<std::size_t>(i)];
        ASSERT_TRUE(whole.SetNodeCoord(i, &p.x));
    }
    ASSERT_TRUE(whole.GenerationStreamline3D());
    const std::vector<double> rings = Rings(whole, false);
    const std::vector<double> normals = Rings(whole, true);

    for (const int length : {1, 2, 5, 64})
    {
        // One object for every part, as a host reuses it.
        TestStreamline part;
        for (int a = 0; a < count; a += length)
        {
            const int b = std::min(a + length, count) - 1;
            const int first = std::max(a - 1, 0);
            const int end = std::min(b + 2, count - 1);
            ASSERT_TRUE(part.Create(end - first + 1, slices, 0.3, 1.0));
            for (int i = first; i <= end; ++i)
            {
                Vec p = line[static_cast<std::size_t>(i)];
                ASSERT_TRUE(part.SetNodeCoord(i - first, &p.x));
            }
            if (first == 0)
            {
                ASSERT_TRUE(part.GenerationStreamline3D());
            }
            else
            {
                for (int j = 0; j < slices; ++j)
                {
                    ASSERT_TRUE(part.SetSliceNodeCoord(0, j, &rings[3 * static_cast<std::size_t>(first * slices + j)]));
                }
                ASSERT_TRUE(part.ContinueStreamline3D());
            }
            const std::vector<double> partRings = Rings(part, false);
            const std::vector<double> partNormals = Rings(part, true);
            const std::size_t from = 3 * static_cast<std::size_t>((a - first) * slices);
            const std::size_t size = 3 * static_cast<std::size_t>((b - a + 1) * slices);
            const std::size_t at = 3 * static_cast<std::size_t>(a * slices);
            // Bit for bit: a seam would show as a twist or a crease in the tube.
            ASSERT_TRUE(std::equal(partRings.begin() + from, partRings.begin() + from + size, rings.begin() + at))
                << "length " << length << ", nodes " << a << " to " << b;
            ASSERT_TRUE(std::equal(partNormals.begin() + from, partNormals.begin() + from + size,
                                   normals.begin() + at))
                << "length " << length << ", nodes " << a << " to " << b;
        }
    }
    TestStreamline uncreated;
    EXPECT_FALSE(uncreated.ContinueStreamline3D());
}

} // namespace
