// Finding the rule of an element by its name.
//
// Rules are a list of which the first match counts. That is fast where few stand side by side, but
// the nodes of a document may be thousands. So whoever has walked over many rules inside one rule
// goes on with an index of them.

#pragma once

#include <cstring>
#include <map>
#include <set>

#include "zor/xml.h"

namespace zor_internal {

// The first of the inner rules that has that name, or null.
ZorElementParseRules* findRule(ZorElementParseRules const* outer, char const* name);

// The searches of one running parse.
class RuleSearches {
public:
    // As findRule.
    ZorElementParseRules* find(ZorElementParseRules const* outer, char const* name);

    // Forgets what was found out: some of the rules go.
    void forget() { searches.clear(); }

private:
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

    std::map<ZorElementParseRules const*, Search> searches;
};

} // namespace zor_internal
