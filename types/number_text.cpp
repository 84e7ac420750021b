// Numbers and text, independent of the host's word size and locale.

#include "types/number_text.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <system_error>

#include "foundation/ascii.h"

namespace zor_internal {
namespace {

// A sign and digits, the magnitude held at `kTooLarge` once it passes 32 bits.
struct Decimal {
    bool negative;
    std::uint64_t magnitude;
};

constexpr std::uint64_t kTooLarge = std::uint64_t(1) << 32;

Decimal decimalFromText(char const* text) {
    while (isSpace(*text)) ++text;
    Decimal result{*text == '-', 0};
    if (*text == '-' || *text == '+') ++text;
    for (; isDigit(*text); ++text) {
        result.magnitude = result.magnitude * 10 + static_cast<std::uint64_t>(*text - '0');
        if (result.magnitude > kTooLarge) result.magnitude = kTooLarge;
    }
    return result;
}

// Whether the text begins with the lower-case word, in any case.
bool beginsWith(char const* text, char const* word) {
    for (; *word; ++text, ++word) {
        if ((*text | 0x20) != *word) return false;
    }
    return true;
}

bool isHexDigit(char c) { return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

// The end of digits, perhaps with a point and an exponent; `text` itself when there is no digit.
char const* endOfNumber(char const* text, bool hexadecimal) {
    auto const isMantissa = hexadecimal ? isHexDigit : isDigit;
    bool any = false;
    char const* at = text;
    for (; isMantissa(*at); ++at) any = true;
    if (*at == '.') ++at;
    for (; isMantissa(*at); ++at) any = true;
    if (!any) return text;
    if (*at && std::strchr(hexadecimal ? "pP" : "eE", *at)) {
        char const* exponent = at + 1;
        if (*exponent == '+' || *exponent == '-') ++exponent;
        if (isDigit(*exponent)) {
            while (isDigit(*exponent)) ++exponent;
            at = exponent;
        }
    }
    return at;
}

// Whether a number that no double can hold is too large rather than too small: its first digit
// other than 0 stands before the point, the exponent applied.
bool isTooLarge(char const* text, char const* end, bool hexadecimal) {
    char const* const marks = hexadecimal ? "pP" : "eE";
    std::int64_t position = 0;
    bool fraction = false;
    bool significant = false;
    for (; text < end && !std::strchr(marks, *text); ++text) {
        if (*text == '.') {
            fraction = true;
            continue;
        }
        significant = significant || *text != '0';
        if (!fraction && significant) ++position;
        if (fraction && !significant) --position;
    }
    std::int64_t const exponent = text < end ? intFromText(text + 1) : 0;
    return position * (hexadecimal ? 4 : 1) + exponent > 0;
}

bool readFinite(char const* text, double* number) {
    bool const hexadecimal = text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    if (hexadecimal) text += 2;
    char const* const end = endOfNumber(text, hexadecimal);
    if (end == text) return false;
    std::chars_format const format =
        hexadecimal ? std::chars_format::hex : std::chars_format::general;
    if (std::from_chars(text, end, *number, format).ec == std::errc::result_out_of_range) {
        *number = isTooLarge(text, end, hexadecimal) ? HUGE_VAL : 0;
    }
    return true;
}

// Reads "inf", "infinity" and "nan" in any case. A text that goes on from "inf" towards "infinity"
// and does not reach it is no number, as scanf has it.
bool readNonFinite(char const* text, double* number) {
    if (beginsWith(text, "inf")) {
        *number = std::numeric_limits<double>::infinity();
        return (text[3] != 'i' && text[3] != 'I') || beginsWith(text, "infinity");
    }
    *number = std::numeric_limits<double>::quiet_NaN();
    return beginsWith(text, "nan");
}

ZorString* textFromDecimal(std::uint32_t magnitude, bool negative) {
    char buffer[kLongestDecimal];
    char* const end = buffer + sizeof buffer;
    char const* const begin = writeDecimal(magnitude, negative, end);
    return ZorString::create(begin, static_cast<int>(end - begin));
}

} // namespace

char* writeDecimal(std::uint32_t magnitude, bool negative, char* end) {
    do *--end = static_cast<char>('0' + magnitude % 10);
    while (magnitude /= 10);
    if (negative) *--end = '-';
    return end;
}

std::int32_t intFromText(char const* text) {
    using Limits = std::numeric_limits<std::int32_t>;
    Decimal const decimal = decimalFromText(text);
    auto const number = static_cast<std::int64_t>(decimal.magnitude);
    if (decimal.negative)
        return number > -std::int64_t(Limits::min()) ? Limits::min() : std::int32_t(-number);
    return number > Limits::max() ? Limits::max() : std::int32_t(number);
}

std::uint32_t uintFromText(char const* text) {
    Decimal const decimal = decimalFromText(text);
    if (decimal.magnitude >= kTooLarge) return std::numeric_limits<std::uint32_t>::max();
    auto const number = static_cast<std::uint32_t>(decimal.magnitude);
    return decimal.negative ? 0 - number : number;
}

int floatFromText(char const* text, double* value) {
    while (isSpace(*text)) ++text;
    if (!*text) return -1;
    bool const negative = *text == '-';
    if (*text == '-' || *text == '+') ++text;
    double number = 0;
    if (!readFinite(text, &number) && !readNonFinite(text, &number)) return 0;
    *value = negative ? -number : number;
    return 1;
}

ZorString* textFromInt(std::int32_t value) {
    return textFromDecimal(magnitudeOf(value), value < 0);
}

ZorString* textFromUInt(std::uint32_t value) { return textFromDecimal(value, false); }

ZorString* textFromFloat(double value) {
    char buffer[32];
    std::to_chars_result const written =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 15);
    return ZorString::create(buffer, static_cast<int>(written.ptr - buffer));
}

} // namespace zor_internal
