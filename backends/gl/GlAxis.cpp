#include "gl/GlAxis.h"

#include "gl/GlRenderer.h"

#include <algorithm>
#include <cmath>

namespace KesraGl
{

namespace
{

constexpr float kHalfExtent = 40.0f;   // the triad is 80 pixels across
constexpr float kArrowLength = 31.0f;  // pixels
constexpr float kLabelReach = 41.0f;   // pixels from the centre to a label
// A label's centre stays this far inside the window: half a capital of the
// labels' size and two pixels, so that an axis pointing at the window's
// edge keeps its letter whole.
constexpr float kLabelInset = 8.0f;
constexpr int kSides = 16;
constexpr float kShaftRadius = 0.045f; // of the arrow's length
constexpr float kHeadRadius = 0.11f;
constexpr float kHeadStart = 0.72f;

const Color kAxisColors[3] = {{220, 50, 47, 255}, {60, 170, 60, 255}, {50, 90, 220, 255}};
const char* const kAxisNames[3] = {"X", "Y", "Z"};

// A point of an arrow along x, at length t and radius r, angle a, turned to
// the given axis by cycling the coordinates.
void Place(int axis, float t, float r, float a, float (&out)[3])
{
    const float local[3] = {t, r * std::cos(a), r * std::sin(a)};
    for (int k = 0; k < 3; ++k)
    {
        out[(k + axis) % 3] = local[k];
    }
}

} // namespace

CGlAxis::CGlAxis(CGlRenderer& renderer) : m_renderer(renderer)
{
}

CGlAxis::~CGlAxis() = default;

void CGlAxis::ReleaseBuffers()
{
    if (m_arrows)
    {
        m_arrows->Release();
    }
}

void CGlAxis::BuildArrows()
{
    m_arrows = std::make_unique<CGlMesh>(GL_TRIANGLES);
    std::vector<GlVertex>& vertices = m_arrows->Vertices();
    std::vector<std::uint32_t>& indices = m_arrows->Indices();
    // Rings along each arrow: shaft start, shaft end, head base, tip; the
    // normals point outward (the head's tilted by its slope).
    const float slope = kHeadRadius / (1.0f - kHeadStart);
    const struct
    {
        float t, r, nx;
    } rings[] = {{0.0f, kShaftRadius, 0.0f},
                 {kHeadStart, kShaftRadius, 0.0f},
                 {kHeadStart, kHeadRadius, slope},
                 {1.0f, 0.0f, slope}};
    for (int axis = 0; axis < 3; ++axis)
    {
        const std::uint32_t first = static_cast<std::uint32_t>(vertices.size());
        for (const auto& ring : rings)
        {
            for (int s = 0; s <= kSides; ++s)
            {
                const float a = 6.2831853f * static_cast<float>(s) / kSides;
                GlVertex vertex{};
                Place(axis, ring.t, ring.r, a, vertex.position);
                const float length = std::sqrt(1.0f + ring.nx * ring.nx);
                Place(axis, ring.nx / length, 1.0f / length, a, vertex.normal);
                const Color& c = kAxisColors[axis];
                vertex.color[0] = c.red;
                vertex.color[1] = c.green;
                vertex.color[2] = c.blue;
                vertex.color[3] = 255;
                vertices.push_back(vertex);
            }
        }
        const std::uint32_t stride = kSides + 1;
        for (const std::uint32_t ring : {0u, 2u})
        {
            for (std::uint32_t s = 0; s < kSides; ++s)
            {
                const std::uint32_t a = first + ring * stride + s;
                const std::uint32_t b = a + stride;
                indices.insert(indices.end(), {a, a + 1, b, b, a + 1, b + 1});
            }
        }
    }
    m_arrows->MarkChanged();
}

void CGlAxis::LabelPosition(int axis, float& x, float& y) const
{
    // The model's axis points in view along column axis of the rotation.
    x = kHalfExtent + 4.0f + kLabelReach * static_cast<float>(m_rotateMatrix[4 * axis]);
    y = kHalfExtent + 4.0f + kLabelReach * static_cast<float>(m_rotateMatrix[4 * axis + 1]);
    x = std::clamp(x, kLabelInset, std::max(kLabelInset, static_cast<float>(m_windowWidth) - kLabelInset));
    y = std::clamp(y, kLabelInset, std::max(kLabelInset, static_cast<float>(m_windowHeight) - kLabelInset));
}

void CGlAxis::Draw()
{
    if (m_created == 0 || m_drawAxis == 0 || !m_renderer.HasContext())
    {
        return;
    }
    if (!m_arrows)
    {
        BuildArrows();
    }
    const float centre = kHalfExtent + 4.0f;
    Mat4 projection{};
    projection[0] = 2.0f / static_cast<float>(m_windowWidth);
    projection[5] = 2.0f / static_cast<float>(m_windowHeight);
    projection[10] = -1.0f / 100.0f;
    projection[12] = -1.0f;
    projection[13] = -1.0f;
    projection[15] = 1.0f;
    // F scaled to pixels, then moved to the corner.
    Mat4 modelView{};
    float normal[9];
    for (int column = 0; column < 3; ++column)
    {
        for (int row = 0; row < 3; ++row)
        {
            const float f = static_cast<float>(m_rotateMatrix[4 * column + row]);
            modelView[4 * column + row] = kArrowLength * f;
            normal[3 * column + row] = f;
        }
    }
    modelView[12] = centre;
    modelView[13] = centre;
    modelView[15] = 1.0f;
    glEnable(GL_DEPTH_TEST);
    glDepthRange(0.0, 0.001);
    m_renderer.UseMeshProgram(projection, modelView, normal, true);
    m_arrows->Draw();
    glDepthRange(0.0, 1.0);

    CGlCanvas& canvas = m_renderer.Canvas();
    canvas.Begin(m_windowWidth, m_windowHeight);
    const TextStyle style = m_renderer.Style(-1, true);
    for (int axis = 0; axis < 3; ++axis)
    {
        float x, y;
        LabelPosition(axis, x, y);
        canvas.HaloText(x, y - 0.5f * static_cast<float>(canvas.Ascender(style)), kAxisNames[axis], style,
                        kAxisColors[axis], KesraBackend::HaloColor(kAxisColors[axis]), Anchor::Middle);
    }
    canvas.End();
}

} // namespace KesraGl
