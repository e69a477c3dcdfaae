"""Measures makeOutline's result against shapely: the last entity is the
outline; every other entity is a closed shape of the cluster. The outline
must enclose the union of the shapes and follow its outer edge (same area
as the union with its holes filled, within a small distance).
Usage: check_outline.py RESULT.dxf SHAPES [DISTANCE [AREA]]: the largest
distance allowed (0.01) and relative area difference (0.001)."""
import sys

import ezdxf
from ezdxf import path as ezpath
from shapely.geometry import Polygon
from shapely.ops import unary_union


def polygon(entity):
    return Polygon([(v.x, v.y) for v in ezpath.make_path(entity).flattening(0.0005, segments=16)]).buffer(0)


doc = ezdxf.readfile(sys.argv[1])
entities = list(doc.modelspace())
shapes = int(sys.argv[2])
distance = float(sys.argv[3]) if len(sys.argv) > 3 else 0.01
relative = float(sys.argv[4]) if len(sys.argv) > 4 else 1e-3
errors = []
if len(entities) != shapes + 1:
    errors.append("%d entities for %d shapes and one outline" % (len(entities), shapes))
else:
    union = unary_union([polygon(e) for e in entities[:shapes]])
    want = Polygon(union.exterior)
    got = polygon(entities[-1])
    if entities[-1].dxftype() != "LWPOLYLINE" or not entities[-1].closed:
        errors.append("the outline is no closed polyline")
    # The greatest distance between the two edges for small figures; for big
    # ones (where that costs too much) the band between them, averaged along the edge.
    small = len(got.exterior.coords) + len(want.exterior.coords) < 20000
    apart = got.hausdorff_distance(want) if small else got.symmetric_difference(want).area / want.exterior.length
    if abs(got.area - want.area) > relative * want.area or apart > distance:
        errors.append("outline area %.5f against %.5f, distance %.5f" % (got.area, want.area, apart))
print("\n".join(errors) if errors else "OK")
sys.exit(1 if errors else 0)
