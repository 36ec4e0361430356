#version 330 core
// Model geometry: tubes, surfaces and the axis triad's arrows.
layout(location = 0) in vec3 aPosition;
layout(location = 1) in vec3 aNormal;
layout(location = 2) in vec4 aColor;

uniform mat4 uProjection;
uniform mat4 uModelView;
uniform mat3 uNormalMatrix;
// 1: aNormal is a line's tangent, and the line is lit as the side of a tube
// round it that faces the viewer.
uniform int uTangents;

out vec3 vViewPosition;
out vec3 vNormal;
out vec4 vColor;

void main()
{
    vec4 viewPosition = uModelView * vec4(aPosition, 1.0);
    vViewPosition = viewPosition.xyz;
    vNormal = uNormalMatrix * aNormal;
    if (uTangents != 0 && length(vNormal) > 0.0)
    {
        vec3 tangent = normalize(vNormal);
        vec3 toViewer = vec3(0.0, 0.0, 1.0);
        vec3 across = toViewer - dot(toViewer, tangent) * tangent;
        // A line seen end on faces the viewer.
        vNormal = length(across) > 1e-4 ? across : toViewer;
    }
    vColor = aColor;
    gl_Position = uProjection * viewPosition;
}
