// metadata/unicode/newframes.h - frames for the fields that an edit changes, made by TagLib. No
// state.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace metadata::unicode
{

// A whole text frame of version 2.3 with these texts (UTF-8), in Latin-1 when they fit in it, else
// in UTF-16. `id` has four characters.
// Errors: kInvalidCall when TagLib does not make one frame of it.
[[nodiscard]] std::string NewTextFrame(std::string_view id, const std::vector<std::string> &values);

// A COMM or USLT frame with one text. `language` has three letters. Encoding and errors: as above.
[[nodiscard]] std::string NewDescribedFrame(std::string_view id, std::string_view language,
                                            std::string_view description, std::string_view text);

} // namespace metadata::unicode
