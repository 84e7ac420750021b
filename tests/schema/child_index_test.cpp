// Children by name.

#include <gtest/gtest.h>

#include "schema/child_index.h"
#include "tests/schema/shape.h"
#include "tests/support/incidents.h"
#include "zor/document.h"

using zor_internal::buildChildIndex;
using zor_internal::findChild;

namespace {

class ChildIndex : public testing::Test {
protected:
    IncidentLog log;
};

std::string indexOf(ZorSchemaNode const* node) {
    std::string names;
    for (int i = 0; i < node->childCount; ++i) {
        names += std::string(i ? " " : "") + node->sortedChildren[i]->getName();
    }
    return names;
}

// A root with children "n0", "n1" ...; each is linked by hand, which is faster than a schema.
class ManyChildren {
public:
    explicit ManyChildren(int count) : root(ZorSchemaNode::ROOT_NODE, "root") {
        for (int i = 0; i < count; ++i) {
            auto* const child = new ZorSchemaNode(ZorSchemaNode::BRANCH_NODE, nameOf(i).c_str());
            child->parent = &root;
            if (root.lastChild)
                root.lastChild->next = child;
            else
                root.firstChild = child;
            root.lastChild = child;
        }
    }
    static std::string nameOf(int i) { return "n" + std::to_string(i); }

    ZorSchemaNode root;
};

void expectEveryChildFound(ManyChildren const& many, int count) {
    int i = 0;
    for (ZorSchemaNode* child = many.root.firstChild; child; child = child->next, ++i) {
        if (i > 3 && i < count - 3 && i % 997) continue;
        ASSERT_EQ(findChild(&many.root, ManyChildren::nameOf(i).c_str()), child) << i;
    }
    EXPECT_EQ(i, count);
    EXPECT_EQ(findChild(&many.root, ManyChildren::nameOf(count).c_str()), nullptr);
}

} // namespace

TEST_F(ChildIndex, IsMissingBeforeTheFirstDocument) {
    Shape const shape("b{c:int} a:int");
    EXPECT_EQ(shape.root()->sortedChildren, nullptr);
    EXPECT_EQ(shape.root()->childCount, 0);
    EXPECT_EQ(shape["b"]->sortedChildren, nullptr);
}

// Every branch has its children sorted byte by byte once a document is made.
TEST_F(ChildIndex, ListsTheChildrenByName) {
    Shape shape("b:int B:int a2{z:int y:int} a:int a10:int _:int \xC3\xA4:int 1:int");
    ZorDocument const document(&shape.schema, "document");
    EXPECT_EQ(indexOf(shape.root()), "1 B _ a a10 a2 b \xC3\xA4");
    EXPECT_EQ(indexOf(shape["a2"]), "y z");
}

TEST_F(ChildIndex, IsMadeByCountingAndByCopyingToo) {
    Shape shape("b:int a:int");
    shape.root()->countRequiredValueNodes();
    EXPECT_EQ(indexOf(shape.root()), "a b");

    Shape other("b:int a:int");
    ZorDocument const document(&shape.schema, "document");
    ZorDocument const copy(document, &other.schema);
    EXPECT_EQ(indexOf(other.root()), "a b");
}

TEST_F(ChildIndex, IsMadeAnewWhenNodesWereAdded) {
    Shape shape("b{c:int} a:int");
    delete new ZorDocument(&shape.schema, "first");
    shape.schema.makeBranchNode(shape["b"], "b", 1);
    shape.schema.makeBranchNode(shape.root(), "aa", 1);
    delete new ZorDocument(&shape.schema, "second");
    EXPECT_EQ(indexOf(shape.root()), "a aa b");
    EXPECT_EQ(indexOf(shape["b"]), "b c");
}

TEST_F(ChildIndex, ABranchWithoutChildrenHasNone) {
    Shape shape("a{}");
    ZorDocument const document(&shape.schema, "document");
    EXPECT_EQ(shape["a"]->sortedChildren, nullptr);
    EXPECT_EQ(shape["a"]->childCount, 0);
    EXPECT_EQ(findChild(shape["a"], "x"), nullptr);
}

// Counting while documents live leaves a usable index, the very same one.
TEST_F(ChildIndex, StaysWhileDocumentsLive) {
    Shape shape("b{d:int c:int} a:int");
    ZorDocument const document(&shape.schema, "document");
    ZorSchemaNode* const* const index = shape.root()->sortedChildren;
    EXPECT_EQ(shape.root()->countRequiredValueNodes(), 3);
    EXPECT_EQ(shape["b"]->countRequiredValueNodes(), 2);
    EXPECT_EQ(shape.root()->sortedChildren, index);
    EXPECT_EQ(indexOf(shape.root()), "a b");
    EXPECT_EQ(indexOf(shape["b"]), "c d");

    ZorDocument const second(&shape.schema, "second");
    EXPECT_EQ(shape.root()->sortedChildren, index);
}

TEST_F(ChildIndex, FindsChildrenWithAndWithoutIndex) {
    Shape const shape("b:int a{x:int} schema:int ab:int");
    for (bool const indexed : {false, true}) {
        if (indexed) buildChildIndex(shape.root());
        for (char const* const name : {"a", "b", "ab", "schema"}) {
            EXPECT_EQ(findChild(shape.root(), name), shape[name]) << name << indexed;
        }
        for (char const* const name : {"", "A", "abc", "x", "*", "a ", "schem"}) {
            EXPECT_EQ(findChild(shape.root(), name), nullptr) << name << indexed;
        }
        EXPECT_EQ(findChild(shape["b"], "a"), nullptr);
    }
}

TEST_F(ChildIndex, HoldsAsManyChildrenAsItsCountCanSay) {
    ManyChildren many(32767);
    buildChildIndex(&many.root);
    EXPECT_EQ(many.root.childCount, 32767);
    expectEveryChildFound(many, 32767);
}

TEST_F(ChildIndex, MoreChildrenAreFoundWithoutIt) {
    ManyChildren many(32768);
    buildChildIndex(&many.root);
    EXPECT_EQ(many.root.sortedChildren, nullptr);
    EXPECT_EQ(many.root.childCount, 0);
    expectEveryChildFound(many, 32768);
}
