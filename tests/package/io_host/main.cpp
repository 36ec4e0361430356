// A host of the reader component: it reads a two-line legacy file held in
// memory with the installed reader and checks what came out.
#include "KesraIo/Reader.h"

#include <cstdio>

int main()
{
    const char* file = "# vtk DataFile Version 3.0\n"
                       "io-host\n"
                       "ASCII\n"
                       "DATASET POLYDATA\n"
                       "POINTS 3 float\n"
                       "0 0 0 1 0 0 2 1 0\n"
                       "LINES 1 4\n"
                       "3 0 1 2\n"
                       "POINT_DATA 3\n"
                       "SCALARS speed float 1\n"
                       "LOOKUP_TABLE default\n"
                       "1 2 3\n";
    try
    {
        const KesraIo::PolyData data = KesraIo::ParseLegacy(file, "io-host.vtk");
        if (data.PointCount() != 3 || data.LineCount() != 1 || data.activeScalars != "speed")
        {
            std::fprintf(stderr, "io-host: read %zu points and %zu lines\n", data.PointCount(),
                         data.LineCount());
            return 1;
        }
    }
    catch (const KesraIo::ReadError& error)
    {
        std::fprintf(stderr, "io-host: %s\n", error.what());
        return 1;
    }
    std::printf("io-host: 3 points, 1 line, scalars 'speed'\n");
    return 0;
}
