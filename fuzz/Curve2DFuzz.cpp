// The two-dimensional curve against a plain list of its nodes. After every
// step the curve holds the list's nodes in order; refused operations clear
// their range-changed output; the range only widens between recomputations,
// a reported change is a real one, and wherever the curve recomputes its
// range (removing a node on a bound, SetAllNodeVis, ClearNodes) it equals a
// brute-force recomputation from the visible nodes. A copy equals its
// original.
#include "FuzzInput.h"

#include "Engine/Curve2D.h"

#include <cmath>
#include <vector>

namespace
{

using KesraEngine::CKesraCurve2D;
using KesraFuzz::FuzzInput;
using KesraFuzz::OperationClock;
using KesraFuzz::Require;
using KesraFuzz::SameBits;

struct Node
{
    double x;
    double y;
    bool visible;
};

struct Range
{
    double xMin, yMin, xMax, yMax;

    bool operator==(const Range& r) const
    {
        return xMin == r.xMin && yMin == r.yMin && xMax == r.xMax && yMax == r.yMax;
    }
    // Every bound where it was or further out.
    bool Contains(const Range& r) const
    {
        return xMin <= r.xMin && yMin <= r.yMin && xMax >= r.xMax && yMax >= r.yMax;
    }
};

Range Reported(const CKesraCurve2D& curve)
{
    Range r{};
    Require(curve.GetCureveRange(r.xMin, r.yMin, r.xMax, r.yMax), "GetCureveRange answers true");
    return r;
}

// The empty range, then each visible node's numbers taken in; NaN never moves
// a bound.
Range BruteForce(const std::vector<Node>& nodes)
{
    Range r{1e11, 1e11, -1e11, -1e11};
    for (const Node& n : nodes)
    {
        if (!n.visible)
        {
            continue;
        }
        r.xMin = std::isnan(n.x) ? r.xMin : std::fmin(r.xMin, n.x);
        r.xMax = std::isnan(n.x) ? r.xMax : std::fmax(r.xMax, n.x);
        r.yMin = std::isnan(n.y) ? r.yMin : std::fmin(r.yMin, n.y);
        r.yMax = std::isnan(n.y) ? r.yMax : std::fmax(r.yMax, n.y);
    }
    return r;
}

void CheckNodes(const CKesraCurve2D& curve, const std::vector<Node>& nodes)
{
    int count = -1;
    Require(curve.GetNodes(count) && count == static_cast<int>(nodes.size()), "the node count");
    for (int i = 0; i < count; ++i)
    {
        double x = 0, y = 0;
        bool visible = false;
        Require(curve.GetNode(i, x, y) && curve.GetNodeVis(i, visible), "every index below the count answers");
        Require(SameBits(x, nodes[i].x) && SameBits(y, nodes[i].y) && visible == nodes[i].visible,
                "nodes stay in order with their numbers and visibility");
    }
    double x = -7, y = -7;
    bool visible = true;
    Require(!curve.GetNode(count, x, y) && !curve.GetNode(-1, x, y) && !curve.GetNodeVis(count, visible) &&
                x == -7 && y == -7 && visible,
            "indices outside the list are refused and write nothing");
}

bool InRange(int index, const std::vector<Node>& nodes)
{
    return index >= 0 && index < static_cast<int>(nodes.size());
}

// One operation; answers whether the curve must now hold the brute-force
// range.
bool Step(CKesraCurve2D& curve, std::vector<Node>& nodes, FuzzInput& in)
{
    const int count = static_cast<int>(nodes.size());
    const Range before = Reported(curve);
    bool changed = true; // refused operations must clear it
    switch (in.Choice(12))
    {
    case 0:
    case 1:
    {
        const double x = in.Double();
        const double y = in.Double();
        const int kind = in.Choice(3);
        const bool inserted = kind == 0 ? curve.InsertNode(x, y)
                              : kind == 1 ? curve.InsertNodeX(x)
                                          : curve.InsertNodeY(y);
        Require(inserted, "appending always succeeds");
        nodes.push_back({kind == 2 ? 0.0 : x, kind == 1 ? 0.0 : y, true});
        return false;
    }
    case 2:
    {
        const int index = in.Index(count);
        const double x = in.Double();
        const double y = in.Double();
        Require(curve.InsertNode(index, x, y) == InRange(index, nodes), "an insertion index must hold a node");
        if (InRange(index, nodes))
        {
            nodes.insert(nodes.begin() + index, Node{x, y, true});
        }
        return false;
    }
    case 3:
    {
        const int index = in.Index(count);
        Require(curve.RemoveNode(index, changed) == InRange(index, nodes), "RemoveNode answers as the index is");
        Require(InRange(index, nodes) || !changed, "a refused removal reports no change");
        if (InRange(index, nodes))
        {
            nodes.erase(nodes.begin() + index);
        }
        Require(changed || Reported(curve) == before, "a removal that reports no change keeps the range");
        return changed;
    }
    case 4:
        if (in.Byte() < 32)
        {
            Require(curve.ClearNodes(), "ClearNodes answers true");
            nodes.clear();
            return true;
        }
        return false;
    case 5:
    case 6:
    {
        const int index = in.Index(count);
        const double x = in.Double();
        const double y = in.Double();
        const int kind = in.Choice(3);
        const bool answer = kind == 0 ? curve.SetNode(index, x, y, changed)
                            : kind == 1 ? curve.SetNodeX(index, x, changed)
                                        : curve.SetNodeY(index, y, changed);
        Require(answer == InRange(index, nodes), "moving answers as the index is");
        if (answer)
        {
            nodes[index].x = kind == 2 ? nodes[index].x : x;
            nodes[index].y = kind == 1 ? nodes[index].y : y;
        }
        const Range after = Reported(curve);
        Require(after.Contains(before), "moving a node only widens the range");
        Require(changed == !(after == before), "a move reports exactly a real change");
        return false;
    }
    case 7:
    case 8:
    {
        const int index = in.Index(count);
        const bool visible = in.Bool();
        const bool expected = InRange(index, nodes) && nodes[index].visible != visible;
        Require(curve.SetNodeVis(index, visible, changed) == expected, "SetNodeVis answers whether it changed a node");
        Require(expected || !changed, "a refused visibility change reports none");
        if (expected)
        {
            nodes[index].visible = visible;
        }
        const Range after = Reported(curve);
        Require(visible ? after.Contains(before) : after == before,
                "showing only widens the range, hiding keeps it");
        Require(!visible || changed == !(after == before), "showing reports exactly a real change");
        return false;
    }
    case 9:
    {
        const bool visible = in.Bool();
        Require(curve.SetAllNodeVis(visible), "SetAllNodeVis answers true");
        for (Node& n : nodes)
        {
            n.visible = visible;
        }
        return true;
    }
    case 10:
    {
        CKesraCurve2D assigned;
        assigned.InsertNode(in.Double(), 1.0);
        KesraFuzz::RequireCopiesEqual(curve, assigned, "copies of a curve equal their original");
        return false;
    }
    default:
        return false;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzInput in(data, size);
    CKesraCurve2D curve;
    std::vector<Node> nodes;
    while (!in.Empty())
    {
        Range before{};
        bool recomputed = false;
        {
            OperationClock clock("curve operation");
            before = Reported(curve);
            recomputed = Step(curve, nodes, in);
        }
        CheckNodes(curve, nodes);
        if (recomputed)
        {
            Require(Reported(curve) == BruteForce(nodes), "a recomputed range is that of the visible nodes");
        }
        else
        {
            Require(Reported(curve).Contains(before), "between recomputations the range only widens");
        }
    }
    return 0;
}
