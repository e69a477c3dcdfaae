"""Runs the sample script of the polyline commands through the corvane
program and checks the saved drawing with ezdxf.

usage: check_sample.py CORVANE SAMPLE_DIR WORK_DIR"""
import os
import subprocess
import sys

import ezdxf

corvane, sample, work = sys.argv[1:4]
os.makedirs(work, exist_ok=True)
out = os.path.join(work, "polylines-out.dxf")
settings = os.path.join(work, "settings.reg")
with open(settings, "w", encoding="utf-8") as f:
    f.write('Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\Software\\Brightvale\\Corvane]\n'
            '"pagetimes"=dword:0000000a\n')
env = dict(os.environ, CORVANE_SETTINGS=settings)
env.pop("DISPLAY", None)
run = subprocess.run([corvane, os.path.join(sample, "polylines.dxf"), "-s", os.path.join(sample, "polylines.scr"),
                      "-o", out], env=env, capture_output=True, text=True, timeout=120)
transcript = run.stdout + run.stderr
failures = []


def expect(condition, what):
    if not condition:
        failures.append(what)


expect(run.returncode == 0, "the program exits 0")
expect("Vertexs befor optimization : 401， nVertexs now: 20，optimization efficiency is 95 percent." in transcript,
       "PLYH summary")
expect(transcript.count("Processed <2 > curve(s) OK.") == 1, "PLDF count line")
expect("< 1 > new curves added." in transcript, "QXTY count line")

doc = ezdxf.readfile(out)
msp = doc.modelspace()
lw = [e for e in msp if e.dxftype() == "LWPOLYLINE"]
expect(any(len(e) == 20 for e in lw), "the thinned wave has 20 vertices")
expect(sum(1 for e in lw if len(e) == 12) == 2, "two 12-point divisions")
triangle = [e for e in lw if len(e) == 3 and e.closed]
expect(len(triangle) == 1 and abs(triangle[0].dxf.const_width - 0.8) < 1e-12, "the closed triangle of width 0.8")
texts = sorted((e.dxf.text, round(e.dxf.insert[0], 6), round(e.dxf.insert[1], 6)) for e in msp.query("TEXT"))
expect([t[0] for t in texts] == ["1", "2", "3", "4"], "four vertex numbers")
expect(doc.header.get("$PDMODE") == 35, "PDMODE 35")
expect(len(msp.query("SPLINE")) == 0, "the spline was replaced")
flat = [e for e in msp.query("POLYLINE") if e.is_3d_polyline and all(abs(v.dxf.location[2]) < 1e-12 for v in e.vertices)]
expect(len(flat) == 1, "a flat copy of the 3D polyline")
expect(len(msp.query("POLYLINE")) == 2, "the raised source is kept")

if failures:
    print("sample check failed: " + "; ".join(failures))
    print(transcript[-3000:])
    sys.exit(1)
print("sample check: 1 passed, 0 failed")
