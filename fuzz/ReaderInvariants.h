// Shared by the reader harnesses: what a reader promises about whatever bytes
// it is given. It either refuses them with a message that names the file, or
// hands out polylines the viewer can draw without another check: offsets
// from 0 that never fall and end at the connectivity's size, every index a
// point, every coordinate finite, one tuple per point or per line in every
// array, active scalars that name a point array.
#pragma once

#include "FuzzInput.h"
#include "KesraIo/PolyData.h"

#include <cmath>
#include <cstddef>
#include <string>
#include <string_view>

namespace KesraFuzz
{

// mostPoints: how many points the input's size could hold at the most, so
// that nothing is made out of thin air.
inline void CheckPolyLines(const KesraIo::PolyData& lines, std::size_t mostPoints)
{
    Require(lines.points.Size() % 3 == 0, "points hold whole triples");
    for (std::size_t i = 0; i < lines.points.Size(); ++i)
    {
        Require(std::isfinite(lines.points[i]), "coordinates are finite");
    }
    Require(lines.LineCount() >= 1, "at least one line");
    Require(lines.lineOffsets.front() == 0, "offsets start at 0");
    for (std::size_t i = 1; i < lines.lineOffsets.size(); ++i)
    {
        Require(lines.lineOffsets[i] >= lines.lineOffsets[i - 1], "offsets never fall");
    }
    Require(lines.lineOffsets.back() == lines.connectivity.size(), "offsets end at the connectivity's size");
    for (const std::size_t index : lines.connectivity)
    {
        Require(index < lines.PointCount(), "every index is a point");
    }
    for (const KesraIo::DataArray& array : lines.arrays)
    {
        Require(array.components >= 1, "arrays have components");
        Require(array.values.Size() % static_cast<std::size_t>(array.components) == 0, "arrays hold whole tuples");
        Require(array.TupleCount() == (array.association == KesraIo::Association::Point ? lines.PointCount()
                                                                                         : lines.LineCount()),
                "one tuple per point or per line");
    }
    Require(lines.activeScalars.empty() ||
                lines.Find(lines.activeScalars, KesraIo::Association::Point) != nullptr,
            "active scalars name a point array");
    Require(lines.PointCount() <= mostPoints, "no more points than the input holds");
}

// Runs parse(bytes, name) and checks what comes back, or the refusal.
template <typename Parse>
void CheckReader(std::string_view bytes, const std::string& name, std::size_t mostPoints, Parse parse)
{
    try
    {
        CheckPolyLines(parse(bytes, name), mostPoints);
    }
    catch (const KesraIo::ReadError& error)
    {
        const std::string message = error.what();
        Require(message.compare(0, name.size() + 1, name + ":") == 0, "the message names the file");
        Require(message.size() > name.size() + 2, "the message says more than the name");
    }
}

} // namespace KesraFuzz
