#include "svg/SvgRuler.h"

#include "svg/SvgRenderer.h"

namespace KesraSvg
{

void CSvgRuler::Draw(KesraEngine::CKesraRenderer& target)
{
    auto* svg = dynamic_cast<CSvgRenderer*>(&target);
    CSvgCanvas* canvas = svg != nullptr ? svg->GetCanvas() : nullptr;
    if (canvas == nullptr || !IsShown())
    {
        return;
    }
    CSvgRenderer& renderer = *svg;
    const KesraBackend::RulerLayout layout = Layout(renderer);
    const Color ink = InkColor();
    const Color paper = KesraBackend::PaperColor(renderer.GetBackgroundColor());
    canvas->BeginGroup("ruler");
    canvas->Writer().Attribute("shape-rendering", renderer.LineRendering());
    for (std::size_t k = 0; k < layout.blocks.size(); ++k)
    {
        const KesraBackend::Box& block = layout.blocks[k];
        const Color& fill = k % 2 == 0 ? ink : paper;
        canvas->Rect(block.left, block.bottom, block.width, block.height,
                     HexColor(fill.red, fill.green, fill.blue), ink, 1.0);
    }
    for (const KesraBackend::Segment& tick : layout.ticks)
    {
        canvas->Line(tick.x0, tick.y0, tick.x1, tick.y1, ink, 1.0);
    }
    for (const KesraBackend::TextLine& label : layout.labels)
    {
        renderer.DrawText(label, ink);
    }
    canvas->EndGroup();
}

} // namespace KesraSvg
