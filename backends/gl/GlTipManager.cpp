#include "gl/GlTipManager.h"

#include "Engine/Camera.h"
#include "gl/GlRenderer.h"

#include <algorithm>

namespace KesraGl
{

namespace
{

constexpr int kFontSizes[] = {10, 12, 14, 16, 20};
constexpr float kPadding = 4.0f;

Color Opaque(const Color& color)
{
    return Color{color.red, color.green, color.blue, 255};
}

} // namespace

void CGlTipManager::DrawTips(KesraEngine::CKesraRenderer& renderer)
{
    auto* gl = dynamic_cast<CGlRenderer*>(&renderer);
    KesraEngine::CKesraCamera* camera = renderer.GetCamera();
    if (gl == nullptr || camera == nullptr || !gl->HasContext())
    {
        return;
    }
    CGlCanvas& canvas = gl->Canvas();
    const int fontIndex = std::clamp(static_cast<int>(m_fontType), 0, 4);
    const TextStyle style{gl->Style(0).file, kFontSizes[fontIndex]};
    const float ascent = static_cast<float>(canvas.Ascender(style));
    for (int i = 0; i < GetTipsNum(); ++i)
    {
        const KesraEngine::CKesraTip* tip = GetTip(i);
        double original[3];
        double effect[3];
        tip->GetOriginalCoord(original);
        tip->GetEffectCoord(effect);
        KesraEngine::CKesraCamera::Vector at;
        KesraEngine::CKesraCamera::Vector label;
        camera->ProjectPointWorldToView({original[0], original[1], original[2]}, at);
        camera->ProjectPointWorldToView({effect[0], effect[1], effect[2]}, label);
        const float ax = static_cast<float>(at.x);
        const float ay = static_cast<float>(at.y);
        const float lx = static_cast<float>(label.x);
        const float ly = static_cast<float>(label.y);
        const std::string text = tip->GetContext();
        const float width = canvas.TextWidth(text, style) + 2.0f * kPadding;
        const float height = ascent + 2.0f * kPadding + 2.0f;
        // The label is centred on the effect point.
        const float left = lx - 0.5f * width;
        const float bottom = ly - 0.5f * height;
        canvas.Line(lx, ly, ax, ay, 1.5f, Opaque(m_linkingLineColor));
        canvas.Rect(ax - 2.5f, ay - 2.5f, ax + 2.5f, ay + 2.5f, Opaque(m_linkingLineColor));
        canvas.Rect(left, bottom, left + width, bottom + height, Opaque(m_backgroundColor));
        canvas.Frame(left, bottom, left + width, bottom + height, 1.0f, Opaque(m_linkingLineColor));
        canvas.Text(left + kPadding, bottom + kPadding + 2.0f, text, style, Opaque(m_textColor));
    }
}

CGlTipManager* CGlTipManagerFactory::CreateTipManager()
{
    return &m_made.emplace_back();
}

} // namespace KesraGl
