// CGlFont: the typeface of the backend's texts, and CGlyphAtlas, one pixel
// size of a face rendered by FreeType into a texture.
//
// The face name is a font file path, or a family: "DejaVu Sans" (also the
// default, and what any unknown family falls back to) and "DejaVu Sans Mono"
// pick Debian's DejaVu files, with bold and italic choosing among them. The size is in pixels.
#pragma once

#include "Engine/Font.h"
#include "gl/GlApi.h"

#include <string>

namespace KesraGl
{

class CGlFont : public KesraEngine::CKesraFont
{
public:
    // DejaVu Sans, 14 pixels, regular.
    CGlFont();
    ~CGlFont() = default;
    CGlFont(const CGlFont&) = default;
    CGlFont& operator=(const CGlFont&) = default;

    // The file behind the face, bold and italic switches.
    std::string FontFile() const;
};

struct GlGlyph
{
    float u0, v0, u1, v1; // texture corners, v0 at the glyph's top
    int width, height;    // bitmap size in pixels
    int left, top;        // bitmap offset from the pen, top above the baseline
    float advance;        // pen move in pixels
};

// The printable ASCII characters of one file at one pixel size, with a white
// block at the texture's origin for solid shapes. Needs a current context.
class CGlyphAtlas
{
public:
    // Throws GlError when the file cannot be read as a font.
    CGlyphAtlas(const std::string& file, int pixelSize);
    ~CGlyphAtlas();
    CGlyphAtlas(const CGlyphAtlas&) = delete;
    CGlyphAtlas& operator=(const CGlyphAtlas&) = delete;

    GLuint Texture() const { return m_texture; }
    // Null for characters outside the printable ASCII range.
    const GlGlyph* Find(char c) const;
    float TextWidth(const std::string& text) const;
    int Ascender() const { return m_ascender; }
    int Descender() const { return m_descender; }
    // A texture coordinate inside the white block.
    float WhiteU() const { return m_white; }
    float WhiteV() const { return m_white; }

private:
    static constexpr char kFirst = ' ';
    static constexpr char kLast = '~';

    GLuint m_texture = 0;
    GlGlyph m_glyphs[kLast - kFirst + 1] = {};
    int m_ascender = 0;
    int m_descender = 0;
    float m_white = 0.0f;
};

} // namespace KesraGl
