#include "online/version/versionfile.h"

#include "runtime/text.h"

#include <algorithm>

namespace online
{

namespace
{

// The digits at the beginning of `part`, without leading zeros; empty for 0.
std::string_view Digits(std::string_view part)
{
    const auto end = std::min(part.find_first_not_of("0123456789"), part.size());
    const auto begin = std::min(part.find_first_not_of('0'), end);
    return part.substr(begin, end - begin);
}

std::string_view TakePart(std::string_view &version)
{
    const auto point = version.find('.');
    const std::string_view part = version.substr(0, point);
    version = point == std::string_view::npos ? std::string_view{} : version.substr(point + 1);
    return Digits(part);
}

} // namespace

VersionFile ParseVersionFile(std::string_view text)
{
    VersionFile file;
    const std::vector<std::string> lines = runtime::Split(text, "\r\n");
    auto line = lines.begin();
    for (; line != lines.end(); ++line) {
        const auto colon = line->find(':');
        if (colon == std::string::npos)
            break;
        file.databases.push_back({line->substr(0, colon), line->substr(colon + 1)});
    }
    for (; line != lines.end(); ++line)
        file.tools.push_back(
            line->substr(line->rfind(' ') + 1)); // the whole line when it has no blank
    return file;
}

bool IsNewer(std::string_view candidate, std::string_view current)
{
    while (!candidate.empty() || !current.empty()) {
        const std::string_view one = TakePart(candidate);
        const std::string_view other = TakePart(current);
        if (one.size() != other.size())
            return one.size() > other.size();
        if (one != other)
            return one > other;
    }
    return false;
}

} // namespace online
