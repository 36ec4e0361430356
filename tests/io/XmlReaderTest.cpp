// The XML polydata reader on small files written here by hand: one feature
// at a time (every encoding, header width, compression and byte order of
// one pair of lines; cell data behind vertices; information keys; pieces
// and collections), and every kind of malformed file, each refused with a
// message that names the place and what was expected there.
#include "KesraIo/Reader.h"

#include "io/MalformedFiles.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace
{

using KesraIo::Association;
using KesraIo::ParseXmlPolyData;
using KesraIo::PolyData;
using KesraIo::ReadError;

// Five points on two polylines, 0-1-2 and 3-4, a speed at each point and
// an id on each line.
const std::vector<float> kPoints = {0, 0, 0, 1, 0, 0, 2, 0.5f, 0, 0, 1, 0, 1.25f, 1, -3};
const std::vector<double> kSpeed = {0.5, 1.5, 2.5, -1, 1e-3};
const std::vector<std::int64_t> kConnectivity = {0, 1, 2, 3, 4};
const std::vector<std::int64_t> kOffsets = {3, 5};
const std::vector<std::int32_t> kIds = {7, -8};

std::vector<double> Values(const KesraIo::Numbers& numbers)
{
    std::vector<double> values;
    for (std::size_t i = 0; i < numbers.Size(); ++i)
    {
        values.push_back(numbers[i]);
    }
    return values;
}

void ExpectTwoLines(const PolyData& lines)
{
    ASSERT_TRUE(lines.points.IsFloat()); // Float32 stays float
    EXPECT_EQ(lines.points.Floats(), kPoints);
    EXPECT_EQ(lines.lineOffsets, (std::vector<std::size_t>{0, 3, 5}));
    EXPECT_EQ(lines.connectivity, (std::vector<std::size_t>{0, 1, 2, 3, 4}));
    EXPECT_EQ(lines.activeScalars, "speed");
    ASSERT_EQ(lines.arrays.size(), 2u);
    EXPECT_EQ(lines.arrays[0].name, "speed");
    EXPECT_EQ(lines.arrays[0].association, Association::Point);
    EXPECT_FALSE(lines.arrays[0].values.IsFloat());
    EXPECT_EQ(lines.arrays[0].values.Doubles(), kSpeed);
    EXPECT_EQ(lines.arrays[1].name, "id");
    EXPECT_EQ(lines.arrays[1].association, Association::Cell);
    EXPECT_EQ(Values(lines.arrays[1].values), (std::vector<double>{7, -8}));
}

// ---- A small writer of the binary forms -------------------------------------------------

struct Encoding
{
    std::string format = "ascii"; // ascii, binary or appended
    bool header64 = false;
    bool bigEndian = false;
    bool zlib = false;
    bool appendedBase64 = false;
    bool headerApart = false; // base64 of the header and of the data apart
    std::size_t blockSize = 16;
};

std::string Base64(const std::string& bytes)
{
    static const char* alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); i += 3)
    {
        std::uint32_t group = 0;
        const std::size_t n = std::min<std::size_t>(3, bytes.size() - i);
        for (std::size_t k = 0; k < 3; ++k)
        {
            group = (group << 8) | (k < n ? static_cast<unsigned char>(bytes[i + k]) : 0u);
        }
        for (std::size_t k = 0; k < 4; ++k)
        {
            text += k <= n ? alphabet[(group >> (18 - 6 * k)) & 63] : '=';
        }
    }
    return text;
}

std::string Word(std::uint64_t value, std::size_t size, bool bigEndian)
{
    std::string bytes;
    for (std::size_t i = 0; i < size; ++i)
    {
        const std::size_t shift = 8 * (bigEndian ? size - 1 - i : i);
        bytes += static_cast<char>((value >> shift) & 0xff);
    }
    return bytes;
}

template <typename V>
std::string Raw(const std::vector<V>& values, bool bigEndian)
{
    std::string bytes;
    for (const V v : values)
    {
        std::uint64_t bits = 0;
        std::memcpy(&bits, &v, sizeof v);
        bytes += Word(bits, sizeof v, bigEndian);
    }
    return bytes;
}

std::string Deflated(const std::string& bytes)
{
    uLongf size = compressBound(static_cast<uLong>(bytes.size()));
    std::string out(size, '\0');
    compress(reinterpret_cast<Bytef*>(out.data()), &size, reinterpret_cast<const Bytef*>(bytes.data()),
             static_cast<uLong>(bytes.size()));
    out.resize(size);
    return out;
}

// The header and the data of one array as the encoding stores them.
std::string Stored(const std::string& data, const Encoding& encoding)
{
    const std::size_t word = encoding.header64 ? 8 : 4;
    std::string header;
    std::string body;
    if (!encoding.zlib)
    {
        header = Word(data.size(), word, encoding.bigEndian);
        body = data;
    }
    else
    {
        const std::size_t blocks = (data.size() + encoding.blockSize - 1) / encoding.blockSize;
        std::string sizes;
        for (std::size_t b = 0; b < blocks; ++b)
        {
            const std::string block = Deflated(data.substr(b * encoding.blockSize, encoding.blockSize));
            sizes += Word(block.size(), word, encoding.bigEndian);
            body += block;
        }
        header = Word(blocks, word, encoding.bigEndian) + Word(encoding.blockSize, word, encoding.bigEndian) +
                 Word(data.size() % encoding.blockSize, word, encoding.bigEndian) + sizes;
    }
    const bool text = encoding.format == "binary" || encoding.appendedBase64;
    if (!text)
    {
        return header + body;
    }
    return encoding.zlib || encoding.headerApart ? Base64(header) + Base64(body) : Base64(header + body);
}

struct Array
{
    std::string attributes; // type, Name, NumberOfComponents
    std::string ascii;
    std::string raw[2]; // little-endian, big-endian bytes
};

template <typename V>
Array MakeArray(const std::string& attributes, const std::vector<V>& values)
{
    std::string ascii;
    for (const V v : values)
    {
        ascii += (ascii.empty() ? "" : " ") + std::to_string(v);
    }
    return {attributes, ascii, {Raw(values, false), Raw(values, true)}};
}

// A .vtp of the two lines; arrays go into the sections named in sections.
std::string TwoLinesFile(const Encoding& encoding, const std::string& version = "1.0")
{
    std::string appended;
    const auto element = [&](const Array& array)
    {
        std::string text = "<DataArray " + array.attributes + " format=\"" + encoding.format + "\"";
        const std::string stored =
            encoding.format == "ascii" ? array.ascii : Stored(array.raw[encoding.bigEndian ? 1 : 0], encoding);
        if (encoding.format == "appended")
        {
            text += " offset=\"" + std::to_string(appended.size()) + "\"/>\n";
            appended += stored;
            return text;
        }
        return text + ">\n  " + stored + "\n</DataArray>\n";
    };
    std::string file = "<?xml version=\"1.0\"?>\n<VTKFile type=\"PolyData\" version=\"" + version + "\" byte_order=\"" +
                       (encoding.bigEndian ? "BigEndian" : "LittleEndian") + "\"";
    if (version != "0.1" || encoding.header64)
    {
        file += std::string(" header_type=\"") + (encoding.header64 ? "UInt64" : "UInt32") + "\"";
    }
    if (encoding.zlib)
    {
        file += " compressor=\"vtkZLibDataCompressor\"";
    }
    file += ">\n<PolyData>\n<Piece NumberOfPoints=\"5\" NumberOfVerts=\"0\" NumberOfLines=\"2\" NumberOfStrips=\"0\" "
            "NumberOfPolys=\"0\">\n<PointData Scalars=\"speed\">\n";
    file += element(MakeArray("type=\"Float64\" Name=\"speed\"", kSpeed));
    file += "</PointData>\n<CellData>\n";
    file += element(MakeArray("type=\"Int32\" Name=\"id\"", kIds));
    file += "</CellData>\n<Points>\n";
    file += element(MakeArray("type=\"Float32\" Name=\"Points\" NumberOfComponents=\"3\"", kPoints));
    file += "</Points>\n<Lines>\n";
    file += element(MakeArray("type=\"Int64\" Name=\"connectivity\"", kConnectivity));
    file += element(MakeArray("type=\"Int64\" Name=\"offsets\"", kOffsets));
    file += "</Lines>\n</Piece>\n</PolyData>\n";
    if (encoding.format == "appended")
    {
        file += std::string("<AppendedData encoding=\"") + (encoding.appendedBase64 ? "base64" : "raw") + "\">\n   _" +
                appended + "\n</AppendedData>\n";
    }
    return file + "</VTKFile>\n";
}

// ---- Good files ---------------------------------------------------------------------------

TEST(XmlReaderTest, EveryEncodingReadsTheSameLines)
{
    ExpectTwoLines(ParseXmlPolyData(TwoLinesFile(Encoding{}), "ascii.vtp"));
    for (const char* format : {"binary", "appended"})
    {
        for (const bool header64 : {false, true})
        {
            for (const bool bigEndian : {false, true})
            {
                for (const bool zlib : {false, true})
                {
                    for (const bool text : {false, true})
                    {
                        Encoding encoding;
                        encoding.format = format;
                        encoding.header64 = header64;
                        encoding.bigEndian = bigEndian;
                        encoding.zlib = zlib;
                        encoding.appendedBase64 = text && encoding.format == "appended";
                        encoding.headerApart = text && encoding.format == "binary";
                        SCOPED_TRACE(TwoLinesFile(encoding));
                        ExpectTwoLines(ParseXmlPolyData(TwoLinesFile(encoding), "lines.vtp"));
                    }
                }
            }
        }
    }
}

TEST(XmlReaderTest, Version01WithoutHeaderTypeReadsUInt32Headers)
{
    Encoding encoding;
    encoding.format = "binary";
    ExpectTwoLines(ParseXmlPolyData(TwoLinesFile(encoding, "0.1"), "old.vtp"));
    encoding.zlib = true;
    encoding.blockSize = 7; // blocks that split values
    ExpectTwoLines(ParseXmlPolyData(TwoLinesFile(encoding, "2.2"), "new.vtp"));
}

// Hand-written pieces of a file around one Piece element.
std::string Vtp(const std::string& piece,
                const std::string& pieceAttributes = "NumberOfPoints=\"3\" NumberOfLines=\"1\"")
{
    return "<?xml version=\"1.0\"?>\n<VTKFile type=\"PolyData\" version=\"1.0\" byte_order=\"LittleEndian\">\n"
           "<PolyData>\n<Piece " +
           pieceAttributes + ">\n" + piece + "</Piece>\n</PolyData>\n</VTKFile>\n";
}

const std::string kThreePoints = "<Points><DataArray type=\"Float64\" NumberOfComponents=\"3\" format=\"ascii\">"
                                 "0 0 0 1 0 0 2 0 0</DataArray></Points>\n";
const std::string kOneLine = "<Lines><DataArray type=\"Int32\" Name=\"connectivity\">0 1 2</DataArray>"
                             "<DataArray type=\"Int32\" Name=\"offsets\">3</DataArray></Lines>\n";

TEST(XmlReaderTest, CellDataOfLinesFollowsTheVertices)
{
    const std::string file = Vtp(kThreePoints +
                                     "<Verts><DataArray type=\"Int32\" Name=\"connectivity\">0 1</DataArray>"
                                     "<DataArray type=\"Int32\" Name=\"offsets\">1 2</DataArray></Verts>\n" +
                                     kOneLine +
                                     "<Polys><DataArray type=\"Int32\" Name=\"connectivity\">0 1 2</DataArray>"
                                     "<DataArray type=\"Int32\" Name=\"offsets\">3</DataArray></Polys>\n"
                                     "<CellData><DataArray type=\"Float32\" Name=\"cellv\" NumberOfComponents=\"2\">"
                                     "1 10 2 20 3 30 4 40</DataArray></CellData>\n",
                                 "NumberOfPoints=\"3\" NumberOfVerts=\"2\" NumberOfLines=\"1\" NumberOfPolys=\"1\"");
    const PolyData lines = ParseXmlPolyData(file, "mixed.vtp");
    ASSERT_EQ(lines.arrays.size(), 1u);
    EXPECT_EQ(lines.arrays[0].components, 2);
    EXPECT_EQ(lines.arrays[0].values.Floats(), (std::vector<float>{3, 30})); // after the two vertices
    EXPECT_EQ(lines.connectivity, (std::vector<std::size_t>{0, 1, 2}));
    EXPECT_EQ(lines.notes, (std::vector<std::string>{"2 vertices read past: only lines are drawn.",
                                                     "1 polygon read past: only lines are drawn."}));
}

TEST(XmlReaderTest, TypesKeepOrWidenAndExtrasAreReadPast)
{
    const std::string file =
        Vtp(kThreePoints + kOneLine +
            "<PointData>\n"
            "<DataArray type=\"Int8\" Name=\"i8\" format=\"ascii\">-128 0 127</DataArray>\n"
            "<DataArray type=\"UInt64\" Name=\"u64\">18446744073709551615 0 +1</DataArray>\n"
            "<DataArray type=\"Float32\" Name=\"f\">\n"
            "  <InformationKey name=\"L2_NORM_RANGE\" location=\"vtkDataArray\" length=\"2\">\n"
            "    <Value index=\"0\">1</Value><Value index=\"1\">9</Value>\n"
            "  </InformationKey>\n"
            "  1e39 -nan 0.1\n</DataArray>\n"
            "<DataArray type=\"String\" Name=\"labels\" format=\"ascii\">97 0 98 0 99 0</DataArray>\n"
            "</PointData>\n");
    const std::string withField = std::string(file).replace(file.find("<Piece"), 0,
                                                            "<FieldData><DataArray type=\"Float64\" Name=\"TimeValue\">"
                                                            "0.5</DataArray></FieldData>\n");
    const PolyData lines = ParseXmlPolyData(withField, "types.vtp");
    ASSERT_EQ(lines.arrays.size(), 3u);
    EXPECT_EQ(lines.arrays[0].values.Doubles(), (std::vector<double>{-128, 0, 127}));
    EXPECT_EQ(lines.arrays[1].values.Doubles(), (std::vector<double>{18446744073709551615.0, 0, 1}));
    ASSERT_TRUE(lines.arrays[2].values.IsFloat());
    EXPECT_EQ(lines.arrays[2].values.Floats()[0], std::numeric_limits<float>::infinity());
    EXPECT_TRUE(std::isnan(lines.arrays[2].values.Floats()[1]));
    EXPECT_EQ(lines.arrays[2].values.Floats()[2], 0.1f); // rounded once, from the text
    EXPECT_TRUE(lines.activeScalars.empty());
    EXPECT_EQ(lines.notes.size(), 2u);
    EXPECT_NE(lines.notes[0].find("'TimeValue' belongs to no point or line"), std::string::npos) << lines.notes[0];
    EXPECT_NE(lines.notes[1].find("'labels' holds strings"), std::string::npos) << lines.notes[1];
}

std::string Pieces(const std::string& pieces)
{
    return "<VTKFile type=\"PolyData\"><PolyData>" + pieces + "</PolyData></VTKFile>";
}

TEST(XmlReaderTest, PiecesOfOneFileJoinWithShiftedIndices)
{
    const std::string piece = "<Piece NumberOfPoints=\"3\" NumberOfLines=\"1\">" + kThreePoints + kOneLine +
                              "<PointData Scalars=\"s\"><DataArray type=\"Int32\" Name=\"s\">1 2 3</DataArray>"
                              "</PointData></Piece>\n";
    const std::string empty = "<Piece NumberOfPoints=\"0\" NumberOfLines=\"0\"/>\n";
    const PolyData lines = ParseXmlPolyData(Pieces(piece + empty + piece), "pieces.vtp");
    EXPECT_EQ(lines.PointCount(), 6u);
    EXPECT_EQ(lines.lineOffsets, (std::vector<std::size_t>{0, 3, 6}));
    EXPECT_EQ(lines.connectivity, (std::vector<std::size_t>{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(lines.activeScalars, "s");
    EXPECT_EQ(lines.arrays[0].values.Doubles(), (std::vector<double>{1, 2, 3, 1, 2, 3}));

    // Widths that differ widen to double; names that differ or repeat are refused.
    std::string floats = piece;
    floats.replace(floats.find("Float64"), 7, "Float32");
    const PolyData widened = ParseXmlPolyData(Pieces(floats + piece), "widths.vtp");
    EXPECT_FALSE(widened.points.IsFloat());
    EXPECT_EQ(widened.points.Doubles(), (std::vector<double>{0, 0, 0, 1, 0, 0, 2, 0, 0, 0, 0, 0, 1, 0, 0, 2, 0, 0}));
    std::string other = piece;
    other.replace(other.find("Name=\"s\""), 8, "Name=\"t\"");
    std::string twice = piece;
    twice.replace(twice.find("</PointData>"), 0, "<DataArray type=\"Int32\" Name=\"s\">1 2 3</DataArray>");
    KesraTest::ExpectRefused({{"another array",
                               Pieces(piece + other),
                               {"p.vtp:4: Piece 1: point array 's' of 1 component is missing there"}},
                              {"an array twice",
                               Pieces(twice + piece),
                               {"p.vtp:1: Piece 0: point array 's' of 1 component is there twice"}}},
                             [](const std::string& file) { ParseXmlPolyData(file, "p.vtp"); });
}

// ---- Collections ----------------------------------------------------------------------------

class XmlCollectionTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        // A folder per test: ctest runs the cases side by side.
        m_root = std::filesystem::path(::testing::TempDir())
                 / (std::string("kesra-xml-collection-")
                    + ::testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::remove_all(m_root);
        std::filesystem::create_directories(m_root / "data" / "parts");
        Write("data/parts/a.vtp", Vtp(kThreePoints + kOneLine));
        Write("outside.vtp", Vtp(kThreePoints + kOneLine));
    }
    void TearDown() override { std::filesystem::remove_all(m_root); }

    std::string Write(const std::string& relative, const std::string& bytes) const
    {
        const std::filesystem::path path = m_root / relative;
        std::ofstream(path, std::ios::binary) << bytes;
        return path.string();
    }

    static std::string Parallel(const std::string& pieces)
    {
        return "<VTKFile type=\"PPolyData\" version=\"1.0\"><PPolyData GhostLevel=\"0\">" + pieces +
               "</PPolyData></VTKFile>";
    }

    std::string RefusedWith(const std::string& relative, const std::string& bytes) const
    {
        try
        {
            KesraIo::ReadPolyData(Write(relative, bytes));
        }
        catch (const ReadError& error)
        {
            return error.what();
        }
        return "accepted";
    }

    std::filesystem::path m_root;
};

TEST_F(XmlCollectionTest, ParallelAndMultiBlockJoinTheirPieces)
{
    const PolyData parallel = KesraIo::ReadPolyData(
        Write("data/run.pvtp", Parallel("<Piece Source=\"parts/a.vtp\"/><Piece Source=\"./parts/../parts/a.vtp\"/>")));
    EXPECT_EQ(parallel.PointCount(), 6u);
    EXPECT_EQ(parallel.connectivity, (std::vector<std::size_t>{0, 1, 2, 3, 4, 5}));

    // The summary names the active scalars where its pieces do not.
    Write("data/parts/s.vtp", Vtp(kThreePoints + kOneLine +
                                  "<PointData><DataArray type=\"Float32\" Name=\"s\">1 2 3</DataArray></PointData>"));
    const PolyData named = KesraIo::ReadPolyData(
        Write("data/s.pvtp", Parallel("<PPointData Scalars=\"s\"><PDataArray type=\"Float32\" Name=\"s\"/></PPointData>"
                                      "<Piece Source=\"parts/s.vtp\"/>")));
    EXPECT_EQ(named.activeScalars, "s");

    const PolyData blocks = KesraIo::ReadPolyData(
        Write("data/run.vtm", "<VTKFile type=\"vtkMultiBlockDataSet\" version=\"1.0\"><vtkMultiBlockDataSet>"
                              "<Block index=\"0\"><DataSet index=\"0\" file=\"parts/a.vtp\"/>"
                              "<Block index=\"1\"><DataSet index=\"0\" file=\"parts/grid.vtu\"/></Block></Block>"
                              "<DataSet index=\"1\"/><DataSet index=\"2\" file=\"parts/a.vtp\"/>"
                              "</vtkMultiBlockDataSet></VTKFile>"));
    EXPECT_EQ(blocks.LineCount(), 2u);
    EXPECT_EQ(blocks.notes, (std::vector<std::string>{"parts/grid.vtu is not polydata (.vtp); it was read past."}));
}

TEST_F(XmlCollectionTest, FilesAreToldByTheirExtension)
{
    EXPECT_EQ(KesraIo::ReadPolyData(Write("data/LINES.VTP", Vtp(kThreePoints + kOneLine))).PointCount(), 3u);
    // Any other name is a legacy file.
    EXPECT_NE(RefusedWith("data/lines.xml", Vtp(kThreePoints + kOneLine)).find("lines.xml:1: expected '# vtk"),
              std::string::npos);
    const std::string folder = (m_root / "data" / "parts").string();
    EXPECT_THROW(KesraIo::ReadPolyData(folder), ReadError);
}

TEST_F(XmlCollectionTest, PiecesMissingOrOutsideTheFolderAreRefused)
{
    EXPECT_NE(RefusedWith("data/r.pvtp", Parallel("<Piece Source=\"parts/b.vtp\"/>"))
                  .find("r.pvtp:1: Piece Source 'parts/b.vtp': no such file"),
              std::string::npos);
    EXPECT_NE(RefusedWith("data/r.pvtp", Parallel("<Piece Source=\"../outside.vtp\"/>"))
                  .find("Piece Source '../outside.vtp': expected a path inside the folder"),
              std::string::npos);
    EXPECT_NE(RefusedWith("data/r.pvtp", Parallel("<Piece Source=\"" + (m_root / "outside.vtp").string() + "\"/>"))
                  .find("expected a path relative to the folder"),
              std::string::npos);
    std::filesystem::create_symlink(m_root / "outside.vtp", m_root / "data" / "link.vtp");
    EXPECT_NE(RefusedWith("data/r.vtm", "<VTKFile type=\"vtkMultiBlockDataSet\"><vtkMultiBlockDataSet>"
                                        "<DataSet file=\"link.vtp\"/></vtkMultiBlockDataSet></VTKFile>")
                  .find("DataSet file 'link.vtp': expected a file inside the folder"),
              std::string::npos);
    EXPECT_NE(RefusedWith("data/r.pvtp", Parallel("<Piece/>")).find("Piece Source: expected the piece's file name"),
              std::string::npos);
    EXPECT_NE(RefusedWith("data/r.pvtp", Parallel("")).find("r.pvtp: no polylines"), std::string::npos);
}

// ---- Malformed files ------------------------------------------------------------------------

using KesraTest::Malformed;

std::string Replaced(std::string text, const std::string& from, const std::string& to)
{
    const std::size_t at = text.find(from);
    return at == std::string::npos ? "'" + from + "' not in the file" : text.replace(at, from.size(), to);
}

Encoding Appended(bool zlib)
{
    Encoding encoding;
    encoding.format = "appended";
    encoding.zlib = zlib;
    return encoding;
}

// The inline base64 of the first array (speed) with its character at back
// (counted from the end) replaced, or dropped when by is empty.
std::string EditedBase64(const std::string& file, std::size_t back, const std::string& by)
{
    std::string edited = file;
    const std::size_t end = edited.find("\n</DataArray>");
    return edited.replace(end - back, 1, by);
}

// Where the appended data of the named array starts in file.
std::size_t AppendedAt(const std::string& file, const std::string& name)
{
    const std::size_t offset = file.find("offset=\"", file.find("Name=\"" + name + "\"")) + 8;
    return file.find("   _") + 4 + std::stoul(file.substr(offset));
}

// The raw appended two lines with one more point array, "extra", whose
// stored bytes (header and data) are given.
std::string WithExtraArray(const std::string& stored)
{
    std::string file = TwoLinesFile(Appended(true));
    const std::size_t end = file.find("\n</AppendedData>");
    const std::size_t size = end - (file.find("   _") + 4);
    file.insert(end, stored);
    return Replaced(file, "</PointData>",
                    "<DataArray type=\"Float64\" Name=\"extra\" format=\"appended\" offset=\"" + std::to_string(size) +
                        "\"/></PointData>");
}

// One compressed block declared to inflate to 40 bytes (five doubles) that
// inflates to the given bytes.
std::string OneBlockOf(const std::string& inflated)
{
    const std::string block = Deflated(inflated);
    std::string header;
    for (const std::size_t word : {std::size_t{1}, std::size_t{40}, std::size_t{0}, block.size()})
    {
        header += Word(word, 4, false);
    }
    return header + block;
}

// A compression header of UInt32 words.
std::string Blocks(const std::vector<std::uint32_t>& words)
{
    std::string header;
    for (const std::uint32_t word : words)
    {
        header += Word(word, 4, false);
    }
    return header;
}

// 10^12 points, and a header that claims their 12 TB of coordinates.
std::string HugePoints()
{
    Encoding encoding = Appended(false);
    encoding.header64 = true;
    std::string file = Replaced(TwoLinesFile(encoding), "NumberOfPoints=\"5\"", "NumberOfPoints=\"1000000000000\"");
    const std::string bytes = Word(12000000000000u, 8, false);
    return file.replace(AppendedAt(file, "Points"), 8, bytes);
}

TEST(XmlReaderTest, MalformedFilesAreRefusedWithWhereAndWhat)
{
    Encoding binary;
    binary.format = "binary";
    const std::string ascii = TwoLinesFile(Encoding{});
    const std::string raw = TwoLinesFile(Appended(false));
    const std::vector<Malformed> cases = {
        {"a DOCTYPE",
         Replaced(ascii, "<VTKFile", "<!DOCTYPE VTKFile>\n<VTKFile"),
         {"bad.vtp:2:", "<!DOCTYPE VTKFile>", "refused"}},
        {"an entity",
         Replaced(ascii, "<VTKFile", "<!DOCTYPE v [<!ENTITY lol \"lol\">]>\n<VTKFile"),
         {"bad.vtp:2:", "refused"}},
        {"malformed markup",
         Replaced(ascii, "</Points>", "</Pints>"),
         {"bad.vtp:19:", "malformed XML (mismatched tag)"}},
        {"not XML", "solid cube\n", {"bad.vtp:1:", "malformed XML"}},
        {"another dataset",
         Replaced(ascii, "type=\"PolyData\"", "type=\"UnstructuredGrid\""),
         {"bad.vtp:2:", "VTKFile type: expected 'PolyData'", "'UnstructuredGrid'"}},
        {"another root", "<VTKFiles/>", {"bad.vtp:1:", "<VTKFiles>: expected <VTKFile>"}},
        {"unknown version",
         Replaced(ascii, "version=\"1.0\" byte", "version=\"3.0\" byte"),
         {"bad.vtp:2:", "VTKFile version: expected 0.1, 1.0 or 2.x, found '3.0'"}},
        {"unknown compressor",
         Replaced(ascii, "header_type", "compressor=\"vtkLZ4DataCompressor\" header_type"),
         {"VTKFile compressor: expected vtkZLibDataCompressor", "'vtkLZ4DataCompressor'"}},
        {"unknown header type", Replaced(ascii, "UInt32", "UInt16"), {"VTKFile header_type", "'UInt16'"}},
        {"unknown value type",
         Replaced(ascii, "Float64", "Float16"),
         {"bad.vtp:6:", "PointData DataArray 'speed' type: expected one of Int8,", "found 'Float16'"}},
        {"floating indices",
         Replaced(ascii, "type=\"Int64\" Name=\"conn", "type=\"Float32\" Name=\"conn"),
         {"Lines DataArray 'connectivity': expected an integer type, found Float32"}},
        {"bad components",
         Replaced(ascii, "NumberOfComponents=\"3\"", "NumberOfComponents=\"2\""),
         {"bad.vtp:16:", "Points DataArray 'Points' NumberOfComponents: expected 3 (x, y, z), found 2"}},
        {"wrong components in text",
         Replaced(ascii, "Name=\"speed\"", "Name=\"speed\" NumberOfComponents=\"3\""),
         {"PointData DataArray 'speed':", "the text ends after 5 of the 15 numbers expected",
          "3 components for each of 5 points"}},
        {"wrong components in binary",
         Replaced(TwoLinesFile(binary), "Name=\"speed\"", "Name=\"speed\" NumberOfComponents=\"2\""),
         {"bad.vtp:6:", "PointData DataArray 'speed': the data holds 5 Float64 values; expected 10 (2 components "
                        "for each of 5 points)"}},
        {"a word among numbers",
         Replaced(ascii, "0.500000", "0.5x"),
         {"bad.vtp:7:", "expected a number of type Float64, found '0.5x'"}},
        {"an integer out of its type",
         Replaced(ascii, "7 -8", "7 -2147483649"),
         {"bad.vtp:12:", "CellData DataArray 'id': expected a number of type Int32, found '-2147483649'"}},
        {"too many numbers",
         Replaced(ascii, "7 -8", "7 -8 9"),
         {"bad.vtp:12:", "more numbers than the 2 expected (1 component for each of 2 cells)"}},
        {"an unknown format",
         Replaced(ascii, "format=\"ascii\"", "format=\"hex\""),
         {"format: expected ascii, binary or appended, found 'hex'"}},
        {"10^12 points in text",
         Replaced(ascii, "NumberOfPoints=\"5\"", "NumberOfPoints=\"1000000000000\""),
         {"bad.vtp:16: Points DataArray 'Points': the text can hold at most 70 numbers; expected 3000000000000 "
          "(3 coordinates for each of 1000000000000 points)"}},
        {"10^12 points headed as such",
         HugePoints(),
         {"bad.vtp:12: byte 72 of the appended data: Points DataArray 'Points': the header announces 12000000000000 "
          "bytes, but at most"}},
        {"an offset past the appended data",
         Replaced(raw, "offset=\"0\"", "offset=\"9999\""),
         {"bad.vtp:6: PointData DataArray 'speed' offset: 9999 is past the end of the 185 bytes of the appended data"}},
        {"appended data cut short",
         raw.substr(0, raw.find("\n</AppendedData>") - 17) + "</AppendedData></VTKFile>",
         {"bad.vtp:16: byte 164 of the appended data: Lines DataArray 'offsets': the appended data ends 3 bytes "
          "into the 4 bytes expected here"}},
        {"no underscore", Replaced(raw, "   _", "   x"), {"bad.vtp:", "AppendedData: expected '_'"}},
        {"no end of the appended data",
         raw.substr(0, raw.find("</AppendedData>")),
         {"bad.vtp: AppendedData: expected </AppendedData>"}},
        {"no appended data",
         Replaced(ascii, "format=\"ascii\"", "format=\"appended\" offset=\"0\""),
         {"bad.vtp:6:", "PointData DataArray 'speed' format: appended, but the file has no AppendedData"}},
        {"truncated base64",
         EditedBase64(TwoLinesFile(binary), 1, ""),
         {"bad.vtp:7: PointData DataArray 'speed': the base64 text ends inside a group of four characters"}},
        {"a foreign character in base64",
         EditedBase64(TwoLinesFile(binary), 2, "*"),
         {"bad.vtp:7:", "expected a base64 character, found '*'"}},
        {"blocks that do not add up",
         WithExtraArray(Blocks({2, 32, 8, 10, 9999})),
         {"bad.vtp:7: byte 310 of the appended data: PointData DataArray 'extra': the 2 compressed blocks add up "
          "to 10009 bytes, but at most"}},
        {"a block inflating to more than declared",
         WithExtraArray(OneBlockOf(std::string(64, 'x'))),
         {"bad.vtp:7: byte 306 of the appended data: PointData DataArray 'extra': block 0 of 1 inflates to more "
          "than the 40 bytes its header declares"}},
        {"a block inflating to less than declared",
         WithExtraArray(OneBlockOf(std::string(32, 'x'))),
         {"block 0 of 1 inflates to 32 bytes; its header declares 40"}},
        {"a block beyond what zlib can give",
         WithExtraArray(Blocks({1, 40, 0, 0})),
         {"bad.vtp:7: byte 290 of the appended data:", "block 0 claims to inflate 0 bytes to 40, more than zlib can"}},
        {"more blocks than bytes",
         WithExtraArray(Blocks({1000000000, 40, 0, 0})),
         {"bad.vtp:7: byte 290 of the appended data:",
          "announces 1000000000 blocks, more than the rest of the data can list"}},
        {"a block that is not zlib",
         WithExtraArray(Blocks({1, 40, 0, 8}) + "notzlib!"),
         {"block 0 of 1 is not a valid zlib stream"}},
        {"an offset running back",
         Replaced(ascii, "  3 5\n", "  3 2\n"),
         {"bad.vtp:24:", "Lines DataArray 'offsets': line 1 ends at 2; expected offsets that never fall"}},
        {"an offset short of the connectivity",
         Replaced(ascii, "  3 5\n", "  3 4\n"),
         {"the last line ends at 4; expected the 5 indices of connectivity"}},
        {"a negative index",
         Replaced(ascii, "  0 1 2 3 4\n", "  0 1 -1 3 4\n"),
         {"bad.vtp:21:", "Lines DataArray 'connectivity': index 2 names point -1; expected 0 to 5 - 1"}},
        {"an index past the points", Replaced(ascii, "  0 1 2 3 4\n", "  0 1 5 3 4\n"), {"names point 5"}},
        {"a coordinate not finite",
         Replaced(ascii, "1.250000", "inf"),
         {"bad.vtp:16: Points DataArray 'Points': point 4 has a coordinate that is not a finite number"}},
        {"lines without their arrays",
         Replaced(ascii, "Name=\"offsets\"", "Name=\"offset\""),
         {"bad.vtp:4:", "Piece: expected a Lines element with DataArrays named connectivity and offsets"}},
        {"no lines",
         Replaced(Replaced(Replaced(ascii, "NumberOfLines=\"2\" NumberOfStrips=\"0\" NumberOfPolys=\"0\"",
                                    "NumberOfLines=\"0\" NumberOfStrips=\"0\" NumberOfPolys=\"2\""),
                           "<Lines>", "<Polys>"),
                  "</Lines>", "</Polys>"),
         {"bad.vtp: no polylines"}},
        {"a bad count",
         Replaced(ascii, "NumberOfPoints=\"5\"", "NumberOfPoints=\"-5\""),
         {"bad.vtp:4:", "Piece NumberOfPoints: expected a whole number of 0 or more, found '-5'"}},
    };
    KesraTest::ExpectRefused(cases, [](const std::string& file) { ParseXmlPolyData(file, "bad.vtp"); });
}

} // namespace
