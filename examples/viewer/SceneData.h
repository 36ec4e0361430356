// What the viewer shows: polylines with a value at every point, and how to
// name, frame and annotate them. The flow past a sphere and the user's own
// files both come in this form.
#pragma once

#include "MathKit/Vector3.h"

#include <string>
#include <vector>

namespace KesraViewer
{

using Vec3 = KesraMathKit::TKesraVector3<double>;

struct ScalarLine
{
    std::vector<Vec3> points;
    std::vector<double> values; // one per point
};

struct SceneData
{
    std::vector<ScalarLine> lines;
    std::string title;      // the view's title
    std::string valueName;  // the legend's title
    std::string unit;       // the legend's unit line
    std::string tipUnit;    // after the numbers of the tips
    double tubeRadius = 0.0; // model units; 0 picks one from the model's size
    bool sphere = false;     // the flow's sphere of radius 1 at the origin
    // Tip labels go on the ray from this centre through their point, at this
    // distance; a distance of 0 picks the box centre and its size.
    Vec3 tipCentre;
    double tipDistance = 0.0;
};

// The demo's flow past a sphere, coloured by speed.
SceneData FlowSceneData();

} // namespace KesraViewer
