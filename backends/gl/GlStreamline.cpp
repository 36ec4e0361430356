#include "gl/GlStreamline.h"

#include "gl/GlRenderer.h"

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
    }
    m_mesh.MarkChanged();
    m_changed = false;
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

CGlStreamline* CGlStreamlineFactory::MakeStreamline()
{
    return &m_made.emplace_back();
}

} // namespace KesraGl
