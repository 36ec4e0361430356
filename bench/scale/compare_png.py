#!/usr/bin/env python3
"""Compares two of the viewer's PNG snapshots pixel by pixel: prints the
pixels that differ, the largest difference of a channel, and exits 1 when
more than MAX_SHARE of the pixels differ by more than TOLERANCE.

    compare_png.py A.png B.png [TOLERANCE [MAX_SHARE]]
"""
import struct
import sys
import zlib


def rows(path):
    """Width, height and the RGBA bytes of an 8-bit RGBA PNG."""
    with open(path, "rb") as f:
        data = f.read()
    pos, idat, width, height = 8, b"", 0, 0
    while pos < len(data):
        length, kind = struct.unpack(">I4s", data[pos:pos + 8])
        body = data[pos + 8:pos + 8 + length]
        if kind == b"IHDR":
            width, height = struct.unpack(">II", body[:8])
        elif kind == b"IDAT":
            idat += body
        pos += 12 + length
    raw = zlib.decompress(idat)
    stride = 4 * width
    out = bytearray(stride * height)
    previous = bytearray(stride)
    for y in range(height):
        kind = raw[y * (stride + 1)]
        line = bytearray(raw[y * (stride + 1) + 1:(y + 1) * (stride + 1)])
        for x in range(stride):
            left = line[x - 4] if x >= 4 else 0
            up = previous[x]
            corner = previous[x - 4] if x >= 4 else 0
            if kind == 1:
                line[x] = (line[x] + left) & 255
            elif kind == 2:
                line[x] = (line[x] + up) & 255
            elif kind == 3:
                line[x] = (line[x] + (left + up) // 2) & 255
            elif kind == 4:
                guess = left + up - corner
                pa, pb, pc = abs(guess - left), abs(guess - up), abs(guess - corner)
                best = left if pa <= pb and pa <= pc else (up if pb <= pc else corner)
                line[x] = (line[x] + best) & 255
        out[y * stride:(y + 1) * stride] = line
        previous = line
    return width, height, bytes(out)


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    tolerance = int(sys.argv[3]) if len(sys.argv) > 3 else 0
    share = float(sys.argv[4]) if len(sys.argv) > 4 else 0.0
    wa, ha, a = rows(sys.argv[1])
    wb, hb, b = rows(sys.argv[2])
    if (wa, ha) != (wb, hb):
        print("sizes differ: %dx%d, %dx%d" % (wa, ha, wb, hb))
        return 1
    differing = over = largest = 0
    for p in range(0, len(a), 4):
        d = max(abs(a[p + c] - b[p + c]) for c in range(4))
        if d:
            differing += 1
            over += d > tolerance
            largest = max(largest, d)
    total = wa * ha
    print("%d of %d pixels differ (%.4f %%), largest channel difference %d, %d beyond %d"
          % (differing, total, 100.0 * differing / total, largest, over, tolerance))
    return 1 if over > share * total else 0


if __name__ == "__main__":
    sys.exit(main())
