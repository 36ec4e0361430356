// Shared by every harness: turns libFuzzer's bytes into the arguments of
// public operations, records observable state for comparisons, and stops the
// run when an invariant breaks or an operation takes too long.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include "support/ObjectState.h"

namespace KesraFuzz
{

using KesraTest::Snapshot;
using KesraTest::State;

// Ends the run so that libFuzzer keeps the input as a finding.
[[noreturn]] inline void Fail(const char* what)
{
    std::fprintf(stderr, "invariant broken: %s\n", what);
    std::fflush(stderr);
    __builtin_trap();
}

inline void Require(bool holds, const char* what)
{
    if (!holds)
    {
        Fail(what);
    }
}

// Reads the input front to back; once it is used up every read answers zero,
// so a harness never needs to check lengths.
class FuzzInput
{
public:
    FuzzInput(const std::uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}

    bool Empty() const { return m_offset >= m_size; }

    std::uint8_t Byte() { return m_offset < m_size ? m_data[m_offset++] : 0; }

    template <typename T>
    T Raw()
    {
        static_assert(std::is_trivially_copyable<T>::value, "raw bytes only");
        unsigned char bytes[sizeof(T)] = {};
        for (unsigned char& b : bytes)
        {
            b = Byte();
        }
        T value;
        std::memcpy(&value, bytes, sizeof(T));
        return value;
    }

    bool Bool() { return (Byte() & 1) != 0; }

    // The next operation of a harness with `count` of them.
    int Choice(int count) { return Byte() % count; }

    // Mostly the numbers that break arithmetic, else any bit pattern or a
    // small whole number.
    double Double()
    {
        static const double special[] = {
            std::numeric_limits<double>::quiet_NaN(), -std::numeric_limits<double>::quiet_NaN(),
            std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
            std::numeric_limits<double>::max(), -std::numeric_limits<double>::max(),
            std::numeric_limits<double>::denorm_min(), -std::numeric_limits<double>::denorm_min(),
            std::numeric_limits<double>::min(), -0.0, 0.0, 1.0, -1.0, 0.5, 1e-8, 1e-10, 1e11,
            -1e11, 9007199254740992.0, 2147483648.0, -2147483649.0, 1e300, 1e-300};
        const std::uint8_t kind = Byte();
        if (kind < 96)
        {
            return special[kind % (sizeof(special) / sizeof(special[0]))];
        }
        if (kind < 176)
        {
            return Raw<double>();
        }
        return static_cast<double>(static_cast<std::int8_t>(Byte())) / (1 + kind % 8);
    }

    float Float()
    {
        const std::uint8_t kind = Byte();
        if (kind < 64)
        {
            return Raw<float>();
        }
        const double value = Double();
        // Out-of-range doubles become ±inf rather than undefined conversions.
        if (value > std::numeric_limits<float>::max())
        {
            return std::numeric_limits<float>::infinity();
        }
        if (value < -std::numeric_limits<float>::max())
        {
            return -std::numeric_limits<float>::infinity();
        }
        return static_cast<float>(value);
    }

    int Int()
    {
        static const int special[] = {std::numeric_limits<int>::min(),
                                      std::numeric_limits<int>::max(),
                                      std::numeric_limits<int>::min() + 1,
                                      std::numeric_limits<int>::max() - 1, -1, 0, 1, 2, 1 << 16,
                                      -(1 << 16), 1 << 30};
        const std::uint8_t kind = Byte();
        if (kind < 64)
        {
            return special[kind % (sizeof(special) / sizeof(special[0]))];
        }
        if (kind < 128)
        {
            return Raw<int>();
        }
        return static_cast<std::int8_t>(Byte());
    }

    // An index for a container of `count` elements: mostly inside, sometimes
    // just outside or anywhere.
    int Index(int count)
    {
        const std::uint8_t kind = Byte();
        if (kind < 192 && count > 0)
        {
            return Byte() % count;
        }
        if (kind < 224)
        {
            return kind % 2 == 0 ? count : -1;
        }
        return Int();
    }

    // A count that stays small enough for a quick operation, or any int.
    int Size(int limit)
    {
        const std::uint8_t kind = Byte();
        return kind < 224 ? static_cast<int>(Byte() % (limit + 1)) : Int();
    }

    std::string Text(std::size_t limit)
    {
        const std::size_t length = Byte() % (limit + 1);
        std::string text;
        for (std::size_t i = 0; i < length; ++i)
        {
            text.push_back(static_cast<char>(Byte()));
        }
        return text;
    }

    unsigned char Channel() { return Byte(); }

private:
    const std::uint8_t* m_data;
    std::size_t m_size;
    std::size_t m_offset = 0;
};

// Every operation must finish well within this bound: a hidden loop on NaN or
// on a huge count shows as a finding, not as a slow run. The thread's own CPU
// time is measured, so that a busy machine does not raise false alarms.
class OperationClock
{
public:
    explicit OperationClock(const char* what) : m_what(what), m_start(Now()) {}
    ~OperationClock()
    {
        if (Now() - m_start > 1.0)
        {
            Fail(m_what);
        }
    }
    OperationClock(const OperationClock&) = delete;
    OperationClock& operator=(const OperationClock&) = delete;

private:
    static double Now()
    {
        timespec now{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
        return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
    }

    const char* m_what;
    double m_start;
};

// A copy of `original`, and `assigned` once assigned from it, equal it.
template <typename T>
void RequireCopiesEqual(const T& original, T assigned, const char* what)
{
    const T copy(original);
    assigned = original;
    const Snapshot state = State(original);
    Require(State(copy) == state && State(assigned) == state, what);
}

// Runs step(object, in) until the input is used up, each step within the
// time bound and followed by check(object).
template <typename Object, typename Step, typename Check>
void RunSteps(FuzzInput& in, Object& object, const char* what, Step step, Check check)
{
    while (!in.Empty())
    {
        {
            OperationClock clock(what);
            step(object, in);
        }
        check(object);
    }
}

// The bit pattern equality that `==` on doubles does not give for NaN.
inline bool SameBits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

// The same number: equal bits, or both NaN of any sign and payload.
inline bool SameNumber(double a, double b)
{
    return SameBits(a, b) || (a != a && b != b);
}

} // namespace KesraFuzz
