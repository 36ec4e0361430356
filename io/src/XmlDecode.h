// The numbers of one XML data array, decoded from where the file keeps
// them (decimal text, base64 text, or raw bytes of the appended section),
// in the file's byte order, plain or in zlib blocks, straight into the
// vector that keeps them.
#pragma once

#include "Progress.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace KesraIo
{

// A fault in an array's data. position is where it lies, counted from the
// start of the array's text or bytes (npos when nowhere in particular); the
// reader turns it into a line or a byte offset of the file.
class DataError : public std::runtime_error
{
public:
    explicit DataError(const std::string& what, std::size_t at = npos) : std::runtime_error(what), position(at) {}

    static constexpr std::size_t npos = std::numeric_limits<std::size_t>::max();
    std::size_t position;
};

enum class Scalar
{
    Int8,
    UInt8,
    Int16,
    UInt16,
    Int32,
    UInt32,
    Int64,
    UInt64,
    Float32,
    Float64
};

struct ValueType
{
    std::string_view name;
    Scalar scalar;
    std::size_t size; // bytes
    bool isInteger;
    bool isSigned;
};

// The type of that name (Int8 ... UInt64, Float32, Float64), or nullptr.
const ValueType* FindValueType(std::string_view name);

// The names FindValueType knows, for messages.
std::string ValueTypeNames();

// How a file stores binary data.
struct BinaryLayout
{
    bool bigEndian = false;
    bool header64 = false; // header words are UInt64, else UInt32
    bool zlib = false;     // data in vtkZLibDataCompressor blocks
};

enum class Form
{
    Ascii,  // decimal numbers separated by whitespace
    Base64, // header and data encoded in base64
    Raw     // header and data as bytes
};

// Any number of values: as many as the data holds.
constexpr std::size_t kAnyCount = std::numeric_limits<std::size_t>::max();

// What an array must hold: count values (or kAnyCount), and how to say so.
struct Expected
{
    std::size_t count;
    std::string what; // e.g. "3 components for each of 5 points"
};

// How far a decoder is through the file whose bytes hold its data: where
// it stands in file, told to progress now and then.
struct FileProgress
{
    Progress progress;
    std::string_view file;

    void Tell(const void* at) const { progress.TellAt(file, static_cast<const char*>(at)); }
};

// Decodes the array in data (text, or raw bytes running to the end of the
// appended section) into out[first, first + count), resizing out once the
// count is known and checked against the bytes there are. T is float (for
// Float32), double, or std::size_t (integer types only; negative values
// wrap, which any index check then refuses). Throws DataError, or
// ReadCancelled when told's monitor says stop.
template <typename T>
void DecodeValues(std::string_view data, Form form, const ValueType& type, const BinaryLayout& layout,
                  const Expected& expected, std::vector<T>& out, std::size_t first,
                  const FileProgress& told = FileProgress());

extern template void DecodeValues<float>(std::string_view, Form, const ValueType&, const BinaryLayout&, const Expected&,
                                         std::vector<float>&, std::size_t, const FileProgress&);
extern template void DecodeValues<double>(std::string_view, Form, const ValueType&, const BinaryLayout&,
                                          const Expected&, std::vector<double>&, std::size_t, const FileProgress&);
extern template void DecodeValues<std::size_t>(std::string_view, Form, const ValueType&, const BinaryLayout&,
                                               const Expected&, std::vector<std::size_t>&, std::size_t,
                                               const FileProgress&);

} // namespace KesraIo
