#!/usr/bin/env python3
"""Writes korvanel.svg and the hicolor PNGs (16..256) from one drawing: a
4x4 block of sensor pixels (a Bayer-like mosaic) in a dark rounded square
with the help box's frame colour. PNGs are drawn with ImageMagick's convert,
so no SVG renderer is needed. Run it from this folder after a change."""
import subprocess

SIZES = [16, 32, 48, 64, 128, 256]
BACKGROUND = "#14005a"
FRAME = "#ff0080"
# Row by row: the mosaic's colours.
MOSAIC = [
    ["#e02020", "#20c040", "#f06030", "#30d050"],
    ["#20b040", "#2040e0", "#40c060", "#3060f0"],
    ["#d83828", "#28c848", "#ff7040", "#50e070"],
    ["#30a050", "#2850d0", "#48b868", "#4878ff"],
]
# On a 256 grid.
CORNER = 40
FRAME_WIDTH = 12
CELL = 40
GAP = 6
ORIGIN = (256 - (4 * CELL + 3 * GAP)) // 2


def shapes():
    """(kind, x0, y0, x1, y1, fill, stroke) on the 256 grid."""
    half = FRAME_WIDTH / 2
    yield ("round", half, half, 256 - half, 256 - half, BACKGROUND, FRAME)
    for row, colours in enumerate(MOSAIC):
        for col, colour in enumerate(colours):
            x = ORIGIN + col * (CELL + GAP)
            y = ORIGIN + row * (CELL + GAP)
            yield ("rect", x, y, x + CELL, y + CELL, colour, None)


def write_svg():
    parts = ['<svg xmlns="http://www.w3.org/2000/svg" width="256" height="256" viewBox="0 0 256 256">']
    for kind, x0, y0, x1, y1, fill, stroke in shapes():
        if kind == "round":
            parts.append(f'  <rect x="{x0}" y="{y0}" width="{x1 - x0}" height="{y1 - y0}" rx="{CORNER}" '
                         f'fill="{fill}" stroke="{stroke}" stroke-width="{FRAME_WIDTH}"/>')
        else:
            parts.append(f'  <rect x="{x0}" y="{y0}" width="{x1 - x0}" height="{y1 - y0}" fill="{fill}"/>')
    parts.append("</svg>")
    with open("korvanel.svg", "w") as out:
        out.write("\n".join(parts) + "\n")


def write_png(size):
    k = size / 256
    args = ["convert", "-size", f"{size}x{size}", "xc:none"]
    for kind, x0, y0, x1, y1, fill, stroke in shapes():
        if kind == "round":
            args += ["-fill", fill, "-stroke", stroke, "-strokewidth", f"{max(1.0, FRAME_WIDTH * k):.2f}",
                     "-draw", f"roundrectangle {x0 * k:.2f},{y0 * k:.2f} {x1 * k - 1:.2f},{y1 * k - 1:.2f} "
                              f"{CORNER * k:.2f},{CORNER * k:.2f}"]
        else:
            args += ["-stroke", "none", "-fill", fill,
                     "-draw", f"rectangle {x0 * k:.2f},{y0 * k:.2f} {x1 * k - 1:.2f},{y1 * k - 1:.2f}"]
    args += ["-strip", f"PNG32:korvanel_{size}.png"]
    subprocess.run(args, check=True)


if __name__ == "__main__":
    write_svg()
    for size in SIZES:
        write_png(size)
