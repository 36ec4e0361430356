// The test doubles: the null backend (backends/null) with, for each class,
// the protected operations that tests need made public and read-only probes
// for fields that have no getter; and the same for the two classes that are
// not backend bases but keep fields without getters (scalar bar, ruler). A
// double changes no behaviour of its base.
//
// The null backend is included by its path from here, so that a test needs
// no include path beyond the library's and this folder's.
#pragma once

#include "../../backends/null/NullBackend.h"

#include "Engine/Ruler.h"
#include "Engine/ScalarBar.h"
#include "Engine/StreamlineFactory.h"
#include "MathKit/Vector3.h"

#include <list>

namespace KesraTest
{

class TestCamera : public KesraNull::CNullCamera
{
public:
    TestCamera(int width, int height) : CNullCamera(width, height) {}

    using CKesraCamera::GetEulerAngleFormRotMatrix;
    using CKesraCamera::NotifyRotateMatUpdate;
    using CKesraCamera::NotifyScaleUpdate;
    using CKesraCamera::NotifyTransformUpdate;
    using CKesraCamera::NotifyTranslateUpdate;
    using CKesraCamera::SixSidesInspectionImpl;
    using CKesraCamera::SmoothRotateImpl;
    using CKesraCamera::UpdateWorldToViewMatrix;

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

class TestTipManager : public KesraNull::CNullTipManager
{
public:
    TestTipManager() = default;
};

class TestRenderer : public KesraNull::CNullRenderer
{
public:
    TestRenderer(int width, int height) : CNullRenderer(width, height) {}

    // Counts what Resize hands on, instead of ignoring it.
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

class TestLight : public KesraNull::CNullLight
{
public:
    TestLight() = default;

    int BackendSlot() const { return m_backendSlot; }
};

class TestFont : public KesraNull::CNullFont
{
public:
    TestFont() = default;
    ~TestFont() = default;
};

class TestDraggedArea : public KesraNull::CNullDraggedArea
{
public:
    TestDraggedArea(int width, int height) : CNullDraggedArea(width, height) {}

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

class TestAxis : public KesraNull::CNullAxis
{
public:
    TestAxis() = default;

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

class TestStreamline : public KesraNull::CNullStreamline
{
public:
    TestStreamline() = default;

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
