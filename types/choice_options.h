// Options of a choice that come one after the other.

#pragma once

#include "zor/types.h"

namespace zor_internal {

// zor_choiceAddOption without the way down the list: `last` is the node of the last option, or of
// any other, and null when there is none yet. Returns the new node.
ZorListNode* appendOption(ZorDataType* choice, ZorListNode* last, void const* option);

} // namespace zor_internal
