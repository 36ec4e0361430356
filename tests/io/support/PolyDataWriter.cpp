#include "io/support/PolyDataWriter.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <stdexcept>

namespace KesraIoTest
{

namespace
{

using KesraIo::Association;
using KesraIo::DataArray;
using KesraIo::PolyData;

// ---- Stored types ------------------------------------------------------------------

struct TypeInfo
{
    std::string_view xmlName;
    std::string_view legacyName;
    std::size_t size;
    bool isFloat;
};

const TypeInfo& Info(Scalar type)
{
    static const std::array<TypeInfo, 10> infos = {{
        {"Int8", "char", 1, false},
        {"UInt8", "unsigned_char", 1, false},
        {"Int16", "short", 2, false},
        {"UInt16", "unsigned_short", 2, false},
        {"Int32", "int", 4, false},
        {"UInt32", "unsigned_int", 4, false},
        {"Int64", "vtktypeint64", 8, false},
        {"UInt64", "vtktypeuint64", 8, false},
        {"Float32", "float", 4, true},
        {"Float64", "double", 8, true},
    }};
    return infos[static_cast<std::size_t>(type)];
}

// The bits of value in the stored type, in the low bytes.
std::uint64_t Bits(Scalar type, double value)
{
    switch (type)
    {
    case Scalar::Int8:
        return static_cast<std::uint8_t>(static_cast<std::int8_t>(value));
    case Scalar::UInt8:
        return static_cast<std::uint8_t>(value);
    case Scalar::Int16:
        return static_cast<std::uint16_t>(static_cast<std::int16_t>(value));
    case Scalar::UInt16:
        return static_cast<std::uint16_t>(value);
    case Scalar::Int32:
        return static_cast<std::uint32_t>(static_cast<std::int32_t>(value));
    case Scalar::UInt32:
        return static_cast<std::uint32_t>(value);
    case Scalar::Int64:
        return static_cast<std::uint64_t>(static_cast<std::int64_t>(value));
    case Scalar::UInt64:
        return static_cast<std::uint64_t>(value);
    case Scalar::Float32:
    {
        const float single = static_cast<float>(value);
        std::uint32_t bits = 0;
        std::memcpy(&bits, &single, sizeof bits);
        return bits;
    }
    case Scalar::Float64:
        break;
    }
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

void AppendBits(std::string& out, std::uint64_t bits, std::size_t size, bool bigEndian)
{
    for (std::size_t i = 0; i < size; ++i)
    {
        const std::size_t byte = bigEndian ? size - 1 - i : i;
        out += static_cast<char>((bits >> (8 * byte)) & 0xffu);
    }
}

// The shortest text that reads back to the stored value.
std::string Text(Scalar type, double value)
{
    std::array<char, 32> buffer{};
    std::to_chars_result result{};
    char* const first = buffer.data();
    char* const last = buffer.data() + buffer.size();
    if (type == Scalar::Float32)
    {
        result = std::to_chars(first, last, static_cast<float>(value));
    }
    else if (type == Scalar::Float64)
    {
        result = std::to_chars(first, last, value);
    }
    else if (type == Scalar::UInt64)
    {
        result = std::to_chars(first, last, static_cast<std::uint64_t>(value));
    }
    else
    {
        result = std::to_chars(first, last, static_cast<std::int64_t>(value));
    }
    return std::string(first, result.ptr);
}

std::string Escaped(std::string_view text)
{
    std::string escaped;
    for (const char c : text)
    {
        switch (c)
        {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

// ---- Columns: an array as it is stored ---------------------------------------------

struct Column
{
    std::string name;
    Scalar type = Scalar::Float64;
    int components = 1;
    std::vector<double> values;

    std::size_t Tuples() const { return values.size() / static_cast<std::size_t>(components); }
};

Scalar OwnType(const KesraIo::Numbers& numbers)
{
    return numbers.IsFloat() ? Scalar::Float32 : Scalar::Float64;
}

std::vector<double> Values(const KesraIo::Numbers& numbers)
{
    std::vector<double> values(numbers.Size());
    for (std::size_t i = 0; i < values.size(); ++i)
    {
        values[i] = numbers[i];
    }
    return values;
}

// An array of data, cell arrays led by the vertices' tuples of -1.
Column ArrayColumn(const DataArray& array, const std::map<std::string, Scalar>& types, std::size_t vertices)
{
    Column column;
    column.name = array.name;
    const auto listed = types.find(array.name);
    column.type = listed != types.end() ? listed->second : OwnType(array.values);
    column.components = array.components;
    if (array.association == Association::Cell)
    {
        column.values.assign(vertices * static_cast<std::size_t>(array.components), -1.0);
    }
    const std::vector<double> values = Values(array.values);
    column.values.insert(column.values.end(), values.begin(), values.end());
    return column;
}

Column IndexColumn(std::string name, Scalar type, std::vector<double> values)
{
    Column column;
    column.name = std::move(name);
    column.type = type;
    column.values = std::move(values);
    return column;
}

// The cells' point indices and their end offsets, as the XML sections store them.
struct Cells
{
    std::vector<double> connectivity;
    std::vector<double> offsets;
};

Cells LineCells(const PolyData& data)
{
    Cells cells;
    cells.connectivity.assign(data.connectivity.begin(), data.connectivity.end());
    cells.offsets.assign(data.lineOffsets.begin() + (data.lineOffsets.empty() ? 0 : 1), data.lineOffsets.end());
    return cells;
}

Cells VertexCells(std::size_t vertices, std::size_t points)
{
    Cells cells;
    for (std::size_t i = 0; i < vertices; ++i)
    {
        cells.connectivity.push_back(static_cast<double>(points == 0 ? 0 : i % points));
        cells.offsets.push_back(static_cast<double>(i + 1));
    }
    return cells;
}

// The smallest and largest finite value of a one-component column, of the
// tuples' magnitudes otherwise; none when no value is finite.
bool ColumnRange(const Column& column, double& min, double& max)
{
    bool any = false;
    const auto components = static_cast<std::size_t>(column.components);
    for (std::size_t t = 0; t < column.Tuples(); ++t)
    {
        double value = column.values[t * components];
        if (components > 1)
        {
            double sum = 0.0;
            for (std::size_t c = 0; c < components; ++c)
            {
                const double v = column.values[t * components + c];
                sum += v * v;
            }
            value = std::sqrt(sum);
        }
        if (!std::isfinite(value))
        {
            continue;
        }
        min = any ? std::min(min, value) : value;
        max = any ? std::max(max, value) : value;
        any = true;
    }
    return any;
}

// ---- Binary data with its header ---------------------------------------------------

class BinaryBlock
{
public:
    explicit BinaryBlock(const XmlFormat& format)
        : m_format(format),
          m_bigEndian(format.byteOrder == ByteOrder::BigEndian),
          m_headerSize(format.headerType == HeaderType::UInt64 ? 8 : 4)
    {
    }

    // The column as bytes (raw) or text (base64): the header of byte counts
    // and the data, each its own base64 run as the writers flush them.
    std::string Encoded(const Column& column, bool base64) const
    {
        std::string data;
        data.reserve(column.values.size() * Info(column.type).size);
        for (const double value : column.values)
        {
            AppendBits(data, Bits(column.type, value), Info(column.type).size, m_bigEndian);
        }
        std::string header;
        if (m_format.zlib)
        {
            data = Compressed(data, header);
        }
        else
        {
            Header(header, data.size());
        }
        return base64 ? Base64(header) + Base64(data) : header + data;
    }

private:
    void Header(std::string& header, std::size_t value) const
    {
        AppendBits(header, value, m_headerSize, m_bigEndian);
    }

    // Blocks of blockSize bytes compressed one by one; the header counts
    // the blocks, gives the block size, the last block's size when it is
    // short (0 when it is full), then each block's compressed size.
    std::string Compressed(const std::string& data, std::string& header) const
    {
        const std::size_t blockSize = m_format.blockSize;
        const std::size_t lastSize = data.size() % blockSize;
        const std::size_t blocks = data.size() / blockSize + (lastSize != 0 ? 1 : 0);
        Header(header, blocks);
        Header(header, blockSize);
        Header(header, lastSize);
        std::string compressed;
        for (std::size_t b = 0; b < blocks; ++b)
        {
            const std::size_t size = std::min(blockSize, data.size() - b * blockSize);
            std::string block(compressBound(static_cast<uLong>(size)), '\0');
            uLongf length = static_cast<uLongf>(block.size());
            if (compress2(reinterpret_cast<Bytef*>(block.data()), &length,
                          reinterpret_cast<const Bytef*>(data.data() + b * blockSize), static_cast<uLong>(size),
                          Z_DEFAULT_COMPRESSION) != Z_OK)
            {
                throw std::runtime_error("zlib could not compress a block");
            }
            block.resize(length);
            Header(header, length);
            compressed += block;
        }
        return compressed;
    }

    const XmlFormat& m_format;
    bool m_bigEndian;
    std::size_t m_headerSize;
};

// ---- XML --------------------------------------------------------------------------

std::string Indent(int depth)
{
    return std::string(static_cast<std::size_t>(depth), ' ');
}

std::string FileOpening(const std::string& type, const XmlFormat& format)
{
    std::string out = "<?xml version=\"1.0\"?>\n<VTKFile type=\"" + type + "\" version=\"" + format.version +
                      "\" byte_order=\"" +
                      (format.byteOrder == ByteOrder::BigEndian ? "BigEndian" : "LittleEndian") + "\"";
    if (format.headerType == HeaderType::UInt64 || format.version != "0.1")
    {
        out += std::string(" header_type=\"") + (format.headerType == HeaderType::UInt64 ? "UInt64" : "UInt32") +
               "\"";
    }
    if (format.zlib)
    {
        out += " compressor=\"vtkZLibDataCompressor\"";
    }
    return out + ">\n";
}

class VtpWriter
{
public:
    explicit VtpWriter(const XmlFormat& format)
        : m_format(format), m_binary(format), m_modern(format.version.compare(0, 2, "2.") == 0)
    {
    }

    std::string Write(const PolyData& data)
    {
        m_out = FileOpening("PolyData", m_format) + "  <PolyData>\n";
        if (m_modern)
        {
            m_out += "    <FieldData>\n";
            Column time = IndexColumn("TimeValue", Scalar::Float64, {0.5});
            WriteArray(time, 6, " NumberOfTuples=\"1\"");
            m_out += "    </FieldData>\n";
        }
        const std::size_t points = data.PointCount();
        m_out += "    <Piece NumberOfPoints=\"" + std::to_string(points) + "\" NumberOfVerts=\"" +
                 std::to_string(m_format.vertices) + "\" NumberOfLines=\"" + std::to_string(data.LineCount()) +
                 "\" NumberOfStrips=\"0\" NumberOfPolys=\"0\">\n";
        WriteAttributes(data, Association::Point, "PointData");
        WriteAttributes(data, Association::Cell, "CellData");
        m_out += "      <Points>\n";
        Column coordinates;
        coordinates.name = "Points";
        coordinates.type = m_format.pointType;
        coordinates.components = 3;
        coordinates.values = Values(data.points);
        WriteArray(coordinates, 8);
        m_out += "      </Points>\n";
        if (m_format.vertices > 0 || m_format.emptySections)
        {
            WriteCells("Verts", VertexCells(m_format.vertices, points));
        }
        WriteCells("Lines", LineCells(data));
        if (m_format.emptySections)
        {
            WriteCells("Strips", Cells());
            WriteCells("Polys", Cells());
        }
        m_out += "    </Piece>\n  </PolyData>\n";
        if (Appended())
        {
            m_out += std::string("  <AppendedData encoding=\"") +
                     (m_format.encoding == Encoding::AppendedRaw ? "raw" : "base64") + "\">\n   _";
            m_out += m_appended;
            m_out += "\n  </AppendedData>\n";
        }
        m_out += "</VTKFile>\n";
        return std::move(m_out);
    }

private:
    bool Appended() const
    {
        return m_format.encoding == Encoding::AppendedRaw || m_format.encoding == Encoding::AppendedBase64;
    }

    void WriteAttributes(const PolyData& data, Association association, const std::string& element)
    {
        m_out += "      <" + element;
        if (association == Association::Point && !data.activeScalars.empty())
        {
            m_out += " Scalars=\"" + Escaped(data.activeScalars) + "\"";
        }
        m_out += ">\n";
        for (const DataArray& array : data.arrays)
        {
            if (array.association == association)
            {
                WriteArray(ArrayColumn(array, m_format.arrayTypes, m_format.vertices), 8);
            }
        }
        m_out += "      </" + element + ">\n";
    }

    void WriteCells(const std::string& element, const Cells& cells)
    {
        m_out += "      <" + element + ">\n";
        WriteArray(IndexColumn("connectivity", m_format.indexType, cells.connectivity), 8);
        WriteArray(IndexColumn("offsets", m_format.indexType, cells.offsets), 8);
        m_out += "      </" + element + ">\n";
    }

    void WriteArray(const Column& column, int depth, const std::string& extra = std::string())
    {
        m_out += Indent(depth) + "<DataArray type=\"" + std::string(Info(column.type).xmlName) + "\" Name=\"" +
                 Escaped(column.name) + "\"";
        if (column.components > 1)
        {
            m_out += " NumberOfComponents=\"" + std::to_string(column.components) + "\"";
        }
        m_out += extra + " format=\"" + FormatName() + "\"";
        double min = 0.0;
        double max = 0.0;
        const bool ranged = ColumnRange(column, min, max);
        if (ranged)
        {
            m_out += " RangeMin=\"" + Text(Scalar::Float64, min) + "\" RangeMax=\"" + Text(Scalar::Float64, max) + "\"";
        }
        if (Appended())
        {
            m_out += " offset=\"" + std::to_string(m_appended.size()) + "\"";
            m_appended += m_binary.Encoded(column, m_format.encoding == Encoding::AppendedBase64);
        }
        const bool keys = m_modern && ranged && column.components > 1;
        if (Appended() && !keys)
        {
            m_out += "/>\n";
            return;
        }
        m_out += ">\n";
        if (keys)
        {
            WriteNormRange(min, max, depth + 2);
        }
        if (m_format.encoding == Encoding::Ascii)
        {
            WriteText(column, depth + 2);
        }
        else if (m_format.encoding == Encoding::Binary)
        {
            m_out += Indent(depth + 2) + m_binary.Encoded(column, true) + "\n";
        }
        m_out += Indent(depth) + "</DataArray>\n";
    }

    void WriteNormRange(double min, double max, int depth)
    {
        m_out += Indent(depth) + "<InformationKey name=\"L2_NORM_RANGE\" location=\"vtkDataArray\" length=\"2\">\n";
        const std::array<double, 2> bounds = {min, max};
        for (std::size_t i = 0; i < bounds.size(); ++i)
        {
            m_out += Indent(depth + 2) + "<Value index=\"" + std::to_string(i) + "\">\n" + Indent(depth + 4) +
                     Text(Scalar::Float64, bounds[i]) + "\n" + Indent(depth + 2) + "</Value>\n";
        }
        m_out += Indent(depth) + "</InformationKey>\n";
    }

    // Six values to a line, each line indented.
    void WriteText(const Column& column, int depth)
    {
        for (std::size_t i = 0; i < column.values.size(); ++i)
        {
            m_out += i % 6 == 0 ? Indent(depth) : std::string(" ");
            m_out += Text(column.type, column.values[i]);
            if (i % 6 == 5 || i + 1 == column.values.size())
            {
                m_out += "\n";
            }
        }
    }

    std::string FormatName() const
    {
        switch (m_format.encoding)
        {
        case Encoding::Ascii:
            return "ascii";
        case Encoding::Binary:
            return "binary";
        case Encoding::AppendedRaw:
        case Encoding::AppendedBase64:
            break;
        }
        return "appended";
    }

    const XmlFormat& m_format;
    BinaryBlock m_binary;
    bool m_modern;
    std::string m_out;
    std::string m_appended;
};

// ---- Legacy ------------------------------------------------------------------------

class LegacyWriter
{
public:
    explicit LegacyWriter(const LegacyFormat& format) : m_format(format) {}

    std::string Write(const PolyData& data)
    {
        const std::size_t points = data.PointCount();
        m_out = "# vtk DataFile Version " + m_format.version + "\nvtk output\n" +
                (m_format.binary ? "BINARY" : "ASCII") + "\nDATASET POLYDATA\n";
        m_out += "POINTS " + std::to_string(points) + " " + std::string(Info(m_format.pointType).legacyName) + "\n";
        WriteValues(m_format.pointType, Values(data.points));
        if (m_format.vertices > 0)
        {
            Cells vertices = VertexCells(m_format.vertices, points);
            vertices.offsets.insert(vertices.offsets.begin(), 0.0);
            WriteCells("VERTICES", vertices);
        }
        const Cells lines = LineCells(data);
        Cells lineCells{lines.connectivity, {0.0}};
        lineCells.offsets.insert(lineCells.offsets.end(), lines.offsets.begin(), lines.offsets.end());
        WriteCells("LINES", lineCells);
        WriteAttributes(data, Association::Cell, "CELL_DATA", m_format.vertices + data.LineCount());
        WriteAttributes(data, Association::Point, "POINT_DATA", points);
        return std::move(m_out);
    }

private:
    // offsets start with 0, as version 5 stores them; the classic layout
    // puts each cell's size before its indices instead.
    void WriteCells(const std::string& section, const Cells& cells)
    {
        const std::size_t count = cells.offsets.size() - 1;
        if (m_format.version.compare(0, 2, "5.") == 0)
        {
            m_out += section + " " + std::to_string(cells.offsets.size()) + " " +
                     std::to_string(cells.connectivity.size()) + "\n";
            m_out += "OFFSETS vtktypeint64\n";
            WriteValues(Scalar::Int64, cells.offsets);
            m_out += "CONNECTIVITY vtktypeint64\n";
            WriteValues(Scalar::Int64, cells.connectivity);
            return;
        }
        std::vector<double> classic;
        for (std::size_t c = 0; c < count; ++c)
        {
            const auto begin = static_cast<std::size_t>(cells.offsets[c]);
            const auto end = static_cast<std::size_t>(cells.offsets[c + 1]);
            classic.push_back(static_cast<double>(end - begin));
            classic.insert(classic.end(), cells.connectivity.begin() + static_cast<std::ptrdiff_t>(begin),
                           cells.connectivity.begin() + static_cast<std::ptrdiff_t>(end));
        }
        m_out += section + " " + std::to_string(count) + " " + std::to_string(classic.size()) + "\n";
        WriteValues(Scalar::Int32, classic);
    }

    void WriteAttributes(const PolyData& data, Association association, const std::string& section,
                         std::size_t tuples)
    {
        std::vector<Column> fields;
        bool wroteSection = false;
        for (const DataArray& array : data.arrays)
        {
            if (array.association != association)
            {
                continue;
            }
            if (!wroteSection)
            {
                m_out += section + " " + std::to_string(tuples) + "\n";
                wroteSection = true;
            }
            Column column = ArrayColumn(array, m_format.arrayTypes, m_format.vertices);
            if (association == Association::Point && array.name == data.activeScalars)
            {
                m_out += "SCALARS " + column.name + " " + std::string(Info(column.type).legacyName) + " " +
                         std::to_string(column.components) + "\nLOOKUP_TABLE default\n";
                WriteValues(column.type, column.values);
                continue;
            }
            fields.push_back(std::move(column));
        }
        if (fields.empty())
        {
            return;
        }
        m_out += "FIELD FieldData " + std::to_string(fields.size()) + "\n";
        for (const Column& column : fields)
        {
            m_out += column.name + " " + std::to_string(column.components) + " " + std::to_string(column.Tuples()) +
                     " " + std::string(Info(column.type).legacyName) + "\n";
            WriteValues(column.type, column.values);
        }
    }

    // Big-endian bytes and a line end, or nine values to a line.
    void WriteValues(Scalar type, const std::vector<double>& values)
    {
        if (m_format.binary)
        {
            for (const double value : values)
            {
                AppendBits(m_out, Bits(type, value), Info(type).size, true);
            }
            m_out += "\n";
            return;
        }
        for (std::size_t i = 0; i < values.size(); ++i)
        {
            m_out += Text(type, values[i]);
            m_out += i % 9 == 8 || i + 1 == values.size() ? "\n" : " ";
        }
    }

    const LegacyFormat& m_format;
    std::string m_out;
};

// ---- Test data helpers -------------------------------------------------------------

KesraIo::Numbers Slice(const KesraIo::Numbers& numbers, std::size_t first, std::size_t count)
{
    KesraIo::Numbers slice;
    if (numbers.IsFloat())
    {
        std::vector<float>& values = slice.Floats(count);
        std::copy_n(numbers.Floats().begin() + static_cast<std::ptrdiff_t>(first), count, values.begin());
    }
    else
    {
        std::vector<double>& values = slice.Doubles(count);
        std::copy_n(numbers.Doubles().begin() + static_cast<std::ptrdiff_t>(first), count, values.begin());
    }
    return slice;
}

PolyData Piece(const PolyData& data, std::size_t firstLine, std::size_t endLine)
{
    PolyData piece;
    piece.activeScalars = data.activeScalars;
    const std::size_t begin = data.lineOffsets[firstLine];
    const std::size_t end = data.lineOffsets[endLine];
    std::size_t firstPoint = begin < end ? data.connectivity[begin] : 0;
    std::size_t endPoint = firstPoint;
    for (std::size_t i = begin; i < end; ++i)
    {
        firstPoint = std::min(firstPoint, data.connectivity[i]);
        endPoint = std::max(endPoint, data.connectivity[i] + 1);
    }
    for (std::size_t i = begin; i < end; ++i)
    {
        piece.connectivity.push_back(data.connectivity[i] - firstPoint);
    }
    for (std::size_t line = firstLine; line <= endLine; ++line)
    {
        piece.lineOffsets.push_back(data.lineOffsets[line] - begin);
    }
    piece.points = Slice(data.points, 3 * firstPoint, 3 * (endPoint - firstPoint));
    for (const DataArray& array : data.arrays)
    {
        DataArray part;
        part.name = array.name;
        part.association = array.association;
        part.components = array.components;
        const auto components = static_cast<std::size_t>(array.components);
        part.values = array.association == Association::Point
                          ? Slice(array.values, components * firstPoint, components * (endPoint - firstPoint))
                          : Slice(array.values, components * firstLine, components * (endLine - firstLine));
        piece.arrays.push_back(std::move(part));
    }
    return piece;
}

DataArray SampleArray(std::string name, Association association, int components)
{
    DataArray array;
    array.name = std::move(name);
    array.association = association;
    array.components = components;
    return array;
}

} // namespace

std::string WriteVtp(const PolyData& data, const XmlFormat& format)
{
    return VtpWriter(format).Write(data);
}

std::string WritePvtp(const PolyData& layout, const XmlFormat& format, const std::vector<std::string>& sources)
{
    std::string out = FileOpening("PPolyData", format) + "  <PPolyData GhostLevel=\"0\">\n";
    const auto declare = [&](Association association, const std::string& element) {
        out += "    <" + element;
        if (association == Association::Point && !layout.activeScalars.empty())
        {
            out += " Scalars=\"" + Escaped(layout.activeScalars) + "\"";
        }
        out += ">\n";
        for (const DataArray& array : layout.arrays)
        {
            if (array.association != association)
            {
                continue;
            }
            const Column column = ArrayColumn(array, format.arrayTypes, 0);
            out += "      <PDataArray type=\"" + std::string(Info(column.type).xmlName) + "\" Name=\"" +
                   Escaped(column.name) + "\"";
            if (column.components > 1)
            {
                out += " NumberOfComponents=\"" + std::to_string(column.components) + "\"";
            }
            out += "/>\n";
        }
        out += "    </" + element + ">\n";
    };
    declare(Association::Point, "PPointData");
    declare(Association::Cell, "PCellData");
    out += "    <PPoints>\n      <PDataArray type=\"" + std::string(Info(format.pointType).xmlName) +
           "\" Name=\"Points\" NumberOfComponents=\"3\"/>\n    </PPoints>\n";
    for (const std::string& source : sources)
    {
        out += "    <Piece Source=\"" + Escaped(source) + "\"/>\n";
    }
    return out + "  </PPolyData>\n</VTKFile>\n";
}

std::string WriteVtm(const std::vector<VtmBlock>& blocks, const XmlFormat& format)
{
    std::string out = FileOpening("vtkMultiBlockDataSet", format) + "  <vtkMultiBlockDataSet>\n";
    for (std::size_t b = 0; b < blocks.size(); ++b)
    {
        out += "    <Block index=\"" + std::to_string(b) + "\" name=\"" + Escaped(blocks[b].name) + "\">\n";
        for (std::size_t d = 0; d < blocks[b].files.size(); ++d)
        {
            out += "      <DataSet index=\"" + std::to_string(d) + "\" name=\"" + Escaped(blocks[b].name) + "_" +
                   std::to_string(d) + "\" file=\"" + Escaped(blocks[b].files[d]) + "\"/>\n";
        }
        out += "    </Block>\n";
    }
    return out + "  </vtkMultiBlockDataSet>\n</VTKFile>\n";
}

std::string WriteLegacy(const PolyData& data, const LegacyFormat& format)
{
    return LegacyWriter(format).Write(data);
}

PolyData SampleLines(std::size_t lines, std::size_t pointsPerLine)
{
    PolyData data;
    const std::size_t points = lines * pointsPerLine;
    std::vector<float>& xyz = data.points.Floats(3 * points);
    DataArray speed = SampleArray("speed", Association::Point, 1);
    DataArray velocity = SampleArray("velocity", Association::Point, 3);
    DataArray pressure = SampleArray("pressure", Association::Point, 1);
    std::vector<float>& speeds = speed.values.Floats(points);
    std::vector<double>& velocities = velocity.values.Doubles(3 * points);
    std::vector<float>& pressures = pressure.values.Floats(points);
    data.lineOffsets.push_back(0);
    for (std::size_t line = 0; line < lines; ++line)
    {
        for (std::size_t i = 0; i < pointsPerLine; ++i)
        {
            const std::size_t k = line * pointsPerLine + i;
            // Steps of 1/8 and 1/4, which floats hold exactly.
            xyz[3 * k] = static_cast<float>(line) - 0.5f * static_cast<float>(lines);
            xyz[3 * k + 1] = 0.25f * static_cast<float>(i);
            xyz[3 * k + 2] = 0.125f * static_cast<float>(k % 7) - 0.375f;
            speeds[k] = 0.5f * static_cast<float>(i) + static_cast<float>(line % 13);
            pressures[k] = 101325.0f + 0.25f * static_cast<float>(k % 4096);
            // Doubles that no float holds.
            velocities[3 * k] = 0.1 * static_cast<double>(i);
            velocities[3 * k + 1] = -1.0 / 3.0 * static_cast<double>(line);
            velocities[3 * k + 2] = 1e-7 * static_cast<double>(k);
            data.connectivity.push_back(k);
        }
        data.lineOffsets.push_back(data.connectivity.size());
    }
    DataArray lineId = SampleArray("line_id", Association::Cell, 1);
    DataArray direction = SampleArray("direction", Association::Cell, 3);
    std::vector<double>& ids = lineId.values.Doubles(lines);
    std::vector<float>& directions = direction.values.Floats(3 * lines);
    for (std::size_t line = 0; line < lines; ++line)
    {
        ids[line] = static_cast<double>(line) - 2.0;
        directions[3 * line] = 1.0f;
        directions[3 * line + 1] = 0.5f * static_cast<float>(line);
        directions[3 * line + 2] = -2.0f;
    }
    data.arrays = {std::move(speed), std::move(velocity), std::move(pressure), std::move(lineId),
                   std::move(direction)};
    data.activeScalars = "speed";
    return data;
}

std::vector<PolyData> SplitByLines(const PolyData& data, std::size_t pieces)
{
    std::vector<PolyData> parts;
    const std::size_t lines = data.LineCount();
    for (std::size_t p = 0; p < pieces; ++p)
    {
        parts.push_back(Piece(data, lines * p / pieces, lines * (p + 1) / pieces));
    }
    return parts;
}

std::string Base64(std::string_view bytes)
{
    static constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3)
    {
        const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
        std::uint32_t group = 0;
        for (std::size_t j = 0; j < 3; ++j)
        {
            group = (group << 8) | (j < count ? static_cast<unsigned char>(bytes[i + j]) : 0u);
        }
        for (std::size_t j = 0; j < 4; ++j)
        {
            text += j <= count ? kAlphabet[(group >> (18 - 6 * j)) & 0x3fu] : '=';
        }
    }
    return text;
}

void WriteFile(const std::string& path, const std::string& bytes)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!file)
    {
        throw std::runtime_error("cannot write " + path);
    }
}

} // namespace KesraIoTest
