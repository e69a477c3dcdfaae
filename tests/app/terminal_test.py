"""The corvane program at a terminal (a pseudo-terminal): answers are edited
with the cursor keys and earlier lines come back from the history; the drawing
saved at the end shows which commands ran.

usage: terminal_test.py PATH/TO/corvane"""
import os
import pty
import select
import subprocess
import time

import ezdxf

import corvane_case

LEFT, UP = "\x1b[D", "\x1b[A"


class Terminal(corvane_case.ProgramCase):
    def setUp(self):
        super().setUp()
        self.env.update(TERM="xterm", HOME=self.dir)
        doc = ezdxf.new("R2010")
        for x in (0, 10, 20):
            doc.modelspace().add_circle((x, 0), 1)
        doc.saveas(self.path("in.dxf"))

    def read(self, until, timeout=30):
        """Reads the terminal until `until` has come and the output has settled."""
        deadline = time.time() + timeout
        seen = False
        while time.time() < deadline:
            ready, _, _ = select.select([self.master], [], [], 0.3)
            if not ready:
                if seen:
                    return
                continue
            try:
                chunk = os.read(self.master, 4096)
            except OSError:
                break
            if not chunk:
                break
            self.output += chunk
            seen = seen or until.encode() in self.output[self.mark:]
        if not seen:
            self.fail("no %r in %r" % (until, self.output[-400:]))
        self.mark = len(self.output)

    def test_answers_are_edited_and_recalled(self):
        self.master, slave = pty.openpty()
        proc = subprocess.Popen([corvane_case.CORVANE, self.path("in.dxf"), "-o", self.path("out.dxf"), "--no-pages"],
                                stdin=slave, stdout=slave, stderr=slave, env=self.env, close_fds=True)
        os.close(slave)
        self.output, self.mark = b"", 0
        try:
            for prompt, keys in [
                ("Command: ", "ERSE" + LEFT * 2 + "A\r"),   # ERASE, mended with the cursor keys
                ("Select objects: ", "W -3,-3 3,3\r"),
                ("Select objects: ", "\r"),
                ("Command: ", UP * 2 + "\r"),                 # ERASE again, from the history
                ("Select objects: ", UP * 2 + "\x01\x06\x0b" + " 7,-3 13,3\r"),  # the window line, rewritten
                ("Select objects: ", "\r"),
                ("Command: ", "\x04"),                        # Ctrl-D ends the run
            ]:
                self.read(prompt)
                os.write(self.master, keys.encode())
            self.assertEqual(proc.wait(timeout=60), 0, self.output.decode(errors="replace"))
        finally:
            if proc.poll() is None:
                proc.kill()
                proc.wait()
            os.close(self.master)
        centres = [e.dxf.center.x for e in ezdxf.readfile(self.path("out.dxf")).modelspace()]
        self.assertEqual(centres, [20], self.output.decode(errors="replace")[-600:])

    def test_a_pipe_is_read_as_it_is(self):
        r = self.corvane(self.path("in.dxf"), "-o", self.path("out.dxf"), "--no-pages",
                         stdin="ERASE W -3,-3 3,3\n\n" + UP + "\n")
        # The arrow key is only text here: no command of that name, and the run fails.
        self.assertIn("Unknown command", r.stdout)
        self.assertNotEqual(r.returncode, 0)
        self.assertFalse(os.path.exists(self.path("out.dxf")))


if __name__ == "__main__":
    corvane_case.main()
