// Documents, select paths and result sets.
//
// A document holds the values of one schema. A value is addressed by a data node and its flat
// occurrence (see zor/schema.h), or found by a path:
//
//     ZorResultSet* keys = document->select("lineKey[3]/label");
//     for (; !keys->eof(); keys->next()) {
//         keys->setValue("Reception");
//         ZorString* text = keys->getValue(); // null when there is no value
//         if (text) text->removeRef();
//     }
//     delete keys;
//
// Paths: steps separated by "/", from the root on; a leading "/" changes nothing. A step is a name,
// or anything that begins with "*" for every name, and perhaps an occurrence "[n]" counted from 1,
// else all occurrences. Before the last step only branches are passed through. "//" before a step
// searches at any depth, but below one branch it ends at the first occurrence of that branch
// under which nothing was found. At most 31 steps. A path that is malformed or null selects
// nothing.
//
// Every value is checked against its type when it is set. Setting marks it changed, which is what
// export writes. A branch where a data node is needed, a node of another schema and an occurrence
// that does not exist never reach a cell: reading answers as for an empty cell, writing raises an
// incident and answers 0.
//
// Threads: every operation takes the document's lock, except those that say otherwise. A result
// set belongs to one thread and must not outlive its document.

#pragma once

#include <string>

#include "zor/containers.h"
#include "zor/export.h"
#include "zor/platform.h"
#include "zor/schema.h"
#include "zor/string.h"
#include "zor/text.h"
#include "zor/types.h"

class ZorResultSet;

// One step of a select path.
struct XPathStep {
    int descendant;  // 1 behind "//"
    ZorString* name; // a wildcard when its first character is "*"
    int occurrence;  // from 0; -1 for all
};

class ZOR_API ZorDocument {
public:
    // A document with the schema's defaults, nothing changed. Adds a reference to a ZorString
    // name. ZorCollection::makeDocument checks the requirements.
    // REQUIRES: `schema` is not null and outlives the document; it has fewer than 32767 documents,
    // and needs at most 16777216 cells; nobody makes nodes or documents of it at the same time.
    ZorDocument(ZorSchema* schema, void const* documentName);
    // A copy of `other`, changed marks included, on the tree of `schema`. Takes no lock.
    // REQUIRES: as above; `schema` has the layout and the types of `other`'s schema.
    ZorDocument(ZorDocument const& other, ZorSchema* schema);
    ZorDocument(ZorDocument const&) = delete;
    ZorDocument& operator=(ZorDocument const&) = delete;
    virtual ~ZorDocument();

    // The cell, or null when the node is not a data node of this document's schema or has no such
    // occurrence. `reserved` is ignored. Takes no lock. Borrowed as long as the document lives.
    ZorValueNode* getDataItem(ZorSchemaNode* node, long occurrence, int reserved);

    // The value as text; null when there is none. New reference.
    ZorString* getStringNodeValue(ZorSchemaNode* node, long occurrence);

    // Sets the value from text (a ZorString or plain text); null empties the cell. 1 when set. 0
    // with one incident (no context, severity 3, type 2), nothing changed, checked in this order:
    // - "setStringNodeValue: node is not a data node";
    // - "setStringNodeValue: value (V) is not valid": the type refuses the text, or it is longer
    //   than 65534 characters;
    // - "setStringNodeValue: occurrence is out of range", or the node is another schema's.
    int setStringNodeValue(ZorSchemaNode* node, long occurrence, void const* value);

    // The same for callers that hold the lock; the setter leaves the changed mark alone and does
    // not say whether it succeeded.
    ZorString* nonBlockingGetStringNodeValue(ZorSchemaNode* node, long occurrence);
    void nonBlockingSetStringNodeValue(ZorSchemaNode* node, long occurrence, void const* value);

    // The value as a number. 0 with *isNull = 1 when there is none; a type that does not convert
    // to that kind also raises "Unsupported Type Conversion" (severity 3, type 3). `isNull` may be
    // null.
    long getIntNodeValue(ZorSchemaNode* node, long occurrence, int* isNull);
    unsigned long getUIntNodeValue(ZorSchemaNode* node, long occurrence, int* isNull);
    double getFloatNodeValue(ZorSchemaNode* node, long occurrence, int* isNull);

    // Sets the value from a number. 1 when set. 0 with one incident (no context, severity 3),
    // nothing changed, checked in this order; setUInt and setFloat likewise:
    // - "setIntNodeValue: node is not a data node" (type 2);
    // - "Unsupported Type Conversion" (type 3): the type does not convert that kind;
    // - "setIntNodeValue: value is not valid" (type 2): the type refuses the number;
    // - "setIntNodeValue: occurrence is out of range" (type 2), or the node is another schema's.
    int setIntNodeValue(ZorSchemaNode* node, long occurrence, long value);
    int setUIntNodeValue(ZorSchemaNode* node, long occurrence, unsigned long value);
    int setFloatNodeValue(ZorSchemaNode* node, long occurrence, double value);

    // Whether the value was set since it had its default; false where there is no cell.
    bool wasChanged(ZorSchemaNode* node, long occurrence);

    // Back to the node's default, or to no value when it has none; not changed any more.
    void restoreDefault(ZorSchemaNode* node, long occurrence);
    // Sets every data node directly under the root, and none below branches, to its default, or to
    // no value when it has none. The values count as changed. A default that its own type refuses
    // is not set, and reported as by setStringNodeValue.
    void restoreDefaults();

    // The nodes and occurrences that the path (a ZorString or plain text) reaches, in the order
    // they are found; empty when there are none. A path that finds more than 65536 results in a
    // step and more than 4 for every cell of the document, or looks at more than 4194304 nodes and
    // at more than 64 for every cell, selects nothing, and "path (P) reaches too many nodes" is
    // raised (severity 3, type 2). New reference: the caller deletes it.
    ZorResultSet* select(void const* path);

    // Applies one step to every entry of `context` and appends what it reaches to `result`, nothing
    // when that is more than `select` allows. Non-zero when there was any. For `select`.
    // REQUIRES: the caller holds the lock; `context` is not finalized.
    int findNode(ZorResultSet* result, ZorResultSet* context, int stepIndex, XPathStep* steps,
                 int stepCount);

    // Borrowed: the schema's root node, and the document's name.
    ZorSchemaNode* getRootNode() const;
    char const* getName() const;

    // Writes the document with its changed values as XML.
    void exportXML(ZorDataWriter* writer);
    // The same for the children of `node` under its flat occurrence `parentOccurrence`. Whether
    // anything was written.
    // REQUIRES: the caller holds the lock.
    bool exportXML(ZorSchemaNode* node, long parentOccurrence, ZorDataWriter* writer);

    ZorValueNode* values; // one cell per occurrence of every data node
    ZorString* name;
    ZorSchemaNode* rootNode; // of the schema; not owned
    Semaphore lock;          // guards the cells
};

// One answer of a select.
class ZOR_API ZorResultPointer {
public:
    // REQUIRES: the node outlives the result.
    ZorResultPointer(ZorSchemaNode* resultNode, int ownOccurrence, int flatOccurrence);
    virtual ~ZorResultPointer();

    ZorSchemaNode* node;
    int occurrence; // under the parent's occurrence, from 0
    int flat;       // flat occurrence
};

// The answers of a select, with a cursor. Past the end, every accessor of the current result raises
// "Passed end of result set" (severity 3, type 4) and answers null, 0 or false.
class ZOR_API ZorResultSet {
public:
    explicit ZorResultSet(ZorDocument* resultDocument);
    ZorResultSet(ZorResultSet const&) = delete;
    ZorResultSet& operator=(ZorResultSet const&) = delete;
    virtual ~ZorResultSet();

    // Appends the occurrence (from 0) of the node below its parent's flat occurrence. One that 31
    // bits do not hold is kept as one that does not exist.
    // REQUIRES: `node` is not null.
    void addResult(long parentFlat, ZorSchemaNode* node, long occurrence);
    // Moves the results of `other` behind these; null and the set itself change nothing. Takes
    // ownership of `other`.
    void combine(ZorResultSet* other);
    // Makes the array in which the results are read. Reading does so, too.
    void finalize();

    bool eof() const;
    void next(); // does nothing at the end
    void rewind();
    void seek(unsigned int index); // an index past the end makes eof() true
    unsigned long getResultCount() const;

    // Borrowed as long as the schema lives.
    ZorSchemaNode* getDefinition();
    char const* getNodeName();
    ZorDataType* getDataType(); // null for branches
    // From 1, as in a path.
    long getOccurrence();

    // As the document's operations of the same kind. At the end *isNull is left alone.
    ZorString* getValue();
    int setValue(char const* value);
    void restoreDefault();
    long getIntValue(int* isNull);
    int setIntValue(long value);
    unsigned long getUIntValue(int* isNull);
    int setUIntValue(unsigned long value);
    double getFloatValue(int* isNull);
    int setFloatValue(double value);
    bool wasChanged();

    // Copies the value as text, cut to size - 1 characters, NUL-terminated and NUL-padded. No value
    // leaves the buffer untouched, and so does a `size` below 1. *isNull is 1 when there is no
    // value and at the end, else 0.
    void getValue(char* buffer, int size, int* isNull);
    // No value leaves `out` unchanged. *isNull is true when there is no value and at the end, else
    // false; here and above it may be null.
    void getValue(std::string& out, bool* isNull);
    // No value makes `out` empty.
    void getValue(std::string& out);

    ZorDocument* document;
    // For reading: records and their places are the set's own, and made by addResult.
    ZorListNode* head;          // of ZorResultPointer*, while the set is built
    ZorListNode* tail;          // where the next result is appended
    ZorResultPointer** results; // after finalize
    unsigned int count;
    unsigned int cursor;
    ZorResultPointer* single; // the array of a set of one
};
