// <document>: finds or makes the document and lends its rule the rules of the schema's nodes.

#include <memory>
#include <string>
#include <utility>

#include "collection/default_schema.h"
#include "collection/document_size.h"
#include "collection/import_callbacks.h"
#include "collection/import_rule_info.h"
#include "collection/limits.h"
#include "foundation/string_ref.h"
#include "schema/schema_changes.h"
#include "xml/parse_run.h"
#include "zor/collection.h"

using namespace zor_internal;

namespace {

ZorDocument* refuse(incidentType type, char const* reason) {
    raiseError(nullptr, type, reason);
    return nullptr;
}

DocumentRuleInfo* infoOf(ZorElementParseRules const* documentRule) {
    return static_cast<DocumentRuleInfo*>(zor_XMLParseRulesGetElementUserData(documentRule));
}

// Makes the document, unless the documents of this input take too much together.
ZorDocument* makeCounted(ZORParseContext const* context, ZorCollection* collection,
                         void const* schemaName, ZorString* name) {
    DocumentRuleInfo* const info = infoOf(zor_XMLContextGetParseRules(context));
    ZorSchema* const schema = collection->getSchema(schemaName);
    std::int64_t const bytes = schema ? bytesOfDocument(schema) : 0;
    if (info->bytesMade + bytes > kMaxImportedBytes) {
        return refuse(incidentInvalidArgument, "documents of one import have too many values");
    }
    ZorDocument* const made = collection->makeDocument(schemaName, name);
    if (made) info->bytesMade += bytes;
    return made;
}

ZorDocument* makeFromSchema(ZORParseContext const* context, ZorCollection* collection,
                            std::string const& schemaName, ZorString* name) {
    // As a string, because a plain text may begin like one.
    StringRef const schema(ZorString::create(schemaName.c_str(), -1));
    return makeCounted(context, collection, schema.get(), name);
}

ZorDocument* makeFromDefault(ZORParseContext const* context, ZorCollection* collection,
                             ZorString* name) {
    // By name, because the schema that the collection was born with may be gone.
    return makeCounted(context, collection, kDefaultSchemaName, name);
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

ZorDocument* makeWithSchema(ZORParseContext const* context, ZorCollection* collection,
                            ZorString* name, ZorString* schemaName) {
    if (!collection->getSchema(schemaName)) {
        ZorDictionary* const dictionary = collection->getDictionary();
        std::string const definition =
            dictionary ? dictionary->getSchemaDefinition(schemaName->text) : std::string();
        if (definition.empty()) return refuse(incidentInvalidXml, "unknown schema name");
        collection->importXML(definition.c_str());
    }
    return makeCounted(context, collection, schemaName, name);
}

ZorDocument* makeByName(ZORParseContext const* context, ZorCollection* collection,
                        ZorString* name) {
    ZorDictionary* const dictionary = collection->getDictionary();
    if (!dictionary) return makeFromDefault(context, collection, name);
    std::string const schemaName = dictionary->getSchemaName(name->text);
    if (schemaName.empty()) return makeFromDefault(context, collection, name);
    // Kept: the definition is imported without asking whether it is there, empty, or needed.
    collection->importXML(dictionary->getSchemaDefinition(schemaName).c_str());
    return makeFromSchema(context, collection, schemaName, name);
}

// The document to fill; null after reporting why there is none.
ZorDocument* resolve(ZORParseContext const* context, ZorCollection* collection) {
    ZorString* const name = zor_XMLContextGetAttribute(context, "name");
    if (!name) return refuse(incidentInvalidXml, "missing \"name\" attribute");
    ZorString* const schemaName = zor_XMLContextGetAttribute(context, "schema");
    if (ZorDocument* const existing = collection->getDocument(name)) {
        return reuse(existing, name, schemaName);
    }
    return schemaName ? makeWithSchema(context, collection, name, schemaName)
                      : makeByName(context, collection, name);
}

// Takes the node rules back from the rule, so that it has none, and keeps them.
void keepNodeRules(ZorElementParseRules* rule) {
    if (!rule->innerRules) return;
    DocumentRuleInfo* const info = infoOf(rule);
    releaseRules(std::exchange(info->keptRules, std::exchange(rule->innerRules, nullptr)));
}

// Gives the rule the node rules of a schema, which count from the start: those it had last, if they
// are of that schema as it stands, or new ones.
void lendNodeRules(ZORParseContext const* context, ZorSchemaNode const* root) {
    ZorElementParseRules* const rule = zor_XMLContextGetParseRules(context);
    DocumentRuleInfo* const info = infoOf(rule);
    ++info->documents;
    ZorListNode* const kept = std::exchange(info->keptRules, nullptr);
    if (kept && info->keptOf == root && info->keptChanges == schemaChanges()) {
        rule->innerRules = kept;
        return;
    }
    if (ParseRun* const run = ParseRun::of(context->parser)) run->ruleSearches().forget();
    releaseRules(kept);
    info->keptOf = nullptr; // until they are complete
    unsigned long const changes = schemaChanges();
    addNodeRules(rule, root, info);
    info->keptOf = root;
    info->keptChanges = changes;
}

void documentStart(ZORParseContext* context) {
    // A document whose end was passed over after an error leaves its rules.
    keepNodeRules(zor_XMLContextGetParseRules(context));
    auto* const collection = enclosing<ZorCollection>(context);
    if (!collection) return skipElement(context);
    ZorDocument* const document = resolve(context, collection);
    if (!document) {
        raiseImportError(context, incidentInvalidArgument,
                         "problem resolving document and schema name");
        return;
    }
    lendNodeRules(context, document->rootNode);
    zor_XMLContextSetUserData(context, document);
}

void documentEnd(ZORParseContext* context) { keepNodeRules(zor_XMLContextGetParseRules(context)); }

} // namespace

DocumentRuleInfo::DocumentRuleInfo()
    : ImportRuleInfo(nullptr), bytesMade(0), documents(0), keptRules(nullptr), keptOf(nullptr),
      keptChanges(0) {}

DocumentRuleInfo::~DocumentRuleInfo() { releaseRules(keptRules); }

void zor_internal::resetDocumentRule(ZorElementParseRules* rules) {
    keepNodeRules(rules);
    DocumentRuleInfo* const info = infoOf(rules);
    releaseRules(std::exchange(info->keptRules, nullptr));
    info->bytesMade = 0;
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
