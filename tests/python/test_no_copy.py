"""Arrays of the right dtype are read in place: measured on the process's peak memory."""

import os
import subprocess
import sys

import pytest

MIB = 1 << 20
COUNT = 10_000_000

# One fresh interpreter a query, so that nothing else moves its peak; the
# input is built in place (no temporaries) before the peak is taken.
SCRIPT = """
import sys
import numpy as np
import kesraengine

def peak():
    with open("/proc/self/status") as status:
        return next(int(line.split()[1]) * 1024 for line in status if line.startswith("VmHWM:"))

query, count = sys.argv[1], int(sys.argv[2])
if query == "project":
    data = np.arange(count - count % 3, dtype=np.float64).reshape(-1, 3)
    call = kesraengine.Camera().project
else:
    data = np.arange(count, dtype=np.float32 if query == "colors_float32" else np.float64)
    data /= count
    call = kesraengine.ScalarBar(0.0, 1.0).colors
before = peak()
result = call(data)
print(peak() - before)
"""


@pytest.fixture(scope="module")
def growth():
    measured = {}
    for query in ("colors", "project", "colors_float32"):
        done = subprocess.run([sys.executable, "-c", SCRIPT, query, str(COUNT)], capture_output=True, text=True,
                              env=os.environ, check=True)
        measured[query] = int(done.stdout)
    print("peak growth in MiB:", {name: round(value / MIB, 1) for name, value in measured.items()})
    return measured


# Each bound lies halfway between what the claim allows and what one more
# copy would take, so that an allocator's own overhead (a sanitizer's shadow
# memory) does not decide.
def test_contiguous_float64_values_are_not_copied(growth):
    # The colours take 4 bytes a value; a copy of the values would add 8.
    assert growth["colors"] < 8 * COUNT


def test_contiguous_float64_points_are_not_copied(growth):
    # The projection's output is as large as its input; a copy would add as much.
    assert growth["project"] < 12 * COUNT


def test_other_dtypes_are_converted_once(growth):
    # One float64 conversion (8 bytes a value) and the colours (4); another
    # copy would add 8.
    assert 8 * COUNT < growth["colors_float32"] < 16 * COUNT
