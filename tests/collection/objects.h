// Objects of a collection as their names, and values of a document as text.
//
//     EXPECT_EQ(namesOf(store.getSchemas()), "DefaultSchema phone");
//     EXPECT_EQ(valuesAt(document, "lineKey/label"), "Reception|(null)");

#pragma once

#include <list>
#include <memory>
#include <string>

#include "tests/support/text.h"
#include "zor/collection.h"

// The names of the list's objects, a blank between two; the list is freed.
template <typename T>
std::string namesIn(ZorListNode* list) {
    std::string names;
    for (ZorListNode const* node = list; node; node = node->next) {
        if (!names.empty()) names += ' ';
        names += static_cast<T const*>(node->value)->getName();
    }
    zor_listDelete(list);
    return names;
}

inline std::string schemaNames(ZorCollection& store) {
    return namesIn<ZorSchema>(store.getSchemas());
}
inline std::string documentNames(ZorCollection& store) {
    return namesIn<ZorDocument>(store.getDocuments());
}
inline std::string collectionNames(ZorCollection& store) {
    return namesIn<ZorCollection>(store.getCollections());
}

// The values that the path reaches, "|" between two.
inline std::string valuesAt(ZorDocument* document, char const* path) {
    std::string values;
    std::unique_ptr<ZorResultSet> const found(document->select(path));
    for (; !found->eof(); found->next()) {
        if (found->cursor > 0) values += '|';
        values += taken(found->getValue());
    }
    return values;
}

// Sets every value that the path reaches; how many were set.
inline int setAt(ZorDocument* document, char const* path, char const* value) {
    int count = 0;
    std::unique_ptr<ZorResultSet> const found(document->select(path));
    for (; !found->eof(); found->next()) count += found->setValue(value);
    return count;
}

// The one node that the path names.
inline ZorSchemaNode* nodeAt(ZorSchema* schema, char const* path) {
    Text const text(path);
    return schema->getRootNode()->findSubNode(text);
}

// What a member that writes to a writer writes.
template <typename Export>
std::string written(Export exportTo) {
    ZorStringWriter writer;
    exportTo(&writer);
    return writer.getValue();
}
