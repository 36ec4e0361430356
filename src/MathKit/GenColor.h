// TKesraGenColor: an RGBA colour, a plain value type.
//
// The library uses TKesraGenColor<unsigned char>: four bytes red, green, blue,
// alpha, in that order. A default colour is (0, 0, 0, 0), so an owner that sets
// only red, green and blue on it keeps alpha 0.
#pragma once

namespace KesraMathKit
{

template <typename T>
class TKesraGenColor
{
public:
    constexpr TKesraGenColor() noexcept = default;
    constexpr TKesraGenColor(T redValue, T greenValue, T blueValue, T alphaValue) noexcept
        : red(redValue), green(greenValue), blue(blueValue), alpha(alphaValue) {}

    constexpr bool operator==(const TKesraGenColor& c) const noexcept
    {
        return red == c.red && green == c.green && blue == c.blue && alpha == c.alpha;
    }

    constexpr bool operator!=(const TKesraGenColor& c) const noexcept
    {
        return !(*this == c);
    }

    T red{};
    T green{};
    T blue{};
    T alpha{};
};

} // namespace KesraMathKit
