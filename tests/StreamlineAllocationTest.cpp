// Tube generation must not allocate: this executable replaces the global
// operator new to count every heap allocation made while the count is armed.
#include "MathKit/Vector3.h"
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

void* CountedAllocation(std::size_t size)
{
    if (g_counting)
    {
        ++g_allocations;
    }
    void* const memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr)
    {
        throw std::bad_alloc();
    }
    return memory;
}

// Counts the allocations of one call.
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

void* operator new(std::size_t size) { return CountedAllocation(size); }
void* operator new[](std::size_t size) { return CountedAllocation(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace
{

using KesraTest::TestStreamline;
using Vec = KesraMathKit::TKesraVector3<double>;

TEST(StreamlineAllocationTest, CounterSeesTheAllocationsOfCreate)
{
    TestStreamline tube;
    EXPECT_GT(AllocationsDuring([&tube] { EXPECT_TRUE(tube.Create(3, 16, 1.0, 1.0)); }), 0);
}

TEST(StreamlineAllocationTest, GenerationAllocatesNothing)
{
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
            const long allocations =
                AllocationsDuring([&] { generated = tube.GenerationStreamline3D(); });
            EXPECT_TRUE(generated);
            EXPECT_EQ(0, allocations) << slices << " vertices per ring";
        }
    }
}

} // namespace
