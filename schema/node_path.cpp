// Paths on the schema tree itself, by which definitions name parents.

#include "zor/schema.h"

#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include "foundation/address_set.h"
#include "foundation/list_builder.h"
#include "incident/raise.h"

using zor_internal::AddressSet;
using zor_internal::ListBuilder;
using zor_internal::raiseError;

namespace {

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

// How many nodes a path may look at: behind "//" the ways to a node, and what is reached by them,
// double with every step.
constexpr long kMostVisits = 1048576;

// The nodes that a step of a path reached.
class Found {
public:
    // Counts in *visits what is looked at. Who asks only whether a path reaches no node, one or
    // more than one needs none of them more than twice.
    Found(bool eachAtMostTwice, long* visits) : bounded(eachAtMostTwice), visited(visits) {}

    bool visit() { return ++*visited <= kMostVisits; }

    void append(ZorSchemaNode* node) {
        if (!bounded || once.add(node) || twice.add(node)) nodes.append(node);
    }

    bool isEmpty() const { return !nodes.first(); }
    ZorListNode* first() const { return nodes.first(); }
    [[nodiscard]] ZorListNode* release() { return nodes.release(); }

private:
    bool bounded;
    long* visited;
    ListBuilder nodes;
    AddressSet once; // what was appended so often, if bounded
    AddressSet twice;
};

void appendMatchingChildren(Found& found, ZorSchemaNode const* node, Segment segment) {
    ZorSchemaNode* child = node->getFirstChildNode();
    for (; child && found.visit(); child = child->next) {
        if (segment.matches(child)) found.append(child);
    }
}

// Kept: behind "//" come children and grandchildren, and no deeper.
void appendMatchingChildrenAndGrandchildren(Found& found, ZorSchemaNode const* node,
                                            Segment segment) {
    ZorSchemaNode* child = node->getFirstChildNode();
    for (; child && found.visit(); child = child->next) {
        if (segment.matches(child)) found.append(child);
        appendMatchingChildren(found, child, segment);
    }
}

// The nodes that the path names below `start`; none when the path is malformed, null after
// reporting that it looks at too many.
std::unique_ptr<Found> findNodes(ZorSchemaNode* start, char const* path, char const* end,
                                 bool eachAtMostTwice) {
    char const* const begin = path;
    long visits = 0;
    auto current = std::make_unique<Found>(eachAtMostTwice, &visits);
    if (path == end) return current;
    current->append(start);
    while (path < end && !current->isEmpty()) {
        auto const previous =
            std::exchange(current, std::make_unique<Found>(eachAtMostTwice, &visits));
        char const* const run = path;
        while (path < end && *path == '/') ++path;
        auto const slashes = path - run;
        if (slashes > 2) return current;
        Segment segment{path, 0};
        while (path < end && *path != '/') ++path;
        segment.length = static_cast<std::size_t>(path - segment.text);
        auto* const step =
            slashes == 2 ? appendMatchingChildrenAndGrandchildren : appendMatchingChildren;
        for (ZorListNode const* at = previous->first(); at; at = at->next) {
            step(*current, nodeAt(at), segment);
        }
    }
    if (visits <= kMostVisits) return current;
    raiseError(nullptr, incidentInvalidArgument, "path (", std::string(begin, end).c_str(),
               ") reaches too many nodes");
    return nullptr;
}

} // namespace

void ZorSchemaNode::findSubNodes(ZorListNode** result, char const* path, int length) {
    if (!path) return;
    char const* const end =
        path + (length < 0 ? std::strlen(path) : static_cast<std::size_t>(length));
    std::unique_ptr<Found> const found = findNodes(this, path, end, false);
    if (!found) return;
    if (*result)
        zor_listJoin(*result, found->release());
    else
        *result = found->release();
}

ZorSchemaNode* ZorSchemaNode::findSubNode(ZorString* path) {
    if (!path) return nullptr;
    if (path->length == 0) {
        raiseError(nullptr, incidentInvalidArgument, "xpath must not be empty");
        return nullptr;
    }
    std::unique_ptr<Found> const found =
        findNodes(this, path->text, path->text + path->length, true);
    if (!found) return nullptr;
    ZorListNode const* const first = found->first();
    if (!first) {
        raiseError(nullptr, incidentInvalidArgument, "path (", path->text, ") not found");
        return nullptr;
    }
    if (first->next) {
        raiseError(nullptr, incidentInvalidArgument, "path (", path->text, ") is ambiguous");
        return nullptr;
    }
    return nodeAt(first);
}
