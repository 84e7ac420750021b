// A collection as XML.

#include <cstring>

#include "collection/default_schema.h"
#include "foundation/list_ref.h"
#include "foundation/string_ref.h"
#include "foundation/write_text.h"
#include "incident/raise.h"
#include "zor/collection.h"

using zor_internal::isDefaultSchema;
using zor_internal::ListRef;
using zor_internal::raiseError;
using zor_internal::StringRef;
using zor_internal::writeText;

namespace {

// A text inside an element called like the collection.
class WrappedText {
public:
    explicit WrappedText(ZorCollection const* wrapper) : collection(wrapper) { writeTag("<"); }
    WrappedText(WrappedText const&) = delete;
    WrappedText& operator=(WrappedText const&) = delete;
    ~WrappedText() = default;

    // Where what stands inside is written to.
    ZorDataWriter* writer() { return &text; }

    // The whole text. Called once.
    std::string finish() {
        writeTag("</");
        return text.getValue();
    }

private:
    void writeTag(char const* open) {
        writeText(&text, open);
        writeText(&text, collection->getName());
        writeText(&text, ">");
    }

    ZorCollection const* collection;
    ZorStringWriter text;
};

template <typename T>
void exportObject(void* object, ZorDataWriter* writer) {
    static_cast<T*>(object)->exportXML(writer);
}

// One object, wrapped; empty when there is none.
std::string wrappedObject(ZorCollection const* collection, void* object,
                          void (*writeObject)(void* object, ZorDataWriter* writer)) {
    if (!object) return std::string();
    WrappedText wrapped(collection);
    writeObject(object, wrapped.writer());
    return wrapped.finish();
}

// The schema of this collection that the document was made from, or null.
ZorSchema* schemaOf(ZorCollection* collection, ZorDocument const* document) {
    ZorSchema* const namesake = collection->getSchema(document->rootNode->name);
    if (namesake && namesake->rootNode == document->rootNode) return namesake;
    ListRef const schemas(collection->getSchemas());
    for (ZorListNode const* node = schemas.first(); node; node = node->next) {
        auto* const schema = static_cast<ZorSchema*>(node->value);
        if (schema->rootNode == document->rootNode) return schema;
    }
    return nullptr;
}

void writeWithSchema(ZorCollection* collection, std::string const& name, ZorDataWriter* writer) {
    StringRef const key(ZorString::create(name.c_str(), -1));
    ZorDocument* const document = collection->getDocument(key.get());
    if (!document) {
        raiseError(nullptr, incidentNotFound, "ZorCollection::exportSubset{Document (",
                   name.c_str(), ") does not exist}");
        return;
    }
    document->exportXML(writer);
    if (isDefaultSchema(document->rootNode)) return;
    if (ZorSchema* const schema = schemaOf(collection, document)) schema->exportXML(writer);
}

} // namespace

void ZorCollection::exportAllSchemas(ZorDataWriter* writer) {
    ListRef const values(getSchemas());
    for (ZorListNode const* node = values.first(); node; node = node->next) {
        auto* const schema = static_cast<ZorSchema*>(node->value);
        if (!isDefaultSchema(schema->rootNode)) schema->exportXML(writer);
    }
}

void ZorCollection::exportAllDocuments(ZorDataWriter* writer) {
    ListRef const values(getDocuments());
    for (ZorListNode const* node = values.first(); node; node = node->next) {
        static_cast<ZorDocument*>(node->value)->exportXML(writer);
    }
}

void ZorCollection::exportAllCollections(ZorDataWriter* writer) {
    ListRef const values(getCollections());
    for (ZorListNode const* node = values.first(); node; node = node->next) {
        static_cast<ZorCollection*>(node->value)->exportXML(writer);
    }
}

void ZorCollection::exportAll(ZorDataWriter* writer) {
    exportAllSchemas(writer);
    exportAllDocuments(writer);
    exportAllCollections(writer);
}

void ZorCollection::exportXML(ZorDataWriter* writer) {
    writeText(writer, "<collection name=\"");
    writeText(writer, getName());
    writeText(writer, "\">");
    exportAll(writer);
    writeText(writer, "</collection>");
}

std::string ZorCollection::exportSchema(char const* schemaName) {
    StringRef const key(ZorString::create(schemaName, -1));
    return wrappedObject(this, getSchema(key.get()), exportObject<ZorSchema>);
}

std::string ZorCollection::exportDocument(char const* documentName) {
    StringRef const key(ZorString::create(documentName, -1));
    return wrappedObject(this, getDocument(key.get()), exportObject<ZorDocument>);
}

std::string ZorCollection::exportCollection(char const* collectionName) {
    StringRef const key(ZorString::create(collectionName, -1));
    return wrappedObject(this, getCollection(key.get()), exportObject<ZorCollection>);
}

std::string ZorCollection::exportAllDocumentsAndSchemas() {
    WrappedText wrapped(this);
    exportAllSchemas(wrapped.writer());
    exportAllDocuments(wrapped.writer());
    return wrapped.finish();
}

std::string ZorCollection::exportAllDocuments() {
    WrappedText wrapped(this);
    exportAllDocuments(wrapped.writer());
    return wrapped.finish();
}

std::string ZorCollection::exportAll() {
    WrappedText wrapped(this);
    exportAll(wrapped.writer());
    return wrapped.finish();
}

std::string ZorCollection::exportSubset(std::vector<std::string> const& names) {
    WrappedText wrapped(this);
    for (std::string const& documentName : names) {
        writeWithSchema(this, documentName, wrapped.writer());
    }
    return wrapped.finish();
}
