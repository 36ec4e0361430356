#include "Hosts.h"

#include "gl/GlSurface.h"

#include <GL/freeglut.h>

#include <cstdio>
#include <cstdlib>
#include <string>
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
    ~GlutSurface() override { Destroy(); }

    bool Create(int width, int height) override
    {
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
        if (m_window > 0)
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
    // The user closed the window: freeglut has destroyed it and its context.
    void Forget() { m_window = 0; }

private:
    std::string m_title;
    int m_window = 0;
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
};

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
    g_host.surface->Forget();
    glutLeaveMainLoop();
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
int ShowWindow(const Options& options, const std::vector<Event>& events, SceneData data)
{
    // The file's name first, where a task bar cuts a long title short.
    GlutSurface surface(options.file.empty() ? "kesra-viewer" : data.title + " - kesra-viewer");
    KesraGl::CGlScene scene(surface, std::move(data), options.width, options.height);
    if (!scene.CreateContext())
    {
        std::fprintf(stderr, "kesra-viewer: no OpenGL context: %s\n", scene.ContextError().c_str());
        return 1;
    }
    KesraGl::CGlSceneInput input(scene);
    ApplyOptions(options, scene, input);
    ReportTubeProgress(scene);
    input.SetSnapshotAction([&scene]() {
        const std::string path = "kesra-viewer-" + std::to_string(++g_host.snapshots) + ".png";
        if (WriteSnapshot(scene, path))
        {
            std::printf("kesra-viewer: wrote %s\n", path.c_str());
        }
    });
    g_host = WindowHost{&surface, &scene, &input, 0, 0};
    if (RunScript(options, events, scene, input))
    {
        g_host = WindowHost{};
        return 0;
    }
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
    g_host = WindowHost{};
    return 0;
}

} // namespace

int RunWindow(const Options& options, SceneData data)
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
    // The loop returns without tearing freeglut down, so that the scene can
    // free its objects in the context before the window goes; freeglut and
    // its display connection (with the driver's buffers) go after.
    glutSetOption(GLUT_ACTION_ON_WINDOW_CLOSE, GLUT_ACTION_CONTINUE_EXECUTION);
    const int status = ShowWindow(options, events, std::move(data));
    glutExit();
    return status;
}

} // namespace KesraViewer
