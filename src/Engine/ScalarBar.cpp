#include "Engine/ScalarBar.h"

#include "Engine/ColorMap.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iterator>

namespace KesraEngine
{

namespace
{

// Ranges narrower than these are degenerate: the colour-scale top moves one
// unit above the maximum so that the range's values take stop 0. The
// three-value form of SetValueRange uses the smaller one.
constexpr double kDegenerateRange = 1e-16;
constexpr double kDegenerateRangeWithCurrent = 1e-20;

// Rows kept free at the bottom of the window for the labels of the layout
// of a non-zero direction.
constexpr int kLabelRows = 25;

// a - b in 32-bit two's complement, as the layout's pixel arithmetic is
// defined, without the undefined behaviour of a signed overflow.
int Difference32(int a, int b)
{
    return static_cast<int>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

double ColorScaleTop(double minimum, double maximum, double threshold)
{
    return std::fabs(maximum - minimum) <= threshold ? maximum + 1.0 : maximum;
}

bool DifferAsCStrings(const std::string& a, const std::string& b)
{
    return std::strcmp(a.c_str(), b.c_str()) != 0;
}

void CopyColor(const unsigned char (&color)[3], unsigned char& red, unsigned char& green,
               unsigned char& blue)
{
    red = color[0];
    green = color[1];
    blue = color[2];
}

// Digits a double needs at most to be told apart from its neighbours, and
// powers of ten that a double can divide by without overflowing to nothing.
constexpr int kMaxLabelDigits = 17;
constexpr int kMaxLabelScale = 308;

// value printed by a printf format that takes a precision, with no minus on
// a text whose digits before any exponent are all zero: "-0.00" would read
// as a sign error. "-" for a value that is not finite.
std::string PrintedLabel(const char* format, int precision, double value)
{
    if (!std::isfinite(value))
    {
        return "-";
    }
    // The longest fixed text, 309 digits and 17 decimals, fits.
    char buffer[400];
    std::snprintf(buffer, sizeof buffer, format, precision, value);
    std::string text = buffer;
    const std::string mantissa = text.substr(0, text.find_first_of("eE"));
    if (text[0] == '-' && mantissa.find_first_not_of("-0.") == std::string::npos)
    {
        text.erase(0, 1);
    }
    return text;
}

std::vector<std::string> PrintedLabels(const std::vector<double>& scaled, const char* format,
                                       int precision)
{
    std::vector<std::string> texts;
    texts.reserve(scaled.size());
    for (const double value : scaled)
    {
        texts.push_back(PrintedLabel(format, precision, value));
    }
    return texts;
}

// Whether every two neighbours of different values read differently.
bool TellsNeighboursApart(const std::vector<double>& scaled, const std::vector<std::string>& texts)
{
    for (std::size_t k = 1; k < scaled.size(); ++k)
    {
        if (scaled[k] != scaled[k - 1] && texts[k] == texts[k - 1])
        {
            return false;
        }
    }
    return true;
}

// The fewest significant digits that tell neighbours apart; 17 tell any two
// doubles apart, so the search ends there.
std::vector<std::string> AutomaticLabels(const std::vector<double>& scaled)
{
    for (int digits = 1;; ++digits)
    {
        std::vector<std::string> texts = PrintedLabels(scaled, "%.*g", digits);
        if (digits == kMaxLabelDigits || TellsNeighboursApart(scaled, texts))
        {
            return texts;
        }
    }
}

} // namespace

// ---- Construction -------------------------------------------------------------

CKesraScalarBar::CKesraScalarBar()
    : m_created(0),
      m_modified(0),
      m_windowWidth(0),
      m_windowHeight(0),
      m_blockNum(8),
      m_startX(0),
      m_startY(0),
      m_title(),
      m_unit(),
      m_note(),
      m_color(0, 0, 0, 255),
      m_autoTextColor(0),
      m_valueFormat1(3),
      m_valueFormat2(3),
      m_maxValue(1.0),
      m_minValue(0.0),
      m_currentUpperValue(1.0),
      m_displayMax(1.0),
      m_displayMin(0.0),
      m_colorScaleTop(1.0),
      m_inverse(0),
      m_banded(0),
      m_direction(0),
      m_visibility(1),
      m_fillAllRange(0),
      m_valueRangeFlag1(1),
      m_valueRangeFlag2(1),
      m_useCurrentUpperValue(0),
      m_showNode(1),
      m_colorBlockLineWidth(1.0f),
      m_palette{},
      m_equalPartX(0.0f),
      m_equalPartY(0.0f),
      m_overRangeColor{255, 255, 255},
      m_useSingleColor(0),
      m_singleColor{255, 96, 0},
      m_colorTables(),
      m_colorStops(),
      m_logScale(0),
      m_useNanColor(0),
      m_useBelowRangeColor(0),
      m_useAboveRangeColor(0),
      m_nanColor{128, 128, 128},
      m_belowRangeColor{0, 0, 0},
      m_aboveRangeColor{255, 255, 255},
      m_labelFormat(eLabelFormatDefault),
      m_labelDigits(3),
      m_labelScale(0)
{
    SetColorPaletteRedBlue();
}

CKesraScalarBar& CKesraScalarBar::operator=(const CKesraScalarBar& other)
{
    // The texts are copied first and swapped in: std::bad_alloc from the copy
    // leaves this object as it was, and nothing after it can fail.
    std::string title(other.m_title);
    std::string unit(other.m_unit);
    std::string note(other.m_note);
    m_created = other.m_created;
    m_modified = other.m_modified;
    m_windowWidth = other.m_windowWidth;
    m_windowHeight = other.m_windowHeight;
    m_blockNum = other.m_blockNum;
    m_startX = other.m_startX;
    m_startY = other.m_startY;
    m_title.swap(title);
    m_unit.swap(unit);
    m_note.swap(note);
    m_color = other.m_color;
    m_autoTextColor = other.m_autoTextColor;
    m_valueFormat1 = other.m_valueFormat1;
    m_valueFormat2 = other.m_valueFormat2;
    m_maxValue = other.m_maxValue;
    m_minValue = other.m_minValue;
    m_currentUpperValue = other.m_currentUpperValue;
    m_displayMax = other.m_displayMax;
    m_displayMin = other.m_displayMin;
    m_colorScaleTop = other.m_colorScaleTop;
    m_inverse = other.m_inverse;
    m_banded = other.m_banded;
    m_direction = other.m_direction;
    m_visibility = other.m_visibility;
    m_fillAllRange = other.m_fillAllRange;
    m_valueRangeFlag1 = other.m_valueRangeFlag1;
    m_valueRangeFlag2 = other.m_valueRangeFlag2;
    m_useCurrentUpperValue = other.m_useCurrentUpperValue;
    m_showNode = other.m_showNode;
    m_colorBlockLineWidth = other.m_colorBlockLineWidth;
    SetPalette(other.m_palette);
    m_equalPartX = other.m_equalPartX;
    m_equalPartY = other.m_equalPartY;
    std::copy(std::begin(other.m_overRangeColor), std::end(other.m_overRangeColor),
              std::begin(m_overRangeColor));
    m_useSingleColor = other.m_useSingleColor;
    std::copy(std::begin(other.m_singleColor), std::end(other.m_singleColor),
              std::begin(m_singleColor));
    m_colorStops = other.m_colorStops;
    m_logScale = other.m_logScale;
    m_useNanColor = other.m_useNanColor;
    m_useBelowRangeColor = other.m_useBelowRangeColor;
    m_useAboveRangeColor = other.m_useAboveRangeColor;
    std::copy(std::begin(other.m_nanColor), std::end(other.m_nanColor), std::begin(m_nanColor));
    std::copy(std::begin(other.m_belowRangeColor), std::end(other.m_belowRangeColor),
              std::begin(m_belowRangeColor));
    std::copy(std::begin(other.m_aboveRangeColor), std::end(other.m_aboveRangeColor),
              std::begin(m_aboveRangeColor));
    m_labelFormat = other.m_labelFormat;
    m_labelDigits = other.m_labelDigits;
    m_labelScale = other.m_labelScale;
    return *this;
}

// ---- Private helpers ------------------------------------------------------------

void CKesraScalarBar::SetSwitch(int& field, int value)
{
    if (value != field)
    {
        MarkModified();
        field = value != 0 ? 1 : 0;
    }
}

void CKesraScalarBar::SetText(std::string& field, const std::string& text)
{
    if (DifferAsCStrings(text, field))
    {
        field = text;
        MarkModified();
    }
}

void CKesraScalarBar::SetPalette(const double (&stops)[5][3])
{
    std::copy(&stops[0][0], &stops[0][0] + 15, &m_palette[0][0]);
    m_colorStops = ColorStops();
}

void CKesraScalarBar::SetOptionColor(unsigned char (&field)[3], unsigned char red,
                                     unsigned char green, unsigned char blue)
{
    const unsigned char color[3] = {red, green, blue};
    if (!std::equal(std::begin(color), std::end(color), std::begin(field)))
    {
        std::copy(std::begin(color), std::end(color), std::begin(field));
        MarkModified();
    }
}

// ---- Lifecycle ------------------------------------------------------------------

bool CKesraScalarBar::Create(int width, int height, int startX, int startY)
{
    if (width == 0 || height == 0)
    {
        return false;
    }
    if (m_created == 1)
    {
        Delete();
    }
    m_windowWidth = width;
    m_windowHeight = height;
    m_startX = startX;
    m_startY = startY;
    UpdateEqualPartValue();
    MarkModified();
    m_created = 1;
    return true;
}

bool CKesraScalarBar::Delete()
{
    if (m_created != 1)
    {
        return false;
    }
    m_created = 0;
    return true;
}

void CKesraScalarBar::SetTitle(const std::string& title, bool /*redraw*/)
{
    SetText(m_title, title);
}

void CKesraScalarBar::SetNote(const std::string& note)
{
    SetText(m_note, note);
}

// ---- Layout ---------------------------------------------------------------------

void CKesraScalarBar::SetWindowSize(int width, int height)
{
    if (width != m_windowWidth || height != m_windowHeight)
    {
        m_windowWidth = width;
        m_windowHeight = height;
        UpdateEqualPartValue();
        MarkModified();
    }
}

void CKesraScalarBar::GetWindowSize(int& width, int& height) const
{
    if (m_created == 1)
    {
        width = m_windowWidth;
        height = m_windowHeight;
    }
}

void CKesraScalarBar::SetStartPosition(int x, int y)
{
    if (x != m_startX || y != m_startY)
    {
        m_startX = x;
        m_startY = y;
        UpdateEqualPartValue();
        MarkModified();
    }
}

void CKesraScalarBar::GetStartPosition(int& x, int& y) const
{
    if (m_created == 1)
    {
        x = m_startX;
        y = m_startY;
    }
}

int CKesraScalarBar::GetLayoutBottom() const
{
    return m_direction == 0 ? m_startY : std::max(m_startY, kLabelRows);
}

void CKesraScalarBar::UpdateEqualPartValue()
{
    const float freeWidth = static_cast<float>(Difference32(m_windowWidth, m_startX));
    const float freeHeight = static_cast<float>(Difference32(m_windowHeight, GetLayoutBottom()));
    if (m_direction == 0)
    {
        m_equalPartX = freeWidth / 60.0f;
        m_equalPartY = freeHeight / 10.0f;
    }
    else
    {
        m_equalPartX = freeWidth * 0.0625f;
        m_equalPartY = freeHeight / 45.0f;
    }
}

void CKesraScalarBar::SetDirection(int direction)
{
    SetSwitch(m_direction, direction);
}

int CKesraScalarBar::GetDirection() const
{
    return m_created == 1 ? m_direction : -1;
}

// ---- Texts and appearance -------------------------------------------------------

void CKesraScalarBar::GetTitle(std::string& title) const
{
    if (m_created == 1)
    {
        title = m_title;
    }
}

void CKesraScalarBar::GetNote(std::string& note) const
{
    if (m_created == 1)
    {
        note = m_note;
    }
}

void CKesraScalarBar::SetUnit(const std::string& unit)
{
    SetText(m_unit, unit);
}

void CKesraScalarBar::GetUnit(std::string& unit) const
{
    if (m_created == 1)
    {
        unit = m_unit;
    }
}

void CKesraScalarBar::SetColor(const Color& color)
{
    if (color != m_color)
    {
        m_color = color;
        MarkModified();
    }
}

void CKesraScalarBar::GetColor(Color& color) const
{
    if (m_created == 1)
    {
        color = m_color;
    }
}

void CKesraScalarBar::SetAutoTextColor(int autoTextColor)
{
    SetSwitch(m_autoTextColor, autoTextColor);
}

int CKesraScalarBar::GetAutoTextColor() const
{
    return m_created == 1 ? m_autoTextColor : -1;
}

void CKesraScalarBar::SetValueFormat(int first, int second)
{
    if (first == m_valueFormat1 && second == m_valueFormat2)
    {
        return;
    }
    if (first >= 1 && second >= 1)
    {
        m_valueFormat1 = first;
        m_valueFormat2 = second;
        MarkModified();
    }
}

void CKesraScalarBar::GetValueFormat(int& first, int& second) const
{
    if (m_created == 1)
    {
        first = m_valueFormat1;
        second = m_valueFormat2;
    }
}

int CKesraScalarBar::GetExponentialBase(double a, double b, int digits)
{
    // fmax ignores an argument that is not a number.
    const double magnitude = std::fmax(std::fabs(a), std::fabs(b));
    int exponent = 0;
    // An infinite magnitude has no power of ten; a finite one above 1e-12 has
    // a logarithm in (-12, 309), which an int holds.
    if (magnitude > 1e-12 && std::isfinite(magnitude))
    {
        const double x = std::log10(magnitude);
        exponent = static_cast<int>(x < 0.0 ? std::floor(x) : std::ceil(x));
    }
    if (digits == 0)
    {
        return 0;
    }
    if (exponent >= digits)
    {
        // Wide enough for any digits; the result is at least 1.
        const long long base = static_cast<long long>(exponent) - digits + 1;
        return static_cast<int>(std::min<long long>(base, INT_MAX));
    }
    return exponent < 0 ? exponent : 0;
}

void CKesraScalarBar::SetVisibility(int visibility)
{
    SetSwitch(m_visibility, visibility);
}

int CKesraScalarBar::GetVisibility() const
{
    return m_created == 1 ? m_visibility : -1;
}

void CKesraScalarBar::SetShowNode(int showNode)
{
    SetSwitch(m_showNode, showNode);
}

int CKesraScalarBar::GetShowNode() const
{
    return m_created == 1 ? m_showNode : -1;
}

void CKesraScalarBar::SetColorBlockLineWidth(float width)
{
    if (width != m_colorBlockLineWidth && width > 0.0f)
    {
        m_colorBlockLineWidth = width;
    }
}

// ---- Value range ----------------------------------------------------------------

void CKesraScalarBar::SetValueRange(double minimum, double maximum, bool flag1, bool flag2)
{
    if (minimum > maximum)
    {
        return;
    }
    m_minValue = minimum;
    m_maxValue = maximum;
    m_colorScaleTop = ColorScaleTop(minimum, maximum, kDegenerateRange);
    m_useCurrentUpperValue = 0;
    MarkModified();
    m_valueRangeFlag1 = flag1 ? 1 : 0;
    m_valueRangeFlag2 = flag2 ? 1 : 0;
}

void CKesraScalarBar::SetValueRange(double minimum, double maximum, double current)
{
    if (minimum > maximum)
    {
        return;
    }
    if (minimum > current)
    {
        current = minimum;
    }
    if (current > maximum)
    {
        current = maximum;
    }
    m_minValue = minimum;
    m_maxValue = maximum;
    m_currentUpperValue = current;
    m_colorScaleTop = ColorScaleTop(minimum, maximum, kDegenerateRangeWithCurrent);
    m_valueRangeFlag1 = 1;
    m_valueRangeFlag2 = 1;
    m_useCurrentUpperValue = 1;
    MarkModified();
}

void CKesraScalarBar::GetValueRange(double& minimum, double& maximum) const
{
    if (m_created == 1)
    {
        minimum = m_minValue;
        maximum = m_maxValue;
    }
}

void CKesraScalarBar::GetValueRange(double& minimum, double& maximum, double& current) const
{
    if (m_created == 1)
    {
        minimum = m_minValue;
        maximum = m_maxValue;
        current = m_currentUpperValue;
    }
}

void CKesraScalarBar::SetDisplayRange(double minimum, double maximum)
{
    if (minimum > maximum)
    {
        return;
    }
    m_displayMin = minimum;
    m_displayMax = maximum;
    MarkModified();
}

void CKesraScalarBar::GetDisplayRange(double& minimum, double& maximum) const
{
    if (m_created == 1)
    {
        minimum = m_displayMin;
        maximum = m_displayMax;
    }
}

void CKesraScalarBar::GetCurrentValueRange(double& minimum, double& upper) const
{
    minimum = m_minValue;
    GetCurrentUpperValue(upper);
}

void CKesraScalarBar::GetCurrentUpperValue(double& upper) const
{
    upper = m_useCurrentUpperValue == 1 ? m_currentUpperValue : m_maxValue;
}

// ---- Mapping options ------------------------------------------------------------

void CKesraScalarBar::SetBlockNum(int number)
{
    if (number != m_blockNum && number >= 2 && number <= 30)
    {
        m_blockNum = number;
        MarkModified();
    }
}

int CKesraScalarBar::GetBlockNum() const
{
    return m_created == 1 ? m_blockNum : 0;
}

void CKesraScalarBar::SetInverse(int inverse)
{
    SetSwitch(m_inverse, inverse);
}

int CKesraScalarBar::GetInverse() const
{
    return m_created == 1 ? m_inverse : -1;
}

void CKesraScalarBar::SetBanded(int banded)
{
    SetSwitch(m_banded, banded);
}

int CKesraScalarBar::GetBanded() const
{
    return m_created == 1 ? m_banded : -1;
}

void CKesraScalarBar::SetFillAllRange(int fillAllRange)
{
    SetSwitch(m_fillAllRange, fillAllRange);
}

int CKesraScalarBar::GetFillAllRange() const
{
    return m_created == 1 ? m_fillAllRange : -1;
}

void CKesraScalarBar::SetUseSignleColor(int useSingleColor)
{
    SetSwitch(m_useSingleColor, useSingleColor);
}

int CKesraScalarBar::GetUseSignleColor() const
{
    return m_created == 1 ? m_useSingleColor : -1;
}

void CKesraScalarBar::SetOverRangeColor(unsigned char red, unsigned char green,
                                        unsigned char blue)
{
    m_overRangeColor[0] = red;
    m_overRangeColor[1] = green;
    m_overRangeColor[2] = blue;
}

void CKesraScalarBar::GetOverRangeColor(unsigned char& red, unsigned char& green,
                                        unsigned char& blue) const
{
    CopyColor(m_overRangeColor, red, green, blue);
}

void CKesraScalarBar::SetSingleColor(unsigned char red, unsigned char green, unsigned char blue)
{
    m_singleColor[0] = red;
    m_singleColor[1] = green;
    m_singleColor[2] = blue;
}

void CKesraScalarBar::GetSingleColor(unsigned char& red, unsigned char& green,
                                     unsigned char& blue) const
{
    CopyColor(m_singleColor, red, green, blue);
}

void CKesraScalarBar::SetColorPaletteRedBlue()
{
    SetPalette(kColorPaletteRedBlue);
}

void CKesraScalarBar::SetColorPaletteBlueRed()
{
    SetPalette(kColorPaletteBlueRed);
}

void CKesraScalarBar::SetColorPaletteGrayScale()
{
    SetPalette(kColorPaletteGrayScale);
}

void CKesraScalarBar::SetColorPaletteGreenRed()
{
    SetPalette(kColorPaletteGreenRed);
}

void CKesraScalarBar::SetColorPaletteViridis()
{
    m_colorStops = ColorStopsViridis();
}

void CKesraScalarBar::SetColorPaletteCividis()
{
    m_colorStops = ColorStopsCividis();
}

void CKesraScalarBar::SetColorPaletteCoolWarm()
{
    m_colorStops = ColorStopsCoolWarm();
}

void CKesraScalarBar::SetColorPaletteTurbo()
{
    m_colorStops = ColorStopsTurbo();
}

void CKesraScalarBar::SetLogScale(int logScale)
{
    SetSwitch(m_logScale, logScale);
}

int CKesraScalarBar::GetLogScale() const
{
    return m_created == 1 ? m_logScale : -1;
}

std::vector<double> CKesraScalarBar::GetLogDecades() const
{
    return ColorDecades(m_minValue, m_colorScaleTop);
}

double CKesraScalarBar::GetScalePosition(double value) const
{
    return ColorMapping(false).ScalePosition(value);
}

void CKesraScalarBar::SetUseNanColor(int useNanColor)
{
    SetSwitch(m_useNanColor, useNanColor);
}

int CKesraScalarBar::GetUseNanColor() const
{
    return m_created == 1 ? m_useNanColor : -1;
}

void CKesraScalarBar::SetUseBelowRangeColor(int useBelowRangeColor)
{
    SetSwitch(m_useBelowRangeColor, useBelowRangeColor);
}

int CKesraScalarBar::GetUseBelowRangeColor() const
{
    return m_created == 1 ? m_useBelowRangeColor : -1;
}

void CKesraScalarBar::SetUseAboveRangeColor(int useAboveRangeColor)
{
    SetSwitch(m_useAboveRangeColor, useAboveRangeColor);
}

int CKesraScalarBar::GetUseAboveRangeColor() const
{
    return m_created == 1 ? m_useAboveRangeColor : -1;
}

void CKesraScalarBar::SetNanColor(unsigned char red, unsigned char green, unsigned char blue)
{
    SetOptionColor(m_nanColor, red, green, blue);
}

void CKesraScalarBar::GetNanColor(unsigned char& red, unsigned char& green,
                                  unsigned char& blue) const
{
    CopyColor(m_nanColor, red, green, blue);
}

void CKesraScalarBar::SetBelowRangeColor(unsigned char red, unsigned char green,
                                         unsigned char blue)
{
    SetOptionColor(m_belowRangeColor, red, green, blue);
}

void CKesraScalarBar::GetBelowRangeColor(unsigned char& red, unsigned char& green,
                                         unsigned char& blue) const
{
    CopyColor(m_belowRangeColor, red, green, blue);
}

void CKesraScalarBar::SetAboveRangeColor(unsigned char red, unsigned char green,
                                         unsigned char blue)
{
    SetOptionColor(m_aboveRangeColor, red, green, blue);
}

void CKesraScalarBar::GetAboveRangeColor(unsigned char& red, unsigned char& green,
                                         unsigned char& blue) const
{
    CopyColor(m_aboveRangeColor, red, green, blue);
}

// ---- Label texts ----------------------------------------------------------------

void CKesraScalarBar::SetLabelFormat(eScalarBarLabelFormat format, int digits)
{
    const bool known = format >= eLabelFormatDefault && format <= eLabelFormatAutomatic;
    if (!known || digits < 0 || digits > kMaxLabelDigits)
    {
        return;
    }
    if (format != m_labelFormat || digits != m_labelDigits)
    {
        m_labelFormat = format;
        m_labelDigits = digits;
        MarkModified();
    }
}

void CKesraScalarBar::GetLabelFormat(eScalarBarLabelFormat& format, int& digits) const
{
    format = m_labelFormat;
    digits = m_labelDigits;
}

void CKesraScalarBar::SetLabelScale(int exponent)
{
    if (exponent != m_labelScale && exponent >= -kMaxLabelScale && exponent <= kMaxLabelScale)
    {
        m_labelScale = exponent;
        MarkModified();
    }
}

bool CKesraScalarBar::UsesLabelOptions() const
{
    return m_labelFormat != eLabelFormatDefault || m_labelScale != 0;
}

std::vector<std::string> CKesraScalarBar::GetLabelTexts(const std::vector<double>& values) const
{
    if (m_labelFormat == eLabelFormatDefault)
    {
        return FormatLabels(values, eLabelFormatFixed, std::min(m_valueFormat2, kMaxLabelDigits),
                            m_labelScale);
    }
    return FormatLabels(values, m_labelFormat, m_labelDigits, m_labelScale);
}

std::string CKesraScalarBar::GetScaledTitle() const
{
    if (m_labelScale == 0)
    {
        return m_title;
    }
    const std::string factor = "(x10^" + std::to_string(m_labelScale) + ")";
    return m_title.empty() ? factor : m_title + " " + factor;
}

std::vector<std::string> CKesraScalarBar::FormatLabels(const std::vector<double>& values,
                                                       eScalarBarLabelFormat format, int digits,
                                                       int scaleExponent)
{
    const double divisor = std::pow(10.0, scaleExponent);
    std::vector<double> scaled;
    scaled.reserve(values.size());
    for (const double value : values)
    {
        scaled.push_back(value / divisor);
    }
    const int precision = std::clamp(digits, 0, kMaxLabelDigits);
    switch (format)
    {
    case eLabelFormatScientific:
        return PrintedLabels(scaled, "%.*e", precision);
    case eLabelFormatAutomatic:
        return AutomaticLabels(scaled);
    default:
        return PrintedLabels(scaled, "%.*f", precision);
    }
}

// ---- Colour mapping ------------------------------------------------------------

CKesraColorMap CKesraScalarBar::ColorMapping(bool banded) const
{
    CKesraColorMap map;
    map.palette = &m_palette;
    map.minimum = m_minValue;
    map.maximum = m_maxValue;
    map.scaleTop = m_colorScaleTop;
    map.blocks = m_blockNum;
    // A derived class may store any number in a switch; only 1 switches on.
    map.inverse = m_inverse == 1;
    map.banded = banded;
    map.fillAllRange = m_fillAllRange == 1;
    map.useSingleColor = m_useSingleColor == 1;
    for (int c = 0; c < 3; ++c)
    {
        map.singleColor[c] = m_singleColor[c];
        map.overRangeColor[c] = m_overRangeColor[c];
    }
    // The options on top only while one is in use: the map is built for every
    // query, and the default's own values serve while all are off.
    if (m_colorStops.rgb == nullptr && (m_logScale | m_useNanColor | m_useBelowRangeColor |
                                        m_useAboveRangeColor) == 0)
    {
        return map;
    }
    map.stops = m_colorStops;
    map.logScale = m_logScale == 1;
    map.useNanColor = m_useNanColor == 1;
    map.useBelowColor = m_useBelowRangeColor == 1;
    map.useAboveColor = m_useAboveRangeColor == 1;
    for (int c = 0; c < 3; ++c)
    {
        map.nanColor[c] = m_nanColor[c];
        map.belowColor[c] = m_belowRangeColor[c];
        map.aboveColor[c] = m_aboveRangeColor[c];
    }
    return map;
}

void CKesraScalarBar::SetOpenGlColor(Color& color, double value, double minimum, double maximum,
                                     int logarithmic) const
{
    ColorMapping(false).PaletteColor(color.red, color.green, color.blue, value, minimum, maximum,
                                     logarithmic);
}

void CKesraScalarBar::GetOpenGLColorImpl(unsigned char& red, unsigned char& green,
                                         unsigned char& blue, double value) const
{
    ColorMapping(false).SmoothColor(red, green, blue, value);
}

void CKesraScalarBar::GetOpenGLBandedColorImpl(unsigned char& red, unsigned char& green,
                                               unsigned char& blue, double value) const
{
    ColorMapping(true).BandedColor(red, green, blue, value);
}

int CKesraScalarBar::GetOpenGLColor(unsigned char& red, unsigned char& green,
                                    unsigned char& blue, double value) const
{
    return ColorMapping(m_banded == 1).ColorOf(red, green, blue, value);
}

int CKesraScalarBar::GetOpenGLColorByValue(unsigned char& red, unsigned char& green,
                                           unsigned char& blue, double value) const
{
    return ColorMapping(false).ColorOf(red, green, blue, value);
}

void CKesraScalarBar::GetOpenGLColors(const double* values, std::size_t count,
                                      unsigned char* rgba, signed char* codes) const
{
    ColorMapping(m_banded == 1).ColorsOf(values, count, rgba, codes, m_colorTables);
}

void CKesraScalarBar::GetOpenGLColorsByValue(const double* values, std::size_t count,
                                             unsigned char* rgba, signed char* codes) const
{
    ColorMapping(false).ColorsOf(values, count, rgba, codes, m_colorTables);
}

} // namespace KesraEngine
