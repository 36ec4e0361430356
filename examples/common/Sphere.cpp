#include "Sphere.h"

#include <cmath>

namespace KesraExamples
{

SphereMesh UnitSphere(int stacks, int sectors, bool repeatSeam)
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

} // namespace KesraExamples
