// The types that a schema knows.

#include <gtest/gtest.h>

#include <string>

#include "tests/support/incidents.h"
#include "tests/support/text.h"
#include "zor/collection.h"

namespace {

class SchemaTypes : public testing::Test {
protected:
    IncidentLog log;
};

ZorDataType* derived(char const* name) {
    return zor_derivedTypeMake(name, nullptr, nullptr, nullptr, nullptr, nullptr,
                               ZorBuiltIn::getDataType("string"), nullptr);
}

class LoudCollection : public ZorCollection {
public:
    LoudCollection() : ZorCollection("loud") {}
    ZorDataType* getDataType(void const* typeName) override {
        asked += static_cast<char const*>(typeName) + std::string(" ");
        return ZorCollection::getDataType(typeName);
    }
    std::string asked;
};

} // namespace

// A schema's own types come first, then the collection's, then the built-in ones.
TEST_F(SchemaTypes, LooksUpTypesFromTheInsideOut) {
    ZorCollection store("store");
    ZorSchema schema(&store, "phone");
    EXPECT_EQ(schema.getDataType("int"), ZorBuiltIn::getDataType("int"));
    EXPECT_EQ(schema.getDataType("level"), nullptr);

    ZorDataType* const sharedInt = derived("int");
    ZorDataType* const sharedLevel = derived("level");
    store.addDataType(sharedInt);
    store.addDataType(sharedLevel);
    EXPECT_EQ(schema.getDataType("int"), sharedInt);
    EXPECT_EQ(schema.getDataType("level"), sharedLevel);
    EXPECT_EQ(schema.getDataType("uint"), ZorBuiltIn::getDataType("uint"));

    ZorDataType* const ownInt = derived("int");
    schema.addDataType(ownInt);
    EXPECT_EQ(schema.getDataType("int"), ownInt);
    EXPECT_EQ(schema.getDataType(static_cast<ZorString*>(Text("int"))), ownInt);
    EXPECT_EQ(schema.getDataType("level"), sharedLevel);
    EXPECT_EQ(schema.getDataType("Level"), nullptr);
}

TEST_F(SchemaTypes, AsksItsCollectionThroughTheInterface) {
    LoudCollection store;
    ZorSchema schema(&store, "phone");
    store.asked.clear();
    schema.addDataType(derived("own"));
    schema.getDataType("own");
    schema.getDataType("int");
    schema.getDataType("nothing");
    EXPECT_EQ(store.asked, "int nothing ");
}

TEST_F(SchemaTypes, WithoutCollectionItKnowsItsOwnAndTheBuiltInTypes) {
    ZorSchema schema(nullptr, "phone");
    ZorDataType* const own = derived("own");
    schema.addDataType(own);
    EXPECT_EQ(schema.getDataType("own"), own);
    EXPECT_EQ(schema.getDataType("int"), ZorBuiltIn::getDataType("int"));
    EXPECT_EQ(schema.getDataType("level"), nullptr);
    EXPECT_EQ(schema.getDataType(nullptr), nullptr);
}

TEST_F(SchemaTypes, IsASetOfTypes) {
    ZorSchema schema(nullptr, "phone");
    ZorDataTypeCollection& set = schema;
    EXPECT_EQ(set.getDataType("int"), ZorBuiltIn::getDataType("int"));
    ZorDataType* const own = derived("own");
    EXPECT_EQ(set.addDataType(own), 1);
    ZorDataType* const twin = derived("own");
    EXPECT_EQ(set.addDataType(twin), 0);
    delete twin;
    EXPECT_EQ(set.getDataType("own"), own);
}
