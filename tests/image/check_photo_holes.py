"""txwk on a real photograph through the corvane program: the circles of the
saved drawing, read with ezdxf, against the hole net computed here with numpy
from the decoded pixels (tone formulas, cells, darkness, placement).

usage: check_photo_holes.py CORVANE PICTURE_PIXELS PHOTO WORK_DIR"""
import os
import subprocess
import sys

import ezdxf
import numpy as np

corvane, pixels_tool, photo, work = sys.argv[1:5]
os.makedirs(work, exist_ok=True)
failures = []


def expect(condition, what):
    if not condition:
        failures.append(what)


def read_ppm(path):
    with open(path, "rb") as f:
        data = f.read()
    fields = data.split(maxsplit=4)
    assert fields[0] == b"P6"
    w, h = int(fields[1]), int(fields[2])
    return np.frombuffer(fields[4][: w * h * 3], dtype=np.uint8).reshape(h, w, 3)


def tone(rgb, contrast, brightness):
    k = contrast / 50 * 1.5 if contrast >= 50 else contrast + 0.5
    m = brightness / 100 if brightness < 50 else brightness / 50
    v = np.clip(np.trunc((rgb.astype(np.float64) - 128) * k + 128), 0, 255)
    return np.clip(np.trunc(v * m), 0, 255)


def expected_holes(rgb, contrast, brightness, rows, size, invert, origin, height):
    v = tone(rgb, contrast, brightness)
    h_px, w_px = v.shape[:2]
    rows = min(rows, h_px)
    c = max(1, h_px // rows)
    nr, nc = h_px // c, w_px // c
    sums = v[: nr * c, : nc * c].sum(axis=2).reshape(nr, c, nc, c).sum(axis=(1, 3))
    d = 1 - sums / (c * c * 255 * 3)
    if invert:
        d = np.abs(d - 1)
    s = height / h_px
    holes = []
    for r in range(nr):
        for col in range(nc):
            extent = d[r, col] * c * s * size * 3 / 100
            if extent > 0:
                holes.append((origin[0] + (col * c + c / 2) * s, origin[1] - (r * c + c / 2) * s, extent / 2))
    return holes


ppm = os.path.join(work, "photo.ppm")
subprocess.run([pixels_tool, photo, ppm], check=True)
rgb = read_ppm(ppm)

settings = os.path.join(work, "settings.reg")
with open(settings, "w", encoding="utf-8") as f:
    f.write('Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\Software\\Brightvale\\Corvane]\n'
            '"pagetimes"=dword:0000000a\n')
env = dict(os.environ, CORVANE_SETTINGS=settings)
env.pop("DISPLAY", None)
empty = os.path.join(work, "empty.dxf")
ezdxf.new("R2010").saveas(empty)

cases = [  # contrast, brightness, rows, size, invert
    (50, 50, 40, 30, False),
    (70, 45, 63, 25, True),
]
for contrast, brightness, rows, size, invert in cases:
    name = f"c{contrast}-b{brightness}-r{rows}"
    out = os.path.join(work, name + ".dxf")
    script = os.path.join(work, name + ".scr")
    with open(script, "w", encoding="utf-8") as f:
        f.write(f"txwk\n{photo}\n{contrast}\n{brightness}\n{rows}\n{size}\n{'Yes' if invert else 'No'}\n"
                f"Circle\n{os.path.join(work, name + '-preview.png')}\n10,300\n250\n")
    run = subprocess.run([corvane, empty, "-s", script, "-o", out], env=env, capture_output=True, text=True,
                         timeout=300)
    expect(run.returncode == 0, f"{name}: the program exits 0 ({run.stdout[-500:]}{run.stderr[-500:]})")
    want = expected_holes(rgb, contrast, brightness, rows, size, invert, (10, 300), 250)
    got = sorted((round(e.dxf.center[0], 6), round(-e.dxf.center[1], 6), e.dxf.radius)
                 for e in ezdxf.readfile(out).modelspace().query("CIRCLE"))
    want = sorted((round(x, 6), round(-y, 6), r) for x, y, r in want)
    expect(len(got) == len(want) and len(want) > 500, f"{name}: {len(got)} holes drawn, {len(want)} computed")
    worst = max((max(abs(a[0] - b[0]), abs(a[1] - b[1]), abs(a[2] - b[2])) for a, b in zip(got, want)), default=1)
    expect(worst < 1e-6, f"{name}: positions and radii agree (worst difference {worst})")
    expect(f"\n{len(want)} holes drawn." in run.stdout, f"{name}: the count line")
    print(f"{name}: {len(got)} holes, worst difference from the independent computation {worst:.2e}")

if failures:
    print("photo hole net check failed: " + "; ".join(failures))
    sys.exit(1)
print(f"photo hole net check: {len(cases)} passed, 0 failed")
