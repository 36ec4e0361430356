// The null backend: one concrete class per backend base class of the library,
// every abstract operation a no-op, the protected operations that tests need
// made public, and read-only probes for fields that have no getter. A double
// changes no behaviour of its base.
#pragma once

#include "Engine/Axis.h"
#include "Engine/Camera.h"
#include "Engine/DraggedArea.h"
#include "Engine/Font.h"
#include "Engine/Light.h"
#include "Engine/Renderer.h"
#include "Engine/Ruler.h"
#include "Engine/ScalarBar.h"
#include "Engine/Streamline.h"
#include "Engine/StreamlineFactory.h"
#include "Engine/TipManager.h"
#include "MathKit/Vector3.h"

#include <list>

namespace KesraTest
{

class TestCamera : public KesraEngine::CKesraCamera
{
public:
    TestCamera(int width, int height) : CKesraCamera(width, height) {}

    using CKesraCamera::GetEulerAngleFormRotMatrix;
    using CKesraCamera::NotifyRotateMatUpdate;
    using CKesraCamera::NotifyScaleUpdate;
    using CKesraCamera::NotifyTransformUpdate;
    using CKesraCamera::NotifyTranslateUpdate;
    using CKesraCamera::SixSidesInspectionImpl;
    using CKesraCamera::SmoothRotateImpl;
    using CKesraCamera::UpdateWorldToViewMatrix;

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

    int HalfWidth() const { return m_halfWidth; }
    int HalfHeight() const { return m_halfHeight; }
    KesraMathKit::TKesraVector3<double> SmoothStartAngles() const { return m_smoothStartAngles; }
    KesraMathKit::TKesraVector3<double> SmoothTargetAngles() const { return m_smoothTargetAngles; }
    int SmoothCurrentFrame() const { return m_smoothCurrentFrame; }
    int SixSidesCycleFrames() const { return m_sixSidesCycleFrames; }
    int SixSidesCurrentFrame() const { return m_sixSidesCurrentFrame; }
    int SixSidesPauseCounter() const { return m_sixSidesPauseCounter; }
    // 0 for an index outside 0 ... 5.
    double SixSidesPhaseAngle(int i) const
    {
        return (i >= 0 && i < 6) ? m_sixSidesPhaseAngles[i] : 0.0;
    }
};

class TestScalarBar : public KesraEngine::CKesraScalarBar
{
public:
    TestScalarBar() = default;

    using CKesraScalarBar::GetOpenGLBandedColorImpl;
    using CKesraScalarBar::GetOpenGLColorImpl;
    using CKesraScalarBar::SetOpenGlColor;
    using CKesraScalarBar::UpdateEqualPartValue;

    // Counts the calls, then deletes as the base does.
    bool Delete() override
    {
        ++deleteCalls;
        return CKesraScalarBar::Delete();
    }

    float EqualPartX() const { return m_equalPartX; }
    float EqualPartY() const { return m_equalPartY; }
    double ColorScaleTop() const { return m_colorScaleTop; }
    int ValueRangeFlag1() const { return m_valueRangeFlag1; }
    int ValueRangeFlag2() const { return m_valueRangeFlag2; }

    int deleteCalls = 0;
};

class TestTipManager : public KesraEngine::CKesraTipManager
{
public:
    TestTipManager() : CKesraTipManager() {}

    void DrawTips(KesraEngine::CKesraRenderer&) override {}
};

class TestRenderer : public KesraEngine::CKesraRenderer
{
public:
    TestRenderer(int width, int height) : CKesraRenderer(width, height) {}

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
    void OnResize(int width, int height) override
    {
        ++resizeCalls;
        resizedWidth = width;
        resizedHeight = height;
    }

    int resizeCalls = 0;
    int resizedWidth = 0;
    int resizedHeight = 0;
};

class TestLight : public KesraEngine::CKesraLight
{
public:
    TestLight() = default;

    void Apply() override {}
    void TurnOn() override {}
    void TurnOff() override {}
    void DrawSymbol() override {}

    int BackendSlot() const { return m_backendSlot; }
};

class TestFont : public KesraEngine::CKesraFont
{
public:
    TestFont() = default;
    ~TestFont() = default;
};

class TestDraggedArea : public KesraEngine::CKesraDraggedArea
{
public:
    TestDraggedArea(int width, int height) : CKesraDraggedArea(width, height) {}

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

    // What the backend's mouse handling records during a drag.
    void SimulateDrag(int x0, int y0, int x1, int y1)
    {
        m_dragged = true;
        m_mouseStartX = x0;
        m_mouseStartY = y0;
        m_mouseEndX = x1;
        m_mouseEndY = y1;
    }
};

class TestAxis : public KesraEngine::CKesraAxis
{
public:
    TestAxis() = default;

    void Draw() override {}

    float ScaleX() const { return m_scaleX; }
    float ScaleY() const { return m_scaleY; }
};

class TestRuler : public KesraEngine::CKesraRuler
{
public:
    TestRuler() = default;

    using CKesraRuler::CalculateStringWdith;
    using CKesraRuler::GetExponentialBase;
    using CKesraRuler::UpdateWidthFactor;

    int PixelWidth() const { return m_rulerPixelWidth; }
    float Length() const { return m_rulerLength; }
    int BlockCount() const { return m_blockCount; }
    int LabelFormat1() const { return m_labelFormat1; }
    int LabelFormat2() const { return m_labelFormat2; }
    int ReducedHeight() const { return m_reducedHeight; }
};

class TestStreamline : public KesraEngine::CKesraStreamline
{
public:
    TestStreamline() = default;

    void DrawStreamline(KesraEngine::CKesraRenderer&) override {}

    double Radius() const { return m_radius; }
    double AuxiliarySize() const { return m_auxiliarySize; }
};

// A factory double for tests that need an IKesraStreamlineFactory: it makes
// TestStreamline objects and owns them, as a backend's factory would.
class TestStreamlineFactory : public KesraEngine::IKesraStreamlineFactory
{
public:
    KesraEngine::CKesraStreamline* MakeStreamline() override { return &m_made.emplace_back(); }

    int MadeCount() const { return static_cast<int>(m_made.size()); }

private:
    // A list keeps every streamline at its address while more are made.
    std::list<TestStreamline> m_made;
};

} // namespace KesraTest
