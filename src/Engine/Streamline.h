// CKesraStreamline: the geometry of a tube around a polyline of nodes.
//
// The host creates a tube with its number of nodes N, vertices per ring S and
// radius (model units), sets the node positions and colours, and calls
// GenerationStreamline3D. That leaves, in the node records, a ring of S
// vertices around every node and one outward unit normal per vertex:
// - ring 0 is the circle of the radius perpendicular to the first segment;
//   seen from ahead of node 0 (from where the first segment points) it runs
//   counter-clockwise with growing ring index;
// - every later ring is the ring before it slid along the incoming segment
//   onto the cutting plane at its node: the plane bisecting the two segments
//   there, or at the last node the plane perpendicular to the last segment;
//   vertex j of one ring comes from vertex j of the ring before, so an index
//   runs along a line of the tube. A vertex that cannot be slid there (it
//   would have to move backwards, or the segment has no direction and the
//   vertex is off the plane) keeps the value it had;
// - each normal is the mean direction of the corners of the two or four
//   quadrilaterals meeting at its vertex, (0, 0, 0) where there is none.
//
// Generation allocates nothing: Create sizes every record, and each plane
// query lives on the stack. Each segment's direction is normalised once, and
// the rings are walked in place, vertex after vertex.
//
// The class is the base of a drawing backend's streamline: its constructor is
// protected and its one abstract operation, which the library never calls,
// is the backend's. Copies are deep.
#pragma once

#include "Engine/StreamlineData.h"
#include "MathKit/Export.h"
#include "MathKit/Vector3.h"

#include <cstddef>
#include <vector>

namespace KesraEngine
{

class CKesraRenderer;

class KESRA_ENGINE_API CKesraStreamline
{
public:
    using Vector = KesraMathKit::TKesraVector3<double>;

    CKesraStreamline(const CKesraStreamline&) = default;
    // Copies the node records aside first: when memory runs out the
    // streamline stays as it was, its counts never reaching beyond its records.
    CKesraStreamline& operator=(const CKesraStreamline& other);
    // Not virtual: a backend streamline is destroyed through its own type.
    ~CKesraStreamline();

    // Draws the tube, when the draw flag is set, into the frame that renderer
    // is drawing, seen through renderer's camera: quadrilaterals between
    // consecutive rings from the ring vertices, normals and node colours of
    // the records. A backend without a depth buffer hands the quadrilaterals
    // to its renderer, which paints those of all tubes back to front.
    virtual void DrawStreamline(CKesraRenderer& renderer) = 0;

    // Discards any existing tube first, even when the arguments are then
    // refused. Refused (false, node count, slice count, radius and auxiliary
    // size kept) unless nodes > 1, slices > 0, radius > 0 and auxiliarySize
    // > 0. Otherwise makes nodes records at (0, 0, 0) with slices ring
    // vertices and normals at (0, 0, 0) each.
    bool Create(int nodes, int slices, double radius, double auxiliarySize);
    // False when not created; otherwise releases the records.
    bool Delete();
    bool IsCreate() const { return m_created; }

    // The last accepted counts, also while not created.
    int GetNodes() const { return m_nodeCount; }
    int GetSlices() const { return m_sliceCount; }

    // A flag for the backend; the library never reads it.
    void SetDrawStreamline(bool draw) { m_drawStreamline = draw; }
    bool GetDrawStreamline() const { return m_drawStreamline; }

    // Node operations refuse (false, nothing changed, neither here nor in the
    // caller's buffer) when not created, for a node index outside 0 ... N - 1
    // and for a null buffer. Positions are three doubles x, y, z, colours four
    // bytes red, green, blue, alpha.
    bool SetNodeCoord(int node, double* xyz);
    bool GetNodeCoord(int node, double* const xyz) const;
    bool SetNodeColor(int node, unsigned char* const rgba);
    // Writes red, green and blue only; rgb[3] stays untouched.
    bool GetNodeColor(int node, unsigned char* const rgb) const;
    bool SetStreamlineNodeColor(int node, unsigned char red, unsigned char green,
                                unsigned char blue, unsigned char alpha);

    // Ring operations refuse as the node operations, and in addition for a
    // ring index outside 0 ... S - 1. A later generation overwrites what they
    // wrote wherever it places a vertex.
    bool SetSliceNodeCoord(int node, int slice, double const* const xyz);
    bool GetSliceNodeCoord(int node, int slice, double* const xyz) const;
    bool SetSliceNodeNormal(int node, int slice, double const* const xyz);
    bool GetSliceNodeNormal(int node, int slice, double* const xyz) const;

    // False when not created; otherwise recomputes every ring and normal from
    // the node positions and returns true.
    bool GenerationStreamline3D();
    // False when not created; otherwise keeps ring 0 as it stands (as
    // SetSliceNodeCoord left it) and recomputes every later ring and every
    // normal from it and the node positions. A line too long to hold a record
    // per node is made in parts this way: a part over nodes a - 1 to b + 2 of
    // the line, given the line's ring a - 1 as its ring 0, holds the line's
    // own rings and normals at nodes a to b, to the last bit.
    bool ContinueStreamline3D();

    // Copies every ring vertex and every normal into flat arrays for a vertex
    // buffer, in one pass: x, y, z of vertex (node i, ring index j) at
    // 3 * (i * S + j), 3 * N * S values per array. Either array may be null
    // and is then skipped. False, nothing written, when not created.
    bool CopyTubeGeometry(double* vertices, double* normals) const;
    // The same narrowed to float, as a graphics interface takes it.
    bool CopyTubeGeometry(float* vertices, float* normals) const;

protected:
    CKesraStreamline();

    bool m_created;
    bool m_drawStreamline;
    int m_nodeCount;
    int m_sliceCount;
    double m_radius;
    // Required positive by Create and kept for the backend; unused here.
    double m_auxiliarySize;
    // One record per node. While created, each keeps the slice count and at
    // least S ring vertices and normals that Create gave it: generation and
    // the flat copy reach them in place, without asking the record. A derived
    // class that replaces a record or changes its slice count must restore
    // that before generating.
    std::vector<CKesraStreamlineData> m_nodes;

private:
    bool IsNode(int node) const;
    bool IsRingVertex(int node, int slice) const;
    void ReleaseNodes();
    // The ring vertices and normals of a node's record, in place; while
    // created each holds at least S entries.
    Vector* RingVertices(std::size_t node);
    Vector* RingNormals(std::size_t node);
    template <typename Real>
    bool CopyRings(Real* vertices, Real* normals) const;

    // The three generation stages, in the order they run.
    void Streamline3DFirstSlice();
    void Streamline3DSliceNodes();
    void Streamline3DSliceNormals();
};

} // namespace KesraEngine
