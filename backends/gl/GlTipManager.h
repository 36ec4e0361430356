// CGlTipManager: tips drawn over an OpenGL view, placed as every backend
// places them (CTipLabels): a leader line from the label to the annotated
// point, a dot there, and the text on a framed label, all projected through
// the renderer's camera.
#pragma once

#include "common/Factories.h"
#include "common/TipLayout.h"

namespace KesraGl
{

class CGlTipManager : public KesraBackend::CTipLabels
{
public:
    CGlTipManager() = default;

    // Does nothing unless renderer is an OpenGL renderer whose overlay canvas
    // is drawing (inside DrawOverlays) and it has a camera.
    void DrawTips(KesraEngine::CKesraRenderer& renderer) override;
};

using CGlTipManagerFactory = KesraBackend::TTipManagerFactory<CGlTipManager>;

} // namespace KesraGl
