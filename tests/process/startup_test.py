"""Start-up as a process: refusals, the program's folder, the command line, an orderly end."""
import os
import resource
import shutil
import signal
import sqlite3
import subprocess
import time
import unittest

from program import BIN, REPORT, ProgramTest, wait_for

DAMAGED = (b"Corrupted file: You're database is corrupted. Download the last version\n"
           b"of 'Tessaroon.mdb' and run the 'Tessaroon'. Would you like to go to\n"
           b"the download page now?\n")
TOO_OLD = b"Quenlin: You need a newer version of the database to go on.\n"


class Refusals(ProgramTest):
    def refused(self, words, *args):
        """The program ends with 1 and these words, and leaves the folder as it is."""
        def state():
            return {name: self.read(name) for name in os.listdir(self.home)}

        before = state()
        for arguments in (args,) if args else (("--regenerate", self.music),
                                               (os.path.join(self.music, "a.mp3"),)):
            out, err = self.run_program(*arguments, status=1)
            self.assertEqual(out, b"")
            self.assertEqual(err, words)
            self.assertEqual(state(), before)

    def write_catalogue(self, data):
        with open(self.catalogue(), "wb") as file:
            file.write(data)

    def change(self, statement):
        with sqlite3.connect(self.catalogue()) as connection:
            connection.execute(statement)
        connection.close()

    def test_absent(self):
        os.remove(self.catalogue())
        self.refused(DAMAGED)

    def test_cut_anywhere(self):
        whole = self.read("MP3s.mdb")
        for length in (0, 1, 15, 16, 99, 100, 512, 4096, len(whole) // 2, len(whole) - 1):
            with self.subTest(length):
                self.write_catalogue(whole[:length])
                self.refused(DAMAGED)

    def test_no_database(self):
        whole = self.read("MP3s.mdb")
        for data in (b"text\n" * 2000, bytes(4096) + whole[4096:]):
            self.write_catalogue(data)
            self.refused(DAMAGED)

    def test_a_folder_in_its_place(self):
        os.remove(self.catalogue())
        os.mkdir(self.catalogue())
        _, err = self.run_program("--regenerate", self.music, status=1)
        self.assertEqual(err, DAMAGED)

    def test_older(self):
        self.change("UPDATE Validations SET Version = '1.5.9'")
        self.refused(TOO_OLD)

    def test_table_missing(self):
        self.change("DROP TABLE Validations")
        self.refused(TOO_OLD)

    def test_version_that_is_none(self):
        self.change("UPDATE Validations SET Version = '1.6'")
        self.refused(b"Quenlin: Run-time error '9':\n\nSubscript out of range\n")

    def test_setting_that_is_no_number(self):
        folder = os.path.join(self.scratch, "config", "Quenlin")
        os.makedirs(folder)
        with open(os.path.join(folder, "settings.ini"), "w", encoding="utf-8") as file:
            file.write("[Preferences]\nWebStyle=abc\n")
        _, err = self.run_program("--regenerate", self.music)
        self.assertEqual(err.decode(), "(!) Quenlin: A setting is no number. The program goes on as if it were 1.\n\n"
                         "WebStyle=abc\n%s/settings.ini\n" % folder)


@unittest.skipUnless(os.geteuid() != 0 or shutil.which("setpriv"), "no way to a user without rights")
class NoRights(ProgramTest):
    """A catalogue that this user may not write: the usual words, then those of the operating system."""

    def refused(self, path):
        os.chmod(self.scratch, 0o755)
        command = [os.path.join(BIN, "quenlin"), "--regenerate", self.music]
        if os.geteuid() == 0:
            command = ["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups", *command]
        done = subprocess.run(command, env=self.env, stdin=subprocess.DEVNULL, capture_output=True, check=False,
                              timeout=60)
        self.assertEqual(done.returncode, 1)
        self.assertEqual(done.stderr, TOO_OLD + os.fsencode(path) + b": Permission denied\n")

    def test_a_catalogue_of_another_user(self):
        os.chmod(self.home, 0o777)
        os.chmod(self.catalogue(), 0o600 if os.geteuid() == 0 else 0)
        self.refused(self.catalogue())

    def test_a_folder_that_may_be_read_only(self):
        os.chmod(self.catalogue(), 0o666)
        os.chmod(self.home, 0o555)
        self.addCleanup(os.chmod, self.home, 0o755)
        self.refused(self.home)


class Limits(ProgramTest):
    def test_a_file_at_its_limit_is_an_error_and_no_signal(self):
        song = self.song("a.mp3", lyrics="la " * 20000)
        index = 32768  # bytes of the log's index: below, the catalogue cannot be opened
        for limit, status in ((index // 2, 1), (index + 1024, 3)):
            process = self.start(song, preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit)))
            process.communicate(timeout=60)
            self.assertEqual(process.returncode, status, limit)
            self.assertEqual(self.paths(), [])
        self.run_program(song)
        self.assertEqual(self.paths(), [b"a.mp3"])
        self.assert_whole()
        limit = len(self.read("Solution.txt"))
        process = self.start(song, preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit)))
        _, err = process.communicate(timeout=60)
        self.assertEqual(process.returncode, 1, err)

    def test_a_pipe_in_the_place_of_a_report_is_refused_at_once(self):
        for name, args in (("Solution.txt", [self.song("a.mp3")]), (REPORT, ["--regenerate", self.music])):
            with self.subTest(name):
                os.mkfifo(os.path.join(self.home, name))
                _, err = self.run_program(*args, status=1)
                self.assertIn(os.fsencode(name), err)

    def test_what_the_program_makes_is_the_users_alone(self):
        before = os.umask(0)
        try:
            self.run_program("--regenerate", self.music)
            self.run_program(self.song("a.mp3"))
        finally:
            os.umask(before)
        for name in (REPORT, "Solution.txt"):
            self.assertEqual(os.stat(os.path.join(self.home, name)).st_mode & 0o7777, 0o600, name)


class OddNames(ProgramTest):
    EVIL = b"a\x1b]0;owned\x07\r\n  This MP3 was added correctly:\xc2\x9b2J.mp3"

    def test_no_control_character_reaches_a_terminal_or_a_report(self):
        path = self.song(self.EVIL, v1=False)
        os.symlink(b"nowhere", path.replace(b"owned", b"gone"))
        texts = [*self.run_program("--regenerate", self.music), *self.run_program(path),
                 *self.run_program(path + b"\x1b.txt", status=0), *self.run_program("--\x1b", status=2),
                 self.read(REPORT), self.read("Solution.txt")]
        for text in texts:
            self.assertEqual([b for b in text if b < 32 and b not in b"\t\r\n"], [], text)
            self.assertNotIn(b"\xc2\x9b", text)
        self.assertEqual(self.read("Solution.txt").count(b"\r\n"), 2)
        self.assertEqual(self.paths(), [self.EVIL])

    def test_a_name_with_a_separator_in_it_is_one_path(self):
        path = self.song('a" "b.mp3')
        self.run_program(path)
        self.assertEqual(self.paths(), [b'a" "b.mp3'])


class CommandLine(ProgramTest):
    def test_help_and_version(self):
        out, err = self.run_program("--help")
        self.assertTrue(out.startswith(b"Usage: quenlin"))
        self.assertEqual(err, b"")
        out, _ = self.run_program("--version", "--nonsense")
        self.assertRegex(out, rb"^Quenlin \d+\.\d+\.\d+\n$")

    def test_mistakes(self):
        for args in (["--nonsense"], ["--regenerate"], ["--regenerate", "a", "b"],
                     ["--regenerate", ""]):
            with self.subTest(args):
                out, err = self.run_program(*args, status=2)
                self.assertEqual(out, b"")
                self.assertIn(b"Usage: quenlin", err)
        self.assertEqual(os.listdir(self.home), ["MP3s.mdb"])

    def test_nothing_to_do_without_a_display(self):
        out, err = self.run_program(status=2)
        self.assertEqual(out, b"")
        self.assertIn(b"Usage: quenlin", err)

    def test_a_display_that_does_not_answer_is_none_for_a_batch(self):
        for variable in ("DISPLAY", "WAYLAND_DISPLAY"):
            with self.subTest(variable):
                name = variable + ".mp3"
                env = dict(self.env, **{variable: ":987"})
                done = subprocess.run([os.path.join(BIN, "quenlin"), self.song(name)], env=env, check=False,
                                      stdin=subprocess.DEVNULL, capture_output=True)
                self.assertEqual((done.returncode, done.stderr), (0, b""))
                self.assertIn(os.fsencode(name), self.paths())

    def test_relative_paths_are_made_absolute(self):
        self.song("a.mp3")
        os.mkdir(os.path.join(self.music, "sub"))
        for path in ("a.mp3", "./a.mp3", "sub/../a.mp3", "sub//../a.mp3"):
            self.run_program(path, cwd=self.music)
        self.assertEqual(self.paths(), [b"a.mp3"])

    def test_closed_standard_streams_do_not_reach_the_catalogue(self):
        song = self.song("a.mp3")
        subprocess.run(["sh", "-c", "\"$0\" \"$1\" absent.mp3 <&- >&- 2>&-",
                        os.path.join(BIN, "quenlin"), song], env=self.env, check=True)
        self.assertEqual(self.paths(), [b"a.mp3"])
        self.assert_whole()

    def test_reader_that_goes_away_does_not_stop_the_job(self):
        self.songs("many", 300)
        process = self.start("--regenerate", self.music)
        process.stdout.close()
        process.stderr.close()
        process.wait(timeout=60)
        self.assertEqual(len(self.paths()), 300)

    def test_signal_ends_a_batch_in_order(self):
        songs = self.songs("many", 5000)
        process = self.start(*songs)
        log = self.catalogue() + "-wal"  # there while the catalogue is open
        self.assertTrue(wait_for(lambda: os.path.exists(log) and self.paths()))
        process.send_signal(signal.SIGINT)
        process.communicate(timeout=30)
        self.assertEqual(process.returncode, 128 + signal.SIGINT)
        self.assertFalse(os.path.exists(log))
        self.assert_whole()
        done = self.paths()
        self.assertLess(len(done), 5000)
        self.assertEqual(self.read("Solution.txt").count(b"    /"), len(done))


class Home(ProgramTest):
    def setUp(self):
        super().setUp()
        prefix = os.path.join(self.scratch, "prefix")
        os.makedirs(os.path.join(prefix, "bin"))
        self.program = shutil.copy(os.path.join(BIN, "quenlin"), os.path.join(prefix, "bin"))
        self.share = os.path.join(prefix, "share", "quenlin")
        shutil.copytree(self.home, self.share)
        del self.env["QUENLIN_HOME"]
        self.user = os.path.join(self.scratch, "data", "quenlin")

    def run_installed(self, *args):
        return subprocess.run([self.program, *args], env=self.env, stdin=subprocess.DEVNULL,
                              capture_output=True, check=False, timeout=60)

    def test_first_start_fills_the_users_folder_once(self):
        done = self.run_installed("--regenerate", self.music)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertTrue(os.path.exists(os.path.join(self.user, "MP3s.mdb")))
        self.assertEqual(os.listdir(self.share), ["MP3s.mdb"])
        os.remove(os.path.join(self.user, "MP3s.mdb"))
        done = self.run_installed("--regenerate", self.music)
        self.assertEqual((done.returncode, done.stderr), (1, DAMAGED))
        self.assertFalse(os.path.exists(os.path.join(self.user, "MP3s.mdb")))

    def test_users_folder_that_cannot_be_made_is_reported(self):
        with open(os.path.join(self.scratch, "data"), "w", encoding="utf-8"):
            pass
        done = self.run_installed("--regenerate", self.music)
        self.assertEqual(done.returncode, 1)
        self.assertIn(b"Run-time error", done.stderr)

    def test_portable_program_keeps_to_its_own_folder(self):
        bin_folder = os.path.dirname(self.program)
        with open(os.path.join(bin_folder, "portable"), "w", encoding="utf-8"):
            pass
        shutil.copy(os.path.join(self.share, "MP3s.mdb"), bin_folder)
        done = self.run_installed(self.song("a.mp3"))
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertTrue(os.path.exists(os.path.join(bin_folder, "Solution.txt")))
        self.assertFalse(os.path.exists(self.user))

    def test_file_types_are_registered_once(self):
        self.run_installed("--regenerate", self.music)
        packages = os.path.join(self.scratch, "data", "mime", "packages")
        names = ["quenlin-integrityreport.xml", "quenlin-languagefile.xml"]
        self.assertEqual(sorted(os.listdir(packages)), names)
        before = [os.stat(os.path.join(packages, name)).st_ino for name in names]
        self.run_installed("--regenerate", self.music)
        self.assertEqual(before, [os.stat(os.path.join(packages, name)).st_ino for name in names])


class AbandonedFiles(ProgramTest):
    """What a killed run has left: a file that did not get its name."""

    def test_a_start_removes_old_ones_from_its_own_folders_only(self):
        config = os.path.join(self.scratch, "config", "Quenlin")
        own = [self.home, os.path.join(self.home, "Backup"), config, os.path.join(config, "Drafts")]
        for folder in own:
            os.makedirs(folder, exist_ok=True)

        def write(folder, name, age_hours):
            path = os.path.join(folder, name)
            with open(path, "w", encoding="ascii") as file:
                file.write("the first part")
            age = time.time() - age_hours * 3600
            os.utime(path, (age, age))
            return path

        old = [write(folder, "KnownSongs.dat.quenlin-aB3dE6", 25) for folder in own]
        kept = [write(folder, name, age) for folder in own for name, age in
                (("KnownSongs.dat.quenlin-zzzzzz", 1), ("KnownSongs.dat.backup", 1000))]
        kept.append(write(self.music, "a.mp3.bck.quenlin-aB3dE6", 1000))  # the user's folder
        song = self.song("a.mp3")

        def is_clean():
            self.run_program(song)
            return not any(os.path.exists(path) for path in old)

        self.assertTrue(wait_for(is_clean))
        for path in kept:
            self.assertTrue(os.path.exists(path), path)


class Sample(ProgramTest):
    def test_the_sample_job_runs_in_a_scratch_folder(self):
        source = os.environ["QUENLIN_SOURCE"]
        env = dict(self.env, TMPDIR=self.scratch)
        done = subprocess.run([os.path.join(source, "tools", "sample"),
                               os.path.join(BIN, "quenlin")], env=env, stdin=subprocess.DEVNULL,
                              capture_output=True, check=False, timeout=120)
        self.assertEqual(done.returncode, 0, done.stderr)
        for words in (b"This file was created with Quenlin", b"This MP3 was added correctly:",
                      b"These MP3s couldn't be added/updated:", b"Lena Morava", b"./run --help"):
            self.assertIn(words.replace(b"added correctly", b"updated correctly")
                          if words.startswith(b"This MP3") else
                          words.replace(b"These MP3s", b"This MP3"), done.stdout)
        self.assertEqual(os.listdir(self.home), ["MP3s.mdb"])


if __name__ == "__main__":
    unittest.main()
