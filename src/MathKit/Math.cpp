#include "MathKit/Math.h"

#include <cmath>

namespace KesraMathKit
{

// Dynamic initialisation in declaration order: each constant may use the ones
// defined above it. PI is taken in double for both types.
template <> const float TKesraMath<float>::PI = static_cast<float>(4.0 * std::atan(1.0));
template <> const float TKesraMath<float>::TWO_PI = TKesraMath<float>::PI * 2.0f;
template <> const float TKesraMath<float>::HALF_PI = TKesraMath<float>::PI * 0.5f;
template <> const float TKesraMath<float>::INV_PI = 1.0f / TKesraMath<float>::PI;
template <> const float TKesraMath<float>::INV_TWO_PI = 1.0f / TKesraMath<float>::TWO_PI;
template <> const float TKesraMath<float>::DEG_TO_RAD = TKesraMath<float>::PI / 180.0f;
template <> const float TKesraMath<float>::RAD_TO_DEG = 180.0f / TKesraMath<float>::PI;

template <> const double TKesraMath<double>::PI = 4.0 * std::atan(1.0);
template <> const double TKesraMath<double>::TWO_PI = TKesraMath<double>::PI * 2.0;
template <> const double TKesraMath<double>::HALF_PI = TKesraMath<double>::PI * 0.5;
template <> const double TKesraMath<double>::INV_PI = 1.0 / TKesraMath<double>::PI;
template <> const double TKesraMath<double>::INV_TWO_PI = 1.0 / TKesraMath<double>::TWO_PI;
template <> const double TKesraMath<double>::DEG_TO_RAD = TKesraMath<double>::PI / 180.0;
template <> const double TKesraMath<double>::RAD_TO_DEG = 180.0 / TKesraMath<double>::PI;

} // namespace KesraMathKit
