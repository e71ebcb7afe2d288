#include "shell/version.h"

#include "runtime/error.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace shell
{

std::string VersionText(const Version &version, std::string_view between)
{
    std::string text = std::to_string(version.major);
    for (const std::int16_t part : {version.minor, version.patch})
        text.append(between).append(std::to_string(part));
    return text;
}

Version ParseVersion(std::string_view text)
{
    const auto parts = runtime::Split(text, ".");
    const auto number = [&](std::size_t index) {
        if (index >= parts.size())
            throw runtime::RuntimeError(runtime::kSubscriptOutOfRange);
        return runtime::TextToInt16(parts[index]);
    };
    Version version;
    version.major = number(0);
    version.minor = number(1);
    version.patch = number(2);
    return version;
}

bool IsVersionGreater(std::string_view first, std::string_view second)
{
    const Version one = ParseVersion(first);
    const Version two = ParseVersion(second);
    return one.major > two.major || one.minor > two.minor || one.patch > two.patch;
}

} // namespace shell
