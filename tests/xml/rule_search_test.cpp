// The search for a rule among many, compared with a plain walk.

#include "xml/rule_search.h"

#include <gtest/gtest.h>

#include <iterator>
#include <list>
#include <random>
#include <string>
#include <utility>

using zor_internal::findRule;
using zor_internal::RuleSearches;

namespace {

// A rule with inner rules "0", "1" and so on.
class ManyRules {
public:
    explicit ManyRules(int count = 0) : outer("outer", ignoreCharacterData, nullptr, nullptr) {
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

// A rule that was destroyed is never found, nor is its place in the list, whatever takes its
// memory; nobody has to ask for that.
TEST(RuleSearch, RulesThatAreDestroyedAreForgotten) {
    for (int const count : {1, 40}) {
        ManyRules rules(count);
        for (int round = 0; round < 500; ++round) {
            rules.expectSame("0");
            rules.expectSame(std::to_string(count - 1));
        }
        ZorListNode* const gone = std::exchange(rules.outer.innerRules, nullptr);
        for (ZorListNode const* node = gone; node; node = node->next) {
            zor_XMLParseRulesRemoveRef(static_cast<ZorElementParseRules*>(node->value));
        }
        zor_listDelete(gone);
        for (int i = 1; i <= count; ++i) rules.add(std::to_string(i));
        rules.expectSame("0");
        rules.expectSame("1");
        rules.expectSame(std::to_string(count));
    }
}

// Names that begin alike, under so many rules that what is remembered of them collides; with
// duplicates, and with rules that come in between.
TEST(RuleSearch, AgreesWithAWalkWhateverIsRemembered) {
    std::mt19937 dice(64);
    auto const name = [&dice](unsigned count) {
        static char const* const beginnings[] = {"", "a", "b", "aa", "ab", "ba"};
        std::string const beginning =
            beginnings[dice() % 6]; // before the number, by every compiler
        return beginning + std::to_string(dice() % count);
    };
    std::list<ManyRules> all(100);
    RuleSearches searches;
    int found = 0;
    for (int i = 0; i < 60000; ++i) {
        ManyRules& rules = *std::next(all.begin(), dice() % 4 ? dice() % 100 : 0);
        if (dice() % 20 == 0) rules.add(name(60));
        std::string const wanted = name(60);
        ZorElementParseRules const* const expected = findRule(&rules.outer, wanted.c_str());
        ASSERT_EQ(searches.find(&rules.outer, wanted.c_str()), expected) << wanted << ", " << i;
        found += expected != nullptr;
    }
    EXPECT_GT(found, 5000);
}

// While the rules inside a rule are lent to another one, nothing is found in it, and afterwards
// the same as before.
TEST(RuleSearch, RulesThatAreTakenAwayAreNotFound) {
    ManyRules lender(300);
    ManyRules borrower;
    RuleSearches searches;
    for (int round = 0; round < 60; ++round) {
        for (int i = 0; i < 300; i += 13) {
            std::string const name = std::to_string(i);
            ZorElementParseRules const* const rule = findRule(&lender.outer, name.c_str());
            ASSERT_NE(rule, nullptr);
            EXPECT_EQ(searches.find(&lender.outer, name.c_str()), rule);
            std::swap(borrower.outer.innerRules, lender.outer.innerRules);
            EXPECT_EQ(searches.find(&lender.outer, name.c_str()), nullptr);
            EXPECT_EQ(searches.find(&borrower.outer, name.c_str()), rule);
            std::swap(borrower.outer.innerRules, lender.outer.innerRules);
            EXPECT_EQ(searches.find(&lender.outer, name.c_str()), rule);
            EXPECT_EQ(searches.find(&borrower.outer, name.c_str()), nullptr);
        }
    }
}
