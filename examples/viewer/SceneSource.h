// Where the viewer's scene comes from: the flow past a sphere without a
// file, the user's VTK polydata with one.
#pragma once

#include "SceneData.h"

#include <string>

namespace KesraViewer
{

using KesraExamples::SceneData;

// False with error set (naming the file and what is wrong) when the file
// cannot be shown.
bool LoadScene(const std::string& file, SceneData& data, std::string& error);

} // namespace KesraViewer
