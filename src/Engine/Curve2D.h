// CKesraCurve2D: an editable curve in a plane, an ordered list of nodes with
// the rectangle they span (the curve range).
//
// Each node holds x, y and a visibility flag; new nodes are visible. The list
// keeps insertion order and is never sorted. A node is addressed by index, its
// zero-based position; every indexed operation returns false and changes
// nothing unless 0 <= index < node count.
//
// The range is kept incrementally. Inserting, moving and showing nodes only
// widen it, with strict comparisons (a value equal to a bound changes nothing),
// and moving widens it also for a hidden node. It is recomputed from the
// visible nodes only by RemoveNode (when the removed node lay on or outside
// the range) and by SetAllNodeVis, so in between it may be wider than the
// visible nodes. The empty range is x and y minimum 1e11, x and y maximum
// -1e11, so a minimum exceeds its maximum until a node is counted.
//
// Operations with a rangeChanged output set it to false before they check
// their index. A plain value class: copies carry every node and the range.
// Nothing is caught: exhausted memory while the list grows passes through.
#pragma once

#include "MathKit/Export.h"

#include <vector>

namespace KesraEngine
{

class KESRA_ENGINE_API CKesraCurve2D
{
public:
    // No nodes, the empty range.
    CKesraCurve2D();
    CKesraCurve2D(const CKesraCurve2D&) = default;
    CKesraCurve2D& operator=(const CKesraCurve2D&) = default;
    ~CKesraCurve2D() = default;

    // ---- Insertion ----------------------------------------------------------
    // Each grows the list before it widens the range: a failed allocation changes neither.

    // Appends the node (x, y) and widens the range by it. Always true.
    bool InsertNode(double x, double y);
    // Appends (x, 0); only the x range takes the node in. Always true.
    bool InsertNodeX(double x);
    // Appends (0, y); only the y range takes the node in. Always true.
    bool InsertNodeY(double y);
    // Puts (x, y) at index, moving that node and the ones after it back, and
    // widens the range. The index must name an existing node, so this cannot
    // append and always fails on an empty curve.
    bool InsertNode(int index, double x, double y);

    // ---- Removal ------------------------------------------------------------

    // Removes the node at index. When it lay on or outside the range (any
    // coordinate at or beyond a bound, visible or not), the range is
    // recomputed from the visible nodes and rangeChanged is true.
    bool RemoveNode(int index, bool& rangeChanged);
    // No nodes, the empty range. Always true.
    bool ClearNodes();

    // ---- Queries ------------------------------------------------------------

    // Always true.
    bool GetNodes(int& count) const;
    // Always true.
    bool GetCureveRange(double& xMin, double& yMin, double& xMax, double& yMax) const;
    // Leaves x and y untouched for a bad index.
    bool GetNode(int index, double& x, double& y) const;
    // Leaves visible untouched for a bad index.
    bool GetNodeVis(int index, bool& visible) const;

    // ---- Moving (never narrows the range) -----------------------------------

    // Store the new coordinates, keep the visibility and widen the range by
    // them; rangeChanged tells whether a bound moved.
    bool SetNode(int index, double x, double y, bool& rangeChanged);
    bool SetNodeX(int index, double x, bool& rangeChanged);
    bool SetNodeY(int index, double y, bool& rangeChanged);

    // ---- Visibility ---------------------------------------------------------

    // False also when the node already has that visibility. Showing widens the
    // range by the node; rangeChanged tells whether a bound moved. Hiding
    // leaves the range alone; rangeChanged is true when the node lies within
    // 1e-10 of a bound, a hint that the host may want a recomputed range.
    bool SetNodeVis(int index, bool visible, bool& rangeChanged);
    // Sets every node's visibility, then recomputes the range (hiding all
    // leaves the empty range). Always true.
    bool SetAllNodeVis(bool visible);

private:
    struct Node
    {
        double x;
        double y;
        bool visible;
    };

    // Sets the empty range.
    void Initial();
    // The empty range widened by every visible node, in list order.
    void UpdateRange();

    // Each returns whether a bound moved.
    bool WidenX(double x);
    bool WidenY(double y);
    bool Widen(double x, double y);

    bool IsValidIndex(int index) const;
    // Whether the node lies on or outside the range in any coordinate.
    bool IsOnOrOutsideRange(const Node& node) const;
    // Whether the node lies within 1e-10 of any bound.
    bool IsNearBound(const Node& node) const;

    std::vector<Node> m_nodes;
    double m_xMin;
    double m_yMin;
    double m_xMax;
    double m_yMax;
};

} // namespace KesraEngine
