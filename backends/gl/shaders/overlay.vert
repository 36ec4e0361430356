#version 330 core
// Window-aligned drawing in pixels, y up, origin at the lower-left corner.
layout(location = 0) in vec2 aPosition;
layout(location = 1) in vec2 aTexCoord;
layout(location = 2) in vec4 aColor;

uniform vec2 uViewport;

out vec2 vTexCoord;
out vec4 vColor;

void main()
{
    vTexCoord = aTexCoord;
    vColor = aColor;
    gl_Position = vec4(aPosition / uViewport * 2.0 - 1.0, 0.0, 1.0);
}
