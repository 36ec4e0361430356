// What the readers share: the polydata of one .vtp file, the joining of
// pieces (of one file, of a parallel file, of a multi-block collection) into
// one PolyData, and the parsers with the progress they tell.
#pragma once

#include "KesraIo/PolyData.h"
#include "Progress.h"

#include <string>
#include <string_view>
#include <vector>

namespace KesraIo
{

// The pieces of a .vtp held in memory, joined; unlike ParseXmlPolyData it
// accepts a file without lines, as a piece of a collection may be.
PolyData ParseXmlPieces(std::string_view bytes, const std::string& name, const Progress& progress = Progress());

// ParseLegacy, telling progress how far it is through bytes.
PolyData ParseLegacy(std::string_view bytes, const std::string& name, const Progress& progress);

// Joins pieces in order: points after points, lines after lines with
// their point indices shifted, arrays matched by name, association and
// components. Pieces without points or lines are left out of the match.
// labels[i] names piece i in messages; the result's notes are the pieces'
// notes in order, and its active scalars the first piece's that has any.
PolyData JoinPieces(std::vector<PolyData> pieces, const std::vector<std::string>& labels);

// Refuses a result without a line to draw.
void RequireLines(const PolyData& data, const std::string& name);

// Of a file's progress, the share its bytes take to come from the disk; the
// rest is their parsing. On a warm page cache the parsing takes longer, on a
// cold disk the reading: a third keeps the bar moving either way.
constexpr double kDiskShare = 1.0 / 3;

// The bytes of the file at path, whole.
std::string WholeFile(const std::string& path, const Progress& progress = Progress());

// A parallel polydata summary (".pvtp") or a multi-block collection
// (".vtm"), with their pieces read from the collection's folder.
PolyData ReadParallelPolyData(const std::string& path, const Progress& progress);
PolyData ReadMultiBlock(const std::string& path, const Progress& progress);

} // namespace KesraIo
