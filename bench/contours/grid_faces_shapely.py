"""The faces of an n x n grid of lines by shapely/GEOS: noding (unary_union)
plus polygonize, timed best of three, printed beside our figure."""
import sys
import time

from shapely.geometry import LineString
from shapely.ops import polygonize, unary_union

n = int(sys.argv[1])
span = float(n - 1)
lines = [LineString([(0, i), (span, i)]) for i in range(n)] + [LineString([(i, 0), (i, span)]) for i in range(n)]
best = None
for _ in range(3):
    t0 = time.perf_counter()
    faces = list(polygonize(unary_union(lines)))
    t = time.perf_counter() - t0
    best = t if best is None else min(best, t)
print("shapely/GEOS noding + polygonize, %d x %d grid: %d faces in %.3f s" % (n, n, len(faces), best))
