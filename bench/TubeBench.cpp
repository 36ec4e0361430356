// Tube generation around N = 1000 and N = 100000 nodes of a winding
// polyline, 8 vertices per ring, and the flat copy into a vertex buffer.
#include "BenchFloor.h"

#include "support/TestDoubles.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

namespace
{

constexpr int kSlices = 8;

struct TubeCase
{
    explicit TubeCase(int nodes)
        : nodes(nodes),
          xyz(3 * static_cast<std::size_t>(nodes)),
          rings(6 * static_cast<std::size_t>(nodes) * kSlices)
    {
        tube.Create(nodes, kSlices, 0.05, 1.0);
        for (int i = 0; i < nodes; ++i)
        {
            const double t = 0.05 * i;
            double* const p = &xyz[3 * static_cast<std::size_t>(i)];
            p[0] = std::cos(t) + 0.3 * std::sin(3.1 * t);
            p[1] = std::sin(t);
            p[2] = 0.02 * i;
            tube.SetNodeCoord(i, p);
        }
    }

    int nodes;
    std::vector<double> xyz;
    // Ring vertices then normals, as the floor and the copy write them.
    std::vector<double> rings;
    KesraTest::TestStreamline tube;
};

TubeCase& Data(int nodes)
{
    static std::map<int, TubeCase> cases;
    return cases.try_emplace(nodes, nodes).first->second;
}

// Reads every node and writes every ring vertex and normal once.
void FloorPass(TubeCase& data)
{
    const std::size_t perNode = 3 * kSlices;
    const std::size_t normals = perNode * static_cast<std::size_t>(data.nodes);
    for (std::size_t i = 0; i < static_cast<std::size_t>(data.nodes); ++i)
    {
        const double* p = &data.xyz[3 * i];
        double* vertex = &data.rings[perNode * i];
        double* normal = vertex + normals;
        for (std::size_t j = 0; j < perNode; j += 3)
        {
            for (std::size_t c = 0; c < 3; ++c)
            {
                vertex[j + c] = p[c];
                normal[j + c] = -p[c];
            }
        }
    }
}

void Tube_Floor(benchmark::State& state)
{
    const int nodes = static_cast<int>(state.range(0));
    TubeCase& data = Data(nodes);
    const auto floor = [&data] { FloorPass(data); };
    KesraBench::MeasureRow(state, nodes, floor, floor);
}

void Tube_Generate(benchmark::State& state)
{
    const int nodes = static_cast<int>(state.range(0));
    TubeCase& data = Data(nodes);
    KesraBench::MeasureRow(state, nodes, [&data] { FloorPass(data); },
                           [&data] { benchmark::DoNotOptimize(data.tube.GenerationStreamline3D()); });
}

// Generation and every vertex and normal read back one call each, as a host
// fills a vertex buffer without the flat copy.
void Tube_GenerateAndReadEach(benchmark::State& state)
{
    const int nodes = static_cast<int>(state.range(0));
    TubeCase& data = Data(nodes);
    const std::size_t normals = data.rings.size() / 2;
    KesraBench::MeasureRow(state, nodes, [&data] { FloorPass(data); }, [&] {
        data.tube.GenerationStreamline3D();
        double* out = data.rings.data();
        for (int i = 0; i < nodes; ++i)
        {
            for (int j = 0; j < kSlices; ++j, out += 3)
            {
                data.tube.GetSliceNodeCoord(i, j, out);
                data.tube.GetSliceNodeNormal(i, j, out + normals);
            }
        }
    });
}

// Generation and the flat copy a vertex buffer takes.
void Tube_GenerateAndCopy(benchmark::State& state)
{
    const int nodes = static_cast<int>(state.range(0));
    TubeCase& data = Data(nodes);
    double* const vertices = data.rings.data();
    double* const normals = vertices + data.rings.size() / 2;
    KesraBench::MeasureRow(state, nodes, [&data] { FloorPass(data); }, [&] {
        data.tube.GenerationStreamline3D();
        benchmark::DoNotOptimize(data.tube.CopyTubeGeometry(vertices, normals));
    });
}

BENCHMARK(Tube_Floor)->ArgName("nodes")->Arg(1000)->Arg(100000);
BENCHMARK(Tube_Generate)->ArgName("nodes")->Arg(1000)->Arg(100000);
BENCHMARK(Tube_GenerateAndReadEach)->ArgName("nodes")->Arg(1000)->Arg(100000);
BENCHMARK(Tube_GenerateAndCopy)->ArgName("nodes")->Arg(1000)->Arg(100000);

} // namespace
