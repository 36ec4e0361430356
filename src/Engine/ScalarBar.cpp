#include "Engine/ScalarBar.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iterator>

namespace KesraEngine
{

namespace
{

using Palette = double[5][3];

constexpr Palette kRedBlue = {
    {1.0, 0.0, 0.0}, {1.0, 1.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 1.0, 1.0}, {0.0, 0.0, 1.0}};
constexpr Palette kBlueRed = {
    {0.0, 0.0, 1.0}, {0.0, 1.0, 1.0}, {0.0, 1.0, 0.0}, {1.0, 1.0, 0.0}, {1.0, 0.0, 0.0}};
constexpr Palette kGrayScale = {
    {0.0, 0.0, 0.0}, {0.25, 0.25, 0.25}, {0.5, 0.5, 0.5}, {0.75, 0.75, 0.75}, {1.0, 1.0, 1.0}};
constexpr Palette kGreenRed = {
    {1.0, 0.0, 0.0}, {0.945, 0.47, 0.0}, {0.882, 0.898, 0.0}, {0.58, 0.933, 0.0}, {0.0, 1.0, 0.0}};

// Ranges narrower than these are degenerate: the colour-scale top moves one
// unit above the maximum so that the range's values take stop 0. The
// three-value form of SetValueRange uses the smaller one.
constexpr double kDegenerateRange = 1e-16;
constexpr double kDegenerateRangeWithCurrent = 1e-20;

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

// Position of value between minimum and maximum, before inversion and
// clamping; any double, NaN and infinities included.
double LinearPosition(double value, double minimum, double maximum)
{
    return (value - minimum) / (maximum - minimum);
}

double PalettePosition(double value, double minimum, double maximum, int logarithmic)
{
    if (logarithmic == 0)
    {
        return LinearPosition(value, minimum, maximum);
    }
    // Logarithms need positive bounds: a top that is not positive becomes 1,
    // a bottom that is not positive four decades below the top.
    const double top = maximum > 0.0 ? maximum : 1.0;
    const double bottom = minimum > 0.0 ? minimum : top * 0.0001;
    return (std::log(std::fabs(value)) - std::log(bottom)) / (std::log(top) - std::log(bottom));
}

// Clamps to [0, 1]. A position that is not a number (a value that is not a
// number, or a range with no width) counts as 0, so that the palette index
// stays within the five stops.
double ClampedPosition(double p)
{
    // Written as selects between comparisons that are always made, so that
    // a batch's loop needs no branch: p >= 0 is false exactly for the
    // negative positions and NaN; -0.0 stays -0.0.
    const bool above = p > 1.0;
    const bool nonNegative = p >= 0.0;
    return above ? 1.0 : (nonNegative ? p : 0.0);
}

// channel is in [0, 1] (a convex mix of stops in [0, 1]), so the truncated
// product lies in [0, 255].
unsigned char ChannelByte(double channel)
{
    return static_cast<unsigned char>(static_cast<float>(channel) * 255.0f);
}

// Where a clamped position lies on the palette: segment i from 0 to 4 and
// the fraction f along it.
void Locate(double clamped, int& i, double& f)
{
    const double x = clamped * 4.0;
    i = static_cast<int>(x);
    f = x - i;
}

// The stops at both ends of segment i. At the top of the scale (i = 4) there
// is no segment; both ends are then stop 4, so that every index stays within
// the five stops.
void SegmentEnds(const double (&palette)[5][3], int i, double* low, double* high)
{
    const int next = i < 4 ? i + 1 : 4;
    for (int c = 0; c < 3; ++c)
    {
        low[c] = palette[i][c];
        high[c] = palette[next][c];
    }
}

// One channel at fraction f between the ends of a segment, in double.
double Mix(double f, double low, double high)
{
    return (1.0 - f) * low + f * high;
}

// The channel at fraction f of segment i. At the top of the scale it is
// stop 4 itself, not a mix.
double MixedChannel(int i, double f, double low, double high)
{
    return i == 4 ? low : Mix(f, low, high);
}

// The helpers below make every comparison unconditionally and then select,
// so that the batch loops built from them need no branch (a comparison made
// only on one path could not be moved ahead of the choice).

// -1 below [minimum, maximum], 1 above, 0 inside; NaN lies inside.
int SideOfRange(double value, double minimum, double maximum)
{
    const bool below = minimum > value;
    const bool above = value > maximum;
    return below ? -1 : (above ? 1 : 0);
}

// value raised to minimum, then lowered to maximum; NaN stays NaN.
double ClampedValue(double value, double minimum, double maximum)
{
    const double raised = minimum > value ? minimum : value;
    return raised > maximum ? maximum : raised;
}

constexpr int kMaxBlocks = 30;

// Values a batch query takes at a time: its work arrays stay on the stack
// and in the first-level cache.
constexpr std::size_t kBatchBlock = 256;

// Adds 1 to counts[v] for every value at or above edge.
void CountAtOrAbove(double edge, const double* values, std::size_t n, double* counts)
{
    for (std::size_t v = 0; v < n; ++v)
    {
        counts[v] += edge <= values[v] ? 1.0 : 0.0;
    }
}

// The lower block edges of the banded colour, edge[0] = minimum up to
// edge[n], accumulated step by step exactly as the single query walks them,
// the last one the maximum itself. Sized for the largest block number.
struct BlockEdges
{
    BlockEdges(double minimum, double maximum, int n) : count(n)
    {
        const double step = (maximum - minimum) / n;
        double upper = minimum + step;
        edge[0] = minimum;
        for (int k = 1; k <= n; ++k)
        {
            edge[k] = upper;
            upper = k == n - 1 ? maximum : upper + step;
        }
        for (int k = 0; k < n; ++k)
        {
            // Not a number, or an edge below the one before (edges of an
            // infinite range): only the literal walk finds the block.
            sorted = sorted && edge[k] <= edge[k + 1];
        }
    }

    // The index of the lower edge of value's block; n for a value in no
    // block (the maximum, outside the range, not a number).
    int LowerIndex(double value) const
    {
        for (int k = 1; k <= count; ++k)
        {
            if (edge[k] > value && value >= edge[k - 1])
            {
                return k - 1;
            }
        }
        return count;
    }

    // LowerIndex of n values at once.
    void LowerIndices(const double* values, std::size_t n, int* index) const
    {
        if (!sorted)
        {
            std::transform(values, values + n, index,
                           [this](double value) { return LowerIndex(value); });
            return;
        }
        // With rising edges the first block whose upper edge lies above a
        // value is found by counting the edges at or below it: edge by edge
        // over all values, and in doubles, as wide as the values, so that
        // the count runs on vectors.
        double below[kBatchBlock];
        const double none = count;
        const double minimum = edge[0];
        for (std::size_t v = 0; v < n; ++v)
        {
            below[v] = values[v] >= minimum ? 0.0 : none;
        }
        // A value below the minimum or not a number lies at or above no
        // rising edge: its count stays n.
        for (int k = 1; k <= count; ++k)
        {
            CountAtOrAbove(edge[k], values, n, below);
        }
        for (std::size_t v = 0; v < n; ++v)
        {
            index[v] = static_cast<int>(below[v]);
        }
    }

    int count;
    bool sorted = true;
    double edge[kMaxBlocks + 1] = {};
};

// Where byte b (0 red, 1 green, 2 blue, 3 alpha) of a colour lands in the
// 32 bits that PackedColor makes of it, whatever the byte order.
int ByteShift(int b)
{
    unsigned char bytes[4] = {0, 0, 0, 0};
    bytes[b] = 1;
    std::uint32_t packed = 0;
    std::memcpy(&packed, bytes, sizeof packed);
    int shift = 0;
    while ((packed >> shift) != 1)
    {
        shift += 8;
    }
    return shift;
}

// Red, green, blue and alpha 255 as four bytes in that order, held as one
// 32-bit value to be copied out whole.
std::uint32_t PackedColor(const unsigned char* rgb)
{
    const unsigned char rgba[4] = {rgb[0], rgb[1], rgb[2], 255};
    std::uint32_t packed = 0;
    std::memcpy(&packed, rgba, sizeof packed);
    return packed;
}

bool DifferAsCStrings(const std::string& a, const std::string& b)
{
    return std::strcmp(a.c_str(), b.c_str()) != 0;
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
      m_singleColor{255, 96, 0}
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

void CKesraScalarBar::UpdateEqualPartValue()
{
    const float freeWidth = static_cast<float>(Difference32(m_windowWidth, m_startX));
    if (m_direction == 0)
    {
        const float freeHeight = static_cast<float>(Difference32(m_windowHeight, m_startY));
        m_equalPartX = freeWidth / 60.0f;
        m_equalPartY = freeHeight / 10.0f;
    }
    else
    {
        // The other layout keeps 25 pixels at the bottom for its labels.
        const float freeHeight =
            static_cast<float>(Difference32(m_windowHeight, std::max(m_startY, 25)));
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
    red = m_overRangeColor[0];
    green = m_overRangeColor[1];
    blue = m_overRangeColor[2];
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
    red = m_singleColor[0];
    green = m_singleColor[1];
    blue = m_singleColor[2];
}

void CKesraScalarBar::SetColorPaletteRedBlue()
{
    SetPalette(kRedBlue);
}

void CKesraScalarBar::SetColorPaletteBlueRed()
{
    SetPalette(kBlueRed);
}

void CKesraScalarBar::SetColorPaletteGrayScale()
{
    SetPalette(kGrayScale);
}

void CKesraScalarBar::SetColorPaletteGreenRed()
{
    SetPalette(kGreenRed);
}

// ---- Colour mapping -------------------------------------------------------------

void CKesraScalarBar::SetOpenGlColor(Color& color, double value, double minimum, double maximum,
                                     int logarithmic) const
{
    double p = PalettePosition(value, minimum, maximum, logarithmic);
    if (m_inverse == 1)
    {
        p = 1.0 - p;
    }
    int i = 0;
    double f = 0.0;
    Locate(ClampedPosition(p), i, f);
    double low[3];
    double high[3];
    SegmentEnds(m_palette, i, low, high);
    color.red = ChannelByte(MixedChannel(i, f, low[0], high[0]));
    color.green = ChannelByte(MixedChannel(i, f, low[1], high[1]));
    color.blue = ChannelByte(MixedChannel(i, f, low[2], high[2]));
}

double CKesraScalarBar::FilledValue(double value) const
{
    return m_fillAllRange == 1 ? ClampedValue(value, m_minValue, m_maxValue) : value;
}

void CKesraScalarBar::GetOpenGLColorImpl(unsigned char& red, unsigned char& green,
                                         unsigned char& blue, double value) const
{
    Color color(0, 0, 0, 0);
    SetOpenGlColor(color, FilledValue(value), m_minValue, m_colorScaleTop, 0);
    red = color.red;
    green = color.green;
    blue = color.blue;
}

void CKesraScalarBar::GetOpenGLBandedColorImpl(unsigned char& red, unsigned char& green,
                                               unsigned char& blue, double value) const
{
    value = FilledValue(value);
    const int n = m_blockNum;
    const double step = (m_maxValue - m_minValue) / n;

    // Edges are accumulated, as the legend's own block boundaries are; only
    // the last block's upper edge is the maximum itself. A value that lies in
    // no block (the maximum, or one outside the range or not a number) ends
    // with lower at the maximum.
    double lower = m_minValue;
    double upper = m_minValue + step;
    for (int k = 1; k <= n; ++k)
    {
        if (upper > value && value >= lower)
        {
            break;
        }
        lower = upper;
        upper = k == n - 1 ? m_maxValue : upper + step;
    }

    Color color(0, 0, 0, 0);
    SetOpenGlColor(color, lower, m_minValue, m_colorScaleTop, 0);
    red = color.red;
    green = color.green;
    blue = color.blue;
}

int CKesraScalarBar::RangeSide(double value) const
{
    return SideOfRange(value, m_minValue, m_maxValue);
}

int CKesraScalarBar::ColorOf(unsigned char& red, unsigned char& green, unsigned char& blue,
                             double value, bool banded) const
{
    const int side = RangeSide(value);
    if (m_useSingleColor == 1)
    {
        GetSingleColor(red, green, blue);
        return m_fillAllRange == 1 ? 0 : side;
    }
    if (m_fillAllRange != 1 && side != 0)
    {
        GetOverRangeColor(red, green, blue);
        return side;
    }
    if (banded)
    {
        GetOpenGLBandedColorImpl(red, green, blue, value);
    }
    else
    {
        GetOpenGLColorImpl(red, green, blue, value);
    }
    return 0;
}

int CKesraScalarBar::GetOpenGLColor(unsigned char& red, unsigned char& green,
                                    unsigned char& blue, double value) const
{
    return ColorOf(red, green, blue, value, m_banded == 1);
}

int CKesraScalarBar::GetOpenGLColorByValue(unsigned char& red, unsigned char& green,
                                           unsigned char& blue, double value) const
{
    return ColorOf(red, green, blue, value, false);
}

// ---- Batch colour queries -------------------------------------------------------

void CKesraScalarBar::GetOpenGLColors(const double* values, std::size_t count,
                                      unsigned char* rgba, signed char* codes) const
{
    ColorsOf(values, count, rgba, codes, m_banded == 1);
}

void CKesraScalarBar::GetOpenGLColorsByValue(const double* values, std::size_t count,
                                             unsigned char* rgba, signed char* codes) const
{
    ColorsOf(values, count, rgba, codes, false);
}

// The smooth colours of n filled values, in steps over the whole block:
// position, segment, the segment's stops (looked up one value at a time),
// and the channels. Only the lookup is not run on vectors.
void CKesraScalarBar::SmoothBlock(const double* filled, std::size_t n, bool inverse, int* index,
                                  std::uint32_t* mapped) const
{
    double fraction[kBatchBlock];
    for (std::size_t k = 0; k < n; ++k)
    {
        const double p = LinearPosition(filled[k], m_minValue, m_colorScaleTop);
        const double inverted = 1.0 - p;
        fraction[k] = ClampedPosition(inverse ? inverted : p);
    }
    for (std::size_t k = 0; k < n; ++k)
    {
        Locate(fraction[k], index[k], fraction[k]);
    }
    // The ends of the five segments, low red, green, blue then high.
    double segments[5][6];
    for (int i = 0; i < 5; ++i)
    {
        SegmentEnds(m_palette, i, segments[i], segments[i] + 3);
    }
    double low[3][kBatchBlock];
    double high[3][kBatchBlock];
    for (std::size_t k = 0; k < n; ++k)
    {
        const double* const ends = segments[index[k]];
        for (int c = 0; c < 3; ++c)
        {
            low[c][k] = ends[c];
            high[c][k] = ends[3 + c];
        }
    }
    // Channel bytes held in 32 bits, as wide as the packed colour, so that
    // packing runs on vectors too.
    std::uint32_t channel[3][kBatchBlock];
    for (int c = 0; c < 3; ++c)
    {
        for (std::size_t k = 0; k < n; ++k)
        {
            channel[c][k] = ChannelByte(Mix(fraction[k], low[c][k], high[c][k]));
        }
    }
    // At the top of the scale the colour is stop 4 itself: chosen on the
    // bytes, after the mix that has no segment there.
    const unsigned char topBytes[3] = {ChannelByte(m_palette[4][0]), ChannelByte(m_palette[4][1]),
                                       ChannelByte(m_palette[4][2])};
    const std::uint32_t top = PackedColor(topBytes);
    const int red = ByteShift(0);
    const int green = ByteShift(1);
    const int blue = ByteShift(2);
    const std::uint32_t alpha = std::uint32_t{255} << ByteShift(3);
    for (std::size_t k = 0; k < n; ++k)
    {
        const std::uint32_t mixed =
            channel[0][k] << red | channel[1][k] << green | channel[2][k] << blue | alpha;
        mapped[k] = index[k] == 4 ? top : mixed;
    }
}

void CKesraScalarBar::ColorsOf(const double* values, std::size_t count, unsigned char* rgba,
                               signed char* codes, bool banded) const
{
    if (values == nullptr || rgba == nullptr)
    {
        return;
    }
    const double minimum = m_minValue;
    const double maximum = m_maxValue;
    const double top = m_colorScaleTop;
    const bool fill = m_fillAllRange == 1;
    const bool single = m_useSingleColor == 1;
    const bool inverse = m_inverse == 1;
    const std::uint32_t fixedColor = PackedColor(single ? m_singleColor : m_overRangeColor);

    // The banded colour takes only the colours of the n + 1 block edges.
    const bool tabled = banded && m_blockNum >= 1 && m_blockNum <= kMaxBlocks;
    const BlockEdges edges(minimum, maximum, tabled ? m_blockNum : 1);
    std::uint32_t edgeColor[kMaxBlocks + 1] = {};
    for (int k = 0; tabled && k <= edges.count; ++k)
    {
        Color color(0, 0, 0, 0);
        SetOpenGlColor(color, edges.edge[k], minimum, top, 0);
        edgeColor[k] = PackedColor(&color.red);
    }

    // Values go through in blocks, each step over a whole block at a time,
    // so that the compiler can run the arithmetic steps on vectors.
    constexpr std::size_t kBlock = kBatchBlock;
    double filled[kBlock];
    int index[kBlock];
    std::uint32_t mapped[kBlock];
    for (std::size_t start = 0; start < count; start += kBlock)
    {
        const std::size_t n = std::min(kBlock, count - start);
        const double* const block = values + start;
        for (std::size_t k = 0; k < n; ++k)
        {
            const double clamped = ClampedValue(block[k], minimum, maximum);
            filled[k] = fill ? clamped : block[k];
        }
        if (tabled)
        {
            edges.LowerIndices(filled, n, index);
            for (std::size_t k = 0; k < n; ++k)
            {
                mapped[k] = edgeColor[index[k]];
            }
        }
        else if (banded)
        {
            // A block number the setter would refuse, set by a derived class.
            for (std::size_t k = 0; k < n; ++k)
            {
                unsigned char rgb[3];
                GetOpenGLBandedColorImpl(rgb[0], rgb[1], rgb[2], block[k]);
                mapped[k] = PackedColor(rgb);
            }
        }
        else
        {
            SmoothBlock(filled, n, inverse, index, mapped);
        }
        // Outside the range without fill, and always in single-colour mode,
        // the fixed colour replaces the mapped one.
        for (std::size_t k = 0; k < n; ++k)
        {
            const int side = SideOfRange(block[k], minimum, maximum);
            const bool fixed = single || (!fill && side != 0);
            const std::uint32_t color = fixed ? fixedColor : mapped[k];
            std::memcpy(rgba + 4 * (start + k), &color, sizeof color);
        }
        if (codes != nullptr)
        {
            for (std::size_t k = 0; k < n; ++k)
            {
                const int side = SideOfRange(block[k], minimum, maximum);
                codes[start + k] = static_cast<signed char>(fill ? 0 : side);
            }
        }
    }
}

} // namespace KesraEngine
