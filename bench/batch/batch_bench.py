"""Batch runs of corvane: the wall time of one script over many drawings with
1 and with 2 processes at once. Prints figures; never fails on time.

usage: python3 bench/batch/batch_bench.py PATH/TO/corvane [DRAWINGS] [LINES_PER_DRAWING]
(defaults 200 drawings of 200 polylines each; needs ezdxf)"""
import os
import resource
import subprocess
import sys
import tempfile
import time

import ezdxf


def make_drawings(folder, count, lines):
    os.makedirs(folder)
    for i in range(count):
        doc = ezdxf.new("R2010")
        msp = doc.modelspace()
        for k in range(lines):
            msp.add_lwpolyline([(0, k), (10 + i, k + 1), (20, k), (30 + k % 7, k + 2)])
        doc.saveas(os.path.join(folder, "b%03d.dxf" % i))


def main():
    corvane = os.path.abspath(sys.argv[1])
    count = int(sys.argv[2]) if len(sys.argv) > 2 else 200
    lines = int(sys.argv[3]) if len(sys.argv) > 3 else 200
    with tempfile.TemporaryDirectory() as tmp:
        env = dict(os.environ, CORVANE_SETTINGS=os.path.join(tmp, "settings.reg"))
        env.pop("DISPLAY", None)
        inputs = os.path.join(tmp, "in")
        make_drawings(inputs, count, lines)
        script = os.path.join(tmp, "divide.scr")
        with open(script, "w") as f:
            f.write("PLDF\nALL\n\n16\n")
        print("batch of %d drawings, %d polylines each, divided into 16 points" % (count, lines))
        for jobs in (1, 2):
            out = os.path.join(tmp, "out%d" % jobs)
            before = resource.getrusage(resource.RUSAGE_CHILDREN)
            start = time.perf_counter()
            r = subprocess.run([corvane, "batch", "-s", script, "-o", out, "-j", str(jobs), inputs],
                               capture_output=True, text=True, env=env)
            took = time.perf_counter() - start
            after = resource.getrusage(resource.RUSAGE_CHILDREN)
            cpu = (after.ru_utime - before.ru_utime) + (after.ru_stime - before.ru_stime)
            # The processor time tells a busy machine from a slow batch.
            print("  %d process%s at once: %.2f s wall (%.1f ms per drawing), %.2f s processor, load %.1f, exit %d" %
                  (jobs, "" if jobs == 1 else "es", took, 1000 * took / count, cpu, os.getloadavg()[0],
                   r.returncode))


main()
