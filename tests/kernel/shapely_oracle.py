"""Checks the kernel's linear geometry against shapely/GEOS on random cases:
intersections of straight polylines, mitred offsets of polygons (out and in,
sparse, dense and crossing themselves), lengths and areas. Usage: shapely_oracle.py PATH_TO_KERNEL_PROBE"""
import math
import random
import subprocess
import sys

from shapely.geometry import LineString, Polygon, Point, MultiPoint
from shapely.geometry.polygon import orient
from shapely.ops import unary_union

probe = subprocess.Popen([sys.argv[1]], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
failures = []


def ask(line):
    probe.stdin.write(line + "\n")
    probe.stdin.flush()
    return probe.stdout.readline().split()


def polyline_text(pts):
    return f"{len(pts)} " + " ".join(f"{x!r} {y!r}" for x, y in pts)


def check(cond, what):
    if not cond:
        failures.append(what)


def points_of(geom):
    if geom.is_empty:
        return []
    if isinstance(geom, Point):
        return [(geom.x, geom.y)]
    if isinstance(geom, MultiPoint):
        return [(p.x, p.y) for p in geom.geoms]
    out = []
    for g in getattr(geom, "geoms", []):
        out += points_of(g)
    return out


rng = random.Random(20261121)

# Intersections of random zig-zag polylines at several scales.
for case in range(300):
    scale = 10 ** rng.uniform(-3, 5)
    a = [(rng.uniform(0, 1) * scale, rng.uniform(0, 1) * scale) for _ in range(rng.randint(2, 8))]
    b = [(rng.uniform(0, 1) * scale, rng.uniform(0, 1) * scale) for _ in range(rng.randint(2, 8))]
    reply = ask(f"isect {polyline_text(a)} {polyline_text(b)}")
    n = int(reply[0])
    ours = [(float(reply[1 + 2 * i]), float(reply[2 + 2 * i])) for i in range(n)]
    theirs = points_of(LineString(a).intersection(LineString(b)))
    check(len(ours) == len(theirs), f"isect count case {case}: {len(ours)} vs {len(theirs)}")
    for p in theirs:
        best = min((math.dist(p, q) for q in ours), default=math.inf)
        check(best <= 1e-9 * scale, f"isect point case {case}: off by {best / scale:.3g} of the scale")


def star(n, r0, r1, rng):
    """A counter-clockwise star-shaped polygon: concave and convex corners."""
    pts = []
    for i in range(n):
        ang = 2 * math.pi * i / n
        r = rng.uniform(r0, r1)
        pts.append((r * math.cos(ang), r * math.sin(ang)))
    return pts


def parse_offsets(first):
    count = int(first[0])
    out = []
    for _ in range(count):
        head = probe.stdout.readline().split()
        closed, n = int(head[1]), int(head[2])
        verts = [tuple(map(float, probe.stdout.readline().split())) for _ in range(n)]
        out.append((closed, verts))
    return out


# Mitred offsets of polygons against shapely's buffer with mitre joins.
for case in range(120):
    pts = star(rng.randint(5, 14), 5, 10, rng)
    poly = orient(Polygon(pts), 1.0)
    pts = list(poly.exterior.coords)[:-1]
    d = rng.choice([0.05, 0.3, 1.0, 2.0]) * rng.choice([1, -1])
    reply = ask(f"offset {d!r} 1 {len(pts)} " + " ".join(f"{x!r} {y!r} 0" for x, y in pts))
    ours = parse_offsets(reply)
    ref = poly.buffer(d, join_style=2, mitre_limit=1e6)
    ref_parts = [ref] if isinstance(ref, Polygon) else list(ref.geoms)
    check(len(ours) == len(ref_parts), f"offset count case {case} d={d}: {len(ours)} vs {len(ref_parts)}")
    if len(ours) != len(ref_parts):
        continue
    ours_area = sum(abs(Polygon([(x, y) for x, y, _ in v]).area) for _, v in ours)
    check(all(c == 1 for c, _ in ours), f"offset closed case {case}")
    check(abs(ours_area - ref.area) <= 1e-9 * max(1.0, ref.area), f"offset area case {case} d={d}: {ours_area} vs {ref.area}")
    for _, v in ours:
        ring = Polygon([(x, y) for x, y, _ in v])
        h = min(ring.hausdorff_distance(p) for p in ref_parts)
        # Relative to the size of the result: sharp spikes put mitre points far out.
        size = max(ref.bounds[2] - ref.bounds[0], ref.bounds[3] - ref.bounds[1])
        check(h <= 1e-9 * size, f"offset shape case {case} d={d}: Hausdorff {h} of size {size}")

def loop_area(verts):
    """Signed area of one of our loops, its arcs taken exactly (each bulge's
    circular segment added to the shoelace area)."""
    area = 0.0
    for i, (x, y, b) in enumerate(verts):
        nx, ny, _ = verts[(i + 1) % len(verts)]
        area += (x * ny - nx * y) / 2
        if b:
            sweep = 4 * math.atan(b)
            r = math.hypot(nx - x, ny - y) / (2 * abs(math.sin(sweep / 2)))
            area += math.copysign(r * r * (abs(sweep) - math.sin(abs(sweep))) / 2, b)
    return area


def corner_kites(pts, d, limit=4.0):
    """The corners our offsets extend: where the offset side is the outer side
    of the turn and the sides meet within `limit` offsets of the vertex, the
    quadrilateral of vertex, both moved ends and meeting point."""
    kites = []
    for i in range(len(pts)):
        (px, py), (vx, vy), (qx, qy) = pts[i - 1], pts[i], pts[(i + 1) % len(pts)]
        l1, l2 = math.hypot(vx - px, vy - py), math.hypot(qx - vx, qy - vy)
        t1 = ((vx - px) / l1, (vy - py) / l1)
        t2 = ((qx - vx) / l2, (qy - vy) / l2)
        turn = t1[0] * t2[1] - t1[1] * t2[0]
        if turn * d <= 0:
            continue  # an inner corner, or none
        e = (vx + t1[1] * d, vy - t1[0] * d)
        s = (vx + t2[1] * d, vy - t2[0] * d)
        k = ((s[0] - e[0]) * t2[1] - (s[1] - e[1]) * t2[0]) / turn
        x = (e[0] + t1[0] * k, e[1] + t1[1] * k)
        if math.dist(x, (vx, vy)) <= limit * abs(d):
            kites.append(Polygon([(vx, vy), e, x, s]))
    return kites


def mitred_reference(fill, pts, d, both_sides=False):
    """The region our offset bounds: the filled source grown (shrunk) by the
    round buffer, with the corner kites added (taken away). GEOS draws the
    buffer's arcs as chords, 256 to the quarter circle; on these outlines the
    few rounded corners are small enough to keep that below 1e-9 of the area."""
    kites = corner_kites(pts, d) + (corner_kites(pts, -d) if both_sides else [])
    grown = fill.buffer(d, resolution=256)
    ref = grown.union(unary_union(kites)) if d > 0 else grown.difference(unary_union(kites))
    return [ref] if isinstance(ref, Polygon) else list(ref.geoms)


def same_areas(ours, ref_parts):
    mine, theirs = sorted(loop_area(v) for _, v in ours), sorted(p.area for p in ref_parts)
    return len(mine) == len(theirs) and all(abs(a - b) <= 1e-9 * max(1.0, b) for a, b in zip(mine, theirs))


def offsets(pts, d):
    return parse_offsets(ask(f"offset {d!r} 1 {len(pts)} " + " ".join(f"{x!r} {y!r} 0" for x, y in pts)))


# Noisy polygons, medium to dense, whose corners are often sharp (radial noise
# of 0.4 chords, yet simple polygons, so that GEOS's buffer means what ours
# does): closed loops only, as many as GEOS finds, each of the same area.
for case in range(16):
    n = [200, 300, 1000, 3000][case % 4]
    noise = 0.4 * 2 * math.pi * 50 / n
    while True:
        pts = [((50 + noise * rng.uniform(-1, 1)) * math.cos(2 * math.pi * i / n),
                (50 + noise * rng.uniform(-1, 1)) * math.sin(2 * math.pi * i / n)) for i in range(n)]
        if Polygon(pts).is_valid:
            break
    d = [0.5, 3.0][case // 4 % 2] * [1, -1][case // 8]
    ours = offsets(pts, d)
    ref_parts = mitred_reference(Polygon(pts), pts, d)
    check(all(c == 1 for c, _ in ours), f"noisy offset closed case {case} n={n} d={d}")
    check(same_areas(ours, ref_parts), f"noisy offset areas case {case} n={n} d={d}: "
          f"{sorted(loop_area(v) for _, v in ours)} vs {sorted(p.area for p in ref_parts)}")

# A closed source that crosses itself: a square whose right side ties a knot
# (a small clockwise loop outside). Its offset grows or shrinks the region the
# loop winds about, the square and the knot's loop, with corner kites from
# both sides (the sides swap at the crossing).
knot = [(0, 0), (20, 0), (20, 8), (26, 14), (26, 10), (20, 16), (20, 20), (0, 20)]
knot_fill = unary_union([Polygon([(0, 0), (20, 0), (20, 8), (24, 12), (20, 16), (20, 20), (0, 20)]),
                         Polygon([(24, 12), (26, 14), (26, 10)])])
for d in (0.5, 1.5, -0.5):
    ours = offsets(knot, d)
    ref_parts = mitred_reference(knot_fill, knot, d, both_sides=True)
    check(all(c == 1 for c, _ in ours), f"knot offset closed d={d}")
    check(same_areas(ours, ref_parts), f"knot offset areas d={d}: "
          f"{sorted(loop_area(v) for _, v in ours)} vs {sorted(p.area for p in ref_parts)}")

# Lengths and areas of straight polylines, open and closed.
for case in range(200):
    pts = star(rng.randint(3, 30), 1, 100, rng)
    closed = rng.random() < 0.5
    len_ours, area_ours = map(float, ask(f"measure {int(closed)} {len(pts)} " + " ".join(f"{x!r} {y!r} 0" for x, y in pts)))
    ring = pts + [pts[0]]
    ref_len = LineString(ring if closed else pts).length
    ref_area = Polygon(pts).area  # an open polyline's area closes it with a chord
    check(abs(len_ours - ref_len) <= 1e-12 * ref_len, f"length case {case}: {len_ours} vs {ref_len}")
    check(abs(area_ours - ref_area) <= 1e-12 * ref_area, f"area case {case}: {area_ours} vs {ref_area}")

probe.stdin.close()
probe.wait()
for f in failures[:30]:
    print("FAIL", f)
print(f"{len(failures)} failures")
sys.exit(1 if failures else 0)
