// Copies of documents and schemas into a collection.

#include "collection/limits.h"
#include "foundation/string_ref.h"
#include "incident/raise.h"
#include "zor/collection.h"

using zor_internal::kMaxDocuments;
using zor_internal::raiseError;
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

} // namespace

void ZorCollection::copyDocument(char const* documentName, ZorDocument* source) {
    ZorString const* const schemaName = source->rootNode->name;
    auto const refuse = [schemaName](char const* reason) {
        raiseError(nullptr, incidentInvalidArgument, "ZorCollection::copyDocument{Schema (",
                   schemaName->text, reason);
    };
    ZorSchema* const schema = getSchema(schemaName);
    if (!schema) return refuse(") does not exist}");
    if (!haveSameLayout(source->rootNode, schema->rootNode)) return refuse(") does not match}");
    if (schema->documentCount() >= kMaxDocuments) return refuse(") has too many documents}");

    // Copied before the old document goes, which may be the source.
    auto* const copy = new ZorDocument(*source, schema);
    StringRef const key(ZorString::create(documentName, -1));
    deleteDocument(documentName);
    setDocument(copy, key.get());
}

void ZorCollection::copySchema(char const* schemaName, ZorSchema* source) {
    ZorSchema* copy;
    {
        // Kept: while they are copied, nodes find types in the schema itself and the built-in
        // table, not in this collection.
        ZorCollection const scope("");
        copy = new ZorSchema(*source, scope);
    }
    copy->collection = this;
    // Copied before the old schema goes, which may be the source.
    StringRef const key(ZorString::create(schemaName, -1));
    deleteSchema(schemaName);
    setSchema(copy, key.get());
}
