// Paths on the schema tree.

#include <gtest/gtest.h>

#include "tests/schema/dull_find.h"
#include "tests/schema/shape.h"
#include "tests/support/incidents.h"

namespace {

class NodePath : public testing::Test {
protected:
    IncidentLog log;
};

// The paths of the nodes in a list, which is deleted.
std::string takePaths(ZorListNode* list) {
    std::string paths;
    for (ZorListNode const* at = list; at; at = at->next) {
        paths += pathOf(static_cast<ZorSchemaNode*>(at->value)) + ' ';
    }
    zor_listDelete(list);
    return paths;
}

std::string found(ZorSchemaNode* from, std::string const& path) {
    ZorListNode* list = nullptr;
    from->findSubNodes(&list, path.c_str(), -1);
    return takePaths(list);
}

ZorSchemaNode* findOne(ZorSchemaNode* from, char const* path) {
    return from->findSubNode(Text(path));
}

std::string randomPath(std::mt19937& random) {
    static char const* const pieces[] = {"a", "b",  "c",  "d", "*",  "/",  "/",   "/",
                                         "/", "//", "//", "a", "/*", "//", "///", "ab"};
    std::string path;
    int const count = std::uniform_int_distribution<int>(0, 7)(random);
    for (int i = 0; i < count; ++i) {
        path += pieces[std::uniform_int_distribution<std::size_t>(0, 15)(random)];
    }
    return path;
}

} // namespace

TEST_F(NodePath, NamesNodesStepByStep) {
    Shape const shape("a{b{c:int} d:int} e:int");
    struct {
        char const* path;
        char const* found;
    } const cases[] = {
        {"a", "a "},      {"/a", "a "},        {"a/b", "a/b "},
        {"/a/b", "a/b "}, {"a/b/c", "a/b/c "}, {"*", "a e "},
        {"/*", "a e "},   {"a/*", "a/b a/d "}, {"*/*", "a/b a/d "},
        {"*/b", "a/b "},  {"*/*/*", "a/b/c "}, {"A", ""},
        {"b", ""},        {"aa", ""},          {"", ""},
        {"/", ""},        {"//", ""},          {"a/", ""},
        {"a/b/", ""},     {"a//", ""},         {"///a", ""},
        {"a///b", ""},    {"*x", ""},          {"a*", ""},
        {"a[1]", ""},     {" a", ""},          {"e/*", ""},
        {"e/x", ""},      {"a/b/c/*", ""},     {"phone", ""},
        {"phone/a", ""},
    };
    for (auto const& [path, expected] : cases) {
        EXPECT_EQ(found(shape.root(), path), expected) << "path " << path;
    }
}

TEST_F(NodePath, IsRelativeToTheNode) {
    Shape const shape("a{b{c:int}} d:int");
    EXPECT_EQ(found(shape["a"], "b/c"), "a/b/c ");
    EXPECT_EQ(found(shape["a"], "/b/c"), "a/b/c ");
    EXPECT_EQ(found(shape["a"], "a"), "");
    EXPECT_EQ(found(shape["d"], "*"), "");
    EXPECT_EQ(found(shape["d"], "//*"), "");
}

// "//" reaches children and grandchildren, and no deeper.
TEST_F(NodePath, TwoSlashesReachGrandchildren) {
    Shape const shape("x:int a{x{x{x:int}} b{x:int}}");
    EXPECT_EQ(found(shape.root(), "//x"), "x a/x ");
    EXPECT_EQ(found(shape["a"], "//x"), "a/x a/x/x a/b/x ");
    EXPECT_EQ(found(shape.root(), "a//x"), "a/x a/x/x a/b/x ");
    EXPECT_EQ(found(shape.root(), "//*"), "x a a/x a/b ");

    Shape const deep("a{b{x:int}}");
    EXPECT_EQ(found(deep.root(), "//x"), "");
    EXPECT_EQ(found(deep.root(), "//b"), "a/b ");
    EXPECT_EQ(found(deep.root(), "//b//x"), "a/b/x ");
}

TEST_F(NodePath, KeepsDuplicates) {
    Shape const shape("a{b{c:int}}");
    EXPECT_EQ(found(shape.root(), "//*//c"), "a/b/c a/b/c ");
}

TEST_F(NodePath, ReadsOnlyTheGivenLength) {
    Shape const shape("a{b:int} ab:int");
    struct {
        char const* path;
        int length;
        char const* found;
    } const cases[] = {
        {"a/b", -1, "a/b "}, {"a/b", 3, "a/b "},  {"a/b", 1, "a "}, {"a/b", 2, ""},
        {"a/b", 0, ""},      {"abc", 2, "ab "},   {"abc", 3, ""},   {"///a", 1, ""},
        {"*x", 1, "a ab "},  {"//bx", 3, "a/b "}, {"", -1, ""},
    };
    for (auto const& [path, length, expected] : cases) {
        ZorListNode* list = nullptr;
        shape.root()->findSubNodes(&list, path, length);
        EXPECT_EQ(takePaths(list), expected) << path << " cut to " << length;
    }
}

TEST_F(NodePath, AppendsToAListThatIsThere) {
    Shape const shape("a:int b:int");
    ZorListNode* list = nullptr;
    for (char const* const path : {"b", "*", "none", "", "a///b", "a"}) {
        shape.root()->findSubNodes(&list, path, -1);
    }
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->next->prev, list);
    EXPECT_EQ(takePaths(list), "b a b a ");
}

TEST_F(NodePath, AgreesWithADullWalk) {
    std::mt19937 random(7);
    int withResults = 0;
    for (int round = 0; round < 150; ++round) {
        std::string const text = randomShape(random, 4, {1, 2, 0, -1});
        Shape const shape(text);
        for (int i = 0; i < 60; ++i) {
            std::string const path = randomPath(random);
            std::string expected;
            for (ZorSchemaNode const* const node : dullFind(shape.root(), path)) {
                expected += pathOf(node) + ' ';
            }
            ASSERT_EQ(found(shape.root(), path), expected) << path << " in " << text;
            withResults += !expected.empty();
        }
    }
    EXPECT_GT(withResults, 500);
}

TEST_F(NodePath, FindsTheOneNode) {
    Shape const shape("a{b{c:int}} d:int");
    EXPECT_EQ(findOne(shape.root(), "a/b"), shape["a/b"]);
    EXPECT_EQ(findOne(shape.root(), "/a/b"), shape["a/b"]);
    EXPECT_EQ(findOne(shape.root(), "d"), shape["d"]);
    EXPECT_EQ(findOne(shape["a"], "*"), shape["a/b"]);
    Shape const single("only:int");
    EXPECT_EQ(findOne(single.root(), "*"), single["only"]);
    EXPECT_EQ(findOne(shape.root(), "//b"), shape["a/b"]);
}

TEST_F(NodePath, ANullPathFindsNothingSilently) {
    Shape const shape("a:int");
    EXPECT_EQ(shape.root()->findSubNode(nullptr), nullptr);
    ZorListNode* list = nullptr;
    shape.root()->findSubNodes(&list, nullptr, -1);
    EXPECT_EQ(list, nullptr);
}

TEST_F(NodePath, ReportsWhyThereIsNotOneNode) {
    Shape const shape("a{b:int} c:int");
    struct {
        char const* path;
        char const* incident;
    } const cases[] = {
        {"", "3 xpath must not be empty\n"},    {"x", "3 path (x) not found\n"},
        {"a/b/", "3 path (a/b/) not found\n"},  {"a///b", "3 path (a///b) not found\n"},
        {"c/x", "3 path (c/x) not found\n"},    {"/", "3 path (/) not found\n"},
        {" ", "3 path ( ) not found\n"},        {"*", "3 path (*) is ambiguous\n"},
        {"//*", "3 path (//*) is ambiguous\n"},
    };
    for (auto const& [path, incident] : cases) {
        EXPECT_EQ(findOne(shape.root(), path), nullptr) << path;
        EXPECT_EQ(log.take(), incident) << path;
    }
}

// An empty segment names nothing, not even a node without name.
TEST_F(NodePath, ANodeWithoutNameIsFoundByStarsOnly) {
    Shape shape("");
    shape.schema.makeBranchNode(shape.schema.makeBranchNode(shape.root(), "", 1), "", 1);
    ASSERT_EQ(nodesBelow(shape.root()).size(), 2U);
    for (char const* const path : {"/", "//", "*/", "*//"}) {
        EXPECT_EQ(found(shape.root(), path), "") << path;
    }
    EXPECT_EQ(findOne(shape.root(), "*"), shape.root()->firstChild);
    EXPECT_EQ(findOne(shape.root(), "*/*"), shape.root()->firstChild->firstChild);
}

// The same node found twice is ambiguous, too.
TEST_F(NodePath, ANodeFoundTwiceIsAmbiguous) {
    Shape const shape("a{b{c:int}}");
    EXPECT_EQ(findOne(shape.root(), "//*//c"), nullptr);
    EXPECT_EQ(log.take(), "3 path (//*//c) is ambiguous\n");
}
