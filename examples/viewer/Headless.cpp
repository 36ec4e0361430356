#include "Hosts.h"

#include "Interrupt.h"
#include "PngFile.h"
#include "gl/EglContext.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>

namespace KesraViewer
{

std::vector<double> TimeFrames(KesraGl::CGlScene& scene, int frames)
{
    std::vector<double> times;
    times.reserve(static_cast<std::size_t>(frames));
    for (int i = 0; i < frames; ++i)
    {
        const auto start = std::chrono::steady_clock::now();
        scene.Render();
        // The frame counts once the driver has finished it, not when queued.
        glFinish();
        const auto end = std::chrono::steady_clock::now();
        times.push_back(std::chrono::duration<double, std::milli>(end - start).count());
    }
    return times;
}

void PrintFrameTimes(const std::vector<double>& times, const KesraGl::CGlScene& scene)
{
    if (times.empty())
    {
        return;
    }
    std::vector<double> sorted = times;
    std::sort(sorted.begin(), sorted.end());
    const std::size_t n = sorted.size();
    const double median = n % 2 == 1 ? sorted[n / 2] : 0.5 * (sorted[n / 2 - 1] + sorted[n / 2]);
    if (scene.IsMoving())
    {
        std::printf("moving frames %zu, line nodes %zu: median %.2f ms, worst %.2f ms\n", n,
                    scene.LineNodeCount(), median, sorted.back());
        return;
    }
    std::printf("frames %zu, tube vertices %d: median %.2f ms, worst %.2f ms\n", n,
                scene.VertexCount(), median, sorted.back());
}

void ReportTubeProgress(KesraGl::CGlScene& scene)
{
    // A small scene comes up at once; a large one says how far its tubes are,
    // a line every tenth.
    constexpr int kReportedVertices = 1 << 21;
    if (scene.VertexCount() < kReportedVertices)
    {
        return;
    }
    const auto tenths = std::make_shared<std::size_t>(0);
    scene.TubeBatch().SetProgress([tenths](std::size_t done, std::size_t total) {
        const std::size_t tenth = 10 * done / total;
        // After Ctrl-C the chunk being made is the last: the program ends.
        if (Interrupted())
        {
            return false;
        }
        if (tenth > *tenths || done == total)
        {
            *tenths = tenth;
            std::fprintf(stderr, "kesra-viewer: tubes %zu%% (%zu of %zu nodes)\n", 100 * done / total, done, total);
        }
        return true;
    });
}

bool WriteSnapshot(KesraGl::CGlScene& scene, const std::string& path)
{
    const std::vector<unsigned char> rgba = scene.Capture();
    if (Interrupted())
    {
        return false;
    }
    std::string error;
    if (!WritePng(path, scene.Renderer().GetWidth(), scene.Renderer().GetHeight(), rgba, error))
    {
        std::fprintf(stderr, "kesra-viewer: %s\n", error.c_str());
        return false;
    }
    return true;
}

void ApplyOptions(const Options& options, KesraGl::CGlScene& scene, KesraGl::CGlSceneInput& input)
{
    scene.SetView(options.view, false);
    if (options.hasRange)
    {
        scene.SetValueRange(options.rangeMin, options.rangeMax);
    }
    if (options.palette != scene.GetPalette())
    {
        scene.SetPalette(options.palette);
    }
    if (options.logScale)
    {
        scene.SetLogScale(true);
    }
    if (options.labelFormat != KesraEngine::eLabelFormatDefault)
    {
        scene.Legend().SetLabelFormat(options.labelFormat, options.labelDigits);
    }
    input.SetProbeReport([](const std::string& line) {
        std::printf("%s\n", line.c_str());
        std::fflush(stdout);
    });
}

bool LoadEvents(const Options& options, std::vector<Event>& events)
{
    try
    {
        if (!options.events.empty())
        {
            events = ReadEventFile(options.events);
        }
    }
    catch (const EventError& error)
    {
        std::fprintf(stderr, "kesra-viewer: %s\n", error.what());
        return false;
    }
    return true;
}

bool RunScript(const Options& options, const std::vector<Event>& events, KesraGl::CGlScene& scene,
               KesraGl::CGlSceneInput& input)
{
    if (ReplayEvents(events, input, scene))
    {
        return true;
    }
    if (options.benchFrames > 0)
    {
        // Both kinds of frame: the tubes of a view at rest, then the lines
        // drawn while it moves.
        const bool moving = scene.IsMoving();
        scene.SetMoving(false);
        PrintFrameTimes(TimeFrames(scene, options.benchFrames), scene);
        scene.SetMoving(true);
        PrintFrameTimes(TimeFrames(scene, options.benchFrames), scene);
        scene.SetMoving(moving);
    }
    return false;
}

int RunHeadless(const Options& options, SceneData data)
{
    std::vector<Event> events;
    if (!LoadEvents(options, events))
    {
        return 2;
    }
    KesraGl::CEglContext context;
    KesraGl::CGlScene scene(context, std::move(data), options.width, options.height);
    if (!scene.CreateContext())
    {
        std::fprintf(stderr, "kesra-viewer: no OpenGL context: %s\n", scene.ContextError().c_str());
        return 1;
    }
    KesraGl::CGlSceneInput input(scene);
    ApplyOptions(options, scene, input);
    ReportTubeProgress(scene);
    int snapshots = 0;
    bool written = true;
    input.SetSnapshotAction([&]() {
        const std::string stem = options.snapshot.empty() ? "kesra-viewer" : options.snapshot;
        written = WriteSnapshot(scene, stem + "." + std::to_string(++snapshots) + ".png") && written;
    });
    RunScript(options, events, scene, input);
    const bool snapped = options.snapshot.empty() || (!Interrupted() && WriteSnapshot(scene, options.snapshot));
    if (Interrupted())
    {
        return ReportInterrupted();
    }
    return snapped && written ? 0 : 1;
}

} // namespace KesraViewer
