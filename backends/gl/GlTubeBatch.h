// CGlTubeBatch: the tubes of many lines packed into shared vertex buffers.
//
// A result of millions of nodes cannot keep a node record per node nor a
// vertex array beside its copy in the driver. So each line's tube is made by
// its own streamline (the library's generation, unchanged), copied as floats
// into its block of a chunk's array, and the records are freed at once; the
// chunk goes to the driver and its array is freed before the next chunk is
// made. A chunk holds whole parts of lines, up to about kChunkVertices
// vertices, and its lines are generated on the host's cores, one line per
// task.
//
// A line of more than kRunNodes nodes is made in parts of at most that many,
// which share their end nodes: each part's streamline reaches one node back
// and two ahead and continues the ring the part before it left
// (ContinueStreamline3D), so the parts are the whole line's tube to the last
// bit while records exist for one part at a time. The parts of a line are
// made one after another, in order, by the same task.
//
// Every part's block has the same layout, the rings node after node and then
// the line's first and last end's disc (rim and centre; drawn only by the
// part that holds that end), as a single tube lays them out, so one list of
// triangles, made for the longest part, draws the rings of every part from
// its own base vertex, and a second one its discs. Positions and normals are
// the floats a single tube uploads; the colours, a node's at each of its
// vertices, sit in a buffer of their own, refilled on their own when the
// legend changes.
//
// For a moving view each chunk also keeps the lines themselves, with nodes
// closer than the merge distance to the last one kept merged into it, and the
// line's tangent in place of a normal: the mesh program shades them as the
// side of a tube facing the viewer (CGlRenderer::DrawScene).
//
// The chunks are made at the first draw, all of them, or, with a build
// budget, as many as fit in it at each draw: a window then stays responsive
// while a large result's tubes are made, and draws the lines of the chunks
// made so far until the last one is.
//
// The lines stay the caller's: they must outlive the batch, which reads their
// points again after a context is lost and their values at each recolouring.
#pragma once

#include "common/SceneData.h"
#include "gl/GlApi.h"
#include "gl/GlStreamline.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace KesraGl
{

class CGlTubeBatch
{
public:
    // Colours of count values, four bytes RGBA each.
    using Colouring = std::function<void(const double* values, std::size_t count, unsigned char* rgba)>;
    // Nodes made so far of all the lines' nodes, after each chunk; false
    // stops making chunks for now (a host that is told to quit), and the
    // next Build goes on from there.
    using Progress = std::function<bool(std::size_t done, std::size_t total)>;

    static constexpr std::size_t kChunkVertices = std::size_t{1} << 20;
    // Nodes a part holds at most; longer lines are made and drawn in parts
    // that share their end rings.
    static constexpr int kRunNodes = 4096;
    // Nodes the moving view's lines keep at most (unless every line is down
    // to its two ends): the merge distance doubles until they fit. A software
    // renderer draws about 10^5 line nodes in 100 to 160 ms on two busy cores.
    static constexpr std::size_t kLineNodes = 60000;

    CGlTubeBatch() = default;
    ~CGlTubeBatch();
    CGlTubeBatch(const CGlTubeBatch&) = delete;
    CGlTubeBatch& operator=(const CGlTubeBatch&) = delete;

    // Plans the tubes of lines[k] (two nodes or more each), generated through
    // tubes[k] (one per line, not yet created) with slices ring vertices of
    // radius (model units) at the next draw; workers threads make them (0:
    // one per core of the host). The moving view's lines merge nodes closer
    // than mergeDistance (model units), or than the shortest multiple of it
    // by a power of 2 that leaves at most kLineNodes. Refused (nothing planned, false)
    // unless the counts match, slices > 0 and radius > 0.
    bool Plan(const std::vector<const KesraBackend::ScalarLine*>& lines, const std::vector<CGlStreamline*>& tubes,
              int slices, double radius, double mergeDistance);
    void SetWorkers(unsigned workers) { m_workers = workers; }
    unsigned Workers() const;
    void SetColouring(Colouring colouring) { m_colouring = std::move(colouring); }
    void SetProgress(Progress progress) { m_progress = std::move(progress); }
    // The next draw refills the colour buffers.
    void MarkColoursChanged();
    // Seconds a draw may spend making chunks before it draws what is made
    // (at least one chunk a draw); 0, the default: all at the first draw.
    void SetBuildBudget(double seconds) { m_budget = seconds; }
    double BuildBudget() const { return m_budget; }
    // Makes chunks until all are made or, budget > 0, budget seconds have
    // passed (the context current).
    void Build(double budget);
    // Whether every chunk is made, and the part of the ring vertices made.
    bool IsBuilt() const { return m_made == m_chunks.size(); }
    double BuiltFraction() const;
    // Hidden, the renderer draws nothing of the batch; moving, it draws the
    // lines instead of the tubes.
    void SetVisible(bool visible) { m_visible = visible; }
    bool IsVisible() const { return m_visible; }
    void SetMoving(bool moving) { m_moving = moving; }
    bool IsMoving() const { return m_moving; }

    // Draws the tubes of the chunks made, with the program in use (the
    // context current); the renderer has Build make them first.
    void Draw();
    // Draws the moving view's lines of the chunks made; the program must
    // take their tangents.
    void DrawLines();
    // Frees the buffers (the context must be current); the next draw makes
    // the tubes again.
    void Release();

    // Lines, ring vertices (nodes times slices) and moving-view nodes planned.
    std::size_t LineCount() const { return m_lines.size(); }
    std::size_t PartCount() const { return m_parts.size(); }
    std::size_t ChunkCount() const { return m_chunks.size(); }
    std::size_t RingVertexCount() const;
    std::size_t LineNodeCount() const;
    // Buffer fills: a chunk's geometry or colours, each one.
    int UploadCount() const { return m_uploads; }
    // The colour of node of line (index into the planned lines) as drawn;
    // false for a node that does not exist.
    bool NodeColour(std::size_t line, std::size_t node, unsigned char* rgba) const;

private:
    // Nodes first to first + nodes - 1 of a line.
    struct Part
    {
        std::size_t line = 0;
        std::size_t first = 0;
        std::size_t nodes = 0;
    };
    struct Chunk
    {
        std::size_t firstPart = 0;
        std::size_t endPart = 0;
        std::size_t vertices = 0;
        // Line nodes made once the chunk is, over all chunks up to this one.
        std::size_t nodesThrough = 0;
        // First vertex of each part's block, from firstPart on.
        std::vector<GLint> blocks;
        // The moving view: kept nodes (indices into their line) and where
        // each part's run starts and how long it is.
        std::vector<std::uint32_t> keptNodes;
        std::vector<GLint> lineFirsts;
        std::vector<GLsizei> lineCounts;
        GLuint vertexArray = 0;
        GLuint geometry = 0;
        GLuint colours = 0;
        GLuint lineArray = 0;
        GLuint lineGeometry = 0;
        GLuint lineColours = 0;
        GLuint lineIndices = 0;
        GLsizei lineIndexCount = 0;
        bool coloured = false;
    };
    struct Draws
    {
        std::vector<GLsizei> counts;
        std::vector<const void*> offsets;
        std::vector<GLint> bases;
    };
    struct ColourStaging
    {
        std::vector<unsigned char> vertices;
        std::vector<unsigned char> lines;
        std::vector<unsigned char> nodes;
    };

    void PlanParts();
    void PlanChunks();
    void PlanLines(double mergeDistance);
    std::size_t KeepNodes(const Part& part, double limit, std::vector<std::uint32_t>* kept) const;
    void MakeIndices();
    void MakeChunk(Chunk& chunk);
    void Generate(Chunk& chunk);
    void UploadColours(Chunk& chunk, ColourStaging& staging) const;
    void UploadLines(Chunk& chunk);
    void RefillColours();
    void DrawChunk(const Chunk& chunk);
    void MakeArray(GLuint& vertexArray, GLuint& geometry, GLuint& colours) const;
    std::size_t BlockVertices(const Part& part) const;
    bool IsLinesLast(const Part& part) const;

    std::vector<const KesraBackend::ScalarLine*> m_lines;
    std::vector<CGlStreamline*> m_tubes;
    std::vector<Part> m_parts;
    std::vector<Chunk> m_chunks;
    int m_slices = 0;
    double m_radius = 0.0;
    unsigned m_workers = 0;
    double m_budget = 0.0;
    Colouring m_colouring;
    Progress m_progress;
    bool m_visible = true;
    bool m_moving = false;
    int m_uploads = 0;
    // Chunks made, in order, and the arrays they are staged in meanwhile.
    std::size_t m_made = 0;
    std::size_t m_madeVertices = 0;
    std::size_t m_totalVertices = 0;
    std::size_t m_totalNodes = 0;
    std::vector<float> m_staging;
    // The ring (x, y, z doubles) a line's next part continues, when the part
    // before it ended a chunk.
    std::vector<double> m_carry;
    std::size_t m_longest = 0;
    GLuint m_ringIndices = 0;
    GLuint m_capIndices = 0;
    GLsizei m_capCount = 0;
    Draws m_draws;
};

} // namespace KesraGl
