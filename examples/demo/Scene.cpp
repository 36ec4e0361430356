#include "Scene.h"

#include "common/SceneLook.h"
#include "common/SphereMesh.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace KesraDemo
{

namespace
{

constexpr int kLegendWidth = 170; // pixels at the right edge taken by the legend

// The paper and the type of every picture of the scene.
void PreparePaper(KesraSvg::CSvgRenderer& renderer, const KesraSvg::CSvgFont& font)
{
    renderer.CreateContext();
    KesraBackend::DressPaper(renderer);
    renderer.SetFont(&font);
}

// One cell of the legend strip: its caption and what it changes on a copy of
// the scene's legend.
struct LegendVariant
{
    const char* caption;
    void (*apply)(KesraSvg::CSvgScalarBar& legend);
};

constexpr LegendVariant kLegendVariants[] = {
    {"viridis", [](KesraSvg::CSvgScalarBar& legend) { legend.SetColorPaletteViridis(); }},
    {"cividis", [](KesraSvg::CSvgScalarBar& legend) { legend.SetColorPaletteCividis(); }},
    {"cool to warm", [](KesraSvg::CSvgScalarBar& legend) { legend.SetColorPaletteCoolWarm(); }},
    {"turbo", [](KesraSvg::CSvgScalarBar& legend) { legend.SetColorPaletteTurbo(); }},
    {"log scale", [](KesraSvg::CSvgScalarBar& legend) { legend.SetLogScale(1); }},
    {"log scale, 8 bands",
     [](KesraSvg::CSvgScalarBar& legend) {
         legend.SetLogScale(1);
         legend.SetBanded(1);
         legend.SetBlockNum(8);
     }},
    {"NaN, below, above",
     [](KesraSvg::CSvgScalarBar& legend) {
         legend.SetUseNanColor(1);
         legend.SetUseBelowRangeColor(1);
         legend.SetUseAboveRangeColor(1);
         legend.SetBelowRangeColor(40, 40, 120);
         legend.SetAboveRangeColor(120, 20, 20);
     }},
    {"fixed, 3 decimals",
     [](KesraSvg::CSvgScalarBar& legend) {
         legend.SetLabelFormat(KesraEngine::eLabelFormatFixed, 3);
     }},
    {"scientific",
     [](KesraSvg::CSvgScalarBar& legend) {
         legend.SetLabelFormat(KesraEngine::eLabelFormatScientific, 1);
     }},
    {"automatic",
     [](KesraSvg::CSvgScalarBar& legend) {
         legend.SetLabelFormat(KesraEngine::eLabelFormatAutomatic, 0);
     }},
    {"in thousandths",
     [](KesraSvg::CSvgScalarBar& legend) {
         legend.SetLabelFormat(KesraEngine::eLabelFormatFixed, 0);
         legend.SetLabelScale(-3);
     }},
};

} // namespace

DemoScene::DemoScene(const SceneData& data, const SceneOptions& options)
    : m_renderer(1200, 800), m_keyRenderer(kLegendWidth, 400), m_camera(1200, 800),
      m_light(m_renderer), m_axis(m_renderer), m_updater(m_axis, m_ruler), m_title(data.title)
{
    PreparePaper(m_renderer, m_font);
    PreparePaper(m_keyRenderer, m_font);
    m_keyRenderer.SetIdPrefix("key-");
    m_keyRenderer.SetName(""); // the sheet has the title
    m_renderer.SetCamera(&m_camera);
    m_renderer.SetPointSmoothing(1);
    m_renderer.SetLineSmoothing(1);
    m_renderer.SetPolygonSmoothing(1);
    m_renderer.InitializeState();
    KesraBackend::PlaceLight(m_light);

    KesraBackend::LoadPalette(m_legend, options.palette);
    if (options.bandedBlocks > 0)
    {
        m_legend.SetBanded(1);
        m_legend.SetBlockNum(options.bandedBlocks);
    }
    KesraBackend::DressLegend(m_legend, data);
    m_legend.SetNote("stream 1 m/s");

    const KesraBackend::Extremes extremes = KesraBackend::FindExtremes(data.lines);
    m_summary.minSpeed = extremes.smallest.value;
    m_summary.maxSpeed = extremes.largest.value;
    m_legend.SetValueRange(m_summary.minSpeed, m_summary.maxSpeed, true, true);

    KesraBackend::DressRuler(m_ruler, data);
    m_camera.RegisterEventHandler(&m_updater);

    BuildTubes(data);
    BuildTips(data, extremes);
    if (extremes.found)
    {
        BuildChart(data.lines[extremes.largest.line]);
    }
    BuildSphere();
    m_renderer.SetScalarBar(&m_legend);
    m_keyRenderer.SetScalarBar(&m_legend);
    m_renderer.SetRuler(&m_ruler);
    m_renderer.SetAxis(&m_axis);
    m_renderer.SetTipManager(m_tips);
}

DemoScene::~DemoScene()
{
    m_camera.UnregisterEventHandler(&m_updater);
}

void DemoScene::BuildTubes(const SceneData& data)
{
    const double radius = data.tubeRadius;
    float low[3] = {std::numeric_limits<float>::max(), std::numeric_limits<float>::max(),
                    std::numeric_limits<float>::max()};
    float high[3] = {std::numeric_limits<float>::lowest(), std::numeric_limits<float>::lowest(),
                     std::numeric_limits<float>::lowest()};
    for (const KesraBackend::ScalarLine& line : data.lines)
    {
        const int nodes = static_cast<int>(line.points.size());
        KesraSvg::CSvgStreamline* tube = m_tubeFactory.MakeStreamline();
        if (tube == nullptr || !tube->Create(nodes, KesraBackend::kTubeSlices, radius, 1.0))
        {
            continue;
        }
        // The nodes' colours in one batch, four bytes each with alpha 255.
        std::vector<unsigned char> rgba(4 * static_cast<std::size_t>(nodes));
        m_legend.GetOpenGLColors(line.values.data(), static_cast<std::size_t>(nodes), rgba.data());
        for (int i = 0; i < nodes; ++i)
        {
            const Vec3& p = line.points[static_cast<std::size_t>(i)];
            double xyz[3] = {p.x, p.y, p.z};
            tube->SetNodeCoord(i, xyz);
            tube->SetNodeColor(i, &rgba[4 * static_cast<std::size_t>(i)]);
            for (int axis = 0; axis < 3; ++axis)
            {
                low[axis] = std::min(low[axis], static_cast<float>(xyz[axis] - radius));
                high[axis] = std::max(high[axis], static_cast<float>(xyz[axis] + radius));
            }
        }
        tube->GenerationStreamline3D();
        // A banded legend colours each stretch by its mean speed: a swatch colour.
        tube->SetNodeValues(line.values, &m_legend);
        m_renderer.AddStreamline(tube);
        ++m_summary.streamlines;
        m_summary.nodes += nodes;
        m_summary.ringVertices += nodes * KesraBackend::kTubeSlices;
    }
    for (int axis = 0; axis < 3; ++axis)
    {
        m_box[2 * axis] = low[axis];
        m_box[2 * axis + 1] = high[axis];
    }
}

void DemoScene::BuildTips(const SceneData& data, const KesraBackend::Extremes& extremes)
{
    m_tips = m_tipFactory.CreateTipManager();
    if (m_tips != nullptr)
    {
        KesraBackend::AddExtremeTips(*m_tips, extremes, "%.2f", data.tipUnit, data.tipCentre,
                                      data.tipDistance);
    }
}

void DemoScene::BuildChart(const KesraBackend::ScalarLine& line)
{
    for (std::size_t i = 0; i < line.values.size() && i < line.lengths.size(); ++i)
    {
        m_chart.InsertNode(line.lengths[i], line.values[i]);
    }
}

void DemoScene::BuildSphere()
{
    // Each ring closes on its first point: quadrilaterals need no seam.
    KesraBackend::SphereMesh mesh = KesraBackend::UnitSphere(18, 36, false);
    for (const Vec3& normal : mesh.normals)
    {
        m_sphere.points.push_back(normal * KesraBackend::kSphereDrawnRadius);
    }
    m_sphere.normals = std::move(mesh.normals);
    m_sphere.quads = std::move(mesh.quads);
    const unsigned char* rgba = KesraBackend::kSphereRgba;
    m_sphere.color = {rgba[0], rgba[1], rgba[2], rgba[3]};
    m_renderer.AddSurface(&m_sphere);
}

void DemoScene::Layout(int width, int height, bool forSheet)
{
    m_renderer.Resize(width, height);
    // The legend's window ends below the title band, so the two never meet.
    m_legend.Create(width, height - KesraBackend::kTitleBand, width - kLegendWidth, 40);
    m_legend.SetVisibility(forSheet ? 0 : 1);
    m_ruler.Create(width, height, static_cast<int>(KesraBackend::kRulerStart * width), 22);
    m_ruler.SetTextColor({30, 30, 30, 255});
    m_axis.Create(width, height);
    if (m_tips != nullptr)
    {
        m_tips->SetTipFontType(forSheet ? KesraEngine::eTipFontSmall : KesraEngine::eTipFontNormal);
    }

    // The chart sits in the bottom strip between the axis triad and the
    // ruler, which the fitted model leaves free; a small frame has no room.
    const double rulerStart = KesraBackend::kRulerStart * width;
    KesraSvg::CurveInset inset;
    inset.x = 112.0;
    inset.y = 14.0;
    inset.width = std::min(rulerStart - inset.x - 16.0, 400.0);
    inset.height = std::clamp(0.22 * height, 130.0, 200.0);
    if (!forSheet && inset.width >= 220.0 && height >= 450)
    {
        inset.curve = &m_chart;
        inset.legend = &m_legend;
        inset.title = "Speed along the fastest line";
        inset.xLabel = "s [m]";
        inset.yLabel = "|v| [m/s]";
    }
    m_renderer.SetCurveInset(inset);
}

std::string DemoScene::RenderFrame(View view, int width, int height, bool forSheet)
{
    Layout(width, height, forSheet);
    m_camera.ZoomAll(m_box);
    KesraBackend::ApplyView(m_camera, view, false);
    if (!forSheet)
    {
        KesraBackend::FitBesideLegend(m_camera, width, height, kLegendWidth);
    }
    // The sheet names each view in its caption.
    const std::string name =
        forSheet ? std::string() : m_title + ", " + KesraBackend::ViewName(view) + " view";
    m_renderer.SetName(name.c_str());
    m_renderer.SetIdPrefix("f" + std::to_string(m_frames++) + "-");
    m_renderer.Render();
    return m_renderer.GetDocument();
}

KesraSvg::SheetCell DemoScene::RenderKey(int height)
{
    m_keyRenderer.Resize(kLegendWidth, height);
    m_legend.Create(kLegendWidth, height, 0, 0);
    m_legend.SetVisibility(1);
    m_keyRenderer.Render();
    return {"Colour key", m_keyRenderer.GetDocument(), kLegendWidth, height};
}

std::vector<KesraSvg::SheetCell> DemoScene::RenderLegendStrip(int height) const
{
    std::vector<KesraSvg::SheetCell> cells;
    int index = 0;
    for (const LegendVariant& variant : kLegendVariants)
    {
        KesraSvg::CSvgRenderer renderer(kLegendWidth, height);
        PreparePaper(renderer, m_font);
        renderer.SetIdPrefix("strip" + std::to_string(index++) + "-");
        renderer.SetName("");
        KesraSvg::CSvgScalarBar legend = m_legend;
        variant.apply(legend);
        legend.Create(kLegendWidth, height, 0, 0);
        legend.SetVisibility(1);
        renderer.SetScalarBar(&legend);
        renderer.Render();
        cells.push_back({variant.caption, renderer.GetDocument(), kLegendWidth, height});
    }
    return cells;
}

std::string DemoScene::RulerText() const
{
    std::string unit;
    m_ruler.GetUnit(unit);
    std::string exponent;
    const std::string length = m_ruler.FormatLength(m_ruler.GetRoundLength(), exponent);
    return length + (exponent.empty() ? "" : "^" + exponent) + " " + unit;
}

} // namespace KesraDemo
