// What the tests of strings share.

#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "zor/string.h"

// The permanent object of that text, found the slow way; null when there is none.
inline ZorString* permanent(std::string const& text) {
    for (ZorString& candidate : ZorString::stdZorStrings) {
        if (text == candidate.text) return &candidate;
    }
    return nullptr;
}

// A string with one reference that stands apart from the permanent ones, whatever its text.
inline ZorString* privateString(std::string const& text) {
    return new ZorString(1, text.data(), static_cast<int>(text.size()));
}

// The string with one more reference.
inline ZorString* shared(ZorString* string) {
    zor_stringAddRef(string);
    return string;
}

inline std::string content(ZorString const* string) {
    return std::string(string->text, string->length);
}

inline bool usesLocalBuffer(ZorString const* string) { return string->text == string->localBuffer; }

// That many characters, none of them white space, no two neighbouring stretches alike.
inline std::string characters(int count) {
    std::string made;
    for (int i = 0; i < count; ++i) made += static_cast<char>('a' + (i + i / 23) % 26);
    return made;
}

// The buffer size that `need` bytes ask for: the next multiple of 16 above, found by counting, but
// never more than 16 bits hold.
inline int grownCapacity(int need) {
    int capacity = 0;
    while (capacity <= need) capacity += 16;
    return capacity < 65535 ? capacity : 65535;
}

// What holds for every string at any time.
inline void expectSound(ZorString const* string) {
    EXPECT_EQ(string->marker, -1);
    EXPECT_LT(string->length, string->capacity);
    EXPECT_EQ(string->text[string->length], '\0');
    EXPECT_EQ(usesLocalBuffer(string), string->capacity == 33);
}
