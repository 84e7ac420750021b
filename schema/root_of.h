// The root above a node, for what every access to a value asks.

#pragma once

#include "zor/schema.h"

namespace zor_internal {

// Null when the node is not attached to a root; null is allowed. Borrowed.
inline ZorSchemaNode* rootOf(ZorSchemaNode* node) {
    while (node && node->type != ZorSchemaNode::ROOT_NODE) node = node->parent;
    return node;
}

} // namespace zor_internal
