// Paths that reach a node over and over, or occurrences without end.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/hostile/flood.h"
#include "tests/support/allocations.h"
#include "tests/support/text.h"
#include "zor/collection.h"

namespace {

constexpr long kMegabyte = 1048576;

// A document "d" whose branches are all called "b", each inside the one before; the innermost has
// an item "i".
class PathLimit : public testing::Test {
protected:
    ZorDocument* nested(int depth, short occurrences, bool withItem = true) {
        ZorSchema* const schema = collection.makeSchema("s");
        ZorSchemaNode* parent = schema->getRootNode();
        for (int i = 0; i < depth; ++i) parent = schema->makeBranchNode(parent, "b", occurrences);
        if (withItem) schema->makeDataNode(parent, "i", 1, schema->getDataType("int"), "7");
        return collection.makeDocument("s", "d");
    }

    static unsigned long answers(ZorDocument* document, std::string const& path) {
        return std::unique_ptr<ZorResultSet>(document->select(path.c_str()))->getResultCount();
    }

    // The path asked for, refused by this incident.
    static std::string refused(std::string const& path) {
        return "3 path (" + path + ") reaches too many nodes\n";
    }

    ZorSchemaNode* find(std::string const& path) {
        return collection.getSchema("s")->getRootNode()->findSubNode(Text(path));
    }

    IncidentLog log;
    ZorCollection collection{"phone"};
};

} // namespace

// A path of steps behind "//" reaches the same nodes again and again, as many as there are ways.
TEST_F(PathLimit, WaysToANodeAreAllFound) {
    ZorDocument* const document = nested(20, 1);
    EXPECT_EQ(answers(document, "//b"), 20U);
    EXPECT_EQ(answers(document, "//b//b"), 190U);
    EXPECT_EQ(answers(document, "//b//b//b//b//b//i"), 15504U); // 20 over 5
}

TEST_F(PathLimit, WaysWithoutEndAreRefused) {
    ZorDocument* const document = nested(200, 1);
    PeakBytes const peak;
    std::string path;
    for (int i = 0; i < 31; ++i) path += "//b";
    EXPECT_EQ(answers(document, path), 0U);
    EXPECT_EQ(log.take(), refused(path));
    EXPECT_LT(peak.count(), 16 * kMegabyte);
    EXPECT_EQ(answers(document, "//i"), 1U) << "the next path is none the worse";
}

// The same where only the looking takes long: nothing is found in the end.
TEST_F(PathLimit, SearchesWithoutEndAreRefused) {
    ZorDocument* const document = nested(200, 1);
    EXPECT_EQ(answers(document, "//b//b//nothing"), 0U);
    EXPECT_EQ(log.take(), "");
    EXPECT_EQ(answers(document, "//b//b//b//nothing"), 0U);
    EXPECT_EQ(log.take(), refused("//b//b//b//nothing"));
}

// A thousand million occurrences, in none of which there is anything.
TEST_F(PathLimit, OccurrencesOfNothingAreRefused) {
    ZorDocument* const document = nested(2, 32767, false);
    PeakBytes const peak;
    EXPECT_EQ(answers(document, "b"), 32767U);
    EXPECT_EQ(answers(document, "b/b[1]"), 32767U);
    EXPECT_EQ(log.take(), "");
    EXPECT_EQ(answers(document, "b/b"), 0U);
    EXPECT_EQ(log.take(), refused("b/b"));
    EXPECT_EQ(answers(document, "//*"), 0U);
    EXPECT_EQ(log.take(), refused("//*"));
    EXPECT_LT(peak.count(), 16 * kMegabyte);
}

// What has cells is found, however much it is.
TEST_F(PathLimit, AllCellsAreFound) {
    ZorDocument* const document = nested(2, 500); // 250,000 cells
    EXPECT_EQ(answers(document, "b/b/i"), 250000U);
    EXPECT_EQ(answers(document, "//*"), 500U + 250000U + 250000U);
    EXPECT_EQ(log.take(), "");
}

// A path on the tree itself doubles with every step; whether it is one node is known all the same.
TEST_F(PathLimit, ANodeIsFoundAmongWaysWithoutEnd) {
    nested(200, 1);
    PeakBytes const peak;
    std::string deep;
    for (int i = 0; i < 100; ++i) deep += "//*";
    EXPECT_EQ(find(deep), nullptr);
    EXPECT_EQ(log.take(), "3 path (" + deep + ") is ambiguous\n");
    std::string exact;
    for (int i = 0; i < 201; ++i) exact += "//*"; // children only, all the way
    EXPECT_NE(find(exact), nullptr);
    EXPECT_EQ(find(exact + "//*"), nullptr);
    EXPECT_EQ(log.take(), "3 path (" + exact + "//*) not found\n");
    EXPECT_LT(peak.count(), kMegabyte);
}

// But not where there is too much to look at.
TEST_F(PathLimit, ANodeAmongTooManyIsRefused) {
    nested(1200, 1);
    std::string path;
    for (int i = 0; i < 1100; ++i) path += "//*";
    EXPECT_EQ(find(path), nullptr);
    EXPECT_EQ(log.take(), refused(path));
}

TEST_F(PathLimit, AListOfNodesWithoutEndIsRefused) {
    nested(200, 1);
    std::string path;
    for (int i = 0; i < 100; ++i) path += "//*";
    ZorListNode* list = nullptr;
    PeakBytes const peak;
    collection.getSchema("s")->getRootNode()->findSubNodes(&list, path.c_str(), -1);
    EXPECT_EQ(list, nullptr);
    EXPECT_EQ(log.take(), refused(path));
    EXPECT_LT(peak.count(), 256 * kMegabyte);
}

// Documents that one file asks for, a few bytes each.
TEST_F(PathLimit, DocumentsOfOneImportShareTheirCells) {
    std::string const definition =
        "<phone><schema name='s'><branch name='b' occurrences='512'/>"
        "<item name='i' type='int' occurrences='16384' parent='b'/></schema>"; // 8,388,608 cells
    std::string const text =
        definition + "<document name='a' schema='s'/>" +
        "<document name='b' schema='s'/><document name='c' schema='s'/></phone>";
    collection.importXML(text.c_str());
    EXPECT_NE(collection.getDocument("b"), nullptr);
    EXPECT_EQ(collection.getDocument("c"), nullptr);
    EXPECT_EQ(log.take(),
              "3 documents of one import have too many values\n"
              "3 {zor_XMLParse: line 1, column 189 }problem resolving document and schema name\n");
    collection.importXML("<phone><document name='c' schema='s'/></phone>");
    EXPECT_NE(collection.getDocument("c"), nullptr) << "the next import counts anew";
    EXPECT_EQ(log.take(), "");
}
