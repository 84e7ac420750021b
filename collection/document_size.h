// What a document of a schema takes before any value is set.

#pragma once

#include <cstdint>

#include "zor/schema.h"

namespace zor_internal {

// Its cells at 16 bytes, and 64 bytes and the text for every default that is no number; 0 when no
// document can be made. Takes the schema's lock.
std::int64_t bytesOfDocument(ZorSchema* schema);

} // namespace zor_internal
