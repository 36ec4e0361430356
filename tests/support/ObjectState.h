// Everything a host can read back from each object, as bytes, so that two
// objects (an original and its copy, or an object before and after a failed
// operation) compare exactly: NaN and the sign of zero included, and the
// outputs that getters leave alone while an object is not created. Shared by
// the allocation-failure tests and the fuzz harnesses.
#pragma once

#include "Engine/Curve2D.h"
#include "Engine/StreamlineData.h"
#include "Engine/Tip.h"
#include "support/TestDoubles.h"

#include <string>
#include <type_traits>
#include <vector>

namespace KesraTest
{

class Snapshot
{
public:
    Snapshot() { m_bytes.reserve(4096); }

    template <typename T>
    Snapshot& operator<<(const T& value)
    {
        static_assert(std::is_trivially_copyable<T>::value, "raw bytes only");
        const auto* bytes = reinterpret_cast<const unsigned char*>(&value);
        m_bytes.insert(m_bytes.end(), bytes, bytes + sizeof(T));
        return *this;
    }

    Snapshot& operator<<(const std::string& text)
    {
        *this << text.size();
        m_bytes.insert(m_bytes.end(), text.begin(), text.end());
        return *this;
    }

    bool operator==(const Snapshot& other) const { return m_bytes == other.m_bytes; }
    bool operator!=(const Snapshot& other) const { return !(*this == other); }

private:
    std::vector<unsigned char> m_bytes;
};

// A tip manager whose tip texts can be read.
class ProbedTipManager : public TestTipManager
{
public:
    std::string Text(int index) const { return GetTip(index)->GetContext(); }
};

inline Snapshot State(const TestCamera& camera)
{
    Snapshot s;
    int width = 0, height = 0;
    camera.GetWindowSize(width, height);
    float v[6] = {};
    int w = 0, h = 0;
    camera.GetParametersDirect(v[0], v[1], v[2], v[3], v[4], v[5], w, h);
    float tx = 0, ty = 0, cx = 0, cy = 0, cz = 0;
    camera.GetTranslation(tx, ty);
    camera.GetRotateCenter(cx, cy, cz);
    s << camera.GetName() << width << height << v << w << h << tx << ty << cx << cy << cz
      << camera.GetScale() << camera.GetModified() << camera.GetRotateMatrix()
      << camera.GetSmoothRotateFrames() << camera.IsSmoothRotate()
      << camera.IsSixSidesInspection() << camera.GetSixSidesInspectionSideFrames()
      << camera.GetSixSidesInspectionSidePauses() << camera.HalfWidth() << camera.HalfHeight()
      << camera.SmoothStartAngles() << camera.SmoothTargetAngles() << camera.SmoothCurrentFrame()
      << camera.SixSidesCycleFrames() << camera.SixSidesCurrentFrame()
      << camera.SixSidesPauseCounter();
    for (int i = 0; i < 6; ++i)
    {
        s << camera.SixSidesPhaseAngle(i);
    }
    return s;
}

inline Snapshot State(const TestScalarBar& bar)
{
    // Sentinels show whether a getter wrote its outputs.
    int w = -7, h = -7, x = -7, y = -7, f1 = -7, f2 = -7;
    std::string title = "-", note = "-", unit = "-";
    TestScalarBar::Color color(1, 2, 3, 4);
    double lo = -7, hi = -7, cur = -7, dlo = -7, dhi = -7, clo = 0, cup = 0;
    unsigned char over[3] = {}, single[3] = {};
    bar.GetWindowSize(w, h);
    bar.GetStartPosition(x, y);
    bar.GetValueFormat(f1, f2);
    bar.GetTitle(title);
    bar.GetNote(note);
    bar.GetUnit(unit);
    bar.GetColor(color);
    bar.GetValueRange(lo, hi, cur);
    bar.GetDisplayRange(dlo, dhi);
    bar.GetCurrentValueRange(clo, cup);
    bar.GetOverRangeColor(over[0], over[1], over[2]);
    bar.GetSingleColor(single[0], single[1], single[2]);
    unsigned char nan[3] = {}, below[3] = {}, above[3] = {};
    bar.GetNanColor(nan[0], nan[1], nan[2]);
    bar.GetBelowRangeColor(below[0], below[1], below[2]);
    bar.GetAboveRangeColor(above[0], above[1], above[2]);
    KesraEngine::eScalarBarLabelFormat labelFormat = KesraEngine::eLabelFormatDefault;
    int labelDigits = -7;
    bar.GetLabelFormat(labelFormat, labelDigits);
    Snapshot s;
    s << bar.IsCreate() << bar.IsModified() << w << h << x << y << f1 << f2 << title << note
      << unit << color << lo << hi << cur << dlo << dhi << clo << cup << over << single
      << bar.GetDirection() << bar.GetAutoTextColor() << bar.GetVisibility() << bar.GetShowNode()
      << bar.GetColorBlockLineWidth() << bar.GetBlockNum() << bar.GetInverse() << bar.GetBanded()
      << bar.GetFillAllRange() << bar.GetUseSignleColor() << bar.EqualPartX() << bar.EqualPartY()
      << bar.ColorScaleTop() << bar.ValueRangeFlag1() << bar.ValueRangeFlag2()
      << bar.GetLogScale() << bar.GetUseNanColor() << bar.GetUseBelowRangeColor()
      << bar.GetUseAboveRangeColor() << nan << below << above << static_cast<int>(labelFormat)
      << labelDigits << bar.GetLabelScale();
    return s;
}

inline Snapshot State(const TestRuler& ruler)
{
    int w = 0, h = 0, x = 0, y = 0, scale = 0, height = 0;
    float glScale = 0;
    std::string unit;
    TestRuler::Color color(1, 2, 3, 4);
    bool autoBlock = false;
    ruler.GetWindowSize(w, h);
    ruler.GetStartPosition(x, y);
    ruler.GetRulerWidthScale(scale);
    ruler.GetRulerHeight(height);
    ruler.GetOpenGLScale(glScale);
    ruler.GetUnit(unit);
    ruler.GetTextColor(color);
    ruler.GetAutoBlock(autoBlock);
    Snapshot s;
    s << ruler.IsCreate() << ruler.GetDrawRuler() << w << h << x << y << scale << height << glScale
      << unit << color << autoBlock << ruler.IsBlock2() << ruler.PixelWidth() << ruler.Length()
      << ruler.BlockCount() << ruler.LabelFormat1() << ruler.LabelFormat2()
      << ruler.ReducedHeight();
    return s;
}

inline Snapshot State(const TestAxis& axis)
{
    int w = 0, h = 0;
    axis.GetWindowSize(w, h);
    Snapshot s;
    s << axis.IsCreate() << axis.GetDrawAxis() << w << h << axis.GetRotateMatrix() << axis.ScaleX()
      << axis.ScaleY();
    return s;
}

inline Snapshot State(const TestRenderer& r)
{
    float p1 = 0, p2 = 0;
    r.GetPolygonOffsetPara(p1, p2);
    Snapshot s;
    s << r.GetWidth() << r.GetHeight() << std::string(r.GetName()) << r.GetActive()
      << r.GetTitleColor() << r.GetGradient() << r.GetBackgroundColor() << r.GetBackgroundColor2()
      << r.GetPointSmoothing() << r.GetLineSmoothing() << r.GetPolygonSmoothing()
      << r.GetDoubleBuffer() << p1 << p2 << r.GetCamera() << r.resizeCalls << r.resizedWidth
      << r.resizedHeight;
    return s;
}

inline Snapshot State(const TestLight& l)
{
    Snapshot s;
    s << l.GetColor() << l.GetPosition() << l.GetFocalPoint() << l.GetIntensity() << l.GetSwitch()
      << l.GetExponent() << l.GetConeAngle() << l.GetAttenuationValues() << l.GetLightType()
      << l.GetName() << l.BackendSlot();
    return s;
}

inline Snapshot State(const TestFont& f)
{
    Snapshot s;
    s << f.GetFace() << f.GetSize() << f.GetBold() << f.GetItalic();
    return s;
}

inline Snapshot State(const TestDraggedArea& a)
{
    int w = 0, h = 0, sx = 0, sy = 0, ex = 0, ey = 0;
    TestDraggedArea::Color color;
    a.GetWindowSize(w, h);
    a.GetMouseStart(sx, sy);
    a.GetMouseEnd(ex, ey);
    a.GetColor(color);
    Snapshot s;
    s << a.IsEnable() << a.IsDragged() << w << h << sx << sy << ex << ey << color;
    return s;
}

inline Snapshot State(const KesraEngine::CKesraStreamlineData& record)
{
    Snapshot s;
    s << record.GetSliceCount();
    for (int i = 0; i < 3; ++i)
    {
        s << record.GetCoord()[i];
    }
    for (int i = 0; i < 4; ++i)
    {
        s << record.GetColor()[i];
    }
    for (int slice = 0; slice < record.GetSliceCount(); ++slice)
    {
        double xyz[3] = {-7, -7, -7};
        s << record.GetSliceNodeCoord(slice, xyz) << xyz;
        s << record.GetSliceNodeNormal(slice, xyz) << xyz;
    }
    return s;
}

inline Snapshot State(const TestStreamline& tube)
{
    Snapshot s;
    s << tube.IsCreate() << tube.GetNodes() << tube.GetSlices() << tube.GetDrawStreamline()
      << tube.Radius() << tube.AuxiliarySize();
    for (int node = 0; tube.IsCreate() && node < tube.GetNodes(); ++node)
    {
        double xyz[3] = {};
        unsigned char rgb[3] = {};
        tube.GetNodeCoord(node, xyz);
        tube.GetNodeColor(node, rgb);
        s << xyz << rgb;
        for (int slice = 0; slice < tube.GetSlices(); ++slice)
        {
            tube.GetSliceNodeCoord(node, slice, xyz);
            s << xyz;
            tube.GetSliceNodeNormal(node, slice, xyz);
            s << xyz;
        }
    }
    return s;
}

inline Snapshot State(const KesraEngine::CKesraTip& tip)
{
    double original[3] = {}, effect[3] = {};
    tip.GetOriginalCoord(original);
    tip.GetEffectCoord(effect);
    Snapshot s;
    s << std::string(tip.GetContext()) << original << effect;
    return s;
}

inline Snapshot State(const ProbedTipManager& manager)
{
    Snapshot s;
    unsigned char c[9] = {};
    manager.GetTextColor(c[0], c[1], c[2]);
    manager.GetBackgroundColor(c[3], c[4], c[5]);
    manager.GetLinkingLineColor(c[6], c[7], c[8]);
    s << manager.GetTipsNum() << manager.GetTipFontType() << c;
    for (int i = 0; i < manager.GetTipsNum(); ++i)
    {
        double original[3] = {}, effect[3] = {};
        manager.GetOrgCoord(i, original);
        manager.GetEffectCoord(i, effect);
        s << manager.Text(i) << original << effect;
    }
    return s;
}

inline Snapshot State(const KesraEngine::CKesraCurve2D& curve)
{
    Snapshot s;
    int count = 0;
    double range[4] = {};
    curve.GetNodes(count);
    curve.GetCureveRange(range[0], range[1], range[2], range[3]);
    s << count << range;
    for (int i = 0; i < count; ++i)
    {
        double x = 0, y = 0;
        bool visible = false;
        curve.GetNode(i, x, y);
        curve.GetNodeVis(i, visible);
        s << x << y << visible;
    }
    return s;
}

} // namespace KesraTest
