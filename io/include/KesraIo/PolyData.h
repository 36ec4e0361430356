// What a result file holds for a streamline viewer: points, polylines and
// every named array attached to the points or to the lines, as read.
//
// Numbers keep the width the file stored them in: 32-bit floats stay floats
// (half the memory of a large result), every other type is widened to double
// (64-bit integers beyond 2^53 lose their last bits, which no colour shows).
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

namespace KesraIo
{

// A flat run of numbers in one of two widths.
class Numbers
{
public:
    bool IsFloat() const { return m_isFloat; }
    std::size_t Size() const { return m_isFloat ? m_floats.size() : m_doubles.size(); }
    double operator[](std::size_t i) const { return m_isFloat ? m_floats[i] : m_doubles[i]; }

    // The storage, emptied and sized to count values, for a reader to fill.
    std::vector<float>& Floats(std::size_t count);
    std::vector<double>& Doubles(std::size_t count);

    const std::vector<float>& Floats() const { return m_floats; }
    const std::vector<double>& Doubles() const { return m_doubles; }

    // Appends other's values, widening to double when the widths differ.
    void Append(const Numbers& other);

private:
    std::vector<float> m_floats;
    std::vector<double> m_doubles;
    bool m_isFloat = false;
};

enum class Association
{
    Point, // one tuple per point
    Cell   // one tuple per line, in line order
};

// The smallest and largest finite value; both NaN when there is none.
struct Range
{
    double min;
    double max;
};

struct DataArray
{
    std::string name;
    Association association = Association::Point;
    int components = 1;
    Numbers values; // tuple after tuple, components values each; may hold
                    // values that are not finite

    std::size_t TupleCount() const { return components > 0 ? values.Size() / components : 0; }

    // Component c of tuple t; c == -1 is the tuple's magnitude.
    double Value(std::size_t t, int c) const;
    Range FiniteRange(int c) const;
};

struct PolyData
{
    Numbers points;                        // x, y, z of each point, all finite
    std::vector<std::size_t> lineOffsets;  // LineCount() + 1 entries from 0; line i is
                                           // connectivity[lineOffsets[i], lineOffsets[i + 1])
    std::vector<std::size_t> connectivity; // point indices, each < PointCount()
    std::vector<DataArray> arrays;         // point arrays first, then cell arrays, each
                                           // group in file order
    std::string activeScalars;             // the point array the file marks as its
                                           // scalars; empty when it marks none
    std::vector<std::string> notes;        // what was read past (vertices, polygons,
                                           // strips, string arrays), one sentence each

    std::size_t PointCount() const { return points.Size() / 3; }
    std::size_t LineCount() const { return lineOffsets.empty() ? 0 : lineOffsets.size() - 1; }

    // The array of that name and association, or nullptr.
    const DataArray* Find(const std::string& name, Association association) const;
};

// A file that cannot be read as it stands. The text names the file, the
// place (line, byte offset, or XML element and attribute) and what was
// expected there.
class ReadError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

} // namespace KesraIo
