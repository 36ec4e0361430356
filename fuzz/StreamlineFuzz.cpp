// Streamline tubes and their node records with any coordinates, counts and
// indices. After every step: Create accepts exactly the sizes it should and
// a refused one keeps the last accepted counts; nothing answers while not
// created; indices out of range are refused without touching the caller's
// buffer; generated normals are unit or zero; a copy equals its original.
#include "FuzzInput.h"

#include "Engine/StreamlineData.h"
#include "support/TestDoubles.h"

#include <cmath>

namespace
{

using KesraFuzz::FuzzInput;
using KesraFuzz::OperationClock;
using KesraFuzz::Require;
using KesraTest::TestStreamline;

// Counts beyond these allocate for long; huge counts reach Create only when
// it must refuse them.
constexpr int kMaxNodes = 16;
constexpr int kMaxSlices = 12;

int BoundedCount(int count, int limit) { return count > limit ? count % (limit + 1) : count; }

void CheckNormals(const TestStreamline& tube)
{
    for (int node = 0; tube.IsCreate() && node < tube.GetNodes(); ++node)
    {
        for (int slice = 0; slice < tube.GetSlices(); ++slice)
        {
            double n[3] = {};
            Require(tube.GetSliceNodeNormal(node, slice, n), "every ring vertex has a normal");
            const double length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
            Require(!std::isfinite(length) || length == 0.0 || std::abs(length - 1.0) < 1e-9,
                    "a generated normal is unit or zero");
        }
    }
}

// The indexed operations on (node, slice); out of range or not created they
// answer false and leave the caller's buffer as it was.
void IndexedStep(TestStreamline& tube, FuzzInput& in)
{
    const int node = in.Index(tube.GetNodes());
    const int slice = in.Index(tube.GetSlices());
    const bool nodeOk = tube.IsCreate() && node >= 0 && node < tube.GetNodes();
    const bool vertexOk = nodeOk && slice >= 0 && slice < tube.GetSlices();
    double xyz[3] = {in.Double(), in.Double(), in.Double()};
    double out[3] = {-7.0, -7.0, -7.0};
    unsigned char rgba[4] = {in.Channel(), in.Channel(), in.Channel(), in.Channel()};
    unsigned char rgb[3] = {7, 7, 7};
    bool answer = false;
    bool wrote = false;
    switch (in.Choice(9))
    {
    case 0: answer = tube.SetNodeCoord(node, xyz); break;
    case 1: answer = tube.GetNodeCoord(node, out); wrote = out[0] != -7.0 || out[1] != -7.0 || out[2] != -7.0; break;
    case 2: answer = tube.SetNodeColor(node, rgba); break;
    case 3: answer = tube.GetNodeColor(node, rgb); wrote = rgb[0] != 7 || rgb[1] != 7 || rgb[2] != 7; break;
    case 4: answer = tube.SetStreamlineNodeColor(node, rgba[0], rgba[1], rgba[2], rgba[3]); break;
    case 5: Require(tube.SetSliceNodeCoord(node, slice, xyz) == vertexOk, "ring coordinates answer as the indices are"); return;
    case 6: Require(tube.SetSliceNodeNormal(node, slice, xyz) == vertexOk, "ring normals answer as the indices are"); return;
    case 7:
        answer = tube.GetSliceNodeCoord(node, slice, out);
        Require(answer == vertexOk, "ring coordinates answer as the indices are");
        Require(answer || (out[0] == -7.0 && out[1] == -7.0 && out[2] == -7.0), "a refused read writes nothing");
        return;
    default:
        answer = tube.GetSliceNodeNormal(node, slice, out);
        Require(answer == vertexOk, "ring normals answer as the indices are");
        Require(answer || (out[0] == -7.0 && out[1] == -7.0 && out[2] == -7.0), "a refused read writes nothing");
        return;
    }
    Require(answer == nodeOk, "node operations answer as the index is");
    Require(answer || !wrote, "a refused read writes nothing");
}

// A node record alone, default-constructed or sized anyhow.
void RecordStep(FuzzInput& in)
{
    KesraEngine::CKesraStreamlineData record;
    const int steps = in.Choice(8);
    for (int i = 0; i < steps; ++i)
    {
        const int index = in.Index(record.GetSliceCount());
        const bool inRange = index >= 0 && index < record.GetSliceCount();
        double out[3] = {};
        switch (in.Choice(4))
        {
        case 0: record.SetSliceCount(BoundedCount(in.Int(), kMaxSlices)); break;
        case 1:
        {
            const double x = in.Double();
            const double y = in.Double();
            Require(record.SetSliceNodeCoord(index, x, y, in.Double()) == inRange, "record coordinates answer as the index is");
            break;
        }
        case 2: Require(record.GetSliceNodeNormal(index, out) == inRange, "record normals answer as the index is"); break;
        default:
        {
            const KesraEngine::CKesraStreamlineData copy(record);
            double a[3] = {}, b[3] = {};
            Require(copy.GetSliceCount() == record.GetSliceCount(), "a copied record keeps its count");
            Require(copy.GetSliceNodeCoord(index, a) == record.GetSliceNodeCoord(index, b) &&
                        std::memcmp(a, b, sizeof a) == 0,
                    "a copied record equals its original");
            break;
        }
        }
    }
}

void Step(TestStreamline& tube, FuzzInput& in)
{
    switch (in.Choice(8))
    {
    case 0:
    {
        const int nodes = BoundedCount(in.Size(kMaxNodes), kMaxNodes);
        const int slices = BoundedCount(in.Size(kMaxSlices), kMaxSlices);
        const double radius = in.Double();
        const double auxiliary = in.Double();
        const bool accepted = nodes > 1 && slices > 0 && radius > 0.0 && auxiliary > 0.0;
        const int oldNodes = tube.GetNodes();
        const int oldSlices = tube.GetSlices();
        Require(tube.Create(nodes, slices, radius, auxiliary) == accepted, "Create accepts exactly sound sizes");
        Require(tube.IsCreate() == accepted, "Create leaves the tube created exactly when accepted");
        Require(accepted ? (tube.GetNodes() == nodes && tube.GetSlices() == slices)
                         : (tube.GetNodes() == oldNodes && tube.GetSlices() == oldSlices),
                "a refused Create keeps the last accepted counts");
        break;
    }
    case 1:
    {
        const bool wasCreated = tube.IsCreate();
        Require(tube.Delete() == wasCreated && !tube.IsCreate(), "Delete answers whether the tube was created");
        break;
    }
    case 2:
    case 3: IndexedStep(tube, in); break;
    case 4:
        Require(tube.GenerationStreamline3D() == tube.IsCreate(), "generation answers whether the tube is created");
        CheckNormals(tube);
        break;
    case 5: tube.SetDrawStreamline(in.Bool()); break;
    case 6: RecordStep(in); break;
    default:
    {
        TestStreamline assigned;
        assigned.Create(3, 2, 1.0, 1.0);
        KesraFuzz::RequireCopiesEqual(tube, assigned, "copies of a tube equal their original");
        break;
    }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzInput in(data, size);
    TestStreamline tube;
    KesraFuzz::RunSteps(in, tube, "streamline operation", Step, [](const TestStreamline&) {});
    return 0;
}
