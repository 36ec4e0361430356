// The scalar bar: value ranges, palettes, colour mapping, texts and layout
// with any numbers, and the options on top (many-stop palettes, log scale,
// NaN and range colours, label texts). Colour codes stay in {-1, 0, 1} but
// for 2, only for a NaN, and -2, only for a value <= 0; a batch of one value
// answers as the single query; label texts are never empty; while not created the
// flag getters answer -1, the block number 0 and the other getters leave
// their outputs alone; when created the flags are 0 or 1; the block number
// stays within 2 ... 30; a copy equals its original.
#include "FuzzInput.h"

#include "support/TestDoubles.h"

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

namespace
{

using KesraFuzz::FuzzInput;
using KesraFuzz::OperationClock;
using KesraFuzz::Require;
using KesraTest::TestScalarBar;

void CheckGetters(const TestScalarBar& bar)
{
    const int flags[] = {bar.GetDirection(), bar.GetAutoTextColor(), bar.GetVisibility(),
                         bar.GetShowNode(),  bar.GetInverse(),       bar.GetBanded(),
                         bar.GetFillAllRange(), bar.GetUseSignleColor()};
    const int created = bar.IsCreate();
    Require(created == 0 || created == 1, "the created flag is 0 or 1");
    for (const int flag : flags)
    {
        Require(created == 1 ? (flag == 0 || flag == 1) : flag == -1,
                "flag getters answer 0 or 1 when created, -1 when not");
    }
    const int blocks = bar.GetBlockNum();
    Require(created == 1 ? (blocks >= 2 && blocks <= 30) : blocks == 0,
            "the block number is 2 ... 30 when created, 0 when not");
    if (created != 1)
    {
        int w = -7, h = -7;
        std::string title = "\x01";
        double lo = -7, hi = -7;
        bar.GetWindowSize(w, h);
        bar.GetTitle(title);
        bar.GetDisplayRange(lo, hi);
        Require(w == -7 && h == -7 && title == "\x01" && lo == -7 && hi == -7,
                "getters of a bar not created leave their outputs");
    }
}

void CheckCode(int code, double value)
{
    Require(code >= -2 && code <= 2, "a colour code is -2 ... 2");
    Require(code != 2 || std::isnan(value), "code 2 is a NaN's");
    Require(code != -2 || value <= 0.0, "code -2 is a value's <= 0");
}

void CheckColour(const TestScalarBar& bar, double value)
{
    unsigned char rgb[3] = {};
    const int code = bar.GetOpenGLColor(rgb[0], rgb[1], rgb[2], value);
    CheckCode(code, value);
    unsigned char rgba[4] = {};
    signed char batchCode = 0;
    bar.GetOpenGLColors(&value, 1, rgba, &batchCode);
    Require(std::memcmp(rgb, rgba, 3) == 0 && rgba[3] == 255 && batchCode == code,
            "a batch of one value answers as the single query");
    const int byValue = bar.GetOpenGLColorByValue(rgb[0], rgb[1], rgb[2], value);
    CheckCode(byValue, value);
    bar.GetOpenGLColorImpl(rgb[0], rgb[1], rgb[2], value);
    bar.GetOpenGLBandedColorImpl(rgb[0], rgb[1], rgb[2], value);
}

void StepOption(TestScalarBar& bar, FuzzInput& in)
{
    switch (in.Choice(5))
    {
    case 0:
    {
        const int which = in.Choice(4);
        const int value = in.Int();
        which == 0 ? bar.SetLogScale(value)
        : which == 1 ? bar.SetUseNanColor(value)
        : which == 2 ? bar.SetUseBelowRangeColor(value)
                     : bar.SetUseAboveRangeColor(value);
        break;
    }
    case 1:
    {
        const int which = in.Choice(3);
        const unsigned char r = in.Channel();
        const unsigned char g = in.Channel();
        const unsigned char b = in.Channel();
        which == 0 ? bar.SetNanColor(r, g, b)
        : which == 1 ? bar.SetBelowRangeColor(r, g, b)
                     : bar.SetAboveRangeColor(r, g, b);
        break;
    }
    case 2:
    {
        const int format = in.Int();
        bar.SetLabelFormat(static_cast<KesraEngine::eScalarBarLabelFormat>(format), in.Int());
        bar.SetLabelScale(in.Int());
        break;
    }
    case 3:
    {
        std::vector<double> values(static_cast<std::size_t>(in.Choice(6)));
        for (double& value : values)
        {
            value = in.Double();
        }
        const std::vector<std::string> texts = bar.GetLabelTexts(values);
        Require(texts.size() == values.size(), "a label for every value");
        for (const std::string& text : texts)
        {
            Require(!text.empty(), "a label is never empty");
        }
        (void)bar.GetScaledTitle();
        (void)bar.GetLogDecades();
        (void)bar.GetScalePosition(in.Double());
        break;
    }
    default:
        switch (in.Choice(4))
        {
        case 0: bar.SetColorPaletteViridis(); break;
        case 1: bar.SetColorPaletteCividis(); break;
        case 2: bar.SetColorPaletteCoolWarm(); break;
        default: bar.SetColorPaletteTurbo(); break;
        }
        break;
    }
}

void Step(TestScalarBar& bar, FuzzInput& in)
{
    switch (in.Choice(28))
    {
    case 0:
    {
        const int w = in.Int();
        const int h = in.Int();
        const int x = in.Int();
        const bool created = bar.Create(w, h, x, in.Int());
        Require(created == (w != 0 && h != 0), "Create refuses exactly a zero side");
        break;
    }
    case 1:
    {
        const bool wasCreated = bar.IsCreate() == 1;
        Require(bar.Delete() == wasCreated, "Delete answers whether the bar was created");
        break;
    }
    case 2: bar.SetTitle(in.Text(40), in.Bool()); break;
    case 3: bar.SetNote(in.Text(40)); break;
    case 4: bar.SetUnit(in.Text(40)); break;
    case 5:
    {
        const int w = in.Int();
        bar.SetWindowSize(w, in.Int());
        break;
    }
    case 6:
    {
        const int x = in.Int();
        bar.SetStartPosition(x, in.Int());
        break;
    }
    case 7: bar.SetDirection(in.Int()); break;
    case 8: bar.SetColor(TestScalarBar::Color(in.Channel(), in.Channel(), in.Channel(), in.Channel())); break;
    case 9: bar.SetAutoTextColor(in.Int()); break;
    case 10:
    {
        const int first = in.Int();
        bar.SetValueFormat(first, in.Int());
        break;
    }
    case 11:
    {
        const double a = in.Double();
        const double b = in.Double();
        (void)TestScalarBar::GetExponentialBase(a, b, in.Int());
        break;
    }
    case 12: bar.SetVisibility(in.Int()); break;
    case 13: bar.SetShowNode(in.Int()); break;
    case 14: bar.SetColorBlockLineWidth(in.Float()); break;
    case 15:
    {
        const double lo = in.Double();
        const double hi = in.Double();
        const bool f1 = in.Bool();
        bar.SetValueRange(lo, hi, f1, in.Bool());
        break;
    }
    case 16:
    {
        const double lo = in.Double();
        const double hi = in.Double();
        bar.SetValueRange(lo, hi, in.Double());
        break;
    }
    case 17:
    {
        const double lo = in.Double();
        bar.SetDisplayRange(lo, in.Double());
        break;
    }
    case 18: bar.SetBlockNum(in.Int()); break;
    case 19:
    {
        const int which = in.Choice(4);
        const int value = in.Int();
        which == 0 ? bar.SetInverse(value)
        : which == 1 ? bar.SetBanded(value)
        : which == 2 ? bar.SetFillAllRange(value)
                     : bar.SetUseSignleColor(value);
        break;
    }
    case 20:
    {
        const unsigned char r = in.Channel();
        const unsigned char g = in.Channel();
        in.Bool() ? bar.SetOverRangeColor(r, g, in.Channel()) : bar.SetSingleColor(r, g, in.Channel());
        break;
    }
    case 21:
        switch (in.Choice(4))
        {
        case 0: bar.SetColorPaletteRedBlue(); break;
        case 1: bar.SetColorPaletteBlueRed(); break;
        case 2: bar.SetColorPaletteGrayScale(); break;
        default: bar.SetColorPaletteGreenRed(); break;
        }
        break;
    case 22:
    case 23: CheckColour(bar, in.Double()); break;
    case 26:
    case 27: StepOption(bar, in); break;
    case 24:
    {
        TestScalarBar::Color color;
        const double value = in.Double();
        const double lo = in.Double();
        const double hi = in.Double();
        bar.SetOpenGlColor(color, value, lo, hi, in.Int());
        bar.UpdateEqualPartValue();
        break;
    }
    default:
    {
        TestScalarBar assigned;
        assigned.SetTitle(in.Text(40), false);
        KesraFuzz::RequireCopiesEqual(bar, assigned, "copies of a bar equal their original");
        break;
    }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzInput in(data, size);
    TestScalarBar bar;
    KesraFuzz::RunSteps(in, bar, "scalar bar operation", Step, CheckGetters);
    return 0;
}
