#!/usr/bin/env python3
"""The viewer at scale: writes binary line files of 10^5, 10^6 and 10^7 nodes
(lines of 1000 nodes), then measures for each the open to a 64x64 snapshot
(wall time and peak resident memory, medians of several runs, and the same
on one core for the tube generation's speed-up), and the frames at 1200x800
of the tubes at rest and of the moving view (--bench-frames). Prints a
Markdown table.

    run_scale.py VIEWER WORKDIR [--sizes 5,6,7] [--runs 3]
"""
import argparse
import os
import re
import statistics
import subprocess
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import make_lines  # noqa: E402


def timed(command):
    """Wall seconds and peak resident kilobytes of one run."""
    result = subprocess.run(["/usr/bin/time", "-f", "%e %M"] + command, capture_output=True, text=True)
    if result.returncode != 0:
        sys.exit("failed: %s\n%s" % (" ".join(command), result.stderr))
    seconds, kilobytes = result.stderr.strip().splitlines()[-1].split()
    return float(seconds), int(kilobytes)


def open_run(viewer, path, snapshot, runs, cores=None):
    """Median open time and peak memory (MB) over runs."""
    prefix = ["taskset", "-c", cores] if cores else []
    samples = [timed(prefix + [viewer, "--headless", "--snapshot", snapshot, "--size", "64x64", path])
               for _ in range(runs)]
    return statistics.median(s for s, _ in samples), statistics.median(k for _, k in samples) / 1024.0


def frames(viewer, path, count):
    """Median milliseconds of a frame at rest and of a moving one."""
    out = subprocess.run([viewer, "--headless", "--size", "1200x800", "--bench-frames", str(count), path],
                         capture_output=True, text=True, check=True).stdout
    rest = re.search(r"^frames .*median ([0-9.]+) ms", out, re.M)
    moving = re.search(r"^moving frames .*line nodes (\d+): median ([0-9.]+) ms", out, re.M)
    return float(rest.group(1)), float(moving.group(2)), int(moving.group(1))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("viewer")
    parser.add_argument("workdir")
    parser.add_argument("--sizes", default="5,6,7", help="powers of ten of the nodes")
    parser.add_argument("--runs", type=int, default=3)
    args = parser.parse_args()
    os.makedirs(args.workdir, exist_ok=True)
    snapshot = os.path.join(args.workdir, "open.png")

    base = os.path.join(args.workdir, "lines-base.vtk")
    make_lines.write(base, 2, 100)
    base_seconds, base_mb = open_run(args.viewer, base, snapshot, args.runs)
    print("baseline (200 nodes): open %.2f s, peak %.0f MB" % (base_seconds, base_mb), flush=True)

    rows = []
    for power in [int(p) for p in args.sizes.split(",")]:
        nodes = 10 ** power
        path = os.path.join(args.workdir, "lines-1e%d.vtk" % power)
        if not os.path.exists(path):
            make_lines.write(path, nodes // 1000, 1000)
        runs = args.runs if power < 7 else 1
        seconds, mb = open_run(args.viewer, path, snapshot, runs)
        one_core, _ = open_run(args.viewer, path, snapshot, runs, cores="0")
        rest, moving, line_nodes = frames(args.viewer, path, 5 if power < 7 else 2)
        per_node_us = 1e6 * (seconds - base_seconds) / nodes
        per_node_bytes = 1e6 * (mb - base_mb) / nodes * 1.048576
        rows.append((power, seconds, one_core, per_node_us, mb, per_node_bytes, rest, moving, line_nodes))
        print("10^%d: open %.2f s (1 core %.2f s), peak %.0f MB, rest %.0f ms, moving %.0f ms"
              % (power, seconds, one_core, mb, rest, moving), flush=True)

    print()
    print("| Nodes | Open, 2 cores | Open, 1 core | µs a node beyond the baseline | Peak | Bytes a node beyond "
          "the baseline | Frame at rest | Moving frame (line nodes) |")
    print("|---|---:|---:|---:|---:|---:|---:|---:|")
    for power, seconds, one_core, per_node_us, mb, per_node_bytes, rest, moving, line_nodes in rows:
        print("| 10^%d | %.2f s | %.2f s | %.2f | %.0f MB | %.0f | %.0f ms | %.0f ms (%d) |"
              % (power, seconds, one_core, per_node_us, mb, per_node_bytes, rest, moving, line_nodes))
    return 0


if __name__ == "__main__":
    sys.exit(main())
