// Documents used by several threads, and the locks they take.

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "tests/document/store.h"
#include "tests/support/incidents.h"

namespace {

class DocumentThreads : public testing::Test {
protected:
    IncidentLog log;
};

constexpr int kRounds = 3000;

// What each operation does while another thread holds the document's lock: it waits.
struct {
    char const* name;
    void (*run)(ZorDocument& document, ZorSchemaNode* node);
} const kLocking[] = {
    {"getStringNodeValue",
     [](ZorDocument& document, ZorSchemaNode* node) {
         taken(document.getStringNodeValue(node, 0));
     }},
    {"setStringNodeValue",
     [](ZorDocument& document, ZorSchemaNode* node) {
         document.setStringNodeValue(node, 0, "true");
     }},
    {"getIntNodeValue", [](ZorDocument& document,
                           ZorSchemaNode* node) { document.getIntNodeValue(node, 0, nullptr); }},
    {"setIntNodeValue",
     [](ZorDocument& document, ZorSchemaNode* node) { document.setIntNodeValue(node, 0, 1); }},
    {"getUIntNodeValue", [](ZorDocument& document,
                            ZorSchemaNode* node) { document.getUIntNodeValue(node, 0, nullptr); }},
    {"setUIntNodeValue",
     [](ZorDocument& document, ZorSchemaNode* node) { document.setUIntNodeValue(node, 0, 1); }},
    {"getFloatNodeValue",
     [](ZorDocument& document, ZorSchemaNode* node) {
         document.getFloatNodeValue(node->next, 0, nullptr);
     }},
    {"setFloatNodeValue",
     [](ZorDocument& document, ZorSchemaNode* node) {
         document.setFloatNodeValue(node->next, 0, 1);
     }},
    {"wasChanged",
     [](ZorDocument& document, ZorSchemaNode* node) { document.wasChanged(node, 0); }},
    {"restoreDefault",
     [](ZorDocument& document, ZorSchemaNode* node) { document.restoreDefault(node, 0); }},
    {"restoreDefaults", [](ZorDocument& document, ZorSchemaNode*) { document.restoreDefaults(); }},
    {"select", [](ZorDocument& document, ZorSchemaNode*) { delete document.select("bool"); }},
    {"destruction", [](ZorDocument& document, ZorSchemaNode*) { delete &document; }},
};

std::string longText(char letter) { return std::string(100, letter); }

} // namespace

TEST_F(DocumentThreads, EveryOperationWaitsForTheLock) {
    for (auto const& [name, run] : kLocking) {
        Shape shape("bool:bool=true float:float=0.5");
        auto* document = new ZorDocument(&shape.schema, "document");
        std::atomic<bool> done{false};
        document->lock.take(-1);
        std::thread thread([&, operation = run] {
            operation(*document, shape["bool"]);
            done = true;
        });
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        EXPECT_FALSE(done) << name;
        document->lock.give();
        thread.join();
        EXPECT_TRUE(done) << name;
        if (shape.schema.documentCount() > 0) delete document;
    }
}

// For callers that hold the lock already.
TEST_F(DocumentThreads, SomeOperationsTakeNoLock) {
    Store store("a:int=5");
    store.document.lock.take(-1);
    EXPECT_NE(store.document.getDataItem(store["a"], 0, 0), nullptr);
    EXPECT_EQ(taken(store.document.nonBlockingGetStringNodeValue(store["a"], 0)), "5");
    store.document.nonBlockingSetStringNodeValue(store["a"], 0, "6");
    EXPECT_EQ(taken(store.document.nonBlockingGetStringNodeValue(store["a"], 0)), "6");
    store.document.lock.give();
    EXPECT_EQ(store.cells(), "a=6;");
}

TEST_F(DocumentThreads, ARefusalGivesTheLockBack) {
    Store store("a:int=5 b{}");
    store.set("a", 0, "x");
    store.set("a", 9, "1");
    store.set("b", 0, "1");
    store.document.setUIntNodeValue(store["a"], 0, 1);
    store.document.setIntNodeValue(store["a"], 9, 1);
    store.document.getFloatNodeValue(store["a"], 0, nullptr);
    store.select("a[");
    EXPECT_EQ(log.take(), "3 setStringNodeValue: value (x) is not valid\n"
                          "3 setStringNodeValue: occurrence is out of range\n"
                          "3 setStringNodeValue: node is not a data node\n"
                          "3 Unsupported Type Conversion\n"
                          "3 setIntNodeValue: occurrence is out of range\n"
                          "3 Unsupported Type Conversion\n");
    store.document.lock.take(-1); // it is free
    store.document.lock.give();
}

// Values are read whole, whatever other threads write.
TEST_F(DocumentThreads, ReadersSeeWholeValues) {
    Store store("text:string number:int");
    store.set("text", 0, longText('a').c_str());
    std::atomic<int> torn{0};
    auto const write = [&store](char letter) {
        for (int i = 0; i < kRounds; ++i) {
            store.document.setStringNodeValue(store.shape.root()->firstChild, 0,
                                              longText(letter).c_str());
        }
    };
    auto const read = [&store, &torn] {
        for (int i = 0; i < kRounds; ++i) {
            std::string const text =
                taken(store.document.getStringNodeValue(store.shape.root()->firstChild, 0));
            if (text != longText('a') && text != longText('b')) ++torn;
        }
    };
    std::thread first(write, 'a');
    std::thread second(write, 'b');
    read();
    first.join();
    second.join();
    EXPECT_EQ(torn, 0);
    EXPECT_TRUE(store.changed("text"));
}

// Two threads with a result set each fill the cells of one document.
TEST_F(DocumentThreads, ThreadsWithTheirOwnSetsShareADocument) {
    Store store("key*8{label:string=x number:int}");
    auto const fill = [&store](char const* path, char const* value) {
        for (int round = 0; round < 200; ++round) {
            std::unique_ptr<ZorResultSet> const results(store.document.select(path));
            for (; !results->eof(); results->next()) results->setValue(value);
        }
    };
    std::thread labels(fill, "key/label", "a label that needs a heap block to be stored");
    std::thread numbers(fill, "//number", "12345");
    labels.join();
    numbers.join();
    for (long i = 0; i < 8; ++i) {
        EXPECT_EQ(store.text("key/label", i), "a label that needs a heap block to be stored");
        EXPECT_EQ(store.text("key/number", i), "12345");
    }
}

// Every write arrives: no two threads overwrite each other's cells.
TEST_F(DocumentThreads, WritesToDifferentCellsAllArrive) {
    Store store("number*4:int=0");
    std::thread threads[4];
    for (long cell = 0; cell < 4; ++cell) {
        threads[cell] = std::thread([&store, cell] {
            ZorSchemaNode* const node = store.shape.root()->firstChild;
            for (long i = 1; i <= kRounds; ++i) {
                long const before = store.document.getIntNodeValue(node, cell, nullptr);
                store.document.setIntNodeValue(node, cell, before + cell + 1);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(store.cells(), "number=3000*,6000*,9000*,12000*;");
}
