#include "Engine/Font.h"

#include <utility>

namespace KesraEngine
{

CKesraFont::CKesraFont() : m_face("Arial"), m_size(14), m_bold(0), m_italic(0)
{
}

void CKesraFont::SetFace(std::string face)
{
    m_face = std::move(face);
}

std::string CKesraFont::GetFace() const
{
    return m_face;
}

void CKesraFont::SetSize(int size)
{
    m_size = size;
}

int CKesraFont::GetSize() const
{
    return m_size;
}

void CKesraFont::SetBold(int bold)
{
    m_bold = bold;
}

int CKesraFont::GetBold() const
{
    return m_bold;
}

void CKesraFont::SetItalic(int italic)
{
    m_italic = italic;
}

int CKesraFont::GetItalic() const
{
    return m_italic;
}

} // namespace KesraEngine
