// Colouring a result: 10^6 values spread over the range, about 5 % outside
// it, smooth and banded (8 blocks), one query per value against the batch.
#include "BenchFloor.h"

#include "Engine/ScalarBar.h"

#include <benchmark/benchmark.h>

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
    std::vector<unsigned char> rgba = std::vector<unsigned char>(4 * kValues);

    ColorCase()
    {
        std::mt19937_64 random(7);
        std::uniform_real_distribution<double> spread(-0.025, 1.025);
        for (double& value : values)
        {
            value = spread(random);
        }
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

void Color_Single(benchmark::State& state)
{
    const CKesraScalarBar bar = Bar(state.range(0) != 0);
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

void Color_Batch(benchmark::State& state)
{
    const CKesraScalarBar bar = Bar(state.range(0) != 0);
    ColorCase& data = Data();
    KesraBench::MeasureRow(state, kValues, FloorPass, [&] {
        bar.GetOpenGLColors(data.values.data(), kValues, data.rgba.data());
    });
}

BENCHMARK(Color_Floor);
BENCHMARK(Color_Single)->ArgName("banded")->Arg(0)->Arg(1);
BENCHMARK(Color_Batch)->ArgName("banded")->Arg(0)->Arg(1);

} // namespace
