#include "XmlDecode.h"

#include "Base64.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <type_traits>

namespace KesraIo
{
namespace
{

constexpr std::array<ValueType, 10> kValueTypes = {{
    {"Int8", Scalar::Int8, 1, true, true},
    {"UInt8", Scalar::UInt8, 1, true, false},
    {"Int16", Scalar::Int16, 2, true, true},
    {"UInt16", Scalar::UInt16, 2, true, false},
    {"Int32", Scalar::Int32, 4, true, true},
    {"UInt32", Scalar::UInt32, 4, true, false},
    {"Int64", Scalar::Int64, 8, true, true},
    {"UInt64", Scalar::UInt64, 8, true, false},
    {"Float32", Scalar::Float32, 4, false, true},
    {"Float64", Scalar::Float64, 8, false, true},
}};

// zlib's deflate emits at most 258 bytes for two bits of input: no block
// inflates to more than this many times its compressed size.
constexpr std::uint64_t kMostInflation = 1032;

std::string Count(std::uint64_t n)
{
    return std::to_string(n);
}

bool IsSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

std::string ShownToken(std::string_view rest)
{
    constexpr std::size_t kLongest = 40;
    std::string shown;
    for (std::size_t i = 0; i < rest.size() && !IsSpace(rest[i]); ++i)
    {
        if (i == kLongest)
        {
            shown += "...";
            break;
        }
        const auto byte = static_cast<unsigned char>(rest[i]);
        shown += byte >= 0x20 && byte < 0x7f ? rest[i] : '?';
    }
    return "'" + shown + "'";
}

// ---- Bytes in the file's order --------------------------------------------------------

bool HostIsBigEndian()
{
    const std::uint16_t probe = 1;
    unsigned char first = 0;
    std::memcpy(&first, &probe, 1);
    return first == 0;
}

template <typename V>
V Load(const unsigned char* bytes, bool swap)
{
    unsigned char ordered[sizeof(V)];
    std::memcpy(ordered, bytes, sizeof(V));
    if (swap)
    {
        std::reverse(ordered, ordered + sizeof(V));
    }
    V value;
    std::memcpy(&value, ordered, sizeof(V));
    return value;
}

template <typename T, typename S>
T Converted(S value)
{
    if constexpr (std::is_integral_v<T> && std::is_floating_point_v<S>)
    {
        return T{}; // never reached: DecodeValues refuses floating types for indices
    }
    else
    {
        return static_cast<T>(value);
    }
}

template <typename S, typename T>
void ConvertRun(const unsigned char* bytes, std::size_t count, bool swap, T* out)
{
    if (swap)
    {
        for (std::size_t i = 0; i < count; ++i)
        {
            out[i] = Converted<T>(Load<S>(bytes + i * sizeof(S), true));
        }
    }
    else
    {
        for (std::size_t i = 0; i < count; ++i)
        {
            out[i] = Converted<T>(Load<S>(bytes + i * sizeof(S), false));
        }
    }
}

template <typename T>
bool SameLayout(const ValueType& type)
{
    if constexpr (std::is_same_v<T, float>)
    {
        return type.scalar == Scalar::Float32;
    }
    else if constexpr (std::is_same_v<T, double>)
    {
        return type.scalar == Scalar::Float64;
    }
    else
    {
        return sizeof(T) == 8 && (type.scalar == Scalar::Int64 || type.scalar == Scalar::UInt64);
    }
}

// Receives an array's bytes in pieces of any size and stores its values.
template <typename T>
class Sink
{
public:
    Sink(const ValueType& type, bool swap, T* out, std::size_t count)
        : m_type(type), m_swap(swap), m_out(out), m_count(count)
    {
    }

    // Where the bytes can land as they are, when they are already T's.
    unsigned char* Direct() const { return SameLayout<T>(m_type) ? reinterpret_cast<unsigned char*>(m_out) : nullptr; }

    // Puts the bytes landed through Direct in the host's order.
    void FinishDirect()
    {
        if (m_swap)
        {
            for (std::size_t i = 0; i < m_count; ++i)
            {
                m_out[i] = Load<T>(reinterpret_cast<const unsigned char*>(m_out + i), true);
            }
        }
    }

    void Take(const unsigned char* bytes, std::size_t size)
    {
        if (m_carried > 0)
        {
            const std::size_t more = std::min(size, m_type.size - m_carried);
            std::memcpy(m_carry + m_carried, bytes, more);
            m_carried += more;
            bytes += more;
            size -= more;
            if (m_carried < m_type.size)
            {
                return;
            }
            Convert(m_carry, 1);
            m_carried = 0;
        }
        const std::size_t whole = size / m_type.size;
        Convert(bytes, whole);
        m_carried = size - whole * m_type.size;
        std::memcpy(m_carry, bytes + whole * m_type.size, m_carried);
    }

private:
    void Convert(const unsigned char* bytes, std::size_t count)
    {
        count = std::min(count, m_count - m_written);
        T* out = m_out + m_written;
        switch (m_type.scalar)
        {
        case Scalar::Int8: ConvertRun<std::int8_t>(bytes, count, m_swap, out); break;
        case Scalar::UInt8: ConvertRun<std::uint8_t>(bytes, count, m_swap, out); break;
        case Scalar::Int16: ConvertRun<std::int16_t>(bytes, count, m_swap, out); break;
        case Scalar::UInt16: ConvertRun<std::uint16_t>(bytes, count, m_swap, out); break;
        case Scalar::Int32: ConvertRun<std::int32_t>(bytes, count, m_swap, out); break;
        case Scalar::UInt32: ConvertRun<std::uint32_t>(bytes, count, m_swap, out); break;
        case Scalar::Int64: ConvertRun<std::int64_t>(bytes, count, m_swap, out); break;
        case Scalar::UInt64: ConvertRun<std::uint64_t>(bytes, count, m_swap, out); break;
        case Scalar::Float32: ConvertRun<float>(bytes, count, m_swap, out); break;
        case Scalar::Float64: ConvertRun<double>(bytes, count, m_swap, out); break;
        }
        m_written += count;
    }

    const ValueType& m_type;
    bool m_swap;
    T* m_out;
    std::size_t m_count;
    std::size_t m_written = 0;
    unsigned char m_carry[8] = {};
    std::size_t m_carried = 0;
};

// ---- Where the bytes come from ------------------------------------------------------------

class ByteSource
{
public:
    virtual ~ByteSource() = default;
    virtual void Read(unsigned char* out, std::size_t size) = 0;
    // The next size bytes, in place or decoded into scratch.
    virtual const unsigned char* View(std::size_t size, std::vector<unsigned char>& scratch) = 0;
    // The most bytes left to read.
    virtual std::size_t MostLeft() const = 0;
    virtual std::size_t Position() const = 0;
};

class RawSource final : public ByteSource
{
public:
    explicit RawSource(std::string_view bytes) : m_bytes(bytes) {}

    void Read(unsigned char* out, std::size_t size) override
    {
        std::vector<unsigned char> unused;
        std::memcpy(out, View(size, unused), size);
    }

    const unsigned char* View(std::size_t size, std::vector<unsigned char>&) override
    {
        const std::size_t left = MostLeft();
        if (size > left)
        {
            throw DataError("the appended data ends " + Count(left) + " bytes into the " + Count(size) +
                                " bytes expected here",
                            m_at);
        }
        const auto* view = reinterpret_cast<const unsigned char*>(m_bytes.data() + m_at);
        m_at += size;
        return view;
    }

    std::size_t MostLeft() const override { return m_bytes.size() - m_at; }
    std::size_t Position() const override { return m_at; }

private:
    std::string_view m_bytes;
    std::size_t m_at = 0;
};

class Base64Source final : public ByteSource
{
public:
    explicit Base64Source(std::string_view text) : m_reader(text) {}

    void Read(unsigned char* out, std::size_t size) override { m_reader.Read(out, size); }

    const unsigned char* View(std::size_t size, std::vector<unsigned char>& scratch) override
    {
        scratch.resize(size);
        m_reader.Read(scratch.data(), size);
        return scratch.data();
    }

    std::size_t MostLeft() const override { return m_reader.MostLeft(); }
    std::size_t Position() const override { return m_reader.Position(); }

private:
    Base64Reader m_reader;
};

// ---- Binary arrays ----------------------------------------------------------------------

std::uint64_t ReadWord(ByteSource& source, const BinaryLayout& layout, bool swap)
{
    unsigned char bytes[8];
    if (layout.header64)
    {
        source.Read(bytes, 8);
        return Load<std::uint64_t>(bytes, swap);
    }
    source.Read(bytes, 4);
    return Load<std::uint32_t>(bytes, swap);
}

// The number of values in bytes, which must be what the element declares.
std::size_t CountIn(std::uint64_t bytes, const ValueType& type, const Expected& expected)
{
    const std::string values = " values of " + Count(type.size) + " bytes";
    if (bytes % type.size != 0)
    {
        throw DataError(
            "the data holds " + Count(bytes) + " bytes, not a whole number of " + std::string(type.name) + values, 0);
    }
    if (expected.count != kAnyCount && bytes / type.size != expected.count)
    {
        throw DataError("the data holds " + Count(bytes / type.size) + " " + std::string(type.name) +
                            " values; expected " + Count(expected.count) + " (" + expected.what + ")",
                        0);
    }
    if (bytes / type.size > std::numeric_limits<std::size_t>::max() / sizeof(double))
    {
        throw DataError("the data holds more values than memory can", 0);
    }
    return static_cast<std::size_t>(bytes / type.size);
}

template <typename T>
void DecodePlain(ByteSource& source, const ValueType& type, bool swap, const BinaryLayout& layout,
                 const Expected& expected, std::vector<T>& out, std::size_t first, const FileProgress& told,
                 const char* data, Form form)
{
    const std::uint64_t bytes = ReadWord(source, layout, swap);
    const std::size_t count = CountIn(bytes, type, expected);
    if (bytes > source.MostLeft())
    {
        throw DataError("the header announces " + Count(bytes) + " bytes, but at most " + Count(source.MostLeft()) +
                            " follow",
                        source.Position());
    }
    out.resize(first + count);
    Sink<T> sink(type, swap, out.data() + first, count);
    if (unsigned char* direct = sink.Direct())
    {
        // Raw bytes in pieces of a megabyte, to tell progress between them
        // (they are all there, checked above); base64 text at once, so that
        // a truncation is told against the whole array.
        const std::size_t size = count * type.size;
        const std::size_t most = form == Form::Raw ? std::size_t{1} << 20 : size;
        for (std::size_t done = 0; done < size;)
        {
            const std::size_t piece = std::min(size - done, most);
            source.Read(direct + done, piece);
            done += piece;
            told.Tell(data + source.Position());
        }
        sink.FinishDirect();
        return;
    }
    constexpr std::size_t kPiece = std::size_t{1} << 16;
    std::vector<unsigned char> scratch;
    for (std::size_t left = count * type.size; left > 0;)
    {
        const std::size_t size = std::min(left, kPiece);
        sink.Take(source.View(size, scratch), size);
        left -= size;
        told.Tell(data + source.Position());
    }
}

// The table of a compressed array: how many bytes each block inflates to
// and how many it takes in the file.
struct Blocks
{
    std::vector<std::uint64_t> compressed;
    std::uint64_t blockSize = 0;
    std::uint64_t lastSize = 0;
    std::uint64_t total = 0;

    std::uint64_t Inflated(std::size_t i) const { return i + 1 == compressed.size() ? lastSize : blockSize; }
};

Blocks ReadBlockTable(ByteSource& source, const BinaryLayout& layout, bool swap)
{
    const std::size_t headerAt = source.Position();
    const std::uint64_t count = ReadWord(source, layout, swap);
    Blocks blocks;
    blocks.blockSize = ReadWord(source, layout, swap);
    const std::uint64_t last = ReadWord(source, layout, swap);
    const std::size_t word = layout.header64 ? 8 : 4;
    if (count > source.MostLeft() / word)
    {
        throw DataError("the compression header announces " + Count(count) +
                            " blocks, more than the rest of the data can list",
                        headerAt);
    }
    if (count > 0 && blocks.blockSize == 0)
    {
        throw DataError("the compression header announces blocks of 0 bytes", headerAt);
    }
    if (last > blocks.blockSize)
    {
        throw DataError("the compression header's last block of " + Count(last) +
                            " bytes is larger than its blocks of " + Count(blocks.blockSize),
                        headerAt);
    }
    blocks.lastSize = last > 0 ? last : blocks.blockSize;
    if (count > 0 && count - 1 > (std::numeric_limits<std::uint64_t>::max() - blocks.lastSize) / blocks.blockSize)
    {
        throw DataError("the compression header announces more bytes than any file holds", headerAt);
    }
    blocks.total = count == 0 ? 0 : (count - 1) * blocks.blockSize + blocks.lastSize;
    blocks.compressed.resize(static_cast<std::size_t>(count));
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < blocks.compressed.size(); ++i)
    {
        const std::uint64_t size = ReadWord(source, layout, swap);
        if (blocks.Inflated(i) > kMostInflation * size)
        {
            throw DataError("block " + Count(i) + " claims to inflate " + Count(size) + " bytes to " +
                                Count(blocks.Inflated(i)) + ", more than zlib can",
                            headerAt);
        }
        blocks.compressed[i] = size;
        sum += size;
    }
    if (sum > source.MostLeft())
    {
        throw DataError("the " + Count(count) + " compressed blocks add up to " + Count(sum) + " bytes, but at most " +
                            Count(source.MostLeft()) + " follow the header",
                        source.Position());
    }
    return blocks;
}

// Inflates one block into exactly size bytes at out, refusing a stream that
// would give more (a bomb stops at the declared size) or less.
void InflateBlock(z_stream& stream, const unsigned char* in, std::size_t inSize, unsigned char* out,
                  std::size_t outSize, const std::string& block, std::size_t at)
{
    inflateReset(&stream);
    stream.next_in = const_cast<unsigned char*>(in);
    stream.next_out = out;
    std::size_t inLeft = inSize;
    std::size_t outLeft = outSize;
    for (;;)
    {
        const auto inChunk = static_cast<uInt>(std::min<std::size_t>(inLeft, UINT_MAX));
        const auto outChunk = static_cast<uInt>(std::min<std::size_t>(outLeft, UINT_MAX));
        stream.avail_in = inChunk;
        stream.avail_out = outChunk;
        const int status = inflate(&stream, Z_NO_FLUSH);
        inLeft -= inChunk - stream.avail_in;
        outLeft -= outChunk - stream.avail_out;
        if (status == Z_STREAM_END)
        {
            break;
        }
        if (status != Z_OK && status != Z_BUF_ERROR)
        {
            throw DataError(block + " is not a valid zlib stream (" +
                                (stream.msg != nullptr ? std::string(stream.msg) : "error " + std::to_string(status)) +
                                ")",
                            at);
        }
        if (outLeft == 0)
        {
            throw DataError(block + " inflates to more than the " + Count(outSize) + " bytes its header declares", at);
        }
        if (inLeft == 0 || (inChunk == stream.avail_in && outChunk == stream.avail_out))
        {
            throw DataError(block + " ends after its " + Count(inSize) + " compressed bytes gave " +
                                Count(outSize - outLeft) + " of the " + Count(outSize) + " bytes declared",
                            at);
        }
    }
    if (outLeft != 0)
    {
        throw DataError(
            block + " inflates to " + Count(outSize - outLeft) + " bytes; its header declares " + Count(outSize), at);
    }
    if (inLeft != 0)
    {
        throw DataError(
            block + " ends " + Count(inLeft) + " bytes before its " + Count(inSize) + " compressed bytes do", at);
    }
}

class Inflater
{
public:
    Inflater()
    {
        if (inflateInit(&m_stream) != Z_OK)
        {
            throw std::bad_alloc();
        }
    }
    ~Inflater() { inflateEnd(&m_stream); }
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;

    z_stream& Stream() { return m_stream; }

private:
    z_stream m_stream{};
};

template <typename T>
void DecodeBlocks(ByteSource& source, const ValueType& type, bool swap, const BinaryLayout& layout,
                  const Expected& expected, std::vector<T>& out, std::size_t first, const FileProgress& told,
                  const char* data)
{
    const Blocks blocks = ReadBlockTable(source, layout, swap);
    const std::size_t count = CountIn(blocks.total, type, expected);
    out.resize(first + count);
    Sink<T> sink(type, swap, out.data() + first, count);
    unsigned char* direct = sink.Direct();
    Inflater inflater;
    std::vector<unsigned char> in;
    std::vector<unsigned char> inflated;
    std::size_t done = 0;
    for (std::size_t i = 0; i < blocks.compressed.size(); ++i)
    {
        const std::size_t at = source.Position();
        const auto inSize = static_cast<std::size_t>(blocks.compressed[i]);
        const auto outSize = static_cast<std::size_t>(blocks.Inflated(i));
        const unsigned char* block = source.View(inSize, in);
        if (direct == nullptr)
        {
            inflated.resize(outSize);
        }
        unsigned char* target = direct != nullptr ? direct + done : inflated.data();
        InflateBlock(inflater.Stream(), block, inSize, target, outSize,
                     "block " + Count(i) + " of " + Count(blocks.compressed.size()), at);
        if (direct == nullptr)
        {
            sink.Take(target, outSize);
        }
        done += outSize;
        told.Tell(data + source.Position());
    }
    if (direct != nullptr)
    {
        sink.FinishDirect();
    }
}

// ---- Decimal text -------------------------------------------------------------------------

std::size_t CountTokens(std::string_view text)
{
    std::size_t tokens = 0;
    bool inToken = false;
    for (const char c : text)
    {
        const bool space = IsSpace(c);
        tokens += (!space && !inToken) ? 1 : 0;
        inToken = !space;
    }
    return tokens;
}

template <typename F>
F ParseFloating(const char*& p, const char* end)
{
    F value = 0;
    const auto [next, error] = std::from_chars(p, end, value);
    if (error == std::errc::result_out_of_range)
    {
        // from_chars keeps nothing when the number is out of range; strtod
        // rounds it to an infinity or to zero as a reader of text should.
        const std::string digits(p, next);
        value = static_cast<F>(std::strtod(digits.c_str(), nullptr));
    }
    else if (error != std::errc())
    {
        return value; // p stays: the caller refuses the token
    }
    p = next;
    return value;
}

template <typename I>
bool ParseInteger(const char*& p, const char* end, I& value)
{
    const auto [next, error] = std::from_chars(p, end, value);
    if (error != std::errc())
    {
        return false;
    }
    p = next;
    return true;
}

struct IntegerBounds
{
    std::int64_t min;
    std::uint64_t max;
};

IntegerBounds BoundsOf(const ValueType& type)
{
    const unsigned bits = static_cast<unsigned>(8 * type.size);
    if (!type.isSigned)
    {
        return {0, bits == 64 ? std::numeric_limits<std::uint64_t>::max() : (std::uint64_t{1} << bits) - 1};
    }
    const std::uint64_t max = (std::uint64_t{1} << (bits - 1)) - 1;
    return {-static_cast<std::int64_t>(max) - 1, max};
}

// One number of the text at p, moved past it.
template <typename T>
T ParseNumber(const char*& p, const char* end, const ValueType& type, const char* text)
{
    const char* start = p;
    if (*p == '+' && p + 1 < end && !IsSpace(p[1]))
    {
        ++p; // from_chars refuses the sign some writers put
    }
    T result{};
    bool parsed = false;
    if (type.scalar == Scalar::Float32)
    {
        const char* before = p;
        result = static_cast<T>(ParseFloating<float>(p, end));
        parsed = p != before;
    }
    else if (type.scalar == Scalar::Float64)
    {
        const char* before = p;
        result = Converted<T>(ParseFloating<double>(p, end));
        parsed = p != before;
    }
    else
    {
        const IntegerBounds bounds = BoundsOf(type);
        if (type.isSigned)
        {
            std::int64_t value = 0;
            parsed = ParseInteger(p, end, value) && value >= bounds.min &&
                     (value < 0 || static_cast<std::uint64_t>(value) <= bounds.max);
            result = static_cast<T>(value);
        }
        else
        {
            std::uint64_t value = 0;
            parsed = ParseInteger(p, end, value) && value <= bounds.max;
            result = static_cast<T>(value);
        }
    }
    if (!parsed || (p != end && !IsSpace(*p)))
    {
        throw DataError("expected a number of type " + std::string(type.name) + ", found " +
                            ShownToken(std::string_view(start, static_cast<std::size_t>(end - start))),
                        static_cast<std::size_t>(start - text));
    }
    return result;
}

template <typename T>
void DecodeAscii(std::string_view text, const ValueType& type, const Expected& expected, std::vector<T>& out,
                 std::size_t first, const FileProgress& told)
{
    std::size_t count = expected.count;
    if (count == kAnyCount)
    {
        count = CountTokens(text);
    }
    else if (count > text.size() / 2 + 1)
    {
        // Every number takes a character and all but the last a separator.
        throw DataError("the text can hold at most " + Count(text.size() / 2 + 1) + " numbers; expected " +
                            Count(count) + " (" + expected.what + ")",
                        0);
    }
    out.resize(first + count);
    T* values = out.data() + first;
    const char* p = text.data();
    const char* end = p + text.size();
    constexpr std::size_t kValuesTold = std::size_t{1} << 16;
    for (std::size_t i = 0; i < count; ++i)
    {
        if (i % kValuesTold == kValuesTold - 1)
        {
            told.Tell(p);
        }
        while (p != end && IsSpace(*p))
        {
            ++p;
        }
        if (p == end)
        {
            throw DataError("the text ends after " + Count(i) + " of the " + Count(count) + " numbers expected (" +
                                expected.what + ")",
                            text.size());
        }
        values[i] = ParseNumber<T>(p, end, type, text.data());
    }
    while (p != end && IsSpace(*p))
    {
        ++p;
    }
    if (p != end)
    {
        throw DataError("more numbers than the " + Count(count) + " expected (" + expected.what + ")",
                        static_cast<std::size_t>(p - text.data()));
    }
}

} // namespace

const ValueType* FindValueType(std::string_view name)
{
    for (const ValueType& type : kValueTypes)
    {
        if (type.name == name)
        {
            return &type;
        }
    }
    return nullptr;
}

std::string ValueTypeNames()
{
    std::string names;
    for (const ValueType& type : kValueTypes)
    {
        names += (names.empty() ? "" : ", ") + std::string(type.name);
    }
    return names;
}

template <typename T>
void DecodeValues(std::string_view data, Form form, const ValueType& type, const BinaryLayout& layout,
                  const Expected& expected, std::vector<T>& out, std::size_t first, const FileProgress& told)
{
    if (std::is_integral_v<T> && !type.isInteger)
    {
        throw DataError("expected an integer type, found " + std::string(type.name));
    }
    if (form == Form::Ascii)
    {
        DecodeAscii(data, type, expected, out, first, told);
        return;
    }
    const bool swap = layout.bigEndian != HostIsBigEndian();
    RawSource raw(data);
    Base64Source text(data);
    ByteSource& source = form == Form::Raw ? static_cast<ByteSource&>(raw) : static_cast<ByteSource&>(text);
    if (layout.zlib)
    {
        DecodeBlocks(source, type, swap, layout, expected, out, first, told, data.data());
    }
    else
    {
        DecodePlain(source, type, swap, layout, expected, out, first, told, data.data(), form);
    }
}

template void DecodeValues<float>(std::string_view, Form, const ValueType&, const BinaryLayout&, const Expected&,
                                  std::vector<float>&, std::size_t, const FileProgress&);
template void DecodeValues<double>(std::string_view, Form, const ValueType&, const BinaryLayout&, const Expected&,
                                   std::vector<double>&, std::size_t, const FileProgress&);
template void DecodeValues<std::size_t>(std::string_view, Form, const ValueType&, const BinaryLayout&, const Expected&,
                                        std::vector<std::size_t>&, std::size_t, const FileProgress&);

} // namespace KesraIo
