// Per-frame costs of the camera: projecting a model's points, and one frame of
// each animation.
#include "Engine/Camera.h"
#include "support/TestDoubles.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace
{

using Vec = KesraMathKit::TKesraVector3<double>;

void ProjectPoints(benchmark::State& state)
{
    KesraTest::TestCamera camera(1200, 800);
    camera.ZoomAll(-1.0f, 1.0f, -1.0f, 1.0f, -1.0f, 1.0f);
    camera.SetRotateMatrixToISOView(false);
    std::vector<Vec> points(static_cast<std::size_t>(state.range(0)));
    for (std::size_t i = 0; i < points.size(); ++i)
    {
        points[i] = Vec(0.001 * static_cast<double>(i), 0.5, -0.25);
    }
    Vec out;
    for (auto _ : state)
    {
        for (const Vec& p : points)
        {
            camera.ProjectPointWorldToView(p, out);
            benchmark::DoNotOptimize(out);
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(ProjectPoints)->Arg(1000)->Arg(100000);

void SmoothRotateFrame(benchmark::State& state)
{
    KesraTest::TestCamera camera(1200, 800);
    camera.SetSmoothRotateFrames(1 << 30);
    camera.SetRotateMatrixToISOView(true);
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(camera.SmoothRotateImpl());
    }
}
BENCHMARK(SmoothRotateFrame);

void SixSidesFrame(benchmark::State& state)
{
    KesraTest::TestCamera camera(1200, 800);
    camera.SetSixSidesInspection(true, false);
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(camera.SixSidesInspectionImpl());
    }
}
BENCHMARK(SixSidesFrame);

} // namespace
