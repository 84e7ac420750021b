// Copies of schemas.

#include <gtest/gtest.h>

#include "tests/schema/shape.h"
#include "tests/support/incidents.h"
#include "zor/collection.h"
#include "zor/document.h"

namespace {

class SchemaCopy : public testing::Test {
protected:
    IncidentLog log;
    ZorCollection scope{"scope"};
};

ZorDataType* range(char const* name, char const* base, char const* low, char const* high) {
    return zor_rangeMake(ZorBuiltIn::getDataType(base), name, low, high);
}

char const kPhone[] = "line*2{key*3:int=5 label:string deep{x*4:float=0.5 y:bool=true}} empty*7{} "
                      "volume:level=3 off*0{z*-2:uint=9}";

} // namespace

TEST_F(SchemaCopy, HasTheSameTree) {
    Shape source(kPhone, {range("level", "int", "0", "10")});
    ZorSchema const copy(source.schema, scope);
    EXPECT_STREQ(copy.getName(), "phone");
    EXPECT_EQ(shapeOf(copy.rootNode), kPhone);
    EXPECT_EQ(shapeOf(source.root()), kPhone);
    EXPECT_EQ(copy.collection, &scope);

    std::vector<ZorSchemaNode*> const from = nodesBelow(source.root());
    std::vector<ZorSchemaNode*> const to = nodesBelow(copy.rootNode);
    ASSERT_EQ(from.size(), to.size());
    for (std::size_t i = 0; i < from.size(); ++i) {
        EXPECT_NE(to[i], from[i]);
        EXPECT_EQ(to[i]->getTotalOccurrences(), from[i]->getTotalOccurrences()) << pathOf(to[i]);
        EXPECT_EQ(to[i]->getSchemaRootNode(), copy.rootNode);
    }
}

TEST_F(SchemaCopy, HasTypesOfItsOwn) {
    Shape source("volume:level=3 count:int", {range("level", "int", "0", "10")});
    ZorSchema copy(source.schema, scope);
    ZorDataType* const level = copy.getDataType("level");
    EXPECT_NE(level, source.schema.getDataType("level"));
    EXPECT_EQ(copy.getChildNode(copy.rootNode, "volume")->getDataType(), level);
    EXPECT_EQ(copy.getChildNode(copy.rootNode, "count")->getDataType(),
              ZorBuiltIn::getDataType("int"));
}

TEST_F(SchemaCopy, OutlivesItsSource) {
    ZorSchema* copy;
    {
        Shape source(kPhone, {range("level", "int", "0", "10")});
        copy = new ZorSchema(source.schema, scope);
    }
    EXPECT_EQ(shapeOf(copy->rootNode), kPhone);
    delete copy;
}

TEST_F(SchemaCopy, IsKnownToTheNameCache) {
    Shape source("a{b{c:int}}");
    ZorSchema copy(source.schema, scope);
    ZorSchemaNode* const a = copy.getChildNode(copy.rootNode, "a");
    ZorSchemaNode* const b = copy.getChildNode(a, "b");
    ASSERT_NE(b, nullptr);
    EXPECT_NE(copy.getChildNode(b, "c"), nullptr);
    EXPECT_EQ(copy.makeBranchNode(b, "c", 1), nullptr);
    EXPECT_EQ(log.take(), "3 zor_branchNodeMake(c): node name already exists for given parent\n");
}

TEST_F(SchemaCopy, SharesNoNames) {
    Shape source("branch_of_its_own{item_of_its_own:string}");
    ZorSchema const copy(source.schema, scope);
    EXPECT_NE(copy.rootNode->name, source.root()->name);
    for (ZorSchemaNode const* const node : nodesBelow(source.root())) {
        EXPECT_EQ(node->name->refCount, 1) << pathOf(node);
    }
    for (ZorSchemaNode const* const node : nodesBelow(copy.rootNode)) {
        EXPECT_EQ(node->name->refCount, 1) << pathOf(node);
    }
}

// Documents belong to the source: the copy has none and takes new nodes.
TEST_F(SchemaCopy, StartsWithoutDocuments) {
    Shape source("a{b:int}");
    ZorDocument const document(&source.schema, "document");
    ZorSchema copy(source.schema, scope);
    EXPECT_EQ(copy.documentCount(), 0);
    EXPECT_EQ(copy.rootNode->sortedChildren, nullptr);
    ZorSchemaNode* const a = copy.getChildNode(copy.rootNode, "a");
    EXPECT_EQ(copy.getChildNode(a, "b")->valueIndex, -1);
    EXPECT_NE(copy.makeBranchNode(a, "late", 1), nullptr);
    EXPECT_EQ(source.schema.documentCount(), 1);
}

// A type name may mean another type in the new scope; the default is read again from its text.
TEST_F(SchemaCopy, ResolvesTypesInTheNewScope) {
    ZorCollection home("home");
    home.addDataType(range("level", "int", "0", "10"));
    ZorSchema source(&home, "phone");
    source.makeDataNode(source.rootNode, "volume", 1, source.getDataType("level"), "007");
    source.makeDataNode(source.rootNode, "tone", 1, source.getDataType("level"), nullptr);

    ZorDataType* const stringLevel = zor_choiceMake("level");
    scope.addDataType(stringLevel);
    ZorSchema copy(source, scope);
    EXPECT_EQ(copy.getChildNode(copy.rootNode, "volume")->getDataType(), stringLevel);
    EXPECT_EQ(shapeOf(copy.rootNode), "volume:level=7 tone:level");
}

TEST_F(SchemaCopy, DropsNodesWhoseTypeIsMissingWithAMessage) {
    ZorCollection home("home");
    home.addDataType(range("level", "int", "0", "10"));
    ZorSchema source(&home, "phone");
    ZorDataType* const level = source.getDataType("level");
    ZorSchemaNode* const branch = source.makeBranchNode(source.rootNode, "line", 2);
    source.makeDataNode(source.rootNode, "first", 1, level, "5");
    source.makeDataNode(source.rootNode, "second", 1, level, nullptr);
    source.makeDataNode(source.rootNode, "third", 1, source.getDataType("int"), "6");
    source.makeDataNode(branch, "inner", 1, level, "5");
    source.makeDataNode(branch, "kept", 1, source.getDataType("string"), "x");

    ZorSchema const copy(source, scope);
    EXPECT_EQ(log.take(), "3 zor_dataNodeMake(inner): data type is NULL\n"
                          "3 zor_dataNodeMake(first): data type is NULL\n"
                          "3 zor_dataNodeMake(second): data type is NULL\n");
    EXPECT_EQ(shapeOf(copy.rootNode), "line*2{kept:string=x} third:int=6");
}

TEST_F(SchemaCopy, ACopiedSubtreeComesBelowTheGivenNode) {
    Shape from("a*2{b*3:int=5 c{d:string}} e:int");
    Shape to("x*4{} y:int");
    to.schema.copySchemaNode(from["a"], to["x"]);
    EXPECT_EQ(shapeOf(to.root()), "x*4{b*3:int=5 c{d:string}} y:int");
    EXPECT_EQ(to["x/b"]->getTotalOccurrences(), 12);
    EXPECT_EQ(shapeOf(from.root()), "a*2{b*3:int=5 c{d:string}} e:int");
}

// A refused branch takes what is below it along; the others are still copied.
TEST_F(SchemaCopy, ARefusedNodeIsLeftOutWithAllBelowIt) {
    Shape from("a{b{c:int}} d:int e:int");
    Shape to("a:string d{}");
    to.schema.copySchemaNode(from.root(), to.root());
    EXPECT_EQ(log.take(), "3 zor_branchNodeMake(a): node name already exists for given parent\n"
                          "3 zor_dataNodeMake(d): node name already exists for given parent\n");
    EXPECT_EQ(shapeOf(to.root()), "a:string d{} e:int");

    to.schema.copySchemaNode(from["e"], to["d"]); // nothing is below it
    to.schema.copySchemaNode(from.root(), nullptr);
    to.schema.copySchemaNode(nullptr, to.root());
    EXPECT_EQ(shapeOf(to.root()), "a:string d{} e:int");
}

TEST_F(SchemaCopy, OfAnEmptySchemaIsEmpty) {
    ZorSchema const source(nullptr, "DefaultSchema");
    ZorSchema const copy(source, scope);
    EXPECT_STREQ(copy.getName(), "DefaultSchema");
    EXPECT_EQ(copy.rootNode->getFirstChildNode(), nullptr);
    EXPECT_EQ(copy.getDataTypes(), nullptr);
}

TEST_F(SchemaCopy, OfACopyIsTheSameAgain) {
    std::mt19937 random(11);
    for (int round = 0; round < 50; ++round) {
        std::string const text = randomShape(random, 4, {1, 2, 3, 0, -1, 32767});
        Shape source(text);
        ZorSchema first(source.schema, scope);
        ZorSchema const second(first, scope);
        EXPECT_EQ(shapeOf(second.rootNode), shapeOf(source.root())) << text;
    }
}

// A copy into what is being copied would never end.
TEST_F(SchemaCopy, DoesNotCopyABranchIntoItself) {
    Shape source("a{b{c:int}}");
    ZorSchemaNode* const a = source.root()->getFirstChildNode();
    source.schema.copySchemaNode(source.root(), a);
    source.schema.copySchemaNode(a, a->getFirstChildNode());
    EXPECT_EQ(shapeOf(source.root()), "a{b{c:int}}");
}
