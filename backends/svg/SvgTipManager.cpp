#include "svg/SvgTipManager.h"

#include "svg/SvgRenderer.h"

#include <array>
#include <string>

namespace KesraSvg
{

namespace
{

void DrawArrow(CSvgCanvas& canvas, const std::array<double, 6>& corners, const Color& color)
{
    std::string points;
    for (std::size_t k = 0; k < corners.size(); k += 2)
    {
        points += FormatNumber(corners[k], 1) + "," + FormatNumber(canvas.SvgY(corners[k + 1]), 1)
                  + (k + 2 < corners.size() ? " " : "");
    }
    CSvgWriter& svg = canvas.Writer();
    svg.Open("polygon");
    svg.Attribute("class", "pin");
    svg.Attribute("points", points);
    svg.Attribute("fill", HexColor(color.red, color.green, color.blue));
    svg.Close();
}

} // namespace

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
         Place(*camera, *svg, canvas->Width(), canvas->Height(), svg->OverlayPanels()))
    {
        const KesraBackend::Box& box = tip.label;
        canvas->BeginGroup("tip");
        canvas->Line(box.left + 0.5 * box.width, box.bottom + 0.5 * box.height, tip.pointX, tip.pointY,
                     line, 1.5);
        if (tip.pinned)
        {
            DrawArrow(*canvas, KesraBackend::PinArrow(tip), line);
        }
        else
        {
            svg->DrawPoint(tip.pointX, tip.pointY, 6.0, line);
        }
        canvas->Rect(box.left, box.bottom, box.width, box.height, background, line, 1.0);
        svg->DrawText(tip.text, text);
        canvas->EndGroup();
    }
    canvas->EndGroup();
}

} // namespace KesraSvg
