// Escaping without the limit of a string's length.

#pragma once

#include <string>

namespace zor_internal {

// What escapeCData of the text gives, whole.
std::string escaped(char const* text);

} // namespace zor_internal
