"""What the tests of the corvane program share: a temporary folder, a settings
file of its own (with a load counter when one is given), no desktop, and the
program's path taken from the command line."""
import os
import subprocess
import sys
import tempfile
import unittest

CORVANE = None
SETTINGS_HEAD = "Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\Software\\Brightvale\\Corvane]\n"


class ProgramCase(unittest.TestCase):
    pagetimes = None  # the load counter the settings file starts with; None: no settings file
    timeout = 120  # seconds a run may take

    def setUp(self):
        tmp = tempfile.TemporaryDirectory()
        self.addCleanup(tmp.cleanup)
        self.dir = tmp.name
        self.env = dict(os.environ, CORVANE_SETTINGS=self.path("settings.reg"))
        self.env.pop("DISPLAY", None)
        self.env.pop("WAYLAND_DISPLAY", None)
        if self.pagetimes is not None:
            self.write("settings.reg", SETTINGS_HEAD + '"pagetimes"=dword:%08x\n' % self.pagetimes)

    def path(self, *names):
        return os.path.join(self.dir, *names)

    def write(self, name, text):
        with open(self.path(name), "w", encoding="utf-8") as f:
            f.write(text)
        return self.path(name)

    def corvane(self, *args, stdin=""):
        return subprocess.run([CORVANE, *args], input=stdin, capture_output=True, text=True, env=self.env,
                              timeout=self.timeout)


def main():
    """Runs the calling script's tests; its first argument is the program, the rest go to unittest."""
    global CORVANE
    CORVANE = os.path.abspath(sys.argv.pop(1))
    unittest.main(module="__main__", verbosity=2)
