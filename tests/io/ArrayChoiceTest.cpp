// Choosing the array that colours the lines: the requests a user types, the
// default, the value at every connectivity entry for point and cell arrays,
// the finite range, and the summary printed for a file.
#include "KesraIo/ArrayChoice.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace
{

using KesraIo::ArrayChoice;
using KesraIo::Association;
using KesraIo::DataArray;
using KesraIo::kMagnitude;
using KesraIo::PolyData;

DataArray MakeArray(const std::string& name, Association association, int components,
                    const std::vector<double>& values, bool isFloat = false)
{
    DataArray array;
    array.name = name;
    array.association = association;
    array.components = components;
    if (isFloat)
    {
        std::vector<float>& floats = array.values.Floats(values.size());
        for (std::size_t i = 0; i < values.size(); ++i)
        {
            floats[i] = static_cast<float>(values[i]);
        }
    }
    else
    {
        array.values.Doubles(0) = values;
    }
    return array;
}

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// Four points on two lines, 0-1-2 and 3-1 (point 1 shared); a speed and a
// velocity at each point, an id and a flux on each line, a name with a ':'.
PolyData TwoLines()
{
    PolyData data;
    data.points.Doubles(0) = {0, 0, 0, 1, 0, 0, 2, 1, 0, 0, 1, -1};
    data.lineOffsets = {0, 3, 5};
    data.connectivity = {0, 1, 2, 3, 1};
    data.arrays.push_back(MakeArray("speed", Association::Point, 1, {0.5, 1.5, 2.5, -1}));
    data.arrays.push_back(
        MakeArray("velocity", Association::Point, 3, {3, 4, 0, 1, 2, 2, 0, 0, kNaN, -6, 8, 0}, true));
    data.arrays.push_back(MakeArray("a:b", Association::Point, 1, {9, 9, 9, 9}));
    data.arrays.push_back(MakeArray("speed", Association::Cell, 1, {70, 80}));
    data.arrays.push_back(MakeArray("id", Association::Cell, 1, {10, 20}));
    data.arrays.push_back(MakeArray("flux", Association::Cell, 2, {1, -1, 2, -2}));
    data.activeScalars = "speed";
    return data;
}

ArrayChoice Choose(const PolyData& data, const std::string& request)
{
    ArrayChoice choice;
    std::string error;
    EXPECT_TRUE(KesraIo::ChooseArray(data, request, choice, error)) << request << ": " << error;
    return choice;
}

TEST(ArrayChoiceTest, RequestsNameAnArrayAndAComponent)
{
    const PolyData data = TwoLines();
    const struct
    {
        const char* request;
        const DataArray* array;
        int component;
        const char* label;
    } cases[] = {
        {"speed", &data.arrays[0], 0, "speed"}, // points before cells
        {"velocity", &data.arrays[1], kMagnitude, "velocity"},
        {"velocity:mag", &data.arrays[1], kMagnitude, "velocity"},
        {"velocity:x", &data.arrays[1], 0, "velocity:x"},
        {"velocity:y", &data.arrays[1], 1, "velocity:y"},
        {"velocity:2", &data.arrays[1], 2, "velocity:z"},
        {"speed:mag", &data.arrays[0], kMagnitude, "speed:mag"},
        {"a:b", &data.arrays[2], 0, "a:b"}, // the whole name first
        {"a:b:0", &data.arrays[2], 0, "a:b"},
        {"id", &data.arrays[4], 0, "id"},
        {"flux:y", &data.arrays[5], 1, "flux:y"},
    };
    for (const auto& c : cases)
    {
        const ArrayChoice choice = Choose(data, c.request);
        EXPECT_EQ(choice.array, c.array) << c.request;
        EXPECT_EQ(choice.component, c.component) << c.request;
        EXPECT_EQ(choice.Label(), c.label) << c.request;
        // The label asks for the same choice again.
        const ArrayChoice again = Choose(data, choice.Label());
        EXPECT_EQ(again.array, choice.array) << c.request;
        EXPECT_EQ(again.component, choice.component) << c.request;
    }
    EXPECT_EQ(ArrayChoice{}.Label(), "");
}

TEST(ArrayChoiceTest, UnknownNamesAndComponentsAreRefusedWithTheList)
{
    const PolyData data = TwoLines();
    const struct
    {
        const char* request;
        const char* says;
    } cases[] = {
        {"pressure", "no array 'pressure'"},
        {"velocity:w", "no array 'velocity:w'"},
        {"velocity:-1", "no array 'velocity:-1'"},
        {"velocity:3", "array 'velocity' has 3 component(s)"},
        {"id:y", "array 'id' has 1 component(s)"},
        {"", "no array ''"},
    };
    for (const auto& c : cases)
    {
        ArrayChoice choice{&data.arrays[4], 0};
        std::string error;
        EXPECT_FALSE(KesraIo::ChooseArray(data, c.request, choice, error)) << c.request;
        EXPECT_NE(error.find(c.says), std::string::npos) << error;
        EXPECT_NE(error.find("\n  velocity (point, 3 components)\n"), std::string::npos) << error;
        EXPECT_NE(error.find("\n  flux (cell, 2 components)"), std::string::npos) << error;
        EXPECT_EQ(choice.array, &data.arrays[4]) << "a refusal leaves the choice alone";
    }
    ArrayChoice choice;
    std::string error;
    EXPECT_FALSE(KesraIo::ChooseArray(PolyData{}, "speed", choice, error));
    EXPECT_NE(error.find("the file has no arrays"), std::string::npos) << error;
}

TEST(ArrayChoiceTest, DefaultIsTheActiveScalarsThenTheFirstPointArray)
{
    PolyData data = TwoLines();
    data.activeScalars = "a:b";
    EXPECT_EQ(KesraIo::DefaultArray(data).array, &data.arrays[2]);
    data.activeScalars.clear();
    EXPECT_EQ(KesraIo::DefaultArray(data).array, &data.arrays[0]);
    // A vector colours by its magnitude.
    data.arrays.erase(data.arrays.begin());
    EXPECT_EQ(KesraIo::DefaultArray(data).array, &data.arrays[0]);
    EXPECT_EQ(KesraIo::DefaultArray(data).component, kMagnitude);
    // Cell arrays alone are no default.
    data.arrays.erase(data.arrays.begin(), data.arrays.begin() + 2);
    EXPECT_EQ(KesraIo::DefaultArray(data).array, nullptr);
    EXPECT_TRUE(KesraIo::ConnectivityValues(data, KesraIo::DefaultArray(data)).empty());
    EXPECT_TRUE(std::isnan(KesraIo::ChosenRange(ArrayChoice{}).min));
}

TEST(ArrayChoiceTest, ValuesFollowTheConnectivityAndCellsFillTheirLines)
{
    const PolyData data = TwoLines();
    using Values = std::vector<double>;
    EXPECT_EQ(KesraIo::ConnectivityValues(data, Choose(data, "speed")), (Values{0.5, 1.5, 2.5, -1, 1.5}));
    EXPECT_EQ(KesraIo::ConnectivityValues(data, Choose(data, "velocity:y")), (Values{4, 2, 0, 8, 2}));
    EXPECT_EQ(KesraIo::ConnectivityValues(data, Choose(data, "id")), (Values{10, 10, 10, 20, 20}));
    EXPECT_EQ(KesraIo::ConnectivityValues(data, Choose(data, "flux:y")), (Values{-1, -1, -1, -2, -2}));
    const Values magnitude = KesraIo::ConnectivityValues(data, Choose(data, "velocity"));
    ASSERT_EQ(magnitude.size(), 5u);
    EXPECT_EQ(magnitude[0], 5.0);
    EXPECT_EQ(magnitude[1], 3.0);
    EXPECT_TRUE(std::isnan(magnitude[2])) << "a value that is not finite stays so";
    EXPECT_EQ(magnitude[3], 10.0);
}

TEST(ArrayChoiceTest, RangeSkipsValuesThatAreNotFinite)
{
    const PolyData data = TwoLines();
    const KesraIo::Range magnitude = KesraIo::ChosenRange(Choose(data, "velocity"));
    EXPECT_EQ(magnitude.min, 3.0);
    EXPECT_EQ(magnitude.max, 10.0);
    const KesraIo::Range z = KesraIo::ChosenRange(Choose(data, "velocity:z"));
    EXPECT_EQ(z.min, 0.0);
    EXPECT_EQ(z.max, 2.0);
    const KesraIo::Range flux = KesraIo::ChosenRange(Choose(data, "flux:y"));
    EXPECT_EQ(flux.min, -2.0);
    EXPECT_EQ(flux.max, -1.0);
}

TEST(ArrayChoiceTest, SummaryListsCountsBoundsArraysAndNotes)
{
    PolyData data = TwoLines();
    data.notes.push_back("VERTICES: 2 cells read past; only lines are drawn");
    EXPECT_EQ(KesraIo::Summary(data, "two.vtk"),
              "two.vtk\n"
              "points: 4, lines: 2, line points: 5\n"
              "bounds: x [0, 2] y [0, 1] z [-1, 0]\n"
              "arrays: 6\n"
              "  point speed: 1 component, range [-1, 2.5] (active scalars)\n"
              "  point velocity: 3 components, x [-6, 3], y [0, 8], z [0, 2], magnitude [3, 10]\n"
              "  point a:b: 1 component, range [9, 9]\n"
              "  cell speed: 1 component, range [70, 80]\n"
              "  cell id: 1 component, range [10, 20]\n"
              "  cell flux: 2 components, x [1, 2], y [-2, -1], magnitude [1.41421, 2.82843]\n"
              "note: VERTICES: 2 cells read past; only lines are drawn\n");
    DataArray empty = MakeArray("hole", Association::Point, 1, {kNaN, kNaN, kNaN, kNaN});
    data.arrays = {empty};
    data.notes.clear();
    data.activeScalars.clear();
    EXPECT_NE(KesraIo::Summary(data, "f").find("  point hole: 1 component, range no finite value\n"),
              std::string::npos);
}

} // namespace
