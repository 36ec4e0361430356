// XML polydata (.vtp, versions 0.1, 1.0 and 2.x). expat walks the markup
// and notes where each array's data lies; the arrays are decoded once the
// whole file is known, because the encoding of the appended section comes
// after the arrays that point into it. Inline data is cut out of the file's
// bytes and never copied; the appended section is kept out of expat's way,
// since raw bytes are not XML.
#include "KesraIo/Reader.h"

#include "Markup.h"
#include "XmlDecode.h"
#include "XmlPieces.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

namespace KesraIo
{
namespace
{

enum class Element
{
    File,
    PolyData,
    Piece,
    PointData,
    CellData,
    Points,
    Verts,
    Lines,
    Strips,
    Polys,
    FieldData,
    DataArray, // one this reader decodes
    Skipped,   // one it reads past
    AppendedData,
    Other
};

// One DataArray element: what it declares and where its data lies.
struct ArrayRef
{
    std::string name;
    const ValueType* type = nullptr; // nullptr for strings
    int components = 1;
    Form form = Form::Ascii;
    bool appended = false;
    std::uint64_t offset = 0;
    std::string_view text; // the element's content, for inline data
    std::size_t line = 0;
    std::string where; // e.g. "PointData DataArray 'speed'"
};

struct PieceRef
{
    std::size_t line = 0;
    std::size_t points = 0;
    std::size_t verts = 0;
    std::size_t lines = 0;
    std::size_t strips = 0;
    std::size_t polys = 0;
    std::optional<ArrayRef> pointArray;
    std::optional<ArrayRef> connectivity;
    std::optional<ArrayRef> offsets;
    std::vector<ArrayRef> pointData;
    std::vector<ArrayRef> cellData;
    std::string scalars;
    bool sawPoints = false;
    bool sawLines = false;
};

std::string Quoted(std::string_view text)
{
    return "'" + std::string(text) + "'";
}

bool IsSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

// The bytes of a file with an appended section, cut in three: the markup
// up to and with <AppendedData ...>, the data after its '_', and the markup
// from </AppendedData> on.
struct Cut
{
    std::string_view head;
    std::string_view appended;
    std::string_view tail;
    bool hasAppended = false;
};

std::size_t LineAt(std::string_view bytes, std::size_t offset)
{
    const auto end = bytes.begin() + static_cast<std::ptrdiff_t>(std::min(offset, bytes.size()));
    return 1 + static_cast<std::size_t>(std::count(bytes.begin(), end, '\n'));
}

Cut CutAppended(std::string_view bytes, const std::string& name)
{
    constexpr std::string_view kOpen = "<AppendedData";
    constexpr std::string_view kClose = "</AppendedData>";
    std::size_t open = bytes.find(kOpen);
    while (open != std::string_view::npos && open + kOpen.size() < bytes.size() &&
           !IsSpace(bytes[open + kOpen.size()]) && bytes[open + kOpen.size()] != '>' &&
           bytes[open + kOpen.size()] != '/')
    {
        open = bytes.find(kOpen, open + 1);
    }
    const std::size_t tagEnd = open == std::string_view::npos ? open : bytes.find('>', open);
    if (tagEnd == std::string_view::npos || bytes[tagEnd - 1] == '/')
    {
        return {bytes, {}, {}, tagEnd != std::string_view::npos};
    }
    std::size_t marker = tagEnd + 1;
    while (marker < bytes.size() && IsSpace(bytes[marker]))
    {
        ++marker;
    }
    if (marker == bytes.size() || bytes[marker] != '_')
    {
        throw ReadError(name + ":" + std::to_string(LineAt(bytes, marker)) +
                        ": AppendedData: expected '_' before the appended data");
    }
    const std::size_t close = bytes.rfind(kClose);
    if (close == std::string_view::npos || close < marker)
    {
        throw ReadError(name + ": AppendedData: expected </AppendedData> after the appended data (is the file "
                               "truncated?)");
    }
    return {bytes.substr(0, tagEnd + 1), bytes.substr(marker + 1, close - marker - 1), bytes.substr(close), true};
}

// Walks the markup of a .vtp and notes its pieces and arrays.
class Structure final : public MarkupHandler
{
public:
    Structure(std::string_view bytes, const std::string& name) : m_bytes(bytes), m_name(name), m_markup(name, *this) {}

    void Parse(const Cut& cut)
    {
        FeedSkippingContents(cut.head);
        if (cut.hasAppended && !cut.tail.empty())
        {
            const std::size_t between = static_cast<std::size_t>(cut.tail.data() - cut.head.data()) - cut.head.size();
            m_markup.Skip(m_bytes.substr(cut.head.size(), between));
            m_markup.Feed(cut.tail, false);
        }
        m_markup.Feed({}, true);
        if (!m_sawPolyData)
        {
            throw ReadError(m_name + ": VTKFile: expected a PolyData element in it");
        }
    }

    BinaryLayout layout;
    bool appendedBase64 = false;
    std::vector<PieceRef> pieces;
    std::vector<std::string> notes;

    void Start(std::string_view element, const Attributes& attributes) override
    {
        const Element parent = m_stack.empty() ? Element::Other : m_stack.back();
        m_stack.push_back(Classify(element, parent));
        switch (m_stack.back())
        {
        case Element::File: ReadFile(attributes); break;
        case Element::PolyData: m_sawPolyData = true; break;
        case Element::Piece: ReadPiece(attributes); break;
        case Element::PointData: ReadPointData(attributes); break;
        case Element::Points: Once(pieces.back().sawPoints, "Points"); break;
        case Element::Lines: Once(pieces.back().sawLines, "Lines"); break;
        case Element::DataArray: StartArray(parent, attributes); break;
        case Element::Skipped: SkipArray(parent, attributes); break;
        case Element::AppendedData: ReadAppended(attributes); break;
        default: break;
        }
        if (element == "DataArray")
        {
            // Kept, read past or unknown, its text is no markup.
            m_inlineContentAt = m_markup.EventEnd();
        }
    }

    void End(std::string_view) override
    {
        const Element ended = m_stack.back();
        m_stack.pop_back();
        if (ended == Element::DataArray)
        {
            EndArray();
        }
        else if (!m_stack.empty() && m_stack.back() == Element::DataArray)
        {
            // Information keys come before the data: the data starts after them.
            m_contentStart = m_markup.EventEnd();
        }
        else if (ended == Element::Piece)
        {
            CheckPiece(pieces.back());
        }
    }

private:
    Element Classify(std::string_view element, Element parent) const
    {
        if (m_stack.empty())
        {
            if (element != "VTKFile")
            {
                Fail("<" + std::string(element) + ">: expected <VTKFile> as the root element");
            }
            return Element::File;
        }
        switch (parent)
        {
        case Element::File:
            return element == "PolyData"       ? Element::PolyData
                   : element == "AppendedData" ? Element::AppendedData
                                               : Element::Other;
        case Element::PolyData:
            return element == "Piece" ? Element::Piece : element == "FieldData" ? Element::FieldData : Element::Other;
        case Element::Piece:
            return element == "PointData"  ? Element::PointData
                   : element == "CellData" ? Element::CellData
                   : element == "Points"   ? Element::Points
                   : element == "Verts"    ? Element::Verts
                   : element == "Lines"    ? Element::Lines
                   : element == "Strips"   ? Element::Strips
                   : element == "Polys"    ? Element::Polys
                                           : Element::Other;
        case Element::PointData:
        case Element::CellData:
        case Element::Points:
        case Element::Lines: return element == "DataArray" ? Element::DataArray : Element::Other;
        case Element::FieldData: return element == "DataArray" ? Element::Skipped : Element::Other;
        default: return Element::Other;
        }
    }

    // expat would scan every character of an inline array, at a fraction
    // of the speed of decoding it: the markup goes to expat tag by tag up
    // to each DataArray start tag, and the text that follows one is passed
    // over up to the next markup, since the array is cut out by position.
    void FeedSkippingContents(std::string_view head)
    {
        constexpr std::string_view kArray = "<DataArray";
        std::size_t at = 0;
        while (at < head.size())
        {
            const std::size_t tag = head.find(kArray, at);
            const std::size_t tagEnd = tag == std::string_view::npos ? tag : head.find('>', tag);
            if (tagEnd == std::string_view::npos)
            {
                m_markup.Feed(head.substr(at), false);
                return;
            }
            m_markup.Feed(head.substr(at, tagEnd + 1 - at), false);
            at = tagEnd + 1;
            if (m_inlineContentAt == at)
            {
                const std::size_t markup = std::min(head.find('<', at), head.size());
                m_markup.Skip(head.substr(at, markup - at));
                at = markup;
            }
        }
    }

    [[noreturn]] void Fail(const std::string& what) const { FailAt(m_markup.Line(), what); }

    [[noreturn]] void FailAt(std::size_t line, const std::string& what) const
    {
        throw ReadError(m_name + ":" + std::to_string(line) + ": " + what);
    }

    void Once(bool& seen, const std::string& element) const
    {
        if (seen)
        {
            Fail(element + ": a second " + element + " element in one Piece");
        }
        seen = true;
    }

    static std::string Shown(const char* value) { return value == nullptr ? "none" : Quoted(value); }

    std::uint64_t WholeNumber(const Attributes& attributes, const std::string& element, const char* attribute,
                              std::uint64_t absent) const
    {
        const char* value = attributes.Find(attribute);
        if (value == nullptr)
        {
            return absent;
        }
        const std::string_view text(value);
        std::uint64_t number = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (text.empty() || error != std::errc() || end != text.data() + text.size())
        {
            Fail(element + " " + attribute + ": expected a whole number of 0 or more, found " + Quoted(text));
        }
        return number;
    }

    std::size_t Size(const Attributes& attributes, const char* attribute) const
    {
        const std::uint64_t number = WholeNumber(attributes, "Piece", attribute, 0);
        if (number > std::numeric_limits<std::size_t>::max() / 8)
        {
            Fail(std::string("Piece ") + attribute + ": " + std::to_string(number) + " is more than memory holds");
        }
        return static_cast<std::size_t>(number);
    }

    void ReadFile(const Attributes& attributes)
    {
        const char* type = attributes.Find("type");
        if (type == nullptr || std::string_view(type) != "PolyData")
        {
            Fail("VTKFile type: expected 'PolyData' (only polydata holds polylines), found " + Shown(type));
        }
        if (const char* version = attributes.Find("version"))
        {
            const std::string_view text(version);
            if (text != "0.1" && text != "1.0" && text.substr(0, 2) != "2.")
            {
                Fail("VTKFile version: expected 0.1, 1.0 or 2.x, found " + Quoted(text));
            }
        }
        const char* order = attributes.Find("byte_order");
        if (order != nullptr && std::string_view(order) != "LittleEndian" && std::string_view(order) != "BigEndian")
        {
            Fail("VTKFile byte_order: expected LittleEndian or BigEndian, found " + Quoted(order));
        }
        layout.bigEndian = order != nullptr && std::string_view(order) == "BigEndian";
        const char* header = attributes.Find("header_type");
        if (header != nullptr && std::string_view(header) != "UInt32" && std::string_view(header) != "UInt64")
        {
            Fail("VTKFile header_type: expected UInt32 or UInt64, found " + Quoted(header));
        }
        layout.header64 = header != nullptr && std::string_view(header) == "UInt64";
        const char* compressor = attributes.Find("compressor");
        if (compressor != nullptr && *compressor != '\0' && std::string_view(compressor) != "vtkZLibDataCompressor")
        {
            Fail("VTKFile compressor: expected vtkZLibDataCompressor (the only one this reader inflates), found " +
                 Quoted(compressor));
        }
        layout.zlib = compressor != nullptr && *compressor != '\0';
    }

    void ReadPiece(const Attributes& attributes)
    {
        PieceRef piece;
        piece.line = m_markup.Line();
        piece.points = Size(attributes, "NumberOfPoints");
        piece.verts = Size(attributes, "NumberOfVerts");
        piece.lines = Size(attributes, "NumberOfLines");
        piece.strips = Size(attributes, "NumberOfStrips");
        piece.polys = Size(attributes, "NumberOfPolys");
        pieces.push_back(std::move(piece));
    }

    void ReadPointData(const Attributes& attributes)
    {
        if (const char* scalars = attributes.Find("Scalars"))
        {
            pieces.back().scalars = scalars;
        }
    }

    void ReadAppended(const Attributes& attributes)
    {
        const char* encoding = attributes.Find("encoding");
        if (encoding != nullptr && std::string_view(encoding) != "raw" && std::string_view(encoding) != "base64")
        {
            Fail("AppendedData encoding: expected raw or base64, found " + Quoted(encoding));
        }
        appendedBase64 = encoding != nullptr && std::string_view(encoding) == "base64";
    }

    static const char* ParentName(Element parent)
    {
        switch (parent)
        {
        case Element::PointData: return "PointData";
        case Element::CellData: return "CellData";
        case Element::Points: return "Points";
        case Element::Lines: return "Lines";
        case Element::FieldData: return "FieldData";
        default: return "";
        }
    }

    void StartArray(Element parent, const Attributes& attributes)
    {
        ArrayRef array;
        array.line = m_markup.Line();
        const char* name = attributes.Find("Name");
        array.name = name != nullptr ? name : "";
        array.where = std::string(ParentName(parent)) + " DataArray" + (name != nullptr ? " " + Quoted(name) : "");
        const char* type = attributes.Find("type");
        const std::string_view typeName = type != nullptr ? type : "";
        array.type = FindValueType(typeName);
        const bool strings = typeName == "String";
        if (array.type == nullptr && !(strings && (parent == Element::PointData || parent == Element::CellData)))
        {
            Fail(array.where + " type: expected one of " + ValueTypeNames() + ", found " + Shown(type));
        }
        const std::uint64_t components = WholeNumber(attributes, array.where, "NumberOfComponents", 1);
        constexpr std::uint64_t kMostComponents = 1u << 16;
        if (components < 1 || components > kMostComponents)
        {
            Fail(array.where + " NumberOfComponents: expected a whole number from 1 to " +
                 std::to_string(kMostComponents) + ", found " + std::to_string(components));
        }
        array.components = static_cast<int>(components);
        if (parent == Element::Points && components != 3)
        {
            Fail(array.where + " NumberOfComponents: expected 3 (x, y, z), found " + std::to_string(components));
        }
        ReadFormat(array, attributes);
        m_array = std::move(array);
        m_contentStart = m_markup.EventEnd();
    }

    void ReadFormat(ArrayRef& array, const Attributes& attributes) const
    {
        const char* format = attributes.Find("format");
        const std::string_view text = format != nullptr ? format : "ascii";
        if (text == "ascii")
        {
            array.form = Form::Ascii;
        }
        else if (text == "binary")
        {
            array.form = Form::Base64;
        }
        else if (text == "appended")
        {
            array.appended = true;
            if (attributes.Find("offset") == nullptr)
            {
                Fail(array.where + " offset: expected the array's offset into the appended data, found none");
            }
            array.offset = WholeNumber(attributes, array.where, "offset", 0);
        }
        else
        {
            Fail(array.where + " format: expected ascii, binary or appended, found " + Quoted(text));
        }
    }

    void EndArray()
    {
        const std::size_t end = std::max(m_markup.EventStart(), m_contentStart);
        m_array.text = m_bytes.substr(m_contentStart, end - m_contentStart);
        PieceRef& piece = pieces.back();
        const Element parent = m_stack.back();
        if (m_array.type == nullptr)
        {
            notes.push_back("The " + m_array.where + " holds strings; it was read past.");
            return;
        }
        switch (parent)
        {
        case Element::PointData: piece.pointData.push_back(std::move(m_array)); break;
        case Element::CellData: piece.cellData.push_back(std::move(m_array)); break;
        case Element::Points: SetOnce(piece.pointArray, "Points"); break;
        case Element::Lines:
            if (m_array.name == "connectivity")
            {
                SetOnce(piece.connectivity, "Lines");
            }
            else if (m_array.name == "offsets")
            {
                SetOnce(piece.offsets, "Lines");
            }
            break;
        default: break;
        }
    }

    void SetOnce(std::optional<ArrayRef>& slot, const std::string& element)
    {
        if (slot)
        {
            Fail(m_array.where + ": a second such DataArray in " + element);
        }
        slot = std::move(m_array);
    }

    void SkipArray(Element parent, const Attributes& attributes)
    {
        if (parent == Element::FieldData)
        {
            const char* name = attributes.Find("Name");
            notes.push_back("The field data array " + Shown(name) + " belongs to no point or line; it was read past.");
        }
    }

    void CheckPiece(const PieceRef& piece) const
    {
        if (piece.points > 0 && !piece.pointArray)
        {
            FailAt(piece.line, "Piece: expected a Points element with a DataArray for its " +
                                   std::to_string(piece.points) + " points");
        }
        if (piece.lines > 0 && (!piece.connectivity || !piece.offsets))
        {
            FailAt(piece.line,
                   "Piece: expected a Lines element with DataArrays named connectivity and offsets for its " +
                       std::to_string(piece.lines) + " lines");
        }
    }

    std::string_view m_bytes;
    const std::string& m_name;
    Markup m_markup;
    std::vector<Element> m_stack;
    ArrayRef m_array;
    std::size_t m_contentStart = 0;
    std::size_t m_inlineContentAt = 0; // where the last DataArray's content starts
    bool m_sawPolyData = false;
};

// ---- Decoding -------------------------------------------------------------------------

std::size_t Times(std::size_t a, std::size_t b)
{
    if (a != 0 && b > std::numeric_limits<std::size_t>::max() / a)
    {
        return kAnyCount - 1; // more than any file holds: the size checks refuse it
    }
    return a * b;
}

class Decoder
{
public:
    Decoder(std::string_view bytes, const std::string& name, const Structure& structure, const Cut& cut,
            const Progress& progress)
        : m_bytes(bytes), m_name(name), m_structure(structure), m_cut(cut), m_told{progress, bytes}
    {
    }

    PolyData Piece(const PieceRef& piece) const
    {
        PolyData data;
        ReadPoints(piece, data);
        ReadLines(piece, data);
        for (const ArrayRef& array : piece.pointData)
        {
            data.arrays.push_back(Attribute(array, piece.points, 0, piece.points, "point", Association::Point));
        }
        // Cell data runs over vertices, lines, polygons and strips in turn:
        // the lines' run follows the vertices'.
        const std::size_t cells = piece.verts + piece.lines + piece.strips + piece.polys;
        for (const ArrayRef& array : piece.cellData)
        {
            data.arrays.push_back(Attribute(array, cells, piece.verts, piece.lines, "cell", Association::Cell));
        }
        if (!piece.scalars.empty() && data.Find(piece.scalars, Association::Point) != nullptr)
        {
            data.activeScalars = piece.scalars;
        }
        return data;
    }

private:
    template <typename T>
    void Decode(const ArrayRef& array, const Expected& expected, std::vector<T>& out, std::size_t first) const
    {
        std::string_view data = array.text;
        Form form = array.form;
        if (array.appended)
        {
            if (!m_cut.hasAppended)
            {
                throw ReadError(m_name + ":" + std::to_string(array.line) + ": " + array.where +
                                " format: appended, but the file has no AppendedData");
            }
            if (array.offset > m_cut.appended.size())
            {
                throw ReadError(m_name + ":" + std::to_string(array.line) + ": " + array.where +
                                " offset: " + std::to_string(array.offset) + " is past the end of the " +
                                std::to_string(m_cut.appended.size()) + " bytes of the appended data");
            }
            data = m_cut.appended.substr(static_cast<std::size_t>(array.offset));
            form = m_structure.appendedBase64 ? Form::Base64 : Form::Raw;
        }
        try
        {
            m_told.Tell(data.data());
            DecodeValues(data, form, *array.type, m_structure.layout, expected, out, first, m_told);
        }
        catch (const DataError& error)
        {
            throw ReadError(Place(array, data, error.position) + array.where + ": " + error.what());
        }
    }

    // "name:line: " for inline data, with the appended offset for the rest.
    std::string Place(const ArrayRef& array, std::string_view data, std::size_t position) const
    {
        if (!array.appended)
        {
            const std::size_t line = position == DataError::npos
                                         ? array.line
                                         : LineAt(m_bytes, static_cast<std::size_t>(data.data() - m_bytes.data()) +
                                                               std::min(position, data.size()));
            return m_name + ":" + std::to_string(line) + ": ";
        }
        std::string place = m_name + ":" + std::to_string(array.line) + ": ";
        if (position != DataError::npos)
        {
            place += std::string(m_structure.appendedBase64 ? "character " : "byte ") +
                     std::to_string(array.offset + position) + " of the appended data: ";
        }
        return place;
    }

    void ReadPoints(const PieceRef& piece, PolyData& data) const
    {
        if (!piece.pointArray)
        {
            return;
        }
        const ArrayRef& array = *piece.pointArray;
        const Expected expected{Times(piece.points, 3),
                                "3 coordinates for each of " + std::to_string(piece.points) + " points"};
        if (array.type->scalar == Scalar::Float32)
        {
            Decode(array, expected, data.points.Floats(0), 0);
        }
        else
        {
            Decode(array, expected, data.points.Doubles(0), 0);
        }
        for (std::size_t i = 0; i < data.points.Size(); ++i)
        {
            if (!std::isfinite(data.points[i]))
            {
                throw ReadError(m_name + ":" + std::to_string(array.line) + ": " + array.where + ": point " +
                                std::to_string(i / 3) + " has a coordinate that is not a finite number");
            }
        }
    }

    void ReadLines(const PieceRef& piece, PolyData& data) const
    {
        data.lineOffsets.assign(1, 0);
        if (!piece.offsets || !piece.connectivity)
        {
            return;
        }
        Decode(*piece.offsets, Expected{piece.lines, "one for each of " + std::to_string(piece.lines) + " lines"},
               data.lineOffsets, 1);
        Decode(*piece.connectivity, Expected{kAnyCount, ""}, data.connectivity, 0);
        const std::vector<std::size_t>& offsets = data.lineOffsets;
        const std::size_t indices = data.connectivity.size();
        for (std::size_t i = 1; i < offsets.size(); ++i)
        {
            if (offsets[i] < offsets[i - 1] || offsets[i] > indices)
            {
                throw ReadError(m_name + ":" + std::to_string(piece.offsets->line) + ": " + piece.offsets->where +
                                ": line " + std::to_string(i - 1) + " ends at " + Signed(offsets[i], *piece.offsets) +
                                "; expected offsets that never fall, from 0 to the " + std::to_string(indices) +
                                " indices of connectivity");
            }
        }
        if (offsets.back() != indices)
        {
            throw ReadError(m_name + ":" + std::to_string(piece.offsets->line) + ": " + piece.offsets->where +
                            ": the last line ends at " + std::to_string(offsets.back()) + "; expected the " +
                            std::to_string(indices) + " indices of connectivity");
        }
        const std::size_t points = data.PointCount();
        for (std::size_t i = 0; i < indices; ++i)
        {
            if (data.connectivity[i] >= points)
            {
                throw ReadError(m_name + ":" + std::to_string(piece.connectivity->line) + ": " +
                                piece.connectivity->where + ": index " + std::to_string(i) + " names point " +
                                Signed(data.connectivity[i], *piece.connectivity) + "; expected 0 to " +
                                std::to_string(points) + " - 1");
            }
        }
    }

    // A value read from a signed type as the file wrote it.
    static std::string Signed(std::size_t value, const ArrayRef& array)
    {
        if (array.type->isSigned && value > static_cast<std::size_t>(std::numeric_limits<std::int64_t>::max()))
        {
            return std::to_string(static_cast<std::int64_t>(value));
        }
        return std::to_string(value);
    }

    // The array's tuples [first, first + count) of its tuples in all.
    DataArray Attribute(const ArrayRef& array, std::size_t tuples, std::size_t first, std::size_t count,
                        const char* what, Association association) const
    {
        DataArray values;
        values.name = array.name;
        values.association = association;
        values.components = array.components;
        const auto components = static_cast<std::size_t>(array.components);
        const Expected expected{Times(tuples, components),
                                std::to_string(components) + (components == 1 ? " component" : " components") +
                                    " for each of " + std::to_string(tuples) + " " + what + "s"};
        if (array.type->scalar == Scalar::Float32)
        {
            std::vector<float> numbers;
            Decode(array, expected, numbers, 0);
            Keep(numbers, first * components, count * components);
            values.values.Floats(0) = std::move(numbers);
        }
        else
        {
            std::vector<double> numbers;
            Decode(array, expected, numbers, 0);
            Keep(numbers, first * components, count * components);
            values.values.Doubles(0) = std::move(numbers);
        }
        return values;
    }

    template <typename V>
    static void Keep(std::vector<V>& numbers, std::size_t first, std::size_t count)
    {
        if (first == 0 && count == numbers.size())
        {
            return;
        }
        numbers.erase(numbers.begin(), numbers.begin() + static_cast<std::ptrdiff_t>(first));
        numbers.resize(count);
        numbers.shrink_to_fit();
    }

    std::string_view m_bytes;
    const std::string& m_name;
    const Structure& m_structure;
    const Cut& m_cut;
    const FileProgress m_told;
};

std::string Counted(std::size_t count, const char* one, const char* many)
{
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

} // namespace

PolyData ParseXmlPieces(std::string_view bytes, const std::string& name, const Progress& progress)
{
    const Cut cut = CutAppended(bytes, name);
    Structure structure(bytes, name);
    structure.Parse(cut);
    const Decoder decoder(bytes, name, structure, cut, progress);
    std::vector<PolyData> pieces;
    std::vector<std::string> labels;
    std::size_t verts = 0;
    std::size_t strips = 0;
    std::size_t polys = 0;
    for (const PieceRef& piece : structure.pieces)
    {
        pieces.push_back(decoder.Piece(piece));
        labels.push_back(name + ":" + std::to_string(piece.line) + ": Piece " + std::to_string(labels.size()));
        verts += piece.verts;
        strips += piece.strips;
        polys += piece.polys;
    }
    PolyData data = JoinPieces(std::move(pieces), labels);
    const std::pair<std::size_t, std::string> skipped[] = {
        {verts, Counted(verts, "vertex", "vertices")},
        {polys, Counted(polys, "polygon", "polygons")},
        {strips, Counted(strips, "triangle strip", "triangle strips")}};
    for (const auto& [count, text] : skipped)
    {
        if (count > 0)
        {
            data.notes.push_back(text + " read past: only lines are drawn.");
        }
    }
    data.notes.insert(data.notes.end(), structure.notes.begin(), structure.notes.end());
    return data;
}

void RequireLines(const PolyData& data, const std::string& name)
{
    if (data.LineCount() == 0)
    {
        throw ReadError(name + ": no polylines: expected a Lines element with at least one line");
    }
}

PolyData ParseXmlPolyData(std::string_view bytes, const std::string& name)
{
    PolyData data = ParseXmlPieces(bytes, name);
    RequireLines(data, name);
    return data;
}

} // namespace KesraIo
