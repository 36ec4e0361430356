// Colouring a result: 10^6 values spread over the range, about 5 % outside
// it, smooth and banded (8 blocks), one query per value against the batch,
// the batch on the values in random order and sorted, and the batch's table
// rebuilt after a setting change; the same for the options on top (the
// many-stop palettes, the log scale, the NaN and range colours).
#include "BenchFloor.h"

#include "Engine/ScalarBar.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

namespace
{

using KesraEngine::CKesraScalarBar;

constexpr std::size_t kValues = 1000000;

struct ColorCase
{
    std::vector<double> values = std::vector<double>(kValues);
    std::vector<double> sorted;
    std::vector<unsigned char> rgba = std::vector<unsigned char>(4 * kValues);

    ColorCase()
    {
        std::mt19937_64 random(7);
        std::uniform_real_distribution<double> spread(-0.025, 1.025);
        for (double& value : values)
        {
            value = spread(random);
        }
        sorted = values;
        std::sort(sorted.begin(), sorted.end());
    }
};

ColorCase& Data()
{
    static ColorCase data;
    return data;
}

// Reads the eight bytes of every value and writes four.
void FloorPass()
{
    ColorCase& data = Data();
    const double* in = data.values.data();
    unsigned char* out = data.rgba.data();
    for (std::size_t k = 0; k < kValues; ++k)
    {
        std::uint64_t bits = 0;
        std::memcpy(&bits, in + k, sizeof bits);
        const auto folded = static_cast<std::uint32_t>(bits ^ bits >> 32);
        std::memcpy(out + 4 * k, &folded, sizeof folded);
    }
}

CKesraScalarBar Bar(bool banded)
{
    CKesraScalarBar bar;
    bar.SetValueRange(0.0, 1.0, true, true);
    bar.SetBanded(banded ? 1 : 0);
    bar.SetBlockNum(8);
    return bar;
}

void Color_Floor(benchmark::State& state)
{
    KesraBench::MeasureRow(state, kValues, FloorPass, FloorPass);
}

// One query per value, alpha written as the batch writes it.
void MeasureSingle(benchmark::State& state, const CKesraScalarBar& bar)
{
    ColorCase& data = Data();
    KesraBench::MeasureRow(state, kValues, FloorPass, [&] {
        for (std::size_t k = 0; k < kValues; ++k)
        {
            unsigned char* const rgba = &data.rgba[4 * k];
            bar.GetOpenGLColor(rgba[0], rgba[1], rgba[2], data.values[k]);
            rgba[3] = 255;
        }
    });
}

// The first batch before the loop builds the table, as the first batch
// after a setting change does.
void MeasureBatch(benchmark::State& state, const CKesraScalarBar& bar,
                  const std::vector<double>& values)
{
    ColorCase& data = Data();
    bar.GetOpenGLColors(values.data(), kValues, data.rgba.data());
    KesraBench::MeasureRow(state, kValues, FloorPass, [&] {
        bar.GetOpenGLColors(values.data(), kValues, data.rgba.data());
    });
}

// A setting change (inverse toggled) and the first batch after it, of the
// 4096 values that make a batch long enough for a table: mostly the table's
// rebuild, in microseconds per change (items are changes; no floor).
void MeasureRebuild(benchmark::State& state, CKesraScalarBar& bar)
{
    ColorCase& data = Data();
    constexpr std::size_t kShort = 4096;
    int inverse = 0;
    for (auto _ : state)
    {
        inverse = 1 - inverse;
        bar.SetInverse(inverse);
        bar.GetOpenGLColors(data.values.data(), kShort, data.rgba.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations());
}

void Color_Single(benchmark::State& state)
{
    MeasureSingle(state, Bar(state.range(0) != 0));
}

// Arguments: banded, sorted.
void Color_Batch(benchmark::State& state)
{
    ColorCase& data = Data();
    MeasureBatch(state, Bar(state.range(0) != 0), state.range(1) != 0 ? data.sorted : data.values);
}

// The smooth batch whatever the banded switch says, on a banded bar.
void Color_BatchByValue(benchmark::State& state)
{
    const CKesraScalarBar bar = Bar(true);
    ColorCase& data = Data();
    bar.GetOpenGLColorsByValue(data.values.data(), kValues, data.rgba.data());
    KesraBench::MeasureRow(state, kValues, FloorPass, [&] {
        bar.GetOpenGLColorsByValue(data.values.data(), kValues, data.rgba.data());
    });
}

void Color_TableRebuild(benchmark::State& state)
{
    CKesraScalarBar bar = Bar(state.range(0) != 0);
    MeasureRebuild(state, bar);
}

// What a viewer does on a key press that changes the colouring: the setting
// changes (inverse toggled), then all 10^6 values are coloured into the
// vertex buffer, the table's rebuild included.
void Color_Recolour(benchmark::State& state)
{
    CKesraScalarBar bar = Bar(state.range(0) != 0);
    ColorCase& data = Data();
    int inverse = 0;
    KesraBench::MeasureRow(state, kValues, FloorPass, [&] {
        inverse = 1 - inverse;
        bar.SetInverse(inverse);
        bar.GetOpenGLColors(data.values.data(), kValues, data.rgba.data());
    });
}

// The options on top of the first mapping, numbered for the rows' argument.
enum Option
{
    kViridis,
    kCoolWarm,
    kTurbo,
    kRangeColours,
    kLog,
    kLogViridis
};

CKesraScalarBar OptionBar(int option, bool banded)
{
    CKesraScalarBar bar = Bar(banded);
    if (option == kViridis || option == kLogViridis)
    {
        bar.SetColorPaletteViridis();
    }
    if (option == kCoolWarm)
    {
        bar.SetColorPaletteCoolWarm();
    }
    if (option == kTurbo)
    {
        bar.SetColorPaletteTurbo();
    }
    if (option == kRangeColours)
    {
        bar.SetUseNanColor(1);
        bar.SetUseBelowRangeColor(1);
        bar.SetUseAboveRangeColor(1);
    }
    bar.SetLogScale(option == kLog || option == kLogViridis ? 1 : 0);
    return bar;
}

// Arguments of the option rows: option, banded.
CKesraScalarBar OptionBar(const benchmark::State& state)
{
    return OptionBar(static_cast<int>(state.range(0)), state.range(1) != 0);
}

void Color_OptionSingle(benchmark::State& state)
{
    MeasureSingle(state, OptionBar(state));
}

void Color_OptionBatch(benchmark::State& state)
{
    MeasureBatch(state, OptionBar(state), Data().values);
}

void Color_OptionTableRebuild(benchmark::State& state)
{
    CKesraScalarBar bar = OptionBar(state);
    MeasureRebuild(state, bar);
}

void OptionArgs(benchmark::internal::Benchmark* row)
{
    row->ArgNames({"option", "banded"});
    for (const int option : {kViridis, kCoolWarm, kTurbo, kRangeColours, kLog, kLogViridis})
    {
        row->Args({option, 0})->Args({option, 1});
    }
}

BENCHMARK(Color_Floor);
BENCHMARK(Color_Single)->ArgName("banded")->Arg(0)->Arg(1);
BENCHMARK(Color_Batch)->ArgNames({"banded", "sorted"})->Args({0, 0})->Args({0, 1})->Args({1, 0})->Args({1, 1});
BENCHMARK(Color_BatchByValue);
BENCHMARK(Color_Recolour)->ArgName("banded")->Arg(0)->Arg(1);
BENCHMARK(Color_TableRebuild)->ArgName("banded")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(Color_OptionSingle)->Apply(OptionArgs);
BENCHMARK(Color_OptionBatch)->Apply(OptionArgs);
BENCHMARK(Color_OptionTableRebuild)
    ->ArgNames({"option", "banded"})
    ->Args({kViridis, 0})
    ->Args({kCoolWarm, 0})
    ->Args({kTurbo, 0})
    ->Args({kViridis, 1})
    ->Unit(benchmark::kMicrosecond);

} // namespace
