#include "Bindings.h"

PYBIND11_MODULE(_kesraengine, module)
{
    module.doc() = "The compiled part of kesraengine; import kesraengine instead.";
    KesraPython::BindLegend(module);
    KesraPython::BindCamera(module);
    KesraPython::BindGeometry(module);
    KesraPython::BindReader(module);
    KesraPython::BindRender(module);
}
