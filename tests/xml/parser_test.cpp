// The parser over expat: pieces of input, positions, and expat's own errors.

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <string>

#include "tests/support/incidents.h"
#include "tests/xml/rule_calls.h"
#include "zor/collection.h"
#include "zor/xml.h"

namespace {

std::string contextString(ZorIncidentContext const& context) {
    std::string text;
    context.getContextString(text);
    return text;
}

// The names of the nodes under a schema's root, and whether there is such a schema at all.
std::string nodesOf(ZorCollection& collection, char const* schemaName) {
    ZorSchema* const schema = collection.getSchema(schemaName);
    if (!schema) return "no schema";
    std::string names;
    for (ZorSchemaNode* node = schema->getRootNode()->getFirstChildNode(); node;
         node = node->getNextNode()) {
        names += std::string(node->getName()) + ' ';
    }
    return names;
}

constexpr char kDefinition[] = "<phone>\n"
                               "<schema name='s'>\n"
                               "<branch name='net' occurrences='2'/>\n"
                               "<item name='port' type='uint' default='80'/>\n"
                               "</schema>\n"
                               "</phone>\n";

} // namespace

TEST(Parser, NewParserStandsAtItsRoot) {
    ZorCollection collection("phone");
    ZorIncidentContext incidents("", nullptr, nullptr);
    ZorXmlParser const parser(&collection, &incidents);
    EXPECT_NE(parser.expatParser, nullptr);
    EXPECT_NE(parser.rootContext, nullptr);
    EXPECT_EQ(parser.currentContext, parser.rootContext);
    EXPECT_EQ(parser.rootContext->parser, &parser);
    EXPECT_EQ(parser.rootContext->outerContext, nullptr);
    EXPECT_EQ(parser.incidentContext, &incidents);
}

TEST(Parser, RootAllowsTheCollectionsElementOnly) {
    ZorCollection collection("phone");
    ZorXmlParser const parser(&collection, nullptr);
    ZorElementParseRules const* const root = zor_XMLContextGetParseRules(parser.rootContext);
    EXPECT_STREQ(root->elementName->text, "root-node");
    ASSERT_NE(root->innerRules, nullptr);
    EXPECT_EQ(root->innerRules->next, nullptr);
    auto const* const inner =
        static_cast<ZorElementParseRules*>(zor_listGetValue(root->innerRules));
    EXPECT_STREQ(inner->elementName->text, "phone");
    EXPECT_EQ(inner->refCount, 1);
    EXPECT_EQ(zor_XMLParseRulesGetElementUserData(inner), &collection);
}

TEST(Parser, EmptyTextIsOneError) {
    RuleParser parser;
    EXPECT_EQ(parser.feed("", true), "3 {zor_XMLParse: line 1, column 0 }no element found\n");
    EXPECT_EQ(parser.incidents.getMaxIncidentSeverity(), severityError);
}

TEST(Parser, EmptyPieceThatIsNotFinalIsNothing) {
    RuleParser parser;
    EXPECT_EQ(parser.feed(""), "");
    EXPECT_EQ(parser.feed("<top/>"), "");
    EXPECT_EQ(parser.feed(""), "");
    EXPECT_EQ(parser.feed("", true), "");
    EXPECT_EQ(parser.calls(), "<top></top>");
}

TEST(Parser, LengthOfMinusOneIsUpToTheNul) {
    RuleParser parser;
    parser.parser.parse("<top/>\n<top/>", -1, 1);
    EXPECT_EQ(parser.log.take(), incidentAt(3, 2, 0, "junk after document element"));
    EXPECT_EQ(parser.calls(), "<top></top>");
}

TEST(Parser, LengthBoundsTheText) {
    RuleParser parser;
    parser.parser.parse("<top/>\n<top/>", 6, 1);
    EXPECT_EQ(parser.log.take(), "");
    EXPECT_EQ(parser.calls(), "<top></top>");
}

TEST(Parser, LengthBelowMinusOneIsAnEmptyPiece) {
    RuleParser parser;
    parser.parser.parse("<top/>", -2, 0);
    parser.parser.parse("<top/>", INT_MIN, 1);
    EXPECT_EQ(parser.log.take(), incidentAt(3, 1, 0, "no element found"));
    EXPECT_EQ(parser.calls(), "");
}

TEST(Parser, NullTextIsAnEmptyPiece) {
    RuleParser parser;
    parser.parser.parse(nullptr, -1, 1);
    EXPECT_EQ(parser.log.take(), incidentAt(3, 1, 0, "no element found"));
}

// The label of the caller's context comes first, then the parser's frame in braces.
TEST(Parser, MessageReadsFromTheCallersLabelToThePosition) {
    IncidentLog log;
    ZorCollection collection("phone");
    ZorIncidentContext incidents("L", nullptr, nullptr);
    ZorXmlParser parser(&collection, &incidents);
    parser.parse("<phone>\n"
                 "<collection name='c'>\n"
                 "     </phone>",
                 -1, 1);
    EXPECT_EQ(log.take(), "3 L{zor_XMLParse: line 3, column 7 }mismatched tag\n");
}

TEST(Parser, FrameStandsOnTopOfThoseAlreadyPushed) {
    IncidentLog log;
    ZorCollection collection("phone");
    ZorIncidentContext incidents("boot", nullptr, nullptr);
    incidents.push("second stage", nullptr, nullptr);
    ZorXmlParser parser(&collection, &incidents);
    parser.parse("<phone", -1, 1);
    EXPECT_EQ(log.take(), "3 boot{second stage{zor_XMLParse: line 1, column 0 }}unclosed token\n");
    EXPECT_EQ(contextString(incidents), "boot{second stage}");
}

TEST(Parser, FrameIsGoneAfterEachPiece) {
    RuleParser parser;
    EXPECT_EQ(parser.feed("<top>"), "");
    EXPECT_EQ(contextString(parser.incidents), "");
    EXPECT_EQ(parser.incidents.top, &parser.incidents);
    EXPECT_EQ(parser.feed("</toq>", true), incidentAt(3, 1, 7, "mismatched tag"));
    EXPECT_EQ(parser.incidents.top, &parser.incidents);
}

// Without an incident context there is one for each piece, and its message has no braces.
TEST(Parser, ParserWithoutIncidentContextReportsAllTheSame) {
    IncidentLog log;
    ZorCollection collection("phone");
    ZorXmlParser parser(&collection, nullptr);
    parser.parse("<phone>\n<schema/>\n", -1, 0);
    EXPECT_EQ(log.take(), "3 zor_XMLParse: line 2, column 0 missing name attribute\n");
    EXPECT_EQ(parser.incidentContext, nullptr);
    parser.parse("</phoney>", -1, 1);
    EXPECT_EQ(log.take(), "3 zor_XMLParse: line 3, column 2 mismatched tag\n");
    EXPECT_EQ(parser.incidentContext, nullptr);
}

TEST(Parser, ParserWithoutIncidentContextForgetsAnErrorWithEachPiece) {
    IncidentLog log;
    ZorCollection collection("phone");
    ZorXmlParser parser(&collection, nullptr);
    parser.parse("<phone>\n<schema></schema>", -1, 0);
    EXPECT_EQ(log.take(), "3 zor_XMLParse: line 2, column 0 missing name attribute\n");
    parser.parse("<schema name='s'></schema></phone>", -1, 1);
    EXPECT_EQ(log.take(), "");
    EXPECT_EQ(nodesOf(collection, "s"), "");
}

TEST(Parser, CallbacksOfAParserWithoutIncidentContextFindOne) {
    static bool found;
    found = false;
    ZorCollection collection("phone");
    ZorXmlParser parser(&collection, nullptr);
    zor_XMLParseRulesAddInnerRules(
        parser.rootContext->parseRules,
        new ZorElementParseRules(
            "top", ignoreCharacterData,
            [](ZORParseContext* context) { found = context->parser->incidentContext; }, nullptr));
    parser.parse("<top/>", -1, 1);
    EXPECT_TRUE(found);
    EXPECT_EQ(parser.incidentContext, nullptr);
}

// Lines count from 1, columns from 0, both at the start of the tag that is handled.
TEST(Parser, PositionIsThatOfTheTag) {
    RuleParser parser;
    parser.allow(raising<2>("w"));
    EXPECT_EQ(parser.feed("<top><w/>\n\n   <w\n/><!-- \n --><w></w></top>", true),
              incidentAt(2, 1, 5, "raised in w") + incidentAt(2, 3, 3, "raised in w") +
                  incidentAt(2, 5, 4, "raised in w"));
    EXPECT_EQ(parser.calls(), "<top><w></w><w></w><w></w></top>");
}

TEST(Parser, ExpatsErrorsKeepTheirWordsAndPosition) {
    struct {
        char const* text;
        int line;
        int column;
        char const* message;
    } const rows[] = {
        {"   ", 1, 3, "no element found"},
        {"\n\n", 3, 0, "no element found"},
        {"<top>", 1, 5, "no element found"},
        {"<top", 1, 0, "unclosed token"},
        {"text", 1, 0, "syntax error"},
        {"<top>&</top>", 1, 6, "not well-formed (invalid token)"},
        {"<top a=1/>", 1, 7, "not well-formed (invalid token)"},
        {"<top a='1' a='2'/>", 1, 11, "duplicate attribute"},
        {"<top>\n&nbsp;</top>", 2, 0, "undefined entity"},
        {"<top></Top>", 1, 7, "mismatched tag"},
        {"<top/><top/>", 1, 6, "junk after document element"},
        {"<top><![CDATA[</top>", 1, 20, "unclosed CDATA section"},
        {" <?xml version='1.0'?><top/>", 1, 1, "XML or text declaration not at start of entity"},
        {"<?xml version='1.0' encoding='klingon'?><top/>", 1, 30, "unknown encoding"},
    };
    for (auto const& row : rows) {
        RuleParser parser;
        EXPECT_EQ(parser.feed(row.text, true), incidentAt(3, row.line, row.column, row.message))
            << row.text;
    }
}

TEST(Parser, CallbacksBeforeAnErrorOfExpatStay) {
    RuleParser parser;
    parser.allow(noted("pen", rawCharacterData));
    EXPECT_EQ(parser.feed("<top><pen>a</pen></pen>", true), incidentAt(3, 1, 19, "mismatched tag"));
    EXPECT_EQ(parser.calls(), "<top><pen>a</pen>");
}

TEST(Parser, InputSplitAnywhereGivesTheSame) {
    std::string const text = kDefinition;
    for (std::size_t at = 0; at <= text.size(); ++at) {
        RuleParser parser;
        EXPECT_EQ(parser.feed(text.substr(0, at)), "") << "split at " << at;
        EXPECT_EQ(parser.feed(text.substr(at), true), "") << "split at " << at;
        EXPECT_EQ(nodesOf(parser.collection, "s"), "net port ") << "split at " << at;
        EXPECT_EQ(parser.depth(), 0);
    }
}

TEST(Parser, ErrorPersistsFromPieceToPiece) {
    RuleParser parser;
    parser.allow(raising<3>("bad"));
    parser.allow(noted("pen", rawCharacterData));
    EXPECT_EQ(parser.feed("<top><bad/>"), incidentAt(3, 1, 5, "raised in bad"));
    EXPECT_EQ(parser.incidents.getMaxIncidentSeverity(), severityError);
    EXPECT_EQ(parser.feed("<pen>x"), "");
    EXPECT_EQ(parser.calls(), "<top><bad>");
}

TEST(Parser, CallerReadsTheLastSeverity) {
    RuleParser parser;
    parser.allow(raising<2>("warning"));
    EXPECT_EQ(parser.feed("<top>"), "");
    EXPECT_EQ(parser.incidents.getMaxIncidentSeverity(), severityNone);
    EXPECT_EQ(parser.feed("<warning/>"), incidentAt(2, 1, 5, "raised in warning"));
    EXPECT_EQ(parser.incidents.getMaxIncidentSeverity(), severityWarning);
    EXPECT_EQ(parser.feed("</top>", true), "");
    EXPECT_EQ(parser.incidents.getMaxIncidentSeverity(), severityWarning);
}

TEST(Parser, TwoParsersOfOneCollectionDoNotDisturbEachOther) {
    IncidentLog log;
    ZorCollection collection("phone");
    ZorXmlParser first(&collection, nullptr);
    ZorXmlParser second(&collection, nullptr);
    first.parse("<phone><schema name='a'><item name='x' type='int'/>", -1, 0);
    second.parse("<phone><schema name='b'><item name='y' type='int'/>", -1, 0);
    first.parse("<item name='z' type='int'/></schema></phone>", -1, 1);
    second.parse("</schema></phone>", -1, 1);
    EXPECT_EQ(nodesOf(collection, "a"), "x z ");
    EXPECT_EQ(nodesOf(collection, "b"), "y ");
}

// Whatever is open when a parser dies goes with it.
TEST(Parser, ParserMayDieInsideElements) {
    std::string const text = kDefinition;
    for (std::size_t at = 0; at < text.size(); ++at) {
        RuleParser parser;
        EXPECT_EQ(parser.feed(text.substr(0, at)), "") << "cut at " << at;
    }
}
