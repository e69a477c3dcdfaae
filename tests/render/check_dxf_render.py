"""Draws a DXF with ezdxf (an independent writer), renders it through our
reader and renderer, and checks the colour found at points of each entity;
the SVG drawn beside the picture is read by an XML parser, the PDF by its magic."""
import math
import os
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ET

import ezdxf
from ezdxf.colors import rgb2int

WIDTH, HEIGHT = 800, 600


def build(path):
    doc = ezdxf.new("R2010")
    doc.header["$PDMODE"] = 35
    doc.header["$PDSIZE"] = 2.0
    doc.layers.add("RED", color=1)
    doc.layers.add("HIDDEN", color=3).off()
    doc.layers.add("ICE", color=5).freeze()
    msp = doc.modelspace()
    msp.add_line((0, 0), (40, 0), dxfattribs={"layer": "RED"})
    # Mirrored arc: OCS centre (-10, 10) is world (10, 10); OCS angles 0..90
    # about -Z run clockwise from (5, 10) to (10, 15), left of the centre.
    msp.add_arc((-10, 10), 5, 0, 90, dxfattribs={"extrusion": (0, 0, -1), "color": 5})
    msp.add_arc((60, 30), 5, 0, 90, dxfattribs={"color": 5})  # the same arc unmirrored: right of its centre
    msp.add_line((50, 40), (65, 40), dxfattribs={"color": 1, "true_color": rgb2int((0, 0, 255))})
    # Bulge 1 from (55, 20) to (61, 20): a counter-clockwise half circle below the chord.
    msp.add_lwpolyline([(55, 20, 0, 0, 1), (61, 20)], format="xyseb", dxfattribs={"color": 3})
    msp.add_lwpolyline([(20, 5, 1.0, 1.0), (30, 5, 1.0, 1.0), (30, 15, 1.0, 1.0)], format="xyse",
                       dxfattribs={"color": 3})
    hatch = msp.add_hatch(color=6)
    hatch.paths.add_polyline_path([(0, 20), (10, 20), (10, 30), (0, 30)], is_closed=True)
    edge = hatch.paths.add_edge_path()
    edge.add_line((25, 20), (15, 20))
    edge.add_arc((20, 20), 5, 0, 180, ccw=False)
    blk = doc.blocks.new("TICK", base_point=(1, 1))
    blk.add_line((1, 1), (5, 1), dxfattribs={"color": 0})
    # TICK nested in PAIR, both by block: the colour passes down two levels.
    doc.blocks.new("PAIR").add_blockref("TICK", (0, 0), dxfattribs={"color": 0})
    msp.add_blockref("PAIR", (35, 25), dxfattribs={"rotation": 90, "xscale": 2, "yscale": 2, "color": 1})
    msp.add_line((0, -5), (40, -5), dxfattribs={"layer": "HIDDEN"})
    msp.add_point((38, 35))
    msp.add_ellipse((10, 40), major_axis=(6, 0), ratio=0.5, dxfattribs={"color": 4})
    # A frozen layer hides its own entities, a block's entities on it, and
    # everything a reference on it shows; layer 0 inside follows the reference.
    msp.add_line((0, -10), (40, -10), dxfattribs={"layer": "ICE"})
    mix = doc.blocks.new("MIX")
    mix.add_line((0, 0), (4, 0))
    mix.add_line((0, 2), (4, 2), dxfattribs={"layer": "ICE"})
    mix.add_line((0, 4), (4, 4), dxfattribs={"layer": "RED"})
    msp.add_blockref("MIX", (45, 0), dxfattribs={"layer": "RED"})
    msp.add_blockref("MIX", (45, 10), dxfattribs={"layer": "ICE"})
    doc.saveas(path)


PROBES = {
    # point: expectation
    "20,0": "red",       # line on layer RED, colour by layer
    "6.46,13.54": "blue",  # on the mirrored arc (OCS angle 45 degrees lands left of the centre)
    "13.54,13.54": "white",  # where an unmirrored arc would be
    "63.54,33.54": "blue",   # the unmirrored arc...
    "56.46,33.54": "white",  # ...not its mirror image
    "57,40": "blue",         # a true colour wins over the index colour
    "58,17": "green",        # the bulge's half circle below its chord
    "58,23": "white",
    "25,5.4": "green",   # inside the wide polyline's band, 1 wide about y = 5
    "25,4.6": "green",
    "25,6.1": "white",   # just beyond it
    "5,25": "magenta",   # inside the solid polyline hatch
    "20,23": "magenta",  # inside the half disc bounded by the clockwise arc
    "20,17": "white",
    "35,28": "red",      # the nested block's line, turned upwards and doubled, colour by block
    "35,31": "red",      # beyond the length it would have undoubled
    "39,25": "white",
    "20,-5": "white",    # layer off
    "39,36": "black",    # PDMODE 35: circle of the point glyph
    "16,40": "cyan",
    "20,-10": "white",   # layer frozen
    "47,0": "red",       # layer 0 in a block takes the reference's layer
    "47,2": "white",     # a block's entity on a frozen layer
    "47,4": "red",
    "47,10": "white",    # a reference on a frozen layer: nothing it holds shows
    "47,14": "white",
}

COLOURS = {
    "red": lambda r, g, b: r > 200 and g < 120 and b < 120,
    "blue": lambda r, g, b: b > 200 and r < 120 and g < 120,
    "green": lambda r, g, b: g > 200 and r < 120 and b < 120,
    "magenta": lambda r, g, b: r > 200 and b > 200 and g < 120,
    "cyan": lambda r, g, b: g > 200 and b > 200 and r < 120,
    "black": lambda r, g, b: r + g + b < 300 and abs(r - g) < 30 and abs(g - b) < 30,
    "white": lambda r, g, b: r + g + b >= 3 * 250,
}


def main(tool):
    with tempfile.TemporaryDirectory() as tmp:
        dxf, png = os.path.join(tmp, "in.dxf"), os.path.join(tmp, "out.png")
        build(dxf)
        out = subprocess.run([tool, dxf, png, str(WIDTH), str(HEIGHT), *PROBES], check=True,
                             capture_output=True, text=True).stdout
        failures = []
        for line in out.splitlines():
            probe, r, g, b = line.split()
            want = PROBES[probe]
            if not COLOURS[want](int(r), int(g), int(b)):
                failures.append(f"{probe}: expected {want}, found rgb({r},{g},{b})")
        assert len(out.splitlines()) == len(PROBES), out
        if failures:
            sys.exit("\n".join(failures))
        svg = "{http://www.w3.org/2000/svg}"
        root = ET.parse(os.path.join(tmp, "out.svg")).getroot()
        assert root.tag == svg + "svg", root.tag
        assert root.get("width").startswith(str(WIDTH)) and root.get("height").startswith(str(HEIGHT)), root.attrib
        paths = [p for p in root.iter(svg + "path") if p.get("d")]
        assert len(paths) >= 11, "each of the eleven entities shown draws a path at least: %d" % len(paths)
        with open(os.path.join(tmp, "out.pdf"), "rb") as f:
            assert f.read(5) == b"%PDF-"
        assert sorted(os.listdir(tmp)) == ["in.dxf", "out.pdf", "out.png", "out.svg"], os.listdir(tmp)
    print("dxf render ok:", len(PROBES), "probes")


if __name__ == "__main__":
    main(sys.argv[1])
