#include "gl/GlFont.h"

#include "gl/GlProgram.h"

#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <cmath>
#include <fstream>
#include <vector>

namespace KesraGl
{

namespace
{

const char* const kFontDirectory = "/usr/share/fonts/truetype/dejavu/";
constexpr int kAtlasWidth = 512;
constexpr int kWhiteBlock = 4; // pixels at the origin, clear of every glyph's filtering

bool IsReadable(const std::string& path)
{
    return std::ifstream(path).good();
}

// FreeType's library and face for the duration of one atlas build.
class FaceHolder
{
public:
    FaceHolder(const std::string& file, int pixelSize)
    {
        if (FT_Init_FreeType(&m_library) != 0)
        {
            throw GlError("font " + file + ": FreeType does not start");
        }
        if (FT_New_Face(m_library, file.c_str(), 0, &m_face) != 0)
        {
            FT_Done_FreeType(m_library);
            throw GlError("font " + file + ": not a font file FreeType can read");
        }
        FT_Set_Pixel_Sizes(m_face, 0, static_cast<FT_UInt>(pixelSize));
    }
    ~FaceHolder()
    {
        FT_Done_Face(m_face);
        FT_Done_FreeType(m_library);
    }
    FaceHolder(const FaceHolder&) = delete;
    FaceHolder& operator=(const FaceHolder&) = delete;

    FT_Face Face() const { return m_face; }

private:
    FT_Library m_library = nullptr;
    FT_Face m_face = nullptr;
};

} // namespace

CGlFont::CGlFont()
{
    m_face = "DejaVu Sans";
    m_size = 14;
}

std::string CGlFont::FontFile() const
{
    if (m_face.find('/') != std::string::npos && IsReadable(m_face))
    {
        return m_face;
    }
    std::string name = m_face == "DejaVu Sans Mono" ? "DejaVuSansMono" : "DejaVuSans";
    if (m_bold != 0 || m_italic != 0)
    {
        name += "-";
        name += m_bold != 0 ? "Bold" : "";
        name += m_italic != 0 ? "Oblique" : "";
    }
    return kFontDirectory + name + ".ttf";
}

CGlyphAtlas::CGlyphAtlas(const std::string& file, int pixelSize)
{
    const FaceHolder holder(file, std::clamp(pixelSize, 4, 200));
    const FT_Face face = holder.Face();
    m_ascender = static_cast<int>(face->size->metrics.ascender >> 6);
    m_descender = static_cast<int>(-(face->size->metrics.descender >> 6));

    // Glyphs are placed in rows after the white block, one pixel apart.
    std::vector<unsigned char> pixels(static_cast<std::size_t>(kAtlasWidth) * kAtlasWidth, 0);
    for (int y = 0; y < kWhiteBlock; ++y)
    {
        std::fill_n(pixels.begin() + y * kAtlasWidth, kWhiteBlock, 255);
    }
    int penX = kWhiteBlock + 1;
    int penY = 0;
    int rowHeight = kWhiteBlock;
    // ASCII first, so that adding Latin-1 left every ASCII glyph in its place.
    for (unsigned code = kFirst; code <= kLatinLast; ++code)
    {
        const int slot = Slot(code);
        if (slot < 0 || FT_Load_Char(face, static_cast<FT_ULong>(code), FT_LOAD_RENDER) != 0)
        {
            continue;
        }
        const FT_Bitmap& bitmap = face->glyph->bitmap;
        const int width = static_cast<int>(bitmap.width);
        const int height = static_cast<int>(bitmap.rows);
        if (penX + width >= kAtlasWidth)
        {
            penX = 0;
            penY += rowHeight + 1;
            rowHeight = 0;
        }
        if (penY + height >= kAtlasWidth)
        {
            break;
        }
        for (int row = 0; row < height; ++row)
        {
            const unsigned char* source = bitmap.buffer + row * bitmap.pitch;
            std::copy_n(source, width, pixels.begin() + (penY + row) * kAtlasWidth + penX);
        }
        GlGlyph& glyph = m_glyphs[slot];
        glyph.u0 = static_cast<float>(penX) / kAtlasWidth;
        glyph.v0 = static_cast<float>(penY) / kAtlasWidth;
        glyph.u1 = static_cast<float>(penX + width) / kAtlasWidth;
        glyph.v1 = static_cast<float>(penY + height) / kAtlasWidth;
        glyph.width = width;
        glyph.height = height;
        glyph.left = face->glyph->bitmap_left;
        glyph.top = face->glyph->bitmap_top;
        glyph.advance = static_cast<float>(face->glyph->advance.x) / 64.0f;
        penX += width + 1;
        rowHeight = std::max(rowHeight, height);
    }
    m_white = 0.5f * kWhiteBlock / kAtlasWidth;

    glGenTextures(1, &m_texture);
    glBindTexture(GL_TEXTURE_2D, m_texture);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_R8, kAtlasWidth, kAtlasWidth, 0, GL_RED, GL_UNSIGNED_BYTE,
                 pixels.data());
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
}

CGlyphAtlas::~CGlyphAtlas()
{
    glDeleteTextures(1, &m_texture);
}

int CGlyphAtlas::Slot(unsigned code)
{
    if (code >= kFirst && code <= kLast)
    {
        return static_cast<int>(code - kFirst);
    }
    if (code >= kLatinFirst && code <= kLatinLast)
    {
        return static_cast<int>(kLast - kFirst + 1 + code - kLatinFirst);
    }
    return -1;
}

const GlGlyph* CGlyphAtlas::Find(char c) const
{
    const unsigned code = static_cast<unsigned char>(c);
    return code <= kLast ? FindCode(code) : nullptr;
}

const GlGlyph* CGlyphAtlas::FindCode(unsigned code) const
{
    const int slot = Slot(code);
    return slot >= 0 ? &m_glyphs[slot] : nullptr;
}

unsigned CGlyphAtlas::NextCode(const std::string& text, std::size_t& at)
{
    const unsigned lead = static_cast<unsigned char>(text[at++]);
    if ((lead & 0xE0u) == 0xC0u && at < text.size())
    {
        const unsigned next = static_cast<unsigned char>(text[at]);
        if ((next & 0xC0u) == 0x80u)
        {
            ++at;
            return ((lead & 0x1Fu) << 6) | (next & 0x3Fu);
        }
    }
    return lead;
}

float CGlyphAtlas::TextWidth(const std::string& text) const
{
    float width = 0.0f;
    for (std::size_t at = 0; at < text.size();)
    {
        const GlGlyph* glyph = FindCode(NextCode(text, at));
        width += glyph != nullptr ? glyph->advance : 0.0f;
    }
    return std::ceil(width);
}

} // namespace KesraGl
