// TKesraObserverWalks: the notification walks under way over one list of
// observers, kept beside the list, so that observers may add and remove
// observers, themselves included, while they are being notified.
//
// The list is the owner's own std::vector<Observer*>: non-owning pointers in
// registration order, each at most once, never null, changed only through Add
// and Remove. The rule for a walk (ForEach) under way:
// - an observer added during it is first called by the next walk;
// - an observer removed during it is not called for the rest of it;
// - every other observer it began with is called exactly once, in order.
// A walk started from inside a call (a nested notification) follows the same
// rule for itself, and the walk it interrupted goes on by the rule afterwards.
// An exception from a call passes through and ends that walk; the observers
// after it are not called.
//
// The walks under way belong to the owner's call stack: a copy of the owner
// starts with none and an assignment keeps its own, so the owner stays a
// plain copyable value.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace KesraEngine
{

template <typename Observer>
class TKesraObserverWalks
{
public:
    using List = std::vector<Observer*>;

    TKesraObserverWalks() noexcept = default;
    TKesraObserverWalks(const TKesraObserverWalks&) noexcept {}
    TKesraObserverWalks& operator=(const TKesraObserverWalks&) noexcept { return *this; }

    // Appends observer. False, with no change, for a null pointer, an observer
    // already in the list, or when the list cannot grow. Static: a walk stops
    // at the end it began with, so an addition never concerns it.
    static bool Add(List& list, Observer* observer) noexcept
    {
        if (observer == nullptr || std::find(list.begin(), list.end(), observer) != list.end())
        {
            return false;
        }
        try
        {
            list.push_back(observer);
        }
        catch (...)
        {
            // push_back leaves the list as it was when it cannot grow.
            return false;
        }
        return true;
    }

    // Removes observer; the ones after it keep their order. False for a null
    // pointer or an observer not in the list.
    bool Remove(List& list, Observer* observer) noexcept
    {
        if (observer == nullptr)
        {
            return false;
        }
        const auto found = std::find(list.begin(), list.end(), observer);
        if (found == list.end())
        {
            return false;
        }
        const std::size_t index = static_cast<std::size_t>(found - list.begin());
        list.erase(found);

        // Keep every walk under way on the observers it has not reached yet:
        // the entries after the removed one have moved up one place.
        for (Walk* walk = m_innermost; walk != nullptr; walk = walk->outer)
        {
            if (index < walk->next)
            {
                --walk->next;
            }
            if (index < walk->end)
            {
                --walk->end;
            }
        }
        return true;
    }

    // Calls call(observer) with a reference to every observer of list, by the
    // rule above. list must be the one that Add and Remove change.
    template <typename Call>
    void ForEach(const List& list, Call call)
    {
        Walk walk{0, list.size(), m_innermost};
        m_innermost = &walk;

        // Unlinks the walk however the loop ends, an observer's exception
        // included.
        struct Unlink
        {
            Walk*& innermost;
            const Walk& walk;
            ~Unlink() { innermost = walk.outer; }
        } unlink{m_innermost, walk};

        // The size check also covers an observer that replaces the whole list
        // (say, by assigning another owner to this one).
        while (walk.next < walk.end && walk.next < list.size())
        {
            Observer* const observer = list[walk.next];
            ++walk.next;
            call(*observer);
        }
    }

private:
    // Position of one walk; walks started from inside a call are linked to the
    // one they interrupt, the innermost first.
    struct Walk
    {
        std::size_t next;
        std::size_t end;
        Walk* outer;
    };

    Walk* m_innermost = nullptr;
};

} // namespace KesraEngine
