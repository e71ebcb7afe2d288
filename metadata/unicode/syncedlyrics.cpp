#include "metadata/unicode/syncedlyrics.h"

#include "metadata/unicode/textvalues.h"

#include <algorithm>
#include <cstdint>
#include <set>
#include <vector>

namespace metadata::unicode
{

namespace
{

constexpr std::size_t kFixedBytes = 6; // encoding, language, format of the times, content type
constexpr std::size_t kTimeBytes = 4;
constexpr std::size_t kMostTexts = 65536; // later ones are left out
constexpr char kTimesAreFrames = 1;
constexpr char kTimesAreMs = 2;
constexpr char kIsLyrics = 1;
constexpr char kIsTranscription = 2;

struct TimedText {
    std::string text;
    std::uint32_t time = 0; // in the unit of the frame
};

std::vector<TimedText> ReadTexts(Encoding encoding, std::string_view bytes)
{
    std::vector<TimedText> texts;
    while (!bytes.empty() && texts.size() < kMostTexts) {
        const auto [text, rest] = CutAtTerminator(encoding, bytes);
        if (rest.size() < kTimeBytes)
            break;
        std::uint32_t time = 0;
        for (const char byte : rest.substr(0, kTimeBytes))
            time = time << 8U | static_cast<unsigned char>(byte);
        texts.push_back({DecodeText(encoding, text), time});
        bytes = rest.substr(kTimeBytes);
    }
    return texts;
}

bool BeginsLine(const TimedText &text)
{
    return text.text.starts_with('\n') || text.text.starts_with('\r');
}

std::string WithoutLineEnds(std::string text)
{
    std::erase_if(text, [](char c) { return c == '\n' || c == '\r'; });
    return text;
}

std::vector<TimedText> LinesOf(std::vector<TimedText> texts)
{
    const bool isBySyllable = std::any_of(texts.begin(), texts.end(), BeginsLine);
    std::vector<TimedText> lines;
    for (auto &text : texts) {
        const bool newLine = lines.empty() || !isBySyllable || BeginsLine(text);
        std::string plain = WithoutLineEnds(std::move(text.text));
        if (newLine)
            lines.push_back({std::move(plain), text.time});
        else
            lines.back().text += plain;
    }
    return lines;
}

void AppendTwoDigits(std::string &text, std::uint32_t number)
{
    if (number < 10)
        text += '0';
    text += std::to_string(number);
}

void AppendMark(std::string &text, std::uint32_t seconds)
{
    text += '[';
    AppendTwoDigits(text, seconds / 60);
    text += ':';
    AppendTwoDigits(text, seconds % 60);
    text += ']';
}

} // namespace

std::string LinesOfSyncedLyrics(std::string_view content, double mpegFrameMs)
{
    if (content.size() < kFixedBytes)
        return {};
    const Encoding encoding = EncodingOf(static_cast<unsigned char>(content[0]));
    const char unit = content[4];
    const char type = content[5];
    if (type != kIsLyrics && type != kIsTranscription)
        return {};
    const double unitMs = unit == kTimesAreMs ? 1 : unit == kTimesAreFrames ? mpegFrameMs : 0;
    const std::string_view texts = CutAtTerminator(encoding, content.substr(kFixedBytes)).rest;

    std::string all;
    std::set<std::uint32_t> marked;
    for (const auto &line : LinesOf(ReadTexts(encoding, texts))) {
        if (!all.empty())
            all += "\r\n";
        const auto seconds = static_cast<std::uint32_t>(line.time * unitMs / 1000);
        if (unitMs > 0 && marked.insert(seconds).second)
            AppendMark(all, seconds);
        all += line.text;
    }
    return all;
}

} // namespace metadata::unicode
