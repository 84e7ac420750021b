// Collections: the root of the store, with import and export.
//
// A collection owns schemas, documents and further collections by name, and types that its schemas
// share. It is born with the schema "DefaultSchema", which has one text item "itemValue".
//
//     ZorCollection store("deskphone");
//     store.importFromFile("definition.xml"); // root element <deskphone>
//     store.importFromFile("config.xml");
//     ZorDocument* phone = store.getDocument("phone1");
//     ...
//     std::string xml = store.exportAll();
//
// Names are a ZorString or plain text; a null name counts as the empty one. An object is stored
// under one name at a time.
//
// Threads: every operation takes the collection's lock as it needs it. The host sees to it that no
// two imports run into one collection at a time, that nothing is deleted that another thread uses,
// and that the dictionary is set before imports.

#pragma once

#include <list>
#include <string>
#include <vector>

#include "zor/containers.h"
#include "zor/document.h"
#include "zor/export.h"
#include "zor/platform.h"
#include "zor/schema.h"
#include "zor/string.h"
#include "zor/text.h"
#include "zor/types.h"
#include "zor/xml.h"

// What a host implements to supply schemas that a document import does not know.
class ZOR_API ZorDictionary {
public:
    // The name of the schema that a document of this name uses; empty when unknown.
    virtual std::string getSchemaName(std::string const& documentName) = 0;
    // A text in the definition language, its root element called like the collection, that defines
    // the schema of this name; empty when unknown.
    virtual std::string getSchemaDefinition(std::string const& schemaName) = 0;

protected:
    ~ZorDictionary() = default;
};

class ZOR_API ZorCollection : public ZorDataTypeCollection {
public:
    explicit ZorCollection(void const* collectionName);
    // `schemaDictionary` may be null and is not owned.
    ZorCollection(void const* collectionName, ZorDictionary* schemaDictionary);
    // Destroys the documents, then the schemas, then the sub-collections.
    ~ZorCollection() override;

    // A new schema. Null with "ZorCollection::makeSchema{Schema (NAME) already exists}" when the
    // name is taken. This and the following incidents have no context, severity 3, type 2.
    // Borrowed: the collection owns it.
    ZorSchema* makeSchema(void const* schemaName);

    // A new document of that schema. Null with "ZorCollection::makeDocument{Schema (NAME) does not
    // exist}", "...{Document (NAME) already exists}", "...{Schema (NAME) has too many documents}"
    // (32767 exist) or "...{Schema (NAME) has too many values}" (more than 16777216 cells), checked
    // in this order. Borrowed.
    ZorDocument* makeDocument(void const* schemaName, void const* documentName);

    // A new sub-collection. When the name is taken, "ZorCollection::makeCollection{Collection
    // (NAME) already exists}" is raised, and the new one still takes the place of the old one,
    // which then belongs to whoever holds a pointer to it. Borrowed.
    ZorCollection* makeCollection(void const* collectionName);

    // The object of that name, or null. Borrowed until it is deleted or replaced.
    ZorSchema* getSchema(void const* schemaName);
    ZorDocument* getDocument(void const* documentName);
    ZorCollection* getCollection(void const* collectionName);

    // All objects of a kind; null when there are none. New reference: the caller frees the list
    // with zor_listDelete, never the objects.
    ZorListNode* getSchemas();
    ZorListNode* getDocuments();
    ZorListNode* getCollections();
    // The same, appended to the caller's list.
    void getSchemas(std::list<ZorSchema*>& out);
    void getDocuments(std::list<ZorDocument*>& out);
    void getCollections(std::list<ZorCollection*>& out);

    // Stores the object under the name. An object that was there is not deleted: it is the
    // caller's from then on. Takes ownership.
    void setSchema(ZorSchema* schema, void const* schemaName);
    void setDocument(ZorDocument* document, void const* documentName);

    // Deletes the object of that name, if there is one; a schema takes this collection's documents
    // of it along.
    void deleteSchema(char const* schemaName);
    void deleteDocument(char const* documentName);
    void deleteCollection(char const* collectionName);
    // Deletes all objects of a kind; schemas, "DefaultSchema" included, take this collection's
    // documents along.
    void deleteAllSchemas();
    void deleteAllDocuments();
    void deleteAllCollections();

    // Stores a copy of `source`, a document of any collection, under the name, in the place of
    // what was there. Its schema is the one of this collection that is called like the source's;
    // "ZorCollection::copyDocument{Schema (NAME) does not exist}" or "... does not match}" (its
    // layout or types differ) is raised otherwise, and nothing changes.
    void copyDocument(char const* documentName, ZorDocument* source);
    // Stores a copy of `source`, a schema of any collection, under the name, in the place of what
    // was there; documents of the schema that was there are deleted. The types of its nodes
    // are found among its own and the built-in ones only; a node whose type is not is dropped
    // with an incident. The root node keeps the name of the source.
    void copySchema(char const* schemaName, ZorSchema* source);

    void setDictionary(ZorDictionary* schemaDictionary);
    ZorDictionary* getDictionary() const;

    // Borrowed as long as the collection lives.
    char const* getName() const;

    // Imports a whole XML text, whose root element is called like this collection. Everything is
    // reported by incidents; what could be imported stays.
    void importXML(char const* text);
    // The same for a file, path as a ZorString or plain text. Reading ends after the first 4096
    // bytes in which an error arose. "File: "PATH" not found." (severity 3, type 3) when it cannot
    // be opened.
    void importFromFile(void const* path);

    // Write the parts of this collection to the writer: without a wrapper, except exportXML, which
    // writes a <collection> element.
    void exportAllSchemas(ZorDataWriter* writer); // all but "DefaultSchema"
    void exportAllDocuments(ZorDataWriter* writer);
    void exportAllCollections(ZorDataWriter* writer);
    void exportAll(ZorDataWriter* writer);
    void exportXML(ZorDataWriter* writer);

    // The same as text, inside an element called like this collection, so that a collection of the
    // same name can import it. The first three give an empty text for an unknown name.
    std::string exportSchema(char const* schemaName);
    std::string exportDocument(char const* documentName);
    std::string exportCollection(char const* collectionName);
    std::string exportAllDocumentsAndSchemas();
    std::string exportAllDocuments();
    std::string exportAll();
    // Every named document, each followed by its schema unless that is "DefaultSchema". A name
    // without document is skipped with "ZorCollection::exportSubset{Document (NAME) does not
    // exist}" (severity 3, type 3).
    std::string exportSubset(std::vector<std::string> const& names);

    // The number of live collections, temporary ones included.
    static int refCount;

    Semaphore lock; // guards the three maps
    ZorDictionary* dictionary;
    ZorSchema* defaultSchema;  // as made by the constructor; never followed after that
    ZorMapEntry** schemas;     // name to ZorSchema*, owned
    ZorMapEntry** documents;   // name to ZorDocument*, owned
    ZorMapEntry** collections; // name to ZorCollection*, owned
    ZorString* name;
    std::vector<ZorXmlParser*> parsers; // by nesting depth; owned, with their incident contexts
    int parseDepth;                     // imports of this collection that are running
};

// The rules of the definition language for this collection. New reference, to be counted by the
// rule they are added to.
ZOR_API ZorElementParseRules* zor_getZORParseRules(ZorCollection* collection);
// The rule of a <document> element. New reference, as above.
ZOR_API ZorElementParseRules* zor_getDocumentParseRules();
// Releases the user data of a document rule or of a node rule below it.
ZOR_API void deleteImportRuleInfo(void* info);
