// TKesraMath: the mathematical constants of one scalar type, and the library's
// tolerance.
//
// The constants are computed once while the shared library loads, each from
// the ones before it in the arithmetic of T (PI itself is 4 * atan(1) taken in
// double and narrowed for float). They exist for float and double only.
#pragma once

#include "MathKit/Export.h"

namespace KesraMathKit
{

template <typename T>
class TKesraMath
{
public:
    static const T PI;
    static const T TWO_PI;
    static const T HALF_PI;
    static const T INV_PI;
    static const T INV_TWO_PI;
    static const T DEG_TO_RAD;
    static const T RAD_TO_DEG;

    // Below this magnitude a determinant, a length or a dot product counts as
    // zero.
    static constexpr T ZERO_TOLERANCE = T(1e-08);
};

// The definitions live in the shared library (Math.cpp); these declarations
// make every user read that one copy.
template <> KESRA_ENGINE_API const float TKesraMath<float>::PI;
template <> KESRA_ENGINE_API const float TKesraMath<float>::TWO_PI;
template <> KESRA_ENGINE_API const float TKesraMath<float>::HALF_PI;
template <> KESRA_ENGINE_API const float TKesraMath<float>::INV_PI;
template <> KESRA_ENGINE_API const float TKesraMath<float>::INV_TWO_PI;
template <> KESRA_ENGINE_API const float TKesraMath<float>::DEG_TO_RAD;
template <> KESRA_ENGINE_API const float TKesraMath<float>::RAD_TO_DEG;

template <> KESRA_ENGINE_API const double TKesraMath<double>::PI;
template <> KESRA_ENGINE_API const double TKesraMath<double>::TWO_PI;
template <> KESRA_ENGINE_API const double TKesraMath<double>::HALF_PI;
template <> KESRA_ENGINE_API const double TKesraMath<double>::INV_PI;
template <> KESRA_ENGINE_API const double TKesraMath<double>::INV_TWO_PI;
template <> KESRA_ENGINE_API const double TKesraMath<double>::DEG_TO_RAD;
template <> KESRA_ENGINE_API const double TKesraMath<double>::RAD_TO_DEG;

} // namespace KesraMathKit
