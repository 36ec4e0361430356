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
    for (char c = kFirst; c <= kLast; ++c)
    {
        if (FT_Load_Char(face, static_cast<FT_ULong>(c), FT_LOAD_RENDER) != 0)
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
        GlGlyph& glyph = m_glyphs[c - kFirst];
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

const GlGlyph* CGlyphAtlas::Find(char c) const
{
    if (c < kFirst || c > kLast)
    {
        return nullptr;
    }
    return &m_glyphs[c - kFirst];
}

float CGlyphAtlas::TextWidth(const std::string& text) const
{
    float width = 0.0f;
    for (const char c : text)
    {
        const GlGlyph* glyph = Find(c);
        width += glyph != nullptr ? glyph->advance : 0.0f;
    }
    return std::ceil(width);
}

} // namespace KesraGl
