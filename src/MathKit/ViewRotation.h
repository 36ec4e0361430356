// TKesraViewRotation: a camera's view rotation as the camera stores it, built
// from three angles and read back as three angles, the seven standard views
// and the six-sides tour.
//
// Layout: F maps a model direction, taken as a column vector, to view space
// (view x to the right, y up, z toward the viewer), so F's rows are the model
// directions shown to the right, up and toward the viewer. The matrix holds F
// column by column: element 4c + r is F(r, c). Read in TKesraMatrix4's own
// order (row by row) it is F's transpose, whose columns are those three
// directions; Transposed() gives F itself.
//
// Angles (a, b, c) are in degrees and describe F = Rx(a) Ry(b) Rz(c), each the
// textbook right-handed rotation about a model axis. The side views show the
// model's z axis up; the top view looks down onto the x-y plane.
#pragma once

#include "MathKit/Math.h"
#include "MathKit/Matrix4.h"
#include "MathKit/Vector3.h"

#include <cmath>

namespace KesraMathKit
{

enum class eStandardView
{
    Front,
    Back,
    Left,
    Right,
    Top,
    Bottom,
    Iso
};

template <typename T>
class TKesraViewRotation
{
public:
    using Matrix = TKesraMatrix4<T>;
    using Vector = TKesraVector3<T>;

    // F with the rows right, up and toward; the fourth row and column are the
    // identity's. The three directions are taken as given, not normalised.
    static constexpr Matrix FromAxes(const Vector& right, const Vector& up,
                                     const Vector& toward) noexcept
    {
        return Matrix::FromColumns(right.x, right.y, right.z, T(0),
                                   up.x, up.y, up.z, T(0),
                                   toward.x, toward.y, toward.z, T(0),
                                   T(0), T(0), T(0), T(1));
    }

    // F of the angles: (Mz * My) * Mx of MakeRotation about the z, y and x
    // axes. Each of those is its textbook rotation laid out column by column,
    // and the row-by-row product of such transposes is the transpose of
    // Rx Ry Rz, so the product is F laid out column by column.
    static Matrix FromAngles(T a, T b, T c) noexcept
    {
        Matrix aboutX;
        Matrix aboutY;
        Matrix aboutZ;
        aboutX.MakeRotation(a, T(1), T(0), T(0));
        aboutY.MakeRotation(b, T(0), T(1), T(0));
        aboutZ.MakeRotation(c, T(0), T(0), T(1));
        return (aboutZ * aboutY) * aboutX;
    }

    // The angles (a, b, c) of a rotation: a and c in [-180, 180], b in
    // [-90, 90]. For b strictly inside, FromAngles of the result is the
    // rotation. At b = +-90 only a +- c is defined: a takes it up and c is 0
    // (a negative zero). A half turn about y reads (0, 180, 0). A matrix whose
    // element 8 exceeds 1 in magnitude, not a rotation, gives NaNs.
    static Vector ToAngles(const Matrix& rotation) noexcept
    {
        // With F = Rx Ry Rz: F(0, 2) = sin b, F(1, 2) = -sin a cos b,
        // F(2, 2) = cos a cos b, F(0, 1) = -cos b sin c, F(0, 0) = cos b cos c.
        const Matrix f = rotation.Transposed();
        const T radToDeg = TKesraMath<T>::RAD_TO_DEG;
        const T v = -f(0, 2);
        const T x = std::sqrt(T(1) - v * v);
        Vector angles;
        angles.y = -(std::atan2(v, x) * radToDeg);

        if (v != T(1) && v != T(-1))
        {
            angles.x = -(std::atan2(f(1, 2) / x, f(2, 2) / x) * radToDeg);
            angles.z = -(std::atan2(f(0, 1) / x, f(0, 0) / x) * radToDeg);
            // (-180, 0, -180) and (0, 180, 0) are the same half turn about y;
            // prefer the latter so that the bottom view reads back as its angles.
            if (std::abs(angles.y) < T(1e-12) && std::abs(angles.x + T(180)) < T(1e-12) &&
                std::abs(angles.z + T(180)) < T(1e-12))
            {
                angles = Vector(T(0), T(180), T(0));
            }
        }
        else
        {
            // Gimbal lock: F(2, 1) and F(1, 1) are the sine and cosine of a +- c.
            angles.x = -(std::atan2(-f(2, 1), f(1, 1)) * radToDeg);
            angles.z = -(std::atan2(T(0), T(1)) * radToDeg);
        }
        return angles;
    }

    // The matrix of a standard view. Each equals FromAngles of
    // StandardViewAngles up to rounding; the isometric one up to its constant,
    // six decimals of sqrt(1/2) as hosts have always stored it (the exact root
    // would move every projected pixel slightly).
    static constexpr Matrix StandardView(eStandardView view) noexcept
    {
        const View& v = kViews[static_cast<int>(view)];
        return FromAxes(v.right, v.up, v.toward);
    }

    // The angles whose rotation is the standard view: where a smooth turn
    // toward it ends.
    static constexpr Vector StandardViewAngles(eStandardView view) noexcept
    {
        return kViews[static_cast<int>(view)].angles;
    }

    // The rotation of the six-sides tour at progress p, from 0 (the top view)
    // to 6 (the top view again), one unit a side: phase i turns the picture by
    // clamp((p - i) * 90, 0, 90) degrees, phases 0, 1, 3 and 4 about the
    // screen's vertical axis and phases 2 and 5 about its horizontal axis,
    // phase 0 first. phaseAngles receives the six clamped angles. At p = 2, 3,
    // 4 and 5 it shows the bottom, back, right and front views up to rounding.
    static Matrix SixSidesTour(T progress, T (&phaseAngles)[6]) noexcept
    {
        // In the row-by-row product a later phase stands on the right; read
        // column by column that puts it on the left of F, so it turns the
        // picture about a fixed axis of the screen.
        static constexpr T kAxes[6][3] = {
            {0, 1, 0}, {0, 1, 0}, {1, 0, 0}, {0, 1, 0}, {0, 1, 0}, {1, 0, 0},
        };
        Matrix rotation = Matrix::IDENTITY;
        for (int i = 0; i < 6; ++i)
        {
            T angle = (progress - static_cast<T>(i)) * T(90);
            if (angle < T(0))
            {
                angle = T(0);
            }
            if (angle > T(90))
            {
                angle = T(90);
            }
            phaseAngles[i] = angle;

            Matrix phase;
            phase.MakeRotation(angle, kAxes[i][0], kAxes[i][1], kAxes[i][2]);
            rotation = (i == 0) ? phase : rotation * phase;
        }
        return rotation;
    }

private:
    struct View
    {
        Vector right;
        Vector up;
        Vector toward;
        Vector angles;
    };

    static constexpr T kIso = T(0.707106);

    // In the order of eStandardView.
    static constexpr View kViews[7] = {
        // model axis to the right, up, toward the viewer; angles (a, b, c)
        {{1, 0, 0}, {0, 0, 1}, {0, -1, 0}, {-90, 0, 0}},            // front
        {{-1, 0, 0}, {0, 0, 1}, {0, 1, 0}, {-90, 0, -180}},         // back
        {{0, -1, 0}, {0, 0, 1}, {-1, 0, 0}, {-90, 0, 90}},          // left
        {{0, 1, 0}, {0, 0, 1}, {1, 0, 0}, {-90, 0, -90}},           // right
        {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 0, 0}},               // top
        {{-1, 0, 0}, {0, 1, 0}, {0, 0, -1}, {0, 180, 0}},           // bottom
        {{kIso, kIso, 0}, {-0.5, 0.5, kIso}, {0.5, -0.5, kIso}, {-45, 0, -45}}, // iso
    };
};

} // namespace KesraMathKit
