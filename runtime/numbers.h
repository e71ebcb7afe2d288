// runtime/numbers.h - numbers out of texts and back, and the runtime's rounding. Independent of the
// locale. No state.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace runtime
{

// The number that `text` begins with: blanks, a sign, digits, a point and digits. What follows is
// passed over; a text that begins with none of these gives 0 ("128kbit" 128, "Not defined" 0).
// A number that is too small for a double is 0, one that is too large is infinite.
double LeadingNumber(std::string_view text);

// The number that the whole of `text` is: blanks at the ends, a sign, digits with at most one
// point, an exponent ("1E3"). Nothing when it is anything else, the empty text included. Too small
// and too large: as above.
std::optional<double> ParseNumber(std::string_view text);

// `value` rounded half to even into 16, into 32 bits.
// Errors: kOverflow when it does not fit or is no number.
std::int16_t RoundToInt16(double value);
std::int32_t RoundToInt32(double value);

// The whole text as a rounded 16-bit number. Errors: kTypeMismatch when the text is no number
// (ParseNumber), kOverflow when it does not fit.
std::int16_t TextToInt16(std::string_view text);

// The whole text as a rounded 32-bit number; errors as above.
std::int32_t TextToInt32(std::string_view text);

// Whether `text` means true: a number other than 0, or the word "True" in any letter case.
// Errors: kTypeMismatch when it is neither that nor a zero nor "False".
bool TextToFlag(std::string_view text);

// The shortest decimal text of `value`: "17", "-1", "0.5". A zero has no sign.
std::string NumberText(double value);

} // namespace runtime
