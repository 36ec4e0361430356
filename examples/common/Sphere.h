// The flow's sphere as the example hosts draw it: a latitude-longitude mesh
// of the unit sphere that each backend scales, colours and uploads its way.
#pragma once

#include "Flow.h"

#include <array>
#include <vector>

namespace KesraExamples
{

// Drawn a little inside the true radius, so that the tubes hugging the sphere
// stay in front of it (in a depth buffer, or when faces are sorted by depth).
constexpr double kSphereDrawnRadius = 0.97 * kSphereRadius;
constexpr unsigned char kSphereRgba[4] = {205, 205, 210, 255};

struct SphereMesh
{
    // Unit normals, which are also the points of the unit sphere, ring after
    // ring: stacks + 1 rings from the +z pole (polar angle 0) to the -z pole,
    // each of Columns() points from azimuth 0 on in steps of 2 pi / sectors.
    std::vector<Vec3> normals;
    // Four indices into normals each: down the meridian, then east, so
    // counter-clockwise seen from outside. A quad splits into the triangles
    // (0, 1, 2) and (0, 2, 3).
    std::vector<std::array<int, 4>> quads;
};

// With repeatSeam, each ring ends with a point at azimuth 2 pi that repeats
// its first (for meshes whose vertices carry the seam twice); without, the
// last quad of a ring closes on the ring's first point. stacks and sectors
// must be positive.
SphereMesh UnitSphere(int stacks, int sectors, bool repeatSeam);

} // namespace KesraExamples
