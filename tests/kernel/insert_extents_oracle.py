"""Checks the extents of block references against ezdxf's bounding boxes on a
drawing of random references: blocks of lines, arcs, circles, bulged
polylines, ellipses and hatches, nested references, rotations, non-uniform and
mirroring scales, flipped extrusions, column/row arrays. ezdxf measures
curves by flattening them (through Bezier approximations of arcs and
ellipses), so its box differs from ours, which is exact, by at most its
flattening distance. Usage: insert_extents_oracle.py PATH_TO_EXTENTS_PROBE"""
import math
import os
import random
import subprocess
import sys
import tempfile

import ezdxf
from ezdxf import bbox

# ezdxf's flattening stays this close to the true curves here (drawing units; measured up to 5e-4).
TOLERANCE = 0.005

random.seed(11)
doc = ezdxf.new("R2000")
parts = doc.blocks.new("PARTS", base_point=(1, 2))
parts.add_line((0, 0), (3, 1))
parts.add_arc((2, 2), 1.5, 30, 200)
parts.add_circle((-1, 3), 0.75)
parts.add_lwpolyline([(0, -1, 0.6), (2, -2, -1.2), (4, 0, 0)], format="xyb")
parts.add_ellipse((1, 5), major_axis=(2, 1), ratio=0.4, start_param=0.5, end_param=4)
hatch = parts.add_hatch()
hatch.paths.add_polyline_path([(6, 0, 0.8), (8, 0, 0), (8, 2, 0), (6, 2, 0)], is_closed=True)
edges = hatch.paths.add_edge_path()
edges.add_line((-4, 0), (-2, 0))
edges.add_arc((-3, 0), 1, 0, 180)
nest = doc.blocks.new("NEST", base_point=(0, 0))
nest.add_blockref("PARTS", (5, 1), dxfattribs={"rotation": 40, "xscale": 0.5, "yscale": 1.5})
nest.add_arc((0, 0), 2, 100, 170)

msp = doc.modelspace()
for i in range(60):
    name = "NEST" if i % 3 == 0 else "PARTS"
    xscale = random.uniform(0.3, 3)
    # A non-uniform scale across a rotated inner reference shears it, which ezdxf
    # (placing the inner INSERT itself) cannot follow; nested ones scale uniformly.
    yscale = xscale if name == "NEST" else random.uniform(0.3, 3)
    attribs = {
        "rotation": random.uniform(0, 360),
        "xscale": random.choice([1, -1]) * xscale,
        "yscale": random.choice([1, -1]) * yscale,
    }
    if i % 5 == 0:
        attribs["extrusion"] = (0, 0, -1)
    if i % 4 == 0:
        attribs.update(column_count=random.randint(1, 4), row_count=random.randint(1, 3),
                       column_spacing=random.uniform(-8, 8), row_spacing=random.uniform(-8, 8))
    msp.add_blockref(name, (random.uniform(-50, 50), random.uniform(-50, 50)), dxfattribs=attribs)

failures = []
worst = 0.0
with tempfile.TemporaryDirectory() as tmp:
    path = os.path.join(tmp, "inserts.dxf")
    doc.saveas(path)
    out = subprocess.run([sys.argv[1], path], capture_output=True, text=True, check=True).stdout
    ours = {}
    for line in out.splitlines():
        handle, *values = line.split()
        ours[handle] = values
    reread = ezdxf.readfile(path)
    for insert in reread.modelspace().query("INSERT"):
        handle = insert.dxf.handle.upper()
        theirs = bbox.extents([insert])
        mine = ours.get(handle)
        if mine is None or mine == ["none"]:
            failures.append(f"{handle}: no extents")
            continue
        x0, y0, x1, y1 = map(float, mine)
        for label, a, b in (("min x", x0, theirs.extmin.x), ("min y", y0, theirs.extmin.y),
                            ("max x", x1, theirs.extmax.x), ("max y", y1, theirs.extmax.y)):
            worst = max(worst, abs(a - b))
            if abs(a - b) > TOLERANCE:
                failures.append(f"{handle} {label}: ours {a:.6f}, ezdxf {b:.6f}")

print(f"{len(ours)} references compared with ezdxf, largest difference {worst:.2g}")
if failures:
    print("\n".join(failures[:30]))
    sys.exit(1)
