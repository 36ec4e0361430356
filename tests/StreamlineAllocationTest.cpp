// Tube generation must not allocate: the allocation probe counts every heap
// allocation made while counting is on, the library's included.
#include "support/AllocationProbe.h"
#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <vector>

namespace
{

using KesraTest::AllocationsDuring;
using KesraTest::TestStreamline;
using Vec = KesraMathKit::TKesraVector3<double>;

TEST(StreamlineAllocationTest, GenerationAllocatesNothing)
{
    TestStreamline probe;
    EXPECT_GT(AllocationsDuring([&probe] { probe.Create(3, 16, 1.0, 1.0); }), 0)
        << "the counter does not see the library's allocations";

    // A bent tube, one with a reversal and unplaceable vertices, a collapsed one.
    const std::initializer_list<std::initializer_list<Vec>> polylines = {
        {Vec(0, 0, 0), Vec(0, 0, 1), Vec(1, 0, 1), Vec(1, 2, 3), Vec(-1, 0, 2)},
        {Vec(0, 0, 0), Vec(0, 0, 1), Vec(0, 0.2, 0.2), Vec(0, 0.2, 0.2), Vec(0, 0, 0)},
        {Vec(0, 0, 0), Vec(0, 0, 0), Vec(0, 0, 0), Vec(0, 0, 0), Vec(0, 0, 0)},
    };
    for (const int slices : {1, 2, 16})
    {
        TestStreamline tube;
        ASSERT_TRUE(tube.Create(5, slices, 0.5, 1.0));
        for (const auto& polyline : polylines)
        {
            int node = 0;
            for (Vec p : polyline)
            {
                ASSERT_TRUE(tube.SetNodeCoord(node++, &p.x));
            }
            bool generated = false;
            EXPECT_EQ(0, AllocationsDuring([&] { generated = tube.GenerationStreamline3D(); }))
                << slices << " vertices per ring";
            EXPECT_TRUE(generated);
        }
    }
}

// The calls a host makes per frame or per change on many values: each works
// in the caller's arrays.
TEST(StreamlineAllocationTest, BatchCallsAllocateNothing)
{
    TestStreamline tube;
    ASSERT_TRUE(tube.Create(4, 8, 0.5, 1.0));
    std::vector<double> vertices(3 * 4 * 8);
    std::vector<float> normals(vertices.size());
    EXPECT_EQ(0, AllocationsDuring([&] {
                  tube.CopyTubeGeometry(vertices.data(), nullptr);
                  tube.CopyTubeGeometry(nullptr, normals.data());
              }));

    KesraEngine::CKesraScalarBar bar;
    bar.SetBanded(1);
    const double values[4] = {-1.0, 0.3, 0.6, 2.0};
    unsigned char rgba[16];
    signed char codes[4];
    EXPECT_EQ(0, AllocationsDuring([&] {
                  bar.GetOpenGLColors(values, 4, rgba, codes);
                  bar.GetOpenGLColorsByValue(values, 4, rgba, codes);
              }));

    KesraTest::TestCamera camera(640, 480);
    double projected[12];
    EXPECT_EQ(0, AllocationsDuring([&] { camera.ProjectPointsWorldToView(values, 1, projected); }));
}

} // namespace
