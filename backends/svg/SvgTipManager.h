// CSvgTipManager: annotation tips drawn into SVG frames, placed as every
// backend places them (CTipLabels), and the factory that makes such
// managers. Each tip is a line in the linking-line colour from its label to
// the point it annotates, a marked point there, and a label box in the
// background colour, outlined in the linking-line colour, with the text in
// the text colour.
#pragma once

#include "common/Factories.h"
#include "common/TipLayout.h"

namespace KesraSvg
{

class CSvgTipManager : public KesraBackend::CTipLabels
{
public:
    CSvgTipManager() = default;

    // Does nothing unless renderer is an SVG renderer with a frame under way
    // and it has a camera.
    void DrawTips(KesraEngine::CKesraRenderer& renderer) override;
};

using CSvgTipManagerFactory = KesraBackend::TTipManagerFactory<CSvgTipManager>;

} // namespace KesraSvg
