// The rules of the definition language, and the callbacks of its containers.

#include "collection/definition_callbacks.h"
#include "collection/import_callbacks.h"
#include "incident/raise.h"
#include "zor/collection.h"

using namespace zor_internal;

namespace {

void rootStart(ZORParseContext* context) {
    ZorElementParseRules const* const rules = zor_XMLContextGetParseRules(context);
    zor_XMLContextSetUserData(context, zor_XMLParseRulesGetElementUserData(rules));
}

void collectionStart(ZORParseContext* context) {
    auto* const outer = enclosing<ZorCollection>(context);
    if (!outer) return;
    ZorString const* const name = requiredName(context);
    if (!name) return;
    ZorCollection* const existing = outer->getCollection(name);
    zor_XMLContextSetUserData(context, existing ? existing : outer->makeCollection(name));
}

void schemaStart(ZORParseContext* context) {
    auto* const collection = enclosing<ZorCollection>(context);
    if (!collection) return;
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
