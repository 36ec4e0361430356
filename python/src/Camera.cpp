// Camera: the orthographic view of one window, its fit, standard views and
// rotation angles, and the batch projection of numpy points.
#include "Arrays.h"
#include "Bindings.h"
#include "Names.h"

#include "null/NullBackend.h"

#include <pybind11/stl.h>

#include <array>
#include <cmath>
#include <tuple>
#include <utility>

namespace KesraPython
{

namespace
{

using Camera = KesraNull::CNullCamera;
using Angles = std::array<double, 3>;
using Size = std::pair<int, int>;

void RequireSize(const Size& size, const char* name)
{
    if (size.first <= 0 || size.second <= 0)
    {
        Refuse(name, "expected a positive width and height, got (" + std::to_string(size.first)
                         + ", " + std::to_string(size.second) + ")");
    }
}

std::unique_ptr<Camera> MakeCamera(int width, int height)
{
    RequireSize({width, height}, "size");
    return std::make_unique<Camera>(width, height);
}

Size GetSize(const Camera& camera)
{
    Size size;
    camera.GetWindowSize(size.first, size.second);
    return size;
}

void SetSize(Camera& camera, const Size& size)
{
    RequireSize(size, "size");
    camera.SetWindowSize(size.first, size.second);
}

void ZoomAll(Camera& camera, const std::array<float, 6>& bounds)
{
    // The camera ignores a box with a bound that is not finite.
    for (const float bound : bounds)
    {
        if (!std::isfinite(bound))
        {
            Refuse("bounds", "expected six finite numbers x0, x1, y0, y1, z0, z1");
        }
    }
    camera.ZoomAll(bounds.data());
}

void SetScale(Camera& camera, float scale)
{
    if (!(std::isfinite(scale) && scale > 0.0f))
    {
        Refuse("scale", "expected a finite number > 0, got " + std::to_string(scale));
    }
    camera.SetScale(scale);
}

std::tuple<double, double, double> GetAngles(const Camera& camera)
{
    double a = 0.0, b = 0.0, c = 0.0;
    camera.GetRotateAngle(a, b, c);
    return {a, b, c};
}

std::pair<float, float> GetTranslation(const Camera& camera)
{
    std::pair<float, float> t;
    camera.GetTranslation(t.first, t.second);
    return t;
}

// A 4 x 4 copy of a matrix: element k = 4r + c lands at [r, c].
py::array_t<double> MatrixArray(const KesraMathKit::TKesraMatrix4<double>& matrix)
{
    py::array_t<double> out = NewArray<double>({4, 4});
    for (int k = 0; k < 16; ++k)
    {
        out.mutable_data()[k] = matrix[k];
    }
    return out;
}

template <class T>
py::array_t<T> ProjectAs(Camera& camera, const py::array& points)
{
    const CArray<T> in = AsCArray<T>(points);
    py::array_t<T> out = NewArray<T>({in.shape(0), 3});
    const std::size_t count = static_cast<std::size_t>(in.shape(0));
    // The interpreter stays locked: the projection refreshes the camera's
    // cached matrix, which another thread must not do at the same time.
    camera.ProjectPointsWorldToView(in.data(), count, out.mutable_data());
    return out;
}

// float32 points stay float32, as the camera's float projection gives them;
// every other real type is projected in double.
py::array Project(Camera& camera, py::handle points)
{
    const py::array array = RealArray(points, "points");
    RequirePoints(array, "points");
    if (array.dtype().is(py::dtype::of<float>()))
    {
        return ProjectAs<float>(camera, array);
    }
    return ProjectAs<double>(camera, array);
}

} // namespace

void BindCamera(py::module_& module)
{
    using namespace pybind11::literals;
    py::class_<Camera>(module, "Camera", R"(The orthographic camera of one window.

Turns model points into window pixels (x to the right, y up, from the lower
left corner) and a view depth. Angles are in degrees, the scale in model units
per pixel.)")
        .def(py::init(&MakeCamera), "width"_a = 800, "height"_a = 600)
        .def_property("size", &GetSize, &SetSize, "(width, height) of the window in pixels.")
        .def("zoom_all", &ZoomAll, "bounds"_a,
             "Fits the box (x0, x1, y0, y1, z0, z1) into the window in any rotation.")
        .def(
            "set_view",
            [](Camera& camera, const std::string& name) {
                KesraBackend::ApplyView(camera, ViewNamed(name, "view"), false);
            },
            "view"_a,
            "Turns to a standard view: 'iso', 'front', 'back', 'left', 'right', 'top' or 'bottom'.")
        .def_property(
            "rotation_angles", &GetAngles,
            [](Camera& camera, const Angles& a) { camera.SetRotateAngle(a[0], a[1], a[2]); },
            "(a, b, c) in degrees: the rotation is Rx(a) Ry(b) Rz(c).")
        .def_property("scale", &Camera::GetScale, &SetScale, "Model units per pixel, > 0.")
        .def_property(
            "translation", &GetTranslation,
            [](Camera& camera, const std::pair<float, float>& t) {
                camera.SetTranslation(t.first, t.second);
            },
            "(x, y) shift of the view.")
        .def_property_readonly(
            "rotation_matrix", [](const Camera& camera) { return MatrixArray(camera.GetRotateMatrix()); },
            "The 4 x 4 rotation, a copy.")
        .def_property_readonly(
            "world_to_view", [](Camera& camera) { return MatrixArray(camera.GetWorldToViewMatrix()); },
            "The 4 x 4 matrix from model points to pixels and depth, a copy.")
        .def("project", &Project, "points"_a,
             R"(Window pixels x, y and view depth z of points, an (n, 3) array.

Returns an (n, 3) array: float32 for float32 points (computed in double, as
the camera's float projection), float64 otherwise. A contiguous float64 or
float32 array is read in place; other real arrays are converted once.)")
        .def("__repr__", [](const Camera& camera) {
            const Size size = GetSize(camera);
            return "Camera(" + std::to_string(size.first) + ", " + std::to_string(size.second) + ")";
        });
}

} // namespace KesraPython
