"""Tags of all versions, encodings and flags: this program, mutagen, TagLib and ffmpeg read the same in files
that any of them wrote; an edit keeps every other frame and the sound."""
import itertools
import json
import os
import struct
import subprocess
import sys
import unittest
import zlib

import mutagen.id3

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from program import BIN, ProgramTest, encode  # noqa: E402

SCRIPTS = {
    "latin": {"title": "Señor Ångström", "artist": "Beyoncé", "album": "Ça ira", "comment": "naïve"},
    "japanese": {"title": "桜の花", "artist": "宇多田ヒカル", "album": "初恋", "comment": "良い"},
    "russian": {"title": "Группа крови", "artist": "Кино", "album": "Ночь", "comment": "Хорошо"},
    "arabic": {"title": "نسم علينا الهوى", "artist": "فيروز", "album": "بياع الخواتم", "comment": "جميل"},
    "emoji": {"title": "😀🎵", "artist": "👩‍🎤", "album": "🌍", "comment": "é😀"},
}
NUMBERS = {"year": "1999", "track": "7", "genre": "Rock"}
LYRICS = {name: f"[00:01]{texts['title']}\r\n[00:02]{texts['artist']}\r\n" for name, texts in SCRIPTS.items()}
FIELDS = ("title", "artist", "album", "comment", "year", "track", "genre", "lyrics")
CODECS = {0: "latin-1", 1: "utf-16", 2: "utf-16-be", 3: "utf-8"}
ENDS = {0: b"\0", 1: b"\0\0", 2: b"\0\0", 3: b"\0"}
OLD_NAMES = {"TIT2": "TT2", "TPE1": "TP1", "TALB": "TAL", "TYER": "TYE", "TCON": "TCO", "TRCK": "TRK",
             "COMM": "COM", "USLT": "ULT", "TPE2": "TP2"}


def fields_of(script):
    return {**SCRIPTS[script], **NUMBERS, "lyrics": LYRICS[script]}


def syncsafe(number):
    return bytes(number >> shift & 0x7F for shift in (21, 14, 7, 0))


def unsynchronised(data):
    out = bytearray()
    for at, byte in enumerate(data):
        out.append(byte)
        if byte == 0xFF and (at + 1 == len(data) or data[at + 1] >= 0xE0 or data[at + 1] == 0):
            out.append(0)
    return bytes(out)


def contents(encoding, fields):
    """The frames of a song by name, each as its content."""
    def text(value):
        return value.encode(CODECS[encoding])

    head = bytes([encoding])
    described = {}
    for name, field in (("COMM", "comment"), ("USLT", "lyrics")):
        start = text("") if encoding == 1 else b""
        described[name] = head + b"eng" + start + ENDS[encoding] + text(fields[field])
    return {"TIT2": head + text(fields["title"]), "TPE1": head + text(fields["artist"]),
            "TALB": head + text(fields["album"]), "TRCK": head + text(fields["track"] + "/12"),
            "TCON": head + text("(17)"), **described}


def frame(version, name, data, flag):
    if version == 2:
        return OLD_NAMES.get(name, name[:3]).encode() + struct.pack(">I", len(data))[1:] + data
    flags = 0
    if version == 3:
        if flag == "compressed":
            data, flags = struct.pack(">I", len(data)) + zlib.compress(data), 0x80
        elif flag == "grouped":
            data, flags = b"\x55" + data, 0x20
        return name.encode() + struct.pack(">I", len(data)) + bytes([0, flags]) + data
    if flag == "compressed":
        data, flags = syncsafe(len(data)) + zlib.compress(data), 0x09
    elif flag == "length":
        data, flags = syncsafe(len(data)) + data, 0x01
    elif flag == "grouped":
        data, flags = b"\x55" + data, 0x40
    elif flag == "unsync":
        data, flags = syncsafe(len(data)) + unsynchronised(data), 0x03
    return name.encode() + syncsafe(len(data)) + bytes([0, flags]) + data


def tag(version, encoding, flag, fields, more=()):
    frames = contents(encoding, fields)
    year = "TDRC" if version == 4 else "TYER"
    frames[year] = b"\0" + fields["year"].encode()
    body = b"".join(frame(version, name, data, flag) for name, data in frames.items())
    body += b"".join(frame(version, name, data, "") for name, data in more)
    flags = 0
    if flag == "extended":
        extended = struct.pack(">I", 6) + bytes(6) if version == 3 else syncsafe(6) + b"\x01\x00"
        body, flags = extended + body, 0x40
    body += bytes(30)
    if flag == "unsync" and version < 4:
        body, flags = unsynchronised(body), 0x80
    elif flag == "unsync":
        flags = 0x80
    return b"ID3" + bytes([version, 0, flags]) + syncsafe(len(body)) + body


FLAGS = {2: ("", "unsync"), 3: ("", "unsync", "compressed", "grouped", "extended"),
         4: ("", "unsync", "compressed", "length", "grouped", "extended")}
ENCODINGS = {2: (0, 1), 3: (0, 1), 4: (0, 1, 2, 3)}


def by_mutagen(path):
    tags = mutagen.id3.ID3(path)

    def text(name):
        return "; ".join(str(value) for value in tags[name].text) if name in tags else ""

    def described(name):
        frames = tags.getall(name)
        return str(frames[0].text[0] if isinstance(frames[0].text, list) else frames[0].text) if frames else ""

    return {"title": text("TIT2"), "artist": text("TPE1"), "album": text("TALB"), "year": text("TDRC")[:4],
            "track": text("TRCK").split("/")[0], "genre": "; ".join(tags["TCON"].genres) if "TCON" in tags else "",
            "comment": described("COMM"), "lyrics": described("USLT")}


def by_ffmpeg(path):
    done = subprocess.run(["ffprobe", "-v", "error", "-show_format", "-of", "json", path], check=True,
                          capture_output=True)
    tags = {key.lower(): value for key, value in json.loads(done.stdout)["format"].get("tags", {}).items()}
    lyrics = [value for key, value in tags.items() if key.startswith("lyrics")]
    return {"title": tags.get("title", ""), "artist": tags.get("artist", ""), "album": tags.get("album", ""),
            "year": tags.get("date", "")[:4], "track": tags.get("track", "").split("/")[0],
            "genre": tags.get("genre", ""), "comment": tags.get("comment", ""), "lyrics": lyrics[0] if lyrics else ""}


def tagtool(*words):
    done = subprocess.run([os.path.join(BIN, "tagtool"), *words], capture_output=True, check=True)
    return json.loads(done.stdout)


def own(path):
    return {key: value for key, value in tagtool("read", path).items() if key in FIELDS}


def by_taglib(path):
    return tagtool("taglib", path)


def sound(path):
    """The checksum of the encoded sound, as a player gets it."""
    done = subprocess.run(["ffmpeg", "-v", "error", "-i", path, "-map", "0:a", "-c", "copy", "-f", "md5", "-"],
                          check=True, capture_output=True)
    return done.stdout


def foreign(path, without):
    """Every frame but those of some fields, as comparable values."""
    frames = {}
    for key, frame_ in mutagen.id3.ID3(path).items():
        if key.split(":")[0] in without:
            continue
        frames[key] = {name: value for name, value in vars(frame_).items() if name not in ("encoding", "sub_frames")}
        if hasattr(frame_, "sub_frames"):
            frames[key]["sub_frames"] = {name: str(sub) for name, sub in frame_.sub_frames.items()}
    return frames


class Unicode(ProgramTest):
    def setUp(self):
        super().setUp()
        self.plain = os.path.join(self.scratch, "plain.mp3")
        encode(self.plain, "-b", "128", "-t")
        with open(self.plain, "rb") as file:
            self.audio = file.read()
        self.path = os.path.join(self.music, "song.mp3")

    def write(self, data):
        with open(self.path, "wb") as file:
            file.write(data)

    def assert_alike(self, want, *readers):
        for reader in readers:
            found = reader(self.path)
            self.assertEqual({key: found[key] for key in want}, want, reader.__name__)

    def test_every_version_encoding_and_flag_is_read_alike(self):
        count = 0
        for version, script in itertools.product((2, 3, 4), SCRIPTS):
            for encoding, flag in itertools.product(ENCODINGS[version], FLAGS[version]):
                if encoding == 0 and script != "latin":
                    continue
                with self.subTest(version=version, script=script, encoding=encoding, flag=flag):
                    self.write(tag(version, encoding, flag, fields_of(script)) + self.audio)
                    self.assert_alike(fields_of(script), own)
                    if flag != "grouped":  # which mutagen does not read
                        self.assert_alike(fields_of(script), by_mutagen)
                    if flag in ("", "unsync"):
                        self.assert_alike(fields_of(script), by_taglib)
                    count += 1
        self.assertGreater(count, 100)

    def test_what_other_programs_write(self):
        for script in SCRIPTS:
            want = fields_of(script)
            for version in (3, 4):
                with self.subTest(script=script, version=version, by="mutagen"):
                    for encoding in (1, 3):
                        self.write(self.audio)
                        self.by_mutagen(want, version, encoding)
                        self.assert_alike(want, own, by_mutagen, by_taglib)
                with self.subTest(script=script, version=version, by="TagLib"):
                    self.write(self.audio)
                    words = [f"{name}={value}" for name, value in want.items()]
                    subprocess.run([os.path.join(BIN, "tagtool"), "taglibwrite", self.path, str(version), *words],
                                   check=True)
                    self.assert_alike(want, own, by_mutagen, by_taglib)
                with self.subTest(script=script, version=version, by="ffmpeg"):
                    names = {"year": "date"}
                    words = [part for name in ("title", "artist", "album", "genre", "track", "year")
                             for part in ("-metadata", f"{names.get(name, name)}={want[name]}")]
                    subprocess.run(["ffmpeg", "-y", "-v", "error", "-i", self.plain, "-c", "copy", "-id3v2_version",
                                    str(version), *words, self.path], check=True)
                    some = {name: want[name] for name in ("title", "artist", "album", "genre", "track", "year")}
                    self.assert_alike(some, own, by_mutagen, by_taglib, by_ffmpeg)
            with self.subTest(script=script, by="lame"):
                kind = "--id3v2-latin1" if script == "latin" else "--id3v2-utf16"
                encode(self.path, "-b", "128", "--id3v2-only", kind, "--tt", want["title"], "--ta", want["artist"],
                       "--tl", want["album"], "--ty", "1999", "--tn", "7", "--tg", "Rock", "--tc", want["comment"])
                some = {name: value for name, value in want.items() if name != "lyrics"}
                self.assert_alike(some, own, by_mutagen)

    def by_mutagen(self, fields, version, encoding, more=()):
        tags = mutagen.id3.ID3()
        for name, field in (("TIT2", "title"), ("TPE1", "artist"), ("TALB", "album"), ("TCON", "genre"),
                            ("TRCK", "track"), ("TDRC", "year")):
            tags.add(getattr(mutagen.id3, name)(encoding=encoding, text=fields[field]))
        tags.add(mutagen.id3.COMM(encoding=encoding, lang="eng", desc="", text=fields["comment"]))
        tags.add(mutagen.id3.USLT(encoding=encoding, lang="eng", desc="", text=fields["lyrics"]))
        for frame_ in more:
            tags.add(frame_)
        if version == 3:
            tags.update_to_v23()
        tags.save(self.path, v2_version=version, v1=0)

    def other_frames(self, encoding):
        id3 = mutagen.id3
        return [
            id3.APIC(encoding=encoding, mime="image/png", type=3, desc="Обложка", data=os.urandom(5000) + b"\xff\xfb\0"),
            id3.APIC(encoding=encoding, mime="image/jpeg", type=4, desc="back", data=b"\xff\xd8\xff\xe0" * 300),
            id3.PRIV(owner="someone", data=b"\xff\xfe\0\xff\xe0\0"), id3.PRIV(owner="other", data=os.urandom(300)),
            id3.POPM(email="who@example.org", rating=196, count=12), id3.PCNT(count=77),
            id3.UFID(owner="http://musicbrainz.org", data=b"id-\xff\0"), id3.MCDI(data=os.urandom(804)),
            id3.TXXX(encoding=encoding, desc="Ключ", text="значение"),
            id3.TXXX(encoding=encoding, desc="replaygain_track_gain", text="-7.2 dB"),
            id3.GEOB(encoding=encoding, mime="x/y", filename="имя.txt", desc="что", data=b"\0\xff\xfb"),
            id3.WXXX(encoding=encoding, desc="страница", url="http://example.org"), id3.WOAR(url="http://example.org/a"),
            id3.TCOM(encoding=encoding, text="Цой"), id3.TPE2(encoding=encoding, text="Группа"),
            id3.TPOS(encoding=encoding, text="1/2"), id3.TBPM(encoding=encoding, text="120"),
            id3.TCMP(encoding=encoding, text="1"), id3.COMM(encoding=encoding, lang="rus", desc="Ещё", text="другой"),
            id3.CHAP(element_id="ch1", start_time=0, end_time=1000, start_offset=0xFFFFFFFF, end_offset=0xFFFFFFFF,
                     sub_frames=[id3.TIT2(encoding=encoding, text="Глава")]),
            id3.CTOC(element_id="toc", flags=3, child_element_ids=["ch1"],
                     sub_frames=[id3.TIT2(encoding=encoding, text="Оглавление")]),
        ]

    def test_an_edit_keeps_all_else(self):
        for version, script in itertools.product((3, 4), SCRIPTS):
            with self.subTest(version=version, script=script):
                self.write(self.audio)
                old = {**fields_of("russian"), "title": "Old", "lyrics": "old"}
                self.by_mutagen(old, version, 1 if version == 3 else 3, self.other_frames(1 if version == 3 else 3))
                before = foreign(self.path, ("TIT2", "USLT"))
                self.assertEqual(len(before), 27)
                heard = sound(self.path)
                want = {**old, "title": SCRIPTS[script]["title"], "lyrics": LYRICS[script]}
                done = tagtool("edit", self.path, f"title={want['title']}", f"lyrics={want['lyrics']}")
                self.assertEqual(done, {"result": "written", "boxes": ""})
                self.assertEqual(foreign(self.path, ("TIT2", "USLT")), before)
                self.assertEqual(mutagen.id3.ID3(self.path).version, (2, 3, 0))
                self.assertEqual(sound(self.path), heard)
                self.assertEqual(contents_end(self.path, len(self.audio)), self.audio)
                self.assert_alike(want, own, by_mutagen, by_taglib)
                self.assert_alike({name: want[name] for name in ("title", "artist", "album", "lyrics")}, by_ffmpeg)
                self.assertEqual(tagtool("edit", self.path, f"title={want['title']}")["result"], "unchanged")

    def test_every_field_of_every_version_is_written_alike(self):
        for version, script in itertools.product((2, 3, 4), SCRIPTS):
            for encoding, flag in itertools.product(ENCODINGS[version], FLAGS[version]):
                if encoding == 0 and script != "latin":
                    continue
                with self.subTest(version=version, script=script, encoding=encoding, flag=flag):
                    band = bytes([encoding]) + "Band".encode(CODECS[encoding])
                    self.write(tag(version, encoding, flag, fields_of(script), [("TPE2", band)]) + self.audio)
                    want = {**fields_of("japanese" if script != "japanese" else "arabic"), "year": "2001",
                            "track": "8", "genre": "Jazz"}
                    done = tagtool("edit", self.path, *(f"{name}={value}" for name, value in want.items()))
                    self.assertEqual(done, {"result": "written", "boxes": ""})
                    self.assert_alike(want, own, by_mutagen, by_taglib, by_ffmpeg)
                    tags = mutagen.id3.ID3(self.path)
                    self.assertEqual(str(tags["TPE2"]), "Band")
                    self.assertEqual(str(tags["TRCK"]), "8/12")
                    self.assertEqual(contents_end(self.path, len(self.audio)), self.audio)

    def test_people_and_dates_of_version_24(self):
        self.write(self.audio)
        id3 = mutagen.id3
        self.by_mutagen({**fields_of("latin"), "year": "2004-05-06 07:08"}, 4, 3, [
            id3.TIPL(encoding=3, people=[["mix", "Ön"]]), id3.TMCL(encoding=3, people=[["drums", "Ринго"]]),
            id3.TDOR(encoding=3, text="1969"), id3.TSOP(encoding=3, text="Beyonce"),
            id3.RVA2(desc="track", channel=1, gain=-2.0, peak=0.5)])
        self.assertEqual(tagtool("edit", self.path, "title=New")["result"], "written")
        raw = mutagen.id3.ID3(self.path, translate=False)
        self.assertEqual((str(raw["TYER"]), str(raw["TDAT"]), str(raw["TIME"]), str(raw["TORY"])),
                         ("2004", "0605", "0708", "1969"))
        self.assertEqual(sorted(raw["IPLS"].people), [["drums", "Ринго"], ["mix", "Ön"]])
        self.assertEqual(str(raw["TSOP"]), "Beyonce")
        self.assertEqual(raw.getall("RVA2")[0].gain, -2.0)
        self.assertEqual(str(mutagen.id3.ID3(self.path)["TDRC"]), "2004-05-06 07:08:00")

    def test_the_job_in_a_terminal(self):
        """A folder is read in the usual way; the option is named; with it every script is in the catalogue."""
        for number, script in enumerate(SCRIPTS):
            self.path = os.path.join(self.music, f"{number}.mp3")
            self.write(self.audio)
            self.by_mutagen(fields_of(script), 4, 3)
        out, _ = self.run_program("--regenerate", self.music)
        self.assertIn(b"5 of these files have tags whose texts cannot be read in the usual way", out)
        self.assertIn(b"--unicode-tags on\n", out)
        self.assertEqual(self.query("SELECT DISTINCT Title FROM MP3s"), [(b"",)])
        self.run_program("--unicode-tags", "on")
        out, _ = self.run_program("--regenerate", self.music)
        self.assertNotIn(b"--unicode-tags", out)
        rows = self.query("SELECT Title, Artist, Album, Year, Comment, Genre, Lyrics FROM MP3s ORDER BY Path")
        want = [tuple(fields_of(script)[name].encode()
                      for name in ("title", "artist", "album", "year", "comment", "genre", "lyrics"))
                for script in SCRIPTS]
        self.assertEqual(rows, want)
        text = os.path.join(self.scratch, "1.txt")
        with open(text, "wb") as file:
            file.write("﻿歌詞\r\n".encode())
        out, err = self.run_program(text)
        self.assertIn(b"The lyrics were added correctly.", out + err)
        self.path = os.path.join(self.music, "1.mp3")
        self.assert_alike({**fields_of("japanese"), "lyrics": "歌詞\r\n"}, own, by_mutagen, by_taglib)
        self.assertEqual(self.query("SELECT Lyrics FROM MP3s WHERE Path LIKE '%/1.mp3'"), [("歌詞\r\n".encode(),)])
        self.run_program("--unicode-tags", "off", "--regenerate", self.music)
        self.assertIn((b"",), self.query("SELECT DISTINCT Title FROM MP3s"))
        _, err = self.run_program("--unicode-tags", "perhaps", status=2)
        self.assertIn(b'--unicode-tags takes "on" or "off".', err)


def contents_end(path, size):
    with open(path, "rb") as file:
        return file.read()[-size:]


if __name__ == "__main__":
    unittest.main()
