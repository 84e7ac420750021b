// In which order a collection destroys what it holds, and under which locks.
//
// The schemas here have a type that notes when its values and the type itself are released.

#include <gtest/gtest.h>

#include <vector>

#include "tests/collection/objects.h"
#include "tests/support/checked_semaphore.h"
#include "tests/support/incidents.h"
#include "tests/types/call_log.h"
#include "zor/collection.h"

namespace {

void noteLocks(u_zorItemValue value) {
    CallLog::note(std::to_string(value.intValue) + " with " + std::to_string(heldLocks()));
}

// A type of numbers whose release notes the number of locks held.
ZorDataType* makeLockWitness() {
    return new ZorDataType("witness", nullptr, nullptr, nullptr, nullptr, nullptr,
                           probe::fromString, probe::copyValue, noteLocks, probe::setFromString,
                           probe::toString, nullptr);
}

// Adds a schema called "s" with one item of the type, which it owns.
ZorSchema* addSchema(ZorCollection& store, ZorDataType* type, char const* defaultText) {
    ZorSchema* const schema = store.makeSchema("s");
    schema->addDataType(type);
    schema->makeDataNode(schema->getRootNode(), "item", 1, type, defaultText);
    return schema;
}

ZorDocument* addDocument(ZorCollection& store, char const* schema, char const* name,
                         char const* value) {
    ZorDocument* const document = store.makeDocument(schema, name);
    setAt(document, "item", value);
    return document;
}

std::string numbersFrom(int first, int count) {
    std::string text;
    for (int i = first; i < first + count; ++i) text += "freeValue " + std::to_string(i) + ';';
    return text;
}

char own[] = "own";
char inner[] = "inner";

} // namespace

// Documents go before the schemas that they were made from, sub-collections last.
TEST(CollectionLifetime, DestroysDocumentsThenSchemasThenCollections) {
    IncidentLog const log;
    CallLog calls;
    {
        ZorCollection store("cfg");
        ZorCollection* const site = store.makeCollection("site");
        addSchema(*site, makeProbe("probe", "6", inner), "5");
        addDocument(*site, "s", "d", "4");
        addSchema(store, makeProbe("probe", "3", own), "2");
        addDocument(store, "s", "d", "1");
        calls.take();
    }
    EXPECT_EQ(calls.take(), "freeValue 1;freeValue 2;freeValue 3;freeUserData own;"
                            "freeValue 4;freeValue 5;freeValue 6;freeUserData inner;");
}

TEST(CollectionLifetime, ASchemaFollowsItsDocuments) {
    IncidentLog const log;
    CallLog calls;
    ZorCollection store("cfg");
    addSchema(store, makeProbe("probe", "3", own), "2");
    addDocument(store, "s", "d", "1");
    calls.take();
    store.deleteSchema("s");
    EXPECT_EQ(calls.take(), "freeValue 1;freeValue 2;freeValue 3;freeUserData own;");
}

// A copied schema replaces one whose documents go first.
TEST(CollectionLifetime, ACopiedSchemaReplacesASchemaAndItsDocuments) {
    IncidentLog const log;
    CallLog calls;
    ZorCollection store("cfg");
    addSchema(store, makeProbe("probe", "3", own), "2");
    addDocument(store, "s", "d", "1");
    calls.take();
    store.copySchema("s", store.getSchema("DefaultSchema"));
    EXPECT_EQ(calls.take(), "freeValue 1;freeValue 2;freeValue 3;freeUserData own;");
    EXPECT_EQ(store.getDocuments(), nullptr);
    EXPECT_STREQ(store.getSchema("s")->getRootNode()->firstChild->getName(), "itemValue");
}

// Each value in list order.
TEST(CollectionLifetime, DeletesAllDocumentsInListOrder) {
    IncidentLog const log;
    CallLog calls;
    ZorCollection store("cfg");
    addSchema(store, makeProbe("probe", nullptr, own), nullptr);
    for (int i = 0; i < 40; ++i) store.makeDocument("s", ("doc" + std::to_string(i)).c_str());
    std::list<ZorDocument*> documents;
    store.getDocuments(documents);
    int number = 100;
    for (ZorDocument* const document : documents) {
        setAt(document, "item", std::to_string(number++).c_str());
    }
    calls.take();
    store.deleteAllDocuments();
    EXPECT_EQ(calls.take(), numbersFrom(100, 40));
}

TEST(CollectionLifetime, DeletesAllSchemasInListOrder) {
    IncidentLog const log;
    CallLog calls;
    ZorCollection store("cfg");
    for (int i = 0; i < 40; ++i) store.makeSchema(("schema" + std::to_string(i)).c_str());
    std::list<ZorSchema*> schemas;
    store.getSchemas(schemas);
    int number = 100;
    for (ZorSchema* const schema : schemas) {
        schema->addDataType(makeProbe("probe", std::to_string(number++).c_str(), nullptr));
    }
    calls.take();
    store.deleteAllSchemas();
    EXPECT_EQ(calls.take(), numbersFrom(100, 41)); // the default schema is one of them
}

TEST(CollectionLifetime, DeletesAllCollectionsInListOrder) {
    IncidentLog const log;
    CallLog calls;
    ZorCollection store("cfg");
    for (int i = 0; i < 40; ++i) store.makeCollection(("site" + std::to_string(i)).c_str());
    std::list<ZorCollection*> collections;
    store.getCollections(collections);
    int number = 100;
    for (ZorCollection* const collection : collections) {
        collection->addDataType(makeProbe("probe", std::to_string(number++).c_str(), nullptr));
    }
    calls.take();
    store.deleteAllCollections();
    EXPECT_EQ(calls.take(), numbersFrom(100, 40));
}

// The collection's lock is held, and the document's own.
TEST(CollectionLifetime, DeletesDocumentsUnderTheLock) {
    IncidentLog const log;
    CallLog calls;
    ZorCollection store("cfg");
    addSchema(store, makeLockWitness(), nullptr);
    addDocument(store, "s", "a", "1");
    addDocument(store, "s", "b", "2");
    addDocument(store, "s", "c", "3");
    calls.take();
    store.deleteDocument("a");
    EXPECT_EQ(calls.take(), "1 with 2;");
    store.deleteDocument("b");
    store.deleteAllDocuments();
    EXPECT_EQ(calls.take(), "2 with 2;3 with 2;");
}

// The node's default goes with the schema, under the collection's lock alone.
TEST(CollectionLifetime, DeletesSchemasUnderTheLock) {
    IncidentLog const log;
    CallLog calls;
    ZorCollection store("cfg");
    addSchema(store, makeLockWitness(), "7");
    addDocument(store, "s", "d", "1");
    calls.take();
    store.deleteSchema("s");
    EXPECT_EQ(calls.take(), "1 with 2;7 with 1;");
    addSchema(store, makeLockWitness(), "8");
    addDocument(store, "s", "d", "2");
    calls.take();
    store.deleteAllSchemas();
    EXPECT_EQ(calls.take(), "2 with 2;8 with 1;");
}

// The parent's lock is never held while a sub-collection goes: only its own and the document's are.
TEST(CollectionLifetime, DeletesCollectionsOutsideTheLock) {
    IncidentLog const log;
    CallLog calls;
    ZorCollection store("cfg");
    for (char const* const name : {"a", "b"}) {
        ZorCollection* const site = store.makeCollection(name);
        addSchema(*site, makeLockWitness(), nullptr);
        addDocument(*site, "s", "d", "1");
    }
    calls.take();
    store.deleteCollection("a");
    EXPECT_EQ(calls.take(), "1 with 2;");
    store.deleteAllCollections();
    EXPECT_EQ(calls.take(), "1 with 2;");
}
