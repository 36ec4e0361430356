// CSvgRuler: the scale bar drawn into an SVG frame, in the layout every
// backend shares (CScaleRuler).
#pragma once

#include "common/RulerLayout.h"

namespace KesraSvg
{

class CSvgRuler : public KesraBackend::CScaleRuler
{
public:
    // Nothing unless renderer is an SVG renderer with a frame under way.
    void Draw(KesraEngine::CKesraRenderer& renderer) override;
};

} // namespace KesraSvg
