// Finding rules by name: by walking, and by an index where there is much to walk.

#include "xml/rule_search.h"

#include <gtest/gtest.h>

#include <string>

#include "zor/xml.h"

using zor_internal::findRule;
using zor_internal::RuleSearches;

namespace {

std::string nameOf(int number) { return "rule" + std::to_string(number); }

// Rules "rule0", "rule1" and so on inside one, and searches among them.
class RuleSearch : public testing::Test {
protected:
    static constexpr int kRules = 100;
    static constexpr int kLong = 10000 / kRules; // so many searches for nothing are a long walk

    RuleSearch() {
        for (int i = 0; i < kRules; ++i) allow(&outer, nameOf(i));
    }

    static ZorElementParseRules* allow(ZorElementParseRules* in, std::string const& name) {
        auto* const rule =
            new ZorElementParseRules(name.c_str(), ignoreCharacterData, nullptr, nullptr);
        zor_XMLParseRulesAddInnerRules(in, rule);
        return rule;
    }

    ZorElementParseRules* find(std::string const& name) {
        return searches.find(&outer, name.c_str());
    }

    void walkFar() {
        for (int i = 0; i < kLong; ++i) find("unknown");
    }

    ZorElementParseRules outer{"outer", ignoreCharacterData, nullptr, nullptr};
    RuleSearches searches;
};

} // namespace

// What a search finds does not depend on how far others have walked.
TEST_F(RuleSearch, FindsTheSameHoweverOftenItIsAsked) {
    for (int round = 0; round < kLong; ++round) {
        for (int i = 0; i < kRules; ++i) {
            ZorElementParseRules const* const found = find(nameOf(i));
            ASSERT_NE(found, nullptr) << nameOf(i) << " in round " << round;
            ASSERT_EQ(found->elementName->text, nameOf(i)) << "in round " << round;
            ASSERT_EQ(found, findRule(&outer, nameOf(i).c_str())) << "in round " << round;
        }
        ASSERT_EQ(find("unknown"), nullptr) << "in round " << round;
        ASSERT_EQ(find("rule"), nullptr) << "in round " << round;
        ASSERT_EQ(find(""), nullptr) << "in round " << round;
    }
    EXPECT_EQ(findRule(&outer, "unknown"), nullptr);
}

// Of two rules of one name the first counts, for the index, too, wherever the two stand.
TEST_F(RuleSearch, FindsTheFirstOfTwo) {
    ZorElementParseRules const* const early = find("rule7");
    ZorElementParseRules const* const late = find("rule90");
    allow(&outer, "rule7");
    allow(&outer, "rule90");
    EXPECT_EQ(find("rule7"), early);
    EXPECT_EQ(find("rule90"), late);
    walkFar();
    EXPECT_EQ(find("rule7"), early);
    EXPECT_EQ(find("rule90"), late);
}

TEST_F(RuleSearch, KnowsAfterForgettingWhatIsThere) {
    walkFar();
    EXPECT_EQ(find("later"), nullptr);
    ZorElementParseRules const* const later = allow(&outer, "later");
    searches.forget();
    EXPECT_EQ(find("later"), later);
    walkFar();
    EXPECT_EQ(find("later"), later);
}

// Each rule is searched for itself.
TEST_F(RuleSearch, KeepsRulesApart) {
    walkFar();
    ZorElementParseRules* const middle = find("rule3");
    ZorElementParseRules const* const inner = allow(middle, "inner");
    EXPECT_EQ(searches.find(middle, "inner"), inner);
    EXPECT_EQ(searches.find(middle, "rule3"), nullptr);
    EXPECT_EQ(find("inner"), nullptr);
    EXPECT_EQ(find("rule3"), middle);
}
