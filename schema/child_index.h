// Children by name: the sorted index, or the list where there is none.

#pragma once

#include "zor/schema.h"

namespace zor_internal {

// Makes the index of a node's children anew, complete and sorted. A node with more children than
// childCount can say gets none.
void buildChildIndex(ZorSchemaNode* node);

// The child with exactly that name, or null. Borrowed.
ZorSchemaNode* findChild(ZorSchemaNode const* node, char const* name);

} // namespace zor_internal
