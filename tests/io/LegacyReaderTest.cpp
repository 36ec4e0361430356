// The legacy VTK reader on files written here the way the common writers
// write them (extra sections and all), in ASCII and binary, classic cell
// arrays and version 5 offsets; and on malformed files, each refused with a
// message that says where and what.
#include "KesraIo/Reader.h"

#include "io/MalformedFiles.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{

using KesraIo::ParseLegacy;
using KesraIo::PolyData;
using KesraIo::ReadError;

std::vector<double> AsDoubles(const KesraIo::Numbers& numbers)
{
    std::vector<double> values;
    for (std::size_t i = 0; i < numbers.Size(); ++i)
    {
        values.push_back(numbers[i]);
    }
    return values;
}

// The first component of the point scalars the file marks as active, as
// doubles; empty without.
std::vector<double> ActiveScalars(const PolyData& lines)
{
    const KesraIo::DataArray* array = lines.Find(lines.activeScalars, KesraIo::Association::Point);
    std::vector<double> values;
    for (std::size_t t = 0; array != nullptr && t < array->TupleCount(); ++t)
    {
        values.push_back(array->Value(t, 0));
    }
    return values;
}

// Five points on two polylines, 0-1-2 and 3-4, with a speed at each point.
const std::vector<double> kPoints = {0, 0, 0, 1, 0, 0, 2, 0.5, 0, 0, 1, 0, 1.25, 1, -3};
const std::vector<double> kSpeed = {0.5, 1.5, 2.5, -1, 1e-3};

void ExpectTwoLines(const PolyData& lines)
{
    EXPECT_EQ(AsDoubles(lines.points), kPoints);
    EXPECT_EQ(lines.PointCount(), 5u);
    EXPECT_EQ(lines.lineOffsets, (std::vector<std::size_t>{0, 3, 5}));
    EXPECT_EQ(lines.connectivity, (std::vector<std::size_t>{0, 1, 2, 3, 4}));
    EXPECT_EQ(lines.LineCount(), 2u);
    EXPECT_EQ(lines.activeScalars, "speed");
    EXPECT_EQ(ActiveScalars(lines), kSpeed);
}

// ---- Binary writing: big-endian, as the format stores numbers ----------------------

void PutBigEndian(std::string& out, std::uint64_t bits, int bytes)
{
    for (int i = bytes - 1; i >= 0; --i)
    {
        out += static_cast<char>((bits >> (8 * i)) & 0xff);
    }
}

void PutFloat(std::string& out, float value)
{
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    PutBigEndian(out, bits, 4);
}

void PutDouble(std::string& out, double value)
{
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    PutBigEndian(out, bits, 8);
}

void PutInt(std::string& out, std::int64_t value, int bytes)
{
    PutBigEndian(out, static_cast<std::uint64_t>(value), bytes);
}

// ---- Good files --------------------------------------------------------------------

TEST(LegacyReaderTest, AsciiClassicWithTheSectionsWritersAdd)
{
    const std::string file = "# vtk DataFile Version 3.0\n"
                             "streamlines from a solver\n"
                             "ASCII\n"
                             "DATASET POLYDATA\n"
                             "FIELD FieldData 2\n"
                             "TIME 1 1 double\n0.25\n"
                             "CYCLE 1 1 int\n7\n"
                             "POINTS 5 float\n"
                             "0 0 0 1 0 0 2 0.5 0\n0 1 0 1.25 1 -3\n"
                             "VERTICES 1 2\n1 4\n"
                             "LINES 2 7\n3 0 1 2\n2 3 4\n"
                             "CELL_DATA 3\n"
                             "SCALARS cell_id int 1\nLOOKUP_TABLE default\n0 1 2\n"
                             "POINT_DATA 5\n"
                             "VECTORS velocity float\n"
                             "1 0 0 1 0 0 1 0 0 1 0 0 1 0 0\n"
                             "METADATA\nINFORMATION 1\nNAME L2_NORM_RANGE LOCATION vtkDataArray\nDATA 2 1 1\n\n"
                             "SCALARS speed double\nLOOKUP_TABLE default\n0.5 1.5 2.5 -1 1e-3\n"
                             "SCALARS pressure float 1\nLOOKUP_TABLE default\n9 9 9 9 9\n"
                             "NORMALS n float\n0 0 1 0 0 1 0 0 1 0 0 1 0 0 1\n"
                             "TEXTURE_COORDINATES uv 2 float\n0 0 0 0 0 0 0 0 0 0\n"
                             "LOOKUP_TABLE mine 1\n0 0 0 1\n";
    ExpectTwoLines(ParseLegacy(file, "good.vtk"));

    // The same with Windows line ends and lower-case keywords.
    std::string windows;
    for (const char c : file)
    {
        windows += c == '\n' ? std::string("\r\n") : std::string(1, c);
    }
    for (const char* keyword : {"POINTS", "LINES", "POINT_DATA", "SCALARS", "LOOKUP_TABLE"})
    {
        for (auto at = windows.find(keyword); at != std::string::npos; at = windows.find(keyword, at + 1))
        {
            for (std::size_t i = 0; keyword[i] != '\0'; ++i)
            {
                windows[at + i] = static_cast<char>(std::tolower(keyword[i]));
            }
        }
    }
    ExpectTwoLines(ParseLegacy(windows, "windows.vtk"));
}

TEST(LegacyReaderTest, AsciiVersion51OffsetsAndConnectivity)
{
    const std::string file = "# vtk DataFile Version 5.1\n"
                             "vtk output\n"
                             "ASCII\n"
                             "DATASET POLYDATA\n"
                             "POINTS 5 double\n"
                             "0 0 0 1 0 0 2 0.5 0 0 1 0 1.25 1 -3\n"
                             "METADATA\nINFORMATION 0\n\n"
                             "VERTICES 2 1\nOFFSETS vtktypeint64\n0 1\nCONNECTIVITY vtktypeint64\n4\n"
                             "LINES 3 5\nOFFSETS vtktypeint64\n0 3 5\nCONNECTIVITY vtktypeint64\n0 1 2 3 4\n"
                             "POINT_DATA 5\n"
                             "SCALARS speed double 2\nLOOKUP_TABLE default\n"
                             "0.5 9 1.5 9 2.5 9 -1 9 1e-3 9\n";
    ExpectTwoLines(ParseLegacy(file, "v51.vtk"));
}

TEST(LegacyReaderTest, BinaryClassicFloatPoints)
{
    std::string file = "# vtk DataFile Version 4.2\nbinary streamlines\nBINARY\nDATASET POLYDATA\n"
                       "FIELD FieldData 1\nTIME 1 1 double\n";
    PutDouble(file, 1.5);
    file += "\nPOINTS 5 float\n";
    for (const double v : kPoints)
    {
        PutFloat(file, static_cast<float>(v));
    }
    file += "\nLINES 2 7\n";
    for (const int v : {3, 0, 1, 2, 2, 3, 4})
    {
        PutInt(file, v, 4);
    }
    file += "\nCELL_DATA 2\nSCALARS id int 1\nLOOKUP_TABLE default\n";
    PutInt(file, 0, 4);
    PutInt(file, 1, 4);
    file += "\nPOINT_DATA 5\nSCALARS speed double 1\nLOOKUP_TABLE default\n";
    for (const double v : kSpeed)
    {
        PutDouble(file, v);
    }
    file += "\nMETADATA\nINFORMATION 0\n\n";
    ExpectTwoLines(ParseLegacy(file, "binary.vtk"));
}

TEST(LegacyReaderTest, BinaryVersion51WithoutLookupTableLine)
{
    std::string file = "# vtk DataFile Version 5.1\nvtk output\nBINARY\nDATASET POLYDATA\nPOINTS 5 double\n";
    for (const double v : kPoints)
    {
        PutDouble(file, v);
    }
    file += "\nLINES 3 5\nOFFSETS vtktypeint64\n";
    for (const int v : {0, 3, 5})
    {
        PutInt(file, v, 8);
    }
    file += "\nCONNECTIVITY vtktypeint64\n";
    for (const int v : {0, 1, 2, 3, 4})
    {
        PutInt(file, v, 8);
    }
    // Data straight after the SCALARS line; its first byte is a newline's
    // code, which must be taken as data, not as the end of a line.
    file += "\nPOINT_DATA 5\nSCALARS speed float\n";
    const std::vector<float> speed = {9.183409e-41f, 1.5f, -2.0f, 0.0f, 3.0f};
    for (const float v : speed)
    {
        PutFloat(file, v);
    }
    const PolyData lines = ParseLegacy(file, "binary51.vtk");
    EXPECT_EQ(lines.points.Doubles(), kPoints);
    EXPECT_FALSE(lines.points.IsFloat());
    EXPECT_EQ(lines.lineOffsets, (std::vector<std::size_t>{0, 3, 5}));
    ASSERT_EQ(ActiveScalars(lines).size(), 5u);
    for (std::size_t i = 0; i < speed.size(); ++i)
    {
        EXPECT_EQ(ActiveScalars(lines)[i], static_cast<double>(speed[i]));
    }
}

TEST(LegacyReaderTest, ReadsFilesAndRefusesMissingOnes)
{
    const std::string path = ::testing::TempDir() + "kesra-vtk-reader-test.vtk";
    {
        std::ofstream out(path, std::ios::binary);
        out << "# vtk DataFile Version 2.0\nt\nASCII\nDATASET POLYDATA\nPOINTS 2 float\n0 0 0 1 1 1\n"
               "LINES 1 3\n2 0 1\n";
    }
    const PolyData lines = KesraIo::ReadPolyData(path);
    EXPECT_EQ(lines.PointCount(), 2u);
    EXPECT_TRUE(ActiveScalars(lines).empty());
    EXPECT_TRUE(lines.activeScalars.empty());
    std::remove(path.c_str());
    try
    {
        KesraIo::ReadPolyData(path);
        FAIL() << "a missing file was read";
    }
    catch (const ReadError& error)
    {
        EXPECT_EQ(std::string(error.what()), path + ": cannot be opened for reading");
    }
}

std::string Ascii(const std::string& body, const char* version = "3.0")
{
    return std::string("# vtk DataFile Version ") + version + "\ntitle\nASCII\nDATASET POLYDATA\n" + body;
}

// ---- Every array ---------------------------------------------------------------------

using KesraIo::Association;
using KesraIo::DataArray;

const DataArray& Array(const PolyData& lines, const std::string& name, Association association)
{
    const DataArray* array = lines.Find(name, association);
    if (array == nullptr)
    {
        throw std::runtime_error("no array " + name);
    }
    return *array;
}

void ExpectArray(const PolyData& lines, const std::string& name, Association association, int components,
                 bool isFloat, const std::vector<double>& values)
{
    const DataArray& array = Array(lines, name, association);
    EXPECT_EQ(array.components, components) << name;
    EXPECT_EQ(array.values.IsFloat(), isFloat) << name;
    EXPECT_EQ(AsDoubles(array.values), values) << name;
}

bool HasNote(const PolyData& lines, const std::string& part)
{
    for (const std::string& note : lines.notes)
    {
        if (note.find(part) != std::string::npos)
        {
            return true;
        }
    }
    return false;
}

TEST(LegacyReaderTest, AsciiKeepsEveryPointArrayInItsWidthAndOrder)
{
    const std::string file = "# vtk DataFile Version 3.0\nt\nASCII\nDATASET POLYDATA\n"
                             "FIELD FieldData 1\nTIME 1 1 double\n0.25\n"
                             "POINTS 2 float\n0 0 0 1 0.1 0\nLINES 1 3\n2 0 1\n"
                             "POINT_DATA 2\n"
                             "SCALARS pair double 2\nLOOKUP_TABLE default\n1 2 3 4\n"
                             "VECTORS velocity float\n1 2 3 4 5 6\n"
                             "SCALARS second float\nLOOKUP_TABLE default\n0.1 0.2\n"
                             "NORMALS n double\n0 0 1 0 1 0\n"
                             "TENSORS stress float\n1 2 3 4 5 6 7 8 9 9 8 7 6 5 4 3 2 1\n"
                             "TEXTURE_COORDINATES uv 2 float\n0 0.5 1 0.25\n"
                             "COLOR_SCALARS rgb 3\n0 0.5 1 1 0.5 0\n"
                             "FIELD more 2\n"
                             "labels 1 2 string\nfirst one\nsecond\n"
                             "id 1 2 int\n7 -8\n";
    const PolyData lines = ParseLegacy(file, "arrays.vtk");
    EXPECT_TRUE(lines.points.IsFloat());
    EXPECT_EQ(lines.points.Floats()[4], 0.1f) << "parsed straight into a float";
    EXPECT_EQ(lines.activeScalars, "pair");
    ExpectArray(lines, "pair", Association::Point, 2, false, {1, 2, 3, 4});
    ExpectArray(lines, "velocity", Association::Point, 3, true, {1, 2, 3, 4, 5, 6});
    ExpectArray(lines, "second", Association::Point, 1, true, {0.1f, 0.2f});
    ExpectArray(lines, "n", Association::Point, 3, false, {0, 0, 1, 0, 1, 0});
    ExpectArray(lines, "stress", Association::Point, 9, true,
                {1, 2, 3, 4, 5, 6, 7, 8, 9, 9, 8, 7, 6, 5, 4, 3, 2, 1});
    ExpectArray(lines, "uv", Association::Point, 2, true, {0, 0.5, 1, 0.25});
    ExpectArray(lines, "rgb", Association::Point, 3, true, {0, 0.5, 1, 1, 0.5, 0});
    ExpectArray(lines, "id", Association::Point, 1, false, {7, -8});
    std::vector<std::string> names;
    for (const DataArray& array : lines.arrays)
    {
        names.push_back(array.name);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"pair", "velocity", "second", "n", "stress", "uv", "rgb", "id"}));
    EXPECT_TRUE(HasNote(lines, "'labels' holds strings"));
    EXPECT_TRUE(HasNote(lines, "'TIME' describes the whole file"));
}

TEST(LegacyReaderTest, BinaryArraysColoursAsFractionsAndStringsReadPast)
{
    std::string file = "# vtk DataFile Version 4.2\nt\nBINARY\nDATASET POLYDATA\nPOINTS 2 double\n";
    for (const double v : {0.0, 0.0, 0.0, 1.0, 2.0, 3.0})
    {
        PutDouble(file, v);
    }
    file += "\nLINES 1 3\n";
    for (const int v : {2, 0, 1})
    {
        PutInt(file, v, 4);
    }
    file += "\nPOINT_DATA 2\nCOLOR_SCALARS rgba 4\n";
    for (const unsigned char c : {0, 51, 255, 255, 102, 0, 0, 255})
    {
        file += static_cast<char>(c);
    }
    file += "\nVECTORS v float\n";
    for (const float v : {1.5f, -2.0f, 3.25e-39f, 4.0f, 5.0f, 6.0f})
    {
        PutFloat(file, v);
    }
    // Two strings: 5 bytes with a one-byte length, 70 with a two-byte one.
    file += "\nFIELD f 2\nnames 1 2 string\n";
    file += static_cast<char>(0xC0 | 5);
    file += "hello";
    PutInt(file, 0x8000 | 70, 2);
    file += std::string(70, 'x');
    file += "\nbig 1 2 vtktypeint64\n";
    PutInt(file, -(std::int64_t{1} << 40), 8);
    PutInt(file, 3, 8);
    file += "\n";
    const PolyData lines = ParseLegacy(file, "binary-arrays.vtk");
    EXPECT_FALSE(lines.points.IsFloat());
    ExpectArray(lines, "rgba", Association::Point, 4, true,
                {0.0, 0.2f, 1.0, 1.0, 0.4f, 0.0, 0.0, 1.0});
    ExpectArray(lines, "v", Association::Point, 3, true, {1.5, -2.0, 3.25e-39f, 4.0, 5.0, 6.0});
    ExpectArray(lines, "big", Association::Point, 1, false, {-1099511627776.0, 3.0});
    EXPECT_TRUE(HasNote(lines, "'names' holds strings"));
    EXPECT_TRUE(lines.activeScalars.empty()) << "colours are not the scalars";
}

// Cell data numbers vertices, then lines, then polygons, then strips,
// wherever their sections stand; the lines keep their own tuples.
TEST(LegacyReaderTest, CellArraysKeepTheLinesTuples)
{
    const std::string classic = Ascii("POINTS 4 float\n0 0 0 1 0 0 1 1 0 0 1 0\n"
                                      "POLYGONS 1 4\n3 0 1 2\n"
                                      "LINES 2 6\n2 0 1\n2 2 3\n"
                                      "TRIANGLE_STRIPS 1 5\n4 0 1 2 3\n"
                                      "VERTICES 2 4\n1 0\n1 3\n"
                                      "CELL_DATA 6\n"
                                      "SCALARS id int\nLOOKUP_TABLE default\n0 1 2 3 4 5\n"
                                      "VECTORS flux float\n0 0 0 1 1 1 2 2 2 3 3 3 4 4 4 5 5 5\n"
                                      "POINT_DATA 4\nSCALARS t float\nLOOKUP_TABLE default\n1 2 3 4\n");
    const std::string offsets = Ascii("POINTS 4 float\n0 0 0 1 0 0 1 1 0 0 1 0\n"
                                      "POLYGONS 2 3\nOFFSETS vtktypeint64\n0 3\nCONNECTIVITY vtktypeint64\n0 1 2\n"
                                      "LINES 3 4\nOFFSETS vtktypeint64\n0 2 4\n"
                                      "CONNECTIVITY vtktypeint64\n0 1 2 3\n"
                                      "TRIANGLE_STRIPS 2 4\nOFFSETS vtktypeint64\n0 4\n"
                                      "CONNECTIVITY vtktypeint64\n0 1 2 3\n"
                                      "VERTICES 3 2\nOFFSETS vtktypeint64\n0 1 2\nCONNECTIVITY vtktypeint64\n0 3\n"
                                      "CELL_DATA 6\n"
                                      "SCALARS id int\nLOOKUP_TABLE default\n0 1 2 3 4 5\n"
                                      "VECTORS flux float\n0 0 0 1 1 1 2 2 2 3 3 3 4 4 4 5 5 5\n"
                                      "POINT_DATA 4\nSCALARS t float\nLOOKUP_TABLE default\n1 2 3 4\n",
                                      "5.1");
    for (const std::string& file : {classic, offsets})
    {
        const PolyData lines = ParseLegacy(file, "cells.vtk");
        EXPECT_EQ(lines.connectivity, (std::vector<std::size_t>{0, 1, 2, 3}));
        ExpectArray(lines, "id", Association::Cell, 1, false, {2, 3});
        ExpectArray(lines, "flux", Association::Cell, 3, true, {2, 2, 2, 3, 3, 3});
        EXPECT_EQ(lines.activeScalars, "t") << "cell scalars are never the active ones";
        // Point arrays first, each group in file order.
        ASSERT_EQ(lines.arrays.size(), 3u);
        EXPECT_EQ(lines.arrays[0].name, "t");
        EXPECT_EQ(lines.arrays[1].name, "id");
        EXPECT_TRUE(HasNote(lines, "VERTICES: 2 cells read past"));
        EXPECT_TRUE(HasNote(lines, "POLYGONS: 1 cells read past"));
        EXPECT_TRUE(HasNote(lines, "TRIANGLE_STRIPS: 1 cells read past"));
        EXPECT_TRUE(HasNote(lines, "the values of the 2 lines"));
    }
}

// ---- Malformed files ---------------------------------------------------------------

using KesraTest::Malformed;

std::string BinaryTruncated()
{
    std::string file = "# vtk DataFile Version 3.0\nt\nBINARY\nDATASET POLYDATA\nPOINTS 2 float\n";
    PutFloat(file, 1.0f);
    return file; // 4 of 24 bytes
}

TEST(LegacyReaderTest, MalformedFilesAreRefusedWithWhereAndWhat)
{
    const std::vector<Malformed> cases = {
        {"empty file", "", {"bad.vtk:1:", "# vtk DataFile Version"}},
        {"not a VTK file", "solid cube\nfacet normal 0 0 1\n", {"bad.vtk:1:", "first line", "'solid cube'"}},
        {"unknown version", "# vtk DataFile Version 6.0\nt\nASCII\n", {"bad.vtk:1:", "unsupported version '6.0'"}},
        {"neither ASCII nor BINARY", "# vtk DataFile Version 3.0\nt\nTEXT\n",
         {"bad.vtk:3:", "expected ASCII or BINARY", "'text'"}},
        {"not polydata", "# vtk DataFile Version 3.0\nt\nASCII\nDATASET STRUCTURED_GRID\n",
         {"bad.vtk:4:", "expected DATASET POLYDATA"}},
        {"truncated ASCII points", Ascii("POINTS 3 float\n0.0 0.0 0.0\n1.0 1.0\n"),
         {"bad.vtk:8:", "after 5 of the 9 numbers of POINTS"}},
        {"a word among the numbers", Ascii("POINTS 2 float\n0 0 0\n1 one 1\n"),
         {"bad.vtk:7:", "expected a number of POINTS, found 'one'"}},
        {"unknown value type", Ascii("POINTS 2 quaternion\n"), {"bad.vtk:5:", "unknown value type 'quaternion'"}},
        {"negative count", Ascii("POINTS -2 float\n"), {"bad.vtk:5:", "the number of POINTS", "'-2'"}},
        {"cell array longer than its cells", Ascii("POINTS 3 float\n0 0 0 1 1 1 2 2 2\nLINES 1 5\n3 0 1 2 2\n"),
         {"bad.vtk:7:", "announces 5 numbers, but its 1 cells use 4"}},
        {"cell running past the cell array", Ascii("POINTS 3 float\n0 0 0 1 1 1 2 2 2\nLINES 2 6\n3 0 1 2\n3 0\n"),
         {"bad.vtk:7:", "cell 1 does not fit"}},
        {"point index out of range", Ascii("POINTS 3 float\n0 0 0 1 1 1 2 2 2\nLINES 1 3\n2 0 7\n"),
         {"bad.vtk:7:", "names point 7", "3 points"}},
        {"coordinate not a number", Ascii("POINTS 2 float\n0 0 0\nnan 0 0\nLINES 1 3\n2 0 1\n"),
         {"bad.vtk:5:", "point 1 has a coordinate that is not a finite number"}},
        {"infinite coordinate", Ascii("POINTS 2 double\n0 0 0\n1e999 0 0\nLINES 1 3\n2 0 1\n"),
         {"point 1", "not a finite number"}},
        {"scalars of the wrong length",
         Ascii("POINTS 2 float\n0 0 0 1 1 1\nLINES 1 3\n2 0 1\nPOINT_DATA 3\nSCALARS s float\n"
               "LOOKUP_TABLE default\n1 2 3\n"),
         {"bad.vtk:9:", "POINT_DATA has 3 values, but there are 2 points"}},
        {"offsets not from zero",
         Ascii("POINTS 2 float\n0 0 0 1 1 1\nLINES 2 2\nOFFSETS vtktypeint64\n1 2\n"
               "CONNECTIVITY vtktypeint64\n0 1\n",
               "5.1"),
         {"bad.vtk:8:", "must start at 0"}},
        {"version 5 without offsets", Ascii("POINTS 2 float\n0 0 0 1 1 1\nLINES 1 3\n2 0 1\n", "5.1"),
         {"bad.vtk:8:", "expected OFFSETS"}},
        {"truncated binary points", BinaryTruncated(), {"bad.vtk: byte 72:", "4 bytes into the 24 bytes of POINTS"}},
        {"a huge count in a tiny binary file",
         "# vtk DataFile Version 3.0\nt\nBINARY\nDATASET POLYDATA\nPOINTS 1000000000000 float\n\x01\x02",
         {"bad.vtk: byte 82:", "12000000000000 bytes of POINTS"}},
        {"a count beyond any size", Ascii("POINTS 18446744073709551615 float\n0\n"),
         {"bad.vtk:5:", "more points than any file can hold"}},
        {"a huge count in a tiny text file", Ascii("POINTS 100000000 float\n0 0 0\n"),
         {"bad.vtk:5:", "more than the rest of the file can hold"}},
        {"no polylines", Ascii("POINTS 2 float\n0 0 0 1 1 1\nVERTICES 1 2\n1 0\n"), {"bad.vtk: no polylines"}},
        {"no points", Ascii("LINES 1 3\n2 0 1\n"), {"bad.vtk: no POINTS section"}},
        {"unknown section", Ascii("POINTS 2 float\n0 0 0 1 1 1\nBANANAS 3\n"),
         {"bad.vtk:7:", "unknown section 'BANANAS'"}},
        {"cell data of the wrong length",
         Ascii("POINTS 2 float\n0 0 0 1 1 1\nVERTICES 1 2\n1 0\nLINES 1 3\n2 0 1\nCELL_DATA 1\n"
               "SCALARS c float\nLOOKUP_TABLE default\n5\n"),
         {"bad.vtk:11:", "CELL_DATA has 1 values, but there are 2 cells"}},
        {"field array of the wrong length",
         Ascii("POINTS 2 float\n0 0 0 1 1 1\nLINES 1 3\n2 0 1\nPOINT_DATA 2\nFIELD f 1\n"
               "temperature 1 3 float\n1 2 3\n"),
         {"bad.vtk:11:", "'temperature' has 3 tuples, but POINT_DATA has 2"}},
        {"tensors cut short",
         Ascii("POINTS 2 float\n0 0 0 1 1 1\nLINES 1 3\n2 0 1\nPOINT_DATA 2\nTENSORS s float\n"
               "10 20 30 40 50 60 70 80 90\n10 20 30\n"),
         {"bad.vtk:13:", "after 12 of the 18 numbers of TENSORS"}},
        {"second LINES section", Ascii("POINTS 2 float\n0 0 0 1 1 1\nLINES 1 3\n2 0 1\nLINES 1 3\n2 1 0\n"),
         {"bad.vtk:9:", "a second LINES section"}},
        {"second POINT_DATA section",
         Ascii("POINTS 2 float\n0 0 0 1 1 1\nLINES 1 3\n2 0 1\nPOINT_DATA 3\nSCALARS a float\n"
               "LOOKUP_TABLE default\n1 2 3\nPOINT_DATA 2\n"),
         {"bad.vtk:13:", "a second POINT_DATA section"}},
        {"truncated strings", Ascii("FIELD f 1\nnames 1 3 string\nabc\n"),
         {"after 1 of the 3 strings of FIELD array 'names'"}},
        {"binary string longer than the file",
         "# vtk DataFile Version 3.0\nt\nBINARY\nDATASET POLYDATA\nFIELD f 1\nnames 1 1 string\n\xC9" "abc",
         {"bad.vtk: byte 80:", "string 0 of FIELD array 'names' runs past the end"}},
        {"attribute before any data section", Ascii("POINTS 2 float\n0 0 0 1 1 1\nSCALARS s float\n"),
         {"bad.vtk:7:", "SCALARS outside POINT_DATA and CELL_DATA"}},
    };
    KesraTest::ExpectRefused(cases, [](const std::string& file) { ParseLegacy(file, "bad.vtk"); });
}

} // namespace
