// Listings of a collection's objects.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "tests/collection/objects.h"
#include "tests/support/incidents.h"
#include "zor/collection.h"

namespace {

class CollectionListing : public testing::Test {
protected:
    IncidentLog log;
    ZorCollection store{"cfg"};
};

// Many names, so that some share a bucket of the map.
std::vector<std::string> manyNames() {
    std::vector<std::string> names;
    names.reserve(300);
    for (int i = 0; i < 300; ++i) names.push_back("name" + std::to_string(i * 7919 % 1009));
    return names;
}

unsigned bucketOf(std::string const& name) {
    std::uint32_t hash = 0;
    for (char const c : name) hash = hash * 16777619U ^ static_cast<unsigned char>(c);
    return hash & 255U;
}

// The names in the order of the buckets, and of making within a bucket, a blank between two.
std::string inMapOrder(std::vector<std::string> names) {
    std::stable_sort(names.begin(), names.end(), [](std::string const& a, std::string const& b) {
        return bucketOf(a) < bucketOf(b);
    });
    std::string text;
    for (std::string const& name : names) text += (text.empty() ? "" : " ") + name;
    return text;
}

template <typename T>
std::string namesOf(std::list<T*> const& objects) {
    std::string text;
    for (T const* const object : objects) {
        if (!text.empty()) text += ' ';
        text += object ? object->getName() : "(null)";
    }
    return text;
}

} // namespace

TEST_F(CollectionListing, SchemasComeInMapOrder) {
    std::vector<std::string> names = manyNames();
    for (std::string const& name : names) store.makeSchema(name.c_str());
    names.insert(names.begin(), "DefaultSchema"); // made first of all
    EXPECT_EQ(schemaNames(store), inMapOrder(names));
    std::list<ZorSchema*> listed;
    store.getSchemas(listed);
    EXPECT_EQ(namesOf(listed), inMapOrder(names));
}

TEST_F(CollectionListing, DocumentsComeInMapOrder) {
    std::vector<std::string> const names = manyNames();
    for (std::string const& name : names) store.makeDocument("DefaultSchema", name.c_str());
    EXPECT_EQ(documentNames(store), inMapOrder(names));
    std::list<ZorDocument*> listed;
    store.getDocuments(listed);
    EXPECT_EQ(namesOf(listed), inMapOrder(names));
}

TEST_F(CollectionListing, CollectionsComeInMapOrder) {
    std::vector<std::string> const names = manyNames();
    for (std::string const& name : names) store.makeCollection(name.c_str());
    EXPECT_EQ(collectionNames(store), inMapOrder(names));
    std::list<ZorCollection*> listed;
    store.getCollections(listed);
    EXPECT_EQ(namesOf(listed), inMapOrder(names));
}

TEST_F(CollectionListing, EmptyMapsAreNullLists) {
    store.deleteAllSchemas();
    EXPECT_EQ(store.getSchemas(), nullptr);
    EXPECT_EQ(store.getDocuments(), nullptr);
    EXPECT_EQ(store.getCollections(), nullptr);
}

// The caller's list is not cleared first.
TEST_F(CollectionListing, AppendsBehindWhatTheCallersListHolds) {
    ZorCollection other("other");
    ZorDocument* const first = other.makeDocument("DefaultSchema", "first");
    ZorCollection* const outside = other.makeCollection("outside");
    ZorDocument* const note = store.makeDocument("DefaultSchema", "note");
    ZorCollection* const site = store.makeCollection("site");

    std::list<ZorSchema*> schemas{other.getSchema("DefaultSchema")};
    store.getSchemas(schemas);
    EXPECT_EQ(schemas, (std::list<ZorSchema*>{other.getSchema("DefaultSchema"),
                                              store.getSchema("DefaultSchema")}));
    std::list<ZorDocument*> documents{first};
    store.getDocuments(documents);
    EXPECT_EQ(documents, (std::list<ZorDocument*>{first, note}));
    std::list<ZorCollection*> collections{outside};
    store.getCollections(collections);
    EXPECT_EQ(collections, (std::list<ZorCollection*>{outside, site}));
}

TEST_F(CollectionListing, AppendsNothingWhenThereIsNothing) {
    store.deleteAllSchemas();
    std::list<ZorSchema*> schemas;
    std::list<ZorDocument*> documents;
    std::list<ZorCollection*> collections;
    store.getSchemas(schemas);
    store.getDocuments(documents);
    store.getCollections(collections);
    EXPECT_TRUE(schemas.empty());
    EXPECT_TRUE(documents.empty());
    EXPECT_TRUE(collections.empty());
}

// The list is the caller's, the objects stay the collection's.
TEST_F(CollectionListing, ListsOutliveWhatTheyList) {
    ZorDocument* const note = store.makeDocument("DefaultSchema", "note");
    ZorListNode* const list = store.getDocuments();
    EXPECT_EQ(zor_listGetValue(list), note);
    store.deleteDocument("note");
    EXPECT_EQ(zor_listNextNode(list), nullptr);
    zor_listDelete(list);
    EXPECT_EQ(store.getDocuments(), nullptr);
}

TEST_F(CollectionListing, SkipsNullValues) {
    store.setSchema(nullptr, "nothing");
    store.setDocument(nullptr, "nothing");
    store.makeDocument("DefaultSchema", "note");
    EXPECT_EQ(schemaNames(store), "DefaultSchema");
    EXPECT_EQ(documentNames(store), "note");
    std::list<ZorSchema*> schemas;
    store.getSchemas(schemas);
    EXPECT_EQ(namesOf(schemas), "DefaultSchema");
    std::list<ZorDocument*> documents;
    store.getDocuments(documents);
    EXPECT_EQ(namesOf(documents), "note");
    store.deleteDocument("note");
    EXPECT_EQ(store.getDocuments(), nullptr);
}

TEST_F(CollectionListing, ListsObjectsUnderOtherKeysByTheirOwnNames) {
    store.setSchema(new ZorSchema(&store, "own"), "key");
    EXPECT_EQ(store.getSchema("own"), nullptr);
    EXPECT_STREQ(store.getSchema("key")->getName(), "own");
    std::list<ZorSchema*> listed;
    store.getSchemas(listed);
    EXPECT_EQ(namesOf(listed), bucketOf("key") < bucketOf("DefaultSchema") ? "own DefaultSchema"
                                                                           : "DefaultSchema own");
}
