// How the module takes numpy arrays: an argument that already is a
// C-contiguous array of the element type is read in place; anything else of
// real numbers (other widths, integers, strided views, lists) is converted
// once. Anything else is refused with TypeError, a wrong shape with
// ValueError, and both messages start with the argument's name.
#pragma once

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

namespace KesraPython
{

namespace py = pybind11;

template <class T>
using CArray = py::array_t<T, py::array::c_style | py::array::forcecast>;

// obj as an array of real numbers (booleans, complex numbers, texts and
// objects are refused), not yet converted.
py::array RealArray(py::handle obj, const char* name);

// The array of T over array: array itself when it already is one.
template <class T>
CArray<T> AsCArray(const py::array& array)
{
    return CArray<T>::ensure(array);
}

// The (n, 3) points of obj as doubles.
CArray<double> PointsArray(py::handle obj, const char* name);
// The values of obj as a one-dimensional array of doubles.
CArray<double> ValuesArray(py::handle obj, const char* name);

// The indices of obj as a one-dimensional array of 64-bit integers; only
// integer arrays are taken.
CArray<std::int64_t> IndexArray(py::handle obj, const char* name);

// Refusals that name the argument.
void RequirePoints(const py::array& array, const char* name);
void RequireVector(const py::array& array, const char* name);
[[noreturn]] void Refuse(const char* name, const std::string& why);

// "float32", as numpy prints a dtype.
std::string DtypeName(const py::dtype& dtype);
// "(5, 2)", as numpy prints a shape.
std::string ShapeText(const py::array& array);

// A new C-contiguous array of the given shape, not initialised.
template <class T>
py::array_t<T> NewArray(std::initializer_list<py::ssize_t> shape)
{
    return py::array_t<T>(std::vector<py::ssize_t>(shape));
}

} // namespace KesraPython
