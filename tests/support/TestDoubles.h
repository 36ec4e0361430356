// The null backend: one concrete class per backend base class of the library,
// every abstract operation a no-op, the protected operations that tests need
// made public, and read-only probes for fields that have no getter. A double
// changes no behaviour of its base.
#pragma once

#include "Engine/Camera.h"
#include "Engine/Streamline.h"
#include "Engine/StreamlineFactory.h"
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
    double SixSidesPhaseAngle(int i) const { return m_sixSidesPhaseAngles[i]; }
};

class TestStreamline : public KesraEngine::CKesraStreamline
{
public:
    TestStreamline() = default;

    void DrawStreamline() override {}

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
