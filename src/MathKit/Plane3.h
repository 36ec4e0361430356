// TKesraPlane3: the points X with normal . X = constant, a plain value type.
//
// The normal need not be of unit length; the plane queries compare raw dot
// products against their tolerance.
#pragma once

#include "MathKit/Vector3.h"

namespace KesraMathKit
{

template <typename Real>
class TKesraPlane3
{
public:
    constexpr TKesraPlane3() noexcept = default;
    constexpr TKesraPlane3(const TKesraVector3<Real>& normalValue, Real constantValue) noexcept
        : normal(normalValue), constant(constantValue) {}

    TKesraVector3<Real> normal;
    Real constant{};
};

} // namespace KesraMathKit
