"""render(): the headless viewer's picture of the same scene, the options, the picture's PNG, the refusals."""

import subprocess

import numpy as np
import pytest

import kesraengine


def viewer_snapshot(viewer, tmp_path, file, size, view="iso", keys=()):
    events = tmp_path / "events.txt"
    events.write_text("".join(f"key {key}\n" for key in keys))
    png = tmp_path / "viewer.png"
    subprocess.run([viewer, "--headless", "--snapshot", png, "--size", "{}x{}".format(*size), "--view", view,
                    "--events", events, file], check=True)
    return png


def render_file(file, **look):
    data = kesraengine.read(file)
    return kesraengine.render(data.points, data.offsets, data.arrays[data.active_scalars],
                              connectivity=data.connectivity, title=file.name, value_name=data.active_scalars,
                              **look)


@pytest.mark.parametrize("view, keys, look", [
    ("iso", (), {}),
    ("front", ("p", "p", "b", "v"), {"palette": "gray", "banded": 8, "inverse": True}),
])
def test_render_equals_the_headless_viewer(viewer, decode_png, tmp_path, lines_file, view, keys, look):
    size = (320, 240)
    expected = viewer_snapshot(viewer, tmp_path, lines_file, size, view, keys)
    png = tmp_path / "render.png"

    picture = render_file(lines_file, size=size, view=view, png=png, **look)

    assert isinstance(picture, kesraengine.Snapshot)
    assert picture.shape == (240, 320, 4) and picture.dtype == np.uint8
    np.testing.assert_array_equal(picture, decode_png(expected))
    assert png.read_bytes() == expected.read_bytes()


def test_each_option_changes_the_picture_and_nothing_else_does(lines_file):
    size = (160, 120)
    plain = render_file(lines_file, size=size)
    np.testing.assert_array_equal(render_file(lines_file, size=size), plain)
    others = [render_file(lines_file, size=size, **look) for look in (
        {"palette": "greenred"}, {"banded": 3}, {"inverse": True}, {"view": "top"})]
    for other in others:
        assert np.count_nonzero((other != plain).any(axis=2)) > 20


def test_repr_png_is_the_picture(decode_png, tmp_path):
    t = np.linspace(0.0, 4.0, 50)
    points = np.column_stack([np.cos(t), np.sin(t), t])
    picture = kesraengine.render(points, values=t, size=(100, 80))
    path = tmp_path / "repr.png"
    path.write_bytes(picture._repr_png_())
    np.testing.assert_array_equal(decode_png(path), picture)
    assert picture[10:20]._repr_png_() is not None
    assert picture[0, 0]._repr_png_() is None


def test_points_alone_make_one_line_coloured_by_height():
    points = np.array([[0.0, 0.0, 0.0], [1.0, 0.0, 1.0], [2.0, 1.0, 2.0]])
    by_height = kesraengine.render(points, size=(64, 48))
    np.testing.assert_array_equal(by_height, kesraengine.render(points, [0, 3], points[:, 2], size=(64, 48),
                                                                value_name="z"))


POINTS = np.array([[0.0, 0.0, 0.0], [1.0, 0.0, 0.0], [1.0, 1.0, 0.0]])


@pytest.mark.parametrize("args, kwargs, error, message", [
    ((POINTS, [0, 2]), {}, ValueError, r"offsets: expected a non-decreasing run from 0 to 3 \(the number of points\)"),
    ((POINTS, [0, 2, 1, 3]), {}, ValueError, "offsets: expected a non-decreasing run"),
    ((POINTS, [0.0, 3.0]), {}, TypeError, "offsets: expected an array of integers, got dtype float64"),
    ((POINTS, [0, 2]), {"connectivity": [0, 3]}, ValueError, r"connectivity: index 3 at 1 is outside 0 \.\.\. 2"),
    ((POINTS, None, [1.0, 2.0]), {}, ValueError, r"values: expected one value per point \(3\), got 2"),
    ((POINTS[:, :2],), {}, ValueError, r"points: expected shape \(n, 3\)"),
    ((np.array([[0.0, 0, 0], [np.nan, 0, 0]]),), {}, ValueError, "points: coordinates must be finite, point 1"),
    ((np.zeros((2, 3)),), {}, ValueError, "points: no line with two or more distinct points to draw"),
    ((POINTS,), {"size": (8, 100)}, ValueError, r"size: expected \(width, height\), each 16 \.\.\. 8000"),
    ((POINTS,), {"banded": 1}, ValueError, r"banded: expected 0 \(smooth\) or 2 \.\.\. 30 blocks, got 1"),
    ((POINTS,), {"palette": "jet"}, ValueError, "palette: unknown name 'jet'"),
    ((POINTS,), {"view": "side"}, ValueError, "view: unknown name 'side'"),
])
def test_refusals(args, kwargs, error, message):
    with pytest.raises(error, match=message):
        kesraengine.render(*args, **kwargs)


def test_a_png_that_cannot_be_written_raises_os_error(tmp_path):
    with pytest.raises(OSError):
        kesraengine.render(POINTS, size=(32, 32), png=tmp_path / "no" / "such" / "dir.png")
    assert not (tmp_path / "no").exists()
