// The walks' bookkeeping where the camera's tests cannot reach it: copies and
// assignments of the owner during a walk, and a list replaced under a walk.
// Additions, removals and nested walks during a notification are pinned
// through the camera in CameraEventTest.
#include "Engine/ObserverWalks.h"

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace
{

using Log = std::vector<std::string>;

struct Observer
{
    explicit Observer(std::string observerName) : name(std::move(observerName)) {}

    std::string name;
    std::function<void()> onCall;
};

using Walks = KesraEngine::TKesraObserverWalks<Observer>;

// Four named observers that log each call into one shared log.
class ObserverWalksTest : public ::testing::Test
{
protected:
    void Add(std::initializer_list<Observer*> observers)
    {
        for (Observer* observer : observers)
        {
            ASSERT_TRUE(Walks::Add(list, observer));
        }
    }

    void Notify()
    {
        walks.ForEach(list, [this](Observer& observer) {
            log.push_back(observer.name);
            if (observer.onCall)
            {
                observer.onCall();
            }
        });
    }

    Walks walks;
    Walks::List list;
    Log log;
    Observer a{"A"};
    Observer b{"B"};
    Observer c{"C"};
    Observer d{"D"};
};

TEST_F(ObserverWalksTest, ACopyStartsWithoutWalksAndAnAssignmentKeepsItsOwn)
{
    Add({&a, &b, &c});
    b.onCall = [&] {
        // A copy's removal from its own list must not move this walk...
        Walks copy(walks);
        Walks::List copiedList(list);
        copy.Remove(copiedList, &a);
        // ... and after an assignment, this walk still follows removals.
        walks = Walks();
        walks.Remove(list, &a);
    };
    Notify();
    EXPECT_EQ(log, (Log{"A", "B", "C"}));
}

TEST_F(ObserverWalksTest, AListReplacedDuringAWalkEndsItAtTheNewEnd)
{
    Add({&a, &b, &c});
    a.onCall = [&] { list = {&d}; };
    Notify();
    EXPECT_EQ(log, (Log{"A"}));
    Notify();
    EXPECT_EQ(log, (Log{"A", "D"}));
}

} // namespace
