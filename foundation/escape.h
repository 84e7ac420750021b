// Escaping without the limit of a string's length.

#pragma once

#include <string>

#include "zor/string.h"

namespace zor_internal {

// What escapeCData of the text gives, whole.
std::string escaped(char const* text);

// The characters that unescapeCData of the text gives, without a copy; null for none. Borrowed.
char const* unescaped(ZorString const* text);

} // namespace zor_internal
