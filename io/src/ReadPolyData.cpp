#include "KesraIo/Reader.h"

#include <fstream>
#include <iterator>

namespace KesraIo
{

namespace
{

std::string WholeFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
    {
        throw ReadError(path + ": cannot be opened for reading");
    }
    std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (file.bad())
    {
        throw ReadError(path + ": a read error occurred");
    }
    return bytes;
}

} // namespace

PolyData ReadPolyData(const std::string& path)
{
    return ParseLegacy(WholeFile(path), path);
}

} // namespace KesraIo
