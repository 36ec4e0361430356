// CGlFont: the typeface of the backend's texts, and CGlyphAtlas, one pixel
// size of a face rendered by FreeType into a texture.
//
// The face name is a font file path, or a family: "DejaVu Sans" (also the
// default, and what any unknown family falls back to) and "DejaVu Sans Mono"
// pick Debian's DejaVu files, with bold and italic choosing among them. The size is in pixels.
#pragma once

#include "Engine/Font.h"
#include "gl/GlApi.h"

#include <cstddef>
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

// The printable ASCII and Latin-1 characters (U+00A0 ... U+00FF, among them
// the times sign of a power of ten) of one file at one pixel size, with a
// white block at the texture's origin for solid shapes. Texts are UTF-8; a
// byte above 127 that does not start a two-byte sequence is read as Latin-1.
// Needs a current context.
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
    // Null for code points the atlas does not hold.
    const GlGlyph* FindCode(unsigned code) const;
    // The code point at text[at], at moved past it.
    static unsigned NextCode(const std::string& text, std::size_t& at);
    float TextWidth(const std::string& text) const;
    int Ascender() const { return m_ascender; }
    int Descender() const { return m_descender; }
    // A texture coordinate inside the white block.
    float WhiteU() const { return m_white; }
    float WhiteV() const { return m_white; }

private:
    static constexpr unsigned kFirst = 0x20;
    static constexpr unsigned kLast = 0x7E;
    static constexpr unsigned kLatinFirst = 0xA0;
    static constexpr unsigned kLatinLast = 0xFF;
    static constexpr int kGlyphs = (kLast - kFirst + 1) + (kLatinLast - kLatinFirst + 1);
    // The glyph's place in m_glyphs; -1 for a code point the atlas does not hold.
    static int Slot(unsigned code);

    GLuint m_texture = 0;
    GlGlyph m_glyphs[kGlyphs] = {};
    int m_ascender = 0;
    int m_descender = 0;
    float m_white = 0.0f;
};

} // namespace KesraGl
