#include "Flow.h"

#include <cmath>
#include <utility>

namespace KesraExamples
{

namespace
{

constexpr double kStream = 1.0;       // free stream speed, m/s
constexpr double kStart = -4.0;       // seeds lie in the plane x = kStart
constexpr double kEnd = 4.0;          // lines end where x passes kEnd
constexpr double kStep = 0.01;        // integration step, s
constexpr double kSpacing = 0.15;     // node spacing along a line, m
constexpr int kMaxSteps = 20000;

// Seed rings: radius about the x axis and number of lines on it.
struct SeedRing
{
    double radius;
    int count;
};
constexpr SeedRing kRings[] = {{0.2, 4}, {0.55, 6}, {0.95, 8}, {1.4, 8}};

Vec3 RungeKuttaStep(const Vec3& p, double h)
{
    const Vec3 k1 = Velocity(p);
    const Vec3 k2 = Velocity(p + k1 * (0.5 * h));
    const Vec3 k3 = Velocity(p + k2 * (0.5 * h));
    const Vec3 k4 = Velocity(p + k3 * h);
    return p + (k1 + k2 * 2.0 + k3 * 2.0 + k4) * (h / 6.0);
}

// The traced path at equal arc lengths.
FlowLine Resample(const std::vector<Vec3>& path)
{
    FlowLine line;
    double travelled = 0.0;
    double nextMark = 0.0;
    for (std::size_t i = 0; i + 1 < path.size(); ++i)
    {
        const Vec3 segment = path[i + 1] - path[i];
        const double length = segment.Length();
        while (length > 0.0 && nextMark <= travelled + length)
        {
            const Vec3 p = path[i] + segment * ((nextMark - travelled) / length);
            line.points.push_back(p);
            line.speeds.push_back(Velocity(p).Length());
            line.lengths.push_back(nextMark);
            nextMark += kSpacing;
        }
        travelled += length;
    }
    return line;
}

} // namespace

Vec3 Velocity(const Vec3& p)
{
    // Gradient of the potential U x (1 + a^3 / (2 r^3)).
    const double r2 = p.Dot(p);
    const double r = std::sqrt(r2);
    const double r3 = r2 * r;
    const double r5 = r3 * r2;
    const double k = 0.5 * kStream * kSphereRadius * kSphereRadius * kSphereRadius;
    return Vec3(kStream + k * (1.0 / r3 - 3.0 * p.x * p.x / r5), k * (-3.0 * p.x * p.y / r5),
                k * (-3.0 * p.x * p.z / r5));
}

std::vector<FlowLine> TraceSphereFlow()
{
    std::vector<FlowLine> lines;
    int ringIndex = 0;
    for (const SeedRing& ring : kRings)
    {
        for (int k = 0; k < ring.count; ++k)
        {
            // Each ring is turned by half a spacing against the one before,
            // so that the lines do not hide behind each other.
            const double angle = 2.0 * 3.14159265358979323846 * (k + 0.5 * ringIndex) / ring.count;
            Vec3 p(kStart, ring.radius * std::cos(angle), ring.radius * std::sin(angle));
            std::vector<Vec3> path{p};
            for (int step = 0; step < kMaxSteps && p.x < kEnd; ++step)
            {
                p = RungeKuttaStep(p, kStep);
                path.push_back(p);
            }
            lines.push_back(Resample(path));
        }
        ++ringIndex;
    }
    return lines;
}

KesraBackend::SceneData FlowSceneData()
{
    KesraBackend::SceneData data;
    for (FlowLine& flow : TraceSphereFlow())
    {
        data.lines.push_back(
            KesraBackend::ScalarLine{std::move(flow.points), std::move(flow.speeds), std::move(flow.lengths)});
    }
    data.title = "Flow around a sphere";
    data.valueName = "Speed";
    data.unit = "[m/s]";
    data.lengthUnit = "[m]";
    data.tipUnit = " m/s";
    data.tubeRadius = 0.035;
    data.sphere = true;
    data.tipCentre = Vec3(0.0, 0.0, 0.0);
    // Clear of the sphere and of the lines that hug it.
    data.tipDistance = 2.4;
    return data;
}

} // namespace KesraExamples
