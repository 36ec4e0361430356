#include "svg/SvgTipManager.h"

#include "Engine/Camera.h"
#include "svg/SvgRenderer.h"

#include <algorithm>
#include <cmath>
#include <vector>

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

// A label box in window pixels (y up): centre and size.
struct LabelBox
{
    double x;
    double y;
    double width;
    double height;
};

// Moves overlapping boxes apart vertically, the upper one up and the lower
// one down, a few passes at most, then keeps every box inside the window.
void SeparateLabels(std::vector<LabelBox>& boxes, double windowWidth, double windowHeight)
{
    const double gap = 4.0;
    for (int pass = 0; pass < 16; ++pass)
    {
        bool moved = false;
        for (std::size_t a = 0; a < boxes.size(); ++a)
        {
            for (std::size_t b = a + 1; b < boxes.size(); ++b)
            {
                LabelBox& first = boxes[a];
                LabelBox& second = boxes[b];
                const bool apartX =
                    std::fabs(first.x - second.x) >= 0.5 * (first.width + second.width) + gap;
                const double needed = 0.5 * (first.height + second.height) + gap;
                const double distance = std::fabs(first.y - second.y);
                if (apartX || distance >= needed)
                {
                    continue;
                }
                const double push = 0.5 * (needed - distance);
                const bool firstAbove = first.y > second.y || (first.y == second.y && a < b);
                first.y += firstAbove ? push : -push;
                second.y += firstAbove ? -push : push;
                moved = true;
            }
        }
        if (!moved)
        {
            break;
        }
    }
    for (LabelBox& box : boxes)
    {
        box.x = std::clamp(box.x, 0.5 * box.width + 2.0,
                           std::max(0.5 * box.width + 2.0, windowWidth - 0.5 * box.width - 2.0));
        box.y = std::clamp(box.y, 0.5 * box.height + 2.0,
                           std::max(0.5 * box.height + 2.0, windowHeight - 0.5 * box.height - 2.0));
    }
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
    const int count = GetTipsNum();
    std::vector<Vector> points(static_cast<std::size_t>(count));
    std::vector<LabelBox> boxes(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
    {
        const KesraEngine::CKesraTip* tip = GetTip(i);
        double original[3];
        double effect[3];
        tip->GetOriginalCoord(original);
        tip->GetEffectCoord(effect);
        Vector label;
        camera->ProjectPointWorldToView(Vector(original[0], original[1], original[2]),
                                        points[static_cast<std::size_t>(i)]);
        camera->ProjectPointWorldToView(Vector(effect[0], effect[1], effect[2]), label);
        boxes[static_cast<std::size_t>(i)] = LabelBox{
            label.x, label.y, EstimateTextWidth(tip->GetContext(), style.size) + 12.0,
            style.size + 10.0};
    }
    SeparateLabels(boxes, canvas->Width(), canvas->Height());
    canvas->BeginGroup("tips");
    for (int i = 0; i < count; ++i)
    {
        const Vector& point = points[static_cast<std::size_t>(i)];
        const LabelBox& box = boxes[static_cast<std::size_t>(i)];
        canvas->BeginGroup("tip");
        canvas->Line(box.x, box.y, point.x, point.y, line, 1.5);
        svg->DrawPoint(point.x, point.y, 6.0, line);
        canvas->Rect(box.x - 0.5 * box.width, box.y - 0.5 * box.height, box.width, box.height,
                     background, line, 1.0);
        canvas->Text(box.x, box.y - 0.35 * style.size, GetTip(i)->GetContext(), style,
                     Anchor::Middle);
        canvas->EndGroup();
    }
    canvas->EndGroup();
}

KesraEngine::CKesraTipManager* CSvgTipManagerFactory::CreateTipManager()
{
    return &m_made.emplace_back();
}

} // namespace KesraSvg
