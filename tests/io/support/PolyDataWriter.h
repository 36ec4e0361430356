// A test-only writer of result files: one PolyData written in every layout
// the readers take, the way the common writers lay them out (attributes,
// indentation, the "_" that opens appended data, ranges, block headers), so
// that round-trip tests, the fuzzer's seeds and the benchmarks make every
// variant of a file from one set of values.
//
// Values are converted to the stored type with static_cast: a test picks
// values that the stored type holds exactly (integers for integer arrays,
// floats for Float32), so that reading back must give them bit for bit.
#pragma once

#include "KesraIo/PolyData.h"

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace KesraIoTest
{

// The stored types of XML data arrays, by their name in the file.
enum class Scalar
{
    Int8,
    UInt8,
    Int16,
    UInt16,
    Int32,
    UInt32,
    Int64,
    UInt64,
    Float32,
    Float64
};

// Where and how a data array's values are written.
enum class Encoding
{
    Ascii,         // text inside the DataArray element
    Binary,        // base64 inside the DataArray element
    AppendedRaw,   // bytes in the AppendedData section, at the array's offset
    AppendedBase64 // base64 in the AppendedData section
};

// The width of the byte counts that precede binary data.
enum class HeaderType
{
    UInt32,
    UInt64
};

enum class ByteOrder
{
    LittleEndian,
    BigEndian
};

struct XmlFormat
{
    Encoding encoding = Encoding::AppendedRaw;
    HeaderType headerType = HeaderType::UInt64;
    bool zlib = false;             // binary data in zlib blocks of blockSize bytes each
    std::size_t blockSize = 32768; // (the last one shorter, unless the data fills it)
    ByteOrder byteOrder = ByteOrder::LittleEndian;
    // "0.1" omits header_type when it is UInt32, as the writers of that
    // version did; "2.2" adds what current writers add: a TimeValue in
    // FieldData and the norm range of each vector array as information keys.
    std::string version = "1.0";
    Scalar pointType = Scalar::Float32;
    Scalar indexType = Scalar::Int64; // connectivity and offsets
    // Stored types by array name; an array not listed keeps its own width
    // (Float32 for floats, Float64 for doubles).
    std::map<std::string, Scalar> arrayTypes;
    // One-point vertex cells written before the lines, each with a tuple of
    // -1 in every cell array, as files that mark seed points hold them.
    std::size_t vertices = 0;
    // Verts, Strips and Polys are written even without cells, as the
    // writers do; off for the smallest file (the fuzzer's seeds).
    bool emptySections = true;
};

// A whole .vtp file: one Piece with data's points, lines and arrays (point
// arrays in PointData, cell arrays in CellData, activeScalars as the
// PointData's Scalars attribute).
std::string WriteVtp(const KesraIo::PolyData& data, const XmlFormat& format);

// The .pvtp summary of pieces that share data's arrays and format: the
// arrays' names, types and components, then one Piece per source, named as
// given (relative to the summary's folder).
std::string WritePvtp(const KesraIo::PolyData& layout, const XmlFormat& format,
                      const std::vector<std::string>& sources);

// A block of a .vtm collection: its datasets' files in order.
struct VtmBlock
{
    std::string name;
    std::vector<std::string> files;
};

// A .vtm collection of blocks of datasets, in the format's version and byte
// order attributes.
std::string WriteVtm(const std::vector<VtmBlock>& blocks, const XmlFormat& format);

struct LegacyFormat
{
    bool binary = false;
    std::string version = "4.2"; // "5.1" writes LINES as OFFSETS and CONNECTIVITY
    Scalar pointType = Scalar::Float32;
    std::map<std::string, Scalar> arrayTypes; // as in XmlFormat
    std::size_t vertices = 0;                 // as in XmlFormat
};

// A legacy polydata file: the active scalars as SCALARS, every other array
// in a FIELD, point data after cell data as the writers order them.
std::string WriteLegacy(const KesraIo::PolyData& data, const LegacyFormat& format);

// ---- Test data ---------------------------------------------------------------------

// lines polylines of pointsPerLine points each, points numbered along the
// lines, with values every stored type holds exactly: point arrays "speed"
// (Float32, 1 component, the active scalars), "velocity" (Float64, 3) and
// "pressure" (Float32, 1); cell arrays "line_id" (whole numbers, 1) and
// "direction" (Float32, 3).
KesraIo::PolyData SampleLines(std::size_t lines, std::size_t pointsPerLine);

// data cut into pieces of consecutive lines (as even as the count allows),
// each with the points of its lines renumbered from 0 and its share of every
// array. Joining the pieces in order gives data back when, as in
// SampleLines, each line's points follow the previous line's.
std::vector<KesraIo::PolyData> SplitByLines(const KesraIo::PolyData& data, std::size_t pieces);

// The standard base64 alphabet with "=" padding.
std::string Base64(std::string_view bytes);

// Writes bytes to path, replacing the file; throws std::runtime_error when it cannot.
void WriteFile(const std::string& path, const std::string& bytes);

} // namespace KesraIoTest
