// The tips' records against the allocation probe's count of live blocks:
// removal, clearing and destruction free exactly what the tips held. Every
// allocation of insertion, new texts and copies failing in turn is in
// AllocationFailureTest.
#include "Engine/TipManager.h"
#include "support/AllocationProbe.h"
#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace
{

using KesraTest::LiveBlocks;

TEST(TipManagerAllocTest, RemovalClearingAndDestructionDeleteTheRecords)
{
    const long liveBefore = LiveBlocks();
    {
        KesraTest::TestTipManager manager;
        const std::array<double, 3> zero{};
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

} // namespace
