"""Camera: the batch projection against the C++ single projection, the views, the refusals."""

import numpy as np
import pytest

import kesraengine

BOX = (-2.0, 3.0, -1.0, 1.5, 0.0, 4.0)
ANGLES = (31.0, -47.5, 12.25)


def camera():
    cam = kesraengine.Camera(640, 480)
    cam.zoom_all(BOX)
    cam.rotation_angles = ANGLES
    return cam


@pytest.mark.parametrize("dtype", [np.float64, np.float32])
def test_projection_equals_the_single_projection(oracle, tmp_path, dtype):
    points = np.random.default_rng(3).uniform(-10.0, 10.0, (20_000, 3)).astype(dtype)
    points[:3] = [[np.nan, 0, 0], [np.inf, 1, 2], [1e300, -1e300, 0]] if dtype == np.float64 else 0
    points.tofile(tmp_path / "points")
    oracle("project", tmp_path / "points", tmp_path / "expected", 640, 480, *BOX, *ANGLES,
           int(dtype == np.float32))
    expected = np.fromfile(tmp_path / "expected", dtype=dtype).reshape(-1, 3)

    projected = camera().project(points)

    assert projected.dtype == dtype and projected.shape == points.shape
    np.testing.assert_array_equal(projected, expected)


def test_strided_and_integer_points_are_converted_to_the_same_result():
    points = np.random.default_rng(4).uniform(-3.0, 3.0, (500, 3))
    expected = camera().project(points)
    wide = np.zeros((500, 6))
    wide[:, ::2] = points
    np.testing.assert_array_equal(camera().project(wide[:, ::2]), expected)
    np.testing.assert_array_equal(camera().project(np.asfortranarray(points)), expected)
    whole = np.arange(30).reshape(10, 3)
    np.testing.assert_array_equal(camera().project(whole), camera().project(whole.astype(np.float64)))


def test_views_angles_and_fit():
    cam = kesraengine.Camera(400, 300)
    cam.zoom_all((-1, 1, -1, 1, -1, 1))
    cam.set_view("front")
    front = cam.rotation_matrix
    # The fitted box's centre lands in the middle of the window.
    np.testing.assert_allclose(cam.project([[0.0, 0.0, 0.0]])[0, :2], (200.0, 150.0))
    cam.set_view("top")
    assert not np.array_equal(cam.rotation_matrix, front)
    cam.rotation_angles = (10.0, 20.0, 30.0)
    np.testing.assert_allclose(cam.rotation_angles, (10.0, 20.0, 30.0), atol=1e-9)
    cam.size = (800, 200)
    assert cam.size == (800, 200)
    cam.scale = 0.5
    assert cam.scale == 0.5
    cam.translation = (3.0, -4.0)
    assert cam.translation == (3.0, -4.0)
    point = np.array([[0.3, -0.2, 0.9]])
    homogeneous = cam.world_to_view @ np.append(point[0], 1.0)
    np.testing.assert_allclose(cam.project(point)[0], homogeneous[:3], rtol=1e-12)


@pytest.mark.parametrize("call, error, message", [
    (lambda cam: cam.project(np.zeros((4, 2))), ValueError, r"points: expected shape \(n, 3\), got \(4, 2\)"),
    (lambda cam: cam.project(np.zeros(3)), ValueError, r"points: expected shape \(n, 3\), got \(3,\)"),
    (lambda cam: cam.project(np.zeros((2, 3), dtype=complex)), TypeError, "points: expected an array of real"),
    (lambda cam: cam.zoom_all((0, 1, 0, 1, 0, np.inf)), ValueError, "bounds: expected six finite numbers"),
    (lambda cam: setattr(cam, "scale", 0.0), ValueError, "scale: expected a finite number > 0"),
    (lambda cam: setattr(cam, "size", (0, 10)), ValueError, "size: expected a positive width and height"),
    (lambda cam: cam.set_view("diagonal"), ValueError, "view: unknown name 'diagonal'"),
])
def test_refusals_name_the_argument(call, error, message):
    with pytest.raises(error, match=message):
        call(kesraengine.Camera())
