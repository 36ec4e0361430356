#include "KesraIo/Reader.h"

#include "XmlPieces.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <limits>
#include <sstream>
#include <type_traits>

namespace KesraIo
{
namespace
{

// A value type of the format: its size in binary files and how its bytes
// read.
enum class Kind
{
    Bit,
    Signed,
    Unsigned,
    Float
};

struct ValueType
{
    std::string_view name;
    std::size_t size; // bytes in binary files; bits are packed
    Kind kind;
};

// The legacy writers store vtkIdType as 32-bit integers; "long" as 64-bit.
constexpr std::array<ValueType, 22> kValueTypes = {{
    {"bit", 0, Kind::Bit},
    {"unsigned_char", 1, Kind::Unsigned},
    {"char", 1, Kind::Signed},
    {"signed_char", 1, Kind::Signed},
    {"unsigned_short", 2, Kind::Unsigned},
    {"short", 2, Kind::Signed},
    {"unsigned_int", 4, Kind::Unsigned},
    {"int", 4, Kind::Signed},
    {"unsigned_long", 8, Kind::Unsigned},
    {"long", 8, Kind::Signed},
    {"unsigned_long_long", 8, Kind::Unsigned},
    {"long_long", 8, Kind::Signed},
    {"vtkidtype", 4, Kind::Signed},
    {"vtktypeint8", 1, Kind::Signed},
    {"vtktypeuint8", 1, Kind::Unsigned},
    {"vtktypeint16", 2, Kind::Signed},
    {"vtktypeuint16", 2, Kind::Unsigned},
    {"vtktypeint32", 4, Kind::Signed},
    {"vtktypeuint32", 4, Kind::Unsigned},
    {"vtktypeint64", 8, Kind::Signed},
    {"vtktypeuint64", 8, Kind::Unsigned},
    {"float", 4, Kind::Float},
}};
constexpr ValueType kDouble = {"double", 8, Kind::Float};
constexpr ValueType kInt = {"int", 4, Kind::Signed};
constexpr ValueType kFloat = {"float", 4, Kind::Float};
constexpr ValueType kUnsignedChar = {"unsigned_char", 1, Kind::Unsigned};

std::string Lower(std::string_view text)
{
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

bool IsSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v';
}

// Shown in messages: a token as it stands, shortened, unprintable bytes as
// '?', so that a binary blob read as text does not flood the terminal.
std::string Shown(std::string_view token)
{
    constexpr std::size_t kLongest = 40;
    std::string shown;
    for (const char c : token.substr(0, kLongest))
    {
        shown += std::isprint(static_cast<unsigned char>(c)) ? c : '?';
    }
    if (token.size() > kLongest)
    {
        shown += "...";
    }
    return "'" + shown + "'";
}

// Big-endian bytes as an unsigned integer of size bytes.
std::uint64_t BigEndian(const unsigned char* bytes, std::size_t size)
{
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < size; ++i)
    {
        value = (value << 8) | bytes[i];
    }
    return value;
}

double DecodeBinary(const unsigned char* bytes, const ValueType& type)
{
    const std::uint64_t raw = BigEndian(bytes, type.size);
    switch (type.kind)
    {
    case Kind::Float:
        if (type.size == 4)
        {
            const auto bits = static_cast<std::uint32_t>(raw);
            float value = 0.0f;
            std::memcpy(&value, &bits, sizeof value);
            return value;
        }
        else
        {
            double value = 0.0;
            std::memcpy(&value, &raw, sizeof value);
            return value;
        }
    case Kind::Signed:
    {
        // Sign-extend from the type's width.
        const unsigned shift = static_cast<unsigned>(64 - 8 * type.size);
        const auto value = static_cast<std::int64_t>(raw << shift) >> shift;
        return static_cast<double>(value);
    }
    case Kind::Unsigned:
    case Kind::Bit:
        break;
    }
    return static_cast<double>(raw);
}

// a * b, or false when the product does not fit.
bool Multiply(std::size_t a, std::size_t b, std::size_t& product)
{
    if (a != 0 && b > std::numeric_limits<std::size_t>::max() / a)
    {
        return false;
    }
    product = a * b;
    return true;
}

// Where the attribute arrays of a POINT_DATA or CELL_DATA section belong.
enum class Attached
{
    Nothing,
    Points,
    Cells
};

class Parser
{
public:
    Parser(std::string_view bytes, const std::string& name, const Progress& progress)
        : m_bytes(bytes), m_name(name), m_progress(progress)
    {
    }

    PolyData Parse()
    {
        ReadHeader();
        for (std::size_t at = NextTokenStart(); at < m_bytes.size(); at = NextTokenStart())
        {
            m_progress.Tell(at, m_bytes.size());
            ReadSection(at, Lower(Token()));
        }
        return Finish();
    }

private:
    // ---- Messages ----------------------------------------------------------------

    std::size_t LineOf(std::size_t offset) const
    {
        const auto end = m_bytes.begin() + static_cast<std::ptrdiff_t>(std::min(offset, m_bytes.size()));
        return 1 + static_cast<std::size_t>(std::count(m_bytes.begin(), end, '\n'));
    }

    // Text files are told by line; in binary files lines mean little, so
    // every place is a byte offset there.
    [[noreturn]] void FailAtLine(std::size_t offset, const std::string& what) const
    {
        if (m_binary)
        {
            FailAtByte(offset, what);
        }
        throw ReadError(m_name + ":" + std::to_string(LineOf(offset)) + ": " + what);
    }

    [[noreturn]] void FailAtByte(std::size_t offset, const std::string& what) const
    {
        throw ReadError(m_name + ": byte " + std::to_string(offset) + ": " + what);
    }

    [[noreturn]] void Fail(const std::string& what) const { throw ReadError(m_name + ": " + what); }

    // ---- Tokens and lines --------------------------------------------------------

    std::size_t NextTokenStart()
    {
        while (m_pos < m_bytes.size() && IsSpace(m_bytes[m_pos]))
        {
            ++m_pos;
        }
        return m_pos;
    }

    // The next word; empty at the end of the file.
    std::string_view Token()
    {
        const std::size_t start = NextTokenStart();
        while (m_pos < m_bytes.size() && !IsSpace(m_bytes[m_pos]))
        {
            ++m_pos;
        }
        return m_bytes.substr(start, m_pos - start);
    }

    std::string_view ExpectToken(const std::string& what)
    {
        const std::size_t at = NextTokenStart();
        const std::string_view token = Token();
        if (token.empty())
        {
            FailAtLine(at, "the file ends where " + what + " was expected");
        }
        return token;
    }

    // The next word, looked at without taking it.
    std::string PeekLower()
    {
        const std::size_t saved = m_pos;
        const std::string token = Lower(Token());
        m_pos = saved;
        return token;
    }

    // What is left of the current line, without its end.
    std::string_view RestOfLine()
    {
        const std::size_t start = m_pos;
        while (m_pos < m_bytes.size() && m_bytes[m_pos] != '\n')
        {
            ++m_pos;
        }
        std::string_view rest = m_bytes.substr(start, m_pos - start);
        if (m_pos < m_bytes.size())
        {
            ++m_pos;
        }
        while (!rest.empty() && IsSpace(rest.back()))
        {
            rest.remove_suffix(1);
        }
        while (!rest.empty() && IsSpace(rest.front()))
        {
            rest.remove_prefix(1);
        }
        return rest;
    }

    // Binary data starts right after the end of the line that announces it;
    // nothing else may stand on that line.
    void EndHeaderLine(const std::string& what)
    {
        const std::size_t at = m_pos;
        const std::string_view rest = RestOfLine();
        if (!rest.empty())
        {
            FailAtLine(at, "expected the end of the " + what + " line, found " + Shown(rest));
        }
    }

    // A non-negative whole number of a header line.
    std::size_t Count(const std::string& what)
    {
        const std::size_t at = NextTokenStart();
        const std::string_view token = ExpectToken(what);
        std::size_t value = 0;
        const auto [end, error] = std::from_chars(token.data(), token.data() + token.size(), value);
        if (error != std::errc() || end != token.data() + token.size())
        {
            FailAtLine(at, "expected " + what + " (a whole number of 0 or more), found " + Shown(token));
        }
        return value;
    }

    const ValueType& Type(const std::string& what)
    {
        const std::size_t at = NextTokenStart();
        const std::string name = Lower(ExpectToken("the value type of " + what));
        if (name == kDouble.name)
        {
            return kDouble;
        }
        for (const ValueType& type : kValueTypes)
        {
            if (type.name == name)
            {
                return type;
            }
        }
        FailAtLine(at, "unknown value type " + Shown(name) + " for " + what);
    }

    // ---- Arrays ------------------------------------------------------------------

    // Refuses a count that the rest of the file cannot hold, before anything
    // is allocated for it.
    void CheckRoom(const ValueType& type, std::size_t count, const std::string& what) const
    {
        const std::size_t start = std::min(m_pos, m_bytes.size());
        const std::size_t left = m_bytes.size() - start;
        if (!m_binary)
        {
            // Every number takes a character and all but the last a
            // separator: a count beyond that cannot be in the file.
            if (count > left / 2 + 1)
            {
                FailAtLine(m_pos, what + " announces " + std::to_string(count) +
                                      " numbers, more than the rest of the file can hold");
            }
            return;
        }
        const std::size_t bytes = BinarySize(type, count, what);
        if (bytes > left)
        {
            FailAtByte(m_bytes.size(), "the file ends " + std::to_string(left) + " bytes into the " +
                                           std::to_string(bytes) + " bytes of " + what);
        }
    }

    std::size_t BinarySize(const ValueType& type, std::size_t count, const std::string& what) const
    {
        if (type.kind == Kind::Bit)
        {
            return count / 8 + (count % 8 != 0 ? 1 : 0);
        }
        std::size_t bytes = 0;
        if (!Multiply(count, type.size, bytes))
        {
            FailAtByte(m_pos, what + " announces more values than any file can hold");
        }
        return bytes;
    }

    // count values of type, ASCII or binary as the file is, each converted to
    // T once.
    template <typename T>
    std::vector<T> Values(const ValueType& type, std::size_t count, const std::string& what)
    {
        CheckRoom(type, count, what);
        std::vector<T> values(count);
        if (m_binary)
        {
            BinaryValues(type, values, what);
        }
        else
        {
            AsciiValues(values, what);
        }
        return values;
    }

    // Progress is told every kValuesTold values of an array.
    static constexpr std::size_t kValuesTold = std::size_t{1} << 16;

    template <typename T>
    void AsciiValues(std::vector<T>& values, const std::string& what)
    {
        for (std::size_t i = 0; i < values.size(); ++i)
        {
            if (i % kValuesTold == kValuesTold - 1)
            {
                m_progress.Tell(m_pos, m_bytes.size());
            }
            const std::size_t at = NextTokenStart();
            const std::string_view token = Token();
            if (token.empty())
            {
                FailAtLine(at, "the file ends after " + std::to_string(i) + " of the " +
                                   std::to_string(values.size()) + " numbers of " + what);
            }
            values[i] = AsciiNumber<T>(at, token, what);
        }
    }

    // Parsed straight into T: a float read through a double could round
    // twice.
    template <typename T>
    T AsciiNumber(std::size_t at, std::string_view token, const std::string& what) const
    {
        std::string_view digits = token;
        if (digits.size() > 1 && digits[0] == '+')
        {
            digits.remove_prefix(1);
        }
        T value = 0;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
        const bool whole = end == digits.data() + digits.size();
        // Out of range, from_chars keeps no value, though the text was a
        // number: strtod rounds it to an infinity or to zero.
        if (error == std::errc::result_out_of_range && whole)
        {
            const std::string text(digits);
            if constexpr (std::is_same_v<T, float>)
            {
                return std::strtof(text.c_str(), nullptr);
            }
            else
            {
                return std::strtod(text.c_str(), nullptr);
            }
        }
        if (error != std::errc() || !whole)
        {
            FailAtLine(at, "expected a number of " + what + ", found " + Shown(token));
        }
        return value;
    }

    template <typename T>
    void BinaryValues(const ValueType& type, std::vector<T>& values, const std::string& what)
    {
        const std::size_t start = std::min(m_pos, m_bytes.size());
        const auto* data = reinterpret_cast<const unsigned char*>(m_bytes.data() + start);
        for (std::size_t i = 0; i < values.size(); ++i)
        {
            if (i % kValuesTold == kValuesTold - 1)
            {
                m_progress.Tell(start + i * type.size, m_bytes.size());
            }
            values[i] = type.kind == Kind::Bit
                            ? static_cast<T>((data[i / 8] >> (7 - i % 8)) & 1u)
                            : static_cast<T>(DecodeBinary(data + i * type.size, type));
        }
        m_pos = start + BinarySize(type, values.size(), what);
    }

    // count values of type after the line that announced them; lineEnded
    // when that line's end has been read already.
    template <typename T>
    std::vector<T> Array(const ValueType& type, std::size_t count, const std::string& what,
                         bool lineEnded = false)
    {
        if (m_binary && !lineEnded)
        {
            EndHeaderLine(what);
        }
        return Values<T>(type, count, what);
    }

    // As Array, in the width the file stores: 32-bit floats stay floats, so
    // that a large float array is held once, in its own size.
    Numbers NumberArray(const ValueType& type, std::size_t count, const std::string& what,
                        bool lineEnded = false)
    {
        Numbers numbers;
        if (type.kind == Kind::Float && type.size == 4)
        {
            numbers.Floats(0) = Array<float>(type, count, what, lineEnded);
        }
        else
        {
            numbers.Doubles(0) = Array<double>(type, count, what, lineEnded);
        }
        return numbers;
    }

    // ---- Header ------------------------------------------------------------------

    void ReadHeader()
    {
        const std::string first = Lower(RestOfLine());
        const std::string magic = "# vtk datafile version ";
        if (first.compare(0, magic.size(), magic) != 0)
        {
            FailAtLine(0, "expected '# vtk DataFile Version 2.0' to '5.1' as the first line, found " +
                              Shown(first));
        }
        const std::string version = first.substr(magic.size());
        int major = 0;
        int minor = 0;
        char dot = 0;
        std::istringstream in(version);
        in >> major >> dot >> minor;
        const bool known = in && dot == '.' && major >= 2 && (major < 5 || (major == 5 && minor <= 1));
        if (!known)
        {
            FailAtLine(0, "unsupported version " + Shown(version) + "; expected 2.0 to 5.1");
        }
        m_version5 = major >= 5;
        RestOfLine(); // the title
        const std::size_t at = m_pos;
        const std::string format = Lower(RestOfLine());
        if (format != "ascii" && format != "binary")
        {
            FailAtLine(at, "expected ASCII or BINARY on the third line, found " + Shown(format));
        }
        m_binary = format == "binary";
        const std::size_t datasetAt = NextTokenStart();
        const std::string dataset = Lower(Token());
        const std::string kind = Lower(Token());
        if (dataset != "dataset" || kind != "polydata")
        {
            FailAtLine(datasetAt, "expected DATASET POLYDATA, found " + Shown(dataset + " " + kind) +
                                      " (only polydata holds polylines)");
        }
        RestOfLine();
    }

    // ---- Sections ----------------------------------------------------------------

    void ReadSection(std::size_t at, const std::string& keyword)
    {
        if (keyword == "points")
        {
            ReadPoints(at);
        }
        else if (keyword == "lines")
        {
            m_sawLines = true;
            ReadCells(at, "LINES", true);
        }
        else if (keyword == "vertices" || keyword == "polygons" || keyword == "triangle_strips")
        {
            ReadCells(at, Upper(keyword), false);
        }
        else if (keyword == "point_data" || keyword == "cell_data")
        {
            ReadDataSection(at, keyword == "point_data");
        }
        else if (keyword == "field")
        {
            ReadField();
        }
        else if (keyword == "metadata")
        {
            SkipMetadata();
        }
        else
        {
            ReadAttribute(at, keyword);
        }
    }

    // The arrays that follow belong to the points or to the cells, count
    // tuples each.
    void ReadDataSection(std::size_t at, bool points)
    {
        const std::string section = points ? "POINT_DATA" : "CELL_DATA";
        bool& seen = points ? m_sawPointData : m_sawCellData;
        if (seen)
        {
            FailAtLine(at, "a second " + section + " section");
        }
        seen = true;
        const std::size_t count = Count("the number of " + section + " values");
        m_attached = points ? Attached::Points : Attached::Cells;
        m_attachedCount = count;
        (points ? m_pointDataAt : m_cellDataAt) = at;
        (points ? m_pointDataCount : m_cellDataCount) = count;
    }

    static std::string Upper(const std::string& keyword)
    {
        std::string upper = keyword;
        std::transform(upper.begin(), upper.end(), upper.begin(),
                       [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
        return upper;
    }

    void ReadPoints(std::size_t at)
    {
        if (m_sawPoints)
        {
            FailAtLine(at, "a second POINTS section");
        }
        m_sawPoints = true;
        m_pointsAt = at;
        const std::size_t count = Count("the number of POINTS");
        const ValueType& type = Type("POINTS");
        std::size_t values = 0;
        if (!Multiply(count, 3, values))
        {
            FailAtLine(at, "POINTS announces more points than any file can hold");
        }
        m_result.points = NumberArray(type, values, "POINTS");
    }

    // A cell section: the classic cell array (each cell its size, then its
    // point indices), or from version 5 the OFFSETS and CONNECTIVITY arrays.
    void ReadCells(std::size_t at, const std::string& section, bool keep)
    {
        const std::size_t order = CellOrder(section);
        if (m_sawCells[order])
        {
            FailAtLine(at, "a second " + section + " section");
        }
        m_sawCells[order] = true;
        const std::size_t first = Count("the first count of " + section);
        const std::size_t second = Count("the second count of " + section);
        const bool offsets = PeekLower() == "offsets";
        if (offsets)
        {
            ReadOffsetCells(section, first, second, keep);
        }
        else if (m_version5)
        {
            FailAtLine(NextTokenStart(), "expected OFFSETS after " + section + " in a version 5 file, found " +
                                             Shown(PeekLower()));
        }
        else
        {
            ReadClassicCells(section, first, second, keep);
        }
        // The offsets of n cells are n + 1 numbers.
        const std::size_t cells = offsets ? first - std::min<std::size_t>(first, 1) : first;
        m_cellCounts[order] = cells;
        if (!keep && cells > 0)
        {
            m_result.notes.push_back(section + ": " + std::to_string(cells) +
                                     " cells read past; only lines are drawn");
        }
    }

    // Cell data numbers the cells of every section in this order, wherever
    // the sections stand in the file.
    static std::size_t CellOrder(const std::string& section)
    {
        static const std::array<std::string_view, 4> order = {"VERTICES", "LINES", "POLYGONS",
                                                               "TRIANGLE_STRIPS"};
        return static_cast<std::size_t>(std::find(order.begin(), order.end(), section) - order.begin());
    }

    void ReadOffsetCells(const std::string& section, std::size_t offsetCount, std::size_t size, bool keep)
    {
        Token(); // OFFSETS
        const std::size_t offsetsAt = m_pos;
        const std::vector<double> offsets =
            Array<double>(Type(section + " OFFSETS"), offsetCount, section + " OFFSETS");
        const std::size_t connectivityAt = NextTokenStart();
        if (Lower(Token()) != "connectivity")
        {
            FailAtLine(connectivityAt, "expected CONNECTIVITY after the OFFSETS of " + section);
        }
        std::vector<double> connectivity =
            Array<double>(Type(section + " CONNECTIVITY"), size, section + " CONNECTIVITY");
        // No offsets at all is an empty section; otherwise they run from 0 up
        // to the size of the connectivity, never falling.
        const double end = static_cast<double>(size);
        const bool empty = offsetCount == 0 && size == 0;
        bool valid = empty || (offsetCount > 0 && offsets.front() == 0.0 && offsets.back() == end);
        for (std::size_t i = 1; valid && i < offsets.size(); ++i)
        {
            valid = offsets[i] >= offsets[i - 1] && offsets[i] == std::floor(offsets[i]);
        }
        if (!valid)
        {
            FailAtLine(offsetsAt, "the OFFSETS of " + section +
                                      " must start at 0, never fall and end at the " +
                                      std::to_string(size) + " indices of CONNECTIVITY");
        }
        if (keep)
        {
            m_result.lineOffsets.assign(offsets.begin(), offsets.end());
            if (m_result.lineOffsets.empty())
            {
                m_result.lineOffsets.push_back(0);
            }
            m_indices = std::move(connectivity);
            m_indicesAt = connectivityAt;
        }
    }

    void ReadClassicCells(const std::string& section, std::size_t cells, std::size_t size, bool keep)
    {
        const std::size_t at = m_pos;
        std::vector<double> numbers = Array<double>(kInt, size, section);
        std::vector<std::size_t> offsets{0};
        std::vector<double> indices;
        std::size_t next = 0;
        for (std::size_t cell = 0; cell < cells; ++cell)
        {
            const double n = next < numbers.size() ? numbers[next] : -1.0;
            const double left = static_cast<double>(numbers.size() - std::min(next + 1, numbers.size()));
            if (next >= numbers.size() || !(n >= 0.0) || n != std::floor(n) || n > left)
            {
                FailAtLine(at, section + " announces " + std::to_string(cells) + " cells in " +
                                   std::to_string(size) + " numbers, but cell " + std::to_string(cell) +
                                   " does not fit in them");
            }
            const auto length = static_cast<std::size_t>(n);
            if (keep)
            {
                const auto begin = numbers.begin() + static_cast<std::ptrdiff_t>(next + 1);
                indices.insert(indices.end(), begin, begin + static_cast<std::ptrdiff_t>(length));
                offsets.push_back(indices.size());
            }
            next += 1 + length;
        }
        if (next != numbers.size())
        {
            FailAtLine(at, section + " announces " + std::to_string(size) + " numbers, but its " +
                               std::to_string(cells) + " cells use " + std::to_string(next));
        }
        if (keep)
        {
            m_result.lineOffsets = std::move(offsets);
            m_indices = std::move(indices);
            m_indicesAt = at;
        }
    }

    // A data array of a POINT_DATA or CELL_DATA section.
    void ReadAttribute(std::size_t at, const std::string& keyword)
    {
        static const std::array<std::string_view, 11> known = {
            "scalars", "color_scalars", "lookup_table", "vectors", "normals", "texture_coordinates",
            "tensors", "tensors6", "global_ids", "pedigree_ids", "edge_flags"};
        if (std::find(known.begin(), known.end(), keyword) == known.end())
        {
            FailAtLine(at, "unknown section " + Shown(Upper(keyword)));
        }
        const std::string section = Upper(keyword);
        if (keyword == "lookup_table")
        {
            // A table of its own: size colours of four components.
            ExpectToken("the name of LOOKUP_TABLE");
            const std::size_t size = Count("the size of LOOKUP_TABLE");
            Array<float>(m_binary ? kUnsignedChar : kFloat, Product(at, size, 4, section), section);
            return;
        }
        if (m_attached == Attached::Nothing)
        {
            FailAtLine(at, section + " outside POINT_DATA and CELL_DATA");
        }
        const std::string name(ExpectToken("the name of " + section));
        if (keyword == "color_scalars")
        {
            ReadColorScalars(at, name);
            return;
        }
        std::size_t components = 1;
        if (keyword == "texture_coordinates")
        {
            components = Count("the dimension of TEXTURE_COORDINATES");
        }
        const ValueType& type = Type(section);
        if (keyword == "scalars")
        {
            ReadScalars(at, name, type);
            return;
        }
        if (keyword == "vectors" || keyword == "normals")
        {
            components = 3;
        }
        else if (keyword == "tensors")
        {
            components = 9;
        }
        else if (keyword == "tensors6")
        {
            components = 6;
        }
        Keep(at, name, components, NumberArray(type, Product(at, m_attachedCount, components, section), section));
    }

    std::size_t Product(std::size_t at, std::size_t a, std::size_t b, const std::string& section)
    {
        std::size_t product = 0;
        if (!Multiply(a, b, product))
        {
            FailAtLine(at, section + " announces more values than any file can hold");
        }
        return product;
    }

    // An array of the current POINT_DATA or CELL_DATA section.
    void Keep(std::size_t at, const std::string& name, std::size_t components, Numbers values)
    {
        if (components < 1 || components > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        {
            FailAtLine(at, "array " + Shown(name) + " has " + std::to_string(components) +
                               " components; expected 1 or more");
        }
        DataArray array;
        array.name = name;
        array.association = m_attached == Attached::Points ? Association::Point : Association::Cell;
        array.components = static_cast<int>(components);
        array.values = std::move(values);
        (m_attached == Attached::Points ? m_pointArrays : m_cellArrays).push_back(std::move(array));
    }

    // Colours as the writers store them: bytes in binary files, numbers from
    // 0 to 1 in text; both kept as 0 to 1.
    void ReadColorScalars(std::size_t at, const std::string& name)
    {
        const std::size_t components = Count("the number of values of COLOR_SCALARS");
        std::vector<float> colours =
            Array<float>(m_binary ? kUnsignedChar : kFloat, Product(at, m_attachedCount, components, "COLOR_SCALARS"),
                         "COLOR_SCALARS");
        if (m_binary)
        {
            for (float& c : colours)
            {
                c /= 255.0f;
            }
        }
        Numbers values;
        values.Floats(0) = std::move(colours);
        Keep(at, name, components, std::move(values));
    }

    void ReadScalars(std::size_t at, const std::string& name, const ValueType& type)
    {
        // An optional number of components ends the line; a lookup table's
        // name may follow on the next.
        std::size_t components = 1;
        const std::size_t restAt = m_pos;
        const std::string_view rest = RestOfLine();
        if (!rest.empty())
        {
            const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), components);
            if (error != std::errc() || end != rest.data() + rest.size() || components < 1 || components > 4)
            {
                FailAtLine(restAt, "expected the number of SCALARS components (1 to 4), found " + Shown(rest));
            }
        }
        // Binary data may follow the SCALARS line itself when no table is
        // named.
        bool lineEnded = true;
        if (PeekLower() == "lookup_table")
        {
            Token();
            ExpectToken("the name of the SCALARS' LOOKUP_TABLE");
            lineEnded = false;
        }
        Keep(at, name, components,
             NumberArray(type, Product(at, m_attachedCount, components, "SCALARS"), "SCALARS", lineEnded));
        if (m_attached == Attached::Points && m_result.activeScalars.empty())
        {
            m_result.activeScalars = name;
        }
    }

    // FIELD name k, then k arrays "name components tuples type" with their
    // data, each perhaps followed by a METADATA block. Inside POINT_DATA or
    // CELL_DATA the arrays are the points' or the cells'; before, they
    // describe the whole file (a time, a cycle) and are read past.
    void ReadField()
    {
        ExpectToken("the name of FIELD");
        const std::size_t arrays = Count("the number of FIELD arrays");
        for (std::size_t i = 0; i < arrays; ++i)
        {
            const std::size_t at = NextTokenStart();
            const std::string name(ExpectToken("the name of FIELD array " + std::to_string(i)));
            const std::string what = "FIELD array " + Shown(name);
            const std::size_t components = Count("the components of " + what);
            const std::size_t tuples = Count("the tuples of " + what);
            const std::size_t count = Product(at, components, tuples, what);
            const std::string typeName = PeekLower();
            if (typeName == "string" || typeName == "utf8_string")
            {
                Token();
                SkipStrings(count, what);
                m_result.notes.push_back(what + " holds strings; read past");
            }
            else
            {
                ReadFieldArray(at, name, components, tuples, what);
            }
            if (PeekLower() == "metadata")
            {
                Token();
                SkipMetadata();
            }
        }
    }

    void ReadFieldArray(std::size_t at, const std::string& name, std::size_t components,
                        std::size_t tuples, const std::string& what)
    {
        const ValueType& type = Type(what);
        if (m_attached == Attached::Nothing)
        {
            Array<double>(type, components * tuples, what);
            m_result.notes.push_back(what + " describes the whole file, not its points or lines; read past");
            return;
        }
        if (tuples != m_attachedCount)
        {
            FailAtLine(at, what + " has " + std::to_string(tuples) + " tuples, but " +
                               (m_attached == Attached::Points ? "POINT_DATA" : "CELL_DATA") + " has " +
                               std::to_string(m_attachedCount));
        }
        Keep(at, name, components, NumberArray(type, components * tuples, what));
    }

    // count strings: in text, one a line; in binary, each after its length,
    // whose first byte's two high bits tell its width (11: the other six
    // bits, 10: two bytes, 01: four bytes, 00: eight bytes, high bits
    // masked off).
    void SkipStrings(std::size_t count, const std::string& what)
    {
        EndHeaderLine(what);
        for (std::size_t i = 0; i < count; ++i)
        {
            if (m_pos >= m_bytes.size())
            {
                FailAtLine(m_bytes.size(), "the file ends after " + std::to_string(i) + " of the " +
                                               std::to_string(count) + " strings of " + what);
            }
            if (!m_binary)
            {
                RestOfLine();
                continue;
            }
            const auto* data = reinterpret_cast<const unsigned char*>(m_bytes.data());
            const unsigned tag = data[m_pos] >> 6;
            const std::size_t width = tag == 3 ? 1 : tag == 2 ? 2 : tag == 1 ? 4 : 8;
            if (width > m_bytes.size() - m_pos)
            {
                FailAtByte(m_pos, "the length of string " + std::to_string(i) + " of " + what +
                                      " runs past the end of the file");
            }
            const std::uint64_t mask = width == 8 ? ~(std::uint64_t{3} << 62)
                                                  : (std::uint64_t{1} << (8 * width - 2)) - 1;
            const std::uint64_t length = BigEndian(data + m_pos, width) & mask;
            if (length > m_bytes.size() - m_pos - width)
            {
                FailAtByte(m_pos, "string " + std::to_string(i) + " of " + what + " runs past the end of the file");
            }
            m_pos += width + static_cast<std::size_t>(length);
        }
    }

    // Lines of text up to the first empty one.
    void SkipMetadata()
    {
        RestOfLine();
        while (m_pos < m_bytes.size() && !RestOfLine().empty())
        {
        }
    }

    // ---- The result --------------------------------------------------------------

    PolyData Finish()
    {
        if (!m_sawPoints)
        {
            Fail("no POINTS section: expected the points of the polylines");
        }
        if (!m_sawLines || m_result.LineCount() == 0)
        {
            Fail("no polylines: expected a LINES section with at least one line");
        }
        const std::size_t points = m_result.PointCount();
        for (std::size_t i = 0; i < m_result.points.Size(); ++i)
        {
            if (!std::isfinite(m_result.points[i]))
            {
                FailAtLine(m_pointsAt, "point " + std::to_string(i / 3) +
                                           " has a coordinate that is not a finite number");
            }
        }
        m_result.connectivity.resize(m_indices.size());
        for (std::size_t i = 0; i < m_indices.size(); ++i)
        {
            const double index = m_indices[i];
            if (!(index >= 0.0) || index != std::floor(index) || index >= static_cast<double>(points))
            {
                FailAtLine(m_indicesAt, "LINES names point " + std::to_string(index) + ", but the " +
                                            std::to_string(points) + " points are numbered from 0 to " +
                                            std::to_string(points) + " - 1");
            }
            m_result.connectivity[i] = static_cast<std::size_t>(index);
        }
        if (m_sawPointData && m_pointDataCount != points)
        {
            FailAtLine(m_pointDataAt, "POINT_DATA has " + std::to_string(m_pointDataCount) +
                                          " values, but there are " + std::to_string(points) + " points");
        }
        KeepLinesOfCellArrays();
        m_result.arrays = std::move(m_pointArrays);
        std::move(m_cellArrays.begin(), m_cellArrays.end(), std::back_inserter(m_result.arrays));
        return std::move(m_result);
    }

    // Cell arrays hold a tuple for every cell of every section; the lines'
    // are those after the vertices'.
    void KeepLinesOfCellArrays()
    {
        std::size_t cells = 0;
        for (const std::size_t count : m_cellCounts)
        {
            cells += count;
        }
        if (m_sawCellData && m_cellDataCount != cells)
        {
            FailAtLine(m_cellDataAt, "CELL_DATA has " + std::to_string(m_cellDataCount) +
                                         " values, but there are " + std::to_string(cells) + " cells");
        }
        const std::size_t first = m_cellCounts[0];
        const std::size_t lines = m_cellCounts[1];
        if (!m_cellArrays.empty() && lines != cells)
        {
            m_result.notes.push_back("cell arrays keep the values of the " + std::to_string(lines) +
                                     " lines; those of the other " + std::to_string(cells - lines) +
                                     " cells are read past");
        }
        for (DataArray& array : m_cellArrays)
        {
            const auto width = static_cast<std::size_t>(array.components);
            Numbers kept;
            if (array.values.IsFloat())
            {
                Slice(array.values.Floats(), first * width, lines * width, kept.Floats(0));
            }
            else
            {
                Slice(array.values.Doubles(), first * width, lines * width, kept.Doubles(0));
            }
            array.values = std::move(kept);
        }
    }

    template <typename T>
    static void Slice(const std::vector<T>& all, std::size_t first, std::size_t count, std::vector<T>& kept)
    {
        const auto begin = all.begin() + static_cast<std::ptrdiff_t>(first);
        kept.assign(begin, begin + static_cast<std::ptrdiff_t>(count));
    }

    std::string_view m_bytes;
    const std::string& m_name;
    std::size_t m_pos = 0;
    bool m_binary = false;
    bool m_version5 = false;

    Progress m_progress;
    PolyData m_result;
    std::vector<double> m_indices; // LINES' point indices as read
    std::vector<DataArray> m_pointArrays;
    std::vector<DataArray> m_cellArrays; // a tuple for every cell, until Finish
    std::array<std::size_t, 4> m_cellCounts = {0, 0, 0, 0}; // in CellOrder
    std::array<bool, 4> m_sawCells = {false, false, false, false};

    Attached m_attached = Attached::Nothing;
    std::size_t m_attachedCount = 0;
    bool m_sawPoints = false;
    bool m_sawLines = false;
    bool m_sawPointData = false;
    bool m_sawCellData = false;
    std::size_t m_pointsAt = 0;
    std::size_t m_indicesAt = 0;
    std::size_t m_pointDataAt = 0;
    std::size_t m_pointDataCount = 0;
    std::size_t m_cellDataAt = 0;
    std::size_t m_cellDataCount = 0;
};

} // namespace

PolyData ParseLegacy(std::string_view bytes, const std::string& name)
{
    return Parser(bytes, name, Progress()).Parse();
}

PolyData ParseLegacy(std::string_view bytes, const std::string& name, const Progress& progress)
{
    return Parser(bytes, name, progress).Parse();
}

} // namespace KesraIo
