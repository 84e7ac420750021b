// The records of a result set, with their places in its list, in blocks.
//
// A record and a list node of their own for every result were most of the time of a select. Here
// they stand side by side, up to 64 in a block. A block is freed with its first record, and the
// records of a set are destroyed from the last to the first: they stay in the order in which they
// were made, in whichever set they come to be.

#pragma once

#include "zor/document.h"

namespace zor_internal {

// A copy of the record behind `last`, which is null for the first one. Returns its place in the
// list, which is not linked to `last` yet.
ZorListNode* makeRecord(ZorListNode* last, ZorResultPointer const& record);

// The place of a record in the list. It keeps its links when the set forgets its list.
ZorListNode* placeOf(ZorResultPointer* record);

// Destroys the records up to `last`; null is allowed.
void destroyRecords(ZorListNode* last);

} // namespace zor_internal
