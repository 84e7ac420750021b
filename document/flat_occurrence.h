// The number of an occurrence among all occurrences of its node.

#pragma once

#include <climits>

#include "zor/schema.h"

namespace zor_internal {

// parent's flat occurrence x the node's occurrences + the node's own. What 31 bits do not hold is
// no cell's: it stays out of range.
inline int flatOccurrence(long parentFlat, ZorSchemaNode const* node, long occurrence) {
    long flat;
    bool const beyond = __builtin_mul_overflow(parentFlat, long(node->getOccurrences()), &flat) ||
                        __builtin_add_overflow(flat, occurrence, &flat) || flat > INT_MAX ||
                        flat < 0;
    return beyond ? INT_MAX : static_cast<int>(flat);
}

} // namespace zor_internal
