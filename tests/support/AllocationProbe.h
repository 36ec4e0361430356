// The allocation probe of the AllocationTest executable. AllocationProbe.cpp
// replaces the global operator new and delete (single, array and sized forms)
// for the whole executable, the library's allocations included, and offers
// three views of them: the number of allocations made while counting is on,
// the number of blocks alive, and a chosen allocation made to throw
// std::bad_alloc. Plain counters: the tests run on one thread.
#pragma once

namespace KesraTest
{

void StartCountingAllocations();
// Stops counting; the number of allocations since StartCountingAllocations.
long StopCountingAllocations();

// Blocks allocated and not yet released.
long LiveBlocks();

// The allocation that follows `succeeding` more successful ones throws
// std::bad_alloc, once; 0 makes the next one fail.
void FailAllocationAfter(long succeeding);
// Disarms the failure; true if it was still pending, that is if no allocation
// has failed since FailAllocationAfter.
bool DisarmAllocationFailure();

// The number of allocations that call() makes.
template <typename Call>
long AllocationsDuring(Call call)
{
    StartCountingAllocations();
    call();
    return StopCountingAllocations();
}

} // namespace KesraTest
