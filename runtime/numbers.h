// runtime/numbers.h - numbers from texts and back, and rounding. The locale has no influence. No
// state.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace runtime
{

// The number at the beginning of `text`: blanks, a sign, digits, a point and digits. What follows
// it is ignored; 0 when there is no number ("128kbit" 128, "Not defined" 0). A number too small for
// a double is 0, one too large is infinite.
double LeadingNumber(std::string_view text);

// `text` as a number, if all of it is one: blanks at both ends, a sign, digits with at most one
// point, an exponent ("1E3").
// Returns: nothing for any other text, the empty one included. Too small and too large numbers: as
// LeadingNumber.
std::optional<double> ParseNumber(std::string_view text);

// `value` rounded to 16 or 32 bits; a half is rounded to the even number.
// Errors: kOverflow when it does not fit or is not a number (NaN).
std::int16_t RoundToInt16(double value);
std::int32_t RoundToInt32(double value);

// The whole text as a rounded number of 16 bits. Errors: kTypeMismatch when the text is not a
// number (see ParseNumber), kOverflow when the number does not fit.
std::int16_t TextToInt16(std::string_view text);

// The same for 32 bits.
std::int32_t TextToInt32(std::string_view text);

// Whether `text` means true: a number other than 0, or the word "True" in any letter case. False: a
// zero, or "False".
// Errors: kTypeMismatch for any other text.
bool TextToFlag(std::string_view text);

// The shortest decimal text of `value`: "17", "-1", "0.5". A zero has no sign.
std::string NumberText(double value);

} // namespace runtime
