// CSvgTipManager: annotation tips drawn into SVG frames, and the factory
// that makes such managers.
//
// Each tip is a line in the linking-line colour from its label to the point
// it annotates, a marked point there, and a label box in the background
// colour, outlined in the linking-line colour, centred at the projected
// effect coordinate, with the text in the text colour. Labels whose boxes
// would overlap in the picture are moved apart vertically, and labels are
// kept inside the window; the linking lines follow. The font type moves
// the renderer's font size: small -4, medium -2, normal 0, large +3, huge +6
// pixels.
#pragma once

#include "Engine/TipMagFactory.h"
#include "Engine/TipManager.h"

#include <list>

namespace KesraSvg
{

class CSvgTipManager : public KesraEngine::CKesraTipManager
{
public:
    CSvgTipManager() = default;

    // Does nothing unless renderer is an SVG renderer with a frame under way
    // and it has a camera.
    void DrawTips(KesraEngine::CKesraRenderer& renderer) override;
};

class CSvgTipManagerFactory : public KesraEngine::IKesraTipMagFactory
{
public:
    // A new manager, owned by the factory and destroyed with it.
    KesraEngine::CKesraTipManager* CreateTipManager() override;

private:
    std::list<CSvgTipManager> m_made;
};

} // namespace KesraSvg
