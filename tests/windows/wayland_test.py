#!/usr/bin/env python3
"""The built program on a Wayland desktop (weston without a screen): its size is restored, its stored place
is kept although programs cannot choose one there, and a second start calls the first."""
import os
import signal
import subprocess
import unittest

from startedprogram import PROGRAM, StartedProgram, wait_for

PLACE = {"Left": "3000", "Top": "1500", "Width": "13500", "Height": "9000"}  # twips


class OnWayland(StartedProgram):
    def setUp(self):
        super().setUp()
        runtime = self.scratch / "runtime"
        runtime.mkdir(mode=0o700)
        self.set(*(f"{key}={text}" for key, text in PLACE.items()))
        self.env = {"PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8", "HOME": str(self.scratch),
                    "XDG_RUNTIME_DIR": str(runtime), "WAYLAND_DISPLAY": "wayland-quenlin", **self.places,
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
