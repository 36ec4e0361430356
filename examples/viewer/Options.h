// The viewer's command line.
#pragma once

#include "Engine/ScalarBar.h"
#include "common/Palette.h"
#include "common/Views.h"

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
    KesraBackend::View view = KesraBackend::View::Iso;
    std::string events;     // event file to replay first
    int benchFrames = 0;    // frames to time
    std::string file;       // the user's polylines; empty for the flow past a sphere
    bool info = false;      // print the file's summary instead of showing it
    std::string scalars;    // the array that colours: NAME[:mag|:x|:y|:z|:N];
                            // empty for the file's own choice
    bool hasRange = false;  // the legend over [rangeMin, rangeMax], not the data's
    double rangeMin = 0.0;
    double rangeMax = 0.0;
    double radius = 0.0;    // tube radius in model units; 0 picks one
    bool hasUnit = false;   // the ruler's unit; a file's has none unless given
    std::string unit;
    KesraBackend::Palette palette = KesraBackend::Palette::RedBlue;
    bool logScale = false;  // the legend's log scale
    // The legend's label format and its digits; Default keeps its own labels.
    KesraEngine::eScalarBarLabelFormat labelFormat = KesraEngine::eLabelFormatDefault;
    int labelDigits = 2;
};

// False with error set for anything that is not a valid command line.
bool ParseOptions(int argc, const char* const* argv, Options& options, std::string& error);

std::string Usage();

} // namespace KesraViewer
