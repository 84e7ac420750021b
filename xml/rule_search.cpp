#include "xml/rule_search.h"

#include <cstring>

namespace zor_internal {
namespace {

// An index costs as much as some walks.
constexpr long kLongWalk = 4096;

ZorElementParseRules* ruleAt(ZorListNode const* node) {
    return static_cast<ZorElementParseRules*>(node->value);
}

} // namespace

ZorElementParseRules* findRule(ZorListNode const* rules, char const* name, long* walked) {
    for (ZorListNode const* node = rules; node; node = node->next, ++*walked) {
        if (std::strcmp(ruleAt(node)->elementName->text, name) == 0) return ruleAt(node);
    }
    return nullptr;
}

ZorElementParseRules* RuleSearches::find(ZORParseContext const* innermost, char const* name) {
    if (searches.empty() || searches.back().context != innermost) {
        searches.push_back({innermost, 0, {}});
    }
    Search& search = searches.back();
    ZorListNode const* const rules = innermost->parseRules->innerRules;
    if (search.walked < kLongWalk) return findRule(rules, name, &search.walked);
    if (search.index.empty()) {
        for (ZorListNode const* node = rules; node; node = node->next) {
            search.index.emplace(ruleAt(node)->elementName->text, ruleAt(node)); // the first stays
        }
    }
    auto const found = search.index.find(name);
    return found == search.index.end() ? nullptr : found->second;
}

void RuleSearches::close(ZORParseContext const* innermost) {
    if (!searches.empty() && searches.back().context == innermost) searches.pop_back();
}

} // namespace zor_internal
