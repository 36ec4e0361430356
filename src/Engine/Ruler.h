// CKesraRuler: the scale bar of a view.
//
// The bar starts at a window position (pixels) and may take a part of the
// free width (window width - start x): the free width divided by the ruler
// width scale. With the OpenGL scale (pixels per model unit at the current
// zoom) the ruler turns that pixel width into a model length, chooses a round
// length not greater than it, shortens the bar so that it matches that length,
// picks the number of blocks the bar is divided into and two label format
// numbers that follow the length's magnitude (see UpdateWidthFactor). The
// drawing backend reads the computed fields, which have no getters, from a
// derived class.
//
// Recomputation: SetWindowSize, SetStartPosition (on a change only),
// SetRulerWidthScale, SetOpenGLScale, SetAutoBlock, SetBlock2, SetBlock4 and
// Create run UpdateWidthFactor before they return, created or not.
//
// Lifecycle: construct (not created, a 300 by 300 window, computed fields 0),
// Create, use, Delete (clears the created flag only).
#pragma once

#include "MathKit/Export.h"
#include "MathKit/GenColor.h"

#include <string>

namespace KesraEngine
{

class KESRA_ENGINE_API CKesraRuler
{
public:
    using Color = KesraMathKit::TKesraGenColor<unsigned char>;

    CKesraRuler();
    CKesraRuler(const CKesraRuler&) = default;
    // All or nothing: when a text cannot be copied, std::bad_alloc leaves
    // this object as it was.
    CKesraRuler& operator=(const CKesraRuler& other);
    ~CKesraRuler() = default;

    // False, with nothing changed, when width or height is 0. Otherwise stores
    // the window size and start position, recomputes and marks the ruler
    // created.
    bool Create(int width, int height, int startX, int startY);
    // False when not created; otherwise clears the created flag only.
    bool Delete();
    int IsCreate() const { return m_created; }

    // Non-zero is stored as 1.
    void SetDrawRuler(int draw);
    int GetDrawRuler() const { return m_drawRuler; }

    // Stores the size and recomputes, even when nothing changed.
    void SetWindowSize(int width, int height);
    void GetWindowSize(int& width, int& height) const;

    // Stores both and recomputes only when either differs from the stored one.
    void SetStartPosition(int x, int y);
    // Fills x and y only when created.
    void GetStartPosition(int& x, int& y) const;

    // The free width is divided by this; refused (no change) unless > 0.
    void SetRulerWidthScale(int scale);
    void GetRulerWidthScale(int& scale) const;

    // Height in pixels; refused unless > 10. Also sets the reduced height to
    // height / 1.5, truncated. Does not recompute.
    void SetRulerHeight(int height);
    void GetRulerHeight(int& height) const;

    // Unit text of the label; an empty text is refused.
    void SetUnit(const std::string& unit);
    void GetUnit(std::string& unit) const;

    // Pixels per model unit; refused (no change) unless > 0.
    void SetOpenGLScale(float scale);
    void GetOpenGLScale(float& scale) const;

    // Stored and filled only while created; otherwise ignored and untouched.
    void SetTextColor(const Color& color);
    void GetTextColor(Color& color) const;

    // With auto block on, the block count is 4 when the bar's unshortened
    // pixel width, (window width - start x) / width scale, is 260 or more,
    // and 2 below.
    void SetAutoBlock(bool autoBlock);
    void GetAutoBlock(bool& autoBlock) const;
    // Fixed block counts; both turn auto block off.
    void SetBlock2();
    void SetBlock4();
    bool IsBlock2() const { return m_blockCount == 2; }

protected:
    // Recomputes the pixel width, the length, the block count (auto block)
    // and the label formats. A free pixel width of 0 or less, or a length that
    // is not a finite positive number, gives length 0, pixel width 0 and label
    // formats 2 and 2.
    void UpdateWidthFactor();

    // The power of ten of the larger of |a| and |b| when it exceeds digits
    // (lengths of 1 and more) or when it is -2 or less and its negation exceeds
    // digits (lengths below 1); otherwise 0. A magnitude of 0 or one that is
    // not finite has no power of ten and also gives 0.
    int GetExponentialBase(double a, double b, int digits) const;

    // Estimated pixel width of a label: 6, plus 6 per ASCII digit, 5 per
    // lower-case and 8 per upper-case ASCII letter, 3 per other byte. A text
    // whose length read as a 32-bit signed number is 0 or less gives 6.
    int CalculateStringWdith(const std::string& text) const;

    int m_created;
    int m_drawRuler;
    int m_windowWidth;
    int m_windowHeight;
    int m_startX;
    int m_startY;
    int m_rulerWidthScale;
    int m_rulerHeight;
    int m_reducedHeight;
    float m_openGLScale;
    std::string m_unit;
    Color m_textColor;
    int m_rulerPixelWidth;
    float m_rulerLength;
    bool m_autoBlock;
    int m_blockCount;
    int m_labelFormat1;
    int m_labelFormat2;

private:
    // Shortens the bar to a round length for the unrounded length L and the
    // free pixel width w; L is finite and positive.
    void RoundLength(float length, int pixelWidth);
};

} // namespace KesraEngine
