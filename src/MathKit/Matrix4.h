// TKesraMatrix4: a 4 x 4 matrix of sixteen elements held inline, a plain value
// type.
//
// Storage order: row by row. Element k (0 ... 15) is element (r, c) with
// k = 4r + c; the product, the point transform and operator() read it so, a
// point p is transformed as the column (p.x, p.y, p.z, 1), and a translation
// lies in elements 3, 7 and 11. The sixteen-value constructor takes the
// elements in storage order; FromRows says the same by name, FromColumns takes
// them column by column, and Transposed swaps the two readings.
//
// The camera's rotation matrices are laid out column by column instead (the
// layout OpenGL-style matrix functions take): the array read row by row is the
// transpose of the rotation meant. See MakeRotation and
// TKesraViewRotation (MathKit/ViewRotation.h).
//
// A default matrix is the zero matrix, not the identity.
#pragma once

#include "MathKit/Math.h"
#include "MathKit/Vector3.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace KesraMathKit
{

template <typename T>
class TKesraMatrix4
{
public:
    static const TKesraMatrix4 ZERO;
    static const TKesraMatrix4 IDENTITY;

    constexpr TKesraMatrix4() noexcept = default;

    // The sixteen elements in the order k = 0 ... 15.
    constexpr TKesraMatrix4(T m0, T m1, T m2, T m3, T m4, T m5, T m6, T m7,
                            T m8, T m9, T m10, T m11, T m12, T m13, T m14, T m15) noexcept
        : m_entry{m0, m1, m2, m3, m4, m5, m6, m7, m8, m9, m10, m11, m12, m13, m14, m15} {}

    // The elements listed row by row: element (r, c) is argument mRC. The same
    // as the sixteen-value constructor, with the reading named at the call.
    static constexpr TKesraMatrix4 FromRows(T m00, T m01, T m02, T m03,
                                            T m10, T m11, T m12, T m13,
                                            T m20, T m21, T m22, T m23,
                                            T m30, T m31, T m32, T m33) noexcept
    {
        return TKesraMatrix4(m00, m01, m02, m03, m10, m11, m12, m13,
                             m20, m21, m22, m23, m30, m31, m32, m33);
    }

    // The elements listed column by column: element (r, c) is argument mRC,
    // so the first four arguments are column 0. Given the same arguments,
    // FromRows builds the transpose.
    static constexpr TKesraMatrix4 FromColumns(T m00, T m10, T m20, T m30, T m01, T m11, T m21,
                                               T m31, T m02, T m12, T m22, T m32, T m03, T m13,
                                               T m23, T m33) noexcept
    {
        return FromRows(m00, m10, m20, m30, m01, m11, m21, m31, m02, m12, m22, m32, m03, m13, m23,
                        m33).Transposed();
    }

    // Element (r, c) of the result is element (c, r) of this matrix: a matrix
    // laid out column by column, read as stored.
    constexpr TKesraMatrix4 Transposed() const noexcept
    {
        TKesraMatrix4 transposed;
        for (int r = 0; r < 4; ++r)
        {
            for (int c = 0; c < 4; ++c)
            {
                transposed(r, c) = (*this)(c, r);
            }
        }
        return transposed;
    }

    constexpr T& operator[](int k) noexcept { return m_entry[k]; }
    constexpr const T& operator[](int k) const noexcept { return m_entry[k]; }
    constexpr T& operator()(int r, int c) noexcept { return m_entry[4 * r + c]; }
    constexpr const T& operator()(int r, int c) const noexcept { return m_entry[4 * r + c]; }

    // The sixteen elements as one array, e.g. for a graphics interface.
    constexpr const T* Data() const noexcept { return m_entry; }

    constexpr bool operator==(const TKesraMatrix4& m) const noexcept
    {
        for (int k = 0; k < 16; ++k)
        {
            if (m_entry[k] != m.m_entry[k])
            {
                return false;
            }
        }
        return true;
    }

    constexpr bool operator!=(const TKesraMatrix4& m) const noexcept { return !(*this == m); }

    void MakeIdentity() noexcept { *this = IDENTITY; }

    // Overwrites all sixteen elements with the rotation by angle (degrees) about
    // the axis (x, y, z) of any length. Read column by column, the result is the
    // right-handed rotation for column vectors; read row by row, its transpose.
    // The steps go through the half-angle quaternion, so cos 90 comes out of the
    // order of 1e-16, not 0. An axis without a direction (zero, or with a
    // non-finite component) gives the identity instead of non-finite elements.
    void MakeRotation(T angle, T x, T y, T z) noexcept
    {
        T lengthSquared = (x * x + y * y) + z * z;
        if (!(lengthSquared >= std::numeric_limits<T>::min()) || !std::isfinite(lengthSquared))
        {
            // Squares that overflow, underflow or lose precision as subnormals:
            // rescale the axis first so that any finite non-zero length still
            // gives its rotation.
            const T largest = std::max(std::abs(x), std::max(std::abs(y), std::abs(z)));
            if (largest == T(0) || !std::isfinite(largest))
            {
                MakeIdentity();
                return;
            }
            x /= largest;
            y /= largest;
            z /= largest;
            lengthSquared = (x * x + y * y) + z * z;
        }

        const T inv = T(1) / std::sqrt(lengthSquared);
        const T half = (TKesraMath<T>::DEG_TO_RAD * angle) * T(0.5);
        const T s = std::sin(half);
        const T w = std::cos(half);
        const T qx = (s * x) * inv;
        const T qy = (s * y) * inv;
        const T qz = (s * z) * inv;
        const T X = qx + qx;
        const T Y = qy + qy;
        const T Z = qz + qz;

        m_entry[0] = T(1) - (Z * qz + Y * qy);
        m_entry[1] = Z * w + Y * qx;
        m_entry[2] = Z * qx - Y * w;
        m_entry[3] = T(0);
        m_entry[4] = Y * qx - Z * w;
        m_entry[5] = T(1) - (Z * qz + X * qx);
        m_entry[6] = X * w + Z * qy;
        m_entry[7] = T(0);
        m_entry[8] = Y * w + Z * qx;
        m_entry[9] = Z * qy - X * w;
        m_entry[10] = T(1) - (Y * qy + X * qx);
        m_entry[11] = T(0);
        m_entry[12] = T(0);
        m_entry[13] = T(0);
        m_entry[14] = T(0);
        m_entry[15] = T(1);
    }

    // Row-by-row product; each element is summed as
    // (((0 + a0 b0) + a1 b1) + a2 b2) + a3 b3, in T.
    constexpr TKesraMatrix4 operator*(const TKesraMatrix4& b) const noexcept
    {
        TKesraMatrix4 product;
        for (int r = 0; r < 4; ++r)
        {
            for (int c = 0; c < 4; ++c)
            {
                T sum = T(0);
                for (int i = 0; i < 4; ++i)
                {
                    sum = sum + (*this)(r, i) * b(i, c);
                }
                product(r, c) = sum;
            }
        }
        return product;
    }

    // Transforms the point p as the column (p.x, p.y, p.z, 1); row 3 is not
    // used and nothing is divided.
    constexpr TKesraVector3<T> TransformPoint(const TKesraVector3<T>& p) const noexcept
    {
        const TKesraMatrix4& m = *this;
        return TKesraVector3<T>(m(0, 0) * p.x + m(0, 1) * p.y + m(0, 2) * p.z + m(0, 3),
                                m(1, 0) * p.x + m(1, 1) * p.y + m(1, 2) * p.z + m(1, 3),
                                m(2, 0) * p.x + m(2, 1) * p.y + m(2, 2) * p.z + m(2, 3));
    }

    // Transforms count points as TransformPoint does, in T: xyz holds x, y, z
    // of each point in turn, each widened (or narrowed) to T, and out receives
    // each result converted back to Real. Each point is read whole before it is
    // written, which lets out be xyz itself.
    template <typename Real>
    void TransformPoints(const Real* xyz, std::size_t count, Real* out) const noexcept
    {
        // A local copy: the stores to out cannot alias it, so its elements need
        // not be reloaded after each point.
        const TKesraMatrix4 m = *this;
        for (std::size_t k = 0; k < 3 * count; k += 3)
        {
            const TKesraVector3<T> point(static_cast<T>(xyz[k]), static_cast<T>(xyz[k + 1]),
                                         static_cast<T>(xyz[k + 2]));
            const TKesraVector3<T> transformed = m.TransformPoint(point);
            out[k] = static_cast<Real>(transformed.x);
            out[k + 1] = static_cast<Real>(transformed.y);
            out[k + 2] = static_cast<Real>(transformed.z);
        }
    }

    // General inverse through 2 x 2 sub-determinants; valid in either reading
    // of the array. A matrix with |det| <= ZERO_TOLERANCE is treated as
    // singular and gives ZERO.
    TKesraMatrix4 Inverse() const noexcept
    {
        const T* m = m_entry;
        const T a0 = m[0] * m[5] - m[1] * m[4];
        const T a1 = m[0] * m[6] - m[2] * m[4];
        const T a2 = m[0] * m[7] - m[3] * m[4];
        const T a3 = m[1] * m[6] - m[2] * m[5];
        const T a4 = m[1] * m[7] - m[3] * m[5];
        const T a5 = m[2] * m[7] - m[3] * m[6];
        const T b0 = m[8] * m[13] - m[9] * m[12];
        const T b1 = m[8] * m[14] - m[10] * m[12];
        const T b2 = m[8] * m[15] - m[11] * m[12];
        const T b3 = m[9] * m[14] - m[10] * m[13];
        const T b4 = m[9] * m[15] - m[11] * m[13];
        const T b5 = m[10] * m[15] - m[11] * m[14];

        const T det = a0 * b5 - a1 * b4 + a2 * b3 + a3 * b2 - a4 * b1 + a5 * b0;
        if (std::abs(det) <= TKesraMath<T>::ZERO_TOLERANCE)
        {
            return ZERO;
        }

        const T d = T(1) / det;
        return TKesraMatrix4(
            (m[5] * b5 - m[6] * b4 + m[7] * b3) * d,
            (-m[1] * b5 + m[2] * b4 - m[3] * b3) * d,
            (m[13] * a5 - m[14] * a4 + m[15] * a3) * d,
            (-m[9] * a5 + m[10] * a4 - m[11] * a3) * d,
            (-m[4] * b5 + m[6] * b2 - m[7] * b1) * d,
            (m[0] * b5 - m[2] * b2 + m[3] * b1) * d,
            (-m[12] * a5 + m[14] * a2 - m[15] * a1) * d,
            (m[8] * a5 - m[10] * a2 + m[11] * a1) * d,
            (m[4] * b4 - m[5] * b2 + m[7] * b0) * d,
            (-m[0] * b4 + m[1] * b2 - m[3] * b0) * d,
            (m[12] * a4 - m[13] * a2 + m[15] * a0) * d,
            (-m[8] * a4 + m[9] * a2 - m[11] * a0) * d,
            (-m[4] * b3 + m[5] * b1 - m[6] * b0) * d,
            (m[0] * b3 - m[1] * b1 + m[2] * b0) * d,
            (-m[12] * a3 + m[13] * a1 - m[14] * a0) * d,
            (m[8] * a3 - m[9] * a1 + m[10] * a0) * d);
    }

private:
    T m_entry[16]{};
};

template <typename T>
const TKesraMatrix4<T> TKesraMatrix4<T>::ZERO{};

template <typename T>
const TKesraMatrix4<T> TKesraMatrix4<T>::IDENTITY{T(1), T(0), T(0), T(0),
                                                  T(0), T(1), T(0), T(0),
                                                  T(0), T(0), T(1), T(0),
                                                  T(0), T(0), T(0), T(1)};

} // namespace KesraMathKit
