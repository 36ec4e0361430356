#include "gl/GlTipManager.h"

#include "gl/GlRenderer.h"

#include <array>

namespace KesraGl
{

void CGlTipManager::DrawTips(KesraEngine::CKesraRenderer& renderer)
{
    auto* gl = dynamic_cast<CGlRenderer*>(&renderer);
    KesraEngine::CKesraCamera* camera = renderer.GetCamera();
    if (gl == nullptr || camera == nullptr || !gl->HasContext())
    {
        return;
    }
    CGlCanvas& canvas = gl->Canvas();
    const Color line = LineColor();
    const Color background = BackgroundColor();
    const Color text = TextColor();
    for (const KesraBackend::TipPlacement& tip :
         Place(*camera, *gl, gl->GetWidth(), gl->GetHeight(), gl->OverlayPanels()))
    {
        const float ax = static_cast<float>(tip.pointX);
        const float ay = static_cast<float>(tip.pointY);
        const float left = static_cast<float>(tip.label.left);
        const float bottom = static_cast<float>(tip.label.bottom);
        const float right = static_cast<float>(tip.label.left + tip.label.width);
        const float top = static_cast<float>(tip.label.bottom + tip.label.height);
        canvas.Line(0.5f * (left + right), 0.5f * (bottom + top), ax, ay, 1.5f, line);
        if (tip.pinned)
        {
            const std::array<double, 6> arrow = KesraBackend::PinArrow(tip);
            float corners[6];
            for (std::size_t k = 0; k < 6; ++k)
            {
                corners[k] = static_cast<float>(arrow[k]);
            }
            canvas.Triangle(corners, line);
        }
        else
        {
            canvas.Rect(ax - 2.5f, ay - 2.5f, ax + 2.5f, ay + 2.5f, line);
        }
        canvas.Rect(left, bottom, right, top, background);
        canvas.Frame(left, bottom, right, top, 1.0f, line);
        gl->DrawText(tip.text, text);
    }
}

} // namespace KesraGl
