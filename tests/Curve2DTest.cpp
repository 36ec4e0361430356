#include "Engine/Curve2D.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <cstddef>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace
{

using KesraEngine::CKesraCurve2D;
using Point = std::array<double, 2>;
using Range = std::array<double, 4>; // x min, y min, x max, y max

constexpr Range kEmpty{1e11, 1e11, -1e11, -1e11};

Range RangeOf(const CKesraCurve2D& curve)
{
    Range r{};
    EXPECT_TRUE(curve.GetCureveRange(r[0], r[1], r[2], r[3]));
    return r;
}

int Count(const CKesraCurve2D& curve)
{
    int count = -1;
    EXPECT_TRUE(curve.GetNodes(count));
    return count;
}

Point NodeAt(const CKesraCurve2D& curve, int index)
{
    Point p{};
    EXPECT_TRUE(curve.GetNode(index, p[0], p[1]));
    return p;
}

bool VisAt(const CKesraCurve2D& curve, int index)
{
    bool visible = false;
    EXPECT_TRUE(curve.GetNodeVis(index, visible));
    return visible;
}

// Every node as x, y and 1 if visible, read through the index getters.
using Node = std::array<double, 3>;
std::vector<Node> Nodes(const CKesraCurve2D& curve)
{
    std::vector<Node> nodes;
    for (int i = 0; i < Count(curve); ++i)
    {
        const auto [x, y] = NodeAt(curve, i);
        nodes.push_back({x, y, VisAt(curve, i) ? 1.0 : 0.0});
    }
    return nodes;
}

// (3, 1), (1, 2), (2, 0): x range 1..3 held by nodes 1 and 0, y range 0..2 by
// nodes 2 and 1.
CKesraCurve2D Triangle()
{
    CKesraCurve2D curve;
    curve.InsertNode(3.0, 1.0);
    curve.InsertNode(1.0, 2.0);
    curve.InsertNode(2.0, 0.0);
    return curve;
}

TEST(Curve2DTest, InsertionKeepsOrderAndWidensTheGivenAxes)
{
    CKesraCurve2D curve; // a new curve is empty, and a refusal keeps it so
    EXPECT_FALSE(curve.InsertNode(0, 1.0, 1.0));
    EXPECT_EQ(Count(curve), 0);
    EXPECT_EQ(RangeOf(curve), kEmpty);

    EXPECT_TRUE(curve.InsertNodeX(5.0));
    EXPECT_EQ(RangeOf(curve), (Range{5, 1e11, 5, -1e11}));
    EXPECT_TRUE(curve.InsertNodeY(-4.0));
    EXPECT_EQ(RangeOf(curve), (Range{5, -4, 5, -4}));
    EXPECT_TRUE(curve.InsertNode(6.0, 1.0));
    EXPECT_FALSE(curve.InsertNode(3, 9.0, 9.0)) << "indexed insertion cannot append";
    EXPECT_FALSE(curve.InsertNode(-1, 9.0, 9.0));
    EXPECT_EQ(RangeOf(curve), (Range{5, -4, 6, 1}));
    EXPECT_TRUE(curve.InsertNode(1, 7.0, 7.0));
    EXPECT_EQ(Nodes(curve), (std::vector<Node>{{5, 0, 1}, {7, 7, 1}, {0, -4, 1}, {6, 1, 1}}));
    EXPECT_EQ(RangeOf(curve), (Range{5, -4, 7, 7}));
}

TEST(Curve2DTest, RemovalRecomputesOnlyForANodeOnTheRange)
{
    CKesraCurve2D curve = Triangle();
    curve.InsertNode(2.0, 1.0); // strictly inside
    bool changed = true;
    EXPECT_TRUE(curve.RemoveNode(3, changed) && !changed);
    EXPECT_EQ(RangeOf(curve), (Range{1, 0, 3, 2}));

    EXPECT_TRUE(curve.RemoveNode(0, changed) && changed); // held the x maximum
    EXPECT_EQ(RangeOf(curve), (Range{1, 0, 2, 2}));
    EXPECT_EQ(NodeAt(curve, 0), (Point{1, 2}));

    // Hidden nodes do not count in the recomputation, but a hidden node on
    // the range still triggers it.
    curve.SetNodeVis(1, false, changed);
    EXPECT_TRUE(curve.RemoveNode(0, changed) && changed);
    EXPECT_EQ(RangeOf(curve), kEmpty);
    EXPECT_TRUE(curve.RemoveNode(0, changed) && changed) << "a node outside the empty range";
    EXPECT_EQ(Count(curve), 0);
}

TEST(Curve2DTest, RefusalsClearTheOutputFirstAndChangeNothing)
{
    CKesraCurve2D curve = Triangle();
    for (const int index : {-1, 3, INT_MIN, INT_MAX})
    {
        // Each edit must clear its output even though it refuses the index.
        const auto refusesAndClears = [](auto edit) {
            bool changed = true;
            return !edit(changed) && !changed;
        };
        EXPECT_TRUE(refusesAndClears([&](bool& c) { return curve.RemoveNode(index, c); }));
        EXPECT_TRUE(refusesAndClears([&](bool& c) { return curve.SetNode(index, 50, 50, c); }));
        EXPECT_TRUE(refusesAndClears([&](bool& c) { return curve.SetNodeX(index, 50, c); }));
        EXPECT_TRUE(refusesAndClears([&](bool& c) { return curve.SetNodeY(index, 50, c); }));
        EXPECT_TRUE(refusesAndClears([&](bool& c) { return curve.SetNodeVis(index, false, c); }));
        EXPECT_FALSE(curve.InsertNode(index, 50, 50));

        double x = 42, y = 43;
        bool visible = false;
        EXPECT_FALSE(curve.GetNode(index, x, y));
        EXPECT_FALSE(curve.GetNodeVis(index, visible));
        EXPECT_EQ((Point{x, y}), (Point{42, 43}));
        EXPECT_FALSE(visible);
    }
    EXPECT_EQ(Count(curve), 3);
    EXPECT_EQ(RangeOf(curve), (Range{1, 0, 3, 2}));
}

TEST(Curve2DTest, MovingNeverNarrows)
{
    CKesraCurve2D curve = Triangle();
    bool changed = true;
    EXPECT_TRUE(curve.SetNodeX(0, 2.5, changed) && !changed); // the x maximum moves inwards
    EXPECT_EQ(RangeOf(curve), (Range{1, 0, 3, 2}));
    EXPECT_EQ(NodeAt(curve, 0), (Point{2.5, 1}));

    EXPECT_TRUE(curve.SetNodeX(0, 3.0, changed) && !changed) << "equal to a bound is not beyond it";
    EXPECT_TRUE(curve.SetNodeX(0, 4.0, changed) && changed);
    EXPECT_TRUE(curve.SetNodeY(2, -1.0, changed) && changed);
    EXPECT_EQ(RangeOf(curve), (Range{1, -1, 4, 2}));

    // Hidden nodes widen the range when moved, and keep their visibility.
    curve.SetNodeVis(1, false, changed);
    EXPECT_TRUE(curve.SetNode(1, -5.0, 9.0, changed) && changed);
    EXPECT_FALSE(VisAt(curve, 1));
    EXPECT_EQ(RangeOf(curve), (Range{-5, -1, 4, 9}));

    // Copies take the nodes and the range as it stands (here held by a hidden
    // node), and go their own way.
    CKesraCurve2D copy(curve);
    CKesraCurve2D assigned;
    assigned = curve;
    curve.SetNodeVis(1, true, changed);
    curve.RemoveNode(1, changed);
    for (const CKesraCurve2D* c : {&copy, &assigned})
    {
        EXPECT_EQ(Nodes(*c), (std::vector<Node>{{4, 1, 1}, {-5, 9, 0}, {2, -1, 1}}));
        EXPECT_EQ(RangeOf(*c), (Range{-5, -1, 4, 9}));
    }
}

TEST(Curve2DTest, VisibilityChangesAndTheNearBoundRule)
{
    CKesraCurve2D curve = Triangle();
    bool changed = true;
    EXPECT_TRUE(!curve.SetNodeVis(0, true, changed) && !changed) << "already visible";

    EXPECT_TRUE(curve.SetNodeVis(0, false, changed) && changed); // holds the x maximum
    EXPECT_EQ(RangeOf(curve), (Range{1, 0, 3, 2})) << "hiding never recomputes";
    EXPECT_TRUE(!curve.SetNodeVis(0, false, changed) && !changed);

    curve.InsertNode(2.0, 1.0);
    EXPECT_TRUE(curve.SetNodeVis(3, false, changed) && !changed) << "an inner node";
    curve.InsertNode(2.0, 1e-10);
    EXPECT_TRUE(curve.SetNodeVis(4, false, changed) && changed) << "1e-10 from the y minimum is near";
    curve.InsertNode(2.0, 2.0 - 2e-10);
    EXPECT_TRUE(curve.SetNodeVis(5, false, changed) && !changed) << "2e-10 from the y maximum";

    // Showing widens by the node, which may have moved while hidden.
    curve.SetNodeX(3, 1.5, changed);
    EXPECT_TRUE(curve.SetNodeVis(3, true, changed) && !changed);
    curve.SetAllNodeVis(false);
    EXPECT_EQ(RangeOf(curve), kEmpty);
    EXPECT_TRUE(curve.SetNodeVis(3, true, changed) && changed);
    EXPECT_EQ(RangeOf(curve), (Range{1.5, 1, 1.5, 1}));
}

TEST(Curve2DTest, SetAllNodeVisRecomputes)
{
    CKesraCurve2D curve = Triangle();
    bool changed = false;
    curve.SetNodeX(0, 2.0, changed); // the range stays wider than the nodes
    EXPECT_TRUE(curve.SetAllNodeVis(true));
    EXPECT_EQ(RangeOf(curve), (Range{1, 0, 2, 2}));
    EXPECT_TRUE(curve.SetAllNodeVis(false));
    EXPECT_EQ(RangeOf(curve), kEmpty);
    EXPECT_FALSE(VisAt(curve, 1));
    EXPECT_TRUE(curve.ClearNodes());
    EXPECT_EQ(Count(curve), 0);
    EXPECT_EQ(RangeOf(curve), kEmpty);
}

// ---- Randomized check against a model of the rules --------------------------

struct ModelNode
{
    double x;
    double y;
    bool visible;
};

// The rules, written as bounds per axis: lo[axis] and hi[axis].
class CurveModel
{
public:
    bool Valid(int index) const { return index >= 0 && index < int(nodes.size()); }

    // Strict widening of one axis; true if a bound moved.
    bool Widen(int axis, double v)
    {
        const bool moved = v < lo[axis] || v > hi[axis];
        lo[axis] = std::min(lo[axis], v);
        hi[axis] = std::max(hi[axis], v);
        return moved;
    }
    bool Widen(const ModelNode& n)
    {
        const bool mx = Widen(0, n.x);
        const bool my = Widen(1, n.y);
        return mx || my;
    }
    void Recompute()
    {
        lo = {1e11, 1e11};
        hi = {-1e11, -1e11};
        for (const ModelNode& n : nodes)
        {
            if (n.visible)
            {
                Widen(n);
            }
        }
    }
    bool OnOrOutside(const ModelNode& n) const
    {
        return n.x <= lo[0] || n.y <= lo[1] || n.x >= hi[0] || n.y >= hi[1];
    }
    bool NearBound(const ModelNode& n) const
    {
        const auto near = [](double a, double b) { return std::abs(a - b) <= 1e-10; };
        return near(n.x, lo[0]) || near(n.y, lo[1]) || near(n.x, hi[0]) || near(n.y, hi[1]);
    }
    Range GetRange() const { return {lo[0], lo[1], hi[0], hi[1]}; }

    std::vector<ModelNode> nodes;
    std::array<double, 2> lo{1e11, 1e11};
    std::array<double, 2> hi{-1e11, -1e11};
};

class RandomEditor
{
public:
    explicit RandomEditor(unsigned seed) : m_random(seed) {}

    // One random operation on both; describes it in log. Compares the
    // operation's result and range-changed output.
    void Step(CKesraCurve2D& curve, CurveModel& model, std::ostringstream& log)
    {
        const int index = Index(model);
        const int op = Pick(0, 13);
        bool changed = false; // set before each call that must clear it
        bool result = false, expected = false, expectedChanged = false;
        if (op <= 5)
        {
            // 0: InsertNode(x, y), 1: InsertNodeX, 2: InsertNodeY, 3: InsertNode(index, x, y).
            const int which = op <= 2 ? 0 : op - 2;
            const double x = which == 2 ? 0.0 : Value(model, 0);
            const double y = which == 1 ? 0.0 : Value(model, 1);
            log << "Insert" << which << "(" << index << ", " << x << ", " << y << ")";
            result = which == 0   ? curve.InsertNode(x, y)
                     : which == 1 ? curve.InsertNodeX(x)
                     : which == 2 ? curve.InsertNodeY(y)
                                  : curve.InsertNode(index, x, y);
            expected = which != 3 || model.Valid(index);
            if (expected)
            {
                if (which != 2) // a single coordinate widens only its own axis
                {
                    model.Widen(0, x);
                }
                if (which != 1)
                {
                    model.Widen(1, y);
                }
                model.nodes.insert(which == 3 ? model.nodes.begin() + index : model.nodes.end(),
                                   {x, y, true});
            }
        }
        else if (op <= 7)
        {
            log << "RemoveNode(" << index << ")";
            changed = true;
            result = curve.RemoveNode(index, changed);
            expected = model.Valid(index);
            if (expected)
            {
                expectedChanged = model.OnOrOutside(model.nodes[std::size_t(index)]);
                model.nodes.erase(model.nodes.begin() + index);
                if (expectedChanged)
                {
                    model.Recompute();
                }
            }
        }
        else if (op <= 10)
        {
            const int which = Pick(0, 2);
            const double x = Value(model, 0), y = Value(model, 1);
            log << "SetNode" << "  XY"[which] << "(" << index << ", " << x << ", " << y << ")";
            changed = true;
            result = which == 0   ? curve.SetNode(index, x, y, changed)
                     : which == 1 ? curve.SetNodeX(index, x, changed)
                                  : curve.SetNodeY(index, y, changed);
            expected = model.Valid(index);
            if (expected)
            {
                ModelNode& n = model.nodes[std::size_t(index)];
                const bool mx = which != 2 && model.Widen(0, n.x = x);
                const bool my = which != 1 && model.Widen(1, n.y = y);
                expectedChanged = mx || my;
            }
        }
        else if (op <= 12)
        {
            const bool visible = Pick(0, 1) == 1;
            log << "SetNodeVis(" << index << ", " << visible << ")";
            changed = true;
            result = curve.SetNodeVis(index, visible, changed);
            expected = model.Valid(index) && model.nodes[std::size_t(index)].visible != visible;
            if (expected)
            {
                ModelNode& n = model.nodes[std::size_t(index)];
                n.visible = visible;
                expectedChanged = visible ? model.Widen(n) : model.NearBound(n);
            }
        }
        else
        {
            const int which = Pick(0, 9);
            log << (which == 0 ? "ClearNodes()" : which < 5 ? "SetAllNodeVis(1)" : "SetAllNodeVis(0)");
            result = which == 0 ? curve.ClearNodes() : curve.SetAllNodeVis(which < 5);
            expected = true;
            model.nodes.resize(which == 0 ? 0 : model.nodes.size());
            for (ModelNode& n : model.nodes)
            {
                n.visible = which < 5;
            }
            model.Recompute();
        }
        EXPECT_EQ(result, expected) << log.str();
        EXPECT_EQ(changed, expectedChanged) << log.str();
    }

private:
    int Pick(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(m_random); }

    // Mostly valid indices, sometimes one or two past the end or negative.
    int Index(const CurveModel& model)
    {
        return Pick(-1, int(model.nodes.size()) + 1);
    }

    // Small integers, so that values often equal a bound, and now and then a
    // value within or just beyond 1e-10 of a bound, or an empty-range bound.
    double Value(const CurveModel& model, int axis)
    {
        const int kind = Pick(0, 19);
        const std::size_t a = std::size_t(axis);
        const double bound = Pick(0, 1) == 0 ? model.lo[a] : model.hi[a];
        if (kind == 0 && std::abs(bound) < 1e3)
        {
            return bound + (Pick(0, 1) == 0 ? 5e-11 : -3e-10);
        }
        if (kind == 1)
        {
            return Pick(0, 1) == 0 ? 1e11 : -1e11;
        }
        return Pick(-6, 6) * 0.5;
    }

    std::mt19937 m_random;
};

void ExpectSameState(const CKesraCurve2D& curve, const CurveModel& model, const std::string& at)
{
    EXPECT_EQ(RangeOf(curve), model.GetRange()) << at;
    std::vector<Node> expected;
    for (const ModelNode& n : model.nodes)
    {
        expected.push_back({n.x, n.y, n.visible ? 1.0 : 0.0});
    }
    EXPECT_EQ(Nodes(curve), expected) << at;
}

TEST(Curve2DTest, RandomEditsFollowTheRules)
{
    for (const unsigned seed : {1u, 2u, 3u, 4u, 5u})
    {
        RandomEditor editor(seed);
        CKesraCurve2D curve;
        CurveModel model;
        for (int step = 0; step < 3000 && !::testing::Test::HasFailure(); ++step)
        {
            std::ostringstream log;
            log << "seed " << seed << ", step " << step << ": ";
            editor.Step(curve, model, log);
            ExpectSameState(curve, model, log.str());
        }
    }
}

} // namespace
