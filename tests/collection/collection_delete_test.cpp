// Removal and replacement of a collection's objects.

#include <gtest/gtest.h>

#include "foundation/map_entries.h"
#include "tests/collection/objects.h"
#include "tests/support/incidents.h"
#include "zor/collection.h"

namespace {

class CollectionDelete : public testing::Test {
protected:
    // The keys of a map, "-" behind those whose value is null.
    static std::string keysOf(ZorMapEntry** map) {
        std::string keys;
        zor_internal::forEachEntry(map, [&keys](ZorMapEntry const& entry) {
            if (!keys.empty()) keys += ' ';
            keys += entry.key->text;
            if (!entry.value) keys += '-';
        });
        return keys;
    }

    // A document of the default schema under a key that is not its name.
    ZorDocument* storeUnder(char const* key, char const* ownName) {
        auto* const document = new ZorDocument(store.getSchema("DefaultSchema"), ownName);
        store.setDocument(document, key);
        return document;
    }

    IncidentLog log;
    ZorCollection store{"cfg"};
};

} // namespace

TEST_F(CollectionDelete, DeletesDocumentsByKey) {
    store.makeDocument("DefaultSchema", "a");
    ZorDocument* const b = store.makeDocument("DefaultSchema", "b");
    store.deleteDocument("a");
    EXPECT_EQ(store.getDocument("a"), nullptr);
    EXPECT_EQ(store.getDocument("b"), b);
    EXPECT_EQ(store.getSchema("DefaultSchema")->documentCount(), 1);
    EXPECT_NE(store.makeDocument("DefaultSchema", "a"), nullptr);
}

TEST_F(CollectionDelete, DeletesCollectionsByKey) {
    store.makeCollection("a")->makeCollection("inner");
    ZorCollection* const b = store.makeCollection("b");
    store.deleteCollection("a");
    EXPECT_EQ(store.getCollection("a"), nullptr);
    EXPECT_EQ(store.getCollection("b"), b);
    EXPECT_NE(store.makeCollection("a"), nullptr);
}

TEST_F(CollectionDelete, MissingNamesDoNothing) {
    store.makeDocument("DefaultSchema", "note");
    store.makeCollection("site");
    store.deleteSchema("nothing");
    store.deleteDocument("nothing");
    store.deleteCollection("nothing");
    store.deleteAllDocuments();
    store.deleteAllDocuments();
    EXPECT_EQ(schemaNames(store), "DefaultSchema");
    EXPECT_EQ(collectionNames(store), "site");
}

// The name may be the object's own text, which goes with it.
TEST_F(CollectionDelete, TakesTheNameOfWhatItDeletes) {
    store.deleteDocument(store.makeDocument("DefaultSchema", "note")->getName());
    store.deleteSchema(store.makeSchema("phone")->getName());
    store.deleteCollection(store.makeCollection("site")->getName());
    EXPECT_EQ(store.getDocuments(), nullptr);
    EXPECT_EQ(schemaNames(store), "DefaultSchema");
    EXPECT_EQ(store.getCollections(), nullptr);
}

// A schema takes the documents made from it along, whatever their keys, and no others.
TEST_F(CollectionDelete, DeletesTheDocumentsOfASchemaFirst) {
    ZorSchema* const phone = store.makeSchema("phone");
    store.makeDocument("phone", "phone1");
    store.makeDocument("phone", "phone2");
    store.setDocument(new ZorDocument(phone, "phone3"), "key");
    ZorDocument* const note = store.makeDocument("DefaultSchema", "note");
    store.deleteSchema("phone");
    EXPECT_EQ(store.getSchema("phone"), nullptr);
    EXPECT_EQ(keysOf(store.documents), "note");
    EXPECT_EQ(store.getDocument("note"), note);
}

TEST_F(CollectionDelete, LeavesTheDocumentsOfOtherCollectionsAlone) {
    ZorCollection other("other");
    store.makeSchema("phone");
    other.makeSchema("phone");
    store.makeDocument("phone", "phone1");
    ZorDocument* const kept = other.makeDocument("phone", "phone1");
    store.deleteSchema("phone");
    EXPECT_EQ(store.getDocument("phone1"), nullptr);
    EXPECT_EQ(other.getDocument("phone1"), kept);
    EXPECT_EQ(other.getSchema("phone")->documentCount(), 1);
}

TEST_F(CollectionDelete, ASchemaStoredUnderAnotherKeyTakesItsDocumentsAlong) {
    auto* const schema = new ZorSchema(&store, "phone");
    store.setSchema(schema, "key");
    store.makeDocument("key", "phone1");
    store.deleteSchema("phone"); // not its key
    EXPECT_NE(store.getDocument("phone1"), nullptr);
    store.deleteSchema("key");
    EXPECT_EQ(store.getDocument("phone1"), nullptr);
    EXPECT_EQ(keysOf(store.schemas), "DefaultSchema");
}

TEST_F(CollectionDelete, DeletesAllDocuments) {
    store.makeSchema("phone");
    store.makeDocument("phone", "phone1");
    store.makeDocument("DefaultSchema", "note");
    store.deleteAllDocuments();
    EXPECT_EQ(keysOf(store.documents), "");
    EXPECT_EQ(store.getDocuments(), nullptr);
    EXPECT_EQ(store.getSchema("phone")->documentCount(), 0);
    EXPECT_NE(store.makeDocument("phone", "phone1"), nullptr);
}

// The default schema goes, too, and so do all documents.
TEST_F(CollectionDelete, DeletesAllSchemas) {
    store.makeSchema("phone");
    store.makeDocument("phone", "phone1");
    store.makeDocument("DefaultSchema", "note");
    store.makeCollection("site")->makeDocument("DefaultSchema", "note");
    store.deleteAllSchemas();
    EXPECT_EQ(keysOf(store.schemas), "");
    EXPECT_EQ(keysOf(store.documents), "");
    EXPECT_EQ(documentNames(*store.getCollection("site")), "note");
    EXPECT_EQ(store.makeDocument("DefaultSchema", "note"), nullptr);
    EXPECT_EQ(log.take(), "3 ZorCollection::makeDocument{Schema (DefaultSchema) does not exist}\n");
    EXPECT_NE(store.makeSchema("DefaultSchema"), nullptr);
    EXPECT_NE(store.makeDocument("DefaultSchema", "note"), nullptr);
}

TEST_F(CollectionDelete, DeletesAllCollections) {
    store.makeCollection("a")->makeCollection("inner");
    store.makeCollection("b");
    store.makeDocument("DefaultSchema", "note");
    store.deleteAllCollections();
    EXPECT_EQ(keysOf(store.collections), "");
    EXPECT_EQ(documentNames(store), "note");
}

// An entry is removed by the object's own name: one under another key stays, with a null value,
// and listings skip it.
TEST_F(CollectionDelete, DeleteAllDocumentsLeavesOtherKeysBehindEmpty) {
    store.makeDocument("DefaultSchema", "note");
    storeUnder("key", "own");
    store.deleteAllDocuments();
    EXPECT_EQ(keysOf(store.documents), "key-");
    EXPECT_EQ(store.getDocument("key"), nullptr);
    EXPECT_EQ(store.getDocuments(), nullptr);
    EXPECT_EQ(store.exportAll(), "<cfg></cfg>");
    EXPECT_EQ(store.exportDocument("key"), "");
    EXPECT_EQ(store.getSchema("DefaultSchema")->documentCount(), 0);
}

TEST_F(CollectionDelete, AKeyLeftBehindCanBeUsedAgain) {
    storeUnder("key", "own");
    store.deleteAllDocuments();
    ZorDocument* const made = store.makeDocument("DefaultSchema", "key");
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(store.getDocument("key"), made);
    EXPECT_EQ(keysOf(store.documents), "key");
    store.deleteAllDocuments();
    EXPECT_EQ(keysOf(store.documents), "");
}

TEST_F(CollectionDelete, AKeyLeftBehindCanBeDeletedOrReplaced) {
    storeUnder("a", "own");
    storeUnder("b", "own");
    store.deleteAllDocuments();
    EXPECT_EQ(keysOf(store.documents), "a- b-");
    store.deleteDocument("a");
    EXPECT_EQ(keysOf(store.documents), "b-");
    store.copyDocument("b", store.makeDocument("DefaultSchema", "note"));
    EXPECT_STREQ(store.getDocument("b")->getName(), "note");
    store.deleteSchema("DefaultSchema");
    EXPECT_EQ(keysOf(store.documents), "");
}

TEST_F(CollectionDelete, DeleteAllSchemasLeavesOtherKeysBehindEmpty) {
    store.copySchema("key", store.getSchema("DefaultSchema"));
    store.makeDocument("key", "note");
    store.deleteAllSchemas();
    EXPECT_EQ(keysOf(store.schemas), "key-");
    EXPECT_EQ(keysOf(store.documents), "");
    EXPECT_EQ(store.getSchemas(), nullptr);
    EXPECT_EQ(store.exportSchema("key"), "");
    EXPECT_EQ(store.makeDocument("key", "note"), nullptr);
    EXPECT_EQ(log.take(), "3 ZorCollection::makeDocument{Schema (key) does not exist}\n");
    EXPECT_NE(store.makeSchema("key"), nullptr);
}

// What is stored under one's own name may be another.
TEST_F(CollectionDelete, DeleteAllDocumentsDeletesObjectsWhoseKeysAreCrossed) {
    storeUnder("y", "x");
    storeUnder("x", "z");
    storeUnder("z", "z2");
    store.deleteAllDocuments();
    EXPECT_EQ(keysOf(store.documents), "y-");
    EXPECT_EQ(store.getSchema("DefaultSchema")->documentCount(), 0);
}

TEST_F(CollectionDelete, DeletesADocumentUnderTwoKeysOnce) {
    ZorDocument* const note = store.makeDocument("DefaultSchema", "note");
    store.setDocument(note, "key");
    EXPECT_EQ(store.getDocument("key"), note);
    EXPECT_EQ(documentNames(store), "note note");
    store.deleteAllDocuments();
    EXPECT_EQ(keysOf(store.documents), "key-");
    EXPECT_EQ(store.getDocument("key"), nullptr);
}

TEST_F(CollectionDelete, DeletesASchemaUnderTwoKeysOnce) {
    ZorSchema* const phone = store.makeSchema("phone");
    store.setSchema(phone, "key");
    store.makeDocument("phone", "phone1");
    store.makeDocument("key", "phone2");
    EXPECT_EQ(phone->documentCount(), 2);
    store.deleteAllSchemas();
    EXPECT_EQ(keysOf(store.schemas), "key-");
    EXPECT_EQ(keysOf(store.documents), "");
}

TEST_F(CollectionDelete, ASchemaDeletesADocumentUnderTwoKeysOnce) {
    store.makeSchema("phone");
    store.setDocument(store.makeDocument("phone", "phone1"), "key");
    store.deleteSchema("phone");
    EXPECT_EQ(store.getDocuments(), nullptr);
}

// A collection's entry is removed only with a collection in it, unlike the entries of other kinds.
TEST_F(CollectionDelete, RemovesEntriesWithoutObjects) {
    store.setSchema(nullptr, "key");
    store.setDocument(nullptr, "key");
    zor_mapSet(store.collections, "key", nullptr);
    EXPECT_EQ(keysOf(store.documents) + keysOf(store.collections), "key-key-");
    store.deleteSchema("key");
    store.deleteDocument("key");
    store.deleteCollection("key");
    EXPECT_EQ(keysOf(store.schemas), "DefaultSchema");
    EXPECT_EQ(keysOf(store.documents), "");
    EXPECT_EQ(keysOf(store.collections), "key-");
    EXPECT_EQ(store.getCollections(), nullptr);
    store.deleteAllCollections();
    EXPECT_NE(store.makeCollection("key"), nullptr);
    store.setSchema(nullptr, "key");
    store.deleteAllSchemas();
    EXPECT_EQ(store.getSchemas(), nullptr);
}

// What a setter replaces is dropped from the map without being deleted.
TEST_F(CollectionDelete, SettersHandTheReplacedObjectToTheCaller) {
    ZorDocument* const oldDocument = store.makeDocument("DefaultSchema", "note");
    ZorDocument* const newDocument = storeUnder("note", "other");
    EXPECT_EQ(store.getDocument("note"), newDocument);
    EXPECT_STREQ(oldDocument->getName(), "note");
    EXPECT_EQ(store.getSchema("DefaultSchema")->documentCount(), 2);
    delete oldDocument;

    ZorSchema* const oldSchema = store.makeSchema("phone");
    auto* const newSchema = new ZorSchema(&store, "phone");
    Text const key("phone");
    store.setSchema(newSchema, key);
    EXPECT_EQ(store.getSchema("phone"), newSchema);
    EXPECT_STREQ(oldSchema->getName(), "phone");
    delete oldSchema;
}

// The default schema is looked up by its name, and its absence is like any other.
TEST_F(CollectionDelete, ImportMissesTheDeletedDefaultSchema) {
    store.deleteSchema("DefaultSchema");
    store.importXML("<cfg><document name=\"note\"></document></cfg>");
    EXPECT_EQ(log.take(), "3 ZorCollection::makeDocument{Schema (DefaultSchema) does not exist}\n"
                          "3 {zor_XMLParse: line 1, column 5 }"
                          "problem resolving document and schema name\n");
    EXPECT_EQ(store.getDocuments(), nullptr);
}

TEST_F(CollectionDelete, ImportUsesTheDefaultSchemaThatTookThePlace) {
    store.deleteSchema("DefaultSchema");
    store.importXML(
        "<cfg><schema name=\"DefaultSchema\"><item name=\"text\" type=\"int\"/></schema>"
        "<document name=\"note\"><text>7</text></document></cfg>");
    EXPECT_EQ(valuesAt(store.getDocument("note"), "text"), "7");
}

TEST_F(CollectionDelete, ImportUsesTheCopyThatReplacedTheDefaultSchema) {
    ZorSchema* const phone = store.makeSchema("phone");
    phone->makeDataNode(phone->getRootNode(), "volume", 1, phone->getDataType("int"), "5");
    store.copySchema("DefaultSchema", phone);
    store.importXML("<cfg><document name=\"note\"><volume>7</volume></document></cfg>");
    ZorDocument* const note = store.getDocument("note");
    EXPECT_EQ(note->getRootNode(), store.getSchema("DefaultSchema")->getRootNode());
    EXPECT_EQ(valuesAt(note, "volume"), "7");
}
