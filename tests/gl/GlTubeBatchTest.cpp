// The packed tubes against the single ones: the same pixels whatever the
// chunks, runs and threads; buffers filled once per change; the streamlines'
// records freed; the moving view's lines within their budget.
#include "GlTestSupport.h"
#include "gl/GlCamera.h"
#include "gl/GlStreamline.h"
#include "gl/GlTubeBatch.h"

#include <algorithm>
#include <cmath>
#include <list>
#include <vector>

namespace
{

using KesraBackend::ScalarLine;
using KesraBackend::Vec3;
using KesraGl::CGlCamera;
using KesraGl::CGlStreamline;
using KesraGl::CGlTubeBatch;
using KesraTest::HeadlessRenderer;

constexpr int kWidth = 200;
constexpr int kHeight = 150;
constexpr int kSlices = 8;

void Colouring(const double* values, std::size_t count, unsigned char* rgba)
{
    for (std::size_t i = 0; i < count; ++i)
    {
        const double v = std::min(std::max(values[i], 0.0), 1.0);
        rgba[4 * i] = static_cast<unsigned char>(255.0 * v);
        rgba[4 * i + 1] = static_cast<unsigned char>(255.0 * (1.0 - v));
        rgba[4 * i + 2] = 60;
        rgba[4 * i + 3] = 17; // the tubes draw opaque whatever the alpha
    }
}

// A wavy line of nodes from x0 to x1 at height y, value rising along it.
ScalarLine Wave(int nodes, double x0, double x1, double y, double amplitude = 0.08)
{
    ScalarLine line;
    for (int i = 0; i < nodes; ++i)
    {
        const double s = static_cast<double>(i) / (nodes - 1);
        line.points.emplace_back(x0 + (x1 - x0) * s, y + amplitude * std::sin(12.0 * s), amplitude * std::cos(9.0 * s));
        line.values.push_back(s);
    }
    return line;
}

class GlTubeBatchTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(gl.created);
        camera.SetRotateAngle(25.0, 30.0, 0.0);
        camera.SetRotateCenter(0.0f, 0.0f, 0.0f);
        camera.SetScaleNoEventHandler(0.02f);
        gl.renderer.SetCamera(&camera);
    }

    std::vector<unsigned char> Frame()
    {
        gl.renderer.Render();
        std::vector<unsigned char> rgba(static_cast<std::size_t>(kWidth) * kHeight * 4);
        EXPECT_TRUE(gl.renderer.ReadPixels(0, 0, kWidth, kHeight, rgba.data()));
        return rgba;
    }

    // The lines drawn as single tubes, each with its records.
    std::vector<unsigned char> SingleTubes(double radius)
    {
        std::list<CGlStreamline> tubes;
        for (const ScalarLine& line : lines)
        {
            CGlStreamline& tube = tubes.emplace_back();
            const int nodes = static_cast<int>(line.points.size());
            EXPECT_TRUE(tube.Create(nodes, kSlices, radius, 1.0));
            std::vector<unsigned char> rgba(4 * line.values.size());
            Colouring(line.values.data(), line.values.size(), rgba.data());
            for (int i = 0; i < nodes; ++i)
            {
                const Vec3& p = line.points[static_cast<std::size_t>(i)];
                double xyz[3] = {p.x, p.y, p.z};
                tube.SetNodeCoord(i, xyz);
                const unsigned char* c = &rgba[4 * static_cast<std::size_t>(i)];
                tube.SetStreamlineNodeColor(i, c[0], c[1], c[2], 255);
            }
            EXPECT_TRUE(tube.GenerationStreamline3D());
            gl.renderer.AddStreamline(&tube);
        }
        std::vector<unsigned char> frame = Frame();
        for (CGlStreamline& tube : tubes)
        {
            tube.ReleaseBuffers();
        }
        gl.renderer.ClearStreamlines();
        return frame;
    }

    // Plans the lines into batch through fresh streamlines.
    bool Plan(CGlTubeBatch& batch, double radius, double merge = 0.0)
    {
        pointers.clear();
        tubes.clear();
        for (const ScalarLine& line : lines)
        {
            pointers.push_back(&line);
            tubes.push_back(&made.emplace_back());
        }
        batch.SetColouring(Colouring);
        return batch.Plan(pointers, tubes, kSlices, radius, merge);
    }

    HeadlessRenderer gl{kWidth, kHeight};
    CGlCamera camera{kWidth, kHeight};
    std::vector<ScalarLine> lines;
    std::vector<const ScalarLine*> pointers;
    std::vector<CGlStreamline*> tubes;
    std::list<CGlStreamline> made;
};

TEST_F(GlTubeBatchTest, DrawsThePixelsOfSingleTubesOnAnyNumberOfThreads)
{
    // Apart on the screen: no two tubes meet, so their order cannot matter.
    for (int k = 0; k < 10; ++k)
    {
        lines.push_back(Wave(2 + 7 * k, -1.6, 1.4, -1.35 + 0.3 * k));
    }
    const std::vector<unsigned char> single = SingleTubes(0.06);
    for (unsigned workers : {1u, 2u, 5u})
    {
        CGlTubeBatch batch;
        ASSERT_TRUE(Plan(batch, 0.06));
        batch.SetWorkers(workers);
        EXPECT_EQ(batch.Workers(), workers);
        gl.renderer.AddTubeBatch(&batch);
        EXPECT_TRUE(Frame() == single) << workers << " workers";
        batch.Release();
        gl.renderer.ClearTubeBatches();
    }
}

TEST_F(GlTubeBatchTest, LongLinesAndSeveralChunksDrawAsSingleTubes)
{
    // One line beyond the index list's run, and enough nodes for two chunks.
    // Apart on the screen, as above.
    lines.push_back(Wave(CGlTubeBatch::kRunNodes + 900, -1.6, 1.6, -1.45, 0.015));
    const std::size_t perLine = 4500;
    while (lines.size() * perLine * kSlices < CGlTubeBatch::kChunkVertices + perLine * kSlices)
    {
        const double y = -1.45 + 0.1 * static_cast<double>(lines.size());
        lines.push_back(Wave(static_cast<int>(perLine), -1.5, 1.5, y, 0.015));
    }
    const std::vector<unsigned char> single = SingleTubes(0.02);
    CGlTubeBatch batch;
    ASSERT_TRUE(Plan(batch, 0.02));
    EXPECT_GE(batch.ChunkCount(), 2u);
    gl.renderer.AddTubeBatch(&batch);
    EXPECT_TRUE(Frame() == single);
    // Each chunk's geometry and colours once.
    EXPECT_EQ(batch.UploadCount(), static_cast<int>(2 * batch.ChunkCount()));
}

TEST_F(GlTubeBatchTest, FillsBuffersOncePerChangeAndFreesTheRecords)
{
    lines = {Wave(30, -1.0, 1.0, 0.3), Wave(2, -1.0, 1.0, -0.3)};
    CGlTubeBatch batch;
    ASSERT_TRUE(Plan(batch, 0.1));
    EXPECT_EQ(batch.LineCount(), 2u);
    EXPECT_EQ(batch.RingVertexCount(), 32u * kSlices);
    EXPECT_EQ(batch.UploadCount(), 0);
    gl.renderer.AddTubeBatch(&batch);
    const std::vector<unsigned char> first = Frame();
    Frame();
    EXPECT_EQ(batch.UploadCount(), 2);
    // The streamlines keep their counts, not their records.
    EXPECT_FALSE(tubes[0]->IsCreate());
    EXPECT_EQ(tubes[0]->GetNodes(), 30);
    EXPECT_EQ(tubes[1]->GetNodes(), 2);

    // New colours fill the colour buffer only, and show.
    lines[0].values.assign(30, 1.0);
    batch.MarkColoursChanged();
    const std::vector<unsigned char> recoloured = Frame();
    EXPECT_EQ(batch.UploadCount(), 3);
    EXPECT_FALSE(recoloured == first);
    unsigned char rgba[4] = {0, 0, 0, 0};
    ASSERT_TRUE(batch.NodeColour(0, 29, rgba));
    EXPECT_EQ(std::vector<int>(rgba, rgba + 4), (std::vector<int>{255, 0, 60, 255}));
    EXPECT_FALSE(batch.NodeColour(0, 30, rgba));
    EXPECT_FALSE(batch.NodeColour(2, 0, rgba));

    // A new context makes the tubes again, the same.
    ASSERT_TRUE(gl.renderer.CreateContext());
    EXPECT_TRUE(Frame() == recoloured);
    EXPECT_EQ(batch.UploadCount(), 5);

    // Hidden, nothing of it is drawn.
    batch.SetVisible(false);
    const std::vector<unsigned char> hidden = Frame();
    EXPECT_FALSE(hidden == recoloured);
    gl.renderer.ClearTubeBatches();
    EXPECT_TRUE(Frame() == hidden);
}

TEST_F(GlTubeBatchTest, PlanRefusesMismatchedOrEmptySizes)
{
    lines = {Wave(5, -1.0, 1.0, 0.0)};
    CGlTubeBatch batch;
    ASSERT_TRUE(Plan(batch, 0.1));
    EXPECT_FALSE(batch.Plan(pointers, {}, kSlices, 0.1, 0.0));
    EXPECT_FALSE(batch.Plan(pointers, tubes, 0, 0.1, 0.0));
    EXPECT_FALSE(batch.Plan(pointers, tubes, kSlices, 0.0, 0.0));
    EXPECT_FALSE(batch.Plan(pointers, tubes, kSlices, std::nan(""), 0.0));
    // The refusals left the plan as it was.
    EXPECT_EQ(batch.LineCount(), 1u);
    EXPECT_EQ(batch.RingVertexCount(), 5u * kSlices);
}

TEST_F(GlTubeBatchTest, MovingLinesMergeNodesKeepTheEndsAndFitTheBudget)
{
    lines = {Wave(50, -1.5, 1.5, 0.0)};
    CGlTubeBatch batch;
    ASSERT_TRUE(Plan(batch, 0.1, 0.0));
    EXPECT_EQ(batch.LineNodeCount(), 50u);
    // Steps of about 0.06: merging below 0.5 keeps a node in seven or so,
    // and both ends.
    ASSERT_TRUE(Plan(batch, 0.1, 0.5));
    EXPECT_GE(batch.LineNodeCount(), 6u);
    EXPECT_LE(batch.LineNodeCount(), 9u);

    // Far more nodes than the budget: merged until they fit.
    lines.clear();
    for (int k = 0; k < 30; ++k)
    {
        lines.push_back(Wave(2500, -1.5, 1.5, -1.4 + 0.1 * k));
    }
    ASSERT_TRUE(Plan(batch, 0.01, 1e-4));
    EXPECT_LE(batch.LineNodeCount(), CGlTubeBatch::kLineNodes);
    EXPECT_GE(batch.LineNodeCount(), CGlTubeBatch::kLineNodes / 4);

    // The moving picture shows the lines in their colours, lit, where the
    // tubes were, and the tubes again once at rest.
    lines = {Wave(40, -1.5, 1.5, 0.0)};
    ASSERT_TRUE(Plan(batch, 0.1, 0.0));
    gl.renderer.AddTubeBatch(&batch);
    const std::vector<unsigned char> still = Frame();
    batch.SetMoving(true);
    const std::vector<unsigned char> moving = Frame();
    EXPECT_FALSE(moving == still);
    // Without a light the colours come unlit: the node's own, on a pixel
    // next to its projection (a line's pixels need not hold the point itself).
    Vec3 view;
    camera.ProjectPointWorldToView(lines[0].points[20], view);
    unsigned char rgba[4];
    ASSERT_TRUE(batch.NodeColour(0, 20, rgba));
    int nearest = 255;
    for (int dy = -1; dy <= 1; ++dy)
    {
        for (int dx = -1; dx <= 1; ++dx)
        {
            const KesraGl::Color pixel = KesraTest::PixelAt(gl.renderer, static_cast<int>(view.x) + dx,
                                                            static_cast<int>(view.y) + dy);
            nearest = std::min(nearest, KesraTest::ColorDistance(pixel, {rgba[0], rgba[1], rgba[2], 255}));
        }
    }
    EXPECT_LE(nearest, 12);
    batch.SetMoving(false);
    EXPECT_TRUE(Frame() == still);
}

TEST_F(GlTubeBatchTest, ALineLongerThanAChunkIsMadeInPartsAsOneTube)
{
    // Node records exist for one part at a time; the parts continue each
    // other's rings, so the pixels are the single tube's (a seam would twist
    // or crease the tube). The line crosses chunks, and so does a part's ring.
    const int nodes = static_cast<int>(CGlTubeBatch::kChunkVertices / kSlices) + 3 * CGlTubeBatch::kRunNodes;
    lines.push_back(Wave(nodes, -1.6, 1.6, -0.2, 0.3));
    lines.push_back(Wave(40, -1.5, 1.5, 1.0));
    const std::vector<unsigned char> single = SingleTubes(0.05);
    CGlTubeBatch batch;
    ASSERT_TRUE(Plan(batch, 0.05));
    EXPECT_GE(batch.ChunkCount(), 2u);
    const std::size_t parts = (static_cast<std::size_t>(nodes) - 2) / (CGlTubeBatch::kRunNodes - 1) + 1;
    EXPECT_EQ(batch.PartCount(), parts + 1);
    EXPECT_EQ(batch.RingVertexCount(), static_cast<std::size_t>(nodes + 40) * kSlices);
    gl.renderer.AddTubeBatch(&batch);
    batch.SetWorkers(2);
    // A host told to quit stops the making after a chunk; the next frame
    // goes on from there, continuing the ring the stop left.
    std::vector<std::size_t> reported;
    bool stop = true;
    batch.SetProgress([&](std::size_t done, std::size_t total) {
        EXPECT_EQ(total, static_cast<std::size_t>(nodes + 40));
        reported.push_back(done);
        return !stop;
    });
    Frame();
    EXPECT_FALSE(batch.IsBuilt());
    ASSERT_EQ(reported.size(), 1u);
    EXPECT_LT(reported[0], static_cast<std::size_t>(nodes));
    stop = false;
    EXPECT_TRUE(Frame() == single);
    EXPECT_EQ(reported.size(), batch.ChunkCount());
    EXPECT_EQ(reported.back(), static_cast<std::size_t>(nodes + 40));
    EXPECT_FALSE(tubes[0]->IsCreate());
}

TEST_F(GlTubeBatchTest, ABudgetMakesChunksFrameByFrameShowingTheirLinesMeanwhile)
{
    const std::size_t perLine = 3000;
    while (lines.size() * perLine * kSlices < 2 * CGlTubeBatch::kChunkVertices + perLine * kSlices)
    {
        const double y = -1.45 + 0.032 * static_cast<double>(lines.size());
        lines.push_back(Wave(static_cast<int>(perLine), -1.5, 1.5, y, 0.015));
    }
    CGlTubeBatch whole;
    ASSERT_TRUE(Plan(whole, 0.02));
    gl.renderer.AddTubeBatch(&whole);
    const std::vector<unsigned char> tubesAtOnce = Frame();
    whole.SetMoving(true);
    const std::vector<unsigned char> allLines = Frame();
    whole.Release();
    gl.renderer.ClearTubeBatches();

    CGlTubeBatch batch;
    ASSERT_TRUE(Plan(batch, 0.02));
    const std::size_t chunks = batch.ChunkCount();
    ASSERT_GE(chunks, 3u);
    std::vector<std::size_t> reported;
    batch.SetProgress([&](std::size_t done, std::size_t total) {
        EXPECT_EQ(total, lines.size() * perLine);
        reported.push_back(done);
        return true;
    });
    // Any budget is spent after at least one chunk: one a frame.
    batch.SetBuildBudget(1e-9);
    gl.renderer.AddTubeBatch(&batch);
    std::vector<double> fractions;
    std::vector<unsigned char> frame;
    while (!batch.IsBuilt())
    {
        frame = Frame();
        fractions.push_back(batch.BuiltFraction());
        if (!batch.IsBuilt())
        {
            // The lines of the chunks made so far, fewer than all of them.
            EXPECT_FALSE(frame == allLines);
            EXPECT_FALSE(frame == tubesAtOnce);
        }
    }
    EXPECT_EQ(fractions.size(), chunks);
    EXPECT_TRUE(std::is_sorted(fractions.begin(), fractions.end()));
    EXPECT_EQ(fractions.back(), 1.0);
    ASSERT_EQ(reported.size(), chunks);
    EXPECT_TRUE(std::is_sorted(reported.begin(), reported.end()));
    EXPECT_EQ(reported.back(), lines.size() * perLine);
    // The frame that makes the last chunk draws the tubes, every one.
    EXPECT_TRUE(frame == tubesAtOnce);

    // A context lost half way makes the chunks again from the first.
    batch.Release();
    EXPECT_EQ(batch.BuiltFraction(), 0.0);
    Frame();
    EXPECT_FALSE(batch.IsBuilt());
    batch.SetBuildBudget(0.0);
    EXPECT_TRUE(Frame() == tubesAtOnce);
}

} // namespace
