// COverlayRenderer: the part of every backend's renderer that does not touch
// a graphics interface: what a frame is made of and in which order, which
// overlay is drawn over which, what follows the window's size, and the text
// colour that reads on the background. A backend's renderer derives from it
// and supplies the drawing: the frame's start and end, background, scene,
// title, and each overlay.
//
// A frame: BeginFrame; the camera's animation step (a CNavigatedCamera's
// StepAnimation), then its viewport, projection and model-view; background,
// scene, overlays, title; EndFrame. Render draws a frame and presents it.
#pragma once

#include "Engine/Axis.h"
#include "Engine/DraggedArea.h"
#include "Engine/Renderer.h"
#include "Engine/Ruler.h"
#include "Engine/ScalarBar.h"
#include "common/NavigatedCamera.h"
#include "common/OverlayText.h"

#include <array>

namespace KesraBackend
{

// The overlays a renderer may draw; a backend skips those it has not.
enum class Overlay
{
    AxisTriad,
    Tips,
    CurveInset,
    Legend,
    Ruler,
    LightSymbol,
    HostOverlay,
    DraggedArea
};

// Later over earlier. The axis triad first: it stands in its corner under
// everything else (and a 3D triad brings depth state of its own, best set
// before the flat overlays); then the tips, which belong to the model; the
// panels (curve inset, legend, ruler); the light's symbol; the host's own
// overlay; and the rubber band last, so that nothing hides the rectangle
// being dragged.
inline constexpr std::array<Overlay, 8> kOverlayOrder{
    Overlay::AxisTriad, Overlay::Tips,        Overlay::CurveInset,  Overlay::Legend,
    Overlay::Ruler,     Overlay::LightSymbol, Overlay::HostOverlay, Overlay::DraggedArea};

// What follows the window's size when a renderer is resized; null for what is
// not attached.
struct WindowFollowers
{
    KesraEngine::CKesraCamera* camera = nullptr;
    KesraEngine::CKesraAxis* axis = nullptr;
    KesraEngine::CKesraScalarBar* legend = nullptr;
    KesraEngine::CKesraRuler* ruler = nullptr;
    KesraEngine::CKesraDraggedArea* area = nullptr;
};

// Each follower, in the order of the struct, takes the new size.
inline void FollowWindowSize(const WindowFollowers& followers, int width, int height)
{
    if (followers.camera != nullptr)
    {
        followers.camera->SetWindowSize(width, height);
    }
    if (followers.axis != nullptr)
    {
        followers.axis->SetWindowSize(width, height);
    }
    if (followers.legend != nullptr)
    {
        followers.legend->SetWindowSize(width, height);
    }
    if (followers.ruler != nullptr)
    {
        followers.ruler->SetWindowSize(width, height);
    }
    if (followers.area != nullptr)
    {
        followers.area->SetWindowSize(width, height);
    }
}

class COverlayRenderer : public KesraEngine::CKesraRenderer, public ITextMeasure
{
public:
    // DrawFrame, then SwapBuffers. Nothing without a context.
    void Render() override
    {
        if (MakeCurrent())
        {
            DrawFrame();
            SwapBuffers();
        }
    }

    // Everything of Render but the presentation, so that a host can read the
    // frame back first.
    void DrawFrame()
    {
        if (!BeginFrame())
        {
            return;
        }
        if (m_camera != nullptr)
        {
            if (auto* navigated = dynamic_cast<CNavigatedCamera*>(m_camera))
            {
                navigated->StepAnimation();
            }
            m_camera->ApplyViewport();
            m_camera->ApplyProjection();
            m_camera->ApplyModelView();
        }
        DrawBackground();
        DrawScene();
        DrawOverlays();
        DrawTitle();
        EndFrame();
    }

    // Each overlay in kOverlayOrder, between BeginOverlays and EndOverlays.
    void DrawOverlays() override
    {
        if (!BeginOverlays())
        {
            return;
        }
        for (const Overlay overlay : kOverlayOrder)
        {
            DrawOverlay(overlay);
        }
        EndOverlays();
    }

    // The surface takes the new size, then the camera and the attached
    // overlays; the picture is out of date.
    void OnResize(int width, int height) override
    {
        ResizeSurface(width, height);
        WindowFollowers followers = Followers();
        followers.camera = m_camera;
        FollowWindowSize(followers, width, height);
        Invalidate();
    }

    // Black or white, whichever reads better on the background.
    Color ContrastingTextColor() const { return KesraBackend::ContrastingTextColor(m_backgroundColor); }

    // The name in the top-left corner, 14 pixels in from both edges, bold and
    // four pixels larger than the font; drawn in the title colour.
    TextLine TitleLine() const
    {
        constexpr int kTitleSize = 4;
        constexpr double kMargin = 14.0;
        TextLine title{kMargin, m_height - kMargin - TextHeight(kTitleSize), m_name, "", "", kTitleSize,
                       true};
        return title;
    }

protected:
    COverlayRenderer(int width, int height) : CKesraRenderer(width, height) {}

    // The rubber band only while a drag is under way, inside its overlay.
    static void DrawDraggedArea(KesraEngine::CKesraDraggedArea* area)
    {
        if (area != nullptr && area->IsDragged())
        {
            area->BeginOverlay();
            area->Draw();
            area->EndOverlay();
        }
    }

    // Starts a frame; false, and nothing is drawn, without a context.
    virtual bool BeginFrame() = 0;
    virtual void EndFrame() = 0;
    // Around the overlays; false, and none is drawn, without a frame.
    virtual bool BeginOverlays() = 0;
    virtual void EndOverlays() = 0;
    // Draws the overlay if it is attached; nothing for one the backend has not.
    virtual void DrawOverlay(Overlay overlay) = 0;
    // The attached objects that follow the window's size; the camera is the
    // renderer's own.
    virtual WindowFollowers Followers() const = 0;
    // What the window system must resize before anything else.
    virtual void ResizeSurface(int width, int height) = 0;
};

} // namespace KesraBackend
