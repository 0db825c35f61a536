#!/usr/bin/env python3
"""Regenerates the small sample raw files of examples/ (they are committed;
run this only to change them). Every file is a smooth pattern so that a
wrong packing shows at a glance in the viewer."""
import os
import struct

here = os.path.dirname(os.path.abspath(__file__))


def write(name, data):
    with open(os.path.join(here, name), "wb") as f:
        f.write(data)


# 4:2:0, Y plane then interleaved U/V pairs, 64 x 48.
w, h = 64, 48
y = bytes((x * 4 + r * 2) & 0xFF for r in range(h) for x in range(w))
uv = bytes(v for r in range(h // 2) for c in range(w // 2) for v in ((c * 8) & 0xFF, (r * 10) & 0xFF))
write("gradient_64x48.nv12", y + uv)

# 4:2:2 interleaved YUYV, 32 x 16.
w, h = 32, 16
out = bytearray()
for r in range(h):
    for c in range(0, w, 2):
        out += bytes(((c * 8) & 0xFF, (r * 16) & 0xFF, ((c + 1) * 8) & 0xFF, 255 - r * 16))
write("frame_32x16_yuyv.yuv", bytes(out))

# 16-bit little-endian grey depth map, 40 x 30, named only by its extension.
w, h = 40, 30
write("depth.y16", b"".join(struct.pack("<H", (x * 1000 + r * 500) & 0xFFFF) for r in range(h) for x in range(w)))

# A sensor dump: 256-byte header, then 64 x 32 big-endian 16-bit samples.
w, h = 64, 32
header = b"SENSOR-DUMP v1\0".ljust(256, b"\0")
write("sensor_dump.raw", header + b"".join(struct.pack(">H", (x * 64 + r * 32) & 0x0FFF) for r in range(h) for x in range(w)))

# Interleaved 8-bit RGB, 16 x 8.
w, h = 16, 8
write("colors_16x8.rgb", bytes(v for r in range(h) for x in range(w) for v in (x * 16, r * 32, 255 - x * 16)))

# A text matrix that finds its own size.
with open(os.path.join(here, "matrix.csv"), "w") as f:
    for r in range(6):
        f.write(", ".join(str((r * 8 + c) * 4) for c in range(8)) + "\n")
