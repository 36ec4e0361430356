// Writes the small test scene's SVG to the file named by its one argument,
// for the XML check.
#include "support/SvgScene.h"

#include <fstream>

int main(int argc, char** argv)
{
    if (argc != 2)
    {
        return 2;
    }
    KesraTest::SmallSvgScene scene;
    std::ofstream(argv[1], std::ios::binary) << scene.Render();
    return 0;
}
