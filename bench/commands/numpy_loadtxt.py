"""Reference figure for the coordinate file benchmark: numpy.loadtxt of the
same comma-separated file (blank lines skipped; no blocks, no polylines).

usage: numpy_loadtxt.py POINTS.txt
"""
import sys
import time

import numpy as np

t0, c0 = time.perf_counter(), time.process_time()
xyz = np.loadtxt(sys.argv[1], delimiter=",")
t, c = time.perf_counter() - t0, time.process_time() - c0
print(f"numpy.loadtxt of the same file: {t:.3f} s ({c:.3f} s processor), {len(xyz)} points")
