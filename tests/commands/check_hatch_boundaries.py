"""Hatches with line, arc, ellipse and spline edges written by ezdxf
(`make OUT.dxf`), and after CHBJ (`check RESULT.dxf`) their boundaries
compared with the restored polylines: same area, within a small distance."""
import math
import sys

import ezdxf
from ezdxf import path as ezpath
from shapely.geometry import Polygon


def make(out):
    doc = ezdxf.new("R2010")
    doc.layers.add("HATCHES")
    msp = doc.modelspace()
    # Lines and arcs, both turning ways; an island of a bulged polyline path.
    h = msp.add_hatch(color=1, dxfattribs={"layer": "HATCHES"})
    ep = h.paths.add_edge_path(flags=1)
    ep.add_line((0, 0), (10, 0))
    ep.add_arc((10, 3), 3, -90, 90, ccw=True)
    ep.add_line((10, 6), (4, 6))
    ep.add_arc((2, 6), 2, 0, 180, ccw=True)
    ep.add_line((0, 6), (0, 0))
    h.paths.add_polyline_path([(3, 2, 0.5), (6, 2, 0), (6, 4, 0), (3, 4, 0)], is_closed=True, flags=0)
    # A clockwise arc edge.
    h = msp.add_hatch(color=2)
    ep = h.paths.add_edge_path(flags=1)
    ep.add_line((20, 0), (30, 0))
    ep.add_line((30, 0), (30, 5))
    ep.add_arc((25, 5), 5, 0, 180, ccw=False)  # dips into the square
    ep.add_line((20, 5), (20, 0))
    # Elliptic edges: half an ellipse closed by a line.
    h = msp.add_hatch(color=3)
    ep = h.paths.add_edge_path(flags=1)
    ep.add_ellipse((40, 0), (6, 2), 0.5, 0, 180, ccw=True)
    ep.add_line((34, -2), (46, 2))
    # A spline edge (control points) closed by a line.
    h = msp.add_hatch(color=4)
    ep = h.paths.add_edge_path(flags=1)
    ep.add_spline(control_points=[(50, 0), (52, 6), (56, 7), (60, 0)],
                  knot_values=[0, 0, 0, 0, 1, 1, 1, 1], degree=3)
    ep.add_line((60, 0), (50, 0))
    doc.saveas(out)


def polygon(p):
    pts = [(v.x, v.y) for v in p.flattening(0.0005, segments=16)]
    return Polygon(pts).buffer(0)


def check(result):
    doc = ezdxf.readfile(result)
    msp = doc.modelspace()
    hatches = msp.query("HATCH")
    polylines = list(msp.query("LWPOLYLINE"))
    errors = []
    wanted = 0
    for h in hatches:
        for p in ezpath.from_hatch(h):
            wanted += 1
            want = polygon(p)
            near = [pl for pl in polylines if pl.dxf.layer == h.dxf.layer and pl.closed]
            best = min(near, key=lambda pl: want.symmetric_difference(polygon(ezpath.make_path(pl))).area,
                       default=None)
            if best is None:
                errors.append("no polyline for a path of hatch %s" % h.dxf.handle)
                continue
            got = polygon(ezpath.make_path(best))
            if abs(got.area - want.area) > 1e-3 * want.area or got.hausdorff_distance(want) > 0.01:
                errors.append("hatch %s: area %.6f against %.6f, distance %.6f" % (
                    h.dxf.handle, got.area, want.area, got.hausdorff_distance(want)))
    if len(polylines) != wanted:
        errors.append("%d polylines for %d paths" % (len(polylines), wanted))
    arcs = sum(1 for pl in polylines for v in pl.get_points("b") if v[0] != 0)
    if arcs < 4:
        errors.append("arcs should stay arcs: %d bulges" % arcs)
    print("\n".join(errors) if errors else "OK %d paths" % wanted)
    return 1 if errors else 0


if __name__ == "__main__":
    if sys.argv[1] == "make":
        make(sys.argv[2])
    else:
        sys.exit(check(sys.argv[2]))
