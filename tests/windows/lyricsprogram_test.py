#!/usr/bin/env python3
"""The built program and the real player, while a user sets the times of a song's lyrics: what is kept when
the program is killed, when it is asked to end, and when the user quits."""
import signal
import subprocess
import time
import unittest

from startedprogram import WindowedProgram, geometry, wait_for, xdotool

SONG_SECONDS = 300
LYRICS = b"One\r\nTwo\r\nThree\r\nFour\r\n"


def frame(name, data):
    return name + len(data).to_bytes(4, "big") + b"\0\0" + data


def tagged(audio):
    frames = frame(b"TIT2", b"\0Title") + frame(b"TPE1", b"\0Artist") + frame(b"USLT", b"\0eng\0" + LYRICS)
    size = bytes(len(frames) >> shift & 0x7F for shift in (21, 14, 7, 0))
    return b"ID3\3\0\0" + size + frames + audio


class SettingTimes(WindowedProgram):
    def setUp(self):
        super().setUp()
        music = self.scratch / "music"
        music.mkdir()
        self.song = music / "song.mp3"
        silence = self.scratch / "silence.raw"
        silence.write_bytes(bytes(8000 * 2 * SONG_SECONDS))
        subprocess.run(["lame", "--silent", "-r", "-s", "8", "-m", "m", "-b", "8", silence, self.song],
                       check=True, stderr=subprocess.DEVNULL)
        self.song.write_bytes(tagged(self.song.read_bytes()))
        self.before = self.song.read_bytes()
        self.regenerate(music)
        player = subprocess.Popen(["audacious", self.song], env=self.env, stdout=subprocess.DEVNULL,
                                  stderr=subprocess.DEVNULL)
        self.addCleanup(player.wait)
        self.addCleanup(player.kill)
        self.assertTrue(wait_for(self.player_answers, 60), "the player did not start")

    def player_answers(self):
        ping = ["dbus-send", "--session", "--print-reply", "--dest=org.mpris.MediaPlayer2.audacious", "/",
                "org.freedesktop.DBus.Peer.Ping"]
        return subprocess.run(ping, env=self.env, capture_output=True).returncode == 0

    def window(self, process, name):
        def shown():
            return xdotool("search", "--all", "--onlyvisible", "--pid", str(process.pid), "--name", name)
        found = wait_for(shown)
        self.assertTrue(found, "no window: " + name)
        def active():  # another window of the program may still be coming forward
            xdotool("windowactivate", found[0])
            return xdotool("getactivewindow") == [found[0]]
        self.assertTrue(wait_for(active), name)
        return found[0]

    def has_box(self, process):
        active = xdotool("getactivewindow")
        return (0 < len(active) and active[0] in self.titled_as_the_program(process)
                and 0 < geometry(active[0]).get("WIDTH", 0) <= 700)

    def box(self, process):
        """Waits for the box that the program shows."""
        self.assertTrue(wait_for(lambda: self.has_box(process)), "no box came")

    def close_setting(self, process):
        """Presses Escape until the window asks: it does not close while it waits for the player."""
        for _ in range(10):
            self.window(process, "Setting Times")
            xdotool("key", "Escape")
            if wait_for(lambda: self.has_box(process), 3):
                return
        self.fail("no question came")

    def titled_as_the_program(self, process):
        return xdotool("search", "--all", "--onlyvisible", "--pid", str(process.pid), "--name", "^Quenlin$")

    def draft(self):
        """The lyrics of the song's draft; nothing without one."""
        drafts = list((self.config / "Quenlin" / "Drafts").glob("*.draft"))
        if not drafts:
            return b""
        self.assertEqual(len(drafts), 1)
        return drafts[0].read_bytes().split(str(self.song).encode() + b"\n", 1)[-1]

    def open_setting(self, process):
        """From the window that follows the song to the one in which its times are set."""
        window = self.window(process, "Artist - Title - Lyrics")
        button = str(geometry(window)["HEIGHT"] - 24)
        xdotool("mousemove", "--window", window, "100", button, "click", "1")

    def set_two_marks(self, process):
        self.main_window(process)
        self.open_setting(process)
        self.window(process, "Setting Times")
        xdotool("key", "ctrl+Home", "Down", "F9", "F9")
        changed = time.monotonic()
        self.assertTrue(wait_for(lambda: self.draft().count(b"[00:") == 2), self.draft())
        self.assertLess(time.monotonic() - changed, 6, "a draft takes two seconds, and this machine's delays")
        marked = self.draft()
        self.assertEqual(marked.replace(b"[", b"\n[").count(b"\n[00:"), 2)
        self.assertEqual(self.song.read_bytes(), self.before)
        return marked

    def test_a_kill_loses_no_mark(self):
        process = self.start()
        marked = self.set_two_marks(process)
        process.kill()
        process.wait()
        self.assertEqual(self.draft(), marked)
        again = self.start()
        self.main_window(again)
        self.open_setting(again)  # of the song, which plays on
        self.box(again)
        xdotool("key", "alt+y")
        self.close_setting(again)
        xdotool("key", "alt+s")
        self.assertTrue(wait_for(lambda: marked in self.song.read_bytes()), "the marks are not in the song")
        self.assertTrue(wait_for(lambda: self.draft() == b""), "the file holds the text, and the draft is there")
        again.send_signal(signal.SIGTERM)
        self.assertEqual(again.wait(20), 0)

    def test_quitting_asks_and_an_end_by_a_signal_keeps_the_draft(self):
        process = self.start()
        marked = self.set_two_marks(process)
        main = self.main_window(process)
        xdotool("windowactivate", "--sync", main)
        xdotool("key", "alt+F4")
        self.box(process)
        xdotool("key", "Escape")
        self.assertTrue(wait_for(lambda: self.titled_as_the_program(process) == [main]), "the box stays")
        self.await_handled(process, main)
        self.assertIsNone(process.poll())
        process.send_signal(signal.SIGTERM)
        self.assertEqual(process.wait(20), 0)
        self.assertEqual(self.draft(), marked)
        self.assertEqual(self.song.read_bytes(), self.before)


if __name__ == "__main__":
    unittest.main()
