// The scene's sphere as every backend draws it: a latitude-longitude mesh of
// the unit sphere that each backend scales, colours and uploads its way.
#pragma once

#include "common/SceneData.h"

#include <array>
#include <cmath>
#include <vector>

namespace KesraBackend
{

// Drawn a little inside the true radius, so that the tubes hugging the sphere
// stay in front of it (in a depth buffer, or when faces are sorted by depth).
constexpr double kSphereDrawnRadius = 0.97 * kSceneSphereRadius;
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
inline SphereMesh UnitSphere(int stacks, int sectors, bool repeatSeam)
{
    const double pi = 3.14159265358979323846;
    const int columns = repeatSeam ? sectors + 1 : sectors;
    SphereMesh mesh;
    for (int i = 0; i <= stacks; ++i)
    {
        const double polar = pi * i / stacks;
        for (int j = 0; j < columns; ++j)
        {
            const double azimuth = 2.0 * pi * j / sectors;
            mesh.normals.emplace_back(std::sin(polar) * std::cos(azimuth),
                                      std::sin(polar) * std::sin(azimuth), std::cos(polar));
        }
    }
    for (int i = 0; i < stacks; ++i)
    {
        for (int j = 0; j < sectors; ++j)
        {
            const int east = (j + 1) % columns;
            mesh.quads.push_back({i * columns + j, (i + 1) * columns + j, (i + 1) * columns + east,
                                  i * columns + east});
        }
    }
    return mesh;
}

} // namespace KesraBackend
