// CGlCanvas: the window-aligned drawing of the overlays (legend, ruler,
// triad labels, tips, rubber band, title, background) in pixels, y up.
//
// Shapes and glyphs are collected into one vertex batch and drawn together;
// a solid shape samples the atlas's white block, so that shapes and text of
// one size share a draw call. Needs a current context for its whole life.
#pragma once

#include "common/OverlayText.h"
#include "gl/GlApi.h"
#include "gl/GlFont.h"
#include "gl/GlProgram.h"

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace KesraGl
{

using Anchor = KesraBackend::Anchor;

// A text's face file and pixel size.
struct TextStyle
{
    std::string file;
    int size;
};

class CGlCanvas
{
public:
    // Throws GlError when the shaders or the default font fail.
    explicit CGlCanvas(const TextStyle& defaultStyle);
    ~CGlCanvas();
    CGlCanvas(const CGlCanvas&) = delete;
    CGlCanvas& operator=(const CGlCanvas&) = delete;

    // Starts drawing over a surface of width x height pixels: blending on,
    // depth test off.
    void Begin(int width, int height);
    // Draws what is collected and restores the depth test.
    void End();

    void Rect(float x0, float y0, float x1, float y1, const Color& color);
    // bottom at y0, top at y1.
    void Gradient(float x0, float y0, float x1, float y1, const Color& bottom, const Color& top);
    void Frame(float x0, float y0, float x1, float y1, float width, const Color& color);
    // A segment drawn as a quadrilateral width pixels wide.
    void Line(float x0, float y0, float x1, float y1, float width, const Color& color);
    void Triangle(const float (&xy)[6], const Color& color);
    // One line of text (UTF-8, see CGlyphAtlas) with its baseline at y. A
    // superscript (the exponent of a power of ten) is raised after it, in the
    // smaller size, and tail follows back on the baseline; the anchor places
    // the whole line.
    void Text(float x, float y, const std::string& text, const TextStyle& style,
              const Color& color, Anchor anchor = Anchor::Start,
              const std::string& superscript = std::string(), const std::string& tail = std::string());
    // Text over a halo: the same text in halo's colour one pixel off in each
    // of the eight directions first.
    void HaloText(float x, float y, const std::string& text, const TextStyle& style, const Color& color,
                  const Color& halo, Anchor anchor = Anchor::Start,
                  const std::string& superscript = std::string(), const std::string& tail = std::string());
    float TextWidth(const std::string& text, const TextStyle& style);
    int Ascender(const TextStyle& style) { return AtlasFor(style).Ascender(); }

private:
    struct Vertex
    {
        float x, y, u, v;
        unsigned char color[4];
    };

    CGlyphAtlas& AtlasFor(const TextStyle& style);
    void UseAtlas(CGlyphAtlas& atlas);
    void Quad(const Vertex (&corners)[4]);
    void Solid(const float (&xy)[8], const Color (&colors)[4]);
    void Flush();
    // Glyphs from the pen at (x, baseline), both whole pixels; the pen after.
    float Run(CGlyphAtlas& atlas, float x, float baseline, const std::string& text, const Color& color);

    CGlProgram m_program;
    GLuint m_vertexArray = 0;
    GLuint m_vertexBuffer = 0;
    std::vector<Vertex> m_vertices;
    std::map<std::pair<std::string, int>, std::unique_ptr<CGlyphAtlas>> m_atlases;
    CGlyphAtlas* m_atlas = nullptr;
    TextStyle m_defaultStyle;
};

} // namespace KesraGl
