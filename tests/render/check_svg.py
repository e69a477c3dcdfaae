"""Renders a small drawing to SVG and PDF and checks the SVG with an XML parser."""
import os
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ET

SVG = "{http://www.w3.org/2000/svg}"


def main(sample_exe):
    with tempfile.TemporaryDirectory() as tmp:
        svg, pdf = os.path.join(tmp, "d.svg"), os.path.join(tmp, "d.pdf")
        subprocess.run([sample_exe, svg, pdf], check=True)
        root = ET.parse(svg).getroot()
        assert root.tag == SVG + "svg", root.tag
        assert root.get("width").startswith("640") and root.get("height").startswith("400"), root.attrib
        paths = [p for p in root.iter(SVG + "path") if p.get("d")]
        # The line and the arc at least; text glyphs may add more.
        assert len(paths) >= 2, len(paths)
        with open(pdf, "rb") as f:
            assert f.read(5) == b"%PDF-"
        assert not [n for n in os.listdir(tmp) if n.endswith(".part")]
    print("svg ok:", len(paths), "paths")


if __name__ == "__main__":
    main(sys.argv[1])
