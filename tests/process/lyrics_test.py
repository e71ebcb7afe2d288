"""Text files as lyrics of real MP3s: the song's bytes before and after, what other programs read in it,
and what is left of it when the process is killed in the middle."""
import os
import shutil
import subprocess
import sys
import time
import unittest

import mutagen.id3

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from program import BIN, ProgramTest, encode  # noqa: E402

CHANGING_CALLS = ("copy_file_range", "write", "fsync", "rename", "unlink", "fchmod", "mkdir")


def decoder_faults(path):
    return subprocess.run(["ffmpeg", "-v", "error", "-i", path, "-f", "null", "-"],
                          check=True, capture_output=True).stderr


def audio_of(data):
    """The bytes between the tags."""
    start = 0
    if data[:3] == b"ID3":
        start = 10 + (data[6] << 21 | data[7] << 14 | data[8] << 7 | data[9])
    return data[start:-128] if data[-128:-125] == b"TAG" else data[start:]


def contents(path):
    with open(path, "rb") as file:
        return file.read()


class Lyrics(ProgramTest):
    def setUp(self):
        super().setUp()
        self.song_path = os.path.join(self.music, "Song.mp3")
        encode(self.song_path, "-b", "128", "--add-id3v2", "--id3v2-latin1", "--tt", "First Song", "--ta",
               "The Artist", "--tl", "The Album", "--ty", "1999", "--tg", "Rock", "--tn", "7")
        self.text_path = os.path.join(self.scratch, "Song.TXT")
        self.write_text(b"One line\r\nanother\n\xe9t\xe9\r")
        self.run_program(self.song_path)
        self.original = contents(self.song_path)

    def write_text(self, data):
        with open(self.text_path, "wb") as file:
            file.write(data)

    def backup(self):
        return os.path.join(self.home, "Backup", "Song.mp3")

    def test_text_becomes_lyrics(self):
        self.assertEqual(decoder_faults(self.song_path), b"")
        out, err = self.run_program(self.text_path)
        self.assertIn(b"The lyrics were added correctly.", out + err)
        now = contents(self.song_path)
        self.assertEqual(audio_of(now), audio_of(self.original))
        self.assertEqual(now[-128:-125], b"TAG")
        self.assertEqual(decoder_faults(self.song_path), b"")
        self.assertEqual(contents(self.backup()), self.original)
        self.assertEqual(os.listdir(self.music), ["Song.mp3"])
        tags = mutagen.id3.ID3(self.song_path)
        self.assertEqual(str(tags["TIT2"]), "First Song")
        self.assertEqual(str(tags["TPE1"]), "The Artist")
        self.assertEqual(tags.getall("USLT")[0].text, "One line\r\nanother\n\xe9t\xe9\r")
        self.assertEqual(self.query("SELECT Lyrics FROM MP3s"),
                         [("One line\r\nanother\n\xe9t\xe9\r".encode(),)])

    def test_picture_and_foreign_frames_survive(self):
        picture = os.urandom(100_000)
        tags = mutagen.id3.ID3(self.song_path)
        tags.add(mutagen.id3.APIC(encoding=0, mime="image/png", type=3, desc="", data=picture))
        tags.add(mutagen.id3.PRIV(owner="x", data=b"foreign"))
        tags.save(v2_version=3, padding=lambda info: 500)
        self.run_program(self.text_path)
        tags = mutagen.id3.ID3(self.song_path)
        self.assertEqual(tags.getall("APIC")[0].data, picture)
        self.assertEqual(tags.getall("PRIV")[0].data, b"foreign")
        self.assertEqual(len(tags.getall("USLT")), 1)
        self.assertEqual(audio_of(contents(self.song_path)), audio_of(self.original))

    def test_a_megabyte_and_none(self):
        self.write_text(b"l" * (1 << 20))
        self.run_program(self.text_path)
        self.assertEqual(self.query("SELECT length(Lyrics) FROM MP3s"), [(1 << 20,)])
        self.write_text(b"")
        self.run_program(self.text_path)
        self.assertEqual(mutagen.id3.ID3(self.song_path).getall("USLT"), [])
        self.assertEqual(self.query("SELECT Lyrics FROM MP3s"), [(b"",)])

    def test_no_such_song(self):
        other = os.path.join(self.scratch, "Nobody.txt")
        shutil.copy(self.text_path, other)
        out, err = self.run_program(other)
        self.assertIn(b"The MP3 with similar name could not be found on the database.", out + err)
        self.assertEqual(contents(self.song_path), self.original)

    def traced(self, call, effect):
        """A run in which `strace` changes what a system call does."""
        return subprocess.run(
            ["strace", "-f", "-q", "-o", "/dev/null", "-e", "trace=" + call,
             "-e", "inject=%s:%s" % (call, effect), os.path.join(BIN, "quenlin"), self.text_path],
            env=self.env, stdin=subprocess.DEVNULL, capture_output=True, timeout=60)

    def test_full_disk_is_reported_and_leaves_the_song(self):
        result = self.traced("copy_file_range", "error=ENOSPC")
        self.assertIn(b"No space left on device", result.stdout + result.stderr)
        self.assertEqual(contents(self.song_path), self.original)
        self.assertEqual(os.listdir(self.music), ["Song.mp3"])

    def test_two_at_the_same_time(self):
        """One of them wins, the song is complete, no file is left over, and the other one reports it."""
        texts = []
        for letter in "ab":
            folder = os.path.join(self.scratch, letter)
            os.mkdir(folder)
            texts.append(os.path.join(folder, "Song.txt"))
            with open(texts[-1], "w") as file:
                file.write(letter * 50)
        for delay in (0, 0, 0.005, 0.01, 0.2):
            with open(self.song_path, "wb") as file:
                file.write(self.original)
            runs = [self.start(texts[0])]
            time.sleep(delay)  # the second one begins at different steps of the first
            runs.append(self.start(texts[1]))
            said = [b"".join(run.communicate(timeout=60)) for run in runs]
            song = contents(self.song_path)
            self.assertEqual(audio_of(song), audio_of(self.original))
            self.assertEqual(os.listdir(self.music), ["Song.mp3"])
            written = [letter * 50 in song for letter in (b"a", b"b")]
            self.assertEqual(written.count(True), 1)
            self.assertIn(b"The lyrics were added correctly.", said[written.index(True)])
            for output in said:
                self.assertEqual(b"The lyrics were added correctly." in output,
                                 b"by another program" not in output, output)
        self.assert_whole()

    def on_a_disk_of_its_own(self, options, then="true"):
        """The output of a run whose music folder is a small real disk, and what is on it afterwards."""
        after = os.path.join(self.scratch, "after")
        script = ("mount -t tmpfs -o %s none '%s' && cp '%s' '%s' && %s && '%s' '%s'; cp -r '%s' '%s'"
                  % (options, self.music, self.scratch + "/whole", self.song_path, then,
                     os.path.join(BIN, "quenlin"), self.text_path, self.music, after))
        shutil.copy(self.song_path, self.scratch + "/whole")
        result = subprocess.run(["unshare", "-rm", "sh", "-c", script], env=self.env,
                                stdin=subprocess.DEVNULL, capture_output=True, timeout=60)
        if not os.path.exists(after):
            self.skipTest("no disk can be mounted here: %r" % result.stderr)
        self.assertEqual(os.listdir(after), ["Song.mp3"])
        return result.stdout + result.stderr, contents(os.path.join(after, "Song.mp3"))

    def test_a_disk_with_room_and_a_really_full_one(self):
        pages = -(-len(self.original) // 4096)
        output, song = self.on_a_disk_of_its_own("size=%dk" % (pages * 8 + 16))
        self.assertIn(b"The lyrics were added correctly.", output)
        self.assertEqual(audio_of(song), audio_of(self.original))
        self.assertNotEqual(song, self.original)
        shutil.rmtree(os.path.join(self.scratch, "after"))
        output, song = self.on_a_disk_of_its_own("size=%dk" % (pages * 8 - 4))
        self.assertIn(b"No space left on device", output)
        self.assertEqual(song, self.original)

    def test_a_really_read_only_disk(self):
        output, song = self.on_a_disk_of_its_own("size=1m", "mount -o remount,ro '%s'" % self.music)
        self.assertIn(b"Read-only file system", output)
        self.assertEqual(song, self.original)

    def test_killed_in_every_call_that_changes_something(self):
        """After each kill there is one complete song, old or new; the run without a kill ends in order."""
        audio = audio_of(self.original)
        kills = 0
        for call in CHANGING_CALLS:
            for number in range(1, 30):
                with open(self.song_path, "wb") as file:
                    file.write(self.original)
                status = self.traced(call, "signal=KILL:when=%d" % number).returncode
                found = contents(self.song_path)
                self.assertEqual(audio_of(found), audio, (call, number))
                self.assertEqual(found[-128:-125], b"TAG", (call, number))
                for name in os.listdir(self.music):
                    if name.endswith(".bck"):
                        self.assertEqual(audio_of(contents(os.path.join(self.music, name))), audio)
                    if name != "Song.mp3":
                        os.remove(os.path.join(self.music, name))
                if status == 0:
                    break
                kills += 1
        self.assertGreater(kills, 8)
        self.assert_whole()


if __name__ == "__main__":
    unittest.main()
