// PNG snapshots through libpng: written under a temporary name in the target's
// directory and renamed into place, so that a failed write leaves nothing.
#pragma once

#include <string>
#include <vector>

namespace KesraViewer
{

// rgba: width x height pixels, bottom row first (as OpenGL reads them).
// False with error set when the file cannot be written.
bool WritePng(const std::string& path, int width, int height, const std::vector<unsigned char>& rgba,
              std::string& error);

// Decodes a whole PNG into RGBA rows, top row first. False with error set.
bool ReadPng(const std::string& path, int& width, int& height, std::vector<unsigned char>& rgba,
             std::string& error);

} // namespace KesraViewer
