// ScalarBar: the legend's value range, palette and options, and its batch
// colour query over numpy arrays.
#include "Arrays.h"
#include "Bindings.h"
#include "Names.h"

#include "Engine/ScalarBar.h"

#include <pybind11/stl.h>

#include <array>
#include <optional>
#include <tuple>
#include <utility>

namespace KesraPython
{

namespace
{

using KesraEngine::CKesraScalarBar;
using Rgb = std::array<int, 3>;
// Read back as a tuple, as Python code compares colours.
using RgbTuple = std::tuple<int, int, int>;

// The legend with the palette it was given, which the bar does not report.
// The bar is created at once so that its option getters answer; its layout is
// the drawing backend's business and no colour depends on it.
struct Legend
{
    CKesraScalarBar bar;
    KesraBackend::Palette palette = KesraBackend::Palette::RedBlue;

    Legend() { bar.Create(1, 1, 0, 0); }
};

unsigned char Byte(int value, const char* name)
{
    if (value < 0 || value > 255)
    {
        Refuse(name, "colour components must lie in 0 ... 255, got " + std::to_string(value));
    }
    return static_cast<unsigned char>(value);
}

void SetRange(Legend& legend, const std::pair<double, double>& range)
{
    // A range the bar would refuse, or one with a NaN, would leave it as it was.
    if (!(range.first <= range.second))
    {
        Refuse("range", "expected minimum <= maximum, got (" + std::to_string(range.first) + ", "
                            + std::to_string(range.second) + ")");
    }
    legend.bar.SetValueRange(range.first, range.second, true, true);
}

std::pair<double, double> GetRange(const Legend& legend)
{
    std::pair<double, double> range;
    legend.bar.GetValueRange(range.first, range.second);
    return range;
}

void SetPalette(Legend& legend, const std::string& name)
{
    legend.palette = PaletteNamed(name, "palette");
    KesraBackend::LoadPalette(legend.bar, legend.palette);
}

void SetBlocks(Legend& legend, int blocks)
{
    if (blocks < 2 || blocks > 30)
    {
        Refuse("blocks", "expected 2 ... 30, got " + std::to_string(blocks));
    }
    legend.bar.SetBlockNum(blocks);
}

std::optional<RgbTuple> GetSingleColor(const Legend& legend)
{
    if (legend.bar.GetUseSignleColor() != 1)
    {
        return std::nullopt;
    }
    unsigned char rgb[3];
    legend.bar.GetSingleColor(rgb[0], rgb[1], rgb[2]);
    return RgbTuple{rgb[0], rgb[1], rgb[2]};
}

void SetSingleColor(Legend& legend, const std::optional<Rgb>& rgb)
{
    if (rgb)
    {
        const Rgb& c = *rgb;
        legend.bar.SetSingleColor(Byte(c[0], "single_color"), Byte(c[1], "single_color"),
                                  Byte(c[2], "single_color"));
    }
    legend.bar.SetUseSignleColor(rgb ? 1 : 0);
}

RgbTuple GetOverRangeColor(const Legend& legend)
{
    unsigned char rgb[3];
    legend.bar.GetOverRangeColor(rgb[0], rgb[1], rgb[2]);
    return RgbTuple{rgb[0], rgb[1], rgb[2]};
}

void SetOverRangeColor(Legend& legend, const Rgb& c)
{
    legend.bar.SetOverRangeColor(Byte(c[0], "over_range_color"), Byte(c[1], "over_range_color"),
                                 Byte(c[2], "over_range_color"));
}

// One batch over values; codes may be null.
void Query(const Legend& legend, const CArray<double>& values, bool smooth, unsigned char* rgba,
           signed char* codes)
{
    const double* data = values.data();
    const std::size_t count = static_cast<std::size_t>(values.size());
    // The interpreter stays locked: the bar keeps its batch tables in itself,
    // and two threads must not rebuild them at once.
    if (smooth)
    {
        legend.bar.GetOpenGLColorsByValue(data, count, rgba, codes);
    }
    else
    {
        legend.bar.GetOpenGLColors(data, count, rgba, codes);
    }
}

py::array_t<unsigned char> Colors(const Legend& legend, py::handle values, bool smooth)
{
    const CArray<double> in = ValuesArray(values, "values");
    py::array_t<unsigned char> rgba = NewArray<unsigned char>({in.shape(0), 4});
    Query(legend, in, smooth, rgba.mutable_data(), nullptr);
    return rgba;
}

py::array_t<signed char> Codes(const Legend& legend, py::handle values, bool smooth)
{
    const CArray<double> in = ValuesArray(values, "values");
    // The batch writes codes only beside colours.
    std::vector<unsigned char> rgba(4 * static_cast<std::size_t>(in.size()));
    py::array_t<signed char> codes = NewArray<signed char>({in.shape(0)});
    Query(legend, in, smooth, rgba.data(), codes.mutable_data());
    return codes;
}

std::unique_ptr<Legend> MakeLegend(double minimum, double maximum, const std::string& palette,
                                   bool banded, int blocks, bool inverse)
{
    auto legend = std::make_unique<Legend>();
    SetRange(*legend, {minimum, maximum});
    SetPalette(*legend, palette);
    SetBlocks(*legend, blocks);
    legend->bar.SetBanded(banded ? 1 : 0);
    legend->bar.SetInverse(inverse ? 1 : 0);
    return legend;
}

} // namespace

void BindLegend(py::module_& module)
{
    using namespace pybind11::literals;
    py::class_<Legend>(module, "ScalarBar", R"(The colour legend of a result field.

Maps values to colours along one of eight palettes between the range's ends,
smoothly or in equal blocks. Values outside the range take the over-range
colour unless fill_all_range gives them the colour of the nearest end; with
single_color set every value takes that colour.)")
        .def(py::init(&MakeLegend), "minimum"_a = 0.0, "maximum"_a = 1.0, py::kw_only(),
             "palette"_a = "redblue", "banded"_a = false, "blocks"_a = 8, "inverse"_a = false)
        .def_property("range", &GetRange, &SetRange,
                      "(minimum, maximum) of the values coloured; minimum <= maximum.")
        .def_property(
            "palette", [](const Legend& legend) { return PaletteName(legend.palette); }, &SetPalette,
            "'redblue', 'bluered', 'gray', 'greenred', 'viridis', 'cividis', 'coolwarm' or "
            "'turbo'.")
        .def_property(
            "banded", [](const Legend& legend) { return legend.bar.GetBanded() == 1; },
            [](Legend& legend, bool on) { legend.bar.SetBanded(on ? 1 : 0); },
            "Colours in blocks rather than smoothly.")
        .def_property(
            "blocks", [](const Legend& legend) { return legend.bar.GetBlockNum(); }, &SetBlocks,
            "Number of blocks of a banded legend, 2 ... 30.")
        .def_property(
            "inverse", [](const Legend& legend) { return legend.bar.GetInverse() == 1; },
            [](Legend& legend, bool on) { legend.bar.SetInverse(on ? 1 : 0); },
            "Walks the palette from its other end.")
        .def_property(
            "fill_all_range", [](const Legend& legend) { return legend.bar.GetFillAllRange() == 1; },
            [](Legend& legend, bool on) { legend.bar.SetFillAllRange(on ? 1 : 0); },
            "Values outside the range take the colour of the nearest end.")
        .def_property("single_color", &GetSingleColor, &SetSingleColor,
                      "(red, green, blue) that every value takes, or None.")
        .def_property("over_range_color", &GetOverRangeColor, &SetOverRangeColor,
                      "(red, green, blue) of values outside the range.")
        .def("colors", &Colors, "values"_a, py::kw_only(), "smooth"_a = false,
             R"(Colours of values, an (n,) array of real numbers.

Returns an (n, 4) uint8 array of red, green, blue and alpha 255 per value.
smooth=True ignores the banded switch. A contiguous float64 array is read in
place; other real arrays are converted once.)")
        .def("codes", &Codes, "values"_a, py::kw_only(), "smooth"_a = false,
             "Where each value lies: an (n,) int8 array of -1 (below the range), 0 (inside or "
             "filled) or 1 (above).")
        .def("__repr__", [](const Legend& legend) {
            const auto range = GetRange(legend);
            return "ScalarBar(" + std::string(py::repr(py::float_(range.first))) + ", "
                   + std::string(py::repr(py::float_(range.second))) + ", palette='"
                   + PaletteName(legend.palette) + "')";
        });
}

} // namespace KesraPython
