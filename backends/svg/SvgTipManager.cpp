#include "svg/SvgTipManager.h"

#include "svg/SvgRenderer.h"

namespace KesraSvg
{

void CSvgTipManager::DrawTips(KesraEngine::CKesraRenderer& renderer)
{
    auto* svg = dynamic_cast<CSvgRenderer*>(&renderer);
    KesraEngine::CKesraCamera* camera = renderer.GetCamera();
    CSvgCanvas* canvas = svg != nullptr ? svg->GetCanvas() : nullptr;
    if (canvas == nullptr || camera == nullptr)
    {
        return;
    }
    const Color line = LineColor();
    const Color text = TextColor();
    const Color paper = BackgroundColor();
    const std::string background = HexColor(paper.red, paper.green, paper.blue);
    canvas->BeginGroup("tips");
    for (const KesraBackend::TipPlacement& tip :
         Place(*camera, *svg, canvas->Width(), canvas->Height()))
    {
        const KesraBackend::Box& box = tip.label;
        canvas->BeginGroup("tip");
        canvas->Line(box.left + 0.5 * box.width, box.bottom + 0.5 * box.height, tip.pointX, tip.pointY,
                     line, 1.5);
        svg->DrawPoint(tip.pointX, tip.pointY, 6.0, line);
        canvas->Rect(box.left, box.bottom, box.width, box.height, background, line, 1.0);
        svg->DrawText(tip.text, text);
        canvas->EndGroup();
    }
    canvas->EndGroup();
}

} // namespace KesraSvg
