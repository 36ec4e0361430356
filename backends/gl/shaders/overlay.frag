#version 330 core
// The atlas holds glyph coverage in red and a white block for solid shapes.
in vec2 vTexCoord;
in vec4 vColor;

uniform sampler2D uAtlas;

out vec4 fragColor;

void main()
{
    fragColor = vec4(vColor.rgb, vColor.a * texture(uAtlas, vTexCoord).r);
}
