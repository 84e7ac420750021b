// The records of a result set, with their places in its list, in blocks.
//
// With a block of memory for every result a select of many takes twice the instructions. Here a
// record and its place stand side by side, many in a block. A block is freed with its first record,
// and the records of a set are destroyed from the last to the first: they stay in the order in
// which they were made, in whichever set they come to be.

#pragma once

#include <cstddef>

#include "zor/document.h"

namespace zor_internal {

// What a record is made of.
struct Result {
    ZorSchemaNode* node;
    int occurrence; // under the parent's occurrence, from 0
    int flat;       // flat occurrence
};

// Appends a record to the list of a set.
void appendRecord(ZorResultSet* set, Result const& result);

// Fills an empty set with records that are in its array already.
void fillArray(ZorResultSet* set, Result const* results, std::size_t count);

// The place of a record in the list. It keeps its links when the set forgets its list.
ZorListNode* placeOf(ZorResultPointer* record);

// Destroys the records up to `last`; null is allowed.
void destroyRecords(ZorListNode* last);

} // namespace zor_internal
