"""Shared fixtures: the C++ oracle and the viewer that the module's results are held against."""

import os
import subprocess

import numpy as np
import pytest


@pytest.fixture(scope="session")
def oracle():
    """Runs kesra-python-oracle with the given arguments and returns what it printed."""
    program = os.environ["KESRA_ORACLE"]

    def run(*args):
        done = subprocess.run([program, *map(str, args)], capture_output=True, text=True, check=False)
        assert done.returncode == 0, done.stderr
        return done.stdout

    return run


@pytest.fixture(scope="session")
def viewer():
    return os.environ["KESRA_VIEWER"]


@pytest.fixture
def decode_png(oracle, tmp_path):
    """The RGBA rows of a PNG file, top row first, decoded by the viewer's own reader."""

    def decode(path):
        raw = tmp_path / "decoded.rgba"
        width, height = map(int, oracle("png", path, raw).split())
        return np.fromfile(raw, dtype=np.uint8).reshape(height, width, 4)

    return decode


LINES_VTK = """# vtk DataFile Version 3.0
two lines and a repeated point
ASCII
DATASET POLYDATA
POINTS 8 float
0 0 0  1 0 0  2 1 0  2 1 0  3 1 1
0 2 0  1 2 0.5  2 3 1
LINES 2 10
5 0 1 2 3 4
3 5 6 7
POINT_DATA 8
SCALARS speed float 1
LOOKUP_TABLE default
0.5 1 1.5 1.5 2 3 2.5 2
SCALARS velocity double 3
LOOKUP_TABLE default
1 0 0  1 1 0  0 1 0  0 1 0  0 0 1  1 0 1  0 1 1  1 1 1
CELL_DATA 2
SCALARS line_id int 1
LOOKUP_TABLE default
7 9
"""


@pytest.fixture
def lines_file(tmp_path):
    """A legacy file of two polylines with a point scalar, a point vector and a line scalar."""
    path = tmp_path / "lines.vtk"
    path.write_text(LINES_VTK)
    return path
