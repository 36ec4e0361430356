#include "MathKit/Intersector.h"
#include "MathKit/IntrLine3Plane3.h"
#include "MathKit/IntrRay3Plane3.h"
#include "MathKit/Line3.h"
#include "MathKit/Plane3.h"
#include "MathKit/Ray3.h"
#include "MathKit/Vector3.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{

using namespace KesraMathKit;
using Vec = TKesraVector3<double>;
using Line = TKesraLine3<double>;
using Ray = TKesraRay3<double>;
using Plane = TKesraPlane3<double>;
using LineQuery = TKesraIntrLine3Plane3<double>;
using RayQuery = TKesraIntrRay3Plane3<double>;
using Base = TKesraIntersector<double, Vec>;

constexpr double kTolerance = 1e-08;
const double kJustAboveTolerance = std::nextafter(kTolerance, 1.0);
const Plane kPlaneZ0(Vec(0, 0, 1), 0.0);

// A query that overrides nothing answers with the base's operations.
class BareQuery : public Base
{
};

TEST(IntersectorTest, TypeValuesAreZeroOneAndFour)
{
    EXPECT_EQ(0, Base::INTERSECTION_EMPTY);
    EXPECT_EQ(1, Base::INTERSECTION_POINT);
    EXPECT_EQ(4, Base::INTERSECTION_LINE);
}

TEST(IntersectorTest, BaseAndReservedQueriesAnswerFalse)
{
    BareQuery bare;
    EXPECT_FALSE(bare.Test());
    EXPECT_FALSE(bare.Find());
    EXPECT_FALSE(bare.TestMoving(1.0, Vec(1, 0, 0), Vec(0, 1, 0)));
    EXPECT_FALSE(bare.FindMoving(1.0, Vec(1, 0, 0), Vec(0, 1, 0)));
    EXPECT_EQ(0, bare.GetIntersectionType());
    EXPECT_EQ(0.0, bare.GetContactTime());

    // The plane queries do not override the reserved ones, even on inputs
    // that meet.
    const Ray ray(Vec(0, 0, -1), Vec(0, 0, 1));
    RayQuery query(ray, kPlaneZ0);
    Base& asBase = query;
    EXPECT_FALSE(asBase.TestMoving(1.0, Vec(), Vec()));
    EXPECT_FALSE(asBase.FindMoving(1.0, Vec(), Vec()));
    EXPECT_TRUE(asBase.Find());
    EXPECT_EQ(0.0, query.GetContactTime());
}

TEST(IntersectorTest, ConstructionBindsWithTypeZero)
{
    const Line line(Vec(0, 0, -1), Vec(0, 0, 1));
    const LineQuery query(line, kPlaneZ0);
    EXPECT_EQ(0, query.GetIntersectionType());
    EXPECT_EQ(0.0, query.GetContactTime());
    EXPECT_EQ(&line, &query.GetLine());
    EXPECT_EQ(&kPlaneZ0, &query.GetPlane());
}

// Inputs with the line query's answer; the parameter is in multiples of the
// direction and only meaningful when the line finds a point or lies in the plane.
struct PlaneCase
{
    Vec origin;
    Vec direction;
    Plane plane;
    bool lineFinds;
    int type;
    double parameter;
};

const PlaneCase kPlaneCases[] = {
    {Vec(0, 0, 0), Vec(0, 0, 1), Plane(Vec(0, 0, 1), 5.0), true, 1, 5.0},
    {Vec(0, 0, 0), Vec(0, 0, 2), Plane(Vec(0, 0, 1), 5.0), true, 1, 2.5},
    {Vec(0, 0, 0), Vec(0, 0, 1), Plane(Vec(0, 0, 1), -5.0), true, 1, -5.0},
    {Vec(1, 1, 1), Vec(0, 0, -1), Plane(Vec(0, 0, 2), 4.0), true, 1, -1.0},
    {Vec(0, 0, 0), Vec(1, 0, 0), Plane(Vec(0, 0, 1), 5.0), false, 0, 0.0},
    {Vec(3, 4, 0), Vec(1, 0, 0), Plane(Vec(0, 0, 1), 0.0), true, 4, 0.0},
};

TEST(IntrLine3Plane3Test, FindsCrossingsAndLinesInThePlane)
{
    for (const PlaneCase& c : kPlaneCases)
    {
        const Line line(c.origin, c.direction);
        LineQuery query(line, c.plane);
        EXPECT_EQ(c.lineFinds, query.Find());
        EXPECT_EQ(c.type, query.GetIntersectionType());
        EXPECT_EQ(c.parameter, query.GetLineParameter());
    }
}

TEST(IntrRay3Plane3Test, AnswersAsTheLineNarrowedToNonNegativeParameters)
{
    for (const PlaneCase& c : kPlaneCases)
    {
        const Ray ray(c.origin, c.direction);
        RayQuery query(ray, c.plane);
        EXPECT_EQ(c.lineFinds && c.parameter >= 0.0, query.Find());
        EXPECT_EQ(c.type, query.GetIntersectionType());
        EXPECT_EQ(c.parameter, query.GetRayParameter());
    }
}

TEST(IntrLine3Plane3Test, ParallelLineMissesAndKeepsItsParameter)
{
    const Plane plane(Vec(0, 0, 1), 5.0);
    Line line(Vec(0, 0, 0), Vec(0, 0, 1));
    LineQuery query(line, plane);
    ASSERT_TRUE(query.Find());

    // The query reads the caller's line, so a changed line is seen.
    line.direction = Vec(1, 0, 0);
    EXPECT_FALSE(query.Find());
    EXPECT_EQ(Base::INTERSECTION_EMPTY, query.GetIntersectionType());
    EXPECT_EQ(5.0, query.GetLineParameter());
    EXPECT_FALSE(query.Test());
    EXPECT_EQ(Base::INTERSECTION_EMPTY, query.GetIntersectionType());
}

TEST(IntrLine3Plane3Test, TestSetsTheTypeButNeverTheParameter)
{
    Line line(Vec(0, 0, -3), Vec(0, 0, 1));
    LineQuery query(line, kPlaneZ0);
    ASSERT_TRUE(query.Find());
    ASSERT_EQ(3.0, query.GetLineParameter());

    line.origin = Vec(0, 0, -7);
    EXPECT_TRUE(query.Test());
    EXPECT_EQ(Base::INTERSECTION_POINT, query.GetIntersectionType());
    EXPECT_EQ(3.0, query.GetLineParameter());

    line.direction = Vec(0, 1, 0);
    line.origin = Vec(0, 0, 0);
    EXPECT_TRUE(query.Test());
    EXPECT_EQ(Base::INTERSECTION_LINE, query.GetIntersectionType());
    EXPECT_EQ(3.0, query.GetLineParameter());
}

TEST(IntrLine3Plane3Test, DirectionToleranceIsInclusiveForParallel)
{
    Line line(Vec(0, 0, -1), Vec(0, 0, kTolerance));
    LineQuery query(line, kPlaneZ0);
    EXPECT_FALSE(query.Find()) << "|n . d| = 1e-08 is parallel";
    EXPECT_EQ(Base::INTERSECTION_EMPTY, query.GetIntersectionType());

    line.direction = Vec(0, 0, -kTolerance);
    EXPECT_FALSE(query.Test());

    line.direction = Vec(0, 0, kJustAboveTolerance);
    EXPECT_TRUE(query.Find());
    EXPECT_EQ(Base::INTERSECTION_POINT, query.GetIntersectionType());
    EXPECT_EQ(1.0 / kJustAboveTolerance, query.GetLineParameter());
}

TEST(IntrLine3Plane3Test, DistanceToleranceIsInclusiveForInPlane)
{
    Line line(Vec(0, 0, kTolerance), Vec(1, 0, 0));
    LineQuery query(line, kPlaneZ0);
    EXPECT_TRUE(query.Find());
    EXPECT_EQ(Base::INTERSECTION_LINE, query.GetIntersectionType());

    line.origin = Vec(0, 0, -kTolerance);
    EXPECT_TRUE(query.Test());
    EXPECT_EQ(Base::INTERSECTION_LINE, query.GetIntersectionType());

    line.origin = Vec(0, 0, -kJustAboveTolerance);
    EXPECT_FALSE(query.Find());
    EXPECT_FALSE(query.Test());
    EXPECT_EQ(Base::INTERSECTION_EMPTY, query.GetIntersectionType());
}

TEST(IntrLine3Plane3Test, ZeroDirectionCountsAsParallel)
{
    Line line(Vec(1, 2, 0), Vec(0, 0, 0));
    LineQuery query(line, kPlaneZ0);
    EXPECT_TRUE(query.Find());
    EXPECT_EQ(Base::INTERSECTION_LINE, query.GetIntersectionType());
    EXPECT_EQ(0.0, query.GetLineParameter());

    line.origin = Vec(1, 2, 1);
    EXPECT_FALSE(query.Find());
    EXPECT_EQ(Base::INTERSECTION_EMPTY, query.GetIntersectionType());
}

TEST(IntrLine3Plane3Test, NaNDirectionIsParallelAndNaNDistanceIsOffThePlane)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    Line line(Vec(0, 0, 0), Vec(nan, 0, 1));
    LineQuery query(line, kPlaneZ0);
    EXPECT_TRUE(query.Find());
    EXPECT_EQ(Base::INTERSECTION_LINE, query.GetIntersectionType());

    line.origin = Vec(0, 0, nan);
    EXPECT_FALSE(query.Find());
    EXPECT_EQ(Base::INTERSECTION_EMPTY, query.GetIntersectionType());
}

TEST(IntrRay3Plane3Test, CrossingBehindTheOriginIsFalseButKeepsTypeAndParameter)
{
    const Plane plane(Vec(0, 0, 1), -5.0);
    const Ray ray(Vec(0, 0, 0), Vec(0, 0, 1));
    RayQuery query(ray, plane);
    EXPECT_FALSE(query.Find());
    EXPECT_EQ(Base::INTERSECTION_POINT, query.GetIntersectionType());
    EXPECT_EQ(-5.0, query.GetRayParameter());

    // Test answers through Find, with the same effects.
    RayQuery tested(ray, plane);
    EXPECT_FALSE(tested.Test());
    EXPECT_EQ(Base::INTERSECTION_POINT, tested.GetIntersectionType());
    EXPECT_EQ(-5.0, tested.GetRayParameter());
}

TEST(IntrRay3Plane3Test, ParallelRayMissesAndKeepsItsParameter)
{
    const Plane plane(Vec(0, 0, 1), 5.0);
    Ray ray(Vec(0, 0, 0), Vec(0, 0, 1));
    RayQuery query(ray, plane);
    ASSERT_TRUE(query.Test());
    ASSERT_EQ(5.0, query.GetRayParameter());

    ray.direction = Vec(1, 0, 0);
    EXPECT_FALSE(query.Test());
    EXPECT_EQ(Base::INTERSECTION_EMPTY, query.GetIntersectionType());
    EXPECT_EQ(5.0, query.GetRayParameter());
}

TEST(IntrRay3Plane3Test, ToleranceBoundsAreTheLineQuerys)
{
    Ray ray(Vec(0, 0, kTolerance), Vec(0, 0, 0));
    RayQuery query(ray, kPlaneZ0);
    EXPECT_TRUE(query.Find()) << "a zero direction within 1e-08 of the plane lies in it";
    EXPECT_EQ(Base::INTERSECTION_LINE, query.GetIntersectionType());

    ray.origin = Vec(0, 0, kJustAboveTolerance);
    EXPECT_FALSE(query.Find());
    EXPECT_EQ(Base::INTERSECTION_EMPTY, query.GetIntersectionType());

    ray.origin = Vec(0, 0, -1);
    ray.direction = Vec(0, 0, kTolerance);
    EXPECT_FALSE(query.Find());
    ray.direction = Vec(0, 0, kJustAboveTolerance);
    EXPECT_TRUE(query.Find());
    EXPECT_EQ(Base::INTERSECTION_POINT, query.GetIntersectionType());
}

} // namespace
