#include "KesraIo/Reader.h"

#include "XmlPieces.h"

#include <cctype>
#include <fstream>

namespace KesraIo
{

namespace
{

std::string LowerExtension(const std::string& path)
{
    const std::size_t dot = path.rfind('.');
    const std::size_t slash = path.find_last_of("/\\");
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash))
    {
        return "";
    }
    std::string extension = path.substr(dot);
    for (char& c : extension)
    {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return extension;
}

} // namespace

// One allocation of the file's size and one read: a result file may be
// most of the memory there is.
std::string WholeFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    if (!file)
    {
        throw ReadError(path + ": cannot be opened for reading");
    }
    const std::streamoff size = file.tellg();
    file.seekg(0);
    if (size < 0 || !file)
    {
        throw ReadError(path + ": cannot be read (its size is unknown)");
    }
    std::string bytes(static_cast<std::size_t>(size), '\0');
    file.read(bytes.data(), size);
    if (file.gcount() != size)
    {
        throw ReadError(path + ": a read error occurred");
    }
    return bytes;
}

PolyData ReadPolyData(const std::string& path)
{
    const std::string extension = LowerExtension(path);
    if (extension == ".vtp")
    {
        return ParseXmlPolyData(WholeFile(path), path);
    }
    if (extension == ".pvtp")
    {
        return ReadParallelPolyData(path);
    }
    if (extension == ".vtm")
    {
        return ReadMultiBlock(path);
    }
    return ParseLegacy(WholeFile(path), path);
}

} // namespace KesraIo
