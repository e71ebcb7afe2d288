"""Tags of all versions, encodings and flags: this program, mutagen, TagLib and ffmpeg read the same in files
that any of them wrote; an edit keeps every other frame and the sound."""
import itertools
import json
import os
import re
import shutil
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
# Runs a command from a small process and prints its peak memory (KiB) after its output.
PEAK = """
import resource, subprocess, sys
status = subprocess.run(sys.argv[1:]).returncode
print(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss)
sys.exit(status)
"""
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
    size = struct.pack(">I", len(data)) if flag == "plain" else syncsafe(len(data))
    return name.encode() + size + bytes([0, flags]) + data


def tag(version, encoding, flag, fields, more=()):
    frames = contents(encoding, fields)
    year = "TDRC" if version == 4 else "TYER"
    frames[year] = b"\0" + fields["year"].encode()
    if flag == "ended":
        frames = {name: data + ENDS[data[0]] for name, data in frames.items()}
    body = b"".join(frame(version, name, data, flag) for name, data in frames.items())
    body += b"".join(frame(version, name, data, "") for name, data in more)
    flags = 0
    if flag == "extended":
        extended = struct.pack(">I", 6) + bytes(6) if version == 3 else syncsafe(6) + b"\x01\x00"
        body, flags = extended + body, 0x40
    elif flag == "crc":  # in version 2.4 with restrictions as well
        extended = (struct.pack(">IHII", 10, 0x8000, 30, 0x12345678) if version == 3
                    else syncsafe(14) + b"\x01\x30\x05" + bytes([1, 2, 3, 4, 5]) + b"\x01\xff")
        body, flags = extended + body, 0x40
    if flag not in ("footer", "end", "seek"):  # with a footer there is no padding
        body += bytes(30)
    if flag == "unsync" and version < 4:
        body, flags = unsynchronised(body), 0x80
    elif flag == "unsync":
        flags = 0x80
    elif flag in ("footer", "end", "seek"):
        flags = 0x10
    end = bytes([version, 0, flags]) + syncsafe(len(body))
    return b"ID3" + end + body + (b"3DI" + end if flags & 0x10 else b"")


def song(version, flag, tag_, audio):
    """The tag and the audio, in the order that the flag says."""
    if flag == "end":
        return audio + tag_
    if flag == "seek":
        seek = frame(version, "SEEK", struct.pack(">I", len(audio)), "")
        return b"ID3\x04\0\0" + syncsafe(len(seek)) + seek + audio + tag_
    return tag_ + audio


FLAGS = {2: ("", "unsync"), 3: ("", "unsync", "compressed", "grouped", "extended", "crc", "ended"),
         4: ("", "unsync", "compressed", "length", "grouped", "extended", "crc", "ended", "footer", "plain", "end",
             "seek")}
# What the others do not read: mutagen no group bytes and no tag that is not at the beginning; TagLib is asked
# for the forms alone that it reads (it does not read the last frame before a footer).
NOT_BY_MUTAGEN = ("grouped", "end", "seek")
BY_TAGLIB = ("", "unsync", "ended", "length", "plain")
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
    return named(json.loads(done.stdout)["format"].get("tags", {}))


def all_by_ffmpeg(paths, scratch):
    """The results of by_ffmpeg for the songs; the program is started once for forty of them."""
    found = []
    for start in range(0, len(paths), 40):
        songs = paths[start:start + 40]
        outputs = [os.path.join(scratch, f"{number}.tags") for number in range(len(songs))]
        command = ["ffmpeg", "-y", "-v", "error"]
        for path in songs:
            command += ["-i", path]
        for number, output in enumerate(outputs):
            command += ["-map_metadata", str(number), "-f", "ffmetadata", output]
        subprocess.run(command, check=True, capture_output=True)
        for output in outputs:
            with open(output, encoding="utf-8", newline="") as file:
                found.append(named(unescaped(re.split(r"(?<!\\)\n\[", file.read())[0] + "\n")))
    return found


def unescaped(text):
    """The entries of a file of tags, in which a backslash is before each character with a meaning."""
    def plain(part):
        return re.sub(r"\\(.)", r"\1", part, flags=re.DOTALL)

    entries = re.findall(r"^((?:\\.|[^=\\\n])*)=((?:\\.|[^\\\n])*)\n", text, re.DOTALL | re.MULTILINE)
    return {plain(name): plain(value) for name, value in entries}


def named(tags):
    """The fields among ffmpeg's names for them."""
    tags = {key.lower(): value for key, value in tags.items()}
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
                if (encoding == 0 and script != "latin") or (flag and script in ("russian", "arabic")):
                    continue
                with self.subTest(version=version, script=script, encoding=encoding, flag=flag):
                    self.write(song(version, flag, tag(version, encoding, flag, fields_of(script)), self.audio))
                    self.assert_alike(fields_of(script), own)
                    if flag not in NOT_BY_MUTAGEN:
                        self.assert_alike(fields_of(script), by_mutagen)
                    if flag in BY_TAGLIB:
                        self.assert_alike(fields_of(script), by_taglib)
                    count += 1
        self.assertGreater(count, 150)

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
        written, wanted = [], []
        for version, script in itertools.product((2, 3, 4), ("latin", "japanese")):
            for encoding, flag in itertools.product(ENCODINGS[version], FLAGS[version]):
                if encoding == 0 and script != "latin":
                    continue
                with self.subTest(version=version, script=script, encoding=encoding, flag=flag):
                    band = bytes([encoding]) + "Band".encode(CODECS[encoding])
                    self.write(song(version, flag, tag(version, encoding, flag, fields_of(script), [("TPE2", band)]),
                                    self.audio))
                    want = {**fields_of("japanese" if script != "japanese" else "arabic"), "year": "2001",
                            "track": "8", "genre": "Jazz"}
                    done = tagtool("edit", self.path, *(f"{name}={value}" for name, value in want.items()))
                    self.assertEqual(done, {"result": "written", "boxes": ""})
                    self.assert_alike(want, own, by_mutagen, by_taglib)
                    tags = mutagen.id3.ID3(self.path)
                    self.assertEqual(str(tags["TPE2"]), "Band")
                    self.assertEqual(str(tags["TRCK"]), "8/12")
                    self.assertEqual(contents_end(self.path, len(self.audio)), self.audio)
                    written.append(os.path.join(self.scratch, f"{version} {script} {encoding} {flag}.mp3"))
                    shutil.copy(self.path, written[-1])
                    wanted.append(want)
        self.assertGreater(len(written), 100)
        for path, want, found in zip(written, wanted, all_by_ffmpeg(written, self.scratch), strict=True):
            self.assertEqual(found, want, path)

    def by_hand(self, version, *frames):
        self.write(b"ID3" + bytes([version, 0, 0]) + syncsafe(sum(map(len, frames))) + b"".join(frames) + self.audio)

    def test_written_forms_of_genres_tracks_and_years(self):
        """Where mutagen reads another text, it is named; TagLib and ffmpeg differ more."""
        genres = [("(17)", "Rock", None), ("17", "Rock", None), ("Rock", "Rock", None), ("RX", "Remix", None),
                  ("(RX)", "Remix", None), ("CR", "Cover", None), ("(CR)", "Cover", None),
                  ("(8)(17)", "Jazz; Rock", None), ("((foo)", "(foo)", None), ("My own", "My own", None),
                  # The text refines the number in front of it (2.3, section 4.2.1); mutagen lists both.
                  ("(4)Eurodisco", "Eurodisco", "Disco; Eurodisco"), ("(17)Rock", "Rock", None)]
        for text, want, by_others in genres:
            with self.subTest(genre=text):
                self.by_hand(3, frame(3, "TCON", b"\0" + text.encode(), ""))
                self.assert_alike({"genre": want}, own)
                self.assert_alike({"genre": by_others or want}, by_mutagen)
        self.by_hand(4, frame(4, "TCON", b"\x0317\0Own\x008", ""))
        self.assert_alike({"genre": "Rock; Own; Jazz"}, own, by_mutagen)
        for text, want in (("3/12", "3"), ("03/12", "3"), ("7", "7")):
            with self.subTest(track=text):
                self.by_hand(3, frame(3, "TRCK", b"\0" + text.encode(), ""))
                self.assert_alike({"track": want}, own)
                self.assert_alike({"track": text.split("/")[0]}, by_mutagen)
        for version, frames, want in ((3, {"TYER": "1999"}, "1999"), (4, {"TDRC": "2004-05-06T07:08"}, "2004"),
                                      (4, {"TDRC": "2004", "TYER": "1999"}, "2004"), (4, {"TYER": "1999"}, "1999")):
            with self.subTest(years=frames):
                self.by_hand(version, *(frame(version, name, b"\0" + text.encode(), "")
                                        for name, text in frames.items()))
                self.assert_alike({"year": want}, own, by_mutagen)
        self.by_hand(4, frame(4, "TDRL", b"\x032010-01-02", ""))
        self.assert_alike({"year": "2010"}, own)

    def test_texts_without_a_mark_and_in_the_wrong_encoding(self):
        """UTF-16 whose byte order has to be guessed, UTF-8 marked as Latin-1: only this program reads them."""
        for text, data in (("Title", "Title".encode("utf-16-le")), ("Title", "Title".encode("utf-16-be"))):
            self.by_hand(3, frame(3, "TIT2", b"\x01" + data, ""))
            self.assert_alike({"title": text}, own)
        for script in ("japanese", "russian", "arabic", "emoji", "latin"):
            title = SCRIPTS[script]["title"]
            self.by_hand(3, frame(3, "TIT2", b"\0" + title.encode(), ""))
            self.assert_alike({"title": title}, own)
            for mark in ("", "\ufeff"):
                self.by_hand(4, frame(4, "TIT2", b"\x03" + (mark + title).encode(), ""))
                self.assert_alike({"title": title}, own)
                self.by_hand(4, frame(4, "TIT2", b"\x02" + title.encode("utf-16-be"), ""))
                self.assert_alike({"title": title}, own, by_mutagen, by_taglib)
        self.by_hand(4, frame(4, "TPE1", b"\x03" + "桜\0Кино\0x".encode(), ""))
        self.assert_alike({"artist": "桜; Кино; x"}, own, by_mutagen)

    def test_an_encrypted_frame_is_skipped_and_kept(self):
        secret = b"\x01" + os.urandom(40)
        for version, flag in ((3, 0x40), (4, 0x04)):
            size = struct.pack(">I", len(secret)) if version == 3 else syncsafe(len(secret))
            self.by_hand(version, b"TIT2" + size + bytes([0, flag]) + secret,
                         frame(version, "TPE1", b"\0Artist", ""))
            self.assert_alike({"title": "", "artist": "Artist"}, own, by_mutagen)
            self.assertEqual(tagtool("edit", self.path, "artist=桜"), {"result": "written", "boxes": ""})
            with open(self.path, "rb") as file:
                self.assertIn(b"TIT2" + struct.pack(">I", len(secret)) + b"\0\x40" + secret, file.read())

    def test_the_old_tag_fills_what_is_missing(self):
        old = b"TAG" + b"".join(text.encode("cp1252").ljust(size, b"\0") for text, size in (
            ("Title", 30), ("Señor", 30), ("Album", 30), ("1999", 4), ("Words", 28))) + b"\0\x07\x11"
        self.write(tag(3, 1, "", {**fields_of("japanese"), "artist": "", "year": ""}) + self.audio + old)
        out, _ = self.run_program("--unicode-tags", "on", "--regenerate", self.music)
        self.assertEqual(self.query("SELECT Title, Artist, Album, Year FROM MP3s"),
                         [tuple(text.encode() for text in ("桜の花", "Señor", "初恋", "1999"))])
        self.run_program("--unicode-tags", "off")

    def test_a_picture_of_a_hundred_megabytes(self):
        """It is written completely, with few copies of it in memory."""
        picture = os.urandom(1 << 20) * 100
        # Of version 2.4, whose picture has a description in UTF-8: nothing can stay as it is stored.
        data = b"\x03image/png\0\x03" + "桜".encode() + b"\0" + picture
        self.by_hand(4, frame(4, "TIT2", b"\0Old", ""), frame(4, "APIC", data, ""))
        done = subprocess.run([sys.executable, "-IS", "-c", PEAK, os.path.join(BIN, "tagtool"), "edit", self.path,
                               "title=桜"], check=True, capture_output=True, timeout=300)
        answer, peak = done.stdout.decode().splitlines()
        self.assertEqual(json.loads(answer), {"result": "written", "boxes": ""})
        self.assertLess(int(peak) >> 10, 900, "MiB")
        tags = mutagen.id3.ID3(self.path)
        self.assertEqual(str(tags["TIT2"]), "桜")
        self.assertTrue(tags.getall("APIC")[0].data == picture)
        self.assertEqual(contents_end(self.path, len(self.audio)), self.audio)
        self.assertEqual(tagtool("edit", self.path, "title=桜")["result"], "unchanged")

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
        """Without the option, the output names it; with the option every script is in the catalogue."""
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

    def test_a_terminal_of_another_character_set(self):
        """The catalogue is the same; messages are in the terminal's character set, and no byte controls it."""
        folder = os.path.join(self.music, "Кино 桜")
        os.mkdir(folder)
        self.path = os.path.join(folder, "Л 😀.mp3")
        self.write(self.audio)
        self.by_mutagen(fields_of("russian"), 4, 3)
        for locale, name in (("C.UTF-8", "Кино 桜".encode()), ("ru_RU.KOI8-R", "Кино ?".encode("koi8-r"))):
            with self.subTest(locale=locale):
                self.env["LC_ALL"] = locale
                self.run_program("--unicode-tags", "on", self.path)
                self.assertIn("Л 😀.mp3".encode(), self.read("Solution.txt"))
                out, err = self.run_program("--regenerate", folder)
                self.assertIn(b"MP3 Directory=" + os.fsencode(self.music) + b"/" + name + b"\n", out)
                self.assertEqual(self.query("SELECT Title, Path FROM MP3s"),
                                 [("Группа крови".encode(), self.path.encode())])
        self.assertFalse([byte for byte in out + err if 0x80 <= byte < 0xA0])

    def test_two_processes_of_different_ways(self):
        """Each reads in its own way, and neither converts what is UTF-8 already."""
        for number, script in enumerate(SCRIPTS):
            self.path = os.path.join(self.music, f"{number}.mp3")
            self.write(self.audio)
            self.by_mutagen(fields_of(script), 4, 3)
        self.run_program("--regenerate", self.music)
        usual = self.query("SELECT * FROM MP3s ORDER BY Path")
        self.run_program("--unicode-tags", "on")
        # The row of one song becomes new, the others stay as they were read.
        self.run_program(os.path.join(self.music, "1.mp3"))
        rows = self.query("SELECT * FROM MP3s ORDER BY Path")
        self.assertEqual(rows[1][0], SCRIPTS["japanese"]["title"].encode())
        self.assertEqual([rows[0], *rows[2:]], [usual[0], *usual[2:]])
        # Two folders of settings: two processes at the same time, over one catalogue.
        other = dict(self.env, XDG_CONFIG_HOME=os.path.join(self.scratch, "other"))
        both = [subprocess.Popen([os.path.join(BIN, "quenlin"), "--unicode-tags", way, "--regenerate", self.music],
                                 env=env, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                 stderr=subprocess.DEVNULL)
                for way, env in (("on", self.env), ("off", other))]
        self.assertEqual([process.wait(300) for process in both], [0, 0])
        self.assert_whole()
        self.run_program("--regenerate", self.music)
        new = self.query("SELECT * FROM MP3s ORDER BY Path")
        for row, mixed, usual_row, script in zip(new, rows, usual, SCRIPTS):
            self.assertEqual(row[0], SCRIPTS[script]["title"].encode())
            self.assertEqual(mixed, row if script == "japanese" else usual_row)
        self.run_program("--unicode-tags", "off", "--regenerate", self.music)
        back = self.query("SELECT * FROM MP3s ORDER BY Path")
        self.run_program("--regenerate", self.music)
        self.assertEqual(self.query("SELECT * FROM MP3s ORDER BY Path"), back)
        self.assertEqual([row[0] for row in back], [row[0] for row in usual])


def contents_end(path, size):
    with open(path, "rb") as file:
        return file.read()[-size:]


if __name__ == "__main__":
    unittest.main()
