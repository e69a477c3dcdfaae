"""Checks an edit command's output against ezdxf's own transform of the input.

check_transform.py IN.dxf OUT.dxf MODE OP ARGS...
  MODE  same:     every model-space entity of IN kept its handle in OUT
        appended: OUT ends with one new entity per entity of IN, in order
  OP    translate dx dy | rotate cx cy degrees | scale cx cy factor |
        mirror ax ay bx by
Curves are compared as ezdxf paths (each flattened path within 1e-6 of the
other), texts and block references by their placement. Prints one line per
mismatch and exits 1 when there is any."""
import math
import sys

import ezdxf
from ezdxf import path
from ezdxf.math import Matrix44, Vec3


def matrix(op, args):
    a = [float(x) for x in args]
    if op == "translate":
        return Matrix44.translate(a[0], a[1], 0)
    if op == "rotate":
        return Matrix44.chain(Matrix44.translate(-a[0], -a[1], 0), Matrix44.z_rotate(math.radians(a[2])),
                              Matrix44.translate(a[0], a[1], 0))
    if op == "scale":
        return Matrix44.chain(Matrix44.translate(-a[0], -a[1], 0), Matrix44.scale(a[2], a[2], a[2]),
                              Matrix44.translate(a[0], a[1], 0))
    if op == "mirror":
        angle = math.atan2(a[3] - a[1], a[2] - a[0])
        return Matrix44.chain(Matrix44.translate(-a[0], -a[1], 0), Matrix44.z_rotate(-angle),
                              Matrix44.scale(1, -1, 1), Matrix44.z_rotate(angle), Matrix44.translate(a[0], a[1], 0))
    raise SystemExit("unknown op " + op)


def flat(e):
    return list(path.make_path(e).flattening(1e-3))


def distance_to_polyline(p, pts):
    best = math.inf
    for a, b in zip(pts, pts[1:]):
        ab = b - a
        t = 0.0 if ab.magnitude == 0 else max(0.0, min(1.0, (p - a).dot(ab) / ab.magnitude_square))
        best = min(best, (a + ab * t - p).magnitude)
    return best if len(pts) > 1 else (pts[0] - p).magnitude


def same_path(a, b, tol):
    pa, pb = flat(a), flat(b)
    return all(distance_to_polyline(p, pb) < tol for p in pa) and all(distance_to_polyline(p, pa) < tol for p in pb)


def compare(want, got):
    t = want.dxftype()
    if t != got.dxftype():
        return "kind %s became %s" % (t, got.dxftype())
    if t in ("LINE", "ARC", "CIRCLE", "LWPOLYLINE", "ELLIPSE", "SPLINE", "POLYLINE"):
        return None if same_path(want, got, 2e-3) else "%s path differs" % t
    if t == "HATCH":
        pw, pg = list(path.from_hatch(want)), list(path.from_hatch(got))
        if len(pw) != len(pg):
            return "HATCH has %d paths, ezdxf %d" % (len(pg), len(pw))
        for a, b in zip(pw, pg):
            fa, fb = list(a.flattening(1e-3)), list(b.flattening(1e-3))
            if not all(distance_to_polyline(p, fb) < 2e-3 for p in fa) or \
                    not all(distance_to_polyline(p, fa) < 2e-3 for p in fb):
                return "HATCH boundary differs"
        return None
    if t == "INSERT":
        mw, mg = want.matrix44(), got.matrix44()
        for p in (Vec3(0, 0, 0), Vec3(1, 0, 0), Vec3(0, 1, 0), Vec3(0, 0, 1)):
            if not mw.transform(p).isclose(mg.transform(p), abs_tol=1e-9):
                return "INSERT placement differs at %s: %s vs %s" % (p, mw.transform(p), mg.transform(p))
        return None
    if t in ("TEXT", "MTEXT", "POINT"):
        key = "insert" if t != "POINT" else "location"

        def place(e):
            return e.ocs().to_wcs(e.dxf.get(key)) if t == "TEXT" else Vec3(e.dxf.get(key))

        w, g = place(want), place(got)
        return None if w.isclose(g, abs_tol=1e-9) else "%s at %s, ezdxf puts it at %s" % (t, g, w)
    return None


def main():
    src, out, mode, op = sys.argv[1], sys.argv[2], sys.argv[3], sys.argv[4]
    m = matrix(op, sys.argv[5:])
    before = list(ezdxf.readfile(src).modelspace())
    after = list(ezdxf.readfile(out).modelspace())
    if mode == "same":
        by_handle = {e.dxf.handle: e for e in after}
        pairs = [(e, by_handle.get(e.dxf.handle)) for e in before]
    else:
        pairs = list(zip(before, after[len(after) - len(before):]))
    bad = 0
    for want, got in pairs:
        if got is None:
            print("%s %s is missing" % (want.dxftype(), want.dxf.handle))
            bad += 1
            continue
        want.transform(m)
        why = compare(want, got)
        if why:
            print("%s: %s" % (want.dxf.handle, why))
            bad += 1
    print("checked %d" % len(pairs))
    sys.exit(1 if bad else 0)


main()
