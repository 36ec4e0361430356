// Where the viewer's scene comes from: the flow past a sphere without a
// file, the user's polylines with one, coloured by the array the user names
// or by the file's own choice.
#pragma once

#include "KesraIo/PolyData.h"
#include "common/SceneData.h"

#include <functional>
#include <string>
#include <vector>

namespace KesraViewer
{

using KesraBackend::SceneData;

// The lines of poly, with entryValues[k] at connectivity entry k, readied for
// tubes of the given radius (0: the one suggested for the data) and added to
// data with that radius: split where they turn back, their jitter merged; a
// line with nothing left to draw is counted in data.skippedLines. Every host
// that draws a user's lines goes through here, so that they all draw the same
// tubes. False when no line is left to draw.
bool PrepareLines(const KesraIo::PolyData& poly, const std::vector<double>& entryValues, double radius,
                  SceneData& data);

// Told the fraction of the lines prepared now and then: 0 before anything
// is done, a few hundred times for a large file, the last time 1. Returns
// false to stop.
using LineProgress = std::function<bool(double fraction)>;

// As above, telling progress how far it is; throws KesraIo::ReadCancelled,
// with data's lines freed, once progress returns false.
bool PrepareLines(const KesraIo::PolyData& poly, const std::vector<double>& entryValues, double radius,
                  SceneData& data, const LineProgress& progress);

// What the command line asks of the scene.
struct SceneRequest
{
    std::string file;    // empty: the flow past a sphere
    std::string scalars; // empty: the file's active scalars, else its first
                         // point array, else the height z
    double radius = 0.0; // tube radius the lines are prepared for; 0: the
                         // one suggested for the file
};

// False with error set (naming the file and what is wrong, or the request
// and the file's arrays) when the file cannot be shown. summary is set to one
// line for the terminal: lines drawn and skipped, points, the colouring value
// and its range; empty for the flow.
bool LoadScene(const SceneRequest& request, SceneData& data, std::string& summary, std::string& error);

// What loading a file is doing.
enum class LoadPhase
{
    Reading,  // the file, from the disk and parsed
    Preparing // its lines, for tubes
};

// Told the phase and its fraction done now and then; returns false to stop.
using LoadProgress = std::function<bool(LoadPhase phase, double fraction)>;

// As above, telling progress how far it is; throws KesraIo::ReadCancelled,
// with everything read so far freed, once progress returns false.
bool LoadScene(const SceneRequest& request, SceneData& data, std::string& summary, std::string& error,
               const LoadProgress& progress);
// The file with its own choice of array.
bool LoadScene(const std::string& file, SceneData& data, std::string& error);

// The file's summary for --info: points, lines, bounds, every array with its
// finite ranges, what was read past. False with error set for a bad file.
bool DescribeFile(const std::string& file, std::string& text, std::string& error);

} // namespace KesraViewer
