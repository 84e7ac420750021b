// What the library takes from the heap, item by item, and for the desk telephone in all:
//
//     zor_heap examples/desk-phone
//
// Prints a line for each item: the bytes asked for, the bytes that the blocks take, the number of
// blocks, and what the item is, between tabs. scripts/footprint makes a table of it.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <list>
#include <memory>
#include <string>

#include "tools/footprint/counted_malloc.h"
#include "zor/zor.h"

namespace {

// Puts `count` items into a store.
using Fill = void (*)(ZorCollection& store, int count);

constexpr int kMany = 1000;

void print(char const* item, Usage usage, int divisor = 1) {
    auto const each = [divisor](long amount) { return (amount + divisor / 2) / divisor; };
    std::printf("%ld\t%ld\t%ld\t%s\n", each(usage.asked), each(usage.taken), each(usage.blocks),
                item);
}

Usage usageAfter(Fill fill, int count) {
    Usage const before = liveUsage();
    auto const store = std::make_unique<ZorCollection>("store");
    fill(*store, count);
    return liveUsage() - before;
}

// What a thousand items add to a thousand others.
Usage usageOfMany(Fill fill) { return usageAfter(fill, 2 * kMany) - usageAfter(fill, kMany); }

void printEach(char const* item, Fill fill) { print(item, usageOfMany(fill), kMany); }

// A name of eight characters.
std::string numbered(char const* name, int i) { return name + std::to_string(1000 + i); }

void printCollections() {
    Fill const nothing = [](ZorCollection&, int) {};
    // The first collection makes what stays when it is gone, above all the table of types.
    Usage const before = liveUsage();
    usageAfter(nothing, 0);
    print("the process, once", liveUsage() - before);

    Usage const empty = usageAfter(nothing, 0);
    print("an empty collection", empty);
    Fill const import = [](ZorCollection& store, int) { store.importXML("<store/>"); };
    print("a collection's parser, from its first importXML on", usageAfter(import, 0) - empty);

    printEach("an empty schema", [](ZorCollection& store, int count) {
        for (int i = 0; i < count; ++i) store.makeSchema(numbered("make", i).c_str());
    });
    printEach("a document, beside its values", [](ZorCollection& store, int count) {
        store.makeSchema("schema");
        for (int i = 0; i < count; ++i) store.makeDocument("schema", numbered("make", i).c_str());
    });
}

ZorSchema* makeItems(ZorCollection& store, int count, char const* type, char const* text) {
    ZorSchema* const schema = store.makeSchema("schema");
    ZorDataType* const dataType = schema->getDataType(type);
    for (int i = 0; i < count; ++i) {
        schema->makeDataNode(schema->rootNode, numbered("item", i).c_str(), 1, dataType, text);
    }
    return schema;
}

void makeBranches(ZorCollection& store, int count, bool withItem) {
    ZorSchema* const schema = store.makeSchema("schema");
    ZorDataType* const dataType = schema->getDataType("int");
    for (int i = 0; i < count; ++i) {
        ZorSchemaNode* const branch =
            schema->makeBranchNode(schema->rootNode, numbered("make", i).c_str(), 1);
        if (withItem) schema->makeDataNode(branch, "itemName", 1, dataType, nullptr);
    }
}

// A document of so many values of one node; each is set to the text, unless that is null.
void makeValues(ZorCollection& store, int count, char const* type, char const* text,
                char const* initial = nullptr) {
    ZorSchema* const schema = store.makeSchema("schema");
    ZorSchemaNode* const node = schema->makeDataNode(
        schema->rootNode, "item", static_cast<short>(count), schema->getDataType(type), initial);
    ZorDocument* const document = store.makeDocument("schema", "document");
    for (int i = 0; text && i < count; ++i) document->setStringNodeValue(node, i, text);
}

void printNodes() {
    Fill const items = [](ZorCollection& store, int count) {
        makeItems(store, count, "int", nullptr);
    };
    printEach("a data node without default, or with an int", items);
    printEach(
        "a data node with a text of up to 32 characters",
        [](ZorCollection& store, int count) { makeItems(store, count, "string", "Reception"); });
    printEach("a branch without children",
              [](ZorCollection& store, int count) { makeBranches(store, count, false); });
    Usage const withItem =
        usageOfMany([](ZorCollection& store, int count) { makeBranches(store, count, true); });
    print("a branch with children", withItem - usageOfMany(items), kMany);
    Usage const withDocument = usageOfMany([](ZorCollection& store, int count) {
        makeItems(store, count, "int", nullptr);
        store.makeDocument("schema", "document");
    });
    Usage const values = usageOfMany(
        [](ZorCollection& store, int count) { makeValues(store, count, "int", nullptr); });
    print("a node, more when its schema has documents", withDocument - usageOfMany(items) - values,
          kMany);
}

void printValues() {
    printEach("a number, or a value that is not set",
              [](ZorCollection& store, int count) { makeValues(store, count, "int", "7"); });
    printEach("a float that is set",
              [](ZorCollection& store, int count) { makeValues(store, count, "float", "0.5"); });
    printEach("a text of one of the 16 permanent strings",
              [](ZorCollection& store, int count) { makeValues(store, count, "string", "true"); });
    printEach("a text of up to 32 characters", [](ZorCollection& store, int count) {
        makeValues(store, count, "string", "Reception");
    });
    printEach("a text of up to 32 characters, left at its default",
              [](ZorCollection& store, int count) {
                  makeValues(store, count, "string", nullptr, "Reception");
              });
    printEach("a text of 100 characters", [](ZorCollection& store, int count) {
        makeValues(store, count, "string", std::string(100, 'x').c_str());
    });
}

// The answers of a select, as long as the result set lives.
void printResults() {
    ZorCollection store("store");
    makeValues(store, kMany, "int", nullptr);
    Usage const before = liveUsage();
    std::unique_ptr<ZorResultSet> const found(store.getDocument("document")->select("item"));
    found->finalize();
    print("a result of a select", liveUsage() - before, kMany);
}

// How many cells of all documents count.
long cellsOf(ZorCollection& store, bool (*counts)(ZorValueNode const& cell)) {
    std::list<ZorDocument*> documents;
    store.getDocuments(documents);
    long number = 0;
    for (ZorDocument const* const document : documents) {
        ZorValueNode const* const end =
            document->values + document->rootNode->countRequiredValueNodes();
        number += std::count_if<ZorValueNode const*>(document->values, end, counts);
    }
    return number;
}

int nodesBelow(ZorSchemaNode const* node) {
    int number = 0;
    for (ZorSchemaNode const* child = node->firstChild; child; child = child->next) {
        number += 1 + nodesBelow(child);
    }
    return number;
}

// Without those of the default schema, which every collection has.
int nodesOf(ZorCollection& store) {
    std::list<ZorSchema*> schemas;
    store.getSchemas(schemas);
    int number = 0;
    for (ZorSchema const* const schema : schemas) {
        if (schema != store.defaultSchema) number += nodesBelow(schema->rootNode);
    }
    return number;
}

void printTelephone(std::string const& directory) {
    Usage const before = liveUsage();
    restartPeak();
    ZorCollection store("deskphone");
    store.importFromFile((directory + "/definition.xml").c_str());
    Usage const schemas = liveUsage() - before;
    store.importFromFile((directory + "/config.xml").c_str());
    Usage const all = liveUsage() - before;
    Usage const highest = peakUsage() - before;
    long const cells = cellsOf(store, [](ZorValueNode const&) { return true; });
    long const changed = cellsOf(
        store, [](ZorValueNode const& cell) { return (cell.flags & ZorValueNode::changed) != 0; });
    std::string const nodes = std::to_string(nodesOf(store));
    print(("desk phone: " + nodes + " nodes and their types").c_str(), schemas);
    print(("desk phone: with " + std::to_string(cells) + " values, " + std::to_string(changed) +
           " of them set")
              .c_str(),
          all);
    print("desk phone: at most, while its files are read", highest);
}

// Every item is measured in silence, or not at all.
void failOnIncident(severity, std::string& message) {
    std::fprintf(stderr, "%s\n", message.c_str());
    std::_Exit(1);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: zor_heap DIRECTORY-OF-THE-DESK-PHONE\n");
        return 2;
    }
    zor_setLoggingFunction(failOnIncident);
    printCollections();
    printNodes();
    printValues();
    printResults();
    printTelephone(argv[1]);
    return 0;
}
