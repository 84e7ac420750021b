// The rules of the definition language, and the callbacks of its containers.

#include "collection/definition_callbacks.h"
#include "collection/import_callbacks.h"
#include "collection/import_rule_info.h"
#include "collection/leftovers.h"
#include "collection/limits.h"
#include "incident/raise.h"
#include "zor/collection.h"

using namespace zor_internal;

namespace {

void rootStart(ZORParseContext* context) {
    ZorElementParseRules const* const rules = zor_XMLContextGetParseRules(context);
    zor_XMLContextSetUserData(context, zor_XMLParseRulesGetElementUserData(rules));
}

// How many elements stand around this one.
int depthOf(ZORParseContext const* context) {
    int depth = 0;
    while ((context = zor_XMLContextGetOuterContext(context))) ++depth;
    return depth - 1; // the root context is no element
}

void collectionStart(ZORParseContext* context) {
    auto* const outer = enclosing<ZorCollection>(context);
    if (!outer) return skipElement(context);
    if (depthOf(context) > kMaxDepth) {
        raiseImportError(context, incidentInvalidXml, "nested too deeply");
        return;
    }
    ZorString const* const name = requiredName(context);
    if (!name) return;
    ZorCollection* const existing = outer->getCollection(name);
    zor_XMLContextSetUserData(context, existing ? existing : outer->makeCollection(name));
}

void schemaStart(ZORParseContext* context) {
    auto* const collection = enclosing<ZorCollection>(context);
    if (!collection) return skipElement(context);
    ZorString const* const name = requiredName(context);
    if (!name) return;
    if (collection->getSchema(name)) {
        // Kept: only a warning, so that the import goes on.
        raise(context->parser->incidentContext, severityWarning, incidentInvalidArgument, "Schema ",
              name->text, " Already Exists");
        return;
    }
    zor_XMLContextSetUserData(context, collection->makeSchema(name));
}

template <typename... Names>
ZorElementParseRules* makeRule(void const* name, ZorElementCallback start, ZorElementCallback end,
                               Names... attributes) {
    auto* const rule = new ZorElementParseRules(name, ignoreCharacterData, start, end);
    (zor_XMLParseRulesAddAttribute(rule, attributes), ...);
    return rule;
}

template <typename... Rules>
void allowInside(ZorElementParseRules* outer, Rules*... inner) {
    (zor_XMLParseRulesAddInnerRules(outer, inner), ...);
}

} // namespace

void zor_internal::releaseLeftovers(ZorElementParseRules* rules) {
    if (isDocumentRule(rules)) return removeNodeRules(rules);
    ZorElementCallback const end = rules->endElement;
    if (end == branchEnd || end == itemEnd || end == rangeEnd) releasePending(rules);
    for (ZorListNode const* node = rules->innerRules; node; node = node->next) {
        auto* const inner = static_cast<ZorElementParseRules*>(node->value);
        if (inner != rules) releaseLeftovers(inner);
    }
}

ZorElementParseRules* zor_getZORParseRules(ZorCollection* collection) {
    auto* const branch =
        makeRule("branch", branchStart, branchEnd, "name", "occurrences", "parent");
    auto* const item =
        makeRule("item", itemStart, itemEnd, "name", "occurrences", "type", "default", "parent");
    auto* const range =
        makeRule("range", rangeStart, rangeEnd, "name", "baseType", "minValue", "maxValue");
    auto* const option =
        new ZorElementParseRules("option", trimmedCharacterData, nullptr, optionEnd);
    auto* const choice = makeRule("choice", choiceStart, nullptr, "name");
    allowInside(choice, option);
    auto* const schema = makeRule("schema", schemaStart, nullptr, "name");
    allowInside(schema, branch, item, range, choice);
    auto* const document = zor_getDocumentParseRules();
    auto* const inner = makeRule("collection", collectionStart, nullptr, "name");
    allowInside(inner, inner, schema, document);
    auto* const root = makeRule(collection->name, rootStart, nullptr);
    allowInside(root, inner, schema, document);
    zor_XMLParseRulesSetElementUserData(root, collection, nullptr);
    return root;
}
