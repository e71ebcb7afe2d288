#include "runtime/numbers.h"

#include "runtime/error.h"
#include "runtime/text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace runtime
{

namespace
{

// The number of bytes of the decimal number (digits with at most one point) at the start of `text`;
// 0 when there is no digit.
std::size_t DecimalLength(std::string_view text)
{
    std::size_t length = 0;
    bool digits = false;
    bool point = false;
    for (; length < text.size(); ++length) {
        if (text[length] >= '0' && text[length] <= '9')
            digits = true;
        else if (text[length] == '.' && !point)
            point = true;
        else
            break;
    }
    return digits ? length : 0;
}

// Removes a sign from the start of `text`. Returns: true for a minus.
bool TakeSign(std::string_view &text)
{
    const bool negative = !text.empty() && text.front() == '-';
    if (negative || (!text.empty() && text.front() == '+'))
        text.remove_prefix(1);
    return negative;
}

// The power of ten of the first digit of `digits` that is not 0, a following exponent included. The
// number must not be 0. An exponent of more than 18 digits counts as one of 18.
long long Magnitude(std::string_view digits)
{
    const auto mantissa = digits.substr(0, digits.find_first_of("eE"));
    const auto point = static_cast<long long>(std::min(mantissa.find('.'), mantissa.size()));
    const auto first = static_cast<long long>(mantissa.find_first_not_of("0."));
    long long exponent = 0;
    if (mantissa.size() < digits.size()) {
        std::string_view rest = digits.substr(mantissa.size() + 1);
        const bool negative = TakeSign(rest);
        rest.remove_prefix(std::min(rest.find_first_not_of('0'), rest.size()));
        rest = rest.substr(0, 18);
        std::from_chars(rest.data(), rest.data() + rest.size(), exponent);
        exponent = negative ? -exponent : exponent;
    }
    return point - first + exponent;
}

// A number that is too small for a double is 0, one that is too large is infinite.
double DecimalValue(std::string_view digits)
{
    double value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error == std::errc::result_out_of_range)
        return Magnitude(digits) < 0 ? 0 : std::numeric_limits<double>::infinity();
    return value;
}

template <typename Integer>
Integer RoundTo(double value)
{
    const double rounded = std::nearbyint(value); // the default mode: half to even
    if (!(rounded >= std::numeric_limits<Integer>::min() &&
          rounded <= std::numeric_limits<Integer>::max()))
        throw RuntimeError(kOverflow);
    return static_cast<Integer>(rounded);
}

double WholeNumber(std::string_view text)
{
    const auto value = ParseNumber(text);
    if (!value)
        throw RuntimeError(kTypeMismatch);
    return *value;
}

} // namespace

double LeadingNumber(std::string_view text)
{
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return 0;
    text.remove_prefix(first);
    const bool negative = TakeSign(text);
    const auto length = DecimalLength(text);
    if (length == 0)
        return 0;
    const double value = DecimalValue(text.substr(0, length));
    return negative ? -value : value;
}

std::optional<double> ParseNumber(std::string_view text)
{
    text = Trim(text);
    const bool negative = TakeSign(text);
    const auto mantissa = DecimalLength(text);
    if (mantissa == 0)
        return std::nullopt;
    std::string_view exponent = text.substr(mantissa);
    if (!exponent.empty()) {
        if (exponent.front() != 'e' && exponent.front() != 'E')
            return std::nullopt;
        exponent.remove_prefix(1);
        TakeSign(exponent);
        if (exponent.empty() || exponent.find_first_not_of("0123456789") != std::string_view::npos)
            return std::nullopt;
    }
    const double value = DecimalValue(text);
    return negative ? -value : value;
}

std::int16_t RoundToInt16(double value)
{
    return RoundTo<std::int16_t>(value);
}

std::int32_t RoundToInt32(double value)
{
    return RoundTo<std::int32_t>(value);
}

std::int16_t TextToInt16(std::string_view text)
{
    return RoundToInt16(WholeNumber(text));
}

std::int32_t TextToInt32(std::string_view text)
{
    return RoundToInt32(WholeNumber(text));
}

bool TextToFlag(std::string_view text)
{
    if (EqualAscii(Trim(text), "True"))
        return true;
    if (EqualAscii(Trim(text), "False"))
        return false;
    return WholeNumber(text) != 0;
}

std::string NumberText(double value)
{
    char buffer[32];
    const double unsignedZero = value == 0 ? 0 : value;
    const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, unsignedZero);
    return error == std::errc{} ? std::string(buffer, end) : std::string();
}

} // namespace runtime
