// CSvgAxis: the axis triad of one SVG renderer, drawn in the lower-left
// corner of its frames.
//
// The triad is 80 pixels across (the scale factors times the window size).
// Each model axis is a line from the centre along its direction in view space,
// read from the stored rotation matrix (column k of the view rotation for axis
// k), so it turns as the camera turns when the host keeps the matrix current.
// Axes pointing away from the viewer are drawn first; each ends in its letter.
#pragma once

#include "Engine/Axis.h"

namespace KesraSvg
{

class CSvgRenderer;

class CSvgAxis : public KesraEngine::CKesraAxis
{
public:
    // A triad for renderer, which must outlive it.
    explicit CSvgAxis(CSvgRenderer& renderer);

    // Draws into the renderer's frame under way while created and to be drawn.
    void Draw() override;

private:
    CSvgRenderer* m_renderer;
};

} // namespace KesraSvg
