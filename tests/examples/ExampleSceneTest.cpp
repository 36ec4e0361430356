// The scene that the demo and the viewer both show: the flow's data
// (examples/common), its extremes and their tips, the sphere mesh, the
// palettes and the fit beside the legend (the backends' common/).
#include "Flow.h"
#include "common/Palette.h"
#include "common/SceneData.h"
#include "common/SceneExtremes.h"
#include "common/SceneLook.h"
#include "common/SphereMesh.h"
#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>
#include <string>

namespace
{

using KesraBackend::Extremes;
using KesraBackend::ScalarLine;
using KesraBackend::Vec3;

// The tips' texts are protected in the manager: a reader makes them public.
class TipReader : public KesraTest::TestTipManager
{
public:
    using CKesraTipManager::GetTip;
};

ScalarLine Line(std::vector<double> values)
{
    ScalarLine line;
    for (std::size_t i = 0; i < values.size(); ++i)
    {
        line.points.emplace_back(static_cast<double>(i), 0.0, 0.0);
    }
    line.values = std::move(values);
    return line;
}

TEST(ExampleSceneTest, ExtremesSkipValuesThatAreNotFiniteKeepTheFirstOfATieAndMayBeNone)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    const Extremes extremes = KesraBackend::FindExtremes(
        {Line({nan, 2.0, -inf}), Line({5.0, -1.0, 5.0}), Line({inf, -1.0})});
    ASSERT_TRUE(extremes.found);
    EXPECT_EQ(extremes.largest.value, 5.0);
    EXPECT_EQ(extremes.largest.line, 1u);
    EXPECT_EQ(extremes.largest.point.x, 0.0);
    EXPECT_EQ(extremes.smallest.value, -1.0);
    EXPECT_EQ(extremes.smallest.line, 1u);
    EXPECT_EQ(extremes.smallest.point.x, 1.0);

    // Nothing finite: not found, both zero, and no tips.
    const Extremes none = KesraBackend::FindExtremes({Line({nan}), Line({})});
    EXPECT_FALSE(none.found);
    EXPECT_EQ(none.largest.value, 0.0);
    EXPECT_EQ(none.smallest.value, 0.0);
    TipReader tips;
    KesraBackend::AddExtremeTips(tips, none, "%.2f", " m/s", Vec3(), 1.0);
    EXPECT_EQ(tips.GetTipsNum(), 0);
}

TEST(ExampleSceneTest, ExtremeTipsAreLabelledAndPlacedOnTheRayFromTheCentre)
{
    ScalarLine line;
    line.points = {Vec3(3.0, 0.0, 0.0), Vec3(0.0, -0.5, 0.0)};
    line.values = {1.4849, 0.52071};
    TipReader tips;
    KesraBackend::AddExtremeTips(tips, KesraBackend::FindExtremes({line}), "%.2f", " m/s",
                                  Vec3(1.0, 0.0, 0.0), 2.0);
    ASSERT_EQ(tips.GetTipsNum(), 2);
    EXPECT_STREQ(tips.GetTip(0)->GetContext(), "max 1.48 m/s");
    EXPECT_STREQ(tips.GetTip(1)->GetContext(), "min 0.52 m/s");
    double label[3] = {0.0, 0.0, 0.0};
    tips.GetEffectCoord(0, label);
    EXPECT_DOUBLE_EQ(label[0], 3.0);
    EXPECT_DOUBLE_EQ(label[1], 0.0);
    tips.GetEffectCoord(1, label);
    // From (1, 0, 0) through (0, -0.5, 0), two units out.
    EXPECT_NEAR(label[0], 1.0 - 2.0 / std::sqrt(1.25), 1e-12);
    EXPECT_NEAR(label[1], -1.0 / std::sqrt(1.25), 1e-12);
}

TEST(ExampleSceneTest, SphereMeshCoversTheSphereCounterClockwiseFromOutside)
{
    for (const bool seam : {false, true})
    {
        const int stacks = 6;
        const int sectors = 8;
        const int columns = seam ? sectors + 1 : sectors;
        const KesraBackend::SphereMesh mesh = KesraBackend::UnitSphere(stacks, sectors, seam);
        ASSERT_EQ(mesh.normals.size(), static_cast<std::size_t>((stacks + 1) * columns));
        ASSERT_EQ(mesh.quads.size(), static_cast<std::size_t>(stacks * sectors));
        for (const Vec3& n : mesh.normals)
        {
            EXPECT_NEAR(n.Length(), 1.0, 1e-15);
        }
        EXPECT_EQ(mesh.normals.front().z, 1.0);
        EXPECT_EQ(mesh.normals.back().z, -1.0);
        for (const auto& quad : mesh.quads)
        {
            for (const int index : quad)
            {
                ASSERT_GE(index, 0);
                ASSERT_LT(index, static_cast<int>(mesh.normals.size()));
            }
            // Down the meridian, then east: both triangles face outward (one
            // of them shrinks to nothing at a pole).
            const Vec3& p0 = mesh.normals[quad[0]];
            const Vec3& p2 = mesh.normals[quad[2]];
            const double first = (mesh.normals[quad[1]] - p0).Cross(p2 - p0).Dot(p0 + p2);
            const double second = (p2 - p0).Cross(mesh.normals[quad[3]] - p0).Dot(p0 + p2);
            EXPECT_GE(first, -1e-15);
            EXPECT_GE(second, -1e-15);
            EXPECT_GT(first + second, 0.0) << seam;
        }
        // The last quad of a ring closes on its first column, or on the
        // seam's repeat of it.
        const auto& last = mesh.quads[sectors - 1];
        EXPECT_EQ(last[3], seam ? sectors : 0);
        EXPECT_NEAR(mesh.normals[last[3]].x, mesh.normals[0].x, 1e-15);
    }
}

TEST(ExampleSceneTest, PalettesHaveOneNameEachAndTheNextCyclesThroughAll)
{
    std::set<std::string> names;
    KesraBackend::Palette palette = KesraBackend::kPalettes[0].value;
    std::set<std::string> endColours;
    for (const KesraBackend::NamedPalette& entry : KesraBackend::kPalettes)
    {
        names.insert(entry.name);
        EXPECT_EQ(palette, entry.value) << "the next palette follows the table";
        KesraEngine::CKesraScalarBar legend;
        legend.SetValueRange(0.0, 1.0, false, false);
        KesraBackend::LoadPalette(legend, entry.value);
        std::string ends;
        for (const double value : {0.0, 1.0})
        {
            unsigned char r = 0, g = 0, b = 0;
            legend.GetOpenGLColor(r, g, b, value);
            ends += std::to_string(r) + "," + std::to_string(g) + "," + std::to_string(b) + ";";
        }
        endColours.insert(ends);
        palette = KesraBackend::NextPalette(palette);
    }
    EXPECT_EQ(palette, KesraBackend::kPalettes[0].value) << "after the last comes the first";
    EXPECT_EQ(names.size(), std::size(KesraBackend::kPalettes));
    EXPECT_EQ(endColours.size(), std::size(KesraBackend::kPalettes)) << "each loads its own colours";
}

TEST(ExampleSceneTest, FitBesideLegendCentresTheModelInTheFreePart)
{
    KesraTest::TestCamera camera(1200, 800);
    camera.ZoomAll(-1.0f, 1.0f, -1.0f, 1.0f, -1.0f, 1.0f);
    const float fitted = camera.GetScale();
    KesraBackend::FitBesideLegend(camera, 1200, 800, 170);
    // The free part is 1030 by 760 pixels: the model grows by 800 / 760.
    EXPECT_FLOAT_EQ(camera.GetScale(), fitted * (800.0f / 760.0f));
    KesraMathKit::TKesraVector3<double> centre;
    camera.ProjectPointWorldToView({0.0, 0.0, 0.0}, centre);
    EXPECT_NEAR(centre.x, (1200.0 - 170.0) / 2.0, 1e-3);
    EXPECT_NEAR(centre.y, 400.0, 1e-9);
}

TEST(ExampleSceneTest, FlowDataHasAValueAndAnArcLengthAtEveryPoint)
{
    const KesraBackend::SceneData data = KesraExamples::FlowSceneData();
    ASSERT_EQ(data.lines.size(), 26u);
    for (const ScalarLine& line : data.lines)
    {
        ASSERT_EQ(line.values.size(), line.points.size());
        ASSERT_EQ(line.lengths.size(), line.points.size());
        ASSERT_GE(line.points.size(), 2u);
        EXPECT_EQ(line.lengths.front(), 0.0);
        for (std::size_t i = 1; i < line.lengths.size(); ++i)
        {
            EXPECT_NEAR(line.lengths[i] - line.lengths[i - 1], 0.15, 1e-12);
        }
        for (std::size_t i = 0; i < line.values.size(); ++i)
        {
            EXPECT_EQ(line.values[i], KesraExamples::Velocity(line.points[i]).Length());
        }
    }
    const Extremes extremes = KesraBackend::FindExtremes(data.lines);
    // The stream speeds up to 1.5 m/s at the equator and slows towards the
    // stagnation points; the traced lines stay off both.
    EXPECT_GT(extremes.largest.value, 1.4);
    EXPECT_LT(extremes.largest.value, 1.5);
    EXPECT_GT(extremes.smallest.value, 0.0);
    EXPECT_LT(extremes.smallest.value, 1.0);
}

} // namespace
