// CKesraScalarBar: the colour legend of a scalar result field.
//
// It holds the value range of the result, a palette of five colour stops and
// the options of the mapping, and turns a result value into 8-bit red, green
// and blue, either smoothly along the palette or in a number of equal colour
// blocks, through CKesraColorMap (ColorMap.h), which holds the rules of the
// mapping: positions, blocks, bytes and how the batch matches the single
// query. It also holds what the drawing backend needs to draw the legend:
// the window size and start position (pixels), two layout units derived from
// them, the title, unit and note texts, and the display switches.
//
// Conventions:
// - The palette's stop 0 is the colour of the minimum value, stop 4 that of
//   the colour-scale top, which is the maximum value, or the maximum plus 1.0
//   when the range is degenerate. Inverse walks the palette backwards.
// - Switches passed as int are stored as 0 or 1. A switch setter compares its
//   argument, unchanged, with the stored value; when they differ it marks the
//   bar modified and stores 1 for a non-zero argument, else 0. So SetInverse(2)
//   on an inverse bar marks it modified and leaves it at 1.
// - The library sets the modified flag but never clears it; the backend does.
// - Several getters answer only while the bar is created: they leave their
//   outputs untouched otherwise, or return -1 (switches) or 0 (GetBlockNum).
//   The colour queries answer always.
//
// The class is the base of a drawing backend's legend. It has no abstract
// operation and can be used directly; its four virtual operations (Create,
// Delete, SetTitle, SetNote) may be overridden. The destructor is not virtual.
#pragma once

#include "Engine/ColorMap.h"
#include "MathKit/Export.h"
#include "MathKit/GenColor.h"

#include <cstddef>
#include <string>

namespace KesraEngine
{

class KESRA_ENGINE_API CKesraScalarBar
{
public:
    using Color = KesraMathKit::TKesraGenColor<unsigned char>;

    // Range 0 to 1, RedBlue palette, smooth, 8 blocks, not created.
    CKesraScalarBar();
    CKesraScalarBar(const CKesraScalarBar&) = default;
    // All or nothing: when a text cannot be copied, std::bad_alloc leaves
    // this object as it was.
    CKesraScalarBar& operator=(const CKesraScalarBar& other);

    // ---- Lifecycle (virtual, in this order) -----------------------------------

    // Sizes the legend for a window of width x height pixels with the legend
    // starting at (startX, startY), recomputes the layout units, marks the bar
    // modified and created. False, with no change, for a zero width or height;
    // negative values are taken. A created bar is first deleted through the
    // virtual Delete. Range, palette, texts and switches survive.
    virtual bool Create(int width, int height, int startX, int startY);
    // Clears the created flag; false when not created. Nothing else changes.
    virtual bool Delete();
    // Stores the title when it differs as a zero-terminated string; marks
    // modified. redraw is for the backend; the class ignores it.
    virtual void SetTitle(const std::string& title, bool redraw);
    // Stores the note when it differs as a zero-terminated string; marks
    // modified.
    virtual void SetNote(const std::string& note);

    int IsCreate() const { return m_created; }
    int IsModified() const { return m_modified; }

    // ---- Layout -----------------------------------------------------------------

    // When either differs: stores both, recomputes the layout units, marks
    // modified. Before Create the units use whatever the start position holds.
    void SetWindowSize(int width, int height);
    // Filled only when created.
    void GetWindowSize(int& width, int& height) const;
    // When either differs: stores both, recomputes the layout units, marks
    // modified.
    void SetStartPosition(int x, int y);
    // Filled only when created.
    void GetStartPosition(int& x, int& y) const;

    // The lowest window row (y up) of the free part that the layout units
    // divide: the start y for direction 0; for any other direction at least
    // 25, the rows kept at the bottom for that layout's labels. It follows
    // the current direction and start y, even while SetDirection has not yet
    // led to new layout units.
    int GetLayoutBottom() const;

    // Switch: 0 and non-zero select the backend's two layouts. The layout
    // units keep their values until Create, SetWindowSize or SetStartPosition.
    void SetDirection(int direction);
    // -1 when not created.
    int GetDirection() const;

    // ---- Texts and appearance ---------------------------------------------------

    // Filled only when created.
    void GetTitle(std::string& title) const;
    void GetNote(std::string& note) const;
    // Like SetNote, for the unit text; not virtual.
    void SetUnit(const std::string& unit);
    // Filled only when created.
    void GetUnit(std::string& unit) const;

    // When any of the four bytes differs: stores the colour, marks modified.
    void SetColor(const Color& color);
    // Filled only when created.
    void GetColor(Color& color) const;

    // Switch. -1 from the getter when not created.
    void SetAutoTextColor(int autoTextColor);
    int GetAutoTextColor() const;

    // The two numbers of the labels' number format. Refused (no change) unless
    // both are at least 1; marks modified only when the pair changes.
    void SetValueFormat(int first, int second);
    // Filled only when created.
    void GetValueFormat(int& first, int& second) const;

    // The power of ten that labels of values up to max(|a|, |b|) are written
    // with, for numbers of digits digits; 0 for digits 0. Magnitudes of 1e-12
    // or less and infinite ones count as exponent 0. An argument that is not
    // a number is ignored.
    static int GetExponentialBase(double a, double b, int digits);

    // Switches. -1 from the getters when not created.
    void SetVisibility(int visibility);
    int GetVisibility() const;
    void SetShowNode(int showNode);
    int GetShowNode() const;

    // Refused unless width > 0 (NaN included); never marks modified.
    void SetColorBlockLineWidth(float width);
    // Answers always.
    float GetColorBlockLineWidth() const { return m_colorBlockLineWidth; }

    // ---- Value range ------------------------------------------------------------

    // Refused (no change, not even the modified flag) when minimum > maximum.
    // The colour-scale top becomes maximum + 1.0 when |maximum - minimum| <=
    // 1e-16. GetCurrentUpperValue then answers the maximum.
    void SetValueRange(double minimum, double maximum, bool flag1, bool flag2);
    // Refused when minimum > maximum. The current upper value is clamped into
    // the range; the colour-scale top becomes maximum + 1.0 when
    // |maximum - minimum| <= 1e-20. GetCurrentUpperValue then answers it.
    void SetValueRange(double minimum, double maximum, double current);
    // Filled only when created; the third is the stored current upper value.
    void GetValueRange(double& minimum, double& maximum) const;
    void GetValueRange(double& minimum, double& maximum, double& current) const;

    // Refused when minimum > maximum; otherwise stored and marks modified. No
    // colour depends on it.
    void SetDisplayRange(double minimum, double maximum);
    // Filled only when created.
    void GetDisplayRange(double& minimum, double& maximum) const;

    // Always filled: the minimum, and the current upper value after the
    // three-value SetValueRange, else the maximum.
    void GetCurrentValueRange(double& minimum, double& upper) const;
    void GetCurrentUpperValue(double& upper) const;

    // ---- Mapping options --------------------------------------------------------

    // Refused unless 2 <= number <= 30; marks modified only when it changes.
    void SetBlockNum(int number);
    // 0 when not created.
    int GetBlockNum() const;

    // Switches. -1 from the getters when not created.
    void SetInverse(int inverse);
    int GetInverse() const;
    void SetBanded(int banded);
    int GetBanded() const;
    // Values outside the range take the colour of the nearest end.
    void SetFillAllRange(int fillAllRange);
    int GetFillAllRange() const;
    // Every value takes the single colour.
    void SetUseSignleColor(int useSingleColor);
    int GetUseSignleColor() const;

    // The colour of values outside the range; does not mark modified.
    void SetOverRangeColor(unsigned char red, unsigned char green, unsigned char blue);
    void GetOverRangeColor(unsigned char& red, unsigned char& green, unsigned char& blue) const;
    // The colour of the single-colour mode; does not mark modified.
    void SetSingleColor(unsigned char red, unsigned char green, unsigned char blue);
    void GetSingleColor(unsigned char& red, unsigned char& green, unsigned char& blue) const;

    // Load one of the four palettes; do not mark modified.
    void SetColorPaletteRedBlue();
    void SetColorPaletteBlueRed();
    void SetColorPaletteGrayScale();
    void SetColorPaletteGreenRed();

    // ---- Colour queries (answer whether or not the bar is created) ---------

    // The colour of value, banded or smooth as set: -1 below the range, 1
    // above, 0 inside; always 0 with fill all range. Outside the range the
    // over-range colour, in single-colour mode the single colour.
    int GetOpenGLColor(unsigned char& red, unsigned char& green, unsigned char& blue,
                       double value) const;
    // The same, but smooth whatever the banded switch says.
    int GetOpenGLColorByValue(unsigned char& red, unsigned char& green, unsigned char& blue,
                              double value) const;

    // GetOpenGLColor of count values at once: four bytes per value, red,
    // green, blue and alpha 255, ready for a vertex buffer, and, unless codes
    // is null, each value's code; CKesraColorMap::ColorsOf in ColorMap.h
    // tells how they match the single query. Nothing is written when values
    // or rgba is null.
    void GetOpenGLColors(const double* values, std::size_t count, unsigned char* rgba,
                         signed char* codes = nullptr) const;
    // The same for GetOpenGLColorByValue: smooth whatever the banded switch.
    void GetOpenGLColorsByValue(const double* values, std::size_t count, unsigned char* rgba,
                                signed char* codes = nullptr) const;

protected:
    // Places value on the palette between minimum and maximum (linearly, or
    // by natural logarithms of |value| when logarithmic is non-zero) and
    // writes red, green and blue of color; alpha is left as it was. Positions
    // are clamped to [0, 1]; a position that is not a number counts as 0.
    void SetOpenGlColor(Color& color, double value, double minimum, double maximum,
                        int logarithmic) const;
    // Smooth colour of value between the minimum and the colour-scale top.
    void GetOpenGLColorImpl(unsigned char& red, unsigned char& green, unsigned char& blue,
                            double value) const;
    // Colour of the lower edge of value's block; the maximum value lies in no
    // block and takes the colour at the top of the scale.
    void GetOpenGLBandedColorImpl(unsigned char& red, unsigned char& green, unsigned char& blue,
                                  double value) const;
    // Recomputes the layout units from window size, start position and
    // direction.
    void UpdateEqualPartValue();

    int m_created;
    int m_modified;
    int m_windowWidth;
    int m_windowHeight;
    int m_blockNum;
    int m_startX;
    int m_startY;
    std::string m_title;
    std::string m_unit;
    std::string m_note;
    Color m_color;
    int m_autoTextColor;
    int m_valueFormat1;
    int m_valueFormat2;
    double m_maxValue;
    double m_minValue;
    double m_currentUpperValue;
    double m_displayMax;
    double m_displayMin;
    double m_colorScaleTop;
    int m_inverse;
    int m_banded;
    int m_direction;
    int m_visibility;
    int m_fillAllRange;
    int m_valueRangeFlag1;
    int m_valueRangeFlag2;
    int m_useCurrentUpperValue;
    int m_showNode;
    float m_colorBlockLineWidth;
    // Five stops of red, green and blue, each from 0.0 to 1.0.
    double m_palette[5][3];
    float m_equalPartX;
    float m_equalPartY;
    unsigned char m_overRangeColor[3];
    int m_useSingleColor;
    unsigned char m_singleColor[3];

private:
    void MarkModified() { m_modified = 1; }
    // The switch rule shared by every 0-or-1 field.
    void SetSwitch(int& field, int value);
    void SetText(std::string& field, const std::string& text);
    void SetPalette(const double (&stops)[5][3]);
    // The mapping of the current settings; banded as asked, whatever the
    // switch says. It refers to m_palette, so it must not outlive this bar.
    // Inline and defined in ScalarBar.cpp, the one file that uses it, so that
    // each query builds it in place rather than calling through the shared
    // library's symbol table.
    inline CKesraColorMap ColorMapping(bool banded) const;

    // The batches' tables of this bar's settings, compared with the fields at
    // every batch: nothing else needs to know about them, and a copy builds
    // its own.
    mutable CKesraColorTables m_colorTables;
};

} // namespace KesraEngine
