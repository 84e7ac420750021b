// The rules of the definition language, and the callbacks of its containers.

#include <initializer_list>
#include <memory>
#include <utility>

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

// Allows the new rule inside `outer`, which keeps it alive from now on.
ZorElementParseRules* adopt(ZorElementParseRules* outer, Rule inner) {
    zor_XMLParseRulesAddInnerRules(outer, inner.get());
    return inner.release();
}

// Makes a rule for elements of that name inside `outer`.
ZorElementParseRules* addRule(ZorElementParseRules* outer, char const* name,
                              ZorElementCallback start, ZorElementCallback end,
                              std::initializer_list<char const*> attributes,
                              characterDataUsage usage = ignoreCharacterData) {
    auto rule = std::make_unique<ZorElementParseRules>(name, usage, start, end);
    for (char const* const attribute : attributes) {
        zor_XMLParseRulesAddAttribute(rule.get(), attribute);
    }
    return adopt(outer, std::move(rule));
}

void allowInside(ZorElementParseRules* outer,
                 std::initializer_list<ZorElementParseRules*> innerRules) {
    for (ZorElementParseRules* const inner : innerRules) {
        zor_XMLParseRulesAddInnerRules(outer, inner);
    }
}

void addSchemaRules(ZorElementParseRules* schema) {
    addRule(schema, "branch", branchStart, branchEnd, {"name", "occurrences", "parent"});
    addRule(schema, "item", itemStart, itemEnd,
            {"name", "occurrences", "type", "default", "parent"});
    addRule(schema, "range", rangeStart, rangeEnd, {"name", "baseType", "minValue", "maxValue"});
    auto* const choice = addRule(schema, "choice", choiceStart, nullptr, {"name"});
    addRule(choice, "option", nullptr, optionEnd, {}, trimmedCharacterData);
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
    auto root = std::make_unique<ZorElementParseRules>(collection->name, ignoreCharacterData,
                                                       rootStart, nullptr);
    zor_XMLParseRulesSetElementUserData(root.get(), collection, nullptr);
    auto* const inner = addRule(root.get(), "collection", collectionStart, nullptr, {"name"});
    auto* const schema = addRule(root.get(), "schema", schemaStart, nullptr, {"name"});
    auto* const document = adopt(root.get(), Rule(zor_getDocumentParseRules()));
    allowInside(inner, {inner, schema, document});
    addSchemaRules(schema);
    return root.release();
}
