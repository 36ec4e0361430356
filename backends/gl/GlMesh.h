// CGlMesh: lit geometry in vertex buffers (a tube, a surface, an arrow).
//
// The host or a drawing class fills the vertices and indices on the CPU and
// calls MarkChanged; the next Draw uploads them once and every later Draw
// reuses the buffers, so a frame costs no upload unless something changed.
// Triangle strips are separated by the restart index.
#pragma once

#include "gl/GlApi.h"

#include <cstdint>
#include <vector>

namespace KesraGl
{

struct GlVertex
{
    float position[3];
    float normal[3];
    unsigned char color[4];
};

class CGlMesh
{
public:
    static constexpr std::uint32_t kRestart = 0xFFFFFFFFu;

    explicit CGlMesh(GLenum mode = GL_TRIANGLES) : m_mode(mode) {}
    ~CGlMesh();
    CGlMesh(const CGlMesh&) = delete;
    CGlMesh& operator=(const CGlMesh&) = delete;

    std::vector<GlVertex>& Vertices() { return m_vertices; }
    const std::vector<GlVertex>& Vertices() const { return m_vertices; }
    std::vector<std::uint32_t>& Indices() { return m_indices; }
    // The next Draw uploads the vertices and indices again.
    void MarkChanged() { m_changed = true; }

    // Draws with the program in use; the context must be current.
    void Draw();
    // Frees the buffers (the context must be current); the next Draw makes
    // them again.
    void Release();
    // How many times the buffers were filled.
    int UploadCount() const { return m_uploads; }

private:
    void Upload();

    GLenum m_mode;
    std::vector<GlVertex> m_vertices;
    std::vector<std::uint32_t> m_indices;
    bool m_changed = true;
    int m_uploads = 0;
    GLuint m_vertexArray = 0;
    GLuint m_vertexBuffer = 0;
    GLuint m_indexBuffer = 0;
};

} // namespace KesraGl
