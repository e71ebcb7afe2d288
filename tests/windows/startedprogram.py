"""The built program as a process behind windows: a home folder of its own, its settings, patience."""
import os
import pathlib
import shutil
import tempfile
import time
import unittest

PROGRAM = os.environ["QUENLIN_PROGRAM"]
SHIPPED = os.environ["QUENLIN_SHIPPED"]


def wait_for(condition, seconds=20):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        found = condition()
        if found:
            return found
        time.sleep(0.03)
    return None


class StartedProgram(unittest.TestCase):
    """A fresh home folder with the shipped catalogue, and a settings file that asks for no tips."""

    def setUp(self):
        self.scratch = pathlib.Path(tempfile.mkdtemp(prefix="quenlin-windowed-"))
        self.addCleanup(shutil.rmtree, self.scratch, ignore_errors=True)
        self.home = self.scratch / "home"
        self.home.mkdir()
        shutil.copy(SHIPPED, self.home / "MP3s.mdb")
        self.config = self.scratch / "config"
        self.settings = self.config / "Quenlin" / "settings.ini"
        self.settings.parent.mkdir(parents=True)
        self.set()
        self.places = {"QUENLIN_HOME": str(self.home), "XDG_CONFIG_HOME": str(self.config),
                       "XDG_DATA_HOME": str(self.scratch / "data")}

    def set(self, *lines):
        """The preferences: no tips, and these lines, each "key=text"."""
        self.settings.write_text("\n".join(["[Preferences]", "Show Tips at Startup=0", *lines]) + "\n")
