// Finding the rule of an element by its name.
//
// Rules are a list of which the first match counts. That is fast where few stand side by side, but
// the nodes of a document may be thousands. So whoever has walked over many rules inside one rule
// goes on with an index of them.

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <set>

#include "zor/xml.h"

namespace zor_internal {

// The first of the inner rules that has that name, or null.
ZorElementParseRules* findRule(ZorElementParseRules const* outer, char const* name);

// Counts the rules that are gone, whichever thread destroyed them: what was learnt about the rules
// before may lead to one of them.
void countGoneRule();
unsigned long goneRules();

// The searches of one running parse.
class RuleSearches {
public:
    // As findRule.
    ZorElementParseRules* find(ZorElementParseRules const* outer, char const* name) {
        if (!outer->innerRules)
            return nullptr; // also of a rule whose inner ones are lent elsewhere
        if (gone != goneRules()) forget();
        Match& match = matchFor(outer, name);
        if (match.outer == outer && std::strcmp(match.rule->elementName->text, name) == 0) {
            return match.rule;
        }
        ZorElementParseRules* const rule = search(outer, name);
        if (rule) match = {outer, rule};
        return rule;
    }

    // Forgets what was found out: the rules inside some rule are others now. Rules that are
    // destroyed are forgotten without it.
    void forget() {
        gone = goneRules();
        searches.clear();
        for (Match& match : matches) match = {};
    }

private:
    // What was found last for names like this one: elements come again and again, and with a walk
    // for each an import takes 3 % more instructions where ten names stand side by side. What is
    // found first stays the first, as rules are only added behind it.
    struct Match {
        ZorElementParseRules const* outer = nullptr;
        ZorElementParseRules* rule = nullptr;
    };

    static constexpr unsigned kMatches = 64;

    Match& matchFor(ZorElementParseRules const* outer, char const* name) {
        auto hash = reinterpret_cast<std::uintptr_t>(outer) / alignof(std::max_align_t);
        for (char const* at = name; *at; ++at) hash = hash * 5 + static_cast<unsigned char>(*at);
        return matches[hash % kMatches];
    }

    ZorElementParseRules* search(ZorElementParseRules const* outer, char const* name);

    // The order of rules by their names, in which a name alone can be looked up, too.
    struct ByName {
        using is_transparent = void;
        template <typename A, typename B>
        bool operator()(A const* a, B const* b) const {
            return std::strcmp(nameOf(a), nameOf(b)) < 0;
        }
        static char const* nameOf(char const* name) { return name; }
        static char const* nameOf(ZorElementParseRules const* rule) {
            return rule->elementName->text;
        }
    };

    struct Search {
        long walked = 0;
        ZorListNode const* lastIndexed = nullptr;
        std::set<ZorElementParseRules*, ByName> index;
    };

    unsigned long gone = goneRules(); // when all this was learnt
    std::map<ZorElementParseRules const*, Search> searches;
    Match matches[kMatches];
};

} // namespace zor_internal
