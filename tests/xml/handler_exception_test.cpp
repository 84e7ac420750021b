// What callbacks throw while a text is parsed.

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "tests/collection/import_store.h"
#include "tests/xml/rule_calls.h"
#include "zor/collection.h"
#include "zor/xml.h"

namespace {

void throwing(ZORParseContext* context) { throw std::runtime_error(ruleName(context)); }

// What the parse of a text that is given in pieces threw, or "".
std::string thrownBy(RuleParser& parser, std::string const& text) {
    try {
        parser.feed(text);
    } catch (std::runtime_error const& error) {
        return error.what();
    }
    return "";
}

class ThrowingDictionary : public ZorDictionary {
public:
    std::string getSchemaName(std::string const& name) override { throw std::runtime_error(name); }
    std::string getSchemaDefinition(std::string const&) override { return ""; }
};

} // namespace

// It reaches the caller of `parse`, and no callback runs after it: not even the end of the element.
TEST(HandlerException, OfAStartCallbackReachesTheCaller) {
    RuleParser parser;
    zor_XMLParseRulesAddInnerRules(
        parser.top(), new ZorElementParseRules("bad", ignoreCharacterData, throwing, noteEnd));
    zor_XMLParseRulesAddInnerRules(parser.top(), noted("good"));
    EXPECT_EQ(thrownBy(parser, "<top><good/><bad/><good/></top>"), "bad");
    EXPECT_EQ(parser.calls(), "<top><good></good>");
}

TEST(HandlerException, OfAnEndCallbackReachesTheCaller) {
    RuleParser parser;
    zor_XMLParseRulesAddInnerRules(
        parser.top(), new ZorElementParseRules("bad", rawCharacterData, noteStart, throwing));
    zor_XMLParseRulesAddInnerRules(parser.top(), noted("good"));
    EXPECT_EQ(thrownBy(parser, "<top><bad>text</bad><good/></top>"), "bad");
    EXPECT_EQ(parser.calls(), "<top><bad>");
}

// Frames that the callback had pushed do not hide the parse that it runs in.
TEST(HandlerException, MayLeaveFramesOfTheCallbackBehind) {
    RuleParser parser;
    zor_XMLParseRulesAddInnerRules(parser.top(), new ZorElementParseRules(
                                                     "bad", ignoreCharacterData,
                                                     [](ZORParseContext* context) {
                                                         context->parser->incidentContext->push(
                                                             "left", nullptr, nullptr);
                                                         throwing(context);
                                                     },
                                                     nullptr));
    EXPECT_EQ(thrownBy(parser, "<top><bad/></top>"), "bad");
    std::string context;
    parser.incidents.getContextString(context);
    EXPECT_EQ(context, "");
}

// Also where an import runs within an import, and the next import is as good as any.
TEST(HandlerException, OfADictionaryReachesTheCaller) {
    IncidentLog log;
    ThrowingDictionary dictionary;
    ZorCollection collection("phone", &dictionary);
    EXPECT_THROW(collection.importXML("<phone><schema name='s'><item name='i' type='int'/></schema>"
                                      "<document name='d'><i>1</i></document></phone>"),
                 std::runtime_error);
    EXPECT_EQ(collection.parseDepth, 0);
    EXPECT_NE(collection.getSchema("s"), nullptr) << "what was imported before stays";
    collection.importXML("<phone><document name='d' schema='s'><i>1</i></document></phone>");
    EXPECT_EQ(collection.exportDocument("d"),
              "<phone><document schema=\"s\" name=\"d\"><i>1</i></document></phone>");
    EXPECT_EQ(log.take(), "");
}
