#include "Engine/Camera.h"
#include "support/CameraTestSupport.h"
#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace
{

using KesraTest::RecordingHandler;
using KesraTest::TestCamera;
using Matrix = KesraMathKit::TKesraMatrix4<double>;
using Log = std::vector<std::string>;

TEST(CameraEventTest, RegistrationRefusesNullAndDuplicates)
{
    TestCamera camera(800, 600);
    RecordingHandler handler;
    EXPECT_FALSE(camera.RegisterEventHandler(nullptr));
    EXPECT_FALSE(camera.UnregisterEventHandler(nullptr));
    EXPECT_TRUE(camera.RegisterEventHandler(&handler));
    EXPECT_FALSE(camera.RegisterEventHandler(&handler));
    camera.SetScale(2.0f);
    EXPECT_EQ(handler.events.size(), 1u);

    EXPECT_TRUE(camera.UnregisterEventHandler(&handler));
    EXPECT_FALSE(camera.UnregisterEventHandler(&handler));
    camera.SetScale(3.0f);
    EXPECT_EQ(handler.events.size(), 1u);
}

TEST(CameraEventTest, HandlersAreCalledInRegistrationOrder)
{
    TestCamera camera(800, 600);
    Log log;
    RecordingHandler a("A", &log);
    RecordingHandler b("B", &log);
    RecordingHandler c("C", &log);
    RecordingHandler stranger("X", &log);
    camera.RegisterEventHandler(&a);
    camera.RegisterEventHandler(&b);
    camera.RegisterEventHandler(&c);

    camera.SetTranslation(1.0f, 2.0f);
    EXPECT_EQ(log, (Log{"A", "B", "C"}));

    EXPECT_FALSE(camera.UnregisterEventHandler(&stranger));
    EXPECT_TRUE(camera.UnregisterEventHandler(&b));
    log.clear();
    camera.SetTranslation(3.0f, 4.0f);
    EXPECT_EQ(log, (Log{"A", "C"}));

    // Re-registering appends at the end.
    camera.RegisterEventHandler(&b);
    log.clear();
    camera.NotifyTransformUpdateInterface();
    EXPECT_EQ(log, (Log{"A", "C", "B"}));
}

TEST(CameraEventTest, EachSetterSendsItsNotificationWithCurrentState)
{
    TestCamera camera(800, 600);
    RecordingHandler handler;
    camera.RegisterEventHandler(&handler);

    Matrix rotation;
    rotation.MakeRotation(20.0, 0.0, 0.0, 1.0);
    camera.SetRotateMatrix(rotation);
    camera.SetTranslation(5.0f, -6.0f);
    camera.SetScale(0.5f);
    camera.ZoomAll(0.0f, 2.0f, 0.0f, 2.0f, 0.0f, 1.0f);

    ASSERT_EQ(handler.events.size(), 4u);
    EXPECT_EQ(handler.events[0].kind, "rotate");
    EXPECT_EQ(handler.events[0].rotation, rotation);
    EXPECT_EQ(handler.events[0].rotationAddress, &camera.GetRotateMatrix());
    EXPECT_EQ(handler.events[1].kind, "translate");
    EXPECT_EQ(handler.events[1].translationX, 5.0f);
    EXPECT_EQ(handler.events[1].translationY, -6.0f);
    EXPECT_EQ(handler.events[2].kind, "scale");
    EXPECT_EQ(handler.events[2].scale, 0.5f);
    EXPECT_EQ(handler.events[3].kind, "transform");
    EXPECT_EQ(handler.events[3].rotation, rotation);
    EXPECT_EQ(handler.events[3].rotationAddress, &camera.GetRotateMatrix());
    EXPECT_EQ(handler.events[3].translationX, 0.0f);
    EXPECT_EQ(handler.events[3].translationY, 0.0f);
    EXPECT_EQ(handler.events[3].scale, camera.GetScale());
}

TEST(CameraEventTest, SilentSettersNotifyNobody)
{
    TestCamera camera(800, 600);
    RecordingHandler handler;
    camera.RegisterEventHandler(&handler);
    camera.SetRotateMatrixNoEventHandler(Matrix::IDENTITY);
    camera.SetScaleNoEventHandler(2.0f);
    camera.SetTranslationNoEventHandler(1.0f, 1.0f);
    camera.SetTransformNoEventHandler(Matrix::IDENTITY, 0.0f, 0.0f, 1.0f);
    camera.SetWindowSize(100, 100);
    camera.SetRotateCenter(1.0f, 2.0f, 3.0f);
    camera.SetName("Silent");
    camera.UpdateViewPortParameters();
    camera.SetSmoothRotateFrames(7);
    camera.SetSixSidesInspection(true, true);
    camera.SetSixSidesInspectionSideFrames(4, true);
    camera.SetSixSidesInspectionSidePauses(2, true);
    camera.SetRotateMatrixToFrontView(true);
    EXPECT_TRUE(handler.events.empty());
}

TEST(CameraEventTest, SilentChangesThenOneTransformNotification)
{
    TestCamera camera(800, 600);
    RecordingHandler handler;
    camera.RegisterEventHandler(&handler);
    camera.SetScaleNoEventHandler(2.0f);
    camera.NotifyTransformUpdateInterface();
    ASSERT_EQ(handler.events.size(), 1u);
    EXPECT_EQ(handler.events[0].kind, "transform");
    EXPECT_EQ(handler.events[0].scale, 2.0f);
    EXPECT_EQ(handler.Count("scale"), 0);
}

TEST(CameraEventTest, ProtectedNotificationsSendTheCurrentFields)
{
    TestCamera camera(800, 600);
    RecordingHandler handler;
    camera.RegisterEventHandler(&handler);
    camera.SetTranslationNoEventHandler(7.0f, 8.0f);
    camera.SetScaleNoEventHandler(9.0f);
    camera.NotifyRotateMatUpdate();
    camera.NotifyTranslateUpdate();
    camera.NotifyScaleUpdate();
    camera.NotifyTransformUpdate();
    ASSERT_EQ(handler.events.size(), 4u);
    EXPECT_EQ(handler.events[0].kind, "rotate");
    EXPECT_EQ(handler.events[1].translationX, 7.0f);
    EXPECT_EQ(handler.events[1].translationY, 8.0f);
    EXPECT_EQ(handler.events[2].scale, 9.0f);
    EXPECT_EQ(handler.events[3].translationX, 7.0f);
    EXPECT_EQ(handler.events[3].scale, 9.0f);
}

TEST(CameraEventTest, NotifyingSettersMarkModifiedBeforeNotifying)
{
    TestCamera camera(800, 600);
    RecordingHandler handler;
    camera.RegisterEventHandler(&handler);
    std::vector<int> seen;
    std::vector<float> rightBounds;
    handler.onEvent = [&] {
        seen.push_back(camera.GetModified());
        float l, r;
        int w;
        camera.GetWidthParametersDirect(l, r, w);
        rightBounds.push_back(r);
    };
    const auto query = [&] { camera.GetWorldToViewMatrix(); };
    query();
    camera.SetRotateMatrix(Matrix::IDENTITY);
    query();
    camera.SetScale(2.0f);
    query();
    camera.SetTranslation(1.0f, 0.0f);
    query();
    camera.ZoomAll(0.0f, 1.0f, 0.0f, 1.0f, 0.0f, 1.0f);
    query();
    camera.SetRotateAngle(1.0, 2.0, 3.0);
    EXPECT_EQ(seen, (std::vector<int>{1, 1, 1, 1, 1}));
    // SetScale recomputes the bounds before notifying.
    EXPECT_EQ(rightBounds[1], 800.0f);
}

TEST(CameraEventTest, HandlerChangingTheCameraSilentlyChangesWhatLaterHandlersSee)
{
    TestCamera camera(800, 600);
    RecordingHandler first;
    RecordingHandler second;
    camera.RegisterEventHandler(&first);
    camera.RegisterEventHandler(&second);
    Matrix turned;
    turned.MakeRotation(90.0, 1.0, 0.0, 0.0);
    first.onEvent = [&] {
        camera.SetScaleNoEventHandler(8.0f);
        camera.SetTranslationNoEventHandler(-1.0f, -2.0f);
        camera.SetRotateMatrixNoEventHandler(turned);
    };
    camera.NotifyTransformUpdateInterface();
    EXPECT_EQ(first.events[0].scale, 1.0f);
    EXPECT_EQ(first.events[0].rotation, Matrix::IDENTITY);
    EXPECT_EQ(second.events[0].scale, 8.0f);
    EXPECT_EQ(second.events[0].translationX, -1.0f);
    EXPECT_EQ(second.events[0].translationY, -2.0f);
    EXPECT_EQ(second.events[0].rotation, turned);
}

TEST(CameraEventTest, HandlerUnregisteringItselfDuringAWalkSkipsNobody)
{
    TestCamera camera(800, 600);
    Log log;
    RecordingHandler a("A", &log);
    RecordingHandler b("B", &log);
    RecordingHandler c("C", &log);
    camera.RegisterEventHandler(&a);
    camera.RegisterEventHandler(&b);
    camera.RegisterEventHandler(&c);
    b.onEvent = [&] { EXPECT_TRUE(camera.UnregisterEventHandler(&b)); };
    camera.SetScale(2.0f);
    EXPECT_EQ(log, (Log{"A", "B", "C"}));
    log.clear();
    camera.SetScale(3.0f);
    EXPECT_EQ(log, (Log{"A", "C"}));
}

TEST(CameraEventTest, HandlerUnregisteringOthersDuringAWalk)
{
    TestCamera camera(800, 600);
    Log log;
    RecordingHandler a("A", &log);
    RecordingHandler b("B", &log);
    RecordingHandler c("C", &log);
    RecordingHandler d("D", &log);
    for (RecordingHandler* h : {&a, &b, &c, &d})
    {
        camera.RegisterEventHandler(h);
    }
    // B removes one handler already called (A) and one not yet called (C).
    b.onEvent = [&] {
        camera.UnregisterEventHandler(&a);
        camera.UnregisterEventHandler(&c);
    };
    camera.SetScale(2.0f);
    EXPECT_EQ(log, (Log{"A", "B", "D"}));
}

TEST(CameraEventTest, HandlerRegisteredDuringAWalkIsCalledFromTheNextOne)
{
    TestCamera camera(800, 600);
    Log log;
    RecordingHandler a("A", &log);
    RecordingHandler late("L", &log);
    camera.RegisterEventHandler(&a);
    bool registered = false;
    a.onEvent = [&] {
        if (!registered)
        {
            registered = camera.RegisterEventHandler(&late);
        }
    };
    camera.SetScale(2.0f);
    EXPECT_EQ(log, (Log{"A"}));
    log.clear();
    camera.SetScale(3.0f);
    EXPECT_EQ(log, (Log{"A", "L"}));
}

TEST(CameraEventTest, NestedNotificationsKeepEachWalkConsistent)
{
    TestCamera camera(800, 600);
    Log log;
    RecordingHandler a("A", &log);
    RecordingHandler b("B", &log);
    RecordingHandler c("C", &log);
    camera.RegisterEventHandler(&a);
    camera.RegisterEventHandler(&b);
    camera.RegisterEventHandler(&c);
    int depth = 0;
    // During the outer walk, B notifies again and the inner walk removes B.
    b.onEvent = [&] {
        if (depth++ == 0)
        {
            camera.SetTranslation(1.0f, 1.0f);
        }
        else
        {
            camera.UnregisterEventHandler(&b);
        }
    };
    camera.SetScale(2.0f);
    // outer: A, B -> inner: A, B(unregisters), C -> outer continues: C
    EXPECT_EQ(log, (Log{"A", "B", "A", "B", "C", "C"}));
}

TEST(CameraEventTest, HandlerExceptionPassesThroughAndStopsTheWalk)
{
    TestCamera camera(800, 600);
    Log log;
    RecordingHandler a("A", &log);
    RecordingHandler b("B", &log);
    camera.RegisterEventHandler(&a);
    camera.RegisterEventHandler(&b);
    a.onEvent = [] { throw std::runtime_error("handler failed"); };
    EXPECT_THROW(camera.SetScale(2.0f), std::runtime_error);
    EXPECT_EQ(log, (Log{"A"}));
    EXPECT_EQ(camera.GetScale(), 2.0f);

    // The aborted walk left nothing behind: removals and later walks work.
    a.onEvent = nullptr;
    EXPECT_TRUE(camera.UnregisterEventHandler(&a));
    log.clear();
    camera.SetScale(3.0f);
    EXPECT_EQ(log, (Log{"B"}));
}

TEST(CameraEventTest, HandlersSeeTheStateOfTheFinishedStep)
{
    TestCamera camera(800, 600);
    RecordingHandler handler;
    camera.RegisterEventHandler(&handler);

    // ZoomAll recomputes the bounds before it notifies.
    float rightSeen = 0.0f;
    handler.onEvent = [&] {
        float l;
        int w;
        camera.GetWidthParametersDirect(l, rightSeen, w);
    };
    camera.ZoomAll(0.0f, 10.0f, 0.0f, 10.0f, 0.0f, 10.0f);
    EXPECT_EQ(rightSeen, 800.0f * 0.5f * camera.GetScale());

    // The last smooth step is notified as the last one.
    camera.SetSmoothRotateFrames(2);
    camera.SetRotateMatrixToFrontView(true);
    std::vector<bool> rotatingSeen;
    handler.onEvent = [&] { rotatingSeen.push_back(camera.IsSmoothRotate()); };
    camera.SmoothRotateImpl();
    camera.SmoothRotateImpl();
    EXPECT_EQ(rotatingSeen, (std::vector<bool>{true, false}));

    // A six-sides step is notified after the frame advanced.
    camera.SetSixSidesInspectionSidePauses(0, false);
    camera.SetSixSidesInspection(true, false);
    std::vector<int> framesSeen;
    handler.onEvent = [&] { framesSeen.push_back(camera.SixSidesCurrentFrame()); };
    camera.SixSidesInspectionImpl();
    camera.SixSidesInspectionImpl();
    EXPECT_EQ(framesSeen, (std::vector<int>{1, 2}));
}

} // namespace
