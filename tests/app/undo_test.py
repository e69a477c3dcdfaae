"""U, UNDO and REDO end to end: scripts run by the corvane program, the saved
drawing read back with ezdxf and compared with the state the history implies.

usage: undo_test.py PATH/TO/corvane"""
import os

import ezdxf

import corvane_case


class Undo(corvane_case.ProgramCase):
    def setUp(self):
        super().setUp()
        doc = ezdxf.new("R2010")
        msp = doc.modelspace()
        msp.add_lwpolyline([(0, 0), (10, 0), (10, 10), (0, 10)], close=True)  # shape A
        msp.add_circle((30, 5), 3)  # shape B
        msp.add_line((0, -10), (10, -10))
        doc.saveas(self.path("in.dxf"))

    def run_script(self, script):
        if os.path.exists(self.path("out.dxf")):
            os.remove(self.path("out.dxf"))  # left by the case before
        r = self.corvane(self.path("in.dxf"), "-s", self.write("s.scr", script), "-o", self.path("out.dxf"), "--no-pages")
        self.assertEqual(r.returncode, 0, r.stdout + r.stderr)
        doc = ezdxf.readfile(self.path("out.dxf"))
        auditor = doc.audit()
        self.assertEqual((len(auditor.errors), len(auditor.fixes)), (0, 0), "the saved drawing is sound")
        return r.stdout, doc

    def state(self, doc):
        """The drawing as (kind, defining points) pairs, sorted."""
        out = []
        for e in doc.modelspace():
            kind = e.dxftype()
            if kind == "LINE":
                pts = [e.dxf.start, e.dxf.end]
            elif kind == "CIRCLE":
                pts = [e.dxf.center]
            elif kind == "SPLINE":
                pts = [e.fit_points[0], e.fit_points[-1]]
            else:
                pts = [(x, y) for x, y, *_ in e.get_points()]
            out.append((kind, tuple(tuple(round(c, 9) for c in tuple(p)[:2]) for p in pts)))
        return sorted(out)

    def test_histories(self):
        square, circle = ("LWPOLYLINE", ((0, 0), (10, 0), (10, 10), (0, 10))), ("CIRCLE", ((30, 5),))
        line = lambda y: ("LINE", ((0, y), (10, y)))  # noqa: E731
        cases = [  # what is checked, the script, parts of the transcript, the drawing saved, any further check
            ("commands of the host and the plug-in are undone and redone whole",
             "ZOOM C 20,5 100\n"
             "linkLineAuto 10,5 27,5\n"          # a connector from A's right side to B's left side
             "MOVE W 26,1 34,9\n\n0,0 0,10\n"   # B up: the connector follows by its reactor
             "MOVE C 4,-11 6,-9\n\n0,0 0,-5\n"   # the line down
             "ERASE C 4,-16 6,-14\n\n"
             "U\nUNDO 2\nREDO\n"                 # erase undone; both moves undone, then redone
             "MOVE W 26,11 34,19\n\n0,0 5,0\n",  # B right: the reactor still follows it
             ["Command: U\nERASE\n", "<1>: 2\nMOVE MOVE\nCommand: REDO\nMOVE MOVE\n"],
             [square, ("CIRCLE", ((35, 15),)), line(-15), ("SPLINE", ((10, 5), (32, 15)))], None),
            ("undoing the plug-in's command takes its connector and reactor away",
             "ZOOM C 20,5 100\nlinkLineAuto 10,5 27,5\nU\nMOVE W 26,1 34,9\n\n0,0 0,10\n",
             ["Command: U\nZORL_LINKLINEAUTO\n"], [square, ("CIRCLE", ((30, 15),)), line(-10)],
             lambda out, doc: self.assertNotIn("ZORL_DICT", [name for name, _ in doc.rootdict.items()])),
            ("groups, marks, back and the start of the history",
             "U\n"                                                   # nothing to undo yet
             "UNDO BE\nMOVE C 4,-11 6,-9\n\n0,0 0,-5\nCOPY C 4,-16 6,-14\n\n0,0 0,-5\n\nUNDO E\n"
             "UNDO M\nERASE C 26,4 34,6\n\nMOVE C 4,-16 6,-14\n\n0,0 1,0\n"
             "UNDO B\n"                                              # back to the mark: B and the line return
             "UNDO 5\n"                                              # the group is one step; then nothing is left
             "REDO\n"                                                # the group again
             "COPY C 4,-21 6,-19\n\n0,0 0,-1\n\nU\n"              # the copy undone, then
             "ERASE C 26,4 34,6\n\nREDO\n",                         # a command in between: nothing to redo
             ["Command: U\nEverything has been undone\n", "<1>: B\nMOVE ERASE\n",
              "<1>: 5\nGROUP\nEverything has been undone\n", "Command: REDO\nGROUP\n"],
             [square, line(-15), line(-20)],
             lambda out, doc: self.assertTrue(out.rstrip().endswith("Command: REDO\nNothing to redo."), out[-200:])),
            ("back without a mark asks first", "ERASE C 26,4 34,6\n\nUNDO B N\nUNDO B Y\n",
             ["This will undo everything. OK? <Y>: N\nCommand: UNDO", "OK? <Y>: Y\nERASE\nEverything has been undone\n"],
             [square, circle, line(-10)], None),
        ]
        for what, script, parts, drawing, further in cases:
            with self.subTest(what):
                out, doc = self.run_script(script)
                for part in parts:
                    self.assertIn(part, out)
                self.assertEqual(self.state(doc), sorted(drawing))
                handles = [e.dxf.handle for e in doc.entitydb.values()]
                self.assertEqual(len(handles), len(set(handles)), "handles of undone objects are not given twice")
                if further:
                    further(out, doc)


if __name__ == "__main__":
    corvane_case.main()
