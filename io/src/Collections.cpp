// Files that are made of other files: the parallel summary (.pvtp), whose
// <Piece Source="..."> entries are .vtp files, and the multi-block
// collection (.vtm), whose <DataSet file="..."> entries, at any depth of
// <Block>s, are read when they are polydata (.vtp) and read past with a
// note otherwise (a grid holds no polylines). Every entry is a path relative
// to the collection's folder and must stay inside that folder's tree, links
// followed; a missing entry is refused by name.
#include "KesraIo/Reader.h"

#include "Markup.h"
#include "XmlPieces.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <system_error>

namespace KesraIo
{
namespace
{

namespace fs = std::filesystem;

// One entry of a collection: the path it names and where.
struct Entry
{
    std::string path;
    std::size_t line;
    std::string element; // "Piece Source" or "DataSet file"
};

// Notes the entries of a collection and the active scalars it declares.
class Listing final : public MarkupHandler
{
public:
    Listing(const std::string& name, std::string_view rootType, std::string_view entry, const char* attribute)
        : m_name(name), m_rootType(rootType), m_entry(entry), m_attribute(attribute), m_markup(name, *this)
    {
    }

    void Parse(std::string_view bytes) { m_markup.Feed(bytes, true); }

    std::vector<Entry> entries;
    std::string scalars;

    void Start(std::string_view element, const Attributes& attributes) override
    {
        ++m_depth;
        if (m_depth == 1)
        {
            const char* type = attributes.Find("type");
            if (element != "VTKFile" || type == nullptr || std::string_view(type) != m_rootType)
            {
                throw ReadError(m_name + ":" + std::to_string(m_markup.Line()) + ": " + std::string(element) +
                                " type: expected <VTKFile type=\"" + std::string(m_rootType) + "\">");
            }
            return;
        }
        if (element == "PPointData")
        {
            if (const char* name = attributes.Find("Scalars"))
            {
                scalars = name;
            }
        }
        if (element != m_entry)
        {
            return;
        }
        const std::string label = std::string(m_entry) + " " + m_attribute;
        const char* path = attributes.Find(m_attribute);
        if (path == nullptr && m_entry == "Piece")
        {
            throw ReadError(m_name + ":" + std::to_string(m_markup.Line()) + ": " + label +
                            ": expected the piece's file name, found none");
        }
        if (path != nullptr) // a DataSet without a file is an empty block
        {
            entries.push_back({path, m_markup.Line(), label});
        }
    }

    void End(std::string_view) override { --m_depth; }

private:
    const std::string& m_name;
    std::string_view m_rootType;
    std::string_view m_entry;
    const char* m_attribute;
    Markup m_markup;
    int m_depth = 0;
};

// The file an entry names, refused when it is absolute, leaves the
// collection's folder or is missing.
fs::path Resolve(const std::string& collection, const Entry& entry)
{
    const std::string where =
        collection + ":" + std::to_string(entry.line) + ": " + entry.element + " '" + entry.path + "': ";
    const fs::path relative(entry.path);
    if (entry.path.empty() || relative.has_root_name() || relative.has_root_directory())
    {
        throw ReadError(where + "expected a path relative to the folder of " + collection);
    }
    int depth = 0;
    for (const fs::path& part : relative)
    {
        depth += part == ".." ? -1 : (part == "." || part.empty()) ? 0 : 1;
        if (depth < 0)
        {
            throw ReadError(where + "expected a path inside the folder of " + collection + ", found one leaving it");
        }
    }
    fs::path folder = fs::path(collection).parent_path();
    if (folder.empty())
    {
        folder = ".";
    }
    const fs::path file = folder / relative;
    std::error_code error;
    if (!fs::is_regular_file(file, error))
    {
        throw ReadError(where + "no such file (looked for " + file.string() + ")");
    }
    // Links may lead out of the tree where the names do not.
    std::error_code realError;
    const fs::path real = fs::canonical(file, error);
    const fs::path realFolder = fs::canonical(folder, realError);
    const auto [mismatch, unused] = std::mismatch(realFolder.begin(), realFolder.end(), real.begin(), real.end());
    if (error || realError || mismatch != realFolder.end())
    {
        throw ReadError(where + "expected a file inside the folder of " + collection + ", found a link leading out");
    }
    return file;
}

bool HasExtension(const std::string& path, const std::string& extension)
{
    std::string found = fs::path(path).extension().string();
    for (char& c : found)
    {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return found == extension;
}

// Each entry's file takes an equal share of the progress: a collection's
// pieces are most often of a size.
PolyData ReadEntries(const std::string& collection, const std::vector<Entry>& entries, const std::string& scalars,
                     const Progress& progress)
{
    std::vector<PolyData> pieces;
    std::vector<std::string> labels;
    std::vector<std::string> notes;
    const double share = entries.empty() ? 1.0 : 1.0 / static_cast<double>(entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i)
    {
        const Entry& entry = entries[i];
        const Progress part = progress.Part(share * static_cast<double>(i), share * static_cast<double>(i + 1));
        const std::string label =
            collection + ":" + std::to_string(entry.line) + ": " + entry.element + " '" + entry.path + "'";
        if (!HasExtension(entry.path, ".vtp"))
        {
            if (entry.element.rfind("Piece", 0) == 0)
            {
                throw ReadError(label + ": expected a .vtp file");
            }
            notes.push_back(entry.path + " is not polydata (.vtp); it was read past.");
            continue;
        }
        const std::string path = Resolve(collection, entry).string();
        PolyData piece = ParseXmlPieces(WholeFile(path, part.Part(0.0, kDiskShare)), path, part.Part(kDiskShare, 1.0));
        for (std::string& note : piece.notes)
        {
            note = entry.path + ": " + note;
        }
        pieces.push_back(std::move(piece));
        labels.push_back(label);
    }
    PolyData data = JoinPieces(std::move(pieces), labels);
    data.notes.insert(data.notes.begin(), notes.begin(), notes.end());
    if (!scalars.empty() && data.Find(scalars, Association::Point) != nullptr)
    {
        data.activeScalars = scalars;
    }
    RequireLines(data, collection);
    return data;
}

void ExpectSame(bool same, const std::string& label, const DataArray& array, const std::string& what)
{
    if (!same)
    {
        throw ReadError(label + ": " + (array.association == Association::Point ? "point" : "cell") + " array '" +
                        array.name + "' of " + std::to_string(array.components) + " component" +
                        (array.components == 1 ? " " : "s ") + what);
    }
}

bool IsEmpty(const PolyData& piece)
{
    return piece.PointCount() == 0 && piece.LineCount() == 0;
}

// Refuses a piece whose arrays are not the first piece's, and a name
// given twice, which would leave the match to chance.
void ExpectSameArrays(const PolyData& first, const PolyData& piece, const std::string& label)
{
    for (const DataArray& array : piece.arrays)
    {
        ExpectSame(&array == piece.Find(array.name, array.association), label, array,
                   "is there twice: pieces are joined by array names");
    }
    for (const DataArray& array : first.arrays)
    {
        const DataArray* match = piece.Find(array.name, array.association);
        ExpectSame(match != nullptr && match->components == array.components, label, array,
                   "is missing there, though the first piece has it");
    }
    for (const DataArray& array : piece.arrays)
    {
        ExpectSame(first.Find(array.name, array.association) != nullptr, label, array, "is not in the first piece");
    }
}

Numbers& ValuesOf(PolyData& piece, const DataArray& like)
{
    for (DataArray& array : piece.arrays)
    {
        if (array.name == like.name && array.association == like.association)
        {
            return array.values;
        }
    }
    return piece.points; // never reached: the arrays were matched first
}

// The runs of numbers of every piece, one after the other, each piece's
// run freed as soon as it is copied: the whole never takes more than the
// pieces and their join. Widened to double when the pieces' widths differ.
template <typename Run>
Numbers Joined(const std::vector<PolyData*>& pieces, Run run)
{
    std::size_t total = 0;
    bool floats = true;
    for (PolyData* piece : pieces)
    {
        const Numbers& numbers = run(*piece);
        total += numbers.Size();
        floats = floats && (numbers.IsFloat() || numbers.Size() == 0);
    }
    Numbers joined;
    if (floats)
    {
        std::vector<float>& values = joined.Floats(0);
        values.reserve(total);
        for (PolyData* piece : pieces)
        {
            Numbers& numbers = run(*piece);
            values.insert(values.end(), numbers.Floats().begin(), numbers.Floats().end());
            numbers = Numbers();
        }
        return joined;
    }
    std::vector<double>& values = joined.Doubles(0);
    values.reserve(total);
    for (PolyData* piece : pieces)
    {
        Numbers& numbers = run(*piece);
        for (std::size_t i = 0; i < numbers.Size(); ++i)
        {
            values.push_back(numbers[i]);
        }
        numbers = Numbers();
    }
    return joined;
}

// The lines of every piece, their indices shifted past the points and
// indices of the pieces before.
void JoinLines(const std::vector<PolyData*>& pieces, PolyData& data)
{
    std::size_t lines = 0;
    std::size_t indices = 0;
    for (const PolyData* piece : pieces)
    {
        lines += piece->LineCount();
        indices += piece->connectivity.size();
    }
    data.lineOffsets.reserve(lines + 1);
    data.connectivity.reserve(indices);
    std::size_t pointBase = 0;
    for (PolyData* piece : pieces)
    {
        const std::size_t indexBase = data.connectivity.size();
        for (std::size_t i = 1; i < piece->lineOffsets.size(); ++i)
        {
            data.lineOffsets.push_back(indexBase + piece->lineOffsets[i]);
        }
        for (const std::size_t index : piece->connectivity)
        {
            data.connectivity.push_back(pointBase + index);
        }
        pointBase += piece->PointCount();
        piece->connectivity = std::vector<std::size_t>();
    }
}

} // namespace

PolyData JoinPieces(std::vector<PolyData> pieces, const std::vector<std::string>& labels)
{
    std::vector<std::string> notes;
    std::string scalars;
    std::vector<PolyData*> full;
    for (std::size_t i = 0; i < pieces.size(); ++i)
    {
        notes.insert(notes.end(), pieces[i].notes.begin(), pieces[i].notes.end());
        if (scalars.empty())
        {
            scalars = pieces[i].activeScalars;
        }
        if (IsEmpty(pieces[i]))
        {
            continue;
        }
        full.push_back(&pieces[i]);
    }
    for (std::size_t i = 1; i < full.size(); ++i)
    {
        ExpectSameArrays(*full.front(), *full[i], labels[static_cast<std::size_t>(full[i] - pieces.data())]);
    }
    if (full.size() > 1)
    {
        ExpectSameArrays(*full.front(), *full.front(), labels[static_cast<std::size_t>(full[0] - pieces.data())]);
    }
    PolyData data;
    if (full.size() == 1)
    {
        data = std::move(*full.front());
    }
    else if (full.size() > 1)
    {
        data.lineOffsets.assign(1, 0);
        JoinLines(full, data);
        data.points = Joined(full, [](PolyData& piece) -> Numbers& { return piece.points; });
        for (const DataArray& array : full.front()->arrays)
        {
            DataArray joined{array.name, array.association, array.components, Numbers()};
            joined.values = Joined(full, [&array](PolyData& piece) -> Numbers& { return ValuesOf(piece, array); });
            data.arrays.push_back(std::move(joined));
        }
    }
    if (data.lineOffsets.empty())
    {
        data.lineOffsets.assign(1, 0);
    }
    data.notes = std::move(notes);
    data.activeScalars = scalars;
    return data;
}

PolyData ReadParallelPolyData(const std::string& path, const Progress& progress)
{
    Listing listing(path, "PPolyData", "Piece", "Source");
    listing.Parse(WholeFile(path));
    return ReadEntries(path, listing.entries, listing.scalars, progress);
}

PolyData ReadMultiBlock(const std::string& path, const Progress& progress)
{
    Listing listing(path, "vtkMultiBlockDataSet", "DataSet", "file");
    listing.Parse(WholeFile(path));
    return ReadEntries(path, listing.entries, "", progress);
}

} // namespace KesraIo
