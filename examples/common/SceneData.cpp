#include "SceneData.h"

#include <utility>

namespace KesraExamples
{

SceneData FlowSceneData()
{
    SceneData data;
    for (FlowLine& flow : TraceSphereFlow())
    {
        data.lines.push_back(
            ScalarLine{std::move(flow.points), std::move(flow.speeds), std::move(flow.lengths)});
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
