// The scene settings: axis triad, renderer, light, font and dragged area with
// any numbers and texts. After every step: the switches that are stored as 0
// or 1 are, the light's clamped values stay in their ranges (a NaN is
// refused), the light type stays 0 ... 2, the triad's created flag follows
// Create and Delete, and copies equal their originals.
#include "FuzzInput.h"

#include "support/TestDoubles.h"

#include <cmath>
#include <string>

namespace
{

using KesraFuzz::FuzzInput;
using KesraFuzz::OperationClock;
using KesraFuzz::Require;
using KesraFuzz::Snapshot;
using KesraFuzz::State;
using namespace KesraTest;
using Color = KesraMathKit::TKesraGenColor<unsigned char>;
using Vec = KesraMathKit::TKesraVector3<double>;
using Mat = KesraMathKit::TKesraMatrix4<double>;

struct Scene
{
    TestAxis axis;
    TestRenderer renderer{640, 480};
    TestLight light;
    TestFont font;
    TestDraggedArea area{640, 480};
};

bool IsSwitch(int value) { return value == 0 || value == 1; }

void CheckScene(const Scene& scene)
{
    const TestRenderer& r = scene.renderer;
    Require(IsSwitch(r.GetActive()) && IsSwitch(r.GetGradient()) &&
                IsSwitch(r.GetPointSmoothing()) && IsSwitch(r.GetLineSmoothing()) &&
                IsSwitch(r.GetPolygonSmoothing()),
            "renderer switches are 0 or 1");
    const TestLight& l = scene.light;
    Require(IsSwitch(l.GetSwitch()), "the light switch is 0 or 1");
    Require(l.GetIntensity() >= 0.0f && l.GetIntensity() <= 1.0f, "intensity within 0 ... 1");
    Require(l.GetExponent() >= 0.0f && l.GetExponent() <= 128.0f, "exponent within 0 ... 128");
    Require(l.GetConeAngle() >= 0.0f && l.GetConeAngle() <= 180.0f, "cone within 0 ... 180");
    Require(l.GetLightType() >= 0 && l.GetLightType() <= 2, "light type within 0 ... 2");
    Require(IsSwitch(scene.axis.IsCreate()), "the triad's created flag is 0 or 1");
}

Vec ReadVector(FuzzInput& in)
{
    const double x = in.Double();
    const double y = in.Double();
    return Vec(x, y, in.Double());
}

Color ReadColor(FuzzInput& in)
{
    const unsigned char r = in.Channel();
    const unsigned char g = in.Channel();
    const unsigned char b = in.Channel();
    return Color(r, g, b, in.Channel());
}

void AxisStep(TestAxis& axis, FuzzInput& in)
{
    switch (in.Choice(5))
    {
    case 0:
    {
        const int w = in.Int();
        const int h = in.Int();
        const Snapshot before = State(axis);
        const bool created = axis.Create(w, h);
        Require(created == (w != 0 && h != 0), "the triad refuses exactly a zero side");
        Require(created || State(axis) == before, "a refused Create changes nothing");
        Require(!created || axis.GetRotateMatrix() == Mat::IDENTITY, "Create resets the matrix");
        break;
    }
    case 1:
    {
        const bool wasCreated = axis.IsCreate() != 0;
        Require(axis.Delete() == wasCreated, "Delete answers whether the triad was created");
        break;
    }
    case 2:
    {
        const int w = in.Int();
        axis.SetWindowSize(w, in.Int());
        break;
    }
    case 3:
    {
        Mat m;
        for (int k = 0; k < 16; ++k)
        {
            m[k] = in.Double();
        }
        axis.SetRotateMatrix(m);
        axis.SetDrawAxis(in.Int());
        break;
    }
    default: KesraFuzz::RequireCopiesEqual<TestAxis>(axis, TestAxis(), "a copied triad equals its original"); break;
    }
}

void RendererStep(TestRenderer& r, FuzzInput& in)
{
    switch (in.Choice(8))
    {
    case 0:
    {
        const int w = in.Int();
        const int h = in.Int();
        const int calls = r.resizeCalls;
        r.Resize(w, h);
        Require(r.GetWidth() == w && r.GetHeight() == h && r.resizeCalls == calls + 1 &&
                    r.resizedWidth == w && r.resizedHeight == h,
                "Resize stores the size and tells the backend once");
        break;
    }
    case 1:
    {
        const std::string name = in.Text(32);
        r.SetName(in.Bool() ? name.c_str() : nullptr);
        break;
    }
    case 2: r.SetActive(in.Int()); break;
    case 3:
    {
        const int which = in.Choice(4);
        const int value = in.Int();
        which == 0 ? r.SetGradient(value)
        : which == 1 ? r.SetPointSmoothing(value)
        : which == 2 ? r.SetLineSmoothing(value)
                     : r.SetPolygonSmoothing(value);
        break;
    }
    case 4:
    {
        const int which = in.Choice(3);
        const Color color = ReadColor(in);
        which == 0 ? r.SetTitleColor(color)
        : which == 1 ? r.SetBackgroundColor(color)
                     : r.SetBackgroundColor2(color);
        break;
    }
    case 5:
    {
        const float p1 = in.Float();
        r.SetPolygonOffsetPara(p1, in.Float());
        r.SetDoubleBuffer(in.Bool());
        r.SetBlendingMode(static_cast<KesraEngine::eBlendingMode>(in.Choice(3)));
        r.SetReadonlyZBuffer(in.Bool());
        break;
    }
    case 6:
    {
        static TestCamera camera(10, 10);
        r.SetCamera(in.Bool() ? &camera : nullptr);
        break;
    }
    default:
        KesraFuzz::RequireCopiesEqual<TestRenderer>(r, TestRenderer(1, 1), "a copied renderer equals its original");
        break;
    }
}

void LightStep(TestLight& l, FuzzInput& in)
{
    switch (in.Choice(9))
    {
    case 0: l.SetColor(ReadColor(in)); break;
    case 1: l.SetPosition(ReadVector(in)); break;
    case 2: l.SetFocalPoint(ReadVector(in)); break;
    case 3:
    {
        const float before = l.GetIntensity();
        const float value = in.Float();
        l.SetIntensity(value);
        Require((value >= 0.0f && value <= 1.0f) ? l.GetIntensity() == value
                                                 : KesraFuzz::SameBits(l.GetIntensity(), before),
                "intensity outside 0 ... 1 is refused");
        break;
    }
    case 4:
    {
        const int which = in.Choice(2);
        const float value = in.Float();
        const float before = which == 0 ? l.GetExponent() : l.GetConeAngle();
        which == 0 ? l.SetExponent(value) : l.SetConeAngle(value);
        const float after = which == 0 ? l.GetExponent() : l.GetConeAngle();
        Require(!std::isnan(value) || after == before, "a NaN exponent or cone angle is refused");
        break;
    }
    case 5:
    {
        if (in.Bool())
        {
            l.SetAttenuationValues(ReadVector(in));
            break;
        }
        const float first = in.Float();
        const float second = in.Float();
        l.SetAttenuationValues(first, second, in.Float());
        break;
    }
    case 6:
    {
        const int type = in.Int();
        l.SetLightType(type);
        l.SetSwitch(in.Int());
        break;
    }
    case 7: l.SetName(in.Text(32)); break;
    default: KesraFuzz::RequireCopiesEqual<TestLight>(l, TestLight(), "a copied light equals its original"); break;
    }
}

void FontStep(TestFont& f, FuzzInput& in)
{
    switch (in.Choice(3))
    {
    case 0: f.SetFace(in.Text(32)); break;
    case 1:
    {
        const int size = in.Int();
        const int bold = in.Int();
        const int italic = in.Int();
        f.SetSize(size);
        f.SetBold(bold);
        f.SetItalic(italic);
        Require(f.GetSize() == size && f.GetBold() == bold && f.GetItalic() == italic,
                "the font stores its numbers unchanged");
        break;
    }
    default: KesraFuzz::RequireCopiesEqual<TestFont>(f, TestFont(), "a copied font equals its original"); break;
    }
}

void AreaStep(TestDraggedArea& a, FuzzInput& in)
{
    switch (in.Choice(5))
    {
    case 0:
        a.SetEanble(in.Bool());
        Require(!a.IsDragged(), "switching the area ends a drag");
        break;
    case 1:
    {
        const int w = in.Int();
        a.SetWindowSize(w, in.Int());
        break;
    }
    case 2:
    {
        const int x0 = in.Int();
        const int y0 = in.Int();
        const int x1 = in.Int();
        a.SimulateDrag(x0, y0, x1, in.Int());
        break;
    }
    case 3: a.SetColor(ReadColor(in)); break;
    default:
        KesraFuzz::RequireCopiesEqual<TestDraggedArea>(a, TestDraggedArea(1, 1), "a copied area equals its original");
        break;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzInput in(data, size);
    Scene scene;
    while (!in.Empty())
    {
        {
            OperationClock clock("scene settings operation");
            switch (in.Choice(5))
            {
            case 0: AxisStep(scene.axis, in); break;
            case 1: RendererStep(scene.renderer, in); break;
            case 2: LightStep(scene.light, in); break;
            case 3: FontStep(scene.font, in); break;
            default: AreaStep(scene.area, in); break;
            }
        }
        CheckScene(scene);
    }
    return 0;
}
