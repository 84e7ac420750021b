// What select paths reach.

#include <gtest/gtest.h>

#include <climits>

#include "tests/document/store.h"
#include "tests/support/incidents.h"

namespace {

class Select : public testing::Test {
protected:
    IncidentLog log;
};

// A chain of branches "a" of that depth, as text.
std::string chain(int depth) {
    std::string text = "a:int";
    for (int i = 1; i < depth; ++i) text = "a{" + text + "}";
    return text;
}

std::string repeated(char const* piece, int count) {
    std::string text;
    for (int i = 0; i < count; ++i) text += piece;
    return text;
}

} // namespace

TEST_F(Select, AStarSelectsEveryChildOfTheRoot) {
    Store store("b*2{x:int} c*3:int a{}");
    EXPECT_EQ(store.select("*"), "b[1]@0 b[2]@1 c[1]@0 c[2]@1 c[3]@2 a[1]@0 ");
    EXPECT_EQ(store.select("/*"), store.select("*"));
}

TEST_F(Select, NamesReachTheirOccurrencesInOrder) {
    Store store("a*2{b*3:int c*2{d:int}} e:int");
    struct {
        char const* path;
        char const* results;
    } const cases[] = {
        {"e", "e[1]@0 "},
        {"a", "a[1]@0 a[2]@1 "},
        {"/a", "a[1]@0 a[2]@1 "},
        {"a/b", "a/b[1]@0 a/b[2]@1 a/b[3]@2 a/b[1]@3 a/b[2]@4 a/b[3]@5 "},
        {"a/b[2]", "a/b[2]@1 a/b[2]@4 "},
        {"a[2]/b", "a/b[1]@3 a/b[2]@4 a/b[3]@5 "},
        {"a[2]/b[3]", "a/b[3]@5 "},
        {"a[2]/c[2]/d", "a/c/d[1]@3 "},
        {"a/c/d", "a/c/d[1]@0 a/c/d[1]@1 a/c/d[1]@2 a/c/d[1]@3 "},
        {"a[ 2 ]", "a[2]@1 "},
        {"a[3]", ""},
        {"a[2147483647]", ""},
        {"a/b[4]", ""},
        {"a[3]/b", ""},
        {"a/b[0]", ""},
        {"a/b[x]", ""},
        {"a[2", ""},
        {"A", ""},
        {"b", ""},
        {"a/e", ""},
        {"e/*", ""},
        {"e/x", ""},
        {"a/b/*", ""},
        {"a/", ""},
        {"phone/a", ""},
        {"", ""},
        {"/", ""},
        {"//", ""},
        {"///a", ""},
        {"a///b", ""},
        {"a[1]b[2]", "a/b[2]@1 "},
    };
    for (auto const& [path, results] : cases) {
        EXPECT_EQ(store.select(path), results) << "path " << path;
    }
}

TEST_F(Select, ANullPathSelectsNothing) {
    Store store("a:int");
    EXPECT_EQ(store.select(nullptr), "");
}

TEST_F(Select, ThePathMayBeAString) {
    Store store("a*2{b:int}");
    EXPECT_EQ(store.select(static_cast<ZorString*>(Text("a[2]/b"))), "a/b[1]@1 ");
    EXPECT_EQ(store.select(static_cast<ZorString*>(Text(""))), "");
}

// A wildcard before the last step passes only through branches.
TEST_F(Select, AWildcardInTheMiddlePassesThroughBranches) {
    Store store("a{x:int y{c:int} z{c:int d:int}} c:int");
    EXPECT_EQ(store.select("a/*/c"), "a/y/c[1]@0 a/z/c[1]@0 ");
    EXPECT_EQ(store.select("a/*"), "a/x[1]@0 a/y[1]@0 a/z[1]@0 ");
    EXPECT_EQ(store.select("*/*/*"), "a/y/c[1]@0 a/z/c[1]@0 a/z/d[1]@0 ");
    EXPECT_EQ(store.select("*/c"), "");
}

TEST_F(Select, AWildcardWithPredicateTakesThatOccurrenceOfEveryChild) {
    Store store("a*3{x:int} b*2:int c:int");
    EXPECT_EQ(store.select("*[2]"), "a[2]@1 b[2]@1 ");
    EXPECT_EQ(store.select("*[3]/x"), "a/x[1]@2 ");
}

TEST_F(Select, ANameThatBeginsWithAStarIsAWildcard) {
    Store store("a:int b{c:int}");
    for (char const* const path : {"*x", "**", "*a", "* "}) {
        EXPECT_EQ(store.select(path), "a[1]@0 b[1]@0 ") << path;
    }
    EXPECT_EQ(store.select("*x/*y"), "b/c[1]@0 ");
    EXPECT_EQ(store.select("a*"), "");
}

TEST_F(Select, TwoSlashesSearchAtAnyDepth) {
    Store store("c:int a{c:int b{c:int d{c:int}}} e{f{g:int}}");
    EXPECT_EQ(store.select("//c"), "c[1]@0 a/c[1]@0 a/b/c[1]@0 a/b/d/c[1]@0 ");
    EXPECT_EQ(store.select("a//c"), "a/c[1]@0 a/b/c[1]@0 a/b/d/c[1]@0 ");
    EXPECT_EQ(store.select("a/b//c"), "a/b/c[1]@0 a/b/d/c[1]@0 ");
    EXPECT_EQ(store.select("//b/c"), "a/b/c[1]@0 ");
    EXPECT_EQ(store.select("//b//c"), "a/b/c[1]@0 a/b/d/c[1]@0 ");
    EXPECT_EQ(store.select("//g"), "e/f/g[1]@0 ");
    EXPECT_EQ(store.select("//x"), "");
}

// A branch that matches comes first, then what is found below it.
TEST_F(Select, ADescendantSearchGoesOnBelowItsMatches) {
    Store store("a*2{a{b:int}}");
    EXPECT_EQ(store.select("//a"), "a[1]@0 a[2]@1 a/a[1]@0 a/a[1]@1 ");
    EXPECT_EQ(store.select("//a[2]"), "a[2]@1 ");
    EXPECT_EQ(store.select("//*"), "a[1]@0 a[2]@1 a/a[1]@0 a/a/b[1]@0 a/a[1]@1 a/a/b[1]@1 ");
}

// Below one branch the search ends at its first occurrence under which nothing was found. The
// schema alone decides what is found, so that all occurrences of a branch have matches or none.
TEST_F(Select, ADescendantSearchFindsTheMatchesBelowEveryOccurrence) {
    Store store("a*3{b*2:int} c*2{d*2{e:int}} f*0{b:int}");
    EXPECT_EQ(store.select("//b"), "a/b[1]@0 a/b[2]@1 a/b[1]@2 a/b[2]@3 a/b[1]@4 a/b[2]@5 ");
    EXPECT_EQ(store.select("//b[2]"), "a/b[2]@1 a/b[2]@3 a/b[2]@5 ");
    EXPECT_EQ(store.select("//b[3]"), "");
    EXPECT_EQ(store.select("//e"), "c/d/e[1]@0 c/d/e[1]@1 c/d/e[1]@2 c/d/e[1]@3 ");
}

// Without that short cut this would visit 2^45 occurrences.
TEST_F(Select, ADescendantSearchForNothingEndsAtTheFirstOccurrence) {
    Store store("a*32767{b*32767{c*32767{}}} d:int");
    EXPECT_EQ(store.select("//x"), "");
    EXPECT_EQ(store.select("//d"), "d[1]@0 ");
}

// An intermediate descendant step reports branches only, a plain one also data nodes, which lead
// nowhere.
TEST_F(Select, DataNodesEndAPath) {
    Store store("a:int b{a{c:int}}");
    EXPECT_EQ(store.select("//a/c"), "b/a/c[1]@0 ");
    EXPECT_EQ(store.select("a/c"), "");
    EXPECT_EQ(store.select("a//c"), "");
    EXPECT_EQ(store.select("a/*"), "");
}

TEST_F(Select, KeepsDuplicates) {
    Store store("a{b{c:int}}");
    EXPECT_EQ(store.select("//*//c"), "a/b/c[1]@0 a/b/c[1]@0 ");
}

TEST_F(Select, NodesWithoutOccurrencesAreNotSelected) {
    Store store("a*0:int b*-1{c:int} d*-2{e*-2:int} f:int");
    EXPECT_EQ(store.select("*"), "f[1]@0 ");
    EXPECT_EQ(store.select("//*"), "f[1]@0 ");
    for (char const* const path : {"a", "a[1]", "b", "b/c", "b[1]/c", "//c", "d/e", "//e"}) {
        EXPECT_EQ(store.select(path), "") << path;
    }
}

TEST_F(Select, TakesUpTo31Steps) {
    Store store(chain(33));
    EXPECT_EQ(store.select(repeated("/a", 31).c_str()), repeated("a/", 30) + "a[1]@0 ");
    EXPECT_EQ(store.select(repeated("/a", 32).c_str()), "");
    EXPECT_EQ(store.select(repeated("/a", 33).c_str()), "");
    EXPECT_EQ(store.select(repeated("/*", 31).c_str()), repeated("a/", 30) + "a[1]@0 ");
    EXPECT_EQ(store.select(repeated("[1]", 31).c_str()), "");
}

TEST_F(Select, NamesAreTakenAsTheyAre) {
    Shape shape("");
    ZorSchemaNode* const empty = shape.schema.makeBranchNode(shape.root(), "", 2);
    shape.schema.makeDataNode(empty, "", 1, shape.schema.getDataType("int"), nullptr);
    shape.schema.makeDataNode(shape.root(), " a", 1, shape.schema.getDataType("int"), nullptr);
    shape.schema.makeDataNode(shape.root(), "true", 1, shape.schema.getDataType("int"), nullptr);
    ZorDocument document(&shape.schema, "document");
    EXPECT_EQ(describeSelection(document, " a"), " a[1]@0 ");
    EXPECT_EQ(describeSelection(document, "true"), "true[1]@0 ");
    EXPECT_EQ(describeSelection(document, "a"), "");
    EXPECT_EQ(describeSelection(document, "/"), "[1]@0 [2]@1 ");
    EXPECT_EQ(describeSelection(document, "[2]"), "[2]@1 ");
    EXPECT_EQ(describeSelection(document, "[2]/"), "[1]@1 ");
    EXPECT_EQ(describeSelection(document, ""), "");
}

// Branches without items need no cells and may occur more often than 32 bits count.
TEST_F(Select, FlatOccurrencesStopAtTheEndOf32Bits) {
    Store store("a*32767{b*32767{c*32767{d*2{} e*0:int}}}");
    EXPECT_EQ(store.select("a[32767]/b[32767]"), "a/b[32767]@1073676288 ");
    EXPECT_EQ(store.select("a[32767]/b[32767]/c[32767]"), "a/b/c[32767]@2147483647 ");
    EXPECT_EQ(store.select("a[32767]/b[32767]/c[32767]/d"), "a/b/c/d[1]@2147483647 "
                                                            "a/b/c/d[2]@2147483647 ");
}

TEST_F(Select, ANewSetStandsAtItsFirstResult) {
    Store store("a*2:int=5");
    std::unique_ptr<ZorResultSet> const results(store.document.select("a"));
    EXPECT_EQ(results->document, &store.document);
    EXPECT_EQ(results->getResultCount(), 2U);
    EXPECT_EQ(results->cursor, 0U);
    EXPECT_EQ(results->head, nullptr); // finalized
    EXPECT_FALSE(results->eof());

    std::unique_ptr<ZorResultSet> const none(store.document.select("x"));
    EXPECT_EQ(none->getResultCount(), 0U);
    EXPECT_TRUE(none->eof());
}

// One step by hand, as select takes it.
TEST_F(Select, FindNodeAppliesOneStepToEveryEntry) {
    Store store("a*2{b*2:int c:int}");
    Text const name("b");
    Text const other("x");
    XPathStep steps[] = {{0, other, -1}, {0, name, 1}};
    ZorResultSet context(&store.document);
    context.addResult(0, store["a"], 1);
    context.addResult(0, store["a"], 0);
    ZorResultSet result(&store.document);
    result.addResult(0, store["a"], 0); // is kept
    EXPECT_NE(store.document.findNode(&result, &context, 1, steps, 2), 0);
    EXPECT_EQ(store.document.findNode(&result, &context, 0, steps, 2), 0);
    result.finalize();
    EXPECT_EQ(describe(result), "a[1]@0 a/b[2]@3 a/b[2]@1 ");
    EXPECT_EQ(context.getResultCount(), 2U);
}

// Before the last step, wildcards and descendant searches report branches only.
TEST_F(Select, FindNodeReportsDataNodesInTheLastStepOnly) {
    Store store("a:int b{a:int c{}}");
    Text const star("*");
    Text const name("a");
    XPathStep steps[] = {{0, star, -1}, {1, star, -1}, {1, name, -1}, {0, name, -1}};
    struct {
        int step;
        int count;
        char const* results;
    } const cases[] = {
        {0, 4, "b[1]@0 "},
        {0, 1, "a[1]@0 b[1]@0 "},
        {1, 4, "b[1]@0 b/c[1]@0 "},
        {1, 2, "a[1]@0 b[1]@0 b/a[1]@0 b/c[1]@0 "},
        {2, 4, ""},
        {2, 3, "a[1]@0 b/a[1]@0 "},
        {3, 5, "a[1]@0 "}, // a plain step, though not the last, reports any node
    };
    for (auto const& [step, count, results] : cases) {
        ZorResultSet context(&store.document);
        context.addResult(0, store.shape.root(), 0);
        ZorResultSet result(&store.document);
        EXPECT_EQ(store.document.findNode(&result, &context, step, steps, count) != 0,
                  *results != '\0');
        result.finalize();
        EXPECT_EQ(describe(result), results) << step << " of " << count;
    }
}
