// CKesraTip: one annotation record, a text attached to a point of the model.
//
// A tip keeps its text, its original coordinate (the model point it annotates)
// and its effect coordinate (where its label is placed). Both coordinates are
// three doubles x, y, z in model units and cross the interface as arrays of at
// least three elements; the pointers are not checked.
//
// Texts are 8-bit character strings. Whatever way a text comes in, it is kept
// only up to its first zero character, so the stored text never holds one.
//
// A plain value class: copies carry the whole text and both coordinates. The
// tip manager (CKesraTipManager) owns the records that a host works with.
#pragma once

#include "MathKit/Export.h"

#include <string>

namespace KesraEngine
{

class KESRA_ENGINE_API CKesraTip
{
public:
    // Empty text, both coordinates (0, 0, 0).
    CKesraTip();
    CKesraTip(const CKesraTip&) = default;
    CKesraTip& operator=(const CKesraTip&) = default;
    ~CKesraTip() = default;

    // Sets the text (up to its first zero character), then both coordinates.
    // Always true.
    bool Create(std::string text, const double* original, const double* effect);

    // Replaces the text with the zero-terminated text; a null pointer counts
    // as the empty text. Leaves the old text in place if the copy fails.
    void SetContext(const char* text);
    // The zero-terminated text; valid until the text changes or the record is
    // destroyed.
    const char* GetContext() const { return m_context.c_str(); }

    void SetOriginalCoord(const double* coord);
    void GetOriginalCoord(double* coord) const;

    void SetEffectCoord(const double* coord);
    void GetEffectCoord(double* coord) const;

private:
    std::string m_context;
    double m_originalCoord[3];
    double m_effectCoord[3];
};

} // namespace KesraEngine
