"""Writes polylines.dxf, the sample drawing of the polyline commands.
usage: /usr/bin/python3 make_sample.py (in this folder)"""
import math
import random

import ezdxf

doc = ezdxf.new("R2010")
msp = doc.modelspace()
doc.layers.add("noisy", color=1)
doc.layers.add("shapes", color=5)

random.seed(7)
# A dense, jittery wave for thinning.
wave = [(x * 0.25, 85 + 4 * math.sin(x * 0.025) + random.uniform(-0.05, 0.05)) for x in range(401)]
msp.add_lwpolyline(wave, dxfattribs={"layer": "noisy"})
# A circle and a line to divide.
msp.add_circle((20, 50), 10, dxfattribs={"layer": "shapes"})
msp.add_line((40, 40), (90, 60), dxfattribs={"layer": "shapes"})
# A rectangle drawn from its upper right corner, to number.
msp.add_lwpolyline([(30, 20), (30, 0), (0, 0), (0, 20)], close=False, dxfattribs={"layer": "shapes"})
# An open triangle to close.
msp.add_lwpolyline([(50, 0), (90, 0), (70, 25)], dxfattribs={"layer": "shapes"})
# A fit-point spline to turn into a polyline.
msp.add_spline(fit_points=[(110, 0), (120, 25), (135, 5), (150, 28)], dxfattribs={"layer": "shapes"})
# A raised 3D polyline to project onto the XY plane.
msp.add_polyline3d([(110, 50, 20), (150, 55, 25), (140, 90, 30), (115, 80, 20)], close=True,
                   dxfattribs={"layer": "shapes", "color": 3})
doc.saveas("polylines.dxf")
