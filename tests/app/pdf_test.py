"""corvane --pdf: the page's paper size and orientation read back by pdfinfo,
the text by pdftotext, and the scale and placement measured on the page drawn
by pdftoppm at 72 dpi (one pixel a point).

usage: pdf_test.py PATH/TO/corvane"""
import os
import re
import subprocess

import ezdxf
import numpy

import corvane_case

MM = 72 / 25.4  # points per millimetre


class Pdf(corvane_case.ProgramCase):
    def setUp(self):
        super().setUp()
        doc = ezdxf.new("R2010")
        msp = doc.modelspace()
        msp.add_line((0, 0), (100, 0))    # 100 units across
        msp.add_line((0, 0), (0, 50))     # 50 units up
        msp.add_text("PLOTMARK", dxfattribs={"insert": (10, 10), "height": 8})
        doc.saveas(self.path("in.dxf"))

    def plot(self, *options, script=""):
        out = self.path("sub/plot.pdf")
        r = self.corvane(self.path("in.dxf"), "-c", script, "--pdf", out, *options, "--no-pages")
        self.assertEqual(r.returncode, 0, r.stdout + r.stderr)
        self.assertEqual(os.listdir(self.path("sub")), ["plot.pdf"], "nothing is left aside")
        return out

    def page_size(self, pdf):
        info = subprocess.run(["pdfinfo", pdf], capture_output=True, text=True, check=True).stdout
        self.assertRegex(info, r"Pages:\s+1\n")
        w, h = re.search(r"Page size:\s+([\d.]+) x ([\d.]+) pts", info).groups()
        return float(w), float(h)

    def ink(self, pdf):
        """Bounding box (left, top, right, bottom) of the dark pixels at 72 dpi."""
        subprocess.run(["pdftoppm", "-r", "72", "-gray", "-singlefile", pdf, self.path("page")], check=True)
        with open(self.path("page.pgm"), "rb") as f:
            data = f.read()
        magic, w, h, maxval, pixels = re.match(rb"(P5)\s+(\d+)\s+(\d+)\s+(\d+)\s(.*)", data, re.S).groups()
        img = numpy.frombuffer(pixels, dtype=numpy.uint8)[: int(w) * int(h)].reshape(int(h), int(w))
        ys, xs = numpy.nonzero(img < 128)
        self.assertTrue(len(xs), "something is drawn")
        return xs.min(), ys.min(), xs.max(), ys.max()

    def test_default_is_a4_portrait_fitted_inside_the_margins(self):
        pdf = self.plot()
        w, h = self.page_size(pdf)
        self.assertAlmostEqual(w, 210 * MM, places=1)
        self.assertAlmostEqual(h, 297 * MM, places=1)
        left, top, right, bottom = self.ink(pdf)
        # 100 units across fill the 190 mm between the margins.
        self.assertAlmostEqual((right - left) / MM, 190, delta=1.5)
        self.assertAlmostEqual(left / MM, 10, delta=1)
        text = subprocess.run(["pdftotext", pdf, "-"], capture_output=True, text=True, check=True).stdout
        self.assertIn("PLOTMARK", text)

    def test_landscape_a3_at_a_scale_centres_the_extents(self):
        pdf = self.plot("--paper", "a3", "--landscape", "--scale", "1:1")
        w, h = self.page_size(pdf)
        self.assertAlmostEqual(w, 420 * MM, places=1)
        self.assertAlmostEqual(h, 297 * MM, places=1)
        left, top, right, bottom = self.ink(pdf)
        self.assertAlmostEqual((right - left) / MM, 100, delta=1)  # one unit one millimetre
        self.assertAlmostEqual((bottom - top) / MM, 50, delta=1)
        self.assertAlmostEqual((left + right) / 2 / MM, 210, delta=1)

    def test_the_view_plotted_is_the_one_zoom_left_at_its_scale(self):
        # The view on the lower-left corner, 20 units high: at 2:1 only that window is drawn.
        pdf = self.plot("--plot-view", "--scale", "2:1", "--paper", "100x80", script="ZOOM C 0,0 20")
        left, top, right, bottom = self.ink(pdf)
        self.assertAlmostEqual((bottom - top) / MM, 20, delta=1)  # the upright line, clipped to the window
        self.assertLess((right - left) / MM, 60)                   # the long line clipped too

    def test_bad_paper_and_scale_are_refused_before_anything_runs(self):
        for options in (["--paper", "A9"], ["--scale", "1:0"], ["--scale", "big"]):
            r = self.corvane(self.path("in.dxf"), "-c", "", "--pdf", self.path("x.pdf"), *options)
            self.assertEqual(r.returncode, 2, options)
            self.assertFalse(os.path.exists(self.path("x.pdf")))
        r = self.corvane(self.path("in.dxf"), "-c", "", "--landscape")
        self.assertIn("go with --pdf", r.stderr)


if __name__ == "__main__":
    corvane_case.main()
