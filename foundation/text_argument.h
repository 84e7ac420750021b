// Arguments that are a ZorString or plain text.
//
// Every name, default and value that a caller passes as `void const*` is read through here. Null
// reads as the empty text.

#pragma once

#include "zor/string.h"

namespace zor_internal {

// The characters of the argument. Borrowed from it.
inline char const* textOf(void const* argument) {
    if (!argument) return "";
    if (zor_isString(argument)) return static_cast<ZorString const*>(argument)->text;
    return static_cast<char const*>(argument);
}

// The argument as a string: itself with a reference added, or made from the text. New reference.
inline ZorString* stringOf(void const* argument) {
    if (!zor_isString(argument)) return ZorString::create(static_cast<char const*>(argument), -1);
    auto* string = const_cast<ZorString*>(static_cast<ZorString const*>(argument));
    zor_stringAddRef(string);
    return string;
}

} // namespace zor_internal
