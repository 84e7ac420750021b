// From events to callbacks: their order, the text, and what an error stops.

#include "xml/event_handlers.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/xml/rule_calls.h"
#include "xml/parse_run.h"

using zor_internal::onCharacterData;
using zor_internal::onEndElement;
using zor_internal::onSkippedEntity;
using zor_internal::onStartElement;
using zor_internal::ParseRun;

namespace {

// What the last callback of `observed` saw.
struct Observation {
    bool isCurrent;
    bool hasText;
    int depth;
};
Observation& observation() {
    static Observation last;
    return last;
}

void observe(ZORParseContext* context) {
    observation().isCurrent = context->parser->currentContext == context;
    observation().hasText = zor_XMLContextGetCharacterData(context) != nullptr;
}

// Gives a text to the handler, as expat would, in pieces of that length.
void deliver(RuleParser& parser, std::string const& text, std::size_t pieceLength) {
    for (std::size_t at = 0; at < text.size(); at += pieceLength) {
        std::string const piece = text.substr(at, pieceLength);
        onCharacterData(&parser.parser.currentContext, piece.data(),
                        static_cast<int>(piece.size()));
    }
}

// Opens and closes an element, as expat would.
void open(RuleParser& parser, char const* name) {
    char const* attributes[] = {nullptr};
    onStartElement(&parser.parser.currentContext, name, attributes);
}
void close(RuleParser& parser, char const* name) {
    onEndElement(&parser.parser.currentContext, name);
}

} // namespace

TEST(EventHandlers, CallbacksFollowTheElements) {
    RuleParser parser;
    ZorElementParseRules* const box = parser.allow(noted("box"));
    zor_XMLParseRulesAddInnerRules(box, noted("pen"));
    parser.allow(noted("pen"));
    EXPECT_EQ(parser.feed("<top><box><pen/><pen></pen></box><pen/></top>", true), "");
    EXPECT_EQ(parser.calls(), "<top><box><pen></pen><pen></pen></box><pen></pen></top>");
}

// The handlers themselves ask for no incident context, nor for a parse that is running.
TEST(EventHandlers, ServeAParserWithoutIncidentContext) {
    RuleParser parser;
    parser.parser.incidentContext = nullptr;
    open(parser, "top");
    deliver(parser, "text", 2);
    close(parser, "top");
    EXPECT_EQ(parser.calls(), "<top></top>");
    EXPECT_EQ(parser.log.take(), "");
}

// Of a skipped entity only text is lost, which a parameter entity has none of.
TEST(EventHandlers, SkippedParameterEntityStopsNothing) {
    RuleParser parser;
    ParseRun const run(&parser.parser);
    onSkippedEntity(&parser.parser.currentContext, "part", 1);
    EXPECT_EQ(run.reason(), nullptr);
    onSkippedEntity(&parser.parser.currentContext, "text", 0);
    EXPECT_STREQ(run.reason(), "undefined entity");
}

TEST(EventHandlers, StartCallbackSeesItsContextAsTheCurrentOneWithoutText) {
    RuleParser parser;
    parser.allow(new ZorElementParseRules("box", rawCharacterData, observe, nullptr));
    EXPECT_EQ(parser.feed("<top><box>text"), "");
    EXPECT_TRUE(observation().isCurrent);
    EXPECT_FALSE(observation().hasText);
}

TEST(EventHandlers, EndCallbackSeesItsContextAsTheCurrentOneWithText) {
    RuleParser parser;
    parser.allow(new ZorElementParseRules("box", ignoreCharacterData, nullptr, observe));
    EXPECT_EQ(parser.feed("<top><box/>"), "");
    EXPECT_TRUE(observation().isCurrent);
    EXPECT_TRUE(observation().hasText);
    EXPECT_EQ(parser.depth(), 1);
}

TEST(EventHandlers, RulesWithoutCallbacksAreFollowedAllTheSame) {
    RuleParser parser;
    ZorElementParseRules* const box =
        parser.allow(new ZorElementParseRules("box", rawCharacterData, nullptr, nullptr));
    zor_XMLParseRulesAddInnerRules(box, noted("pen"));
    EXPECT_EQ(parser.feed("<top><box>a<pen/></box></top>", true), "");
    EXPECT_EQ(parser.calls(), "<top><pen></pen></top>");
}

TEST(EventHandlers, UsageDecidesWhatTheEndCallbackGets) {
    struct {
        int usage;
        char const* text;
        char const* expected;
    } const rows[] = {
        {0, "  x  ", ""},
        {0, "", ""},
        {1, "  x  ", "x"},
        {1, "x", "x"},
        {1, " \t\n x y \n", "x y"},
        {1, "   ", ""},
        {1, "", ""},
        {2, "  x  ", "  x  "},
        {2, "   ", "   "},
        {2, "", ""},
        {3, "  x  ", "  x  "},
        {-1, "  x  ", "  x  "},
        {1, "a&amp;b&lt;&#65;", "a&b<A"},
        {2, "<![CDATA[ <a> ]]>&#x20;", " <a>  "},
        {2, "one<!-- two --> three<?four five?>", "one three"},
        {2, "a\r\nb\rc", "a\nb\nc"},
    };
    for (auto const& row : rows) {
        RuleParser parser;
        parser.allow(noted("pen", static_cast<characterDataUsage>(row.usage)));
        std::string const text = std::string("<top><pen>") + row.text + "</pen></top>";
        EXPECT_EQ(parser.feed(text, true), "") << text;
        EXPECT_EQ(parser.calls(), std::string("<top><pen>") + row.expected + "</pen></top>")
            << "usage " << row.usage << ", text '" << row.text << "'";
    }
}

// Text before, between and behind inner elements is one text.
TEST(EventHandlers, TextAroundInnerElementsIsJoined) {
    RuleParser parser;
    ZorElementParseRules* const box = parser.allow(noted("box", trimmedCharacterData));
    zor_XMLParseRulesAddInnerRules(box, noted("pen", rawCharacterData));
    EXPECT_EQ(parser.feed("<top><box> a <pen>x</pen> b <pen>y</pen> c </box></top>", true), "");
    EXPECT_EQ(parser.calls(), "<top><box><pen>x</pen><pen>y</pen>a  b  c</box></top>");
}

TEST(EventHandlers, TextMayComeInPiecesOfAnyLength) {
    std::string const text = " The quick brown fox jumps over the lazy dog. ";
    for (std::size_t length = 1; length <= text.size(); ++length) {
        RuleParser parser;
        parser.allow(noted("pen", rawCharacterData));
        open(parser, "top");
        open(parser, "pen");
        deliver(parser, text, length);
        close(parser, "pen");
        EXPECT_EQ(parser.calls(), "<top><pen>" + text + "</pen>") << "pieces of " << length;
    }
}

// A text that becomes a frequent one on its way, and then another, stays right.
TEST(EventHandlers, TextMayPassThroughAPermanentString) {
    RuleParser parser;
    parser.allow(noted("pen", rawCharacterData));
    open(parser, "top");
    open(parser, "pen");
    deliver(parser, "truest", 1);
    close(parser, "pen");
    EXPECT_EQ(parser.calls(), "<top><pen>truest</pen>");
    EXPECT_STREQ(ZorString::stdZorStrings[13].text, "true");
}

TEST(EventHandlers, NothingInAnUnknownElementIsLookedAt) {
    RuleParser parser;
    parser.allow(noted("pen", rawCharacterData));
    EXPECT_EQ(parser.feed(
                  "<top>\n<foo a='1'>text<pen b='2'>x</pen><bar/></foo>\n<pen>y</pen></top>", true),
              incidentAt(2, 2, 0, "element not recognised in this context <foo>") +
                  incidentAt(2, 2, 0,
                             "Element is 'foo'. Possible valid elements are 'pen' . "
                             "outerContext->currentElement->elementName = 'top'") +
                  incidentAt(2, 2, 0, ". outerOuterContextElementName = 'root-node'"));
    EXPECT_EQ(parser.calls(), "<top><pen>y</pen></top>");
}

// An error at the start of an element keeps its text, its end callback and everything behind it
// from being looked at; what was open is closed all the same.
TEST(EventHandlers, ErrorStopsStartsTextsAndEndCallbacks) {
    RuleParser parser;
    parser.allow(raising<3>("bad"));
    parser.allow(noted("pen", rawCharacterData));
    EXPECT_EQ(parser.feed("<top>\n<bad>x"), incidentAt(3, 2, 0, "raised in bad"));
    EXPECT_EQ(parser.depth(), 2);
    EXPECT_EQ(parser.parser.currentContext->characterData, nullptr);
    EXPECT_EQ(parser.feed("</bad>"), "");
    EXPECT_EQ(parser.depth(), 1);
    EXPECT_EQ(parser.feed("<pen>y"), "");
    EXPECT_EQ(parser.depth(), 1) << "a start tag behind an error opens nothing";
    EXPECT_EQ(parser.feed("</pen>"), "");
    EXPECT_EQ(parser.depth(), 0) << "an end tag behind an error closes what it did not open";
    EXPECT_EQ(parser.calls(), "<top><bad>");
}

TEST(EventHandlers, ErrorAtTheEndOfAnElementClosesIt) {
    RuleParser parser;
    parser.allow(new ZorElementParseRules("bad", rawCharacterData, nullptr, [](auto* context) {
        zor_raiseIncident(context->parser->incidentContext, severityError, incidentInvalidArgument,
                          1, "raised at the end");
    }));
    EXPECT_EQ(parser.feed("<top><bad>\n</bad>"), incidentAt(3, 2, 0, "raised at the end"));
    EXPECT_EQ(parser.depth(), 1);
    EXPECT_EQ(parser.feed("</top>", true), "");
    EXPECT_EQ(parser.depth(), 0);
    EXPECT_EQ(parser.calls(), "<top>");
}

TEST(EventHandlers, WarningAndTraceStopNothing) {
    RuleParser parser;
    parser.allow(raising<2>("warning"));
    parser.allow(raising<1>("trace"));
    EXPECT_EQ(parser.feed("<top><warning>a</warning>\n<trace>b</trace></top>", true),
              incidentAt(2, 1, 5, "raised in warning") + incidentAt(1, 2, 0, "raised in trace"));
    EXPECT_EQ(parser.calls(), "<top><warning>a</warning><trace>b</trace></top>");
}

TEST(EventHandlers, SeverityAboveErrorStopsLikeAnError) {
    RuleParser parser;
    parser.allow(raising<4>("bad"));
    EXPECT_EQ(parser.feed("<top><bad>a</bad></top>", true), incidentAt(4, 1, 5, "raised in bad"));
    EXPECT_EQ(parser.calls(), "<top><bad>");
}

// An unknown attribute of the next element is a warning, and lifts the error: the element itself
// is handled already.
TEST(EventHandlers, WarningAboutAnAttributeLiftsTheError) {
    RuleParser parser;
    parser.allow(raising<3>("bad"));
    parser.allow(noted("pen", rawCharacterData));
    EXPECT_EQ(parser.feed("<top>\n<bad></bad>\n<pen a='1'>x</pen><pen>y</pen></top>", true),
              incidentAt(3, 2, 0, "raised in bad") +
                  incidentAt(2, 3, 0, "attribute not valid in this context (a)"));
    EXPECT_EQ(parser.calls(), "<top><bad><pen>x</pen><pen>y</pen></top>");
}

// An unknown element is a warning, too, and the elements behind it are handled again, in the
// context that the end tags have come to.
TEST(EventHandlers, WarningAboutAnElementLiftsTheError) {
    RuleParser parser;
    parser.allow(raising<3>("bad"));
    parser.allow(noted("pen", rawCharacterData));
    EXPECT_EQ(parser.feed("<top>\n<bad></bad>\n<foo/><pen>y</pen></top>", true),
              incidentAt(3, 2, 0, "raised in bad") +
                  incidentAt(2, 3, 0, "element not recognised in this context <foo>") +
                  incidentAt(2, 3, 0,
                             "Element is 'foo'. Possible valid elements are 'bad' 'pen' . "
                             "outerContext->currentElement->elementName = 'top'") +
                  incidentAt(2, 3, 0, ". outerOuterContextElementName = 'root-node'"));
    EXPECT_EQ(parser.calls(), "<top><bad><pen>y</pen></top>");
}

// End tags behind an error close contexts that their start tags did not open, until only the root
// is left. It stays, with a warning for every further end tag; that warning lifts the error.
TEST(EventHandlers, EndTagsBehindAnErrorUnwindToTheRoot) {
    RuleParser parser;
    ZorElementParseRules* const box = parser.allow(raising<3>("bad"));
    zor_XMLParseRulesAddInnerRules(box, noted("pen"));
    parser.allow(noted("pen"));
    EXPECT_EQ(parser.feed("<top>\n<bad><pen></pen><pen></pen>"),
              incidentAt(3, 2, 0, "raised in bad"));
    EXPECT_EQ(parser.depth(), 0);
    EXPECT_EQ(parser.feed("\n</bad>"),
              incidentAt(2, 3, 0,
                         "mainEndElementHandler name='bad' outerContext is NULL meaning this is "
                         "the top level ZorXmlParser owned context which we should _not_ be "
                         "deleting!"));
    EXPECT_EQ(parser.parser.currentContext, parser.parser.rootContext);
    EXPECT_EQ(parser.feed("\n<pen/>"),
              incidentAt(2, 4, 0, "element not recognised in this context <pen>") +
                  incidentAt(2, 4, 0,
                             "Element is 'pen'. Possible valid elements are 'phone' 'top' . "
                             "outerContext->currentElement->elementName = 'root-node'"));
    EXPECT_EQ(parser.feed("\n</top>", true),
              incidentAt(2, 5, 0,
                         "mainEndElementHandler name='top' outerContext is NULL meaning this is "
                         "the top level ZorXmlParser owned context which we should _not_ be "
                         "deleting!"));
    EXPECT_EQ(parser.calls(), "<top><bad>");
}

// At the root, elements of the rules start afresh wherever they stand in the text.
TEST(EventHandlers, ElementBehindAnUnwindingIsMatchedAtTheRoot) {
    RuleParser parser;
    parser.allow(raising<3>("bad"));
    parser.allow(noted("pen"));
    EXPECT_EQ(parser.feed("<top><bad></bad><pen></pen>"), incidentAt(3, 1, 5, "raised in bad"));
    EXPECT_EQ(parser.depth(), 0);
    parser.incidents.setMaxIncidentSeverity(severityWarning);
    EXPECT_EQ(parser.feed("<top><pen></pen></top>"), "");
    EXPECT_EQ(parser.calls(), "<top><bad><top><pen></pen></top>");
}

// The root's own context takes no text and calls nothing back.
TEST(EventHandlers, EndTagAtTheRootIsOnlyAWarning) {
    RuleParser parser;
    close(parser, "stray");
    EXPECT_EQ(parser.log.take(),
              "2 mainEndElementHandler name='stray' outerContext is NULL meaning this is the top "
              "level ZorXmlParser owned context which we should _not_ be deleting!\n");
    EXPECT_EQ(parser.parser.currentContext, parser.parser.rootContext);
    open(parser, "top");
    EXPECT_EQ(parser.depth(), 1);
}
