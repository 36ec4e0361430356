// CSvgStreamline: a tube drawn into SVG frames, and the factory that makes
// such tubes.
//
// Drawing projects every ring vertex with the renderer's camera
// (ProjectPointWorldToView: window pixels, y up, view depth) and hands the
// renderer one quadrilateral per pair of neighbouring vertices on
// consecutive rings, for it to paint those of all tubes back to front.
// Quadrilaterals whose outward side faces away from the viewer are left out:
// each is hidden behind its own tube. A quadrilateral's colour is the mean of
// its two nodes' colours, shaded by the renderer's light with the mean of its
// four vertex normals turned into view space by the camera's rotation.
#pragma once

#include "Engine/Streamline.h"
#include "Engine/StreamlineFactory.h"

#include <list>

namespace KesraSvg
{

class CSvgStreamline : public KesraEngine::CKesraStreamline
{
public:
    CSvgStreamline() = default;

    // Does nothing unless the tube is created and to be drawn, renderer is an
    // SVG renderer with a frame under way, and it has a camera.
    void DrawStreamline(KesraEngine::CKesraRenderer& renderer) override;
};

class CSvgStreamlineFactory : public KesraEngine::IKesraStreamlineFactory
{
public:
    // A new tube, owned by the factory and destroyed with it.
    KesraEngine::CKesraStreamline* MakeStreamline() override;

private:
    // A list keeps every tube at its address while more are made.
    std::list<CSvgStreamline> m_made;
};

} // namespace KesraSvg
