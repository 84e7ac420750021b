// The way to a cell, inline because it is a quarter of the work of reading a number.

#pragma once

#include "schema/root_of.h"
#include "zor/document.h"

namespace zor_internal {

inline bool isData(ZorSchemaNode const* node) {
    return node && node->type == ZorSchemaNode::DATA_NODE;
}

// The cell, or null when the node is not a data node of the document's schema or has no such
// occurrence. Borrowed as long as the document lives.
inline ZorValueNode* cellOf(ZorDocument const* document, ZorSchemaNode* node, long occurrence) {
    if (!isData(node)) return nullptr;
    // First, because another thread may just be laying out the schema of another document's node.
    if (rootOf(node) != document->rootNode) return nullptr;
    if (occurrence < 0 || occurrence >= node->totalOccurrences || node->valueIndex < 0) {
        return nullptr;
    }
    return &document->values[node->valueIndex + occurrence];
}

} // namespace zor_internal
