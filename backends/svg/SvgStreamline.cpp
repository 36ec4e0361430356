#include "svg/SvgStreamline.h"

#include "Engine/Camera.h"
#include "Engine/ScalarBar.h"
#include "svg/SvgRenderer.h"

#include <utility>
#include <vector>

namespace KesraSvg
{

namespace
{

using Vector = KesraMathKit::TKesraVector3<double>;

unsigned char Mean(unsigned char a, unsigned char b)
{
    return static_cast<unsigned char>((a + b + 1) / 2);
}

} // namespace

void CSvgStreamline::DrawStreamline(KesraEngine::CKesraRenderer& renderer)
{
    auto* svg = dynamic_cast<CSvgRenderer*>(&renderer);
    KesraEngine::CKesraCamera* camera = renderer.GetCamera();
    if (!m_created || !m_drawStreamline || svg == nullptr || svg->GetCanvas() == nullptr
        || camera == nullptr)
    {
        return;
    }
    const int nodes = m_nodeCount;
    const int slices = m_sliceCount;
    const std::size_t vertices = static_cast<std::size_t>(nodes) * slices;
    // Every ring vertex in window pixels, projected in place in one batch.
    std::vector<double> window(3 * vertices);
    std::vector<double> normals(3 * vertices);
    CopyTubeGeometry(window.data(), normals.data());
    camera->ProjectPointsWorldToView(window.data(), vertices, window.data());
    const auto at = [](const std::vector<double>& xyz, std::size_t k) {
        return Vector(xyz[3 * k], xyz[3 * k + 1], xyz[3 * k + 2]);
    };
    const std::vector<Color> colors = QuadColors();
    for (int i = 0; i + 1 < nodes; ++i)
    {
        const Color base = colors[static_cast<std::size_t>(i)];
        for (int j = 0; j < slices; ++j)
        {
            const int nextJ = (j + 1) % slices;
            // V(i, j), V(i, j+1), V(i+1, j+1), V(i+1, j) run counter-clockwise
            // seen from outside the tube, since ring 0 runs counter-clockwise
            // seen from ahead of node 0.
            const std::size_t indices[4] = {
                static_cast<std::size_t>(i) * slices + j,
                static_cast<std::size_t>(i) * slices + nextJ,
                static_cast<std::size_t>(i + 1) * slices + nextJ,
                static_cast<std::size_t>(i + 1) * slices + j};
            Vector corners[4];
            Vector normal;
            for (int k = 0; k < 4; ++k)
            {
                corners[k] = at(window, indices[k]);
                normal = normal + at(normals, indices[k]);
            }
            svg->AddQuad(corners, normal, base);
        }
    }
}

void CSvgStreamline::SetNodeValues(std::vector<double> values,
                                   const KesraEngine::CKesraScalarBar* legend)
{
    m_values = std::move(values);
    m_legend = legend;
}

std::vector<Color> CSvgStreamline::QuadColors() const
{
    const std::size_t quads = m_nodes.size() - 1;
    std::vector<Color> colors(quads, Color{0, 0, 0, 255});
    if (m_legend != nullptr && m_legend->GetBanded() == 1 && m_values.size() >= m_nodes.size())
    {
        std::vector<double> means(quads);
        for (std::size_t node = 0; node < quads; ++node)
        {
            means[node] = 0.5 * (m_values[node] + m_values[node + 1]);
        }
        // Four bytes a colour, red, green, blue and alpha, as Color holds them.
        std::vector<unsigned char> rgba(4 * quads);
        m_legend->GetOpenGLColors(means.data(), quads, rgba.data());
        for (std::size_t node = 0; node < quads; ++node)
        {
            colors[node] = Color{rgba[4 * node], rgba[4 * node + 1], rgba[4 * node + 2], 255};
        }
        return colors;
    }
    for (std::size_t node = 0; node < quads; ++node)
    {
        const unsigned char* a = m_nodes[node].GetColor();
        const unsigned char* b = m_nodes[node + 1].GetColor();
        colors[node] = Color{Mean(a[0], b[0]), Mean(a[1], b[1]), Mean(a[2], b[2]), 255};
    }
    return colors;
}

} // namespace KesraSvg
