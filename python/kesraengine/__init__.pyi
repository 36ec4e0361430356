from os import PathLike
from typing import Optional, Union

import numpy as np
import numpy.typing as npt

_Path = Union[str, PathLike[str]]
_Rgb = tuple[int, int, int]

class ReadError(ValueError): ...

class ScalarBar:
    """The colour legend of a result field."""

    def __init__(self, minimum: float = 0.0, maximum: float = 1.0, *, palette: str = "redblue",
                 banded: bool = False, blocks: int = 8, inverse: bool = False) -> None: ...
    range: tuple[float, float]
    palette: str
    banded: bool
    blocks: int
    inverse: bool
    fill_all_range: bool
    single_color: Optional[_Rgb]
    over_range_color: _Rgb
    def colors(self, values: npt.ArrayLike, *, smooth: bool = False) -> npt.NDArray[np.uint8]: ...
    def codes(self, values: npt.ArrayLike, *, smooth: bool = False) -> npt.NDArray[np.int8]: ...

class Camera:
    """The orthographic camera of one window."""

    def __init__(self, width: int = 800, height: int = 600) -> None: ...
    size: tuple[int, int]
    rotation_angles: tuple[float, float, float]
    scale: float
    translation: tuple[float, float]
    @property
    def rotation_matrix(self) -> npt.NDArray[np.float64]: ...
    @property
    def world_to_view(self) -> npt.NDArray[np.float64]: ...
    def zoom_all(self, bounds: tuple[float, float, float, float, float, float]) -> None: ...
    def set_view(self, view: str) -> None: ...
    def project(self, points: npt.ArrayLike) -> Union[npt.NDArray[np.float64], npt.NDArray[np.float32]]: ...

class PolyData:
    """What a result file holds."""

    @property
    def points(self) -> Union[npt.NDArray[np.float32], npt.NDArray[np.float64]]: ...
    @property
    def offsets(self) -> npt.NDArray[np.uint64]: ...
    @property
    def connectivity(self) -> npt.NDArray[np.uint64]: ...
    @property
    def arrays(self) -> dict[str, Union[npt.NDArray[np.float32], npt.NDArray[np.float64]]]: ...
    @property
    def cell_arrays(self) -> dict[str, Union[npt.NDArray[np.float32], npt.NDArray[np.float64]]]: ...
    @property
    def active_scalars(self) -> str: ...
    @property
    def notes(self) -> list[str]: ...

class Snapshot(np.ndarray):
    """An (h, w, 4) uint8 picture, top row first, that notebooks show as a PNG."""

    def _repr_png_(self) -> Optional[bytes]: ...

def read(path: _Path) -> PolyData: ...
def tube(points: npt.ArrayLike, sides: int = 8, radius: float = 1.0, *,
         dtype: npt.DTypeLike = np.float64) -> tuple[npt.NDArray[np.floating], npt.NDArray[np.floating]]: ...
def ruler(pixels_per_unit: float, *, window_width: int = 1200, start_x: int = 0, width_scale: int = 3,
          auto_blocks: bool = True) -> tuple[float, int, int]: ...
def render(points: npt.ArrayLike, offsets: Optional[npt.ArrayLike] = None, values: Optional[npt.ArrayLike] = None,
           *, connectivity: Optional[npt.ArrayLike] = None, palette: str = "redblue", banded: int = 0,
           inverse: bool = False, view: str = "iso", size: tuple[int, int] = (1200, 800), title: str = "",
           value_name: str = "", png: Optional[_Path] = None) -> Snapshot: ...
