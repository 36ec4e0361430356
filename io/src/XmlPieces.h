// What the XML readers share: the polydata of one .vtp file, and the
// joining of pieces (of one file, of a parallel file, of a multi-block
// collection) into one PolyData.
#pragma once

#include "KesraIo/PolyData.h"

#include <string>
#include <string_view>
#include <vector>

namespace KesraIo
{

// The pieces of a .vtp held in memory, joined; unlike ParseXmlPolyData it
// accepts a file without lines, as a piece of a collection may be.
PolyData ParseXmlPieces(std::string_view bytes, const std::string& name);

// Joins pieces in order: points after points, lines after lines with
// their point indices shifted, arrays matched by name, association and
// components. Pieces without points or lines are left out of the match.
// labels[i] names piece i in messages; the result's notes are the pieces'
// notes in order, and its active scalars the first piece's that has any.
PolyData JoinPieces(std::vector<PolyData> pieces, const std::vector<std::string>& labels);

// Refuses a result without a line to draw.
void RequireLines(const PolyData& data, const std::string& name);

// The bytes of the file at path, whole.
std::string WholeFile(const std::string& path);

// A parallel polydata summary (".pvtp") or a multi-block collection
// (".vtm"), with their pieces read from the collection's folder.
PolyData ReadParallelPolyData(const std::string& path);
PolyData ReadMultiBlock(const std::string& path);

} // namespace KesraIo
