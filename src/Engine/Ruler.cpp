#include "Engine/Ruler.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>

namespace KesraEngine
{

namespace
{

// A bar of this many free pixels or more is divided into four blocks when the
// block count follows the width.
constexpr int kAutoBlockMinPixels = 260;

// A round length this close to the unrounded one keeps the bar's pixel width.
constexpr double kExactTolerance = 0.001;

// Heights up to this one leave no room for the bar's blocks and label.
constexpr int kMinRulerHeight = 10;

// Label width estimate: the margin of every label, and each byte's share.
constexpr int kLabelMarginWidth = 6;
constexpr int kDigitWidth = 6;
constexpr int kLowerCaseWidth = 5;
constexpr int kUpperCaseWidth = 8;
constexpr int kOtherByteWidth = 3;

// Truncates toward zero. Lengths beyond the int range are outside what the
// ruler supports; they saturate instead of making the conversion undefined,
// and NaN gives 0.
int TruncateToInt(float value)
{
    if (std::isnan(value))
    {
        return 0;
    }
    if (value >= 2147483648.0f)
    {
        return INT_MAX;
    }
    if (value < -2147483648.0f)
    {
        return INT_MIN;
    }
    return static_cast<int>(value);
}

// (window width - start x) / width scale, truncated toward zero, taken in 64
// bits because a start far outside the window overflows the int difference.
// 0 when that is not a positive int: the start lies beyond the window, or the
// free width is smaller than the scale, or no int holds it.
int FreePixelWidth(int windowWidth, int startX, int widthScale)
{
    const long long width = (static_cast<long long>(windowWidth) - startX) / widthScale;
    return (width > 0 && width <= INT_MAX) ? static_cast<int>(width) : 0;
}

// The differences are taken in float and compared in double.
bool IsExact(float length, float roundLength)
{
    return static_cast<double>(std::fabs(length - roundLength)) <= kExactTolerance;
}

// Ten to the power n, computed in double and then narrowed to float.
float PowerOfTen(int n)
{
    return static_cast<float>(std::pow(10.0, n));
}

// The text's length read as a 32-bit signed number; a length whose low 32
// bits have the sign bit set reads as negative and is reported as 0.
int SignedLength(const std::string& text)
{
    const auto low = static_cast<std::uint32_t>(text.size());
    return low > static_cast<std::uint32_t>(INT32_MAX) ? 0 : static_cast<int>(low);
}

int ByteWidth(char c)
{
    if (c >= '0' && c <= '9')
    {
        return kDigitWidth;
    }
    if (c >= 'a' && c <= 'z')
    {
        return kLowerCaseWidth;
    }
    if (c >= 'A' && c <= 'Z')
    {
        return kUpperCaseWidth;
    }
    return kOtherByteWidth;
}

} // namespace

CKesraRuler::CKesraRuler()
    : m_created(0),
      m_drawRuler(1),
      m_windowWidth(300),
      m_windowHeight(300),
      m_startX(0),
      m_startY(0),
      m_rulerWidthScale(3),
      m_rulerHeight(10),
      m_reducedHeight(6),
      m_openGLScale(1.0f),
      m_unit("[mm]"),
      m_textColor(0, 0, 0, 255),
      m_rulerPixelWidth(0),
      m_rulerLength(0.0f),
      m_autoBlock(false),
      m_blockCount(2),
      m_labelFormat1(0),
      m_labelFormat2(0)
{
}

CKesraRuler& CKesraRuler::operator=(const CKesraRuler& other)
{
    // The text is copied first and swapped in: std::bad_alloc from the copy
    // leaves this object as it was, and nothing after it can fail.
    std::string unit(other.m_unit);
    m_created = other.m_created;
    m_drawRuler = other.m_drawRuler;
    m_windowWidth = other.m_windowWidth;
    m_windowHeight = other.m_windowHeight;
    m_startX = other.m_startX;
    m_startY = other.m_startY;
    m_rulerWidthScale = other.m_rulerWidthScale;
    m_rulerHeight = other.m_rulerHeight;
    m_reducedHeight = other.m_reducedHeight;
    m_openGLScale = other.m_openGLScale;
    m_unit.swap(unit);
    m_textColor = other.m_textColor;
    m_rulerPixelWidth = other.m_rulerPixelWidth;
    m_rulerLength = other.m_rulerLength;
    m_autoBlock = other.m_autoBlock;
    m_blockCount = other.m_blockCount;
    m_labelFormat1 = other.m_labelFormat1;
    m_labelFormat2 = other.m_labelFormat2;
    return *this;
}

// ---- Lifecycle ----------------------------------------------------------------

bool CKesraRuler::Create(int width, int height, int startX, int startY)
{
    if (width == 0 || height == 0)
    {
        return false;
    }
    m_windowWidth = width;
    m_windowHeight = height;
    m_startX = startX;
    m_startY = startY;
    UpdateWidthFactor();
    m_created = 1;
    return true;
}

bool CKesraRuler::Delete()
{
    if (m_created == 0)
    {
        return false;
    }
    m_created = 0;
    return true;
}

// ---- Settings -------------------------------------------------------------------

void CKesraRuler::SetDrawRuler(int draw)
{
    m_drawRuler = draw != 0 ? 1 : 0;
}

void CKesraRuler::SetWindowSize(int width, int height)
{
    m_windowWidth = width;
    m_windowHeight = height;
    UpdateWidthFactor();
}

void CKesraRuler::GetWindowSize(int& width, int& height) const
{
    width = m_windowWidth;
    height = m_windowHeight;
}

void CKesraRuler::SetStartPosition(int x, int y)
{
    if (x == m_startX && y == m_startY)
    {
        return;
    }
    m_startX = x;
    m_startY = y;
    UpdateWidthFactor();
}

void CKesraRuler::GetStartPosition(int& x, int& y) const
{
    if (m_created != 0)
    {
        x = m_startX;
        y = m_startY;
    }
}

void CKesraRuler::SetRulerWidthScale(int scale)
{
    if (scale > 0)
    {
        m_rulerWidthScale = scale;
        UpdateWidthFactor();
    }
}

void CKesraRuler::GetRulerWidthScale(int& scale) const
{
    scale = m_rulerWidthScale;
}

void CKesraRuler::SetRulerHeight(int height)
{
    if (height > kMinRulerHeight)
    {
        m_rulerHeight = height;
        // In float, as the backend's own layout computes it.
        m_reducedHeight = static_cast<int>(static_cast<float>(height) / 1.5f);
    }
}

void CKesraRuler::GetRulerHeight(int& height) const
{
    height = m_rulerHeight;
}

void CKesraRuler::SetUnit(const std::string& unit)
{
    if (!unit.empty())
    {
        m_unit = unit;
    }
}

void CKesraRuler::GetUnit(std::string& unit) const
{
    unit = m_unit;
}

void CKesraRuler::SetOpenGLScale(float scale)
{
    // Written so that NaN, which compares false, is refused too.
    if (scale > 0.0f)
    {
        m_openGLScale = scale;
        UpdateWidthFactor();
    }
}

void CKesraRuler::GetOpenGLScale(float& scale) const
{
    scale = m_openGLScale;
}

void CKesraRuler::SetTextColor(const Color& color)
{
    if (m_created != 0)
    {
        m_textColor = color;
    }
}

void CKesraRuler::GetTextColor(Color& color) const
{
    if (m_created != 0)
    {
        color = m_textColor;
    }
}

void CKesraRuler::SetAutoBlock(bool autoBlock)
{
    m_autoBlock = autoBlock;
    UpdateWidthFactor();
}

void CKesraRuler::GetAutoBlock(bool& autoBlock) const
{
    autoBlock = m_autoBlock;
}

void CKesraRuler::SetBlock2()
{
    m_autoBlock = false;
    m_blockCount = 2;
    UpdateWidthFactor();
}

void CKesraRuler::SetBlock4()
{
    m_autoBlock = false;
    m_blockCount = 4;
    UpdateWidthFactor();
}

// ---- Computation ----------------------------------------------------------------

void CKesraRuler::UpdateWidthFactor()
{
    const int pixelWidth = FreePixelWidth(m_windowWidth, m_startX, m_rulerWidthScale);
    m_rulerPixelWidth = pixelWidth;
    const float length = static_cast<float>(pixelWidth) / m_openGLScale;
    m_rulerLength = length;

    // Decided on the free width, before the bar is shortened.
    if (m_autoBlock)
    {
        m_blockCount = pixelWidth >= kAutoBlockMinPixels ? 4 : 2;
    }

    // No room for a bar, or a zoom so extreme that the length is no number:
    // there is no magnitude to round to.
    if (pixelWidth == 0 || !(std::isfinite(length) && length > 0.0f))
    {
        m_rulerPixelWidth = 0;
        m_rulerLength = 0.0f;
        m_labelFormat1 = 2;
        m_labelFormat2 = 2;
        return;
    }
    RoundLength(length, pixelWidth);
}

void CKesraRuler::RoundLength(float length, int pixelWidth)
{
    const int e = GetExponentialBase(0.0, static_cast<double>(length), 1);
    float roundLength = 0.0f;
    bool exact = false;
    if (e == 0)
    {
        // Between 0.1 and 10: whole units above 1, tenths up to 1.
        roundLength = length > 1.0f
                          ? static_cast<float>(TruncateToInt(length))
                          : static_cast<float>(TruncateToInt(length * 10.0f)) / 10.0f;
        exact = IsExact(length, roundLength);
        m_labelFormat1 = 2;
        m_labelFormat2 = 2;
    }
    else if (e > 0)
    {
        // Above 10: whole multiples of the next lower power of ten. The step is
        // at least 10, so the divisor is never 0.
        const float step = PowerOfTen(e - 1);
        const int multiples = TruncateToInt(length) / TruncateToInt(step);
        roundLength = static_cast<float>(multiples) * step;
        exact = IsExact(length, roundLength);
        m_labelFormat1 = e <= 3 ? 4 : 3;
        m_labelFormat2 = e <= 3 ? 1 : 2;
    }
    else
    {
        // Below 0.1: truncated to the first significant digit, never exact.
        const float factor = PowerOfTen(-e);
        roundLength = static_cast<float>(TruncateToInt(length * factor)) / factor;
        m_labelFormat1 = e == -2 ? 1 - e : 2;
        m_labelFormat2 = e == -2 ? 2 - e : 2;
    }
    m_rulerLength = roundLength;
    if (!exact)
    {
        m_rulerPixelWidth =
            TruncateToInt(roundLength / length * static_cast<float>(pixelWidth));
    }
}

int CKesraRuler::GetExponentialBase(double a, double b, int digits) const
{
    const double magnitude = std::max(std::fabs(a), std::fabs(b));
    // The logarithm of 0 is -infinity and that of infinity or NaN no number;
    // none of them converts to an int.
    if (!(magnitude > 0.0 && std::isfinite(magnitude)))
    {
        return 0;
    }
    const double x = std::log10(magnitude);
    const int e = static_cast<int>(x < 0.0 ? std::floor(x) : std::ceil(x));
    if (magnitude >= 1.0)
    {
        return e > digits ? e : 0;
    }
    return (-e > digits && e <= -2) ? e : 0;
}

int CKesraRuler::CalculateStringWdith(const std::string& text) const
{
    const int length = SignedLength(text);
    long long width = kLabelMarginWidth;
    for (int i = 0; i < length; ++i)
    {
        width += ByteWidth(text[static_cast<std::size_t>(i)]);
    }
    return static_cast<int>(std::min<long long>(width, INT_MAX));
}

} // namespace KesraEngine
