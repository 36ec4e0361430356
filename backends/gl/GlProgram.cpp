#include "gl/GlProgram.h"

#include "gl/GlShaderSources.h"

#include <vector>

namespace KesraGl
{

namespace
{

std::string InfoLog(GLuint object, bool isProgram)
{
    GLint length = 0;
    if (isProgram)
    {
        glGetProgramiv(object, GL_INFO_LOG_LENGTH, &length);
    }
    else
    {
        glGetShaderiv(object, GL_INFO_LOG_LENGTH, &length);
    }
    std::vector<char> log(static_cast<std::size_t>(length > 0 ? length : 1), '\0');
    if (isProgram)
    {
        glGetProgramInfoLog(object, length, nullptr, log.data());
    }
    else
    {
        glGetShaderInfoLog(object, length, nullptr, log.data());
    }
    return log.data();
}

GLuint Compile(GLenum stage, const std::string& file)
{
    const char* source = ShaderSource(file);
    if (source == nullptr)
    {
        throw GlError("shader " + file + ": no such shader in backends/gl/shaders");
    }
    const GLuint shader = glCreateShader(stage);
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    GLint compiled = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    if (compiled != GL_TRUE)
    {
        const std::string log = InfoLog(shader, false);
        glDeleteShader(shader);
        throw GlError("shader backends/gl/shaders/" + file + " does not compile:\n" + log);
    }
    return shader;
}

} // namespace

CGlProgram::CGlProgram(const std::string& vertexFile, const std::string& fragmentFile)
{
    const GLuint vertex = Compile(GL_VERTEX_SHADER, vertexFile);
    GLuint fragment = 0;
    try
    {
        fragment = Compile(GL_FRAGMENT_SHADER, fragmentFile);
    }
    catch (...)
    {
        glDeleteShader(vertex);
        throw;
    }
    m_program = glCreateProgram();
    glAttachShader(m_program, vertex);
    glAttachShader(m_program, fragment);
    glLinkProgram(m_program);
    glDeleteShader(vertex);
    glDeleteShader(fragment);
    GLint linked = GL_FALSE;
    glGetProgramiv(m_program, GL_LINK_STATUS, &linked);
    if (linked != GL_TRUE)
    {
        const std::string log = InfoLog(m_program, true);
        glDeleteProgram(m_program);
        throw GlError("shaders backends/gl/shaders/" + vertexFile + " and " + fragmentFile
                      + " do not link:\n" + log);
    }
}

CGlProgram::~CGlProgram()
{
    glDeleteProgram(m_program);
}

void CGlProgram::Set(const char* name, int value) const
{
    glUniform1i(Location(name), value);
}

void CGlProgram::Set(const char* name, float value) const
{
    glUniform1f(Location(name), value);
}

void CGlProgram::Set(const char* name, float x, float y) const
{
    glUniform2f(Location(name), x, y);
}

void CGlProgram::Set(const char* name, float x, float y, float z) const
{
    glUniform3f(Location(name), x, y, z);
}

void CGlProgram::SetMatrix3(const char* name, const float* columns) const
{
    glUniformMatrix3fv(Location(name), 1, GL_FALSE, columns);
}

void CGlProgram::SetMatrix4(const char* name, const Mat4& columns) const
{
    glUniformMatrix4fv(Location(name), 1, GL_FALSE, columns.data());
}

} // namespace KesraGl
