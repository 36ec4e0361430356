// A host built against KesraEngine the way a user builds one: through the
// installed CMake package, through pkg-config, or from the source tree. It
// colours a value through the legend and projects a point through the null
// backend's camera (so the installed null backend must compile too), and
// checks both answers, so that a package which compiles but links the
// wrong library or loses a compile flag still fails.
#include "Engine/Camera.h"
#include "Engine/ColorMap.h"
#include "Engine/ScalarBar.h"
#include "null/NullBackend.h"

#include <cstdio>
#include <vector>

namespace
{

bool Check(bool ok, const char* what)
{
    if (!ok)
        std::fprintf(stderr, "host: wrong %s\n", what);
    return ok;
}

}  // namespace

int main()
{
    // Value 1 of the range 0 ... 4 sits on the red-blue palette's second
    // stop, pure yellow; 2 on its third, pure green.
    KesraEngine::CKesraScalarBar legend;
    legend.SetValueRange(0.0, 4.0, false, false);
    unsigned char r = 0, g = 0, b = 0;
    const int inside = legend.GetOpenGLColor(r, g, b, 1.0);
    bool ok = Check(inside == 0 && r == 255 && g == 255 && b == 0, "colour of 1");
    unsigned char over[3] = {0, 0, 0};
    const int above = legend.GetOpenGLColor(over[0], over[1], over[2], 5.0);
    ok = Check(above == 1, "code above the range") && ok;
    // The edges a backend labels the legend's blocks with.
    const std::vector<double> edges = KesraEngine::ColorBlockEdges(0.0, 4.0, 4);
    ok = Check(edges == std::vector<double>{0.0, 1.0, 2.0, 3.0, 4.0}, "block edges") && ok;

    // The centre of the fitted box lands in the middle of the window.
    // This host only asks for projections: the null backend's camera, whose
    // drawing operations do nothing, is enough.
    KesraNull::CNullCamera camera(800, 600);
    camera.ZoomAll(-1.0f, 1.0f, -2.0f, 2.0f, -3.0f, 3.0f);
    KesraMathKit::TKesraVector3<double> pixel;
    camera.ProjectPointWorldToView({0.0, 0.0, 0.0}, pixel);
    ok = Check(pixel.x == 400.0 && pixel.y == 300.0, "projected centre") && ok;
    // Unrotated, +x runs to the right and +y up the window, at one scale.
    KesraMathKit::TKesraVector3<double> right, up;
    camera.ProjectPointWorldToView({1.0, 0.0, 0.0}, right);
    camera.ProjectPointWorldToView({0.0, 1.0, 0.0}, up);
    ok = Check(right.x > 400.0 && right.y == 300.0 && up.x == 400.0 &&
                   up.y - 300.0 == right.x - 400.0,
               "projected axes") && ok;

    if (ok)
        std::printf("host: colour (%d, %d, %d), centre at (%g, %g)\n", r, g, b, pixel.x, pixel.y);
    return ok ? 0 : 1;
}
