#!/usr/bin/env python3
"""Writes a legacy binary polydata file of L lines of N nodes each, one float
point scalar, for measuring the viewer at scale.

Each line is a helix around the z axis at its own radius and phase, rising
through the box; the steps are long against the suggested tube radius, so the
line preparation keeps every node, and the scalar is the height plus the
line's number, so colours vary along and across the lines.

    make_lines.py OUT LINES NODES [TURNS]
"""
import math
import struct
import sys

from array import array


def big_endian(kind, values):
    data = array(kind, values)
    if sys.byteorder == "little":
        data.byteswap()
    return data.tobytes()


def write(path, lines, nodes, turns=3.0):
    """turns: of each helix; a single long line keeps the 1000-node lines'
    step with 3 turns a 1000 nodes."""
    n = lines * nodes
    side = max(1, int(math.ceil(math.sqrt(lines))))
    with open(path, "wb") as out:
        out.write(b"# vtk DataFile Version 3.0\nscale bench lines\nBINARY\nDATASET POLYDATA\n")
        out.write(b"POINTS %d float\n" % n)
        for line in range(lines):
            radius = 1.0 + 3.0 * (line % side) / side
            phase = 2.0 * math.pi * (line // side) / side
            xyz = []
            for k in range(nodes):
                turn = phase + k * (2.0 * math.pi * turns / nodes)
                xyz += (radius * math.cos(turn), radius * math.sin(turn), -5.0 + 10.0 * k / nodes)
            out.write(big_endian("f", xyz))
        out.write(b"\nLINES %d %d\n" % (lines, lines * (nodes + 1)))
        for line in range(lines):
            out.write(big_endian("i", [nodes] + list(range(line * nodes, (line + 1) * nodes))))
        out.write(b"\nPOINT_DATA %d\nSCALARS speed float 1\nLOOKUP_TABLE default\n" % n)
        for line in range(lines):
            out.write(big_endian("f", [k / nodes + 0.001 * line for k in range(nodes)]))
        out.write(b"\n")


if __name__ == "__main__":
    if len(sys.argv) not in (4, 5):
        sys.exit(__doc__)
    write(sys.argv[1], int(sys.argv[2]), int(sys.argv[3]), float(sys.argv[4]) if len(sys.argv) == 5 else 3.0)
