// The demo's scene: the sphere and streamline tubes of its flow coloured by speed
// through the colour legend, tips at the fastest and slowest points, a chart
// of the speed along the fastest line, the ruler and the axis triad, all
// drawn by the reference SVG backend. An observer of the camera keeps the
// triad and the ruler current, as a host's would.
#pragma once

#include "Engine/CameraEventHandler.h"
#include "Engine/Curve2D.h"
#include "Flow.h"
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
#include <vector>

namespace KesraDemo
{

enum class View
{
    Iso,
    Front,
    Back,
    Left,
    Right,
    Top,
    Bottom
};

struct NamedView
{
    View value;
    const char* name; // as the command line spells it
};

// The seven standard views, in the contact sheet's order.
inline constexpr NamedView kViews[] = {{View::Iso, "iso"},     {View::Front, "front"},
                                       {View::Back, "back"},   {View::Left, "left"},
                                       {View::Right, "right"}, {View::Top, "top"},
                                       {View::Bottom, "bottom"}};

// The name of a view, as the command line spells it.
const char* ViewName(View view);

enum class Palette
{
    RedBlue,
    BlueRed,
    Gray,
    GreenRed
};

struct SceneOptions
{
    Palette palette = Palette::RedBlue;
    int bandedBlocks = 0; // 0 for a smooth legend
};

// Hands the camera's rotation to the axis triad and its zoom to the ruler.
class OverlayUpdater : public KesraEngine::IKesraCameraEventHandler
{
public:
    using Matrix = KesraMathKit::TKesraMatrix4<double>;

    OverlayUpdater(KesraEngine::CKesraAxis& axis, KesraEngine::CKesraRuler& ruler)
        : m_axis(axis), m_ruler(ruler)
    {
    }

    void OnRotateMatUpdate(const Matrix& rotation) override { m_axis.SetRotateMatrix(rotation); }
    void OnTranslateUpdate(float, float) override {}
    void OnScaleUpdate(float scale) override { SetZoom(scale); }
    void OnTransformUpdate(const Matrix& rotation, float, float, float scale) override
    {
        m_axis.SetRotateMatrix(rotation);
        SetZoom(scale);
    }

private:
    // The ruler wants pixels per model unit, the camera gives model units
    // per pixel.
    void SetZoom(float scale) { m_ruler.SetOpenGLScale(1.0f / scale); }

    KesraEngine::CKesraAxis& m_axis;
    KesraEngine::CKesraRuler& m_ruler;
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
    DemoScene(const std::vector<FlowLine>& lines, const SceneOptions& options);
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

    const SceneSummary& Summary() const { return m_summary; }
    // The ruler's round length and unit in the last frame.
    std::string RulerText() const;

private:
    struct Extremes;
    static Extremes FindExtremes(const std::vector<FlowLine>& lines);
    void BuildTubes(const std::vector<FlowLine>& lines);
    void BuildTips(const Extremes& extremes);
    void BuildChart(const std::vector<FlowLine>& lines, std::size_t fastestLine);
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
    OverlayUpdater m_updater;
    float m_box[6] = {0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f};
    SceneSummary m_summary;
    int m_frames = 0;
};

} // namespace KesraDemo
