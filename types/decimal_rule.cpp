#include "types/decimal_rule.h"

#include <cstring>

#include "foundation/ascii.h"

int zor_internal::decimalIsValid(char const* text, char const* signs, char const* limit) {
    if (*text && std::strchr(signs, *text)) ++text;
    if (!*text) return 0;
    while (*text == '0') ++text;

    std::size_t const length = std::strlen(text);
    std::size_t const limitLength = std::strlen(limit);
    if (length > limitLength) return 0;
    for (char const* at = text; *at; ++at) {
        if (!isDigit(*at)) return 0;
    }
    // Of two digit strings of one length, the byte order is the order of the numbers.
    return length < limitLength || std::strcmp(text, limit) <= 0;
}
