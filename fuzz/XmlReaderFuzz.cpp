// Fuzzes the XML polydata reader with arbitrary bytes, against the promises
// of ReaderInvariants.h, seeded with small files of every encoding,
// compression, header width and byte order (tests/io/WriteXmlFuzzSeeds.cpp).
// The run's memory limit catches a header believed before its data.
#include "KesraIo/Reader.h"
#include "ReaderInvariants.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace
{

// The most that deflate packs into one byte (258 bytes in two bits, with
// the block framing), so that compressed input still bounds the output.
constexpr std::size_t kMostInflatedPerByte = 1032;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const std::string name = "fuzz.vtp";
    KesraFuzz::CheckReader(std::string_view(reinterpret_cast<const char*>(data), size), name,
                           kMostInflatedPerByte * size, KesraIo::ParseXmlPolyData);
    return 0;
}
