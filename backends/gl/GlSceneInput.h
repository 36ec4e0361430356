// CGlSceneInput: what the user's mouse and keys do to a CGlScene, the same
// for every host (a window, a toolkit's widget, a replayed event file).
//
// Positions are window pixels from the top-left corner, as window systems
// report them; the camera and the rubber band get them with y up.
// Left drag rotates, middle or shift-left drag pans, right drag zooms,
// ctrl-left drag spans the rubber band that the view then zooms to, the wheel
// zooms at the cursor. Keys: 1-7 the standard views (front, back, left,
// right, top, bottom, iso) through a smooth rotation, i six-sides inspection,
// f zoom all, p next palette, b banded, v inverse, r the legend back over the
// data's range, l tubes or plain lines, c the value of the node under the
// cursor (where the last move left it), s snapshot, h help, q or Esc quit
// (Esc first abandons a rubber band under way); the host decides what
// snapshot and quit mean. GlSceneControls.h lists them.
#pragma once

#include "gl/GlScene.h"

#include <functional>
#include <string>

namespace KesraGl
{

enum class MouseButton
{
    Left,
    Middle,
    Right
};

struct KeyModifiers
{
    bool shift = false;
    bool ctrl = false;
};

enum class KeyAction
{
    None,
    Quit
};

class CGlSceneInput
{
public:
    static constexpr char kEscape = 27;

    // scene is not owned and must outlive the input.
    explicit CGlSceneInput(CGlScene& scene) : m_scene(scene) {}

    // What the s key does (the host writes a snapshot).
    void SetSnapshotAction(std::function<void()> action) { m_snapshot = std::move(action); }
    // Where the c key's answer goes (the host prints it): a line naming the
    // value, its line and node, or saying that no node is near.
    void SetProbeReport(std::function<void(const std::string&)> report) { m_report = std::move(report); }

    void Press(MouseButton button, int x, int y, KeyModifiers modifiers);
    // With a button held or without: the cursor is where the c key looks.
    void Move(int x, int y);
    void Release(MouseButton button, int x, int y);
    void Wheel(int x, int y, int steps);
    KeyAction Key(char key);
    void Resize(int width, int height) { m_scene.Resize(width, height); }

private:
    enum class Drag
    {
        None,
        Camera,
        Band
    };

    // y up, as the camera counts.
    int Up(int y) const { return m_scene.Renderer().GetHeight() - 1 - y; }

    void Probe();

    CGlScene& m_scene;
    std::function<void()> m_snapshot;
    std::function<void(const std::string&)> m_report;
    Drag m_drag = Drag::None;
    int m_cursorX = -1; // none yet
    int m_cursorY = -1;
};

} // namespace KesraGl
