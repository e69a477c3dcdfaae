"""Reads a DXF file with ezdxf and prints one line per model-space entity:
TYPE closed=0|1 points x,y,z;x,y,z ... plus extra fields per kind."""
import sys

import ezdxf


def fmt(p):
    return "%.6f,%.6f,%.6f" % (p[0], p[1], p[2] if len(p) > 2 else 0.0)


def describe(e):
    t = e.dxftype()
    if t == "LWPOLYLINE":
        elev = e.dxf.elevation
        pts = [(x, y, elev) for x, y, *_ in e.get_points("xyseb")]
        return "%s closed=%d width=%g points %s" % (t, int(e.closed), e.dxf.const_width,
                                                    ";".join(fmt(p) for p in pts))
    if t == "POLYLINE":
        kind = "3d" if e.is_3d_polyline else "2d"
        verts = [v for v in e.vertices]
        pts = [v.dxf.location for v in verts]
        flags = ",".join(str(v.dxf.flags) for v in verts)
        return "%s%s closed=%d splinefit=%d points %s flags %s" % (
            t, kind, int(e.is_closed), int(e.dxf.flags & 4 != 0), ";".join(fmt(p) for p in pts), flags)
    if t == "LINE":
        return "LINE points %s;%s" % (fmt(e.dxf.start), fmt(e.dxf.end))
    if t == "SPLINE":
        return "SPLINE degree=%d fit %s control %d" % (
            e.dxf.degree, ";".join(fmt(p) for p in e.fit_points), len(e.control_points))
    if t == "POINT":
        return "POINT points %s" % fmt(e.dxf.location)
    if t == "TEXT":
        return "TEXT height=%g text=%s points %s" % (e.dxf.height, e.dxf.text, fmt(e.dxf.insert))
    if t == "ELLIPSE":
        return "ELLIPSE center %s ratio=%g" % (fmt(e.dxf.center), e.dxf.ratio)
    return t


def main():
    doc = ezdxf.readfile(sys.argv[1])
    for e in doc.modelspace():
        print(describe(e))
    print("HEADER PDMODE=%s" % doc.header.get("$PDMODE", "none"))


main()
