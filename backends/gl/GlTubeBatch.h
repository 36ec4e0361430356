// CGlTubeBatch: the tubes of many lines packed into shared vertex buffers.
//
// A result of millions of nodes cannot keep a node record per node nor a
// vertex array beside its copy in the driver. So each line's tube is made by
// its own streamline (the library's generation, unchanged), copied as floats
// into its block of a chunk's array, and the records are freed at once; the
// chunk goes to the driver and its array is freed before the next chunk is
// made. A chunk holds whole lines, up to about kChunkVertices vertices, and
// its lines are generated on the host's cores, one line per task.
//
// Every line's block has the same layout, the rings node after node and then
// the first and the last end's disc (rim and centre), as a single tube lays
// them out, so one list of triangles, made for the longest line, draws the
// rings of every line from its own base vertex, and a second one its discs.
// Positions and normals are the floats a single tube uploads; the colours, a
// node's at each of its vertices, sit in a buffer of their own, refilled on
// their own when the legend changes.
//
// For a moving view each chunk also keeps the lines themselves, with nodes
// closer than the merge distance to the last one kept merged into it, and the
// line's tangent in place of a normal: the mesh program shades them as the
// side of a tube facing the viewer (CGlRenderer::DrawScene).
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
    // Lines made so far of all the lines, after each chunk.
    using Progress = std::function<void(std::size_t done, std::size_t total)>;

    static constexpr std::size_t kChunkVertices = std::size_t{1} << 20;
    // Nodes a ring index list spans; longer lines are drawn in runs of it
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
    void MarkColoursChanged() { m_coloursChanged = true; }
    // Hidden, the renderer draws nothing of the batch; moving, it draws the
    // lines instead of the tubes.
    void SetVisible(bool visible) { m_visible = visible; }
    bool IsVisible() const { return m_visible; }
    void SetMoving(bool moving) { m_moving = moving; }
    bool IsMoving() const { return m_moving; }

    // Draws the tubes with the program in use (the context current): makes
    // and uploads them first when needed.
    void Draw();
    // Draws the moving view's lines; the program must take their tangents.
    void DrawLines();
    // Frees the buffers (the context must be current); the next draw makes
    // the tubes again.
    void Release();

    // Lines, ring vertices (nodes times slices) and moving-view nodes planned.
    std::size_t LineCount() const { return m_lines.size(); }
    std::size_t ChunkCount() const { return m_chunks.size(); }
    std::size_t RingVertexCount() const;
    std::size_t LineNodeCount() const;
    // Buffer fills: a chunk's geometry or colours, each one.
    int UploadCount() const { return m_uploads; }
    // The colour of node of line (index into the planned lines) as drawn;
    // false for a node that does not exist.
    bool NodeColour(std::size_t line, std::size_t node, unsigned char* rgba) const;

private:
    struct Chunk
    {
        std::size_t firstLine = 0;
        std::size_t endLine = 0;
        std::size_t vertices = 0;
        // First vertex of each line's block, from firstLine on.
        std::vector<GLint> blocks;
        // The moving view: kept nodes (indices into their line) and where
        // each line's run starts and how long it is.
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
    };
    struct Draws
    {
        std::vector<GLsizei> counts;
        std::vector<const void*> offsets;
        std::vector<GLint> bases;
    };

    void PlanLines(double mergeDistance);
    std::size_t KeepNodes(const std::vector<KesraBackend::Vec3>& points, double limit,
                          std::vector<std::uint32_t>* kept) const;
    void MakeIndices();
    void Upload();
    struct ColourStaging
    {
        std::vector<unsigned char> vertices;
        std::vector<unsigned char> lines;
        std::vector<unsigned char> nodes;
    };

    void Generate(Chunk& chunk, std::vector<float>& staging);
    void UploadColours(Chunk& chunk, ColourStaging& staging);
    void UploadLines(Chunk& chunk, std::vector<float>& staging) const;
    void RefillColours();
    void DrawChunk(const Chunk& chunk);
    void MakeArray(GLuint& vertexArray, GLuint& geometry, GLuint& colours) const;
    std::size_t BlockVertices(std::size_t line) const;

    std::vector<const KesraBackend::ScalarLine*> m_lines;
    std::vector<CGlStreamline*> m_tubes;
    std::vector<Chunk> m_chunks;
    int m_slices = 0;
    double m_radius = 0.0;
    unsigned m_workers = 0;
    Colouring m_colouring;
    Progress m_progress;
    bool m_uploaded = false;
    bool m_visible = true;
    bool m_moving = false;
    bool m_coloursChanged = true;
    int m_uploads = 0;
    std::size_t m_longest = 0;
    GLuint m_ringIndices = 0;
    GLuint m_capIndices = 0;
    GLsizei m_capCount = 0;
    Draws m_draws;
};

} // namespace KesraGl
