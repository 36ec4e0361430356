// A host of the OpenGL backend component: it draws one frame headless through
// EGL with the installed backend and checks the background's bytes.
#include "gl/EglContext.h"
#include "gl/GlCamera.h"
#include "gl/GlRenderer.h"

#include <cstdio>

int main()
{
    KesraGl::CEglContext context;
    KesraGl::CGlCamera camera(64, 48);
    KesraGl::CGlRenderer renderer(64, 48, context);
    renderer.SetCamera(&camera);
    if (!renderer.CreateContext())
    {
        std::fprintf(stderr, "gl-host: %s\n", renderer.LastError().c_str());
        return 1;
    }
    renderer.SetBackgroundColor({10, 20, 30, 255});
    renderer.SetGradient(0);
    // The default title would reach the middle of a window this small.
    renderer.SetName("");
    renderer.Render();
    unsigned char rgba[4] = {0, 0, 0, 0};
    if (!renderer.ReadPixels(32, 24, 1, 1, rgba) || rgba[0] != 10 || rgba[1] != 20 || rgba[2] != 30)
    {
        std::fprintf(stderr, "gl-host: background reads %d %d %d\n", rgba[0], rgba[1], rgba[2]);
        return 1;
    }
    std::printf("gl-host: background (%d, %d, %d)\n", rgba[0], rgba[1], rgba[2]);
    return 0;
}
