#include "online/history.h"

#include "runtime/error.h"
#include "runtime/text.h"
#include "runtime/utf8.h"

#include <utf8proc.h>

#include <charconv>
#include <utility>

namespace online
{

namespace
{

constexpr std::string_view kOpen = "<(";
constexpr std::string_view kClose = ")>";
constexpr std::string_view kObject = "\xEF\xBF\xBC"; // U+FFFC
constexpr std::size_t kTitleMark = 3;                // "[t]"

std::string_view MarkerOf(std::int32_t kind)
{
    switch (kind) {
    case kHistoryBugFix:
        return "    <(BugFix)> ";
    case kHistoryNew:
        return "    <(New)> ";
    case kHistoryChanged:
        return "    <(Changed)> ";
    case kHistoryRemoved:
        return "    <(Removed)> ";
    default:
        return {};
    }
}

// Reads RTF from left to right.
class RtfReader
{
public:
    explicit RtfReader(std::string_view rtf) : m_rtf(rtf) {}

    RichText Read()
    {
        while (m_at < m_rtf.size())
            Step();
        if (m_bold)
            EndBold();
        return std::move(m_result);
    }

private:
    void Step()
    {
        const char byte = m_rtf[m_at++];
        if (byte == '\\')
            ControlWord();
        else if (byte != '{' && byte != '}' && byte != '\r' && byte != '\n')
            m_result.text += byte;
    }

    void ControlWord()
    {
        if (m_at < m_rtf.size() &&
            std::string_view("\\{}").find(m_rtf[m_at]) != std::string::npos) {
            m_result.text += m_rtf[m_at++];
            return;
        }
        const auto begin = m_at;
        while (m_at < m_rtf.size() && m_rtf[m_at] >= 'a' && m_rtf[m_at] <= 'z')
            ++m_at;
        const std::string_view word = m_rtf.substr(begin, m_at - begin);
        int number = 0;
        const char *from = m_rtf.data() + m_at;
        const auto [end, failure] = std::from_chars(from, m_rtf.data() + m_rtf.size(), number);
        const bool hasNumber = failure == std::errc();
        if (hasNumber)
            m_at += static_cast<std::size_t>(end - from);
        if (m_at < m_rtf.size() && m_rtf[m_at] == ' ')
            ++m_at; // a blank ends the control word and is not text
        Apply(word, hasNumber, number);
    }

    void Apply(std::string_view word, bool hasNumber, int number)
    {
        if (word == "par") {
            m_result.text += '\r';
        } else if (word == "u" && hasNumber) {
            AppendUnit(number < 0 ? number + 0x10000 : number);
            m_at += m_at < m_rtf.size(); // skips the character for readers without Unicode
        } else if (word == "b") {
            const bool on = !hasNumber || number != 0;
            if (m_bold && !on)
                EndBold();
            else if (!m_bold && on)
                m_boldBegin = m_result.text.size();
            m_bold = on;
        }
    }

    // A character above U+FFFF comes as two units.
    void AppendUnit(int unit)
    {
        if (unit >= 0xD800 && unit < 0xDC00) {
            m_highUnit = unit;
            return;
        }
        const int high = std::exchange(m_highUnit, 0);
        if (unit >= 0xDC00 && unit < 0xE000)
            unit = high == 0 ? -1 : 0x10000 + ((high - 0xD800) << 10) + (unit - 0xDC00);
        if (utf8proc_codepoint_valid(unit))
            runtime::AppendCharacter(unit, m_result.text);
    }

    void EndBold()
    {
        m_result.bold.push_back({m_boldBegin, m_result.text.size()});
        m_bold = false;
    }

    std::string_view m_rtf;
    std::size_t m_at = 0;
    RichText m_result;
    bool m_bold = false;
    std::size_t m_boldBegin = 0;
    int m_highUnit = 0; // the first unit of a pair; 0 when there was none
};

void AppendUnits(std::string &rtf, std::int32_t codePoint)
{
    const auto unit = [&rtf](std::int32_t value) {
        rtf += "\\u" + std::to_string(value > 0x7FFF ? value - 0x10000 : value) + "?";
    };
    if (codePoint < 0x10000) {
        unit(codePoint);
        return;
    }
    unit(0xD800 + ((codePoint - 0x10000) >> 10));
    unit(0xDC00 + ((codePoint - 0x10000) & 0x3FF));
}

// A marker at `at` was replaced by a picture, which is shorter: moves the places after it.
void MoveAfter(RichText &box, std::size_t at, std::size_t markerLength)
{
    const auto moved = [&](std::size_t place) {
        return place > at ? place - markerLength + kObject.size() : place;
    };
    for (RichText::Bold &bold : box.bold)
        bold = {moved(bold.begin), moved(bold.end)};
    for (RichText::Picture &picture : box.pictures)
        picture.at = moved(picture.at);
}

} // namespace

void AddHistoryLine(std::string &text, std::string_view line, std::int32_t kind)
{
    if (line.starts_with("[t]")) {
        if (!text.empty())
            text += '\r';
        text.append("[b]").append(line.substr(kTitleMark)).append("[/b]\r");
        return;
    }
    text.append(MarkerOf(kind)).append(line).append("\r");
}

HistoryMarker FindHistoryMarker(std::string_view text)
{
    const auto start = text.find(kOpen);
    if (start == std::string_view::npos)
        return {};
    const auto end = text.find(kClose, start);
    if (end == std::string_view::npos)
        return {};
    const auto word = start + kOpen.size();
    return {start, end, std::string(text.substr(word, end - word))};
}

std::string PlainToRTF(std::string_view plain)
{
    std::string rtf = "{\\rtf1\\ansi ";
    while (!plain.empty()) {
        std::int32_t codePoint = 0;
        const int length = runtime::NextCharacter(plain, codePoint);
        if (length == 0) { // not valid UTF-8
            plain.remove_prefix(1);
            continue;
        }
        if (codePoint == '\r')
            rtf += "\\par ";
        else if (codePoint == '\\' || codePoint == '{' || codePoint == '}')
            rtf.append("\\").append(plain.substr(0, 1));
        else if (codePoint < 0x80)
            rtf += plain.front();
        else
            AppendUnits(rtf, codePoint);
        plain.remove_prefix(static_cast<std::size_t>(length));
    }
    return rtf + "}";
}

RichText ReadRTF(std::string_view rtf)
{
    return RtfReader(rtf).Read();
}

std::string HistoryMarkupToRTF(std::string_view rtf)
{
    return runtime::Replace(runtime::Replace(rtf, "[/b]", "\\b0 "), "[b]", "\\b ");
}

void ReplaceHistoryMarkers(RichText &box,
                           const std::function<bool(const std::string &)> &hasPicture)
{
    for (auto marker = FindHistoryMarker(box.text); !marker.word.empty();
         marker = FindHistoryMarker(box.text)) {
        if (!hasPicture(marker.word))
            throw runtime::RuntimeError(runtime::kSubscriptOutOfRange);
        const std::string wanted = std::string(kOpen) + marker.word + std::string(kClose);
        for (auto at = box.text.find(wanted); at != std::string::npos;
             at = box.text.find(wanted, at)) {
            box.text.replace(at, wanted.size(), kObject);
            MoveAfter(box, at, wanted.size());
            box.pictures.push_back({at, marker.word});
        }
    }
}

std::string HistoryText()
{
    std::string text;
    const auto line = [&text](std::int32_t kind, std::string_view words) {
        AddHistoryLine(text, words, kind);
    };
#include "historylines.inc"
    return text;
}

} // namespace online
