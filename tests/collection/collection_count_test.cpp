// The count of live collections, and collections made and used by several threads.

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include "tests/collection/objects.h"
#include "tests/support/incidents.h"
#include "tests/types/call_log.h"
#include "zor/collection.h"

namespace {

constexpr int kThreads = 4;

// The collections alive beyond those that there were before the test.
class CollectionCount : public testing::Test {
protected:
    int counted() const { return ZorCollection::refCount - before; }

    IncidentLog log;
    int const before = ZorCollection::refCount;
};

// Runs `work(number)` in several threads at once.
template <typename Work>
void inThreads(Work work) {
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    std::atomic<int> ready{0};
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&ready, work, i] {
            for (++ready; ready < kThreads;) std::this_thread::yield();
            work(i);
        });
    }
    for (std::thread& thread : threads) thread.join();
}

std::string numbered(char const* name, int thread, int number) {
    return name + std::to_string(thread) + '-' + std::to_string(number);
}

// User data of a type is cloned while its schema is copied.
int countedWhileCopying = 0;

void* noteCount(void* userData) {
    countedWhileCopying = ZorCollection::refCount;
    return userData;
}

} // namespace

TEST_F(CollectionCount, RisesWithEachCollectionAndFallsWithIt) {
    {
        ZorCollection const first("first");
        EXPECT_EQ(counted(), 1);
        auto const second = std::make_unique<ZorCollection>("second", nullptr);
        EXPECT_EQ(counted(), 2);
    }
    EXPECT_EQ(counted(), 0);
}

TEST_F(CollectionCount, IncludesSubCollections) {
    {
        ZorCollection store("cfg");
        ZorCollection* const site = store.makeCollection("site");
        site->makeCollection("hall");
        store.makeCollection("other");
        EXPECT_EQ(counted(), 4);
        store.deleteCollection("site");
        EXPECT_EQ(counted(), 2);
        store.importXML("<cfg><collection name=\"other\"><collection name=\"hall\"/></collection>"
                        "<collection name=\"third\"/></cfg>");
        EXPECT_EQ(counted(), 4);
        store.deleteAllCollections();
        EXPECT_EQ(counted(), 1);
        store.makeCollection("last")->makeCollection("inner");
    }
    EXPECT_EQ(counted(), 0);
}

TEST_F(CollectionCount, KeepsAReplacedCollectionUntilItsOwnerDeletesIt) {
    ZorCollection store("cfg");
    ZorCollection const* const first = store.makeCollection("site");
    store.makeCollection("site");
    EXPECT_EQ(log.take(), "3 ZorCollection::makeCollection{Collection (site) already exists}\n");
    EXPECT_EQ(counted(), 3);
    delete first;
    EXPECT_EQ(counted(), 2);
}

// Copying a schema needs one more collection for a while.
TEST_F(CollectionCount, IsTheSameAfterCopyingASchema) {
    ZorCollection store("cfg");
    ZorSchema* const schema = store.makeSchema("phone");
    static char tag[] = "tag";
    schema->addDataType(makeProbe("probe", nullptr, tag, nullptr, noteCount));
    countedWhileCopying = 0;
    store.copySchema("copy", schema);
    EXPECT_EQ(countedWhileCopying - before, 2);
    EXPECT_EQ(counted(), 1);
}

TEST_F(CollectionCount, IsTheSameAfterObjectsOfOtherKinds) {
    ZorCollection store("cfg");
    store.makeSchema("phone");
    store.copyDocument("copy", store.makeDocument("phone", "phone1"));
    store.importXML("<cfg><schema name=\"x\"/><document name=\"y\"/></cfg>");
    EXPECT_EQ(counted(), 1);
    store.deleteAllSchemas();
    EXPECT_EQ(counted(), 1);
}

TEST_F(CollectionCount, IsRightWhenThreadsMakeCollections) {
    std::vector<std::unique_ptr<ZorCollection>> kept(kThreads);
    inThreads([&kept](int thread) {
        for (int i = 0; i < 1500; ++i) ZorCollection const store("cfg");
        for (int i = 0; i < 300; ++i) {
            ZorCollection store(numbered("store", thread, i).c_str());
            store.makeCollection("inner");
            store.makeDocument("DefaultSchema", "note");
        }
        kept[static_cast<std::size_t>(thread)] = std::make_unique<ZorCollection>("kept");
    });
    EXPECT_EQ(counted(), kThreads);
    kept.clear();
    EXPECT_EQ(counted(), 0);
}

// All operations on one collection take its lock as they need it.
TEST(CollectionThreads, MakeFindAndDeleteInOneCollection) {
    IncidentLog const log;
    ZorCollection store("cfg");
    inThreads([&store](int thread) {
        std::string const schema = numbered("schema", thread, 0);
        ZorSchema* const made = store.makeSchema(schema.c_str());
        made->makeDataNode(made->getRootNode(), "volume", 2, made->getDataType("int"), "5");
        for (int i = 0; i < 200; ++i) {
            std::string const name = numbered("document", thread, i);
            ZorDocument* const document = store.makeDocument(schema.c_str(), name.c_str());
            EXPECT_EQ(setAt(document, "volume[2]", std::to_string(i).c_str()), 1);
            EXPECT_EQ(store.getDocument(name.c_str()), document);
            EXPECT_EQ(valuesAt(document, "volume"), "5|" + std::to_string(i));
            if (i % 2 == 0) store.deleteDocument(name.c_str());
            zor_listDelete(store.getDocuments());
            store.makeCollection(name.c_str());
            if (i % 4 != 0) store.deleteCollection(name.c_str());
        }
        EXPECT_EQ(made->documentCount(), 100);
    });
    std::list<ZorDocument*> documents;
    store.getDocuments(documents);
    EXPECT_EQ(documents.size(), 100U * kThreads);
    std::list<ZorCollection*> collections;
    store.getCollections(collections);
    EXPECT_EQ(collections.size(), 50U * kThreads);
    std::list<ZorSchema*> schemas;
    store.getSchemas(schemas);
    EXPECT_EQ(schemas.size(), kThreads + 1U);
}

// Documents of one schema, too: its count and its layout are the collection's to guard.
TEST(CollectionThreads, MakeDocumentsOfOneSchema) {
    IncidentLog const log;
    ZorCollection store("cfg");
    ZorSchema* const schema = store.makeSchema("phone");
    schema->makeDataNode(schema->getRootNode(), "b", 1, schema->getDataType("int"), "5");
    schema->makeDataNode(schema->getRootNode(), "a", 3, schema->getDataType("string"), "x");
    inThreads([&store](int thread) {
        for (int i = 0; i < 200; ++i) {
            std::string const name = numbered("document", thread, i);
            ZorDocument* const document = store.makeDocument("phone", name.c_str());
            EXPECT_EQ(valuesAt(document, "*"), "5|x|x|x");
            if (i % 2 == 0) store.deleteDocument(name.c_str());
        }
    });
    EXPECT_EQ(schema->documentCount(), 100 * kThreads);
    store.deleteAllDocuments();
    EXPECT_EQ(schema->documentCount(), 0);
}

TEST(CollectionThreads, CopyDocumentsOfOneSchema) {
    IncidentLog const log;
    ZorCollection store("cfg");
    ZorSchema* const schema = store.makeSchema("phone");
    schema->makeDataNode(schema->getRootNode(), "a", 3, schema->getDataType("int"), "5");
    inThreads([&store](int thread) {
        std::string const source = numbered("source", thread, 0);
        ZorDocument* const document = store.makeDocument("phone", source.c_str());
        std::string const copy = numbered("copy", thread, 0);
        for (int i = 0; i < 5000; ++i) store.copyDocument(copy.c_str(), document);
    });
    EXPECT_EQ(schema->documentCount(), 2 * kThreads);
    store.deleteAllDocuments();
    EXPECT_EQ(schema->documentCount(), 0);
}
