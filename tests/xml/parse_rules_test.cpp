// Element rules: what they hold, how they are counted, and when they die.

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>
#include <vector>

#include "tests/support/text.h"
#include "zor/xml.h"

namespace {

// The names of rules that were destroyed, in order.
std::string& destroyed() {
    static std::string names;
    return names;
}

std::string takeDestroyed() {
    std::string taken;
    taken.swap(destroyed());
    return taken;
}

void noteDestroyed(void* name) {
    destroyed() += static_cast<char const*>(name);
    destroyed() += ' ';
}

// A rule that notes its destruction. `name` outlives the rule.
ZorElementParseRules* makeRule(char const* name) {
    auto* const rule = new ZorElementParseRules(name, ignoreCharacterData, nullptr, nullptr);
    zor_XMLParseRulesSetElementUserData(rule, const_cast<char*>(name), noteDestroyed);
    return rule;
}

// A rule with one reference, the test's.
ZorElementParseRules* makeHeld(char const* name) {
    ZorElementParseRules* const rule = makeRule(name);
    rule->refCount = 1;
    return rule;
}

// The names of the inner rules.
std::string inside(ZorElementParseRules const* rule) {
    std::string names;
    for (ZorListNode* node = rule->innerRules; node; node = zor_listNextNode(node)) {
        auto const* const inner = static_cast<ZorElementParseRules*>(zor_listGetValue(node));
        names += std::string(inner->elementName->text) + ' ';
    }
    return names;
}

std::string attributesOf(ZorElementParseRules const* rule) {
    std::string names;
    for (ZorListNode* node = rule->attributes; node; node = zor_listNextNode(node)) {
        names += std::string(static_cast<ZorString*>(zor_listGetValue(node))->text) + ' ';
    }
    return names;
}

void start(ZORParseContext*) {}
void end(ZORParseContext*) {}

} // namespace

TEST(ParseRules, NewRuleHasItsNameUsageAndCallbacksOnly) {
    ZorElementParseRules const rule("volume", rawCharacterData, start, end);
    EXPECT_STREQ(rule.elementName->text, "volume");
    EXPECT_EQ(rule.characterData, rawCharacterData);
    EXPECT_EQ(rule.startElement, start);
    EXPECT_EQ(rule.endElement, end);
    EXPECT_EQ(rule.innerRules, nullptr);
    EXPECT_EQ(rule.attributes, nullptr);
    EXPECT_EQ(rule.refCount, 0);
    EXPECT_EQ(zor_XMLParseRulesGetElementUserData(&rule), nullptr);
    EXPECT_EQ(rule.freeElementUserData, nullptr);
}

TEST(ParseRules, CallbacksMayBeNull) {
    ZorElementParseRules const rule("volume", ignoreCharacterData, nullptr, nullptr);
    EXPECT_EQ(rule.startElement, nullptr);
    EXPECT_EQ(rule.endElement, nullptr);
}

TEST(ParseRules, UsagesHaveTheirNumbers) {
    EXPECT_EQ(static_cast<int>(ignoreCharacterData), 0);
    EXPECT_EQ(static_cast<int>(trimmedCharacterData), 1);
    EXPECT_EQ(static_cast<int>(rawCharacterData), 2);
}

// A ZorString given as name is shared, not copied, and released with the rule.
TEST(ParseRules, StringNameGainsAReferenceForAsLongAsTheRuleLives) {
    Text const name("volume");
    ZorString* const string = name;
    {
        ZorElementParseRules const rule(string, ignoreCharacterData, nullptr, nullptr);
        EXPECT_EQ(rule.elementName, string);
        EXPECT_EQ(string->refCount, 2);
    }
    EXPECT_EQ(string->refCount, 1);
}

// A plain name that is one of the permanent strings becomes that one.
TEST(ParseRules, PlainNameIsInterned) {
    ZorElementParseRules const rule("schema", ignoreCharacterData, nullptr, nullptr);
    EXPECT_EQ(rule.elementName, &ZorString::stdZorStrings[2]);
}

TEST(ParseRules, AttributesKeepTheirOrder) {
    ZorElementParseRules rule("volume", ignoreCharacterData, nullptr, nullptr);
    zor_XMLParseRulesAddAttribute(&rule, "unit");
    zor_XMLParseRulesAddAttribute(&rule, "name");
    zor_XMLParseRulesAddAttribute(&rule, "unit");
    EXPECT_EQ(attributesOf(&rule), "unit name unit ");
}

TEST(ParseRules, StringAttributeGainsAReferenceForAsLongAsTheRuleLives) {
    Text const name("unit");
    ZorString* const string = name;
    {
        ZorElementParseRules rule("volume", ignoreCharacterData, nullptr, nullptr);
        zor_XMLParseRulesAddAttribute(&rule, string);
        EXPECT_EQ(zor_listGetValue(rule.attributes), string);
        EXPECT_EQ(string->refCount, 2);
    }
    EXPECT_EQ(string->refCount, 1);
}

TEST(ParseRules, InnerRulesKeepTheirOrderAndAreCounted) {
    ZorElementParseRules* const outer = makeHeld("outer");
    ZorElementParseRules* const b = makeRule("b");
    ZorElementParseRules* const a = makeRule("a");
    zor_XMLParseRulesAddInnerRules(outer, b);
    zor_XMLParseRulesAddInnerRules(outer, a);
    EXPECT_EQ(inside(outer), "b a ");
    EXPECT_EQ(b->refCount, 1);
    EXPECT_EQ(a->refCount, 1);
    EXPECT_EQ(outer->refCount, 1);
    zor_XMLParseRulesRemoveRef(outer);
    EXPECT_EQ(takeDestroyed(), "b a outer ");
}

// The user data goes last, after everything that the rule holds.
TEST(ParseRules, InnerRulesAreReleasedBeforeTheUserDataOfTheOuter) {
    ZorElementParseRules* const outer = makeHeld("outer");
    ZorElementParseRules* const middle = makeRule("middle");
    zor_XMLParseRulesAddInnerRules(outer, middle);
    zor_XMLParseRulesAddInnerRules(middle, makeRule("inner"));
    zor_XMLParseRulesRemoveRef(outer);
    EXPECT_EQ(takeDestroyed(), "inner middle outer ");
}

TEST(ParseRules, RemoveRefDestroysAtExactlyZero) {
    ZorElementParseRules* const rule = makeRule("rule");
    rule->refCount = 3;
    zor_XMLParseRulesRemoveRef(rule);
    zor_XMLParseRulesRemoveRef(rule);
    EXPECT_EQ(takeDestroyed(), "");
    EXPECT_EQ(rule->refCount, 1);
    zor_XMLParseRulesRemoveRef(rule);
    EXPECT_EQ(takeDestroyed(), "rule ");
}

// A count that passes below zero stays there: the rule is not destroyed.
TEST(ParseRules, RemoveRefBelowZeroDestroysNothing) {
    ZorElementParseRules rule("rule", ignoreCharacterData, nullptr, nullptr);
    zor_XMLParseRulesRemoveRef(&rule);
    EXPECT_EQ(rule.refCount, -1);
    zor_XMLParseRulesRemoveRef(&rule);
    EXPECT_EQ(rule.refCount, -2);
}

TEST(ParseRules, SharedInnerRuleOutlivesOneOfItsOuters) {
    ZorElementParseRules* const first = makeHeld("first");
    ZorElementParseRules* const second = makeHeld("second");
    ZorElementParseRules* const inner = makeRule("inner");
    zor_XMLParseRulesAddInnerRules(first, inner);
    zor_XMLParseRulesAddInnerRules(second, inner);
    EXPECT_EQ(inner->refCount, 2);
    zor_XMLParseRulesRemoveRef(first);
    EXPECT_EQ(takeDestroyed(), "first ");
    zor_XMLParseRulesRemoveRef(second);
    EXPECT_EQ(takeDestroyed(), "inner second ");
}

TEST(ParseRules, InnerRuleAddedTwiceIsCountedTwice) {
    ZorElementParseRules* const outer = makeHeld("outer");
    ZorElementParseRules* const inner = makeRule("inner");
    zor_XMLParseRulesAddInnerRules(outer, inner);
    zor_XMLParseRulesAddInnerRules(outer, inner);
    EXPECT_EQ(inner->refCount, 2);
    EXPECT_EQ(inside(outer), "inner inner ");
    zor_XMLParseRulesRemoveRef(outer);
    EXPECT_EQ(takeDestroyed(), "inner outer ");
}

TEST(ParseRules, RuleInsideItselfKeepsItsCountAndDiesOnce) {
    ZorElementParseRules* const rule = makeHeld("rule");
    zor_XMLParseRulesAddInnerRules(rule, rule);
    EXPECT_EQ(rule->refCount, 1);
    EXPECT_EQ(inside(rule), "rule ");
    zor_XMLParseRulesRemoveRef(rule);
    EXPECT_EQ(takeDestroyed(), "rule ");
}

// A rule that lists itself takes further rules, as any other.
TEST(ParseRules, RuleInsideItselfCountsWhatIsAddedBelowIt) {
    ZorElementParseRules* const outer = makeHeld("outer");
    ZorElementParseRules* const self = makeRule("self");
    ZorElementParseRules* const leaf = makeRule("leaf");
    zor_XMLParseRulesAddInnerRules(self, self);
    zor_XMLParseRulesAddInnerRules(self, leaf);
    zor_XMLParseRulesAddInnerRules(outer, self);
    zor_XMLParseRulesAddInnerRules(outer, leaf);
    EXPECT_EQ(self->refCount, 1);
    EXPECT_EQ(leaf->refCount, 2);
    zor_XMLParseRulesRemoveRef(outer);
    EXPECT_EQ(takeDestroyed(), "self leaf outer ");
}

// What closes a cycle over other rules is not counted, so the cycle dies with its outside holder.
TEST(ParseRules, CycleOverOtherRulesDiesWithItsHolder) {
    ZorElementParseRules* const holder = makeHeld("holder");
    ZorElementParseRules* const a = makeRule("a");
    ZorElementParseRules* const b = makeRule("b");
    ZorElementParseRules* const c = makeRule("c");
    zor_XMLParseRulesAddInnerRules(holder, a);
    zor_XMLParseRulesAddInnerRules(a, b);
    zor_XMLParseRulesAddInnerRules(b, c);
    zor_XMLParseRulesAddInnerRules(c, a);
    EXPECT_EQ(a->refCount, 1);
    EXPECT_EQ(b->refCount, 1);
    EXPECT_EQ(c->refCount, 1);
    EXPECT_EQ(inside(c), "a ");
    zor_XMLParseRulesRemoveRef(holder);
    EXPECT_EQ(takeDestroyed(), "c b a holder ");
}

TEST(ParseRules, RuleWithALongCycleBelowCanBeAdded) {
    ZorElementParseRules* const holder = makeHeld("holder");
    ZorElementParseRules* const a = makeRule("a");
    ZorElementParseRules* const b = makeRule("b");
    zor_XMLParseRulesAddInnerRules(a, b);
    zor_XMLParseRulesAddInnerRules(b, a);
    zor_XMLParseRulesAddInnerRules(holder, a);
    EXPECT_EQ(a->refCount, 1);
    EXPECT_EQ(b->refCount, 1);
    zor_XMLParseRulesRemoveRef(holder);
    EXPECT_EQ(takeDestroyed(), "b a holder ");
}

TEST(ParseRules, UserDataIsReplacedWithoutBeingReleased) {
    ZorElementParseRules* const rule = makeHeld("first");
    char second[] = "second";
    zor_XMLParseRulesSetElementUserData(rule, second, noteDestroyed);
    EXPECT_EQ(takeDestroyed(), "");
    EXPECT_EQ(zor_XMLParseRulesGetElementUserData(rule), second);
    zor_XMLParseRulesRemoveRef(rule);
    EXPECT_EQ(takeDestroyed(), "second ");
}

TEST(ParseRules, UserDataWithoutFreeFunctionIsLeftAlone) {
    int data = 5;
    {
        ZorElementParseRules rule("rule", ignoreCharacterData, nullptr, nullptr);
        zor_XMLParseRulesSetElementUserData(&rule, &data, nullptr);
    }
    EXPECT_EQ(data, 5);
}

// The free function is called with whatever the data is, null included.
TEST(ParseRules, FreeFunctionIsCalledForNullDataToo) {
    static int calls;
    calls = 0;
    {
        ZorElementParseRules rule("rule", ignoreCharacterData, nullptr, nullptr);
        zor_XMLParseRulesSetElementUserData(&rule, nullptr, [](void* data) { calls += !data; });
    }
    EXPECT_EQ(calls, 1);
}

namespace {

constexpr std::size_t kRules = 6;
using Matrix = std::array<std::array<bool, kRules>, kRules>;

// Every pair that any number of steps connects, and every rule with itself.
Matrix closureOf(Matrix const& edges) {
    Matrix reach = edges;
    for (std::size_t i = 0; i < kRules; ++i) reach[i][i] = true;
    for (std::size_t k = 0; k < kRules; ++k) {
        for (std::size_t i = 0; i < kRules; ++i) {
            for (std::size_t j = 0; j < kRules; ++j) {
                reach[i][j] = reach[i][j] || (reach[i][k] && reach[k][j]);
            }
        }
    }
    return reach;
}

} // namespace

// In any graph, an inner rule is counted unless its outer can be reached from it.
TEST(ParseRules, CountsOfRandomGraphsAreThoseOfATransitiveClosure) {
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        std::vector<ZorElementParseRules*> rules;
        std::array<int, kRules> expected{};
        Matrix edges{};
        for (std::size_t i = 0; i < kRules; ++i) rules.push_back(makeRule("r"));
        for (int added = 0; added < 9; ++added) {
            std::size_t const outer = random() % kRules;
            std::size_t const inner = random() % kRules;
            edges[outer][inner] = true;
            if (!closureOf(edges)[inner][outer]) ++expected[inner];
            zor_XMLParseRulesAddInnerRules(rules[outer], rules[inner]);
        }
        for (std::size_t i = 0; i < kRules; ++i) {
            EXPECT_EQ(rules[i]->refCount, expected[i]) << "round " << round << " rule " << i;
            zor_listDelete(rules[i]->innerRules);
            rules[i]->innerRules = nullptr;
            delete rules[i];
        }
    }
    takeDestroyed();
}
