// The camera with observers and both animations. After every step: the scale
// is usable, every registered observer has heard the same notifications and
// no other has, registration answers as the list says, a query of the view
// matrix clears the modified flag, the animations end when their frames say,
// and a copy equals its original.
#include "FuzzInput.h"

#include "support/TestDoubles.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace
{

using KesraFuzz::FuzzInput;
using KesraFuzz::OperationClock;
using KesraFuzz::Require;
using KesraTest::TestCamera;
using Mat = KesraMathKit::TKesraMatrix4<double>;
using Vec = KesraMathKit::TKesraVector3<double>;

class CountingHandler : public KesraEngine::IKesraCameraEventHandler
{
public:
    void OnRotateMatUpdate(const Mat&) override { ++calls; }
    void OnTranslateUpdate(float, float) override { ++calls; }
    void OnScaleUpdate(float) override { ++calls; }
    void OnTransformUpdate(const Mat&, float, float, float) override { ++calls; }

    long calls = 0;
};

constexpr int kHandlers = 4;

struct Observers
{
    CountingHandler handlers[kHandlers];
    std::vector<int> registered; // in registration order
    long seen[kHandlers] = {};

    bool IsRegistered(int i) const
    {
        return std::find(registered.begin(), registered.end(), i) != registered.end();
    }

    // Handler index kHandlers stands for the null pointer.
    KesraEngine::IKesraCameraEventHandler* Pointer(int i)
    {
        return i < kHandlers ? &handlers[i] : nullptr;
    }

    void CheckHeardAlike()
    {
        long heard = -1;
        for (int i = 0; i < kHandlers; ++i)
        {
            const long now = handlers[i].calls - seen[i];
            seen[i] = handlers[i].calls;
            if (!IsRegistered(i))
            {
                Require(now == 0, "an unregistered observer hears nothing");
                continue;
            }
            Require(heard < 0 || heard == now, "registered observers hear alike");
            heard = now;
        }
    }
};

Mat ReadMatrix(FuzzInput& in)
{
    Mat m = Mat::IDENTITY;
    const int entries = in.Choice(17);
    for (int e = 0; e < entries; ++e)
    {
        m[in.Byte() % 16] = in.Double();
    }
    return m;
}

void StandardView(TestCamera& camera, int which, bool smooth)
{
    switch (which)
    {
    case 0: camera.SetRotateMatrixToFrontView(smooth); break;
    case 1: camera.SetRotateMatrixToBackView(smooth); break;
    case 2: camera.SetRotateMatrixToLeftView(smooth); break;
    case 3: camera.SetRotateMatrixToRightView(smooth); break;
    case 4: camera.SetRotateMatrixToTopView(smooth); break;
    case 5: camera.SetRotateMatrixToBottomView(smooth); break;
    default: camera.SetRotateMatrixToISOView(smooth); break;
    }
}

void RunSmoothRotation(TestCamera& camera)
{
    const int frames = camera.GetSmoothRotateFrames();
    if (frames > 500)
    {
        camera.SmoothRotateImpl();
        return;
    }
    int steps = 0;
    while (camera.IsSmoothRotate() && steps <= frames)
    {
        camera.SmoothRotateImpl();
        ++steps;
    }
    Require(!camera.IsSmoothRotate(), "a smooth rotation ends within its frames");
}

void RunSixSides(TestCamera& camera, int steps)
{
    const bool on = camera.IsSixSidesInspection();
    for (int i = 0; i < steps; ++i)
    {
        Require(camera.SixSidesInspectionImpl() == on, "a tour step answers whether it is on");
        for (int phase = 0; phase < 6; ++phase)
        {
            const double angle = camera.SixSidesPhaseAngle(phase);
            Require(!on || (angle >= 0.0 && angle <= 90.0), "a tour angle stays within 0 ... 90");
        }
        Require(camera.SixSidesCurrentFrame() <= camera.SixSidesCycleFrames(),
                "the tour stays within its cycle");
    }
}

void Step(TestCamera& camera, Observers& observers, FuzzInput& in)
{
    switch (in.Choice(22))
    {
    case 0:
    {
        const int i = in.Choice(kHandlers + 1);
        const bool expected = i < kHandlers && !observers.IsRegistered(i);
        Require(camera.RegisterEventHandler(observers.Pointer(i)) == expected,
                "registration answers as the list holds");
        if (expected)
        {
            observers.registered.push_back(i);
        }
        break;
    }
    case 1:
    {
        const int i = in.Choice(kHandlers + 1);
        const bool expected = i < kHandlers && observers.IsRegistered(i);
        Require(camera.UnregisterEventHandler(observers.Pointer(i)) == expected,
                "unregistration answers as the list holds");
        observers.registered.erase(
            std::remove(observers.registered.begin(), observers.registered.end(), i),
            observers.registered.end());
        break;
    }
    case 2:
    {
        const int width = in.Int();
        camera.SetWindowSize(width, in.Int());
        break;
    }
    case 3: camera.SetScale(in.Float()); break;
    case 4: camera.SetScaleNoEventHandler(in.Float()); break;
    case 5:
    {
        const float x = in.Float();
        in.Bool() ? camera.SetTranslation(x, in.Float())
                  : camera.SetTranslationNoEventHandler(x, in.Float());
        break;
    }
    case 6:
    {
        const float x = in.Float();
        const float y = in.Float();
        camera.SetRotateCenter(x, y, in.Float());
        break;
    }
    case 7:
    {
        float box[6];
        for (float& v : box)
        {
            v = in.Float();
        }
        camera.ZoomAll(box);
        break;
    }
    case 8:
        in.Bool() ? camera.SetRotateMatrix(ReadMatrix(in))
                  : camera.SetRotateMatrixNoEventHandler(ReadMatrix(in));
        break;
    case 9:
    {
        const Mat m = ReadMatrix(in);
        const float x = in.Float();
        const float y = in.Float();
        camera.SetTransformNoEventHandler(m, x, y, in.Float());
        break;
    }
    case 10:
    {
        const double a = in.Double();
        const double b = in.Double();
        camera.SetRotateAngle(a, b, in.Double());
        double ra = 0, rb = 0, rc = 0;
        camera.GetRotateAngle(ra, rb, rc);
        break;
    }
    case 11:
    {
        const int which = in.Choice(7);
        StandardView(camera, which, in.Bool());
        break;
    }
    case 12:
    {
        camera.GetWorldToViewMatrix();
        Require(camera.GetModified() == 0, "the view matrix query clears the modified flag");
        break;
    }
    case 13:
    {
        float point[3] = {in.Float(), in.Float(), in.Float()};
        float out[3];
        camera.ProjectPointWorldToView(point, out);
        Vec projected;
        camera.ProjectPointWorldToView(Vec{in.Double(), in.Double(), in.Double()}, projected);
        Require(camera.GetModified() == 0, "a projection clears the modified flag");
        break;
    }
    case 14: camera.SetSmoothRotateFrames(in.Int()); break;
    case 15: RunSmoothRotation(camera); break;
    case 16:
    {
        const bool on = in.Bool();
        camera.SetSixSidesInspection(on, in.Bool());
        break;
    }
    case 17:
    {
        const int frames = in.Int();
        camera.SetSixSidesInspectionSideFrames(frames, in.Bool());
        break;
    }
    case 18:
    {
        const int pauses = in.Int();
        camera.SetSixSidesInspectionSidePauses(pauses, in.Bool());
        Require(camera.GetSixSidesInspectionTotalFrames() >= camera.SixSidesCycleFrames(),
                "the tour lasts at least its cycle");
        break;
    }
    case 19: RunSixSides(camera, 1 + in.Byte() % 64); break;
    case 20:
    {
        float v[6];
        camera.GetParameters(v[0], v[1], v[2], v[3], v[4], v[5]);
        camera.NotifyTransformUpdateInterface();
        (void)camera.GetCameraLookAt();
        (void)camera.IsSixSidesInspectionCycleDone();
        break;
    }
    default:
    {
        // A copy equals its original, both ways of copying; the copy keeps
        // the observers, so notifications from it reach the same ones.
        KesraFuzz::RequireCopiesEqual(camera, TestCamera(1, 1), "copies of a camera equal their original");
        TestCamera(camera).NotifyTransformUpdateInterface();
        break;
    }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzInput in(data, size);
    Observers observers;
    TestCamera camera(in.Int(), in.Int());
    while (!in.Empty())
    {
        {
            OperationClock clock("camera operation");
            Step(camera, observers, in);
        }
        const float scale = camera.GetScale();
        Require(std::isfinite(scale) && scale > 0.0f, "the scale stays usable");
        Require(camera.GetSmoothRotateFrames() > 0, "the smooth rotation has frames");
        observers.CheckHeardAlike();
    }
    return 0;
}
