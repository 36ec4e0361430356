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
    # A sanitized build's preload is for the test program alone, not for
    # xvfb-run and the X server it starts.
    program = sys.argv[1:]
    preload = env.pop("KESRA_QT_PRELOAD", "")
    if preload:
        supp = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", ".ci",
                            "lsan-qt.supp")
        # libxkbcommon-x11, which Qt's X11 platform reads the keyboard with,
        # hands strndup a bounded buffer without a terminator: legal, but
        # strict_string_checks reads to a terminator and reports an overflow.
        asan = env.get("ASAN_OPTIONS", "")
        asan = (asan + ":" if asan else "") + "strict_string_checks=0"
        program = ["env", "LD_PRELOAD=" + preload, "LSAN_OPTIONS=suppressions=" + supp,
                   "ASAN_OPTIONS=" + asan] + program
    command = ["xvfb-run", "-a", "-s", "-screen 0 1600x1200x24"] + program
    return subprocess.run(command, env=env).returncode


if __name__ == "__main__":
    sys.exit(main())
