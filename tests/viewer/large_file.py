"""A legacy binary file of many long lines, large enough that the viewer reads
it with progress (16 MB and up), written fast enough for a test."""
import array
import math
import sys


def write_large_vtk(path, lines, nodes):
    """lines polylines of nodes points each, wavy and side by side, with a
    float point scalar: 20 bytes a node."""
    count = lines * nodes
    wave = [math.sin(0.02 * k) for k in range(nodes)]
    points = array.array("f")
    for line in range(lines):
        y = float(line % 100)
        z = float(line // 100)
        row = array.array("f", [0.0] * (3 * nodes))
        row[0::3] = array.array("f", [0.1 * k for k in range(nodes)])
        row[1::3] = array.array("f", [y + 0.3 * w for w in wave])
        row[2::3] = array.array("f", [z] * nodes)
        points.extend(row)
    cells = array.array("i", [0] * (lines * (nodes + 1)))
    for line in range(lines):
        at = line * (nodes + 1)
        cells[at] = nodes
        cells[at + 1:at + 1 + nodes] = array.array("i", range(line * nodes, (line + 1) * nodes))
    values = array.array("f", [float(k % nodes) for k in range(count)])
    if sys.byteorder == "little":
        for numbers in (points, cells, values):
            numbers.byteswap()
    with open(path, "wb") as f:
        f.write(b"# vtk DataFile Version 4.2\nlarge\nBINARY\nDATASET POLYDATA\n")
        f.write(b"POINTS %d float\n" % count)
        f.write(points.tobytes())
        f.write(b"\nLINES %d %d\n" % (lines, lines * (nodes + 1)))
        f.write(cells.tobytes())
        f.write(b"\nPOINT_DATA %d\nSCALARS s float 1\nLOOKUP_TABLE default\n" % count)
        f.write(values.tobytes())
        f.write(b"\n")


if __name__ == "__main__":
    write_large_vtk(sys.argv[1], int(sys.argv[2]), int(sys.argv[3]))
