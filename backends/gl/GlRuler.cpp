#include "gl/GlRuler.h"

#include "gl/GlRenderer.h"

namespace KesraGl
{

void CGlRuler::Draw(KesraEngine::CKesraRenderer& target)
{
    auto* gl = dynamic_cast<CGlRenderer*>(&target);
    if (!IsShown() || gl == nullptr || !gl->HasContext())
    {
        return;
    }
    CGlRenderer& renderer = *gl;
    const KesraBackend::RulerLayout layout = Layout(renderer);
    CGlCanvas& canvas = renderer.Canvas();
    const Color ink = InkColor();
    const Color paper = KesraBackend::PaperColor(renderer.GetBackgroundColor());
    for (std::size_t k = 0; k < layout.blocks.size(); ++k)
    {
        const KesraBackend::Box& block = layout.blocks[k];
        const float x0 = static_cast<float>(block.left);
        const float y0 = static_cast<float>(block.bottom);
        const float x1 = static_cast<float>(block.left + block.width);
        const float y1 = static_cast<float>(block.bottom + block.height);
        canvas.Rect(x0, y0, x1, y1, k % 2 == 0 ? ink : paper);
        canvas.Frame(x0, y0, x1, y1, 1.0f, ink);
    }
    for (const KesraBackend::Segment& tick : layout.ticks)
    {
        canvas.Line(static_cast<float>(tick.x0), static_cast<float>(tick.y0),
                    static_cast<float>(tick.x1), static_cast<float>(tick.y1), 1.0f, ink);
    }
    for (const KesraBackend::TextLine& label : layout.labels)
    {
        renderer.DrawText(label, ink);
    }
}

} // namespace KesraGl
