// TKesraIntersector: the base of the geometric queries.
//
// It holds what every query reports, the kind of the last result and a contact
// time, and declares the queries as virtual operations that answer false until
// a derived query overrides them. The virtual table is, in order: the
// destructor, TestMoving, Test, FindMoving, Find. The two moving-object queries
// are reserved: no query of the library overrides or calls them.
//
// A query object is short-lived: it is made on the stack for one query.
#pragma once

namespace KesraMathKit
{

template <typename Real, typename Vector>
class TKesraIntersector
{
public:
    // Kinds of result. A line lying in a plane is 4, not 2.
    enum IntersectionType
    {
        INTERSECTION_EMPTY = 0,
        INTERSECTION_POINT = 1,
        INTERSECTION_LINE = 4
    };

    virtual ~TKesraIntersector() = default;

    // Reserved for objects moving with the given velocities up to maxTime;
    // always false.
    virtual bool TestMoving(Real /*maxTime*/, const Vector& /*velocity0*/,
                            const Vector& /*velocity1*/)
    {
        return false;
    }

    // Whether the objects meet; sets the intersection type. The base answers
    // false.
    virtual bool Test() { return false; }

    // Reserved like TestMoving, for the first contact; always false.
    virtual bool FindMoving(Real /*maxTime*/, const Vector& /*velocity0*/,
                            const Vector& /*velocity1*/)
    {
        return false;
    }

    // As Test, and also where the objects meet. The base answers false.
    virtual bool Find() { return false; }

    // One of INTERSECTION_EMPTY, INTERSECTION_POINT, INTERSECTION_LINE; 0 until
    // a query sets it.
    int GetIntersectionType() const { return m_intersectionType; }

    // 0: no query of the library moves its objects.
    Real GetContactTime() const { return m_contactTime; }

    TKesraIntersector() = default;
    TKesraIntersector(const TKesraIntersector&) = default;
    TKesraIntersector& operator=(const TKesraIntersector&) = default;

protected:
    Real m_contactTime{};
    int m_intersectionType = INTERSECTION_EMPTY;
};

} // namespace KesraMathKit
