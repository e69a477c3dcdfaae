"""Measures INOFFSET's result independently: the rooms are found by shapely
(noding and polygonizing the LINE and ARC entities), and every room must have
one LWPOLYLINE per ring lying inside it at the ring's depth: no point of the
ring nearer to the room's edge than the depth, and most of its length at the
depth (corners are extended, so they stand farther off). Nothing else may be
left.
Usage: check_inner_offsets.py RESULT.dxf D1 D2 ..."""
import sys

import ezdxf
from ezdxf import path as ezpath
from shapely.geometry import LineString, Polygon
from shapely.ops import polygonize, unary_union


def flat(entity):
    # Rounded, so that an arc's end and a line's end computed apart meet.
    return [(round(v.x, 7), round(v.y, 7)) for v in ezpath.make_path(entity).flattening(0.0005, segments=32)]


doc = ezdxf.readfile(sys.argv[1])
msp = doc.modelspace()
depths = [float(d) for d in sys.argv[2:]]
walls = [LineString(flat(e)) for e in msp if e.dxftype() in ("LINE", "ARC")]
rooms = list(polygonize(unary_union(walls)))
offsets = [Polygon(flat(e)) for e in msp.query("LWPOLYLINE")]
errors = []
if len(offsets) != len(rooms) * len(depths):
    errors.append("%d polylines for %d rooms x %d rings" % (len(offsets), len(rooms), len(depths)))

def depths_of(ring, room):
    line = LineString(list(ring.exterior.coords))
    n = max(200, int(line.length / 0.02))
    return sorted(room.boundary.distance(line.interpolate(line.length * k / n)) for k in range(n))


for room in rooms:
    inside = [o for o in offsets if room.contains(o.representative_point()) and room.buffer(1e-6).contains(o)]
    for d in depths:
        found = False
        for ring in inside:
            ds = depths_of(ring, room)
            at_depth = sum(1 for x in ds if abs(x - d) < 1e-3) / len(ds)
            if ds[0] > d - 1e-3 and at_depth > 0.8:
                found = True
        if not found:
            errors.append("room of area %.3f: no ring at %.3f" % (room.area, d))
print("\n".join(errors) if errors else "OK %d rooms" % len(rooms))
sys.exit(1 if errors else 0)
