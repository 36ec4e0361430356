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
#include <string>
#include <vector>

namespace
{

using KesraIo::ParseLegacy;
using KesraIo::PolyData;
using KesraIo::ReadError;

// The point scalars the file marks as active, as doubles; empty without.
std::vector<double> ActiveScalars(const PolyData& lines)
{
    const KesraIo::DataArray* array = lines.Find(lines.activeScalars, KesraIo::Association::Point);
    std::vector<double> values;
    for (std::size_t i = 0; array != nullptr && i < array->values.Size(); ++i)
    {
        values.push_back(array->values[i]);
    }
    return values;
}

// Five points on two polylines, 0-1-2 and 3-4, with a speed at each point.
const std::vector<double> kPoints = {0, 0, 0, 1, 0, 0, 2, 0.5, 0, 0, 1, 0, 1.25, 1, -3};
const std::vector<double> kSpeed = {0.5, 1.5, 2.5, -1, 1e-3};

void ExpectTwoLines(const PolyData& lines)
{
    EXPECT_EQ(lines.points.Doubles(), kPoints);
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

// ---- Malformed files ---------------------------------------------------------------

using KesraTest::Malformed;

std::string Ascii(const std::string& body, const char* version = "3.0")
{
    return std::string("# vtk DataFile Version ") + version + "\ntitle\nASCII\nDATASET POLYDATA\n" + body;
}

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
        {"attribute before any data section", Ascii("POINTS 2 float\n0 0 0 1 1 1\nSCALARS s float\n"),
         {"bad.vtk:7:", "SCALARS outside POINT_DATA and CELL_DATA"}},
        {"string field", Ascii("FIELD f 1\nnames 1 1 string\nabc\n"), {"bad.vtk:6:", "holds strings"}},
    };
    KesraTest::ExpectRefused(cases, [](const std::string& file) { ParseLegacy(file, "bad.vtk"); });
}

} // namespace
