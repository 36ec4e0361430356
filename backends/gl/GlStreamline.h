// CGlStreamline: a tube drawn from vertex buffers, and the factory that makes
// such tubes.
//
// The rings and normals of the node records become one indexed triangle
// strip per pair of consecutive rings, separated by the restart index, with
// the node's colour at each of its ring's vertices; a disc closes each end.
// The buffers are filled
// once per change: the operations below that change geometry or colours
// (they hide the library's ones of the same name and call them) mark the tube
// changed, and the next draw uploads it; every other frame reuses the buffers.
// A host that writes records through another path calls MarkChanged.
#pragma once

#include "Engine/Streamline.h"
#include "common/Factories.h"
#include "gl/GlMesh.h"

namespace KesraGl
{

class CGlStreamline : public KesraEngine::CKesraStreamline
{
public:
    CGlStreamline() = default;
    CGlStreamline(const CGlStreamline&) = delete;
    CGlStreamline& operator=(const CGlStreamline&) = delete;

    // Does nothing unless the tube is created and to be drawn and renderer is
    // an OpenGL renderer with a context and a camera.
    void DrawStreamline(KesraEngine::CKesraRenderer& renderer) override;

    bool Create(int nodes, int slices, double radius, double auxiliarySize);
    bool Delete();
    bool GenerationStreamline3D();
    bool SetNodeColor(int node, unsigned char* const rgba);
    bool SetStreamlineNodeColor(int node, unsigned char red, unsigned char green,
                                unsigned char blue, unsigned char alpha);
    void MarkChanged() { m_changed = true; }

    // How many times the vertex buffers were filled.
    int UploadCount() const { return m_mesh.UploadCount(); }
    // Ring vertices and the end discs' own.
    int VertexCount() const { return static_cast<int>(m_mesh.Vertices().size()); }
    void ReleaseBuffers() { m_mesh.Release(); }

private:
    bool Changed(bool result);
    void Rebuild();
    // The disc over the ring of node, facing away from its neighbour node.
    void AddCap(int node, int neighbour);

    CGlMesh m_mesh{GL_TRIANGLE_STRIP};
    bool m_changed = true;
};

using CGlStreamlineFactory = KesraBackend::TStreamlineFactory<CGlStreamline>;

} // namespace KesraGl
