// Math kit and plane queries: vectors, matrices and the line and ray
// intersections, with any double. Unit vectors must be unit or zero,
// rotations must stay rotations, inverses must invert, and an intersection
// that is reported must lie on the plane.
#include "FuzzInput.h"

#include "MathKit/IntrLine3Plane3.h"
#include "MathKit/IntrRay3Plane3.h"
#include "MathKit/Matrix4.h"
#include "MathKit/Vector3.h"

#include <cmath>

namespace
{

using namespace KesraMathKit;
using KesraFuzz::FuzzInput;
using KesraFuzz::OperationClock;
using KesraFuzz::Require;
using Vec = TKesraVector3<double>;
using Mat = TKesraMatrix4<double>;

Vec ReadVector(FuzzInput& in)
{
    const double x = in.Double();
    const double y = in.Double();
    const double z = in.Double();
    return Vec(x, y, z);
}

Mat ReadMatrix(FuzzInput& in)
{
    Mat m;
    for (int k = 0; k < 16; ++k)
    {
        m[k] = in.Double();
    }
    return m;
}

bool Finite(const Vec& v) { return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z); }

bool Bounded(const Vec& v, double limit)
{
    return std::abs(v.x) <= limit && std::abs(v.y) <= limit && std::abs(v.z) <= limit;
}

void CheckNormalize(const Vec& v)
{
    Vec unit = v;
    unit.Normalize();
    const double length = v.Length();
    if (!(length > 1e-8))
    {
        Require(unit == Vec(0, 0, 0), "a short or NaN vector normalises to zero");
    }
    else if (std::isfinite(length) && Finite(v))
    {
        Require(std::abs(unit.Length() - 1.0) < 1e-12, "a normalised vector has unit length");
    }
}

void CheckRotation(double angle, Vec axis)
{
    Mat r;
    r.MakeRotation(angle, axis.x, axis.y, axis.z);
    const int fixedZero[] = {3, 7, 11, 12, 13, 14};
    for (const int k : fixedZero)
    {
        Require(r[k] == 0.0, "a rotation keeps its last row and column");
    }
    Require(r[15] == 1.0, "a rotation keeps its corner");
    if (!std::isfinite(angle) || !Finite(axis))
    {
        return;
    }
    // Orthonormal columns: R times its transpose is the identity.
    for (int i = 0; i < 3; ++i)
    {
        for (int j = 0; j < 3; ++j)
        {
            double sum = 0.0;
            for (int k = 0; k < 3; ++k)
            {
                sum += r(i, k) * r(j, k);
            }
            Require(std::abs(sum - (i == j ? 1.0 : 0.0)) < 1e-9, "a rotation is orthonormal");
        }
    }
}

void CheckInverse(const Mat& m)
{
    const Mat inverse = m.Inverse();
    if (inverse == Mat::ZERO)
    {
        return;
    }
    for (int k = 0; k < 16; ++k)
    {
        if (!(std::abs(m[k]) <= 4.0) || (std::abs(m[k]) < 1e-3 && m[k] != 0.0))
        {
            return; // too ill-conditioned for a tolerance to mean anything
        }
    }
    const Mat product = m * inverse;
    double worst = 0.0;
    for (int k = 0; k < 16; ++k)
    {
        worst = std::max(worst, std::abs(product[k] - Mat::IDENTITY[k]));
    }
    // A determinant barely above the tolerance inverts poorly; only a sound
    // one must give the identity back.
    if (std::abs(inverse[0]) < 1e3 && std::abs(inverse[5]) < 1e3 && std::abs(inverse[10]) < 1e3 &&
        std::abs(inverse[15]) < 1e3)
    {
        Require(!(worst > 1e-6) || !std::isfinite(worst), "a matrix times its inverse is I");
    }
}

void CheckPlaneQueries(const Vec& origin, const Vec& direction, const Vec& normal,
                       double constant)
{
    const TKesraPlane3<double> plane(normal, constant);
    const TKesraLine3<double> line(origin, direction);
    TKesraIntrLine3Plane3<double> lineFind(line, plane);
    TKesraIntrLine3Plane3<double> lineTest(line, plane);
    const bool found = lineFind.Find();
    Require(found == lineTest.Test(), "Test and Find agree on a line");
    Require(lineFind.GetIntersectionType() == lineTest.GetIntersectionType(),
            "Test and Find give one type");
    const int type = lineFind.GetIntersectionType();
    Require(found == (type != TKesraIntrLine3Plane3<double>::INTERSECTION_EMPTY),
            "a line query reports a type exactly when it finds");

    const TKesraIntrLine3Plane3<double> copy(lineFind);
    Require(copy.GetIntersectionType() == type &&
                KesraFuzz::SameBits(copy.GetLineParameter(), lineFind.GetLineParameter()),
            "a copied query equals its original");

    if (found && type == TKesraIntrLine3Plane3<double>::INTERSECTION_POINT && Bounded(origin, 1e3) &&
        Bounded(direction, 1e3) && Bounded(normal, 1e3) && std::abs(constant) <= 1e3 &&
        std::abs(normal.Dot(direction)) > 1e-3)
    {
        const Vec point = origin + direction * lineFind.GetLineParameter();
        const double scale = 1.0 + normal.Length() * (1.0 + point.Length()) + std::abs(constant);
        Require(std::abs(normal.Dot(point) - constant) <= 1e-9 * scale,
                "a found point lies on the plane");
    }

    const TKesraRay3<double> ray(origin, direction);
    TKesraIntrRay3Plane3<double> rayFind(ray, plane);
    TKesraIntrRay3Plane3<double> rayTest(ray, plane);
    const bool rayFound = rayFind.Find();
    Require(rayFound == rayTest.Test(), "Test and Find agree on a ray");
    Require(!rayFound || rayFind.GetRayParameter() >= 0.0, "a ray meets a plane ahead only");
    Require(!rayFound || found, "a ray meets only where its line does");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzInput in(data, size);
    while (!in.Empty())
    {
        OperationClock clock("math kit operation");
        switch (in.Choice(5))
        {
        case 0:
            CheckNormalize(ReadVector(in));
            break;
        case 1:
        {
            const double angle = in.Double();
            CheckRotation(angle, ReadVector(in));
            break;
        }
        case 2:
            CheckInverse(ReadMatrix(in));
            break;
        case 3:
        {
            const Vec origin = ReadVector(in);
            const Vec direction = ReadVector(in);
            const Vec normal = ReadVector(in);
            CheckPlaneQueries(origin, direction, normal, in.Double());
            break;
        }
        default:
        {
            // Products and transforms of anything: copies compare equal and
            // the identity changes nothing that is finite.
            const Mat m = ReadMatrix(in);
            const Vec p = ReadVector(in);
            const Mat copy = m;
            Require(std::memcmp(copy.Data(), m.Data(), sizeof(double) * 16) == 0,
                    "a copied matrix equals its original");
            const Mat product = Mat::IDENTITY * m;
            const Vec moved = Mat::IDENTITY.TransformPoint(p);
            bool finite = true;
            for (int k = 0; k < 16; ++k)
            {
                finite = finite && std::isfinite(m[k]);
            }
            // 0 times an infinite entry is NaN, so only finite matrices compare.
            for (int k = 0; finite && k < 16; ++k)
            {
                Require(product[k] == m[k], "I times M is M");
            }
            Require(!Finite(p) || moved == p, "the identity moves no point");
            (void)m.TransformPoint(p);
            (void)p.Cross(moved);
            break;
        }
        }
    }
    return 0;
}
