// CGlAxis: the axis triad of an OpenGL view: three lit 3D arrows (x red, y
// green, z blue) in the lower-left corner, turned by the stored rotation
// matrix that the host's camera observer hands on, each labelled at its tip.
#pragma once

#include "Engine/Axis.h"
#include "gl/GlMesh.h"

#include <memory>

namespace KesraGl
{

class CGlRenderer;

class CGlAxis : public KesraEngine::CKesraAxis
{
public:
    // renderer is not owned and must outlive the triad.
    explicit CGlAxis(CGlRenderer& renderer);
    ~CGlAxis();
    CGlAxis(const CGlAxis&) = delete;
    CGlAxis& operator=(const CGlAxis&) = delete;

    // While created and to be drawn: the arrows in front of the scene (they
    // take the nearest sliver of the depth range), then the labels.
    void Draw() override;

    // Where the label of axis 0 (x), 1 (y) or 2 (z) is centred, window pixels,
    // for the stored rotation; kept inside the window.
    void LabelPosition(int axis, float& x, float& y) const;
    void ReleaseBuffers();

private:
    void BuildArrows();

    CGlRenderer& m_renderer;
    std::unique_ptr<CGlMesh> m_arrows;
};

} // namespace KesraGl
