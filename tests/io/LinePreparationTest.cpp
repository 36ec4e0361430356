// Lines as solvers write them, readied for the engine's tubes: the tubes the
// engine then generates stay within a few radii of their line, which the raw
// lines' tubes do not; tame lines pass untouched; what cannot be drawn is
// dropped and counted.
#include "KesraIo/LinePreparation.h"

#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <random>
#include <vector>

namespace
{

using KesraIo::PreparedLine;
using KesraIo::PrepareLine;

constexpr double kRadius = 0.1;
constexpr int kSlices = 12;
constexpr double kPi = 3.14159265358979323846;
// Far from the origin, where a vertex the tube could not place stays.
constexpr double kOrigin[3] = {40.0, -25.0, 12.0};

// ---- Lines ----------------------------------------------------------------------------

// Points x, y, z one after another, built a step at a time.
class Walk
{
public:
    Walk() : m_points(kOrigin, kOrigin + 3) {}

    void Step(double dx, double dy, double dz)
    {
        const std::size_t last = m_points.size() - 3;
        m_points.insert(m_points.end(), {m_points[last] + dx, m_points[last + 1] + dy,
                                         m_points[last + 2] + dz});
    }
    // A step of that length at angle degrees from +x, in the plane z = const.
    void Heading(double length, double degrees)
    {
        Step(length * std::cos(degrees * kPi / 180.0), length * std::sin(degrees * kPi / 180.0), 0.0);
    }
    void Repeat() { Step(0.0, 0.0, 0.0); }

    const std::vector<double>& Points() const { return m_points; }

private:
    std::vector<double> m_points;
};

// A solver stuck in a recirculation: forward, then back at 176 to 180
// degrees a little shorter, in steps far below the radius.
std::vector<double> ZigZag()
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> bend(0.0, 4.0);
    Walk walk;
    for (int i = 0; i < 400; ++i)
    {
        walk.Heading(0.02 * kRadius, 0.0);
        walk.Heading(0.018 * kRadius, 180.0 - bend(random));
    }
    return walk.Points();
}

// Out along x and back, 0.3 radii aside.
std::vector<double> Hairpin()
{
    Walk walk;
    for (int i = 0; i < 20; ++i)
    {
        walk.Heading(kRadius, 0.0);
    }
    walk.Step(0.0, 0.3 * kRadius, 0.0);
    for (int i = 0; i < 20; ++i)
    {
        walk.Heading(kRadius, 180.0);
    }
    return walk.Points();
}

// Straight on, then straight back at 179.9 degrees.
std::vector<double> Reversal()
{
    Walk walk;
    for (int i = 0; i < 10; ++i)
    {
        walk.Heading(kRadius, 0.0);
    }
    for (int i = 0; i < 10; ++i)
    {
        walk.Heading(kRadius, 179.9);
    }
    return walk.Points();
}

// A crawl in steps of 1e-6 radii, every one in a new direction, then on.
std::vector<double> Crawl()
{
    std::mt19937 random(11);
    std::normal_distribution<double> normal;
    Walk walk;
    walk.Heading(2.0 * kRadius, 30.0);
    for (int i = 0; i < 200; ++i)
    {
        const double d[3] = {normal(random), normal(random), normal(random)};
        const double scale = 1e-6 * kRadius / std::sqrt(d[0] * d[0] + d[1] * d[1] + d[2] * d[2]);
        walk.Step(d[0] * scale, d[1] * scale, d[2] * scale);
    }
    walk.Heading(2.0 * kRadius, -60.0);
    return walk.Points();
}

// Every point written three times, round a right angle, in steps of two
// radii.
std::vector<double> Repeated()
{
    Walk walk;
    for (int i = 0; i < 6; ++i)
    {
        walk.Heading(2.0 * kRadius, i < 3 ? 0.0 : 90.0);
        walk.Repeat();
        walk.Repeat();
    }
    return walk.Points();
}

std::vector<double> Straight()
{
    Walk walk;
    for (int i = 0; i < 50; ++i)
    {
        walk.Step(0.7 * kRadius, -0.2 * kRadius, 0.1 * kRadius);
    }
    return walk.Points();
}

// A helix of curvature radius 10 radii, in steps of one radius.
std::vector<double> GentleCurve()
{
    std::vector<double> points;
    for (int i = 0; i < 80; ++i)
    {
        const double a = 0.1 * i;
        points.insert(points.end(), {kOrigin[0] + 9.0 * kRadius * std::cos(a),
                                     kOrigin[1] + 9.0 * kRadius * std::sin(a),
                                     kOrigin[2] + 0.3 * kRadius * i});
    }
    return points;
}

// A value per point that tells the points apart: its index.
std::vector<double> Indices(const std::vector<double>& points)
{
    std::vector<double> values(points.size() / 3);
    for (std::size_t i = 0; i < values.size(); ++i)
    {
        values[i] = static_cast<double>(i);
    }
    return values;
}

// ---- Tubes ----------------------------------------------------------------------------

// The ring vertices the engine generates round points, x, y, z each.
std::vector<double> TubeVertices(const std::vector<double>& points, double radius)
{
    const int nodes = static_cast<int>(points.size() / 3);
    KesraTest::TestStreamline tube;
    EXPECT_TRUE(tube.Create(nodes, kSlices, radius, 1.0));
    for (int i = 0; i < nodes; ++i)
    {
        double xyz[3] = {points[3 * i], points[3 * i + 1], points[3 * i + 2]};
        tube.SetNodeCoord(i, xyz);
    }
    tube.GenerationStreamline3D();
    std::vector<double> vertices(static_cast<std::size_t>(3 * nodes * kSlices));
    tube.CopyTubeGeometry(vertices.data(), nullptr);
    return vertices;
}

double DistanceToSegment(const double* p, const double* a, const double* b)
{
    double ab[3];
    double ap[3];
    double abab = 0.0;
    double apab = 0.0;
    for (int k = 0; k < 3; ++k)
    {
        ab[k] = b[k] - a[k];
        ap[k] = p[k] - a[k];
        abab += ab[k] * ab[k];
        apab += ap[k] * ab[k];
    }
    const double t = abab > 0.0 ? std::clamp(apab / abab, 0.0, 1.0) : 0.0;
    double squared = 0.0;
    for (int k = 0; k < 3; ++k)
    {
        squared += (ap[k] - t * ab[k]) * (ap[k] - t * ab[k]);
    }
    return std::sqrt(squared);
}

// How far, in radii, the farthest vertex of the tubes round pieces lies
// from line.
double FarthestVertex(const std::vector<double>& line, const std::vector<PreparedLine>& pieces,
                      double radius)
{
    double farthest = 0.0;
    for (const PreparedLine& piece : pieces)
    {
        const std::vector<double> vertices = TubeVertices(piece.points, radius);
        for (std::size_t v = 0; v < vertices.size(); v += 3)
        {
            double nearest = std::numeric_limits<double>::infinity();
            for (std::size_t i = 0; i + 3 < line.size(); i += 3)
            {
                nearest = std::min(nearest, DistanceToSegment(&vertices[v], &line[i], &line[i + 3]));
            }
            farthest = std::max(farthest, nearest);
        }
    }
    return farthest / radius;
}

// The raw line as a single piece, as a host without preparation draws it.
std::vector<PreparedLine> Unprepared(const std::vector<double>& line)
{
    return {PreparedLine{line, Indices(line)}};
}

// A node of a piece is a point of the line with that point's value.
void ExpectNodesFromLine(const std::vector<double>& line, const std::vector<PreparedLine>& pieces)
{
    for (const PreparedLine& piece : pieces)
    {
        ASSERT_EQ(piece.points.size(), 3 * piece.values.size());
        ASSERT_GE(piece.values.size(), 2u);
        for (std::size_t n = 0; n < piece.values.size(); ++n)
        {
            const std::size_t i = static_cast<std::size_t>(piece.values[n]);
            EXPECT_EQ(piece.points[3 * n], line[3 * i]);
            EXPECT_EQ(piece.points[3 * n + 1], line[3 * i + 1]);
            EXPECT_EQ(piece.points[3 * n + 2], line[3 * i + 2]);
        }
    }
}

// ---- Solvers' lines: the raw tube strays, the prepared one follows ---------------------

struct Shape
{
    const char* name;
    std::vector<double> (*make)();
};

const Shape kWildShapes[] = {{"zig-zag", ZigZag},   {"hairpin", Hairpin},
                             {"reversal", Reversal}, {"crawl", Crawl},
                             {"repeated", Repeated}};

TEST(LinePreparationTest, RawTubesOfWildLinesStrayFarFromThem)
{
    for (const Shape& shape : kWildShapes)
    {
        const std::vector<double> line = shape.make();
        EXPECT_GT(FarthestVertex(line, Unprepared(line), kRadius), 3.0) << shape.name;
    }
}

TEST(LinePreparationTest, PreparedTubesOfWildLinesStayWithinTwoRadii)
{
    for (const Shape& shape : kWildShapes)
    {
        const std::vector<double> line = shape.make();
        const std::vector<PreparedLine> pieces = PrepareLine(line, Indices(line), kRadius);
        ASSERT_FALSE(pieces.empty()) << shape.name;
        EXPECT_LE(FarthestVertex(line, pieces, kRadius), 2.0 + 1e-9) << shape.name;
        ExpectNodesFromLine(line, pieces);
    }
}

TEST(LinePreparationTest, HairpinAndReversalSplitAtTheirTurn)
{
    const std::vector<double> hairpin = Hairpin();
    const std::vector<PreparedLine> pieces = PrepareLine(hairpin, Indices(hairpin), kRadius);
    // The step aside, shorter than half a radius, merges into the way back.
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_EQ(pieces[0].values.size(), 21u);
    EXPECT_EQ(pieces[0].values.back(), 20.0);
    EXPECT_EQ(pieces[1].values.size(), 21u);
    EXPECT_EQ(pieces[1].values[0], 20.0);
    EXPECT_EQ(pieces[1].values[1], 22.0);
    EXPECT_EQ(pieces[1].values.back(), 41.0);

    const std::vector<double> reversal = Reversal();
    const std::vector<PreparedLine> halves = PrepareLine(reversal, Indices(reversal), kRadius);
    ASSERT_EQ(halves.size(), 2u);
    EXPECT_EQ(halves[0].values.back(), 10.0);
    EXPECT_EQ(halves[1].values.front(), 10.0);
    EXPECT_EQ(halves[1].values.back(), 20.0);
}

TEST(LinePreparationTest, JitterMergesIntoItsDrift)
{
    // The zig-zag drifts 0.002 radii a round trip: merged, it is a straight
    // run, without a split.
    const std::vector<double> line = ZigZag();
    const std::vector<PreparedLine> pieces = PrepareLine(line, Indices(line), kRadius);
    ASSERT_EQ(pieces.size(), 1u);
    EXPECT_GE(pieces[0].values.size(), 2u);
    EXPECT_LT(pieces[0].values.size(), 10u);
}

TEST(LinePreparationTest, RepeatedPointsAreDroppedAndTheCornerKept)
{
    const std::vector<double> line = Repeated();
    const std::vector<PreparedLine> pieces = PrepareLine(line, Indices(line), kRadius);
    ASSERT_EQ(pieces.size(), 1u);
    EXPECT_EQ(pieces[0].values, (std::vector<double>{0, 1, 4, 7, 10, 13, 16}));
}

// ---- Tame lines pass untouched ---------------------------------------------------------

TEST(LinePreparationTest, StraightLinesAndGentleCurvesPassUntouched)
{
    for (const std::vector<double>& line : {Straight(), GentleCurve()})
    {
        const std::vector<PreparedLine> pieces = PrepareLine(line, Indices(line), kRadius);
        ASSERT_EQ(pieces.size(), 1u);
        EXPECT_EQ(pieces[0].points, line);
        EXPECT_EQ(pieces[0].values, Indices(line));
        // The curve's turns of 5.7 degrees mitre its rings a little.
        EXPECT_LE(FarthestVertex(line, pieces, kRadius), 1.01);
    }
}

// A U of two right angles, its sides 1.05 radii long and its base as given.
std::vector<double> SquareU(double base)
{
    Walk walk;
    walk.Heading(1.05 * kRadius, 0.0);
    walk.Heading(base * kRadius, 90.0);
    walk.Heading(1.05 * kRadius, 180.0);
    return walk.Points();
}

TEST(LinePreparationTest, TurnsWithRoomForTheirRingsAreKept)
{
    // Each right angle's ring reaches one radius along its segments.
    const std::vector<double> line = SquareU(2.1);
    const std::vector<PreparedLine> pieces = PrepareLine(line, Indices(line), kRadius);
    ASSERT_EQ(pieces.size(), 1u);
    EXPECT_EQ(pieces[0].points, line);
    EXPECT_LE(FarthestVertex(line, pieces, kRadius), std::sqrt(2.0) + 1e-9);
}

TEST(LinePreparationTest, TurnsWithoutRoomForTheirRingsSplit)
{
    const std::vector<double> line = SquareU(1.9);
    EXPECT_GT(FarthestVertex(line, Unprepared(line), kRadius), 3.0);
    const std::vector<PreparedLine> pieces = PrepareLine(line, Indices(line), kRadius);
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_EQ(pieces[0].values, (std::vector<double>{0, 1, 2}));
    EXPECT_EQ(pieces[1].values, (std::vector<double>{2, 3}));
}

// ---- Random lines: whatever comes in, every vertex stays near its node ------------------

TEST(LinePreparationTest, RandomLinesNeverStrayBeyondTwoRadii)
{
    std::mt19937 random(2024);
    std::uniform_real_distribution<double> exponent(-7.0, 1.5);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    std::uniform_int_distribution<int> pick(0, 9);
    for (int line = 0; line < 60; ++line)
    {
        Walk walk;
        for (int i = 0; i < 60; ++i)
        {
            // A step of 1e-7 to 30 radii, now and then a repeat or a reversal.
            const double length = kRadius * std::pow(10.0, exponent(random));
            const int kind = pick(random);
            if (kind == 0)
            {
                walk.Repeat();
                continue;
            }
            const std::size_t last = walk.Points().size() - 3;
            if (kind == 1 && last >= 3)
            {
                const double* p = &walk.Points()[last];
                walk.Step(p[-3] - p[0], p[-2] - p[1], p[-1] - p[2]);
                continue;
            }
            const double d[3] = {unit(random), unit(random), unit(random)};
            const double norm = std::sqrt(d[0] * d[0] + d[1] * d[1] + d[2] * d[2]);
            walk.Step(d[0] * length / norm, d[1] * length / norm, d[2] * length / norm);
        }
        const std::vector<double>& points = walk.Points();
        const std::vector<PreparedLine> pieces = PrepareLine(points, Indices(points), kRadius);
        EXPECT_LE(FarthestVertex(points, pieces, kRadius), 2.0 + 1e-9) << "line " << line;
        ExpectNodesFromLine(points, pieces);
    }
}

// ---- What cannot be drawn --------------------------------------------------------------

TEST(LinePreparationTest, LinesWithNothingToDrawAreCounted)
{
    KesraIo::PreparedLines lines;
    const std::vector<double> single = {1.0, 2.0, 3.0};
    KesraIo::AddPreparedLine(lines, single, {5.0}, kRadius);
    // Two points closer than half the radius: nothing the tube can show.
    const std::vector<double> speck = {1.0, 2.0, 3.0, 1.0 + 0.4 * kRadius, 2.0, 3.0};
    KesraIo::AddPreparedLine(lines, speck, {5.0, 6.0}, kRadius);
    KesraIo::AddPreparedLine(lines, {}, {}, kRadius);
    EXPECT_EQ(lines.skippedLines, 3u);
    EXPECT_TRUE(lines.pieces.empty());

    const std::vector<double> hairpin = Hairpin();
    KesraIo::AddPreparedLine(lines, hairpin, Indices(hairpin), kRadius);
    EXPECT_EQ(lines.skippedLines, 3u);
    EXPECT_EQ(lines.pieces.size(), 2u);
}

TEST(LinePreparationTest, EndWithinHalfARadiusIsMergedAway)
{
    const std::vector<double> points = {0, 0, 0, 1, 0, 0, 1 + 0.4 * kRadius, 0, 0};
    const std::vector<PreparedLine> pieces = PrepareLine(points, {7, 8, 9}, kRadius);
    ASSERT_EQ(pieces.size(), 1u);
    EXPECT_EQ(pieces[0].values, (std::vector<double>{7, 8}));
}

TEST(LinePreparationTest, LastPointTooCloseToItsTurnStartsAPieceOfItsOwn)
{
    // A turn of 100 degrees needs 1.2 radii beyond it; the line ends 0.6 on.
    const std::vector<double> points = {0, 0, 0, 1, 0, 0, 1 - 0.6 * kRadius * 0.17364817766693033,
                                        0.6 * kRadius * 0.98480775301220802, 0};
    const std::vector<PreparedLine> pieces = PrepareLine(points, {7, 8, 9}, kRadius);
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_EQ(pieces[0].values, (std::vector<double>{7, 8}));
    EXPECT_EQ(pieces[1].values, (std::vector<double>{8, 9}));
}

TEST(LinePreparationTest, PointThatIsNotFiniteEndsThePiece)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::vector<double> points = {0, 0, 0, 1, 0, 0, nan, 0, 0, 2, 0, 0, 3, 0, 0};
    const std::vector<PreparedLine> pieces = PrepareLine(points, {0, 1, 2, 3, 4}, kRadius);
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_EQ(pieces[0].values, (std::vector<double>{0, 1}));
    EXPECT_EQ(pieces[1].values, (std::vector<double>{3, 4}));
}

TEST(LinePreparationTest, ValuesThatAreNotFiniteStayWithTheirNodes)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::vector<PreparedLine> pieces = PrepareLine({0, 0, 0, 1, 0, 0}, {nan, 2.0}, kRadius);
    ASSERT_EQ(pieces.size(), 1u);
    EXPECT_TRUE(std::isnan(pieces[0].values[0]));
    EXPECT_EQ(pieces[0].values[1], 2.0);
}

TEST(LinePreparationTest, RefusesBadRadiusOrMismatchedValues)
{
    const std::vector<double> points = {0, 0, 0, 1, 0, 0};
    EXPECT_TRUE(PrepareLine(points, {1, 2}, 0.0).empty());
    EXPECT_TRUE(PrepareLine(points, {1, 2}, -1.0).empty());
    EXPECT_TRUE(PrepareLine(points, {1, 2}, std::numeric_limits<double>::quiet_NaN()).empty());
    EXPECT_TRUE(PrepareLine(points, {1, 2}, std::numeric_limits<double>::infinity()).empty());
    EXPECT_TRUE(PrepareLine(points, {1}, kRadius).empty());
    EXPECT_TRUE(PrepareLine({0, 0, 0, 1, 0}, {1, 2}, kRadius).empty());
    EXPECT_EQ(PrepareLine(points, {1, 2}, kRadius).size(), 1u);
}

// ---- The suggested radius --------------------------------------------------------------

KesraIo::PolyData Lines(const std::vector<double>& points, const std::vector<std::size_t>& offsets)
{
    KesraIo::PolyData poly;
    poly.points.Doubles(points.size()) = points;
    poly.lineOffsets = offsets;
    for (std::size_t i = 0; i < points.size() / 3; ++i)
    {
        poly.connectivity.push_back(i);
    }
    return poly;
}

TEST(LinePreparationTest, SuggestedRadiusIsAFractionOfTheDiagonal)
{
    // Box 3 x 4 x 0, diagonal 5; steps of 5 are far longer than the radius.
    const KesraIo::PolyData poly = Lines({0, 0, 0, 3, 4, 0}, {0, 2});
    EXPECT_DOUBLE_EQ(KesraIo::SuggestedTubeRadius(poly), 0.025);
}

// A line of count steps of that length, then one more step of last.
KesraIo::PolyData FineLine(int count, double step, double last)
{
    std::vector<double> points;
    for (int i = 0; i <= count; ++i)
    {
        points.insert(points.end(), {step * i, 0, 0});
    }
    points.insert(points.end(), {points[points.size() - 3], 0, 0});
    points.insert(points.end(), {step * count + last, 0, 0});
    return Lines(points, {0, points.size() / 3});
}

TEST(LinePreparationTest, SuggestedRadiusFollowsFineSteps)
{
    // 1000 steps of 0.01 hold two thirds of the length; the repeat does not
    // count. Diagonal 15, typical step 0.01.
    EXPECT_NEAR(KesraIo::SuggestedTubeRadius(FineLine(1000, 0.01, 5.0)), 0.02, 1e-15);
}

TEST(LinePreparationTest, SuggestedRadiusIgnoresRunsOfTinySteps)
{
    // 1000 steps of 0.001 are most of the steps but a tenth of the length.
    EXPECT_DOUBLE_EQ(KesraIo::SuggestedTubeRadius(FineLine(1000, 0.001, 9.0)), 0.05);
}

TEST(LinePreparationTest, SuggestedRadiusStaysVisible)
{
    // Diagonal 10.001, typical step 0.001: twice that is below 0.001 of the
    // diagonal.
    EXPECT_DOUBLE_EQ(KesraIo::SuggestedTubeRadius(FineLine(10000, 0.001, 0.001)), 0.010001);
}

TEST(LinePreparationTest, SuggestedRadiusWithoutExtentIsOne)
{
    EXPECT_EQ(KesraIo::SuggestedTubeRadius(KesraIo::PolyData()), 1.0);
    EXPECT_EQ(KesraIo::SuggestedTubeRadius(Lines({1, 1, 1, 1, 1, 1}, {0, 2})), 1.0);
    // Points that no line uses do not count.
    KesraIo::PolyData loose = Lines({0, 0, 0, 3, 4, 0, 100, 0, 0}, {0, 2});
    loose.connectivity.pop_back();
    EXPECT_DOUBLE_EQ(KesraIo::SuggestedTubeRadius(loose), 0.025);
}

} // namespace
