// The look that every scene gives its results, whatever the backend: paper,
// light, legend and ruler settings, the window's bands, and the fit of the
// model beside the legend.
#pragma once

#include "Engine/Camera.h"
#include "Engine/Light.h"
#include "Engine/Renderer.h"
#include "Engine/Ruler.h"
#include "Engine/ScalarBar.h"
#include "common/SceneData.h"

#include <algorithm>
#include <string>

namespace KesraBackend
{

constexpr int kTubeSlices = 8;       // vertices per tube ring
constexpr int kTitleBand = 40;       // pixels at the top taken by the view's title
constexpr double kRulerStart = 0.42; // the ruler's start, as a share of the width

// A pale blue gradient to white, and a dark blue title.
inline void DressPaper(KesraEngine::CKesraRenderer& renderer)
{
    renderer.SetBackgroundColor({214, 226, 242, 255});
    renderer.SetBackgroundColor2({255, 255, 255, 255});
    renderer.SetGradient(1);
    renderer.SetTitleColor({32, 48, 84, 255});
}

// From the upper left, in front of the picture, white.
inline void PlaceLight(KesraEngine::CKesraLight& light)
{
    light.SetPosition(Vec3(-0.45, 0.6, 1.0));
    light.SetFocalPoint(Vec3(0.0, 0.0, 0.0));
    light.SetColor({255, 255, 255, 255});
    light.Apply();
}

// The value's name and unit, three significant digits.
inline void DressLegend(KesraEngine::CKesraScalarBar& legend, const SceneData& data)
{
    legend.SetTitle(data.valueName, false);
    legend.SetUnit(data.unit);
    legend.SetValueFormat(3, 2);
}

// The data's length unit, 12 pixels high, blocks chosen by the ruler.
inline void DressRuler(KesraEngine::CKesraRuler& ruler, const SceneData& data)
{
    // The ruler keeps "[mm]" for an empty unit: a blank one shows none.
    ruler.SetUnit(data.lengthUnit.empty() ? std::string(" ") : data.lengthUnit);
    ruler.SetRulerHeight(12);
    ruler.SetAutoBlock(true);
}

// ZoomAll fits the model into the whole window; the legend takes the right
// legendWidth pixels and the title the top band, so this scales the fitted
// model into what is left and moves it there. Call it right after ZoomAll.
inline void FitBesideLegend(KesraEngine::CKesraCamera& camera, int width, int height, int legendWidth)
{
    const float fit = static_cast<float>(std::min(width, height))
                      / static_cast<float>(std::max(std::min(width - legendWidth, height - kTitleBand), 1));
    camera.SetScale(camera.GetScale() * fit);
    camera.SetTranslation(-0.5f * static_cast<float>(legendWidth) * camera.GetScale(), 0.0f);
}

} // namespace KesraBackend
