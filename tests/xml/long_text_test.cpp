// Texts at and beyond the 65534 characters that a string holds.

#include <gtest/gtest.h>

#include <string>

#include "tests/xml/rule_calls.h"
#include "xml/event_handlers.h"

namespace {

std::string const kTooLongMessage = "text is too long in element <pen>";

std::string characters(int count) {
    std::string made;
    for (int i = 0; i < count; ++i) made += static_cast<char>('a' + i % 26);
    return made;
}

// Gives the text to the open element in pieces of that length.
void deliver(RuleParser& parser, std::string const& text, std::size_t pieceLength) {
    for (std::size_t at = 0; at < text.size(); at += pieceLength) {
        std::string const piece = text.substr(at, pieceLength);
        zor_internal::onCharacterData(&parser.parser.currentContext, piece.data(),
                                      static_cast<int>(piece.size()));
    }
}

// A parser with <top><pen> open, so that incidents come without a position.
struct OpenPen : RuleParser {
    OpenPen() {
        allow(noted("pen", rawCharacterData));
        allow(noted("ink", rawCharacterData));
        open("top");
        open("pen");
        takeRuleCalls();
    }
    void open(char const* name) {
        char const* attributes[] = {nullptr};
        zor_internal::onStartElement(&parser.currentContext, name, attributes);
    }
    void close(char const* name) { zor_internal::onEndElement(&parser.currentContext, name); }
};

} // namespace

TEST(LongText, LongestTextIsDeliveredWhateverThePieces) {
    std::string const text = characters(65534);
    for (std::size_t const length : {1U, 7U, 4096U, 32767U, 65533U, 65534U}) {
        OpenPen parser;
        deliver(parser, text, length);
        parser.close("pen");
        EXPECT_EQ(parser.calls(), text + "</pen>") << "pieces of " << length;
    }
}

TEST(LongText, OneCharacterMoreIsAnErrorWhateverThePieces) {
    std::string const text = characters(65535);
    for (std::size_t const length : {1U, 7U, 4096U, 32768U, 65534U, 65535U}) {
        OpenPen parser;
        deliver(parser, text, length);
        EXPECT_EQ(parser.log.take(), "3 " + kTooLongMessage + "\n") << "pieces of " << length;
        EXPECT_EQ(parser.incidents.getMaxIncidentSeverity(), severityError);
        parser.close("pen");
        EXPECT_EQ(parser.calls(), "") << "pieces of " << length;
        EXPECT_EQ(parser.depth(), 1);
    }
}

TEST(LongText, ErrorIsReportedOnce) {
    OpenPen parser;
    deliver(parser, characters(200000), 1000);
    EXPECT_EQ(parser.log.take(), "3 " + kTooLongMessage + "\n");
    parser.close("pen");
}

// What would be trimmed away counts, too.
TEST(LongText, WhiteSpaceCountsBeforeTrimming) {
    RuleParser parser;
    parser.allow(noted("pen", trimmedCharacterData));
    EXPECT_EQ(parser.feed("<top><pen>" + std::string(65533, ' ') + "x</pen></top>", true), "");
    EXPECT_EQ(parser.calls(), "<top><pen>x</pen></top>");

    RuleParser other;
    other.allow(noted("pen", trimmedCharacterData));
    other.feed("<top>");
    std::string const text = std::string(65534, ' ') + "x";
    char const* attributes[] = {nullptr};
    zor_internal::onStartElement(&other.parser.currentContext, "pen", attributes);
    deliver(other, text, text.size());
    EXPECT_EQ(other.log.take(), "3 " + kTooLongMessage + "\n");
}

// A warning later in the same element does not bring its text back.
TEST(LongText, WarningInsideTheElementRevivesNothingOfIt) {
    OpenPen parser;
    deliver(parser, characters(65535), 65535);
    EXPECT_EQ(parser.log.take(), "3 " + kTooLongMessage + "\n");
    parser.incidents.setMaxIncidentSeverity(severityWarning);
    parser.open("ink");
    deliver(parser, "black", 5);
    parser.close("ink");
    deliver(parser, "rest", 4);
    parser.close("pen");
    EXPECT_EQ(parser.calls(), "");
    parser.open("ink");
    deliver(parser, "blue", 4);
    parser.close("ink");
    EXPECT_EQ(parser.calls(), "<ink>blue</ink>");
}

TEST(LongText, IgnoredTextMayBeAsLongAsItLikes) {
    RuleParser parser;
    parser.allow(noted("pen", ignoreCharacterData));
    EXPECT_EQ(parser.feed("<top><pen>" + characters(70000) + "</pen></top>", true), "");
    EXPECT_EQ(parser.calls(), "<top><pen></pen></top>");
}

// Attributes of elements are checked where the element starts.
TEST(LongText, TooLongAttributeDropsItsElement) {
    RuleParser parser;
    zor_XMLParseRulesAddAttribute(parser.allow(noted("pen", rawCharacterData)), "a");
    EXPECT_EQ(parser.feed("<top><pen a='" + characters(65534) + "'>x</pen>"), "");
    EXPECT_EQ(parser.calls(), "<top><pen>x</pen>");
    EXPECT_EQ(parser.feed("\n<pen a='" + characters(65535) + "'>"),
              incidentAt(3, 2, 0, kTooLongMessage));
    EXPECT_EQ(parser.depth(), 1);
    EXPECT_EQ(parser.feed("y</pen>"), "");
    EXPECT_EQ(parser.depth(), 0);
    EXPECT_EQ(parser.calls(), "");
}

// The error of the attribute ends the look at its element: no warning about another attribute
// lifts it.
TEST(LongText, AttributesBehindATooLongOneAreNotReported) {
    RuleParser parser;
    zor_XMLParseRulesAddAttribute(parser.allow(noted("pen")), "a");
    EXPECT_EQ(parser.feed("<top>\n<pen a='" + characters(65535) + "' b='1'>"),
              incidentAt(3, 2, 0, kTooLongMessage));
    EXPECT_EQ(parser.depth(), 1);
    EXPECT_EQ(parser.calls(), "<top>");
}
