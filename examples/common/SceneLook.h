// The look that the example hosts give the flow past a sphere, whatever the
// backend: paper, light, legend and ruler settings, the window's bands, and
// the fit of the model beside the legend.
#pragma once

#include "Engine/Camera.h"
#include "Engine/Light.h"
#include "Engine/Renderer.h"
#include "Engine/Ruler.h"
#include "Engine/ScalarBar.h"
#include "SceneData.h"

namespace KesraExamples
{

constexpr int kTubeSlices = 8;       // vertices per tube ring
constexpr int kTitleBand = 40;       // pixels at the top taken by the view's title
constexpr double kRulerStart = 0.42; // the ruler's start, as a share of the width

// A pale blue gradient to white, and a dark blue title.
void DressPaper(KesraEngine::CKesraRenderer& renderer);

// From the upper left, in front of the picture, white.
void PlaceLight(KesraEngine::CKesraLight& light);

// The value's name and unit, three significant digits.
void DressLegend(KesraEngine::CKesraScalarBar& legend, const SceneData& data);

// The data's length unit, 12 pixels high, blocks chosen by the ruler.
void DressRuler(KesraEngine::CKesraRuler& ruler, const SceneData& data);

// ZoomAll fits the model into the whole window; the legend takes the right
// legendWidth pixels and the title the top band, so this scales the fitted
// model into what is left and moves it there. Call it right after ZoomAll.
void FitBesideLegend(KesraEngine::CKesraCamera& camera, int width, int height, int legendWidth);

} // namespace KesraExamples
