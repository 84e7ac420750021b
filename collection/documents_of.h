// The documents of a schema.

#pragma once

#include "zor/collection.h"

namespace zor_internal {

// Removes and deletes the collection's documents of a schema that is about to go.
// REQUIRES: the caller holds the collection's lock.
void deleteDocumentsOf(ZorCollection* collection, ZorSchema const* schema);

} // namespace zor_internal
