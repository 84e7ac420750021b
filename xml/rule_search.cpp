#include "xml/rule_search.h"

#include <cstring>

namespace zor_internal {
namespace {

// So many rules are walked over without noting it, and an index is made after so many steps more:
// it costs as much as some walks.
constexpr long kShortWalk = 32;
constexpr long kLongWalk = 4096;

ZorElementParseRules* ruleAt(ZorListNode const* node) {
    return static_cast<ZorElementParseRules*>(node->value);
}

bool isNamed(ZorListNode const* node, char const* name) {
    return std::strcmp(ruleAt(node)->elementName->text, name) == 0;
}

unsigned long gone = 0;

} // namespace

void countGoneRule() { __atomic_fetch_add(&gone, 1, __ATOMIC_RELAXED); }

unsigned long goneRules() { return __atomic_load_n(&gone, __ATOMIC_RELAXED); }

ZorElementParseRules* findRule(ZorElementParseRules const* outer, char const* name) {
    for (ZorListNode const* node = outer->innerRules; node; node = node->next) {
        if (isNamed(node, name)) return ruleAt(node);
    }
    return nullptr;
}

ZorElementParseRules* RuleSearches::search(ZorElementParseRules const* outer, char const* name) {
    ZorListNode const* node = outer->innerRules;
    for (long i = 0; node && i < kShortWalk; ++i, node = node->next) {
        if (isNamed(node, name)) return ruleAt(node);
    }
    if (!node) return nullptr;

    Search& search = searches[outer];
    if (search.walked < kLongWalk) {
        for (; node; node = node->next, ++search.walked) {
            if (isNamed(node, name)) return ruleAt(node);
        }
        return nullptr;
    }
    if (search.lastIndexed) node = search.lastIndexed->next; // rules that came since
    for (; node; node = node->next) {
        search.index.insert(ruleAt(node)); // the first of a name stays
        search.lastIndexed = node;
    }
    auto const found = search.index.find(name);
    return found == search.index.end() ? nullptr : *found;
}

} // namespace zor_internal
