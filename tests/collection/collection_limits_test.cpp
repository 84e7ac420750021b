// How large a collection's documents may become: up to 32,767 documents of a schema, and up to
// 16,777,216 values in one document.

#include <gtest/gtest.h>

#include "tests/collection/objects.h"
#include "tests/support/incidents.h"
#include "zor/collection.h"

namespace {

constexpr short kMaxDocuments = 32767;

class CollectionLimits : public testing::Test {
protected:
    // A schema of that many values: `branches` times `items`, and perhaps one more.
    ZorSchema* schemaOf(char const* name, short branches, short items, bool oneMore) {
        ZorSchema* const schema = store.makeSchema(name);
        ZorSchemaNode* const root = schema->getRootNode();
        ZorSchemaNode* const branch = schema->makeBranchNode(root, "branch", branches);
        schema->makeDataNode(branch, "item", items, schema->getDataType("int"), nullptr);
        if (oneMore) schema->makeDataNode(root, "last", 1, schema->getDataType("int"), nullptr);
        return schema;
    }

    IncidentLog log;
    ZorCollection store{"cfg"};
};

} // namespace

TEST_F(CollectionLimits, ASchemaHasUpTo32767Documents) {
    ZorSchema* const schema = store.makeSchema("phone");
    for (int i = 1; i <= kMaxDocuments; ++i) {
        ASSERT_NE(store.makeDocument("phone", std::to_string(i).c_str()), nullptr) << i;
    }
    EXPECT_EQ(schema->documentCount(), kMaxDocuments);

    EXPECT_EQ(store.makeDocument("phone", "32768"), nullptr);
    EXPECT_EQ(log.take(), "3 ZorCollection::makeDocument{Schema (phone) has too many documents}\n");
    EXPECT_EQ(schema->documentCount(), kMaxDocuments);
    EXPECT_EQ(store.getDocument("32768"), nullptr);
    EXPECT_NE(store.makeDocument("DefaultSchema", "32768"), nullptr); // another schema

    store.deleteDocument("1");
    EXPECT_NE(store.makeDocument("phone", "1"), nullptr);
}

// The names are checked before the number of documents.
TEST_F(CollectionLimits, RefusesATakenNameBeforeTheNumberOfDocuments) {
    ZorSchema* const schema = store.makeSchema("phone");
    store.makeDocument("DefaultSchema", "note");
    schema->getRootNode()->documentCount = kMaxDocuments;
    EXPECT_EQ(store.makeDocument("phone", "note"), nullptr);
    EXPECT_EQ(log.take(), "3 ZorCollection::makeDocument{Document (note) already exists}\n");
    schema->getRootNode()->documentCount = 0;
}

TEST_F(CollectionLimits, ImportReportsTooManyDocuments) {
    ZorSchema* const schema = store.getSchema("DefaultSchema");
    schema->getRootNode()->documentCount = kMaxDocuments;
    store.importXML("<cfg><document name=\"note\"></document></cfg>");
    EXPECT_EQ(log.take(),
              "3 ZorCollection::makeDocument{Schema (DefaultSchema) has too many documents}\n"
              "3 {zor_XMLParse: line 1, column 5 }problem resolving document and schema name\n");
    EXPECT_EQ(store.getDocuments(), nullptr);
    schema->getRootNode()->documentCount = 0;
}

TEST_F(CollectionLimits, ADocumentCopiedBeyondTheNumberChangesNothing) {
    ZorSchema* const schema = store.makeSchema("phone");
    ZorDocument* const source = store.makeDocument("phone", "phone1");
    schema->getRootNode()->documentCount = kMaxDocuments;
    store.copyDocument("phone2", source);
    EXPECT_EQ(log.take(), "3 ZorCollection::copyDocument{Schema (phone) has too many documents}\n");
    EXPECT_EQ(store.getDocument("phone2"), nullptr);
    EXPECT_EQ(store.getDocument("phone1"), source);
    schema->getRootNode()->documentCount = 1;
}

// 4096 x 4096 values.
TEST_F(CollectionLimits, ADocumentHasUpTo16777216Values) {
    ZorSchema* const schema = schemaOf("large", 4096, 4096, false);
    ASSERT_EQ(schema->getRootNode()->countRequiredValueNodes(), 16777216);
    ZorDocument* const document = store.makeDocument("large", "document");
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(setAt(document, "branch[4096]/item[4096]", "7"), 1);
    EXPECT_EQ(document->values[16777215].value.intValue, 7);
}

TEST_F(CollectionLimits, RefusesADocumentOf16777217Values) {
    ZorSchema* const schema = schemaOf("large", 4096, 4096, true);
    ASSERT_EQ(schema->getRootNode()->countRequiredValueNodes(), 16777217);
    EXPECT_EQ(store.makeDocument("large", "document"), nullptr);
    EXPECT_EQ(log.take(), "3 ZorCollection::makeDocument{Schema (large) has too many values}\n");
    EXPECT_EQ(store.getDocument("document"), nullptr);
    EXPECT_EQ(schema->documentCount(), 0);
}

// Products that no number of cells can hold.
TEST_F(CollectionLimits, RefusesADocumentOfCountlessValues) {
    ZorSchema* const schema = store.makeSchema("endless");
    ZorSchemaNode* parent = schema->getRootNode();
    for (int depth = 0; depth < 12; ++depth) {
        parent = schema->makeBranchNode(parent, "branch", 32767);
    }
    schema->makeDataNode(parent, "item", 32767, schema->getDataType("int"), nullptr);
    EXPECT_EQ(store.makeDocument("endless", "document"), nullptr);
    EXPECT_EQ(log.take(), "3 ZorCollection::makeDocument{Schema (endless) has too many values}\n");
}

TEST_F(CollectionLimits, RefusesTooManyDocumentsBeforeTooManyValues) {
    ZorSchema* const schema = schemaOf("large", 4096, 4096, true);
    schema->getRootNode()->documentCount = kMaxDocuments;
    EXPECT_EQ(store.makeDocument("large", "document"), nullptr);
    EXPECT_EQ(log.take(), "3 ZorCollection::makeDocument{Schema (large) has too many documents}\n");
    schema->getRootNode()->documentCount = 0;
}

// A schema without values makes documents, too.
TEST_F(CollectionLimits, ADocumentMayHaveNoValues) {
    ZorSchema* const schema = schemaOf("empty", 0, 5, false);
    EXPECT_EQ(schema->getRootNode()->countRequiredValueNodes(), 0);
    EXPECT_NE(store.makeDocument("empty", "document"), nullptr);
    EXPECT_NE(store.makeDocument("DefaultSchema", "note"), nullptr);
}
