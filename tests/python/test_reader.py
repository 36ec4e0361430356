"""read(): the reader's arrays, seen in place, and its refusals."""

import numpy as np
import pytest

import kesraengine


def expected_arrays(oracle, path, out):
    oracle("read", path, out)
    listing = out.with_suffix(".txt").read_text().splitlines()
    points_dtype = listing[0].split()[1]
    expected = {
        "points": np.fromfile(out.with_suffix(".points"), dtype=points_dtype).reshape(-1, 3),
        "offsets": np.fromfile(out.with_suffix(".offsets"), dtype=np.uint64),
        "connectivity": np.fromfile(out.with_suffix(".connectivity"), dtype=np.uint64),
        "active": listing[1][len("active "):], "point": {}, "cell": {},
    }
    for line in listing[2:]:
        _, index, association, components, dtype, name = line.split(" ", 5)
        values = np.fromfile(out.with_suffix("." + index), dtype=dtype)
        expected[association][name] = values.reshape(-1, int(components)) if int(components) > 1 else values
    return expected


def test_read_gives_the_readers_arrays(oracle, tmp_path, lines_file):
    expected = expected_arrays(oracle, lines_file, tmp_path / "expected")
    data = kesraengine.read(lines_file)

    for name in ("points", "offsets", "connectivity"):
        got = getattr(data, name)
        assert got.dtype == expected[name].dtype
        np.testing.assert_array_equal(got, expected[name])
    assert data.active_scalars == expected["active"] == "speed"
    for got, want in ((data.arrays, expected["point"]), (data.cell_arrays, expected["cell"])):
        assert list(got) == list(want)
        for name, values in want.items():
            assert got[name].dtype == values.dtype
            np.testing.assert_array_equal(got[name], values)
    assert list(data.arrays) == ["speed", "velocity"]
    assert data.arrays["velocity"].shape == (8, 3)
    np.testing.assert_array_equal(data.cell_arrays["line_id"], [7, 9])


def test_arrays_look_into_the_data_and_keep_it_alive(lines_file):
    data = kesraengine.read(str(lines_file))
    points = data.points
    assert np.shares_memory(points, data.points)
    assert np.shares_memory(data.arrays["speed"], data.arrays["speed"])
    del data
    np.testing.assert_array_equal(points[1], (1.0, 0.0, 0.0))


def test_refusals(tmp_path):
    with pytest.raises(FileNotFoundError):
        kesraengine.read(tmp_path / "missing.vtk")
    bad = tmp_path / "bad.vtk"
    bad.write_text("# vtk DataFile Version 3.0\nbad\nASCII\nDATASET POLYDATA\nPOINTS 2 float\n0 0 0 1 1\n")
    with pytest.raises(kesraengine.ReadError, match="bad.vtk") as raised:
        kesraengine.read(bad)
    assert isinstance(raised.value, ValueError)
