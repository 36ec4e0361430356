"""kesra-viewer from the command line: a headless snapshot that decodes at
the requested size, and each refusal with its message and exit code, with
nothing half-written left behind.

usage: check_viewer.py VIEWER WORKDIR
"""
import os
import shutil
import struct
import subprocess
import sys
import zlib


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


def run(viewer, args, env=None):
    full_env = dict(os.environ)
    # Libraries the viewer, not this script, must start with (a sanitized
    # build's runtime and graphics driver).
    preload = full_env.pop("KESRA_VIEWER_PRELOAD", "")
    if preload:
        full_env["LD_PRELOAD"] = preload
    full_env.update(env or {})
    result = subprocess.run([viewer] + args, capture_output=True, text=True, env=full_env,
                            timeout=120)
    return result.returncode, result.stdout, result.stderr


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

    # No EGL vendor: the headless context cannot be made.
    code, out, err = run(viewer, ["--headless", "--snapshot", shot + "3", "--size", "64x64"],
                         {"__EGL_VENDOR_LIBRARY_FILENAMES": os.path.join(work, "none.json")})
    expect(code == 1 and "EGL" in err, "without EGL: exit 1 naming EGL: %d %s" % (code, err))
    # No display: the window cannot be opened.
    code, out, err = run(viewer, ["--size", "64x64"], {"DISPLAY": ""})
    expect(code == 1 and "display" in err, "without a display: exit 1 naming it: %d %s" % (code, err))
    expect(not os.path.exists(shot + "3"), "nothing written without a context")
    print("kesra-viewer command line: all checks passed")


if __name__ == "__main__":
    main()
