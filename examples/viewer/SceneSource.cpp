#include "SceneSource.h"

#include "KesraIo/Reader.h"

#include <filesystem>

namespace KesraViewer
{

namespace
{

using KesraExamples::ScalarLine;
using KesraExamples::Vec3;

// The lines of a polydata file with the scalar (or, without one, the height
// z) at every point; the reader has checked the points, indices and the
// scalar's length. Consecutive repeated points are dropped: a tube segment
// needs a direction. False with error set when no line is left to draw.
bool FromPolyLines(const KesraIo::PolyData& poly, const std::string& file, SceneData& data,
                   std::string& error)
{
    const KesraIo::DataArray* scalars = poly.Find(poly.activeScalars, KesraIo::Association::Point);
    const bool hasScalar = scalars != nullptr;
    for (std::size_t line = 0; line < poly.LineCount(); ++line)
    {
        ScalarLine scalarLine;
        for (std::size_t k = poly.lineOffsets[line]; k < poly.lineOffsets[line + 1]; ++k)
        {
            const std::size_t index = poly.connectivity[k];
            const Vec3 p(poly.points[3 * index], poly.points[3 * index + 1], poly.points[3 * index + 2]);
            if (!scalarLine.points.empty() && scalarLine.points.back().x == p.x
                && scalarLine.points.back().y == p.y && scalarLine.points.back().z == p.z)
            {
                continue;
            }
            scalarLine.points.push_back(p);
            scalarLine.values.push_back(hasScalar ? scalars->Value(index, 0) : p.z);
        }
        if (scalarLine.points.size() >= 2)
        {
            data.lines.push_back(std::move(scalarLine));
        }
    }
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
