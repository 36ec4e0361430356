#version 330 core
// One light in view space (x right, y up, z toward the viewer): directional
// (type 0), point (type 1) or spot (type 2), Lambert shading with a highlight.
in vec3 vViewPosition;
in vec3 vNormal;
in vec4 vColor;

uniform int uShading;        // 0 unlit colours, 1 lit
uniform int uLightOn;        // 0: ambient only
uniform int uLightType;
uniform vec3 uLightVector;   // toward the light, for type 0
uniform vec3 uLightPosition; // for types 1 and 2
uniform vec3 uSpotDirection; // for type 2
uniform vec3 uAttenuation;   // constant, linear, quadratic
uniform float uSpotCosine;
uniform float uSpotExponent;
uniform vec3 uLightColor;
uniform float uIntensity;
uniform float uAmbient;

out vec4 fragColor;

void main()
{
    if (uShading == 0)
    {
        fragColor = vColor;
        return;
    }
    vec3 lit = vColor.rgb * uAmbient;
    vec3 n = normalize(vNormal);
    if (!gl_FrontFacing)
    {
        n = -n;
    }
    if (uLightOn != 0 && length(vNormal) > 0.0)
    {
        vec3 toLight = normalize(uLightVector);
        float reach = 1.0;
        if (uLightType != 0)
        {
            vec3 offset = uLightPosition - vViewPosition;
            float distance = length(offset);
            toLight = offset / max(distance, 1e-20);
            reach = 1.0 / max(uAttenuation.x + uAttenuation.y * distance
                              + uAttenuation.z * distance * distance, 1e-6);
            if (uLightType == 2)
            {
                float along = dot(-toLight, normalize(uSpotDirection));
                reach = along < uSpotCosine ? 0.0 : reach * pow(max(along, 0.0), uSpotExponent);
            }
        }
        float diffuse = max(dot(n, toLight), 0.0);
        vec3 halfway = normalize(toLight + vec3(0.0, 0.0, 1.0));
        float highlight = diffuse > 0.0 ? 0.3 * pow(max(dot(n, halfway), 0.0), 40.0) : 0.0;
        vec3 light = uLightColor * (uIntensity * reach);
        lit += vColor.rgb * (1.0 - uAmbient) * diffuse * light + highlight * light;
    }
    fragColor = vec4(min(lit, vec3(1.0)), vColor.a);
}
