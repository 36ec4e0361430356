// Reading result files into PolyData. Every function either returns the
// whole file's content or throws ReadError; nothing is half-read.
#pragma once

#include "KesraIo/PolyData.h"

#include <string>
#include <string_view>

namespace KesraIo
{

// Reads the file at path: legacy polydata (".vtk" or any other name whose
// first line is the legacy header), XML polydata (".vtp"), its parallel
// summary (".pvtp", pieces relative to its folder) or a multi-block
// collection of polydata (".vtm"). Pieces are joined in order into one.
PolyData ReadPolyData(const std::string& path);

// A legacy file (versions 2.0 to 5.1, ASCII or binary) held in memory; name
// is how messages call it.
PolyData ParseLegacy(std::string_view bytes, const std::string& name);

} // namespace KesraIo
