// metadata/unicode/newframes.h - frames for the fields that an edit changes, made by TagLib. No
// state.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace metadata::unicode
{

// A whole text frame of version 2.3 with these texts (UTF-8), `id` has four characters; in Latin-1
// where they fit, else in UTF-16.
[[nodiscard]] std::string NewTextFrame(std::string_view id, const std::vector<std::string> &values);

// A COMM or USLT frame. `language` has three letters.
[[nodiscard]] std::string NewDescribedFrame(std::string_view id, std::string_view language,
                                            std::string_view description, std::string_view text);

} // namespace metadata::unicode
