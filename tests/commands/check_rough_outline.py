"""makeOutline's rough stage through the corvane program: 1001 overlapping
circles in a wave. Answering yes keeps the rough outline traced from the
picture of the view (within a few pixels of shapely's union); answering no
goes on to the precise outline (within 0.01).
Usage: check_rough_outline.py CORVANE FOLDER"""
import math
import os
import subprocess
import sys

import ezdxf

corvane, folder = sys.argv[1], sys.argv[2]
os.makedirs(folder, exist_ok=True)
source = os.path.join(folder, "circles.dxf")
doc = ezdxf.new("R2010")
for i in range(1001):
    doc.modelspace().add_circle((i * 0.2, 3 * math.sin(i * 0.02)), 1)
doc.saveas(source)
check = os.path.join(os.path.dirname(os.path.abspath(__file__)), "check_outline.py")
failed = 0
# A pixel of the view is about 0.13 units: the rough outline keeps to 8 of them.
for answer, tolerances in (("Y", ["1.0", "0.08"]), ("N", [])):
    out = os.path.join(folder, "outline-%s.dxf" % answer)
    run = subprocess.run([corvane, source, "-c", "makeOutline ALL  %s" % answer, "-o", out, "--no-pages"],
                         capture_output=True, text=True, env=dict(os.environ, HOME=folder))
    if run.returncode != 0 or "rough outline" not in run.stdout:
        print("corvane failed or asked nothing:", run.stdout[-500:], run.stderr[-500:])
        failed = 1
        continue
    result = subprocess.run([sys.executable, check, out, "1001"] + tolerances)
    failed |= result.returncode
sys.exit(failed)
