"""Post-processing of engineering results with numpy.

The legend's colours, the camera's projection, streamline tubes, the ruler's
round length and the result-file reader over numpy arrays, and headless
snapshots of streamlines drawn by the viewer's scene.

Arrays are read in place when they are C-contiguous and of the dtype a query
works in (float64; float32 too for Camera.project); other arrays of real
numbers are converted once. A wrong dtype raises TypeError, a wrong shape or
value ValueError, each message starting with the argument's name.
"""

import struct as _struct
import zlib as _zlib

import numpy as _np

from . import _kesraengine
from ._kesraengine import Camera, PolyData, ReadError, ScalarBar, read, ruler, tube

__all__ = ["Camera", "PolyData", "ReadError", "ScalarBar", "Snapshot", "read", "render", "ruler", "tube"]


def _png_chunk(kind, data):
    body = kind + data
    return _struct.pack(">I", len(data)) + body + _struct.pack(">I", _zlib.crc32(body))


class Snapshot(_np.ndarray):
    """An (h, w, 4) uint8 picture, top row first, that notebooks show as a PNG."""

    def _repr_png_(self):
        if self.ndim != 3 or self.shape[2] != 4 or self.dtype != _np.uint8:
            return None
        height, width = self.shape[:2]
        # Each row starts with filter type 0: the bytes as they are.
        rows = _np.zeros((height, 1 + 4 * width), dtype=_np.uint8)
        rows[:, 1:] = self.reshape(height, 4 * width)
        header = _struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0)
        return (b"\x89PNG\r\n\x1a\n" + _png_chunk(b"IHDR", header)
                + _png_chunk(b"IDAT", _zlib.compress(rows.tobytes(), 6)) + _png_chunk(b"IEND", b""))


def render(points, offsets=None, values=None, *, connectivity=None, palette="redblue", banded=0,
           inverse=False, view="iso", size=(1200, 800), title="", value_name="", png=None):
    """Draws streamlines headlessly, as the viewer draws them, and returns the picture.

    points (n, 3) are joined into polylines: line i runs through the points
    offsets[i] ... offsets[i + 1] - 1 (of connectivity, when given, else of
    points); without offsets all points make one line. values (n,) colour the
    tubes through the legend (the height z without them). palette, banded (0
    for smooth, else 2 ... 30 blocks), inverse and view ('iso', 'front', ...)
    set the look, size = (width, height) the picture, title and value_name
    the texts. png names a file to write the picture to, as the viewer's
    snapshot.

    Returns a Snapshot: an (h, w, 4) uint8 array, top row first. Raises
    RuntimeError when no headless OpenGL context can be made, OSError when
    png cannot be written.
    """
    pixels = _kesraengine.render(points, offsets, values, connectivity, palette, banded, inverse, view,
                                 tuple(size), title, value_name, png)
    return pixels.view(Snapshot)
