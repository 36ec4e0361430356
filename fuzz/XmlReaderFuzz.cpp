// Fuzzes the XML polydata reader with arbitrary bytes, seeded with small
// files of every encoding, compression, header width and byte order. Whatever
// it is given, it either refuses the file with a message that names it, or
// hands out polylines the viewer can draw without another check: offsets
// from 0 that never fall and end at the connectivity's size, every index a
// point, every coordinate finite, one tuple per point or per line in every
// array. The run's memory limit catches a header believed before its data.
#include "KesraIo/Reader.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace
{

// The most that deflate can pack into one byte (258 bytes in two bits, and
// the block framing), so that compressed input still bounds the output.
constexpr std::size_t kMostInflatedPerByte = 1032;

void Require(bool holds)
{
    if (!holds)
    {
        std::abort();
    }
}

void CheckPolyLines(const KesraIo::PolyData& lines, std::size_t inputSize)
{
    Require(lines.points.Size() % 3 == 0);
    for (std::size_t i = 0; i < lines.points.Size(); ++i)
    {
        Require(std::isfinite(lines.points[i]));
    }
    Require(lines.LineCount() >= 1);
    Require(lines.lineOffsets.front() == 0);
    for (std::size_t i = 1; i < lines.lineOffsets.size(); ++i)
    {
        Require(lines.lineOffsets[i] >= lines.lineOffsets[i - 1]);
    }
    Require(lines.lineOffsets.back() == lines.connectivity.size());
    for (const std::size_t index : lines.connectivity)
    {
        Require(index < lines.PointCount());
    }
    for (const KesraIo::DataArray& array : lines.arrays)
    {
        Require(!array.name.empty());
        Require(array.components >= 1);
        Require(array.values.Size() % static_cast<std::size_t>(array.components) == 0);
        Require(array.TupleCount() == (array.association == KesraIo::Association::Point
                                           ? lines.PointCount()
                                           : lines.LineCount()));
    }
    if (!lines.activeScalars.empty())
    {
        Require(lines.Find(lines.activeScalars, KesraIo::Association::Point) != nullptr);
    }
    // Nothing is made out of thin air: every point took at least a byte of
    // the file, or a share of one when compressed.
    Require(lines.PointCount() <= kMostInflatedPerByte * inputSize);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    static const std::string name = "fuzz.vtp";
    try
    {
        CheckPolyLines(KesraIo::ParseXmlPolyData(bytes, name), size);
    }
    catch (const KesraIo::ReadError& error)
    {
        const std::string message = error.what();
        Require(message.compare(0, name.size() + 1, name + ":") == 0);
        Require(message.size() > name.size() + 2);
    }
    return 0;
}
