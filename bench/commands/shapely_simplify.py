"""Reference figure for the thinning benchmark: shapely's simplify (GEOS,
Douglas-Peucker) on the same points, read as x,y float64 pairs.

usage: shapely_simplify.py POINTS.bin TOLERANCE
"""
import sys
import time

import numpy as np
from shapely.geometry import LineString

xy = np.fromfile(sys.argv[1], dtype=np.float64).reshape(-1, 2)
tolerance = float(sys.argv[2])
line = LineString(xy)
best = 1e9
kept = 0
for _ in range(5):
    t0 = time.perf_counter()
    out = line.simplify(tolerance, preserve_topology=False)
    best = min(best, time.perf_counter() - t0)
    kept = len(out.coords)
print(f"shapely simplify (GEOS) on {len(xy)} vertices: {best:.4f} s (best of 5), {kept} vertices kept")
