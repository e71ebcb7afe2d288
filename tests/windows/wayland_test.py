#!/usr/bin/env python3
"""The built program on a Wayland desktop (weston without a screen): its size comes back, its stored place
is kept although no program can take one there, and a second start hands over to the first."""
import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import time
import unittest

PROGRAM = os.environ["QUENLIN_PROGRAM"]
SHIPPED = os.environ["QUENLIN_SHIPPED"]
PLACE = {"Left": "3000", "Top": "1500", "Width": "13500", "Height": "9000"}  # twips


def wait_for(condition, seconds=20):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        found = condition()
        if found:
            return found
        time.sleep(0.03)
    return None


class OnWayland(unittest.TestCase):
    def setUp(self):
        self.scratch = pathlib.Path(tempfile.mkdtemp(prefix="quenlin-wayland-"))
        self.addCleanup(shutil.rmtree, self.scratch, ignore_errors=True)
        runtime = self.scratch / "runtime"
        runtime.mkdir(mode=0o700)
        home = self.scratch / "home"
        home.mkdir()
        shutil.copy(SHIPPED, home / "MP3s.mdb")
        self.settings = self.scratch / "config" / "Quenlin" / "settings.ini"
        self.settings.parent.mkdir(parents=True)
        lines = ["[Preferences]", "Show Tips at Startup=0", *(f"{k}={v}" for k, v in PLACE.items())]
        self.settings.write_text("\n".join(lines) + "\n")
        self.env = {"PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8", "HOME": str(self.scratch),
                    "XDG_RUNTIME_DIR": str(runtime), "XDG_CONFIG_HOME": str(self.scratch / "config"),
                    "XDG_DATA_HOME": str(self.scratch / "data"), "QUENLIN_HOME": str(home),
                    "WAYLAND_DISPLAY": "wayland-quenlin",
                    **{name: text for name, text in os.environ.items() if name.endswith("SAN_OPTIONS")}}
        self.run_beside(["weston", "--backend=headless-backend.so", "--use-pixman", "--idle-time=0",
                         "--width=1280", "--height=900", "--socket=wayland-quenlin"])
        self.assertTrue(wait_for((runtime / "wayland-quenlin").exists), "weston did not start")

    def run_beside(self, command):
        process = subprocess.Popen(command, env=self.env, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    def stored(self, section):
        """The settings of one section; none before the program has stored it."""
        text = self.settings.read_text()
        lines = text.partition(f"[{section}]")[2].partition("[")[0].splitlines()
        return dict(line.split("=", 1) for line in lines if "=" in line)

    def test_size_comes_back_and_the_stored_place_stays(self):
        first = self.run_beside([PROGRAM])
        # A complete layout of the shown window stores what the window really has.
        self.assertTrue(wait_for(lambda: self.stored("Last Safe Configuration")), "no window was laid out")
        self.env["XDG_ACTIVATION_TOKEN"] = "some-leave"
        self.assertEqual(self.run_beside([PROGRAM]).wait(20), 0)
        self.assertIsNone(first.poll())
        first.send_signal(signal.SIGTERM)
        self.assertEqual(first.wait(20), 0)
        for section in ("Last Safe Configuration", "Preferences"):
            stored = self.stored(section)
            self.assertEqual({key: stored.get(key) for key in PLACE}, PLACE, section)


if __name__ == "__main__":
    unittest.main()
