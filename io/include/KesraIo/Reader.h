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
// summary (".pvtp": its <Piece Source> files) or a multi-block collection
// (".vtm": its <DataSet file> entries at any depth of blocks; entries that
// are not ".vtp" hold no polylines and are read past with a note). Pieces
// are joined in order into one: point indices shifted, arrays matched by
// name, association and components (refused when pieces disagree). A piece
// path must be relative to the collection's folder and stay inside its
// tree, links followed; an absolute, escaping or missing piece is refused
// by name.
PolyData ReadPolyData(const std::string& path);

// An XML polydata file (".vtp": versions 0.1, 1.0 and 2.x; ASCII, base64
// or appended data, raw or base64; plain or in zlib blocks; either byte
// order) held in memory; name is how messages call it. Lines are kept;
// vertices, polygons, strips and string arrays are read past with a note.
// Refused: document type declarations, sizes the bytes there cannot hold
// (before anything is allocated for them), blocks that inflate to more or
// less than declared, offsets that fall or pass the connectivity, indices
// that are not points, coordinates that are not finite, a file without a
// line.
PolyData ParseXmlPolyData(std::string_view bytes, const std::string& name);

// A legacy file (versions 2.0 to 5.1, ASCII or binary) held in memory; name
// is how messages call it.
PolyData ParseLegacy(std::string_view bytes, const std::string& name);

} // namespace KesraIo
