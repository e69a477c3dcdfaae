#!/usr/bin/python3
"""FORMULA end to end: scripts run on the embedded host, the saved DXF read
with ezdxf, the points compared with the formulas recomputed here, and the
stored choices carried from one run to the next.

usage: check_formula_dxf.py FORMULA_SCRIPT_RUN WORK_DIR
"""
import math
import os
import shutil
import subprocess
import sys

import ezdxf

RUNNER, WORK = sys.argv[1], sys.argv[2]
failures = []


def check(condition, message):
    if not condition:
        failures.append(message)


def run(name, script, settings):
    """Runs a script; returns the ezdxf document and the transcript."""
    scr = os.path.join(WORK, name + ".scr")
    dxf = os.path.join(WORK, name + ".dxf")
    with open(scr, "w", encoding="utf-8") as f:
        f.write(script)
    done = subprocess.run([RUNNER, scr, dxf, settings], capture_output=True, text=True)
    if done.returncode != 0:
        raise SystemExit(f"{name}: runner failed: {done.stderr}")
    return ezdxf.readfile(dxf), done.stdout


def near(a, b, tol=1e-9):
    return abs(a - b) <= tol * (1 + abs(a) + abs(b))


def compare(name, got, expected):
    check(len(got) == len(expected), f"{name}: {len(got)} points, expected {len(expected)}")
    for i, (g, e) in enumerate(zip(got, expected)):
        if not all(near(gc, ec) for gc, ec in zip(g, e)):
            failures.append(f"{name}: point {i} is {g}, expected {e}")
            return


def curves(doc, kind):
    return [e for e in doc.modelspace() if e.dxftype() == kind]


def samples(n, span, last):
    """n parameter values from 0 in steps of span / last."""
    return [span * i / last for i in range(n)]


shutil.rmtree(WORK, ignore_errors=True)
os.makedirs(WORK)
settings = os.path.join(WORK, "settings.reg")

# Rose rho = 10 sin 7t, 35 samples over [0, 2 pi], as a lightweight polyline at (10, 20).
doc, out = run("rose", "FORMULA\n24\n\n\n\nPolyline\nNo\n10,20\n", settings)
plines = curves(doc, "LWPOLYLINE")
check(len(plines) == 1, f"rose: {len(plines)} polylines")
if plines:
    got = [(x, y) for x, y, *_ in plines[0].get_points("xy")]
    rho = [(10 * math.sin(7 * t), t) for t in samples(35, 2 * math.pi, 34)]
    compare("rose", got, [(10 + r * math.cos(t), 20 + r * math.sin(t)) for r, t in rho])
check("Formula curve [1--71] <1. Heart>: 24" in out, "rose: transcript lacks the curve prompt")

# The stored choices come back in the next run: curve 24 and "Polyline" are shown.
doc, out = run("catenary", "FORMULA\n66\n\n\n1\n\nNo\n0,0\n", settings)
check("<24.Rhodonea>" in out, "the stored curve is not offered again")
check("<Polyline>" in out, "the stored curve kind is not offered again")
plines = curves(doc, "LWPOLYLINE")
if plines:
    got = [(x, y) for x, y in plines[0].get_points("xy")]
    a = 0.25 * 50 * 10
    us = [(i / 34 - 0.5) * 10 for i in range(35)]
    compare("catenary", got, [(u, a * (math.exp(u / 10) + math.exp(-u / 10)) / 2 - a) for u in us])
else:
    failures.append("catenary: no polyline")

# The heart asks for a closed curve in colour 1; as a spline that is a closed 3D polyline.
doc, out = run("heart", "FORMULA\n1\n32\nSpline\nNo\n0,0,2\n", settings)
polys = curves(doc, "POLYLINE")
check(len(polys) == 1, f"heart: {len(polys)} polylines")
if polys:
    p = polys[0]
    check(p.is_3d_polyline and p.is_closed, "heart: not a closed 3D polyline")
    check(p.dxf.color == 1, f"heart: colour {p.dxf.color}")
    got = [tuple(v.dxf.location) for v in p.vertices]
    compare("heart", got, [(16 * math.sin(t) ** 3,
                            13 * math.cos(t) - 5 * math.cos(2 * t) - 2 * math.cos(3 * t) - math.cos(4 * t), 2.0)
                           for t in samples(35, 2 * math.pi, 36)])

# Lissajous as a fitted spline through its samples, with a coordinate frame.
doc, out = run("lissajous", "FORMULA\n49\n\n\n\n1\nSpline\nYes\n0,0\n", settings)
splines = curves(doc, "SPLINE")
check(len(splines) == 1, f"lissajous: {len(splines)} splines")
if splines:
    got = [tuple(p) for p in splines[0].fit_points]
    compare("lissajous", got,
            [(100 * math.sin(3 * t + 100), 100 * math.sin(t), 0.0) for t in samples(35, 2 * math.pi, 34)])
    check(splines[0].dxf.degree == 3, "lissajous: spline not of degree 3")
texts = [e.dxf.text for e in curves(doc, "TEXT")]
check("100" in texts and "-100" in texts, f"lissajous: frame labels {sorted(texts)}")
check(len(curves(doc, "LINE")) == len(texts) + 2, "lissajous: frame lines do not match its labels")

# Chinese: the same command in the other language, the hyperbola's two branches.
key = "[HKEY_CURRENT_USER\\Software\\Brightvale\\Corvane]\n"
with open(settings, encoding="utf-8") as f:
    text = f.read()
with open(settings, "w", encoding="utf-8") as f:
    f.write(text.replace(key, key + '"ChineseVersion"=dword:00000001\n', 1))
doc, out = run("hyperbola", "FORMULA\n6\n\n\n\nPolyline\nNo\n0,0\n", settings)
check("公式曲线 [1--71]" in out and "请指定原点>>" in out, "hyperbola: prompts are not Chinese")
branches = curves(doc, "LWPOLYLINE")
check(len(branches) == 2, f"hyperbola: {len(branches)} branches")
for side, pl in zip((1, -1), branches):
    for x, y in pl.get_points("xy"):
        if not near(x, side * 4 / 3 * math.sqrt(y * y + 9)):
            failures.append(f"hyperbola: ({x}, {y}) is off its branch")
            break

if failures:
    print("\n".join(failures))
    sys.exit(1)
print("formula DXF checks passed")
