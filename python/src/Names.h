// Palettes and standard views by the names the example programs' command
// lines use; an unknown name is refused with ValueError listing the known ones.
#pragma once

#include "Palette.h"
#include "Views.h"

#include <string>

namespace KesraPython
{

KesraExamples::Palette PaletteNamed(const std::string& name, const char* argument);
const char* PaletteName(KesraExamples::Palette palette);
KesraExamples::View ViewNamed(const std::string& name, const char* argument);

} // namespace KesraPython
