"""tube() against the C++ node records, ruler() against the C++ ruler."""

import numpy as np
import pytest

import kesraengine

# A helix with a kink, a repeated point and a reversal: every rule of the
# ring sliding is met.
POINTS = np.array([[np.cos(t), np.sin(t), 0.3 * t] for t in np.linspace(0.0, 6.0, 40)]
                  + [[5.0, 5.0, 5.0], [5.0, 5.0, 5.0], [4.0, 5.0, 5.0], [6.0, 5.0, 5.0]])


@pytest.mark.parametrize("sides, radius", [(8, 0.05), (3, 2.0), (1, 0.5)])
def test_tube_equals_the_records(oracle, tmp_path, sides, radius):
    POINTS.tofile(tmp_path / "points")
    oracle("tube", tmp_path / "points", tmp_path / "expected", sides, radius)
    expected = np.fromfile(tmp_path / "expected").reshape(2, len(POINTS), sides, 3)

    vertices, normals = kesraengine.tube(POINTS, sides, radius)

    np.testing.assert_array_equal(vertices, expected[0])
    np.testing.assert_array_equal(normals, expected[1])
    single = kesraengine.tube(POINTS, sides, radius, dtype=np.float32)
    assert single[0].dtype == np.float32
    np.testing.assert_array_equal(single[0], expected[0].astype(np.float32))
    np.testing.assert_array_equal(single[1], expected[1].astype(np.float32))


@pytest.mark.parametrize("args, kwargs, error, message", [
    ((np.zeros((1, 3)),), {}, ValueError, "points: a tube needs 2 or more points, got 1"),
    ((POINTS, 0), {}, ValueError, "sides: expected 1 or more, got 0"),
    ((POINTS, 4, -1.0), {}, ValueError, "radius: expected a finite number > 0"),
    ((POINTS, 4, np.nan), {}, ValueError, "radius: expected a finite number > 0"),
    ((POINTS,), {"dtype": np.int32}, TypeError, "dtype: expected float64 or float32, got int32"),
    ((POINTS[:, :2],), {}, ValueError, r"points: expected shape \(n, 3\), got \(44, 2\)"),
])
def test_tube_refusals(args, kwargs, error, message):
    with pytest.raises(error, match=message):
        kesraengine.tube(*args, **kwargs)


@pytest.mark.parametrize("pixels_per_unit, window_width, start_x, width_scale, auto_blocks", [
    (3.7, 1200, 0, 3, True), (0.0137, 800, 336, 3, True), (123456.0, 500, 10, 2, False), (1e-30, 300, 0, 1, True),
])
def test_ruler_equals_the_cpp_ruler(oracle, pixels_per_unit, window_width, start_x, width_scale, auto_blocks):
    printed = oracle("ruler", repr(pixels_per_unit), window_width, start_x, width_scale, int(auto_blocks)).split()
    length, pixels, blocks = kesraengine.ruler(pixels_per_unit, window_width=window_width, start_x=start_x,
                                               width_scale=width_scale, auto_blocks=auto_blocks)
    assert (np.float32(length), pixels, blocks) == (np.float32(printed[0]), int(printed[1]), int(printed[2]))


def test_ruler_refusals():
    with pytest.raises(ValueError, match="pixels_per_unit: expected a finite number > 0"):
        kesraengine.ruler(0.0)
    with pytest.raises(ValueError, match="window_width: expected 0 <= start_x < window_width"):
        kesraengine.ruler(1.0, window_width=100, start_x=100)
    with pytest.raises(ValueError, match="width_scale: expected 1 or more"):
        kesraengine.ruler(1.0, width_scale=0)
