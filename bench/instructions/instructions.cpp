// Six fixed pieces of work on the desk telephone, whose instructions are counted:
//
//     valgrind --tool=callgrind --collect-atstart=no --toggle-collect=zor_counted
//         zor_instructions examples/desk-phone import
//
// Only what runs inside zor_counted is work; what it needs is made before, and its result is
// checked after it. Nothing depends on time, chance or addresses, so that two runs count the same.
// scripts/bench-instructions compares the counts with those in bench/instructions/committed.txt.

#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/instructions/counted.h"
#include "zor/zor.h"

namespace {

void require(bool holds, char const* what) {
    if (!holds) throw std::runtime_error(what);
}

void repeat(int times, std::function<void()> const& work) {
    for (int i = 0; i < times; ++i) work();
}

std::string readFile(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    require(file.good(), path.c_str());
    return {std::istreambuf_iterator<char>(file), {}};
}

struct Telephone {
    explicit Telephone(std::string const& directory)
        : definition(readFile(directory + "/definition.xml")),
          config(readFile(directory + "/config.xml")) {}

    std::string definition;
    std::string config;
};

using Store = std::unique_ptr<ZorCollection>;

Store makeStore(Telephone const& telephone) {
    auto store = std::make_unique<ZorCollection>("deskphone");
    store->importXML(telephone.definition.c_str());
    return store;
}

// One cell of a document.
struct Leaf {
    ZorDocument* document;
    ZorSchemaNode* node;
    long occurrence;

    bool changed() const { return document->wasChanged(node, occurrence); }
};

void appendLeaves(std::vector<Leaf>& leaves, ZorDocument* document, ZorSchemaNode* parent) {
    for (ZorSchemaNode* node = parent->getFirstChildNode(); node; node = node->getNextNode()) {
        appendLeaves(leaves, document, node);
        if (!node->isDataNode()) continue;
        for (long i = 0; i < node->getTotalOccurrences(); ++i)
            leaves.push_back({document, node, i});
    }
}

// All cells of the telephone and of its directory.
std::vector<Leaf> leavesOf(ZorCollection& store) {
    std::vector<Leaf> leaves;
    for (char const* const name : {"phone1", "directory"}) {
        ZorDocument* const document = store.getDocument(name);
        require(document != nullptr, "a document is missing");
        appendLeaves(leaves, document, document->getRootNode());
    }
    return leaves;
}

// What the README of the example says of its files.
constexpr std::size_t kCells = 1198 + 3504;
constexpr std::size_t kChanged = 665 + 1688;

std::vector<Leaf> changedLeavesOf(ZorCollection& store) {
    std::vector<Leaf> changed;
    for (Leaf const& leaf : leavesOf(store)) {
        if (leaf.changed()) changed.push_back(leaf);
    }
    require(changed.size() == kChanged, "not all values were imported");
    return changed;
}

std::string textOf(Leaf const& leaf) {
    ZorString* const value = leaf.document->getStringNodeValue(leaf.node, leaf.occurrence);
    require(value != nullptr, "a value is missing");
    std::string text = zor_stringValue(value);
    value->removeRef();
    return text;
}

void import(Telephone const& telephone) {
    Store const counted = makeStore(telephone);
    zor_counted([&] { counted->importXML(telephone.config.c_str()); });
    changedLeavesOf(*counted);
    std::string const text = counted->exportAllDocuments();
    Store const again = makeStore(telephone);
    again->importXML(text.c_str());
    require(again->exportAllDocuments() == text, "what was imported is exported as something else");
}

Store makeFilledStore(Telephone const& telephone) {
    Store store = makeStore(telephone);
    store->importXML(telephone.config.c_str());
    return store;
}

void readTexts(Telephone const& telephone) {
    constexpr int kTimes = 12;
    Store const store = makeFilledStore(telephone);
    std::vector<Leaf> const leaves = changedLeavesOf(*store);
    std::size_t expected = 0;
    for (Leaf const& leaf : leaves) expected += textOf(leaf).size();

    std::size_t characters = 0;
    zor_counted([&] {
        repeat(kTimes, [&] {
            for (Leaf const& leaf : leaves) {
                ZorString* const text =
                    leaf.document->getStringNodeValue(leaf.node, leaf.occurrence);
                characters += zor_stringLength(text);
                text->removeRef();
            }
        });
    });
    require(characters == kTimes * expected, "other texts were read");
}

void readNumbers(Telephone const& telephone) {
    constexpr int kTimes = 40;
    Store const store = makeFilledStore(telephone);
    std::vector<Leaf> numbers;
    unsigned long expected = 0;
    for (Leaf const& leaf : changedLeavesOf(*store)) {
        if (!leaf.node->getDataType()->extFuncs[zorExtULong].toInternal) continue;
        numbers.push_back(leaf);
        expected += leaf.document->getDataItem(leaf.node, leaf.occurrence, 0)->value.uintValue;
    }

    unsigned long sum = 0;
    zor_counted([&] {
        repeat(kTimes, [&] {
            for (Leaf const& leaf : numbers) {
                sum += leaf.document->getUIntNodeValue(leaf.node, leaf.occurrence, nullptr);
            }
        });
    });
    require(expected != 0 && sum == kTimes * expected, "other numbers were read");
}

// Every set value as text, and as a number where its type has one.
void read(Telephone const& telephone) {
    readTexts(telephone);
    readNumbers(telephone);
}

// Every value that the example sets, into documents with the defaults, and again over itself.
void write(Telephone const& telephone) {
    constexpr int kTimes = 10;
    Store const source = makeFilledStore(telephone);
    Store const target = makeStore(telephone);
    target->makeDocument("phone", "phone1");
    target->makeDocument("directory", "directory");
    std::vector<Leaf> const from = leavesOf(*source);
    std::vector<Leaf> const to = leavesOf(*target);
    require(from.size() == kCells && to.size() == kCells, "cells are missing");
    std::vector<Leaf> leaves;
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < from.size(); ++i) {
        if (!from[i].changed()) continue;
        leaves.push_back(to[i]);
        texts.push_back(textOf(from[i]));
    }

    int refused = 0;
    zor_counted([&] {
        repeat(kTimes, [&] {
            for (std::size_t i = 0; i < leaves.size(); ++i) {
                refused += !leaves[i].document->setStringNodeValue(
                    leaves[i].node, leaves[i].occurrence, texts[i].c_str());
            }
        });
    });
    require(refused == 0, "a value was refused");
    for (std::size_t i = 0; i < leaves.size(); ++i) {
        require(textOf(leaves[i]) == texts[i], "a value is another than was written");
    }
    changedLeavesOf(*target);
}

struct Selects {
    std::vector<std::string> paths;
    unsigned long results; // of all of them
};

// The label of every line by itself; all of them at once, with those of the 10 paging groups, and
// beside the 4 other values and the 3 lamps of each line; and some more by two more branches.
Selects makeSelects() {
    constexpr unsigned long kLines = 48;
    Selects selects{{"lineKey/label", "//label", "lineKey/*", "lineKey/lamp/colour",
                     "network/ipv4/route[1]/*", "account[6]/codec/name"},
                    kLines + (kLines + 10) + kLines * 8 + kLines * 3 + 4 + 5};
    for (unsigned long line = 1; line <= kLines; ++line) {
        selects.paths.push_back("lineKey[" + std::to_string(line) + "]/label");
        ++selects.results;
    }
    return selects;
}

void select(Telephone const& telephone) {
    constexpr int kTimes = 20;
    Store const store = makeFilledStore(telephone);
    ZorDocument* const phone = store->getDocument("phone1");
    Selects const selects = makeSelects();
    unsigned long results = 0;
    zor_counted([&] {
        repeat(kTimes, [&] {
            for (std::string const& path : selects.paths) {
                std::unique_ptr<ZorResultSet> const found(phone->select(path.c_str()));
                results += found->getResultCount();
            }
        });
    });
    require(results == kTimes * selects.results, "other nodes were selected");
}

void exportValues(Telephone const& telephone) {
    constexpr int kTimes = 5;
    Store const store = makeFilledStore(telephone);
    std::string text;
    zor_counted([&] { repeat(kTimes, [&] { text = store->exportAllDocuments(); }); });

    Store const again = makeStore(telephone);
    again->importXML(text.c_str());
    changedLeavesOf(*again);
    require(again->exportAllDocuments() == text, "the export is read as something else");
}

// The telephone's schemas by their definition, a document of each, and the end of all.
void build(Telephone const& telephone) {
    constexpr int kTimes = 4;
    std::string const expected = makeStore(telephone)->exportAll();
    std::string text;
    std::size_t cells = 0;
    Store store;
    for (int i = 0; i < kTimes; ++i) {
        zor_counted([&] {
            store = makeStore(telephone);
            store->makeDocument("phone", "phone1");
            store->makeDocument("directory", "directory");
        });
        cells += leavesOf(*store).size();
        store->deleteAllDocuments();
        text = store->exportAll();
        require(text == expected, "the schemas differ");
        zor_counted([&] { store.reset(); });
    }
    require(cells == kTimes * kCells, "cells are missing");
}

struct Workload {
    char const* name;
    void (*run)(Telephone const& telephone);
};

constexpr std::array<Workload, 6> kWorkloads = {{
    {"import", import},
    {"read", read},
    {"write", write},
    {"select", select},
    {"export", exportValues},
    {"build", build},
}};

void failOnIncident(severity, std::string& message) {
    std::fprintf(stderr, "zor_instructions: %s\n", message.c_str());
    std::_Exit(1);
}

} // namespace

int main(int argc, char** argv) try {
    zor_setLoggingFunction(failOnIncident);
    for (Workload const& workload : kWorkloads) {
        if (argc != 3 || std::strcmp(argv[2], workload.name) != 0) continue;
        workload.run(Telephone(argv[1]));
        return 0;
    }
    std::fputs("usage: zor_instructions DIRECTORY-OF-THE-DESK-PHONE WORKLOAD\n", stderr);
    for (Workload const& workload : kWorkloads) std::fprintf(stderr, "  %s\n", workload.name);
    return 2;
} catch (std::exception const& failure) {
    std::fprintf(stderr, "zor_instructions: %s\n", failure.what());
    return 1;
}
