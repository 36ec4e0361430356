// The backend's shaders, compiled into the library from backends/gl/shaders.
#pragma once

#include <string>

namespace KesraGl
{

// The text of the shader file name ("mesh.vert"), or null for an unknown name.
const char* ShaderSource(const std::string& name);

} // namespace KesraGl
