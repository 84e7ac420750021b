// Documents: life, cells, changed marks and defaults.

#include <gtest/gtest.h>

#include <climits>

#include "tests/document/store.h"
#include "tests/support/incidents.h"
#include "tests/types/call_log.h"
#include "zor/collection.h"

namespace {

class Document : public testing::Test {
protected:
    IncidentLog log;
};

} // namespace

TEST_F(Document, ANewOneHasItsNameAndSchema) {
    Shape shape("a:int");
    Text const name("a document of its own");
    ZorString const* const string = name;
    {
        ZorDocument const document(&shape.schema, string);
        EXPECT_STREQ(document.getName(), "a document of its own");
        EXPECT_EQ(document.name, string);
        EXPECT_EQ(string->refCount, 2);
        EXPECT_EQ(document.getRootNode(), shape.root());
        EXPECT_EQ(document.rootNode, shape.root());
    }
    EXPECT_EQ(string->refCount, 1);
    EXPECT_STREQ(ZorDocument(&shape.schema, "plain").getName(), "plain");
    EXPECT_STREQ(ZorDocument(&shape.schema, nullptr).getName(), "");
}

TEST_F(Document, StartsWithTheDefaultsUnchanged) {
    Store store("a*3:string=5 b:int c*2{d*2:bool=true e:uint}");
    for (long i = 0; i < 3; ++i) {
        EXPECT_EQ(store.text("a", i), "5");
        EXPECT_FALSE(store.changed("a", i));
    }
    EXPECT_EQ(store.cells(), "a=5,5,5;b=-;c/d=true,true,true,true;c/e=-,-;");
}

TEST_F(Document, EachOneHasValuesOfItsOwn) {
    Shape shape("a:string=some_text_beyond_the_inline_buffer b:float=0.5");
    ZorDocument first(&shape.schema, "first");
    ZorDocument second(&shape.schema, "second");
    first.setStringNodeValue(shape["a"], 0, "x");
    first.setFloatNodeValue(shape["b"], 0, 2.25);
    EXPECT_EQ(cellsOf(first), "a=x*;b=2.25*;");
    EXPECT_EQ(cellsOf(second), "a=some_text_beyond_the_inline_buffer;b=0.5;");
    EXPECT_EQ(taken(shape["a"]->getDefaultValue()), "some_text_beyond_the_inline_buffer");
}

TEST_F(Document, OfASchemaWithoutDataNodesHasNoCells) {
    for (char const* const text : {"", "a*3{}", "a*0{b:int}", "a*-1{b*-1:int=5}"}) {
        Store store(text);
        EXPECT_EQ(store.shape.schema.documentCount(), 1);
        store.document.restoreDefaults();
    }
}

// The last document of a schema that goes opens the schema again.
TEST_F(Document, FreezesItsSchema) {
    Shape shape("a:int");
    auto* const document = new ZorDocument(&shape.schema, "document");
    EXPECT_EQ(shape.schema.makeBranchNode(shape.root(), "b", 1), nullptr);
    EXPECT_EQ(log.take(), "3 zor_branchNodeMake(b): Cannot modify schema while documents exist\n");
    delete document;
    EXPECT_NE(shape.schema.makeBranchNode(shape.root(), "b", 1), nullptr);
}

TEST_F(Document, ACopyKeepsValuesAndChangedBits) {
    Store store("a*4:string=x b*2{c*2:float=0.5}");
    store.set("a", 0, "y");
    store.set("a", 1, nullptr);
    store.document.nonBlockingSetStringNodeValue(store["a"], 2, nullptr);
    store.set("b/c", 3, "1.5");
    std::string const before = store.cells();
    EXPECT_EQ(before, "a=y*,-*,-,x;b/c=0.5,0.5,0.5,1.5*;");

    ZorDocument copy(store.document, &store.shape.schema);
    EXPECT_EQ(cellsOf(copy), before);
    EXPECT_STREQ(copy.getName(), "document");
    EXPECT_EQ(store.shape.schema.documentCount(), 2);

    copy.setStringNodeValue(store["a"], 0, "z");
    copy.setStringNodeValue(store["b/c"], 3, "7");
    EXPECT_EQ(store.cells(), before);
}

TEST_F(Document, ACopyOutlivesItsSourceAndSharesNoStrings) {
    Shape shape("a:string");
    auto* const source = new ZorDocument(&shape.schema, "a document of its own");
    source->setStringNodeValue(shape["a"], 0, "a value of its own");
    ZorDocument copy(*source, &shape.schema);
    EXPECT_NE(copy.name, source->name);
    EXPECT_EQ(source->name->refCount, 1);
    EXPECT_NE(copy.values[0].value.stringValue, source->values[0].value.stringValue);
    delete source;
    EXPECT_STREQ(copy.getName(), "a document of its own");
    EXPECT_EQ(cellsOf(copy), "a=a value of its own*;");
}

TEST_F(Document, ACopyMayStandOnAnotherSchemaOfTheSameLayout) {
    Store store("b*2{y:int=1 x:string} a:uint=3");
    store.set("b/y", 1, "8");
    ZorCollection const scope("scope");
    ZorSchema other(store.shape.schema, scope);
    ZorDocument copy(store.document, &other);
    EXPECT_EQ(copy.getRootNode(), other.rootNode);
    EXPECT_EQ(other.documentCount(), 1);
    EXPECT_EQ(store.shape.schema.documentCount(), 1);
    EXPECT_EQ(cellsOf(copy), "b/y=1,8*;b/x=-,-;a=3;");
    EXPECT_EQ(describeSelection(copy, "b[2]/y"), "b/y[1]@1 ");
    EXPECT_EQ(taken(copy.getStringNodeValue(store["b/y"], 1)), "(null)"); // the source's node
}

TEST_F(Document, ReachesACellOnlyByADataNodeOfItsOwnAndAnOccurrenceThatExists) {
    Store store("a*2{b*3:int} c:int");
    Store other("a*2{b*3:int} c:int");
    ZorDocument& document = store.document;
    EXPECT_EQ(document.getDataItem(store["a/b"], 0, 0), document.values);
    EXPECT_EQ(document.getDataItem(store["a/b"], 5, 0), document.values + 5);
    EXPECT_EQ(document.getDataItem(store["c"], 0, 0), document.values + 6);
    for (int const reserved : {-1, 1, 77}) {
        EXPECT_EQ(document.getDataItem(store["c"], 0, reserved), document.values + 6);
    }
    for (long const occurrence : {-1L, 6L, 7L, LONG_MAX, LONG_MIN}) {
        EXPECT_EQ(document.getDataItem(store["a/b"], occurrence, 0), nullptr) << occurrence;
    }
    EXPECT_EQ(document.getDataItem(store["a"], 0, 0), nullptr);
    EXPECT_EQ(document.getDataItem(document.rootNode, 0, 0), nullptr);
    EXPECT_EQ(document.getDataItem(nullptr, 0, 0), nullptr);
    EXPECT_EQ(document.getDataItem(other["c"], 0, 0), nullptr);
}

// A data node that is linked into the tree beside a document has no cell in it.
TEST_F(Document, ReachesNoCellByANodeLinkedByHand) {
    Store store("a:int");
    ZorSchemaNode linked(ZorSchemaNode::DATA_NODE, "b");
    linked.parent = store.shape.root();
    linked.dataType = ZorBuiltIn::getDataType("int");
    linked.flags = ZorSchemaNode::noDefault;
    linked.occurrences = 1;
    linked.totalOccurrences = 1;
    linked.valueIndex = -1;
    EXPECT_EQ(store.document.getDataItem(&linked, 0, 0), nullptr);
    EXPECT_EQ(store.document.getStringNodeValue(&linked, 0), nullptr);
    EXPECT_EQ(store.document.setStringNodeValue(&linked, 0, "7"), 0);
    EXPECT_EQ(log.take(), "3 setStringNodeValue: occurrence is out of range\n");
}

TEST_F(Document, WhatHasNoCellIsNotChanged) {
    Store store("a*2{b:int} c:int");
    Store other("c:int");
    other.set("c", 0, "1");
    store.set("c", 0, "1");
    store.set("a/b", 1, "1");
    EXPECT_TRUE(store.changed("c"));
    EXPECT_FALSE(store.changed("a"));
    EXPECT_FALSE(store.changed("a", 1));
    EXPECT_FALSE(store.changed("a/b", 2));
    EXPECT_FALSE(store.changed("c", -1));
    EXPECT_FALSE(store.document.wasChanged(store.document.rootNode, 0));
    EXPECT_FALSE(store.document.wasChanged(nullptr, 0));
    EXPECT_FALSE(store.document.wasChanged(other["c"], 0));
}

TEST_F(Document, RestoringADefaultClearsTheChangedBit) {
    Store store("a*3:int=5 b*2:string");
    store.set("a", 0, "6");
    store.set("a", 1, nullptr);
    store.set("b", 0, "x");
    EXPECT_EQ(store.cells(), "a=6*,-*,5;b=x*,-;");
    for (long i = 0; i < 3; ++i) store.document.restoreDefault(store["a"], i);
    for (long i = 0; i < 2; ++i) store.document.restoreDefault(store["b"], i);
    EXPECT_EQ(store.cells(), "a=5,5,5;b=-,-;");
}

TEST_F(Document, RestoresOneCellOnly) {
    Store store("a*2{b*2:int=1}");
    for (long i = 0; i < 4; ++i) store.set("a/b", i, "9");
    store.document.restoreDefault(store["a/b"], 2);
    EXPECT_EQ(store.cells(), "a/b=9*,9*,1,9*;");
}

// A default is made for an empty cell, and written over a value that is there.
TEST_F(Document, RestoresThroughTheFunctionsOfTheType) {
    CallLog calls;
    Store store("a:probe=5 b:probe", {makeProbe("probe", nullptr, nullptr)});
    calls.take();
    store.document.restoreDefault(store["a"], 0);
    EXPECT_EQ(calls.take(), "toString 5;setFromString 5;");
    store.set("a", 0, nullptr);
    calls.take();
    store.document.restoreDefault(store["a"], 0);
    EXPECT_EQ(calls.take(), "toString 5;fromString 5;");
    store.document.restoreDefault(store["b"], 0);
    EXPECT_EQ(calls.take(), "");
    store.set("b", 0, "7");
    calls.take();
    store.document.restoreDefault(store["b"], 0);
    EXPECT_EQ(calls.take(), "freeValue 7;");
}

TEST_F(Document, RestoringWhatHasNoCellDoesNothing) {
    Store store("a*2{b:int=1} c:int=2");
    Store other("c:int=3");
    store.set("a/b", 1, "9");
    store.set("c", 0, "9");
    std::string const before = store.cells();
    store.document.restoreDefault(store["a"], 0);
    store.document.restoreDefault(store.document.rootNode, 0);
    store.document.restoreDefault(nullptr, 0);
    store.document.restoreDefault(other["c"], 0);
    for (long const occurrence : {-1L, 2L, LONG_MAX, LONG_MIN}) {
        store.document.restoreDefault(store["a/b"], occurrence);
    }
    EXPECT_EQ(store.cells(), before);
}

// Only the data nodes directly under the root are restored, and they count as changed.
TEST_F(Document, RestoringAllReachesTheRootsOwnItemsAndMarksThem) {
    Store store("a*2:int=5 b{c:int=6 d{e:int=7}} f:string g:string=x h*0:int=1");
    store.set("a", 1, "9");
    store.set("b/c", 0, "9");
    store.set("b/d/e", 0, "9");
    store.set("f", 0, "9");
    store.document.nonBlockingSetStringNodeValue(store["g"], 0, nullptr);
    store.document.restoreDefaults();
    EXPECT_EQ(store.cells(), "a=5*,5*;b/c=9*;b/d/e=9*;f=-*;g=x*;h=;");

    store.document.restoreDefault(store["a"], 0);
    EXPECT_EQ(store.cells(), "a=5,5*;b/c=9*;b/d/e=9*;f=-*;g=x*;h=;");
}

// The defaults are validated again: one that its type refuses stays out, with an incident a cell.
TEST_F(Document, RestoringAllValidatesTheDefaults) {
    Store store("a*2:level=77 b:level=5",
                {zor_rangeMake(ZorBuiltIn::getDataType("int"), "level", "0", "10")});
    EXPECT_EQ(store.cells(), "a=77,77;b=5;");
    store.set("a", 1, "3");
    store.document.restoreDefaults();
    EXPECT_EQ(log.take(), "3 setStringNodeValue: value (77) is not valid\n"
                          "3 setStringNodeValue: value (77) is not valid\n");
    EXPECT_EQ(store.cells(), "a=77,3*;b=5*;");
    store.document.restoreDefault(store["a"], 1); // this one does not validate
    EXPECT_EQ(store.cells(), "a=77,77;b=5*;");
}

// A default that begins like a ZorString is still a text.
TEST_F(Document, RestoresADefaultOfAnyBytes) {
    Shape shape("");
    Text const odd("\xFF odd");
    ZorSchemaNode* const node = shape.schema.makeDataNode(
        shape.root(), "a", 1, shape.schema.getDataType("string"), static_cast<ZorString*>(odd));
    ZorDocument document(&shape.schema, "document");
    document.setStringNodeValue(node, 0, "x");
    document.restoreDefaults();
    EXPECT_EQ(cellsOf(document), "a=\xFF odd*;");
    document.restoreDefault(node, 0);
    EXPECT_EQ(cellsOf(document), "a=\xFF odd;");
}
