#include "Scene.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <vector>

namespace KesraDemo
{

namespace
{

constexpr int kSlices = 8;           // vertices per tube ring
constexpr double kTubeRadius = 0.035; // m
constexpr double kTipDistance = 2.4;  // tip labels' distance from the sphere's centre, m
constexpr int kLegendWidth = 170;     // pixels at the right edge taken by the legend
constexpr int kTitleBand = 40;        // pixels at the top taken by the view's title
constexpr double kRulerStart = 0.42;  // the ruler's start, as a share of the width

struct Extreme
{
    double speed;
    Vec3 point;
};

// The paper and the type of every picture of the scene.
void PreparePaper(KesraSvg::CSvgRenderer& renderer, const KesraSvg::CSvgFont& font)
{
    renderer.CreateContext();
    renderer.SetBackgroundColor({214, 226, 242, 255});
    renderer.SetBackgroundColor2({255, 255, 255, 255});
    renderer.SetGradient(1);
    renderer.SetFont(&font);
}

std::string SpeedText(const char* what, double speed)
{
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%s %.2f m/s", what, speed);
    return buffer;
}

} // namespace

// The fastest and the slowest point over all lines, and the fastest's line.
struct DemoScene::Extremes
{
    Extreme fastest{std::numeric_limits<double>::lowest(), Vec3()};
    Extreme slowest{std::numeric_limits<double>::max(), Vec3()};
    std::size_t fastestLine = 0;
};

DemoScene::Extremes DemoScene::FindExtremes(const std::vector<FlowLine>& lines)
{
    Extremes extremes;
    for (std::size_t l = 0; l < lines.size(); ++l)
    {
        for (std::size_t i = 0; i < lines[l].speeds.size(); ++i)
        {
            const double speed = lines[l].speeds[i];
            if (speed > extremes.fastest.speed)
            {
                extremes.fastest = Extreme{speed, lines[l].points[i]};
                extremes.fastestLine = l;
            }
            if (speed < extremes.slowest.speed)
            {
                extremes.slowest = Extreme{speed, lines[l].points[i]};
            }
        }
    }
    return extremes;
}

DemoScene::DemoScene(const std::vector<FlowLine>& lines, const SceneOptions& options)
    : m_renderer(1200, 800), m_keyRenderer(kLegendWidth, 400), m_camera(1200, 800),
      m_light(m_renderer), m_axis(m_renderer), m_updater(m_axis, m_ruler)
{
    PreparePaper(m_renderer, m_font);
    PreparePaper(m_keyRenderer, m_font);
    m_keyRenderer.SetIdPrefix("key-");
    m_keyRenderer.SetName(""); // the sheet has the title
    m_renderer.SetCamera(&m_camera);
    m_renderer.SetTitleColor({32, 48, 84, 255});
    m_renderer.SetPointSmoothing(1);
    m_renderer.SetLineSmoothing(1);
    m_renderer.SetPolygonSmoothing(1);
    m_renderer.InitializeState();

    // From the upper left, in front of the picture.
    m_light.SetPosition(Vec3(-0.45, 0.6, 1.0));
    m_light.SetFocalPoint(Vec3(0.0, 0.0, 0.0));
    m_light.SetColor({255, 255, 255, 255});
    m_light.Apply();

    switch (options.palette)
    {
    case Palette::BlueRed: m_legend.SetColorPaletteBlueRed(); break;
    case Palette::Gray: m_legend.SetColorPaletteGrayScale(); break;
    case Palette::GreenRed: m_legend.SetColorPaletteGreenRed(); break;
    default: m_legend.SetColorPaletteRedBlue(); break;
    }
    if (options.bandedBlocks > 0)
    {
        m_legend.SetBanded(1);
        m_legend.SetBlockNum(options.bandedBlocks);
    }
    m_legend.SetTitle("Speed", false);
    m_legend.SetUnit("[m/s]");
    m_legend.SetNote("stream 1 m/s");
    m_legend.SetValueFormat(3, 2);

    const Extremes extremes = FindExtremes(lines);
    m_summary.minSpeed = extremes.slowest.speed;
    m_summary.maxSpeed = extremes.fastest.speed;
    m_legend.SetValueRange(m_summary.minSpeed, m_summary.maxSpeed, true, true);

    m_ruler.SetUnit("[m]");
    m_ruler.SetRulerHeight(12);
    m_ruler.SetAutoBlock(true);
    m_camera.RegisterEventHandler(&m_updater);

    BuildTubes(lines);
    BuildTips(extremes);
    BuildChart(lines, extremes.fastestLine);
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

void DemoScene::BuildTubes(const std::vector<FlowLine>& lines)
{
    float low[3] = {std::numeric_limits<float>::max(), std::numeric_limits<float>::max(),
                    std::numeric_limits<float>::max()};
    float high[3] = {std::numeric_limits<float>::lowest(), std::numeric_limits<float>::lowest(),
                     std::numeric_limits<float>::lowest()};
    for (const FlowLine& line : lines)
    {
        const int nodes = static_cast<int>(line.points.size());
        KesraSvg::CSvgStreamline* tube = m_tubeFactory.MakeStreamline();
        if (tube == nullptr || !tube->Create(nodes, kSlices, kTubeRadius, 1.0))
        {
            continue;
        }
        // The nodes' colours in one batch, four bytes each with alpha 255.
        std::vector<unsigned char> rgba(4 * static_cast<std::size_t>(nodes));
        m_legend.GetOpenGLColors(line.speeds.data(), static_cast<std::size_t>(nodes), rgba.data());
        for (int i = 0; i < nodes; ++i)
        {
            const Vec3& p = line.points[static_cast<std::size_t>(i)];
            double xyz[3] = {p.x, p.y, p.z};
            tube->SetNodeCoord(i, xyz);
            tube->SetNodeColor(i, &rgba[4 * static_cast<std::size_t>(i)]);
            for (int axis = 0; axis < 3; ++axis)
            {
                low[axis] = std::min(low[axis], static_cast<float>(xyz[axis] - kTubeRadius));
                high[axis] = std::max(high[axis], static_cast<float>(xyz[axis] + kTubeRadius));
            }
        }
        tube->GenerationStreamline3D();
        // A banded legend colours each stretch by its mean speed: a swatch colour.
        tube->SetNodeValues(line.speeds, &m_legend);
        m_renderer.AddStreamline(tube);
        ++m_summary.streamlines;
        m_summary.nodes += nodes;
        m_summary.ringVertices += nodes * kSlices;
    }
    for (int axis = 0; axis < 3; ++axis)
    {
        m_box[2 * axis] = low[axis];
        m_box[2 * axis + 1] = high[axis];
    }
}

void DemoScene::BuildTips(const Extremes& extremes)
{
    const Extreme& fastest = extremes.fastest;
    const Extreme& slowest = extremes.slowest;
    m_tips = m_tipFactory.CreateTipManager();
    // Without a single point there is nothing to mark.
    if (m_tips == nullptr || fastest.speed < slowest.speed)
    {
        return;
    }
    const double fast[3] = {fastest.point.x, fastest.point.y, fastest.point.z};
    const double slow[3] = {slowest.point.x, slowest.point.y, slowest.point.z};
    m_tips->InsertTip(SpeedText("max", fastest.speed), fast, fast);
    m_tips->InsertTip(SpeedText("min", slowest.speed), slow, slow);
    // Each label on the ray from the sphere's centre through its point.
    const double centre[3] = {0.0, 0.0, 0.0};
    m_tips->UpdateEffect(KesraEngine::eTipLinkRadial, 0.0, centre, kTipDistance);
    m_tips->SetBackgroundColor(255, 252, 228);
    m_tips->SetLinkingLineColor(90, 90, 90);
}

void DemoScene::BuildChart(const std::vector<FlowLine>& lines, std::size_t fastestLine)
{
    if (lines.empty())
    {
        return;
    }
    const FlowLine& line = lines[fastestLine];
    for (std::size_t i = 0; i < line.speeds.size(); ++i)
    {
        m_chart.InsertNode(line.lengths[i], line.speeds[i]);
    }
}

void DemoScene::BuildSphere()
{
    // Drawn a little smaller than it is, so that the tubes that hug it stay
    // clear of it when quadrilaterals are sorted by their mean depth.
    const double radius = 0.97 * kSphereRadius;
    const int stacks = 18;
    const int sectors = 36;
    for (int i = 0; i <= stacks; ++i)
    {
        const double polar = 3.14159265358979323846 * i / stacks;
        for (int j = 0; j < sectors; ++j)
        {
            const double azimuth = 2.0 * 3.14159265358979323846 * j / sectors;
            const Vec3 normal(std::sin(polar) * std::cos(azimuth), std::sin(polar) * std::sin(azimuth),
                              std::cos(polar));
            m_sphere.points.push_back(normal * radius);
            m_sphere.normals.push_back(normal);
        }
    }
    // Down the meridian, then east: counter-clockwise seen from outside.
    for (int i = 0; i < stacks; ++i)
    {
        for (int j = 0; j < sectors; ++j)
        {
            const int east = (j + 1) % sectors;
            m_sphere.quads.push_back({i * sectors + j, (i + 1) * sectors + j, (i + 1) * sectors + east,
                                      i * sectors + east});
        }
    }
    m_sphere.color = {205, 205, 210, 255};
    m_renderer.AddSurface(&m_sphere);
}

void DemoScene::Layout(int width, int height, bool forSheet)
{
    m_renderer.Resize(width, height);
    // The legend's window ends below the title band, so the two never meet.
    m_legend.Create(width, height - kTitleBand, width - kLegendWidth, 40);
    m_legend.SetVisibility(forSheet ? 0 : 1);
    m_ruler.Create(width, height, static_cast<int>(kRulerStart * width), 22);
    m_ruler.SetTextColor({30, 30, 30, 255});
    m_axis.Create(width, height);
    if (m_tips != nullptr)
    {
        m_tips->SetTipFontType(forSheet ? KesraEngine::eTipFontSmall : KesraEngine::eTipFontNormal);
    }

    // The chart sits in the bottom strip between the axis triad and the
    // ruler, which the fitted model leaves free; a small frame has no room.
    const double rulerStart = kRulerStart * width;
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
    ApplyView(m_camera, view, false);
    if (!forSheet)
    {
        // ZoomAll fits the model into the whole window; the legend takes the
        // right edge, so fit it into what is left and move it there.
        const int freeWidth = width - kLegendWidth;
        const float fit = static_cast<float>(std::min(width, height)) /
                          static_cast<float>(std::max(std::min(freeWidth, height - kTitleBand), 1));
        m_camera.SetScale(m_camera.GetScale() * fit);
        m_camera.SetTranslation(-0.5f * kLegendWidth * m_camera.GetScale(), 0.0f);
    }
    // The sheet names each view in its caption.
    const std::string name =
        forSheet ? std::string() : std::string("Flow around a sphere, ") + ViewName(view) + " view";
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

std::string DemoScene::RulerText() const
{
    std::string unit;
    m_ruler.GetUnit(unit);
    std::string exponent;
    const std::string length = m_ruler.FormatLength(m_ruler.GetRoundLength(), exponent);
    return length + (exponent.empty() ? "" : "^" + exponent) + " " + unit;
}

} // namespace KesraDemo
