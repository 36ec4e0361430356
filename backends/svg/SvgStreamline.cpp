#include "svg/SvgStreamline.h"

#include "Engine/Camera.h"
#include "svg/SvgRenderer.h"

#include <vector>

namespace KesraSvg
{

namespace
{

using Vector = KesraMathKit::TKesraVector3<double>;
using Matrix = KesraMathKit::TKesraMatrix4<double>;

// A model direction in view space: the camera keeps its rotation F column by
// column, element 4c + r being F(r, c).
Vector ToView(const Matrix& rotation, const Vector& v)
{
    return Vector(rotation[0] * v.x + rotation[4] * v.y + rotation[8] * v.z,
                  rotation[1] * v.x + rotation[5] * v.y + rotation[9] * v.z,
                  rotation[2] * v.x + rotation[6] * v.y + rotation[10] * v.z);
}

// Twice the signed area of a polygon in window pixels (y up): positive when
// its corners run counter-clockwise, that is when it faces the viewer.
double SignedArea(const TubeQuad& quad)
{
    double sum = 0.0;
    for (int k = 0; k < 4; ++k)
    {
        const int next = (k + 1) % 4;
        sum += quad.x[k] * quad.y[next] - quad.x[next] * quad.y[k];
    }
    return sum;
}

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
    const Matrix& rotation = camera->GetRotateMatrix();
    for (int i = 0; i + 1 < nodes; ++i)
    {
        const unsigned char* a = m_nodes[static_cast<std::size_t>(i)].GetColor();
        const unsigned char* b = m_nodes[static_cast<std::size_t>(i) + 1].GetColor();
        const Color base{Mean(a[0], b[0]), Mean(a[1], b[1]), Mean(a[2], b[2]), 255};
        for (int j = 0; j < slices; ++j)
        {
            const int nextJ = (j + 1) % slices;
            // Outline order V(i, j), V(i, j+1), V(i+1, j+1), V(i+1, j) runs
            // counter-clockwise seen from outside the tube.
            const std::size_t corners[4] = {
                static_cast<std::size_t>(i) * slices + j,
                static_cast<std::size_t>(i) * slices + nextJ,
                static_cast<std::size_t>(i + 1) * slices + nextJ,
                static_cast<std::size_t>(i + 1) * slices + j};
            TubeQuad quad{};
            Vector normal;
            for (int k = 0; k < 4; ++k)
            {
                quad.x[k] = window[corners[k]].x;
                quad.y[k] = window[corners[k]].y;
                quad.depth += 0.25 * window[corners[k]].z;
                normal = normal + normals[corners[k]];
            }
            if (!(SignedArea(quad) > 0.0))
            {
                continue;
            }
            Vector viewNormal = ToView(rotation, normal);
            viewNormal.Normalize();
            quad.color = svg->Shade(viewNormal, base);
            svg->AddTubeQuad(quad);
        }
    }
}

KesraEngine::CKesraStreamline* CSvgStreamlineFactory::MakeStreamline()
{
    return &m_made.emplace_back();
}

} // namespace KesraSvg
