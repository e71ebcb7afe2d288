#!/usr/bin/env python3
"""The built program beside a disk that does not answer: its window works, its end does not wait."""
import contextlib
import os
import signal
import sqlite3
import time
import unittest

from startedprogram import WindowedProgram, wait_for, xdotool

PATIENCE_SECONDS = 2  # the longest that the program waits for one answer


class SilentDisk(WindowedProgram):
    def setUp(self):
        super().setUp()
        self.env["LD_PRELOAD"] = os.environ["QUENLIN_SILENT_FOLDERS"]
        self.music = self.scratch / "music"
        (self.music / "silent disk" / "within").mkdir(parents=True)
        (self.music / "other").mkdir()

    def open_preferences(self, process):
        xdotool("windowactivate", "--sync", self.main_window(process))
        self.open_menu(process, "alt+t")
        xdotool("key", "p")
        found = wait_for(self.preferences)
        self.assertTrue(found, "no preferences came")
        self.assertTrue(wait_for(lambda: xdotool("getactivewindow") == found))

    def preferences(self):
        return xdotool("search", "--onlyvisible", "--name", "^Preferences$")

    def enter_folder(self, path):
        # "Folder", whose text is taken whole.
        xdotool("key", "alt+f")
        xdotool("key", "ctrl+a")
        xdotool("type", "--delay", "1", str(path))
        xdotool("key", "Return")

    def end(self, process):
        began = time.monotonic()
        process.send_signal(signal.SIGTERM)
        self.assertEqual(process.wait(10), 0)
        self.assertLess(time.monotonic() - began, PATIENCE_SECONDS)

    def test_the_folder_above_it_opens_and_the_program_ends(self):
        self.set(f"MP3 Directory={self.music}")
        process = self.start()
        self.open_preferences(process)
        self.enter_folder(self.music / "other")
        xdotool("key", "Escape")
        self.assertTrue(wait_for(lambda: not self.preferences()), "the window did not close")
        self.end(process)

    def test_the_wait_for_a_typed_folder_is_ended_by_cancel(self):
        self.set(f"MP3 Directory={self.music / 'other'}")
        process = self.start()
        self.open_preferences(process)
        began = time.monotonic()
        self.enter_folder(self.music / "silent disk")
        xdotool("key", "Escape")
        self.assertTrue(wait_for(lambda: not self.preferences()), "the window did not close")
        self.assertLess(time.monotonic() - began, PATIENCE_SECONDS)
        self.end(process)

    def test_a_typed_folder_is_given_up_with_a_box(self):
        self.set(f"MP3 Directory={self.music / 'other'}")
        process = self.start()
        self.open_preferences(process)
        self.enter_folder(self.music / "silent disk")
        before = set(self.windows(process))
        box = wait_for(lambda: set(self.windows(process)) - before)
        self.assertTrue(box, "no box says that the folder cannot be read")
        xdotool("key", "Escape")
        self.assertTrue(wait_for(lambda: not box & set(self.windows(process))))
        self.assertTrue(self.preferences())
        xdotool("key", "Escape")
        self.assertTrue(wait_for(lambda: not self.preferences()))
        self.end(process)

    def test_it_ends_during_the_wait(self):
        self.set(f"MP3 Directory={self.music / 'other'}")
        process = self.start()
        self.open_preferences(process)
        self.enter_folder(self.music / "silent disk")
        self.end(process)

    def test_a_stored_folder_that_is_silent_does_not_stop_the_start(self):
        self.set(f"MP3 Directory={self.music / 'silent disk'}")
        process = self.start()
        self.open_preferences(process)
        xdotool("key", "Escape")
        self.assertTrue(wait_for(lambda: not self.preferences()))
        self.assertEqual(self.stored_folder(), str(self.music / "silent disk"))
        self.end(process)

    def test_a_list_that_is_silent_is_reported_and_the_window_lives(self):
        for name in ("a silent one", "another"):
            folder = "silent disk" if "silent" in name else "other"
            (self.music / "other" / "list.m3u").write_text("song.mp3")
            with contextlib.closing(sqlite3.connect(self.home / "MP3s.mdb")) as catalogue, catalogue:
                catalogue.execute("INSERT INTO Lists VALUES (?, ?)", (name, str(self.music / folder / "list.m3u")))
        process = self.start()
        window = self.main_window(process)
        xdotool("windowactivate", "--sync", window)
        before = set(self.windows(process))
        xdotool("type", "PlayL")  # the group, by its first letters
        xdotool("key", "Right", "Down")
        box = wait_for(lambda: set(self.windows(process)) - before)
        self.assertTrue(box, "no box says that the list is not ready")
        xdotool("key", "Escape")
        self.assertTrue(wait_for(lambda: not box & set(self.windows(process))), "the box does not close")
        xdotool("key", "Down")  # a list that can be read: no box is shown, however long the test waits
        self.assertIsNone(wait_for(lambda: set(self.windows(process)) - before, PATIENCE_SECONDS))
        self.end(process)

    def test_it_ends_while_a_list_is_silent(self):
        with contextlib.closing(sqlite3.connect(self.home / "MP3s.mdb")) as catalogue, catalogue:
            catalogue.execute("INSERT INTO Lists VALUES ('x', ?)", (str(self.music / "silent disk" / "x.m3u"),))
        process = self.start()
        xdotool("windowactivate", "--sync", self.main_window(process))
        xdotool("type", "PlayL")
        xdotool("key", "Right", "Down")
        self.end(process)

    def stored_folder(self):
        lines = self.settings.read_text().splitlines()
        return next(line.split("=", 1)[1] for line in lines if line.startswith("MP3 Directory="))


if __name__ == "__main__":
    unittest.main()
