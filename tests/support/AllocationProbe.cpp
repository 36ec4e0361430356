#include "support/AllocationProbe.h"

#include <cstdlib>
#include <new>

namespace
{

bool g_counting = false;
long g_allocations = 0;
long g_liveBlocks = 0;
// Allocations still to succeed before one throws; negative when disarmed.
long g_allocationsBeforeFailure = -1;

void* Allocate(std::size_t size)
{
    if (g_allocationsBeforeFailure == 0)
    {
        g_allocationsBeforeFailure = -1;
        throw std::bad_alloc();
    }
    if (g_allocationsBeforeFailure > 0)
    {
        --g_allocationsBeforeFailure;
    }
    g_allocations += g_counting ? 1 : 0;
    void* const block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr)
    {
        throw std::bad_alloc();
    }
    ++g_liveBlocks;
    return block;
}

void* AllocateOrNull(std::size_t size) noexcept
{
    try
    {
        return Allocate(size);
    }
    catch (const std::bad_alloc&)
    {
        return nullptr;
    }
}

void Release(void* block) noexcept
{
    if (block != nullptr)
    {
        --g_liveBlocks;
        std::free(block);
    }
}

} // namespace

// Every form is replaced, the nothrow ones included, so that no block is
// allocated by one allocator and released by another (AddressSanitizer, which
// brings its own operator new, reports such a mismatch).
void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return AllocateOrNull(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return AllocateOrNull(size);
}
void operator delete(void* block) noexcept { Release(block); }
void operator delete[](void* block) noexcept { Release(block); }
void operator delete(void* block, std::size_t) noexcept { Release(block); }
void operator delete[](void* block, std::size_t) noexcept { Release(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { Release(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { Release(block); }

namespace KesraTest
{

void StartCountingAllocations()
{
    g_allocations = 0;
    g_counting = true;
}

long StopCountingAllocations()
{
    g_counting = false;
    return g_allocations;
}

long LiveBlocks() { return g_liveBlocks; }

void FailAllocationAfter(long succeeding) { g_allocationsBeforeFailure = succeeding; }

bool DisarmAllocationFailure()
{
    const bool pending = g_allocationsBeforeFailure >= 0;
    g_allocationsBeforeFailure = -1;
    return pending;
}

} // namespace KesraTest
