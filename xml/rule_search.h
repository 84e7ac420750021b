// Finding the rule of an element by its name.
//
// Rules are a list of which the first match counts. That is fast where few stand side by side, but
// the nodes of a document may be thousands. So whoever has walked over many rules inside one open
// element goes on with an index of them.

#pragma once

#include <string_view>
#include <unordered_map>
#include <vector>

#include "zor/xml.h"

namespace zor_internal {

// The first rule of that name in the list, or null. Adds the number of rules it passed to *walked.
ZorElementParseRules* findRule(ZorListNode const* rules, char const* name, long* walked);

// The searches inside the elements that are open.
class RuleSearches {
public:
    // The rule of an element of that name inside the innermost open element, or null.
    // REQUIRES: that has a rule.
    ZorElementParseRules* find(ZORParseContext const* innermost, char const* name);

    // Forgets the innermost open element, which is about to close.
    void close(ZORParseContext const* innermost);

private:
    struct Search {
        ZORParseContext const* context;
        long walked;
        std::unordered_map<std::string_view, ZorElementParseRules*> index;
    };

    std::vector<Search> searches; // the innermost last; not all open elements have one
};

} // namespace zor_internal
