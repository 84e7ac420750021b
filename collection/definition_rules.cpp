// The rules of the definition language, and the callbacks of its containers.

#include <initializer_list>
#include <memory>

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

using Rule = std::unique_ptr<ZorElementParseRules>;

Rule makeRule(void const* name, ZorElementCallback start, ZorElementCallback end,
              std::initializer_list<char const*> attributes) {
    auto rule = std::make_unique<ZorElementParseRules>(name, ignoreCharacterData, start, end);
    for (char const* const attribute : attributes) {
        zor_XMLParseRulesAddAttribute(rule.get(), attribute);
    }
    return rule;
}

// Allows the new rule inside `outer`, which keeps it alive from now on.
ZorElementParseRules* adopt(ZorElementParseRules* outer, Rule inner) {
    zor_XMLParseRulesAddInnerRules(outer, inner.get());
    return inner.release();
}

void allowInside(ZorElementParseRules* outer,
                 std::initializer_list<ZorElementParseRules*> innerRules) {
    for (ZorElementParseRules* const inner : innerRules) {
        zor_XMLParseRulesAddInnerRules(outer, inner);
    }
}

void adoptSchemaRules(ZorElementParseRules* schema) {
    adopt(schema, makeRule("branch", branchStart, branchEnd, {"name", "occurrences", "parent"}));
    adopt(schema, makeRule("item", itemStart, itemEnd,
                           {"name", "occurrences", "type", "default", "parent"}));
    adopt(schema,
          makeRule("range", rangeStart, rangeEnd, {"name", "baseType", "minValue", "maxValue"}));
    auto* const choice = adopt(schema, makeRule("choice", choiceStart, nullptr, {"name"}));
    adopt(choice, std::make_unique<ZorElementParseRules>("option", trimmedCharacterData, nullptr,
                                                         optionEnd));
}

} // namespace

void zor_internal::releaseLeftovers(ZorElementParseRules* rules) {
    if (isDocumentRule(rules)) return resetDocumentRule(rules);
    ZorElementCallback const end = rules->endElement;
    if (end == branchEnd || end == itemEnd || end == rangeEnd) releasePending(rules);
    for (ZorListNode const* node = rules->innerRules; node; node = node->next) {
        auto* const inner = static_cast<ZorElementParseRules*>(node->value);
        if (inner != rules) releaseLeftovers(inner);
    }
}

ZorElementParseRules* zor_getZORParseRules(ZorCollection* collection) {
    Rule root = makeRule(collection->name, rootStart, nullptr, {});
    zor_XMLParseRulesSetElementUserData(root.get(), collection, nullptr);
    auto* const inner =
        adopt(root.get(), makeRule("collection", collectionStart, nullptr, {"name"}));
    auto* const schema = adopt(root.get(), makeRule("schema", schemaStart, nullptr, {"name"}));
    auto* const document = adopt(root.get(), Rule(zor_getDocumentParseRules()));
    allowInside(inner, {inner, schema, document});
    adoptSchemaRules(schema);
    return root.release();
}
