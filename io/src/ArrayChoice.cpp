#include "KesraIo/ArrayChoice.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

namespace KesraIo
{

namespace
{

constexpr const char* kAxes[] = {"x", "y", "z"};

const char* AssociationName(Association association)
{
    return association == Association::Point ? "point" : "cell";
}

// Axis letters for the components of vectors, numbers beyond.
std::string ComponentName(const DataArray& array, int component)
{
    if (component == kMagnitude)
    {
        return "mag";
    }
    return array.components <= 3 ? kAxes[component] : std::to_string(component);
}

// The first array of that name, points before cells.
const DataArray* FindEither(const PolyData& data, const std::string& name)
{
    const DataArray* found = data.Find(name, Association::Point);
    return found != nullptr ? found : data.Find(name, Association::Cell);
}

// A component named by the text after a ':'; false when the text names none
// (the array may still be named by the whole request).
bool ParseComponent(const std::string& text, int& component)
{
    if (text == "mag")
    {
        component = kMagnitude;
        return true;
    }
    for (int axis = 0; axis < 3; ++axis)
    {
        if (text == kAxes[axis])
        {
            component = axis;
            return true;
        }
    }
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, component);
    return !text.empty() && error == std::errc() && stop == end && component >= 0;
}

std::string Number(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", value);
    return text;
}

std::string RangeText(const Range& range)
{
    if (std::isnan(range.min))
    {
        return "no finite value";
    }
    return "[" + Number(range.min) + ", " + Number(range.max) + "]";
}

std::string ArrayList(const PolyData& data)
{
    if (data.arrays.empty())
    {
        return "the file has no arrays";
    }
    std::string list = "the file's arrays:";
    for (const DataArray& array : data.arrays)
    {
        list += "\n  " + array.name + " (" + AssociationName(array.association) + ", " +
                std::to_string(array.components) + (array.components == 1 ? " component)" : " components)");
    }
    return list;
}

std::string ArrayLine(const DataArray& array, bool active)
{
    std::string line = "  " + std::string(AssociationName(array.association)) + " " + array.name + ": " +
                       std::to_string(array.components) +
                       (array.components == 1 ? " component, " : " components, ");
    if (array.components == 1)
    {
        line += "range " + RangeText(array.FiniteRange(0));
    }
    else
    {
        for (int c = 0; c < array.components; ++c)
        {
            line += ComponentName(array, c) + " " + RangeText(array.FiniteRange(c)) + ", ";
        }
        line += "magnitude " + RangeText(array.FiniteRange(kMagnitude));
    }
    return line + (active ? " (active scalars)" : "");
}

std::string BoundsLine(const PolyData& data)
{
    std::string line = "bounds:";
    for (std::size_t axis = 0; axis < 3; ++axis)
    {
        double low = std::numeric_limits<double>::infinity();
        double high = -low;
        for (std::size_t i = axis; i < data.points.Size(); i += 3)
        {
            low = std::min(low, data.points[i]);
            high = std::max(high, data.points[i]);
        }
        line += std::string(" ") + kAxes[axis] + " ";
        line += data.PointCount() == 0 ? "none" : "[" + Number(low) + ", " + Number(high) + "]";
    }
    return line;
}

} // namespace

std::string ArrayChoice::Label() const
{
    if (array == nullptr)
    {
        return "";
    }
    // A lone component is named by the array alone; so is the magnitude of
    // several, as a bare name asks for it.
    const bool bare = array->components == 1 ? component == 0 : component == kMagnitude;
    return bare ? array->name : array->name + ":" + ComponentName(*array, component);
}

bool ChooseArray(const PolyData& data, const std::string& request, ArrayChoice& choice,
                 std::string& error)
{
    const DataArray* whole = FindEither(data, request);
    if (whole != nullptr)
    {
        choice = ArrayChoice{whole, whole->components == 1 ? 0 : kMagnitude};
        return true;
    }
    const std::size_t colon = request.rfind(':');
    int component = 0;
    const DataArray* named = nullptr;
    if (colon != std::string::npos && ParseComponent(request.substr(colon + 1), component))
    {
        named = FindEither(data, request.substr(0, colon));
    }
    if (named == nullptr)
    {
        error = "no array '" + request + "'; " + ArrayList(data);
        return false;
    }
    if (component >= named->components)
    {
        error = "array '" + named->name + "' has " + std::to_string(named->components) +
                " component(s), numbered from 0: '" + request + "' names none of them; " + ArrayList(data);
        return false;
    }
    choice = ArrayChoice{named, component};
    return true;
}

ArrayChoice DefaultArray(const PolyData& data)
{
    const DataArray* active = data.Find(data.activeScalars, Association::Point);
    for (const DataArray& array : data.arrays)
    {
        if (active == nullptr && array.association == Association::Point)
        {
            active = &array;
        }
    }
    if (active == nullptr)
    {
        return ArrayChoice{};
    }
    return ArrayChoice{active, active->components == 1 ? 0 : kMagnitude};
}

std::vector<double> ConnectivityValues(const PolyData& data, const ArrayChoice& choice)
{
    std::vector<double> values;
    if (choice.array == nullptr)
    {
        return values;
    }
    values.reserve(data.connectivity.size());
    const bool perPoint = choice.array->association == Association::Point;
    for (std::size_t line = 0; line < data.LineCount(); ++line)
    {
        const double lineValue = perPoint ? 0.0 : choice.array->Value(line, choice.component);
        for (std::size_t k = data.lineOffsets[line]; k < data.lineOffsets[line + 1]; ++k)
        {
            values.push_back(perPoint ? choice.array->Value(data.connectivity[k], choice.component) : lineValue);
        }
    }
    return values;
}

Range ChosenRange(const ArrayChoice& choice)
{
    if (choice.array == nullptr)
    {
        constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
        return Range{kNaN, kNaN};
    }
    return choice.array->FiniteRange(choice.component);
}

std::string Summary(const PolyData& data, const std::string& name)
{
    std::string text = name + "\n";
    text += "points: " + std::to_string(data.PointCount()) + ", lines: " + std::to_string(data.LineCount()) +
            ", line points: " + std::to_string(data.connectivity.size()) + "\n";
    text += BoundsLine(data) + "\n";
    text += "arrays: " + std::to_string(data.arrays.size()) + "\n";
    for (const DataArray& array : data.arrays)
    {
        const bool active =
            !data.activeScalars.empty() && &array == data.Find(data.activeScalars, Association::Point);
        text += ArrayLine(array, active) + "\n";
    }
    for (const std::string& note : data.notes)
    {
        text += "note: " + note + "\n";
    }
    return text;
}

} // namespace KesraIo
