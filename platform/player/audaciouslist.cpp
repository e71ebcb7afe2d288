#include "platform/player/audaciouslist.h"

#include "platform/disk/wholefiles.h"
#include "platform/machine.h"

#include <algorithm>
#include <array>

namespace platform::player
{

namespace
{

constexpr std::size_t kMostPending = 256; // with more, the player would react slowly to its user
constexpr std::string_view kFileScheme = "file://";
constexpr std::string_view kHexDigits = "0123456789ABCDEF";

bool IsPlain(unsigned char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("-._~/").find(static_cast<char>(c)) != std::string_view::npos;
}

void AppendEscaped(std::string &text, unsigned char c)
{
    text.push_back('%');
    text.push_back(kHexDigits[c >> 4]);
    text.push_back(kHexDigits[c & 15]);
}

int HexValue(char c)
{
    const std::size_t at = kHexDigits.find(c >= 'a' && c <= 'f' ? static_cast<char>(c - 32) : c);
    return at == std::string_view::npos ? -1 : static_cast<int>(at);
}

std::string Unescaped(std::string_view text)
{
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int high = text[i] == '%' && i + 2 < text.size() ? HexValue(text[i + 1]) : -1;
        const int low = high >= 0 ? HexValue(text[i + 2]) : -1;
        if (low >= 0) {
            result.push_back(static_cast<char>(high * 16 + low));
            i += 2;
        } else {
            result.push_back(text[i]);
        }
    }
    return result;
}

bool StaysOneLine(std::string_view text)
{
    return text.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos &&
           text.find("#EXTINF") == std::string_view::npos;
}

} // namespace

std::string UriOfPath(std::string_view path)
{
    std::string uri(kFileScheme);
    for (const char c : path) {
        if (IsPlain(static_cast<unsigned char>(c)))
            uri.push_back(c);
        else
            AppendEscaped(uri, static_cast<unsigned char>(c));
    }
    return uri;
}

std::string LineOfUri(std::string_view uri)
{
    if (uri.starts_with(kFileScheme)) {
        std::string path = Unescaped(uri.substr(kFileScheme.size()));
        if (StaysOneLine(path))
            return path;
    }
    std::string line;
    for (const char c : uri) {
        if (StaysOneLine(uri) || (c != '\r' && c != '\n' && c != '\0' && c != '#'))
            line.push_back(c);
        else
            AppendEscaped(line, static_cast<unsigned char>(c));
    }
    return line;
}

std::int32_t AudaciousList::Length()
{
    Select();
    return std::max(0, m_bus.AskInt("Length").value_or(0));
}

std::int32_t AudaciousList::Position()
{
    Select();
    return static_cast<std::int32_t>(m_bus.AskUnsigned("Position").value_or(UINT32_MAX));
}

std::optional<std::string> AudaciousList::LineAt(std::int32_t index)
{
    if (index < 0)
        return std::nullopt;
    Select();
    const auto uri = m_bus.AskText("SongFilename", static_cast<std::uint32_t>(index));
    return uri && !uri->empty() ? std::optional(LineOfUri(*uri)) : std::nullopt;
}

void AudaciousList::Forget()
{
    Begin(0);
    m_run = 0;
}

void AudaciousList::Begin(std::size_t length)
{
    ++m_reading;
    m_lines.assign(length, std::nullopt);
    m_unknown = length;
    m_next = 0;
    m_changed = true;
    m_run = m_bus.Run();
}

void AudaciousList::Learn(std::size_t index, const std::string &line)
{
    if (index >= m_lines.size() || m_lines[index] == line)
        return;
    if (!m_lines[index])
        --m_unknown;
    m_lines[index] = line;
    m_changed = true;
}

// Asks for one name and stores it. Returns: false when a different one was stored.
bool AudaciousList::Agrees(std::size_t index)
{
    if (index >= m_lines.size())
        return true;
    const auto line = LineAt(static_cast<std::int32_t>(index));
    if (!line)
        return true; // no answer is not a difference
    if (m_lines[index] && *m_lines[index] != *line)
        return false;
    Learn(index, *line);
    return true;
}

bool AudaciousList::Check(std::int32_t index)
{
    const auto length = static_cast<std::size_t>(Length());
    if (!m_bus.IsAnswering())
        return false;
    if (m_run != m_bus.Run() || length < m_lines.size()) {
        Begin(length);
    } else if (length > m_lines.size()) {
        // Usually songs were added at the end; then the last known one is still at its index.
        if (!m_lines.empty() && Agrees(m_lines.size() - 1)) {
            m_unknown += length - m_lines.size();
            m_lines.resize(length);
            m_changed = true;
        } else {
            Begin(length);
        }
    }
    if (index >= 0 && !Agrees(static_cast<std::size_t>(index))) {
        Begin(length);
        Agrees(static_cast<std::size_t>(index));
    }
    return m_bus.IsAnswering();
}

void AudaciousList::Continue()
{
    if (m_run != m_bus.Run())
        return;
    if (m_next < m_lines.size())
        Select();
    for (; m_next < m_lines.size() && m_bus.Pending() < kMostPending && m_bus.IsAnswering();
         ++m_next) {
        if (m_lines[m_next])
            continue;
        const auto taken = [this, index = m_next,
                            reading = m_reading](const std::optional<std::string> &uri) {
            if (reading != m_reading)
                return;
            if (uri)
                Learn(index, LineOfUri(*uri));
            else
                m_next = std::min(m_next, index); // asked again when the player answers
        };
        m_bus.AskTextLater("SongFilename", static_cast<std::uint32_t>(m_next), taken);
    }
}

std::optional<std::string> AudaciousList::Known(std::int32_t index) const
{
    if (index < 0 || static_cast<std::size_t>(index) >= m_lines.size())
        return std::nullopt;
    return m_lines[static_cast<std::size_t>(index)];
}

std::int32_t AudaciousList::LastIndexOf(const std::string &line) const
{
    const auto found = std::find(m_lines.rbegin(), m_lines.rend(), line);
    return static_cast<std::int32_t>(m_lines.rend() - found) - 1;
}

bool AudaciousList::Write(const std::string &file)
{
    Files &files = *TheMachine().files;
    FileIdentity there;
    if (!m_changed && files.Identify(file, there) == 0 && there == m_written)
        return true;
    std::string text = "#EXTM3U\r\n";
    for (const auto &line : m_lines)
        text.append(line.value_or(std::string())).append("\r\n");
    if (!ReplaceFile(file, text, 0600) || files.Identify(file, m_written) != 0)
        return false;
    m_changed = false;
    return true;
}

} // namespace platform::player
