#include "schema/child_index.h"

#include <climits>
#include <cstdlib>
#include <cstring>

namespace {

ZorSchemaNode const* childAt(void const* entry) {
    return *static_cast<ZorSchemaNode* const*>(entry);
}

int compareChildren(void const* a, void const* b) {
    return std::strcmp(childAt(a)->getName(), childAt(b)->getName());
}

int compareNameWithChild(void const* name, void const* entry) {
    return std::strcmp(static_cast<char const*>(name), childAt(entry)->getName());
}

} // namespace

namespace zor_internal {

void buildChildIndex(ZorSchemaNode* node) {
    std::size_t count = 0;
    for (ZorSchemaNode const* child = node->firstChild; child; child = child->next) ++count;
    if (count == 0) return;
    // Children are only added, so an index of as many is complete.
    if (node->sortedChildren && static_cast<std::size_t>(node->childCount) == count) return;

    delete[] node->sortedChildren;
    node->sortedChildren = nullptr;
    node->childCount = 0;
    if (count > SHRT_MAX) return; // more than childCount can say
    node->sortedChildren = new ZorSchemaNode*[count];
    node->childCount = static_cast<short>(count);
    ZorSchemaNode** at = node->sortedChildren;
    for (ZorSchemaNode* child = node->firstChild; child; child = child->next) *at++ = child;
    std::qsort(node->sortedChildren, count, sizeof(ZorSchemaNode*), compareChildren);
}

ZorSchemaNode* findChild(ZorSchemaNode const* node, char const* name) {
    if (node->sortedChildren) {
        auto* const found = static_cast<ZorSchemaNode**>(
            std::bsearch(name, node->sortedChildren, static_cast<std::size_t>(node->childCount),
                         sizeof(ZorSchemaNode*), compareNameWithChild));
        return found ? *found : nullptr;
    }
    for (ZorSchemaNode* child = node->getFirstChildNode(); child; child = child->next) {
        if (std::strcmp(child->getName(), name) == 0) return child;
    }
    return nullptr;
}

} // namespace zor_internal
