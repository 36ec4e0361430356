#include "svg/SvgTipManager.h"

#include "Engine/Camera.h"
#include "svg/SvgRenderer.h"

namespace KesraSvg
{

namespace
{

using Vector = KesraMathKit::TKesraVector3<double>;

int FontSizeChange(KesraEngine::eTipFontType type)
{
    switch (type)
    {
    case KesraEngine::eTipFontSmall: return -4;
    case KesraEngine::eTipFontMedium: return -2;
    case KesraEngine::eTipFontLarge: return 3;
    case KesraEngine::eTipFontHuge: return 6;
    default: return 0;
    }
}

Color Opaque(const Color& color)
{
    return Color{color.red, color.green, color.blue, 255};
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
    const TextStyle style = svg->GetTextStyle(FontSizeChange(m_fontType), Opaque(m_textColor));
    const Color line = Opaque(m_linkingLineColor);
    const std::string background =
        HexColor(m_backgroundColor.red, m_backgroundColor.green, m_backgroundColor.blue);
    canvas->BeginGroup("tips");
    for (int i = 0; i < GetTipsNum(); ++i)
    {
        const KesraEngine::CKesraTip* tip = GetTip(i);
        double original[3];
        double effect[3];
        tip->GetOriginalCoord(original);
        tip->GetEffectCoord(effect);
        Vector point;
        Vector label;
        camera->ProjectPointWorldToView(Vector(original[0], original[1], original[2]), point);
        camera->ProjectPointWorldToView(Vector(effect[0], effect[1], effect[2]), label);
        const std::string text = tip->GetContext();
        const double width = EstimateTextWidth(text, style.size) + 12.0;
        const double height = style.size + 10.0;
        canvas->BeginGroup("tip");
        canvas->Line(label.x, label.y, point.x, point.y, line, 1.5);
        svg->DrawPoint(point.x, point.y, 6.0, line);
        canvas->Rect(label.x - 0.5 * width, label.y - 0.5 * height, width, height, background, line,
                     1.0);
        canvas->Text(label.x, label.y - 0.35 * style.size, text, style, Anchor::Middle);
        canvas->EndGroup();
    }
    canvas->EndGroup();
}

KesraEngine::CKesraTipManager* CSvgTipManagerFactory::CreateTipManager()
{
    return &m_made.emplace_back();
}

} // namespace KesraSvg
