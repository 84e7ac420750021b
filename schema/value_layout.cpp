// The layout of a document's cells.
//
// A data node owns one block of multiplier x occurrences cells, where the multiplier is the
// product of the occurrences of all branches above it. Blocks lie in depth-first order, children
// in the order they were made.

#include "zor/schema.h"

#include <climits>

#include "schema/child_index.h"
#include "schema/document_count.h"
#include "types/number_value.h"

using zor_internal::buildChildIndex;
using zor_internal::liveDocuments;
using zor_internal::numberCopy;
using zor_internal::numberFree;

namespace {

long occurrencesOf(ZorSchemaNode const* node) {
    int const occurrences = node->getOccurrences();
    return occurrences > 0 ? occurrences : 0;
}

long multiply(long a, long b) {
    long product;
    return __builtin_mul_overflow(a, b, &product) ? LONG_MAX : product;
}

long add(long a, long b) {
    long sum;
    return __builtin_add_overflow(a, b, &sum) ? LONG_MAX : sum;
}

// While documents exist, indexes and value indexes are right and others read them: they stay.
bool isOpen(ZorSchemaNode const* node) {
    ZorSchemaNode const* const root = node->getSchemaRootNode();
    return !root || liveDocuments(root) <= 0;
}

long countCells(ZorSchemaNode* node, bool open) {
    if (node->isDataNode()) return occurrencesOf(node);
    long sum = 0;
    for (ZorSchemaNode* child = node->firstChild; child; child = child->next) {
        sum = add(sum, countCells(child, open));
    }
    if (open) buildChildIndex(node);
    return multiply(occurrencesOf(node), sum);
}

// Calls `visit(dataNode, first cell, number of cells)` for every data node from `node` down, with
// cells counted from `first`. Returns how many cells there are.
template <typename Visit>
long visitBlocks(ZorSchemaNode* node, long first, long multiplier, Visit const& visit) {
    long const count = multiply(multiplier, occurrencesOf(node));
    if (node->isDataNode()) {
        visit(node, first, count);
        return count;
    }
    long used = 0;
    for (ZorSchemaNode* child = node->firstChild; child; child = child->next) {
        used += visitBlocks(child, first + used, count, visit);
    }
    return used;
}

void setValue(ZorValueNode& cell, u_zorItemValue value) {
    cell.value = value;
    cell.flags = static_cast<unsigned char>(cell.flags & ~ZorValueNode::noValue);
}

// Whether values of the type are plain numbers, which are copied as they are and need no release.
// With calls for each, making and deleting a document takes a fifth more instructions.
bool isPlainNumber(ZorDataType const* type) {
    return type->copyValueFn == numberCopy && type->freeValueFn == numberFree;
}

void setToDefault(ZorValueNode* cell, ZorValueNode const* end, ZorSchemaNode const* node) {
    ZorCopyValueFn const copyValue = node->dataType->copyValueFn;
    if (isPlainNumber(node->dataType)) {
        for (; cell < end; ++cell) setValue(*cell, node->defaultValue);
        return;
    }
    for (; cell < end; ++cell) setValue(*cell, copyValue(node->defaultValue));
}

bool hasDefault(ZorSchemaNode const* node) {
    return node->dataType && !(node->flags & ZorSchemaNode::noDefault);
}

} // namespace

long ZorSchemaNode::countRequiredValueNodes() { return countCells(this, isOpen(this)); }

long ZorSchemaNode::makeValueNodes(ZorValueNode* cells, long startIndex, long multiplier) {
    bool const open = isOpen(this);
    return visitBlocks(this, 0, multiplier, [=](ZorSchemaNode* node, long first, long count) {
        if (open) node->valueIndex = static_cast<int>(startIndex + first);
        if (hasDefault(node)) return setToDefault(cells + first, cells + first + count, node);
        for (long i = first; i < first + count; ++i) cells[i].flags |= ZorValueNode::noValue;
    });
}

long ZorSchemaNode::copyValueNodes(ZorValueNode const* from, ZorValueNode* to, long startIndex,
                                   long multiplier) {
    bool const open = isOpen(this);
    return visitBlocks(this, 0, multiplier, [=](ZorSchemaNode* node, long first, long count) {
        if (open) node->valueIndex = static_cast<int>(startIndex + first);
        for (long i = first; i < first + count; ++i) {
            if (!(from[i].flags & ZorValueNode::noValue)) {
                to[i].value = node->dataType->copyValueFn(from[i].value);
            }
            to[i].flags = from[i].flags;
        }
    });
}

long ZorSchemaNode::freeValueNodes(ZorValueNode* cells, long multiplier) {
    return visitBlocks(this, 0, multiplier, [=](ZorSchemaNode* node, long first, long count) {
        if (!node->dataType || isPlainNumber(node->dataType)) return;
        for (long i = first; i < first + count; ++i) {
            if (!(cells[i].flags & ZorValueNode::noValue)) {
                node->dataType->freeValueFn(cells[i].value);
            }
        }
    });
}
