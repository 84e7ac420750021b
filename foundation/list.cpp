// Lists: chains of nodes without a header.

#include "zor/containers.h"

namespace {

ZorListNode* lastOf(ZorListNode* node) {
    while (node->next) node = node->next;
    return node;
}

void cutBefore(ZorListNode* node) {
    if (!node->prev) return;
    node->prev->next = nullptr;
}

} // namespace

ZorListNode* zor_listMake(void* value) { return new ZorListNode{value, nullptr, nullptr}; }

ZorListNode* zor_listAddNode(ZorListNode* list, void* value) {
    ZorListNode* const last = lastOf(list);
    last->next = new ZorListNode{value, nullptr, last};
    return last->next;
}

ZorListNode* zor_listFindNode(ZorListNode* list, void const* key,
                              int (*cmp)(void const* value, void const* key)) {
    for (; list; list = list->next) {
        if (cmp ? cmp(list->value, key) == 0 : list->value == key) return list;
    }
    return nullptr;
}

ZorListNode* zor_listNextNode(ZorListNode const* node) { return node->next; }

ZorListNode* zor_listPrevNode(ZorListNode const* node) { return node->prev; }

void* zor_listGetValue(ZorListNode const* node) { return node->value; }

void zor_listSetValue(ZorListNode* node, void* value) { node->value = value; }

void zor_listJoin(ZorListNode* a, ZorListNode* b) {
    if (!b) return;
    cutBefore(b);
    ZorListNode* const last = lastOf(a);
    last->next = b;
    b->prev = last;
}

void zor_listDelete(ZorListNode* node) {
    if (!node) return;
    cutBefore(node);
    while (node) {
        ZorListNode* const next = node->next;
        delete node;
        node = next;
    }
}
