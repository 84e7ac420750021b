// Paths on the schema tree itself, by which definitions name parents.

#include "zor/schema.h"

#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "foundation/list_builder.h"
#include "incident/raise.h"
#include "schema/name_cache.h"

using zor_internal::cachedChild;
using zor_internal::ListBuilder;
using zor_internal::raiseError;

namespace {

ZorSchemaNode* nodeAt(ZorListNode const* node) { return static_cast<ZorSchemaNode*>(node->value); }

struct Segment {
    char const* text;
    std::size_t length;

    bool isWildcard() const { return length == 1 && *text == '*'; }
    bool matches(ZorSchemaNode const* node) const {
        if (isWildcard()) return true;
        return length > 0 && node->name->length == length &&
               std::memcmp(node->name->text, text, length) == 0;
    }
};

// The nodes that a path reached so far.
//
// Through "//" a node may be reached in several ways, and their number doubles with every step. Who
// asks only whether it is none, one or more than one needs no node more than twice.
class Found {
public:
    explicit Found(bool eachAtMostTwice) : bounded(eachAtMostTwice) {}

    void append(ZorSchemaNode* node) {
        if (isExceeded() || (bounded && ++timesFound[node] > 2)) return;
        nodes.append(node);
        ++count;
    }

    bool isEmpty() const { return !nodes.first(); }
    bool isExceeded() const { return !bounded && count > kMostFound; }
    ZorListNode* first() const { return nodes.first(); }
    [[nodiscard]] ZorListNode* release() { return nodes.release(); }

private:
    static constexpr long kMostFound = 1048576;

    bool bounded;
    ListBuilder nodes;
    long count = 0;
    std::map<ZorSchemaNode const*, int> timesFound;
};

void appendMatchingChildren(Found& found, ZorSchemaNode const* node, Segment segment) {
    // Siblings differ in their names, so the name cache knows the one; but not of nodes that were
    // linked by hand.
    if (segment.length == 0) return;
    if (!segment.isWildcard()) {
        if (ZorSchemaNode* const child = cachedChild(node, {segment.text, segment.length})) {
            return found.append(child);
        }
    }
    for (ZorSchemaNode* child = node->getFirstChildNode(); child; child = child->next) {
        if (segment.matches(child)) found.append(child);
    }
}

// Kept: behind "//" come children and grandchildren, and no deeper.
void appendMatchingChildrenAndGrandchildren(Found& found, ZorSchemaNode const* node,
                                            Segment segment) {
    for (ZorSchemaNode* child = node->getFirstChildNode(); child; child = child->next) {
        if (segment.matches(child)) found.append(child);
        appendMatchingChildren(found, child, segment);
    }
}

// The nodes that the path names below `start`; none when the path is malformed.
std::unique_ptr<Found> findNodes(ZorSchemaNode* start, char const* path, char const* end,
                                 bool eachAtMostTwice) {
    auto current = std::make_unique<Found>(eachAtMostTwice);
    if (path == end) return current;
    current->append(start);
    while (path < end && !current->isEmpty() && !current->isExceeded()) {
        auto const previous = std::exchange(current, std::make_unique<Found>(eachAtMostTwice));
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
    return current;
}

} // namespace

void ZorSchemaNode::findSubNodes(ZorListNode** result, char const* path, int length) {
    if (!path) return;
    char const* const end =
        path + (length < 0 ? std::strlen(path) : static_cast<std::size_t>(length));
    std::unique_ptr<Found> const found = findNodes(this, path, end, false);
    if (found->isExceeded()) {
        raiseError(nullptr, incidentInvalidArgument, "path (", std::string(path, end).c_str(),
                   ") reaches too many nodes");
        return;
    }
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
