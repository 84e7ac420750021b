// The floors of building a schema: through the API, plain nodes, each with a copy of its name,
// linked into a tree; from a definition, expat over the same text, with handlers that do nothing.

#include <cstring>
#include <memory>
#include <string>

#include "bench/expat_pass.h"
#include "bench/phone_schema.h"
#include "bench/shapes.h"
#include "bench/stopwatch.h"
#include "bench/workload.h"

namespace bench {
namespace {

struct PlainNode {
    char* name;
    PlainNode* parent;
    PlainNode* next;
    PlainNode* firstChild;
    PlainNode* lastChild;
    int occurrences;
    int total;
};

PlainNode* addNode(PlainNode* parent, std::string const& name, int occurrences) {
    char* const copy = new char[name.size() + 1];
    std::memcpy(copy, name.c_str(), name.size() + 1);
    auto* const node = new PlainNode{copy,
                                     parent,
                                     nullptr,
                                     nullptr,
                                     nullptr,
                                     occurrences,
                                     parent ? occurrences * parent->total : occurrences};
    if (!parent) return node;
    (parent->lastChild ? parent->lastChild->next : parent->firstChild) = node;
    parent->lastChild = node;
    return node;
}

void buildBelow(PlainNode* parent, PhoneNode const& from) {
    for (std::unique_ptr<PhoneNode> const& child : from.children) {
        PlainNode* const node = addNode(parent, child->name, child->occurrences);
        if (!child->type) buildBelow(node, *child);
    }
}

// The number of nodes.
int deleteTree(PlainNode* node) {
    int count = 1;
    for (PlainNode* child = node->firstChild; child;) {
        PlainNode* const next = child->next;
        count += deleteTree(child);
        child = next;
    }
    delete[] node->name;
    delete node;
    return count;
}

void buildByFloor(benchmark::State& state) {
    std::unique_ptr<PhoneNode> const tree = schemaOf(sizeOf(state));
    int const expected = nodesBelow(*tree);
    for (auto _ : state) {
        PlainNode* root = nullptr;
        {
            Stopwatch const watch(state);
            root = addNode(nullptr, tree->name, 1);
            buildBelow(root, *tree);
        }
        if (deleteTree(root) != expected + 1) fail(state, "other nodes");
    }
    countItems(state, expected);
}

void parseDefinition(benchmark::State& state, PhoneNode const& tree) {
    std::string const definition = definitionOf(tree);
    ExpatPass expat;
    bool good = true;
    for (auto _ : state) {
        Stopwatch const watch(state);
        good &= expat.parse(definition);
    }
    if (!good) fail(state, expat.error());
    countItems(state, nodesBelow(tree));
}

void parseDefinitionByFloor(benchmark::State& state) {
    parseDefinition(state, *schemaOf(sizeOf(state)));
}

void parsePhoneByFloor(benchmark::State& state) {
    parseDefinition(state, phoneData(sizeOf(state)).schema());
}

[[maybe_unused]] auto* const build =
    addWorkload("BuildSchema", "floor", buildByFloor, phoneSizes()) -> UseManualTime();
[[maybe_unused]] auto* const import =
    addWorkload("ImportDefinition", "floor", parseDefinitionByFloor, phoneSizes())
        -> UseManualTime();
[[maybe_unused]] auto* const phone =
    addWorkload("PhoneDefinition", "floor", parsePhoneByFloor, {1000}) -> UseManualTime();

} // namespace
} // namespace bench
