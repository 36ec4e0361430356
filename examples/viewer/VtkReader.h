// Reads streamlines from legacy VTK polydata files ("# vtk DataFile Version"
// 2.0 to 5.1, ASCII or BINARY): the points, the polylines of the LINES
// section (as cell arrays, or as the OFFSETS and CONNECTIVITY arrays of 5.x)
// and the first SCALARS array of the POINT_DATA. Every other section that the
// common writers put into such files (VERTICES, POLYGONS, TRIANGLE_STRIPS,
// CELL_DATA, FIELD, VECTORS, NORMALS, TEXTURE_COORDINATES, TENSORS,
// COLOR_SCALARS, LOOKUP_TABLE, METADATA, ...) is read past and dropped.
//
// A file that cannot be shown as it stands is refused as a whole with a
// VtkError whose text names the file, the line (ASCII) or the byte offset
// (binary data) and what was expected there: a bad header, a truncated or
// non-numeric array, counts that disagree, a point index out of range, a
// coordinate that is not finite, a scalar array of another length than the
// points. Declared counts are checked against the bytes left before anything
// is allocated, so no file, however small, makes the reader allocate more
// than its own size allows.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace KesraVtk
{

struct PolyLines
{
    std::vector<double> points;            // x, y, z of each point, all finite
    std::vector<std::size_t> lineOffsets;  // LineCount() + 1 entries from 0;
                                           // line i is connectivity[lineOffsets[i],
                                           // lineOffsets[i + 1])
    std::vector<std::size_t> connectivity; // point indices, each < PointCount()
    std::string scalarName;                // empty when the file has no point scalars
    std::vector<double> scalars;           // one per point (first component), or empty;
                                           // may hold values that are not finite

    std::size_t PointCount() const { return points.size() / 3; }
    std::size_t LineCount() const { return lineOffsets.empty() ? 0 : lineOffsets.size() - 1; }
};

class VtkError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// Parses a whole file held in memory; name is how messages call it.
PolyLines ParseVtk(std::string_view bytes, const std::string& name);

// Reads and parses the file at path; an unreadable file is refused too.
PolyLines ReadVtkFile(const std::string& path);

} // namespace KesraVtk
