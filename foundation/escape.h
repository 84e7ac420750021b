// Escaping without the limit of a string's length, and without copies.

#pragma once

#include <cstddef>
#include <cstring>

#include "zor/string.h"

namespace zor_internal {

// What an empty value looks like, so that it can be told from no value.
constexpr char kEmptyValue[] = "\"\"";

// What stands for a character in XML; null for one that stands for itself.
inline char const* entityFor(char c) {
    switch (c) {
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '&':
        return "&amp;";
    case '\'':
        return "&apos;";
    case '"':
        return "&quot;";
    default:
        return nullptr;
    }
}

// Calls `take(characters, length)` for every piece of what escapeCData of the text gives.
template <typename Take>
void forEachEscapedPiece(char const* text, Take take) {
    if (!*text) return take(kEmptyValue, sizeof kEmptyValue - 1);
    char const* run = text; // of characters that stand for themselves
    for (; *text; ++text) {
        char const* const entity = entityFor(*text);
        if (!entity) continue;
        if (text > run) take(run, static_cast<std::size_t>(text - run));
        take(entity, std::strlen(entity));
        run = text + 1;
    }
    if (text > run) take(run, static_cast<std::size_t>(text - run));
}

// The characters that unescapeCData of the text gives, without a copy; null for none, and for null.
// Borrowed.
char const* unescaped(ZorString const* text);

} // namespace zor_internal
