// Fault injection and leak checks through the allocation probe: a chosen
// allocation throws std::bad_alloc, and the blocks alive show that a failed
// or finished operation leaks nothing.
#include "Engine/TipManager.h"
#include "support/AllocationProbe.h"
#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <array>
#include <new>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace
{

using KesraTest::DisarmAllocationFailure;
using KesraTest::FailAllocationAfter;
using KesraTest::LiveBlocks;
using Coord = std::array<double, 3>;

class ProbedTipManager : public KesraTest::TestTipManager
{
public:
    std::string Text(int index) const { return GetTip(index)->GetContext(); }
};

// Everything a host can observe of the tips: text, original and effect.
std::vector<std::tuple<std::string, Coord, Coord>> Snapshot(const ProbedTipManager& manager)
{
    std::vector<std::tuple<std::string, Coord, Coord>> tips;
    for (int i = 0; i < manager.GetTipsNum(); ++i)
    {
        Coord original{}, effect{};
        manager.GetOrgCoord(i, original.data());
        manager.GetEffectCoord(i, effect.data());
        tips.emplace_back(manager.Text(i), original, effect);
    }
    return tips;
}

// Runs call(copy of text) with the allocation number n (0, 1, 2, ...) made to
// fail, for growing n, until a run needs fewer allocations than n. The copy is
// made before the failure is armed, so that only the operation's own
// allocations can fail; call answers whether the operation succeeded. Each
// failed run must answer false, leave the tips as they were and leak nothing. Returns the number of failed runs; the manager
// ends in the state of the run that succeeded.
template <typename Call>
int FailEachAllocation(const ProbedTipManager& manager, const std::string& text, Call call)
{
    for (long n = 0;; ++n)
    {
        const auto before = Snapshot(manager);
        const long liveBefore = LiveBlocks();
        bool succeeded = false, pending = false;
        {
            std::string argument = text;
            FailAllocationAfter(n);
            succeeded = call(std::move(argument));
            pending = DisarmAllocationFailure();
        }
        if (pending)
        {
            EXPECT_TRUE(succeeded) << "allocation " << n;
            return static_cast<int>(n);
        }
        EXPECT_FALSE(succeeded) << "allocation " << n;
        EXPECT_EQ(LiveBlocks(), liveBefore) << "allocation " << n << " leaked";
        EXPECT_EQ(Snapshot(manager), before) << "allocation " << n;
    }
}

TEST(TipManagerAllocTest, InsertTipReportsExhaustedMemoryAndKeepsTheList)
{
    ProbedTipManager manager;
    const std::string text(40, 'x'); // longer than any in-place string buffer
    const Coord original{1, 2, 3};
    const Coord effect{4, 5, 6};
    // Nine insertions pass through several growths of the list.
    for (int expected = 0; expected < 9; ++expected)
    {
        const int failures = FailEachAllocation(manager, text, [&](std::string&& t) {
            return manager.InsertTip(std::move(t), original.data(), effect.data()) != -1;
        });
        if (expected == 0)
        {
            EXPECT_GE(failures, 2) << "the record and the first list block";
        }
        ASSERT_EQ(manager.GetTipsNum(), expected + 1);
        EXPECT_EQ(manager.Text(expected), text);
    }
}

TEST(TipManagerAllocTest, SetTipContextReportsExhaustedMemoryAndKeepsTheText)
{
    ProbedTipManager manager;
    const Coord zero{};
    manager.InsertTip("short", zero.data(), zero.data());
    manager.InsertTip("other", zero.data(), zero.data());
    const std::string longer(64, 'y');
    const int failures = FailEachAllocation(
        manager, longer, [&](std::string&& t) { return manager.SetTipContext(1, std::move(t)); });
    EXPECT_GE(failures, 1);
    EXPECT_EQ(manager.Text(1), longer);
    EXPECT_EQ(manager.Text(0), "short");
}

TEST(TipManagerAllocTest, RemovalClearingAndDestructionDeleteTheRecords)
{
    const long liveBefore = LiveBlocks();
    {
        ProbedTipManager manager;
        const Coord zero{};
        // Each tip holds two blocks: its record and its text, which is longer
        // than any in-place string buffer.
        for (int i = 0; i < 4; ++i)
        {
            manager.InsertTip(std::string(40, 'x'), zero.data(), zero.data());
        }
        const long full = LiveBlocks();
        EXPECT_TRUE(manager.RemoveTip(1));
        EXPECT_EQ(LiveBlocks(), full - 2);
        EXPECT_TRUE(manager.ClearTips());
        EXPECT_EQ(LiveBlocks(), full - 8);
        manager.InsertTip(std::string(40, 'y'), zero.data(), zero.data());
    }
    EXPECT_EQ(LiveBlocks(), liveBefore) << "the destructor deletes the rest and the list";
}

TEST(TipManagerAllocTest, FailedAssignmentLeavesTheTarget)
{
    ProbedTipManager source;
    ProbedTipManager target;
    const Coord zero{};
    for (int i = 0; i < 3; ++i)
    {
        source.InsertTip(std::string(30, char('a' + i)), zero.data(), zero.data());
    }
    target.InsertTip("mine", zero.data(), zero.data());
    target.SetTextColor(9, 9, 9);

    const long liveBefore = LiveBlocks();
    FailAllocationAfter(3);
    EXPECT_THROW(target = source, std::bad_alloc);
    EXPECT_FALSE(DisarmAllocationFailure());
    EXPECT_EQ(LiveBlocks(), liveBefore);
    ASSERT_EQ(target.GetTipsNum(), 1);
    EXPECT_EQ(target.Text(0), "mine");
    unsigned char r = 0, g = 0, b = 0;
    target.GetTextColor(r, g, b);
    EXPECT_EQ(r, 9);
}

} // namespace
