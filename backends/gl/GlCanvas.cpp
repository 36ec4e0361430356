#include "gl/GlCanvas.h"

#include <cmath>
#include <cstddef>

namespace KesraGl
{

CGlCanvas::CGlCanvas(const TextStyle& defaultStyle)
    : m_program("overlay.vert", "overlay.frag"), m_defaultStyle(defaultStyle)
{
    glGenVertexArrays(1, &m_vertexArray);
    glGenBuffers(1, &m_vertexBuffer);
    glBindVertexArray(m_vertexArray);
    glBindBuffer(GL_ARRAY_BUFFER, m_vertexBuffer);
    const GLsizei stride = sizeof(Vertex);
    glEnableVertexAttribArray(0);
    glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, stride,
                          reinterpret_cast<const void*>(offsetof(Vertex, x)));
    glEnableVertexAttribArray(1);
    glVertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, stride,
                          reinterpret_cast<const void*>(offsetof(Vertex, u)));
    glEnableVertexAttribArray(2);
    glVertexAttribPointer(2, 4, GL_UNSIGNED_BYTE, GL_TRUE, stride,
                          reinterpret_cast<const void*>(offsetof(Vertex, color)));
    glBindVertexArray(0);
    m_atlas = &AtlasFor(defaultStyle);
}

CGlCanvas::~CGlCanvas()
{
    m_atlases.clear();
    glDeleteBuffers(1, &m_vertexBuffer);
    glDeleteVertexArrays(1, &m_vertexArray);
}

CGlyphAtlas& CGlCanvas::AtlasFor(const TextStyle& style)
{
    std::unique_ptr<CGlyphAtlas>& slot = m_atlases[{style.file, style.size}];
    if (!slot)
    {
        slot = std::make_unique<CGlyphAtlas>(style.file, style.size);
    }
    return *slot;
}

void CGlCanvas::Begin(int width, int height)
{
    m_program.Use();
    m_program.Set("uViewport", static_cast<float>(width), static_cast<float>(height));
    m_program.Set("uAtlas", 0);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_CULL_FACE);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
}

void CGlCanvas::End()
{
    Flush();
    glDisable(GL_BLEND);
    glEnable(GL_DEPTH_TEST);
}

void CGlCanvas::Flush()
{
    if (m_vertices.empty())
    {
        return;
    }
    m_program.Use();
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, m_atlas->Texture());
    glBindVertexArray(m_vertexArray);
    glBindBuffer(GL_ARRAY_BUFFER, m_vertexBuffer);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(m_vertices.size() * sizeof(Vertex)),
                 m_vertices.data(), GL_STREAM_DRAW);
    glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(m_vertices.size()));
    glBindVertexArray(0);
    m_vertices.clear();
}

void CGlCanvas::UseAtlas(CGlyphAtlas& atlas)
{
    if (&atlas != m_atlas)
    {
        Flush();
        m_atlas = &atlas;
    }
}

void CGlCanvas::Quad(const Vertex (&corners)[4])
{
    for (const int k : {0, 1, 2, 0, 2, 3})
    {
        m_vertices.push_back(corners[k]);
    }
}

void CGlCanvas::Solid(const float (&xy)[8], const Color (&colors)[4])
{
    const float u = m_atlas->WhiteU();
    const float v = m_atlas->WhiteV();
    Vertex corners[4];
    for (int k = 0; k < 4; ++k)
    {
        corners[k] = Vertex{xy[2 * k], xy[2 * k + 1], u, v,
                            {colors[k].red, colors[k].green, colors[k].blue, colors[k].alpha}};
    }
    Quad(corners);
}

void CGlCanvas::Rect(float x0, float y0, float x1, float y1, const Color& color)
{
    Gradient(x0, y0, x1, y1, color, color);
}

void CGlCanvas::Gradient(float x0, float y0, float x1, float y1, const Color& bottom,
                         const Color& top)
{
    Solid({x0, y0, x1, y0, x1, y1, x0, y1}, {bottom, bottom, top, top});
}

void CGlCanvas::Frame(float x0, float y0, float x1, float y1, float width, const Color& color)
{
    const float half = 0.5f * width;
    Line(x0 - half, y0, x1 + half, y0, width, color);
    Line(x0 - half, y1, x1 + half, y1, width, color);
    Line(x0, y0, x0, y1, width, color);
    Line(x1, y0, x1, y1, width, color);
}

void CGlCanvas::Line(float x0, float y0, float x1, float y1, float width, const Color& color)
{
    const float dx = x1 - x0;
    const float dy = y1 - y0;
    const float length = std::sqrt(dx * dx + dy * dy);
    if (length == 0.0f)
    {
        return;
    }
    const float nx = -dy / length * 0.5f * width;
    const float ny = dx / length * 0.5f * width;
    Solid({x0 + nx, y0 + ny, x0 - nx, y0 - ny, x1 - nx, y1 - ny, x1 + nx, y1 + ny},
          {color, color, color, color});
}

void CGlCanvas::Triangle(const float (&xy)[6], const Color& color)
{
    const float u = m_atlas->WhiteU();
    const float v = m_atlas->WhiteV();
    for (int k = 0; k < 3; ++k)
    {
        m_vertices.push_back(
            Vertex{xy[2 * k], xy[2 * k + 1], u, v, {color.red, color.green, color.blue, color.alpha}});
    }
}

float CGlCanvas::TextWidth(const std::string& text, const TextStyle& style)
{
    return AtlasFor(style).TextWidth(text);
}

void CGlCanvas::HaloText(float x, float y, const std::string& text, const TextStyle& style,
                         const Color& color, const Color& halo, Anchor anchor,
                         const std::string& superscript, const std::string& tail)
{
    for (int dx = -1; dx <= 1; ++dx)
    {
        for (int dy = -1; dy <= 1; ++dy)
        {
            if (dx != 0 || dy != 0)
            {
                Text(x + static_cast<float>(dx), y + static_cast<float>(dy), text, style, halo, anchor,
                     superscript, tail);
            }
        }
    }
    Text(x, y, text, style, color, anchor, superscript, tail);
}

void CGlCanvas::Text(float x, float y, const std::string& text, const TextStyle& style,
                     const Color& color, Anchor anchor, const std::string& superscript,
                     const std::string& tail)
{
    CGlyphAtlas& atlas = AtlasFor(style);
    const TextStyle small{style.file,
                          static_cast<int>(std::lround(KesraBackend::kSuperscriptScale * style.size))};
    float width = atlas.TextWidth(text) + atlas.TextWidth(tail);
    if (!superscript.empty())
    {
        width += AtlasFor(small).TextWidth(superscript);
    }
    float penX = x;
    if (anchor != Anchor::Start)
    {
        penX -= width * (anchor == Anchor::Middle ? 0.5f : 1.0f);
    }
    // Whole pixels keep the glyphs' coverage as FreeType rendered it.
    penX = std::round(penX);
    const float baseline = std::round(y);
    penX = Run(atlas, penX, baseline, text, color);
    if (!superscript.empty())
    {
        const float raise = std::round(static_cast<float>(KesraBackend::kSuperscriptRaise * style.size));
        penX = std::round(Run(AtlasFor(small), penX, baseline + raise, superscript, color));
    }
    if (!tail.empty())
    {
        Run(atlas, penX, baseline, tail, color);
    }
}

float CGlCanvas::Run(CGlyphAtlas& atlas, float x, float baseline, const std::string& text,
                     const Color& color)
{
    UseAtlas(atlas);
    float penX = x;
    for (std::size_t at = 0; at < text.size();)
    {
        const GlGlyph* glyph = atlas.FindCode(CGlyphAtlas::NextCode(text, at));
        if (glyph == nullptr)
        {
            continue;
        }
        const float left = penX + static_cast<float>(glyph->left);
        const float top = baseline + static_cast<float>(glyph->top);
        const float right = left + static_cast<float>(glyph->width);
        const float bottom = top - static_cast<float>(glyph->height);
        const unsigned char rgba[4] = {color.red, color.green, color.blue, color.alpha};
        const Vertex corners[4] = {{left, bottom, glyph->u0, glyph->v1, {rgba[0], rgba[1], rgba[2], rgba[3]}},
                                   {right, bottom, glyph->u1, glyph->v1, {rgba[0], rgba[1], rgba[2], rgba[3]}},
                                   {right, top, glyph->u1, glyph->v0, {rgba[0], rgba[1], rgba[2], rgba[3]}},
                                   {left, top, glyph->u0, glyph->v0, {rgba[0], rgba[1], rgba[2], rgba[3]}}};
        if (glyph->width > 0 && glyph->height > 0)
        {
            Quad(corners);
        }
        penX += glyph->advance;
    }
    return penX;
}

} // namespace KesraGl
