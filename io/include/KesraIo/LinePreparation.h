// Readying traced lines for the engine's tubes, once for every host.
//
// The tube carries each ring along the incoming segment onto the plane that
// bisects the two segments at a node. Around a turn of angle a that ring
// reaches r / cos(a / 2) from the node (r the radius); and a vertex whose
// plane lies behind it is not placed at all and keeps a stale position. With
// the rings of both ends of a segment of length L reaching up to
// r * tan(a / 2) along it, every vertex is placed when
//
//     L >= r * (tan(a0 / 2) + tan(a1 / 2))     (a0, a1: the turns at its ends;
//                                               0 at a piece's end, where the
//                                               ring is square to the segment)
//
// which on a smooth curve reads: curvature radius >= tube radius. Solvers'
// lines break this everywhere: zig-zags of 176 to 180 degrees in steps far
// shorter than r, hairpins, repeated points. So each line is walked once,
// every node kept being one of its own points, and each next point is
//
// - merged (skipped) when it lies closer than r / 2 to the last node kept:
//   at that scale a step's direction is noise the tube cannot show;
// - a split when the turn at the last node exceeds 120 degrees: the piece
//   ends there and the next one starts there, so both tubes stop square at
//   the node instead of a mitre reaching out 1 / cos(a / 2) radii (2 at 120,
//   3 at 141, 57 at 178 degrees);
// - a split too when the segment into the last node is too short for the
//   turns at both its ends, with a margin of 1% for rounding;
// - skipped when the turn fits but the point is too close to leave room for
//   it (still a split when it is the line's last point: its end is kept);
// - else kept.
// So no ring vertex lies farther than 2r from its node, and every vertex is
// placed. A long straight line, or a curve of curvature radius above 1.01r
// sampled in steps of r / 2 or more, comes out untouched.
//
// The two numbers come from trials on such lines. Merging below r / 4 left a
// solver stuck in steps of 0.4r as 401 two-node pieces, below r / 2 as one
// piece of 48 nodes; jitter of 0.05r on steps of 0.3r gave 113 pieces at
// r / 4 and 5 at r / 2, while merging below a whole r halves the nodes of
// every line sampled at r / 2. Splitting beyond 120 degrees keeps corners
// of 100 degrees whole (mitres of 1.56r) and cuts those of 130 degrees,
// which would reach 2.37r; a hairpin always splits.
//
// Points are three doubles x, y, z per point, values one double per point,
// the radius in model units.
#pragma once

#include "KesraIo/PolyData.h"

#include <cstddef>
#include <vector>

namespace KesraIo
{

// A run of a line that the tube can follow: nodes taken from the line, in its
// order, each with its own value.
struct PreparedLine
{
    std::vector<double> points; // x, y, z of each node; two nodes or more
    std::vector<double> values; // one per node
};

// The pieces of many lines, and how many lines left nothing to draw.
struct PreparedLines
{
    std::vector<PreparedLine> pieces;
    std::size_t skippedLines = 0;
};

// A tube radius for poly's lines, in model units: 0.005 of the diagonal of
// the box round their points, but at most twice the typical step between
// distinct consecutive points (fine features keep their detail), and never
// below 0.001 of the diagonal (tubes stay visible). The typical step is the
// one below which half the lines' length lies, so that a run of tiny steps
// (a solver stuck in place) does not thin every tube. 1 when the lines have
// no extent (no line, or all their points alike): nothing of them can be
// drawn.
double SuggestedTubeRadius(const PolyData& poly);

// The pieces of the line through points, with their values, for tubes of
// that radius; empty when nothing is left to draw (fewer than two points
// apart by half the radius). A point that is not finite ends the piece
// before it. Gives no piece at all unless radius is finite and > 0, points
// holds whole triples and values one value per point.
std::vector<PreparedLine> PrepareLine(const std::vector<double>& points,
                                      const std::vector<double>& values, double radius);

// Appends the pieces of one line to lines, or counts the line as skipped.
void AddPreparedLine(PreparedLines& lines, const std::vector<double>& points,
                     const std::vector<double>& values, double radius);

} // namespace KesraIo
