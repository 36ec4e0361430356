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
    const std::string where = collection + ":" + std::to_string(entry.line) + ": " + entry.element + " '" +
                              entry.path + "': ";
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
    const fs::path real = fs::canonical(file, error);
    const fs::path realFolder = fs::canonical(folder, error);
    const auto [mismatch, unused] = std::mismatch(realFolder.begin(), realFolder.end(), real.begin(), real.end());
    if (error || mismatch != realFolder.end())
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

PolyData ReadEntries(const std::string& collection, const std::vector<Entry>& entries, const std::string& scalars)
{
    std::vector<PolyData> pieces;
    std::vector<std::string> labels;
    std::vector<std::string> notes;
    for (const Entry& entry : entries)
    {
        const std::string label = collection + ":" + std::to_string(entry.line) + ": " + entry.element + " '" +
                                  entry.path + "'";
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
        PolyData piece = ParseXmlPieces(WholeFile(path), path);
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
                        array.name + "' (" + std::to_string(array.components) + " components) " + what);
    }
}

bool IsEmpty(const PolyData& piece)
{
    return piece.PointCount() == 0 && piece.LineCount() == 0;
}

void Append(PolyData& data, const PolyData& piece, const std::string& label)
{
    for (const DataArray& array : data.arrays)
    {
        const DataArray* match = piece.Find(array.name, array.association);
        ExpectSame(match != nullptr && match->components == array.components, label, array,
                   "is missing there, though the first piece has it");
    }
    for (const DataArray& array : piece.arrays)
    {
        ExpectSame(data.Find(array.name, array.association) != nullptr, label, array,
                   "is not in the first piece");
    }
    const std::size_t pointBase = data.PointCount();
    const std::size_t indexBase = data.connectivity.size();
    data.points.Append(piece.points);
    for (std::size_t i = 1; i < piece.lineOffsets.size(); ++i)
    {
        data.lineOffsets.push_back(indexBase + piece.lineOffsets[i]);
    }
    data.connectivity.reserve(indexBase + piece.connectivity.size());
    for (const std::size_t index : piece.connectivity)
    {
        data.connectivity.push_back(pointBase + index);
    }
    for (DataArray& array : data.arrays)
    {
        array.values.Append(piece.Find(array.name, array.association)->values);
    }
}

} // namespace

PolyData JoinPieces(std::vector<PolyData> pieces, const std::vector<std::string>& labels)
{
    PolyData data;
    data.lineOffsets.assign(1, 0);
    std::vector<std::string> notes;
    std::string scalars;
    bool first = true;
    for (std::size_t i = 0; i < pieces.size(); ++i)
    {
        PolyData& piece = pieces[i];
        notes.insert(notes.end(), piece.notes.begin(), piece.notes.end());
        if (scalars.empty())
        {
            scalars = piece.activeScalars;
        }
        if (IsEmpty(piece))
        {
            continue;
        }
        if (first)
        {
            data = std::move(piece);
            first = false;
            continue;
        }
        Append(data, piece, labels[i]);
        piece = PolyData(); // the joined copy is all that is kept
    }
    data.notes = std::move(notes);
    data.activeScalars = scalars;
    return data;
}

PolyData ReadParallelPolyData(const std::string& path)
{
    Listing listing(path, "PPolyData", "Piece", "Source");
    listing.Parse(WholeFile(path));
    return ReadEntries(path, listing.entries, listing.scalars);
}

PolyData ReadMultiBlock(const std::string& path)
{
    Listing listing(path, "vtkMultiBlockDataSet", "DataSet", "file");
    listing.Parse(WholeFile(path));
    return ReadEntries(path, listing.entries, "");
}

} // namespace KesraIo
