// The examples' result data: streamlines of the potential flow of a uniform
// stream past a sphere, traced by the host itself.
//
// The stream runs along +x at 1 m/s, the sphere of radius 1 m sits at the
// origin. Speeds run from 0 at the two stagnation points to 1.5 m/s at the
// sphere's equator.
#pragma once

#include "common/SceneData.h"

#include <vector>

namespace KesraExamples
{

using KesraBackend::Vec3;

// m, centred at the origin: the sphere a scene shows.
constexpr double kSphereRadius = KesraBackend::kSceneSphereRadius;

struct FlowLine
{
    std::vector<Vec3> points;    // equally spaced along the line, model units
    std::vector<double> speeds;  // |v| at each point, m/s
    std::vector<double> lengths; // arc length from the first point, m
};

// The velocity of the flow at p (outside the sphere).
Vec3 Velocity(const Vec3& p);

// Lines seeded upstream on rings around the stream axis, each traced with a
// fourth-order Runge-Kutta step until it leaves the box downstream, and
// resampled at equal arc lengths.
std::vector<FlowLine> TraceSphereFlow();

// The flow past a sphere as a scene shows it, coloured by speed.
KesraBackend::SceneData FlowSceneData();

} // namespace KesraExamples
