// Collections: what they are born with, making objects and finding them.

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

#include "tests/collection/objects.h"
#include "tests/support/incidents.h"
#include "zor/collection.h"

namespace {

class Collection : public testing::Test {
protected:
    IncidentLog log;
    ZorCollection store{"cfg"};
};

class EmptyDictionary : public ZorDictionary {
public:
    std::string getSchemaName(std::string const&) override { return std::string(); }
    std::string getSchemaDefinition(std::string const&) override { return std::string(); }
};

template <typename First, typename Second>
bool isBefore(First const& a, Second const& b) {
    return reinterpret_cast<char const*>(&a) < reinterpret_cast<char const*>(&b);
}

} // namespace

TEST_F(Collection, IsBornWithTheDefaultSchemaOnly) {
    EXPECT_EQ(schemaNames(store), "DefaultSchema");
    EXPECT_EQ(store.getDocuments(), nullptr);
    EXPECT_EQ(store.getCollections(), nullptr);
    EXPECT_EQ(store.getDictionary(), nullptr);
    EXPECT_EQ(store.getDataTypes(), nullptr);
    EXPECT_EQ(store.parsers.size(), 0U);
    EXPECT_EQ(store.parseDepth, 0);
}

// Its root has one data node "itemValue" of type "string", occurrences 1, default empty.
TEST_F(Collection, DefaultSchemaHoldsOneText) {
    ZorSchema* const schema = store.getSchema("DefaultSchema");
    ASSERT_NE(schema, nullptr);
    EXPECT_EQ(store.defaultSchema, schema);
    EXPECT_EQ(schema->collection, &store);
    EXPECT_STREQ(schema->getName(), "DefaultSchema");
    ZorSchemaNode const* const item = schema->getRootNode()->getFirstChildNode();
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->getNextNode(), nullptr);
    EXPECT_TRUE(item->isDataNode());
    EXPECT_STREQ(item->getName(), "itemValue");
    EXPECT_EQ(item->getDataType(), ZorBuiltIn::getDataType("string"));
    EXPECT_EQ(item->getOccurrences(), 1);
    EXPECT_EQ(taken(item->getDefaultValue()), "");
    EXPECT_EQ(schema->documentCount(), 0);
}

TEST_F(Collection, MakesDocumentsWithoutASchemaOfTheCallers) {
    ZorDocument* const note = store.makeDocument("DefaultSchema", "note");
    ASSERT_NE(note, nullptr);
    EXPECT_EQ(valuesAt(note, "itemValue"), "");
    EXPECT_EQ(setAt(note, "itemValue", "later"), 1);
    EXPECT_NE(store.makeDocument("DefaultSchema", "another"), nullptr);
    EXPECT_EQ(valuesAt(note, "itemValue"), "later");
    EXPECT_EQ(store.getSchema("DefaultSchema")->documentCount(), 2);
}

// A ZorString name is shared, a text is copied.
TEST(CollectionName, IsOneReferenceToTheString) {
    Text const name("deskphone");
    ZorString const* const string = name;
    {
        ZorCollection const store(name);
        EXPECT_EQ(store.name, string);
        EXPECT_EQ(string->refCount, 2);
        EXPECT_STREQ(store.getName(), "deskphone");
    }
    EXPECT_EQ(string->refCount, 1);
}

TEST(CollectionName, MayBeTextPermanentOrNothing) {
    char name[] = "cfg";
    ZorCollection const copied(name);
    name[0] = 'x';
    EXPECT_STREQ(copied.getName(), "cfg");
    ZorCollection const permanent("LineKeySettings");
    EXPECT_EQ(permanent.name, &ZorString::stdZorStrings[10]);
    ZorCollection const unnamed(nullptr);
    EXPECT_STREQ(unnamed.getName(), "");
}

// Plain field access: no lock is taken, so holding it changes nothing.
TEST(CollectionDictionary, IsWhatTheHostGave) {
    EmptyDictionary first;
    EmptyDictionary second;
    ZorCollection store("cfg", &first);
    EXPECT_EQ(store.dictionary, &first);
    store.lock.take(-1);
    EXPECT_EQ(store.getDictionary(), &first);
    store.setDictionary(&second);
    EXPECT_EQ(store.getDictionary(), &second);
    store.setDictionary(nullptr);
    EXPECT_EQ(store.getDictionary(), nullptr);
    store.lock.give();
    EXPECT_EQ(schemaNames(store), "DefaultSchema");
}

TEST_F(Collection, AddsAndFindsTypesAsItsBaseDoes) {
    static_assert(std::is_base_of<ZorDataTypeCollection, ZorCollection>::value, "");
    ZorDataTypeCollection& types = store;
    ZorDataType* const mode = zor_choiceMake("mode");
    EXPECT_EQ(types.addDataType(mode), 1);
    EXPECT_EQ(types.addDataType(mode), 0);
    EXPECT_EQ(types.getDataType("mode"), mode);
    EXPECT_EQ(types.getDataType("int"), nullptr); // built-in types are the schemas' business
}

// A schema falls back on its collection's types, and only then on the built-in ones.
TEST_F(Collection, SharesItsTypesWithItsSchemas) {
    ZorDataType* const mode = zor_choiceMake("mode");
    ZorDataType* const url = zor_choiceMake("url");
    store.addDataType(mode);
    store.addDataType(url);
    ZorSchema* const schema = store.makeSchema("phone");
    EXPECT_EQ(schema->getDataType("mode"), mode);
    EXPECT_EQ(schema->getDataType("url"), url);
    EXPECT_EQ(schema->getDataType("int"), ZorBuiltIn::getDataType("int"));
}

TEST_F(Collection, MakesAndFindsSchemas) {
    ZorSchema* const phone = store.makeSchema("phone");
    Text const name("directory");
    ZorSchema* const directory = store.makeSchema(name);
    EXPECT_EQ(store.getSchema("phone"), phone);
    EXPECT_EQ(store.getSchema("directory"), directory);
    EXPECT_EQ(store.getSchema(name), directory);
    EXPECT_EQ(directory->getRootNode()->name, name); // shared, not copied
    EXPECT_EQ(phone->collection, &store);
    EXPECT_STREQ(phone->getName(), "phone");
    EXPECT_EQ(phone->getRootNode()->getFirstChildNode(), nullptr);
    EXPECT_EQ(store.getSchema("Phone"), nullptr);
    EXPECT_EQ(store.getSchema("phon"), nullptr);
}

TEST_F(Collection, RefusesASecondSchemaOfAName) {
    ZorSchema* const schema = store.makeSchema("phone");
    ZorSchemaNode const* const node = schema->makeBranchNode(schema->getRootNode(), "net", 1);
    EXPECT_EQ(store.makeSchema("phone"), nullptr);
    EXPECT_EQ(log.take(), "3 ZorCollection::makeSchema{Schema (phone) already exists}\n");
    Text const name("DefaultSchema");
    EXPECT_EQ(store.makeSchema(name), nullptr);
    EXPECT_EQ(log.take(), "3 ZorCollection::makeSchema{Schema (DefaultSchema) already exists}\n");
    EXPECT_EQ(store.getSchema("phone"), schema);
    EXPECT_EQ(schema->getRootNode()->getFirstChildNode(), node);
}

TEST_F(Collection, MakesAndFindsDocuments) {
    ZorSchema* const schema = store.makeSchema("phone");
    ZorDocument* const first = store.makeDocument("phone", "phone1");
    Text const schemaName("phone");
    Text const documentName("phone2");
    ZorDocument* const second = store.makeDocument(schemaName, documentName);
    EXPECT_EQ(store.getDocument("phone1"), first);
    EXPECT_EQ(store.getDocument("phone2"), second);
    EXPECT_EQ(store.getDocument(documentName), second);
    EXPECT_STREQ(first->getName(), "phone1");
    EXPECT_EQ(second->name, documentName); // shared, not copied
    EXPECT_EQ(second->getRootNode(), schema->getRootNode());
    EXPECT_EQ(schema->documentCount(), 2);
    EXPECT_EQ(store.getDocument("phone"), nullptr);
    EXPECT_EQ(store.getDocument("PHONE1"), nullptr);
}

TEST_F(Collection, RefusesADocumentOfAnUnknownSchema) {
    EXPECT_EQ(store.makeDocument("phone", "phone1"), nullptr);
    EXPECT_EQ(log.take(), "3 ZorCollection::makeDocument{Schema (phone) does not exist}\n");
    EXPECT_EQ(store.getDocument("phone1"), nullptr);
}

TEST_F(Collection, RefusesASecondDocumentOfAName) {
    store.makeSchema("phone");
    ZorDocument* const document = store.makeDocument("DefaultSchema", "note");
    Text const name("note");
    EXPECT_EQ(store.makeDocument("DefaultSchema", "note"), nullptr);
    EXPECT_EQ(store.makeDocument("phone", name), nullptr);
    EXPECT_EQ(log.take(), "3 ZorCollection::makeDocument{Document (note) already exists}\n"
                          "3 ZorCollection::makeDocument{Document (note) already exists}\n");
    EXPECT_EQ(store.getDocument("note"), document);
    EXPECT_EQ(store.getSchema("phone")->documentCount(), 0);
}

TEST_F(Collection, LooksForTheSchemaOfADocumentFirst) {
    store.makeDocument("DefaultSchema", "note");
    Text const schemaName("phone");
    EXPECT_EQ(store.makeDocument(schemaName, "note"), nullptr);
    EXPECT_EQ(log.take(), "3 ZorCollection::makeDocument{Schema (phone) does not exist}\n");
}

// A schema with documents takes no new nodes.
TEST_F(Collection, DocumentsFreezeTheirSchema) {
    ZorSchema* const schema = store.makeSchema("phone");
    store.makeDocument("phone", "phone1");
    EXPECT_EQ(schema->makeBranchNode(schema->getRootNode(), "net", 1), nullptr);
    EXPECT_EQ(log.take(),
              "3 zor_branchNodeMake(net): Cannot modify schema while documents exist\n");
    store.deleteDocument("phone1");
    EXPECT_NE(schema->makeBranchNode(schema->getRootNode(), "net", 1), nullptr);
}

TEST_F(Collection, MakesAndFindsCollections) {
    EmptyDictionary dictionary;
    store.setDictionary(&dictionary);
    ZorCollection* const site = store.makeCollection("site");
    Text const name("hall");
    ZorCollection* const hall = store.makeCollection(name);
    EXPECT_EQ(store.getCollection("site"), site);
    EXPECT_EQ(store.getCollection(name), hall);
    EXPECT_STREQ(site->getName(), "site");
    EXPECT_EQ(hall->name, name); // shared, not copied
    EXPECT_EQ(schemaNames(*site), "DefaultSchema");
    EXPECT_NE(site->getSchema("DefaultSchema"), store.getSchema("DefaultSchema"));
    EXPECT_EQ(site->getDictionary(), nullptr);
    EXPECT_EQ(store.getCollection("cfg"), nullptr);
    EXPECT_EQ(site->getCollection("hall"), nullptr);
}

// Unlike the others, this factory still builds: the new one replaces the old one in the map, which
// is neither deleted nor returned.
TEST_F(Collection, MakingACollectionTwiceReplacesTheFirst) {
    ZorCollection* const first = store.makeCollection("site");
    first->makeDocument("DefaultSchema", "note");
    Text const name("site");
    ZorCollection* const second = store.makeCollection(name);
    EXPECT_EQ(log.take(), "3 ZorCollection::makeCollection{Collection (site) already exists}\n");
    ASSERT_NE(second, nullptr);
    EXPECT_NE(second, first);
    EXPECT_EQ(store.getCollection("site"), second);
    EXPECT_EQ(second->getDocuments(), nullptr);
    EXPECT_EQ(collectionNames(store), "site");
    EXPECT_EQ(documentNames(*first), "note");
    delete first; // the caller's, who kept a pointer to it
    EXPECT_EQ(store.getCollection("site"), second);
}

TEST_F(Collection, KeepsTheKindsOfNamesApart) {
    ZorSchema* const schema = store.makeSchema("x");
    ZorDocument* const document = store.makeDocument("x", "x");
    ZorCollection* const collection = store.makeCollection("x");
    EXPECT_EQ(store.getSchema("x"), schema);
    EXPECT_EQ(store.getDocument("x"), document);
    EXPECT_EQ(store.getCollection("x"), collection);
}

// The lock is held: taking it would end the test.
TEST_F(Collection, FindsNothingUnderANullNameWithoutTouchingTheLock) {
    store.makeDocument("DefaultSchema", "");
    store.makeCollection("");
    store.lock.take(-1);
    EXPECT_EQ(store.getDocument(nullptr), nullptr);
    EXPECT_EQ(store.getCollection(nullptr), nullptr);
    store.lock.give();
    EXPECT_EQ(store.getSchema(nullptr), nullptr);
}

// A null name counts as the empty one.
TEST_F(Collection, TakesNullNamesInFactories) {
    ZorSchema* const schema = store.makeSchema(nullptr);
    ASSERT_NE(schema, nullptr);
    EXPECT_EQ(store.getSchema(nullptr), schema);
    EXPECT_EQ(store.getSchema(""), schema);
    EXPECT_EQ(store.makeSchema(nullptr), nullptr);
    EXPECT_EQ(log.take(), "3 ZorCollection::makeSchema{Schema () already exists}\n");
    ZorDocument* const document = store.makeDocument(nullptr, nullptr);
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(store.getDocument(""), document);
    EXPECT_EQ(store.makeDocument(nullptr, nullptr), nullptr);
    EXPECT_EQ(log.take(), "3 ZorCollection::makeDocument{Document () already exists}\n");
    std::unique_ptr<ZorCollection> const first(store.makeCollection(nullptr));
    EXPECT_NE(store.makeCollection(nullptr), first.get());
    EXPECT_EQ(log.take(), "3 ZorCollection::makeCollection{Collection () already exists}\n");
}

TEST_F(Collection, TakesNullNamesElsewhere) {
    store.setSchema(new ZorSchema(&store, "phone"), nullptr);
    EXPECT_STREQ(store.getSchema("")->getName(), "phone");
    store.copySchema(nullptr, store.getSchema("DefaultSchema"));
    EXPECT_STREQ(store.getSchema("")->getName(), "DefaultSchema");
    ZorDocument* const note = store.makeDocument("DefaultSchema", "note");
    store.copyDocument(nullptr, note);
    EXPECT_EQ(taken(store.getDocument("")->getStringNodeValue(note->getRootNode()->firstChild, 0)),
              "");
    store.deleteDocument(nullptr);
    EXPECT_EQ(store.getDocument(""), nullptr);
    store.deleteSchema(nullptr);
    EXPECT_EQ(store.getSchema(""), nullptr);
    store.makeCollection("");
    store.deleteCollection(nullptr);
    EXPECT_EQ(store.getCollection(""), nullptr);
    EXPECT_EQ(store.exportSchema(nullptr), "");
    EXPECT_EQ(store.exportDocument(nullptr), "");
    EXPECT_EQ(store.exportCollection(nullptr), "");
    store.importFromFile(nullptr);
    EXPECT_EQ(log.take(), "3 File: \"\" not found.\n");
}

TEST_F(Collection, NullNamesOfMissingSchemasAreReportedAsEmpty) {
    EXPECT_EQ(store.makeDocument(nullptr, "note"), nullptr);
    EXPECT_EQ(log.take(), "3 ZorCollection::makeDocument{Schema () does not exist}\n");
}

TEST_F(Collection, FieldsStandInTheDeclaredOrder) {
    EXPECT_TRUE(isBefore(store.types, store.lock)); // the base part comes first
    EXPECT_TRUE(isBefore(store.lock, store.dictionary));
    EXPECT_TRUE(isBefore(store.dictionary, store.defaultSchema));
    EXPECT_TRUE(isBefore(store.defaultSchema, store.schemas));
    EXPECT_TRUE(isBefore(store.schemas, store.documents));
    EXPECT_TRUE(isBefore(store.documents, store.collections));
    EXPECT_TRUE(isBefore(store.collections, store.name));
    EXPECT_TRUE(isBefore(store.name, store.parsers));
    EXPECT_TRUE(isBefore(store.parsers, store.parseDepth));
    static_assert(std::is_same<decltype(ZorCollection::refCount), int>::value, "");
    static_assert(sizeof(ZorCollection::refCount) == 4 && sizeof(store.parseDepth) == 4, "");
    static_assert(!std::is_copy_constructible<ZorCollection>::value, "it owns what it holds");
}
