// Numbers read from and written as text, as scanf and printf do on the 32-bit device, on every host
// and in every locale.

#pragma once

#include <cstdint>

#include "zor/string.h"

namespace zor_internal {

// Reads like scanf's "%ld" with a 32-bit long: white space, a sign, digits; what follows is
// ignored, a number out of range becomes the nearest bound, no digits make 0.
std::int32_t intFromText(char const* text);

// Reads like scanf's "%lu" with a 32-bit long: a minus sign negates modulo 2^32, a number out of
// range becomes 4294967295.
std::uint32_t uintFromText(char const* text);

// Reads like scanf's "%lg". The result is scanf's: 1 with the number stored, 0 when the text does
// not begin with a number, -1 when there is nothing but white space. What follows the number is
// ignored. "0x." is not a number here, and parentheses behind "nan" are not looked at.
int floatFromText(char const* text, double* value);

constexpr int kLongestDecimal = sizeof "-4294967295" - 1;

inline std::uint32_t magnitudeOf(std::int32_t value) {
    auto const number = static_cast<std::uint32_t>(value);
    return value < 0 ? 0 - number : number;
}

// Writes the digits of a number, behind a minus sign if it is negative, up to `end`, and returns
// where they begin. REQUIRES: there is room for kLongestDecimal characters before `end`.
char* writeDecimal(std::uint32_t magnitude, bool negative, char* end);

// Like printf's "%ld", "%lu" and "%.15g". New reference.
ZorString* textFromInt(std::int32_t value);
ZorString* textFromUInt(std::uint32_t value);
ZorString* textFromFloat(double value);

} // namespace zor_internal
