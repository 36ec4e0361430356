#include "gl/GlScene.h"

#include "common/SceneLook.h"
#include "common/SphereMesh.h"
#include "gl/GlSceneControls.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <utility>
#include <vector>

namespace KesraGl
{

namespace
{

using KesraBackend::kTitleBand;
using KesraBackend::Vec3;

constexpr int kSmoothFrames = 24; // frames of a smooth turn to a standard view
// A moving view's lines merge nodes closer than this part of the model's
// diagonal: about a pixel when the model fills a window.
constexpr double kMergeFraction = 1.0 / 1000.0;

} // namespace

CGlScene::CGlScene(CGlSurface& surface, SceneData data, int width, int height)
    : m_data(std::move(data)), m_renderer(width, height, surface), m_camera(width, height),
      m_light(m_renderer), m_axis(m_renderer), m_area(width, height, m_renderer),
      m_updater(m_axis, m_ruler)
{
    m_renderer.SetCamera(&m_camera);
    m_renderer.SetFont(&m_font);
    KesraBackend::DressPaper(m_renderer);
    m_renderer.SetName(m_data.title.c_str());
    m_renderer.SetLineSmoothing(1);
    m_renderer.SetPolygonSmoothing(1);
    m_renderer.SetPolygonOffsetPara(1.0f, 1.0f);

    KesraBackend::PlaceLight(m_light);
    KesraBackend::DressLegend(m_legend, m_data);
    m_legend.SetAutoTextColor(1);
    KesraBackend::DressRuler(m_ruler, m_data);
    m_area.SetColor({30, 60, 160, 200});
    m_area.SetLineWidth(1.5f);
    m_area.SetEanble(true);
    m_area.SetAreaHandler([this](int x0, int y0, int x1, int y1) {
        m_camera.ZoomToRectangle(x0, y0, x1, y1);
    });
    m_camera.SetSmoothRotateFrames(kSmoothFrames);
    m_camera.RegisterEventHandler(&m_updater);

    BuildTubes();
    BuildTips();
    BuildSphere();
    m_renderer.SetScalarBar(&m_legend);
    m_renderer.SetRuler(&m_ruler);
    m_renderer.SetAxis(&m_axis);
    m_renderer.SetDraggedArea(&m_area);
    m_renderer.SetTipManager(m_tips);
    m_renderer.AddPlainLines(&m_lines);
    m_renderer.SetExtraOverlay([this](CGlRenderer& renderer) {
        DrawProbe(renderer);
        DrawHelp(renderer);
        DrawBuildProgress(renderer);
    });
    Layout(width, height);
    m_camera.SetRotateMatrixToISOView(false);
    ZoomAll();
}

CGlScene::~CGlScene()
{
    m_renderer.DestroyContext();
    m_camera.UnregisterEventHandler(&m_updater);
}

bool CGlScene::CreateContext()
{
    return m_renderer.CreateContext();
}

void CGlScene::BuildTubes()
{
    // A value that is not finite (a file's undefined point) takes the colour
    // the legend gives it but does not stretch the range.
    m_extremes = KesraBackend::FindExtremes(m_data.lines);
    const bool found = m_extremes.found;
    m_dataMinimum = found ? m_extremes.smallest.value : 0.0;
    m_dataMaximum = found ? m_extremes.largest.value : 1.0;
    m_legend.SetValueRange(m_dataMinimum, m_dataMaximum, true, true);
    float low[3] = {0.0f, 0.0f, 0.0f};
    float high[3] = {1.0f, 1.0f, 1.0f};
    if (found)
    {
        std::fill(low, low + 3, std::numeric_limits<float>::max());
        std::fill(high, high + 3, std::numeric_limits<float>::lowest());
        for (const ScalarLine& line : m_data.lines)
        {
            for (const Vec3& p : line.points)
            {
                const double xyz[3] = {p.x, p.y, p.z};
                for (int axis = 0; axis < 3; ++axis)
                {
                    low[axis] = std::min(low[axis], static_cast<float>(xyz[axis]));
                    high[axis] = std::max(high[axis], static_cast<float>(xyz[axis]));
                }
            }
        }
    }
    const double diagonal = std::sqrt(std::pow(high[0] - low[0], 2.0) + std::pow(high[1] - low[1], 2.0)
                                      + std::pow(high[2] - low[2], 2.0));
    const double radius = m_data.tubeRadius > 0.0 ? m_data.tubeRadius
                                                  : std::max(diagonal * 0.005, 1e-6);
    for (int axis = 0; axis < 3; ++axis)
    {
        m_box[2 * axis] = low[axis] - static_cast<float>(radius);
        m_box[2 * axis + 1] = high[axis] + static_cast<float>(radius);
    }
    // One streamline per line, its records alive only while its tube is
    // made: the batch packs every tube into shared buffers.
    for (const ScalarLine& line : m_data.lines)
    {
        if (line.points.size() < 2)
        {
            continue;
        }
        m_tubes.push_back(m_tubeFactory.MakeStreamline());
        m_tubeLines.push_back(&line);
    }
    m_batch.Plan(m_tubeLines, m_tubes, KesraBackend::kTubeSlices, radius, diagonal * kMergeFraction);
    m_batch.SetColouring([this](const double* values, std::size_t count, unsigned char* rgba) {
        m_legend.GetOpenGLColors(values, count, rgba);
    });
    m_renderer.AddTubeBatch(&m_batch);
    Recolour();
}

void CGlScene::Recolour()
{
    m_batch.MarkColoursChanged();
    if (m_showLines)
    {
        FillLines();
    }
    m_renderer.Invalidate();
}

void CGlScene::FillLines()
{
    std::vector<GlVertex>& vertices = m_lines.Vertices();
    std::vector<std::uint32_t>& indices = m_lines.Indices();
    vertices.clear();
    indices.clear();
    std::vector<unsigned char> rgba;
    for (const ScalarLine* line : m_tubeLines)
    {
        rgba.resize(4 * line->values.size());
        m_legend.GetOpenGLColors(line->values.data(), line->values.size(), rgba.data());
        for (std::size_t i = 0; i < line->points.size(); ++i)
        {
            const Vec3& p = line->points[i];
            const unsigned char* rgb = &rgba[4 * i];
            indices.push_back(static_cast<std::uint32_t>(vertices.size()));
            vertices.push_back({{static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z)},
                                {0.0f, 0.0f, 0.0f},
                                {rgb[0], rgb[1], rgb[2], 255}});
        }
        indices.push_back(CGlMesh::kRestart);
    }
    m_lines.MarkChanged();
}

bool CGlScene::NodeColour(std::size_t line, std::size_t node, unsigned char* rgba) const
{
    if (line >= m_data.lines.size())
    {
        return false;
    }
    const auto found = std::find(m_tubeLines.begin(), m_tubeLines.end(), &m_data.lines[line]);
    return found != m_tubeLines.end()
           && m_batch.NodeColour(static_cast<std::size_t>(found - m_tubeLines.begin()), node, rgba);
}

void CGlScene::ToggleLines()
{
    m_showLines = !m_showLines;
    for (CGlStreamline* tube : m_tubes)
    {
        tube->SetDrawStreamline(!m_showLines);
    }
    m_batch.SetVisible(!m_showLines);
    if (m_showLines)
    {
        FillLines();
    }
    else
    {
        // Nothing left to draw, and no memory held for it.
        m_lines.Vertices() = std::vector<GlVertex>();
        m_lines.Indices() = std::vector<std::uint32_t>();
        m_lines.MarkChanged();
    }
    m_renderer.Invalidate();
}

void CGlScene::SetValueRange(double minimum, double maximum)
{
    if (!std::isfinite(minimum) || !std::isfinite(maximum) || !(minimum < maximum))
    {
        return;
    }
    m_legend.SetValueRange(minimum, maximum, true, true);
    Recolour();
}

void CGlScene::ResetValueRange()
{
    m_legend.SetValueRange(m_dataMinimum, m_dataMaximum, true, true);
    Recolour();
}

bool CGlScene::NearestNode(int x, int y, Probe& probe)
{
    double nearest = kProbePixels * kProbePixels;
    bool found = false;
    for (std::size_t t = 0; t < m_tubeLines.size(); ++t)
    {
        const ScalarLine& line = *m_tubeLines[t];
        for (std::size_t i = 0; i < line.points.size(); ++i)
        {
            Vec3 view;
            m_camera.ProjectPointWorldToView(line.points[i], view);
            const double dx = view.x - x;
            const double dy = view.y - y;
            const double distance = dx * dx + dy * dy;
            if (distance <= nearest)
            {
                nearest = distance;
                found = true;
                probe = Probe{static_cast<std::size_t>(m_tubeLines[t] - m_data.lines.data()), i, line.values[i]};
            }
        }
    }
    return found;
}

bool CGlScene::ProbeAt(int x, int y, Probe& probe)
{
    m_probed = NearestNode(x, y, m_probe);
    m_renderer.Invalidate();
    if (m_probed)
    {
        probe = m_probe;
    }
    return m_probed;
}

void CGlScene::BuildTips()
{
    m_tips = m_tipFactory.CreateTipManager();
    if (m_tips == nullptr)
    {
        return;
    }
    double centre[3] = {m_data.tipCentre.x, m_data.tipCentre.y, m_data.tipCentre.z};
    double distance = m_data.tipDistance;
    if (distance <= 0.0)
    {
        for (int axis = 0; axis < 3; ++axis)
        {
            centre[axis] = 0.5 * (m_box[2 * axis] + m_box[2 * axis + 1]);
            distance = std::max(distance, 0.6 * (m_box[2 * axis + 1] - m_box[2 * axis]));
        }
    }
    KesraBackend::AddExtremeTips(*m_tips, m_extremes, "%.3g", m_data.tipUnit,
                                  Vec3(centre[0], centre[1], centre[2]), distance);
    m_tips->SetTipFontType(KesraEngine::eTipFontSmall);
}

void CGlScene::BuildSphere()
{
    if (!m_data.sphere)
    {
        return;
    }
    // Each ring repeats its first vertex at azimuth 2 pi, so that no index
    // wraps around.
    const KesraBackend::SphereMesh mesh = KesraBackend::UnitSphere(24, 48, true);
    const float r = static_cast<float>(KesraBackend::kSphereDrawnRadius);
    const unsigned char* rgba = KesraBackend::kSphereRgba;
    std::vector<GlVertex>& vertices = m_sphere.Vertices();
    for (const Vec3& normal : mesh.normals)
    {
        const float n[3] = {static_cast<float>(normal.x), static_cast<float>(normal.y),
                            static_cast<float>(normal.z)};
        vertices.push_back({{r * n[0], r * n[1], r * n[2]}, {n[0], n[1], n[2]},
                            {rgba[0], rgba[1], rgba[2], rgba[3]}});
    }
    std::vector<std::uint32_t>& indices = m_sphere.Indices();
    for (const std::array<int, 4>& quad : mesh.quads)
    {
        const std::uint32_t a = static_cast<std::uint32_t>(quad[0]);
        const std::uint32_t b = static_cast<std::uint32_t>(quad[1]);
        const std::uint32_t c = static_cast<std::uint32_t>(quad[2]);
        const std::uint32_t d = static_cast<std::uint32_t>(quad[3]);
        indices.insert(indices.end(), {a, b, c, a, c, d});
    }
    m_sphere.MarkChanged();
    m_renderer.AddSurface(&m_sphere);
}

int CGlScene::LegendWidth() const
{
    return std::clamp(m_renderer.GetWidth() / 7, 90, 170);
}

void CGlScene::Layout(int width, int height)
{
    m_renderer.Resize(width, height);
    const int legendWidth = LegendWidth();
    m_legend.Create(width, std::max(height - kTitleBand, 1), width - legendWidth,
                    std::min(40, height / 8));
    m_ruler.Create(width, height, static_cast<int>(KesraBackend::kRulerStart * width),
                   std::min(22, height / 10));
    m_ruler.SetTextColor({30, 30, 30, 255});
    m_ruler.SetOpenGLScale(1.0f / m_camera.GetScale());
    // Create turns the triad to the identity: hand it the camera's rotation.
    m_axis.Create(width, height);
    m_axis.SetRotateMatrix(m_camera.GetRotateMatrix());
    m_area.SetWindowSize(width, height);
}

void CGlScene::Resize(int width, int height)
{
    if (width <= 0 || height <= 0)
    {
        return;
    }
    Layout(width, height);
    m_renderer.Invalidate();
}

void CGlScene::ZoomAll()
{
    m_camera.ZoomAll(m_box);
    KesraBackend::FitBesideLegend(m_camera, m_renderer.GetWidth(), m_renderer.GetHeight(),
                                   LegendWidth());
    m_renderer.Invalidate();
}

void CGlScene::SetView(View view, bool smooth)
{
    KesraBackend::ApplyView(m_camera, view, smooth);
    m_renderer.Invalidate();
}

void CGlScene::NextPalette()
{
    SetPalette(KesraBackend::NextPalette(m_palette));
}

void CGlScene::ToggleBanded()
{
    SetBanded(m_legend.GetBanded() != 1);
}

void CGlScene::ToggleInverse()
{
    SetInverse(m_legend.GetInverse() != 1);
}

void CGlScene::SetPalette(KesraBackend::Palette palette)
{
    m_palette = palette;
    KesraBackend::LoadPalette(m_legend, m_palette);
    Recolour();
}

void CGlScene::SetBanded(bool banded)
{
    m_legend.SetBanded(banded ? 1 : 0);
    Recolour();
}

void CGlScene::SetBlockCount(int blocks)
{
    m_legend.SetBlockNum(blocks);
    Recolour();
}

void CGlScene::SetInverse(bool inverse)
{
    m_legend.SetInverse(inverse ? 1 : 0);
    Recolour();
}

void CGlScene::SetLogScale(bool logScale)
{
    m_legend.SetLogScale(logScale ? 1 : 0);
    Recolour();
}

void CGlScene::ToggleLogScale()
{
    SetLogScale(m_legend.GetLogScale() != 1);
}

void CGlScene::ToggleSixSides()
{
    m_camera.SetSixSidesInspection(!m_camera.IsSixSidesInspection(), true);
    m_renderer.Invalidate();
}

void CGlScene::SetMoving(bool moving)
{
    m_moving = moving;
    m_renderer.Invalidate();
}

void CGlScene::Render()
{
    const bool moving = IsMoving();
    m_batch.SetMoving(moving);
    m_renderer.Render();
    if ((moving && !IsMoving()) || IsBuilding())
    {
        m_renderer.Invalidate();
    }
}

std::vector<unsigned char> CGlScene::Capture()
{
    // A captured frame shows every tube, however long they take.
    const double budget = m_batch.BuildBudget();
    m_batch.SetBuildBudget(0.0);
    m_batch.SetMoving(IsMoving());
    const int width = m_renderer.GetWidth();
    const int height = m_renderer.GetHeight();
    std::vector<unsigned char> rgba(static_cast<std::size_t>(width) * height * 4);
    m_renderer.DrawFrame();
    if (!m_renderer.ReadPixels(0, 0, width, height, rgba.data()))
    {
        rgba.clear();
    }
    m_renderer.SwapBuffers();
    m_batch.SetBuildBudget(budget);
    return rgba;
}

int CGlScene::UploadCount() const
{
    return m_batch.UploadCount();
}

int CGlScene::VertexCount() const
{
    return static_cast<int>(m_batch.RingVertexCount());
}

void CGlScene::DrawProbe(CGlRenderer& renderer)
{
    if (!m_probed)
    {
        return;
    }
    // The mark follows its node through every turn and zoom.
    Vec3 view;
    m_camera.ProjectPointWorldToView(m_data.lines[m_probe.line].points[m_probe.node], view);
    CGlCanvas& canvas = renderer.Canvas();
    const float x = static_cast<float>(view.x);
    const float y = static_cast<float>(view.y);
    const Color ink = {20, 24, 32, 255};
    canvas.Frame(x - 4.0f, y - 4.0f, x + 4.0f, y + 4.0f, 1.5f, ink);
    char number[32];
    std::snprintf(number, sizeof number, "%.6g", m_probe.value);
    const std::string text = m_data.valueName + " " + number;
    const TextStyle style = renderer.Style(0);
    const float width = canvas.TextWidth(text, style);
    const float height = static_cast<float>(canvas.Ascender(style));
    canvas.Rect(x + 8.0f, y + 6.0f, x + 16.0f + width, y + 12.0f + height, {255, 255, 240, 230});
    canvas.Frame(x + 8.0f, y + 6.0f, x + 16.0f + width, y + 12.0f + height, 1.0f, ink);
    canvas.Text(x + 12.0f, y + 9.0f, text, style, ink);
}

void CGlScene::DrawHelp(CGlRenderer& renderer) const
{
    if (!m_help)
    {
        return;
    }
    CGlCanvas& canvas = renderer.Canvas();
    // The keys line up in a fixed-width face, small enough for the window.
    CGlFont monoFont;
    monoFont.SetFace("DejaVu Sans Mono");
    const int lines = static_cast<int>(kSceneControls.size());
    const int size = std::clamp((renderer.GetHeight() - kTitleBand) / (2 * lines), 7, 13);
    const TextStyle style{monoFont.FontFile(), size};
    const float line = static_cast<float>(canvas.Ascender(style)) + 0.5f * static_cast<float>(size);
    float width = 0.0f;
    for (const char* text : kSceneControls)
    {
        width = std::max(width, canvas.TextWidth(text, style) + 24.0f);
    }
    const float height = line * static_cast<float>(kSceneControls.size()) + 20.0f;
    const float left = 10.0f;
    const float top = static_cast<float>(renderer.GetHeight() - kTitleBand);
    canvas.Rect(left, top - height, left + width, top, {20, 24, 32, 210});
    float y = top - 10.0f - static_cast<float>(canvas.Ascender(style));
    for (const char* text : kSceneControls)
    {
        canvas.Text(left + 12.0f, y, text, style, {235, 235, 235, 255});
        y -= line;
    }
}

void CGlScene::DrawBuildProgress(CGlRenderer& renderer) const
{
    if (!IsBuilding())
    {
        return;
    }
    CGlCanvas& canvas = renderer.Canvas();
    const TextStyle style = renderer.Style(0);
    char text[64];
    std::snprintf(text, sizeof text, "Making tubes: %d%%", static_cast<int>(100.0 * m_batch.BuiltFraction()));
    const float width = std::min(320.0f, static_cast<float>(renderer.GetWidth()) - 20.0f);
    const float textHeight = static_cast<float>(canvas.Ascender(style));
    const float height = textHeight + 34.0f;
    // Under the title, where neither the ruler nor the triad is.
    const float left = 0.5f * (static_cast<float>(renderer.GetWidth()) - width);
    const float bottom = static_cast<float>(renderer.GetHeight() - kTitleBand) - height;
    const Color ink = {20, 24, 32, 255};
    canvas.Rect(left, bottom, left + width, bottom + height, {255, 255, 255, 230});
    canvas.Frame(left, bottom, left + width, bottom + height, 1.0f, ink);
    canvas.Text(left + 10.0f, bottom + height - 8.0f - textHeight, text, style, ink);
    const float barLeft = left + 10.0f;
    const float barRight = left + width - 10.0f;
    const float done = barLeft + static_cast<float>(m_batch.BuiltFraction()) * (barRight - barLeft);
    canvas.Rect(barLeft, bottom + 8.0f, done, bottom + 18.0f, {40, 110, 200, 255});
    canvas.Frame(barLeft, bottom + 8.0f, barRight, bottom + 18.0f, 1.0f, ink);
}

} // namespace KesraGl
