// Where <branch> and <item> put their nodes: occurrences, parents, order and depth.

#include <gtest/gtest.h>

#include <string>

#include "tests/collection/import_store.h"
#include "zor/collection.h"

namespace {

constexpr char kOccurrences[] = "value of occurrences must be an integer greater than 0";
constexpr char kNoParent[] = "Can't find specified parent node";
constexpr char kNoBranch[] = "Could Not Branch Node with supplied parameters";
constexpr char kNoItem[] = "Could Not item with supplied parameters";

} // namespace

TEST(DefinitionNode, OccurrencesAreReadAsAtoiDoes) {
    struct {
        char const* text;
        int expected;
    } const rows[] = {
        {"1", 1},
        {"2", 2},
        {"007", 7},
        {"+4", 4},
        {" 5", 5},
        {"6 ", 6},
        {"3x", 3},
        {"3.9", 3},
        {"1e3", 1},
        {"&#10;8", 8},
        {"32767", 32767},
        // 16 bits of the number
        {"32768", -32768},
        {"65535", -1},
        {"65536", 0},
        {"65537", 1},
        {"70000", 4464},
        {"2147483647", -1},
        {"99999999999999999999", -1},
    };
    for (auto const& row : rows) {
        ImportStore store;
        std::string const attributes = std::string("name='n' occurrences='") + row.text + '\'';
        EXPECT_EQ(store.define("<branch " + attributes + "/>"), "") << row.text;
        ZorSchemaNode const* node =
            store.collection.getSchema("s")->getRootNode()->getFirstChildNode();
        EXPECT_EQ(node->getOccurrences(), row.expected) << "branch " << row.text;
        EXPECT_EQ(store.import("<phone><schema name='t'><item type='int' " + attributes +
                               "/></schema></phone>"),
                  "")
            << row.text;
        node = store.collection.getSchema("t")->getRootNode()->getFirstChildNode();
        EXPECT_EQ(node->getOccurrences(), row.expected) << "item " << row.text;
    }
}

TEST(DefinitionNode, OccurrencesBelowOneAreRefused) {
    for (char const* const text : {"", " ", "0", "00", "-1", "-2", "x", "x3", "-", "+", "0x10",
                                   "- 3", "--3", "-99999999999999999999"}) {
        for (char const* const element : {"branch", "item type='int'"}) {
            ImportStore store;
            EXPECT_EQ(
                store.define(std::string("<") + element + " name='n' occurrences='" + text + "'/>"),
                errorAt(2, 0, kOccurrences))
                << element << " '" << text << "'";
            EXPECT_EQ(store.shape(), "") << text;
        }
    }
}

// Only a refused text keeps the node from being made; one that wraps makes a node without cells.
TEST(DefinitionNode, OccurrencesThatWrapBelowOneMakeNoCells) {
    ImportStore store;
    EXPECT_EQ(store.define("<item name='a' type='int' default='1' occurrences='65536'/>"
                           "<item name='b' type='int' default='2' occurrences='65535'/>"
                           "<branch name='c' occurrences='65536'/>"
                           "<item name='d' type='int' default='3' parent='c' occurrences='9'/>"
                           "<branch name='e' occurrences='32768'/>"
                           "<item name='f' type='int' default='4' parent='e' occurrences='40000'/>"
                           "<item name='g' type='int' default='5'/>"),
              "");
    EXPECT_EQ(store.shape(), "a*0:int=1 b*-1:int=2 c*0{d*9:int=3} e*-32768{f*-25536:int=4} "
                             "g:int=5");
    EXPECT_EQ(store.collection.getSchema("s")->getRootNode()->countRequiredValueNodes(), 1);
    EXPECT_EQ(store.fill(""), "");
    EXPECT_EQ(store.values(), "a= b= c/d= e/f= g=5");
}

TEST(DefinitionNode, ParentIsAPathOfNames) {
    for (char const* const path :
         {"net/key", "/net/key", "//key", "/*/key", "net//key", "//net/*"}) {
        ImportStore store;
        EXPECT_EQ(store.define("<branch name='net'/><branch name='key' parent='net'/>"
                               "<item name='i' type='int' parent='" +
                               std::string(path) + "'/>"),
                  "")
            << path;
        EXPECT_EQ(store.shape(), "net{key{i:int}}") << path;
    }
}

// 256 levels of nodes are as deep as it goes. The parent is looked up first.
TEST(DefinitionNode, NodesNestTo256Levels) {
    IncidentLog log;
    ZorCollection collection("phone");
    std::string text = "<phone><schema name='s'>";
    std::string path;
    for (int level = 1; level <= 256; ++level) {
        text += "<branch name='b'" + (path.empty() ? "" : " parent='" + path + '\'') + "/>";
        path += "/b";
    }
    text += "<item name='at255' type='int' parent='" + path.substr(2) + "'/>\n";
    text += "<item name='at256' type='int' parent='" + path + "' x=''/>\n";
    text += "<branch name='at256' parent='" + path + "' x=''/>\n";
    text += "<branch name='at257' parent='" + path + "/b' x=''/>\n";
    collection.importXML((text + "</schema></phone>").c_str());
    std::string const warning = "attribute not valid in this context (x)";
    EXPECT_EQ(log.take(), warningAt(2, 0, warning) + errorAt(2, 0, "nested too deeply") +
                              warningAt(3, 0, warning) + errorAt(3, 0, "nested too deeply") +
                              warningAt(4, 0, warning) +
                              plainError("path (" + path + "/b) not found") +
                              errorAt(4, 0, kNoParent + path + "/b"));
    ZorSchemaNode const* node = collection.getSchema("s")->getRootNode();
    int depth = 0;
    while (node->getFirstChildNode()) {
        node = node->getFirstChildNode();
        ++depth;
    }
    EXPECT_EQ(depth, 256);
    EXPECT_TRUE(node->isBranchNode());
    EXPECT_STREQ(node->getParentNode()->getLastChildNode()->getName(), "at255");
}

TEST(DefinitionNode, NodesAreMadeInTheOrderOfTheirElements) {
    ImportStore store;
    EXPECT_EQ(store.define("<item name='z' type='int'/><branch name='m'/>"
                           "<item name='a' type='bool'/><item name='y' type='int' parent='m'/>"
                           "<branch name='b' parent='m' occurrences='3'/>"),
              "");
    EXPECT_EQ(store.shape(), "z:int m{y:int b*3{}} a:bool");
}

// A parent must be closed before the node that names it.
TEST(DefinitionNode, ParentThatComesLaterIsNotFound) {
    ImportStore store;
    EXPECT_EQ(store.define("<branch name='key' parent='net' x='1'/>\n"
                           "<branch name='net' x='1'/>"),
              warningAt(2, 0, "attribute not valid in this context (x)") +
                  plainError("path (net) not found") +
                  errorAt(2, 0, "Can't find specified parent nodenet") +
                  warningAt(3, 0, "attribute not valid in this context (x)"));
    EXPECT_EQ(store.shape(), "net{}");
}

TEST(DefinitionNode, SameNameUnderAnotherParentIsFine) {
    ImportStore store;
    EXPECT_EQ(store.define("<branch name='n'/><branch name='n' parent='n'/>"
                           "<item name='n' type='int' parent='n/n'/>"),
              "");
    EXPECT_EQ(store.shape(), "n{n{n:int}}");
}

// A document that was made while the schema was still open freezes it.
TEST(DefinitionNode, SchemaWithADocumentTakesNoMoreNodes) {
    IncidentLog log;
    ZorCollection collection("phone");
    ZorIncidentContext incidents("", nullptr, nullptr);
    ZorXmlParser parser(&collection, &incidents);
    parser.parse("<phone><schema name='s'><item name='a' type='int'/>\n", -1, 0);
    ASSERT_NE(collection.makeDocument("s", "d"), nullptr);
    parser.parse("<branch name='b'>\n</branch>", -1, 0);
    EXPECT_EQ(log.take(),
              plainError("zor_branchNodeMake(b): Cannot modify schema while documents exist") +
                  errorAt(3, 0, kNoBranch));
    incidents.setMaxIncidentSeverity(severityNone);
    parser.parse("\n<item name='c' type='int'>\n</item>", -1, 0);
    EXPECT_EQ(log.take(),
              plainError("zor_dataNodeMake(c): Cannot modify schema while documents exist") +
                  errorAt(5, 0, kNoItem));
    EXPECT_EQ(shapeOf(collection.getSchema("s")->getRootNode()), "a:int");
}
