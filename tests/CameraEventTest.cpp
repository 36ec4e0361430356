#include "Engine/Camera.h"
#include "support/CameraTestSupport.h"
#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

namespace
{

using KesraTest::RecordingHandler;
using KesraTest::TestCamera;
using Matrix = KesraMathKit::TKesraMatrix4<double>;
using Log = std::vector<std::string>;

// A camera with four named handlers that log into one shared log.
class CameraEventTest : public ::testing::Test
{
protected:
    void Register(std::initializer_list<RecordingHandler*> handlers)
    {
        for (RecordingHandler* handler : handlers)
        {
            ASSERT_TRUE(camera.RegisterEventHandler(handler));
        }
    }

    TestCamera camera{800, 600};
    Log log;
    RecordingHandler a{"A", &log};
    RecordingHandler b{"B", &log};
    RecordingHandler c{"C", &log};
    RecordingHandler d{"D", &log};
};

TEST_F(CameraEventTest, RegistrationRefusesNullDuplicatesAndStrangersAndKeepsTheOrder)
{
    EXPECT_FALSE(camera.RegisterEventHandler(nullptr));
    EXPECT_FALSE(camera.UnregisterEventHandler(nullptr));
    EXPECT_TRUE(camera.RegisterEventHandler(&a));
    EXPECT_FALSE(camera.RegisterEventHandler(&a));
    EXPECT_FALSE(camera.UnregisterEventHandler(&b));
    camera.SetScale(2.0f);
    EXPECT_EQ(log, (Log{"A"}));

    EXPECT_TRUE(camera.UnregisterEventHandler(&a));
    EXPECT_FALSE(camera.UnregisterEventHandler(&a));
    camera.SetScale(3.0f);
    EXPECT_EQ(log, (Log{"A"}));
    log.clear();

    // Handlers are called in registration order; re-registering appends.
    Register({&a, &b, &c});
    camera.SetTranslation(1.0f, 2.0f);
    EXPECT_TRUE(camera.UnregisterEventHandler(&b));
    camera.SetTranslation(3.0f, 4.0f);
    camera.RegisterEventHandler(&b);
    camera.NotifyTransformUpdateInterface();
    EXPECT_EQ(log, (Log{"A", "B", "C", "A", "C", "A", "C", "B"}));
}

TEST_F(CameraEventTest, EachSetterSendsItsNotificationWithCurrentState)
{
    Register({&a});
    Matrix rotation;
    rotation.MakeRotation(20.0, 0.0, 0.0, 1.0);
    camera.SetRotateMatrix(rotation);
    camera.SetTranslation(5.0f, -6.0f);
    camera.SetScale(0.5f);
    camera.ZoomAll(0.0f, 2.0f, 0.0f, 2.0f, 0.0f, 1.0f);

    const auto& events = a.events;
    ASSERT_EQ(events.size(), 4u);
    EXPECT_EQ(events[0].kind, "rotate");
    EXPECT_EQ(events[0].rotation, rotation);
    // The matrix is passed as the camera's own field, not a copy.
    EXPECT_EQ(events[0].rotationAddress, &camera.GetRotateMatrix());
    EXPECT_EQ(events[1].Args(), std::make_tuple("translate", 5.0f, -6.0f, 0.0f));
    EXPECT_EQ(events[2].Args(), std::make_tuple("scale", 0.0f, 0.0f, 0.5f));
    EXPECT_EQ(events[3].Args(), std::make_tuple("transform", 0.0f, 0.0f, camera.GetScale()));
    EXPECT_EQ(events[3].rotationAddress, &camera.GetRotateMatrix());

    // The protected notifications send the fields as they stand.
    camera.SetTranslationNoEventHandler(7.0f, 8.0f);
    camera.SetScaleNoEventHandler(9.0f);
    camera.NotifyRotateMatUpdate();
    camera.NotifyTranslateUpdate();
    camera.NotifyScaleUpdate();
    camera.NotifyTransformUpdate();
    ASSERT_EQ(events.size(), 8u);
    EXPECT_EQ(events[4].kind, "rotate");
    EXPECT_EQ(events[5].Args(), std::make_tuple("translate", 7.0f, 8.0f, 0.0f));
    EXPECT_EQ(events[6].Args(), std::make_tuple("scale", 0.0f, 0.0f, 9.0f));
    EXPECT_EQ(events[7].Args(), std::make_tuple("transform", 7.0f, 8.0f, 9.0f));
}

TEST_F(CameraEventTest, SilentOperationsNotifyNobodyUntilAskedOnce)
{
    Register({&a});
    camera.SetRotateMatrixNoEventHandler(Matrix::IDENTITY);
    camera.SetScaleNoEventHandler(2.0f);
    camera.SetTranslationNoEventHandler(1.0f, 1.0f);
    camera.SetTransformNoEventHandler(Matrix::IDENTITY, 0.0f, 0.0f, 2.0f);
    camera.SetWindowSize(100, 100);
    camera.SetRotateCenter(1.0f, 2.0f, 3.0f);
    camera.SetName("Silent");
    camera.UpdateViewPortParameters();
    camera.SetSmoothRotateFrames(7);
    camera.SetSixSidesInspection(true, true);
    camera.SetSixSidesInspectionSideFrames(4, true);
    camera.SetSixSidesInspectionSidePauses(2, true);
    camera.SetRotateMatrixToFrontView(true);
    EXPECT_TRUE(a.events.empty());

    camera.NotifyTransformUpdateInterface();
    ASSERT_EQ(a.events.size(), 1u);
    EXPECT_EQ(a.events[0].Args(), std::make_tuple("transform", 0.0f, 0.0f, 2.0f));
}

TEST_F(CameraEventTest, HandlersSeeTheStateOfTheFinishedStep)
{
    Register({&a});
    std::vector<int> modifiedSeen;
    float rightSeen = 0.0f;
    a.onEvent = [&] {
        modifiedSeen.push_back(camera.GetModified());
        float left;
        int width;
        camera.GetWidthParametersDirect(left, rightSeen, width);
    };
    const auto change = [&](const std::function<void()>& step) {
        camera.GetWorldToViewMatrix();
        step();
    };
    change([&] { camera.SetRotateMatrix(Matrix::IDENTITY); });
    change([&] { camera.SetTranslation(1.0f, 0.0f); });
    change([&] { camera.SetRotateAngle(1.0, 2.0, 3.0); });
    change([&] { camera.SetScale(2.0f); });
    EXPECT_EQ(rightSeen, 800.0f);  // bounds recomputed before notifying
    change([&] { camera.ZoomAll(0.0f, 10.0f, 0.0f, 10.0f, 0.0f, 10.0f); });
    EXPECT_EQ(rightSeen, 800.0f * 0.5f * camera.GetScale());
    EXPECT_EQ(modifiedSeen, (std::vector<int>{1, 1, 1, 1, 1}));

    // The last smooth step is notified as the last one.
    camera.SetSmoothRotateFrames(2);
    camera.SetRotateMatrixToFrontView(true);
    std::vector<bool> rotatingSeen;
    a.onEvent = [&] { rotatingSeen.push_back(camera.IsSmoothRotate()); };
    camera.SmoothRotateImpl();
    camera.SmoothRotateImpl();
    EXPECT_EQ(rotatingSeen, (std::vector<bool>{true, false}));

    // A six-sides step is notified after the frame advanced.
    camera.SetSixSidesInspectionSidePauses(0, false);
    camera.SetSixSidesInspection(true, false);
    std::vector<int> framesSeen;
    a.onEvent = [&] { framesSeen.push_back(camera.SixSidesCurrentFrame()); };
    camera.SixSidesInspectionImpl();
    camera.SixSidesInspectionImpl();
    EXPECT_EQ(framesSeen, (std::vector<int>{1, 2}));
}

TEST_F(CameraEventTest, HandlerChangingTheCameraSilentlyChangesWhatLaterHandlersSee)
{
    Register({&a, &b});
    Matrix turned;
    turned.MakeRotation(90.0, 1.0, 0.0, 0.0);
    a.onEvent = [&] {
        camera.SetScaleNoEventHandler(8.0f);
        camera.SetTranslationNoEventHandler(-1.0f, -2.0f);
        camera.SetRotateMatrixNoEventHandler(turned);
    };
    camera.NotifyTransformUpdateInterface();
    EXPECT_EQ(a.events[0].Args(), std::make_tuple("transform", 0.0f, 0.0f, 1.0f));
    EXPECT_EQ(a.events[0].rotation, Matrix::IDENTITY);
    EXPECT_EQ(b.events[0].Args(), std::make_tuple("transform", -1.0f, -2.0f, 8.0f));
    EXPECT_EQ(b.events[0].rotation, turned);
}

TEST_F(CameraEventTest, ChangesToTheListDuringAWalkSkipOnlyTheRemovedAndWaitForTheNextWalk)
{
    Register({&a, &b, &c, &d});
    // B removes itself, one handler already called (A) and one not yet (C),
    // and registers A again: A is called from the next walk on, after D.
    b.onEvent = [&] {
        camera.UnregisterEventHandler(&b);
        camera.UnregisterEventHandler(&a);
        camera.UnregisterEventHandler(&c);
        camera.RegisterEventHandler(&a);
    };
    camera.SetScale(2.0f);
    EXPECT_EQ(log, (Log{"A", "B", "D"}));
    camera.SetScale(3.0f);
    EXPECT_EQ(log, (Log{"A", "B", "D", "D", "A"}));
}

TEST_F(CameraEventTest, NestedNotificationsKeepEachWalkConsistent)
{
    Register({&a, &b, &c});
    int depth = 0;
    // During the outer walk B notifies again, and the inner walk removes B.
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
    // outer: A, B -> inner: A, B (unregisters), C -> outer goes on: C
    EXPECT_EQ(log, (Log{"A", "B", "A", "B", "C", "C"}));
}

TEST_F(CameraEventTest, HandlerExceptionPassesThroughAndStopsTheWalk)
{
    Register({&a, &b});
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

} // namespace
