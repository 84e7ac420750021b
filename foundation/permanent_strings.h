// The permanent strings, looked up by their characters.

#pragma once

#include "zor/string.h"

namespace zor_internal {

// The permanent string with these `length` characters, or null. `length` 0 finds the empty one.
ZorString* findPermanent(char const* chars, int length);

} // namespace zor_internal
