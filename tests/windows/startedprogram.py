"""The built program as a process with windows: its own home folder and settings, and waiting for it."""
import os
import pathlib
import shutil
import subprocess
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


def xdotool(*args):
    return subprocess.run(["xdotool", *args], capture_output=True, text=True).stdout.split()


def picture(window):
    """What the window shows, as bytes to be compared."""
    return subprocess.run(["import", "-window", window, "rgb:-"], capture_output=True).stdout


def geometry(window):
    """The place of the window by xdotool, e.g. {"WIDTH": 900}; empty without the window."""
    lines = (line.split("=", 1) for line in xdotool("getwindowgeometry", "--shell", window))
    return {name: int(number) for name, number in lines}


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


class WindowedProgram(StartedProgram):
    """The same on the display of the environment."""

    def setUp(self):
        super().setUp()
        self.env = dict(os.environ, **self.places)

    def start(self):
        process = subprocess.Popen([PROGRAM], env=self.env)
        self.addCleanup(lambda: process.poll() is None and process.kill())
        return process

    def main_window(self, process):
        """The number of the process's main window, once it shows."""
        def shown():
            titled = xdotool("search", "--all", "--onlyvisible", "--pid", str(process.pid), "--name", "^Quenlin$")
            return [w for w in titled if geometry(w).get("WIDTH", 0) > 700]
        found = wait_for(shown)
        self.assertTrue(found, "no main window came")
        return found[0]

    def windows(self, process):
        return xdotool("search", "--onlyvisible", "--pid", str(process.pid))

    def open_menu(self, process, keys):
        """Opens a menu by its keys, in the window that has the keyboard; its window, once it shows."""
        before = set(self.windows(process))
        xdotool("key", keys)
        opened = wait_for(lambda: set(self.windows(process)) - before)
        self.assertTrue(opened, "no menu by " + keys)
        return opened

    def await_handled(self, process, window):
        """Waits until the program has handled what was sent to its main window: a menu opened later shows."""
        xdotool("windowactivate", "--sync", window)
        menu = self.open_menu(process, "alt+h")
        xdotool("key", "Escape")
        self.assertTrue(wait_for(lambda: not menu & set(self.windows(process))), "the menu does not close")

    def press(self, window, *keys):
        """Presses keys, each when the window has shown what the one before did."""
        for key in keys:
            before = picture(window)
            xdotool("key", key)
            self.assertTrue(wait_for(lambda: picture(window) != before), key + " changes nothing")

    def regenerate(self, music):
        """Catalogues a folder, without a display."""
        batch = {k: v for k, v in self.env.items() if k != "DISPLAY"}
        subprocess.run([PROGRAM, "--regenerate", str(music)], env=batch, stdin=subprocess.DEVNULL,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
