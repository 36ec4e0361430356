// TKesraVector3: a three-component vector, a plain value type.
//
// The library uses TKesraVector3<double> for model positions, directions and
// angle triples (degrees). Arrays of vectors exchanged with the host as
// double* hold x, y, z consecutively.
#pragma once

#include <cmath>

namespace KesraMathKit
{

template <typename T>
class TKesraVector3
{
public:
    constexpr TKesraVector3() noexcept = default;
    constexpr TKesraVector3(T xValue, T yValue, T zValue) noexcept
        : x(xValue), y(yValue), z(zValue) {}

    constexpr TKesraVector3 operator+(const TKesraVector3& v) const noexcept
    {
        return TKesraVector3(x + v.x, y + v.y, z + v.z);
    }

    constexpr TKesraVector3 operator-(const TKesraVector3& v) const noexcept
    {
        return TKesraVector3(x - v.x, y - v.y, z - v.z);
    }

    constexpr TKesraVector3 operator-() const noexcept
    {
        return TKesraVector3(-x, -y, -z);
    }

    constexpr TKesraVector3 operator*(T scalar) const noexcept
    {
        return TKesraVector3(x * scalar, y * scalar, z * scalar);
    }

    constexpr bool operator==(const TKesraVector3& v) const noexcept
    {
        return x == v.x && y == v.y && z == v.z;
    }

    constexpr bool operator!=(const TKesraVector3& v) const noexcept
    {
        return !(*this == v);
    }

    // Summed left to right; the tube generator relies on this order.
    constexpr T Dot(const TKesraVector3& v) const noexcept
    {
        return x * v.x + y * v.y + z * v.z;
    }

    constexpr TKesraVector3 Cross(const TKesraVector3& v) const noexcept
    {
        return TKesraVector3(y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x);
    }

    T Length() const noexcept
    {
        return std::sqrt(x * x + y * y + z * z);
    }

    // Scales to unit length. A vector of length 1e-08 or less has no usable
    // direction and becomes (0, 0, 0) instead of blowing up.
    void Normalize() noexcept
    {
        const T length = Length();
        if (length > T(1e-08))
        {
            const T invLength = T(1) / length;
            x *= invLength;
            y *= invLength;
            z *= invLength;
        }
        else
        {
            x = T(0);
            y = T(0);
            z = T(0);
        }
    }

    T x{};
    T y{};
    T z{};
};

} // namespace KesraMathKit
