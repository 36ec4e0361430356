// The yardstick of every hot-path row: a floor pass that reads every input
// byte and writes every output byte once, timed in the same run. Each row
// reports ns_per_item and x_floor, its time per item over the floor's. Both
// are thread CPU time, so that other work on the machine inflates neither.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <vector>

namespace KesraBench
{

inline double ThreadNanoseconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

// The median of 15 timed samples of floor passes, in nanoseconds per item.
// A sample runs enough passes to last about a millisecond, so that reading
// the clock (a system call on some virtual machines) does not count. Every
// row measures its floor right before its own loop, so that both see the
// same load on the machine.
template <typename Pass>
double FloorNsPerItem(double items, Pass pass)
{
    double start = ThreadNanoseconds();
    pass();  // also warms the caches and faults the pages in
    const double once = std::max(ThreadNanoseconds() - start, 1.0);
    const int passes = static_cast<int>(std::clamp(1e6 / once, 1.0, 1e4));
    std::vector<double> times;
    for (int sample = 0; sample < 15; ++sample)
    {
        start = ThreadNanoseconds();
        for (int run = 0; run < passes; ++run)
        {
            pass();
            benchmark::ClobberMemory();
        }
        times.push_back((ThreadNanoseconds() - start) / (items * passes));
    }
    std::nth_element(times.begin(), times.begin() + 7, times.end());
    return times[7];
}

// Times the benchmark loop of a row: construct before the loop, Report after.
class RowTimer
{
public:
    RowTimer(double items, double floorNs)
        : m_items(items), m_floorNs(floorNs), m_start(ThreadNanoseconds()) {}

    void Report(benchmark::State& state) const
    {
        const double perItem = (ThreadNanoseconds() - m_start) /
                               (static_cast<double>(state.iterations()) * m_items);
        state.SetItemsProcessed(static_cast<std::int64_t>(static_cast<double>(state.iterations()) * m_items));
        state.counters["ns_per_item"] = perItem;
        state.counters["x_floor"] = perItem / m_floorNs;
    }

private:
    double m_items;
    double m_floorNs;
    double m_start;
};

// One row: its floor, then body once per benchmark iteration, timed.
template <typename FloorPass, typename Body>
void MeasureRow(benchmark::State& state, double items, FloorPass floorPass, Body body)
{
    const RowTimer timer(items, FloorNsPerItem(items, floorPass));
    for (auto _ : state)
    {
        body();
        benchmark::ClobberMemory();
    }
    timer.Report(state);
}

} // namespace KesraBench
