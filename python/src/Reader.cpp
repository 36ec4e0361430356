// read(): a result file's points, polylines and named arrays as numpy arrays
// that look into the file's data in place, kept alive by the arrays.
#include "Arrays.h"
#include "Bindings.h"

#include "KesraIo/Reader.h"

#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace KesraPython
{

namespace
{

using KesraIo::Association;
using KesraIo::DataArray;
using KesraIo::Numbers;
using KesraIo::PolyData;

// An array over data, shape as given, that keeps owner alive.
template <class T>
py::array View(const std::vector<T>& data, std::vector<py::ssize_t> shape, py::handle owner)
{
    return py::array_t<T>(std::move(shape), data.data(), owner);
}

py::array NumbersView(const Numbers& numbers, py::ssize_t columns, py::handle owner)
{
    const py::ssize_t rows = static_cast<py::ssize_t>(numbers.Size()) / columns;
    std::vector<py::ssize_t> shape = {rows};
    if (columns > 1)
    {
        shape.push_back(columns);
    }
    return numbers.IsFloat() ? View(numbers.Floats(), shape, owner) : View(numbers.Doubles(), shape, owner);
}

py::dict Arrays(const PolyData& data, Association association, py::handle owner)
{
    py::dict arrays;
    for (const DataArray& array : data.arrays)
    {
        if (array.association == association && array.components > 0)
        {
            arrays[py::str(array.name)] = NumbersView(array.values, array.components, owner);
        }
    }
    return arrays;
}

py::array IndexView(const std::vector<std::size_t>& indices, py::handle owner)
{
    return View(indices, {static_cast<py::ssize_t>(indices.size())}, owner);
}

const PolyData& Data(const py::object& self)
{
    return self.cast<const PolyData&>();
}

PolyData Read(const std::filesystem::path& path)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
    {
        const py::object type = py::reinterpret_borrow<py::object>(PyExc_FileNotFoundError);
        PyErr_SetObject(type.ptr(), type(ENOENT, std::strerror(ENOENT), path.string()).ptr());
        throw py::error_already_set();
    }
    py::gil_scoped_release unlocked;
    return KesraIo::ReadPolyData(path.string());
}

} // namespace

void BindReader(py::module_& module)
{
    using namespace pybind11::literals;
    py::register_exception<KesraIo::ReadError>(module, "ReadError", PyExc_ValueError)
        .attr("__doc__") = "A file that cannot be read as it stands; the message names the file, the "
                      "place and what was expected there.";

    py::class_<PolyData>(module, "PolyData", R"(What a result file holds.

Every array looks into the file's data in place: points and arrays keep the
width the file stored them in (float32 or float64).)")
        .def_property_readonly(
            "points", [](py::object self) { return NumbersView(Data(self).points, 3, self); },
            "(n, 3) x, y, z of each point.")
        .def_property_readonly(
            "offsets", [](py::object self) { return IndexView(Data(self).lineOffsets, self); },
            "(lines + 1,) uint64: line i is connectivity[offsets[i]:offsets[i + 1]].")
        .def_property_readonly(
            "connectivity", [](py::object self) { return IndexView(Data(self).connectivity, self); },
            "(m,) uint64 point indices of the lines, one line after the other.")
        .def_property_readonly(
            "arrays", [](py::object self) { return Arrays(Data(self), Association::Point, self); },
            "The point arrays by name: (n,) for one component, (n, k) for k.")
        .def_property_readonly(
            "cell_arrays", [](py::object self) { return Arrays(Data(self), Association::Cell, self); },
            "The line arrays by name, one tuple per line.")
        .def_readonly("active_scalars", &PolyData::activeScalars,
                      "The point array the file marks as its scalars; '' when none.")
        .def_readonly("notes", &PolyData::notes, "What was read past, one sentence each.")
        .def("__repr__", [](const PolyData& data) {
            return "PolyData(" + std::to_string(data.PointCount()) + " points, "
                   + std::to_string(data.LineCount()) + " lines, " + std::to_string(data.arrays.size())
                   + " arrays)";
        });

    module.def("read", &Read, "path"_a,
               R"(Reads a result file: legacy polydata (.vtk) or XML polydata and its collections.

Raises FileNotFoundError when there is no such file and ReadError (a
ValueError) when it cannot be read as it stands.)");
}

} // namespace KesraPython
