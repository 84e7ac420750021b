// Schema nodes: life, accessors and copies.

#include <gtest/gtest.h>

#include "tests/schema/shape.h"
#include "tests/support/incidents.h"
#include "tests/support/text.h"
#include "tests/types/call_log.h"
#include "zor/schema.h"

namespace {

class SchemaNode : public testing::Test {
protected:
    IncidentLog log;
};

constexpr ZorSchemaNode::e_nodeType kKinds[] = {ZorSchemaNode::BRANCH_NODE,
                                                ZorSchemaNode::DATA_NODE, ZorSchemaNode::ROOT_NODE};

// What a new node and a copy have in common: it stands alone.
void expectUnlinked(ZorSchemaNode const& node) {
    EXPECT_EQ(node.next, nullptr);
    EXPECT_EQ(node.previous, nullptr);
    EXPECT_EQ(node.sortedChildren, nullptr);
    EXPECT_EQ(node.documentCount, 0);
    EXPECT_EQ(node.firstChild, nullptr);
    EXPECT_EQ(node.lastChild, nullptr);
    EXPECT_EQ(node.childCount, 0);
    EXPECT_EQ(node.parent, nullptr);
    EXPECT_EQ(node.occurrences, 0);
    EXPECT_EQ(node.totalOccurrences, 0);
    EXPECT_EQ(node.valueIndex, 0);
}

// A data node with a default, not attached to a schema.
class LooseItem {
public:
    LooseItem(ZorDataType* type, char const* defaultText) : node(ZorSchemaNode::DATA_NODE, "item") {
        node.dataType = type;
        node.defaultValue = type->fromStringFn(defaultText);
    }
    ZorSchemaNode node;
};

} // namespace

TEST_F(SchemaNode, KindsHaveFixedNumbers) {
    EXPECT_EQ(int(ZorSchemaNode::BRANCH_NODE), 0);
    EXPECT_EQ(int(ZorSchemaNode::DATA_NODE), 1);
    EXPECT_EQ(int(ZorSchemaNode::ROOT_NODE), 2);
    EXPECT_EQ(sizeof(ZorSchemaNode::e_nodeType), 4U);
}

TEST_F(SchemaNode, ANewNodeHasAKindAndANameAndNothingElse) {
    for (auto const kind : kKinds) {
        ZorSchemaNode const node(kind, "node");
        EXPECT_EQ(node.type, kind);
        EXPECT_STREQ(node.getName(), "node");
        EXPECT_EQ(node.dataType, nullptr);
        EXPECT_EQ(node.defaultValue.intValue, 0);
        EXPECT_EQ(node.flags, 0);
        expectUnlinked(node);
    }
}

TEST_F(SchemaNode, SharesAStringGivenAsNameUntilItIsDestroyed) {
    Text const name("a name of its own");
    ZorString const* const string = name;
    {
        ZorSchemaNode const node(ZorSchemaNode::BRANCH_NODE, string);
        EXPECT_EQ(node.name, string);
        EXPECT_EQ(string->refCount, 2);
    }
    EXPECT_EQ(string->refCount, 1);
}

TEST_F(SchemaNode, MakesAStringOfAPlainName) {
    ZorSchemaNode const node(ZorSchemaNode::BRANCH_NODE, "plain");
    EXPECT_EQ(node.name->refCount, 1);
    ZorSchemaNode const permanent(ZorSchemaNode::BRANCH_NODE, "schema");
    EXPECT_EQ(permanent.name->refCount, ZorString::permanentCount);
}

TEST_F(SchemaNode, ANullNameIsEmpty) {
    EXPECT_STREQ(ZorSchemaNode(ZorSchemaNode::DATA_NODE, nullptr).getName(), "");
    EXPECT_STREQ(ZorSchemaNode(ZorSchemaNode::DATA_NODE, "").getName(), "");
}

TEST_F(SchemaNode, ANodeWithoutNameAnswersNull) {
    ZorSchemaNode node(ZorSchemaNode::BRANCH_NODE, "node");
    ZorString* const name = node.name;
    node.name = nullptr;
    EXPECT_EQ(node.getName(), nullptr);
    node.name = name;
}

TEST_F(SchemaNode, IsOfExactlyOneKind) {
    for (auto const kind : kKinds) {
        ZorSchemaNode const node(kind, "node");
        EXPECT_EQ(node.isBranchNode(), kind == ZorSchemaNode::BRANCH_NODE);
        EXPECT_EQ(node.isDataNode(), kind == ZorSchemaNode::DATA_NODE);
        EXPECT_EQ(node.isSchemaRootNode(), kind == ZorSchemaNode::ROOT_NODE);
    }
}

// A root occurs once whatever its fields say; other nodes as their fields say.
TEST_F(SchemaNode, ARootOccursOnce) {
    for (auto const kind : kKinds) {
        ZorSchemaNode node(kind, "node");
        node.occurrences = -7;
        node.totalOccurrences = 70000;
        bool const isRoot = kind == ZorSchemaNode::ROOT_NODE;
        EXPECT_EQ(node.getOccurrences(), isRoot ? 1 : -7);
        EXPECT_EQ(node.getTotalOccurrences(), isRoot ? 1 : 70000);
    }
}

TEST_F(SchemaNode, ARootHasNoParent) {
    for (auto const kind : kKinds) {
        ZorSchemaNode node(kind, "node");
        node.parent = &node;
        EXPECT_EQ(node.getParentNode(), kind == ZorSchemaNode::ROOT_NODE ? nullptr : &node);
    }
}

TEST_F(SchemaNode, ADataNodeShowsNoChildren) {
    ZorSchemaNode first(ZorSchemaNode::BRANCH_NODE, "first");
    ZorSchemaNode last(ZorSchemaNode::BRANCH_NODE, "last");
    for (auto const kind : kKinds) {
        ZorSchemaNode node(kind, "node");
        node.firstChild = &first;
        node.lastChild = &last;
        bool const isData = kind == ZorSchemaNode::DATA_NODE;
        EXPECT_EQ(node.getFirstChildNode(), isData ? nullptr : &first);
        EXPECT_EQ(node.getLastChildNode(), isData ? nullptr : &last);
        node.firstChild = nullptr; // they are not the node's to destroy
    }
}

TEST_F(SchemaNode, OnlyADataNodeShowsAType) {
    for (auto const kind : kKinds) {
        ZorSchemaNode node(kind, "node");
        node.flags = ZorSchemaNode::noDefault;
        node.dataType = ZorBuiltIn::getDataType("int");
        EXPECT_EQ(node.getDataType(), kind == ZorSchemaNode::DATA_NODE ? node.dataType : nullptr);
    }
}

TEST_F(SchemaNode, LinksSiblingsInTheOrderTheyWereMade) {
    Shape const shape("a:int b{} c:string");
    ZorSchemaNode* const a = shape["a"];
    ZorSchemaNode* const b = shape["b"];
    ZorSchemaNode* const c = shape["c"];
    EXPECT_EQ(a->getPreviousNode(), nullptr);
    EXPECT_EQ(a->getNextNode(), b);
    EXPECT_EQ(b->getPreviousNode(), a);
    EXPECT_EQ(b->getNextNode(), c);
    EXPECT_EQ(c->getPreviousNode(), b);
    EXPECT_EQ(c->getNextNode(), nullptr);
    EXPECT_EQ(shape.root()->getFirstChildNode(), a);
    EXPECT_EQ(shape.root()->getLastChildNode(), c);
    EXPECT_EQ(b->getFirstChildNode(), nullptr);
    EXPECT_EQ(b->getLastChildNode(), nullptr);
}

TEST_F(SchemaNode, EveryAttachedNodeKnowsItsRoot) {
    Shape const shape("a{b{c:int}} d:int");
    for (ZorSchemaNode const* const node : nodesBelow(shape.root())) {
        EXPECT_EQ(node->getSchemaRootNode(), shape.root()) << pathOf(node);
    }
    EXPECT_EQ(shape.root()->getSchemaRootNode(), shape.root());
    EXPECT_EQ(ZorSchemaNode(ZorSchemaNode::DATA_NODE, "loose").getSchemaRootNode(), nullptr);
}

TEST_F(SchemaNode, AnswersItsDefaultAsANewReference) {
    Shape const shape("none:int zero:int= five:int=5 text:string=abc empty:string= branch{}");
    EXPECT_EQ(taken(shape["none"]->getDefaultValue()), "(null)");
    EXPECT_EQ(taken(shape["zero"]->getDefaultValue()), "0");
    EXPECT_EQ(taken(shape["five"]->getDefaultValue()), "5");
    EXPECT_EQ(taken(shape["text"]->getDefaultValue()), "abc");
    EXPECT_EQ(taken(shape["empty"]->getDefaultValue()), "");
    EXPECT_EQ(taken(shape["branch"]->getDefaultValue()), "(null)");
    EXPECT_EQ(taken(shape.root()->getDefaultValue()), "(null)");

    ZorString* const text = shape["text"]->getDefaultValue();
    EXPECT_NE(text, shape["text"]->defaultValue.stringValue);
    EXPECT_EQ(text->refCount, 1);
    text->removeRef();
}

TEST_F(SchemaNode, ReleasesItsDefaultThroughItsType) {
    CallLog calls;
    ZorDataType* const type = makeProbe("probe", nullptr, nullptr);
    { LooseItem const item(type, "5"); }
    EXPECT_EQ(calls.take(), "fromString 5;freeValue 5;");
    {
        LooseItem item(type, "6");
        item.node.flags = ZorSchemaNode::noDefault;
    }
    EXPECT_EQ(calls.take(), "fromString 6;");
    delete type;
}

// A data node that never got a type is destroyed without touching its default.
TEST_F(SchemaNode, WithoutTypeItIsDestroyedAllTheSame) {
    auto* const node = new ZorSchemaNode(ZorSchemaNode::DATA_NODE, "item");
    EXPECT_EQ(node->flags & ZorSchemaNode::noDefault, 0);
    EXPECT_EQ(node->getDataType(), nullptr);
    EXPECT_EQ(taken(node->getDefaultValue()), "(null)");
    delete node;
}

TEST_F(SchemaNode, DestroysEverythingBelow) {
    CallLog calls;
    {
        Shape const shape("a:probe=1 b{c:probe=2 d{e:probe=3} f:probe} g:probe=4",
                          {makeProbe("probe", nullptr, nullptr)});
        calls.take();
    }
    std::string const freed = calls.take();
    for (char const* const call :
         {"freeValue 1;", "freeValue 2;", "freeValue 3;", "freeValue 4;"}) {
        EXPECT_NE(freed.find(call), std::string::npos) << call << " in " << freed;
    }
    EXPECT_EQ(freed.size(), 4 * sizeof "freeValue 1") << freed;
}

TEST_F(SchemaNode, AVeryDeepTreeIsDestroyedOnASmallStack) {
    auto* const root = new ZorSchemaNode(ZorSchemaNode::ROOT_NODE, "root");
    ZorSchemaNode* node = root;
    for (int depth = 0; depth < 300000; ++depth) {
        auto* const child = new ZorSchemaNode(ZorSchemaNode::BRANCH_NODE, "b");
        node->firstChild = node->lastChild = child;
        child->parent = node;
        node = child;
    }
    delete root;
}

// A copied node is of the same kind, name and type, and stands alone.
TEST_F(SchemaNode, ACopyTakesKindNameAndTypeOnly) {
    Shape const shape("a*3{b*2:int=5 c:int}");
    for (ZorSchemaNode const* const node : nodesBelow(shape.root())) {
        ZorSchemaNode const copy(*node);
        EXPECT_EQ(copy.type, node->type);
        EXPECT_STREQ(copy.getName(), node->getName());
        EXPECT_EQ(copy.dataType, node->dataType);
        EXPECT_EQ(copy.flags & ZorSchemaNode::noDefault, node->flags & ZorSchemaNode::noDefault);
        expectUnlinked(copy);
    }
}

TEST_F(SchemaNode, ACopyHasANameOfItsOwn) {
    ZorSchemaNode const node(ZorSchemaNode::BRANCH_NODE, "node");
    ZorSchemaNode const copy(node);
    EXPECT_NE(copy.name, node.name);
    EXPECT_EQ(node.name->refCount, 1);
    EXPECT_EQ(copy.name->refCount, 1);
}

TEST_F(SchemaNode, ACopiedRootHasNoDocumentsAndNoIndex) {
    Shape const shape("b:int a:int");
    shape.root()->countRequiredValueNodes();
    ASSERT_NE(shape.root()->sortedChildren, nullptr);
    shape.root()->documentCount = 3;
    {
        ZorSchemaNode const copy(*shape.root());
        EXPECT_TRUE(copy.isSchemaRootNode());
        EXPECT_STREQ(copy.getName(), "phone");
        expectUnlinked(copy);
    }
    EXPECT_EQ(shape.root()->documentCount, 3);
    EXPECT_EQ(shape.root()->sortedChildren[0], shape["a"]); // not released with the copy
    shape.root()->documentCount = 0;
}

// The copy of a data node holds the same default, which is released once.
TEST_F(SchemaNode, ACopyDoesNotOwnTheDefault) {
    CallLog calls;
    ZorDataType* const type = makeProbe("probe", nullptr, nullptr);
    {
        LooseItem const item(type, "5");
        {
            ZorSchemaNode const copy(item.node);
            ZorSchemaNode const copyOfCopy(copy);
            EXPECT_EQ(copy.defaultValue.intValue, 5);
            EXPECT_EQ(taken(copyOfCopy.getDefaultValue()), "5");
        }
        EXPECT_EQ(calls.take(), "fromString 5;toString 5;");
        EXPECT_EQ(taken(item.node.getDefaultValue()), "5");
    }
    EXPECT_EQ(calls.take(), "toString 5;freeValue 5;");
    delete type;

    Shape const shape("text:string=some_text_beyond_the_inline_buffer");
    { ZorSchemaNode const copy(*shape["text"]); }
    EXPECT_EQ(taken(shape["text"]->getDefaultValue()), "some_text_beyond_the_inline_buffer");
}
