// Which array of a PolyData colours its lines, and the value that choice
// gives every point of every line: what the user names on a command line,
// what a host shows when the user names nothing, and the summary a host
// prints of a file, written once for every host.
//
// A choice points into the PolyData it was made from: it stays valid while
// that PolyData lives and its arrays are not changed.
#pragma once

#include "KesraIo/PolyData.h"

#include <string>
#include <vector>

namespace KesraIo
{

// The length of a tuple instead of one of its components.
constexpr int kMagnitude = -1;

struct ArrayChoice
{
    const DataArray* array = nullptr; // null: no array, the host picks its own value
    int component = 0;                // 0 to array->components - 1, or kMagnitude

    // "speed", "velocity:mag", "velocity:x", "stress:4": the request that
    // gives this choice back; empty without an array.
    std::string Label() const;
};

// The array request names, one of:
//   NAME            its only component, or the magnitude of tuples of several
//   NAME:mag        the magnitude
//   NAME:x|y|z      component 0, 1 or 2
//   NAME:N          component N, counted from 0
// Point arrays are searched before cell arrays; a name that itself holds a
// ':' is found whole before the text after its last ':' is read as a
// component. Refused (false, error naming the request and listing every
// array with its components) when no array or component matches; choice is
// then left as it was.
bool ChooseArray(const PolyData& data, const std::string& request, ArrayChoice& choice,
                 std::string& error);

// What colours when the user names nothing: the file's active scalars, else
// its first point array, else no array.
ArrayChoice DefaultArray(const PolyData& data);

// The chosen value at every entry of data.connectivity: a point array's at
// that point, a cell array's of the line the entry belongs to (the same for
// every point of a line). Empty without an array.
std::vector<double> ConnectivityValues(const PolyData& data, const ArrayChoice& choice);

// The smallest and largest finite value of the choice over the array's
// tuples; both NaN without an array or a finite value.
Range ChosenRange(const ArrayChoice& choice);

// Lines of text for a terminal: the file's name, its points and lines, the
// points' bounds, every array (association, components, finite range of each
// component and, for several, of the magnitude; the active scalars marked)
// and the notes of what was read past.
std::string Summary(const PolyData& data, const std::string& name);

} // namespace KesraIo
