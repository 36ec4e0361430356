// Fuzzes the legacy polydata reader with arbitrary bytes, against the
// promises of ReaderInvariants.h.
#include "KesraIo/Reader.h"
#include "ReaderInvariants.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const std::string name = "fuzz.vtk";
    // Every point took at least a byte of binary data or a character of text
    // (bits aside, which no point is).
    KesraFuzz::CheckReader(std::string_view(reinterpret_cast<const char*>(data), size), name, size,
                           KesraIo::ParseLegacy);
    return 0;
}
