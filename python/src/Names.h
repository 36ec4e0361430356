// Palettes and standard views by the names the example programs' command
// lines use; an unknown name is refused with ValueError listing the known ones.
#pragma once

#include "common/Palette.h"
#include "common/Views.h"

#include <string>

namespace KesraPython
{

KesraBackend::Palette PaletteNamed(const std::string& name, const char* argument);
const char* PaletteName(KesraBackend::Palette palette);
KesraBackend::View ViewNamed(const std::string& name, const char* argument);

} // namespace KesraPython
