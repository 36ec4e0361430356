// CNavigatedCamera: the part of every backend's camera that does not touch a
// graphics interface. The mouse operations of the library's camera go to one
// CMouseNavigation (see there for what a drag, the wheel and a rectangle do),
// and the two animations advance one frame per redraw. A backend's camera
// derives from it and supplies only the three Apply operations, which load
// the view into its graphics interface.
#pragma once

#include "common/MouseNavigation.h"

namespace KesraBackend
{

class CNavigatedCamera : public KesraEngine::CKesraCamera
{
public:
    void BeginRotate(int x, int y) override { Begin(CMouseNavigation::Drag::Rotate, x, y); }
    // Turns from the rotation at BeginRotate by the drag since then.
    void Rotate(int x, int y) override { m_navigation.Rotate(*this, x, y); }
    void BeginPan(int x, int y) override { Begin(CMouseNavigation::Drag::Pan, x, y); }
    // Moves the picture with the mouse since BeginPan.
    void Pan(int x, int y) override { m_navigation.Pan(*this, x, y); }
    void BeginZoom(int x, int y) override { Begin(CMouseNavigation::Drag::Zoom, x, y); }
    // Scales from the scale at BeginZoom by the vertical drag since then.
    void Zoom(int x, int y) override { m_navigation.Zoom(*this, x, y); }
    // Later Rotate, Pan and Zoom calls do nothing until the next Begin.
    void EndInteraction() override { m_navigation.End(); }
    // 10 % per step (positive: closer); the model point under (x, y) stays.
    void WheelZoom(int x, int y, int steps) override
    {
        CMouseNavigation::WheelZoom(*this, x, y, steps);
    }
    // Refused for a rectangle without area.
    void ZoomToRectangle(int x0, int y0, int x1, int y1) override
    {
        CMouseNavigation::ZoomToRectangle(*this, x0, y0, x1, y1);
    }

    // One frame of the smooth rotation or, without one, of the six-sides
    // tour; true while either runs. Renderers call it once per frame.
    bool StepAnimation()
    {
        if (IsSmoothRotate())
        {
            SmoothRotateImpl();
        }
        else if (IsSixSidesInspection())
        {
            SixSidesInspectionImpl();
        }
        return IsAnimating();
    }
    bool IsAnimating() const { return IsSmoothRotate() || IsSixSidesInspection(); }

protected:
    CNavigatedCamera(int width, int height) : CKesraCamera(width, height) {}

private:
    void Begin(CMouseNavigation::Drag drag, int x, int y) { m_navigation.Begin(drag, *this, x, y); }

    CMouseNavigation m_navigation;
};

} // namespace KesraBackend
