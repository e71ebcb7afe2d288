"""The two commands on real MP3 files: the contents of the catalogue, the report and the summary."""
import os
import pty
import re
import resource
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from program import REPORT, ProgramTest, encode, mp3_bytes, wait_for  # noqa: E402


class EncodedFiles(ProgramTest):
    def test_batch_catalogues_what_an_encoder_made(self):
        first, second = (os.path.join(self.music, name) for name in ("one.mp3", "two'.mp3"))
        encode(first, "-b", "128", "--add-id3v2", "--id3v2-latin1", "--tt", "First Song", "--ta", "The Artist",
               "--tl", "The Album", "--ty", "1999", "--tc", "A comment", "--tg", "Rock")
        encode(second, "-V", "4", "--id3v1-only", "--tt", "Second", "--ta", "Another",
               "--tg", "13")
        out, err = self.run_program(first, second)
        self.assertEqual((out, err), (b"", b""))
        self.assert_alone()
        stock = subprocess.run(
            ["sqlite3", self.catalogue(),
             "SELECT Title, Artist, Album, Year, Genre, Path, Duplicated FROM MP3s"],
            check=True, capture_output=True, text=True).stdout.splitlines()
        self.assertEqual(stock, ["First Song|The Artist|The Album|1999|Rock|%s|0" % first,
                                 "Second|Another|||Pop|%s|0" % second])
        summary = self.read("Solution.txt").decode()
        self.assertRegex(summary, r"^\r\d{1,2}/\d{1,2}/\d{4} \S")
        self.assertTrue(summary.endswith(
            "\r\r  These MP3s were added correctly:\r\r    %s\r    %s\r\r\r\n" % (first, second)),
            summary)

        self.run_program(first, "relative.mp3", cwd=self.music)
        self.assertTrue(self.read("Solution.txt").decode().endswith(
            "  This MP3 was updated correctly:\r\r    %s\r\r  This MP3 couldn't be added/updated:"
            "\r\r    %s\r  Reason: No such file or directory\r\r\r\n"
            % (first, os.path.join(self.music, "relative.mp3"))))

    def test_regeneration_of_encoded_files(self):
        os.makedirs(os.path.join(self.music, "b"))
        for name in ("z.mp3", "b/a.mp3"):
            encode(os.path.join(self.music, name), "-b", "64", "--add-id3v2", "--id3v2-latin1",
                   "--tt", name)
        out, err = self.run_program("--regenerate", self.music)
        self.assertEqual(self.paths(), [b"z.mp3", b"b/a.mp3"])
        self.assertIn(os.path.join(self.home, REPORT).encode(), out)
        self.assertIn(b"  Quenlin succeded getting the information of each file\r\n",
                      self.read(REPORT))
        self.assertEqual(err, b"")
        # How the folder becomes the program's own; nothing of it once it is.
        settings = os.path.join(self.env["XDG_CONFIG_HOME"], "Quenlin", "settings.ini")
        line = "MP3 Directory=%s\n" % self.music
        self.assertIn(b"Tools, Preferences", out)
        self.assertIn(("[Preferences] of %s\n%s" % (settings, line)).encode(), out)
        os.makedirs(os.path.dirname(settings), exist_ok=True)
        with open(settings, "w") as file:
            file.write("[Preferences]\n" + line)
        out, _ = self.run_program("--regenerate", self.music + "/")
        self.assertNotIn(b"Preferences", out)


def full_disk():
    """For a started program: no file can become larger than 40,000 bytes, the catalogue's log among them."""
    signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
    resource.setrlimit(resource.RLIMIT_FSIZE, (40000, resource.RLIM_INFINITY))


class FullDisk(ProgramTest):
    """What is reported of each song is true."""

    def setUp(self):
        super().setUp()
        for number in range(40):
            self.song("%02d.mp3" % number, lyrics="full " * 1200)
        self.all = [os.path.join(self.music, "%02d.mp3" % number) for number in range(40)]

    def kept(self):
        rows = {os.path.join(self.music, os.fsdecode(name)) for name in self.paths()}
        self.assertLess(len(rows), 40)
        return rows

    def test_batch(self):
        self.run_program(*self.all, status=3, preexec_fn=full_disk)
        kept = self.kept()
        added, _, failed = self.read("Solution.txt").decode().partition("couldn't be added/updated:")
        for path in self.all:
            self.assertEqual("    %s\r" % path in added, path in kept, path)
            self.assertEqual("    %s\r  Reason: Error: " % path in failed, path not in kept, path)

    def test_regeneration(self):
        out, err = self.run_program("--regenerate", self.music, status=3, preexec_fn=full_disk)
        kept = self.kept()
        self.assertIn(b"40 MP3 files, %d of them could not be added\n" % (40 - len(kept)), out)
        for path in self.all:
            self.assertEqual(os.fsencode(path) in err, path not in kept, path)


class ManyFailures(ProgramTest):
    """5,000 songs with a long title, none of which the catalogue takes: memory and messages stay small."""

    COUNT = 5000

    def setUp(self):
        super().setUp()
        self.song("0000.mp3", title="\xb9" * 30000)
        for number in range(1, self.COUNT):
            os.link(os.path.join(self.music, "0000.mp3"), os.path.join(self.music, "%04d.mp3" % number))
        with sqlite3.connect(self.catalogue()) as connection:
            connection.execute("CREATE TRIGGER refuse BEFORE INSERT ON MP3s "
                               "BEGIN SELECT raise(ABORT, 'it is refused'); END")
        connection.close()

    def run_and_measure(self, *args):
        """What the program wrote on standard error; its status is 3 and its memory small."""
        with tempfile.TemporaryFile() as errors:
            process = self.start(*args, stdout=subprocess.DEVNULL, stderr=errors)
            _, status, usage = os.wait4(process.pid, 0)
            process.returncode = os.waitstatus_to_exitcode(status)
            errors.seek(0)
            words = errors.read()
        self.assertEqual(process.returncode, 3, words[-1000:])
        self.assertLess(usage.ru_maxrss, 150 * 1024, "KiB")
        return words

    def test_regeneration(self):
        words = self.run_and_measure("--regenerate", self.music)
        self.assertEqual(words.count(b"it is refused"), self.COUNT)
        self.assertLess(len(words), self.COUNT * 1500)

    def test_batch(self):
        self.run_and_measure(*(os.path.join(self.music, "%04d.mp3" % number) for number in range(self.COUNT)))
        summary = self.read("Solution.txt")
        self.assertEqual(summary.count(b"it is refused"), self.COUNT)
        self.assertLess(len(summary), self.COUNT * 1500)


class Regeneration(ProgramTest):
    def test_order_and_odd_names(self):
        names = [b"UPPER.MP3", b"apo'strophe.mp3", b'quo"te.mp3', b"line\nbreak.mp3",
                 b"latin\xe9.mp3", "ñandú.mp3".encode(), b" blanks .mp3", b"percent%_.mp3",
                 b"Sub/x.mp3", b"sub/x.mp3", b"what?.mp3", b"-dash.mp3", b".hidden/.mp3"]
        for name in names:
            self.song(name)
        self.song(b"no.txt")
        out, _ = self.run_program("--regenerate", self.music)
        self.assertEqual(sorted(self.paths()), sorted(names))
        self.assertEqual(self.paths()[-3:], [b".hidden/.mp3", b"Sub/x.mp3", b"sub/x.mp3"])
        self.assertIn(b"13 MP3 files", out)

        self.run_program("--regenerate", self.music)
        self.assertEqual(len(self.paths()), len(names), "a second pass adds nothing")
        self.assertEqual({row[0] for row in self.query("SELECT Genre FROM MP3s")}, {b"17"})

    def test_links_that_loop(self):
        self.song("a/1.mp3")
        os.symlink("..", os.path.join(self.music, "a", "up"))
        os.symlink(self.music, os.path.join(self.music, "again"))
        os.symlink("nowhere", os.path.join(self.music, "broken"))
        self.run_program("--regenerate", self.music)
        self.assertEqual(self.paths(), [b"a/1.mp3"])

    @unittest.skipUnless(shutil.which("setpriv") and os.geteuid() == 0,
                         "needs to step down from root")
    def test_folder_without_permission_is_named_and_the_rest_goes_on(self):
        for name in ("a/1.mp3", "closed/2.mp3", "z/3.mp3"):
            self.song(name)
        self.song("z/secret.mp3")
        subprocess.run(["chown", "-R", "65534:65534", self.scratch], check=True)
        os.chmod(os.path.join(self.music, "closed"), 0)
        os.chmod(os.path.join(self.music, "z", "secret.mp3"), 0)
        done = subprocess.run(
            ["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups",
             os.path.join(os.environ["QUENLIN_BIN"], "quenlin"), "--regenerate", self.music],
            env=self.env, stdin=subprocess.DEVNULL, capture_output=True)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(self.paths(), [b"a/1.mp3", b"z/3.mp3"])
        for part in (self.music + "/closed: Permission denied",
                     self.music + "/z/secret.mp3: Permission denied"):
            self.assertIn(part.encode(), done.stderr)

    def test_absent_folder(self):
        _, err = self.run_program("--regenerate", os.path.join(self.music, "absent"), status=1)
        self.assertIn(b"76", err)
        self.assertFalse(os.path.exists(os.path.join(self.home, REPORT)))

    def test_folder_is_made_absolute_and_nothing_is_stored(self):
        self.song("a/1.mp3")
        for folder in ("music/", "./music", "music//", "music/a/.."):
            with self.subTest(folder):
                self.run_program("--regenerate", folder, cwd=self.scratch)
                self.assertEqual(self.paths(), [b"a/1.mp3"])
        config = os.path.join(self.scratch, "config")
        stored = b"".join(open(os.path.join(path, name), "rb").read()
                          for path, _, names in os.walk(config) for name in names)
        self.assertNotIn(b"music", stored)

    def test_delete_before_append(self):
        self.song("a.mp3")
        self.song("b.mp3")
        self.run_program("--regenerate", self.music)
        os.remove(os.path.join(self.music, "a.mp3"))
        self.run_program("--regenerate", self.music)
        self.assertEqual(self.paths(), [b"a.mp3", b"b.mp3"])
        store = os.path.join(self.scratch, "config", "Quenlin")
        os.makedirs(store, exist_ok=True)
        with open(os.path.join(store, "settings.ini"), "w", encoding="utf-8") as file:
            file.write("[Preferences]\nDelete Before Append=1\n")
        self.run_program("--regenerate", self.music)
        self.assertEqual(self.paths(), [b"b.mp3"])

    def test_questions_get_no_without_a_terminal(self):
        path = os.path.join(self.music, "none.mp3")
        with open(path, "wb") as file:
            file.write(bytes(100))
        _, err = self.run_program("--regenerate", self.music)
        self.assertIn(b"Would you like to see the report now?", err)
        self.assertIn(path.encode() + b"\r\n  Quenlin could not get any information for this file."
                      b"\r\n\r\n\r\n\r\nDirectory: " + self.music.encode() + b"\r\n"
                      b"Date of creation: ", self.read(REPORT))

    def test_tags_that_claim_too_much_do_not_use_up_the_handles(self):
        bytes_ = b"ID3\3\0\0\x7f\x7f\x7f\x7f" + bytes(300)
        for number in range(300):
            path = os.path.join(self.music, "%03d.mp3" % number)
            with open(path, "wb") as file:
                file.write(bytes_)
        limit = 40
        self.run_program("--regenerate", self.music, preexec_fn=lambda: resource.setrlimit(
            resource.RLIMIT_NOFILE, (limit, limit)))
        self.assertEqual(len(self.paths()), 300)

    def test_a_tag_larger_than_the_memory_fails_and_the_rest_goes_on(self):
        """Each field of such a tag is as long as the tag: together they would take many times its size."""
        huge = os.path.join(self.music, "huge.mp3")
        size = 80 << 20
        with open(huge, "wb") as file:
            file.write(b"ID3\2\0\0" + bytes(size >> shift & 0x7F for shift in (21, 14, 7, 0)))
            for name in (b"TT2", b"TOA", b"TAL", b"TYE", b"COM"):
                file.write(name + b"\0\0\6\0eng\0Title")
            file.truncate(size + 5000)
        good = self.song("good.mp3")

        def shorten():
            resource.setrlimit(resource.RLIMIT_AS, (600 << 20, 600 << 20))
        self.run_program(huge, good, preexec_fn=shorten)
        summary = self.read("Solution.txt")
        self.assertRegex(summary, rb"huge.mp3\r  Reason: Out of memory\r")
        self.assertEqual(self.paths(), [b"good.mp3"])
        os.remove(os.path.join(self.home, "Solution.txt"))
        self.run_program("--regenerate", self.music, preexec_fn=shorten)
        self.assertEqual(self.paths(), [b"good.mp3"])

    def test_pipe_is_not_waited_for(self):
        os.mkfifo(os.path.join(self.music, "pipe.mp3"))
        self.song("z.mp3")
        _, err = self.run_program("--regenerate", self.music)
        self.assertEqual(self.paths(), [b"z.mp3"])
        self.assertIn(b"pipe.mp3: ", err)

    def test_progress_counts_on_one_line_of_a_terminal(self):
        self.songs("many", 30)
        master, slave = pty.openpty()
        process = self.start("--regenerate", self.music, stdout=slave)
        os.close(slave)
        shown = b""
        while True:
            try:
                part = os.read(master, 4096)
            except OSError:
                break
            if not part:
                break
            shown += part
        os.close(master)
        process.communicate()
        self.assertEqual(process.returncode, 0)
        counting, rest = shown.split(b"30/30", 1)
        self.assertNotIn(b"\n", counting)
        self.assertIn(b"\r\x1b[K", counting)
        self.assertTrue(rest.lstrip(b"\r").startswith(b"\n"))
        self.assertIn(b"Report: ", rest)

    def test_progress_is_plain_lines_elsewhere(self):
        self.songs("many", 30)
        out, _ = self.run_program("--regenerate", self.music)
        lines = out.decode().splitlines()
        self.assertEqual(lines[0], "Counting MP3s")
        self.assertIn("30/30", lines)
        self.assertNotIn("\x1b", out.decode())
        for line in lines[1:lines.index("30 MP3 files")]:
            self.assertTrue(re.fullmatch(r"\d+/30", line), line)

    def test_signal_ends_the_run_in_order(self):
        self.songs("many", 3000)
        process = self.start("--regenerate", self.music)
        line = process.stdout.readline()
        self.assertEqual(line, b"Counting MP3s\n")
        self.assertTrue(wait_for(lambda: os.path.exists(os.path.join(self.home, REPORT))))
        process.send_signal(signal.SIGTERM)
        process.communicate(timeout=30)
        self.assertEqual(process.returncode, 128 + signal.SIGTERM)
        self.assert_alone()
        self.assert_whole()
        done = len(self.paths())
        self.assertLess(done, 3000)
        self.run_program("--regenerate", self.music)
        self.assertEqual(len(set(self.paths())), 3000)
        self.assertEqual(len(self.paths()), 3000)


class Batch(ProgramTest):
    def test_an_argument_is_one_path_as_it_is(self):
        names = ['quo"te.mp3', "blank.mp3 ", 'a" "b.mp3']
        self.run_program(*(self.song(name) for name in names))
        self.assertEqual(self.paths(), [os.fsencode(name) for name in names])
        self.assertNotIn(b"couldn't", self.read("Solution.txt"))

    def test_options_end_behind_two_dashes(self):
        with open(os.path.join(self.scratch, "--odd.mp3"), "wb") as file:
            file.write(mp3_bytes())
        self.run_program("--", "--odd.mp3", cwd=self.scratch)
        self.assertEqual([os.path.basename(path) for path in self.paths()], [b"--odd.mp3"])

    def test_summary_that_cannot_be_written_is_a_failure(self):
        os.mkdir(os.path.join(self.home, "Solution.txt"))
        self.run_program(self.song("a.mp3"), status=1)


if __name__ == "__main__":
    unittest.main()
