"""shapely/GEOS on the same data as kernel_bench (same generator and formulas),
timed the same way (best of several runs, wall clock)."""
import math
import time

from shapely.geometry import LineString, Polygon
from shapely.strtree import STRtree

MASK = (1 << 64) - 1


class Lcg:
    def __init__(self):
        self.state = 20261121

    def next(self):
        self.state = (self.state * 6364136223846793005 + 1442695040888963407) & MASK
        return (self.state >> 11) * (1.0 / 9007199254740992.0)


def best(runs, f):
    t = math.inf
    for _ in range(runs):
        t0 = time.perf_counter()
        f()
        t = min(t, time.perf_counter() - t0)
    return t


def long_polyline(n):
    rng = Lcg()
    return LineString([(float(i), 10 * math.sin(i * 0.01) + rng.next()) for i in range(n)])


def random_segments(n):
    rng = Lcg()
    out = []
    for _ in range(n):
        x, y, a, l = 1000 * rng.next(), 1000 * rng.next(), 2 * math.pi * rng.next(), 50 * rng.next()
        out.append(LineString([(x, y), (x + l * math.cos(a), y + l * math.sin(a))]))
    return out


def wavy_star(n, arc_segments=0):
    """Vertices of the kernel's star; with arc_segments > 0 each bulged edge is
    replaced by that many chords (shapely has no arcs)."""
    rng = Lcg()
    verts = []
    for i in range(n):
        a = 2 * math.pi * i / n
        r = 100 + 10 * math.sin(17 * a) + 0.001 * rng.next()
        b = 0.05 * (2 * rng.next() - 1)
        verts.append((r * math.cos(a), r * math.sin(a), b))
    if not arc_segments:
        return Polygon([(x, y) for x, y, _ in verts])
    pts = []
    for i, (x, y, b) in enumerate(verts):
        x2, y2, _ = verts[(i + 1) % n]
        sweep = 4 * math.atan(b)
        chord = math.hypot(x2 - x, y2 - y)
        if b == 0 or chord == 0:
            pts.append((x, y))
            continue
        h = chord * (1 - b * b) / (4 * b)
        cx = (x + x2) / 2 - (y2 - y) / chord * h
        cy = (y + y2) / 2 + (x2 - x) / chord * h
        rad = chord * (1 + b * b) / (4 * abs(b))
        s = math.atan2(y - cy, x - cx)
        for k in range(arc_segments):
            t = s + sweep * k / arc_segments
            pts.append((cx + rad * math.cos(t), cy + rad * math.sin(t)))
    return Polygon(pts)


line = long_polyline(1_000_000)
# GEOS walks the line from its start for every interpolate, so the time grows
# with the number of samples; 100 samples keep the run short.
for samples in (100,):
    step = line.length / (samples - 1)
    t = best(1, lambda: [line.interpolate(i * step) for i in range(samples)])
    print(f"shapely: sample 1,000,000-vertex polyline at {samples} equal lengths (interpolate per point): {t:.4f} s"
          f" ({t / samples * 1000:.1f} s per 1000 samples)")

segs = random_segments(2000)


def intersect_all():
    tree = STRtree(segs)
    index = {id(g): i for i, g in enumerate(segs)}
    found = tested = 0
    for i, g in enumerate(segs):
        for h in tree.query(g):
            j = index[id(h)]
            if j <= i:
                continue
            tested += 1
            x = g.intersection(h)
            if not x.is_empty:
                found += 1
    return tested, found


t = best(5, intersect_all)
tested, found = intersect_all()
print(f"shapely: pairwise intersection of 2,000 segments (STRtree): {t:.4f} s ({tested} pairs tested, {found} points)")

for label, poly in (("straight", wavy_star(10000)), ("bulged as 8 chords per arc", wavy_star(10000, 8))):
    for d in (2.0, -2.0):
        res = None

        def run():
            global res
            res = poly.buffer(d, join_style=2, mitre_limit=1e6)

        t = best(3, run)
        print(f"shapely: offset 10,000-vertex {label} polygon by {d:+.1f} (mitre buffer): {t:.4f} s (area {res.area:.6f})")
