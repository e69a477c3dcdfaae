"""Reads the builders' drawing with ezdxf and checks every curve independently:
entity kinds, colours, fit points, and that ezdxf's own B-spline evaluation of
our control points passes through the fit points with the requested tangents.
Usage: builders_ezdxf_check.py PROBE OUT.dxf"""
import math
import subprocess
import sys

import ezdxf
from ezdxf.math import BSpline

subprocess.run([sys.argv[1], sys.argv[2]], check=True)
doc = ezdxf.readfile(sys.argv[2])
msp = list(doc.modelspace())
failures = []


def check(cond, what):
    if not cond:
        failures.append(what)


check([e.dxftype() for e in msp] == ["SPLINE", "SPLINE", "LINE", "LWPOLYLINE", "POLYLINE"],
      f"kinds {[e.dxftype() for e in msp]}")
wave, tangent, line, circle, poly3d = msp

for spline, colour in ((wave, 1), (tangent, 2)):
    check(spline.dxf.degree == 3, "degree")
    check(spline.dxf.color == colour, f"colour {spline.dxf.color}")
    fit = [tuple(p) for p in spline.fit_points]
    ctrl = [tuple(p) for p in spline.control_points]
    knots = list(spline.knots)
    check(len(ctrl) == len(fit) + 2, "control point count")
    curve = BSpline(ctrl, order=4, knots=knots)
    # Each fit point is hit at its chord-length parameter.
    chord = 0.0
    for i, p in enumerate(fit):
        if i:
            chord += math.dist(fit[i - 1], p)
        q = curve.point(chord)
        check(math.dist(q, p) < 1e-9, f"fit point {i} missed by {math.dist(q, p)}")
    check(abs(knots[-1] - chord) < 1e-9, "knots in chord length")

# End tangents (0,1) and (1,0): the derivative at the ends is the unit tangent.
curve = BSpline([tuple(p) for p in tangent.control_points], order=4, knots=list(tangent.knots))
_, d0 = curve.derivative(curve.knots()[0], n=1)
_, d1 = curve.derivative(curve.knots()[-1], n=1)
check(abs(d0.x) < 1e-9 and abs(d0.y - 1) < 1e-9, f"start tangent {d0}")
check(abs(d1.x - 1) < 1e-9 and abs(d1.y) < 1e-9, f"end tangent {d1}")

check(tuple(line.dxf.start) == (0, 0, 0) and tuple(line.dxf.end) == (1, -1, 0), "collinear points give a line")
check(line.dxf.color == 256, "by-layer colour")

pts = circle.get_points("xy")
check(len(pts) == 16 and circle.closed, f"16 samples, closed: {len(pts)} {circle.closed}")
for x, y in pts:
    check(abs(math.hypot(x - 10, y) - 2) < 1e-12, "sample on the circle")
steps = [math.dist(pts[i], pts[i + 1]) for i in range(15)]
check(max(steps) - min(steps) < 1e-9, "equal spacing")

check(poly3d.is_3d_polyline, "3D polyline")
check([round(v.dxf.location.z, 5) for v in poly3d.vertices] == [0, 0.00011, 0.00022], "z values")

for f in failures:
    print("FAIL", f)
print(f"{len(failures)} failures")
sys.exit(1 if failures else 0)
