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
    int calls = 0;
};

using Walks = KesraEngine::TKesraObserverWalks<Observer>;

// A list of four named observers that log each call into one shared log.
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
            ++observer.calls;
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

TEST_F(ObserverWalksTest, AddedDuringAWalkWaitForTheNextAndRemovedAreSkipped)
{
    Add({&a, &b, &c, &d});
    // B removes A (called), itself and C (not yet called), then adds C back
    // behind D: this walk ends with D, the next one calls C last.
    b.onCall = [&] {
        if (b.calls == 1)
        {
            walks.Remove(list, &a);
            walks.Remove(list, &b);
            walks.Remove(list, &c);
            EXPECT_TRUE(Walks::Add(list, &c));
            EXPECT_FALSE(Walks::Add(list, &d));
        }
    };
    Notify();
    EXPECT_EQ(log, (Log{"A", "B", "D"}));
    Notify();
    EXPECT_EQ(log, (Log{"A", "B", "D", "D", "C"}));
}

TEST_F(ObserverWalksTest, ANestedWalksRemovalMovesEveryWalkUnderWay)
{
    Add({&a, &b, &c});
    // B starts a walk; in it, B removes A, which both walks have passed.
    b.onCall = [&] {
        if (b.calls == 1)
        {
            Notify();
        }
        else
        {
            walks.Remove(list, &a);
        }
    };
    Notify();
    // outer: A, B -> inner: A, B, C -> outer goes on with C, once.
    EXPECT_EQ(log, (Log{"A", "B", "A", "B", "C", "C"}));
}

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
