"""The corvane program end to end: runs the built binary on drawings made by
ezdxf and reads the results back with ezdxf.

usage: app_test.py PATH/TO/corvane SAMPLES_DIR"""
import os
import sys

import ezdxf

import corvane_case

SAMPLES = None


class Program(corvane_case.ProgramCase):
    pagetimes = 10  # past the pages shown on the first loads

    def drawing(self, version="R2010"):
        doc = ezdxf.new(version)
        doc.layers.add("Holes")
        msp = doc.modelspace()
        msp.add_line((0, 0), (10, 0))
        msp.add_circle((20, 0), 2, dxfattribs={"layer": "Holes"})
        msp.add_lwpolyline([(0, 5), (10, 5, 1), (10, 10)], format="xyb")
        msp.add_text("note", dxfattribs={"insert": (0, -5), "height": 1})
        path = self.path("in.dxf")
        doc.saveas(path)
        return path

    def assertOneLineFailure(self, result, *words):
        self.assertNotEqual(result.returncode, 0, result.stdout)
        lines = result.stderr.strip().splitlines()
        self.assertEqual(len(lines), 1, result.stderr)
        self.assertTrue(lines[0].startswith("corvane: "), lines[0])
        for w in words:
            self.assertIn(w, lines[0])

    def test_script_erases_and_zooms_and_ezdxf_reads_the_result_and_pictures_are_written(self):
        src = self.drawing()
        script = self.write("s.scr", "; erase the circle by a crossing window, then zoom\n"
                                     "ERASE C 17,-1 23,1\n\nZOOM C 5,5 40\n")
        out, png, svg = self.path("sub/out.dxf"), self.path("p/out.png"), self.path("p/out.svg")
        r = self.corvane(src, "-s", script, "-o", out, "--png", png, "--svg", svg)
        self.assertEqual(r.returncode, 0, r.stderr)
        with open(png, "rb") as f:
            self.assertEqual(f.read(8), b"\x89PNG\r\n\x1a\n")
        with open(svg, encoding="utf-8") as f:
            self.assertIn("<svg", f.read())
        self.assertIn("Command: ERASE\nSelect objects: C\nSpecify first corner: 17,-1\n", r.stdout)
        self.assertIn("1 found\n", r.stdout)
        doc = ezdxf.readfile(out)
        kinds = sorted(e.dxftype() for e in doc.modelspace())
        self.assertEqual(kinds, ["LINE", "LWPOLYLINE", "TEXT"])
        self.assertIn("Holes", [layer.dxf.name for layer in doc.layers])
        active = doc.viewports.get("*Active")[0]
        self.assertAlmostEqual(active.dxf.height, 40)
        self.assertAlmostEqual(active.dxf.center[0], 5)
        self.assertAlmostEqual(active.dxf.center[1], 5)

    def test_header_variables_set_by_a_command_reach_the_file(self):
        src = self.drawing("R2000")
        out = self.path("out.dxf")
        r = self.corvane(src, "-c", "SETVAR PDMODE 35 SETVAR pdsize 0.5 SETVAR CLAYER Holes SETVAR VIEWSIZE", "-o", out)
        self.assertEqual(r.returncode, 0, r.stderr)
        self.assertIn("Enter new value for PDMODE <0>: 35\n", r.stdout)
        self.assertIn("VIEWSIZE = ", r.stdout)
        doc = ezdxf.readfile(out)
        self.assertEqual(doc.dxfversion, "AC1015")
        self.assertEqual(doc.header["$PDMODE"], 35)
        self.assertAlmostEqual(doc.header["$PDSIZE"], 0.5)
        self.assertEqual(doc.header["$CLAYER"], "Holes")
        self.assertEqual(len(list(doc.modelspace())), 4)
        r = self.corvane(src, "-c", "SETVAR PDMODE 5 SETVAR NOSUCH")
        self.assertIn("Invalid value for PDMODE.", r.stdout)
        self.assertIn("Unknown variable name.", r.stdout)

    def test_without_output_nothing_is_written(self):
        src = self.drawing()
        before = os.listdir(self.dir)
        r = self.corvane(src, "-c", "ERASE ALL ")
        self.assertEqual(r.returncode, 0, r.stderr)
        self.assertIn("4 found", r.stdout)
        self.assertEqual(sorted(os.listdir(self.dir)), sorted(before))
        self.assertEqual(len(list(ezdxf.readfile(src).modelspace())), 4)

    def test_failures_give_a_one_line_reason_and_write_nothing(self):
        src = self.drawing()
        out = self.path("out.dxf")
        self.assertOneLineFailure(self.corvane(self.path("missing.dxf"), "-c", "ZOOM E"), "missing.dxf")
        bad = self.write("bad.dxf", "0\nSECTION\n2\nENTITIES\n0\nLINE\n10\nnot-a-number\n")
        self.assertOneLineFailure(self.corvane(bad, "-c", "ZOOM E", "-o", out), "line")
        r = self.corvane(src, "-c", "xyz ZOOM E", "-o", out)
        self.assertOneLineFailure(r, "xyz", "nothing written")
        self.assertIn('Unknown command "XYZ".  Press F1 for help.', r.stdout)
        self.assertIn("Command: ZOOM", r.stdout)  # the rest of the script still runs
        self.assertOneLineFailure(self.corvane(src, "-c", "ERASE ALL", "-o", out), "Select objects:")
        self.assertOneLineFailure(self.corvane(src, "-s", self.path("none.scr")), "none.scr")
        not_text = self.path("bin.scr")
        with open(not_text, "wb") as f:
            f.write(b"ZOOM E\n\xff\xfe\n")
        self.assertOneLineFailure(self.corvane(src, "-s", not_text, "-o", out), "bin.scr line 2")
        self.assertFalse(os.path.exists(out))

    def test_frozen_layers_are_neither_picked_nor_selected(self):
        doc = ezdxf.new("R2010")
        doc.layers.add("Frozen").freeze()
        doc.layers.add("Locked").lock()
        msp = doc.modelspace()
        msp.add_line((0, 0), (1, 0))
        msp.add_line((0, 1), (1, 1), dxfattribs={"layer": "Frozen"})
        msp.add_line((0, 2), (1, 2), dxfattribs={"layer": "Locked"})
        doc.blocks.new("ICE").add_line((0, 0), (1, 0), dxfattribs={"layer": "Frozen"})
        doc.blocks.new("ZERO").add_line((0, 0), (1, 0))
        msp.add_blockref("ICE", (10, 0))
        msp.add_blockref("ZERO", (20, 0), dxfattribs={"layer": "Frozen"})
        msp.add_blockref("ZERO", (30, 0))
        src, out = self.path("layers.dxf"), self.path("out.dxf")
        doc.saveas(src)
        cases = [  # answer at "Select objects:", how many it finds
            ("ALL", 3),  # the line on 0 and both references on layer 0
            ("W -1,-1 2,1.5", 1),
            ("C 0.5,-0.5 0.6,1.5", 1),
            ("10.5,0", 0),  # a reference that shows only a frozen layer
            ("W 9,-1 12,1", 0),
            ("W 19,-1 22,1", 0),  # layer 0 inside a reference on a frozen layer
            ("W 29,-1 32,1", 1),
        ]
        for answer, found in cases:
            with self.subTest(answer=answer):
                r = self.corvane(src, "-c", "ERASE " + answer + "  ")
                self.assertIn(answer.split(" ")[-1] + "\n" + str(found) + " found\n", r.stdout)
        r = self.corvane(src, "-c", "ERASE ALL ", "-o", out)
        self.assertEqual(r.returncode, 0, r.stderr)
        self.assertEqual(sorted(e.dxf.layer for e in ezdxf.readfile(out).modelspace()),
                         ["Frozen", "Frozen", "Locked"])

    def test_block_references_are_picked_and_windowed_by_their_placed_content(self):
        doc = ezdxf.new("R2010")
        block = doc.blocks.new("B", base_point=(1, 0))
        block.add_circle((1, 0), 1)
        msp = doc.modelspace()
        msp.add_blockref("B", (50, 50), dxfattribs={"xscale": 2, "yscale": 2, "rotation": 90})
        msp.add_line((0, 0), (1, 0))
        src, out = self.path("block.dxf"), self.path("out.dxf")
        doc.saveas(src)
        # Placed content: a circle of radius 2 around 50,50.
        r = self.corvane(src, "-c", "ERASE W 49,49 53,53  ERASE 52,50 ", "-o", out)
        self.assertEqual(r.returncode, 0, r.stderr)
        self.assertIn("Specify opposite corner: 53,53\n0 found\n", r.stdout)
        self.assertIn("Select objects: 52,50\n1 found\n", r.stdout)
        self.assertEqual([e.dxftype() for e in ezdxf.readfile(out).modelspace()], ["LINE"])
        r = self.corvane(src, "-c", "ERASE W 47.9,47.9 52.1,52.1 ", "-o", out)
        self.assertIn("1 found", r.stdout)

    def test_the_view_comes_from_the_active_viewport_and_an_unmoved_view_saves_unchanged(self):
        doc = ezdxf.new("R2010")
        doc.modelspace().add_line((0, 0), (100, 0))
        active = doc.viewports.get("*Active")[0]
        active.dxf.center = (7, 8)
        active.dxf.aspect_ratio = 1.3  # not the program's window
        active.dxf.height = 40
        src = self.path("untouched.dxf")
        doc.saveas(src)
        for run in (["-c", ""], ["-c", "SETVAR VIEWSIZE SETVAR VIEWCTR"]):
            out = self.path("untouched-out.dxf")
            r = self.corvane(src, *run, "-o", out)
            self.assertEqual(r.returncode, 0, r.stderr)
            with open(src, "rb") as a, open(out, "rb") as b:
                self.assertEqual(a.read(), b.read(), run)
        self.assertIn("VIEWSIZE = 40 (read only)\n", r.stdout)
        self.assertIn("VIEWCTR = 7,8,0 (read only)\n", r.stdout)
        out = self.path("zoomed.dxf")
        self.assertEqual(self.corvane(src, "-c", "ZOOM C 0,0 10", "-o", out).returncode, 0)
        zoomed = ezdxf.readfile(out).viewports.get("*Active")[0]
        self.assertAlmostEqual(zoomed.dxf.height, 10)
        self.assertAlmostEqual(zoomed.dxf.aspect_ratio, 1.6)  # a moved view takes the window's shape

    def test_answers_from_the_terminal(self):
        src = self.drawing()
        out = self.path("out.dxf")
        r = self.corvane(src, "-o", out, stdin="ERASE\n0,0\n\n")
        self.assertEqual(r.returncode, 0, r.stderr)
        # Answers from a pipe are repeated in the transcript, as from a script.
        self.assertIn("Command: ERASE\nSelect objects: 0,0\n1 found\n", r.stdout)
        self.assertEqual(sorted(e.dxftype() for e in ezdxf.readfile(out).modelspace()), ["CIRCLE", "LWPOLYLINE", "TEXT"])

    def test_commands_listing(self):
        r = self.corvane("commands")
        self.assertEqual(r.returncode, 0, r.stderr)
        lines = r.stdout.splitlines()
        self.assertEqual(len(lines), 53)
        self.assertEqual(lines[0], "ZORL_PLYH PLYH")
        self.assertEqual(lines[12], "ZORL_PLDevide PLDF")
        self.assertEqual(lines[-1], "ZORL_DEMO11 ZORL_DEMO11")
        # Listing loads the plug-in into a scratch copy of the settings: the load counter stays.
        self.assertEqual(self.corvane("settings", "get", "pagetimes").stdout, "10\n")

    def test_menu_in_both_languages(self):
        r = self.corvane("menu")
        self.assertEqual(r.returncode, 0, r.stderr)
        self.assertTrue(r.stdout.startswith("Corvane (CORVANE.POP1)\n"), r.stdout[:80])
        self.assertEqual(r.stdout.count("[^C^C_ZORL_"), 53)
        self.assertEqual(self.corvane("settings", "set", "ChineseVersion", "1").returncode, 0)
        r = self.corvane("menu")
        self.assertIn("等分多段线  [^C^C_ZORL_PLDevide]", r.stdout)

    def test_menu_comes_from_location(self):
        folder = os.path.join(self.dir, "plugin")
        os.makedirs(folder)
        with open(os.path.join(folder, "Corvane_eng.cuix"), "w", encoding="utf-8") as f:
            f.write("CORVANE-MENU 1\nGROUP CORVANE\nPOPUP POP1 Mine\nITEM Only | ^C^C_ZORL_PLYH\n")
        self.corvane("settings", "set", "Location", folder)
        r = self.corvane("menu")
        self.assertEqual(r.stdout, "Mine (CORVANE.POP1)\n  Only  [^C^C_ZORL_PLYH]\n")

    def test_settings_and_a_damaged_settings_file(self):
        self.assertEqual(self.corvane("settings", "set", "formula_ListIndex", "42").returncode, 0)
        self.assertEqual(self.corvane("settings", "set", "Location", "/opt/my corvane/").returncode, 0)
        self.assertEqual(self.corvane("settings", "set", "Big", "4294967296").returncode, 0)  # too big: text
        self.assertEqual(self.corvane("settings", "get", "FORMULA_LISTINDEX").stdout, "42\n")
        listing = self.corvane("settings", "list").stdout
        self.assertIn("formula_ListIndex=42\n", listing)
        self.assertIn("Location=/opt/my corvane/\n", listing)
        with open(self.path("settings.reg"), encoding="utf-8") as f:
            text = f.read()
        self.assertIn('"formula_ListIndex"=dword:0000002a', text)
        self.assertIn('"Big"="4294967296"', text)
        self.assertOneLineFailure(self.corvane("settings", "get", "NoSuchValue"), "NoSuchValue")
        # A damaged file is kept aside and a fresh one written.
        self.write("settings.reg", "this is not a settings file\n")
        r = self.corvane("settings", "set", "pagetimes", "3")
        self.assertEqual(r.returncode, 0, r.stderr)
        self.assertIn("kept as", r.stderr)
        with open(self.path("settings.reg.damaged"), encoding="utf-8") as f:
            self.assertEqual(f.read(), "this is not a settings file\n")
        self.assertEqual(self.corvane("settings", "get", "pagetimes").stdout, "3\n")

    def test_usage(self):
        r = self.corvane("--help")
        self.assertEqual(r.returncode, 0)
        self.assertIn("corvane DRAWING.dxf [-s SCRIPT | -c TEXT]", r.stdout)
        for args in ([], ["a.dxf", "-s"], ["a.dxf", "b.dxf"], ["a.dxf", "--bogus"], ["a.dxf", "-s", "x", "-c", "y"],
                     ["settings", "get"]):
            r = self.corvane(*args)
            self.assertEqual(r.returncode, 2, args)
            self.assertEqual(len(r.stderr.strip().splitlines()), 1, args)

    def test_the_sample_demo_runs(self):
        out = self.path("demo-out.dxf")
        r = self.corvane(os.path.join(SAMPLES, "demo.dxf"), "-s", os.path.join(SAMPLES, "demo.scr"), "-o", out)
        self.assertEqual(r.returncode, 0, r.stderr + r.stdout)
        before = len(list(ezdxf.readfile(os.path.join(SAMPLES, "demo.dxf")).modelspace()))
        self.assertGreater(len(list(ezdxf.readfile(out).modelspace())), before)


if __name__ == "__main__":
    SAMPLES = os.path.abspath(sys.argv.pop(2))
    corvane_case.main()
