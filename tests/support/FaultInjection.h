// Runs an operation with each of its allocations in turn made to fail, through
// the allocation probe (AllocationTest executable only), and checks what the
// object looks like afterwards.
#pragma once

#include "support/AllocationProbe.h"
#include "support/ObjectState.h"

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <utility>

namespace KesraTest
{

// What a failed allocation inside the operation leads to.
enum class OnFailure
{
    Throws,   // std::bad_alloc leaves the operation; the object is as it was
    Reports,  // the operation catches it and answers false; the object is as it was
    Discards  // std::bad_alloc leaves the operation; the object is in a state
              // the caller checks itself (see the `after` check)
};

// The allocations made to fail so far in this executable.
inline long& FaultPointsTried()
{
    static long tried = 0;
    return tried;
}

// For k = 0, 1, 2, ...: copies `start`, makes allocation k of
// operation(copy, argument) fail and checks the outcome; stops at the first k
// that the operation does not reach, where it must succeed. The argument comes
// from prepare() before the failure is armed, so that only the operation's
// own allocations fail. After every failure the object must also take the
// operation again, and nothing may leak. `after` runs on the object after
// each failure (for OnFailure::Discards). Returns the number of fault points.
template <typename Object, typename Prepare, typename Operation, typename After>
long FailEachAllocation(const Object& start, OnFailure onFailure, Prepare prepare,
                        Operation operation, After after)
{
    for (long k = 0; k < 100000; ++k)
    {
        const long liveBefore = LiveBlocks();
        bool reached = false;
        {
            Object object(start);
            const Snapshot before = State(object);
            bool threw = false;
            bool succeeded = false;
            {
                auto argument = prepare();
                FailAllocationAfter(k);
                try
                {
                    succeeded = operation(object, std::move(argument));
                }
                catch (const std::bad_alloc&)
                {
                    threw = true;
                }
                reached = !DisarmAllocationFailure();
            }
            if (!reached)
            {
                EXPECT_FALSE(threw) << "allocation " << k;
                EXPECT_TRUE(succeeded) << "allocation " << k;
            }
            else
            {
                ++FaultPointsTried();
                EXPECT_EQ(threw, onFailure != OnFailure::Reports) << "allocation " << k;
                EXPECT_FALSE(succeeded) << "allocation " << k;
                if (onFailure == OnFailure::Discards)
                {
                    after(object);
                }
                else
                {
                    EXPECT_TRUE(State(object) == before) << "allocation " << k << " changed the object";
                }
                EXPECT_TRUE(operation(object, prepare())) << "after allocation " << k << " failed";
            }
        }
        EXPECT_EQ(LiveBlocks(), liveBefore) << "allocation " << k << " leaked";
        if (!reached)
        {
            return k;
        }
    }
    ADD_FAILURE() << "the operation never finished";
    return -1;
}

// The same for an operation that takes a text by value.
template <typename Object, typename Operation>
long FailEachAllocationWithText(const Object& start, OnFailure onFailure, const std::string& text,
                                Operation operation)
{
    return FailEachAllocation(
        start, onFailure, [&text] { return text; }, operation, [](const Object&) {});
}

// The same for an operation without arguments.
template <typename Object, typename Operation, typename After>
long FailEachAllocation(const Object& start, OnFailure onFailure, Operation operation, After after)
{
    return FailEachAllocation(
        start, onFailure, [] { return 0; },
        [&operation](Object& object, int) { return operation(object); }, after);
}

template <typename Object, typename Operation>
long FailEachAllocation(const Object& start, OnFailure onFailure, Operation operation)
{
    return FailEachAllocation(start, onFailure, operation, [](const Object&) {});
}

// Copy construction and copy assignment of `source` over `target`, each with
// every allocation failing in turn: the source never changes, a failed
// assignment leaves the target as it was, and a copy that succeeds equals the
// source. Returns the fault points.
template <typename Object>
long FailEachCopyAllocation(const Object& source, const Object& target)
{
    const Snapshot original = State(source);
    long points = FailEachAllocation(source, OnFailure::Throws, [](Object& object) {
        const Object copy(object);
        return true;
    });
    points += FailEachAllocation(target, OnFailure::Throws, [&source](Object& object) {
        object = source;
        return true;
    });
    const Object copy(source);
    Object assigned(target);
    assigned = source;
    EXPECT_TRUE(State(copy) == original && State(assigned) == original);
    EXPECT_TRUE(State(source) == original);
    return points;
}

} // namespace KesraTest
