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

// Points x, y, z one after another, from kOrigin a step at a time.
class Walk
{
public:
    Walk() : m_points(kOrigin, kOrigin + 3) {}

    void Step(double dx, double dy, double dz)
    {
        const double* last = &m_points[m_points.size() - 3];
        const double next[3] = {last[0] + dx, last[1] + dy, last[2] + dz};
        m_points.insert(m_points.end(), next, next + 3);
    }
    // count steps of that many radii at angle degrees from +x, in z = const.
    Walk& Run(int count, double radii, double degrees)
    {
        const double a = degrees * kPi / 180.0;
        for (int i = 0; i < count; ++i)
        {
            Step(radii * kRadius * std::cos(a), radii * kRadius * std::sin(a), 0.0);
        }
        return *this;
    }

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
        walk.Run(1, 0.02, 0.0).Run(1, 0.018, 180.0 - bend(random));
    }
    return walk.Points();
}

// Out along x, 0.3 radii aside and back.
std::vector<double> Hairpin()
{
    return Walk().Run(20, 1.0, 0.0).Run(1, 0.3, 90.0).Run(20, 1.0, 180.0).Points();
}

std::vector<double> Reversal()
{
    return Walk().Run(10, 1.0, 0.0).Run(10, 1.0, 179.9).Points();
}

// A crawl in steps of 1e-6 radii, every one in a new direction, then on.
std::vector<double> Crawl()
{
    std::mt19937 random(11);
    std::normal_distribution<double> normal;
    Walk walk;
    walk.Run(1, 2.0, 30.0);
    for (int i = 0; i < 200; ++i)
    {
        const double d[3] = {normal(random), normal(random), normal(random)};
        const double scale = 1e-6 * kRadius / std::sqrt(d[0] * d[0] + d[1] * d[1] + d[2] * d[2]);
        walk.Step(d[0] * scale, d[1] * scale, d[2] * scale);
    }
    return walk.Run(1, 2.0, -60.0).Points();
}

// Every point written three times, round a right angle.
std::vector<double> Repeated()
{
    Walk walk;
    for (int i = 0; i < 6; ++i)
    {
        walk.Run(1, 2.0, i < 3 ? 0.0 : 90.0).Run(2, 0.0, 0.0);
    }
    return walk.Points();
}

// A helix of curvature radius 10 radii, in steps of about one radius.
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
std::vector<double> TubeVertices(const std::vector<double>& points)
{
    const int nodes = static_cast<int>(points.size() / 3);
    KesraTest::TestStreamline tube;
    EXPECT_TRUE(tube.Create(nodes, kSlices, kRadius, 1.0));
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
    const double ab[3] = {b[0] - a[0], b[1] - a[1], b[2] - a[2]};
    const double ap[3] = {p[0] - a[0], p[1] - a[1], p[2] - a[2]};
    const double abab = ab[0] * ab[0] + ab[1] * ab[1] + ab[2] * ab[2];
    const double apab = ap[0] * ab[0] + ap[1] * ab[1] + ap[2] * ab[2];
    const double t = abab > 0.0 ? std::clamp(apab / abab, 0.0, 1.0) : 0.0;
    return std::hypot(ap[0] - t * ab[0], ap[1] - t * ab[1], ap[2] - t * ab[2]);
}

// How far, in radii, the farthest vertex of the tubes round pieces lies
// from line.
double FarthestVertex(const std::vector<double>& line, const std::vector<PreparedLine>& pieces)
{
    double farthest = 0.0;
    for (const PreparedLine& piece : pieces)
    {
        const std::vector<double> vertices = TubeVertices(piece.points);
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
    return farthest / kRadius;
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
        EXPECT_GT(FarthestVertex(line, Unprepared(line)), 3.0) << shape.name;
    }
}

TEST(LinePreparationTest, PreparedTubesOfWildLinesStayWithinTwoRadii)
{
    for (const Shape& shape : kWildShapes)
    {
        const std::vector<double> line = shape.make();
        const std::vector<PreparedLine> pieces = PrepareLine(line, Indices(line), kRadius);
        ASSERT_FALSE(pieces.empty()) << shape.name;
        EXPECT_LE(FarthestVertex(line, pieces), 2.0 + 1e-9) << shape.name;
        ExpectNodesFromLine(line, pieces);
    }
}

// The values of each piece: the indices of its nodes in the line.
std::vector<std::vector<double>> PieceValues(const std::vector<double>& line)
{
    std::vector<std::vector<double>> values;
    for (const PreparedLine& piece : PrepareLine(line, Indices(line), kRadius))
    {
        values.push_back(piece.values);
    }
    return values;
}

TEST(LinePreparationTest, WildLinesSplitAtTurnsBackAndMergeTheirJitter)
{
    // The hairpin's step aside, shorter than half a radius, merges into the
    // way back.
    const std::vector<std::vector<double>> hairpin = PieceValues(Hairpin());
    ASSERT_EQ(hairpin.size(), 2u);
    EXPECT_EQ(hairpin[0].size(), 21u);
    EXPECT_EQ(hairpin[1].size(), 21u);
    EXPECT_EQ(std::vector<double>(hairpin[1].begin(), hairpin[1].begin() + 2),
              (std::vector<double>{20, 22}));

    const std::vector<std::vector<double>> reversal = PieceValues(Reversal());
    ASSERT_EQ(reversal.size(), 2u);
    EXPECT_EQ(reversal[0].back(), 10.0);
    EXPECT_EQ(reversal[1].front(), 10.0);

    // The zig-zag drifts 0.002 radii a round trip: merged, a straight run.
    const std::vector<std::vector<double>> zigZag = PieceValues(ZigZag());
    ASSERT_EQ(zigZag.size(), 1u);
    EXPECT_LT(zigZag[0].size(), 10u);

    EXPECT_EQ(PieceValues(Repeated()), (std::vector<std::vector<double>>{{0, 1, 4, 7, 10, 13, 16}}));
}

// ---- Tame lines pass untouched ---------------------------------------------------------

TEST(LinePreparationTest, StraightLinesAndGentleCurvesPassUntouched)
{
    const std::vector<double> straight = Walk().Run(50, 0.7, -20.0).Points();
    for (const std::vector<double>& line : {straight, GentleCurve()})
    {
        const std::vector<PreparedLine> pieces = PrepareLine(line, Indices(line), kRadius);
        ASSERT_EQ(pieces.size(), 1u);
        EXPECT_EQ(pieces[0].points, line);
        EXPECT_EQ(pieces[0].values, Indices(line));
        // The curve's turns of 5.7 degrees mitre its rings a little.
        EXPECT_LE(FarthestVertex(line, pieces), 1.01);
    }
}

TEST(LinePreparationTest, TurnsAreKeptWhereTheirRingsHaveRoom)
{
    // Each right angle's ring reaches one radius along its segments: a U
    // with sides of 1.05 radii needs a base of 2.02 radii.
    const std::vector<double> roomy = Walk().Run(1, 1.05, 0).Run(1, 2.1, 90).Run(1, 1.05, 180).Points();
    const std::vector<PreparedLine> whole = PrepareLine(roomy, Indices(roomy), kRadius);
    ASSERT_EQ(whole.size(), 1u);
    EXPECT_EQ(whole[0].points, roomy);
    EXPECT_LE(FarthestVertex(roomy, whole), std::sqrt(2.0) + 1e-9);

    const std::vector<double> tight = Walk().Run(1, 1.05, 0).Run(1, 1.9, 90).Run(1, 1.05, 180).Points();
    EXPECT_GT(FarthestVertex(tight, Unprepared(tight)), 3.0);
    const std::vector<PreparedLine> split = PrepareLine(tight, Indices(tight), kRadius);
    ASSERT_EQ(split.size(), 2u);
    EXPECT_EQ(split[0].values, (std::vector<double>{0, 1, 2}));
    EXPECT_EQ(split[1].values, (std::vector<double>{2, 3}));
}

// ---- Random lines: whatever comes in, every vertex stays near its node ------------------

TEST(LinePreparationTest, RandomLinesNeverStrayBeyondTwoRadii)
{
    std::mt19937 random(2024);
    std::uniform_real_distribution<double> exponent(-7.0, 1.5);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    for (int line = 0; line < 60; ++line)
    {
        // Steps of 1e-7 to 30 radii, one in ten of no length at all.
        Walk walk;
        for (int i = 0; i < 60; ++i)
        {
            const double length = i % 10 == 3 ? 0.0 : kRadius * std::pow(10.0, exponent(random));
            const double d[3] = {unit(random), unit(random), unit(random)};
            const double scale = length / std::hypot(d[0], d[1], d[2]);
            walk.Step(d[0] * scale, d[1] * scale, d[2] * scale);
        }
        const std::vector<PreparedLine> pieces = PrepareLine(walk.Points(), Indices(walk.Points()), kRadius);
        EXPECT_LE(FarthestVertex(walk.Points(), pieces), 2.0 + 1e-9) << "line " << line;
        ExpectNodesFromLine(walk.Points(), pieces);
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

TEST(LinePreparationTest, LineEndsStayWhereTheTubeCanShowThem)
{
    // An end within half a radius of the node before merges away.
    const std::vector<double> shortEnd = {0, 0, 0, 1, 0, 0, 1 + 0.4 * kRadius, 0, 0};
    EXPECT_EQ(PieceValues(shortEnd), (std::vector<std::vector<double>>{{0, 1}}));
    // A turn of 100 degrees needs 1.2 radii beyond it; an end 0.6 on gets a
    // piece of its own.
    const std::vector<double> turnedEnd = Walk().Run(1, 10.0, 0.0).Run(1, 0.6, 100.0).Points();
    EXPECT_EQ(PieceValues(turnedEnd), (std::vector<std::vector<double>>{{0, 1}, {1, 2}}));
}

TEST(LinePreparationTest, PointThatIsNotFiniteEndsThePiece)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::vector<double> points = {0, 0, 0, 1, 0, 0, nan, 0, 0, 2, 0, 0, 3, 0, 0};
    EXPECT_EQ(PieceValues(points), (std::vector<std::vector<double>>{{0, 1}, {3, 4}}));
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

TEST(LinePreparationTest, SuggestedRadiusFollowsTheStepOfHalfTheLength)
{
    // 1000 steps of 0.01 hold two thirds of the length (the repeat does not
    // count): twice 0.01 is below 0.005 of the diagonal of 15.
    EXPECT_NEAR(KesraIo::SuggestedTubeRadius(FineLine(1000, 0.01, 5.0)), 0.02, 1e-15);
    // 1000 steps of 0.001 are most of the steps but a tenth of the length.
    EXPECT_DOUBLE_EQ(KesraIo::SuggestedTubeRadius(FineLine(1000, 0.001, 9.0)), 0.05);
    // Twice the step 0.001 is below 0.001 of the diagonal of 10.001.
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
