#include "KesraIo/LinePreparation.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <utility>

namespace KesraIo
{

namespace
{

// Steps shorter than this many radii are merged.
constexpr double kMergeRadii = 0.5;
// The cosine of the sharpest turn a piece keeps, 120 degrees.
constexpr double kSharpestTurnCos = -0.5;
// The rings at both ends of a segment may reach along 1 / kFoldMargin of it:
// room left for rounding.
constexpr double kFoldMargin = 1.01;
// The engine takes a segment this long or shorter to have no direction.
constexpr double kNoDirection = 1e-8;

struct Point
{
    double x;
    double y;
    double z;
};

Point PointAt(const std::vector<double>& xyz, std::size_t i)
{
    return Point{xyz[3 * i], xyz[3 * i + 1], xyz[3 * i + 2]};
}

Point Minus(const Point& a, const Point& b)
{
    return Point{a.x - b.x, a.y - b.y, a.z - b.z};
}

double Dot(const Point& a, const Point& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

Point Scaled(const Point& p, double s)
{
    return Point{p.x * s, p.y * s, p.z * s};
}

bool IsFinite(const Point& p)
{
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

// tan(a / 2) for a turn a of cosine c in (-1, 1]: how far, in radii, the
// mitred ring at that turn reaches along each of its segments.
double HalfTurnTangent(double c)
{
    return std::sqrt(std::max(0.0, 1.0 - c) / (1.0 + c));
}

// Grows the pieces of one line point by point; see the header for the rule.
class PieceBuilder
{
public:
    PieceBuilder(double radius, std::vector<PreparedLine>& pieces)
        : m_radius(radius), m_mergeStep(kMergeRadii * radius), m_pieces(pieces)
    {
    }

    // The line's next point; lastOfLine for its final one.
    void Take(const Point& p, double value, bool lastOfLine)
    {
        if (!IsFinite(p))
        {
            Finish();
            return;
        }
        if (m_piece.values.empty())
        {
            Append(p, value);
            return;
        }
        const Point step = Minus(p, m_last);
        const double length = std::sqrt(Dot(step, step));
        // Too short a step for its direction to show at the tube's scale.
        if (length < m_mergeStep || length <= kNoDirection)
        {
            return;
        }
        const Point direction = Scaled(step, 1.0 / length);
        if (m_piece.values.size() == 1)
        {
            Advance(p, value, direction, length, 0.0);
            return;
        }
        Join(p, value, direction, length, lastOfLine);
    }

    // Keeps the piece if the tube can draw it, and starts afresh.
    void Finish()
    {
        if (m_piece.values.size() >= 2)
        {
            m_pieces.push_back(std::move(m_piece));
        }
        m_piece = PreparedLine();
    }

private:
    // p, far enough from the last node, after a turn there.
    void Join(const Point& p, double value, const Point& direction, double length, bool lastOfLine)
    {
        const double turnCos = Dot(m_direction, direction);
        const bool sharp = turnCos < kSharpestTurnCos;
        // Past the sharpest turn the split makes the tangent moot (and it
        // grows without bound towards a reversal).
        const double tangent = sharp ? 0.0 : HalfTurnTangent(turnCos);
        const bool inboundFits = m_length >= kFoldMargin * m_radius * (m_tangentBehind + tangent);
        const bool outboundFits = length >= kFoldMargin * m_radius * tangent;
        if (sharp || !inboundFits || (!outboundFits && lastOfLine))
        {
            SplitAtLast(p, value, direction, length);
        }
        else if (outboundFits)
        {
            Advance(p, value, direction, length, tangent);
        }
        // Otherwise p is too close to the turn for its ring: a later point
        // of the line continues the piece.
    }

    void Append(const Point& p, double value)
    {
        m_piece.points.insert(m_piece.points.end(), {p.x, p.y, p.z});
        m_piece.values.push_back(value);
        m_last = p;
    }

    // p becomes the last node; tangent is the turn at the node before it.
    void Advance(const Point& p, double value, const Point& direction, double length,
                 double tangent)
    {
        Append(p, value);
        m_direction = direction;
        m_length = length;
        m_tangentBehind = tangent;
    }

    // Ends the piece at its last node, where the next one starts, towards p.
    void SplitAtLast(const Point& p, double value, const Point& direction, double length)
    {
        const Point node = m_last;
        const double nodeValue = m_piece.values.back();
        Finish();
        Append(node, nodeValue);
        Advance(p, value, direction, length, 0.0);
    }

    const double m_radius;
    const double m_mergeStep;
    std::vector<PreparedLine>& m_pieces;
    PreparedLine m_piece;
    Point m_last{0.0, 0.0, 0.0};
    Point m_direction{0.0, 0.0, 0.0}; // of the segment into the last node
    double m_length = 0.0;            // of that segment
    double m_tangentBehind = 0.0;     // of the turn at its first node
};

// The distances between distinct consecutive points of poly's lines, and
// the box round those points.
struct LineExtent
{
    std::vector<double> steps;
    double low[3] = {0.0, 0.0, 0.0};
    double high[3] = {0.0, 0.0, 0.0};
    bool any = false;
};

void Include(LineExtent& extent, const Point& p)
{
    const double xyz[3] = {p.x, p.y, p.z};
    for (int axis = 0; axis < 3; ++axis)
    {
        extent.low[axis] = extent.any ? std::min(extent.low[axis], xyz[axis]) : xyz[axis];
        extent.high[axis] = extent.any ? std::max(extent.high[axis], xyz[axis]) : xyz[axis];
    }
    extent.any = true;
}

LineExtent MeasureLines(const PolyData& poly)
{
    LineExtent extent;
    for (std::size_t line = 0; line < poly.LineCount(); ++line)
    {
        Point previous{0.0, 0.0, 0.0};
        for (std::size_t k = poly.lineOffsets[line]; k < poly.lineOffsets[line + 1]; ++k)
        {
            const std::size_t i = poly.connectivity[k];
            const Point p{poly.points[3 * i], poly.points[3 * i + 1], poly.points[3 * i + 2]};
            const Point step = Minus(p, previous);
            const double length = std::sqrt(Dot(step, step));
            if (k > poly.lineOffsets[line] && length > 0.0)
            {
                extent.steps.push_back(length);
            }
            Include(extent, p);
            previous = p;
        }
    }
    return extent;
}

} // namespace

double SuggestedTubeRadius(const PolyData& poly)
{
    LineExtent extent = MeasureLines(poly);
    const Point size{extent.high[0] - extent.low[0], extent.high[1] - extent.low[1],
                     extent.high[2] - extent.low[2]};
    const double diagonal = std::sqrt(Dot(size, size));
    // Overflow of a box spanning most of the double range leaves no usable
    // size either.
    if (extent.steps.empty() || !(diagonal > 0.0) || !std::isfinite(diagonal))
    {
        return 1.0;
    }
    // The step below which half the lines' length lies: runs of tiny steps
    // (a solver stuck in place) add many steps but little length, and must
    // not thin every tube.
    std::sort(extent.steps.begin(), extent.steps.end());
    const double total = std::accumulate(extent.steps.begin(), extent.steps.end(), 0.0);
    double below = 0.0;
    double typical = extent.steps.back();
    for (const double step : extent.steps)
    {
        below += step;
        if (below >= 0.5 * total)
        {
            typical = step;
            break;
        }
    }
    const double radius = std::min(0.005 * diagonal, 2.0 * typical);
    return std::max(radius, 0.001 * diagonal);
}

std::vector<PreparedLine> PrepareLine(const std::vector<double>& points,
                                      const std::vector<double>& values, double radius)
{
    std::vector<PreparedLine> pieces;
    const bool accepted = std::isfinite(radius) && radius > 0.0 && points.size() % 3 == 0
                          && values.size() == points.size() / 3;
    if (!accepted)
    {
        return pieces;
    }
    PieceBuilder builder(radius, pieces);
    for (std::size_t i = 0; i < values.size(); ++i)
    {
        builder.Take(PointAt(points, i), values[i], i + 1 == values.size());
    }
    builder.Finish();
    return pieces;
}

void AddPreparedLine(PreparedLines& lines, const std::vector<double>& points,
                     const std::vector<double>& values, double radius)
{
    std::vector<PreparedLine> pieces = PrepareLine(points, values, radius);
    if (pieces.empty())
    {
        ++lines.skippedLines;
        return;
    }
    lines.pieces.insert(lines.pieces.end(), std::make_move_iterator(pieces.begin()),
                        std::make_move_iterator(pieces.end()));
}

} // namespace KesraIo
