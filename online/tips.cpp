#include "online/tips.h"

#include "platform/clock.h"
#include "platform/disk/wholefiles.h"
#include "platform/machine.h"
#include "runtime/codepage.h"
#include "runtime/text.h"

#include <utility>

namespace online
{

namespace
{

constexpr std::size_t kMaxBytes = 1u << 20; // what is read of a file

std::vector<std::string> LinesOf(std::string_view text)
{
    std::vector<std::string> lines;
    while (!text.empty()) {
        const auto end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        lines.emplace_back(line);
    }
    return lines;
}

// The bytes of the file as UTF-8.
std::string TextOf(std::string_view bytes)
{
    if (!runtime::IsUtf8(bytes))
        return runtime::TextOfBytes(bytes);
    if (bytes.starts_with(runtime::kByteOrderMark))
        bytes.remove_prefix(runtime::kByteOrderMark.size());
    return std::string(bytes);
}

} // namespace

bool LoadTips(Tips &tips, const std::string &file)
{
    if (file.empty())
        return false;
    const auto bytes = platform::ReadRegularFile(file, kMaxBytes);
    if (!bytes)
        return false;
    for (std::string &line : LinesOf(TextOf(*bytes)))
        tips.lines.push_back(std::move(line));
    PickTip(tips);
    return true;
}

void PickTip(Tips &tips)
{
    const double range = 1.0 + tips.random.max() - tips.random.min();
    const double value = (tips.random() - tips.random.min()) / range; // in [0, 1)
    tips.current = static_cast<std::size_t>(value * static_cast<double>(tips.lines.size())) + 1;
}

std::string_view CurrentTip(const Tips &tips)
{
    if (tips.current < 1 || tips.current > tips.lines.size())
        return {};
    return tips.lines[tips.current - 1];
}

void SeedTips(Tips &tips)
{
    const auto seconds = platform::TheMachine().clock->SecondsOfDay();
    tips.random.seed(static_cast<std::minstd_rand::result_type>(seconds * 1000) + 1);
}

} // namespace online
