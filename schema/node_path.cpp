// Paths on the schema tree itself, by which definitions name parents.

#include "zor/schema.h"

#include <cstring>

#include "foundation/list_ref.h"
#include "incident/raise.h"

using zor_internal::ListRef;
using zor_internal::raiseError;

namespace {

// A list that knows its end.
struct NodeList {
    ZorListNode* first = nullptr;
    ZorListNode* last = nullptr;

    void append(ZorSchemaNode* node) {
        last = last ? zor_listAddNode(last, node) : zor_listMake(node);
        if (!first) first = last;
    }
};

ZorSchemaNode* nodeAt(ZorListNode const* node) { return static_cast<ZorSchemaNode*>(node->value); }

struct Segment {
    char const* text;
    std::size_t length;

    bool matches(ZorSchemaNode const* node) const {
        if (length == 1 && *text == '*') return true;
        return length > 0 && node->name->length == length &&
               std::memcmp(node->name->text, text, length) == 0;
    }
};

void appendMatchingChildren(NodeList& found, ZorSchemaNode const* node, Segment segment) {
    for (ZorSchemaNode* child = node->getFirstChildNode(); child; child = child->next) {
        if (segment.matches(child)) found.append(child);
    }
}

// Kept: behind "//" come children and grandchildren, and no deeper.
void appendMatchingChildrenAndGrandchildren(NodeList& found, ZorSchemaNode const* node,
                                            Segment segment) {
    for (ZorSchemaNode* child = node->getFirstChildNode(); child; child = child->next) {
        if (segment.matches(child)) found.append(child);
        appendMatchingChildren(found, child, segment);
    }
}

// The nodes that the path names below `start`; an empty list when there are none or the path is
// malformed.
NodeList findNodes(ZorSchemaNode* start, char const* path, char const* end) {
    NodeList current;
    if (path == end) return current;
    current.append(start);
    while (path < end && current.first) {
        ListRef const previous(current.first);
        current = NodeList();
        char const* const run = path;
        while (path < end && *path == '/') ++path;
        auto const slashes = path - run;
        if (slashes > 2) return current;
        Segment segment{path, 0};
        while (path < end && *path != '/') ++path;
        segment.length = static_cast<std::size_t>(path - segment.text);
        auto* const step =
            slashes == 2 ? appendMatchingChildrenAndGrandchildren : appendMatchingChildren;
        for (ZorListNode const* at = previous.first(); at; at = at->next) {
            step(current, nodeAt(at), segment);
        }
    }
    return current;
}

} // namespace

void ZorSchemaNode::findSubNodes(ZorListNode** result, char const* path, int length) {
    if (!path) return;
    char const* const end =
        path + (length < 0 ? std::strlen(path) : static_cast<std::size_t>(length));
    NodeList const found = findNodes(this, path, end);
    if (*result)
        zor_listJoin(*result, found.first);
    else
        *result = found.first;
}

ZorSchemaNode* ZorSchemaNode::findSubNode(ZorString* path) {
    if (!path) return nullptr;
    if (path->length == 0) {
        raiseError(nullptr, incidentInvalidArgument, "xpath must not be empty");
        return nullptr;
    }
    ZorListNode* list = nullptr;
    findSubNodes(&list, path->text, path->length);
    ListRef const found(list);
    if (!list) {
        raiseError(nullptr, incidentInvalidArgument, "path (", path->text, ") not found");
        return nullptr;
    }
    if (list->next) {
        raiseError(nullptr, incidentInvalidArgument, "path (", path->text, ") is ambiguous");
        return nullptr;
    }
    return nodeAt(list);
}
