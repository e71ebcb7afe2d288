// shell/version.h - the numbers of the program and of its catalogue, and the rule that
// compares them. No state.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace shell
{

// The catalogue's structure that this build demands; independent of the program's own number.
inline constexpr std::string_view RequiredDBVersion = "1.6.6";

// The program's own version: 1.6.9.
struct Version {
    std::int16_t major = 0, minor = 0, patch = 0;

    bool operator==(const Version &) const = default;
};
inline constexpr Version kProgramVersion{1, 6, 9};

// The three numbers in plain decimal digits with `between` between them: "1.6.9", "169".
std::string VersionText(const Version &version, std::string_view between);

// The first three parts of `text` between its points, as numbers; further parts are passed over.
// Errors: kSubscriptOutOfRange when there are fewer, kTypeMismatch when one is no number,
//         kOverflow when one does not fit 16 bits with sign.
Version ParseVersion(std::string_view text);

// Whether any one of the three numbers of `first` is greater than that of `second`; each is looked
// at by itself, so that "1.6.6" is greater than "2.0.0". Errors: those of ParseVersion.
bool IsVersionGreater(std::string_view first, std::string_view second);

} // namespace shell
