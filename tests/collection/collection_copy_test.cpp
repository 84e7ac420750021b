// Copies of documents and schemas into a collection.

#include <gtest/gtest.h>

#include "tests/collection/objects.h"
#include "tests/support/incidents.h"
#include "tests/types/call_log.h"
#include "zor/collection.h"

namespace {

// Adds a node; its parent is named by path, "" being the root.
ZorSchemaNode* parentOf(ZorSchema* schema, char const* path) {
    return *path ? nodeAt(schema, path) : schema->getRootNode();
}

void addItem(ZorSchema* schema, char const* parent, char const* name, short occurrences,
             char const* type, char const* defaultText = nullptr) {
    schema->makeDataNode(parentOf(schema, parent), name, occurrences, schema->getDataType(type),
                         defaultText);
}

void addBranch(ZorSchema* schema, char const* parent, char const* name, short occurrences) {
    schema->makeBranchNode(parentOf(schema, parent), name, occurrences);
}

// A small telephone: values on two levels, of several kinds.
void describePhone(ZorSchema* schema) {
    addItem(schema, "", "volume", 1, "int", "5");
    addBranch(schema, "", "key", 2);
    addItem(schema, "/key", "label", 2, "string", "");
    addItem(schema, "/key", "gain", 1, "float");
}

class CollectionCopy : public testing::Test {
protected:
    CollectionCopy() { describePhone(phone); }

    std::string allOf(ZorDocument* document) {
        return valuesAt(document, "volume") + ' ' + valuesAt(document, "key/label") + ' ' +
               valuesAt(document, "key/gain");
    }

    IncidentLog log;
    ZorCollection store{"cfg"};
    ZorSchema* const phone = store.makeSchema("phone");
};

using CopyDocument = CollectionCopy;
using CopySchema = CollectionCopy;

} // namespace

TEST_F(CopyDocument, KeepsValuesAndChangedMarks) {
    ZorDocument* const source = store.makeDocument("phone", "phone1");
    setAt(source, "volume", "7");
    setAt(source, "volume", nullptr);
    setAt(source, "key[2]/label[1]", "Reception");
    setAt(source, "key[1]/gain", "0.5");
    store.copyDocument("phone2", source);
    ZorDocument* const copy = store.getDocument("phone2");
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(copy, source);
    EXPECT_EQ(allOf(copy), "(null) ||Reception| 0.5|(null)");
    EXPECT_EQ(allOf(source), allOf(copy));
    ZorSchemaNode* const label = nodeAt(phone, "key/label");
    EXPECT_TRUE(copy->wasChanged(label, 2));
    EXPECT_FALSE(copy->wasChanged(label, 3));
    EXPECT_TRUE(copy->wasChanged(nodeAt(phone, "volume"), 0));
    EXPECT_EQ(phone->documentCount(), 2);
}

TEST_F(CopyDocument, IsIndependentOfItsSource) {
    ZorDocument* const source = store.makeDocument("phone", "phone1");
    setAt(source, "key/*", "1");
    store.copyDocument("phone2", source);
    ZorDocument* const copy = store.getDocument("phone2");
    setAt(copy, "key/*", "2");
    EXPECT_EQ(allOf(source), "5 1|1|1|1 1|1");
    EXPECT_EQ(allOf(copy), "5 2|2|2|2 2|2");
    store.deleteDocument("phone1");
    EXPECT_EQ(allOf(copy), "5 2|2|2|2 2|2");
}

// The key is the name given, the copy's own name is its source's.
TEST_F(CopyDocument, KeepsTheNameOfItsSource) {
    store.copyDocument("phone2", store.makeDocument("phone", "phone1"));
    EXPECT_STREQ(store.getDocument("phone2")->getName(), "phone1");
    EXPECT_EQ(store.exportDocument("phone2"),
              "<cfg><document schema=\"phone\" name=\"phone1\"></document></cfg>");
}

TEST_F(CopyDocument, OntoItsSourcesNameCopiesFirst) {
    ZorDocument* const source = store.makeDocument("phone", "phone1");
    setAt(source, "volume", "9");
    store.copyDocument(source->getName(), source);
    EXPECT_EQ(documentNames(store), "phone1");
    EXPECT_EQ(valuesAt(store.getDocument("phone1"), "volume"), "9");
    EXPECT_TRUE(store.getDocument("phone1")->wasChanged(nodeAt(phone, "volume"), 0));
    EXPECT_EQ(phone->documentCount(), 1);
}

TEST_F(CopyDocument, ReplacesAndDeletesWhatWasThere) {
    store.makeDocument("DefaultSchema", "phone2");
    ZorDocument* const source = store.makeDocument("phone", "phone1");
    store.copyDocument("phone2", source);
    EXPECT_EQ(store.getDocument("phone2")->getRootNode(), phone->getRootNode());
    EXPECT_EQ(store.getSchema("DefaultSchema")->documentCount(), 0);
    EXPECT_EQ(phone->documentCount(), 2);
}

// The schema is this collection's of that name.
TEST_F(CopyDocument, ComesFromAnyCollection) {
    ZorCollection other("other");
    describePhone(other.makeSchema("phone"));
    ZorDocument* const source = other.makeDocument("phone", "phone1");
    setAt(source, "volume", "9");
    store.copyDocument("phone1", source);
    ZorDocument* const copy = store.getDocument("phone1");
    EXPECT_EQ(copy->getRootNode(), phone->getRootNode());
    other.deleteAllSchemas();
    EXPECT_EQ(allOf(copy), "9 ||| (null)|(null)");
}

TEST_F(CopyDocument, WithoutItsSchemaChangesNothing) {
    ZorCollection other("other");
    describePhone(other.makeSchema("tablet"));
    ZorDocument* const there = store.makeDocument("phone", "phone1");
    store.copyDocument("phone1", other.makeDocument("tablet", "tablet1"));
    EXPECT_EQ(log.take(), "3 ZorCollection::copyDocument{Schema (tablet) does not exist}\n");
    EXPECT_EQ(store.getDocument("phone1"), there);
    EXPECT_EQ(documentNames(store), "phone1");
}

// Defaults are no part of the layout: the values come from the source.
TEST_F(CopyDocument, TakesASchemaWithOtherDefaults) {
    ZorCollection other("other");
    ZorSchema* const schema = other.makeSchema("phone");
    addItem(schema, "", "volume", 1, "int");
    addBranch(schema, "", "key", 2);
    addItem(schema, "/key", "label", 2, "string", "none");
    addItem(schema, "/key", "gain", 1, "float", "1.5");
    store.copyDocument("phone1", other.makeDocument("phone", "phone1"));
    EXPECT_EQ(allOf(store.getDocument("phone1")), "(null) none|none|none|none 1.5|1.5");
}

TEST_F(CopyDocument, OntoADifferentLayoutChangesNothing) {
    struct {
        char const* difference;
        void (*describe)(ZorSchema* schema);
    } const cases[] = {
        {"no node", [](ZorSchema*) {}},
        {"a node less",
         [](ZorSchema* s) {
             addItem(s, "", "volume", 1, "int");
             addBranch(s, "", "key", 2);
             addItem(s, "/key", "label", 2, "string");
         }},
        {"a node more",
         [](ZorSchema* s) {
             describePhone(s);
             addItem(s, "", "mode", 1, "string");
         }},
        {"an empty branch more",
         [](ZorSchema* s) {
             describePhone(s);
             addBranch(s, "/key", "lamp", 3);
         }},
        {"other occurrences of a data node",
         [](ZorSchema* s) {
             addItem(s, "", "volume", 1, "int");
             addBranch(s, "", "key", 2);
             addItem(s, "/key", "label", 3, "string");
             addItem(s, "/key", "gain", 1, "float");
         }},
        {"other occurrences of a branch",
         [](ZorSchema* s) {
             addItem(s, "", "volume", 1, "int");
             addBranch(s, "", "key", 3);
             addItem(s, "/key", "label", 2, "string");
             addItem(s, "/key", "gain", 1, "float");
         }},
        {"as many values, but in other places",
         [](ZorSchema* s) {
             addItem(s, "", "volume", 1, "int");
             addBranch(s, "", "key", 1);
             addItem(s, "/key", "label", 4, "string");
             addItem(s, "/key", "gain", 2, "float");
         }},
        {"another kind of values",
         [](ZorSchema* s) {
             addItem(s, "", "volume", 1, "string");
             addBranch(s, "", "key", 2);
             addItem(s, "/key", "label", 2, "string");
             addItem(s, "/key", "gain", 1, "float");
         }},
        {"a branch for a data node",
         [](ZorSchema* s) {
             addBranch(s, "", "volume", 1);
             addBranch(s, "", "key", 2);
             addItem(s, "/key", "label", 2, "string");
             addItem(s, "/key", "gain", 1, "float");
         }},
        {"another order",
         [](ZorSchema* s) {
             addItem(s, "", "volume", 1, "int");
             addBranch(s, "", "key", 2);
             addItem(s, "/key", "gain", 1, "float");
             addItem(s, "/key", "label", 2, "string");
         }},
        {"another depth",
         [](ZorSchema* s) {
             addItem(s, "", "volume", 1, "int");
             addBranch(s, "", "key", 2);
             addItem(s, "/key", "label", 2, "string");
             addBranch(s, "/key", "sound", 1);
             addItem(s, "/key/sound", "gain", 1, "float");
         }},
        {"another name",
         [](ZorSchema* s) {
             addItem(s, "", "loudness", 1, "int");
             addBranch(s, "", "key", 2);
             addItem(s, "/key", "label", 2, "string");
             addItem(s, "/key", "gain", 1, "float");
         }},
    };
    ZorDocument* const there = store.makeDocument("DefaultSchema", "phone1");
    for (auto const& differing : cases) {
        ZorCollection other("other");
        differing.describe(other.makeSchema("phone"));
        store.copyDocument("phone1", other.makeDocument("phone", "phone1"));
        EXPECT_EQ(log.take(), "3 ZorCollection::copyDocument{Schema (phone) does not match}\n")
            << differing.difference;
        EXPECT_EQ(store.getDocument("phone1"), there) << differing.difference;
        EXPECT_EQ(phone->documentCount(), 0) << differing.difference;
    }
}

// Values move only between types whose functions for values are the same ones.
TEST_F(CopyDocument, NeedsTypesOfTheSameFunctions) {
    using Change = void (*)(ZorDataType * type);
    Change const changes[] = {
        [](ZorDataType*) {},
        [](ZorDataType* t) { t->fromStringFn = [](auto text) { return probe::fromString(text); }; },
        [](ZorDataType* t) { t->copyValueFn = [](auto value) { return probe::copyValue(value); }; },
        [](ZorDataType* t) { t->freeValueFn = [](auto value) { probe::freeValue(value); }; },
        [](ZorDataType* t) {
            t->setFromStringFn = [](auto value, auto text) { probe::setFromString(value, text); };
        },
        [](ZorDataType* t) { t->toStringFn = [](auto value) { return probe::toString(value); }; },
    };
    ZorDocument* source = nullptr; // of the first, which is as it was made
    std::list<ZorCollection> collections;
    for (Change const change : changes) {
        ZorDataType* const type = makeProbe("probe", "5", nullptr, nullptr, nullptr);
        change(type);
        ZorCollection& other = collections.emplace_back("cfg");
        other.makeSchema("phone")->addDataType(type);
        addItem(other.getSchema("phone"), "", "volume", 1, "probe", "5");
        if (!source) source = other.makeDocument("phone", "phone1");
        other.copyDocument("phone2", source);
    }
    EXPECT_EQ(valuesAt(collections.front().getDocument("phone2"), "volume"), "5");
    std::string const incident = "3 ZorCollection::copyDocument{Schema (phone) does not match}\n";
    EXPECT_EQ(log.take(), incident + incident + incident + incident + incident);
}

TEST_F(CopySchema, HasTheSameTreeAndTypes) {
    ZorDataType* const mode = zor_choiceMake("mode");
    zor_choiceAddOption(mode, "on");
    phone->addDataType(mode);
    phone->addDataType(zor_rangeMake(ZorBuiltIn::getDataType("int"), "level", "1", "9"));
    addItem(phone, "/key", "mode", 3, "mode", "on");
    addItem(phone, "", "level", 1, "level");
    store.copySchema("copy", phone);
    ZorSchema* const copy = store.getSchema("copy");
    ASSERT_NE(copy, nullptr);
    EXPECT_STREQ(copy->getName(), "phone"); // the source's, whatever the key
    auto const textOf = [](ZorSchema* schema) {
        return written([schema](ZorDataWriter* writer) { schema->exportXML(writer); });
    };
    EXPECT_EQ(textOf(copy), textOf(phone));
    EXPECT_NE(copy->getDataType("mode"), mode);
    EXPECT_EQ(nodeAt(copy, "key/mode")->getDataType(), copy->getDataType("mode"));
    EXPECT_EQ(nodeAt(copy, "key/mode")->getTotalOccurrences(), 6);
    EXPECT_EQ(nodeAt(copy, "volume")->getDataType(), ZorBuiltIn::getDataType("int"));
}

TEST_F(CopySchema, OutlivesItsSource) {
    ZorDataType* const mode = zor_choiceMake("mode");
    zor_choiceAddOption(mode, "on");
    zor_choiceAddOption(mode, "off");
    phone->addDataType(mode);
    addItem(phone, "", "mode", 1, "mode", "off");
    store.copySchema("copy", phone);
    store.deleteSchema("phone");
    ZorDocument* const document = store.makeDocument("copy", "phone1");
    EXPECT_EQ(valuesAt(document, "*"), "5|(null)|(null)|off");
    EXPECT_EQ(setAt(document, "mode", "on"), 1);
    EXPECT_EQ(setAt(document, "mode", "maybe"), 0);
    EXPECT_EQ(log.take(), "3 setStringNodeValue: value (maybe) is not valid\n");
}

// A copy of a frozen schema is open.
TEST_F(CopySchema, StartsWithoutDocuments) {
    store.makeDocument("phone", "phone1");
    store.copySchema("copy", phone);
    ZorSchema* const copy = store.getSchema("copy");
    EXPECT_EQ(copy->documentCount(), 0);
    EXPECT_NE(copy->makeBranchNode(copy->getRootNode(), "extra", 1), nullptr);
    EXPECT_EQ(copy->getChildNode(phone->getRootNode(), "extra"), nullptr);
    EXPECT_EQ(phone->documentCount(), 1);
}

TEST_F(CopySchema, OntoItsSourcesNameCopiesFirst) {
    store.makeDocument("phone", "phone1");
    store.makeDocument("DefaultSchema", "note");
    std::string const before = store.exportSchema("phone");
    store.copySchema(phone->getName(), phone);
    EXPECT_EQ(store.exportSchema("phone"), before);
    EXPECT_EQ(documentNames(store), "note"); // those of the schema that was there are gone
    EXPECT_EQ(schemaNames(store), "phone DefaultSchema");
    EXPECT_EQ(allOf(store.makeDocument("phone", "phone1")), "5 ||| (null)|(null)");
}

TEST_F(CopySchema, ReplacesAndDeletesWhatWasThere) {
    store.makeSchema("tablet");
    store.makeDocument("tablet", "tablet1");
    store.makeDocument("phone", "phone1");
    store.copySchema("tablet", phone);
    EXPECT_EQ(documentNames(store), "phone1");
    EXPECT_STREQ(store.getSchema("tablet")->getName(), "phone");
    EXPECT_EQ(store.getSchema("phone"), phone);
}

TEST_F(CopySchema, ComesFromAnyCollection) {
    {
        ZorCollection other("other");
        describePhone(other.makeSchema("tablet"));
        store.copySchema("tablet", other.getSchema("tablet"));
    }
    EXPECT_EQ(allOf(store.makeDocument("tablet", "tablet1")), "5 ||| (null)|(null)");
}

// The source's collection and this one are not searched while the nodes are copied: what is not
// the schema's own or built-in is dropped with a message, and so is nothing else.
TEST_F(CopySchema, DropsNodesWhoseTypesAreNotFound) {
    store.addDataType(zor_choiceMake("shared"));
    addItem(phone, "", "first", 1, "shared");
    addItem(phone, "/key", "second", 2, "shared", "text");
    addItem(phone, "", "last", 1, "bool", "true");
    store.copySchema("copy", phone);
    EXPECT_EQ(log.take(), "3 zor_dataNodeMake(second): data type is NULL\n"
                          "3 zor_dataNodeMake(first): data type is NULL\n");
    EXPECT_EQ(store.exportSchema("copy"),
              "<cfg><schema name=\"phone\"><item name=\"volume\" type=\"int\" default=\"5\"></item>"
              "<branch name=\"key\" occurrences=\"2\"></branch>"
              "<item name=\"label\" type=\"string\" default=\"\" occurrences=\"2\" parent=\"/key\">"
              "</item><item name=\"gain\" type=\"float\" parent=\"/key\"></item>"
              "<item name=\"last\" type=\"bool\" default=\"true\"></item></schema></cfg>");
    EXPECT_EQ(valuesAt(store.makeDocument("copy", "phone1"), "*"), "5|(null)|(null)|true");
}

// A type name may mean another type in the copy's scope.
TEST_F(CopySchema, LooksTypesUpByNameAgain) {
    ZorDataType* const url = zor_choiceMake("url");
    zor_choiceAddOption(url, "here");
    store.addDataType(url);
    addItem(phone, "", "link", 1, "url", "here");
    EXPECT_EQ(nodeAt(phone, "link")->getDataType(), url);
    store.copySchema("copy", phone);
    ZorSchemaNode const* const link = nodeAt(store.getSchema("copy"), "link");
    EXPECT_EQ(link->getDataType(), ZorBuiltIn::getDataType("url"));
    EXPECT_EQ(taken(link->getDefaultValue()), "here");
}

// Its owner is the collection that holds it.
TEST_F(CopySchema, FindsTheTypesOfItsCollectionAfterwards) {
    ZorDataType* const shared = zor_choiceMake("shared");
    store.addDataType(shared);
    store.copySchema("copy", phone);
    ZorSchema* const copy = store.getSchema("copy");
    EXPECT_EQ(copy->collection, &store);
    EXPECT_EQ(copy->getDataType("shared"), shared);
    EXPECT_EQ(copy->getDataType("int"), ZorBuiltIn::getDataType("int"));
    EXPECT_EQ(copy->getDataType("nothing"), nullptr);
    addItem(copy, "", "shared", 1, "shared");
    EXPECT_EQ(valuesAt(store.makeDocument("copy", "phone1"), "shared"), "(null)");
}

// The documents of a schema stored under another key name a schema that the key does not find.
TEST_F(CopySchema, DocumentsOfACopyAreCopiedBySchemaName) {
    store.copySchema("copy", phone);
    ZorDocument* const source = store.makeDocument("copy", "phone1");
    setAt(source, "volume", "9");
    store.copyDocument("phone2", source);
    EXPECT_EQ(store.getDocument("phone2")->getRootNode(), phone->getRootNode());
    EXPECT_EQ(valuesAt(store.getDocument("phone2"), "volume"), "9");
    store.deleteDocument("phone2");
    store.deleteSchema("phone");
    store.copyDocument("phone2", source);
    EXPECT_EQ(log.take(), "3 ZorCollection::copyDocument{Schema (phone) does not exist}\n");
}
