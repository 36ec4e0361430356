// TKesraIntrRay3Plane3: where a ray meets a plane.
//
// The ray narrows the line query: the line through the ray answers, and a
// crossing behind the origin (negative parameter) then answers false while
// the type stays 1 and the parameter holds the negative value. A ray lying in
// the plane answers true with type 4 and parameter 0 (its origin). The
// meeting point is ray.origin + GetRayParameter() * ray.direction.
#pragma once

#include "MathKit/Intersector.h"
#include "MathKit/IntrLine3Plane3.h"
#include "MathKit/Line3.h"
#include "MathKit/Plane3.h"
#include "MathKit/Ray3.h"
#include "MathKit/Vector3.h"

namespace KesraMathKit
{

template <typename Real>
class TKesraIntrRay3Plane3 : public TKesraIntersector<Real, TKesraVector3<Real>>
{
    using Base = TKesraIntersector<Real, TKesraVector3<Real>>;

public:
    // Keeps references, not copies: ray and plane must outlive the query.
    TKesraIntrRay3Plane3(const TKesraRay3<Real>& ray, const TKesraPlane3<Real>& plane)
        : m_ray(ray), m_plane(plane) {}

    const TKesraRay3<Real>& GetRay() const { return m_ray; }
    const TKesraPlane3<Real>& GetPlane() const { return m_plane; }

    // The same answer and effects as Find.
    bool Test() override { return this->Find(); }

    // True with type 1 and the parameter for a crossing at t >= 0, or with
    // type 4 and parameter 0 for a ray in the plane. False with type 1 and the
    // negative parameter for a crossing behind the origin; false with type 0,
    // parameter kept, for a parallel ray off the plane.
    bool Find() override
    {
        const TKesraLine3<Real> line(m_ray.origin, m_ray.direction);
        TKesraIntrLine3Plane3<Real> lineQuery(line, m_plane);
        if (!lineQuery.Find())
        {
            this->m_intersectionType = Base::INTERSECTION_EMPTY;
            return false;
        }
        this->m_intersectionType = lineQuery.GetIntersectionType();
        m_rayParameter = lineQuery.GetLineParameter();
        return m_rayParameter >= Real(0);
    }

    // Meaningful only after Find answered true; 0 before any Find.
    Real GetRayParameter() const { return m_rayParameter; }

protected:
    const TKesraRay3<Real>& m_ray;
    const TKesraPlane3<Real>& m_plane;
    Real m_rayParameter{};
};

} // namespace KesraMathKit
