// Element rules: reference-counted, possibly shared, possibly cyclic.

#include "foundation/address_set.h"
#include "foundation/list_builder.h"
#include "foundation/string_ref.h"
#include "foundation/text_argument.h"
#include "xml/rule_search.h"
#include "zor/xml.h"

using zor_internal::AddressSet;
using zor_internal::countGoneRule;
using zor_internal::ListBuilder;
using zor_internal::stringOf;
using zor_internal::StringRef;

namespace {

ZorElementParseRules* ruleAt(ZorListNode const* node) {
    return static_cast<ZorElementParseRules*>(node->value);
}

void appendTo(ZorListNode** list, void* value) {
    if (*list)
        zor_listAddNode(*list, value);
    else
        *list = zor_listMake(value);
}

// Whether a walk down from `start` meets `wanted`. Every rule is entered once, so that cycles end.
bool isReachable(ZorElementParseRules const* wanted, ZorElementParseRules* start) {
    if (start == wanted) return true;
    if (!start->innerRules) return false;
    AddressSet met;
    ListBuilder open; // each rule that was met, with those still to enter at the end
    met.add(start);
    open.append(start);
    for (ZorListNode const* at = open.first(); at; at = at->next) {
        for (ZorListNode const* node = ruleAt(at)->innerRules; node; node = node->next) {
            if (node->value == wanted) return true;
            if (met.add(node->value)) open.append(node->value);
        }
    }
    return false;
}

} // namespace

ZorElementParseRules::ZorElementParseRules(void const* name, characterDataUsage usage,
                                           ZorElementCallback start, ZorElementCallback end)
    : elementName(stringOf(name)), innerRules(nullptr), attributes(nullptr), characterData(usage),
      startElement(start), endElement(end), refCount(0), elementUserData(nullptr),
      freeElementUserData(nullptr) {}

ZorElementParseRules::~ZorElementParseRules() {
    countGoneRule();
    for (ZorListNode const* node = innerRules; node; node = node->next) {
        // Kept: rules that were not counted because they close a cycle are released, too; their
        // count goes below zero and stays there.
        zor_XMLParseRulesRemoveRef(ruleAt(node));
    }
    zor_listDelete(innerRules);
    elementName->removeRef();
    for (ZorListNode const* node = attributes; node; node = node->next) {
        static_cast<ZorString*>(node->value)->removeRef();
    }
    zor_listDelete(attributes);
    if (freeElementUserData) freeElementUserData(elementUserData);
}

void zor_XMLParseRulesRemoveRef(ZorElementParseRules* rules) {
    if (--rules->refCount == 0) delete rules;
}

void zor_XMLParseRulesAddAttribute(ZorElementParseRules* rules, void const* name) {
    StringRef reference(stringOf(name));
    appendTo(&rules->attributes, reference.get());
    (void)reference.release();
}

void zor_XMLParseRulesAddInnerRules(ZorElementParseRules* outer, ZorElementParseRules* inner) {
    bool const closesCycle = isReachable(outer, inner);
    appendTo(&outer->innerRules, inner);
    if (!closesCycle) ++inner->refCount;
}

void zor_XMLParseRulesSetElementUserData(ZorElementParseRules* rules, void* data,
                                         void (*freeData)(void*)) {
    rules->elementUserData = data;
    rules->freeElementUserData = freeData;
}

void* zor_XMLParseRulesGetElementUserData(ZorElementParseRules const* rules) {
    return rules->elementUserData;
}
