// <document>: finds or makes the document and lends its rule the rules of the schema's nodes.

#include <memory>
#include <string>

#include "collection/default_schema.h"
#include "collection/import_callbacks.h"
#include "collection/import_rule_info.h"
#include "collection/limits.h"
#include "foundation/string_ref.h"
#include "zor/collection.h"

using namespace zor_internal;

namespace {

ZorDocument* refuse(incidentType type, char const* reason) {
    raiseError(nullptr, type, reason);
    return nullptr;
}

ZorDocument* makeFromSchema(ZorCollection* collection, std::string const& schemaName,
                            ZorString* name) {
    // As a string, because a plain text may begin like one.
    StringRef const schema(ZorString::create(schemaName.c_str(), -1));
    return collection->makeDocument(schema.get(), name);
}

ZorDocument* makeFromDefault(ZorCollection* collection, ZorString* name) {
    // By name, because the schema that the collection was born with may be gone.
    return collection->makeDocument(kDefaultSchemaName, name);
}

// The existing document, unless the schema asked for is another than its own.
ZorDocument* reuse(ZorDocument* document, ZorString const* name, ZorString const* schemaName) {
    if (!schemaName || zor_stringCompare(schemaName, document->rootNode->name) == 0) {
        return document;
    }
    raiseError(nullptr, incidentInvalidArgument, "Existing Document ", name->text,
               " incompatible with schema ", schemaName->text);
    return nullptr;
}

ZorDocument* makeWithSchema(ZorCollection* collection, ZorString* name, ZorString* schemaName) {
    if (!collection->getSchema(schemaName)) {
        ZorDictionary* const dictionary = collection->getDictionary();
        std::string const definition =
            dictionary ? dictionary->getSchemaDefinition(schemaName->text) : std::string();
        if (definition.empty()) return refuse(incidentInvalidXml, "unknown schema name");
        collection->importXML(definition.c_str());
    }
    return collection->makeDocument(schemaName, name);
}

ZorDocument* makeByName(ZorCollection* collection, ZorString* name) {
    ZorDictionary* const dictionary = collection->getDictionary();
    if (!dictionary) return makeFromDefault(collection, name);
    std::string const schemaName = dictionary->getSchemaName(name->text);
    if (schemaName.empty()) return makeFromDefault(collection, name);
    // Kept: the definition is imported without asking whether it is there, empty, or needed.
    collection->importXML(dictionary->getSchemaDefinition(schemaName).c_str());
    return makeFromSchema(collection, schemaName, name);
}

DocumentRuleInfo* infoOf(ZorElementParseRules const* documentRule) {
    return static_cast<DocumentRuleInfo*>(zor_XMLParseRulesGetElementUserData(documentRule));
}

// Counts the cells of the new document. When the documents that the input made have too many, it
// goes again.
ZorDocument* countOrDelete(ZORParseContext const* context, ZorCollection* collection,
                           ZorString const* name, ZorDocument* made) {
    DocumentRuleInfo* const info = infoOf(zor_XMLContextGetParseRules(context));
    std::int64_t const cells = made->rootNode->countRequiredValueNodes();
    if (info->cellsMade + cells > kMaxCells) {
        collection->deleteDocument(name->text);
        return refuse(incidentInvalidArgument, "documents of one import have too many values");
    }
    info->cellsMade += cells;
    return made;
}

// The document to fill; null after reporting why there is none.
ZorDocument* resolve(ZORParseContext const* context, ZorCollection* collection) {
    ZorString* const name = zor_XMLContextGetAttribute(context, "name");
    if (!name) return refuse(incidentInvalidXml, "missing \"name\" attribute");
    ZorString* const schemaName = zor_XMLContextGetAttribute(context, "schema");
    if (ZorDocument* const existing = collection->getDocument(name)) {
        return reuse(existing, name, schemaName);
    }
    ZorDocument* const made = schemaName ? makeWithSchema(collection, name, schemaName)
                                         : makeByName(collection, name);
    return made ? countOrDelete(context, collection, name, made) : nullptr;
}

void documentStart(ZORParseContext* context) {
    ZorElementParseRules* const rule = zor_XMLContextGetParseRules(context);
    // An import that ended inside a document leaves its rules, and their schema may be gone.
    removeNodeRules(rule);
    auto* const collection = enclosing<ZorCollection>(context);
    if (!collection) return skipElement(context);
    ZorDocument* const document = resolve(context, collection);
    if (!document) {
        raiseImportError(context, incidentInvalidArgument,
                         "problem resolving document and schema name");
        return;
    }
    addNodeRules(rule, document->rootNode);
    zor_XMLContextSetUserData(context, document);
}

void documentEnd(ZORParseContext* context) {
    removeNodeRules(zor_XMLContextGetParseRules(context));
}

} // namespace

DocumentRuleInfo::DocumentRuleInfo() : ImportRuleInfo(nullptr), cellsMade(0) {}

void zor_internal::resetDocumentRule(ZorElementParseRules* rules) {
    removeNodeRules(rules);
    infoOf(rules)->cellsMade = 0;
}

bool zor_internal::isDocumentRule(ZorElementParseRules const* rules) {
    return rules->endElement == documentEnd;
}

ZorElementParseRules* zor_getDocumentParseRules() {
    auto rule = std::make_unique<ZorElementParseRules>("document", ignoreCharacterData,
                                                       documentStart, documentEnd);
    zor_XMLParseRulesAddAttribute(rule.get(), "name");
    zor_XMLParseRulesAddAttribute(rule.get(), "schema");
    zor_XMLParseRulesSetElementUserData(rule.get(), new DocumentRuleInfo, deleteImportRuleInfo);
    return rule.release();
}
