#include "Engine/Tip.h"

#include <algorithm>
#include <utility>

namespace KesraEngine
{

namespace
{

void CopyCoord(const double* from, double* to)
{
    std::copy(from, from + 3, to);
}

} // namespace

CKesraTip::CKesraTip()
    : m_context(),
      m_originalCoord{0.0, 0.0, 0.0},
      m_effectCoord{0.0, 0.0, 0.0}
{
}

bool CKesraTip::Create(std::string text, const double* original, const double* effect)
{
    // A text taken by value may carry zero characters; the record keeps what a
    // zero-terminated reader of it would see. Erasing and moving allocate
    // nothing, so this cannot fail halfway.
    const std::string::size_type end = text.find('\0');
    if (end != std::string::npos)
    {
        text.erase(end);
    }
    m_context = std::move(text);
    SetOriginalCoord(original);
    SetEffectCoord(effect);
    return true;
}

void CKesraTip::SetContext(const char* text)
{
    // std::string's assignment either succeeds or leaves the old text.
    m_context.assign(text != nullptr ? text : "");
}

void CKesraTip::SetOriginalCoord(const double* coord)
{
    CopyCoord(coord, m_originalCoord);
}

void CKesraTip::GetOriginalCoord(double* coord) const
{
    CopyCoord(m_originalCoord, coord);
}

void CKesraTip::SetEffectCoord(const double* coord)
{
    CopyCoord(coord, m_effectCoord);
}

void CKesraTip::GetEffectCoord(double* coord) const
{
    CopyCoord(m_effectCoord, coord);
}

} // namespace KesraEngine
