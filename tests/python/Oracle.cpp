// kesra-python-oracle: the C++ side of the Python module's tests. Each
// command answers, through the library's single queries and the reader, what
// the module's batch over numpy arrays must equal, in raw native-endian files
// that the tests read with numpy.
//
//   colors IN OUT MIN MAX PALETTE BLOCKS INVERSE FILL R G B SINGLE SMOOTH
//       IN doubles; OUT per value red, green, blue and the code (a signed byte)
//   project IN OUT W H X0 X1 Y0 Y1 Z0 Z1 A B C FLOAT
//       IN and OUT x, y, z per point, doubles, or floats when FLOAT is 1
//   tube IN OUT SIDES RADIUS
//       IN x, y, z doubles per node; OUT every ring vertex, then every normal
//   ruler PIXELS_PER_UNIT WINDOW_WIDTH START_X WIDTH_SCALE AUTO
//       prints length, pixel width and blocks
//   read FILE OUT
//       OUT.txt lists what OUT.<part> files hold
//   png FILE OUT
//       OUT the RGBA rows, top row first; prints width and height
#include "PngFile.h"
#include "common/Palette.h"
#include "KesraIo/Reader.h"
#include "support/TestDoubles.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

namespace
{

using Args = std::vector<std::string>;

template <class T>
std::vector<T> ReadRaw(const std::string& path)
{
    std::ifstream in(path, std::ios::binary | std::ios::ate);
    std::vector<T> data(static_cast<std::size_t>(in.tellg()) / sizeof(T));
    in.seekg(0);
    in.read(reinterpret_cast<char*>(data.data()), static_cast<std::streamsize>(data.size() * sizeof(T)));
    return data;
}

template <class T>
void WriteRaw(const std::string& path, const std::vector<T>& data)
{
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(data.data()), static_cast<std::streamsize>(data.size() * sizeof(T)));
}

int Colors(const Args& a)
{
    KesraTest::TestScalarBar bar;
    bar.Create(1, 1, 0, 0);
    bar.SetValueRange(std::stod(a[2]), std::stod(a[3]), true, true);
    for (const KesraBackend::NamedPalette& entry : KesraBackend::kPalettes)
    {
        if (a[4] == entry.name)
        {
            KesraBackend::LoadPalette(bar, entry.value);
        }
    }
    const int blocks = std::stoi(a[5]);
    bar.SetBlockNum(blocks == 0 ? 8 : blocks);
    bar.SetBanded(blocks == 0 ? 0 : 1);
    bar.SetInverse(std::stoi(a[6]));
    bar.SetFillAllRange(std::stoi(a[7]));
    bar.SetSingleColor(static_cast<unsigned char>(std::stoi(a[8])), static_cast<unsigned char>(std::stoi(a[9])),
                       static_cast<unsigned char>(std::stoi(a[10])));
    bar.SetUseSignleColor(std::stoi(a[11]));
    const bool smooth = a[12] == "1";
    std::vector<unsigned char> out;
    for (const double value : ReadRaw<double>(a[0]))
    {
        unsigned char rgb[3];
        const int code = smooth ? bar.GetOpenGLColorByValue(rgb[0], rgb[1], rgb[2], value)
                                : bar.GetOpenGLColor(rgb[0], rgb[1], rgb[2], value);
        out.insert(out.end(), {rgb[0], rgb[1], rgb[2], static_cast<unsigned char>(static_cast<signed char>(code))});
    }
    WriteRaw(a[1], out);
    return 0;
}

template <class T>
void ProjectEach(KesraTest::TestCamera& camera, const Args& a)
{
    std::vector<T> points = ReadRaw<T>(a[0]);
    for (std::size_t i = 0; i + 2 < points.size(); i += 3)
    {
        if constexpr (std::is_same_v<T, float>)
        {
            float in[3] = {points[i], points[i + 1], points[i + 2]};
            camera.ProjectPointWorldToView(in, &points[i]);
        }
        else
        {
            KesraMathKit::TKesraVector3<double> out;
            camera.ProjectPointWorldToView({points[i], points[i + 1], points[i + 2]}, out);
            points[i] = out.x;
            points[i + 1] = out.y;
            points[i + 2] = out.z;
        }
    }
    WriteRaw(a[1], points);
}

int Project(const Args& a)
{
    KesraTest::TestCamera camera(std::stoi(a[2]), std::stoi(a[3]));
    camera.ZoomAll(std::stof(a[4]), std::stof(a[5]), std::stof(a[6]), std::stof(a[7]), std::stof(a[8]),
                   std::stof(a[9]));
    camera.SetRotateAngle(std::stod(a[10]), std::stod(a[11]), std::stod(a[12]));
    if (a[13] == "1")
    {
        ProjectEach<float>(camera, a);
    }
    else
    {
        ProjectEach<double>(camera, a);
    }
    return 0;
}

int Tube(const Args& a)
{
    std::vector<double> points = ReadRaw<double>(a[0]);
    const int nodes = static_cast<int>(points.size() / 3);
    const int sides = std::stoi(a[2]);
    KesraTest::TestStreamline tube;
    tube.Create(nodes, sides, std::stod(a[3]), 1.0);
    for (int i = 0; i < nodes; ++i)
    {
        tube.SetNodeCoord(i, &points[3 * static_cast<std::size_t>(i)]);
    }
    tube.GenerationStreamline3D();
    std::vector<double> vertices(3 * static_cast<std::size_t>(nodes) * sides);
    std::vector<double> normals(vertices.size());
    for (int i = 0; i < nodes; ++i)
    {
        for (int j = 0; j < sides; ++j)
        {
            const std::size_t at = 3 * (static_cast<std::size_t>(i) * sides + j);
            tube.GetSliceNodeCoord(i, j, &vertices[at]);
            tube.GetSliceNodeNormal(i, j, &normals[at]);
        }
    }
    vertices.insert(vertices.end(), normals.begin(), normals.end());
    WriteRaw(a[1], vertices);
    return 0;
}

int Ruler(const Args& a)
{
    KesraTest::TestRuler ruler;
    ruler.Create(std::stoi(a[1]), 100, std::stoi(a[2]), 0);
    ruler.SetRulerWidthScale(std::stoi(a[3]));
    ruler.SetAutoBlock(a[4] == "1");
    ruler.SetOpenGLScale(std::stof(a[0]));
    std::printf("%.9g %d %d\n", static_cast<double>(ruler.Length()), ruler.PixelWidth(), ruler.BlockCount());
    return 0;
}

void WriteNumbers(const std::string& path, const KesraIo::Numbers& numbers)
{
    if (numbers.IsFloat())
    {
        WriteRaw(path, numbers.Floats());
    }
    else
    {
        WriteRaw(path, numbers.Doubles());
    }
}

int Read(const Args& a)
{
    const KesraIo::PolyData data = KesraIo::ReadPolyData(a[0]);
    const std::string& out = a[1];
    std::ofstream list(out + ".txt");
    list << "points " << (data.points.IsFloat() ? "f4" : "f8") << "\n";
    WriteNumbers(out + ".points", data.points);
    WriteRaw(out + ".offsets", data.lineOffsets);
    WriteRaw(out + ".connectivity", data.connectivity);
    list << "active " << data.activeScalars << "\n";
    for (std::size_t k = 0; k < data.arrays.size(); ++k)
    {
        const KesraIo::DataArray& array = data.arrays[k];
        list << "array " << k << " " << (array.association == KesraIo::Association::Point ? "point" : "cell")
             << " " << array.components << " " << (array.values.IsFloat() ? "f4" : "f8") << " " << array.name
             << "\n";
        WriteNumbers(out + "." + std::to_string(k), array.values);
    }
    return 0;
}

int Png(const Args& a)
{
    int width = 0;
    int height = 0;
    std::vector<unsigned char> rgba;
    std::string error;
    if (!KesraViewer::ReadPng(a[0], width, height, rgba, error))
    {
        std::fprintf(stderr, "%s\n", error.c_str());
        return 1;
    }
    WriteRaw(a[1], rgba);
    std::printf("%d %d\n", width, height);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2)
    {
        return 2;
    }
    const std::string command = argv[1];
    const Args args(argv + 2, argv + argc);
    const auto needs = [&](std::size_t count) { return args.size() == count; };
    if (command == "colors" && needs(13))
    {
        return Colors(args);
    }
    if (command == "project" && needs(14))
    {
        return Project(args);
    }
    if (command == "tube" && needs(4))
    {
        return Tube(args);
    }
    if (command == "ruler" && needs(5))
    {
        return Ruler(args);
    }
    if (command == "read" && needs(2))
    {
        return Read(args);
    }
    if (command == "png" && needs(2))
    {
        return Png(args);
    }
    std::fprintf(stderr, "kesra-python-oracle: bad command line\n");
    return 2;
}
