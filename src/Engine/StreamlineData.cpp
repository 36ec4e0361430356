#include "Engine/StreamlineData.h"

#include <algorithm>
#include <cstddef>

namespace KesraEngine
{

namespace
{

using Vector = CKesraStreamlineData::Vector;

constexpr int kDefaultSliceCount = 12;

// Grows entries to count (0, 0, 0) entries; never shortens them.
void GrowTo(std::vector<Vector>& entries, int count)
{
    if (count > 0 && static_cast<std::size_t>(count) > entries.size())
    {
        entries.resize(static_cast<std::size_t>(count));
    }
}

bool WriteEntry(std::vector<Vector>& entries, int index, double x, double y, double z)
{
    entries[static_cast<std::size_t>(index)] = Vector(x, y, z);
    return true;
}

bool ReadEntry(const std::vector<Vector>& entries, int index, double* const xyz)
{
    if (xyz == nullptr)
    {
        return false;
    }
    const Vector& entry = entries[static_cast<std::size_t>(index)];
    xyz[0] = entry.x;
    xyz[1] = entry.y;
    xyz[2] = entry.z;
    return true;
}

} // namespace

CKesraStreamlineData::CKesraStreamlineData()
    : m_coord{0.0, 0.0, 0.0},
      m_color{0, 0, 0, 0},
      m_sliceCount(kDefaultSliceCount),
      m_sliceNodeCoords(kDefaultSliceCount),
      m_sliceNodeNormals(kDefaultSliceCount)
{
}

CKesraStreamlineData& CKesraStreamlineData::operator=(const CKesraStreamlineData& other)
{
    std::vector<Vector> coords = other.m_sliceNodeCoords;
    std::vector<Vector> normals = other.m_sliceNodeNormals;
    std::copy_n(other.m_coord, 3, m_coord);
    std::copy_n(other.m_color, 4, m_color);
    m_sliceCount = other.m_sliceCount;
    m_sliceNodeCoords.swap(coords);
    m_sliceNodeNormals.swap(normals);
    return *this;
}

void CKesraStreamlineData::SetCoord(double x, double y, double z)
{
    m_coord[0] = x;
    m_coord[1] = y;
    m_coord[2] = z;
}

void CKesraStreamlineData::SetColor(unsigned char red, unsigned char green, unsigned char blue,
                                    unsigned char alpha)
{
    m_color[0] = red;
    m_color[1] = green;
    m_color[2] = blue;
    m_color[3] = alpha;
}

void CKesraStreamlineData::SetSliceCount(int count)
{
    // The arrays grow before the count changes, so that a failed allocation
    // never leaves a count that reaches beyond them.
    GrowTo(m_sliceNodeCoords, count);
    GrowTo(m_sliceNodeNormals, count);
    m_sliceCount = count;
}

bool CKesraStreamlineData::SetSliceNodeCoord(int index, double x, double y, double z)
{
    return IsSliceIndex(index) && WriteEntry(m_sliceNodeCoords, index, x, y, z);
}

bool CKesraStreamlineData::GetSliceNodeCoord(int index, double* const xyz) const
{
    return IsSliceIndex(index) && ReadEntry(m_sliceNodeCoords, index, xyz);
}

bool CKesraStreamlineData::SetSliceNodeNormal(int index, double x, double y, double z)
{
    return IsSliceIndex(index) && WriteEntry(m_sliceNodeNormals, index, x, y, z);
}

bool CKesraStreamlineData::GetSliceNodeNormal(int index, double* const xyz) const
{
    return IsSliceIndex(index) && ReadEntry(m_sliceNodeNormals, index, xyz);
}

} // namespace KesraEngine
