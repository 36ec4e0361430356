// The null backend: one concrete class per backend base class of the library,
// every abstract operation a no-op, the protected operations that tests need
// made public, and read-only probes for fields that have no getter. A double
// changes no behaviour of its base.
#pragma once

#include "Engine/Camera.h"
#include "Engine/ScalarBar.h"
#include "Engine/TipManager.h"
#include "MathKit/Vector3.h"

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

    void DrawTips(const KesraMathKit::TKesraMatrix4<double>&, int, int) override {}
};

} // namespace KesraTest
