#include "gl/GlTubeBatch.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>

namespace KesraGl
{

namespace
{

using KesraBackend::ScalarLine;
using KesraBackend::Vec3;

constexpr std::size_t kFloats = 6; // position and normal of a vertex
constexpr std::uint32_t kRestart = 0xFFFFFFFFu;

// The scratch arrays of one worker, reused from line to line.
struct Scratch
{
    std::vector<float> vertices;
    std::vector<float> normals;
};

// The disc over the ring at node, facing away from its neighbour: the rim
// repeats the ring with the disc's normal, the centre is the node itself,
// as a single tube draws it (CGlStreamline::AddCap).
void WriteCap(const ScalarLine& line, std::size_t node, std::size_t neighbour, int slices, float* block,
              float* cap)
{
    const Vec3& at = line.points[node];
    const Vec3& from = line.points[neighbour];
    const double outward[3] = {at.x - from.x, at.y - from.y, at.z - from.z};
    const double length = std::sqrt(outward[0] * outward[0] + outward[1] * outward[1] + outward[2] * outward[2]);
    // A segment without direction gives no normal: the cap takes the ambient part.
    const double unit = length > 1e-8 ? 1.0 / length : 0.0;
    const float normal[3] = {static_cast<float>(outward[0] * unit), static_cast<float>(outward[1] * unit),
                             static_cast<float>(outward[2] * unit)};
    const float* ring = block + kFloats * node * static_cast<std::size_t>(slices);
    for (int j = 0; j <= slices; ++j)
    {
        float* vertex = cap + kFloats * static_cast<std::size_t>(j);
        const float* source = j < slices ? ring + kFloats * static_cast<std::size_t>(j) : nullptr;
        vertex[0] = source != nullptr ? source[0] : static_cast<float>(at.x);
        vertex[1] = source != nullptr ? source[1] : static_cast<float>(at.y);
        vertex[2] = source != nullptr ? source[2] : static_cast<float>(at.z);
        std::copy(normal, normal + 3, vertex + 3);
    }
}

// One line's tube through its own streamline, whose records live only while
// the line is made: the rings, then the two discs, into block.
void MakeTube(const ScalarLine& line, CGlStreamline& tube, int slices, double radius, float* block,
              Scratch& scratch)
{
    const int nodes = static_cast<int>(line.points.size());
    if (!tube.Create(nodes, slices, radius, 1.0))
    {
        return;
    }
    for (int i = 0; i < nodes; ++i)
    {
        const Vec3& p = line.points[static_cast<std::size_t>(i)];
        double xyz[3] = {p.x, p.y, p.z};
        tube.SetNodeCoord(i, xyz);
    }
    tube.GenerationStreamline3D();
    const std::size_t ring = static_cast<std::size_t>(nodes) * static_cast<std::size_t>(slices);
    scratch.vertices.resize(3 * ring);
    scratch.normals.resize(3 * ring);
    tube.CopyTubeGeometry(scratch.vertices.data(), scratch.normals.data());
    tube.Delete();
    for (std::size_t v = 0; v < ring; ++v)
    {
        std::copy_n(&scratch.vertices[3 * v], 3, block + kFloats * v);
        std::copy_n(&scratch.normals[3 * v], 3, block + kFloats * v + 3);
    }
    const std::size_t last = static_cast<std::size_t>(nodes) - 1;
    float* caps = block + kFloats * ring;
    WriteCap(line, 0, 1, slices, block, caps);
    WriteCap(line, last, last - 1, slices, block, caps + kFloats * static_cast<std::size_t>(slices + 1));
}

// Runs work on count threads, the caller's among them; a failure in any of
// them is thrown here once all have stopped.
void RunOnThreads(unsigned count, const std::function<void()>& work)
{
    std::exception_ptr failure;
    std::mutex guard;
    const auto guarded = [&]() {
        try
        {
            work();
        }
        catch (...)
        {
            const std::lock_guard<std::mutex> lock(guard);
            failure = failure != nullptr ? failure : std::current_exception();
        }
    };
    std::vector<std::thread> threads;
    for (unsigned t = 1; t < count; ++t)
    {
        try
        {
            threads.emplace_back(guarded);
        }
        catch (const std::system_error&)
        {
            break; // fewer threads, the same result
        }
    }
    guarded();
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    if (failure != nullptr)
    {
        std::rethrow_exception(failure);
    }
}

} // namespace

CGlTubeBatch::~CGlTubeBatch()
{
    // The buffers belong to the context; without one current they died with it.
    Release();
}

unsigned CGlTubeBatch::Workers() const
{
    return m_workers != 0 ? m_workers : std::max(1u, std::thread::hardware_concurrency());
}

std::size_t CGlTubeBatch::BlockVertices(std::size_t line) const
{
    return (m_lines[line]->points.size() + 2) * static_cast<std::size_t>(m_slices) + 2;
}

bool CGlTubeBatch::Plan(const std::vector<const ScalarLine*>& lines, const std::vector<CGlStreamline*>& tubes,
                        int slices, double radius, double mergeDistance)
{
    if (lines.size() != tubes.size() || slices <= 0 || !(radius > 0.0))
    {
        return false;
    }
    Release();
    m_lines = lines;
    m_tubes = tubes;
    m_slices = slices;
    m_radius = radius;
    m_chunks.clear();
    m_longest = 0;
    Chunk chunk;
    for (std::size_t t = 0; t < m_lines.size(); ++t)
    {
        const std::size_t block = BlockVertices(t);
        if (chunk.vertices > 0 && chunk.vertices + block > kChunkVertices)
        {
            chunk.endLine = t;
            m_chunks.push_back(std::move(chunk));
            chunk = Chunk();
            chunk.firstLine = t;
        }
        chunk.blocks.push_back(static_cast<GLint>(chunk.vertices));
        chunk.vertices += block;
        m_longest = std::max(m_longest, m_lines[t]->points.size());
    }
    if (chunk.vertices > 0)
    {
        chunk.endLine = m_lines.size();
        m_chunks.push_back(std::move(chunk));
    }
    PlanLines(mergeDistance);
    return true;
}

std::size_t CGlTubeBatch::KeepNodes(const std::vector<Vec3>& points, double limit,
                                    std::vector<std::uint32_t>* kept) const
{
    std::size_t count = 1;
    std::size_t last = 0;
    if (kept != nullptr)
    {
        kept->push_back(0);
    }
    for (std::size_t i = 1; i < points.size(); ++i)
    {
        const Vec3 step = points[i] - points[last];
        // The last node always stays: the line ends where the tube does.
        if (step.Dot(step) >= limit || i + 1 == points.size())
        {
            last = i;
            ++count;
            if (kept != nullptr)
            {
                kept->push_back(static_cast<std::uint32_t>(i));
            }
        }
    }
    return count;
}

void CGlTubeBatch::PlanLines(double mergeDistance)
{
    double distance = mergeDistance;
    const std::size_t ends = 2 * m_lines.size();
    for (int doubling = 0; doubling < 32; ++doubling)
    {
        std::size_t count = 0;
        for (const ScalarLine* line : m_lines)
        {
            count += KeepNodes(line->points, distance * distance, nullptr);
        }
        if (count <= std::max(kLineNodes, ends))
        {
            break;
        }
        distance = distance > 0.0 ? 2.0 * distance : m_radius;
    }
    for (Chunk& chunk : m_chunks)
    {
        for (std::size_t t = chunk.firstLine; t < chunk.endLine; ++t)
        {
            const std::size_t first = chunk.keptNodes.size();
            chunk.lineFirsts.push_back(static_cast<GLint>(first));
            KeepNodes(m_lines[t]->points, distance * distance, &chunk.keptNodes);
            chunk.lineCounts.push_back(static_cast<GLsizei>(chunk.keptNodes.size() - first));
        }
    }
}

std::size_t CGlTubeBatch::RingVertexCount() const
{
    std::size_t vertices = 0;
    for (const ScalarLine* line : m_lines)
    {
        vertices += line->points.size() * static_cast<std::size_t>(m_slices);
    }
    return vertices;
}

std::size_t CGlTubeBatch::LineNodeCount() const
{
    std::size_t nodes = 0;
    for (const Chunk& chunk : m_chunks)
    {
        nodes += chunk.keptNodes.size();
    }
    return nodes;
}

bool CGlTubeBatch::NodeColour(std::size_t line, std::size_t node, unsigned char* rgba) const
{
    if (line >= m_lines.size() || node >= m_lines[line]->values.size() || !m_colouring)
    {
        return false;
    }
    m_colouring(&m_lines[line]->values[node], 1, rgba);
    rgba[3] = 255;
    return true;
}

void CGlTubeBatch::MakeIndices()
{
    const std::uint32_t slices = static_cast<std::uint32_t>(m_slices);
    const std::size_t run = std::min<std::size_t>(m_longest, kRunNodes);
    std::vector<std::uint32_t> indices;
    indices.reserve((run - 1) * (2 * slices + 3));
    // The triangles a single tube's strips make, in the same turn (ring i + 1
    // before ring i: counter-clockwise seen from outside), without its
    // degenerate ones: a software renderer draws lists faster than strips
    // broken by restarts (5.2 against 6.9 s a frame of 10^6 nodes).
    for (std::uint32_t i = 0; i + 1 < run; ++i)
    {
        for (std::uint32_t j = 0; j < slices; ++j)
        {
            const std::uint32_t a = (i + 1) * slices + j, b = i * slices + j;
            const std::uint32_t c = (i + 1) * slices + (j + 1) % slices, d = i * slices + (j + 1) % slices;
            indices.insert(indices.end(), {a, b, c, c, b, d});
        }
    }
    glGenBuffers(1, &m_ringIndices);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_ringIndices);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(indices.size() * sizeof(std::uint32_t)),
                 indices.data(), GL_STATIC_DRAW);
    indices.clear();
    for (std::uint32_t cap = 0; cap < 2; ++cap)
    {
        const std::uint32_t rim = cap * (slices + 1);
        for (std::uint32_t j = 0; j < slices; ++j)
        {
            indices.insert(indices.end(), {rim + j, rim + slices, rim + (j + 1) % slices});
        }
    }
    m_capCount = static_cast<GLsizei>(indices.size());
    glGenBuffers(1, &m_capIndices);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_capIndices);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(indices.size() * sizeof(std::uint32_t)),
                 indices.data(), GL_STATIC_DRAW);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
}

void CGlTubeBatch::MakeArray(GLuint& vertexArray, GLuint& geometry, GLuint& colours) const
{
    glGenVertexArrays(1, &vertexArray);
    glGenBuffers(1, &geometry);
    glGenBuffers(1, &colours);
    glBindVertexArray(vertexArray);
    const GLsizei stride = static_cast<GLsizei>(kFloats * sizeof(float));
    glBindBuffer(GL_ARRAY_BUFFER, geometry);
    glEnableVertexAttribArray(0);
    glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, stride, nullptr);
    glEnableVertexAttribArray(1);
    glVertexAttribPointer(1, 3, GL_FLOAT, GL_FALSE, stride, reinterpret_cast<const void*>(3 * sizeof(float)));
    glBindBuffer(GL_ARRAY_BUFFER, colours);
    glEnableVertexAttribArray(2);
    glVertexAttribPointer(2, 4, GL_UNSIGNED_BYTE, GL_TRUE, 4, nullptr);
    glBindVertexArray(0);
}

void CGlTubeBatch::Generate(Chunk& chunk, std::vector<float>& staging)
{
    // Every float is written (a line whose tube is refused keeps zeros from
    // an earlier chunk's, harmless: it is drawn from its own block only).
    staging.resize(kFloats * chunk.vertices);
    std::atomic<std::size_t> next{chunk.firstLine};
    const auto work = [&]() {
        Scratch scratch;
        for (std::size_t t = next++; t < chunk.endLine; t = next++)
        {
            float* block = staging.data() + kFloats * static_cast<std::size_t>(chunk.blocks[t - chunk.firstLine]);
            MakeTube(*m_lines[t], *m_tubes[t], m_slices, m_radius, block, scratch);
        }
    };
    const std::size_t lines = chunk.endLine - chunk.firstLine;
    RunOnThreads(static_cast<unsigned>(std::min<std::size_t>(Workers(), lines)), work);
    glBindBuffer(GL_ARRAY_BUFFER, chunk.geometry);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(staging.size() * sizeof(float)), staging.data(),
                 GL_STATIC_DRAW);
    ++m_uploads;
}

void CGlTubeBatch::UploadLines(Chunk& chunk, std::vector<float>& staging) const
{
    staging.clear();
    for (std::size_t t = chunk.firstLine; t < chunk.endLine; ++t)
    {
        const std::vector<Vec3>& points = m_lines[t]->points;
        const std::size_t local = t - chunk.firstLine;
        const std::uint32_t* kept = chunk.keptNodes.data() + chunk.lineFirsts[local];
        const std::size_t count = static_cast<std::size_t>(chunk.lineCounts[local]);
        for (std::size_t k = 0; k < count; ++k)
        {
            const Vec3& p = points[kept[k]];
            // The tangent through the neighbours kept, one-sided at the ends.
            Vec3 tangent = points[kept[std::min(k + 1, count - 1)]] - points[kept[k > 0 ? k - 1 : 0]];
            tangent.Normalize();
            staging.insert(staging.end(), {static_cast<float>(p.x), static_cast<float>(p.y),
                                           static_cast<float>(p.z), static_cast<float>(tangent.x),
                                           static_cast<float>(tangent.y), static_cast<float>(tangent.z)});
        }
    }
    glBindBuffer(GL_ARRAY_BUFFER, chunk.lineGeometry);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(staging.size() * sizeof(float)), staging.data(),
                 GL_STATIC_DRAW);
    // One strip a chunk, its lines parted by the restart index, where a
    // draw a line cost a software renderer half a frame of 10^4 lines.
    std::vector<std::uint32_t> segments;
    for (std::size_t local = 0; local < chunk.lineCounts.size(); ++local)
    {
        const std::uint32_t first = static_cast<std::uint32_t>(chunk.lineFirsts[local]);
        for (GLsizei k = 0; k < chunk.lineCounts[local]; ++k)
        {
            segments.push_back(first + static_cast<std::uint32_t>(k));
        }
        segments.push_back(kRestart);
    }
    chunk.lineIndexCount = static_cast<GLsizei>(segments.size());
    glBindVertexArray(chunk.lineArray);
    glGenBuffers(1, &chunk.lineIndices);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, chunk.lineIndices);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(segments.size() * sizeof(std::uint32_t)),
                 segments.data(), GL_STATIC_DRAW);
    glBindVertexArray(0);
}

void CGlTubeBatch::UploadColours(Chunk& chunk, ColourStaging& staging)
{
    const std::size_t slices = static_cast<std::size_t>(m_slices);
    std::vector<unsigned char>& vertexRgba = staging.vertices;
    std::vector<unsigned char>& lineRgba = staging.lines;
    std::vector<unsigned char>& nodeRgba = staging.nodes;
    vertexRgba.resize(4 * chunk.vertices);
    lineRgba.clear();
    for (std::size_t t = chunk.firstLine; t < chunk.endLine; ++t)
    {
        const std::vector<double>& values = m_lines[t]->values;
        const std::size_t nodes = values.size();
        nodeRgba.resize(4 * nodes);
        if (m_colouring)
        {
            m_colouring(values.data(), nodes, nodeRgba.data());
        }
        unsigned char* block = vertexRgba.data() + 4 * static_cast<std::size_t>(chunk.blocks[t - chunk.firstLine]);
        const auto paint = [&](std::size_t vertex, std::size_t node) {
            std::copy_n(&nodeRgba[4 * node], 3, block + 4 * vertex);
            block[4 * vertex + 3] = 255;
        };
        for (std::size_t i = 0; i < nodes; ++i)
        {
            for (std::size_t j = 0; j < slices; ++j)
            {
                paint(i * slices + j, i);
            }
        }
        for (std::size_t j = 0; j <= slices; ++j)
        {
            paint(nodes * slices + j, 0);
            paint(nodes * slices + slices + 1 + j, nodes - 1);
        }
        const std::size_t local = t - chunk.firstLine;
        const std::uint32_t* kept = chunk.keptNodes.data() + chunk.lineFirsts[local];
        for (GLsizei k = 0; k < chunk.lineCounts[local]; ++k)
        {
            const unsigned char* rgb = &nodeRgba[4 * kept[k]];
            lineRgba.insert(lineRgba.end(), {rgb[0], rgb[1], rgb[2], 255});
        }
    }
    glBindBuffer(GL_ARRAY_BUFFER, chunk.colours);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(vertexRgba.size()), vertexRgba.data(), GL_STATIC_DRAW);
    glBindBuffer(GL_ARRAY_BUFFER, chunk.lineColours);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(lineRgba.size()), lineRgba.data(), GL_STATIC_DRAW);
    ++m_uploads;
}

void CGlTubeBatch::Upload()
{
    if (m_lines.empty())
    {
        return;
    }
    MakeIndices();
    // One staging array for all chunks: a fresh one each would cost the
    // kernel its pages again.
    std::vector<float> staging;
    for (Chunk& chunk : m_chunks)
    {
        MakeArray(chunk.vertexArray, chunk.geometry, chunk.colours);
        MakeArray(chunk.lineArray, chunk.lineGeometry, chunk.lineColours);
        Generate(chunk, staging);
        UploadLines(chunk, staging);
        if (m_progress)
        {
            m_progress(chunk.endLine, m_lines.size());
        }
    }
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    m_uploaded = true;
    m_coloursChanged = true;
}

void CGlTubeBatch::DrawChunk(const Chunk& chunk)
{
    const std::size_t slices = static_cast<std::size_t>(m_slices);
    const std::size_t segment = 6 * slices;
    m_draws.counts.clear();
    m_draws.offsets.clear();
    m_draws.bases.clear();
    for (std::size_t t = chunk.firstLine; t < chunk.endLine; ++t)
    {
        const std::size_t nodes = m_lines[t]->points.size();
        const GLint block = chunk.blocks[t - chunk.firstLine];
        // A line longer than the index list is drawn in runs sharing their end rings.
        for (std::size_t start = 0; start + 1 < nodes; start += kRunNodes - 1)
        {
            const std::size_t run = std::min<std::size_t>(kRunNodes, nodes - start);
            m_draws.counts.push_back(static_cast<GLsizei>((run - 1) * segment));
            m_draws.offsets.push_back(nullptr);
            m_draws.bases.push_back(block + static_cast<GLint>(start * slices));
        }
    }
    const GLsizei runs = static_cast<GLsizei>(m_draws.counts.size());
    glBindVertexArray(chunk.vertexArray);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_ringIndices);
    glMultiDrawElementsBaseVertex(GL_TRIANGLES, m_draws.counts.data(), GL_UNSIGNED_INT,
                                  m_draws.offsets.data(), runs, m_draws.bases.data());
    m_draws.counts.assign(chunk.endLine - chunk.firstLine, m_capCount);
    m_draws.offsets.assign(m_draws.counts.size(), nullptr);
    m_draws.bases.clear();
    for (std::size_t t = chunk.firstLine; t < chunk.endLine; ++t)
    {
        const std::size_t nodes = m_lines[t]->points.size();
        m_draws.bases.push_back(chunk.blocks[t - chunk.firstLine] + static_cast<GLint>(nodes * slices));
    }
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_capIndices);
    glMultiDrawElementsBaseVertex(GL_TRIANGLES, m_draws.counts.data(), GL_UNSIGNED_INT,
                                  m_draws.offsets.data(), static_cast<GLsizei>(m_draws.counts.size()),
                                  m_draws.bases.data());
}

void CGlTubeBatch::Draw()
{
    if (!m_uploaded)
    {
        Upload();
    }
    if (m_chunks.empty())
    {
        return;
    }
    RefillColours();
    for (const Chunk& chunk : m_chunks)
    {
        DrawChunk(chunk);
    }
    glBindVertexArray(0);
}

void CGlTubeBatch::DrawLines()
{
    if (!m_uploaded)
    {
        Upload();
    }
    RefillColours();
    glEnable(GL_PRIMITIVE_RESTART);
    glPrimitiveRestartIndex(kRestart);
    for (const Chunk& chunk : m_chunks)
    {
        glBindVertexArray(chunk.lineArray);
        glDrawElements(GL_LINE_STRIP, chunk.lineIndexCount, GL_UNSIGNED_INT, nullptr);
    }
    glBindVertexArray(0);
}

void CGlTubeBatch::RefillColours()
{
    if (!m_coloursChanged)
    {
        return;
    }
    ColourStaging staging;
    for (Chunk& chunk : m_chunks)
    {
        UploadColours(chunk, staging);
    }
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    m_coloursChanged = false;
}

void CGlTubeBatch::Release()
{
    for (Chunk& chunk : m_chunks)
    {
        const GLuint buffers[5] = {chunk.geometry, chunk.colours, chunk.lineGeometry, chunk.lineColours,
                                   chunk.lineIndices};
        const GLuint arrays[2] = {chunk.vertexArray, chunk.lineArray};
        if (chunk.vertexArray != 0)
        {
            glDeleteBuffers(5, buffers);
            glDeleteVertexArrays(2, arrays);
        }
        chunk.geometry = chunk.colours = chunk.lineGeometry = chunk.lineColours = chunk.lineIndices = 0;
        chunk.vertexArray = chunk.lineArray = 0;
    }
    if (m_ringIndices != 0)
    {
        glDeleteBuffers(1, &m_ringIndices);
        glDeleteBuffers(1, &m_capIndices);
        m_ringIndices = m_capIndices = 0;
    }
    m_uploaded = false;
}

} // namespace KesraGl
