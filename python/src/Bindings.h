// The parts of the module, each adding its classes and functions to it.
#pragma once

#include <pybind11/pybind11.h>

namespace KesraPython
{

namespace py = pybind11;

void BindLegend(py::module_& module);
void BindCamera(py::module_& module);
void BindGeometry(py::module_& module);
void BindReader(py::module_& module);
void BindRender(py::module_& module);

} // namespace KesraPython
