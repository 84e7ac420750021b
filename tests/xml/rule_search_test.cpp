// The search for a rule among many, compared with a plain walk.

#include "xml/rule_search.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

using zor_internal::findRule;
using zor_internal::RuleSearches;

namespace {

// A rule with inner rules "0", "1" and so on.
class ManyRules {
public:
    explicit ManyRules(int count) : outer("outer", ignoreCharacterData, nullptr, nullptr) {
        for (int i = 0; i < count; ++i) add(std::to_string(i));
    }

    ZorElementParseRules* add(std::string const& name) {
        auto* const inner =
            new ZorElementParseRules(name.c_str(), ignoreCharacterData, nullptr, nullptr);
        zor_XMLParseRulesAddInnerRules(&outer, inner);
        return inner;
    }

    // Expects what a walk finds for the name.
    void expectSame(std::string const& name) {
        EXPECT_EQ(searches.find(&outer, name.c_str()), findRule(&outer, name.c_str())) << name;
    }

    ZorElementParseRules outer;
    RuleSearches searches;
};

} // namespace

TEST(RuleSearch, FindsWhatAWalkFinds) {
    for (int const count : {0, 1, 31, 32, 33, 500}) {
        ManyRules rules(count);
        for (int round = 0; round < 30; ++round) {
            for (int i = 0; i < count; i += 7) rules.expectSame(std::to_string(i));
            rules.expectSame("nothing");
        }
    }
}

// Of two rules of one name the first is found, by walk and by index.
TEST(RuleSearch, FirstOfTwoWins) {
    ManyRules rules(500);
    ZorElementParseRules const* const first = rules.add("twice");
    rules.add("twice");
    rules.add("7");
    for (int round = 0; round < 30; ++round) {
        EXPECT_EQ(rules.searches.find(&rules.outer, "twice"), first);
        rules.expectSame("7");
    }
}

// A rule that is added while elements are open is found from then on.
TEST(RuleSearch, RulesThatComeLaterAreFound) {
    ManyRules rules(500);
    for (int round = 0; round < 30; ++round) rules.expectSame("499");
    ZorElementParseRules const* const late = rules.add("late");
    EXPECT_EQ(rules.searches.find(&rules.outer, "late"), late);
    EXPECT_EQ(rules.searches.find(&rules.outer, "later"), nullptr);
}

// After `forget` the rules of another list are found, though it is the same rule's.
TEST(RuleSearch, ForgetsOnRequest) {
    ManyRules rules(500);
    for (int round = 0; round < 30; ++round) rules.expectSame("499");
    ZorListNode* const before = rules.outer.innerRules;
    rules.outer.innerRules = nullptr;
    rules.searches.forget();
    for (int i = 0; i < 40; ++i) rules.add("new" + std::to_string(i));
    rules.expectSame("new39");
    rules.expectSame("499");
    zor_listJoin(before, rules.outer.innerRules); // all are released with the rule
    rules.outer.innerRules = before;
}
