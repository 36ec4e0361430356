"""kesra-viewer from the command line: a headless snapshot that decodes at
the requested size, and each refusal with its message and exit code, with
nothing half-written left behind; a large file's progress on the terminal,
and Ctrl-C at any stage ending the run with 130 and no picture.

usage: check_viewer.py VIEWER WORKDIR
"""
import os
import shutil
import signal
import struct
import subprocess
import sys
import time
import zlib

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from large_file import write_large_vtk  # noqa: E402


def decode_png(path):
    """Width, height and the unfiltered size of a whole RGBA PNG."""
    with open(path, "rb") as f:
        data = f.read()
    assert data[:8] == b"\x89PNG\r\n\x1a\n", "not a PNG signature"
    pos, width, height, idat = 8, None, None, b""
    while pos < len(data):
        length, kind = struct.unpack(">I4s", data[pos:pos + 8])
        body = data[pos + 8:pos + 8 + length]
        crc, = struct.unpack(">I", data[pos + 8 + length:pos + 12 + length])
        assert zlib.crc32(kind + body) == crc, "bad CRC in " + kind.decode()
        if kind == b"IHDR":
            width, height, depth, colour = struct.unpack(">IIBB", body[:10])
            assert (depth, colour) == (8, 6), "not 8-bit RGBA"
        elif kind == b"IDAT":
            idat += body
        pos += 12 + length
    raw = zlib.decompress(idat)
    assert len(raw) == height * (1 + 4 * width), "pixel data of the wrong size"
    return width, height


def pixels(path):
    """The unfiltered rows of a PNG: equal pictures give equal bytes."""
    with open(path, "rb") as f:
        data = f.read()
    pos, idat = 8, b""
    while pos < len(data):
        length, kind = struct.unpack(">I4s", data[pos:pos + 8])
        if kind == b"IDAT":
            idat += data[pos + 8:pos + 8 + length]
        pos += 12 + length
    return zlib.decompress(idat)


def viewer_env(env=None):
    full_env = dict(os.environ)
    # Libraries the viewer, not this script, must start with (a sanitized
    # build's runtime and graphics driver).
    preload = full_env.pop("KESRA_VIEWER_PRELOAD", "")
    if preload:
        full_env["LD_PRELOAD"] = preload
    full_env.update(env or {})
    return full_env


def run(viewer, args, env=None):
    full_env = viewer_env(env)
    result = subprocess.run([viewer] + args, capture_output=True, text=True, env=full_env,
                            timeout=120)
    return result.returncode, result.stdout, result.stderr


def snapshot(viewer, work, name, args, events=None):
    """The pixels and the printed lines of a 300x200 headless snapshot with
    args, after the events when given; nothing left behind."""
    target = os.path.join(work, name + ".png")
    extra = []
    if events is not None:
        script = os.path.join(work, name + ".events")
        with open(script, "w") as f:
            f.write(events)
        extra = ["--events", script]
    code, out, err = run(viewer, ["--headless", "--snapshot", target, "--size", "300x200"]
                         + extra + args)
    expect(code == 0, "%s exits 0: %s" % (name, err))
    picture = pixels(target)
    os.remove(target)
    if events is not None:
        os.remove(script)
    return picture, out


def expect(condition, what):
    if not condition:
        print("FAILED: " + what)
        sys.exit(1)


def main():
    viewer, work = sys.argv[1], sys.argv[2]
    shutil.rmtree(work, ignore_errors=True)
    os.makedirs(work)
    shot = os.path.join(work, "shot.png")

    code, out, err = run(viewer, ["--headless", "--snapshot", shot, "--size", "200x150",
                                  "--view", "front", "--bench-frames", "3"])
    expect(code == 0, "snapshot run exits 0: " + err)
    expect(decode_png(shot) == (200, 150), "snapshot decodes at 200x150")
    expect("median" in out and "worst" in out, "bench frames print median and worst: " + out)

    events = os.path.join(work, "events.txt")
    with open(events, "w") as f:
        f.write("press left 20 20\nmove 40 30\nrelease left 40 30\nframe 2\nteleport 3 4\n")
    refused = [
        (["--headless", "--snapshot", shot + "2", "--events", events], 2, events + ":5: expected an event"),
        (["--headless", "--snapshot", shot + "2", "--events", os.path.join(work, "none.txt")], 2,
         "cannot be read"),
        (["--headless", "--snapshot", shot + "2", "--size", "200"], 2, "--size takes WxH"),
        (["--headless", "--snapshot", shot + "2", "--view", "up"], 2, "--view takes one of"),
        (["--headless"], 2, "--headless needs"),
        (["--wobble"], 2, "unknown option --wobble"),
        (["--headless", "--snapshot", os.path.join(work, "missing", "x.png"), "--size", "64x64"], 1,
         "cannot be written"),
    ]
    for args, want_code, want_text in refused:
        code, out, err = run(viewer, args)
        expect(code == want_code, "%s exits %d, not %d: %s" % (args, want_code, code, err))
        expect(want_text in err, "%s says %r: %s" % (args, want_text, err))
    bad = os.path.join(work, "bad.vtk")
    with open(bad, "w") as f:
        f.write("# vtk DataFile Version 3.0\nlines\nASCII\nDATASET POLYDATA\nPOINTS 3 float\n0 0 0 1 1\n")
    code, out, err = run(viewer, ["--headless", "--snapshot", shot + "4", bad])
    expect(code == 2 and "bad.vtk" in err, "a truncated file: exit 2 naming it: %d %s" % (code, err))
    good = os.path.join(work, "good.vtk")
    with open(good, "w") as f:
        f.write("# vtk DataFile Version 3.0\nlines\nASCII\nDATASET POLYDATA\nPOINTS 3 float\n"
                "0 0 0 1 1 0 2 0 1\nLINES 1 4\n3 0 1 2\nPOINT_DATA 3\nSCALARS t float 1\n"
                "LOOKUP_TABLE default\n1 2 3\n")
    code, out, err = run(viewer, ["--headless", "--snapshot", shot + "5.png", "--size", "120x90", good])
    expect(code == 0 and decode_png(shot + "5.png") == (120, 90), "a good file: a snapshot: " + err)
    os.remove(shot + "5.png")
    os.remove(good)
    os.remove(bad)
    expect(sorted(os.listdir(work)) == ["events.txt", "shot.png"],
           "refused runs leave nothing behind: %s" % os.listdir(work))

    check_arrays(viewer, work)
    check_legend_options(viewer, work)
    check_interrupt(viewer, work)

    # No EGL vendor: the headless context cannot be made.
    code, out, err = run(viewer, ["--headless", "--snapshot", shot + "3", "--size", "64x64"],
                         {"__EGL_VENDOR_LIBRARY_FILENAMES": os.path.join(work, "none.json")})
    expect(code == 1 and "EGL" in err, "without EGL: exit 1 naming EGL: %d %s" % (code, err))
    # No display: the window cannot be opened.
    code, out, err = run(viewer, ["--size", "64x64"], {"DISPLAY": ""})
    expect(code == 1 and "display" in err, "without a display: exit 1 naming it: %d %s" % (code, err))
    expect(not os.path.exists(shot + "3"), "nothing written without a context")
    print("kesra-viewer command line: all checks passed")


def interrupted(viewer, work, path, wait_for):
    """A headless run on path, sent Ctrl-C once its terminal shows wait_for:
    its stderr up to then, and after. It must end with 130 within 10 s,
    saying so once, and leave no picture (nor its temporary file)."""
    target = os.path.join(work, "interrupted.png")
    before = sorted(os.listdir(work))
    process = subprocess.Popen([viewer, "--headless", "--snapshot", target, "--size", "200x150", path],
                               env=viewer_env(), stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                               text=True)
    seen = ""
    while wait_for not in seen:
        line = process.stderr.readline()
        if not line:
            process.wait(timeout=30)
            expect(False, "the run ended (%d) before %r: %s" % (process.returncode, wait_for, seen))
        seen += line
    process.send_signal(signal.SIGINT)
    start = time.monotonic()
    try:
        rest = process.communicate(timeout=10)[1]
    except subprocess.TimeoutExpired:
        process.kill()
        process.communicate()
        expect(False, "Ctrl-C after %r did not end the run within 10 s" % wait_for)
    print("Ctrl-C after %r: ended with %d in %.2f s"
          % (wait_for, process.returncode, time.monotonic() - start))
    expect(process.returncode == 130, "Ctrl-C after %r: exit %d, not 130: %s"
           % (wait_for, process.returncode, rest))
    # A sanitizer's report may follow the viewer's own lines.
    said = [line for line in rest.splitlines() if line.startswith("kesra-viewer:")]
    expect(said[-1:] == ["kesra-viewer: interrupted"] and rest.count("interrupted") == 1,
           "Ctrl-C after %r did not say once, last, that the run was interrupted: %s"
           % (wait_for, rest))
    expect(sorted(os.listdir(work)) == before, "Ctrl-C after %r left %s behind"
           % (wait_for, sorted(set(os.listdir(work)) - set(before))))
    return seen, rest


def check_interrupt(viewer, work):
    """Ctrl-C while reading, preparing lines and making tubes."""
    large = os.path.join(work, "large.vtk")
    write_large_vtk(large, 1000, 1000)
    seen, _ = interrupted(viewer, work, large, "reading 10%")
    expect(seen.startswith("kesra-viewer: reading %s (20 MB)\n" % large),
           "a large file is not announced: " + seen)
    seen, rest = interrupted(viewer, work, large, "preparing lines 10%")
    reading = ["kesra-viewer: reading %d%%" % (10 * tenth) for tenth in range(1, 11)]
    expect(seen.splitlines()[1:11] == reading, "not a line every tenth of the reading: " + seen)
    expect("tubes" not in rest, "tubes made after Ctrl-C: " + rest)
    # Eight chunks of tubes: the one being made when Ctrl-C comes is the last.
    _, rest = interrupted(viewer, work, large, "kesra-viewer: tubes")
    expect("tubes 100%" not in rest, "all tubes made after Ctrl-C: " + rest)
    os.remove(large)


# Two polylines with a point scalar, a point vector and a cell scalar.
ARRAYS_FILE = """# vtk DataFile Version 3.0
arrays
ASCII
DATASET POLYDATA
POINTS 8 float
0 0 0  1 0.2 0  2 0.1 0.3  3 0 0.5
0 1 0  1 1.3 0.2  2 1.2 0.1  3 1 0
VERTICES 1 2
1 0
LINES 2 10
4 0 1 2 3
4 4 5 6 7
CELL_DATA 3
SCALARS zone int 1
LOOKUP_TABLE default
9 1 5
POINT_DATA 8
SCALARS pressure double 1
LOOKUP_TABLE default
0 1 2 3 4 5 6 7
VECTORS velocity float
1 0 0  2 0 0  3 0 0  4 0 0  0 -1 0  0 -2 0  0 -3 0  0 -4 0
"""

INFO = """{path}
points: 8, lines: 2, line points: 8
bounds: x [0, 3] y [0, 1.3] z [0, 0.5]
arrays: 3
  point pressure: 1 component, range [0, 7] (active scalars)
  point velocity: 3 components, x [0, 4], y [-4, 0], z [0, 0], magnitude [1, 4]
  cell zone: 1 component, range [1, 5]
note: VERTICES: 1 cells read past; only lines are drawn
note: cell arrays keep the values of the 2 lines; those of the other 1 cells are read past
"""


def check_arrays(viewer, work):
    """--info, the array, range, radius and unit choices, the keys r, l and c."""
    path = os.path.join(work, "arrays.vtk")
    with open(path, "w") as f:
        f.write(ARRAYS_FILE)

    code, out, err = run(viewer, ["--info", path])
    expect(code == 0 and out == INFO.format(path=path), "--info: %d %r %s" % (code, out, err))
    code, out, err = run(viewer, ["--help"])
    for option in ("--info", "--scalars", "--range", "--radius", "--unit", ".vtp", ".pvtp", ".vtm"):
        expect(option in out, "--help mentions " + option)
    for key in ("r  ", "l  ", "c  ", "s  ", "h  "):
        expect("\n  " + key in out, "--help lists the key " + key.strip())

    def shot(name, *args, events=None):
        return snapshot(viewer, work, name, list(args) + [path], events)

    default, out = shot("default")
    expect(out.startswith(path + ": 2 lines (0 skipped), 8 points, coloured by pressure [0, 7]"),
           "the summary on open: " + out)
    again, _ = shot("again", "--scalars", "pressure")
    expect(again == default, "naming the default array draws the same picture")
    seen = {default}
    for choice, says in (("velocity", "velocity [1, 4]"), ("velocity:y", "velocity:y [-4, 0]"),
                         ("velocity:0", "velocity:x [0, 4]"), ("zone", "zone [1, 5]")):
        picture, out = shot("choice", "--scalars", choice)
        expect(picture not in seen, "--scalars %s changes the colours" % choice)
        expect("coloured by " + says in out, "--scalars %s: %s" % (choice, out))
        seen.add(picture)
    ranged, _ = shot("ranged", "--range", "2", "5")
    expect(ranged != default, "--range changes the colours")
    reset, _ = shot("reset", "--range", "2", "5", events="key r\nframe\n")
    expect(reset == default, "r brings the data's range back")
    thick, _ = shot("thick", "--radius", "0.2")
    expect(thick != default, "--radius changes the tubes")
    unit, _ = shot("unit", "--unit", "km")
    expect(unit != default, "--unit labels the ruler")
    lines, _ = shot("lines", events="key l\nframe\n")
    expect(lines != default, "l draws plain lines")
    back, _ = shot("back", events="key l\nframe\nkey l\nframe\n")
    expect(back == default, "l twice brings the tubes back")
    # The middle of the window holds no node; a far corner neither.
    _, out = shot("probe", events="move 2 198\nkey c\nframe\n")
    expect("no node within 12 pixels" in out, "c away from the lines: " + out)

    refused = [
        (["--scalars", "speed", path], "no array 'speed'"),
        (["--scalars", "velocity:3", path], "array 'velocity' has 3 component(s)"),
        (["--range", "5", "2", path], "--range takes two finite numbers"),
        (["--range", "1", "nan", path], "--range takes two finite numbers"),
        (["--radius", "0", path], "--radius takes a finite number greater than 0"),
        (["--info"], "--info needs a FILE"),
        (["--scalars", "speed"], "--scalars names an array of a FILE"),
    ]
    for args, says in refused:
        target = os.path.join(work, "refused.png")
        code, out, err = run(viewer, ["--headless", "--snapshot", target] + args)
        expect(code == 2 and says in err, "%s: exit 2 saying %r: %d %s" % (args, says, code, err))
        expect(not os.path.exists(target), "%s: no snapshot" % args)
    code, out, err = run(viewer, ["--headless", "--snapshot", os.path.join(work, "refused.png"),
                                  "--scalars", "speed", path])
    for listed in ("pressure (point, 1 component)", "velocity (point, 3 components)",
                   "zone (cell, 1 component)"):
        expect(listed in err, "a missing array lists " + listed + ": " + err)
    bad = os.path.join(work, "bad-arrays.vtk")
    with open(bad, "w") as f:
        f.write(ARRAYS_FILE.replace("CELL_DATA 3", "CELL_DATA 4").replace("9 1 5", "9 1 5 6"))
    code, out, err = run(viewer, ["--info", bad])
    expect(code == 2 and "bad-arrays.vtk:13: CELL_DATA has 4 values, but there are 3 cells" in err
           and out == "", "--info on a bad file: %d %s" % (code, err))
    os.remove(bad)
    os.remove(path)


def check_legend_options(viewer, work):
    """The legend's options from the command line and the keys: the default
    named is the default, each option changes the picture, the keys reach the
    same pictures, and each bad value is refused without a file."""
    def shot(name, *args, events=None):
        return snapshot(viewer, work, name, list(args), events)[0]

    default = shot("default")
    expect(shot("redblue", "--palette", "redblue") == default, "--palette redblue is the default")
    viridis = shot("viridis", "--palette", "viridis")
    expect(viridis != default, "--palette viridis changes the picture")
    expect(shot("p4", events="key p\nkey p\nkey p\nkey p\n") == viridis,
           "p steps from the four first palettes to viridis")
    expect(shot("p8", events="key p\n" * 8) == default, "p comes back to red-blue after eight")
    logged = shot("log", "--log")
    expect(logged != default, "--log changes the picture")
    expect(shot("g", events="key g\n") == logged, "g turns the log scale on as --log does")
    expect(shot("gg", "--log", events="key g\n") == default, "g turns it off again")
    sci = shot("sci", "--format", "sci:1")
    expect(sci != default, "--format sci:1 changes the labels")
    expect(shot("sci2", "--format", "sci:2") != sci, "the digits change the labels")
    expect(shot("auto", "--format", "auto") != sci, "--format auto is not sci")

    code, out, err = run(viewer, ["--help"])
    for word in ("--palette NAME", "viridis, cividis, coolwarm, turbo", "--log", "--format F",
                 "g                  log scale on/off"):
        expect(code == 0 and word in out, "--help tells of %r" % word)
    target = os.path.join(work, "refused.png")
    refused = [
        (["--palette", "rainbow"], "--palette takes one of redblue, bluered, gray, greenred, viridis"),
        (["--palette"], "--palette needs a value"),
        (["--format", "hex"], "--format takes fixed[:D], sci[:D]"),
        (["--format", "fixed:18"], "not fixed:18"),
        (["--format", "sci:-1"], "not sci:-1"),
        (["--format", "fixed:"], "not fixed:"),
        (["--format", "auto:3"], "not auto:3"),
        (["--log=1"], "unknown option --log=1"),
    ]
    for args, says in refused:
        code, out, err = run(viewer, ["--headless", "--snapshot", target] + args)
        expect(code == 2 and says in err, "%s exits 2 saying %r: %d %s" % (args, says, code, err))
        expect(not os.path.exists(target), "%s writes nothing" % args)


if __name__ == "__main__":
    main()
