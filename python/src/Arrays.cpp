#include "Arrays.h"

#include <string_view>

namespace KesraPython
{

namespace
{

// obj as an array whose dtype is of one of kinds (numpy's kind letters).
py::array ArrayOfKinds(py::handle obj, const char* name, std::string_view kinds, const char* what)
{
    py::array array = py::array::ensure(obj);
    if (!array)
    {
        throw py::type_error(std::string(name) + ": expected an array of " + what + ", got "
                             + std::string(py::str(obj.get_type().attr("__name__"))));
    }
    if (kinds.find(array.dtype().kind()) == std::string_view::npos)
    {
        throw py::type_error(std::string(name) + ": expected an array of " + what + ", got dtype "
                             + DtypeName(array.dtype()));
    }
    return array;
}

} // namespace

py::array RealArray(py::handle obj, const char* name)
{
    // Booleans would pass as 0 and 1 by accident.
    return ArrayOfKinds(obj, name, "iuf", "real numbers");
}

CArray<std::int64_t> IndexArray(py::handle obj, const char* name)
{
    const py::array array = ArrayOfKinds(obj, name, "iu", "integers");
    RequireVector(array, name);
    return AsCArray<std::int64_t>(array);
}

void Refuse(const char* name, const std::string& why)
{
    throw py::value_error(std::string(name) + ": " + why);
}

std::string DtypeName(const py::dtype& dtype)
{
    return std::string(py::str(static_cast<const py::handle&>(dtype)));
}

std::string ShapeText(const py::array& array)
{
    std::string text = "(";
    for (py::ssize_t axis = 0; axis < array.ndim(); ++axis)
    {
        text += (axis > 0 ? ", " : "") + std::to_string(array.shape(axis));
    }
    return text + (array.ndim() == 1 ? ",)" : ")");
}

void RequirePoints(const py::array& array, const char* name)
{
    if (array.ndim() != 2 || array.shape(1) != 3)
    {
        Refuse(name, "expected shape (n, 3), got " + ShapeText(array));
    }
}

void RequireVector(const py::array& array, const char* name)
{
    if (array.ndim() != 1)
    {
        Refuse(name, "expected shape (n,), got " + ShapeText(array));
    }
}

CArray<double> PointsArray(py::handle obj, const char* name)
{
    const py::array array = RealArray(obj, name);
    RequirePoints(array, name);
    return AsCArray<double>(array);
}

CArray<double> ValuesArray(py::handle obj, const char* name)
{
    const py::array array = RealArray(obj, name);
    RequireVector(array, name);
    return AsCArray<double>(array);
}

} // namespace KesraPython
