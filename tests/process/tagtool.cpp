// The tags of one song for tests that compare several programs: read and edited by this program's
// own procedures, and read and written by TagLib.
//
//   tagtool [--bytes] read FILE             the fields, as JSON
//   tagtool edit FILE FIELD=VALUE...        changes them and prints the result and the questions
//   tagtool taglib FILE                     the fields as TagLib reads them
//   tagtool taglibwrite FILE VERSION FIELD=VALUE...
#include "metadata/mp3info.h"
#include "metadata/tagtext.h"
#include "metadata/tagwriter.h"
#include "shell/globals.h"
#include "tests/support/mp3bytes.h"
#include "tests/support/songdesk.h"

#include <id3v2tag.h>
#include <mpegfile.h>
#include <tpropertymap.h>
#include <unsynchronizedlyricsframe.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

namespace
{

using Fields = std::map<std::string, std::string>;

std::string Quoted(const std::string &text)
{
    std::string quoted = "\"";
    for (const char c : text) {
        char escape[8];
        if (c == '"' || c == '\\' || static_cast<unsigned char>(c) < 0x20) {
            std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned char>(c));
            quoted += escape;
        } else {
            quoted += c;
        }
    }
    return quoted + "\"";
}

void Print(const Fields &fields)
{
    std::string text;
    for (const auto &[name, value] : fields)
        text += (text.empty() ? "" : ", ") + Quoted(name) + ": " + Quoted(value);
    std::printf("{%s}\n", text.c_str());
}

Fields FieldsFrom(const std::vector<std::string> &words)
{
    Fields fields;
    for (const std::string &word : words) {
        const auto equal = word.find('=');
        if (equal == std::string::npos)
            std::exit(2);
        fields[word.substr(0, equal)] = word.substr(equal + 1);
    }
    return fields;
}

void Read(const std::string &file)
{
    const metadata::SongInfo pass = metadata::ReadSongInfo(file);
    const metadata::ID3v2Tag &tag = pass.id3v2;
    const auto text = [&tag](const std::string &field) {
        return metadata::TextOf(tag.kind, field);
    };
    Print({{"title", text(tag.Title)},
           {"artist", text(tag.Artist)},
           {"album", text(tag.Album)},
           {"year", text(tag.Year)},
           {"comment", text(tag.Comment)},
           {"genre", text(metadata::GenreField(tag))},
           {"lyrics", text(tag.Lyrics)},
           {"track", std::to_string(tag.Track)},
           {"hasID3v1", pass.hasID3v1 ? "1" : "0"},
           {"hasID3v2", pass.hasID3v2 ? "1" : "0"}});
}

int Edit(tests::SongDesk &desk, const std::string &file, const Fields &fields)
{
    metadata::SongInfo pass = metadata::ReadSongInfo(file);
    const metadata::SongInfo old = pass;
    desk.yesOrNo = platform::Answer::No;
    for (const auto &[name, value] : fields) {
        metadata::ID3v2Tag &tag = pass.id3v2;
        const std::map<std::string, std::string *> texts = {
            {"title", &tag.Title},  {"artist", &tag.Artist}, {"album", &tag.Album},
            {"year", &tag.Year},    {"genre", &tag.Genre},   {"comment", &tag.Comment},
            {"lyrics", &tag.Lyrics}};
        if (name == "track")
            tag.Track = static_cast<std::int16_t>(std::atoi(value.c_str()));
        else if (name == "answer")
            desk.yesOrNo = value == "yes" ? platform::Answer::Yes : platform::Answer::No;
        else if (texts.contains(name))
            *texts.at(name) = value;
        else
            return 2;
    }
    metadata::SaveTag(pass.id3v1, pass.id3v2, old.id3v1, old.id3v2, file, pass.hasID3v1, true,
                      nullptr);
    constexpr const char *kResults[] = {"unchanged", "refused", "declined", "failed", "written"};
    std::string boxes;
    for (const std::string &box : desk.boxes)
        boxes += box + "\n";
    Print({{"result", kResults[static_cast<int>(metadata::LastSaveResult())]}, {"boxes", boxes}});
    return 0;
}

std::string Utf8(const TagLib::String &text)
{
    return text.to8Bit(true);
}

int ReadByTagLib(const std::string &file)
{
    TagLib::MPEG::File song(file.c_str());
    if (!song.isValid() || song.ID3v2Tag() == nullptr)
        return 1;
    const TagLib::ID3v2::Tag &tag = *song.ID3v2Tag();
    const TagLib::ID3v2::FrameList lyrics = tag.frameList("USLT");
    Print({{"title", Utf8(tag.title())},
           {"artist", Utf8(tag.artist())},
           {"album", Utf8(tag.album())},
           {"year", std::to_string(tag.year())},
           {"comment", Utf8(tag.comment())},
           {"genre", Utf8(tag.genre())},
           {"lyrics", lyrics.isEmpty() ? std::string() : Utf8(lyrics.front()->toString())},
           {"track", std::to_string(tag.track())}});
    return 0;
}

int WriteByTagLib(const std::string &file, const std::string &version, Fields fields)
{
    TagLib::MPEG::File song(file.c_str());
    TagLib::ID3v2::Tag &tag = *song.ID3v2Tag(true);
    const auto text = [&fields](const char *name) {
        return TagLib::String(fields[name], TagLib::String::UTF8);
    };
    tag.setTitle(text("title"));
    tag.setArtist(text("artist"));
    tag.setAlbum(text("album"));
    tag.setComment(text("comment"));
    tag.setGenre(text("genre"));
    tag.setYear(static_cast<unsigned>(std::atoi(fields["year"].c_str())));
    tag.setTrack(static_cast<unsigned>(std::atoi(fields["track"].c_str())));
    auto *lyrics = new TagLib::ID3v2::UnsynchronizedLyricsFrame(TagLib::String::UTF8);
    lyrics->setLanguage("eng");
    lyrics->setText(text("lyrics"));
    tag.addFrame(lyrics); // which owns it now
    return song.save(TagLib::MPEG::File::ID3v2, TagLib::File::StripNone,
                     version == "3" ? TagLib::ID3v2::v3 : TagLib::ID3v2::v4)
               ? 0
               : 1;
}

} // namespace

int main(int argc, char **argv)
{
    std::vector<std::string> words(argv + 1, argv + argc);
    tests::SongDesk desk;
    const bool bytes = !words.empty() && words[0] == "--bytes";
    shell::TheGlobals().UnicodeTags = !bytes;
    if (bytes)
        words.erase(words.begin());
    if (words.size() < 2)
        return 2;
    const std::string job = words[0];
    const std::string file = words[1];
    words.erase(words.begin(), words.begin() + 2);
    if (job == "read")
        Read(file);
    else if (job == "edit")
        return Edit(desk, file, FieldsFrom(words));
    else if (job == "taglib")
        return ReadByTagLib(file);
    else if (job == "taglibwrite" && !words.empty())
        return WriteByTagLib(file, words[0],
                             FieldsFrom(std::vector<std::string>(words.begin() + 1, words.end())));
    else
        return 2;
    return 0;
}
