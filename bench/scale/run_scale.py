#!/usr/bin/env python3
"""The viewer at scale: writes binary line files of 10^5, 10^6 and 10^7 nodes
(lines of 1000 nodes), then measures for each the open to a 64x64 snapshot
(wall time and peak resident memory, medians of several runs, and the same
on one core for the tube generation's speed-up), and the frames at 1200x800
of the tubes at rest and of the moving view (--bench-frames); then the open
of single lines of 10^6 and 10^7 nodes. Prints Markdown tables.

    run_scale.py VIEWER WORKDIR [--sizes 5,6,7] [--runs 3]
"""
import argparse
import os
import re
import statistics
import subprocess
import sys
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import make_lines  # noqa: E402


def timed(command):
    """Wall seconds, peak resident kilobytes, CPU seconds (user and system)
    and the seconds from the file's summary to the last tubes made (None for
    a scene too small to report them) of one run."""
    start = time.monotonic()
    process = subprocess.Popen(["/usr/bin/time", "-f", "TIME %e %M %U %S"] + command, stdout=subprocess.PIPE,
                               stderr=subprocess.STDOUT, text=True)
    read = made = None
    measures = None
    for line in process.stdout:
        now = time.monotonic() - start
        if read is None and " lines (" in line:
            read = now
        elif "tubes 100%" in line:
            made = now
        elif line.startswith("TIME "):
            measures = line.split()[1:]
    if process.wait() != 0 or measures is None:
        sys.exit("failed: " + " ".join(command))
    wall, kilobytes, user, system = measures
    tubes = made - read if read is not None and made is not None else None
    return float(wall), int(kilobytes), float(user) + float(system), tubes


def median_or_none(values):
    values = [v for v in values if v is not None]
    return statistics.median(values) if values else None


def open_run(viewer, path, snapshot, runs, cores=None):
    """Medians over runs: open time, peak memory (MB), CPU time, tube time."""
    prefix = ["taskset", "-c", cores] if cores else []
    samples = [timed(prefix + [viewer, "--headless", "--snapshot", snapshot, "--size", "64x64", path])
               for _ in range(runs)]
    return (statistics.median(s[0] for s in samples), statistics.median(s[1] for s in samples) / 1024.0,
            statistics.median(s[2] for s in samples), median_or_none(s[3] for s in samples))


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
    base_seconds, base_mb, base_cpu, _ = open_run(args.viewer, base, snapshot, args.runs)
    print("baseline (200 nodes): open %.2f s, peak %.0f MB" % (base_seconds, base_mb), flush=True)

    rows = []
    for power in [int(p) for p in args.sizes.split(",")]:
        nodes = 10 ** power
        path = os.path.join(args.workdir, "lines-1e%d.vtk" % power)
        if not os.path.exists(path):
            make_lines.write(path, nodes // 1000, 1000)
        runs = args.runs if power < 7 else 1
        seconds, mb, cpu, tubes = open_run(args.viewer, path, snapshot, runs)
        one_core, _, _, one_core_tubes = open_run(args.viewer, path, snapshot, runs, cores="0")
        rest, moving, line_nodes = frames(args.viewer, path, 5 if power < 7 else 2)
        row = {
            "power": power, "open": seconds, "one_core": one_core, "cpu": cpu,
            "us": 1e6 * (seconds - base_seconds) / nodes, "cpu_us": 1e6 * (cpu - base_cpu) / nodes,
            "mb": mb, "bytes": (mb - base_mb) * 1048576.0 / nodes, "rest": rest, "moving": moving,
            "line_nodes": line_nodes,
            "speedup": "%.2f s / %.2f s = %.2f" % (one_core_tubes, tubes, one_core_tubes / tubes)
            if tubes and one_core_tubes else "-",
        }
        rows.append(row)
        print(row, flush=True)

    print()
    print("| Nodes | Open | Open on 1 core | µs a node | CPU µs a node | Peak | Bytes a node | "
          "Tubes 1 core / 2 cores | Frame at rest | Moving frame (line nodes) |")
    print("|---|---:|---:|---:|---:|---:|---:|---|---:|---:|")
    for r in rows:
        print("| 10^%(power)d | %(open).2f s | %(one_core).2f s | %(us).2f | %(cpu_us).2f | %(mb).0f MB | "
              "%(bytes).0f | %(speedup)s | %(rest).0f ms | %(moving).0f ms (%(line_nodes)d) |" % r)
    print("\nA node's figures are beyond the baseline's (open %.2f s, CPU %.2f s, peak %.0f MB)."
          % (base_seconds, base_cpu, base_mb))

    # One line of all the nodes, with the 1000-node lines' step: made in
    # parts, it must cost what the many lines do.
    print("\n| One line of | Open | Peak | Bytes a node |")
    print("|---|---:|---:|---:|")
    for power in [int(p) for p in args.sizes.split(",") if int(p) >= 6]:
        nodes = 10 ** power
        path = os.path.join(args.workdir, "single-1e%d.vtk" % power)
        if not os.path.exists(path):
            make_lines.write(path, 1, nodes, 3.0 * nodes / 1000)
        seconds, mb, _, _ = open_run(args.viewer, path, snapshot, args.runs if power < 7 else 1)
        print("| 10^%d nodes | %.2f s | %.0f MB | %.0f |" % (power, seconds, mb, (mb - base_mb) * 1048576.0 / nodes),
              flush=True)
    return 0


if __name__ == "__main__":
    sys.exit(main())
