#include "KesraIo/Reader.h"

#include "Progress.h"
#include "XmlPieces.h"

#include <algorithm>
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

// A regular file is read with one allocation of its size, in reads of
// kReadChunk bytes so that progress can be told between them (a result file
// may be most of the memory there is); anything else (a pipe, a folder) as
// a stream, which fails as reading it fails.
std::string WholeFile(const std::string& path, const Progress& progress)
{
    constexpr std::size_t kReadChunk = std::size_t{8} << 20;
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
        std::size_t read = 0;
        while (read < bytes.size() && file)
        {
            const std::size_t chunk = std::min(kReadChunk, bytes.size() - read);
            file.read(bytes.data() + read, static_cast<std::streamsize>(chunk));
            read += static_cast<std::size_t>(file.gcount());
            progress.Tell(read, bytes.size());
        }
        bytes.resize(read);
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
    progress.TellDone();
    return bytes;
}

namespace
{

PolyData ReadWith(const std::string& path, const Progress& progress)
{
    const std::string extension = LowerExtension(path);
    const Progress disk = progress.Part(0.0, kDiskShare);
    const Progress parsing = progress.Part(kDiskShare, 1.0);
    if (extension == ".vtp")
    {
        PolyData data = ParseXmlPieces(WholeFile(path, disk), path, parsing);
        RequireLines(data, path);
        return data;
    }
    if (extension == ".pvtp")
    {
        return ReadParallelPolyData(path, progress);
    }
    if (extension == ".vtm")
    {
        return ReadMultiBlock(path, progress);
    }
    return ParseLegacy(WholeFile(path, disk), path, parsing);
}

} // namespace

PolyData ReadPolyData(const std::string& path)
{
    return ReadWith(path, Progress());
}

PolyData ReadPolyData(const std::string& path, const ReadMonitor& monitor)
{
    if (!monitor.progress)
    {
        return ReadPolyData(path);
    }
    ProgressState state{&monitor, 0.0};
    const Progress whole(state, 0.0, 1.0);
    PolyData data = ReadWith(path, whole);
    whole.TellDone();
    return data;
}

} // namespace KesraIo
