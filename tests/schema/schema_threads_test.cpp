// Schemas used by several threads.

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/incidents.h"
#include "zor/collection.h"

namespace {

constexpr int kThreads = 4;

template <typename Work>
void inThreads(Work work) {
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) threads.emplace_back(work, i);
    for (std::thread& thread : threads) thread.join();
}

int childrenOf(ZorSchemaNode const* node) {
    int count = 0;
    for (ZorSchemaNode const* child = node->getFirstChildNode(); child; child = child->next) {
        ++count;
    }
    return count;
}

} // namespace

// Node creation is serialised per schema: every node gets its place.
TEST(SchemaThreads, MakeNodesOfOneSchema) {
    IncidentLog const log;
    ZorCollection store("cfg");
    ZorSchema* const schema = store.makeSchema("phone");
    inThreads([schema](int thread) {
        for (int i = 0; i < 500; ++i) {
            std::string const name = std::to_string(thread) + "-" + std::to_string(i);
            EXPECT_NE(schema->makeBranchNode(schema->getRootNode(), name.c_str(), 1), nullptr);
        }
    });
    EXPECT_EQ(childrenOf(schema->getRootNode()), 500 * kThreads);
}

// Of several threads that make a node of one name, one succeeds.
TEST(SchemaThreads, OneNameIsTakenOnce) {
    IncidentLog log;
    ZorCollection store("cfg");
    ZorSchema* const schema = store.makeSchema("phone");
    zor_setLoggingFunction(nullptr);
    std::atomic<int> made{0};
    inThreads([&](int) {
        for (int i = 0; i < 200; ++i) {
            std::string const name = std::to_string(i);
            if (schema->makeBranchNode(schema->getRootNode(), name.c_str(), 1)) ++made;
        }
    });
    EXPECT_EQ(made, 200);
    EXPECT_EQ(childrenOf(schema->getRootNode()), 200);
}

// The cache of names is shared by all schemas of the process.
TEST(SchemaThreads, MakeAndDeleteSchemasAtTheSameTime) {
    IncidentLog const log;
    ZorCollection store("cfg");
    inThreads([&store](int thread) {
        std::string const name = "schema" + std::to_string(thread);
        for (int i = 0; i < 100; ++i) {
            ZorSchema* const schema = store.makeSchema(name.c_str());
            ZorSchemaNode* const branch = schema->makeBranchNode(schema->getRootNode(), "b", 2);
            ZorSchemaNode* const item =
                schema->makeDataNode(branch, "x", 1, schema->getDataType("int"), "1");
            EXPECT_EQ(schema->getChildNode(branch, "x"), item);
            store.deleteSchema(name.c_str());
        }
    });
}

// Nodes are made between documents or not at all; a document always has the cells of its tree.
TEST(SchemaThreads, NodesAndDocumentsExcludeEachOther) {
    IncidentLog const log;
    ZorCollection store("cfg");
    ZorSchema* const schema = store.makeSchema("phone");
    schema->makeDataNode(schema->getRootNode(), "first", 1, schema->getDataType("int"), "1");
    zor_setLoggingFunction(nullptr); // most nodes are refused
    std::atomic<bool> done{false};
    std::thread builder([&] {
        for (int i = 0; !done; ++i) {
            // No more than so many names: however often this thread runs, the tree stays small.
            std::string const name = "n" + std::to_string(i % 1000);
            schema->makeDataNode(schema->getRootNode(), name.c_str(), 1, schema->getDataType("int"),
                                 "1");
        }
    });
    for (int i = 0; i < 500; ++i) {
        ZorDocument* const document = store.makeDocument("phone", "d");
        int const children = childrenOf(schema->getRootNode());
        EXPECT_EQ(schema->getRootNode()->countRequiredValueNodes(), children);
        EXPECT_EQ(document->getIntNodeValue(schema->getRootNode()->getLastChildNode(), 0, nullptr),
                  1);
        store.deleteDocument("d");
    }
    done = true;
    builder.join();
}
