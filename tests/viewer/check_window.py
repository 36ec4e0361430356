"""kesra-viewer in a real window: an X server without a screen (Xvfb), the
mouse and keys sent by xdotool through the X server, as a person's would be.
Each control must change the picture the viewer's own `s` snapshot writes,
switches must come back to the picture they left, a window resize must reach
the renderer, and `q` must end the program with 0. A large file shows its
progress in the window's title while it loads, and Ctrl-C (130), `q` and
closing the window (0) end the load at once.

usage: check_window.py VIEWER WORKDIR
Exits 77 (skipped) when xvfb-run or xdotool is missing; .ci/install-window-tools
installs them.
"""
import ctypes
import ctypes.util
import os
import re
import shutil
import signal
import subprocess
import sys
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from check_viewer import ARRAYS_FILE, decode_png, expect  # noqa: E402
from large_file import write_large_vtk  # noqa: E402

SKIPPED = 77
UNDER_XVFB = "KESRA_WINDOW_TEST_UNDER_XVFB"

# The user's own file, not the built-in scene: two polylines coloured by a point
# scalar, with a vector and a cell scalar besides.
VTK_FILE = ARRAYS_FILE


def xdotool(*args, check=True):
    result = subprocess.run(["xdotool"] + [str(a) for a in args], capture_output=True,
                            text=True, timeout=30)
    if check:
        expect(result.returncode == 0, "xdotool " + " ".join(map(str, args)) + ": "
               + result.stderr.strip())
    return result.stdout


def viewer_env():
    env = dict(os.environ)
    preload = env.pop("KESRA_VIEWER_PRELOAD", "")
    if preload:
        env["LD_PRELOAD"] = preload
        env["LSAN_OPTIONS"] = "suppressions=" + os.path.join(
            os.path.dirname(os.path.abspath(__file__)), "..", "..", ".ci",
            "lsan-window.supp")
    return env


class Window:
    def __init__(self, viewer, work):
        env = viewer_env()
        path = os.path.join(work, "lines.vtk")
        with open(path, "w") as f:
            f.write(VTK_FILE)
        self.work = work
        self.env = env
        self.shots = 0
        self.process = subprocess.Popen([viewer, "--size", "640x480", path], cwd=work, env=env,
                                        stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                        text=True)
        self.id = self.find()
        # The pointer over the window: keys go where it is, without a window
        # manager to give the focus.
        self.move(320, 240)

    def find(self):
        deadline = time.monotonic() + 60
        while time.monotonic() < deadline:
            self.expect_running("before its window showed")
            # The title names the file.
            found = xdotool("search", "--onlyvisible", "--name", r"^lines\.vtk - kesra-viewer$",
                            check=False)
            if found.strip():
                return found.split()[0]
            time.sleep(0.2)
        expect(False, "no kesra-viewer window within 60 s")

    def expect_running(self, when):
        if self.process.poll() is not None:
            expect(False, "the viewer ended with %d %s: %s"
                   % (self.process.returncode, when, self.process.communicate()[1]))

    def move(self, x, y):
        xdotool("mousemove", "--window", self.id, x, y)

    def drag(self, start, end, button=1, held=None):
        self.move(*start)
        if held:
            xdotool("keydown", held)
        xdotool("mousedown", button)
        for step in range(1, 5):
            self.move(start[0] + (end[0] - start[0]) * step // 4,
                      start[1] + (end[1] - start[1]) * step // 4)
        xdotool("mouseup", button)
        if held:
            xdotool("keyup", held)

    def key(self, name):
        xdotool("key", name)

    def snapshot(self):
        """The viewer's own `s` snapshot: (width, height, file bytes)."""
        self.shots += 1
        path = os.path.join(self.work, "kesra-viewer-%d.png" % self.shots)
        self.key("s")
        deadline = time.monotonic() + 30
        while not os.path.exists(path):
            expect(time.monotonic() < deadline, "no %s within 30 s of the s key" % path)
            self.expect_running("before writing " + path)
            time.sleep(0.1)
        width, height = decode_png(path)
        with open(path, "rb") as f:
            return width, height, f.read()

    def settle(self, seconds=1.0):
        """Time for the window to draw what the events asked (animations too)."""
        time.sleep(seconds)

    def quit(self):
        # The window is gone once q is down; xdotool's key-up then finds no
        # window, so its own answer is not asked for.
        xdotool("key", "q", check=False)
        try:
            out, err = self.process.communicate(timeout=30)
        except subprocess.TimeoutExpired:
            self.process.kill()
            expect(False, "q did not end the viewer within 30 s")
        expect(self.process.returncode == 0, "q ended the viewer with %d: %s"
               % (self.process.returncode, err))
        return out


def changes(window, before, what, settle=0.5):
    window.settle(settle)
    after = window.snapshot()
    expect(after[2] != before[2], what + " did not change the picture")
    return after


def check(viewer, work):
    window = Window(viewer, work)
    first = window.snapshot()
    expect(first[:2] == (640, 480), "snapshot of %dx%d, not the window's 640x480" % first[:2])

    window.drag((320, 240), (380, 270))
    shot = changes(window, first, "left drag (rotate)")
    # Wheel zoom at the cursor: X reports the wheel as buttons 4 and 5.
    window.move(300, 200)
    xdotool("click", 4)
    shot = changes(window, shot, "wheel (zoom at the cursor)")
    window.drag((320, 240), (380, 300), button=1, held="shift")
    shot = changes(window, shot, "shift + left drag (pan)")
    window.drag((320, 240), (320, 180), button=2)
    shot = changes(window, shot, "middle drag (pan)")
    window.drag((200, 150), (420, 330), button=1, held="ctrl")
    shot = changes(window, shot, "ctrl + left drag (rubber-band zoom)")
    window.key("f")
    shot = changes(window, shot, "f (zoom all)")

    # Switches: on changes the picture, off brings the same picture back.
    for key, what in (("b", "banded"), ("v", "inverse"), ("g", "log scale"), ("h", "help"),
                      ("l", "plain lines")):
        window.key(key)
        on = changes(window, shot, key + " (" + what + " on)")
        window.key(key)
        window.settle(0.5)
        off = window.snapshot()
        expect(off[2] == shot[2], key + " twice did not give the picture back (" + what + ")")
        expect(on[2] != off[2], key + ": on and off look the same")
    window.key("p")
    shot = changes(window, shot, "p (next palette)")

    # A standard view through the smooth rotation, then the tour, which goes
    # on drawing by itself.
    window.key("1")
    shot = changes(window, shot, "1 (front view)", settle=2.0)
    window.key("i")
    window.settle(1.0)
    touring = window.snapshot()
    later = touring
    # A loaded machine may draw slowly enough for a second to fall within one
    # of the tour's pauses at a side.
    for attempt in range(10):
        window.settle(1.0)
        later = window.snapshot()
        if later[2] != touring[2]:
            break
    expect(later[2] != touring[2], "six-sides inspection did not move within ten seconds")
    window.key("i")

    xdotool("windowsize", window.id, 800, 600)
    window.settle(1.0)
    resized = window.snapshot()
    expect(resized[:2] == (800, 600),
           "after a resize to 800x600 the snapshot is %dx%d" % resized[:2])
    expect(later[2] != resized[2], "the resize did not change the picture")

    # The value under the cursor: the pointer, moved without a button, is
    # where c looks; far from every line it finds none.
    window.move(3, 3)
    window.key("c")
    out = window.quit()
    expect("wrote" in out, "the viewer did not report its snapshots")
    expect("no node within 12 pixels of the cursor" in out, "c did not report: " + out)

    # An event file that ends with q closes the window by itself.
    script = os.path.join(work, "quit.events")
    with open(script, "w") as f:
        f.write("press left 300 200\nmove 340 220\nrelease left 340 220\nframe\nkey s\nkey q\n")
    scripted = os.path.join(work, "scripted")
    os.makedirs(scripted)
    result = subprocess.run([viewer, "--size", "320x240", "--events", script], cwd=scripted,
                            env=window.env, capture_output=True, text=True, timeout=120)
    expect(result.returncode == 0, "the scripted window ended with %d: %s"
           % (result.returncode, result.stderr))
    expect(decode_png(os.path.join(scripted, "kesra-viewer-1.png")) == (320, 240),
           "the scripted window's snapshot is missing or not 320x240")
    print("window: %d snapshots, every control changed the picture" % window.shots)


class XClientMessage(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong),
                ("message_type", ctypes.c_ulong), ("format", ctypes.c_int),
                ("data", ctypes.c_long * 5)]


class XEvent(ctypes.Union):
    _fields_ = [("client", XClientMessage), ("pad", ctypes.c_long * 24)]


def close_window(window_id):
    """What a window manager sends when the user clicks the close button:
    WM_DELETE_WINDOW (xdotool only destroys windows or kills clients)."""
    x11 = ctypes.cdll.LoadLibrary(ctypes.util.find_library("X11"))
    x11.XOpenDisplay.restype = ctypes.c_void_p
    x11.XOpenDisplay.argtypes = [ctypes.c_char_p]
    x11.XInternAtom.restype = ctypes.c_ulong
    x11.XInternAtom.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
    x11.XSendEvent.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_long,
                               ctypes.POINTER(XEvent)]
    x11.XFlush.argtypes = [ctypes.c_void_p]
    x11.XCloseDisplay.argtypes = [ctypes.c_void_p]
    display = x11.XOpenDisplay(None)
    expect(display is not None, "no X display to close the window through")
    event = XEvent()
    event.client.type = 33  # ClientMessage
    event.client.window = int(window_id)
    event.client.message_type = x11.XInternAtom(display, b"WM_PROTOCOLS", 0)
    event.client.format = 32
    event.client.data[0] = x11.XInternAtom(display, b"WM_DELETE_WINDOW", 0)
    x11.XSendEvent(display, int(window_id), 0, 0, ctypes.byref(event))
    x11.XFlush(display)
    x11.XCloseDisplay(display)


# The title of a window loading big.vtk: how far, and in which phase.
LOADING_TITLE = re.compile(r"^(\d+)% (reading|preparing lines) - big\.vtk - kesra-viewer$")


def start_loading(viewer, work, path):
    """The viewer on the large file, once its window shows the load: the
    process, the window and the titles it showed."""
    process = subprocess.Popen([viewer, "--size", "480x360", path], cwd=work, env=viewer_env(),
                               stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
    deadline = time.monotonic() + 60
    while time.monotonic() < deadline:
        if process.poll() is not None:
            expect(False, "the viewer ended with %d before its loading window showed: %s"
                   % (process.returncode, process.communicate()[1]))
        found = xdotool("search", "--onlyvisible", "--name", r"^[0-9]+% .* - big\.vtk - kesra-viewer$",
                        check=False).split()
        if found:
            title = xdotool("getwindowname", found[0], check=False).strip()
            if LOADING_TITLE.match(title):
                return process, found[0], title
        time.sleep(0.05)
    expect(False, "no loading window within 60 s")


def ended(process, what, seconds=10):
    """The exit code and stderr of process, which must end within seconds
    of what."""
    start = time.monotonic()
    try:
        out, err = process.communicate(timeout=seconds)
    except subprocess.TimeoutExpired:
        process.kill()
        process.communicate()
        expect(False, "the viewer did not end within %d s of %s" % (seconds, what))
    print("%s: ended with %d after %.2f s" % (what, process.returncode, time.monotonic() - start))
    return process.returncode, err


def check_loading(viewer, work):
    """The window opens at once on a large file and shows the load going
    on; Ctrl-C, q and closing the window end it at once."""
    path = os.path.join(work, "big.vtk")
    write_large_vtk(path, 3000, 1000)

    process, window, title = start_loading(viewer, work, path)
    titles = {title}
    deadline = time.monotonic() + 1.0
    while time.monotonic() < deadline and process.poll() is None:
        titles.add(xdotool("getwindowname", window, check=False).strip())
        time.sleep(0.05)
    loading = sorted(t for t in titles if LOADING_TITLE.match(t))
    expect(len(loading) >= 2, "the title did not move while loading: %s" % titles)
    process.send_signal(signal.SIGINT)
    code, err = ended(process, "Ctrl-C during the load")
    expect(code == 130, "Ctrl-C during the load ended the viewer with %d: %s" % (code, err))
    # A sanitizer's report may follow the viewer's own lines.
    said = [line for line in err.splitlines() if line.startswith("kesra-viewer:")]
    expect(said[-1:] == ["kesra-viewer: interrupted"] and err.count("interrupted") == 1,
           "Ctrl-C did not say once, last, that the viewer was interrupted: " + err)
    expect("kesra-viewer: reading 10%" in err, "no progress on the terminal: " + err)

    process, window, _ = start_loading(viewer, work, path)
    xdotool("mousemove", "--window", window, 240, 180)
    xdotool("key", "q", check=False)
    code, err = ended(process, "q during the load", 5)
    expect(code == 0, "q during the load ended the viewer with %d: %s" % (code, err))

    process, window, _ = start_loading(viewer, work, path)
    close_window(window)
    code, err = ended(process, "closing the window during the load", 5)
    expect(code == 0, "closing the window during the load ended the viewer with %d: %s"
           % (code, err))
    expect("interrupted" not in err, "closing the window is no Ctrl-C: " + err)
    os.remove(path)


def main():
    viewer, work = os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2])
    if os.environ.get(UNDER_XVFB) != "1":
        missing = [tool for tool in ("xvfb-run", "xdotool") if shutil.which(tool) is None]
        if missing:
            print("SKIPPED: %s not installed (.ci/install-window-tools installs it)"
                  % " and ".join(missing))
            return SKIPPED
        env = dict(os.environ, **{UNDER_XVFB: "1"})
        env.pop("DISPLAY", None)
        command = ["xvfb-run", "--auto-servernum", "--server-args=-screen 0 1280x1024x24",
                   sys.executable, os.path.abspath(__file__), viewer, work]
        return subprocess.run(command, env=env, timeout=600).returncode
    shutil.rmtree(work, ignore_errors=True)
    os.makedirs(work)
    check(viewer, work)
    check_loading(viewer, work)
    return 0


if __name__ == "__main__":
    sys.exit(main())
