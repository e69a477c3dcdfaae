"""Batch runs of the corvane program: 200 drawings made by ezdxf, one of them
broken, run through one script; the results read back with ezdxf.

usage: batch_test.py PATH/TO/corvane"""
import hashlib
import os

import ezdxf

import corvane_case

SCRIPT = "PLDF\nALL\n\n8\n"


def digest(path):
    with open(path, "rb") as f:
        return hashlib.sha256(f.read()).hexdigest()


class Batch(corvane_case.ProgramCase):
    pagetimes = 0
    timeout = 600

    def setUp(self):
        super().setUp()
        self.write("divide.scr", SCRIPT)

    def make_drawings(self, folder, count, broken):
        os.makedirs(folder)
        for i in range(count):
            name = os.path.join(folder, "d%03d.dxf" % i)
            if i == broken:
                with open(name, "w") as f:
                    f.write("  0\nSECTION\n  2\nENTITIES\n  0\nLINE\n 10\nnot a number\n")
                continue
            doc = ezdxf.new("R2010")
            doc.modelspace().add_line((0, 0), (10 + i, 0))
            doc.saveas(name)

    def test_two_hundred_drawings_with_one_broken(self):
        inputs = self.path("in")
        self.make_drawings(inputs, 200, broken=137)
        before = {n: digest(os.path.join(inputs, n)) for n in os.listdir(inputs)}
        r = self.corvane("batch", "-s", self.path("divide.scr"), "-o", self.path("out"), "-j", "2", inputs)
        self.assertEqual(r.returncode, 1, r.stdout + r.stderr)
        self.assertEqual(r.stderr, "", "no progress bar off a terminal")
        self.assertIn("Batch: 200 drawings, 199 done, 1 failed", r.stdout)
        failed = [line for line in r.stdout.splitlines() if line.startswith("  ")]
        self.assertEqual(len(failed), 1, r.stdout)
        self.assertIn("d137.dxf: ", failed[0])
        self.assertIn("line 8", failed[0], "the reason is the drawing's own error message")
        results = sorted(n for n in os.listdir(self.path("out")) if n.endswith(".dxf"))
        self.assertEqual(len(results), 199)
        self.assertNotIn("d137.dxf", results)
        with open(self.path("out", "summary.txt")) as f:
            self.assertEqual(f.read(), r.stdout)
        # Each result holds its source's line and the polyline dividing it.
        for i in (0, 199):
            msp = ezdxf.readfile(self.path("out", "d%03d.dxf" % i)).modelspace()
            pl = msp.query("LWPOLYLINE")
            self.assertEqual(len(pl), 1)
            self.assertAlmostEqual(list(pl[0].get_points("xy"))[-1][0], 10 + i)
        with open(self.path("out", "d000.log"), encoding="utf-8") as f:
            self.assertIn("Processed <1 > curve(s) OK.", f.read())
        self.assertEqual(before, {n: digest(os.path.join(inputs, n)) for n in os.listdir(inputs)})
        with open(self.path("settings.reg")) as f:
            self.assertIn('"pagetimes"=dword:00000000', f.read(), "children count no loads of the user's")

    def test_files_and_folders_and_refusals(self):
        self.make_drawings(self.path("a"), 2, broken=-1)
        r = self.corvane("batch", "-s", self.path("divide.scr"), "-o", self.path("out"),
                         self.path("a", "d001.dxf"))
        self.assertEqual(r.returncode, 0, r.stdout + r.stderr)
        self.assertEqual(os.listdir(self.path("out")).count("d001.dxf"), 1)
        self.make_drawings(self.path("b"), 1, broken=-1)
        refusals = [
            (["-o", self.path("out"), self.path("a"), self.path("b")], "same result d000.dxf"),
            (["-o", self.path("a"), self.path("a")], "would overwrite it"),
            (["-o", self.path("out"), self.path("missing")], "no such drawing file or folder"),
            (["-o", self.path("out"), "-j", "0", self.path("a")], "-j needs"),
        ]
        for args, words in refusals:
            r = self.corvane("batch", "-s", self.path("divide.scr"), *args)
            self.assertEqual(r.returncode, 2, args)
            self.assertIn(words, r.stderr)
        r = self.corvane("batch", "-s", self.path("missing.scr"), "-o", self.path("out"), self.path("a"))
        self.assertEqual(r.returncode, 1)
        self.assertIn("no such script file", r.stderr)


if __name__ == "__main__":
    corvane_case.main()
