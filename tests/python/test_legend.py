"""ScalarBar: the batch colours against the C++ single query, the options, the refusals."""

import numpy as np
import pytest

import kesraengine

# Inside, on and around the range's ends and block edges, outside, and the
# numbers that are not numbers.
RNG = np.random.default_rng(25)
VALUES = np.concatenate([
    RNG.uniform(-3.0, 13.0, 100_000 - 12),
    [0.0, -0.0, 10.0, 2.5, 5.0, np.nextafter(10.0, 20.0), np.nextafter(0.0, -1.0), np.nan, np.inf, -np.inf,
     1e308, -1e-308],
])

SETTINGS = [
    # palette, blocks (0: smooth), inverse, fill_all_range, single colour, smooth query
    ("redblue", 0, False, False, None, False),
    ("gray", 5, True, False, None, False),
    ("greenred", 30, False, True, None, False),
    ("bluered", 7, False, False, None, True),
    ("redblue", 0, False, False, (10, 200, 30), False),
    ("viridis", 0, False, False, None, False),
    ("cividis", 9, True, False, None, False),
    ("coolwarm", 0, True, True, None, False),
    ("turbo", 30, False, False, None, True),
]


@pytest.mark.parametrize("palette, blocks, inverse, fill, single, smooth", SETTINGS)
def test_colors_and_codes_equal_the_single_query(oracle, tmp_path, palette, blocks, inverse, fill, single, smooth):
    bar = kesraengine.ScalarBar(0.0, 10.0, palette=palette, banded=blocks > 0, blocks=blocks or 8, inverse=inverse)
    bar.fill_all_range = fill
    bar.single_color = single
    VALUES.tofile(tmp_path / "values")
    rgb = single or (0, 0, 0)
    oracle("colors", tmp_path / "values", tmp_path / "expected", 0.0, 10.0, palette, blocks, int(inverse), int(fill),
           *rgb, int(single is not None), int(smooth))
    expected = np.fromfile(tmp_path / "expected", dtype=np.uint8).reshape(-1, 4)

    colors = bar.colors(VALUES, smooth=smooth)
    codes = bar.codes(VALUES, smooth=smooth)

    assert colors.shape == (VALUES.size, 4) and colors.dtype == np.uint8
    np.testing.assert_array_equal(colors[:, :3], expected[:, :3])
    assert (colors[:, 3] == 255).all()
    np.testing.assert_array_equal(codes, expected[:, 3].view(np.int8))


def test_published_palettes_by_name_from_their_first_stop():
    # The first stops of the published tables, as bytes.
    for name, first in (("viridis", (68, 1, 84)), ("cividis", (0, 34, 77)), ("coolwarm", (58, 76, 192)),
                        ("turbo", (48, 18, 59))):
        bar = kesraengine.ScalarBar(0.0, 1.0, palette=name)
        assert bar.palette == name
        np.testing.assert_array_equal(bar.colors([0.0])[0, :3], first)


def test_other_layouts_and_types_give_the_same_colors():
    bar = kesraengine.ScalarBar(-1.0, 4.0, palette="gray", banded=True, blocks=6)
    values = np.linspace(-2.0, 5.0, 301)
    expected = bar.colors(values)
    np.testing.assert_array_equal(bar.colors(values.astype(np.float32).astype(np.float64)),
                                  bar.colors(values.astype(np.float32)))
    strided = np.repeat(values, 2)[::2]
    assert not strided.flags.c_contiguous
    np.testing.assert_array_equal(bar.colors(strided), expected)
    np.testing.assert_array_equal(bar.colors(list(values)), expected)
    np.testing.assert_array_equal(bar.colors(np.arange(-2, 6)), bar.colors(np.arange(-2.0, 6.0)))
    assert bar.colors([]).shape == (0, 4)


def test_options_read_back_what_was_set():
    bar = kesraengine.ScalarBar(2.0, 3.0, palette="greenred", banded=True, blocks=12, inverse=True)
    assert (bar.range, bar.palette, bar.banded, bar.blocks, bar.inverse) == ((2.0, 3.0), "greenred", True, 12, True)
    bar.range = (-5.0, -5.0)
    bar.palette = "bluered"
    bar.single_color = (1, 2, 3)
    bar.over_range_color = (4, 5, 6)
    assert (bar.range, bar.palette, bar.single_color, bar.over_range_color) == ((-5.0, -5.0), "bluered", (1, 2, 3),
                                                                              (4, 5, 6))
    bar.single_color = None
    assert bar.single_color is None
    np.testing.assert_array_equal(kesraengine.ScalarBar(0, 1).colors([2.0])[0, :3], (255, 255, 255))
    with_over = kesraengine.ScalarBar(0, 1)
    with_over.over_range_color = (9, 8, 7)
    np.testing.assert_array_equal(with_over.colors([2.0])[0, :3], (9, 8, 7))


@pytest.mark.parametrize("change, message", [
    (lambda bar: setattr(bar, "range", (2.0, 1.0)), "range: expected minimum <= maximum"),
    (lambda bar: setattr(bar, "range", (np.nan, 1.0)), "range: expected minimum <= maximum"),
    (lambda bar: setattr(bar, "blocks", 31), r"blocks: expected 2 \.\.\. 30, got 31"),
    (lambda bar: setattr(bar, "palette", "rainbow"), "palette: unknown name 'rainbow', expected one of 'redblue'"),
    (lambda bar: setattr(bar, "single_color", (0, 256, 0)), "single_color: colour components must lie in 0"),
    (lambda bar: bar.colors(np.zeros((3, 2))), r"values: expected shape \(n,\), got \(3, 2\)"),
    (lambda bar: bar.colors(5.0), r"values: expected shape \(n,\), got \(\)"),
])
def test_refusals_raise_value_error_and_change_nothing(change, message):
    bar = kesraengine.ScalarBar(0.0, 1.0, blocks=4)
    before = (bar.range, bar.blocks, bar.palette, bar.single_color)
    with pytest.raises(ValueError, match=message):
        change(bar)
    assert (bar.range, bar.blocks, bar.palette, bar.single_color) == before


@pytest.mark.parametrize("values, dtype", [
    (np.array([True, False]), "bool"), (np.array([1 + 2j]), "complex128"), (["a", "b"], "<U1"),
    ([object()], "object"),
])
def test_values_that_are_not_real_numbers_raise_type_error(values, dtype):
    with pytest.raises(TypeError, match=f"values: expected an array of real numbers, got dtype {dtype}"):
        kesraengine.ScalarBar().colors(values)
