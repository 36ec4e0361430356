// The viewer's two hosts: headless through EGL, and a freeglut window. Both
// replay --events first and time --bench-frames through the same code.
//
// Exit codes: 0 done, 1 no graphics context (EGL or display) or an output
// that cannot be written (nothing is left behind), 2 bad input, 130 Ctrl-C
// (nothing is left behind either).
#pragma once

#include "EventScript.h"
#include "Options.h"
#include "SceneSource.h"
#include "common/SceneData.h"

#include <vector>

namespace KesraViewer
{

using KesraBackend::SceneData;

int RunHeadless(const Options& options, SceneData data);
int RunWindow(const Options& options, SceneData data);
// Opens the window first and loads request's file on a thread meanwhile,
// showing how far it is; then shows the scene in the same window. Closing
// the window or a quit key during the load ends it (0).
int RunWindow(const Options& options, const SceneRequest& request);

// The milliseconds of each of frames frames, each drawn and finished.
std::vector<double> TimeFrames(KesraGl::CGlScene& scene, int frames);
// Prints the median and the worst of times.
void PrintFrameTimes(const std::vector<double>& times, const KesraGl::CGlScene& scene);

// The --events file's events into events; false with the message printed.
bool LoadEvents(const Options& options, std::vector<Event>& events);
// Replays events, then times --bench-frames and prints the times. True when
// the events end with a quit key (then nothing is timed).
bool RunScript(const Options& options, const std::vector<Event>& events, KesraGl::CGlScene& scene,
               KesraGl::CGlSceneInput& input);

// What the command line sets on a new scene: the view, the legend's range;
// and what the input prints (the value under the cursor).
void ApplyOptions(const Options& options, KesraGl::CGlScene& scene, KesraGl::CGlSceneInput& input);

// Prints on the terminal how far the tubes of a large scene are made.
void ReportTubeProgress(KesraGl::CGlScene& scene);

// Writes the current frame of scene as a PNG; false with the message
// printed, or without writing anything once the user has interrupted.
bool WriteSnapshot(KesraGl::CGlScene& scene, const std::string& path);

} // namespace KesraViewer
