// What a running parse uses again: the memory of a closed context and of its text.

#include "xml/parse_run.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/foundation/strings.h"
#include "tests/support/allocations.h"
#include "tests/xml/rule_calls.h"

namespace {

std::string const kLong = characters(200);

// Texts as they stand in XML, and what the callbacks get.
struct {
    std::string xml;
    std::string text;
} const kTexts[] = {
    {"short", "short"},
    {"", ""},
    {"true", "true"},
    {"a&lt;b", "a<b"},
    {"&amp;", "&"},
    {kLong, kLong},
    {"tru&#101;", "true"},
    {"\"\"", "\"\""},
    {"I&#100;", "Id"},
    {kLong + "&gt;" + kLong, kLong + ">" + kLong},
    {"x", "x"},
    {"one<!-- two -->three", "onethree"},
    {characters(32), characters(32)},
    {characters(33), characters(33)},
};

// Every ordered pair of texts stands side by side once.
std::string allPairs(std::vector<std::string>* expected) {
    std::string xml = "<top>";
    for (auto const& first : kTexts) {
        for (auto const& second : kTexts) {
            for (auto const* const each : {&first, &second}) {
                xml += "<text>" + each->xml + "</text>";
                expected->push_back(each->text);
            }
        }
    }
    return xml + "</top>";
}

std::vector<ZorString*>& keptTexts() {
    static std::vector<ZorString*> kept;
    return kept;
}

void keepText(ZORParseContext* context) {
    ZorString* const text = zor_XMLContextGetCharacterData(context);
    zor_stringAddRef(text);
    keptTexts().push_back(text);
}

// Takes the text away from the context, as the import of a value does.
void takeText(ZORParseContext* context) {
    keptTexts().push_back(context->characterData);
    context->characterData = nullptr;
}

void expectFresh(ZORParseContext* context) {
    EXPECT_EQ(context->userData, nullptr);
    EXPECT_EQ(context->characterData, nullptr);
    EXPECT_EQ(zor_XMLContextGetAttribute(context, "a") != nullptr, ruleName(context) == "with");
    zor_XMLContextSetUserData(context, context); // for the next one not to see
}

class ParseRun : public testing::Test {
protected:
    ParseRun() { keptTexts().reserve(2000); }
    ~ParseRun() override { std::vector<ZorString*>().swap(keptTexts()); }

    ZorElementParseRules* allow(char const* name, ZorElementCallback start,
                                ZorElementCallback end) {
        return parser.allow(new ZorElementParseRules(name, rawCharacterData, start, end));
    }

    // Expects the kept texts to be these, and each to be what it would be if it was made anew.
    static void expectKept(std::vector<std::string> const& expected) {
        ASSERT_EQ(keptTexts().size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i) {
            ZorString* const kept = keptTexts()[i];
            EXPECT_EQ(content(kept), expected[i]) << "text " << i;
            EXPECT_EQ(kept->refCount, permanent(expected[i]) ? 0xFFFF : 1) << expected[i];
            expectSound(kept);
            kept->removeRef();
        }
    }

    RuleParser parser;
};

} // namespace

// A text of which a callback keeps a reference stays what it is, whatever comes later.
TEST_F(ParseRun, LaterTextsLeaveKeptOnesAlone) {
    for (std::size_t const piece : {100000UL, 7UL, 1UL}) {
        RuleParser parsing;
        parsing.allow(new ZorElementParseRules("text", rawCharacterData, nullptr, keepText));
        std::vector<std::string> expected;
        std::string const xml = allPairs(&expected);
        for (std::size_t at = 0; at < xml.size(); at += piece) {
            ASSERT_EQ(parsing.feed(xml.substr(at, piece)), "");
        }
        expectKept(expected);
        keptTexts().clear();
    }
}

// So does one that a callback has taken.
TEST_F(ParseRun, LaterTextsLeaveTakenOnesAlone) {
    allow("text", nullptr, takeText);
    std::vector<std::string> expected;
    EXPECT_EQ(parser.feed(allPairs(&expected)), "");
    expectKept(expected);
}

// A short text that is kept does not keep the memory of a long one that was before it.
TEST_F(ParseRun, ShortTextsTakeNoMoreMemoryThanNewOnes) {
    allow("passing", nullptr, nullptr);
    allow("text", nullptr, keepText);
    std::string xml = "<top>";
    for (int i = 0; i < 5; ++i) xml += "<passing>" + kLong + "</passing><text>short</text>";
    EXPECT_EQ(parser.feed(xml + "</top>"), "");
    for (ZorString const* const kept : keptTexts()) EXPECT_TRUE(usesLocalBuffer(kept));
    expectKept(std::vector<std::string>(5, "short"));
}

// Of texts that nobody keeps, each is still the right one in its callback.
TEST_F(ParseRun, EveryTextIsTheRightOneInItsCallback) {
    parser.allow(noted("text", rawCharacterData));
    std::vector<std::string> expected;
    std::string calls = "<top>";
    EXPECT_EQ(parser.feed(allPairs(&expected)), "");
    for (std::string const& text : expected) calls += "<text>" + text + "</text>";
    EXPECT_EQ(parser.calls(), calls + "</top>");
}

TEST_F(ParseRun, EveryContextBeginsFresh) {
    zor_XMLParseRulesAddAttribute(allow("with", expectFresh, nullptr), "a");
    ZorElementParseRules* const without = allow("without", expectFresh, nullptr);
    zor_XMLParseRulesAddInnerRules(without, without);
    std::string xml = "<top>";
    for (int i = 0; i < 20; ++i) {
        xml += "<with a='1'>text</with><without>x<without>y</without>z</without>";
    }
    EXPECT_EQ(parser.feed(xml + "</top>"), "");
}

// Once one element is closed, the next ones with short texts cost no block.
TEST_F(ParseRun, ShortElementsAllocateNothing) {
    static std::vector<long>* blocks;
    std::vector<long> counted;
    blocks = &counted;
    counted.reserve(100);
    allow("text", nullptr, [](ZORParseContext*) { blocks->push_back(allocatedBlocks()); });
    std::string xml = "<top>";
    for (int i = 0; i < 30; ++i) xml += "<text>some text</text><text>another text</text>";
    EXPECT_EQ(parser.feed(xml + "</top>"), "");
    ASSERT_EQ(counted.size(), 60U);
    EXPECT_EQ(counted.back(), counted[2]);
}
