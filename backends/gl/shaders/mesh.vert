#version 330 core
// Model geometry: tubes, surfaces and the axis triad's arrows.
layout(location = 0) in vec3 aPosition;
layout(location = 1) in vec3 aNormal;
layout(location = 2) in vec4 aColor;

uniform mat4 uProjection;
uniform mat4 uModelView;
uniform mat3 uNormalMatrix;

out vec3 vViewPosition;
out vec3 vNormal;
out vec4 vColor;

void main()
{
    vec4 viewPosition = uModelView * vec4(aPosition, 1.0);
    vViewPosition = viewPosition.xyz;
    vNormal = uNormalMatrix * aNormal;
    vColor = aColor;
    gl_Position = uProjection * viewPosition;
}
