"""Checks an edit command's output against ezdxf's own transform of the input.

check_transform.py IN.dxf OUT.dxf MODE OP ARGS...
  MODE  same:     every model-space entity of IN kept its handle in OUT
        appended: OUT ends with one new entity per entity of IN, in order
  OP    translate dx dy | rotate cx cy degrees | scale cx cy factor |
        mirror ax ay bx by | mirror-keeping-patterns ax ay bx by
Curves are compared as ezdxf paths (each flattened path within 1e-6 of the
other), texts and block references by their placement. A pattern hatch is
compared by the pattern lines ezdxf's own hatching draws for it: those drawn
for the output are those drawn for the input carried by the map (for
mirror-keeping-patterns, those of the input's pattern moved along with its
origin, in the mirrored boundary), and its seed points by the map. Prints one
line per mismatch and exits 1 when there is any."""
import math
import sys

import ezdxf
from ezdxf import path
from ezdxf.math import Matrix44, Vec2, Vec3
from ezdxf.render import hatching


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
    if op in ("mirror", "mirror-keeping-patterns"):
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


def pattern_segments(hatch):
    return [(Vec3(a), Vec3(b)) for a, b in hatching.hatch_entity(hatch)]


def same_segments(want, got, tol=1e-3):
    """Each segment of one list is a segment of the other, either way round.

    ezdxf clips pattern lines with a fixed tolerance that does not scale with
    the drawing, so ends on the boundary may move by some 1e-4 once scaled."""
    if len(want) != len(got):
        return "%d pattern segments, ezdxf draws %d" % (len(got), len(want))
    left = list(got)
    for a, b in want:
        for i, (c, d) in enumerate(left):
            if (a.isclose(c, abs_tol=tol) and b.isclose(d, abs_tol=tol)) or \
                    (a.isclose(d, abs_tol=tol) and b.isclose(c, abs_tol=tol)):
                del left[i]
                break
        else:
            return "no pattern segment %s-%s" % (a, b)
    return None


def expected_pattern(before, got, m, keep):
    """The pattern segments the transformed hatch should draw."""
    if not keep:
        return [(m.transform(a), m.transform(b)) for a, b in pattern_segments(before)]
    # The input's pattern lines, unturned, moved with the origin, drawn in the
    # edited boundary (which is compared with ezdxf's transform on its own;
    # ezdxf's transform would turn the hatch's normal round instead).
    if len(got.pattern.lines) != len(before.pattern.lines):
        return []
    moved = got.copy()
    shift = Vec2(m.transform(Vec3(0, 0, 0)))
    for line, old in zip(moved.pattern.lines, before.pattern.lines):
        line.angle = old.angle
        line.base_point = Vec2(old.base_point) + shift
        line.offset = Vec2(old.offset)
        line.dash_length_items = list(old.dash_length_items)
    return pattern_segments(moved)


def compare_pattern(before, got, m, keep):
    if before.dxf.solid_fill:
        return None
    why = same_segments(expected_pattern(before, got, m, keep), pattern_segments(got))
    if why:
        return "HATCH pattern: " + why
    want_seeds = [Vec2(m.transform(Vec3(p))) for p in before.seeds]
    got_seeds = [Vec2(p) for p in got.seeds]
    if len(want_seeds) != len(got_seeds) or not all(a.isclose(b, abs_tol=1e-9) for a, b in zip(want_seeds, got_seeds)):
        return "HATCH seeds %s, ezdxf %s" % (got_seeds, want_seeds)
    return None


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
        why = compare_pattern(want, got, m, op == "mirror-keeping-patterns") if want.dxftype() == "HATCH" else None
        want.transform(m)
        why = why or compare(want, got)
        if why:
            print("%s: %s" % (want.dxf.handle, why))
            bad += 1
    print("checked %d" % len(pairs))
    sys.exit(1 if bad else 0)


main()
