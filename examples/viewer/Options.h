// The viewer's command line.
#pragma once

#include "Views.h"

#include <string>

namespace KesraViewer
{

struct Options
{
    bool help = false;
    bool headless = false;
    std::string snapshot;   // PNG written after the events (headless)
    int width = 1200;
    int height = 800;
    KesraExamples::View view = KesraExamples::View::Iso;
    std::string events;     // event file to replay first
    int benchFrames = 0;    // frames to time
    std::string file;       // VTK polydata; empty for the flow past a sphere
};

// False with error set for anything that is not a valid command line.
bool ParseOptions(int argc, const char* const* argv, Options& options, std::string& error);

const char* Usage();

} // namespace KesraViewer
