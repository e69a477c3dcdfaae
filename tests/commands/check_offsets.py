"""Measures offset copies independently of the kernel that made them.

Reads a DXF with ezdxf; the first model-space entity is the source, every
other one a copy. Curves are sampled exactly (ezdxf's own arc, ellipse and
B-spline evaluation; polyline arcs from their bulges).
For each copy prints one line:
  TYPE layer=L color=C dmin=... dmed=... dmax=... stray=N side=in|out|mixed mid=in|out
with the least, median and greatest distance from the copy's points to the
source, the number of points off the band at the median distance that do
not face a corner of the source (a polyline's vertex, where extended sides
meet farther off), where all the copy's points lie against the area the
source encloses (shapely; an open source closed by its chord), and where the
copy's middle point lies."""
import math
import sys

import ezdxf
import numpy as np
from ezdxf.math import Vec3, bulge_to_arc
from shapely.geometry import LineString, Point, Polygon
from shapely.prepared import prep

# Spacing of the points along the source (fine, so that its chords stay far
# inside the test's tolerance) and along the copies (their points lie on them
# exactly whatever the spacing).
SOURCE_STEP = 0.02
COPY_STEP = 0.2
step = SOURCE_STEP


def count_for(length):
    return max(2, int(length / step) + 1)


def line_points(a, b):
    n = count_for(a.distance(b))
    return [a.lerp(b, i / (n - 1)) for i in range(n)]


def arc_points(center, radius, start, end):
    while end <= start:
        end += 2 * math.pi
    n = count_for(radius * (end - start))
    return [center + Vec3.from_angle(start + (end - start) * i / (n - 1), radius) for i in range(n)]


def lwpolyline_points(e):
    verts = [(Vec3(x, y), b) for x, y, _, _, b in e.get_points("xyseb")]
    if e.closed:
        verts.append(verts[0])
    pts = []
    for (a, bulge), (b, _) in zip(verts, verts[1:]):
        if bulge == 0:
            seg = line_points(a, b)
        else:
            center, start, end, radius = bulge_to_arc(a, b, bulge)
            seg = arc_points(Vec3(center), radius, start, end)
            if bulge < 0:  # bulge_to_arc always runs counter-clockwise
                seg.reverse()
        pts.extend(seg if not pts else seg[1:])
    # The vertices are in the polyline's own coordinates (its normal may be -Z: a mirrored polyline).
    return list(e.ocs().points_to_wcs(Vec3(p.x, p.y, e.dxf.elevation) for p in pts))


def points_of(e, chord_error):
    t = e.dxftype()
    if t == "LINE":
        pts = line_points(Vec3(e.dxf.start), Vec3(e.dxf.end))
    elif t == "CIRCLE":
        pts = arc_points(Vec3(e.dxf.center), e.dxf.radius, 0, 2 * math.pi)
    elif t == "ARC":
        pts = arc_points(Vec3(e.dxf.center), e.dxf.radius, math.radians(e.dxf.start_angle),
                         math.radians(e.dxf.end_angle))
    elif t == "ELLIPSE":
        el = e.construction_tool()
        n = count_for(2 * math.pi * el.major_axis.magnitude)
        span = el.param_span
        pts = list(el.vertices([el.start_param + span * i / (n - 1) for i in range(n)]))
    elif t == "SPLINE":
        bs = e.construction_tool()
        if chord_error is None:  # a copy: evenly in its parameter, about `step` apart
            cps = bs.control_points
            n = count_for(sum(a.distance(b) for a, b in zip(cps, cps[1:])))
            pts = list(bs.points([bs.max_t * i / (n - 1) for i in range(n)]))
        else:
            pts = list(bs.flattening(chord_error, segments=16))
    elif t == "LWPOLYLINE":
        pts = lwpolyline_points(e)
    else:
        raise SystemExit("cannot measure " + t)
    return [(p.x, p.y) for p in pts]


def nearest_on(source, pts):
    """Distance from each point to the source polyline and the nearest point
    on it, by numpy over all segments at once (in chunks of points)."""
    a = source[:-1]
    ab = source[1:] - a
    ab2 = np.maximum((ab * ab).sum(axis=1), 1e-300)
    dists, nearest = [], []
    for chunk in np.array_split(pts, max(1, len(pts) // 64)):
        ap = chunk[:, None, :] - a[None, :, :]
        t = np.clip((ap * ab[None]).sum(axis=2) / ab2[None], 0, 1)
        foot = a[None] + t[..., None] * ab[None]
        d = np.hypot(*(chunk[:, None, :] - foot).transpose(2, 0, 1))
        best = d.argmin(axis=1)
        dists.append(d[np.arange(len(chunk)), best])
        nearest.append(foot[np.arange(len(chunk)), best])
    return np.concatenate(dists), np.concatenate(nearest)


def corners_of(e):
    if e.dxftype() != "LWPOLYLINE":
        return np.empty((0, 2))
    ocs = [Vec3(x, y, e.dxf.elevation) for x, y, *_ in e.get_points("xy")]
    return np.array([(p.x, p.y) for p in e.ocs().points_to_wcs(ocs)])


def main():
    doc = ezdxf.readfile(sys.argv[1])
    entities = list(doc.modelspace())
    global step
    source_pts = points_of(entities[0], 1e-6)
    step = COPY_STEP
    source = np.array(source_pts)
    corners = corners_of(entities[0])
    # A straight source encloses nothing.
    area = Polygon(source_pts).buffer(0) if len(source_pts) > 2 else Polygon()
    inside_area = prep(area)
    for e in entities[1:]:
        pts = points_of(e, None)
        dists, nearest = nearest_on(source, np.array(pts))
        median = float(np.median(dists))
        # Points off the band at the copy's distance must face a corner of the source.
        off_band = np.abs(dists - median) > 1e-4
        if len(corners):
            at_corner = np.min(np.hypot(*(nearest[:, None, :] - corners[None]).transpose(2, 0, 1)), axis=1) < 1e-3
        else:
            at_corner = np.zeros(len(pts), dtype=bool)
        stray = int(np.count_nonzero(off_band & ~at_corner))
        inside = [inside_area.contains(Point(p)) for p in pts]
        side = "in" if all(inside) else "out" if not any(inside) else "mixed"
        middle = LineString(pts).interpolate(0.5, normalized=True)
        mid = "in" if area.contains(middle) else "out"
        print("%s layer=%s color=%d dmin=%.6f dmed=%.6f dmax=%.6f stray=%d side=%s mid=%s" % (
            e.dxftype(), e.dxf.layer, e.dxf.color, dists.min(), median, dists.max(), stray, side, mid))


main()
