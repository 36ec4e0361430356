// CKesraFont: the typeface in which a backend draws text.
//
// It stores a face name, a size and two style switches exactly as given: no
// range check, and a non-zero switch is kept as it is, not turned into 1. The
// unit of the size (points or pixels) is the backend's. Turning the values
// into a real font is the backend's work too.
//
// A font exists only as the base of a backend's class: its constructor and its
// (non-virtual) destructor are protected. Every operation is virtual so that
// the backend can replace it; none is abstract.
#pragma once

#include "MathKit/Export.h"

#include <string>

namespace KesraEngine
{

class KESRA_ENGINE_API CKesraFont
{
public:
    CKesraFont(const CKesraFont&) = default;
    CKesraFont& operator=(const CKesraFont&) = default;

    virtual void SetFace(std::string face);
    virtual std::string GetFace() const;
    virtual void SetSize(int size);
    virtual int GetSize() const;
    // Non-zero for bold.
    virtual void SetBold(int bold);
    virtual int GetBold() const;
    // Non-zero for italic.
    virtual void SetItalic(int italic);
    virtual int GetItalic() const;

protected:
    CKesraFont();
    ~CKesraFont() = default;

    std::string m_face;
    int m_size;
    int m_bold;
    int m_italic;
};

} // namespace KesraEngine
