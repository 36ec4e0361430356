#include "SceneSource.h"

#include "KesraIo/LinePreparation.h"
#include "KesraIo/Reader.h"

#include <filesystem>
#include <utility>
#include <vector>

namespace KesraViewer
{

namespace
{

using KesraExamples::ScalarLine;
using KesraExamples::Vec3;

// A prepared piece as the scene draws it.
ScalarLine FromPiece(KesraIo::PreparedLine&& piece)
{
    ScalarLine scalarLine;
    for (std::size_t n = 0; n < piece.values.size(); ++n)
    {
        scalarLine.points.emplace_back(piece.points[3 * n], piece.points[3 * n + 1], piece.points[3 * n + 2]);
    }
    scalarLine.values = std::move(piece.values);
    return scalarLine;
}

// The lines of a polydata file with the scalar (or, without one, the height
// z) at every point; the reader has checked the points, indices and the
// scalar's length. Each line is readied for tubes of the radius suggested
// for the file: split where it turns back, its jitter merged; a line with
// nothing left to draw is counted as skipped. False with error set when no
// line is left to draw.
bool FromPolyLines(const KesraIo::PolyData& poly, const std::string& file, SceneData& data,
                   std::string& error)
{
    const KesraIo::DataArray* scalars = poly.Find(poly.activeScalars, KesraIo::Association::Point);
    const bool hasScalar = scalars != nullptr;
    data.tubeRadius = KesraIo::SuggestedTubeRadius(poly);
    KesraIo::PreparedLines prepared;
    std::vector<double> points;
    std::vector<double> values;
    for (std::size_t line = 0; line < poly.LineCount(); ++line)
    {
        points.clear();
        values.clear();
        for (std::size_t k = poly.lineOffsets[line]; k < poly.lineOffsets[line + 1]; ++k)
        {
            const std::size_t index = poly.connectivity[k];
            const Vec3 p(poly.points[3 * index], poly.points[3 * index + 1], poly.points[3 * index + 2]);
            points.insert(points.end(), {p.x, p.y, p.z});
            values.push_back(hasScalar ? scalars->Value(index, 0) : p.z);
        }
        KesraIo::AddPreparedLine(prepared, points, values, data.tubeRadius);
        // Handed on at once: a large file is held twice for one line only.
        for (KesraIo::PreparedLine& piece : prepared.pieces)
        {
            data.lines.push_back(FromPiece(std::move(piece)));
        }
        prepared.pieces.clear();
    }
    data.skippedLines = prepared.skippedLines;
    if (data.lines.empty())
    {
        error = file + ": no line with two or more distinct points to draw";
        return false;
    }
    data.title = std::filesystem::path(file).filename().string();
    data.valueName = hasScalar ? scalars->name : "z";
    return true;
}

} // namespace

bool LoadScene(const std::string& file, SceneData& data, std::string& error)
{
    if (file.empty())
    {
        data = KesraExamples::FlowSceneData();
        return true;
    }
    try
    {
        data = SceneData();
        return FromPolyLines(KesraIo::ReadPolyData(file), file, data, error);
    }
    catch (const KesraIo::ReadError& refusal)
    {
        error = refusal.what();
        return false;
    }
}

} // namespace KesraViewer
