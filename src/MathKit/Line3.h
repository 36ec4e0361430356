// TKesraLine3: the line origin + t * direction for every real t, a plain value
// type.
//
// The direction need not be of unit length: a parameter t is measured in
// multiples of it.
#pragma once

#include "MathKit/Vector3.h"

namespace KesraMathKit
{

template <typename Real>
class TKesraLine3
{
public:
    constexpr TKesraLine3() noexcept = default;
    constexpr TKesraLine3(const TKesraVector3<Real>& originValue,
                          const TKesraVector3<Real>& directionValue) noexcept
        : origin(originValue), direction(directionValue) {}

    TKesraVector3<Real> origin;
    TKesraVector3<Real> direction;
};

} // namespace KesraMathKit
