// Reading result files into PolyData. Every function either returns the
// whole file's content or throws ReadError; nothing is half-read.
#pragma once

#include "KesraIo/PolyData.h"

#include <exception>
#include <functional>
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

// Told how far a read has come, for a host that shows it or lets the user
// stop: progress gets the fraction done, rising from 0 to 1 (the file's bytes
// read from the disk, then parsed; a collection's pieces in turn), a few
// hundred times at most, the last time with 1 once the whole result is
// there. It returns false to stop the read. It runs on the reading thread.
struct ReadMonitor
{
    std::function<bool(double fraction)> progress;
};

// A read stopped by its monitor: what had been read is freed. Not a
// ReadError, which says the file is at fault: a host that reports those as
// such must not tell the user that their file is bad when they stopped it.
class ReadCancelled : public std::exception
{
public:
    const char* what() const noexcept override { return "the read was stopped"; }
};

// As ReadPolyData(path), telling monitor how far it has come; throws
// ReadCancelled once monitor.progress returns false. An empty progress
// reads as without a monitor.
PolyData ReadPolyData(const std::string& path, const ReadMonitor& monitor);

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
