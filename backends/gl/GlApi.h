// The one place that brings in the OpenGL 3.3 core entry points: libglvnd's
// libOpenGL exports them directly, so no loader library is needed.
#pragma once

#ifndef GL_GLEXT_PROTOTYPES
#define GL_GLEXT_PROTOTYPES 1
#endif
#include <GL/gl.h>
#include <GL/glext.h>

#include "MathKit/GenColor.h"

#include <array>

namespace KesraGl
{

using Color = KesraMathKit::TKesraGenColor<unsigned char>;
// A 4 x 4 matrix column by column, as the shaders take it.
using Mat4 = std::array<float, 16>;

} // namespace KesraGl
