// The elements inside a document: which cell each one fills, and what it is refused for.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "collection/import_rule_info.h"
#include "tests/collection/import_store.h"
#include "tests/xml/rule_calls.h"
#include "zor/collection.h"

namespace {

constexpr char kPositive[] = "\"occurrence\" attribute must be a positive integer";
std::string const kOutOfRange = plainError("setStringNodeValue: occurrence is out of range");

std::string tooMany(char const* name) {
    return std::string("Too many occurrences of element <") + name + '>';
}

// One document of schema "s": what its content raises and leaves.
struct Filling {
    char const* content;
    std::string incidents;
    char const* values;
};

void expectFillings(std::string const& schema, std::vector<Filling> const& rows) {
    for (Filling const& row : rows) {
        ImportStore store;
        EXPECT_EQ(store.define(schema), "");
        EXPECT_EQ(store.fill(row.content), row.incidents) << row.content;
        EXPECT_EQ(store.values(), row.values) << row.content;
    }
}

std::string const kThree = "<item name='a' type='string' occurrences='3'/>";
std::string const kTwoLines = "<branch name='line' occurrences='2'/>"
                              "<item name='key' type='string' occurrences='3' parent='line'/>";

} // namespace

TEST(ImportRuleInfo, NewRecordIsZeroApartFromItsNode) {
    ImportRuleInfo const none(nullptr);
    EXPECT_EQ(none.definitionNode, nullptr);
    EXPECT_EQ(none.currentParentIndex, 0U);
    EXPECT_EQ(none.occurrenceInParent, 0U);
    EXPECT_EQ(none.valueIndex, 0U);
    ZorSchemaNode node(ZorSchemaNode::BRANCH_NODE, "n");
    ImportRuleInfo const some(&node);
    EXPECT_EQ(some.definitionNode, &node);
}

TEST(ImportRuleInfo, IsDeletedThroughItsDestructor) {
    struct Noticed : ImportRuleInfo {
        explicit Noticed(bool* whether) : ImportRuleInfo(nullptr), deleted(whether) {}
        ~Noticed() override { *deleted = true; }
        bool* deleted;
    };
    bool deleted = false;
    deleteImportRuleInfo(static_cast<ImportRuleInfo*>(new Noticed(&deleted)));
    EXPECT_TRUE(deleted);
    deleteImportRuleInfo(nullptr);
}

TEST(NodeImport, SuccessiveElementsFillSuccessiveOccurrences) {
    expectFillings(kThree, {{"", "", "a=(null)|(null)|(null)"},
                            {"<a>x</a>", "", "a=x*|(null)|(null)"},
                            {"<a>x</a><a>y</a><a>z</a>", "", "a=x*|y*|z*"},
                            {"<a>x</a><a>y</a><a>z</a>\n<a>q</a>", errorAt(3, 0, tooMany("a")),
                             "a=x*|y*|z*"}});
}

TEST(NodeImport, OccurrenceAttributeMovesToItsCell) {
    expectFillings(
        kThree,
        {{"<a occurrence='2'>y</a>", "", "a=(null)|y*|(null)"},
         {"<a occurrence='2'>y</a><a>z</a>", "", "a=(null)|y*|z*"},
         {"<a occurrence='3'>z</a><a occurrence='1'>x</a><a>y</a>", "", "a=x*|y*|z*"},
         {"<a>x</a><a occurrence='1'>again</a><a>y</a>", "", "a=again*|y*|(null)"},
         {"<a occurrence='3'>z</a>\n<a>q</a>", errorAt(3, 0, tooMany("a")), "a=(null)|(null)|z*"},
         {"<a occurrence='03'>z</a>", "", "a=(null)|(null)|z*"},
         {"<a occurrence='+2'>y</a>", "", "a=(null)|y*|(null)"},
         {"<a occurrence=' 2x'>y</a>", "", "a=(null)|y*|(null)"},
         {"<a occurrence='2.9'>y</a>", "", "a=(null)|y*|(null)"}});
}

TEST(NodeImport, OccurrenceOfZeroIsRefused) {
    for (char const* const text : {"0", "00", "", " ", "x", "x2", "-", "+", "-0"}) {
        ImportStore store;
        EXPECT_EQ(store.define(kThree), "");
        EXPECT_EQ(store.fill(std::string("<a>x</a>\n<a occurrence='") + text + "'>y</a>"),
                  errorAt(3, 0, kPositive))
            << "'" << text << "'";
        EXPECT_EQ(store.values(), "a=x*|(null)|(null)") << "'" << text << "'";
    }
}

// A refused element leaves the counters alone. (The warning lifts the error.)
TEST(NodeImport, RefusedElementCountsForNothing) {
    expectFillings(
        kThree,
        {{"<a>x</a>\n<a occurrence='0'>y</a>\n<a b=''>z</a>",
          errorAt(3, 0, kPositive) + warningAt(4, 0, "attribute not valid in this context (b)"),
          "a=x*|z*|(null)"},
         {"<a occurrence='4'>x</a>\n<a occurrence='2' b=''>y</a>",
          errorAt(2, 0, tooMany("a")) + warningAt(3, 0, "attribute not valid in this context (b)"),
          "a=(null)|y*|(null)"}});
}

// Only the first occurrence beyond the count is found out here; the document refuses the others.
TEST(NodeImport, OccurrenceBeyondTheCountIsRefusedByOneOfTwo) {
    expectFillings(
        kThree,
        {{"<a occurrence='4'>q</a>", errorAt(2, 0, tooMany("a")), "a=(null)|(null)|(null)"},
         {"<a occurrence='5'>q</a>", kOutOfRange, "a=(null)|(null)|(null)"},
         {"<a occurrence='5'>q</a><a>r</a>", kOutOfRange + kOutOfRange, "a=(null)|(null)|(null)"},
         {"<a occurrence='5'>q</a><a occurrence='3'>z</a>", kOutOfRange, "a=(null)|(null)|z*"},
         {"<a occurrence='2147483647'>q</a>", kOutOfRange, "a=(null)|(null)|(null)"},
         {"<a occurrence='99999999999'>q</a>", kOutOfRange, "a=(null)|(null)|(null)"}});
}

// Negative numbers are not refused; they count up to the cells.
TEST(NodeImport, NegativeOccurrenceReachesNoCell) {
    expectFillings(
        kThree,
        {{"<a occurrence='-1'>q</a>", kOutOfRange, "a=(null)|(null)|(null)"},
         {"<a occurrence='-1'>p</a><a>q</a><a>x</a><a>y</a>", kOutOfRange + kOutOfRange,
          "a=x*|y*|(null)"},
         {"<a>x</a><a occurrence='-5'>q</a><a occurrence='2'>y</a>", kOutOfRange, "a=x*|y*|(null)"},
         {"<a occurrence='-2147483648'>q</a>", kOutOfRange, "a=(null)|(null)|(null)"},
         {"<a occurrence='-99999999999'>q</a>", kOutOfRange, "a=(null)|(null)|(null)"}});
}

TEST(NodeImport, ChildrenRestartInEveryOccurrenceOfTheirBranch) {
    expectFillings(
        kTwoLines,
        {{"<line><key>a</key><key>b</key></line><line><key>c</key></line>", "",
          "line/key=a*|b*|(null)|c*|(null)|(null)"},
         {"<line><key>a</key><key>b</key><key>c</key></line>"
          "<line><key>d</key><key>e</key><key>f</key></line>",
          "", "line/key=a*|b*|c*|d*|e*|f*"},
         {"<line/><line><key>d</key></line>", "", "line/key=(null)|(null)|(null)|d*|(null)|(null)"},
         {"<line occurrence='2'><key>d</key></line>", "",
          "line/key=(null)|(null)|(null)|d*|(null)|(null)"},
         {"<line occurrence='2'><key occurrence='3'>f</key></line>"
          "<line occurrence='1'><key occurrence='2'>b</key><key>c</key></line>",
          "", "line/key=(null)|b*|c*|(null)|(null)|f*"},
         {"<line><key>a</key>\n<key>b</key><key>c</key>\n<key>q</key></line>",
          errorAt(4, 0, tooMany("key")), "line/key=a*|b*|c*|(null)|(null)|(null)"}});
}

// A branch beyond its count is skipped with all its content.
TEST(NodeImport, BranchBeyondItsCountIsRefused) {
    expectFillings(
        kTwoLines,
        {{"<line/><line/>\n<line/>", errorAt(3, 0, tooMany("line")),
          "line/key=(null)|(null)|(null)|(null)|(null)|(null)"},
         {"<line occurrence='3'>\n<key b=''>q</key></line>\n"
          "<line occurrence='1'><key>a</key></line>",
          errorAt(2, 0, tooMany("line")) +
              warningAt(3, 0, "attribute not valid in this context (b)"),
          "line/key=a*|(null)|(null)|(null)|(null)|(null)"},
         // It stays where its attribute moved it.
         {"<line occurrence='3'>\n<key b=''>q</key></line>\n<line><key>a</key></line>",
          errorAt(2, 0, tooMany("line")) +
              warningAt(3, 0, "attribute not valid in this context (b)") +
              errorAt(4, 0, tooMany("line")) + unwoundAt(5, 11, "phone"),
          "line/key=(null)|(null)|(null)|(null)|(null)|(null)"},
         {"<line occurrence='0'>\n<key b=''>q</key></line>",
          errorAt(2, 0, kPositive) + warningAt(3, 0, "attribute not valid in this context (b)"),
          "line/key=(null)|(null)|(null)|(null)|(null)|(null)"},
         {"<line occurrence='4'><key>q</key></line>", kOutOfRange,
          "line/key=(null)|(null)|(null)|(null)|(null)|(null)"}});
}

// A new occurrence of the parent is one of another index; the same one again goes on counting.
TEST(NodeImport, SameParentOccurrenceAgainGoesOnCounting) {
    expectFillings(
        kTwoLines,
        {{"<line occurrence='1'><key>a</key></line><line occurrence='1'><key>b</key></line>", "",
          "line/key=a*|b*|(null)|(null)|(null)|(null)"},
         {"<line occurrence='2'><key>d</key></line><line occurrence='1'><key>a</key></line>"
          "<line occurrence='2'><key>e</key></line>",
          "", "line/key=a*|(null)|(null)|e*|(null)|(null)"}});
}

// An occurrence beyond a node's own count may still be one of the next parent's cells.
TEST(NodeImport, OccurrenceBeyondTheCountMayFallIntoTheNextParent) {
    expectFillings(kTwoLines,
                   {{"<line><key occurrence='5'>q</key></line>", "",
                     "line/key=(null)|(null)|(null)|(null)|q*|(null)"},
                    {"<line occurrence='2'><key occurrence='-1'>q</key></line>", "",
                     "line/key=(null)|q*|(null)|(null)|(null)|(null)"},
                    {"<line occurrence='2'><key occurrence='5'>q</key></line>", kOutOfRange,
                     "line/key=(null)|(null)|(null)|(null)|(null)|(null)"}});
}

TEST(NodeImport, TextIsStoredAsItStands) {
    ImportStore store;
    EXPECT_EQ(store.define("<item name='a' type='string' default='x'/>"), "");
    struct {
        char const* text;
        char const* expected;
    } const rows[] = {
        {"y", "y"},
        {"  y  ", "  y  "},
        {"   ", "   "},
        {"a&amp;b", "a&b"},
        {"&lt;&gt;&quot;&apos;&#65;&#x42;", "<>\"'AB"},
        {"<![CDATA[<a>&amp;]]>", "<a>&amp;"},
        {"one\ntwo", "one\ntwo"},
        {"\"\"", ""},
        {"&quot;&quot;", ""},
        {"\"", "\""},
        {"\"\"\"", "\"\"\""},
        {" \"\" ", " \"\" "},
        {"''", "''"},
        {"", "(null)"},
        {"<!-- nothing -->", "(null)"},
        {"\xC3\xA4", "\xC3\xA4"},
        {"true", "true"},
    };
    for (auto const& row : rows) {
        EXPECT_EQ(store.fill(std::string("<a>") + row.text + "</a>"), "") << row.text;
        EXPECT_EQ(store.values(), std::string("a=") + row.expected + '*') << row.text;
    }
    EXPECT_EQ(store.fill("<a/>"), "");
    EXPECT_EQ(store.values(), "a=(null)*");
}

// An empty element empties the cell whatever its type; the type has no say in that.
TEST(NodeImport, EmptyElementEmptiesTheCell) {
    ImportStore store;
    EXPECT_EQ(store.define("<item name='a' type='int' default='5'/>"), "");
    EXPECT_EQ(store.fill("<a/>"), "");
    EXPECT_EQ(store.values(), "a=(null)*");
    EXPECT_EQ(store.fill("<a>\"\"</a>"), plainError("setStringNodeValue: value () is not valid"));
    EXPECT_EQ(store.values(), "a=(null)*");
}

// A value that its type refuses is an incident of the document: the import goes on, and the
// element counts.
TEST(NodeImport, RefusedValueDoesNotStopTheImport) {
    expectFillings(
        "<item name='a' type='int' default='1' occurrences='3'/>"
        "<item name='b' type='bool'/>",
        {{"<a>x</a><a>7</a><a> 8</a><b>yes</b><b occurrence='1'>true</b>",
          plainError("setStringNodeValue: value (x) is not valid") +
              plainError("setStringNodeValue: value ( 8) is not valid") +
              plainError("setStringNodeValue: value (yes) is not valid"),
          "a=1|7*|1 b=true*"},
         // The value is looked at before the occurrence.
         {"<a occurrence='9'>x</a>", plainError("setStringNodeValue: value (x) is not valid"),
          "a=1|1|1 b=(null)"}});
}

TEST(NodeImport, EveryTypeIsReadFromItsText) {
    expectFillings(
        "<choice name='c'><option>on</option><option>off</option></choice>"
        "<range name='r' baseType='uint' minValue='1' maxValue='9'/>"
        "<item name='i' type='int'/><item name='u' type='uint'/><item name='b' type='bool'/>"
        "<item name='f' type='float'/><item name='d' type='digit_string'/>"
        "<item name='p' type='ip_address'/><item name='m' type='ip_mask'/>"
        "<item name='n' type='domain_name'/><item name='l' type='url'/>"
        "<item name='c' type='c'/><item name='r' type='r'/>",
        {{"<i>-07</i><u>4294967295</u><b>false</b><f>1.50</f><d>+49 #</d><p>010.1.2.3</p>"
          "<m>255.255.0.0</m><n>a.b</n><l>x:y</l><c>off</c><r>9</r>",
          "",
          "i=-7* u=4294967295* b=false* f=1.5* d=+49 #* p=10.1.2.3* m=255.255.0.0* n=a.b* l=x:y* "
          "c=off* r=9*"},
         {"<m>255.0.255.0</m><c>On</c><r>10</r>",
          plainError("setStringNodeValue: value (255.0.255.0) is not valid") +
              plainError("setStringNodeValue: value (On) is not valid") +
              plainError("setStringNodeValue: value (10) is not valid"),
          "i=(null) u=(null) b=(null) f=(null) d=(null) p=(null) m=(null) n=(null) l=(null) "
          "c=(null) r=(null)"}});
}

TEST(NodeImport, NodesOfNoOccurrencesTakeNoElement) {
    ImportStore store;
    EXPECT_EQ(store.define("<item name='a' type='string' occurrences='65536'/>"
                           "<item name='b' type='string' occurrences='65535'/>"
                           "<branch name='c' occurrences='65536'/>"
                           "<item name='d' type='string' parent='c'/>"
                           "<branch name='e' occurrences='65535'/>"
                           "<item name='f' type='string' parent='e'/>"
                           "<item name='g' type='string'/>"),
              "");
    EXPECT_EQ(store.fill("<a>1</a>\n<b x=''>1</b>\n<c>\n<d x=''>1</d></c>\n<g x=''>2</g>"),
              errorAt(2, 0, tooMany("a")) +
                  warningAt(3, 0, "attribute not valid in this context (x)") + kOutOfRange +
                  errorAt(4, 0, tooMany("c")) +
                  warningAt(5, 0, "attribute not valid in this context (x)") +
                  warningAt(6, 0, "attribute not valid in this context (x)"));
    EXPECT_EQ(store.fill("<e><f>1</f></e><g>3</g>"), kOutOfRange);
    EXPECT_EQ(store.values(), "a= b= c/d= e/f= g=3*");
}

// Elements of a name that stands on several levels are told apart by where they stand.
TEST(NodeImport, SameNameOnSeveralLevels) {
    expectFillings("<branch name='n'/><branch name='n' parent='n'/>"
                   "<item name='n' type='string' parent='n/n'/>",
                   {{"<n><n><n>x</n></n></n>", "", "n/n/n=x*"}});
}

TEST(NodeImport, TextInABranchIsIgnored) {
    expectFillings(kTwoLines, {{" a <line> b <key>x</key> c </line> d ", "",
                                "line/key=x*|(null)|(null)|(null)|(null)|(null)"}});
}

TEST(NodeImport, NothingStandsInsideAValue) {
    expectFillings(kThree, {{"<a>x\n<b>y</b>z</a>", notRecognisedAt(3, 0, "b", {}, "a", "document"),
                             "a=x\nz*|(null)|(null)"}});
}

// A rule without node, which generated rules never are, is only spoken of.
TEST(NodeImport, RuleWithoutNodeIsDiagnosed) {
    RuleParser parser;
    ZorSchema* const schema = parser.collection.makeSchema("s");
    schema->makeDataNode(schema->getRootNode(), "a", 1, schema->getDataType("string"), nullptr);
    ZorDocument* const document = parser.collection.makeDocument("s", "phone1");
    zor_internal::addNodeRules(parser.top(), schema->getRootNode());
    auto* const rule = static_cast<ZorElementParseRules*>(parser.top()->innerRules->value);
    static_cast<ImportRuleInfo*>(rule->elementUserData)->definitionNode = nullptr;
    EXPECT_EQ(parser.feed("<top>"), "");
    zor_XMLContextSetUserData(parser.parser.currentContext, document);
    testing::internal::CaptureStdout();
    EXPECT_EQ(parser.feed("<a>x</a>"), "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "ZorDocument phone1 elementInfo->definitionNode is null pid = " +
                  std::to_string(getpid()) + "\n");
    EXPECT_EQ(valuesOf(document), "a=(null)");
}

// Rules that hang on no document rule serve a host's own element, once.
TEST(NodeImport, RulesOfNoDocumentElement) {
    RuleParser parser;
    ZorSchema* const schema = parser.collection.makeSchema("s");
    schema->makeDataNode(schema->getRootNode(), "a", 3, schema->getDataType("string"), nullptr);
    ZorDocument* const document = parser.collection.makeDocument("s", "phone1");
    zor_internal::addNodeRules(parser.top(), schema->getRootNode());
    zor_XMLParseRulesSetElementUserData(parser.top(), new ImportRuleInfo(nullptr),
                                        deleteImportRuleInfo);
    EXPECT_EQ(parser.feed("<top>"), "");
    zor_XMLContextSetUserData(parser.parser.currentContext, document);
    EXPECT_EQ(parser.feed("<a>x</a><a occurrence='3'>z</a></top>", true), "");
    EXPECT_EQ(valuesOf(document), "a=x*|(null)|z*");
}

// A host that gives a text to the XML parser itself fills documents all the same.
TEST(NodeImport, DocumentsAreFilledOutsideOfAParse) {
    RuleParser parser;
    std::string const text = "<phone><schema name='s'><item name='a' type='int'/></schema>"
                             "<document name='d' schema='s'><a>7</a></document></phone>";
    EXPECT_EQ(XML_Parse(parser.parser.expatParser, text.data(), static_cast<int>(text.size()), 1),
              XML_STATUS_OK);
    EXPECT_EQ(parser.log.take(), "");
    EXPECT_EQ(valuesOf(parser.collection.getDocument("d")), "a=7*");
}
