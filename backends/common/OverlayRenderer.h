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
#include "Engine/Light.h"
#include "Engine/Renderer.h"
#include "Engine/TipManager.h"
#include "common/LegendLayout.h"
#include "common/NavigatedCamera.h"
#include "common/OverlayText.h"
#include "common/RulerLayout.h"

#include <array>
#include <vector>

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

// The overlays attached to a renderer, through the classes every backend
// shares; null for what is not attached.
struct AttachedOverlays
{
    KesraEngine::CKesraAxis* axis = nullptr;
    KesraEngine::CKesraTipManager* tips = nullptr;
    CLegendBar* legend = nullptr;
    CScaleRuler* ruler = nullptr;
    KesraEngine::CKesraDraggedArea* area = nullptr;
    // The light that shades the scene; its symbol is drawn on request.
    KesraEngine::CKesraLight* light = nullptr;
};

// What follows the window's size when a renderer is resized: the camera, then
// the axis triad, the legend, the ruler and the rubber band. The tips and the
// light have no window size.
inline void FollowWindowSize(KesraEngine::CKesraCamera* camera, const AttachedOverlays& attached,
                             int width, int height)
{
    if (camera != nullptr)
    {
        camera->SetWindowSize(width, height);
    }
    if (attached.axis != nullptr)
    {
        attached.axis->SetWindowSize(width, height);
    }
    if (attached.legend != nullptr)
    {
        attached.legend->SetWindowSize(width, height);
    }
    if (attached.ruler != nullptr)
    {
        attached.ruler->SetWindowSize(width, height);
    }
    if (attached.area != nullptr)
    {
        attached.area->SetWindowSize(width, height);
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

    // Each attached overlay in kOverlayOrder, between BeginOverlays and
    // EndOverlays.
    void DrawOverlays() override
    {
        if (!BeginOverlays())
        {
            return;
        }
        for (const Overlay overlay : kOverlayOrder)
        {
            DrawOverlay(overlay, m_attached);
        }
        EndOverlays();
    }

    // The surface takes the new size, then the camera and the attached
    // overlays; the picture is out of date.
    void OnResize(int width, int height) override
    {
        ResizeSurface(width, height);
        FollowWindowSize(m_camera, m_attached, width, height);
        Invalidate();
    }

    // What is drawn over the scene; not owned, null detaches. Each draws
    // only for a renderer of its own backend.
    void SetTipManager(KesraEngine::CKesraTipManager* tips) { m_attached.tips = tips; }
    void SetScalarBar(CLegendBar* legend) { m_attached.legend = legend; }
    void SetRuler(CScaleRuler* ruler) { m_attached.ruler = ruler; }
    void SetDraggedArea(KesraEngine::CKesraDraggedArea* area) { m_attached.area = area; }
    // Draws the shading light's symbol in every frame.
    void SetShowLightSymbol(bool show) { m_showLightSymbol = show; }

    // The panels of the attached overlays that tips keep out of: the
    // legend's while it is shown.
    std::vector<Box> OverlayPanels() const
    {
        std::vector<Box> panels;
        if (m_attached.legend != nullptr && m_attached.legend->IsShown())
        {
            panels.push_back(m_attached.legend->Layout(*this).panel);
        }
        return panels;
    }

    // Black or white, whichever reads better on the background.
    Color ContrastingTextColor() const { return KesraBackend::ContrastingTextColor(m_backgroundColor); }

    // The name in the top-left corner, 14 pixels in from both edges, bold and
    // four pixels larger than the font, cut short where it would pass the
    // right edge; drawn in the title colour over a halo.
    TextLine TitleLine() const
    {
        constexpr int kTitleSize = 4;
        constexpr double kMargin = 14.0;
        TextLine title{kMargin, m_height - kMargin - TextHeight(kTitleSize),
                       ElidedText(*this, m_name, kTitleSize, m_width - 2.0 * kMargin), "", "", kTitleSize,
                       true};
        title.halo = true;
        return title;
    }

protected:
    COverlayRenderer(int width, int height) : CKesraRenderer(width, height) {}

    // What is drawn over the scene, not owned; the axis triad and the light
    // are the backend's own to set.
    AttachedOverlays m_attached;

    // Starts a frame; false, and nothing is drawn, without a context.
    virtual bool BeginFrame() = 0;
    virtual void EndFrame() = 0;
    // Around the overlays; false, and none is drawn, without a frame.
    virtual bool BeginOverlays() = 0;
    virtual void EndOverlays() = 0;
    // The triad; a backend whose triad needs state of its own sets it here.
    virtual void DrawAxisTriad(KesraEngine::CKesraAxis& axis) { axis.Draw(); }
    // The overlays only some backends have (the curve inset, the host's own).
    virtual void DrawOwnOverlay(Overlay overlay) = 0;
    // What the window system must resize before anything else.
    virtual void ResizeSurface(int width, int height) = 0;

private:
    void DrawOverlay(Overlay overlay, const AttachedOverlays& attached)
    {
        switch (overlay)
        {
        case Overlay::AxisTriad:
            if (attached.axis != nullptr)
            {
                DrawAxisTriad(*attached.axis);
            }
            break;
        case Overlay::Tips:
            if (attached.tips != nullptr)
            {
                attached.tips->DrawTips(*this);
            }
            break;
        case Overlay::Legend:
            if (attached.legend != nullptr)
            {
                attached.legend->Draw(*this);
            }
            break;
        case Overlay::Ruler:
            if (attached.ruler != nullptr)
            {
                attached.ruler->Draw(*this);
            }
            break;
        case Overlay::LightSymbol:
            if (m_showLightSymbol && attached.light != nullptr)
            {
                attached.light->DrawSymbol();
            }
            break;
        case Overlay::DraggedArea:
            // Only while a drag is under way, inside the area's own overlay.
            if (attached.area != nullptr && attached.area->IsDragged())
            {
                attached.area->BeginOverlay();
                attached.area->Draw();
                attached.area->EndOverlay();
            }
            break;
        case Overlay::CurveInset:
        case Overlay::HostOverlay:
            DrawOwnOverlay(overlay);
            break;
        }
    }

    bool m_showLightSymbol = false;
};

} // namespace KesraBackend
