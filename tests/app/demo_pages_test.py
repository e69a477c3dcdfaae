"""The demonstration pages after a build: eleven pages, each showing the
sample script as it stands in resources/demo and two pictures that decode
and show a drawing, the after picture differing from the before one.

usage: demo_pages_test.py BUILT_PAGES_DIR SOURCE_DIR"""
import html
import os
import re
import struct
import sys
import unittest
import zlib

PAGES = None
SOURCES = None


def decode_png(path):
    """Width, height and the filtered scanlines of an 8-bit, non-interlaced PNG,
    with its chunk checksums, data size and filter kinds checked (unfiltering
    in Python would take a minute for the eleven pages)."""
    with open(path, "rb") as f:
        data = f.read()
    if data[:8] != b"\x89PNG\r\n\x1a\n":
        raise ValueError("not a PNG")
    pos, idat, header = 8, b"", None
    while pos < len(data):
        length, kind = struct.unpack(">I4s", data[pos:pos + 8])
        body = data[pos + 8:pos + 8 + length]
        if zlib.crc32(kind + body) != struct.unpack(">I", data[pos + 8 + length:pos + 12 + length])[0]:
            raise ValueError("bad checksum in " + kind.decode())
        if kind == b"IHDR":
            header = struct.unpack(">IIBBBBB", body)
        elif kind == b"IDAT":
            idat += body
        pos += 12 + length
    width, height, depth, colour, _, _, interlace = header
    if depth != 8 or interlace:
        raise ValueError("unexpected PNG form")
    stride = width * {0: 1, 2: 3, 4: 2, 6: 4}[colour] + 1
    raw = zlib.decompress(idat)
    if len(raw) != height * stride:
        raise ValueError("pixel data of the wrong size")
    rows = [raw[y * stride:(y + 1) * stride] for y in range(height)]
    if any(row[0] > 4 for row in rows):
        raise ValueError("unknown scanline filter")
    return width, height, rows


class DemoPages(unittest.TestCase):
    def test_every_page_shows_its_script_and_two_drawn_pictures(self):
        for n in range(1, 12):
            with self.subTest(page=n):
                page = os.path.join(PAGES, "demo%d.html" % n)
                with open(page, encoding="utf-8") as f:
                    text = f.read()
                with open(os.path.join(SOURCES, "demo%d.scr" % n), encoding="utf-8") as f:
                    script = f.read()
                shown = re.search(r"<pre>(.*?)</pre>", text, re.S).group(1)
                self.assertEqual(html.unescape(shown), script, "the page shows the script it was drawn from")
                pictures = re.findall(r'<img src="([^"]+)"', text)
                self.assertEqual(pictures, ["demo%d-before.png" % n, "demo%d-after.png" % n])
                decoded = [decode_png(os.path.join(PAGES, p)) for p in pictures]
                for width, height, rows in decoded:
                    self.assertGreater(width * height, 0)
                    self.assertGreater(len(set(rows)), 10, "the picture shows a drawing, not a blank")
                self.assertNotEqual(decoded[0][2], decoded[1][2], "the script changed the drawing")


if __name__ == "__main__":
    PAGES, SOURCES = os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2])
    unittest.main(argv=[sys.argv[0]] + sys.argv[3:], verbosity=2)
