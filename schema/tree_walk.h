// Walking over a tree of schema nodes without recursion.

#pragma once

#include "zor/schema.h"

namespace zor_internal {

// The node that follows in a walk over `top` and all below it, parents first; null at the end.
inline ZorSchemaNode const* nextInTree(ZorSchemaNode const* node, ZorSchemaNode const* top) {
    if (node->firstChild) return node->firstChild;
    while (node != top && !node->next) node = node->parent;
    return node == top ? nullptr : node->next;
}

} // namespace zor_internal
