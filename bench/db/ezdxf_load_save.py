"""Reference figures for the DXF benchmark: ezdxf loads and saves the file.

usage: ezdxf_load_save.py IN.dxf OUT.dxf
"""
import resource
import sys
import time

import ezdxf

t0, c0 = time.perf_counter(), time.process_time()
doc = ezdxf.readfile(sys.argv[1])
t1, c1 = time.perf_counter(), time.process_time()
doc.saveas(sys.argv[2])
t2, c2 = time.perf_counter(), time.process_time()
peak = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss / 1024.0
print(f"ezdxf load {t1 - t0:.3f} s wall / {c1 - c0:.3f} s cpu, save {t2 - t1:.3f} / {c2 - c1:.3f}, "
      f"load+save {t2 - t0:.3f} / {c2 - c0:.3f}, peak {peak:.1f} MB")
