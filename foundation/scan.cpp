// Cursor-style scanning.

#include "zor/text.h"

#include <cstring>

#include "foundation/ascii.h"

using zor_internal::isDigit;
using zor_internal::isSpace;

int skipSpace(char** cursor) {
    char* const start = *cursor;
    while (isSpace(**cursor)) ++*cursor;
    return *cursor != start;
}

int readUInt(char** cursor, long* value) {
    char* at = *cursor;
    if (!isDigit(*at)) return 0;
    unsigned long number = 0; // unsigned, because too many digits must wrap
    for (; isDigit(*at); ++at) number = number * 10 + static_cast<unsigned long>(*at - '0');
    *value = static_cast<long>(number);
    *cursor = at;
    return 1;
}

int skipToken(char** cursor, char const* token) {
    std::size_t const length = std::strlen(token);
    if (std::strncmp(*cursor, token, length) != 0) return 0;
    *cursor += length;
    return 1;
}

int parseIpAddress(char const* text, unsigned long* address) {
    constexpr int kParts = 4;
    constexpr int kMostDigits = 3;
    unsigned long result = 0;
    for (int part = 0; part < kParts; ++part) {
        if (part > 0 && *text++ != '.') return 0;
        unsigned long number = 0;
        int digits = 0;
        for (; isDigit(*text) && digits <= kMostDigits; ++digits) {
            number = number * 10 + static_cast<unsigned long>(*text++ - '0');
        }
        if (digits < 1 || digits > kMostDigits || number > 255) return 0;
        result = (result << 8) | number;
    }
    if (*text) return 0;
    *address = result;
    return 1;
}
