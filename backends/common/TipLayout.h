// The tips' labels, placed the same way in every backend, and CTipLabels, the
// tip manager class the backends' tip managers derive from.
//
// Each tip is drawn as a leader line from its label to the point it annotates
// and a label box, centred on the projected effect coordinate, with the text
// centred in it. The font type moves the renderer's font size, so that tips
// grow and shrink with the host's font as every other overlay text does:
// small -4, medium -2, normal 0, large +2, huge +6 pixels (10, 12, 14, 16 and
// 20 pixels with the default 14-pixel font). Boxes that would overlap in the
// picture are moved apart vertically, then out of the panels of the other
// overlays (the legend's), and every box is kept inside the window; the
// leader lines follow their boxes. A tip whose point has left the window is
// pinned to the window's edge, where an arrow points on toward the point.
// The text takes the tip's text colour unless that is hard to read on the
// box, then black or white, whichever reads.
#pragma once

#include "Engine/Camera.h"
#include "Engine/Tip.h"
#include "Engine/TipManager.h"
#include "common/OverlayText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

namespace KesraBackend
{

inline int TipFontSizeChange(KesraEngine::eTipFontType type)
{
    switch (type)
    {
    case KesraEngine::eTipFontSmall: return -4;
    case KesraEngine::eTipFontMedium: return -2;
    case KesraEngine::eTipFontLarge: return 2;
    case KesraEngine::eTipFontHuge: return 6;
    default: return 0;
    }
}

// A label box in window pixels (y up) by its centre and size.
struct LabelBox
{
    double x = 0.0;
    double y = 0.0;
    double width = 0.0;
    double height = 0.0;
};

// Pixels between the text and the box's sides, and between boxes and from a
// box to the window's edge.
constexpr double kTipPaddingX = 6.0;
constexpr double kTipPaddingY = 5.0;
constexpr double kTipSeparation = 4.0;
constexpr double kTipMargin = 2.0;

// Keeps every box inside the window of windowWidth x windowHeight pixels. A
// box wider or higher than the window keeps to its left or bottom edge.
inline void KeepInsideWindow(std::vector<LabelBox>& boxes, double windowWidth, double windowHeight)
{
    for (LabelBox& box : boxes)
    {
        const double lowX = 0.5 * box.width + kTipMargin;
        const double lowY = 0.5 * box.height + kTipMargin;
        box.x = std::clamp(box.x, lowX, std::max(lowX, windowWidth - lowX));
        box.y = std::clamp(box.y, lowY, std::max(lowY, windowHeight - lowY));
    }
}

// Moves overlapping boxes apart vertically, the upper one up and the lower
// one down (of two at the same height, the earlier one up), each by half of
// what they lack, keeping them inside the window (KeepInsideWindow) after
// each pass, until none overlaps or after 64 passes (boxes held at an edge
// close the gap more slowly). Boxes held at an edge push the others away
// from it.
inline void SeparateLabels(std::vector<LabelBox>& boxes, double windowWidth, double windowHeight)
{
    KeepInsideWindow(boxes, windowWidth, windowHeight);
    for (int pass = 0; pass < 64; ++pass)
    {
        bool moved = false;
        for (std::size_t a = 0; a < boxes.size(); ++a)
        {
            for (std::size_t b = a + 1; b < boxes.size(); ++b)
            {
                LabelBox& first = boxes[a];
                LabelBox& second = boxes[b];
                const bool apartX = std::fabs(first.x - second.x)
                                    >= 0.5 * (first.width + second.width) + kTipSeparation;
                const double needed = 0.5 * (first.height + second.height) + kTipSeparation;
                const double distance = std::fabs(first.y - second.y);
                if (apartX || distance >= needed)
                {
                    continue;
                }
                const double push = 0.5 * (needed - distance);
                const bool firstAbove = first.y >= second.y;
                first.y += firstAbove ? push : -push;
                second.y += firstAbove ? -push : push;
                moved = true;
            }
        }
        KeepInsideWindow(boxes, windowWidth, windowHeight);
        if (!moved)
        {
            break;
        }
    }
}

// Moves each box that overlaps one of keepOut out of it by the shortest of
// the four ways that stay inside the window (with kTipMargin), if any.
inline void KeepOutOf(std::vector<LabelBox>& boxes, const std::vector<Box>& keepOut, double windowWidth,
                      double windowHeight)
{
    for (LabelBox& box : boxes)
    {
        for (const Box& out : keepOut)
        {
            const Box covered{box.x - 0.5 * box.width, box.y - 0.5 * box.height, box.width, box.height};
            if (!Overlaps(covered, out))
            {
                continue;
            }
            const double gap = kTipSeparation;
            const double ways[4][2] = {{out.left - gap - 0.5 * box.width, box.y},
                                       {out.left + out.width + gap + 0.5 * box.width, box.y},
                                       {box.x, out.bottom - gap - 0.5 * box.height},
                                       {box.x, out.bottom + out.height + gap + 0.5 * box.height}};
            double best = -1.0;
            for (const auto& way : ways)
            {
                const bool inside = way[0] - 0.5 * box.width >= kTipMargin
                                    && way[0] + 0.5 * box.width <= windowWidth - kTipMargin
                                    && way[1] - 0.5 * box.height >= kTipMargin
                                    && way[1] + 0.5 * box.height <= windowHeight - kTipMargin;
                const double distance = std::fabs(way[0] - box.x) + std::fabs(way[1] - box.y);
                if (inside && (best < 0.0 || distance < best))
                {
                    best = distance;
                    box.x = way[0];
                    box.y = way[1];
                }
            }
        }
    }
}

// Pixels between a pinned point and the window's edge, and an arrow's length.
constexpr double kTipPinInset = 10.0;
constexpr double kTipArrow = 9.0;

// One tip as it is drawn: the annotated point, the label box and its text.
// A pinned tip's point stands at the window's edge instead of its own, and
// (arrowX, arrowY), a unit vector, points on toward its own.
struct TipPlacement
{
    double pointX = 0.0;
    double pointY = 0.0;
    Box label;
    TextLine text;
    bool pinned = false;
    double arrowX = 0.0;
    double arrowY = 0.0;
};

// The point where a tip is drawn: its own inside the window; outside it, the
// nearest point kTipPinInset inside the edge, with the arrow's direction.
inline void PinToWindow(TipPlacement& tip, double windowWidth, double windowHeight)
{
    const bool outside =
        tip.pointX < 0.0 || tip.pointY < 0.0 || tip.pointX > windowWidth || tip.pointY > windowHeight;
    if (!outside)
    {
        return;
    }
    const double x = std::clamp(tip.pointX, kTipPinInset, std::max(kTipPinInset, windowWidth - kTipPinInset));
    const double y =
        std::clamp(tip.pointY, kTipPinInset, std::max(kTipPinInset, windowHeight - kTipPinInset));
    const double dx = tip.pointX - x;
    const double dy = tip.pointY - y;
    const double length = std::sqrt(dx * dx + dy * dy);
    tip.pinned = true;
    tip.arrowX = dx / length;
    tip.arrowY = dy / length;
    tip.pointX = x;
    tip.pointY = y;
}

// A text colour that reads on a box: color unless its luminance lies within
// a third of the range of the box's, then black or white.
inline Color LegibleOn(const Color& color, const Color& box)
{
    const auto luminance = [](const Color& c) { return 0.299 * c.red + 0.587 * c.green + 0.114 * c.blue; };
    return std::fabs(luminance(color) - luminance(box)) < 85.0 ? ContrastingTextColor(box) : color;
}

// The arrow of a pinned tip: its tip a kTipArrow beyond the pinned point,
// toward the tip's own point, and its two back corners; (x, y) triples.
inline std::array<double, 6> PinArrow(const TipPlacement& tip)
{
    const double ax = tip.arrowX;
    const double ay = tip.arrowY;
    const double x = tip.pointX + 0.5 * kTipArrow * ax;
    const double y = tip.pointY + 0.5 * kTipArrow * ay;
    const double bx = tip.pointX - 0.5 * kTipArrow * ax;
    const double by = tip.pointY - 0.5 * kTipArrow * ay;
    const double half = 0.5 * kTipArrow;
    return {x, y, bx - half * ay, by + half * ax, bx + half * ay, by - half * ax};
}

// The tip manager of a backend: the library's tip manager with the labels'
// placement. The backend adds only the drawing (DrawTips).
class CTipLabels : public KesraEngine::CKesraTipManager
{
public:
    // Every tip, in list order, projected through camera into a window of
    // windowWidth x windowHeight pixels, its box sized by measure and kept
    // out of the boxes of keepOut.
    std::vector<TipPlacement> Place(KesraEngine::CKesraCamera& camera, const ITextMeasure& measure,
                                    double windowWidth, double windowHeight,
                                    const std::vector<Box>& keepOut = {}) const
    {
        using Vector = KesraEngine::CKesraCamera::Vector;
        const int size = TipFontSizeChange(m_fontType);
        const double h = measure.TextHeight(size);
        const std::size_t count = static_cast<std::size_t>(GetTipsNum());
        std::vector<TipPlacement> tips(count);
        std::vector<LabelBox> boxes(count);
        for (std::size_t i = 0; i < count; ++i)
        {
            const KesraEngine::CKesraTip* tip = GetTip(static_cast<int>(i));
            double original[3];
            double effect[3];
            tip->GetOriginalCoord(original);
            tip->GetEffectCoord(effect);
            Vector point;
            Vector label;
            camera.ProjectPointWorldToView(Vector(original[0], original[1], original[2]), point);
            camera.ProjectPointWorldToView(Vector(effect[0], effect[1], effect[2]), label);
            tips[i].pointX = point.x;
            tips[i].pointY = point.y;
            PinToWindow(tips[i], windowWidth, windowHeight);
            tips[i].text.text = tip->GetContext();
            tips[i].text.sizeChange = size;
            tips[i].text.anchor = Anchor::Middle;
            boxes[i] = LabelBox{label.x, label.y,
                                measure.TextWidth(tips[i].text.text, size) + 2.0 * kTipPaddingX,
                                h + 2.0 * kTipPaddingY};
        }
        // A pinned point's arrow stands at the edge where boxes are held:
        // they keep out of it as of the panels.
        std::vector<Box> kept = keepOut;
        for (const TipPlacement& tip : tips)
        {
            if (tip.pinned)
            {
                kept.push_back(
                    Box{tip.pointX - kTipArrow, tip.pointY - kTipArrow, 2.0 * kTipArrow, 2.0 * kTipArrow});
            }
        }
        SeparateLabels(boxes, windowWidth, windowHeight);
        KeepOutOf(boxes, kept, windowWidth, windowHeight);
        for (std::size_t i = 0; i < count; ++i)
        {
            const LabelBox& box = boxes[i];
            tips[i].label = Box{box.x - 0.5 * box.width, box.y - 0.5 * box.height, box.width, box.height};
            tips[i].text.x = box.x;
            // Centred on the box: the middle of a capital's height.
            tips[i].text.y = box.y - 0.35 * h;
        }
        return tips;
    }

    // The tip's text colour, or black or white where it would not read on
    // the box's background.
    Color TextColor() const { return LegibleOn(Opaque(m_textColor), BackgroundColor()); }
    Color BackgroundColor() const { return Opaque(m_backgroundColor); }
    Color LineColor() const { return Opaque(m_linkingLineColor); }

protected:
    CTipLabels() = default;
};

} // namespace KesraBackend
