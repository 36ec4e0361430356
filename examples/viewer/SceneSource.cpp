#include "SceneSource.h"

#include "Flow.h"
#include "KesraIo/ArrayChoice.h"
#include "KesraIo/LinePreparation.h"
#include "KesraIo/Reader.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <utility>
#include <vector>

namespace KesraViewer
{

namespace
{

using KesraBackend::ScalarLine;

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

} // namespace

bool PrepareLines(const KesraIo::PolyData& poly, const std::vector<double>& entryValues, double radius,
                  SceneData& data)
{
    return PrepareLines(poly, entryValues, radius, data, LineProgress());
}

namespace
{

// Tells progress every kProgressSteps-th of the connectivity entries, and
// once more at the end; false once progress says stop.
class LineTeller
{
public:
    LineTeller(const LineProgress& progress, std::size_t entries)
        : m_progress(progress), m_entries(entries), m_step(std::max<std::size_t>(1, entries / kProgressSteps)),
          m_next(progress ? m_step : std::numeric_limits<std::size_t>::max())
    {
    }

    // Before anything is done: the suggested radius sorts every step of a
    // large file first.
    bool Start() const { return !m_progress || m_progress(0.0); }

    // entry: the first connectivity entry of the next line.
    bool Going(std::size_t entry)
    {
        if (entry < m_next)
        {
            return true;
        }
        m_next = entry + m_step;
        return m_progress(static_cast<double>(entry) / static_cast<double>(m_entries));
    }

    bool Done() const { return !m_progress || m_progress(1.0); }

private:
    static constexpr std::size_t kProgressSteps = 200;

    const LineProgress& m_progress;
    std::size_t m_entries;
    std::size_t m_step;
    std::size_t m_next;
};

[[noreturn]] void Stop(SceneData& data)
{
    data.lines = std::vector<ScalarLine>();
    throw KesraIo::ReadCancelled();
}

} // namespace

bool PrepareLines(const KesraIo::PolyData& poly, const std::vector<double>& entryValues, double radius,
                  SceneData& data, const LineProgress& progress)
{
    LineTeller teller(progress, poly.connectivity.size());
    if (!teller.Start())
    {
        Stop(data);
    }
    data.tubeRadius = radius > 0.0 ? radius : KesraIo::SuggestedTubeRadius(poly);
    KesraIo::PreparedLines prepared;
    std::vector<double> points;
    std::vector<double> values;
    for (std::size_t line = 0; line < poly.LineCount(); ++line)
    {
        if (!teller.Going(poly.lineOffsets[line]))
        {
            Stop(data);
        }
        points.clear();
        values.clear();
        for (std::size_t k = poly.lineOffsets[line]; k < poly.lineOffsets[line + 1]; ++k)
        {
            const std::size_t index = poly.connectivity[k];
            points.insert(points.end(), {poly.points[3 * index], poly.points[3 * index + 1],
                                         poly.points[3 * index + 2]});
            values.push_back(entryValues[k]);
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
    if (!teller.Done())
    {
        Stop(data);
    }
    return !data.lines.empty();
}

namespace
{

bool FromPolyLines(const KesraIo::PolyData& poly, const std::vector<double>& entryValues, double radius,
                   const std::string& file, SceneData& data, std::string& error, const LineProgress& progress)
{
    if (!PrepareLines(poly, entryValues, radius, data, progress))
    {
        error = file + ": no line with two or more distinct points to draw";
        return false;
    }
    data.title = std::filesystem::path(file).filename().string();
    return true;
}

// The chosen array's value at every connectivity entry, or without an array
// the height z of its point.
std::vector<double> EntryValues(const KesraIo::PolyData& poly, const KesraIo::ArrayChoice& choice)
{
    if (choice.array != nullptr)
    {
        return KesraIo::ConnectivityValues(poly, choice);
    }
    std::vector<double> heights;
    heights.reserve(poly.connectivity.size());
    for (const std::size_t index : poly.connectivity)
    {
        heights.push_back(poly.points[3 * index + 2]);
    }
    return heights;
}

std::string OpenSummary(const KesraIo::PolyData& poly, const SceneData& data, const std::string& file)
{
    double low = 0.0;
    double high = 0.0;
    bool found = false;
    for (const KesraBackend::ScalarLine& line : data.lines)
    {
        for (const double v : line.values)
        {
            if (std::isfinite(v))
            {
                low = found ? std::min(low, v) : v;
                high = found ? std::max(high, v) : v;
                found = true;
            }
        }
    }
    char range[64] = "no finite value";
    if (found)
    {
        std::snprintf(range, sizeof range, "[%.6g, %.6g]", low, high);
    }
    // Lines that turn back are drawn as several tubes; say so only then.
    const std::size_t drawn = poly.LineCount() - data.skippedLines;
    const std::string pieces =
        data.lines.size() != drawn ? ", drawn as " + std::to_string(data.lines.size()) + " tubes" : "";
    return file + ": " + std::to_string(drawn) + " lines (" + std::to_string(data.skippedLines) + " skipped" +
           pieces + "), " + std::to_string(poly.PointCount()) + " points, coloured by " + data.valueName + " " +
           range;
}

} // namespace

bool LoadScene(const SceneRequest& request, SceneData& data, std::string& summary, std::string& error)
{
    return LoadScene(request, data, summary, error, LoadProgress());
}

bool LoadScene(const SceneRequest& request, SceneData& data, std::string& summary, std::string& error,
               const LoadProgress& progress)
{
    summary.clear();
    if (request.file.empty())
    {
        data = KesraExamples::FlowSceneData();
        return true;
    }
    try
    {
        data = SceneData();
        KesraIo::ReadMonitor monitor;
        LineProgress lineProgress;
        if (progress)
        {
            monitor.progress = [&progress](double fraction) { return progress(LoadPhase::Reading, fraction); };
            lineProgress = [&progress](double fraction) { return progress(LoadPhase::Preparing, fraction); };
        }
        const KesraIo::PolyData poly = KesraIo::ReadPolyData(request.file, monitor);
        KesraIo::ArrayChoice choice = KesraIo::DefaultArray(poly);
        if (!request.scalars.empty() && !KesraIo::ChooseArray(poly, request.scalars, choice, error))
        {
            error = request.file + ": --scalars: " + error;
            return false;
        }
        if (!FromPolyLines(poly, EntryValues(poly, choice), request.radius, request.file, data, error,
                           lineProgress))
        {
            return false;
        }
        data.valueName = choice.array != nullptr ? choice.Label() : "z";
        summary = OpenSummary(poly, data, request.file);
        return true;
    }
    catch (const KesraIo::ReadError& refusal)
    {
        error = refusal.what();
        return false;
    }
    catch (const KesraIo::ReadCancelled&)
    {
        data = SceneData();
        throw;
    }
}

bool LoadScene(const std::string& file, SceneData& data, std::string& error)
{
    std::string summary;
    return LoadScene(SceneRequest{file, ""}, data, summary, error);
}

bool DescribeFile(const std::string& file, std::string& text, std::string& error)
{
    try
    {
        text = KesraIo::Summary(KesraIo::ReadPolyData(file), file);
        return true;
    }
    catch (const KesraIo::ReadError& refusal)
    {
        error = refusal.what();
        return false;
    }
}

} // namespace KesraViewer
