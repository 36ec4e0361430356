// Every layout of a result file reads back to the values it was written
// from, bit for bit: XML polydata in each encoding, header width,
// compression, byte order and version with either width of points and
// indices; its parallel and multi-block collections; legacy files in ASCII
// and binary. Floats must stay floats and everything else arrive as doubles.
#include "KesraIo/Reader.h"
#include "io/support/PolyDataWriter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

namespace
{

using KesraIo::Association;
using KesraIo::DataArray;
using KesraIo::PolyData;
using namespace KesraIoTest;

// ---- Comparison --------------------------------------------------------------------

// Bits, so that -0 and 0 (which the sample velocities hold) differ.
std::uint64_t BitsOf(double value)
{
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

void ExpectSameValues(const KesraIo::Numbers& read, const KesraIo::Numbers& written, const std::string& what)
{
    ASSERT_EQ(read.Size(), written.Size()) << what;
    for (std::size_t i = 0; i < read.Size(); ++i)
    {
        if (BitsOf(read[i]) != BitsOf(written[i]))
        {
            ADD_FAILURE() << what << " value " << i << ": read " << read[i] << ", written " << written[i];
            return;
        }
    }
}

void ExpectSameArray(const DataArray& read, const DataArray& written, bool storedAsFloat)
{
    EXPECT_EQ(read.name, written.name);
    EXPECT_EQ(read.association, written.association) << read.name;
    EXPECT_EQ(read.components, written.components) << read.name;
    EXPECT_EQ(read.values.IsFloat(), storedAsFloat) << read.name;
    ExpectSameValues(read.values, written.values, read.name);
}

void ExpectSameLines(const PolyData& read, const PolyData& written)
{
    ExpectSameValues(read.points, written.points, "points");
    EXPECT_EQ(read.lineOffsets, written.lineOffsets);
    EXPECT_EQ(read.connectivity, written.connectivity);
    EXPECT_EQ(read.activeScalars, written.activeScalars);
}

// What XML files must give back: the points in their stored width, the
// lines, every array in order and width.
void ExpectSameXml(const PolyData& read, const PolyData& written, const XmlFormat& format)
{
    ExpectSameLines(read, written);
    EXPECT_EQ(read.points.IsFloat(), format.pointType == Scalar::Float32);
    ASSERT_EQ(read.arrays.size(), written.arrays.size());
    for (std::size_t i = 0; i < written.arrays.size(); ++i)
    {
        const auto listed = format.arrayTypes.find(written.arrays[i].name);
        const bool storedAsFloat = listed != format.arrayTypes.end() ? listed->second == Scalar::Float32
                                                                     : written.arrays[i].values.IsFloat();
        ExpectSameArray(read.arrays[i], written.arrays[i], storedAsFloat);
    }
}

// A fresh folder of this test's own under the test temporary directory.
std::filesystem::path Folder()
{
    const testing::TestInfo* const test = testing::UnitTest::GetInstance()->current_test_info();
    std::string name = std::string("kesra-roundtrip-") + test->test_suite_name() + "-" + test->name();
    for (char& c : name)
    {
        c = std::isalnum(static_cast<unsigned char>(c)) ? c : '-';
    }
    const std::filesystem::path folder = std::filesystem::path(testing::TempDir()) / name;
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    return folder;
}

// ---- Every XML layout --------------------------------------------------------------

using Layout = std::tuple<Encoding, HeaderType, bool, ByteOrder, const char*>;

class XmlRoundTripTest : public testing::TestWithParam<Layout>
{
protected:
    XmlFormat Format() const
    {
        XmlFormat format;
        std::tie(format.encoding, format.headerType, format.zlib, format.byteOrder, format.version) = GetParam();
        // 48 bytes: some arrays fill their last block, most leave it short.
        format.blockSize = 48;
        format.arrayTypes["line_id"] = Scalar::Int32;
        return format;
    }
};

TEST_P(XmlRoundTripTest, ReadsBackWhatWasWritten)
{
    const PolyData written = SampleLines(4, 4);
    const std::vector<std::tuple<Scalar, Scalar, std::size_t>> widths = {
        {Scalar::Float32, Scalar::Int32, 0},
        {Scalar::Float32, Scalar::Int64, 2},
        {Scalar::Float64, Scalar::Int32, 3},
        {Scalar::Float64, Scalar::Int64, 0},
    };
    for (const auto& [points, indices, vertices] : widths)
    {
        XmlFormat format = Format();
        format.pointType = points;
        format.indexType = indices;
        format.vertices = vertices;
        SCOPED_TRACE(std::string(points == Scalar::Float32 ? "Float32" : "Float64") + " points, " +
                     (indices == Scalar::Int32 ? "Int32" : "Int64") + " indices, " + std::to_string(vertices) +
                     " vertices");
        const PolyData read = KesraIo::ParseXmlPolyData(WriteVtp(written, format), "sample.vtp");
        ExpectSameXml(read, written, format);
        // Vertices are read past, and said so (beside what else the version
        // holds that lines do not use).
        format.vertices = 0;
        const PolyData withoutVertices = KesraIo::ParseXmlPolyData(WriteVtp(written, format), "sample.vtp");
        EXPECT_EQ(read.notes.size() > withoutVertices.notes.size(), vertices > 0);
    }
}

std::string LayoutName(const testing::TestParamInfo<Layout>& info)
{
    static const char* const encodings[] = {"Ascii", "Binary", "AppendedRaw", "AppendedBase64"};
    const auto& [encoding, header, zlib, order, version] = info.param;
    std::string name = std::string(encodings[static_cast<int>(encoding)]) +
                       (header == HeaderType::UInt64 ? "_UInt64" : "_UInt32") + (zlib ? "_Zlib" : "_Plain") +
                       (order == ByteOrder::BigEndian ? "_BigEndian_" : "_LittleEndian_") + "v" + version;
    name.erase(std::remove(name.begin(), name.end(), '.'), name.end());
    return name;
}

INSTANTIATE_TEST_SUITE_P(EveryLayout, XmlRoundTripTest,
                         testing::Combine(testing::Values(Encoding::Ascii, Encoding::Binary, Encoding::AppendedRaw,
                                                          Encoding::AppendedBase64),
                                          testing::Values(HeaderType::UInt32, HeaderType::UInt64), testing::Bool(),
                                          testing::Values(ByteOrder::LittleEndian, ByteOrder::BigEndian),
                                          testing::Values("0.1", "1.0", "2.2")),
                         LayoutName);

// ---- Stored types, names, files ----------------------------------------------------

TEST(XmlRoundTripDetailTest, EveryStoredTypeKeepsItsValues)
{
    PolyData written = SampleLines(3, 2);
    // Whole numbers from 0 to 127, which every type holds, in a point array
    // that starts as floats and a cell array that starts as doubles.
    written.arrays[0].values.Floats(6) = {0.0f, 1.0f, 127.0f, 64.0f, 3.0f, 100.0f};
    written.arrays[3].values.Doubles(3) = {0.0, 127.0, 5.0};
    for (const Scalar type : {Scalar::Int8, Scalar::UInt8, Scalar::Int16, Scalar::UInt16, Scalar::Int32,
                              Scalar::UInt32, Scalar::Int64, Scalar::UInt64, Scalar::Float32, Scalar::Float64})
    {
        for (const Encoding encoding : {Encoding::Ascii, Encoding::AppendedRaw})
        {
            XmlFormat format;
            format.encoding = encoding;
            format.byteOrder = ByteOrder::BigEndian;
            format.arrayTypes = {{"line_id", type}, {"speed", type}};
            SCOPED_TRACE("stored type " + std::to_string(static_cast<int>(type)) + ", encoding " +
                         std::to_string(static_cast<int>(encoding)));
            ExpectSameXml(KesraIo::ParseXmlPolyData(WriteVtp(written, format), "types.vtp"), written, format);
        }
    }
}

TEST(XmlRoundTripDetailTest, NamesWithMarkupCharactersAreUnescaped)
{
    PolyData written = SampleLines(2, 3);
    written.arrays[0].name = "T <avg> & \"raw\"";
    written.activeScalars = written.arrays[0].name;
    XmlFormat format;
    format.encoding = Encoding::Binary;
    ExpectSameXml(KesraIo::ParseXmlPolyData(WriteVtp(written, format), "names.vtp"), written, format);
}

TEST(XmlRoundTripDetailTest, EmptyLastBlockAndOneByteBlocks)
{
    // Block sizes that divide every array exactly, and the smallest there is.
    const PolyData written = SampleLines(2, 4);
    for (const std::size_t blockSize : {std::size_t{8}, std::size_t{1}})
    {
        XmlFormat format;
        format.zlib = true;
        format.blockSize = blockSize;
        format.encoding = Encoding::AppendedBase64;
        SCOPED_TRACE("blocks of " + std::to_string(blockSize));
        ExpectSameXml(KesraIo::ParseXmlPolyData(WriteVtp(written, format), "blocks.vtp"), written, format);
    }
}

TEST(XmlRoundTripDetailTest, FilesAreDispatchedByTheirNames)
{
    const std::filesystem::path folder = Folder();
    const PolyData written = SampleLines(3, 3);
    XmlFormat format;
    format.zlib = true;
    const std::string path = (folder / "lines.vtp").string();
    WriteFile(path, WriteVtp(written, format));
    ExpectSameXml(KesraIo::ReadPolyData(path), written, format);
}

// A parallel summary in the folder of its pieces' subfolder, as the
// parallel writers lay them out; the pieces join in order into the whole.
TEST(XmlRoundTripDetailTest, ParallelPiecesJoinInOrder)
{
    const std::filesystem::path folder = Folder();
    std::filesystem::create_directories(folder / "flow");
    const PolyData written = SampleLines(5, 3);
    XmlFormat format;
    format.encoding = Encoding::AppendedRaw;
    format.arrayTypes["line_id"] = Scalar::Int64;
    std::vector<std::string> sources;
    const std::vector<PolyData> pieces = SplitByLines(written, 3);
    for (std::size_t p = 0; p < pieces.size(); ++p)
    {
        sources.push_back("flow/flow_" + std::to_string(p) + ".vtp");
        WriteFile((folder / sources.back()).string(), WriteVtp(pieces[p], format));
    }
    const std::string summary = (folder / "flow.pvtp").string();
    WriteFile(summary, WritePvtp(written, format, sources));
    ExpectSameXml(KesraIo::ReadPolyData(summary), written, format);
}

// A collection whose blocks hold pieces of different encodings.
TEST(XmlRoundTripDetailTest, MultiBlockPiecesJoinInOrder)
{
    const std::filesystem::path folder = Folder();
    std::filesystem::create_directories(folder / "run");
    const PolyData written = SampleLines(6, 2);
    const std::vector<PolyData> pieces = SplitByLines(written, 4);
    XmlFormat format;
    format.arrayTypes["line_id"] = Scalar::Int32;
    const Encoding encodings[] = {Encoding::Ascii, Encoding::Binary, Encoding::AppendedRaw, Encoding::AppendedBase64};
    std::vector<VtmBlock> blocks = {{"seeds", {}}, {"walls", {}}};
    for (std::size_t p = 0; p < pieces.size(); ++p)
    {
        XmlFormat pieceFormat = format;
        pieceFormat.encoding = encodings[p];
        const std::string file = "run/run_" + std::to_string(p) + ".vtp";
        WriteFile((folder / file).string(), WriteVtp(pieces[p], pieceFormat));
        blocks[p / 2].files.push_back(file);
    }
    const std::string collection = (folder / "run.vtm").string();
    WriteFile(collection, WriteVtm(blocks, format));
    ExpectSameXml(KesraIo::ReadPolyData(collection), written, format);
}

// ---- Legacy files ------------------------------------------------------------------

using LegacyLayout = std::tuple<bool, const char*>;

class LegacyRoundTripTest : public testing::TestWithParam<LegacyLayout>
{
};

// The legacy reader keeps fewer arrays than the file holds; whatever it
// keeps must be what was written, and the active scalars are always kept.
TEST_P(LegacyRoundTripTest, ReadsBackWhatWasWritten)
{
    const PolyData written = SampleLines(4, 3);
    for (const Scalar points : {Scalar::Float32, Scalar::Float64})
    {
        LegacyFormat format;
        std::tie(format.binary, format.version) = GetParam();
        format.pointType = points;
        format.arrayTypes["line_id"] = Scalar::Int32;
        format.vertices = points == Scalar::Float32 ? 0 : 2;
        SCOPED_TRACE(points == Scalar::Float32 ? "float points" : "double points");
        const PolyData read = KesraIo::ParseLegacy(WriteLegacy(written, format), "sample.vtk");
        ExpectSameLines(read, written);
        ASSERT_NE(read.Find(written.activeScalars, Association::Point), nullptr);
        for (const DataArray& array : read.arrays)
        {
            const DataArray* const original = written.Find(array.name, array.association);
            ASSERT_NE(original, nullptr) << array.name;
            EXPECT_EQ(array.components, original->components) << array.name;
            ExpectSameValues(array.values, original->values, array.name);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(AsciiAndBinary, LegacyRoundTripTest,
                         testing::Combine(testing::Bool(), testing::Values("4.2", "5.1")),
                         [](const testing::TestParamInfo<LegacyLayout>& info) {
                             std::string name = std::string(std::get<0>(info.param) ? "Binary_v" : "Ascii_v") +
                                                std::get<1>(info.param);
                             name.erase(std::remove(name.begin(), name.end(), '.'), name.end());
                             return name;
                         });

} // namespace
