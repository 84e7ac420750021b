// The process-wide cache of children by name.

#include "schema/name_cache.h"

#include <gtest/gtest.h>

#include "tests/schema/shape.h"
#include "tests/support/incidents.h"

using zor_internal::cacheChild;
using zor_internal::cachedChild;
using zor_internal::forgetTree;

namespace {

class NameCache : public testing::Test {
protected:
    ~NameCache() override { EXPECT_EQ(ZorSchema::sNodeMap.size(), entriesBefore); }

    IncidentLog log;
    std::size_t const entriesBefore = ZorSchema::sNodeMap.size();
};

std::string namesUnder(ZorSchemaNode const* parent) {
    auto const entry = ZorSchema::sNodeMap.find(parent);
    if (entry == ZorSchema::sNodeMap.end()) return "no entry";
    std::string names;
    for (auto const& [name, node] : entry->second) {
        EXPECT_EQ(name, node->getName());
        EXPECT_EQ(node->parent, parent);
        names += name + ' ';
    }
    return names;
}

// A schema made before main and destroyed after it.
class EarlySchema {
public:
    EarlySchema() : schema(nullptr, "early") {
        branch = schema.makeBranchNode(schema.rootNode, "branch", 1);
        schema.makeBranchNode(branch, "leaf", 1);
    }
    ZorSchema schema;
    ZorSchemaNode* branch;
};

EarlySchema early;

} // namespace

TEST_F(NameCache, HoldsTheChildrenOfEveryParent) {
    Shape const shape("b{y:int x{}} a:int e{}");
    EXPECT_EQ(namesUnder(shape.root()), "a b e ");
    EXPECT_EQ(namesUnder(shape["b"]), "x y ");
    EXPECT_EQ(namesUnder(shape["e"]), "no entry");
    EXPECT_EQ(namesUnder(shape["a"]), "no entry");
}

TEST_F(NameCache, FindsExactNamesOfDirectChildrenOnly) {
    Shape const shape("b{x:int} a:int");
    EXPECT_EQ(cachedChild(shape.root(), "b"), shape["b"]);
    EXPECT_EQ(cachedChild(shape["b"], "x"), shape["b/x"]);
    for (char const* const name : {"", "B", "bb", "x", "*", "b/x"}) {
        EXPECT_EQ(cachedChild(shape.root(), name), nullptr) << name;
    }
    EXPECT_EQ(cachedChild(shape["a"], "x"), nullptr);
    EXPECT_EQ(cachedChild(nullptr, "x"), nullptr);
}

// The cache, not the list of siblings, says which names are taken.
TEST_F(NameCache, IsTheAuthorityOnNames) {
    Shape shape("a:int");
    ZorSchemaNode other(ZorSchemaNode::BRANCH_NODE, "other");
    cacheChild(shape.root(), &other);
    EXPECT_EQ(shape.schema.getChildNode(shape.root(), "other"), &other);
    ZorSchema::sNodeMap.erase(shape.root());
    EXPECT_EQ(shape.schema.getChildNode(shape.root(), "a"), nullptr);
}

// A later node at the same address must never inherit names: entries of all branches go with the
// schema, at whatever depth.
TEST_F(NameCache, ForgetsEveryBranchOfADestroyedSchema) {
    std::vector<ZorSchemaNode*> nodes;
    {
        Shape const shape("a{b{c{d:int} e:int} f{}} g{h:int} i:int");
        nodes = nodesBelow(shape.root());
        nodes.push_back(shape.root());
        EXPECT_EQ(ZorSchema::sNodeMap.size(), entriesBefore + 5);
    }
    for (ZorSchemaNode const* const node : nodes) {
        EXPECT_EQ(ZorSchema::sNodeMap.count(node), 0U);
    }
}

TEST_F(NameCache, LeavesOtherSchemasAlone) {
    Shape const kept("a{b:int}");
    { Shape const gone("a{b:int}"); }
    EXPECT_EQ(namesUnder(kept.root()), "a ");
    EXPECT_EQ(namesUnder(kept["a"]), "b ");
}

TEST_F(NameCache, ForgetsASubtreeWithoutItsSiblings) {
    Shape const shape("a{x{y:int}} b{z:int} c:int");
    forgetTree(shape["a"]);
    EXPECT_EQ(namesUnder(shape["a"]), "no entry");
    EXPECT_EQ(namesUnder(shape["a/x"]), "no entry");
    EXPECT_EQ(namesUnder(shape["b"]), "z ");
    EXPECT_EQ(namesUnder(shape.root()), "a b c ");
}

TEST_F(NameCache, ForgettingAVeryDeepTreeNeedsASmallStack) {
    ZorSchemaNode root(ZorSchemaNode::ROOT_NODE, "root");
    ZorSchemaNode* node = &root;
    for (int depth = 0; depth < 100000; ++depth) {
        auto* const child = new ZorSchemaNode(ZorSchemaNode::BRANCH_NODE, "b");
        node->firstChild = node->lastChild = child;
        child->parent = node;
        cacheChild(node, child);
        node = child;
    }
    forgetTree(&root);
}

TEST_F(NameCache, WorksForStaticObjects) {
    EXPECT_EQ(early.schema.getChildNode(early.schema.rootNode, "branch"), early.branch);
    EXPECT_STREQ(early.schema.getChildNode(early.branch, "leaf")->getName(), "leaf");
}
