#include "svg/SvgStreamline.h"

#include "Engine/Camera.h"
#include "Engine/ScalarBar.h"
#include "svg/SvgRenderer.h"

#include <utility>

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
    std::vector<Vector> window(static_cast<std::size_t>(nodes) * slices);
    std::vector<Vector> normals(window.size());
    for (int i = 0; i < nodes; ++i)
    {
        for (int j = 0; j < slices; ++j)
        {
            double vertex[3] = {0.0, 0.0, 0.0};
            double normal[3] = {0.0, 0.0, 0.0};
            GetSliceNodeCoord(i, j, vertex);
            GetSliceNodeNormal(i, j, normal);
            const std::size_t k = static_cast<std::size_t>(i) * slices + j;
            camera->ProjectPointWorldToView(Vector(vertex[0], vertex[1], vertex[2]), window[k]);
            normals[k] = Vector(normal[0], normal[1], normal[2]);
        }
    }
    for (int i = 0; i + 1 < nodes; ++i)
    {
        const Color base = QuadColor(i);
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
                corners[k] = window[indices[k]];
                normal = normal + normals[indices[k]];
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

Color CSvgStreamline::QuadColor(int i) const
{
    const std::size_t node = static_cast<std::size_t>(i);
    if (m_legend != nullptr && m_legend->GetBanded() == 1 && m_values.size() >= m_nodes.size())
    {
        Color color{0, 0, 0, 255};
        m_legend->GetOpenGLColor(color.red, color.green, color.blue,
                                 0.5 * (m_values[node] + m_values[node + 1]));
        return color;
    }
    const unsigned char* a = m_nodes[node].GetColor();
    const unsigned char* b = m_nodes[node + 1].GetColor();
    return Color{Mean(a[0], b[0]), Mean(a[1], b[1]), Mean(a[2], b[2]), 255};
}

CSvgStreamline* CSvgStreamlineFactory::MakeStreamline()
{
    return &m_made.emplace_back();
}

} // namespace KesraSvg
