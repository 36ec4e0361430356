// Registration when the handler list cannot grow, through the allocation
// probe.
#include "support/AllocationProbe.h"
#include "support/CameraTestSupport.h"
#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace
{

using KesraTest::DisarmAllocationFailure;
using KesraTest::FailAllocationAfter;
using KesraTest::RecordingHandler;
using Log = std::vector<std::string>;

TEST(CameraAllocTest, RegistrationThatCannotGrowTheListChangesNothing)
{
    KesraTest::TestCamera camera(800, 600);
    Log log;
    std::vector<RecordingHandler> handlers;
    handlers.reserve(64);
    for (int i = 0; i < 64; ++i)
    {
        handlers.emplace_back(std::to_string(i), &log);
    }
    std::size_t registered = 0;
    for (; registered < 3; ++registered)
    {
        ASSERT_TRUE(camera.RegisterEventHandler(&handlers[registered]));
    }

    // Every registration runs with the next allocation armed to fail; those
    // that fit the list's capacity succeed, the first that must grow it fails.
    bool failed = false;
    while (!failed && registered < handlers.size())
    {
        FailAllocationAfter(0);
        const bool added = camera.RegisterEventHandler(&handlers[registered]);
        failed = !DisarmAllocationFailure();
        EXPECT_NE(added, failed);
        registered += added ? 1 : 0;
    }
    ASSERT_TRUE(failed) << "the list never grew";

    Log expected;
    for (std::size_t i = 0; i < registered; ++i)
    {
        expected.push_back(std::to_string(i));
    }
    camera.NotifyTransformUpdateInterface();
    EXPECT_EQ(log, expected) << "the list as it was, in order, each handler once";
    EXPECT_TRUE(camera.RegisterEventHandler(&handlers[registered])) << "it was not kept";
}

} // namespace
