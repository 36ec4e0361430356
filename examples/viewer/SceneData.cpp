#include "SceneData.h"

#include "Flow.h"

namespace KesraViewer
{

SceneData FlowSceneData()
{
    SceneData data;
    for (const KesraDemo::FlowLine& flow : KesraDemo::TraceSphereFlow())
    {
        data.lines.push_back(ScalarLine{flow.points, flow.speeds});
    }
    data.title = "Flow around a sphere";
    data.valueName = "Speed";
    data.unit = "[m/s]";
    data.tipUnit = " m/s";
    data.tubeRadius = 0.035;
    data.sphere = true;
    data.tipCentre = Vec3(0.0, 0.0, 0.0);
    data.tipDistance = 2.4;
    return data;
}

} // namespace KesraViewer
