// Collections: making, finding and deleting what they hold.

#include "zor/collection.h"

#include <memory>

#include "collection/default_schema.h"
#include "collection/documents_of.h"
#include "collection/limits.h"
#include "collection/removed_objects.h"
#include "foundation/address_set.h"
#include "foundation/list_builder.h"
#include "foundation/list_ref.h"
#include "foundation/map_entries.h"
#include "foundation/string_ref.h"
#include "foundation/text_argument.h"
#include "foundation/unfinished.h"
#include "incident/raise.h"
#include "platform/lock_holder.h"

using zor_internal::AddressSet;
using zor_internal::deleteDocumentsOf;
using zor_internal::forEachEntry;
using zor_internal::kCollections;
using zor_internal::kDefaultSchemaName;
using zor_internal::kDocuments;
using zor_internal::kSchemas;
using zor_internal::ListBuilder;
using zor_internal::ListRef;
using zor_internal::LockHolder;
using zor_internal::ObjectKind;
using zor_internal::raiseError;
using zor_internal::reasonAgainstDocument;
using zor_internal::Removed;
using zor_internal::stringOf;
using zor_internal::StringRef;
using zor_internal::textOf;
using zor_internal::Unfinished;

namespace {

// A null name counts as the empty one, where a lookup by null would find nothing.
void const* orEmpty(void const* name) { return name ? name : ""; }

void countLiveCollections(int change) {
    // Each collection counts under its own lock only, so the change itself must be atomic.
    __atomic_fetch_add(&ZorCollection::refCount, change, __ATOMIC_RELAXED);
}

// The values of a map, without those that are null.
ZorListNode* listOf(ZorMapEntry** map) {
    ListBuilder values;
    forEachEntry(map, [&values](ZorMapEntry const& entry) {
        if (entry.value) values.append(entry.value);
    });
    return values.release();
}

bool isDocumentOf(void const* document, void const* rootNode) {
    return static_cast<ZorDocument const*>(document)->rootNode == rootNode;
}

bool isDocumentOfOneOf(void const* document, void const* rootNodes) {
    auto const* const roots = static_cast<AddressSet const*>(rootNodes);
    return roots->has(static_cast<ZorDocument const*>(document)->rootNode);
}

// Destroys all objects of a map, and the map; null is allowed.
void destroyAll(ZorMapEntry** map, ObjectKind const& kind) {
    if (!map) return;
    Removed(kind).takeIf(map, nullptr, nullptr);
    zor_mapDelete(map);
}

// What a collection holds, as far as it was made.
void destroyContents(ZorCollection* collection) {
    if (collection->name) collection->name->removeRef();
    {
        LockHolder const holder(collection->lock);
        destroyAll(collection->documents, kDocuments); // before the schemas they were made from
        destroyAll(collection->schemas, kSchemas);
    }
    destroyAll(collection->collections, kCollections);
    for (ZorXmlParser* const parser : collection->parsers) {
        delete parser->incidentContext;
        delete parser;
    }
}

// Takes an entry out of the map. Its object, or null.
void* take(ZorMapEntry** map, char const* name) {
    StringRef const key(ZorString::create(name, -1));
    void* const object = zor_mapGet(map, key.get());
    zor_mapRemove(map, key.get());
    return object;
}

// Takes all objects out of the map, each listed once. New reference.
// Kept: an entry is removed by the object's own name. One that is stored under another key stays,
// with a null value.
ZorListNode* takeAll(ZorMapEntry** map, ObjectKind const& kind) {
    ListBuilder objects;
    AddressSet listed;
    forEachEntry(map, [&](ZorMapEntry const& entry) {
        if (entry.value && listed.add(entry.value)) objects.append(entry.value);
    });
    for (ZorListNode const* node = objects.first(); node; node = node->next) {
        zor_mapRemove(map, kind.ownName(node->value));
    }
    forEachEntry(map, [](ZorMapEntry& entry) { entry.value = nullptr; });
    return objects.release();
}

// Takes ownership of the objects.
void destroyEach(ListRef const& objects, ObjectKind const& kind) {
    for (ZorListNode const* at = objects.first(); at; at = at->next) kind.destroy(at->value);
}

// Why a document was not made.
struct Refusal {
    char const* kind;
    void const* name;
    char const* reason;
};

// Makes the document under the locks of the collection and the schema, so that neither another
// document of that name nor another node comes in between. Null with the reason, which is reported
// when the locks are given back.
ZorDocument* tryMakeDocument(ZorCollection* collection, void const* schemaName,
                             void const* documentName, Refusal* refusal) {
    auto const refuse = [refusal](char const* kind, void const* name, char const* reason) {
        *refusal = {kind, name, reason};
        return nullptr;
    };
    LockHolder const holder(collection->lock);
    auto* const schema = static_cast<ZorSchema*>(zor_mapGet(collection->schemas, schemaName));
    if (!schema) return refuse("Schema (", schemaName, ") does not exist}");
    if (zor_mapGet(collection->documents, documentName)) {
        return refuse("Document (", documentName, ") already exists}");
    }
    LockHolder const schemaHolder(schema->lock);
    if (char const* const reason = reasonAgainstDocument(schema)) {
        return refuse("Schema (", schemaName, reason);
    }
    auto document = std::make_unique<ZorDocument>(schema, documentName);
    zor_mapSet(collection->documents, documentName, document.get());
    return document.release();
}

} // namespace

void zor_internal::deleteDocumentsOf(ZorCollection* collection, ZorSchema const* schema) {
    Removed(kDocuments).takeIf(collection->documents, isDocumentOf, schema->rootNode);
}

char const* zor_internal::reasonAgainstDocument(ZorSchema const* schema) {
    if (schema->documentCount() >= kMaxDocuments) return ") has too many documents}";
    if (schema->rootNode->countRequiredValueNodes() > kMaxCells) return ") has too many values}";
    return nullptr;
}

int ZorCollection::refCount = 0;

ZorCollection::ZorCollection(void const* collectionName) : ZorCollection(collectionName, nullptr) {}

ZorCollection::ZorCollection(void const* collectionName, ZorDictionary* schemaDictionary)
    : lock(1, 1, false), dictionary(schemaDictionary), defaultSchema(nullptr), schemas(nullptr),
      documents(nullptr), collections(nullptr), name(nullptr), parseDepth(0) {
    Unfinished<ZorCollection> contents(this, destroyContents);
    name = stringOf(collectionName);
    schemas = zor_mapMake();
    documents = zor_mapMake();
    collections = zor_mapMake();
    defaultSchema = makeSchema(kDefaultSchemaName);
    defaultSchema->makeDataNode(defaultSchema->rootNode, "itemValue", 1,
                                defaultSchema->getDataType("string"), "");
    contents.finish();
    LockHolder const holder(lock);
    countLiveCollections(1);
}

ZorCollection::~ZorCollection() {
    destroyContents(this);
    LockHolder const holder(lock);
    countLiveCollections(-1);
}

ZorSchema* ZorCollection::makeSchema(void const* schemaName) {
    LockHolder const holder(lock);
    if (zor_mapGet(schemas, schemaName)) {
        raiseError(nullptr, incidentInvalidArgument, "ZorCollection::makeSchema{Schema (",
                   textOf(schemaName), ") already exists}");
        return nullptr;
    }
    auto schema = std::make_unique<ZorSchema>(this, schemaName);
    zor_mapSet(schemas, schemaName, schema.get());
    return schema.release();
}

ZorDocument* ZorCollection::makeDocument(void const* schemaName, void const* documentName) {
    Refusal refusal{};
    if (ZorDocument* const made = tryMakeDocument(this, schemaName, documentName, &refusal)) {
        return made;
    }
    raiseError(nullptr, incidentInvalidArgument, "ZorCollection::makeDocument{", refusal.kind,
               textOf(refusal.name), refusal.reason);
    return nullptr;
}

ZorCollection* ZorCollection::makeCollection(void const* collectionName) {
    if (getCollection(orEmpty(collectionName))) {
        raiseError(nullptr, incidentInvalidArgument, "ZorCollection::makeCollection{Collection (",
                   textOf(collectionName), ") already exists}");
        // Kept: unlike a schema or document, the new collection takes the place of the old one.
    }
    auto made = std::make_unique<ZorCollection>(collectionName);
    LockHolder const holder(lock);
    zor_mapSet(collections, collectionName, made.get());
    return made.release();
}

ZorSchema* ZorCollection::getSchema(void const* schemaName) {
    LockHolder const holder(lock);
    return static_cast<ZorSchema*>(zor_mapGet(schemas, schemaName));
}

ZorDocument* ZorCollection::getDocument(void const* documentName) {
    if (!documentName) return nullptr;
    LockHolder const holder(lock);
    return static_cast<ZorDocument*>(zor_mapGet(documents, documentName));
}

ZorCollection* ZorCollection::getCollection(void const* collectionName) {
    if (!collectionName) return nullptr;
    LockHolder const holder(lock);
    return static_cast<ZorCollection*>(zor_mapGet(collections, collectionName));
}

ZorListNode* ZorCollection::getSchemas() {
    LockHolder const holder(lock);
    return listOf(schemas);
}

ZorListNode* ZorCollection::getDocuments() {
    LockHolder const holder(lock);
    return listOf(documents);
}

ZorListNode* ZorCollection::getCollections() {
    LockHolder const holder(lock);
    return listOf(collections);
}

void ZorCollection::getSchemas(std::list<ZorSchema*>& out) {
    ListRef const values(getSchemas());
    for (ZorListNode const* node = values.first(); node; node = node->next) {
        out.push_back(static_cast<ZorSchema*>(node->value));
    }
}

void ZorCollection::getDocuments(std::list<ZorDocument*>& out) {
    ListRef const values(getDocuments());
    for (ZorListNode const* node = values.first(); node; node = node->next) {
        out.push_back(static_cast<ZorDocument*>(node->value));
    }
}

void ZorCollection::getCollections(std::list<ZorCollection*>& out) {
    LockHolder const holder(lock);
    ListRef const values(listOf(collections));
    for (ZorListNode const* node = values.first(); node; node = node->next) {
        out.push_back(static_cast<ZorCollection*>(node->value));
    }
}

void ZorCollection::setSchema(ZorSchema* schema, void const* schemaName) {
    LockHolder const holder(lock);
    zor_mapSet(schemas, schemaName, schema);
}

void ZorCollection::setDocument(ZorDocument* document, void const* documentName) {
    LockHolder const holder(lock);
    zor_mapSet(documents, documentName, document);
}

void ZorCollection::deleteSchema(char const* schemaName) {
    LockHolder const holder(lock);
    auto* const schema = static_cast<ZorSchema*>(take(schemas, schemaName));
    if (!schema) return;
    deleteDocumentsOf(this, schema);
    delete schema;
}

void ZorCollection::deleteDocument(char const* documentName) {
    LockHolder const holder(lock);
    delete static_cast<ZorDocument*>(take(documents, documentName));
}

void ZorCollection::deleteCollection(char const* collectionName) {
    StringRef const key(ZorString::create(collectionName, -1));
    ZorCollection* collection;
    {
        LockHolder const holder(lock);
        collection = static_cast<ZorCollection*>(zor_mapGet(collections, key.get()));
        if (collection) zor_mapRemove(collections, key.get());
    }
    delete collection; // takes its own lock, so not under this one
}

void ZorCollection::deleteAllSchemas() {
    LockHolder const holder(lock);
    AddressSet roots;
    forEachEntry(schemas, [&roots](ZorMapEntry const& entry) {
        if (entry.value) roots.add(static_cast<ZorSchema const*>(entry.value)->rootNode);
    });
    ListRef const objects(takeAll(schemas, kSchemas));
    Removed(kDocuments).takeIf(documents, isDocumentOfOneOf, &roots);
    destroyEach(objects, kSchemas);
}

void ZorCollection::deleteAllDocuments() {
    LockHolder const holder(lock);
    destroyEach(ListRef(takeAll(documents, kDocuments)), kDocuments);
}

void ZorCollection::deleteAllCollections() {
    auto const takeCollections = [this] {
        LockHolder const holder(lock);
        return takeAll(collections, kCollections);
    };
    ListRef const objects(takeCollections());
    destroyEach(objects, kCollections); // each takes its own lock, so not under this one
}

void ZorCollection::setDictionary(ZorDictionary* schemaDictionary) {
    dictionary = schemaDictionary;
}

ZorDictionary* ZorCollection::getDictionary() const { return dictionary; }

char const* ZorCollection::getName() const { return name->text; }
