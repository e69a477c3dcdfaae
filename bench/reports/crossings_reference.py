"""Reference figures for the batch intersection benchmark, on the same
segments (x1, y1, x2, y2 as float64): a numpy brute-force count of the
crossing pairs, and shapely's noding (GEOS) of all segments at once.

usage: crossings_reference.py SEGMENTS.bin
"""
import sys
import time

import numpy as np
from shapely.geometry import MultiLineString
from shapely.ops import unary_union

seg = np.fromfile(sys.argv[1], dtype=np.float64).reshape(-1, 4)
n = len(seg)


def brute_force(block=128):
    """Every pair (i, j), i < j, tested at once a block of rows at a time."""
    p, r = seg[:, :2], seg[:, 2:] - seg[:, :2]
    count = 0
    for start in range(0, n, block):
        rows = slice(start, min(start + block, n))
        pi, ri = p[rows, None, :], r[rows, None, :]
        qp = p[None, :, :] - pi
        denom = ri[..., 0] * r[None, :, 1] - ri[..., 1] * r[None, :, 0]
        with np.errstate(divide="ignore", invalid="ignore"):
            t = (qp[..., 0] * r[None, :, 1] - qp[..., 1] * r[None, :, 0]) / denom
            u = (qp[..., 0] * ri[..., 1] - qp[..., 1] * ri[..., 0]) / denom
        later = np.arange(n)[None, :] > np.arange(rows.start, rows.stop)[:, None]
        count += int(np.count_nonzero(later & (t >= 0) & (t <= 1) & (u >= 0) & (u <= 1)))
    return count


best = best_cpu = 1e9
crossings = 0
for _ in range(3):
    t0, c0 = time.perf_counter(), time.process_time()
    crossings = brute_force()
    best = min(best, time.perf_counter() - t0)
    best_cpu = min(best_cpu, time.process_time() - c0)
print(f"numpy brute force on {n} segments: {best:.3f} s (best of 3; processor time {best_cpu:.3f} s), "
      f"{crossings} crossing pairs")

lines = MultiLineString([((a, b), (c, d)) for a, b, c, d in seg])
t0 = time.perf_counter()
noded = unary_union(lines)  # nodes the segments at every crossing
took = time.perf_counter() - t0
print(f"shapely unary_union noding (GEOS) on {n} segments: {took:.3f} s, {len(noded.geoms)} pieces "
      f"(about {(len(noded.geoms) - n) // 2} crossings)")
