#include "types/decimal_rule.h"

#include "foundation/ascii.h"

int zor_internal::decimalIsValid(char const* text, char const* signs, std::uint32_t limit) {
    for (; *signs; ++signs) {
        if (*text != *signs) continue;
        ++text;
        break;
    }
    if (!*text) return 0;
    std::uint32_t number = 0;
    for (; isDigit(*text); ++text) {
        auto const digit = static_cast<std::uint32_t>(*text - '0');
        if (number > (limit - digit) / 10) return 0; // the next number would pass the limit
        number = number * 10 + digit;
    }
    return !*text;
}
