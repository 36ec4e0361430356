// Every operation that allocates, with each of its allocations failing in
// turn: the operations that catch the failure report it, the others let
// std::bad_alloc through; either way the object is as it was (or, for a
// streamline's Create, not created with its last accepted sizes), takes the
// operation again, and nothing leaks.
#include "support/FaultInjection.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <cstring>
#include <new>
#include <string>
#include <utility>

namespace
{

using namespace KesraTest;
using KesraEngine::CKesraCurve2D;
using KesraEngine::CKesraStreamlineData;
using KesraEngine::CKesraTip;

// Longer than any string's in-place buffer, so that copying it allocates.
const std::string kLong(48, 'k');
const std::string kLonger(96, 'L');

class NullHandler : public KesraEngine::IKesraCameraEventHandler
{
public:
    void OnRotateMatUpdate(const KesraMathKit::TKesraMatrix4<double>&) override {}
    void OnTranslateUpdate(float, float) override {}
    void OnScaleUpdate(float) override {}
    void OnTransformUpdate(const KesraMathKit::TKesraMatrix4<double>&, float, float, float) override {}
};

// The fields that no getter or probe of the doubles shows, added to their
// states so that an assignment that forgets one of them is seen.
class FullCamera : public TestCamera
{
public:
    using TestCamera::TestCamera;
    Snapshot Fields() const
    {
        Snapshot s = State(static_cast<const TestCamera&>(*this));
        s << m_worldToViewMatrix << m_eventHandlers.size();
        for (const auto* handler : m_eventHandlers)
        {
            s << handler;
        }
        return s;
    }
};

class FullScalarBar : public TestScalarBar
{
public:
    // What a backend does once it has drawn the bar.
    void ClearModified() { m_modified = 0; }
    Snapshot Fields() const
    {
        Snapshot s = State(static_cast<const TestScalarBar&>(*this));
        s << m_palette << m_useCurrentUpperValue;
        return s;
    }
};

// A light whose backend has given it a slot.
class SlottedLight : public TestLight
{
public:
    explicit SlottedLight(int slot) { m_backendSlot = slot; }
};

Snapshot State(const FullCamera& camera)
{
    return camera.Fields();
}

Snapshot State(const FullScalarBar& bar)
{
    return bar.Fields();
}

// Prints the total once the executable has run, for the figures in the README.
class FaultPointReport : public ::testing::Environment
{
public:
    void TearDown() override
    {
        std::printf("allocation-failure points tried: %ld\n", FaultPointsTried());
    }
};

const auto* const kReport = ::testing::AddGlobalTestEnvironment(new FaultPointReport);

TEST(AllocationFailureTest, CameraRegistrationReportsAndKeepsTheList)
{
    NullHandler handlers[10];
    // Its state holds the handler list in order: a failed registration that
    // leaves a handler behind, or reorders the list, is seen.
    FullCamera camera(640, 480);
    camera.SetName(kLong);
    long points = 0;
    // Lists of every length up to 9, so that registration grows the list at
    // several capacities.
    for (NullHandler& handler : handlers)
    {
        points += FailEachAllocation(camera, OnFailure::Reports, [&handler](TestCamera& c) {
            return c.RegisterEventHandler(&handler);
        });
        ASSERT_TRUE(camera.RegisterEventHandler(&handler));
    }
    EXPECT_GE(points, 4);
}

// Every field of the source differs from the target's, so that a copy that
// misses one does not equal the source.
TEST(AllocationFailureTest, CameraNameAndCopiesThrowAndKeepTheCamera)
{
    NullHandler handlers[4];
    FullCamera source(800, 600);
    source.SetName(kLonger);
    for (int i = 0; i < 3; ++i)
    {
        source.RegisterEventHandler(&handlers[i]);
    }
    source.ZoomAll(0, 1, 0, 2, 0, 3);
    source.SetRotateCenter(0.5f, 1.0f, 1.5f);
    source.SetTranslation(3.0f, -2.0f);
    source.SetSixSidesInspectionSideFrames(12, false);
    source.SetSixSidesInspectionSidePauses(3, false);
    source.SetSixSidesInspection(true, false);
    for (int i = 0; i < 17; ++i)  // into the pause after the first side
    {
        source.SixSidesInspectionImpl();
    }
    source.SetSmoothRotateFrames(9);
    source.SetRotateMatrixToISOView(true);
    source.SmoothRotateImpl();
    source.GetWorldToViewMatrix();
    FullCamera target(100, 100);
    target.SetName(kLong);
    target.RegisterEventHandler(&handlers[3]);
    EXPECT_GE(FailEachAllocation(source, OnFailure::Throws,
                                 [](TestCamera& c) { return c.GetName() == kLonger; }),
              1);
    EXPECT_GE(FailEachCopyAllocation(source, target), 4);
}

TEST(AllocationFailureTest, TipInsertionAndTextsReportAndKeepTheTips)
{
    ProbedTipManager manager;
    const double a[3] = {1, 2, 3};
    const double b[3] = {4, 5, 6};
    long points = 0;
    // Nine insertions pass through several growths of the list.
    for (int i = 0; i < 9; ++i)
    {
        points += FailEachAllocationWithText(
            manager, OnFailure::Reports, kLong, [&a, &b](ProbedTipManager& m, std::string&& text) {
                return m.InsertTip(std::move(text), a, b) != -1;
            });
        points += FailEachAllocationWithText(
            manager, OnFailure::Reports, kLonger, [i](ProbedTipManager& m, std::string&& text) {
                return i == 0 || m.SetTipContext(i - 1, std::move(text));
            });
        ASSERT_EQ(manager.InsertTip(kLong, a, b), i);
    }
    // A colour of its own, so that an assignment that takes the colours
    // before its copy has succeeded is seen.
    ProbedTipManager target;
    target.InsertTip(kLonger, b, a);
    target.SetTextColor(9, 9, 9);
    points += FailEachCopyAllocation(manager, target);

    CKesraTip tip;
    tip.Create(kLong, a, b);
    points += FailEachAllocation(tip, OnFailure::Throws, [](CKesraTip& t) {
        t.SetContext(kLonger.c_str());
        return std::strcmp(t.GetContext(), kLonger.c_str()) == 0;
    });
    points += FailEachCopyAllocation(tip, CKesraTip());
    EXPECT_GE(points, 20);
}

TEST(AllocationFailureTest, ScalarBarTextsThrowAndKeepTheBar)
{
    FullScalarBar bar;
    ASSERT_TRUE(bar.Create(300, 600, 10, 20));
    bar.SetTitle(kLong, false);
    bar.SetNote(kLong);
    bar.SetUnit(kLong);
    long points = 0;
    points += FailEachAllocation(bar, OnFailure::Throws, [](TestScalarBar& b) {
        b.SetTitle(kLonger, true);
        return true;
    });
    points += FailEachAllocation(bar, OnFailure::Throws, [](TestScalarBar& b) {
        b.SetNote(kLonger);
        return true;
    });
    points += FailEachAllocation(bar, OnFailure::Throws, [](TestScalarBar& b) {
        b.SetUnit(kLonger);
        return true;
    });
    // The getters copy the texts out.
    points += FailEachAllocation(bar, OnFailure::Throws, [](TestScalarBar& b) {
        std::string title;
        b.GetTitle(title);
        return title == kLong;
    });
    // Every other field away from its default too, for the copies.
    bar.SetDirection(1);
    bar.SetColor({1, 2, 3, 4});
    bar.SetAutoTextColor(1);
    bar.SetValueFormat(5, 6);
    bar.SetValueRange(-2.0, 7.0, false, false);
    bar.SetDisplayRange(-1.0, 6.0);
    bar.SetBlockNum(5);
    bar.SetInverse(1);
    bar.SetBanded(1);
    bar.SetFillAllRange(1);
    bar.SetVisibility(0);
    bar.SetShowNode(0);
    bar.SetColorBlockLineWidth(2.5f);
    bar.SetColorPaletteGreenRed();
    bar.SetOverRangeColor(7, 8, 9);
    bar.SetUseSignleColor(1);
    bar.SetSingleColor(10, 11, 12);
    // The range switches and the current upper value go together, so the
    // target holds the other combination.
    FullScalarBar target;
    target.SetTitle(kLonger, false);
    target.SetValueRange(-3.0, 8.0, 5.0);
    target.ClearModified();
    points += FailEachCopyAllocation(bar, target);
    EXPECT_GE(points, 8);
}

TEST(AllocationFailureTest, StreamlineCreateThrowsAndLeavesTheLastAcceptedSizes)
{
    TestStreamline tube;
    ASSERT_TRUE(tube.Create(4, 3, 0.5, 2.0));
    double p[3] = {1, 2, 3};
    tube.SetNodeCoord(2, p);
    ASSERT_TRUE(tube.GenerationStreamline3D());
    // A failed Create has already given up the previous tube; what it keeps
    // are the sizes, radius and auxiliary size last accepted.
    const auto notCreated = [](const TestStreamline& t) {
        EXPECT_FALSE(t.IsCreate());
        EXPECT_EQ(t.GetNodes(), 4);
        EXPECT_EQ(t.GetSlices(), 3);
        EXPECT_EQ(t.Radius(), 0.5);
        EXPECT_EQ(t.AuxiliarySize(), 2.0);
    };
    long points = FailEachAllocation(
        tube, OnFailure::Discards, [](TestStreamline& t) { return t.Create(7, 5, 1.0, 1.0); },
        notCreated);
    EXPECT_GE(points, 8) << "the node array, then two arrays per node";

    // The largest counts fail at their first allocation without an overflow
    // on the way.
    TestStreamline huge(tube);
    FailAllocationAfter(0);
    EXPECT_THROW(huge.Create(INT_MAX, INT_MAX, 1.0, 1.0), std::bad_alloc);
    EXPECT_FALSE(DisarmAllocationFailure());
    notCreated(huge);
    ++FaultPointsTried();

    EXPECT_GE(points, 8);
}

// A failed assignment once left the larger source's node count over the
// target's smaller record array, and the next read went past its end.
TEST(AllocationFailureTest, FailedStreamlineAssignmentKeepsTheTargetWithinItsRecords)
{
    TestStreamline source;
    ASSERT_TRUE(source.Create(4, 3, 0.5, 2.0));
    ASSERT_TRUE(source.GenerationStreamline3D());
    TestStreamline target;
    ASSERT_TRUE(target.Create(2, 1, 1.0, 1.0));
    EXPECT_GE(FailEachCopyAllocation(source, target), 9);
}

TEST(AllocationFailureTest, StreamlineRecordsThrowAndKeepTheirRings)
{
    CKesraStreamlineData record;
    record.SetSliceCount(3);
    record.SetSliceNodeCoord(1, 1, 2, 3);
    record.SetSliceNodeNormal(2, 0, 0, 1);
    long points = FailEachAllocation(record, OnFailure::Throws, [](CKesraStreamlineData& r) {
        r.SetSliceCount(40);
        return r.GetSliceCount() == 40;
    });
    CKesraStreamlineData target;
    target.SetSliceCount(1);
    points += FailEachCopyAllocation(record, target);
    EXPECT_GE(points, 4);
}

TEST(AllocationFailureTest, CurveInsertionsThrowAndKeepTheNodes)
{
    CKesraCurve2D curve;
    long points = 0;
    // Every insertion at lengths 0 ... 9, through several growths.
    for (int i = 0; i < 10; ++i)
    {
        points += FailEachAllocation(curve, OnFailure::Throws,
                                     [i](CKesraCurve2D& c) { return c.InsertNode(i, -i); });
        points += FailEachAllocation(curve, OnFailure::Throws,
                                     [i](CKesraCurve2D& c) { return c.InsertNodeX(2.0 * i); });
        points += FailEachAllocation(curve, OnFailure::Throws,
                                     [i](CKesraCurve2D& c) { return c.InsertNodeY(-3.0 * i); });
        points += FailEachAllocation(curve, OnFailure::Throws, [i](CKesraCurve2D& c) {
            return i == 0 || c.InsertNode(i / 2, 100.0 + i, -100.0 - i);
        });
        curve.InsertNode(i, i * i);
    }
    points += FailEachCopyAllocation(curve, CKesraCurve2D());
    EXPECT_GE(points, 20);
}

TEST(AllocationFailureTest, SceneSettingTextsAndCopiesThrowAndKeepTheObject)
{
    // Every field away from its default, for the copies.
    TestRuler ruler;
    ruler.Create(400, 250, 5, 7);
    ruler.SetUnit(kLong);
    ruler.SetDrawRuler(0);
    ruler.SetRulerWidthScale(4);
    ruler.SetRulerHeight(14);
    ruler.SetOpenGLScale(0.01f);
    ruler.SetTextColor({1, 2, 3, 4});
    ruler.SetBlock4();
    ruler.SetAutoBlock(true);
    ruler.UpdateWidthFactor();
    SlottedLight light(3);
    light.SetName(kLong);
    light.SetColor({1, 2, 3, 4});
    light.SetPosition({1, 2, 3});
    light.SetFocalPoint({4, 5, 6});
    light.SetIntensity(0.5f);
    light.SetSwitch(0);
    light.SetExponent(2.0f);
    light.SetConeAngle(30.0f);
    light.SetAttenuationValues(0.5f, 0.25f, 0.125f);
    light.SetLightType(2);
    TestFont font;
    font.SetFace(kLong);
    TestRenderer renderer(320, 240);
    TestCamera camera(10, 10);
    renderer.SetName(kLong.c_str());
    renderer.SetActive(0);
    renderer.SetTitleColor({1, 2, 3, 4});
    renderer.SetGradient(0);
    renderer.SetBackgroundColor({5, 6, 7, 8});
    renderer.SetBackgroundColor2({9, 10, 11, 12});
    renderer.SetPointSmoothing(1);
    renderer.SetLineSmoothing(1);
    renderer.SetPolygonSmoothing(1);
    renderer.SetDoubleBuffer(false);
    renderer.SetPolygonOffsetPara(2.0f, 3.0f);
    renderer.SetCamera(&camera);
    long points = 0;
    points += FailEachAllocation(ruler, OnFailure::Throws, [](TestRuler& r) {
        r.SetUnit(kLonger);
        return true;
    });
    // Names and faces are taken by value and moved in; reading them back
    // copies.
    points += FailEachAllocation(light, OnFailure::Throws,
                                 [](SlottedLight& l) { return l.GetName() == kLong; });
    points += FailEachAllocation(font, OnFailure::Throws,
                                 [](TestFont& f) { return f.GetFace() == kLong; });
    points += FailEachAllocation(renderer, OnFailure::Throws, [](TestRenderer& r) {
        r.SetName(kLonger.c_str());
        return std::strcmp(r.GetName(), kLonger.c_str()) == 0;
    });
    TestRuler fourBlocks;  // the automatic choice above is two blocks
    fourBlocks.SetBlock4();
    points += FailEachCopyAllocation(ruler, fourBlocks);
    points += FailEachCopyAllocation(light, SlottedLight(-1));
    points += FailEachCopyAllocation(font, TestFont());
    points += FailEachCopyAllocation(renderer, TestRenderer(1, 1));
    EXPECT_GE(points, 12);
}

} // namespace
