#include "MathKit/IntrLine3Plane3.h"
#include "MathKit/IntrRay3Plane3.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{

using namespace KesraMathKit;
using Vec = TKesraVector3<double>;
using Plane = TKesraPlane3<double>;
using LineQuery = TKesraIntrLine3Plane3<double>;
using RayQuery = TKesraIntrRay3Plane3<double>;
using Base = TKesraIntersector<double, Vec>;

const double kAbove = std::nextafter(1e-08, 1.0);
const double kNaN = std::numeric_limits<double>::quiet_NaN();
const Plane kZ0(Vec(0, 0, 1), 0.0);
const Plane kZ5(Vec(0, 0, 1), 5.0);

// The line query's answer; a missing line keeps the parameter of a fresh query.
struct PlaneCase
{
    Vec origin;
    Vec direction;
    Plane plane;
    bool lineFinds;
    int type;
    double parameter;
};

const PlaneCase kCases[] = {
    {Vec(0, 0, 0), Vec(0, 0, 1), kZ5, true, 1, 5.0},
    {Vec(0, 0, 0), Vec(0, 0, 2), kZ5, true, 1, 2.5},
    {Vec(0, 0, 0), Vec(0, 0, 1), Plane(Vec(0, 0, 1), -5.0), true, 1, -5.0},
    {Vec(0, 0, 0), Vec(1, 0, 0), kZ5, false, 0, 0.0},
    {Vec(3, 4, 0), Vec(1, 0, 0), kZ0, true, 4, 0.0},
    // |normal . direction| of exactly 1e-08 is parallel; just above, a crossing.
    {Vec(0, 0, -1), Vec(0, 0, 1e-08), kZ0, false, 0, 0.0},
    {Vec(0, 0, -1), Vec(0, 0, -1e-08), kZ0, false, 0, 0.0},
    {Vec(0, 0, -1), Vec(0, 0, kAbove), kZ0, true, 1, 1.0 / kAbove},
    // A parallel origin exactly 1e-08 off the plane lies in it.
    {Vec(0, 0, 1e-08), Vec(1, 0, 0), kZ0, true, 4, 0.0},
    {Vec(0, 0, -1e-08), Vec(1, 0, 0), kZ0, true, 4, 0.0},
    {Vec(0, 0, -kAbove), Vec(1, 0, 0), kZ0, false, 0, 0.0},
    // A zero direction is parallel; NaN counts as parallel, or as off the plane.
    {Vec(1, 2, 0), Vec(0, 0, 0), kZ0, true, 4, 0.0},
    {Vec(1, 2, 1), Vec(0, 0, 0), kZ0, false, 0, 0.0},
    {Vec(0, 0, 0), Vec(kNaN, 0, 1), kZ0, true, 4, 0.0},
    {Vec(0, 0, kNaN), Vec(1, 0, 0), kZ0, false, 0, 0.0},
};

// Overrides nothing, so it answers with the base's queries.
TEST(IntersectionTest, TypeValuesAndFreshQueries)
{
    Base bare;
    EXPECT_FALSE(bare.Test());
    EXPECT_FALSE(bare.Find());
    EXPECT_EQ(0, bare.GetIntersectionType());
    EXPECT_EQ(0, Base::INTERSECTION_EMPTY);
    EXPECT_EQ(1, Base::INTERSECTION_POINT);
    EXPECT_EQ(4, Base::INTERSECTION_LINE);
    const TKesraRay3<double> ray(Vec(0, 0, -1), Vec(0, 0, 1));
    RayQuery query(ray, kZ0);
    EXPECT_EQ(0, query.GetIntersectionType());
    EXPECT_EQ(0.0, query.GetContactTime());
    // The reserved queries answer false even for objects that meet.
    EXPECT_FALSE(query.TestMoving(1.0, Vec(), Vec()));
    EXPECT_FALSE(query.FindMoving(1.0, Vec(), Vec()));
    EXPECT_EQ(&ray, &query.GetRay());
    EXPECT_TRUE(query.Find());
    EXPECT_EQ(0.0, query.GetContactTime());
}

TEST(IntersectionTest, LineFindAndTest)
{
    for (const PlaneCase& c : kCases)
    {
        SCOPED_TRACE(::testing::Message() << "origin z " << c.origin.z << ", direction z "
                                          << c.direction.z);
        const TKesraLine3<double> line(c.origin, c.direction);
        LineQuery found(line, c.plane);
        EXPECT_EQ(c.lineFinds, found.Find());
        EXPECT_EQ(c.type, found.GetIntersectionType());
        EXPECT_EQ(c.parameter, found.GetLineParameter());
        LineQuery tested(line, c.plane);
        EXPECT_EQ(c.lineFinds, tested.Test());
        EXPECT_EQ(c.type, tested.GetIntersectionType());
    }
}

TEST(IntersectionTest, RayIsTheLineNarrowedToNonNegativeParameters)
{
    for (const PlaneCase& c : kCases)
    {
        const TKesraRay3<double> ray(c.origin, c.direction);
        for (const bool viaTest : {false, true})
        {
            RayQuery query(ray, c.plane);
            EXPECT_EQ(c.lineFinds && c.parameter >= 0.0, viaTest ? query.Test() : query.Find());
            EXPECT_EQ(c.type, query.GetIntersectionType());
            EXPECT_EQ(c.parameter, query.GetRayParameter());
        }
    }
}

TEST(IntersectionTest, MissesKeepAndTestNeverSetsTheParameter)
{
    // The queries read the caller's objects, so changes between calls count.
    TKesraLine3<double> line(Vec(0, 0, 0), Vec(0, 0, 1));
    TKesraRay3<double> ray(line.origin, line.direction);
    LineQuery lineQuery(line, kZ5);
    RayQuery rayQuery(ray, kZ5);
    ASSERT_TRUE(lineQuery.Find());
    ASSERT_TRUE(rayQuery.Find());

    line.origin = Vec(0, 0, -7);
    EXPECT_TRUE(lineQuery.Test());
    EXPECT_EQ(5.0, lineQuery.GetLineParameter());

    line.direction = Vec(1, 0, 0);
    ray.direction = Vec(1, 0, 0);
    EXPECT_FALSE(lineQuery.Find());
    EXPECT_FALSE(rayQuery.Find());
    EXPECT_EQ(0, rayQuery.GetIntersectionType());
    EXPECT_EQ(5.0, lineQuery.GetLineParameter());
    EXPECT_EQ(5.0, rayQuery.GetRayParameter());
}

} // namespace
