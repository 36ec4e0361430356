#include "gl/GlTubeBatch.h"

#include <algorithm>
#include <atomic>
#include <chrono>
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

// The disc over ring (the ring at node), facing away from its neighbour:
// the rim repeats the ring with the disc's normal, the centre is the node
// itself, as a single tube draws it (CGlStreamline::AddCap).
void WriteCap(const ScalarLine& line, std::size_t node, std::size_t neighbour, int slices, const float* ring,
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

// A part of a line: its nodes first to last.
struct PartNodes
{
    std::size_t first = 0;
    std::size_t last = 0;
};

// The part's rings, from ring skip of the scratch arrays on, interleaved
// into block, then the discs of the line's ends the part holds.
void WriteBlock(const ScalarLine& line, PartNodes part, int slices, const Scratch& scratch, std::size_t skip,
                float* block)
{
    const std::size_t stride = static_cast<std::size_t>(slices);
    const std::size_t ring = (part.last - part.first + 1) * stride;
    for (std::size_t v = 0; v < ring; ++v)
    {
        std::copy_n(&scratch.vertices[3 * (skip + v)], 3, block + kFloats * v);
        std::copy_n(&scratch.normals[3 * (skip + v)], 3, block + kFloats * v + 3);
    }
    float* caps = block + kFloats * ring;
    float* lastCap = caps + kFloats * (stride + 1);
    std::fill(caps, lastCap + kFloats * (stride + 1), 0.0f);
    if (part.first == 0)
    {
        WriteCap(line, 0, 1, slices, block, caps);
    }
    if (part.last + 1 == line.points.size())
    {
        WriteCap(line, part.last, part.last - 1, slices, block + kFloats * (ring - stride), lastCap);
    }
}

// Nodes first to last of a line, made through the line's streamline, whose
// records live only while the part is made: the rings, then the line's end
// discs the part holds (zeros in the other slots), into block. The part
// continues carry, the ring at node first - 1, unless it starts the line;
// unless it ends the line, carry is left holding the ring at node last - 1,
// which the next part, from node last on, continues.
void MakePart(const ScalarLine& line, PartNodes part, CGlStreamline& tube, int slices, double radius, float* block,
              std::vector<double>& carry, Scratch& scratch)
{
    const std::size_t count = line.points.size();
    // One node back and two ahead: the rings and normals from first to last
    // then see the neighbours the whole line gives them.
    const std::size_t from = part.first > 0 ? part.first - 1 : 0;
    const std::size_t to = std::min(part.last + 2, count - 1);
    const int nodes = static_cast<int>(to - from + 1);
    const std::size_t stride = static_cast<std::size_t>(slices);
    // A part whose predecessor could not be made has no ring to continue.
    const bool continues = part.first > 0;
    if ((continues && carry.size() != 3 * stride) || !tube.Create(nodes, slices, radius, 1.0))
    {
        carry.clear();
        return;
    }
    for (int i = 0; i < nodes; ++i)
    {
        const Vec3& p = line.points[from + static_cast<std::size_t>(i)];
        double xyz[3] = {p.x, p.y, p.z};
        tube.SetNodeCoord(i, xyz);
    }
    if (!continues)
    {
        tube.GenerationStreamline3D();
    }
    else
    {
        for (int j = 0; j < slices; ++j)
        {
            tube.SetSliceNodeCoord(0, j, &carry[3 * static_cast<std::size_t>(j)]);
        }
        tube.ContinueStreamline3D();
    }
    scratch.vertices.resize(3 * static_cast<std::size_t>(nodes) * stride);
    scratch.normals.resize(scratch.vertices.size());
    tube.CopyTubeGeometry(scratch.vertices.data(), scratch.normals.data());
    if (part.last + 1 < count)
    {
        carry.resize(3 * stride);
        for (int j = 0; j < slices; ++j)
        {
            tube.GetSliceNodeCoord(static_cast<int>(part.last - 1 - from), j, &carry[3 * static_cast<std::size_t>(j)]);
        }
    }
    tube.Delete();
    WriteBlock(line, part, slices, scratch, (part.first - from) * stride, block);
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

std::size_t CGlTubeBatch::BlockVertices(const Part& part) const
{
    return (part.nodes + 2) * static_cast<std::size_t>(m_slices) + 2;
}

bool CGlTubeBatch::IsLinesLast(const Part& part) const
{
    return part.first + part.nodes == m_lines[part.line]->points.size();
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
    PlanParts();
    PlanChunks();
    PlanLines(mergeDistance);
    return true;
}

void CGlTubeBatch::PlanParts()
{
    m_parts.clear();
    m_longest = 0;
    const std::size_t run = kRunNodes;
    for (std::size_t t = 0; t < m_lines.size(); ++t)
    {
        const std::size_t nodes = m_lines[t]->points.size();
        for (std::size_t first = 0; first + 1 < nodes; first += run - 1)
        {
            const std::size_t length = std::min(run, nodes - first);
            m_parts.push_back(Part{t, first, length});
            m_longest = std::max(m_longest, length);
        }
    }
}

void CGlTubeBatch::PlanChunks()
{
    m_chunks.clear();
    m_totalVertices = 0;
    m_totalNodes = 0;
    Chunk chunk;
    for (std::size_t p = 0; p < m_parts.size(); ++p)
    {
        const Part& part = m_parts[p];
        const std::size_t block = BlockVertices(part);
        if (chunk.vertices > 0 && chunk.vertices + block > kChunkVertices)
        {
            chunk.endPart = p;
            chunk.nodesThrough = m_totalNodes;
            m_chunks.push_back(std::move(chunk));
            chunk = Chunk();
            chunk.firstPart = p;
        }
        chunk.blocks.push_back(static_cast<GLint>(chunk.vertices));
        chunk.vertices += block;
        m_totalVertices += block;
        // A later part's first node is the part before it's last.
        m_totalNodes += part.first > 0 ? part.nodes - 1 : part.nodes;
    }
    if (chunk.vertices > 0)
    {
        chunk.endPart = m_parts.size();
        chunk.nodesThrough = m_totalNodes;
        m_chunks.push_back(std::move(chunk));
    }
}

std::size_t CGlTubeBatch::KeepNodes(const Part& part, double limit, std::vector<std::uint32_t>* kept) const
{
    const std::vector<Vec3>& points = m_lines[part.line]->points;
    const std::size_t end = part.first + part.nodes;
    std::size_t count = 1;
    std::size_t last = part.first;
    if (kept != nullptr)
    {
        kept->push_back(static_cast<std::uint32_t>(part.first));
    }
    for (std::size_t i = part.first + 1; i < end; ++i)
    {
        const Vec3 step = points[i] - points[last];
        // The last node always stays: the line ends where the tube does.
        if (step.Dot(step) >= limit || i + 1 == end)
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
    const std::size_t ends = 2 * m_parts.size();
    for (int doubling = 0; doubling < 32; ++doubling)
    {
        std::size_t count = 0;
        for (const Part& part : m_parts)
        {
            count += KeepNodes(part, distance * distance, nullptr);
        }
        if (count <= std::max(kLineNodes, ends))
        {
            break;
        }
        distance = distance > 0.0 ? 2.0 * distance : m_radius;
    }
    for (Chunk& chunk : m_chunks)
    {
        for (std::size_t p = chunk.firstPart; p < chunk.endPart; ++p)
        {
            const std::size_t first = chunk.keptNodes.size();
            chunk.lineFirsts.push_back(static_cast<GLint>(first));
            KeepNodes(m_parts[p], distance * distance, &chunk.keptNodes);
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

double CGlTubeBatch::BuiltFraction() const
{
    return m_totalVertices > 0 ? static_cast<double>(m_madeVertices) / static_cast<double>(m_totalVertices) : 1.0;
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

void CGlTubeBatch::MarkColoursChanged()
{
    for (Chunk& chunk : m_chunks)
    {
        chunk.coloured = false;
    }
}

void CGlTubeBatch::MakeIndices()
{
    const std::uint32_t slices = static_cast<std::uint32_t>(m_slices);
    const std::size_t run = m_longest;
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

void CGlTubeBatch::Generate(Chunk& chunk)
{
    // Every float is written (a part whose tube is refused keeps values from
    // an earlier chunk's, harmless: it is drawn from its own block only).
    m_staging.resize(kFloats * chunk.vertices);
    // A task is a line's parts in the chunk, made in order; only the first
    // task may continue a line from the chunk before, and only the last
    // leave one to the next.
    std::vector<std::size_t> tasks;
    for (std::size_t p = chunk.firstPart; p < chunk.endPart; ++p)
    {
        if (p == chunk.firstPart || m_parts[p].line != m_parts[p - 1].line)
        {
            tasks.push_back(p);
        }
    }
    tasks.push_back(chunk.endPart);
    const std::vector<double> incoming = std::move(m_carry);
    std::vector<double> outgoing;
    std::atomic<std::size_t> next{0};
    const auto work = [&]() {
        Scratch scratch;
        std::vector<double> carry;
        for (std::size_t task = next++; task + 1 < tasks.size(); task = next++)
        {
            carry = task == 0 ? incoming : std::vector<double>();
            for (std::size_t p = tasks[task]; p < tasks[task + 1]; ++p)
            {
                const Part& part = m_parts[p];
                float* block = m_staging.data() + kFloats * static_cast<std::size_t>(chunk.blocks[p - chunk.firstPart]);
                MakePart(*m_lines[part.line], PartNodes{part.first, part.first + part.nodes - 1}, *m_tubes[part.line],
                         m_slices, m_radius, block, carry, scratch);
            }
            if (tasks[task + 1] == chunk.endPart && !IsLinesLast(m_parts[chunk.endPart - 1]))
            {
                outgoing = std::move(carry);
            }
        }
    };
    RunOnThreads(static_cast<unsigned>(std::min<std::size_t>(Workers(), tasks.size() - 1)), work);
    m_carry = std::move(outgoing);
    glBindBuffer(GL_ARRAY_BUFFER, chunk.geometry);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(m_staging.size() * sizeof(float)), m_staging.data(),
                 GL_STATIC_DRAW);
    ++m_uploads;
}

void CGlTubeBatch::UploadLines(Chunk& chunk)
{
    std::vector<float>& staging = m_staging;
    staging.clear();
    for (std::size_t p = chunk.firstPart; p < chunk.endPart; ++p)
    {
        const std::vector<Vec3>& points = m_lines[m_parts[p].line]->points;
        const std::size_t local = p - chunk.firstPart;
        const std::uint32_t* kept = chunk.keptNodes.data() + chunk.lineFirsts[local];
        const std::size_t count = static_cast<std::size_t>(chunk.lineCounts[local]);
        for (std::size_t k = 0; k < count; ++k)
        {
            const Vec3& p0 = points[kept[k]];
            // The tangent through the neighbours kept, one-sided at the ends.
            Vec3 tangent = points[kept[std::min(k + 1, count - 1)]] - points[kept[k > 0 ? k - 1 : 0]];
            tangent.Normalize();
            staging.insert(staging.end(), {static_cast<float>(p0.x), static_cast<float>(p0.y),
                                           static_cast<float>(p0.z), static_cast<float>(tangent.x),
                                           static_cast<float>(tangent.y), static_cast<float>(tangent.z)});
        }
    }
    glBindBuffer(GL_ARRAY_BUFFER, chunk.lineGeometry);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(staging.size() * sizeof(float)), staging.data(),
                 GL_STATIC_DRAW);
    // One strip a chunk, its parts parted by the restart index, where a
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

void CGlTubeBatch::UploadColours(Chunk& chunk, ColourStaging& staging) const
{
    const std::size_t slices = static_cast<std::size_t>(m_slices);
    std::vector<unsigned char>& vertexRgba = staging.vertices;
    std::vector<unsigned char>& lineRgba = staging.lines;
    std::vector<unsigned char>& nodeRgba = staging.nodes;
    vertexRgba.resize(4 * chunk.vertices);
    lineRgba.clear();
    for (std::size_t p = chunk.firstPart; p < chunk.endPart; ++p)
    {
        const Part& part = m_parts[p];
        const double* values = m_lines[part.line]->values.data() + part.first;
        const std::size_t nodes = part.nodes;
        nodeRgba.resize(4 * nodes);
        if (m_colouring)
        {
            m_colouring(values, nodes, nodeRgba.data());
        }
        unsigned char* block = vertexRgba.data() + 4 * static_cast<std::size_t>(chunk.blocks[p - chunk.firstPart]);
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
        const std::size_t local = p - chunk.firstPart;
        const std::uint32_t* kept = chunk.keptNodes.data() + chunk.lineFirsts[local];
        for (GLsizei k = 0; k < chunk.lineCounts[local]; ++k)
        {
            const unsigned char* rgb = &nodeRgba[4 * (kept[k] - part.first)];
            lineRgba.insert(lineRgba.end(), {rgb[0], rgb[1], rgb[2], 255});
        }
    }
    glBindBuffer(GL_ARRAY_BUFFER, chunk.colours);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(vertexRgba.size()), vertexRgba.data(), GL_STATIC_DRAW);
    glBindBuffer(GL_ARRAY_BUFFER, chunk.lineColours);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(lineRgba.size()), lineRgba.data(), GL_STATIC_DRAW);
}

void CGlTubeBatch::MakeChunk(Chunk& chunk)
{
    MakeArray(chunk.vertexArray, chunk.geometry, chunk.colours);
    MakeArray(chunk.lineArray, chunk.lineGeometry, chunk.lineColours);
    Generate(chunk);
    UploadLines(chunk);
    chunk.coloured = false;
}

void CGlTubeBatch::Build(double budget)
{
    if (IsBuilt())
    {
        return;
    }
    const auto start = std::chrono::steady_clock::now();
    if (m_ringIndices == 0)
    {
        MakeIndices();
    }
    while (m_made < m_chunks.size())
    {
        Chunk& chunk = m_chunks[m_made];
        MakeChunk(chunk);
        m_madeVertices += chunk.vertices;
        ++m_made;
        const bool goOn = !m_progress || m_progress(chunk.nodesThrough, m_totalNodes);
        const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start;
        if (!goOn || (budget > 0.0 && spent.count() >= budget))
        {
            break;
        }
    }
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    if (IsBuilt())
    {
        // One staging array served every chunk (a fresh one each would cost
        // the kernel its pages again); nothing of it is needed now.
        m_staging = std::vector<float>();
        m_carry = std::vector<double>();
    }
}

void CGlTubeBatch::DrawChunk(const Chunk& chunk)
{
    const std::size_t slices = static_cast<std::size_t>(m_slices);
    const std::size_t segment = 6 * slices;
    m_draws.counts.clear();
    m_draws.offsets.clear();
    m_draws.bases.clear();
    for (std::size_t p = chunk.firstPart; p < chunk.endPart; ++p)
    {
        m_draws.counts.push_back(static_cast<GLsizei>((m_parts[p].nodes - 1) * segment));
        m_draws.offsets.push_back(nullptr);
        m_draws.bases.push_back(chunk.blocks[p - chunk.firstPart]);
    }
    glBindVertexArray(chunk.vertexArray);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_ringIndices);
    glMultiDrawElementsBaseVertex(GL_TRIANGLES, m_draws.counts.data(), GL_UNSIGNED_INT, m_draws.offsets.data(),
                                  static_cast<GLsizei>(m_draws.counts.size()), m_draws.bases.data());
    // A part draws the discs of the line's ends it holds: both of a line in
    // one part, in the order a single tube draws them.
    m_draws.counts.clear();
    m_draws.offsets.clear();
    m_draws.bases.clear();
    const GLsizei half = m_capCount / 2;
    const void* secondCap = reinterpret_cast<const void*>(static_cast<std::size_t>(half) * sizeof(std::uint32_t));
    for (std::size_t p = chunk.firstPart; p < chunk.endPart; ++p)
    {
        const Part& part = m_parts[p];
        const bool starts = part.first == 0;
        const bool ends = IsLinesLast(part);
        if (!starts && !ends)
        {
            continue;
        }
        m_draws.counts.push_back(starts && ends ? m_capCount : half);
        m_draws.offsets.push_back(starts ? nullptr : secondCap);
        m_draws.bases.push_back(chunk.blocks[p - chunk.firstPart] + static_cast<GLint>(part.nodes * slices));
    }
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_capIndices);
    glMultiDrawElementsBaseVertex(GL_TRIANGLES, m_draws.counts.data(), GL_UNSIGNED_INT, m_draws.offsets.data(),
                                  static_cast<GLsizei>(m_draws.counts.size()), m_draws.bases.data());
}

void CGlTubeBatch::Draw()
{
    RefillColours();
    for (std::size_t c = 0; c < m_made; ++c)
    {
        DrawChunk(m_chunks[c]);
    }
    glBindVertexArray(0);
}

void CGlTubeBatch::DrawLines()
{
    RefillColours();
    glEnable(GL_PRIMITIVE_RESTART);
    glPrimitiveRestartIndex(kRestart);
    for (std::size_t c = 0; c < m_made; ++c)
    {
        glBindVertexArray(m_chunks[c].lineArray);
        glDrawElements(GL_LINE_STRIP, m_chunks[c].lineIndexCount, GL_UNSIGNED_INT, nullptr);
    }
    glBindVertexArray(0);
}

void CGlTubeBatch::RefillColours()
{
    ColourStaging staging;
    for (std::size_t c = 0; c < m_made; ++c)
    {
        if (!m_chunks[c].coloured)
        {
            UploadColours(m_chunks[c], staging);
            m_chunks[c].coloured = true;
            ++m_uploads;
        }
    }
    glBindBuffer(GL_ARRAY_BUFFER, 0);
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
        chunk.coloured = false;
    }
    if (m_ringIndices != 0)
    {
        glDeleteBuffers(1, &m_ringIndices);
        glDeleteBuffers(1, &m_capIndices);
        m_ringIndices = m_capIndices = 0;
    }
    m_made = 0;
    m_madeVertices = 0;
    m_staging = std::vector<float>();
    m_carry = std::vector<double>();
}

} // namespace KesraGl
