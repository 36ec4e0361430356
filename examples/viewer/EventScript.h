// Event files: input replayed headlessly through the window's own handling.
//
// One event per line, words separated by blanks, '#' starts a comment:
//   press left|middle|right X Y [shift] [ctrl]
//   move X Y
//   release left|middle|right X Y
//   wheel X Y STEPS        (positive steps zoom in)
//   key C                  (one character, or "esc")
//   frame [N]              (draws N frames, 1 by default; animations advance)
//   resize W H
// X and Y are window pixels from the top-left corner.
#pragma once

#include "gl/GlSceneInput.h"

#include <istream>
#include <stdexcept>
#include <string>
#include <vector>

namespace KesraViewer
{

class EventError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

struct Event
{
    enum class Kind
    {
        Press,
        Move,
        Release,
        Wheel,
        Key,
        Frame,
        Resize
    };

    Kind kind = Kind::Frame;
    KesraGl::MouseButton button = KesraGl::MouseButton::Left;
    KesraGl::KeyModifiers modifiers;
    int a = 0; // x, width, steps or frame count
    int b = 0; // y or height
    int c = 0; // wheel steps
    char key = 0;
};

// Throws EventError naming name, the line and what was expected.
std::vector<Event> ParseEvents(std::istream& in, const std::string& name);
// Reads the file; an unreadable file throws EventError too.
std::vector<Event> ReadEventFile(const std::string& path);

// Feeds the events to input, drawing the frames through scene; stops early at
// a quit key. Returns true when it stopped there.
bool ReplayEvents(const std::vector<Event>& events, KesraGl::CGlSceneInput& input, KesraGl::CGlScene& scene);

} // namespace KesraViewer
