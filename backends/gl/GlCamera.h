// CGlCamera: the camera of an OpenGL view. The mouse and the animations are
// every backend's (CNavigatedCamera); this class loads the view into OpenGL.
//
// The core profile has no matrix stack: Apply* set the viewport and compute
// the projection and model-view matrices, which the renderer's programs read
// through Projection and ModelView.
#pragma once

#include "common/NavigatedCamera.h"
#include "gl/GlApi.h"

namespace KesraGl
{

class CGlCamera : public KesraBackend::CNavigatedCamera
{
public:
    CGlCamera(int width, int height);

    // glViewport over the window, view bounds recomputed.
    void ApplyViewport() override;
    // The orthographic volume of GetParameters (model units about the view
    // centre) as the projection matrix.
    void ApplyProjection() override;
    // The world-to-view matrix (recomputed if the camera is modified) brought
    // back to model units as the model-view matrix; with the projection it
    // maps a model point to the pixel ProjectPointWorldToView gives.
    void ApplyModelView() override;

    const Mat4& Projection() const { return m_projection; }
    const Mat4& ModelView() const { return m_modelView; }
    // The rotation's upper 3 x 3, column by column, for normals.
    void NormalMatrix(float (&columns)[9]) const;

private:
    Mat4 m_projection{};
    Mat4 m_modelView{};
};

} // namespace KesraGl
