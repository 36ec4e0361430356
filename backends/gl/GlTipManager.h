// CGlTipManager: tips drawn over an OpenGL view: a leader line from the
// label to the annotated point, a dot there, and the text on a framed label
// at the effect coordinate, all projected through the renderer's camera.
// The font type picks 10, 12, 14, 16 or 20 pixels.
#pragma once

#include "Engine/TipManager.h"
#include "Engine/TipMagFactory.h"

#include <list>

namespace KesraGl
{

class CGlTipManager : public KesraEngine::CKesraTipManager
{
public:
    CGlTipManager() = default;

    // Does nothing unless renderer is an OpenGL renderer whose overlay canvas
    // is drawing (inside DrawOverlays) and it has a camera.
    void DrawTips(KesraEngine::CKesraRenderer& renderer) override;
};

class CGlTipManagerFactory : public KesraEngine::IKesraTipMagFactory
{
public:
    CGlTipManager* CreateTipManager() override;

private:
    std::list<CGlTipManager> m_made;
};

} // namespace KesraGl
