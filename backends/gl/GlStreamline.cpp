#include "gl/GlStreamline.h"

#include "gl/GlRenderer.h"

#include <algorithm>
#include <cmath>

namespace KesraGl
{

bool CGlStreamline::Changed(bool result)
{
    if (result)
    {
        m_changed = true;
    }
    return result;
}

bool CGlStreamline::Create(int nodes, int slices, double radius, double auxiliarySize)
{
    m_changed = true;
    return CKesraStreamline::Create(nodes, slices, radius, auxiliarySize);
}

bool CGlStreamline::Delete()
{
    return Changed(CKesraStreamline::Delete());
}

bool CGlStreamline::GenerationStreamline3D()
{
    return Changed(CKesraStreamline::GenerationStreamline3D());
}

bool CGlStreamline::SetNodeColor(int node, unsigned char* const rgba)
{
    return Changed(CKesraStreamline::SetNodeColor(node, rgba));
}

bool CGlStreamline::SetStreamlineNodeColor(int node, unsigned char red, unsigned char green,
                                           unsigned char blue, unsigned char alpha)
{
    return Changed(CKesraStreamline::SetStreamlineNodeColor(node, red, green, blue, alpha));
}

void CGlStreamline::Rebuild()
{
    std::vector<GlVertex>& vertices = m_mesh.Vertices();
    std::vector<std::uint32_t>& indices = m_mesh.Indices();
    vertices.clear();
    indices.clear();
    if (m_created)
    {
        const int slices = m_sliceCount;
        vertices.reserve(static_cast<std::size_t>(m_nodeCount) * slices);
        for (const KesraEngine::CKesraStreamlineData& node : m_nodes)
        {
            const unsigned char* color = node.GetColor();
            for (int j = 0; j < slices; ++j)
            {
                double xyz[3] = {0.0, 0.0, 0.0};
                double normal[3] = {0.0, 0.0, 0.0};
                node.GetSliceNodeCoord(j, xyz);
                node.GetSliceNodeNormal(j, normal);
                GlVertex vertex{{static_cast<float>(xyz[0]), static_cast<float>(xyz[1]),
                                 static_cast<float>(xyz[2])},
                                {static_cast<float>(normal[0]), static_cast<float>(normal[1]),
                                 static_cast<float>(normal[2])},
                                {color[0], color[1], color[2], 255}};
                vertices.push_back(vertex);
            }
        }
        // Ring i + 1 before ring i keeps each strip's triangles counter-clockwise
        // seen from outside, as ring 0 runs counter-clockwise seen from ahead.
        for (int i = 0; i + 1 < m_nodeCount; ++i)
        {
            for (int j = 0; j <= slices; ++j)
            {
                const std::uint32_t k = static_cast<std::uint32_t>(j % slices);
                indices.push_back(static_cast<std::uint32_t>((i + 1) * slices) + k);
                indices.push_back(static_cast<std::uint32_t>(i * slices) + k);
            }
            indices.push_back(CGlMesh::kRestart);
        }
        AddCap(0, 1);
        AddCap(m_nodeCount - 1, m_nodeCount - 2);
    }
    m_mesh.MarkChanged();
    m_changed = false;
}

void CGlStreamline::AddCap(int node, int neighbour)
{
    std::vector<GlVertex>& vertices = m_mesh.Vertices();
    std::vector<std::uint32_t>& indices = m_mesh.Indices();
    const double* at = m_nodes[static_cast<std::size_t>(node)].GetCoord();
    const double* from = m_nodes[static_cast<std::size_t>(neighbour)].GetCoord();
    const double outward[3] = {at[0] - from[0], at[1] - from[1], at[2] - from[2]};
    const double length = std::sqrt(outward[0] * outward[0] + outward[1] * outward[1] + outward[2] * outward[2]);
    // A segment without direction gives no normal: the cap takes the ambient part.
    const double unit = length > 1e-8 ? 1.0 / length : 0.0;
    const float normal[3] = {static_cast<float>(outward[0] * unit), static_cast<float>(outward[1] * unit),
                             static_cast<float>(outward[2] * unit)};
    // The cap's rim repeats the ring with the cap's own normal, so that the
    // tube's side keeps its round shading up to the edge.
    const std::uint32_t rim = static_cast<std::uint32_t>(vertices.size());
    const std::uint32_t ring = static_cast<std::uint32_t>(node * m_sliceCount);
    for (int j = 0; j < m_sliceCount; ++j)
    {
        GlVertex vertex = vertices[ring + static_cast<std::uint32_t>(j)];
        std::copy(normal, normal + 3, vertex.normal);
        vertices.push_back(vertex);
    }
    GlVertex centre = vertices[ring];
    for (int k = 0; k < 3; ++k)
    {
        centre.position[k] = static_cast<float>(at[k]);
        centre.normal[k] = normal[k];
    }
    vertices.push_back(centre);
    const std::uint32_t middle = rim + static_cast<std::uint32_t>(m_sliceCount);
    for (int j = 0; j <= m_sliceCount; ++j)
    {
        indices.push_back(rim + static_cast<std::uint32_t>(j % m_sliceCount));
        indices.push_back(middle);
    }
    indices.push_back(CGlMesh::kRestart);
}

void CGlStreamline::DrawStreamline(KesraEngine::CKesraRenderer& renderer)
{
    auto* gl = dynamic_cast<CGlRenderer*>(&renderer);
    if (!m_created || !m_drawStreamline || gl == nullptr || !gl->UseSceneProgram())
    {
        return;
    }
    if (m_changed)
    {
        Rebuild();
    }
    m_mesh.Draw();
}

} // namespace KesraGl
