// <branch> and <item>: checked at their start, made at their end.

#include "collection/node_info.h"

#include <memory>
#include <string_view>

#include "collection/definition_callbacks.h"
#include "collection/import_callbacks.h"
#include "collection/limits.h"
#include "foundation/string_ref.h"
#include "schema/name_cache.h"
#include "types/number_text.h"

using namespace zor_internal;

namespace {

// The number of occurrences asked for, 1 if none; 0 when it is not a positive number.
int occurrencesAskedFor(ZORParseContext const* context) {
    ZorString const* const text = zor_XMLContextGetAttribute(context, "occurrences");
    if (!text) return 1;
    int const number = intFromText(text->text); // leading digits count, as atoi reads them
    return number < 1 ? 0 : number;
}

int depthOf(ZorSchemaNode const* node) {
    int depth = 0;
    while ((node = node->parent)) ++depth;
    return depth;
}

// The node that a path of plain names leads to, or null: the cache knows each of them, where a
// search would look at all siblings.
ZorSchemaNode* findByNames(ZorSchemaNode* node, std::string_view path) {
    while (node && !path.empty()) {
        if (path.front() == '/') path.remove_prefix(1);
        std::string_view const name = path.substr(0, path.find('/'));
        if (name.empty() || name == "*") return nullptr;
        node = cachedChild(node, name);
        path.remove_prefix(name.size());
    }
    return node;
}

ZorSchemaNode* findParent(ZorSchemaNode* root, ZorString* path) {
    ZorSchemaNode* const found = findByNames(root, path->text);
    return found && found != root ? found : root->findSubNode(path);
}

// The node under which the element's node goes; null after reporting that it was not found.
ZorSchemaNode* parentAskedFor(ZORParseContext const* context, ZorSchema const* schema) {
    ZorString* const path = zor_XMLContextGetAttribute(context, "parent");
    if (!path) return schema->rootNode;
    ZorSchemaNode* const parent = findParent(schema->rootNode, path);
    if (!parent) raiseDefinitionError(context, "Can't find specified parent node", path->text);
    if (!parent || depthOf(parent) < kMaxDepth) return parent;
    raiseImportError(context, incidentInvalidXml, "nested too deeply");
    return nullptr;
}

// The node that the attributes describe, without type and default. Null after reporting what is
// wrong with them.
std::unique_ptr<NodeInfo> describeNode(ZORParseContext const* context) {
    ZorString* const name = zor_XMLContextGetAttribute(context, "name");
    if (!name) {
        raiseDefinitionError(context, "missing name attribute");
        return nullptr;
    }
    zor_stringAddRef(name); // shared, so that trimming leaves the attribute as it is
    StringRef trimmed(name);
    trimmed.replace(name->trim());
    if (trimmed.get()->length == 0) {
        raiseDefinitionError(context, "name must not be blank");
        return nullptr;
    }
    int const occurrences = occurrencesAskedFor(context);
    if (occurrences < 1) {
        raiseDefinitionError(context, "value of occurrences must be an integer greater than 0");
        return nullptr;
    }
    // Kept: name and occurrences are checked even where the schema was rejected.
    auto const* const schema = enclosing<ZorSchema>(context);
    if (!schema) return nullptr;
    ZorSchemaNode* const parent = parentAskedFor(context, schema);
    if (!parent) return nullptr;
    // Kept: 16 bits of the number; what wraps to below 1 makes a node without cells.
    return std::make_unique<NodeInfo>(parent, trimmed.get(), static_cast<short>(occurrences));
}

// Adds type and default to the node. False after reporting what is wrong with them.
bool describeItem(ZORParseContext const* context, NodeInfo* info) {
    ZorString const* const typeName = zor_XMLContextGetAttribute(context, "type");
    if (!typeName) {
        raiseDefinitionError(context, "missing type attribute");
        return false;
    }
    info->type = enclosing<ZorSchema>(context)->getDataType(typeName);
    if (!info->type) {
        raiseDefinitionError(context, "type (", typeName->text, ") not found");
        return false;
    }
    ZorString* const defaultText = zor_XMLContextGetAttribute(context, "default");
    if (!defaultText) return true;
    if (!zor_dataTypeValidate(info->type, defaultText)) {
        raiseDefinitionError(context, "default (", defaultText->text, ") is not valid");
        return false;
    }
    zor_stringAddRef(defaultText);
    info->defaultValue = defaultText;
    return true;
}

} // namespace

void zor_internal::branchStart(ZORParseContext* context) {
    publishPending(context, describeNode(context).release());
}

void zor_internal::branchEnd(ZORParseContext* context) {
    auto const* const info = published<NodeInfo>(context);
    // Where there is a description, there is a schema.
    if (info && !enclosing<ZorSchema>(context)->makeBranchNode(info->parent, info->name,
                                                               info->occurrences)) {
        raiseDefinitionError(context, "Could Not Branch Node with supplied parameters");
    }
    withdrawPending(context);
}

void zor_internal::itemStart(ZORParseContext* context) {
    std::unique_ptr<NodeInfo> info = describeNode(context);
    if (info && !describeItem(context, info.get())) info.reset();
    publishPending(context, info.release());
}

void zor_internal::itemEnd(ZORParseContext* context) {
    auto const* const info = published<NodeInfo>(context);
    if (info && !enclosing<ZorSchema>(context)->makeDataNode(
                    info->parent, info->name, info->occurrences, info->type, info->defaultValue)) {
        raiseDefinitionError(context, "Could Not item with supplied parameters");
    }
    withdrawPending(context);
}
