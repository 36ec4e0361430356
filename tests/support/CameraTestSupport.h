// Shared helpers of the camera tests: a handler that records every
// notification, and matrix comparison.
#pragma once

#include "Engine/CameraEventHandler.h"
#include "MathKit/Matrix4.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <tuple>
#include <vector>

namespace KesraTest
{

struct CameraEvent
{
    std::string kind;  // "rotate", "translate", "scale" or "transform"
    KesraMathKit::TKesraMatrix4<double> rotation;
    const KesraMathKit::TKesraMatrix4<double>* rotationAddress = nullptr;
    float translationX = 0.0f;
    float translationY = 0.0f;
    float scale = 0.0f;

    // Kind, translation and scale, to compare in one line.
    std::tuple<std::string, float, float, float> Args() const
    {
        return {kind, translationX, translationY, scale};
    }
};

// Records each notification, optionally into a log shared with other
// recorders (to check the order across handlers), and can run an action from
// inside the notification.
class RecordingHandler : public KesraEngine::IKesraCameraEventHandler
{
public:
    explicit RecordingHandler(std::string name = {}, std::vector<std::string>* sharedLog = nullptr)
        : m_name(std::move(name)), m_sharedLog(sharedLog) {}

    void OnRotateMatUpdate(const KesraMathKit::TKesraMatrix4<double>& rotation) override
    {
        Record({"rotate", rotation, &rotation});
    }

    void OnTranslateUpdate(float x, float y) override
    {
        Record({"translate", {}, nullptr, x, y});
    }

    void OnScaleUpdate(float scale) override
    {
        Record({"scale", {}, nullptr, 0.0f, 0.0f, scale});
    }

    void OnTransformUpdate(const KesraMathKit::TKesraMatrix4<double>& rotation, float x, float y,
                           float scale) override
    {
        Record({"transform", rotation, &rotation, x, y, scale});
    }

    std::vector<CameraEvent> events;
    std::function<void()> onEvent;

private:
    void Record(const CameraEvent& event)
    {
        events.push_back(event);
        if (m_sharedLog != nullptr)
        {
            m_sharedLog->push_back(m_name);
        }
        if (onEvent)
        {
            onEvent();
        }
    }

    std::string m_name;
    std::vector<std::string>* m_sharedLog;
};

inline void ExpectVecNear(const KesraMathKit::TKesraVector3<double>& expected,
                          const KesraMathKit::TKesraVector3<double>& actual, double tolerance)
{
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
    EXPECT_NEAR(actual.z, expected.z, tolerance);
}

inline void ExpectMatrixNear(const KesraMathKit::TKesraMatrix4<double>& expected,
                             const KesraMathKit::TKesraMatrix4<double>& actual, double tolerance)
{
    for (int k = 0; k < 16; ++k)
    {
        EXPECT_NEAR(expected[k], actual[k], tolerance) << "element " << k;
    }
}

} // namespace KesraTest
