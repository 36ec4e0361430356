#!/usr/bin/env python3
"""Runs a Qt test program on an X server without a screen (Xvfb), so that its
widgets get real windows and OpenGL contexts (Mesa's software driver through
GLX).

usage: run_under_xvfb.py PROGRAM [ARGS...]
Exits with the program's status, or 77 (skipped) when xvfb-run is missing;
.ci/install-window-tools installs it.
"""
import os
import shutil
import subprocess
import sys

SKIPPED = 77


def main():
    if len(sys.argv) < 2:
        print(__doc__, file=sys.stderr)
        return 2
    if shutil.which("xvfb-run") is None or shutil.which("xauth") is None:
        print("skipped: xvfb-run and xauth are needed to give the widgets an X server "
              "(.ci/install-window-tools installs them)")
        return SKIPPED
    env = dict(os.environ)
    # The test's own settings and runtime files, never the user's.
    env.setdefault("XDG_RUNTIME_DIR", "/tmp")
    env["QT_QPA_PLATFORM"] = "xcb"
    preload = env.pop("KESRA_QT_PRELOAD", "")
    if preload:
        env["LD_PRELOAD"] = preload
        env["LSAN_OPTIONS"] = "suppressions=" + os.path.join(
            os.path.dirname(os.path.abspath(__file__)), "..", "..", ".ci", "lsan-qt.supp")
    command = ["xvfb-run", "-a", "-s", "-screen 0 1600x1200x24"] + sys.argv[1:]
    return subprocess.run(command, env=env).returncode


if __name__ == "__main__":
    sys.exit(main())
