// CSvgStreamline: a tube drawn into SVG frames, and the factory that makes
// such tubes.
//
// Drawing projects every ring vertex with the renderer's camera in one batch
// (ProjectPointsWorldToView: window pixels, y up, view depth) and hands the
// renderer one quadrilateral per pair of neighbouring vertices on
// consecutive rings, for it to paint those of all tubes back to front.
// Quadrilaterals whose outward side faces away from the viewer are left out:
// each is hidden behind its own tube. A quadrilateral's colour is the mean of
// its two nodes' colours or, under a banded legend given the node values, the
// legend's colour of the mean of their values; it is shaded by the renderer's
// light with the mean of its four vertex normals turned into view space by
// the camera's rotation.
#pragma once

#include "Engine/Streamline.h"
#include "common/Factories.h"
#include "svg/SvgCanvas.h"

#include <vector>

namespace KesraEngine
{
class CKesraScalarBar;
} // namespace KesraEngine

namespace KesraSvg
{

class CSvgStreamline : public KesraEngine::CKesraStreamline
{
public:
    CSvgStreamline() = default;

    // Does nothing unless the tube is created and to be drawn, renderer is an
    // SVG renderer with a frame under way, and it has a camera.
    void DrawStreamline(KesraEngine::CKesraRenderer& renderer) override;

    // The value at each node and the legend that colours them (not owned;
    // null detaches). While the legend is banded, a quadrilateral takes the
    // legend's colour of the mean of its two nodes' values, which is always a
    // swatch's colour, where the mean of two block colours need not be. Too
    // few values leave the node colours in use.
    void SetNodeValues(std::vector<double> values, const KesraEngine::CKesraScalarBar* legend);

private:
    // The base colours of the quadrilaterals, element i for those between
    // node i and node i + 1.
    std::vector<Color> QuadColors() const;

    std::vector<double> m_values;
    const KesraEngine::CKesraScalarBar* m_legend = nullptr;
};

using CSvgStreamlineFactory = KesraBackend::TStreamlineFactory<CSvgStreamline>;

} // namespace KesraSvg
