// Finding the rule of an element by its name.
//
// Rules are a list of which the first match counts. That is fast where few stand side by side, but
// the nodes of a document may be thousands. So whoever has walked over many rules inside one rule
// goes on with an index of them.

#pragma once

#include <map>
#include <string_view>

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
    struct Search {
        long walked = 0;
        ZorListNode const* lastIndexed = nullptr;
        std::map<std::string_view, ZorElementParseRules*> index;
    };

    std::map<ZorElementParseRules const*, Search> searches;
};

} // namespace zor_internal
