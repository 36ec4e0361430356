#include "Engine/Curve2D.h"

#include <cmath>
#include <cstddef>

namespace KesraEngine
{

namespace
{

// Bounds of the empty range: any node value between them replaces them.
constexpr double kEmptyMin = 1e11;
constexpr double kEmptyMax = -1e11;

// A hidden node this close to a bound probably defined it.
constexpr double kBoundTolerance = 1e-10;

// Strict widening of one axis: a value equal to a bound changes nothing.
bool WidenAxis(double value, double& minimum, double& maximum)
{
    bool moved = false;
    if (minimum > value)
    {
        minimum = value;
        moved = true;
    }
    if (value > maximum)
    {
        maximum = value;
        moved = true;
    }
    return moved;
}

bool IsNear(double value, double bound)
{
    return std::fabs(value - bound) <= kBoundTolerance;
}

} // namespace

CKesraCurve2D::CKesraCurve2D()
    : m_nodes(),
      m_xMin(kEmptyMin),
      m_yMin(kEmptyMin),
      m_xMax(kEmptyMax),
      m_yMax(kEmptyMax)
{
}

// ---- Insertion --------------------------------------------------------------
//
// The list grows before the range widens, so that a failed allocation leaves
// both as they were.

bool CKesraCurve2D::InsertNode(double x, double y)
{
    m_nodes.push_back(Node{x, y, true});
    Widen(x, y);
    return true;
}

bool CKesraCurve2D::InsertNodeX(double x)
{
    m_nodes.push_back(Node{x, 0.0, true});
    WidenX(x);
    return true;
}

bool CKesraCurve2D::InsertNodeY(double y)
{
    m_nodes.push_back(Node{0.0, y, true});
    WidenY(y);
    return true;
}

bool CKesraCurve2D::InsertNode(int index, double x, double y)
{
    if (!IsValidIndex(index))
    {
        return false;
    }
    m_nodes.insert(m_nodes.begin() + index, Node{x, y, true});
    Widen(x, y);
    return true;
}

// ---- Removal ----------------------------------------------------------------

bool CKesraCurve2D::RemoveNode(int index, bool& rangeChanged)
{
    rangeChanged = false;
    if (!IsValidIndex(index))
    {
        return false;
    }
    const bool definedRange = IsOnOrOutsideRange(m_nodes[static_cast<std::size_t>(index)]);
    m_nodes.erase(m_nodes.begin() + index);
    if (definedRange)
    {
        UpdateRange();
        rangeChanged = true;
    }
    return true;
}

bool CKesraCurve2D::ClearNodes()
{
    Initial();
    m_nodes.clear();
    return true;
}

// ---- Queries ----------------------------------------------------------------

bool CKesraCurve2D::GetNodes(int& count) const
{
    count = static_cast<int>(m_nodes.size());
    return true;
}

bool CKesraCurve2D::GetCureveRange(double& xMin, double& yMin, double& xMax, double& yMax) const
{
    xMin = m_xMin;
    yMin = m_yMin;
    xMax = m_xMax;
    yMax = m_yMax;
    return true;
}

bool CKesraCurve2D::GetNode(int index, double& x, double& y) const
{
    if (!IsValidIndex(index))
    {
        return false;
    }
    const Node& node = m_nodes[static_cast<std::size_t>(index)];
    x = node.x;
    y = node.y;
    return true;
}

bool CKesraCurve2D::GetNodeVis(int index, bool& visible) const
{
    if (!IsValidIndex(index))
    {
        return false;
    }
    visible = m_nodes[static_cast<std::size_t>(index)].visible;
    return true;
}

// ---- Moving -----------------------------------------------------------------

bool CKesraCurve2D::SetNode(int index, double x, double y, bool& rangeChanged)
{
    rangeChanged = false;
    if (!IsValidIndex(index))
    {
        return false;
    }
    Node& node = m_nodes[static_cast<std::size_t>(index)];
    node.x = x;
    node.y = y;
    rangeChanged = Widen(x, y);
    return true;
}

bool CKesraCurve2D::SetNodeX(int index, double x, bool& rangeChanged)
{
    rangeChanged = false;
    if (!IsValidIndex(index))
    {
        return false;
    }
    m_nodes[static_cast<std::size_t>(index)].x = x;
    rangeChanged = WidenX(x);
    return true;
}

bool CKesraCurve2D::SetNodeY(int index, double y, bool& rangeChanged)
{
    rangeChanged = false;
    if (!IsValidIndex(index))
    {
        return false;
    }
    m_nodes[static_cast<std::size_t>(index)].y = y;
    rangeChanged = WidenY(y);
    return true;
}

// ---- Visibility -------------------------------------------------------------

bool CKesraCurve2D::SetNodeVis(int index, bool visible, bool& rangeChanged)
{
    rangeChanged = false;
    if (!IsValidIndex(index))
    {
        return false;
    }
    Node& node = m_nodes[static_cast<std::size_t>(index)];
    if (node.visible == visible)
    {
        return false;
    }
    node.visible = visible;
    rangeChanged = visible ? Widen(node.x, node.y) : IsNearBound(node);
    return true;
}

bool CKesraCurve2D::SetAllNodeVis(bool visible)
{
    for (Node& node : m_nodes)
    {
        node.visible = visible;
    }
    UpdateRange();
    return true;
}

// ---- Range ------------------------------------------------------------------

void CKesraCurve2D::Initial()
{
    m_xMin = kEmptyMin;
    m_yMin = kEmptyMin;
    m_xMax = kEmptyMax;
    m_yMax = kEmptyMax;
}

void CKesraCurve2D::UpdateRange()
{
    Initial();
    for (const Node& node : m_nodes)
    {
        if (node.visible)
        {
            Widen(node.x, node.y);
        }
    }
}

bool CKesraCurve2D::WidenX(double x)
{
    return WidenAxis(x, m_xMin, m_xMax);
}

bool CKesraCurve2D::WidenY(double y)
{
    return WidenAxis(y, m_yMin, m_yMax);
}

bool CKesraCurve2D::Widen(double x, double y)
{
    const bool xMoved = WidenX(x);
    const bool yMoved = WidenY(y);
    return xMoved || yMoved;
}

bool CKesraCurve2D::IsValidIndex(int index) const
{
    return index >= 0 && static_cast<std::size_t>(index) < m_nodes.size();
}

bool CKesraCurve2D::IsOnOrOutsideRange(const Node& node) const
{
    return node.x <= m_xMin || node.y <= m_yMin || node.x >= m_xMax || node.y >= m_yMax;
}

bool CKesraCurve2D::IsNearBound(const Node& node) const
{
    return IsNear(node.x, m_xMin) || IsNear(node.y, m_yMin) || IsNear(node.x, m_xMax) ||
           IsNear(node.y, m_yMax);
}

} // namespace KesraEngine
