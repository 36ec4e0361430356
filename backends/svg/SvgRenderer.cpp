#include "svg/SvgRenderer.h"

#include "Engine/Axis.h"
#include "Engine/Camera.h"
#include "Engine/Curve2D.h"
#include "Engine/DraggedArea.h"
#include "Engine/ScalarBar.h"
#include "Engine/Streamline.h"
#include "Engine/TipManager.h"
#include "svg/SvgLight.h"
#include "svg/SvgCurveChart.h"
#include "svg/SvgRuler.h"
#include "svg/SvgScalarBar.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace KesraSvg
{

namespace
{

// Shares of the surface colour: always lit, lit by the light, and the
// highlight's strength and sharpness.
constexpr double kAmbient = 0.32;
constexpr double kDiffuse = 0.68;
constexpr double kSpecular = 0.3;
constexpr double kShininess = 24.0;

unsigned char ToByte(double value)
{
    if (!(value > 0.0))
    {
        return 0;
    }
    return value >= 255.0 ? 255 : static_cast<unsigned char>(value + 0.5);
}

// Characters that would end a quoted CSS font name.
std::string CssFaceName(std::string face)
{
    face.erase(std::remove_if(face.begin(), face.end(),
                              [](char c) { return c == '\'' || c == '"' || c == '\\' || c == ';'; }),
               face.end());
    return face.empty() ? std::string("sans-serif") : face;
}

} // namespace

CSvgRenderer::CSvgRenderer(int width, int height) : COverlayRenderer(width, height)
{
}

CSvgRenderer::~CSvgRenderer() = default;

bool CSvgRenderer::CreateContext()
{
    m_contextCreated = true;
    return true;
}

void CSvgRenderer::DestroyContext()
{
    m_contextCreated = false;
    m_canvas.reset();
    m_backDocument.clear();
    m_frontDocument.clear();
    m_quads.clear();
}

bool CSvgRenderer::MakeCurrent()
{
    return m_contextCreated;
}

void CSvgRenderer::InitializeState()
{
    ApplySmoothing();
    ApplyPolygonOffset();
}

bool CSvgRenderer::BeginFrame()
{
    if (!m_contextCreated)
    {
        return false;
    }
    m_canvas = std::make_unique<CSvgCanvas>(m_width, m_height, m_idPrefix);
    return true;
}

void CSvgRenderer::EndFrame()
{
    std::string frame = m_canvas->Finish();
    m_canvas.reset();
    (m_doubleBuffer ? m_backDocument : m_frontDocument).swap(frame);
    m_redrawRequested = false;
}

void CSvgRenderer::DrawBackground()
{
    if (m_canvas == nullptr)
    {
        return;
    }
    const Color& top = m_backgroundColor;
    const Color& bottom = m_backgroundColor2;
    CSvgWriter& svg = m_canvas->Writer();
    std::string fill = HexColor(top.red, top.green, top.blue);
    if (m_gradient != 0)
    {
        const std::string id = m_canvas->NewId("background");
        svg.Open("defs");
        svg.Open("linearGradient");
        svg.Attribute("id", id);
        svg.Attribute("x1", "0");
        svg.Attribute("y1", "0");
        svg.Attribute("x2", "0");
        svg.Attribute("y2", "1");
        svg.Open("stop");
        svg.Attribute("offset", "0");
        svg.Attribute("stop-color", HexColor(top.red, top.green, top.blue));
        svg.Close();
        svg.Open("stop");
        svg.Attribute("offset", "1");
        svg.Attribute("stop-color", HexColor(bottom.red, bottom.green, bottom.blue));
        svg.Close();
        svg.Close();
        svg.Close();
        fill = "url(#" + id + ")";
    }
    m_canvas->BeginGroup("background");
    m_canvas->Rect(0.0, 0.0, m_canvas->Width(), m_canvas->Height(), fill, Color{}, 0.0);
    m_canvas->EndGroup();
}

void CSvgRenderer::DrawScene()
{
    if (m_canvas == nullptr)
    {
        return;
    }
    m_quads.clear();
    for (KesraEngine::CKesraStreamline* streamline : m_streamlines)
    {
        streamline->DrawStreamline(*this);
    }
    // Without a camera nothing can be projected.
    if (m_camera != nullptr)
    {
        for (const SurfaceMesh* surface : m_surfaces)
        {
            AddSurfaceQuads(*surface);
        }
    }
    // Painter's order: the farthest quadrilateral first. Stable, so that
    // quadrilaterals at the same depth keep the order they were drawn in.
    std::stable_sort(m_quads.begin(), m_quads.end(),
                     [](const SceneQuad& a, const SceneQuad& b) { return a.depth < b.depth; });

    CSvgWriter& svg = m_canvas->Writer();
    m_canvas->BeginGroup("tubes");
    svg.Attribute("shape-rendering", m_faceRendering);
    // An outline in the face's own colour closes the hairline seams that
    // anti-aliasing leaves between neighbouring quadrilaterals.
    svg.Attribute("stroke-width", "0.6");
    svg.Attribute("stroke-linejoin", "round");
    std::string points;
    for (const SceneQuad& quad : m_quads)
    {
        points.clear();
        for (int k = 0; k < 4; ++k)
        {
            if (k > 0)
            {
                points += ' ';
            }
            AppendNumber(points, quad.x[k], 1);
            points += ',';
            AppendNumber(points, m_canvas->SvgY(quad.y[k]), 1);
        }
        const std::string color = HexColor(quad.color.red, quad.color.green, quad.color.blue);
        svg.Open("polygon");
        svg.Attribute("points", points);
        svg.Attribute("fill", color);
        svg.Attribute("stroke", color);
        svg.Close();
    }
    m_canvas->EndGroup();
}

void CSvgRenderer::DrawOwnOverlay(KesraBackend::Overlay overlay)
{
    if (overlay == KesraBackend::Overlay::CurveInset && m_curveInset.curve != nullptr)
    {
        DrawCurveChart(*this, m_curveInset);
    }
}

void CSvgRenderer::DrawTitle()
{
    if (m_canvas == nullptr || m_name.empty())
    {
        return;
    }
    m_canvas->BeginGroup("title");
    DrawText(TitleLine(), m_titleColor);
    m_canvas->EndGroup();
}

void CSvgRenderer::ApplySmoothing()
{
    m_faceRendering = m_polygonSmoothing != 0 ? "geometricPrecision" : "crispEdges";
    m_lineRendering = m_lineSmoothing != 0 ? "geometricPrecision" : "crispEdges";
    m_roundPoints = m_pointSmoothing != 0;
}

void CSvgRenderer::ApplyPolygonOffset()
{
}

void CSvgRenderer::SwapBuffers()
{
    // A written frame is never empty: an empty back buffer has nothing new.
    if (m_doubleBuffer && !m_backDocument.empty())
    {
        m_frontDocument = std::move(m_backDocument);
        m_backDocument.clear();
    }
}

void CSvgRenderer::Invalidate()
{
    m_redrawRequested = true;
}

bool CSvgRenderer::ReadPixels(int, int, int, int, unsigned char*)
{
    return false;
}

float CSvgRenderer::ReadDepth(int, int)
{
    return 1.0f;
}

void CSvgRenderer::SetShadingLight(CSvgLight* light)
{
    m_light = light;
    m_attached.light = light;
}

void CSvgRenderer::AddStreamline(KesraEngine::CKesraStreamline* streamline)
{
    if (streamline != nullptr)
    {
        m_streamlines.push_back(streamline);
    }
}

void CSvgRenderer::AddSurface(const SurfaceMesh* surface)
{
    if (surface != nullptr)
    {
        m_surfaces.push_back(surface);
    }
}

void CSvgRenderer::AddQuad(const Vector (&corners)[4], const Vector& normalSum, const Color& base)
{
    if (m_camera == nullptr)
    {
        return;
    }
    SceneQuad quad{};
    double area = 0.0;
    for (int k = 0; k < 4; ++k)
    {
        const int next = (k + 1) % 4;
        quad.x[k] = corners[k].x;
        quad.y[k] = corners[k].y;
        quad.depth += 0.25 * corners[k].z;
        // Twice the signed area: positive for counter-clockwise corners in
        // window pixels with y up, that is for a face toward the viewer.
        area += corners[k].x * corners[next].y - corners[next].x * corners[k].y;
    }
    if (!(area > 0.0))
    {
        return;
    }
    // The camera keeps its rotation F column by column: element 4c + r is
    // F(r, c).
    const Matrix& f = m_camera->GetRotateMatrix();
    Vector normal(f[0] * normalSum.x + f[4] * normalSum.y + f[8] * normalSum.z,
                  f[1] * normalSum.x + f[5] * normalSum.y + f[9] * normalSum.z,
                  f[2] * normalSum.x + f[6] * normalSum.y + f[10] * normalSum.z);
    normal.Normalize();
    quad.color = Shade(normal, base);
    m_quads.push_back(quad);
}

void CSvgRenderer::AddSurfaceQuads(const SurfaceMesh& surface)
{
    const int count = static_cast<int>(std::min(surface.points.size(), surface.normals.size()));
    // The points in window pixels, projected in one batch.
    std::vector<double> xyz(3 * static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i)
    {
        const Vector& p = surface.points[i];
        xyz[3 * i] = p.x;
        xyz[3 * i + 1] = p.y;
        xyz[3 * i + 2] = p.z;
    }
    m_camera->ProjectPointsWorldToView(xyz.data(), static_cast<std::size_t>(count), xyz.data());
    std::vector<Vector> window(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < window.size(); ++i)
    {
        window[i] = Vector(xyz[3 * i], xyz[3 * i + 1], xyz[3 * i + 2]);
    }
    for (const std::array<int, 4>& indices : surface.quads)
    {
        Vector corners[4];
        Vector normal;
        bool valid = true;
        for (int k = 0; k < 4 && valid; ++k)
        {
            const int index = indices[static_cast<std::size_t>(k)];
            valid = index >= 0 && index < count;
            if (valid)
            {
                corners[k] = window[static_cast<std::size_t>(index)];
                normal = normal + surface.normals[static_cast<std::size_t>(index)];
            }
        }
        if (valid)
        {
            AddQuad(corners, normal, surface.color);
        }
    }
}

Color CSvgRenderer::Shade(const Vector& normal, const Color& base) const
{
    if (m_light == nullptr)
    {
        return base;
    }
    double lit = kAmbient;
    double highlight = 0.0;
    if (m_light->GetSwitch() != 0)
    {
        const Vector toLight = m_light->DirectionToLight();
        const double lambert = std::max(0.0, normal.Dot(toLight));
        // Blinn's half vector between the light and the viewer at +z.
        Vector half = toLight + Vector(0.0, 0.0, 1.0);
        half.Normalize();
        const double intensity = m_light->GetIntensity();
        lit += kDiffuse * intensity * lambert;
        highlight = lambert > 0.0
                        ? kSpecular * intensity * std::pow(std::max(0.0, normal.Dot(half)), kShininess)
                        : 0.0;
    }
    const Color light = m_light->GetColor();
    const auto channel = [&](unsigned char surface, unsigned char lightChannel) {
        const double share = lightChannel / 255.0;
        return ToByte(surface * lit * share + 255.0 * highlight * share);
    };
    return Color{channel(base.red, light.red), channel(base.green, light.green),
                 channel(base.blue, light.blue), base.alpha};
}

TextStyle CSvgRenderer::GetTextStyle(int sizeChange, const Color& color) const
{
    TextStyle style;
    if (m_font != nullptr)
    {
        style.face = CssFaceName(m_font->GetFace());
        style.bold = m_font->GetBold() != 0;
        style.italic = m_font->GetItalic() != 0;
    }
    style.size = KesraBackend::TextSize(m_font, sizeChange);
    style.color = color;
    return style;
}

void CSvgRenderer::DrawText(const KesraBackend::TextLine& line, const Color& color)
{
    if (m_canvas == nullptr || (line.text.empty() && line.superscript.empty() && line.tail.empty()))
    {
        return;
    }
    TextStyle style = GetTextStyle(line.sizeChange, color);
    style.bold = style.bold || line.bold;
    style.italic = style.italic || line.italic;
    if (line.halo)
    {
        style.halo = KesraBackend::HaloColor(color);
    }
    m_canvas->Text(line.x, line.y, line.text, style, line.anchor, line.superscript, line.tail);
}

double CSvgRenderer::TextWidth(const std::string& text, int sizeChange) const
{
    return EstimateTextWidth(text, KesraBackend::TextSize(m_font, sizeChange));
}

double CSvgRenderer::TextHeight(int sizeChange) const
{
    return KesraBackend::TextSize(m_font, sizeChange);
}

void CSvgRenderer::DrawPoint(double x, double y, double size, const Color& color)
{
    if (m_canvas == nullptr)
    {
        return;
    }
    CSvgWriter& svg = m_canvas->Writer();
    const std::string fill = HexColor(color.red, color.green, color.blue);
    if (m_roundPoints)
    {
        svg.Open("circle");
        svg.Attribute("cx", x, 1);
        svg.Attribute("cy", m_canvas->SvgY(y), 1);
        svg.Attribute("r", 0.5 * size, 1);
    }
    else
    {
        svg.Open("rect");
        svg.Attribute("x", x - 0.5 * size, 1);
        svg.Attribute("y", m_canvas->SvgY(y) - 0.5 * size, 1);
        svg.Attribute("width", size, 1);
        svg.Attribute("height", size, 1);
    }
    svg.Attribute("fill", fill);
    svg.Attribute("stroke", "#333333");
    svg.Attribute("stroke-width", "1");
    svg.Close();
}

} // namespace KesraSvg
