#include "gl/GlSceneInput.h"

#include <cstdio>

namespace KesraGl
{

void CGlSceneInput::Press(MouseButton button, int x, int y, KeyModifiers modifiers)
{
    if (m_drag != Drag::None)
    {
        return;
    }
    CGlCamera& camera = m_scene.Camera();
    if (button == MouseButton::Left && modifiers.ctrl)
    {
        if (m_scene.Area().OnMouseDown(x, Up(y)))
        {
            m_drag = Drag::Band;
        }
        return;
    }
    if (button == MouseButton::Middle || (button == MouseButton::Left && modifiers.shift))
    {
        camera.BeginPan(x, Up(y));
    }
    else if (button == MouseButton::Left)
    {
        camera.BeginRotate(x, Up(y));
    }
    else
    {
        camera.BeginZoom(x, Up(y));
    }
    m_drag = Drag::Camera;
}

void CGlSceneInput::Move(int x, int y)
{
    m_cursorX = x;
    m_cursorY = y;
    CGlCamera& camera = m_scene.Camera();
    if (m_drag == Drag::Band)
    {
        m_scene.Area().OnMouseMove(x, Up(y));
    }
    else if (m_drag == Drag::Camera)
    {
        // Only the interaction begun answers; the others do nothing.
        camera.Rotate(x, Up(y));
        camera.Pan(x, Up(y));
        camera.Zoom(x, Up(y));
        // The cheap picture while the view follows the mouse.
        m_scene.SetMoving(true);
    }
}

void CGlSceneInput::Release(MouseButton, int x, int y)
{
    if (m_drag == Drag::Band)
    {
        m_scene.Area().OnMouseUp(x, Up(y));
    }
    else if (m_drag == Drag::Camera)
    {
        Move(x, y);
        m_scene.Camera().EndInteraction();
        m_scene.SetMoving(false);
    }
    m_drag = Drag::None;
}

void CGlSceneInput::Wheel(int x, int y, int steps)
{
    m_scene.Camera().WheelZoom(x, Up(y), steps);
    m_scene.Renderer().Invalidate();
}

KeyAction CGlSceneInput::Key(char key)
{
    if (key >= '1' && key <= '7')
    {
        // 1-6 the six sides, 7 the iso view.
        constexpr View kKeyViews[] = {View::Front, View::Back, View::Left, View::Right,
                                      View::Top,   View::Bottom, View::Iso};
        m_scene.SetView(kKeyViews[key - '1'], true);
        return KeyAction::None;
    }
    switch (key)
    {
    case 'i': m_scene.ToggleSixSides(); break;
    case 'f': m_scene.ZoomAll(); break;
    case 'p': m_scene.NextPalette(); break;
    case 'b': m_scene.ToggleBanded(); break;
    case 'v': m_scene.ToggleInverse(); break;
    case 'g': m_scene.ToggleLogScale(); break;
    case 'h': m_scene.ToggleHelp(); break;
    case 'r': m_scene.ResetValueRange(); break;
    case 'l': m_scene.ToggleLines(); break;
    case 'c': Probe(); break;
    case 's':
        if (m_snapshot)
        {
            m_snapshot();
        }
        break;
    case kEscape:
        if (m_drag == Drag::Band)
        {
            m_scene.Area().CancelDrag();
            m_drag = Drag::None;
            break;
        }
        return KeyAction::Quit;
    case 'q': return KeyAction::Quit;
    default: break;
    }
    return KeyAction::None;
}

void CGlSceneInput::Probe()
{
    CGlScene::Probe probe;
    const bool found = m_cursorX >= 0 && m_scene.ProbeAt(m_cursorX, Up(m_cursorY), probe);
    if (!m_report)
    {
        return;
    }
    if (!found)
    {
        m_report("no node within " + std::to_string(static_cast<int>(CGlScene::kProbePixels)) +
                 " pixels of the cursor");
        return;
    }
    const KesraBackend::Vec3& point = m_scene.Data().lines[probe.line].points[probe.node];
    char text[160];
    std::snprintf(text, sizeof text, "%.6g at (%.6g, %.6g, %.6g), line %zu node %zu", probe.value, point.x,
                  point.y, point.z, probe.line, probe.node);
    m_report(m_scene.Data().valueName + " " + text);
}

} // namespace KesraGl
