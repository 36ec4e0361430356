// The null backend: one concrete class for each backend base class of the
// library, every abstract operation doing nothing. A query that must answer
// says "nothing there": no context, no pixels, depth 0, no mouse event taken.
//
// For a host that needs the library's model without a picture (a console
// program, a server that only projects points or maps values to colours), for
// tests, and as the smallest backend that compiles against the public headers.
// Each class has a public constructor with its base's arguments and changes
// no behaviour of its base; copies behave as copies of the base.
//
// Header-only, with no dependency but the library: install component `Null`,
// target KesraEngine::NullBackend, included as "null/NullBackend.h".
#pragma once

#include "Engine/Axis.h"
#include "Engine/Camera.h"
#include "Engine/DraggedArea.h"
#include "Engine/Font.h"
#include "Engine/Light.h"
#include "Engine/Renderer.h"
#include "Engine/Streamline.h"
#include "Engine/TipManager.h"

namespace KesraNull
{

// Loads no matrix and follows no mouse: the camera's model (fitting,
// rotations, projections, observers) works as in any backend.
class CNullCamera : public KesraEngine::CKesraCamera
{
public:
    CNullCamera(int width, int height) : CKesraCamera(width, height) {}

    void ApplyViewport() override {}
    void ApplyProjection() override {}
    void ApplyModelView() override {}
    void BeginRotate(int, int) override {}
    void Rotate(int, int) override {}
    void BeginPan(int, int) override {}
    void Pan(int, int) override {}
    void BeginZoom(int, int) override {}
    void Zoom(int, int) override {}
    void EndInteraction() override {}
    void WheelZoom(int, int, int) override {}
    void ZoomToRectangle(int, int, int, int) override {}
};

// Has no graphics context: CreateContext and MakeCurrent answer false, a
// frame draws nothing, ReadPixels copies nothing and ReadDepth gives 0.
// Resize still stores the size, as the base does, before OnResize.
class CNullRenderer : public KesraEngine::CKesraRenderer
{
public:
    CNullRenderer(int width, int height) : CKesraRenderer(width, height) {}

    bool CreateContext() override { return false; }
    void DestroyContext() override {}
    bool MakeCurrent() override { return false; }
    void InitializeState() override {}
    void Render() override {}
    void DrawBackground() override {}
    void DrawScene() override {}
    void DrawOverlays() override {}
    void DrawTitle() override {}
    void ApplySmoothing() override {}
    void ApplyPolygonOffset() override {}
    void SwapBuffers() override {}
    void Invalidate() override {}
    bool ReadPixels(int, int, int, int, unsigned char*) override { return false; }
    float ReadDepth(int, int) override { return 0.0f; }
    void OnResize(int, int) override {}
};

// Stores its settings and lights nothing.
class CNullLight : public KesraEngine::CKesraLight
{
public:
    CNullLight() = default;

    void Apply() override {}
    void TurnOn() override {}
    void TurnOff() override {}
    void DrawSymbol() override {}
};

// The base's stored face, size and styles; no typeface is loaded. Its
// (implicit) destructor is public, so a host may own one as any value.
class CNullFont : public KesraEngine::CKesraFont
{
public:
    CNullFont() = default;
};

// Takes no mouse event (every handler answers false), so no drag ever starts
// and nothing is drawn or selected.
class CNullDraggedArea : public KesraEngine::CKesraDraggedArea
{
public:
    CNullDraggedArea(int width, int height) : CKesraDraggedArea(width, height) {}

    bool OnMouseDown(int, int) override { return false; }
    bool OnMouseMove(int, int) override { return false; }
    bool OnMouseUp(int, int) override { return false; }
    void CancelDrag() override {}
    void OnAreaSelected(int, int, int, int) override {}
    void BeginOverlay() override {}
    void EndOverlay() override {}
    void Draw() override {}
    void Erase() override {}
    void SetLineWidth(float) override {}
    void RequestRedraw() override {}
};

class CNullAxis : public KesraEngine::CKesraAxis
{
public:
    CNullAxis() = default;

    void Draw() override {}
};

// Builds its tube (Create, GenerationStreamline3D) as the base does; drawing
// it does nothing.
class CNullStreamline : public KesraEngine::CKesraStreamline
{
public:
    CNullStreamline() = default;

    void DrawStreamline(KesraEngine::CKesraRenderer&) override {}
};

// Keeps and lays out its tips as the base does; drawing them does nothing.
class CNullTipManager : public KesraEngine::CKesraTipManager
{
public:
    CNullTipManager() = default;

    void DrawTips(KesraEngine::CKesraRenderer&) override {}
};

} // namespace KesraNull
