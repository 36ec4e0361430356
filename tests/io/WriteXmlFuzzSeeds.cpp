// Writes the XML reader fuzzer's seeds into the folder given: for each
// encoding, four small files that between them cover both header widths,
// both byte orders, zlib blocks, the three versions, both widths of points
// and indices, and vertices to read past. Each stays under 2 kB, so that the
// fuzzer mutates structure rather than bulk.
//
//   kesra-xml-fuzz-seeds fuzz/corpus/XmlReaderFuzz
#include "io/support/PolyDataWriter.h"

#include <array>
#include <cstddef>
#include <exception>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

namespace
{

using namespace KesraIoTest;

struct Seed
{
    const char* name;
    HeaderType headerType;
    std::size_t blockSize; // of zlib blocks; 0 without
    ByteOrder byteOrder;
    const char* version;
    Scalar pointType;
    Scalar indexType;
    std::size_t vertices;
    bool velocity; // the vector array, left out where version 2.2's extras need the room
};

constexpr std::array<Seed, 4> kSeeds = {{
    {"uint32-le-v0.1-verts", HeaderType::UInt32, 0, ByteOrder::LittleEndian, "0.1", Scalar::Float32, Scalar::Int32, 1,
     true},
    {"uint64-be-zlib-v1.0", HeaderType::UInt64, 16, ByteOrder::BigEndian, "1.0", Scalar::Float32, Scalar::Int64,
     0, true},
    {"uint32-le-zlib-v2.2", HeaderType::UInt32, 64, ByteOrder::LittleEndian, "2.2", Scalar::Float32,
     Scalar::Int64, 0, false},
    {"uint64-le-double-v1.0", HeaderType::UInt64, 0, ByteOrder::LittleEndian, "1.0", Scalar::Float64,
     Scalar::Int32, 0, true},
}};

constexpr std::array<std::pair<Encoding, const char*>, 4> kEncodings = {{
    {Encoding::Ascii, "ascii"},
    {Encoding::Binary, "binary"},
    {Encoding::AppendedRaw, "appended-raw"},
    {Encoding::AppendedBase64, "appended-base64"},
}};

// Two lines of two points with a scalar, perhaps a vector, and a line number.
KesraIo::PolyData SeedLines(bool velocity)
{
    KesraIo::PolyData lines = SampleLines(2, 2);
    std::vector<KesraIo::DataArray> kept;
    for (KesraIo::DataArray& array : lines.arrays)
    {
        if (array.name == "speed" || (velocity && array.name == "velocity") || array.name == "line_id")
        {
            kept.push_back(std::move(array));
        }
    }
    lines.arrays = std::move(kept);
    return lines;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
    {
        std::cerr << "usage: kesra-xml-fuzz-seeds FOLDER\n";
        return 2;
    }
    try
    {
        for (const auto& [encoding, encodingName] : kEncodings)
        {
            for (const Seed& seed : kSeeds)
            {
                XmlFormat format;
                format.encoding = encoding;
                format.headerType = seed.headerType;
                format.zlib = seed.blockSize > 0;
                format.blockSize = seed.blockSize;
                format.byteOrder = seed.byteOrder;
                format.version = seed.version;
                format.pointType = seed.pointType;
                format.indexType = seed.indexType;
                format.vertices = seed.vertices;
                format.arrayTypes["line_id"] = Scalar::Int32;
                format.emptySections = false;
                const std::string bytes = WriteVtp(SeedLines(seed.velocity), format);
                const std::string path = std::string(argv[1]) + "/" + encodingName + "-" + seed.name + ".vtp";
                WriteFile(path, bytes);
                std::cout << path << ": " << bytes.size() << " bytes\n";
            }
        }
    }
    catch (const std::exception& error)
    {
        std::cerr << error.what() << "\n";
        return 1;
    }
    return 0;
}
