// What a scene of the reference backends shows: polylines with a value at
// every point, and how to name, frame and annotate them. A host fills it from
// its own results (a traced flow, a result file) and hands it to a scene.
#pragma once

#include "MathKit/Vector3.h"

#include <cstddef>
#include <string>
#include <vector>

namespace KesraBackend
{

using Vec3 = KesraMathKit::TKesraVector3<double>;

// The sphere a scene can show: radius 1 model unit at the origin.
constexpr double kSceneSphereRadius = 1.0;

struct ScalarLine
{
    std::vector<Vec3> points;
    std::vector<double> values;  // one per point
    std::vector<double> lengths; // arc length from the first point, where the
                                 // source knows it (a traced flow); else empty
};

struct SceneData
{
    std::vector<ScalarLine> lines;
    std::string title;      // the view's title
    std::string valueName;  // the legend's title
    std::string unit;       // the legend's unit line
    std::string lengthUnit; // the ruler's unit; empty shows none
    std::string tipUnit;    // after the numbers of the tips
    double tubeRadius = 0.0; // model units; 0 picks one from the model's size
    std::size_t skippedLines = 0; // source lines with nothing a tube can show
    bool sphere = false;     // the sphere of radius kSceneSphereRadius at the origin
    // Tip labels go on the ray from this centre through their point, at this
    // distance; a distance of 0 picks the box centre and its size.
    Vec3 tipCentre;
    double tipDistance = 0.0;
};

} // namespace KesraBackend
