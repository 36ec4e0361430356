// The yardstick of every hot-path row: a floor pass that reads every input
// byte and writes every output byte once, timed in the same run. Each row
// reports ns_per_item and x_floor, its time per item over the floor's. Both
// are thread CPU time, so that other work on the machine inflates neither.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <map>
#include <string>
#include <vector>

namespace KesraBench
{

inline double ThreadNanoseconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

// The median of 21 timed floor passes, in nanoseconds per item; measured
// once per case and run, so that every row of a case divides by the same
// number, and a median as the rows report theirs.
template <typename Pass>
double FloorNsPerItem(const std::string& name, double items, Pass pass)
{
    static std::map<std::string, double> measured;
    const auto found = measured.find(name);
    if (found != measured.end())
    {
        return found->second;
    }
    pass();  // warm the caches and fault the pages in
    std::vector<double> times;
    for (int run = 0; run < 21; ++run)
    {
        const double start = ThreadNanoseconds();
        pass();
        times.push_back((ThreadNanoseconds() - start) / items);
    }
    std::nth_element(times.begin(), times.begin() + 10, times.end());
    measured.emplace(name, times[10]);
    return times[10];
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

} // namespace KesraBench
