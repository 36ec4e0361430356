// tube(): the rings and normals of a streamline tube; ruler(): the scale bar's
// round length.
#include "Arrays.h"
#include "Bindings.h"

#include "Engine/Ruler.h"
#include "null/NullBackend.h"

#include <pybind11/stl.h>

#include <cmath>
#include <limits>
#include <tuple>

namespace KesraPython
{

namespace
{

// The computed fields a drawing backend reads.
class FittedRuler : public KesraEngine::CKesraRuler
{
public:
    std::tuple<float, int, int> Fit() const { return {m_rulerLength, m_rulerPixelWidth, m_blockCount}; }
};

void RequireTube(py::ssize_t nodes, int sides, double radius)
{
    if (nodes < 2 || nodes > std::numeric_limits<int>::max())
    {
        Refuse("points", "a tube needs 2 or more points, got " + std::to_string(nodes));
    }
    if (sides < 1)
    {
        Refuse("sides", "expected 1 or more, got " + std::to_string(sides));
    }
    if (!(std::isfinite(radius) && radius > 0.0))
    {
        Refuse("radius", "expected a finite number > 0, got " + std::to_string(radius));
    }
}

template <class T>
py::tuple CopyTube(const KesraNull::CNullStreamline& tube, py::ssize_t nodes, int sides)
{
    py::array_t<T> vertices = NewArray<T>({nodes, sides, 3});
    py::array_t<T> normals = NewArray<T>({nodes, sides, 3});
    tube.CopyTubeGeometry(vertices.mutable_data(), normals.mutable_data());
    return py::make_tuple(vertices, normals);
}

py::tuple Tube(py::handle points, int sides, double radius, const py::object& dtypeArg)
{
    const py::dtype dtype = py::dtype::from_args(dtypeArg);
    const bool single = dtype.is(py::dtype::of<float>());
    if (!single && !dtype.is(py::dtype::of<double>()))
    {
        throw py::type_error("dtype: expected float64 or float32, got " + DtypeName(dtype));
    }
    const CArray<double> in = PointsArray(points, "points");
    const py::ssize_t nodes = in.shape(0);
    RequireTube(nodes, sides, radius);
    KesraNull::CNullStreamline tube;
    {
        py::gil_scoped_release unlocked;
        tube.Create(static_cast<int>(nodes), sides, radius, 1.0);
        for (int node = 0; node < static_cast<int>(nodes); ++node)
        {
            // SetNodeCoord takes a mutable pointer but only reads it.
            double xyz[3] = {in.data()[3 * node], in.data()[3 * node + 1], in.data()[3 * node + 2]};
            tube.SetNodeCoord(node, xyz);
        }
        tube.GenerationStreamline3D();
    }
    return single ? CopyTube<float>(tube, nodes, sides) : CopyTube<double>(tube, nodes, sides);
}

std::tuple<float, int, int> Ruler(float pixelsPerUnit, int windowWidth, int startX, int widthScale,
                                  bool autoBlocks)
{
    if (!(std::isfinite(pixelsPerUnit) && pixelsPerUnit > 0.0f))
    {
        Refuse("pixels_per_unit", "expected a finite number > 0, got " + std::to_string(pixelsPerUnit));
    }
    if (windowWidth <= 0 || startX < 0 || startX >= windowWidth)
    {
        Refuse("window_width", "expected 0 <= start_x < window_width, got start_x "
                                   + std::to_string(startX) + ", window_width " + std::to_string(windowWidth));
    }
    if (widthScale <= 0)
    {
        Refuse("width_scale", "expected 1 or more, got " + std::to_string(widthScale));
    }
    FittedRuler ruler;
    ruler.Create(windowWidth, 100, startX, 0);
    ruler.SetRulerWidthScale(widthScale);
    ruler.SetAutoBlock(autoBlocks);
    ruler.SetOpenGLScale(pixelsPerUnit);
    return ruler.Fit();
}

} // namespace

void BindGeometry(py::module_& module)
{
    using namespace pybind11::literals;
    module.def("tube", &Tube, "points"_a, "sides"_a = 8, "radius"_a = 1.0, py::kw_only(),
               "dtype"_a = py::dtype::of<double>(),
               R"(The tube of the given radius around the polyline through points, (n, 3).

Returns (vertices, normals), each an (n, sides, 3) array of dtype float64 or
float32: vertices[i, j] is vertex j of the ring around point i, normals[i, j]
its outward unit normal ((0, 0, 0) where none is defined). Index j runs along
one line of the tube.)");
    module.def("ruler", &Ruler, "pixels_per_unit"_a, py::kw_only(), "window_width"_a = 1200,
               "start_x"_a = 0, "width_scale"_a = 3, "auto_blocks"_a = true,
               R"(The scale bar of a view at pixels_per_unit (the camera's 1 / scale).

The bar may take (window_width - start_x) / width_scale pixels; it is
shortened to the largest round model length that fits. Returns
(length, pixel_width, blocks); length 0 when no round length fits.)");
}

} // namespace KesraPython
