"""U, UNDO and REDO end to end: scripts run by the corvane program, the saved
drawing read back with ezdxf and compared with the state the history implies.

usage: undo_test.py PATH/TO/corvane"""
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

    SQUARE = ("LWPOLYLINE", ((0, 0), (10, 0), (10, 10), (0, 10)))

    def test_commands_of_the_host_and_the_plugin_are_undone_and_redone_whole(self):
        out, doc = self.run_script(
            "ZOOM C 20,5 100\n"
            "linkLineAuto 10,5 27,5\n"          # a connector from A's right side to B's left side
            "MOVE W 26,1 34,9\n\n0,0 0,10\n"   # B up: the connector follows by its reactor
            "MOVE C 4,-11 6,-9\n\n0,0 0,-5\n"   # the line down
            "ERASE C 4,-16 6,-14\n\n"
            "U\nUNDO 2\nREDO\n"                 # erase undone; both moves undone, then redone
            "MOVE W 26,11 34,19\n\n0,0 5,0\n")   # B right: the reactor still follows it
        self.assertIn("Command: U\nERASE\n", out)
        self.assertIn("<1>: 2\nMOVE MOVE\nCommand: REDO\nMOVE MOVE\n", out)
        self.assertEqual(self.state(doc), sorted([
            self.SQUARE,
            ("CIRCLE", ((35, 15),)),
            ("LINE", ((0, -15), (10, -15))),
            ("SPLINE", ((10, 5), (32, 15))),
        ]))

    def test_undoing_the_plugin_command_takes_its_connector_and_reactor_away(self):
        out, doc = self.run_script("ZOOM C 20,5 100\nlinkLineAuto 10,5 27,5\nU\n"
                                   "MOVE W 26,1 34,9\n\n0,0 0,10\n")
        self.assertIn("Command: U\nZORL_LINKLINEAUTO\n", out)
        self.assertEqual(self.state(doc), sorted([self.SQUARE, ("CIRCLE", ((30, 15),)),
                                                  ("LINE", ((0, -10), (10, -10)))]))
        self.assertNotIn("ZORL_DICT", [name for name, _ in doc.rootdict.items()])

    def test_groups_marks_back_and_the_start_of_the_history(self):
        out, doc = self.run_script(
            "U\n"                                                   # nothing to undo yet
            "UNDO BE\nMOVE C 4,-11 6,-9\n\n0,0 0,-5\nCOPY C 4,-16 6,-14\n\n0,0 0,-5\n\nUNDO E\n"
            "UNDO M\nERASE C 26,4 34,6\n\nMOVE C 4,-16 6,-14\n\n0,0 1,0\n"
            "UNDO B\n"                                              # back to the mark: B and the line return
            "UNDO 5\n"                                              # the group is one step; then nothing is left
            "REDO\n"                                                # the group again
            "COPY C 4,-21 6,-19\n\n0,0 0,-1\n\nREDO\n")             # a command in between: nothing to redo
        self.assertIn("Command: U\nEverything has been undone\n", out)
        self.assertIn("<1>: B\nMOVE ERASE\n", out)
        self.assertIn("<1>: 5\nGROUP\nEverything has been undone\n", out)
        self.assertIn("Command: REDO\nGROUP\n", out)
        self.assertTrue(out.rstrip().endswith("Command: REDO\nNothing to redo."), out[-200:])
        self.assertEqual(self.state(doc), sorted([
            self.SQUARE,
            ("CIRCLE", ((30, 5),)),
            ("LINE", ((0, -15), (10, -15))),
            ("LINE", ((0, -20), (10, -20))),
            ("LINE", ((0, -21), (10, -21))),
        ]))
        handles = [e.dxf.handle for e in doc.entitydb.values()]
        self.assertEqual(len(handles), len(set(handles)), "handles of undone objects are not given twice")

    def test_back_without_a_mark_asks_first(self):
        out, doc = self.run_script("ERASE C 26,4 34,6\n\nUNDO B N\nUNDO B Y\n")
        self.assertIn("This will undo everything. OK? <Y>: N\nCommand: UNDO", out)
        self.assertIn("OK? <Y>: Y\nERASE\nEverything has been undone\n", out)
        self.assertIn(("CIRCLE", ((30, 5),)), self.state(doc))


if __name__ == "__main__":
    corvane_case.main()
