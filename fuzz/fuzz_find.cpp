// A path on the schema tree of a fixed rich document: findSubNode and findSubNodes give what a dull
// walk over the rules gives, with exactly the incident that says why; a node's own path finds it.

#include "fuzz/support/check.h"
#include "fuzz/support/incident_log.h"
#include "fuzz/support/leftovers.h"
#include "fuzz/support/parts.h"
#include "fuzz/support/rich_store.h"
#include "fuzz/support/target.h"
#include "tests/schema/dull_find.h"
#include "tests/support/text.h"

namespace {

Nodes nodesIn(ZorListNode* list) {
    Nodes nodes;
    for (ZorListNode const* at = list; at; at = at->next) {
        nodes.push_back(static_cast<ZorSchemaNode*>(at->value));
    }
    zor_listDelete(list);
    return nodes;
}

// The one incident, or none, that the dull walk's result calls for.
std::string expectedIncident(std::string const& path, Nodes const& found) {
    if (path.empty()) return "3 xpath must not be empty\n";
    if (found.size() == 1) return "";
    return "3 path (" + upToNul(path) + (found.empty() ? ") not found\n" : ") is ambiguous\n");
}

// Empty when a name on the way means something else in a path.
std::string fullPathOf(ZorSchemaNode const* node) {
    std::string path;
    for (; !node->isSchemaRootNode(); node = node->getParentNode()) {
        std::string const name = node->getName();
        if (name == "*" || name.find('/') != std::string::npos) return "";
        path = '/' + name + path;
    }
    return path;
}

void checkFoundFrom(ZorSchemaNode* start, std::string const& path, IncidentLog& log) {
    Nodes const expected = dullFind(start, path);
    ZorListNode* list = nullptr;
    start->findSubNodes(&list, path.data(), static_cast<int>(path.size()));
    check(nodesIn(list) == expected, "findSubNodes finds what a dull walk finds");
    checkSame(log.take(), "", "findSubNodes is silent");

    Text const string(path);
    ZorSchemaNode* const one = start->findSubNode(string);
    check(one == (expected.size() == 1 ? expected[0] : nullptr), "findSubNode finds the only node");
    checkSame(log.take(), expectedIncident(path, expected), "findSubNode says why not");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    static RichStore& store = *new RichStore;
    std::string const path = textOfInput(data, size); // NULs are characters here
    NoLeftovers const nothing;
    IncidentLog log;
    for (ZorSchemaNode* const node : dullFind(store.root, path)) {
        std::string const own = fullPathOf(node);
        if (own.empty()) continue;
        check(store.root->findSubNode(Text(own)) == node, "the path of a node finds the node");
        checkFoundFrom(node, path, log); // the same path again, from further down
    }
    checkFoundFrom(store.root, path, log);
    return 0;
}
