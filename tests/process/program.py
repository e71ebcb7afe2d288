"""The built program as a process, in a scratch folder of its own, and small real MP3 files."""
import os
import random
import shutil
import sqlite3
import subprocess
import tempfile
import time
import unittest
import wave

BIN = os.environ["QUENLIN_BIN"]  # the folder with the program
# As it is shipped: the one beside the program may be of an earlier build, as a user's is.
SHIPPED = os.path.join(BIN, "..", "share", "quenlin", "MP3s.mdb")
REPORT = "Quenlin - MP3s' Intregity Report.qrp"


class ProgramTest(unittest.TestCase):
    """A fresh program folder with the shipped catalogue, and a music folder beside it."""

    def setUp(self):
        self.scratch = tempfile.mkdtemp(prefix="quenlin-process-")
        self.addCleanup(shutil.rmtree, self.scratch, ignore_errors=True)
        self.home = os.path.join(self.scratch, "home")
        self.music = os.path.join(self.scratch, "music")
        os.mkdir(self.home)
        os.mkdir(self.music)
        shutil.copy(SHIPPED, self.home)
        self.env = {key: value for key, value in os.environ.items()
                    if key not in ("DISPLAY", "WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS")}
        self.env.update(QUENLIN_HOME=self.home, HOME=self.scratch, LC_ALL="C.UTF-8",
                        XDG_CONFIG_HOME=os.path.join(self.scratch, "config"),
                        XDG_DATA_HOME=os.path.join(self.scratch, "data"))

    def start(self, *args, **options):
        options.setdefault("stdin", subprocess.DEVNULL)
        options.setdefault("stdout", subprocess.PIPE)
        options.setdefault("stderr", subprocess.PIPE)
        return subprocess.Popen([os.path.join(BIN, "quenlin"), *args], env=self.env, **options)

    def run_program(self, *args, status=0, **options):
        """(standard output, standard error) as bytes, after the wanted exit status."""
        process = self.start(*args, **options)
        out, err = process.communicate(timeout=300)
        self.assertEqual(process.returncode, status, (out + err).decode(errors="replace"))
        return out, err

    def catalogue(self):
        return os.path.join(self.home, "MP3s.mdb")

    def query(self, statement):
        """The rows of a statement; texts as bytes."""
        with sqlite3.connect("file:%s?mode=ro" % self.catalogue(), uri=True) as connection:
            connection.text_factory = bytes
            rows = connection.execute(statement).fetchall()
        connection.close()
        return rows

    def paths(self):
        """The catalogued paths below the music folder, in the order in which they were added."""
        prefix = os.fsencode(self.music) + b"/"
        return [path[len(prefix):] if path.startswith(prefix) else path
                for (path,) in self.query("SELECT Path FROM MP3s ORDER BY rowid")]

    def assert_whole(self):
        self.assertEqual(self.query("PRAGMA integrity_check"), [(b"ok",)])

    def assert_alone(self):
        """The catalogue's file is complete without its log. To be called before any query."""
        self.assertEqual([name for name in os.listdir(self.home)
                          if name in ("MP3s.mdb-wal", "MP3s.mdb-shm", "MP3s.mdb-journal")], [])

    def read(self, name):
        with open(os.path.join(self.home, name), "rb") as file:
            return file.read()

    def song(self, name, **tags):
        """A silent MP3 with both tags; `name` below the music folder, text or bytes."""
        path = os.path.join(os.fsencode(self.music), os.fsencode(name))
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(mp3_bytes(**tags))
        return path

    def songs(self, folder, count):
        """`count` songs in sub-folders of ten of `folder`; their paths."""
        return [self.song("%s/%03d/%05d.mp3" % (folder, number // 10, number),
                          title="%s %d" % (folder, number), lyrics="la " * 300)
                for number in range(count)]


def frame(name, data):
    return name + len(data).to_bytes(4, "big") + b"\0\0" + data


def mp3_bytes(title="Title", artist="Artist", lyrics="", v1=True):
    def text(value):
        return value.encode("latin-1")

    frames = frame(b"TIT2", b"\0" + text(title)) + frame(b"TPE1", b"\0" + text(artist))
    frames += frame(b"TCON", b"\0(17)")
    if lyrics:
        frames += frame(b"USLT", b"\0eng\0" + text(lyrics))
    size = len(frames)
    head = b"ID3\3\0\0" + bytes(size >> shift & 0x7F for shift in (21, 14, 7, 0))
    audio = 8 * (b"\xff\xfb\x90\x64" + bytes(413))
    tail = (b"TAG" + text(title)[:30].ljust(30, b"\0") + text(artist)[:30].ljust(30, b"\0")
            + bytes(30 + 4 + 28) + b"\0\1\x11")
    return head + frames + audio + (tail if v1 else b"")


def encode(path, *options, seconds=1):
    """A real MP3 by the encoder `lame`, from noise."""
    with tempfile.NamedTemporaryFile(suffix=".wav") as source:
        with wave.open(source.name, "wb") as sound:
            sound.setnchannels(2)
            sound.setsampwidth(2)
            sound.setframerate(44100)
            sound.writeframes(random.Random(1).randbytes(seconds * 44100 * 4))
        subprocess.run(["lame", "--quiet", *options, source.name, path], check=True)


def wait_for(condition, seconds=60):
    """Waits until `condition()` is true; False when it is not in time."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if condition():
            return True
        time.sleep(0.002)
    return False
