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
// Options on top of the first mapping, each off by default and then changing
// no colour, code or text (ColorMap.h gives the rules and the codes):
// - Many-stop palettes: viridis, cividis, cool to warm and turbo, published
//   tables interpolated linearly. While one is set the five stops rest; any
//   of the four five-stop setters brings them back.
// - The log scale: positions by the logarithm between the minimum (or, when
//   it is not positive, four decades below the top) and the colour-scale top,
//   labels at decades (ColorDecades); NaN and values <= 0 take the NaN colour
//   with codes 2 and -2, never the minimum's colour.
// - The NaN colour, and below- and above-range colours that replace the
//   over-range colour on their side. Their colours mark the bar modified,
//   since the backend draws each as a swatch beside the bar while in use.
// - Label texts (FormatLabels): fixed, scientific or automatic significant
//   digits, and a power of ten the host divides the labels by, shown after
//   the title as "(x10^3)". While neither is set (UsesLabelOptions false)
//   the backend writes its labels as it always did, byte for byte.
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
#include <vector>

namespace KesraEngine
{

// How FormatLabels writes a label (digits is its second argument):
// - Default: the backend's own labels; FormatLabels writes them as Fixed.
// - Fixed: digits decimals after the point ("%.*f").
// - Scientific: one digit, the point, digits decimals and the exponent
//   ("%.*e"): 1.50e+03.
// - Automatic: the fewest significant digits, 1 to 17, at which no two
//   neighbouring labels of different values read alike ("%.*g"); digits is
//   not used.
// Its type is fixed to int so that any int a host casts to it is a value of
// it, which the setter then refuses, rather than undefined behaviour.
enum eScalarBarLabelFormat : int
{
    eLabelFormatDefault = 0,
    eLabelFormatFixed = 1,
    eLabelFormatScientific = 2,
    eLabelFormatAutomatic = 3
};

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
    // Load one of the many-stop palettes (ColorMap.h: ColorStopsViridis and
    // the others); do not mark modified, as the four above. The five stops
    // are kept, unused, until one of the four above is loaded.
    void SetColorPaletteViridis();
    void SetColorPaletteCividis();
    void SetColorPaletteCoolWarm();
    void SetColorPaletteTurbo();

    // Switch: the log scale. -1 from the getter when not created.
    void SetLogScale(int logScale);
    int GetLogScale() const;
    // The decades that the log scale's labels stand at, from the minimum to
    // the colour-scale top (ColorDecades); and the position of any value on
    // the bar, 0 at the minimum and 1 at the colour-scale top, linear or log
    // as set, before inverse and clamping.
    std::vector<double> GetLogDecades() const;
    double GetScalePosition(double value) const;

    // Switches: NaN, below-range and above-range values take their own
    // colour. -1 from the getters when not created.
    void SetUseNanColor(int useNanColor);
    int GetUseNanColor() const;
    void SetUseBelowRangeColor(int useBelowRangeColor);
    int GetUseBelowRangeColor() const;
    void SetUseAboveRangeColor(int useAboveRangeColor);
    int GetUseAboveRangeColor() const;
    // The three colours (128, 128, 128; 0, 0, 0; 255, 255, 255 by default):
    // mark modified when they change; the getters answer always.
    void SetNanColor(unsigned char red, unsigned char green, unsigned char blue);
    void GetNanColor(unsigned char& red, unsigned char& green, unsigned char& blue) const;
    void SetBelowRangeColor(unsigned char red, unsigned char green, unsigned char blue);
    void GetBelowRangeColor(unsigned char& red, unsigned char& green, unsigned char& blue) const;
    void SetAboveRangeColor(unsigned char red, unsigned char green, unsigned char blue);
    void GetAboveRangeColor(unsigned char& red, unsigned char& green, unsigned char& blue) const;

    // ---- Label texts ------------------------------------------------------------

    // Refused (no change) unless format is one of eScalarBarLabelFormat and
    // 0 <= digits <= 17; marks modified when either changes. Default, 3.
    void SetLabelFormat(eScalarBarLabelFormat format, int digits);
    // Answers always.
    void GetLabelFormat(eScalarBarLabelFormat& format, int& digits) const;
    // Labels show value / 10^exponent; refused unless |exponent| <= 308;
    // marks modified when it changes. Answers always; 0 by default.
    void SetLabelScale(int exponent);
    int GetLabelScale() const { return m_labelScale; }
    // True while a label format other than Default or a label scale other
    // than 0 is set: the backend then writes its labels with GetLabelTexts
    // and its title with GetScaledTitle instead of its own.
    bool UsesLabelOptions() const;
    // The labels of values, in order, by FormatLabels with the bar's format
    // and scale; with the Default format, Fixed with the second value-format
    // number as digits.
    std::vector<std::string> GetLabelTexts(const std::vector<double>& values) const;
    // The title, followed by "(x10^e)" (after a space, unless the title is
    // empty) while the label scale e is not 0. Answers always.
    std::string GetScaledTitle() const;
    // The texts of values / 10^scaleExponent in format with digits (see
    // eScalarBarLabelFormat); "-" for a label that is not finite, and no
    // minus on a label that reads as zero ("-0.00" would read as a sign
    // error).
    static std::vector<std::string> FormatLabels(const std::vector<double>& values,
                                                 eScalarBarLabelFormat format, int digits,
                                                 int scaleExponent);

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

protected:
    // The options added on top of the first mapping, after every field
    // before them so that those keep their places.
    // The many-stop palette in use; none (count 0) while the five stops are.
    ColorStops m_colorStops;
    int m_logScale;
    int m_useNanColor;
    int m_useBelowRangeColor;
    int m_useAboveRangeColor;
    unsigned char m_nanColor[3];
    unsigned char m_belowRangeColor[3];
    unsigned char m_aboveRangeColor[3];
    eScalarBarLabelFormat m_labelFormat;
    int m_labelDigits;
    int m_labelScale;

private:
    void SetOptionColor(unsigned char (&field)[3], unsigned char red, unsigned char green,
                        unsigned char blue);
};

} // namespace KesraEngine
