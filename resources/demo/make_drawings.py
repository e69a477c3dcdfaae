"""Writes demo1.dxf .. demo11.dxf, the drawings of the demonstration pages.
usage: /usr/bin/python3 make_drawings.py (in this folder)"""
import math
import random

import ezdxf


def new():
    doc = ezdxf.new("R2010")
    doc.layers.add("shapes", color=5)
    return doc, doc.modelspace()


A = {"layer": "shapes"}


def wave(msp, y0=0.0, jitter=0.3, n=200):
    random.seed(3)
    pts = [(x * 0.5, y0 + 10 * math.sin(x * 0.04) + random.uniform(-jitter, jitter)) for x in range(n)]
    msp.add_lwpolyline(pts, dxfattribs=A)


def page1():  # thinning
    doc, msp = new()
    wave(msp)
    return doc


def page2():  # thinning to a spline-fit polyline
    doc, msp = new()
    wave(msp, jitter=0.5)
    return doc


def page3():  # divide by a count
    doc, msp = new()
    msp.add_circle((15, 15), 12, dxfattribs=A)
    msp.add_lwpolyline([(35, 0), (50, 25), (65, 5), (80, 28)], dxfattribs=A)
    return doc


def page4():  # divide by a spacing
    doc, msp = new()
    msp.add_arc((20, 0), 18, 0, 180, dxfattribs=A)
    msp.add_line((45, 0), (95, 20), dxfattribs=A)
    return doc


def page5():  # vertex numbers
    doc, msp = new()
    msp.add_lwpolyline([(40, 30), (40, 0), (0, 0), (0, 30), (20, 40)], dxfattribs=A)
    return doc


def page6():  # close and open
    doc, msp = new()
    msp.add_lwpolyline([(0, 0), (30, 0), (15, 25)], dxfattribs=A)
    msp.add_lwpolyline([(40, 0), (70, 0), (70, 25), (40, 25)], close=True, dxfattribs=A)
    return doc


def page7():  # widths
    doc, msp = new()
    msp.add_lwpolyline([(0, 0), (20, 15), (40, 0), (60, 15)], dxfattribs=A)
    msp.add_lwpolyline([(0, 25), (60, 25)], dxfattribs=A)
    return doc


def page8():  # polyline to spline
    doc, msp = new()
    msp.add_lwpolyline([(0, 0), (10, 20), (25, 5), (40, 25), (55, 0)], dxfattribs=A)
    return doc


def page9():  # spline to polyline
    doc, msp = new()
    msp.add_spline(fit_points=[(0, 0), (12, 25), (30, 3), (45, 28), (60, 5)], dxfattribs=A)
    return doc


def page10():  # blends
    doc, msp = new()
    msp.add_line((0, 0), (25, 0), dxfattribs=A)
    msp.add_arc((55, 20), 10, 100, 190, dxfattribs=A)
    msp.add_line((0, 40), (25, 40), dxfattribs=A)
    msp.add_arc((55, 60), 10, 100, 190, dxfattribs=A)
    return doc


def page11():  # map into a fence
    doc, msp = new()
    # The pattern to map: a grid of lines and a circle.
    for i in range(5):
        msp.add_line((100, i * 10), (140, i * 10), dxfattribs=A)
        msp.add_line((100 + i * 10, 0), (100 + i * 10, 40), dxfattribs=A)
    msp.add_circle((120, 20), 8, dxfattribs=A)
    # The fence: bottom, right, top (an arc bulging up), left.
    f = {"layer": "0", "color": 3}
    msp.add_line((0, 0), (60, -5), dxfattribs=f)
    msp.add_line((60, -5), (70, 40), dxfattribs=f)
    msp.add_lwpolyline([(70, 40, 0.3), (-5, 35)], format="xyb", dxfattribs=f)
    msp.add_line((-5, 35), (0, 0), dxfattribs=f)
    return doc


for n, make in enumerate([page1, page2, page3, page4, page5, page6, page7, page8, page9, page10, page11], 1):
    make().saveas("demo%d.dxf" % n)
