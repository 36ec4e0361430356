// Two polylines whose tubes were generated once and saved as a fingerprint
// of the exact bytes (tests/StreamlineReferenceTest.cpp): a helix, whose
// every node is a bend, and a polyline with the degenerate cases of tube
// generation: segments far below and just around the 1e-08 tolerance,
// reversals, a repeated node and a sharp bend against a large radius.
#pragma once

#include "Engine/Streamline.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

namespace KesraTest
{

using TubeVector = KesraMathKit::TKesraVector3<double>;

inline std::vector<TubeVector> HelixNodes(int nodes)
{
    std::vector<TubeVector> points;
    for (int i = 0; i < nodes; ++i)
    {
        const double t = 0.37 * i;
        points.emplace_back(3.0 * std::cos(t), 3.0 * std::sin(t), 0.25 * t);
    }
    return points;
}

inline std::vector<TubeVector> KinkedNodes()
{
    return {TubeVector(0, 0, 0),          TubeVector(0.3, 0.1, 1.0),
            TubeVector(0.3, 0.1, 1.0),    TubeVector(0.3 + 1e-12, 0.1, 1.0),
            TubeVector(0.9, -0.4, 1.7),   TubeVector(0.9, -0.4, 1.7 + 5e-9),
            TubeVector(0.9, -0.4, 1.7 + 2e-8), TubeVector(0.2, 0.3, 0.4),
            TubeVector(0.9, -0.4, 1.7),   TubeVector(1.5, 0.0, 1.0),
            TubeVector(1.5, 0.15, 1.05),  TubeVector(-2.0, 1.0, 3.0),
            TubeVector(-2.0, 1.0, 3.0),   TubeVector(-2.0 - 1e-9, 1.0, 3.0),
            TubeVector(-1.0, 1.0, 3.0),   TubeVector(-3.0, 1.0, 3.0)};
}

// Sets the nodes of a created tube of as many nodes and generates it.
inline bool GenerateOver(KesraEngine::CKesraStreamline& tube, const std::vector<TubeVector>& nodes)
{
    int node = 0;
    for (TubeVector p : nodes)
    {
        if (!tube.SetNodeCoord(node++, &p.x))
        {
            return false;
        }
    }
    return tube.GenerationStreamline3D();
}

// FNV-1a over the bytes of every ring vertex, node by node, then of every
// normal in the same order.
inline std::uint64_t TubeFingerprint(const KesraEngine::CKesraStreamline& tube)
{
    std::uint64_t hash = 14695981039346656037ull;
    const auto add = [&hash](const double (&xyz)[3]) {
        unsigned char bytes[sizeof xyz];
        std::memcpy(bytes, xyz, sizeof xyz);
        for (const unsigned char b : bytes)
        {
            hash = (hash ^ b) * 1099511628211ull;
        }
    };
    for (const bool normals : {false, true})
    {
        for (int i = 0; i < tube.GetNodes(); ++i)
        {
            for (int j = 0; j < tube.GetSlices(); ++j)
            {
                double xyz[3] = {0.0, 0.0, 0.0};
                if (normals)
                {
                    tube.GetSliceNodeNormal(i, j, xyz);
                }
                else
                {
                    tube.GetSliceNodeCoord(i, j, xyz);
                }
                add(xyz);
            }
        }
    }
    return hash;
}

} // namespace KesraTest
