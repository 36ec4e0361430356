#include "KesraIo/Reader.h"

#include "XmlPieces.h"

#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

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

// A regular file is read with one allocation of its size and one read (a
// result file may be most of the memory there is); anything else (a pipe, a
// folder) as a stream, which fails as reading it fails.
std::string WholeFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
    {
        throw ReadError(path + ": cannot be opened for reading");
    }
    std::error_code error;
    const bool regular = std::filesystem::is_regular_file(path, error);
    const std::uintmax_t size = regular ? std::filesystem::file_size(path, error) : 0;
    std::string bytes;
    if (regular && !error)
    {
        bytes.resize(static_cast<std::size_t>(size));
        file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        bytes.resize(static_cast<std::size_t>(file.gcount()));
    }
    else
    {
        try
        {
            bytes.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
        }
        catch (const std::ios_base::failure&)
        {
            file.setstate(std::ios::badbit); // a folder, for one
        }
    }
    if (file.bad())
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
