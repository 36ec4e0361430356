// TKesraRay3: the half line origin + t * direction for t >= 0, a plain value
// type.
//
// The direction need not be of unit length: a parameter t is measured in
// multiples of it.
#pragma once

#include "MathKit/Vector3.h"

namespace KesraMathKit
{

template <typename Real>
class TKesraRay3
{
public:
    constexpr TKesraRay3() noexcept = default;
    constexpr TKesraRay3(const TKesraVector3<Real>& originValue,
                         const TKesraVector3<Real>& directionValue) noexcept
        : origin(originValue), direction(directionValue) {}

    TKesraVector3<Real> origin;
    TKesraVector3<Real> direction;
};

} // namespace KesraMathKit
