#include "Hosts.h"

#include "Interrupt.h"
#include "Loading.h"
#include "LoadingScreen.h"
#include "gl/GlSurface.h"

#include <GL/freeglut.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <utility>

namespace KesraViewer
{

namespace
{

// A freeglut window as the renderer's surface: double buffered, with depth
// and samples, an OpenGL 3.3 core context.
class GlutSurface : public KesraGl::CGlSurface
{
public:
    explicit GlutSurface(std::string title) : m_title(std::move(title)) {}
    ~GlutSurface() override
    {
        m_kept = false;
        Destroy();
    }

    // Opens the window ahead of the renderer, which then takes it over: its
    // first Destroy and Create (a renderer makes its context afresh) keep it.
    bool Open(int width, int height)
    {
        m_kept = Create(width, height);
        return m_kept;
    }

    bool Create(int width, int height) override
    {
        if (m_window > 0)
        {
            m_kept = false;
            return MakeCurrent();
        }
        glutInitDisplayMode(GLUT_RGBA | GLUT_DOUBLE | GLUT_DEPTH | GLUT_MULTISAMPLE);
        glutInitContextVersion(3, 3);
        glutInitContextProfile(GLUT_CORE_PROFILE);
        glutInitWindowSize(width, height);
        m_window = glutCreateWindow(m_title.c_str());
        if (m_window <= 0)
        {
            m_error = "display: no window with an OpenGL 3.3 core context";
            return false;
        }
        return true;
    }
    void Destroy() override
    {
        if (m_window > 0 && !m_kept)
        {
            glutDestroyWindow(m_window);
            m_window = 0;
        }
    }
    bool MakeCurrent() override
    {
        if (m_window <= 0)
        {
            return false;
        }
        glutSetWindow(m_window);
        return true;
    }
    GLuint Framebuffer() const override { return 0; }
    // The window system has already resized the window itself.
    void Resize(int, int) override {}
    void Present() override { glutSwapBuffers(); }
    void RequestRedraw() override
    {
        if (m_window > 0)
        {
            glutPostWindowRedisplay(m_window);
        }
    }
    const std::string& LastError() const override { return m_error; }
    // The window is closing (the user closed it, or the main loop ended and
    // freeglut closes every window): freeglut destroys it and its context
    // once the close callback returns, so nothing else may destroy it.
    void Closing() { m_kept = true; }
    // The window is gone.
    void Forget() { m_window = 0; }

private:
    std::string m_title;
    int m_window = 0;
    bool m_kept = false; // opened ahead, until the renderer creates its context
    std::string m_error;
};

// freeglut calls plain functions; they reach the one window's objects here.
struct WindowHost
{
    GlutSurface* surface = nullptr;
    KesraGl::CGlScene* scene = nullptr;
    KesraGl::CGlSceneInput* input = nullptr;
    int snapshots = 0;
    int wheelSteps = 0; // wheel events so far: the view rests after the last
    bool interrupted = false;
};

// How often the window looks for Ctrl-C and, during a load, redraws its
// progress.
constexpr unsigned kPollMs = 100;

// The wheel has no release: the view counts as resting once no step has come
// for this long.
constexpr unsigned kWheelRestMs = 250;

WindowHost g_host;

KesraGl::KeyModifiers CurrentModifiers()
{
    const int held = glutGetModifiers();
    return KesraGl::KeyModifiers{(held & GLUT_ACTIVE_SHIFT) != 0, (held & GLUT_ACTIVE_CTRL) != 0};
}

void OnDisplay()
{
    g_host.scene->Render();
    if (g_host.scene->IsAnimating())
    {
        glutPostRedisplay();
    }
}

void OnWheelRest(int step)
{
    if (g_host.scene != nullptr && step == g_host.wheelSteps)
    {
        g_host.scene->SetMoving(false);
    }
}

void OnReshape(int width, int height)
{
    g_host.input->Resize(width, height);
}

void OnMouse(int button, int state, int x, int y)
{
    // X11 reports the wheel as buttons 3 (up) and 4 (down).
    if (button == 3 || button == 4)
    {
        if (state == GLUT_DOWN)
        {
            g_host.input->Wheel(x, y, button == 3 ? 1 : -1);
            g_host.scene->SetMoving(true);
            glutTimerFunc(kWheelRestMs, OnWheelRest, ++g_host.wheelSteps);
        }
        return;
    }
    const KesraGl::MouseButton which = button == GLUT_LEFT_BUTTON     ? KesraGl::MouseButton::Left
                         : button == GLUT_MIDDLE_BUTTON ? KesraGl::MouseButton::Middle
                                                        : KesraGl::MouseButton::Right;
    if (state == GLUT_DOWN)
    {
        g_host.input->Press(which, x, y, CurrentModifiers());
    }
    else
    {
        g_host.input->Release(which, x, y);
    }
}

void OnMotion(int x, int y)
{
    g_host.input->Move(x, y);
}

void OnClose()
{
    // The window's context is still current here: the scene frees its
    // buffers in it, the last chance to.
    g_host.surface->Closing();
    if (g_host.scene != nullptr)
    {
        g_host.scene->Renderer().DestroyContext();
    }
    g_host.surface->Forget();
    glutLeaveMainLoop();
}

void OnInterruptPoll(int)
{
    if (g_host.scene == nullptr)
    {
        return;
    }
    if (Interrupted())
    {
        g_host.interrupted = true;
        glutLeaveMainLoop();
        return;
    }
    glutTimerFunc(kPollMs, OnInterruptPoll, 0);
}

void OnKey(unsigned char key, int, int)
{
    if (g_host.input->Key(static_cast<char>(key)) == KesraGl::KeyAction::Quit)
    {
        glutLeaveMainLoop();
    }
}

// The window's whole life, from the context to the end of the main loop;
// everything it made is gone when it returns.
int ShowWindow(const Options& options, const std::vector<Event>& events, GlutSurface& surface, SceneData data)
{
    const bool reused = surface.MakeCurrent();
    KesraGl::CGlScene scene(surface, std::move(data), options.width, options.height);
    if (!scene.CreateContext())
    {
        std::fprintf(stderr, "kesra-viewer: no OpenGL context: %s\n", scene.ContextError().c_str());
        return 1;
    }
    KesraGl::CGlSceneInput input(scene);
    if (reused)
    {
        // The user may have resized the window while the file loaded.
        input.Resize(glutGet(GLUT_WINDOW_WIDTH), glutGet(GLUT_WINDOW_HEIGHT));
    }
    ApplyOptions(options, scene, input);
    ReportTubeProgress(scene);
    input.SetSnapshotAction([&scene]() {
        const std::string path = "kesra-viewer-" + std::to_string(++g_host.snapshots) + ".png";
        if (WriteSnapshot(scene, path))
        {
            std::printf("kesra-viewer: wrote %s\n", path.c_str());
        }
    });
    g_host = WindowHost{&surface, &scene, &input, 0, 0, false};
    if (RunScript(options, events, scene, input))
    {
        g_host = WindowHost{};
        return 0;
    }
    glutTimerFunc(kPollMs, OnInterruptPoll, 0);
    glutDisplayFunc(OnDisplay);
    glutReshapeFunc(OnReshape);
    glutMouseFunc(OnMouse);
    glutMotionFunc(OnMotion);
    glutPassiveMotionFunc(OnMotion);
    glutKeyboardFunc(OnKey);
    glutCloseFunc(OnClose);
    // A large result's tubes are made a tenth of a second a frame, so that
    // the window answers between frames and shows how far they are.
    scene.SetBuildBudget(0.1);
    glutMainLoop();
    const bool interrupted = g_host.interrupted;
    g_host = WindowHost{};
    return interrupted ? kInterruptedStatus : 0;
}

// The file's name first, where a task bar cuts a long title short.
std::string WindowTitle(const std::string& name)
{
    return name.empty() ? "kesra-viewer" : name + " - kesra-viewer";
}

// ---- Loading ---------------------------------------------------------------------

// How a load in the window ended, besides the load's own outcome.
enum class LoadEnd
{
    Finished, // the load has an outcome
    Quit,     // a quit key
    Closed,   // the window was closed
    Interrupted
};

struct LoadingHost
{
    GlutSurface* surface = nullptr;
    CBackgroundLoad* load = nullptr;
    CLoadingScreen* screen = nullptr;
    std::string name;
    LoadEnd end = LoadEnd::Finished;
    bool ended = false;
    int shownPercent = -1;
    int width = 0;
    int height = 0;
};

LoadingHost g_loading;

void EndLoading(LoadEnd end)
{
    g_loading.end = end;
    g_loading.ended = true;
    g_loading.load->Stop();
}

void OnLoadingDisplay()
{
    g_loading.screen->Draw(g_loading.width, g_loading.height, g_loading.load->Phase(), g_loading.load->Fraction());
    glutSwapBuffers();
}

void OnLoadingReshape(int width, int height)
{
    g_loading.width = width;
    g_loading.height = height;
}

void OnLoadingKey(unsigned char key, int, int)
{
    if (key == 'q' || key == 'Q' || key == 27)
    {
        EndLoading(LoadEnd::Quit);
    }
}

void OnLoadingClose()
{
    if (g_loading.surface == nullptr)
    {
        return;
    }
    g_loading.surface->Forget();
    EndLoading(LoadEnd::Closed);
}

// Ctrl-C, the end of the load, else a new frame when the figure moved.
void OnLoadingPoll(int)
{
    if (g_loading.load == nullptr)
    {
        return;
    }
    if (Interrupted())
    {
        EndLoading(LoadEnd::Interrupted);
        return;
    }
    if (g_loading.load->Result() != CBackgroundLoad::Outcome::Running)
    {
        g_loading.ended = true;
        return;
    }
    const int percent = static_cast<int>(100.0 * g_loading.load->Fraction());
    if (percent != g_loading.shownPercent)
    {
        g_loading.shownPercent = percent;
        const std::string title =
            std::to_string(percent) + "% " + PhaseName(g_loading.load->Phase()) + " - " + WindowTitle(g_loading.name);
        glutSetWindowTitle(title.c_str());
        glutPostRedisplay();
    }
    glutTimerFunc(kPollMs, OnLoadingPoll, 0);
}

// Runs the window's events until load has an outcome or the user ends it.
// Not in glutMainLoop: freeglut tears itself down when that returns, and
// the scene still needs the window.
LoadEnd WatchLoad(const Options& options, GlutSurface& surface, CBackgroundLoad& load, const std::string& name)
{
    constexpr auto kEventWait = std::chrono::milliseconds(10);
    CLoadingScreen screen(name);
    g_loading = LoadingHost{&surface, &load, &screen, name, LoadEnd::Finished, false, -1, options.width,
                            options.height};
    glutDisplayFunc(OnLoadingDisplay);
    glutReshapeFunc(OnLoadingReshape);
    glutKeyboardFunc(OnLoadingKey);
    glutCloseFunc(OnLoadingClose);
    glutTimerFunc(kPollMs, OnLoadingPoll, 0);
    while (!g_loading.ended)
    {
        glutMainLoopEvent();
        std::this_thread::sleep_for(kEventWait);
    }
    const LoadEnd end = g_loading.end;
    if (end == LoadEnd::Finished)
    {
        // The last figure stays up while the first frame makes the tubes.
        OnLoadingDisplay();
    }
    // Destroying the window calls the close function too: not this one.
    glutCloseFunc(nullptr);
    g_loading = LoadingHost{};
    return end;
}

int LoadInWindow(const Options& options, const std::vector<Event>& events, const SceneRequest& request)
{
    const std::string name = std::filesystem::path(request.file).filename().string();
    GlutSurface surface(WindowTitle(name));
    if (!surface.Open(options.width, options.height))
    {
        std::fprintf(stderr, "kesra-viewer: no OpenGL context: %s\n", surface.LastError().c_str());
        return 1;
    }
    CBackgroundLoad load(request, true);
    const LoadEnd end = WatchLoad(options, surface, load, name);
    load.Join();
    if (end == LoadEnd::Quit || end == LoadEnd::Closed)
    {
        return 0;
    }
    // The load stops by itself on Ctrl-C, which the loop may not have seen.
    if (end == LoadEnd::Interrupted || load.Result() == CBackgroundLoad::Outcome::Stopped)
    {
        return ReportInterrupted();
    }
    if (load.Result() == CBackgroundLoad::Outcome::Refused)
    {
        std::fprintf(stderr, "kesra-viewer: %s\n", load.Error().c_str());
        return 2;
    }
    if (!load.Summary().empty())
    {
        std::printf("%s\n", load.Summary().c_str());
        std::fflush(stdout);
    }
    SceneData data = load.TakeData();
    if (options.hasUnit)
    {
        data.lengthUnit = options.unit;
    }
    glutSetWindowTitle(WindowTitle(data.title).c_str());
    return ShowWindow(options, events, surface, std::move(data));
}

// Makes freeglut ready, runs show and tears freeglut down; show gets the
// --events file's events.
template <typename Show>
int WithGlut(const Options& options, const Show& show)
{
    const char* display = std::getenv("DISPLAY");
    if (display == nullptr || display[0] == '\0')
    {
        std::fprintf(stderr, "kesra-viewer: no display: DISPLAY is not set "
                             "(use --headless --snapshot FILE.png)\n");
        return 1;
    }
    std::vector<Event> events;
    if (!LoadEvents(options, events))
    {
        return 2;
    }
    int argc = 1;
    char name[] = "kesra-viewer";
    char* argv[] = {name, nullptr};
    glutInit(&argc, argv);
    // The main loop returns instead of ending the process. On its way out it
    // closes the window, whose close callback lets the scene free its
    // objects in the window's context first; the display connection (with
    // the driver's buffers) goes last, in glutExit.
    glutSetOption(GLUT_ACTION_ON_WINDOW_CLOSE, GLUT_ACTION_CONTINUE_EXECUTION);
    const int status = show(events);
    glutExit();
    return status;
}

} // namespace

int RunWindow(const Options& options, SceneData data)
{
    return WithGlut(options, [&](const std::vector<Event>& events) {
        GlutSurface surface(WindowTitle(options.file.empty() ? "" : data.title));
        return ShowWindow(options, events, surface, std::move(data));
    });
}

int RunWindow(const Options& options, const SceneRequest& request)
{
    return WithGlut(options,
                    [&](const std::vector<Event>& events) { return LoadInWindow(options, events, request); });
}

} // namespace KesraViewer
