// Shared helpers of the camera tests: a handler that records every
// notification, and matrix comparison.
#pragma once

#include "Engine/CameraEventHandler.h"
#include "MathKit/Matrix4.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
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
        CameraEvent event;
        event.kind = "rotate";
        event.rotation = rotation;
        event.rotationAddress = &rotation;
        Record(event);
    }

    void OnTranslateUpdate(float x, float y) override
    {
        CameraEvent event;
        event.kind = "translate";
        event.translationX = x;
        event.translationY = y;
        Record(event);
    }

    void OnScaleUpdate(float scale) override
    {
        CameraEvent event;
        event.kind = "scale";
        event.scale = scale;
        Record(event);
    }

    void OnTransformUpdate(const KesraMathKit::TKesraMatrix4<double>& rotation, float x, float y,
                           float scale) override
    {
        CameraEvent event;
        event.kind = "transform";
        event.rotation = rotation;
        event.rotationAddress = &rotation;
        event.translationX = x;
        event.translationY = y;
        event.scale = scale;
        Record(event);
    }

    int Count(const std::string& kind) const
    {
        int count = 0;
        for (const CameraEvent& event : events)
        {
            count += (event.kind == kind) ? 1 : 0;
        }
        return count;
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

inline void ExpectMatrixNear(const KesraMathKit::TKesraMatrix4<double>& expected,
                             const KesraMathKit::TKesraMatrix4<double>& actual, double tolerance)
{
    for (int k = 0; k < 16; ++k)
    {
        EXPECT_NEAR(expected[k], actual[k], tolerance) << "element " << k;
    }
}

} // namespace KesraTest
