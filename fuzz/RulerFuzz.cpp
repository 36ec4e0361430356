// The ruler with any window, start, scales, heights and units. After every
// step: the OpenGL scale stays positive, the round length and pixel width are
// not negative and the length is a number, the block count is 2 or 4, the
// text colour answers only when created, and a copy equals its original.
#include "FuzzInput.h"

#include "support/TestDoubles.h"

#include <cmath>
#include <string>

namespace
{

using KesraFuzz::FuzzInput;
using KesraFuzz::OperationClock;
using KesraFuzz::Require;
using KesraTest::TestRuler;

void CheckRuler(const TestRuler& ruler)
{
    float glScale = 0;
    ruler.GetOpenGLScale(glScale);
    Require(glScale > 0.0f, "the OpenGL scale stays positive");
    int scale = 0, height = 0;
    ruler.GetRulerWidthScale(scale);
    ruler.GetRulerHeight(height);
    Require(scale > 0 && height >= 10, "width scale and height keep their limits");
    Require(ruler.PixelWidth() >= 0, "the pixel width is not negative");
    Require(std::isfinite(ruler.Length()) && ruler.Length() >= 0.0f,
            "the round length is a number, not negative");
    Require(ruler.BlockCount() == 2 || ruler.BlockCount() == 4, "two or four blocks");
    Require(ruler.IsCreate() == 0 || ruler.IsCreate() == 1, "the created flag is 0 or 1");
    std::string unit;
    ruler.GetUnit(unit);
    Require(!unit.empty(), "the unit is never empty");
    if (ruler.IsCreate() == 0)
    {
        TestRuler::Color color(1, 2, 3, 4);
        ruler.GetTextColor(color);
        Require(color == TestRuler::Color(1, 2, 3, 4), "no text colour before Create");
    }
}

void Step(TestRuler& ruler, FuzzInput& in)
{
    switch (in.Choice(17))
    {
    case 0:
    {
        const int w = in.Int();
        const int h = in.Int();
        const int x = in.Int();
        Require(ruler.Create(w, h, x, in.Int()) == (w != 0 && h != 0),
                "Create refuses exactly a zero side");
        break;
    }
    case 1:
    {
        const bool wasCreated = ruler.IsCreate() != 0;
        Require(ruler.Delete() == wasCreated, "Delete answers whether the ruler was created");
        break;
    }
    case 2: ruler.SetDrawRuler(in.Int()); break;
    case 3:
    {
        const int w = in.Int();
        ruler.SetWindowSize(w, in.Int());
        break;
    }
    case 4:
    {
        const int x = in.Int();
        ruler.SetStartPosition(x, in.Int());
        break;
    }
    case 5: ruler.SetRulerWidthScale(in.Int()); break;
    case 6: ruler.SetRulerHeight(in.Int()); break;
    case 7: ruler.SetUnit(in.Text(24)); break;
    case 8:
    case 9: ruler.SetOpenGLScale(in.Float()); break;
    case 10: ruler.SetTextColor(TestRuler::Color(in.Channel(), in.Channel(), in.Channel(), in.Channel())); break;
    case 11: ruler.SetAutoBlock(in.Bool()); break;
    case 12: in.Bool() ? ruler.SetBlock2() : ruler.SetBlock4(); break;
    case 13: ruler.UpdateWidthFactor(); break;
    case 14:
    {
        const double a = in.Double();
        const double b = in.Double();
        (void)ruler.GetExponentialBase(a, b, in.Int());
        break;
    }
    case 15: Require(ruler.CalculateStringWdith(in.Text(64)) > 0, "a label has a width"); break;
    default:
    {
        TestRuler assigned;
        assigned.SetUnit("x");
        KesraFuzz::RequireCopiesEqual(ruler, assigned, "copies of a ruler equal their original");
        break;
    }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzInput in(data, size);
    TestRuler ruler;
    KesraFuzz::RunSteps(in, ruler, "ruler operation", Step, CheckRuler);
    return 0;
}
