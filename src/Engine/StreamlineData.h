// CKesraStreamlineData: one node of a streamline polyline as the tube
// generator sees it.
//
// A record holds the node's position (model units), its colour (bytes red,
// green, blue, alpha) and the ring of tube vertices around the node, each
// vertex with its own normal. The ring accessors reach the indices 0 to
// GetSliceCount() - 1; the arrays behind them only ever grow, so entries
// beyond a lowered slice count keep their values and reappear when the count
// rises again. A default record offers twelve (0, 0, 0) vertices and normals.
//
// Records are plain values: copies are deep, also of the entries beyond the
// slice count.
#pragma once

#include "MathKit/Export.h"
#include "MathKit/Vector3.h"

#include <vector>

namespace KesraEngine
{

class CKesraStreamline;

class KESRA_ENGINE_API CKesraStreamlineData
{
public:
    using Vector = KesraMathKit::TKesraVector3<double>;

    // Position (0, 0, 0), colour (0, 0, 0, 0), twelve ring entries.
    CKesraStreamlineData();
    CKesraStreamlineData(const CKesraStreamlineData&) = default;
    CKesraStreamlineData(CKesraStreamlineData&&) noexcept = default;
    // Copies the rings aside first: when memory runs out the record stays as
    // it was, its slice count never reaching beyond its arrays.
    CKesraStreamlineData& operator=(const CKesraStreamlineData& other);
    CKesraStreamlineData& operator=(CKesraStreamlineData&&) noexcept = default;
    ~CKesraStreamlineData() = default;

    // The record's own x, y, z; writes through the pointer change the record.
    double* GetCoord() { return m_coord; }
    const double* GetCoord() const { return m_coord; }
    void SetCoord(double x, double y, double z);

    void SetColor(unsigned char red, unsigned char green, unsigned char blue, unsigned char alpha);
    // The record's own four bytes red, green, blue, alpha.
    unsigned char* GetColor() { return m_color; }
    const unsigned char* GetColor() const { return m_color; }

    // Stores any count; grows the vertex and normal arrays to it with
    // (0, 0, 0) entries, never shrinks them. A count of 0 or less makes every
    // ring accessor refuse.
    void SetSliceCount(int count);
    int GetSliceCount() const { return m_sliceCount; }

    // The ring accessors refuse (false, nothing written, neither here nor in
    // the caller's buffer) an index below 0 or not below the slice count, and
    // the getters a null buffer. The getters write x, y, z into xyz[0 ... 2].
    bool SetSliceNodeCoord(int index, double x, double y, double z);
    bool GetSliceNodeCoord(int index, double* const xyz) const;
    bool SetSliceNodeNormal(int index, double x, double y, double z);
    bool GetSliceNodeNormal(int index, double* const xyz) const;

private:
    // The tube generator reads and writes the rings in place, vertex after
    // vertex, without an index test per vertex: Create sized them.
    friend class CKesraStreamline;

    bool IsSliceIndex(int index) const { return index >= 0 && index < m_sliceCount; }

    double m_coord[3];
    unsigned char m_color[4];
    int m_sliceCount;
    std::vector<Vector> m_sliceNodeCoords;
    std::vector<Vector> m_sliceNodeNormals;
};

} // namespace KesraEngine
