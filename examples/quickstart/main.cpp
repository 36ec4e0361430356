// A console host: one camera for an 800 x 600 window, fitted to a model's
// bounding box, turned and scaled, with an observer that prints each
// notification. It prints the world-to-view matrix and where the corners of
// the box land in the window.
#include "Engine/Camera.h"
#include "Engine/CameraEventHandler.h"
#include "MathKit/Matrix4.h"
#include "MathKit/Vector3.h"
#include "null/NullBackend.h"

#include <cstdio>

namespace
{

using KesraEngine::IKesraCameraEventHandler;
using Matrix = KesraMathKit::TKesraMatrix4<double>;
using Vector = KesraMathKit::TKesraVector3<double>;

class PrintingObserver : public IKesraCameraEventHandler
{
public:
    void OnRotateMatUpdate(const Matrix& rotation) override
    {
        std::printf("  observer: rotation changed, first column (%.4f, %.4f, %.4f)\n",
                    rotation[0], rotation[1], rotation[2]);
    }

    void OnTranslateUpdate(float x, float y) override
    {
        std::printf("  observer: translation changed to (%g, %g)\n", x, y);
    }

    void OnScaleUpdate(float scale) override
    {
        std::printf("  observer: scale changed to %g model units per pixel\n", scale);
    }

    void OnTransformUpdate(const Matrix&, float x, float y, float scale) override
    {
        std::printf("  observer: transform replaced: translation (%g, %g), scale %g\n", x, y, scale);
    }
};

void PrintMatrix(const Matrix& m)
{
    for (int r = 0; r < 4; ++r)
    {
        std::printf("  | %10.4f %10.4f %10.4f %10.4f |\n", m(r, 0), m(r, 1), m(r, 2), m(r, 3));
    }
}

} // namespace

int main()
{
    // A console has no graphics interface to load matrices into and no mouse
    // to follow: the null backend's camera, whose drawing operations do
    // nothing, is all it needs.
    KesraNull::CNullCamera camera(800, 600);
    PrintingObserver observer;
    camera.RegisterEventHandler(&observer);

    // The bounding box of a small part: 120 x 80 x 40 model units.
    const float box[6] = {-60.0f, 60.0f, -40.0f, 40.0f, 0.0f, 40.0f};

    std::printf("ZoomAll on the model's bounding box:\n");
    camera.ZoomAll(box);

    std::printf("Turn to the isometric view:\n");
    camera.SetRotateMatrixToISOView(false);

    std::printf("Zoom in by a tenth:\n");
    camera.SetScale(camera.GetScale() * 0.9f);

    std::printf("Shift the picture:\n");
    camera.SetTranslation(4.0f, -2.0f);

    std::printf("\nWorld-to-view matrix (model units to window pixels, y up):\n");
    PrintMatrix(camera.GetWorldToViewMatrix());

    std::printf("\nProjected corners of the box (pixel x, pixel y, view depth):\n");
    for (int corner = 0; corner < 8; ++corner)
    {
        const Vector model(box[(corner & 1) ? 1 : 0], box[(corner & 2) ? 3 : 2],
                           box[(corner & 4) ? 5 : 4]);
        Vector window;
        camera.ProjectPointWorldToView(model, window);
        std::printf("  (%6.1f, %6.1f, %5.1f) -> (%8.2f, %8.2f, %8.2f)\n", model.x, model.y,
                    model.z, window.x, window.y, window.z);
    }

    camera.UnregisterEventHandler(&observer);
    return 0;
}
