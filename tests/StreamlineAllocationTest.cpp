// Tube generation must not allocate: this executable replaces the global
// operator new (the array forms forward to it) to count every heap allocation
// made while counting is on, the library's included.
#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <initializer_list>
#include <new>

namespace
{

// Plain counters: the tests run on one thread.
bool g_counting = false;
long g_allocations = 0;

template <typename Call>
long AllocationsDuring(Call call)
{
    g_allocations = 0;
    g_counting = true;
    call();
    g_counting = false;
    return g_allocations;
}

} // namespace

void* operator new(std::size_t size)
{
    g_allocations += g_counting ? 1 : 0;
    if (void* const memory = std::malloc(size == 0 ? 1 : size))
    {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace
{

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

} // namespace
