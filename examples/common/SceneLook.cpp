#include "SceneLook.h"

#include <algorithm>

namespace KesraExamples
{

void DressPaper(KesraEngine::CKesraRenderer& renderer)
{
    renderer.SetBackgroundColor({214, 226, 242, 255});
    renderer.SetBackgroundColor2({255, 255, 255, 255});
    renderer.SetGradient(1);
    renderer.SetTitleColor({32, 48, 84, 255});
}

void PlaceLight(KesraEngine::CKesraLight& light)
{
    light.SetPosition(Vec3(-0.45, 0.6, 1.0));
    light.SetFocalPoint(Vec3(0.0, 0.0, 0.0));
    light.SetColor({255, 255, 255, 255});
    light.Apply();
}

void DressLegend(KesraEngine::CKesraScalarBar& legend, const SceneData& data)
{
    legend.SetTitle(data.valueName, false);
    legend.SetUnit(data.unit);
    legend.SetValueFormat(3, 2);
}

void DressRuler(KesraEngine::CKesraRuler& ruler, const SceneData& data)
{
    // The ruler keeps "[mm]" for an empty unit: a blank one shows none.
    ruler.SetUnit(data.lengthUnit.empty() ? std::string(" ") : data.lengthUnit);
    ruler.SetRulerHeight(12);
    ruler.SetAutoBlock(true);
}

void FitBesideLegend(KesraEngine::CKesraCamera& camera, int width, int height, int legendWidth)
{
    const float fit = static_cast<float>(std::min(width, height))
                      / static_cast<float>(std::max(std::min(width - legendWidth, height - kTitleBand), 1));
    camera.SetScale(camera.GetScale() * fit);
    camera.SetTranslation(-0.5f * static_cast<float>(legendWidth) * camera.GetScale(), 0.0f);
}

} // namespace KesraExamples
