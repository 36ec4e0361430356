// Per-frame costs of the camera: projecting 10^6 points one call each and in
// one batch, and one frame of each animation.
#include "BenchFloor.h"

#include "Engine/Camera.h"
#include "support/TestDoubles.h"

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

namespace
{

using Vec = KesraMathKit::TKesraVector3<double>;

constexpr std::size_t kPoints = 1000000;

template <typename Real>
struct PointCase
{
    std::vector<Real> xyz = std::vector<Real>(3 * kPoints);
    std::vector<Real> out = std::vector<Real>(3 * kPoints);

    PointCase()
    {
        std::mt19937_64 random(3);
        std::uniform_real_distribution<Real> spread(-1, 1);
        for (Real& c : xyz)
        {
            c = spread(random);
        }
    }
};

template <typename Real>
PointCase<Real>& Data()
{
    static PointCase<Real> data;
    return data;
}

// Reads every coordinate and writes as many.
template <typename Real>
void FloorPass()
{
    PointCase<Real>& data = Data<Real>();
    const Real* in = data.xyz.data();
    Real* out = data.out.data();
    for (std::size_t k = 0; k < 3 * kPoints; ++k)
    {
        out[k] = -in[k];
    }
}

KesraTest::TestCamera Camera()
{
    KesraTest::TestCamera camera(1200, 800);
    camera.ZoomAll(-1.0f, 1.0f, -1.0f, 1.0f, -1.0f, 1.0f);
    camera.SetRotateMatrixToISOView(false);
    return camera;
}

template <typename Real>
void Project_Floor(benchmark::State& state)
{
    KesraBench::MeasureRow(state, kPoints, FloorPass<Real>, FloorPass<Real>);
}

void Project_Single(benchmark::State& state)
{
    KesraTest::TestCamera camera = Camera();
    PointCase<double>& data = Data<double>();
    KesraBench::MeasureRow(state, kPoints, FloorPass<double>, [&] {
        for (std::size_t k = 0; k < 3 * kPoints; k += 3)
        {
            Vec out;
            camera.ProjectPointWorldToView(Vec(data.xyz[k], data.xyz[k + 1], data.xyz[k + 2]), out);
            data.out[k] = out.x;
            data.out[k + 1] = out.y;
            data.out[k + 2] = out.z;
        }
    });
}

template <typename Real>
void Project_Batch(benchmark::State& state)
{
    KesraTest::TestCamera camera = Camera();
    PointCase<Real>& data = Data<Real>();
    KesraBench::MeasureRow(state, kPoints, FloorPass<Real>, [&] {
        camera.ProjectPointsWorldToView(data.xyz.data(), kPoints, data.out.data());
    });
}

BENCHMARK_TEMPLATE(Project_Floor, double);
BENCHMARK(Project_Single);
BENCHMARK_TEMPLATE(Project_Batch, double);
BENCHMARK_TEMPLATE(Project_Floor, float);
BENCHMARK_TEMPLATE(Project_Batch, float);

// Animation frames have no floor: each must stay within a microsecond.
void Frame_SmoothRotate(benchmark::State& state)
{
    KesraTest::TestCamera camera(1200, 800);
    camera.SetSmoothRotateFrames(1 << 30);
    camera.SetRotateMatrixToISOView(true);
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(camera.SmoothRotateImpl());
    }
}
BENCHMARK(Frame_SmoothRotate);

void Frame_SixSides(benchmark::State& state)
{
    KesraTest::TestCamera camera(1200, 800);
    camera.SetSixSidesInspection(true, false);
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(camera.SixSidesInspectionImpl());
    }
}
BENCHMARK(Frame_SixSides);

} // namespace
