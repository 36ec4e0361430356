// OverlayUpdater: a scene's camera observer that hands the rotation on to the
// axis triad and the zoom to the ruler, whatever the backend.
#pragma once

#include "Engine/Axis.h"
#include "Engine/CameraEventHandler.h"
#include "Engine/Ruler.h"

namespace KesraBackend
{

class OverlayUpdater : public KesraEngine::IKesraCameraEventHandler
{
public:
    using Matrix = KesraMathKit::TKesraMatrix4<double>;

    OverlayUpdater(KesraEngine::CKesraAxis& axis, KesraEngine::CKesraRuler& ruler)
        : m_axis(axis), m_ruler(ruler)
    {
    }

    void OnRotateMatUpdate(const Matrix& rotation) override { m_axis.SetRotateMatrix(rotation); }
    void OnTranslateUpdate(float, float) override {}
    void OnScaleUpdate(float scale) override { SetZoom(scale); }
    void OnTransformUpdate(const Matrix& rotation, float, float, float scale) override
    {
        m_axis.SetRotateMatrix(rotation);
        SetZoom(scale);
    }

private:
    // The ruler wants pixels per model unit, the camera gives model units
    // per pixel.
    void SetZoom(float scale) { m_ruler.SetOpenGLScale(1.0f / scale); }

    KesraEngine::CKesraAxis& m_axis;
    KesraEngine::CKesraRuler& m_ruler;
};

} // namespace KesraBackend
