// TKesraIntrLine3Plane3: where a line meets a plane.
//
// The meeting point is line.origin + GetLineParameter() * line.direction; the
// caller computes it from its own line. Dot products are compared, as absolute
// values, against the tolerance 1e-08 (ZERO_TOLERANCE of double): a normal .
// direction within it means the line is parallel to the plane, and then an
// origin within it of the plane means the line lies in the plane. A NaN dot
// product counts as parallel, a NaN distance as off the plane.
#pragma once

#include "MathKit/Intersector.h"
#include "MathKit/Line3.h"
#include "MathKit/Math.h"
#include "MathKit/Plane3.h"
#include "MathKit/Vector3.h"

#include <cmath>

namespace KesraMathKit
{

template <typename Real>
class TKesraIntrLine3Plane3 : public TKesraIntersector<Real, TKesraVector3<Real>>
{
    using Base = TKesraIntersector<Real, TKesraVector3<Real>>;

public:
    // Keeps references, not copies: line and plane must outlive the query.
    TKesraIntrLine3Plane3(const TKesraLine3<Real>& line, const TKesraPlane3<Real>& plane)
        : m_line(line), m_plane(plane) {}

    const TKesraLine3<Real>& GetLine() const { return m_line; }
    const TKesraPlane3<Real>& GetPlane() const { return m_plane; }

    // Type 1 when the line crosses the plane, 4 when it lies in it (true);
    // 0 otherwise (false). Leaves the line parameter alone.
    bool Test() override
    {
        if (std::abs(DirectionDotNormal()) > TKesraMath<double>::ZERO_TOLERANCE)
        {
            this->m_intersectionType = Base::INTERSECTION_POINT;
            return true;
        }
        // Parallel: the line lies in the plane or misses it.
        if (std::abs(SignedOriginOffset()) <= TKesraMath<double>::ZERO_TOLERANCE)
        {
            this->m_intersectionType = Base::INTERSECTION_LINE;
            return true;
        }
        this->m_intersectionType = Base::INTERSECTION_EMPTY;
        return false;
    }

    // As Test, and sets the line parameter: the crossing, or 0 (the origin)
    // for a line in the plane. A miss keeps the previous parameter.
    bool Find() override
    {
        const Real d = DirectionDotNormal();
        const Real s = SignedOriginOffset();
        if (std::abs(d) > TKesraMath<double>::ZERO_TOLERANCE)
        {
            m_lineParameter = -(s / d);
            this->m_intersectionType = Base::INTERSECTION_POINT;
            return true;
        }
        // Parallel: the line lies in the plane or misses it.
        if (std::abs(s) <= TKesraMath<double>::ZERO_TOLERANCE)
        {
            m_lineParameter = Real(0);
            this->m_intersectionType = Base::INTERSECTION_LINE;
            return true;
        }
        this->m_intersectionType = Base::INTERSECTION_EMPTY;
        return false;
    }

    // Meaningful only after Find answered true; 0 before any Find.
    Real GetLineParameter() const { return m_lineParameter; }

protected:
    const TKesraLine3<Real>& m_line;
    const TKesraPlane3<Real>& m_plane;
    Real m_lineParameter{};

private:
    Real DirectionDotNormal() const { return m_plane.normal.Dot(m_line.direction); }
    Real SignedOriginOffset() const { return m_plane.normal.Dot(m_line.origin) - m_plane.constant; }
};

} // namespace KesraMathKit
