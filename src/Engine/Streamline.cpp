#include "Engine/Streamline.h"

#include "MathKit/IntrRay3Plane3.h"
#include "MathKit/Math.h"
#include "MathKit/Matrix4.h"
#include "MathKit/Plane3.h"
#include "MathKit/Ray3.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace KesraEngine
{

namespace
{

using Vector = CKesraStreamline::Vector;
using Matrix = KesraMathKit::TKesraMatrix4<double>;
using Plane = KesraMathKit::TKesraPlane3<double>;
using Ray = KesraMathKit::TKesraRay3<double>;
using RayPlaneQuery = KesraMathKit::TKesraIntrRay3Plane3<double>;
using Math = KesraMathKit::TKesraMath<double>;

// v scaled to unit length, or (0, 0, 0) where it has no usable direction.
Vector Unit(Vector v)
{
    v.Normalize();
    return v;
}

Vector NodePosition(const CKesraStreamlineData& record)
{
    const double* const xyz = record.GetCoord();
    return Vector(xyz[0], xyz[1], xyz[2]);
}

// Angles in degrees of the rotations Rx(a) and Ry(b) that turn the z axis of
// the first ring's frame onto the first segment delta. Coincident nodes give
// no direction: both angles stay 0 and the ring lies in a plane z = const.
void FirstSegmentAngles(const Vector& delta, double& a, double& b)
{
    a = 0.0;
    b = 0.0;
    const double length = delta.Length();
    if (length == 0.0)
    {
        return;
    }
    // Rounding can carry x a hair beyond 1 for a segment along the x axis.
    const double x = std::clamp(delta.x / length, -1.0, 1.0);
    a = std::atan2(delta.y / length, delta.z / length) * Math::RAD_TO_DEG;
    b = -std::asin(x) * Math::RAD_TO_DEG;
}

// The identity with p in the fourth column: a translation by p.
Matrix Translation(const Vector& p)
{
    Matrix t = Matrix::IDENTITY;
    t(0, 3) = p.x;
    t(1, 3) = p.y;
    t(2, 3) = p.z;
    return t;
}

// The normal of the plane that bisects the segments of directions incoming
// and outgoing at a node; (0, 0, 0) at a reversal.
Vector Bisector(const Vector& incoming, const Vector& outgoing)
{
    return Unit((outgoing + incoming) * 0.5);
}

// Slides every vertex of the previous ring along direction onto plane, into
// the same vertex of ring; a vertex the ray cannot reach keeps its value.
void CarryRing(const Vector* previous, Vector* ring, int slices, const Vector& direction,
               const Plane& plane)
{
    for (int j = 0; j < slices; ++j)
    {
        const Ray ray(previous[j], direction);
        RayPlaneQuery query(ray, plane);
        if (query.Find())
        {
            ring[j] = ray.origin + direction * query.GetRayParameter();
        }
    }
}

// Writes count vectors as 3 * count numbers.
template <typename Real>
void CopyVectors(const Vector* from, int count, Real* to)
{
    for (int j = 0; j < count; ++j)
    {
        to[3 * j] = static_cast<Real>(from[j].x);
        to[3 * j + 1] = static_cast<Real>(from[j].y);
        to[3 * j + 2] = static_cast<Real>(from[j].z);
    }
}

// Adds the unit normal a x b of one quadrilateral corner; a corner without
// area adds nothing.
void AddCornerTerm(Vector& sum, const Vector& a, const Vector& b)
{
    sum = sum + Unit(a.Cross(b));
}

} // namespace

// ---- Construction -----------------------------------------------------------

CKesraStreamline::CKesraStreamline()
    : m_created(false),
      m_drawStreamline(true),
      m_nodeCount(0),
      m_sliceCount(0),
      m_radius(1.0),
      m_auxiliarySize(1.0),
      m_nodes()
{
}

CKesraStreamline::~CKesraStreamline() = default;

CKesraStreamline& CKesraStreamline::operator=(const CKesraStreamline& other)
{
    std::vector<CKesraStreamlineData> nodes = other.m_nodes;
    m_created = other.m_created;
    m_drawStreamline = other.m_drawStreamline;
    m_nodeCount = other.m_nodeCount;
    m_sliceCount = other.m_sliceCount;
    m_radius = other.m_radius;
    m_auxiliarySize = other.m_auxiliarySize;
    m_nodes.swap(nodes);
    return *this;
}

// ---- Lifecycle --------------------------------------------------------------

bool CKesraStreamline::Create(int nodes, int slices, double radius, double auxiliarySize)
{
    if (m_created)
    {
        ReleaseNodes();
        m_created = false;
    }
    // Written so that NaN sizes are refused too.
    const bool accepted = nodes > 1 && slices > 0 && radius > 0.0 && auxiliarySize > 0.0;
    if (!accepted)
    {
        return false;
    }

    // The records come first: when memory runs out the streamline keeps the
    // sizes it last accepted, as after any other failed Create.
    std::vector<CKesraStreamlineData> records(static_cast<std::size_t>(nodes));
    for (CKesraStreamlineData& record : records)
    {
        record.SetSliceCount(slices);
    }
    m_radius = radius;
    m_auxiliarySize = auxiliarySize;
    m_nodeCount = nodes;
    m_sliceCount = slices;
    m_nodes = std::move(records);
    m_created = true;
    return true;
}

bool CKesraStreamline::Delete()
{
    if (!m_created)
    {
        return false;
    }
    ReleaseNodes();
    m_created = false;
    return true;
}

void CKesraStreamline::ReleaseNodes()
{
    // Swapping with an empty array gives the memory back, which clear() need
    // not do.
    std::vector<CKesraStreamlineData>().swap(m_nodes);
}

bool CKesraStreamline::IsNode(int node) const
{
    return m_created && node >= 0 && node < m_nodeCount;
}

bool CKesraStreamline::IsRingVertex(int node, int slice) const
{
    return IsNode(node) && slice >= 0 && slice < m_sliceCount;
}

// ---- Nodes and rings --------------------------------------------------------

bool CKesraStreamline::SetNodeCoord(int node, double* xyz)
{
    if (!IsNode(node) || xyz == nullptr)
    {
        return false;
    }
    m_nodes[static_cast<std::size_t>(node)].SetCoord(xyz[0], xyz[1], xyz[2]);
    return true;
}

bool CKesraStreamline::GetNodeCoord(int node, double* const xyz) const
{
    if (!IsNode(node) || xyz == nullptr)
    {
        return false;
    }
    std::copy_n(m_nodes[static_cast<std::size_t>(node)].GetCoord(), 3, xyz);
    return true;
}

bool CKesraStreamline::SetNodeColor(int node, unsigned char* const rgba)
{
    if (rgba == nullptr)
    {
        return false;
    }
    return SetStreamlineNodeColor(node, rgba[0], rgba[1], rgba[2], rgba[3]);
}

bool CKesraStreamline::GetNodeColor(int node, unsigned char* const rgb) const
{
    if (!IsNode(node) || rgb == nullptr)
    {
        return false;
    }
    std::copy_n(m_nodes[static_cast<std::size_t>(node)].GetColor(), 3, rgb);
    return true;
}

bool CKesraStreamline::SetStreamlineNodeColor(int node, unsigned char red, unsigned char green,
                                              unsigned char blue, unsigned char alpha)
{
    if (!IsNode(node))
    {
        return false;
    }
    m_nodes[static_cast<std::size_t>(node)].SetColor(red, green, blue, alpha);
    return true;
}

bool CKesraStreamline::SetSliceNodeCoord(int node, int slice, double const* const xyz)
{
    return IsRingVertex(node, slice) && xyz != nullptr &&
           m_nodes[static_cast<std::size_t>(node)].SetSliceNodeCoord(slice, xyz[0], xyz[1], xyz[2]);
}

bool CKesraStreamline::GetSliceNodeCoord(int node, int slice, double* const xyz) const
{
    return IsRingVertex(node, slice) &&
           m_nodes[static_cast<std::size_t>(node)].GetSliceNodeCoord(slice, xyz);
}

bool CKesraStreamline::SetSliceNodeNormal(int node, int slice, double const* const xyz)
{
    return IsRingVertex(node, slice) && xyz != nullptr &&
           m_nodes[static_cast<std::size_t>(node)].SetSliceNodeNormal(slice, xyz[0], xyz[1], xyz[2]);
}

bool CKesraStreamline::GetSliceNodeNormal(int node, int slice, double* const xyz) const
{
    return IsRingVertex(node, slice) &&
           m_nodes[static_cast<std::size_t>(node)].GetSliceNodeNormal(slice, xyz);
}

// ---- Generation -------------------------------------------------------------

bool CKesraStreamline::GenerationStreamline3D()
{
    if (!m_created)
    {
        return false;
    }
    Streamline3DFirstSlice();
    Streamline3DSliceNodes();
    Streamline3DSliceNormals();
    return true;
}

bool CKesraStreamline::ContinueStreamline3D()
{
    if (!m_created)
    {
        return false;
    }
    Streamline3DSliceNodes();
    Streamline3DSliceNormals();
    return true;
}

Vector* CKesraStreamline::RingVertices(std::size_t node)
{
    return m_nodes[node].m_sliceNodeCoords.data();
}

Vector* CKesraStreamline::RingNormals(std::size_t node)
{
    return m_nodes[node].m_sliceNodeNormals.data();
}

void CKesraStreamline::Streamline3DFirstSlice()
{
    const Vector origin = NodePosition(m_nodes[0]);

    double angleA = 0.0;
    double angleB = 0.0;
    FirstSegmentAngles(NodePosition(m_nodes[1]) - origin, angleA, angleB);
    Matrix rotationX;
    rotationX.MakeRotation(angleA, 1.0, 0.0, 0.0);
    Matrix rotationY;
    rotationY.MakeRotation(angleB, 0.0, 1.0, 0.0);
    const Matrix frame = Translation(origin) * rotationX * rotationY;

    // The angle is carried from vertex to vertex, not recomputed as
    // j * step, so that rings match the hosts' own vertices to the last bit.
    const double step = Math::TWO_PI / static_cast<double>(m_sliceCount);
    double theta = 0.0;
    Vector* const ring = RingVertices(0);
    for (int j = 0; j < m_sliceCount; ++j)
    {
        const Vector onCircle(m_radius * std::cos(theta), m_radius * std::sin(theta), 0.0);
        ring[j] = frame.TransformPoint(onCircle);
        theta += step;
    }
}

void CKesraStreamline::Streamline3DSliceNodes()
{
    const std::size_t last = static_cast<std::size_t>(m_nodeCount) - 1;
    // A segment's direction is outgoing at one node and incoming at the next:
    // it is normalised once.
    Vector incoming = Unit(NodePosition(m_nodes[1]) - NodePosition(m_nodes[0]));
    for (std::size_t i = 1; i <= last; ++i)
    {
        const Vector node = NodePosition(m_nodes[i]);
        const Vector outgoing = i < last ? Unit(NodePosition(m_nodes[i + 1]) - node) : incoming;
        const Vector normal = i < last ? Bisector(incoming, outgoing) : incoming;
        const Plane cuttingPlane(normal, normal.Dot(node));
        CarryRing(RingVertices(i - 1), RingVertices(i), m_sliceCount, incoming, cuttingPlane);
        incoming = outgoing;
    }
}

void CKesraStreamline::Streamline3DSliceNormals()
{
    const std::size_t lastNode = static_cast<std::size_t>(m_nodeCount) - 1;
    const int lastSlice = m_sliceCount - 1;
    for (std::size_t i = 0; i <= lastNode; ++i)
    {
        const Vector* const ring = RingVertices(i);
        const Vector* const back = i > 0 ? RingVertices(i - 1) : nullptr;
        const Vector* const front = i < lastNode ? RingVertices(i + 1) : nullptr;
        Vector* const normals = RingNormals(i);
        for (int j = 0; j <= lastSlice; ++j)
        {
            const Vector q = ring[j];
            const Vector toNext = ring[j == lastSlice ? 0 : j + 1] - q;
            const Vector toPrevious = ring[j == 0 ? lastSlice : j - 1] - q;

            Vector sum(0.0, 0.0, 0.0);
            if (back != nullptr)
            {
                const Vector toBack = back[j] - q;
                AddCornerTerm(sum, toNext, toBack);
                AddCornerTerm(sum, toBack, toPrevious);
            }
            if (front != nullptr)
            {
                const Vector toFront = front[j] - q;
                AddCornerTerm(sum, toFront, toNext);
                AddCornerTerm(sum, toPrevious, toFront);
            }
            // The corner terms point into the tube; the stored normal points
            // away from its axis.
            normals[j] = -Unit(sum);
        }
    }
}

// ---- Flat copies ------------------------------------------------------------

template <typename Real>
bool CKesraStreamline::CopyRings(Real* vertices, Real* normals) const
{
    if (!m_created)
    {
        return false;
    }
    const std::size_t stride = 3 * static_cast<std::size_t>(m_sliceCount);
    for (std::size_t i = 0; i < m_nodes.size(); ++i)
    {
        const CKesraStreamlineData& record = m_nodes[i];
        if (vertices != nullptr)
        {
            CopyVectors(record.m_sliceNodeCoords.data(), m_sliceCount, vertices + i * stride);
        }
        if (normals != nullptr)
        {
            CopyVectors(record.m_sliceNodeNormals.data(), m_sliceCount, normals + i * stride);
        }
    }
    return true;
}

bool CKesraStreamline::CopyTubeGeometry(double* vertices, double* normals) const
{
    return CopyRings(vertices, normals);
}

bool CKesraStreamline::CopyTubeGeometry(float* vertices, float* normals) const
{
    return CopyRings(vertices, normals);
}

} // namespace KesraEngine
