"""Reference figure for the batch offset benchmark: shapely's buffer (GEOS)
of the same polygons, their arcs cut into chords, at the same distances on
both sides, with mitred corners (the sides extended to meet, as the offsets
join them). Arcs do not survive: the results are straight segments only.

usage: shapely_buffer.py POLYGONS.txt SPACING COUNT
(POLYGONS.txt: a vertex count, then that many "x y" lines, per polygon)
"""
import sys
import time

from shapely.geometry import Polygon

lines = open(sys.argv[1]).read().split("\n")
spacing, count = float(sys.argv[2]), int(sys.argv[3])
polygons = []
i = 0
while i < len(lines) and lines[i]:
    n = int(lines[i])
    polygons.append(Polygon([tuple(map(float, l.split())) for l in lines[i + 1:i + 1 + n]]))
    i += 1 + n
distances = [spacing * k for k in range(1, count + 1)]
t0, c0 = time.perf_counter(), time.process_time()
made = vertices = 0
for p in polygons:
    for d in distances:
        for signed in (d, -d):
            out = p.buffer(signed, join_style=2, mitre_limit=10)
            if not out.is_empty:
                made += 1
                vertices += len(out.exterior.coords) if out.geom_type == "Polygon" else sum(
                    len(g.exterior.coords) for g in out.geoms)
t, c = time.perf_counter() - t0, time.process_time() - c0
print(f"shapely buffer (GEOS, mitred) of {len(polygons)} polygons at {2 * count} distances: {t:.3f} s "
      f"({c:.3f} s processor), "
      f"{made} results, {vertices} vertices, no arcs")
