"""The tracer program on test shapes, with the command line the plug-in
passes: its DXF is read with ezdxf, and every outline lies within one pixel of
the edges of the shape it traces (Hausdorff distance, both ways). Bad command
lines and bad pictures fail with a message and write nothing.

usage: check_tracer.py TRACER WORK_DIR"""
import math
import os
import struct
import subprocess
import sys

import ezdxf
from shapely.geometry import LineString, Point, Polygon, box

tracer, work = sys.argv[1:3]
os.makedirs(work, exist_ok=True)
failures = []


def expect(condition, what):
    if not condition:
        failures.append(what)


W, H = 240, 160
# Shapes in pixel coordinates with y upward from the picture's lower-left corner.
rect = box(20, 30, 100, 90)
disc = Point(160, 100).buffer(35, 256)
ring_outer, ring_inner = Point(60, 125).buffer(22, 256), Point(60, 125).buffer(11, 256)
ring = ring_outer.difference(ring_inner)
shapes = [rect, disc, ring]


def dark(x, y):
    """Pixel (x, y), rows counted upward, is dark when its centre lies in a shape."""
    p = Point(x + 0.5, y + 0.5)
    return any(s.contains(p) for s in shapes)


def write_bmp(path):
    """A 24-bit BMP written here, rows bottom-up as the format stores them."""
    row = (W * 3 + 3) // 4 * 4
    pixels = bytearray()
    for y in range(H):
        line = bytearray()
        for x in range(W):
            line += b"\x00\x00\x00" if dark(x, y) else b"\xff\xff\xff"
        pixels += line + b"\x00" * (row - len(line))
    header = struct.pack("<2sIHHI", b"BM", 54 + len(pixels), 0, 0, 54)
    info = struct.pack("<IiiHHIIiiII", 40, W, H, 1, 24, 0, len(pixels), 2835, 2835, 0, 0)
    with open(path, "wb") as f:
        f.write(header + info + pixels)


bmp = os.path.join(work, "shapes.bmp")
write_bmp(bmp)
out = os.path.join(work, "shapes.dxf")
if os.path.exists(out):
    os.remove(out)
run = subprocess.run([tracer, bmp, "-color-count", "2", "-output-format", "dxf", "-output-file", out],
                     capture_output=True, text=True, timeout=60)
expect(run.returncode == 0, f"the tracer exits 0 ({run.stderr})")
doc = ezdxf.readfile(out)


def densified(ring):
    """The ring as a line with a vertex every quarter pixel, so that the
    vertex-based Hausdorff distance also sees the middle of long pieces."""
    line = LineString(ring.coords)
    n = max(4, int(line.length * 4))
    return LineString([line.interpolate(i / n, normalized=True) for i in range(n + 1)])


def distance(a, b):
    return densified(a).hausdorff_distance(densified(b))


rings = []
for e in doc.modelspace():
    expect(e.dxftype() == "POLYLINE" and e.is_closed, f"{e.dxftype()} is a closed polyline")
    rings.append(Polygon([(v.dxf.location[0], v.dxf.location[1]) for v in e.vertices]))
expect(len(rings) == 4, f"four outlines (rectangle, disc, ring outside and inside), not {len(rings)}")
# The bitmap's edges: the boundaries of the dark pixels' union, per expected outline.
edges = [rect.exterior, disc.exterior, ring_outer.exterior, ring_inner.exterior]
worst = 0
for ring_poly in rings:
    d = min(distance(e, ring_poly.exterior) for e in edges)
    worst = max(worst, d)
    expect(d <= 1.0, f"an outline lies within one pixel of its edge (Hausdorff {d:.3f})")

# Refusals: nothing written, a message and the exit code.
cases = [
    (["-color-count", "2", "-output-format", "dxf", "-output-file", out + "2"], 2, "no picture given"),
    ([bmp, "-color-count", "3", "-output-format", "dxf", "-output-file", out + "2"], 2, "-color-count 2"),
    ([bmp, "-color-count", "2", "-output-format", "svg", "-output-file", out + "2"], 2, "-output-format dxf"),
    ([bmp, "-color-count", "2", "-output-format", "dxf"], 2, "no -output-file"),
    ([os.path.join(work, "missing.bmp"), "-output-file", out + "2"], 1, "No such file"),
    ([__file__, "-output-file", out + "2"], 1, "not a BMP"),
]
for args, code, message in cases:
    r = subprocess.run([tracer] + args, capture_output=True, text=True, timeout=60)
    expect(r.returncode == code and message in r.stderr, f"{args}: exit {r.returncode}, {r.stderr.strip()}")
    expect(not os.path.exists(out + "2"), f"{args}: nothing written")

if failures:
    print("tracer check failed: " + "; ".join(failures))
    sys.exit(1)
print(f"tracer check: 4 outlines, the farthest {worst:.3f} pixel from its edge; refusals as expected")
