#!/usr/bin/env python3
"""Reads a result file, colours its streamlines by one of its arrays (or by a
quantity computed here with numpy) and writes the headless picture as a PNG.

    python3 colour_by_array.py swirl.vtk --out swirl.png
    python3 colour_by_array.py swirl.vtk --by distance --palette greenred --view front
"""

import argparse
import sys

import numpy as np

import kesraengine


def distance_along_lines(data):
    """The distance from each line's start to each of its points, by the lines' own order."""
    points = np.asarray(data.points, dtype=np.float64)
    distance = np.zeros(len(points))
    for start, end in zip(data.offsets[:-1], data.offsets[1:]):
        line = data.connectivity[start:end]
        steps = np.linalg.norm(np.diff(points[line], axis=0), axis=1)
        distance[line] = np.concatenate([[0.0], np.cumsum(steps)])
    return distance


def main(argv):
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("file", help="legacy or XML polydata")
    parser.add_argument("--by", help="a point array of the file, or 'distance' (default: the file's scalars)")
    parser.add_argument("--out", default="kesra-python.png", help="the PNG to write")
    parser.add_argument("--palette", default="redblue", choices=["redblue", "bluered", "gray", "greenred"])
    parser.add_argument("--banded", type=int, default=0, help="0 for smooth colours, else 2 to 30 blocks")
    parser.add_argument("--view", default="iso", choices=["iso", "front", "back", "left", "right", "top", "bottom"])
    parser.add_argument("--size", default="900x600", help="WxH in pixels")
    args = parser.parse_args(argv)

    data = kesraengine.read(args.file)
    name = args.by or data.active_scalars
    if name == "distance":
        values = distance_along_lines(data)
    elif name in data.arrays:
        values = data.arrays[name]
    else:
        parser.error(f"{args.file} has no point array {name!r}; it has {sorted(data.arrays)} (or use 'distance')")

    legend = kesraengine.ScalarBar(float(np.nanmin(values)), float(np.nanmax(values)))
    width, height = (int(side) for side in args.size.split("x"))
    picture = kesraengine.render(data.points, data.offsets, values, connectivity=data.connectivity,
                                 palette=args.palette, banded=args.banded, view=args.view, size=(width, height),
                                 title=args.file.split("/")[-1], value_name=name, png=args.out)
    below, inside, above = (np.count_nonzero(legend.codes(values) == code) for code in (-1, 0, 1))
    print(f"{args.out}: {picture.shape[1]}x{picture.shape[0]}, {len(data.offsets) - 1} lines, "
          f"{name} from {legend.range[0]:.4g} to {legend.range[1]:.4g} "
          f"({inside} values inside, {below + above} outside)")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
