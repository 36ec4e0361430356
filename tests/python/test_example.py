"""examples/python/colour_by_array.py writes the picture render() gives."""

import os
import subprocess
import sys

import numpy as np

import kesraengine

EXAMPLE = os.path.join(os.path.dirname(__file__), "..", "..", "examples", "python")


def run_example(*args):
    return subprocess.run([sys.executable, os.path.join(EXAMPLE, "colour_by_array.py"), *map(str, args)],
                          capture_output=True, text=True, check=False)


def test_the_example_writes_the_picture_of_its_array(decode_png, tmp_path):
    swirl = os.path.join(EXAMPLE, "swirl.vtk")
    out = tmp_path / "swirl.png"
    done = run_example(swirl, "--out", out, "--size", "300x200", "--palette", "gray")
    assert done.returncode == 0, done.stderr
    assert "10 lines, speed from" in done.stdout
    data = kesraengine.read(swirl)
    expected = kesraengine.render(data.points, data.offsets, data.arrays["speed"], connectivity=data.connectivity,
                                  palette="gray", size=(300, 200), title="swirl.vtk", value_name="speed")
    np.testing.assert_array_equal(decode_png(out), expected)


def test_the_example_refuses_an_array_the_file_lacks(tmp_path):
    done = run_example(os.path.join(EXAMPLE, "swirl.vtk"), "--by", "pressure", "--out", tmp_path / "x.png")
    assert done.returncode == 2
    assert "has no point array 'pressure'; it has ['speed']" in done.stderr
    assert not (tmp_path / "x.png").exists()
