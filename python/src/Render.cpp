// render(): streamlines drawn headlessly by the viewer's own scene (tubes
// coloured through the legend, tips at the extremes, legend, ruler, axis
// triad) through EGL, read back as pixels and, on request, written as the
// viewer's PNG.
#include "Arrays.h"
#include "Bindings.h"
#include "Names.h"

#include "PngFile.h"
#include "SceneSource.h"
#include "gl/EglContext.h"
#include "gl/GlScene.h"

#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <optional>
#include <utility>

namespace KesraPython
{

namespace
{

using KesraBackend::SceneData;

struct Look
{
    KesraBackend::Palette palette;
    int banded;
    bool inverse;
    KesraBackend::View view;
    int width;
    int height;
};

// The line's point indices: [offsets[line], offsets[line + 1]) of
// connectivity, or of the points themselves without one.
struct Lines
{
    CArray<std::int64_t> offsets;
    std::optional<CArray<std::int64_t>> connectivity;

    std::int64_t Index(std::int64_t k) const { return connectivity ? connectivity->data()[k] : k; }
};

void RequireFinite(const CArray<double>& points)
{
    const double* xyz = points.data();
    for (py::ssize_t i = 0; i < points.size(); ++i)
    {
        if (!std::isfinite(xyz[i]))
        {
            Refuse("points", "coordinates must be finite, point " + std::to_string(i / 3) + " is not");
        }
    }
}

Lines ReadLines(py::handle offsetsArg, py::handle connectivityArg, py::ssize_t pointCount)
{
    Lines lines{IndexArray(offsetsArg, "offsets"), std::nullopt};
    std::int64_t indexCount = pointCount;
    if (!connectivityArg.is_none())
    {
        lines.connectivity = IndexArray(connectivityArg, "connectivity");
        indexCount = lines.connectivity->shape(0);
        const std::int64_t* index = lines.connectivity->data();
        for (std::int64_t k = 0; k < indexCount; ++k)
        {
            if (index[k] < 0 || index[k] >= pointCount)
            {
                Refuse("connectivity", "index " + std::to_string(index[k]) + " at " + std::to_string(k)
                                           + " is outside 0 ... " + std::to_string(pointCount - 1));
            }
        }
    }
    const std::int64_t* offsets = lines.offsets.data();
    const py::ssize_t count = lines.offsets.shape(0);
    bool ordered = count >= 2 && offsets[0] == 0 && offsets[count - 1] == indexCount;
    for (py::ssize_t i = 1; ordered && i < count; ++i)
    {
        ordered = offsets[i - 1] <= offsets[i];
    }
    if (!ordered)
    {
        Refuse("offsets", "expected a non-decreasing run from 0 to " + std::to_string(indexCount)
                              + " (the number of " + (lines.connectivity ? "indices" : "points") + ")");
    }
    return lines;
}

// The lines as the reader hands a file's lines to the viewer, with the value
// of each index (the height z without values), so that the viewer's own
// preparation readies them for the same tubes it draws for a file.
KesraIo::PolyData AsPolyData(const CArray<double>& points, const Lines& lines,
                             const std::optional<CArray<double>>& values, std::vector<double>& entryValues)
{
    KesraIo::PolyData poly;
    const double* xyz = points.data();
    std::vector<double>& coordinates = poly.points.Doubles(static_cast<std::size_t>(points.size()));
    std::copy(xyz, xyz + points.size(), coordinates.begin());
    const py::ssize_t count = lines.offsets.shape(0);
    poly.lineOffsets.assign(lines.offsets.data(), lines.offsets.data() + count);
    const std::int64_t indexCount = lines.offsets.data()[count - 1];
    poly.connectivity.reserve(static_cast<std::size_t>(indexCount));
    entryValues.reserve(static_cast<std::size_t>(indexCount));
    for (std::int64_t k = 0; k < indexCount; ++k)
    {
        const std::int64_t i = lines.Index(k);
        poly.connectivity.push_back(static_cast<std::size_t>(i));
        entryValues.push_back(values ? values->data()[i] : xyz[3 * i + 2]);
    }
    return poly;
}

SceneData MakeScene(py::handle pointsArg, py::handle offsetsArg, py::handle valuesArg,
                    py::handle connectivityArg, std::string title, std::string valueName)
{
    const CArray<double> points = PointsArray(pointsArg, "points");
    RequireFinite(points);
    const py::ssize_t pointCount = points.shape(0);
    // Without offsets every point (or index) is on one line.
    py::object offsets = py::reinterpret_borrow<py::object>(offsetsArg);
    if (offsets.is_none())
    {
        const py::ssize_t last = connectivityArg.is_none() ? pointCount : py::len(connectivityArg);
        offsets = py::make_tuple(0, last);
    }
    const Lines lines = ReadLines(offsets, connectivityArg, pointCount);
    std::optional<CArray<double>> values;
    if (!valuesArg.is_none())
    {
        values = ValuesArray(valuesArg, "values");
        if (values->shape(0) != pointCount)
        {
            Refuse("values", "expected one value per point (" + std::to_string(pointCount) + "), got "
                                 + std::to_string(values->shape(0)));
        }
    }
    SceneData data;
    std::vector<double> entryValues;
    if (!KesraViewer::PrepareLines(AsPolyData(points, lines, values, entryValues), entryValues, 0.0, data))
    {
        Refuse("points", "no line with two or more distinct points to draw");
    }
    data.title = std::move(title);
    data.valueName = values ? std::move(valueName) : "z";
    return data;
}

Look MakeLook(const std::string& palette, int banded, bool inverse, const std::string& view,
              const std::pair<int, int>& size)
{
    if (banded != 0 && (banded < 2 || banded > 30))
    {
        Refuse("banded", "expected 0 (smooth) or 2 ... 30 blocks, got " + std::to_string(banded));
    }
    // The viewer's own limits.
    if (size.first < 16 || size.second < 16 || size.first > 8000 || size.second > 8000)
    {
        Refuse("size", "expected (width, height), each 16 ... 8000, got (" + std::to_string(size.first)
                           + ", " + std::to_string(size.second) + ")");
    }
    return {PaletteNamed(palette, "palette"), banded, inverse, ViewNamed(view, "view"), size.first,
            size.second};
}

// The scene's legend starts on the first palette; the viewer's p key steps on.
void Dress(KesraGl::CGlScene& scene, const Look& look)
{
    scene.SetView(look.view, false);
    for (const KesraBackend::NamedPalette& entry : KesraBackend::kPalettes)
    {
        if (entry.value == look.palette)
        {
            break;
        }
        scene.NextPalette();
    }
    if (look.banded != 0)
    {
        scene.Legend().SetBlockNum(look.banded);
        scene.ToggleBanded();
    }
    if (look.inverse)
    {
        scene.ToggleInverse();
    }
}

// The frame's RGBA rows, bottom row first, or why there are none.
struct Frame
{
    std::vector<unsigned char> rgba;
    std::string contextError; // no OpenGL context, or no frame read back
    std::string fileError;    // the PNG could not be written
};

Frame Draw(SceneData data, const Look& look, const std::optional<std::filesystem::path>& png)
{
    Frame frame;
    KesraGl::CEglContext context;
    KesraGl::CGlScene scene(context, std::move(data), look.width, look.height);
    if (!scene.CreateContext())
    {
        frame.contextError = "no OpenGL context: " + scene.ContextError();
        return frame;
    }
    Dress(scene, look);
    frame.rgba = scene.Capture();
    if (frame.rgba.empty())
    {
        frame.contextError = "the frame could not be read back from OpenGL";
    }
    else if (png)
    {
        KesraViewer::WritePng(png->string(), look.width, look.height, frame.rgba, frame.fileError);
    }
    return frame;
}

py::array_t<unsigned char> TopRowFirst(const std::vector<unsigned char>& rgba, int width, int height)
{
    py::array_t<unsigned char> pixels = NewArray<unsigned char>({height, width, 4});
    const std::size_t row = 4 * static_cast<std::size_t>(width);
    for (int y = 0; y < height; ++y)
    {
        std::memcpy(pixels.mutable_data() + row * static_cast<std::size_t>(y),
                    rgba.data() + row * static_cast<std::size_t>(height - 1 - y), row);
    }
    return pixels;
}

py::array_t<unsigned char> Render(py::handle points, py::handle offsets, py::handle values,
                                  py::handle connectivity, const std::string& palette, int banded,
                                  bool inverse, const std::string& view, const std::pair<int, int>& size,
                                  std::string title, std::string valueName,
                                  const std::optional<std::filesystem::path>& png)
{
    SceneData data = MakeScene(points, offsets, values, connectivity, std::move(title), std::move(valueName));
    const Look look = MakeLook(palette, banded, inverse, view, size);
    Frame frame;
    {
        py::gil_scoped_release unlocked;
        frame = Draw(std::move(data), look, png);
    }
    if (!frame.contextError.empty())
    {
        throw std::runtime_error(frame.contextError);
    }
    if (!frame.fileError.empty())
    {
        const py::object type = py::reinterpret_borrow<py::object>(PyExc_OSError);
        PyErr_SetObject(type.ptr(), type(frame.fileError).ptr());
        throw py::error_already_set();
    }
    return TopRowFirst(frame.rgba, look.width, look.height);
}

} // namespace

void BindRender(py::module_& module)
{
    using namespace pybind11::literals;
    // kesraengine.render gives the arguments their defaults and the picture
    // its type.
    module.def("render", &Render, "points"_a, "offsets"_a, "values"_a, "connectivity"_a, "palette"_a,
               "banded"_a, "inverse"_a, "view"_a, "size"_a, "title"_a, "value_name"_a, "png"_a);
}

} // namespace KesraPython
