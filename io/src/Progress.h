// How far a read has come, told to the host's monitor now and then. A read
// without a monitor carries an empty Progress, whose every call is one test
// of a null pointer.
#pragma once

#include "KesraIo/Reader.h"

#include <cstddef>
#include <functional>
#include <string_view>

namespace KesraIo
{

// What the spans of one read share: the monitor and the fraction last told.
struct ProgressState
{
    const ReadMonitor* monitor = nullptr;
    double told = 0.0;
};

// A span [from, to] of the whole read's fraction, for one stage of it (the
// file's bytes from the disk, their parsing, one piece of a collection).
class Progress
{
public:
    Progress() = default;
    Progress(ProgressState& state, double from, double to) : m_state(&state), m_from(from), m_to(to) {}

    // The part [from, to] of this span, both counted from 0 to 1 within it.
    Progress Part(double from, double to) const;

    // done of total within this span. The monitor hears of it only once the
    // whole read has moved on by kStep, so that a large file makes a few
    // hundred calls and a small one a handful. Throws ReadCancelled when the
    // monitor says stop.
    void Tell(std::size_t done, std::size_t total) const
    {
        if (m_state != nullptr)
        {
            TellFraction(total == 0 ? m_to : m_from + (m_to - m_from) * static_cast<double>(done) / total);
        }
    }

    // Where at stands in whole, a view of the bytes being parsed; nothing
    // when it lies outside.
    void TellAt(std::string_view whole, const char* at) const
    {
        // std::less orders pointers into different arrays too.
        const std::less<const char*> before;
        if (m_state != nullptr && !before(at, whole.data()) && !before(whole.data() + whole.size(), at))
        {
            Tell(static_cast<std::size_t>(at - whole.data()), whole.size());
        }
    }

    // The end of this span, told whatever the step.
    void TellDone() const;

    static constexpr double kStep = 1.0 / 256;

private:
    void TellFraction(double fraction) const;

    ProgressState* m_state = nullptr;
    double m_from = 0.0;
    double m_to = 1.0;
};

} // namespace KesraIo
