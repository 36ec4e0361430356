#include "gl/GlMesh.h"

#include <cstddef>

namespace KesraGl
{

CGlMesh::~CGlMesh()
{
    // The buffers belong to the context; without one current they died with it.
    Release();
}

void CGlMesh::Release()
{
    if (m_vertexArray != 0)
    {
        glDeleteBuffers(1, &m_indexBuffer);
        glDeleteBuffers(1, &m_vertexBuffer);
        glDeleteVertexArrays(1, &m_vertexArray);
        m_vertexArray = m_vertexBuffer = m_indexBuffer = 0;
    }
    m_changed = true;
}

void CGlMesh::Upload()
{
    if (m_vertexArray == 0)
    {
        glGenVertexArrays(1, &m_vertexArray);
        glGenBuffers(1, &m_vertexBuffer);
        glGenBuffers(1, &m_indexBuffer);
        glBindVertexArray(m_vertexArray);
        glBindBuffer(GL_ARRAY_BUFFER, m_vertexBuffer);
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_indexBuffer);
        const GLsizei stride = sizeof(GlVertex);
        glEnableVertexAttribArray(0);
        glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, stride,
                              reinterpret_cast<const void*>(offsetof(GlVertex, position)));
        glEnableVertexAttribArray(1);
        glVertexAttribPointer(1, 3, GL_FLOAT, GL_FALSE, stride,
                              reinterpret_cast<const void*>(offsetof(GlVertex, normal)));
        glEnableVertexAttribArray(2);
        glVertexAttribPointer(2, 4, GL_UNSIGNED_BYTE, GL_TRUE, stride,
                              reinterpret_cast<const void*>(offsetof(GlVertex, color)));
    }
    glBindVertexArray(m_vertexArray);
    glBindBuffer(GL_ARRAY_BUFFER, m_vertexBuffer);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(m_vertices.size() * sizeof(GlVertex)),
                 m_vertices.data(), GL_STATIC_DRAW);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER,
                 static_cast<GLsizeiptr>(m_indices.size() * sizeof(std::uint32_t)),
                 m_indices.data(), GL_STATIC_DRAW);
    m_changed = false;
    ++m_uploads;
}

void CGlMesh::Draw()
{
    if (m_indices.empty())
    {
        return;
    }
    if (m_changed || m_vertexArray == 0)
    {
        Upload();
    }
    glBindVertexArray(m_vertexArray);
    glEnable(GL_PRIMITIVE_RESTART);
    glPrimitiveRestartIndex(kRestart);
    glDrawElements(m_mode, static_cast<GLsizei>(m_indices.size()), GL_UNSIGNED_INT, nullptr);
    glBindVertexArray(0);
}

} // namespace KesraGl
