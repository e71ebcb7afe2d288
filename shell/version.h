// shell/version.h - the numbers of the program and of its catalogue, and the rule that
// compares them. No state.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace shell
{

// The version of the catalogue's structure that this build needs; it is not the version of the
// program.
inline constexpr std::string_view RequiredDBVersion = "1.6.6";

// A version in its three numbers; kProgramVersion is the program's own.
struct Version {
    std::int16_t major = 0, minor = 0, patch = 0;

    bool operator==(const Version &) const = default;
};
inline constexpr Version kProgramVersion{1, 6, 9};

// The three numbers in plain decimal digits with `between` between them: "1.6.9", "169".
std::string VersionText(const Version &version, std::string_view between);

// The first three numbers in `text`, which are separated by points; the rest is ignored.
// Errors: kSubscriptOutOfRange when there are fewer, kTypeMismatch when a part is not a number,
// kOverflow when one does not fit 16 bits with sign.
Version ParseVersion(std::string_view text);

// Whether at least one of the three numbers of `first` is greater than the same number of `second`.
// Each is compared by itself: "1.6.6" is greater than "2.0.0". Errors: those of ParseVersion.
bool IsVersionGreater(std::string_view first, std::string_view second);

} // namespace shell
