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
// Names given as `void const*` are a ZorString or plain text, those given as `char const*` plain
// text. A null name counts as the empty one, except that getDocument and getCollection answer null
// to it.
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

// What a host implements to supply schemas that a document import does not know. It is called in
// the middle of an import, for every document that is not there yet: with `schema` attribute for
// the definition if that schema is unknown, without it for both. It must not import files into the
// collection.
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

    // All objects of a kind, in the order of the map (zor/containers.h); null when there are none.
    // New reference: the caller frees the list with zor_listDelete, never the objects.
    ZorListNode* getSchemas();
    ZorListNode* getDocuments();
    ZorListNode* getCollections();
    // The same, appended to the caller's list.
    void getSchemas(std::list<ZorSchema*>& out);
    void getDocuments(std::list<ZorDocument*>& out);
    void getCollections(std::list<ZorCollection*>& out);

    // Stores the object under the name. An object that was there is not deleted: it is the
    // caller's from then on, a schema's documents to be deleted before it. Takes ownership.
    // REQUIRES: the object is stored under no other name; a document's schema outlives it.
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
    // "ZorCollection::copyDocument{Schema (NAME) does not exist}", "... does not match}" (its
    // nodes, their order, occurrences or kinds of values differ), "... has too many documents}" or
    // "... has too many values}" is raised otherwise, and nothing changes. Values are not validated
    // again. REQUIRES: `source` is not null.
    void copyDocument(char const* documentName, ZorDocument* source);
    // Stores a copy of `source`, a schema of any collection, under the name, in the place of what
    // was there; documents of the schema that was there are deleted. The types of its nodes
    // are found among its own and the built-in ones only; a node whose type is not is dropped
    // with an incident. The root node keeps the name of the source; the copy belongs to this
    // collection. Nothing that is counted is shared with the source, whose lock is held meanwhile.
    // REQUIRES: `source` is not null, and nobody adds types to it; the bases of its ranges and the
    // user data of its derived types without cloneUserDataFn outlive the copy, unless they are
    // types of its own.
    void copySchema(char const* schemaName, ZorSchema* source);

    // The dictionary, or null for none. Borrowed: the host keeps it alive.
    void setDictionary(ZorDictionary* schemaDictionary);
    ZorDictionary* getDictionary() const;

    // Borrowed as long as the collection lives.
    char const* getName() const;

    // Imports a whole XML text, whose root element is called like this collection; null counts as
    // the empty text. Everything is reported by incidents; what could be imported stays. May be
    // called while an import runs, by its dictionary; of 16 imports within each other, the next one
    // is refused with "schema definitions are nested too deeply" (no context, severity 3, type 2).
    // Collections and branches nested more than 256 deep are refused with "nested too deeply"
    // (severity 3, type 1), and documents that would take more than 268435456 bytes together with
    // those that the import made before with "documents of one import have too many values" (no
    // context, severity 3, type 2): 16 bytes for a value, and 64 and the text for a default that is
    // no number. What callbacks of the host throw, and std::bad_alloc, reaches the
    // caller; what was imported until then stays.
    void importXML(char const* text);
    // The same for a file, path as a ZorString or plain text. It is read in pieces of 4096 bytes,
    // up to the first one after which the last incident of the parser is an error; refused values
    // are none of the parser's. "File: "PATH" not found." (no context, severity 3, type 3) when it
    // cannot be opened.
    void importFromFile(void const* path);

    // Write the parts of this collection to the writer: without a wrapper, except exportXML, which
    // writes a <collection> element.
    void exportAllSchemas(ZorDataWriter* writer); // all but "DefaultSchema"
    void exportAllDocuments(ZorDataWriter* writer);
    void exportAllCollections(ZorDataWriter* writer);
    void exportAll(ZorDataWriter* writer);
    void exportXML(ZorDataWriter* writer);

    // The same as text, inside an element called like this collection, so that a collection of the
    // same name can import it: provided that its schemas use no types of the collection's own and
    // no ranges over other than built-in types, and that names, defaults, options and bounds
    // contain no markup. The first three give an empty text for an unknown name.
    std::string exportSchema(char const* schemaName);
    std::string exportDocument(char const* documentName);
    std::string exportCollection(char const* collectionName);
    std::string exportAllDocumentsAndSchemas();
    std::string exportAllDocuments();
    std::string exportAll();
    // Every named document, each followed by its schema unless that is "DefaultSchema" or belongs
    // to another collection: a collection that imports it must have the schemas already. A name
    // without document is skipped with "ZorCollection::exportSubset{Document (NAME) does not
    // exist}" (severity 3, type 3).
    std::string exportSubset(std::vector<std::string> const& names);

    // The number of live collections, temporary ones included.
    static int refCount;

    Semaphore lock; // guards the three maps, and is held while this collection is counted
    ZorDictionary* dictionary;
    ZorSchema* defaultSchema;  // as made by the constructor; never followed after that
    ZorMapEntry** schemas;     // name to ZorSchema*, owned
    ZorMapEntry** documents;   // name to ZorDocument*, owned
    ZorMapEntry** collections; // name to ZorCollection*, owned
    ZorString* name;
    std::vector<ZorXmlParser*> parsers; // by nesting depth; owned, with their incident contexts
    int parseDepth;                     // imports of this collection that are running
};

// A rule tree of the definition language for this collection. It has no reference yet: it belongs
// to the rule it is added to, or is deleted by the caller. REQUIRES: `collection` is not null and
// outlives every parse with these rules.
ZOR_API ZorElementParseRules* zor_getZORParseRules(ZorCollection* collection);
// The rule of a <document> element, as above.
// REQUIRES: the element it is allowed in publishes its ZorCollection as user data.
ZOR_API ZorElementParseRules* zor_getDocumentParseRules();
// Releases the user data of a document rule or of a node rule below it.
ZOR_API void deleteImportRuleInfo(void* info);
