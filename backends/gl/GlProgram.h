// CGlProgram: a linked vertex + fragment shader pair from the backend's
// shader files, with uniform setters by name.
#pragma once

#include "gl/GlApi.h"

#include <stdexcept>
#include <string>

namespace KesraGl
{

// A shader that does not compile or a program that does not link; the
// message names the shader file and carries the driver's log.
class GlError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

class CGlProgram
{
public:
    // Compiles and links the two named shader files; throws GlError.
    CGlProgram(const std::string& vertexFile, const std::string& fragmentFile);
    ~CGlProgram();
    CGlProgram(const CGlProgram&) = delete;
    CGlProgram& operator=(const CGlProgram&) = delete;

    void Use() const { glUseProgram(m_program); }
    void Set(const char* name, int value) const;
    void Set(const char* name, float value) const;
    void Set(const char* name, float x, float y) const;
    void Set(const char* name, float x, float y, float z) const;
    void SetMatrix3(const char* name, const float* columns) const;
    void SetMatrix4(const char* name, const Mat4& columns) const;

private:
    GLint Location(const char* name) const { return glGetUniformLocation(m_program, name); }

    GLuint m_program = 0;
};

} // namespace KesraGl
