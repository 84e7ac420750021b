// What `reset` makes of a parser, whatever its input left behind.

#include <gtest/gtest.h>

#include <string>

#include "tests/support/allocations.h"
#include "tests/xml/bare_expat.h"
#include "tests/xml/rule_calls.h"
#include "zor/collection.h"
#include "zor/xml.h"

namespace {

// A collection "phone" with a parser of its own.
class Resettable {
public:
    Resettable() : incidents("", nullptr, nullptr), parser(&collection, &incidents) {}

    std::string feed(std::string const& piece, bool isFinal = true) {
        parser.parse(piece.data(), static_cast<int>(piece.size()), isFinal);
        return log.take();
    }

    bool hasSchema(char const* name) { return collection.getSchema(name) != nullptr; }

    IncidentLog log;
    ZorCollection collection{"phone"};
    ZorIncidentContext incidents;
    ZorXmlParser parser;
};

std::string definition(std::string const& name) {
    return "<phone><schema name='" + name + "'><item name='x' type='int'/></schema></phone>";
}

} // namespace

// Without `reset`, a parser that is through with its input takes no other.
TEST(ParserReset, FinishedParserTakesNoFurtherInput) {
    Resettable store;
    EXPECT_EQ(store.feed("<phone/>"), "");
    EXPECT_EQ(store.feed(definition("a")), incidentAt(3, 1, 8, "parsing finished"));
    EXPECT_FALSE(store.hasSchema("a"));
}

// Nor does one whose input was broken: it goes on repeating its complaint.
TEST(ParserReset, FailedParserTakesNoFurtherInput) {
    Resettable store;
    std::string const broken = "<phone></fone>";
    EXPECT_EQ(store.feed(broken, false), incidentAt(3, 1, 9, "mismatched tag"));
    std::string const complaint = complaintOfExpat({broken, definition("a")}, false);
    EXPECT_NE(complaint, "");
    EXPECT_EQ(store.feed(definition("a"), false), complaint);
    EXPECT_FALSE(store.hasSchema("a"));
}

TEST(ParserReset, ResetParserImportsNormally) {
    Resettable store;
    EXPECT_EQ(store.feed(definition("a")), "");
    store.parser.reset(&store.collection);
    EXPECT_EQ(store.feed(definition("b")), "");
    EXPECT_TRUE(store.hasSchema("a"));
    EXPECT_TRUE(store.hasSchema("b"));
}

TEST(ParserReset, NewParserMayBeReset) {
    Resettable store;
    store.parser.reset(&store.collection);
    store.parser.reset(&store.collection);
    EXPECT_EQ(store.feed(definition("a")), "");
}

// After every kind of trouble, a correct text is imported as if nothing had been.
TEST(ParserReset, NothingOfAFailedInputIsLeft) {
    struct {
        char const* name;
        char const* text;
        std::string incidents;
    } const rows[] = {
        {"broken at once", "<", incidentAt(3, 1, 0, "unclosed token")},
        {"empty", "", incidentAt(3, 1, 0, "no element found")},
        {"mismatched", "<phone><schema name='bad'></phone>",
         incidentAt(3, 1, 28, "mismatched tag")},
        {"definition error", "<phone><schema></schema></phone>",
         incidentAt(3, 1, 7, "missing name attribute")},
        {"ends inside a schema", "<phone><schema name='bad'>",
         incidentAt(3, 1, 26, "no element found")},
        {"ends inside a branch", "<phone><schema name='bad'><branch name='b'>",
         incidentAt(3, 1, 43, "no element found")},
        {"ends inside an item", "<phone><schema name='bad'><item name='b' type='int' default='1'>",
         incidentAt(3, 1, 64, "no element found")},
        {"ends inside a range",
         "<phone><schema name='bad'>"
         "<range name='r' baseType='int' minValue='1' maxValue='2'>",
         incidentAt(3, 1, 83, "no element found")},
        {"ends inside an option", "<phone><schema name='bad'><choice name='c'><option>some",
         incidentAt(3, 1, 55, "no element found")},
        {"ends inside a document", "<phone><document name='d'><itemValue>some",
         incidentAt(3, 1, 41, "no element found")},
        {"ends inside an unknown element", "<phone><foo><bar>",
         incidentAt(2, 1, 7, "element not recognised in this context <foo>") +
             incidentAt(2, 1, 7,
                        "Element is 'foo'. Possible valid elements are 'collection' 'schema' "
                        "'document' . outerContext->currentElement->elementName = 'phone'") +
             incidentAt(2, 1, 7, ". outerOuterContextElementName = 'root-node'") +
             incidentAt(3, 1, 17, "no element found")},
    };
    for (auto const& row : rows) {
        Resettable store;
        EXPECT_EQ(store.feed(row.text), row.incidents) << row.name;
        EXPECT_EQ(store.incidents.getMaxIncidentSeverity(), severityError) << row.name;
        store.parser.reset(&store.collection);
        EXPECT_EQ(store.parser.currentContext, store.parser.rootContext) << row.name;
        EXPECT_EQ(store.incidents.getMaxIncidentSeverity(), severityNone) << row.name;
        EXPECT_EQ(store.feed(definition("good")), "") << row.name;
        EXPECT_TRUE(store.hasSchema("good")) << row.name;
    }
}

namespace {

// The rules at or below this one that hold something: node rules in <document>, or a half-built
// node or range in <branch>, <item> or <range>.
std::string rulesInUse(ZorElementParseRules const* rule) {
    std::string const name = rule->elementName->text;
    if (name == "document") return rule->innerRules ? "document " : "";
    bool const isPending = rule->elementUserData && name != "phone";
    std::string names = isPending ? name + ' ' : "";
    for (ZorListNode const* node = rule->innerRules; node; node = node->next) {
        auto const* const inner = static_cast<ZorElementParseRules const*>(node->value);
        if (inner != rule && name != "collection") names += rulesInUse(inner);
    }
    return names;
}

} // namespace

// What elements were building when their input stopped goes with `reset`, not with the next input.
TEST(ParserReset, HalfBuiltObjectsAreReleased) {
    struct {
        char const* text;
        char const* inUse;
    } const rows[] = {
        {"<schema name='s'>", ""},
        {"<schema name='s'><branch name='b'>", "branch "},
        {"<schema name='s'><branch name='b'></branch>", ""},
        {"<schema name='s'><item name='i' type='string' default='x'>", "item "},
        {"<schema name='s'><range name='r' baseType='int' minValue='1' maxValue='2'>", "range "},
        {"<document name='d'>", "document "},
        {"<document name='d'><itemValue>x", "document "},
        {"<document name='d'></document>", ""},
    };
    for (auto const& row : rows) {
        Resettable store;
        auto const inUse = [&store] {
            return rulesInUse(zor_XMLContextGetParseRules(store.parser.rootContext));
        };
        EXPECT_EQ(store.feed(std::string("<phone>") + row.text, false), "") << row.text;
        EXPECT_EQ(inUse(), row.inUse) << row.text;
        store.parser.reset(&store.collection);
        EXPECT_EQ(inUse(), "") << row.text;
    }
}

// Positions are counted from the start of the new input.
TEST(ParserReset, PositionsStartAgain) {
    Resettable store;
    EXPECT_EQ(store.feed("\n\n\n<phone>", false), "");
    store.parser.reset(&store.collection);
    EXPECT_EQ(store.feed("<phone>\n<schema/></phone>"),
              incidentAt(3, 2, 0, "missing name attribute"));
}

TEST(ParserReset, RootContextStays) {
    Resettable store;
    ZORParseContext const* const root = store.parser.rootContext;
    EXPECT_EQ(store.feed("<phone><schema name='a'>", false), "");
    store.parser.reset(&store.collection);
    EXPECT_EQ(store.parser.rootContext, root);
    ZorListNode const* const inner = zor_XMLContextGetParseRules(root)->innerRules;
    ASSERT_NE(inner, nullptr);
    EXPECT_EQ(inner->next, nullptr);
}

// A rule that the caller put beside the collection's is followed after `reset`, too.
TEST(ParserReset, RulesOfTheCallerStay) {
    RuleParser parser;
    parser.allow(noted("pen", rawCharacterData));
    EXPECT_EQ(parser.feed("<top><pen>a"), "");
    parser.parser.reset(&parser.collection);
    EXPECT_EQ(parser.feed("<top><pen>b</pen></top>", true), "");
    EXPECT_EQ(parser.calls(), "<top><pen><top><pen>b</pen></top>");
}

// A parser serves the collection it was made for, whatever `reset` is given.
TEST(ParserReset, ArgumentIsNotUsed) {
    Resettable store;
    ZorCollection other("other");
    store.parser.reset(&other);
    EXPECT_EQ(store.feed(definition("a")), "");
    store.parser.reset(nullptr);
    EXPECT_EQ(store.feed(definition("b")), "");
    EXPECT_TRUE(store.hasSchema("a"));
    EXPECT_TRUE(store.hasSchema("b"));
    EXPECT_EQ(other.getSchema("a"), nullptr);
}

TEST(ParserReset, ParserWithoutIncidentContextMayBeReset) {
    IncidentLog log;
    ZorCollection collection("phone");
    ZorXmlParser parser(&collection, nullptr);
    parser.parse("<phone><schema name='a'>", -1, 1);
    EXPECT_EQ(log.take(), "3 zor_XMLParse: line 1, column 24 no element found\n");
    parser.reset(&collection);
    EXPECT_EQ(parser.incidentContext, nullptr);
    parser.parse(definition("b").c_str(), -1, 1);
    EXPECT_EQ(log.take(), "");
    EXPECT_NE(collection.getSchema("b"), nullptr);
}

// The caller's own frames are none of the parser's business.
TEST(ParserReset, FramesOfTheCallerStay) {
    IncidentLog log;
    ZorCollection collection("phone");
    ZorIncidentContext incidents("boot", nullptr, nullptr);
    incidents.push("second stage", nullptr, nullptr);
    ZorXmlParser parser(&collection, &incidents);
    parser.parse("<phone>", -1, 0);
    parser.reset(&collection);
    parser.parse("<phone", -1, 1);
    EXPECT_EQ(log.take(), "3 boot{second stage{zor_XMLParse: line 1, column 0 }}unclosed token\n");
}

// What an unfinished input left half-built is released by the reset, not only by the next input.
TEST(ParserReset, ReleasesWhatWasLeftOpen) {
    Resettable store;
    EXPECT_EQ(store.feed(definition("a")), "");
    store.collection.makeDocument("a", "d"); // the schema's index is made now
    store.collection.deleteAllDocuments();
    for (char const* const unfinished :
         {"<phone><schema name='s'><item name='long enough to be on the heap' type='int'>",
          "<phone><schema name='t'><range name='r' baseType='int' minValue='1' maxValue='2'>",
          "<phone><document name='d' schema='a'><x>1"}) {
        store.parser.reset(nullptr);
        long const before = liveBlocks();
        EXPECT_EQ(store.feed(unfinished, false), "");
        store.parser.reset(nullptr);
        store.collection.deleteAllDocuments();
        store.collection.deleteSchema("s");
        store.collection.deleteSchema("t");
        EXPECT_EQ(liveBlocks(), before) << unfinished;
    }
}
