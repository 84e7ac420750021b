// Parse contexts: which rule an element matches, what it reports, and what it keeps.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/support/incidents.h"
#include "tests/support/text.h"
#include "zor/collection.h"
#include "zor/xml.h"

namespace {

using Attributes = std::vector<std::string>;

std::string const kLongest(65534, 'x');
std::string const kTooLong(65535, 'x');

// A root context of a parser that has no incident context, so that messages come without one.
class Contexts {
public:
    Contexts() : parser(&collection, nullptr), root(&parser) {}
    Contexts(Contexts const&) = delete;
    Contexts& operator=(Contexts const&) = delete;
    ~Contexts() {
        while (!opened.empty()) opened.pop_back();
    }

    // Allows an element inside another, or at the top.
    ZorElementParseRules* allow(ZorElementParseRules* outer, char const* name) {
        auto* const rule = new ZorElementParseRules(name, ignoreCharacterData, nullptr, nullptr);
        zor_XMLParseRulesAddInnerRules(outer ? outer : root.parseRules, rule);
        return rule;
    }

    // Opens an element in the one opened last. Attributes are name, value, name, value.
    ZORParseContext* open(char const* name, Attributes const& attributes = {}) {
        std::vector<char const*> array;
        for (std::string const& text : attributes) array.push_back(text.c_str());
        array.push_back(nullptr);
        ZORParseContext* const outer = opened.empty() ? &root : opened.back().get();
        opened.push_back(std::make_unique<ZORParseContext>(outer, name, array.data()));
        return opened.back().get();
    }

    void close() { opened.pop_back(); }

    IncidentLog log;
    ZorCollection collection{"phone"};
    ZorXmlParser parser;
    ZORParseContext root;

private:
    std::vector<std::unique_ptr<ZORParseContext>> opened;
};

// The value of an attribute as text, "(null)" when there is none.
std::string attribute(ZORParseContext const* context, void const* name) {
    ZorString* const value = zor_XMLContextGetAttribute(context, name);
    return value ? std::string(value->text, value->length) : "(null)";
}

} // namespace

TEST(ParseContext, RootHasARuleOfItsOwn) {
    Contexts contexts;
    ZORParseContext const& root = contexts.root;
    ZorElementParseRules const* const rule = zor_XMLContextGetParseRules(&root);
    EXPECT_STREQ(rule->elementName->text, "root-node");
    EXPECT_EQ(rule->characterData, ignoreCharacterData);
    EXPECT_EQ(rule->startElement, nullptr);
    EXPECT_EQ(rule->endElement, nullptr);
    EXPECT_EQ(rule->refCount, 1);
    EXPECT_EQ(rule->innerRules, nullptr);
    EXPECT_EQ(zor_XMLContextGetOuterContext(&root), nullptr);
    EXPECT_EQ(zor_XMLContextGetCharacterData(&root), nullptr);
    EXPECT_EQ(zor_XMLContextGetUserData(&root), nullptr);
    EXPECT_EQ(zor_XMLContextGetAttribute(&root, "name"), nullptr);
    EXPECT_EQ(root.attributes, nullptr);
    EXPECT_EQ(root.parser, &contexts.parser);
}

TEST(ParseContext, ElementTakesTheRuleOfItsNameAndTheParserOfItsOuter) {
    Contexts contexts;
    contexts.allow(nullptr, "item");
    ZorElementParseRules* const branch = contexts.allow(nullptr, "branch");
    ZORParseContext const* const context = contexts.open("branch");
    EXPECT_EQ(zor_XMLContextGetParseRules(context), branch);
    EXPECT_EQ(zor_XMLContextGetOuterContext(context), &contexts.root);
    EXPECT_EQ(context->parser, &contexts.parser);
    EXPECT_EQ(zor_XMLContextGetCharacterData(context), nullptr);
    EXPECT_EQ(zor_XMLContextGetUserData(context), nullptr);
    EXPECT_EQ(context->attributes, nullptr);
}

TEST(ParseContext, MatchedRuleIsNotCounted) {
    Contexts contexts;
    ZorElementParseRules const* const rule = contexts.allow(nullptr, "branch");
    contexts.open("branch");
    EXPECT_EQ(rule->refCount, 1);
    contexts.close();
    EXPECT_EQ(rule->refCount, 1);
}

TEST(ParseContext, FirstOfTwoRulesOfOneNameMatches) {
    Contexts contexts;
    ZorElementParseRules* const first = contexts.allow(nullptr, "item");
    contexts.allow(nullptr, "item");
    EXPECT_EQ(contexts.open("item")->parseRules, first);
}

TEST(ParseContext, NamesAreCaseSensitive) {
    Contexts contexts;
    contexts.allow(nullptr, "item");
    EXPECT_EQ(contexts.open("Item")->parseRules, nullptr);
    EXPECT_EQ(contexts.log.take(), "2 element not recognised in this context <Item>\n"
                                   "2 Element is 'Item'. Possible valid elements are 'item' . "
                                   "outerContext->currentElement->elementName = 'root-node'\n");
}

// Inside the root there is no outer rule to name, so the third message is left out.
TEST(ParseContext, UnknownElementAtTheTopIsReportedTwice) {
    Contexts contexts;
    contexts.allow(nullptr, "phone");
    contexts.allow(nullptr, "top");
    EXPECT_EQ(contexts.open("foo")->parseRules, nullptr);
    EXPECT_EQ(contexts.log.take(),
              "2 element not recognised in this context <foo>\n"
              "2 Element is 'foo'. Possible valid elements are 'phone' 'top' . "
              "outerContext->currentElement->elementName = 'root-node'\n");
}

TEST(ParseContext, UnknownElementDeeperInIsReportedThreeTimes) {
    Contexts contexts;
    ZorElementParseRules* const phone = contexts.allow(nullptr, "phone");
    ZorElementParseRules* const schema = contexts.allow(phone, "schema");
    contexts.allow(schema, "branch");
    contexts.allow(schema, "item");
    contexts.open("phone");
    contexts.open("schema");
    EXPECT_EQ(contexts.open("foo")->parseRules, nullptr);
    EXPECT_EQ(contexts.log.take(),
              "2 element not recognised in this context <foo>\n"
              "2 Element is 'foo'. Possible valid elements are 'branch' 'item' . "
              "outerContext->currentElement->elementName = 'schema'\n"
              "2 . outerOuterContextElementName = 'phone'\n");
}

// The root's rule counts as an outer rule for what stands in the outermost element.
TEST(ParseContext, UnknownElementInTheOutermostOneNamesTheRoot) {
    Contexts contexts;
    contexts.allow(nullptr, "phone");
    contexts.open("phone");
    contexts.open("foo");
    EXPECT_EQ(contexts.log.take(), "2 element not recognised in this context <foo>\n"
                                   "2 Element is 'foo'. Possible valid elements are . "
                                   "outerContext->currentElement->elementName = 'phone'\n"
                                   "2 . outerOuterContextElementName = 'root-node'\n");
}

TEST(ParseContext, ThirdMessageNeedsARuleToName) {
    Contexts contexts;
    contexts.allow(nullptr, "phone");
    contexts.open("phone");
    ZorElementParseRules* const rootRule = contexts.root.parseRules;
    contexts.root.parseRules = nullptr;
    contexts.open("foo");
    contexts.root.parseRules = rootRule;
    EXPECT_EQ(contexts.log.take(), "2 element not recognised in this context <foo>\n"
                                   "2 Element is 'foo'. Possible valid elements are . "
                                   "outerContext->currentElement->elementName = 'phone'\n");
}

TEST(ParseContext, NothingInsideAnUnknownElementIsReported) {
    Contexts contexts;
    contexts.allow(nullptr, "phone");
    contexts.open("foo");
    contexts.log.take();
    ZORParseContext const* const inner = contexts.open("phone", {"name", "x", "name", "y"});
    EXPECT_EQ(inner->parseRules, nullptr);
    EXPECT_EQ(inner->attributes, nullptr);
    EXPECT_EQ(contexts.open("bar", {"name", kTooLong})->parseRules, nullptr);
    EXPECT_EQ(contexts.log.take(), "");
}

// An unknown element's attributes are nothing to complain about.
TEST(ParseContext, UnknownElementKeepsNoAttribute) {
    Contexts contexts;
    ZORParseContext const* const context = contexts.open("foo", {"name", "x"});
    EXPECT_EQ(context->attributes, nullptr);
    EXPECT_EQ(contexts.log.take(), "2 element not recognised in this context <foo>\n"
                                   "2 Element is 'foo'. Possible valid elements are . "
                                   "outerContext->currentElement->elementName = 'root-node'\n");
}

TEST(ParseContext, AcceptedAttributeIsKeptAndAnotherReported) {
    Contexts contexts;
    zor_XMLParseRulesAddAttribute(contexts.allow(nullptr, "item"), "a");
    ZORParseContext const* const context = contexts.open("item", {"a", "1", "b", "2"});
    EXPECT_EQ(attribute(context, "a"), "1");
    EXPECT_EQ(attribute(context, "b"), "(null)");
    EXPECT_EQ(contexts.log.take(), "2 attribute not valid in this context (b)\n");
}

TEST(ParseContext, AttributesAreLookedAtInTheirOrder) {
    Contexts contexts;
    ZorElementParseRules* const item = contexts.allow(nullptr, "item");
    zor_XMLParseRulesAddAttribute(item, "name");
    zor_XMLParseRulesAddAttribute(item, "type");
    ZORParseContext const* const context =
        contexts.open("item", {"z", "1", "type", "int", "Name", "2", "name", "n", "a", "3"});
    EXPECT_EQ(attribute(context, "name"), "n");
    EXPECT_EQ(attribute(context, "type"), "int");
    EXPECT_EQ(contexts.log.take(), "2 attribute not valid in this context (z)\n"
                                   "2 attribute not valid in this context (Name)\n"
                                   "2 attribute not valid in this context (a)\n");
}

TEST(ParseContext, WithoutAcceptedAttributeThereIsNoMap) {
    Contexts contexts;
    zor_XMLParseRulesAddAttribute(contexts.allow(nullptr, "item"), "name");
    EXPECT_EQ(contexts.open("item")->attributes, nullptr);
    contexts.close();
    ZORParseContext const* const context = contexts.open("item", {"b", "2"});
    EXPECT_EQ(context->attributes, nullptr);
    EXPECT_EQ(zor_XMLContextGetAttribute(context, "name"), nullptr);
    EXPECT_EQ(contexts.log.take(), "2 attribute not valid in this context (b)\n");
}

TEST(ParseContext, AttributeIsFoundByStringAndByPlainName) {
    Contexts contexts;
    zor_XMLParseRulesAddAttribute(contexts.allow(nullptr, "item"), "kind");
    ZORParseContext const* const context = contexts.open("item", {"kind", "round"});
    Text const name("kind");
    EXPECT_EQ(attribute(context, static_cast<ZorString*>(name)), "round");
    EXPECT_EQ(attribute(context, "kind"), "round");
    EXPECT_EQ(attribute(context, "Kind"), "(null)");
}

// The rule's own name is the key, so that an attribute costs no further string.
TEST(ParseContext, AttributeIsKeptUnderTheNameOfTheRule) {
    Contexts contexts;
    Text const name("kind");
    ZorString* const string = name;
    zor_XMLParseRulesAddAttribute(contexts.allow(nullptr, "item"), string);
    EXPECT_EQ(string->refCount, 2);
    contexts.open("item", {"kind", "round"});
    EXPECT_EQ(string->refCount, 3);
    contexts.close();
    EXPECT_EQ(string->refCount, 2);
}

TEST(ParseContext, AttributeValuesAreInterned) {
    Contexts contexts;
    ZorElementParseRules* const item = contexts.allow(nullptr, "item");
    zor_XMLParseRulesAddAttribute(item, "a");
    zor_XMLParseRulesAddAttribute(item, "b");
    ZORParseContext const* const context = contexts.open("item", {"a", "true", "b", ""});
    EXPECT_EQ(zor_XMLContextGetAttribute(context, "a"), &ZorString::stdZorStrings[13]);
    EXPECT_EQ(zor_XMLContextGetAttribute(context, "b"), &ZorString::stdZorStrings[0]);
}

// A callback that keeps a value takes a reference; the context's own goes with it.
TEST(ParseContext, AttributeValueIsReleasedWithTheContext) {
    Contexts contexts;
    zor_XMLParseRulesAddAttribute(contexts.allow(nullptr, "item"), "a");
    ZorString* const value = zor_XMLContextGetAttribute(contexts.open("item", {"a", "1"}), "a");
    zor_stringAddRef(value);
    EXPECT_EQ(value->refCount, 2);
    contexts.close();
    EXPECT_EQ(value->refCount, 1);
    value->removeRef();
}

// An array that repeats a name, which expat never gives, leaves the last value.
TEST(ParseContext, RepeatedAttributeKeepsItsLastValue) {
    Contexts contexts;
    zor_XMLParseRulesAddAttribute(contexts.allow(nullptr, "item"), "a");
    EXPECT_EQ(attribute(contexts.open("item", {"a", "1", "a", "2"}), "a"), "2");
}

TEST(ParseContext, TextIsReleasedWithTheContext) {
    Contexts contexts;
    contexts.allow(nullptr, "item");
    Text const text("seven");
    ZorString* const string = text;
    zor_stringAddRef(string);
    ZORParseContext* const context = contexts.open("item");
    context->characterData = string;
    EXPECT_EQ(zor_XMLContextGetCharacterData(context), string);
    contexts.close();
    EXPECT_EQ(string->refCount, 1);
}

TEST(ParseContext, UserDataIsWhateverTheCallbacksPutThere) {
    Contexts contexts;
    contexts.allow(nullptr, "item");
    ZORParseContext* const context = contexts.open("item");
    int object = 5;
    zor_XMLContextSetUserData(context, &object);
    EXPECT_EQ(zor_XMLContextGetUserData(context), &object);
    zor_XMLContextSetUserData(context, nullptr);
    EXPECT_EQ(zor_XMLContextGetUserData(context), nullptr);
}

TEST(ParseContext, LongestAttributeIsKept) {
    Contexts contexts;
    zor_XMLParseRulesAddAttribute(contexts.allow(nullptr, "item"), "a");
    EXPECT_EQ(attribute(contexts.open("item", {"a", kLongest}), "a"), kLongest);
}

// One character more is an error, and the element is one that is not looked at.
TEST(ParseContext, TooLongAttributeIsAnError) {
    Contexts contexts;
    ZorElementParseRules* const item = contexts.allow(nullptr, "item");
    zor_XMLParseRulesAddAttribute(item, "a");
    zor_XMLParseRulesAddAttribute(item, "b");
    ZORParseContext const* const context =
        contexts.open("item", {"b", "kept until then", "a", kTooLong, "c", "3"});
    EXPECT_EQ(contexts.log.take(), "3 text is too long in element <item>\n");
    EXPECT_EQ(context->parseRules, nullptr);
    EXPECT_EQ(zor_XMLContextGetAttribute(context, "a"), nullptr);
    EXPECT_EQ(zor_XMLContextGetAttribute(context, "b"), nullptr);
}

// What is dropped anyway may be as long as it likes.
TEST(ParseContext, TooLongAttributeThatIsNotAcceptedIsOnlyThat) {
    Contexts contexts;
    ZorElementParseRules* const item = contexts.allow(nullptr, "item");
    EXPECT_EQ(contexts.open("item", {"a", kTooLong})->parseRules, item);
    EXPECT_EQ(contexts.log.take(), "2 attribute not valid in this context (a)\n");
}
