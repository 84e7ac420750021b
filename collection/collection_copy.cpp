// Copies of documents and schemas into a collection.

#include "zor/collection.h"

#include <memory>

#include "collection/documents_of.h"
#include "collection/limits.h"
#include "foundation/map_entries.h"
#include "foundation/string_ref.h"
#include "incident/raise.h"
#include "platform/lock_holder.h"

using zor_internal::deleteDocumentsOf;
using zor_internal::LockHolder;
using zor_internal::moveToEnd;
using zor_internal::raiseError;
using zor_internal::reasonAgainstDocument;
using zor_internal::StringRef;

namespace {

bool haveSameValues(ZorDataType const* a, ZorDataType const* b) {
    return a->fromStringFn == b->fromStringFn && a->copyValueFn == b->copyValueFn &&
           a->freeValueFn == b->freeValueFn && a->setFromStringFn == b->setFromStringFn &&
           a->toStringFn == b->toStringFn;
}

// Whether cells laid out by one tree can be copied onto the other.
bool haveSameLayout(ZorSchemaNode const* a, ZorSchemaNode const* b) {
    if (a->type != b->type || a->getOccurrences() != b->getOccurrences()) return false;
    if (a->isDataNode() && !haveSameValues(a->dataType, b->dataType)) return false;
    ZorSchemaNode const* childA = a->getFirstChildNode();
    ZorSchemaNode const* childB = b->getFirstChildNode();
    for (; childA && childB; childA = childA->next, childB = childB->next) {
        if (zor_stringCompare(childA->name, childB->name) != 0) return false;
        if (!haveSameLayout(childA, childB)) return false;
    }
    return !childA && !childB;
}

// A document with the source's name and cells. It is made with defaults first, which keeps the
// schema's nodes as they are without its lock, so that the source's is taken alone.
std::unique_ptr<ZorDocument> copyOf(ZorDocument* source, ZorSchema* schema, char const** reason) {
    std::unique_ptr<ZorDocument> copy;
    {
        LockHolder const holder(schema->lock);
        *reason = haveSameLayout(source->rootNode, schema->rootNode) ? reasonAgainstDocument(schema)
                                                                     : ") does not match}";
        if (*reason) return nullptr;
        StringRef const name(zor_stringCopy(source->name));
        copy = std::make_unique<ZorDocument>(schema, name.get());
    }
    ZorSchemaNode* const rootNode = schema->rootNode;
    long const count = rootNode->freeValueNodes(copy->values, 1);
    for (long i = 0; i < count; ++i) copy->values[i].flags = ZorValueNode::noValue;
    LockHolder const holder(source->lock);
    rootNode->copyValueNodes(source->values, copy->values, 0, 1);
    return copy;
}

std::unique_ptr<ZorSchema> copyOf(ZorSchema* source) {
    // Kept: while they are copied, nodes find types in the schema itself and the built-in table,
    // not in the collection that the copy is for.
    ZorCollection const scope("");
    LockHolder const holder(source->lock);
    return std::make_unique<ZorSchema>(*source, scope);
}

// Stores a copy of the source under the key, and deletes what was there after that: it may be the
// source. The reason why nothing was done, or null.
char const* replaceByCopy(ZorCollection* collection, char const* name, ZorDocument* source) {
    LockHolder const holder(collection->lock);
    // The map counts the key, too, so it is made and released under the lock.
    StringRef const key(ZorString::create(name, -1));
    auto* const schema =
        static_cast<ZorSchema*>(zor_mapGet(collection->schemas, source->rootNode->name));
    if (!schema) return ") does not exist}";
    char const* reason;
    std::unique_ptr<ZorDocument> copy = copyOf(source, schema, &reason);
    if (reason) return reason;
    auto* const replaced = static_cast<ZorDocument*>(zor_mapGet(collection->documents, key.get()));
    zor_mapSet(collection->documents, key.get(), copy.get());
    (void)copy.release();
    delete replaced;
    return nullptr;
}

} // namespace

void ZorCollection::copyDocument(char const* documentName, ZorDocument* source) {
    if (char const* const reason = replaceByCopy(this, documentName, source)) {
        raiseError(nullptr, incidentInvalidArgument, "ZorCollection::copyDocument{Schema (",
                   source->rootNode->getName(), reason);
    }
}

void ZorCollection::copySchema(char const* schemaName, ZorSchema* source) {
    // Copied before the old schema goes, which may be the source.
    std::unique_ptr<ZorSchema> copy = copyOf(source);
    copy->collection = this;
    LockHolder const holder(lock);
    // The map counts the key, too, so it is made and released under the lock.
    StringRef const key(ZorString::create(schemaName, -1));
    std::unique_ptr<ZorSchema> const replaced(
        static_cast<ZorSchema*>(zor_mapGet(schemas, key.get())));
    if (replaced) {
        deleteDocumentsOf(this, replaced.get());
        moveToEnd(schemas, key.get()); // the copy is listed as the newest
    }
    zor_mapSet(schemas, key.get(), copy.get()); // fails only where there was none
    (void)copy.release();
}
