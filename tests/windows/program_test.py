#!/usr/bin/env python3
"""The built program in its windows, as a process: SIGTERM at any time, a second start, refusals."""
import itertools
import os
import pathlib
import select
import shutil
import signal
import sqlite3
import subprocess
import time
import unittest

from startedprogram import PROGRAM, WindowedProgram, geometry, wait_for, xdotool

SOURCE = pathlib.Path(__file__).resolve().parents[2]
SESSION_MANAGER = os.environ["QUENLIN_SESSION_MANAGER"]
DROP_TARGET = os.environ["QUENLIN_DROP_TARGET"]


class Program(WindowedProgram):
    def make_songs(self, count):
        """A folder of so many files without any tag."""
        music = self.scratch / "music"
        music.mkdir()
        for number in range(count):
            (music / f"{number}.mp3").write_bytes(bytes(200))
        return music

    def stored(self):
        lines = self.settings.read_text().split("[Last Safe")[0].splitlines()
        return dict(line.split("=", 1) for line in lines if "=" in line)

    def test_sigterm_saves_the_placement_and_ends_in_order(self):
        process = self.start()
        window = self.main_window(process)
        xdotool("windowsize", "--sync", window, "900", "640")
        self.await_handled(process, window)
        process.send_signal(signal.SIGTERM)
        self.assertEqual(process.wait(10), 0)
        # 15 twips to the pixel; the width counts a border of 10 pixels.
        self.assertEqual(self.stored()["Width"], str((900 + 10) * 15))
        self.assertEqual(sorted(p.name for p in self.home.iterdir() if p.name.startswith("MP3s")), ["MP3s.mdb"])
        again = self.start()
        window = self.main_window(again)
        def size():
            place = geometry(window)
            return place.get("WIDTH"), place.get("HEIGHT")
        wait_for(lambda: size() == (900, 640))
        self.assertEqual(size(), (900, 640))
        again.terminate()
        self.assertEqual(again.wait(10), 0)

    def test_second_start_raises_the_first_window_and_ends(self):
        first = self.start()
        window = self.main_window(first)
        xdotool("windowminimize", "--sync", window)
        self.assertTrue(wait_for(lambda: window not in xdotool("search", "--onlyvisible", "--name", "^Quenlin$")))
        self.assertEqual(self.start().wait(10), 0)
        self.assertTrue(wait_for(lambda: window in xdotool("search", "--onlyvisible", "--name", "^Quenlin$")))
        self.assertIsNone(first.poll())
        first.terminate()
        self.assertEqual(first.wait(10), 0)

    def test_second_start_is_one_without_a_runtime_folder_too(self):
        del self.env["XDG_RUNTIME_DIR"]
        first = self.start()
        self.main_window(first)
        self.assertEqual(self.start().wait(10), 0)
        self.assertIsNone(first.poll())
        self.assertEqual(os.stat(f"/tmp/quenlin-{os.getuid()}").st_mode & 0o777, 0o700)
        first.terminate()
        self.assertEqual(first.wait(10), 0)

    def start_session_manager(self):
        manager = subprocess.Popen([SESSION_MANAGER], env=self.env, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                   text=True)
        self.addCleanup(manager.stdout.close)
        self.addCleanup(manager.wait)
        self.addCleanup(manager.kill)
        self.addCleanup(manager.stdin.close)
        self.env["SESSION_MANAGER"] = manager.stdout.readline().strip()
        return manager

    def test_end_of_the_session_saves_and_ends_only_when_it_comes(self):
        manager = self.start_session_manager()
        def order(word):
            manager.stdin.write(word + "\n")
            manager.stdin.flush()
        process = self.start()
        self.assertEqual(manager.stdout.readline(), "client\n")
        window = self.main_window(process)
        xdotool("windowsize", "--sync", window, "900", "640")
        self.await_handled(process, window)
        order("logout")
        self.assertEqual(manager.stdout.readline(), "saved\n")
        self.assertEqual(self.stored()["Width"], str((900 + 10) * 15))
        order("cancel")
        xdotool("windowsize", "--sync", window, "950", "640")
        self.await_handled(process, window)
        order("logout")
        self.assertEqual(manager.stdout.readline(), "saved\n")
        self.assertIsNone(process.poll(), "the session went on, the program did not")
        order("end")
        self.assertEqual(process.wait(10), 0)
        self.assertEqual(self.stored()["Width"], str((950 + 10) * 15))
        self.assertEqual(sorted(p.name for p in self.home.iterdir() if p.name.startswith("MP3s")), ["MP3s.mdb"])

    def start_drop_target(self, x, y):
        target = subprocess.Popen([DROP_TARGET, str(x), str(y)], env=self.env, stdout=subprocess.PIPE, bufsize=0)
        self.addCleanup(target.stdout.close)
        self.addCleanup(target.wait)
        self.addCleanup(target.kill)
        self.assertEqual(target.stdout.readline(), b"ready\n")
        return target

    def test_rows_are_dropped_as_copies_on_another_program(self):
        names = ["1 plain.mp3", "2 100% 'odd' &.mp3", "3 \udcff.mp3", "4 桜 😀.mp3"]
        music = self.scratch / "music"
        music.mkdir()
        for name in names:
            (music / name).write_bytes(bytes(2000))
        self.regenerate(music)
        process = self.start()
        window = self.main_window(process)
        target = self.start_drop_target(1200, 600)
        xdotool("windowactivate", "--sync", window)
        # The one folder below the last group but one lists the songs.
        self.press(window, "End", "Up", "Right", "Down")
        steps = itertools.cycle(range(4))
        def is_over():
            xdotool("mousemove", str(1290 + next(steps)), "700")
            return select.select([target.stdout], [], [], 0.05)[0] and target.stdout.readline() == b"over\n"
        def drag(row):
            xdotool("mousemove", "--window", window, "460", str(row), "mousedown", "1")
            for x in range(470, 530, 10):
                xdotool("mousemove", "--window", window, str(x), str(row))
            for _ in range(2):  # the answer to the first was sent before the second
                self.assertTrue(wait_for(is_over), "the drag does not reach the other program")
            xdotool("mouseup", "1")
        def dropped():
            lines = iter(target.stdout.readline, b"end\n")
            return [line.strip() for line in lines if line != b"over\n"]
        folder = b"file://" + os.fsencode(music)
        addresses = [folder + name for name in (b"/1%20plain.mp3", b"/2%20100%25%20%27odd%27%20%26.mp3", b"/3%20%FF.mp3",
                                               b"/4%20%E6%A1%9C%20%F0%9F%98%80.mp3")]
        drag(122)
        self.assertEqual(dropped(), [b"1", addresses[0]], "one row, a copy and nothing else")
        self.press(window, "ctrl+a")
        drag(122)
        self.assertEqual(dropped(), [b"1", *addresses])
        self.assertEqual(sorted(os.listdir(music)), sorted(names), "no song moved")
        process.terminate()
        self.assertEqual(process.wait(10), 0)

    def test_sigterm_ends_the_program_while_its_first_tip_is_open(self):
        self.set("Show Tips at Startup=1")
        process = self.start()
        self.main_window(process)
        self.assertTrue(wait_for(lambda: xdotool("search", "--onlyvisible", "--pid", str(process.pid), "--name",
                                                 "^Tip of the day$")))
        process.terminate()
        self.assertEqual(process.wait(10), 0)

    def test_sigterm_during_the_splash_ends_as_well(self):
        process = self.start()
        self.assertTrue(wait_for(lambda: self.windows(process)))
        process.terminate()
        self.assertEqual(process.wait(10), 0)
        self.assertNotIn("Last Safe", self.settings.read_text(), "the main window came up once more")

    def test_sigterm_ends_the_walk_of_a_start_at_its_next_file(self):
        music = self.make_songs(5000)
        self.set("RefreshAtStartUp=1", f"MP3 Directory={music}")
        process = self.start()
        log = self.home / "MP3s.mdb-wal"  # there while the catalogue is open
        self.assertTrue(wait_for(log.exists))
        process.terminate()
        self.assertEqual(process.wait(10), 0)
        with sqlite3.connect(self.home / "MP3s.mdb") as catalogue:
            self.assertLess(catalogue.execute("SELECT COUNT(*) FROM MP3s").fetchone()[0], 5000)
        catalogue.close()

    def test_sigterm_answers_a_waiting_question_with_no(self):
        music = self.make_songs(1)
        self.set(f"MP3 Directory={music}")
        process = self.start()
        xdotool("windowactivate", "--sync", self.main_window(process))
        self.open_menu(process, "alt+t")
        xdotool("key", "r")
        self.assertTrue(wait_for(lambda: xdotool("search", "--onlyvisible", "--name", "^Mistakes")))
        process.terminate()
        self.assertEqual(process.wait(10), 0)
        self.assertIn("Width", self.stored())
        self.assertFalse((self.home / "MP3s.mdb-wal").exists(), "the catalogue was left open")

    def test_sigterm_closes_the_preferences_and_changes_nothing(self):
        music = self.make_songs(1)
        self.set(f"MP3 Directory={music}")
        process = self.start()
        xdotool("windowactivate", "--sync", self.main_window(process))
        self.open_menu(process, "alt+t")
        xdotool("key", "p")
        self.assertTrue(wait_for(lambda: xdotool("search", "--onlyvisible", "--name", "^Preferences")))
        xdotool("key", "alt+f", "End")
        xdotool("type", "/elsewhere")  # not entered, not applied
        began = time.monotonic()
        process.terminate()
        self.assertEqual(process.wait(10), 0)
        self.assertLess(time.monotonic() - began, 5)
        self.assertEqual(self.stored()["MP3 Directory"], str(music))
        self.assertIn("Width", self.stored())
        self.assertEqual(sorted(p.name for p in self.home.iterdir() if p.name.startswith("MP3s")), ["MP3s.mdb"])

    def brightness(self, window):
        """The mean brightness of what the window shows, 0 to 100."""
        shown = subprocess.run(["import", "-window", window, "-colorspace", "Gray", "-format", "%[fx:100*mean]",
                                "info:"], capture_output=True, text=True, env=self.env).stdout
        return float(shown or -1)

    def test_dark_and_light_follow_the_desktop(self):
        portal = subprocess.Popen([os.environ["QUENLIN_SETTINGS_PORTAL"]], env=self.env, stdin=subprocess.PIPE,
                                  stdout=subprocess.PIPE, text=True)
        self.addCleanup(portal.wait)
        self.addCleanup(portal.kill)
        self.addCleanup(portal.stdout.close)
        self.addCleanup(portal.stdin.close)
        self.assertEqual(portal.stdout.readline(), "ready\n")
        process = self.start()
        window = self.main_window(process)
        self.assertTrue(wait_for(lambda: self.brightness(window) > 60), self.brightness(window))
        for scheme, wanted in (("1", lambda b: 0 <= b < 40), ("2", lambda b: b > 60)):
            portal.stdin.write(scheme + "\n")
            portal.stdin.flush()
            self.assertTrue(wait_for(lambda: wanted(self.brightness(window))), self.brightness(window))
        process.terminate()
        self.assertEqual(process.wait(10), 0)

    def test_a_display_that_cannot_be_opened_is_one_sentence(self):
        self.env["DISPLAY"] = ":4711"
        ended = subprocess.run([PROGRAM], env=self.env, capture_output=True, text=True, timeout=20)
        self.assertEqual(ended.returncode, 1)
        self.assertEqual(ended.stderr, "quenlin: The display :4711 cannot be opened.\n")

    def test_f1_shows_the_help(self):
        shutil.copy(SOURCE / "assets" / "shipped" / "Brandolet.hlp", self.home)
        process = self.start()
        xdotool("windowactivate", "--sync", self.main_window(process))
        xdotool("key", "F1")
        def help_window():
            return xdotool("search", "--onlyvisible", "--name", "^Help")
        self.assertTrue(wait_for(help_window))
        self.assertTrue(wait_for(lambda: xdotool("getactivewindow") == help_window()))
        process.terminate()
        self.assertEqual(process.wait(10), 0)

    def test_the_about_box_is_one(self):
        process = self.start()
        window = self.main_window(process)
        def about():
            return [w for w in self.windows(process) if geometry(w).get("WIDTH") == 499]
        for _ in range(2):
            xdotool("windowactivate", "--sync", window)
            self.open_menu(process, "alt+h")
            xdotool("key", "a")
            self.assertTrue(wait_for(lambda: about() and xdotool("getactivewindow") == about()))
        self.assertEqual(len(about()), 1)
        xdotool("key", "Escape")
        self.assertTrue(wait_for(lambda: not about()))
        process.terminate()
        self.assertEqual(process.wait(10), 0)

    def test_sigterm_answers_the_box_of_a_refusal(self):
        (self.home / "MP3s.mdb").write_bytes(b"")
        process = self.start()
        self.assertTrue(wait_for(lambda: xdotool("search", "--onlyvisible", "--name", "^Corrupted file$")))
        process.terminate()
        self.assertEqual(process.wait(10), 1)

    def test_damaged_catalogue_is_refused_in_a_box(self):
        (self.home / "MP3s.mdb").write_bytes(b"")
        process = self.start()
        box = wait_for(lambda: xdotool("search", "--onlyvisible", "--name", "^Corrupted file$"))
        self.assertTrue(box, "no box came")
        xdotool("windowactivate", "--sync", box[0])
        xdotool("key", "Escape")
        self.assertEqual(process.wait(10), 1)
        self.assertEqual((self.home / "MP3s.mdb").read_bytes(), b"")

    def test_a_batch_from_the_desktop_speaks_in_boxes(self):
        """Without a terminal the box of a lyrics file that no song answers to waits in a window."""
        (self.scratch / "Nowhere.txt").write_text("la la")
        process = subprocess.Popen([PROGRAM, str(self.scratch / "Nowhere.txt")], env=self.env,
                                   stdin=subprocess.DEVNULL, stderr=subprocess.PIPE)
        self.addCleanup(lambda: process.poll() is None and process.kill())
        self.assertTrue(wait_for(lambda: len(self.windows(process)) > 1), "no box came beside the splash")
        self.assertIsNone(process.poll())
        summary = self.home / "Solution.txt"
        self.assertFalse(summary.exists(), "the box did not wait")

        def answered():
            for window in self.windows(process):
                xdotool("windowactivate", window)
                xdotool("key", "Return")
            return process.poll() is not None
        self.assertTrue(wait_for(answered))
        self.assertEqual(process.returncode, 0)
        self.assertTrue(summary.exists())
        self.assertNotIn(b"could not be found", process.stderr.read())
        process.stderr.close()


if __name__ == "__main__":
    unittest.main()
