// Escaping straight into a writer, which no string's length limits.

#pragma once

#include "zor/text.h"

namespace zor_internal {

// Writes what escapeCData of the text gives, whole.
void writeEscaped(ZorDataWriter* writer, char const* text);

} // namespace zor_internal
