// The demo's scene: the sphere and streamline tubes of its flow coloured by speed
// through the colour legend, tips at the fastest and slowest points, a chart
// of the speed along the fastest line, the ruler and the axis triad, all
// drawn by the reference SVG backend. An observer of the camera keeps the
// triad and the ruler current, as a host's would.
//
// The data, its extremes and their tips, the sphere's mesh, the palettes and
// the look are every backend's (common/); what is here is
// the SVG wiring, the frame's layout, the chart and the contact sheet's key.
#pragma once

#include "Engine/Curve2D.h"
#include "common/OverlayUpdater.h"
#include "common/Palette.h"
#include "common/SceneData.h"
#include "common/SceneExtremes.h"
#include "common/Views.h"
#include "svg/SvgAxis.h"
#include "svg/SvgCamera.h"
#include "svg/SvgLight.h"
#include "svg/SvgRenderer.h"
#include "svg/SvgRuler.h"
#include "svg/SvgScalarBar.h"
#include "svg/SvgSheet.h"
#include "svg/SvgStreamline.h"
#include "svg/SvgTipManager.h"

#include <string>

namespace KesraDemo
{

using KesraBackend::Palette;
using KesraBackend::SceneData;
using KesraBackend::Vec3;
using KesraBackend::View;

struct SceneOptions
{
    Palette palette = Palette::RedBlue;
    int bandedBlocks = 0; // 0 for a smooth legend
};

struct SceneSummary
{
    int streamlines = 0;
    int nodes = 0;
    int ringVertices = 0;
    double minSpeed = 0.0;
    double maxSpeed = 0.0;
};

class DemoScene
{
public:
    DemoScene(const SceneData& data, const SceneOptions& options);
    ~DemoScene();
    DemoScene(const DemoScene&) = delete;
    DemoScene& operator=(const DemoScene&) = delete;

    // One frame of the scene in a window of width x height pixels, fitted with
    // ZoomAll and turned to view. A frame for the contact sheet leaves out the
    // legend, which the sheet shows once (RenderKey), and the chart.
    std::string RenderFrame(View view, int width, int height, bool forSheet);
    // The legend alone, as wide as in a frame and height pixels high: the
    // contact sheet's colour key.
    KesraSvg::SheetCell RenderKey(int height);
    // The legend once in each of its options (the published palettes, the log
    // scale smooth and banded, the NaN, below- and above-range swatches and
    // the label formats), each a cell as wide as the key and height high.
    std::vector<KesraSvg::SheetCell> RenderLegendStrip(int height) const;

    const SceneSummary& Summary() const { return m_summary; }
    // The ruler's round length and unit in the last frame.
    std::string RulerText() const;

private:
    void BuildTubes(const SceneData& data);
    void BuildTips(const SceneData& data, const KesraBackend::Extremes& extremes);
    void BuildChart(const KesraBackend::ScalarLine& line);
    void BuildSphere();
    void Layout(int width, int height, bool forSheet);

    KesraSvg::CSvgRenderer m_renderer;
    KesraSvg::CSvgRenderer m_keyRenderer;
    KesraSvg::CSvgCamera m_camera;
    KesraSvg::CSvgLight m_light;
    KesraSvg::CSvgFont m_font;
    KesraSvg::CSvgScalarBar m_legend;
    KesraSvg::CSvgRuler m_ruler;
    KesraSvg::CSvgAxis m_axis;
    KesraSvg::CSvgStreamlineFactory m_tubeFactory;
    KesraSvg::CSvgTipManagerFactory m_tipFactory;
    KesraEngine::CKesraTipManager* m_tips = nullptr;
    KesraEngine::CKesraCurve2D m_chart;
    KesraSvg::SurfaceMesh m_sphere;
    KesraBackend::OverlayUpdater m_updater;
    float m_box[6] = {0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f};
    std::string m_title; // of the data, before the view's name
    SceneSummary m_summary;
    int m_frames = 0;
};

} // namespace KesraDemo
