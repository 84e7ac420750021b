// A collection "phone" to import into, and what it holds as text.
//
//     ImportStore store;
//     EXPECT_EQ(store.define("<item name='port' type='uint' default='80'/>"), "");
//     EXPECT_EQ(store.fill("<port>8080</port>"), "");
//     EXPECT_EQ(store.shape(), "port:uint=80");
//     EXPECT_EQ(store.values(), "port=8080*");
//
// Every text is imported six times: whole into the collection itself, and in pieces of 1 to 5 bytes
// into others that have the same past. Incidents, the dictionary's calls and what the collections
// hold afterwards must be the same.

#pragma once

#include <expat.h>
#include <gtest/gtest.h>

#include <list>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tests/schema/shape.h"
#include "tests/support/incidents.h"
#include "tests/support/text.h"
#include "zor/collection.h"

// A dictionary that notes what it is asked.
class TestDictionary : public ZorDictionary {
public:
    std::string getSchemaName(std::string const& documentName) override {
        calls += "name " + documentName + ';';
        return schemaNames[documentName];
    }
    std::string getSchemaDefinition(std::string const& schemaName) override {
        calls += "definition " + schemaName + ';';
        return definitions[schemaName];
    }

    std::string takeCalls() {
        std::string taken;
        taken.swap(calls);
        return taken;
    }

    std::map<std::string, std::string> schemaNames; // by document
    std::map<std::string, std::string> definitions; // by schema

private:
    std::string calls;
};

// Every data node's values: "path=VALUE|VALUE", a star behind a changed one, "(null)" for none.
inline std::string valuesOf(ZorDocument* document) {
    if (!document) return "no document";
    std::string text;
    for (ZorSchemaNode* const node : nodesBelow(document->getRootNode())) {
        if (!node->isDataNode()) continue;
        text += (text.empty() ? "" : " ") + pathOf(node) + '=';
        for (int i = 0; i < node->getTotalOccurrences(); ++i) {
            if (i > 0) text += '|';
            text += taken(document->getStringNodeValue(node, i));
            if (document->wasChanged(node, i)) text += '*';
        }
    }
    return text;
}

// The definitions of the schema's own types, in no particular order.
inline std::string typesOf(ZorSchema const* schema) {
    ZorStringWriter writer;
    ZorListNode* const types = schema->getDataTypes();
    for (ZorListNode const* node = types; node; node = node->next) {
        zor_dataTypeExportXML(&writer, static_cast<ZorDataType*>(node->value));
    }
    zor_listDelete(types);
    return writer.getValue();
}

// Everything that a collection holds.
inline std::string contentOf(ZorCollection& collection) {
    std::string text = std::string(collection.getName()) + '(';
    std::list<ZorSchema*> schemas;
    collection.getSchemas(schemas);
    for (ZorSchema const* const schema : schemas) {
        text += std::string("schema ") + schema->getName() + " [" + typesOf(schema) + "] " +
                shapeOf(schema->getRootNode()) + '\n';
    }
    std::list<ZorDocument*> documents;
    collection.getDocuments(documents);
    for (ZorDocument* const document : documents) {
        text += std::string("document ") + document->getName() + " of " +
                document->getRootNode()->getName() + ' ' + valuesOf(document) + '\n';
    }
    std::list<ZorCollection*> collections;
    collection.getCollections(collections);
    for (ZorCollection* const inner : collections) text += contentOf(*inner);
    return text + ')';
}

// Incidents as IncidentLog gives them, of a parser without a label and of no context.
inline std::string atPosition(int line, int column) {
    return "{zor_XMLParse: line " + std::to_string(line) + ", column " + std::to_string(column) +
           " }";
}
inline std::string errorAt(int line, int column, std::string const& text) {
    return "3 " + atPosition(line, column) + text + '\n';
}
inline std::string warningAt(int line, int column, std::string const& text) {
    return "2 " + atPosition(line, column) + text + '\n';
}
inline std::string plainError(std::string const& text) { return "3 " + text + '\n'; }

// The three warnings about an element that is not allowed: `allowed` are the names that are, and
// `outer` and `outerOuter` the rules around it.
inline std::string notRecognisedAt(int line, int column, std::string const& name,
                                   std::vector<std::string> const& allowed,
                                   std::string const& outer, std::string const& outerOuter) {
    std::string names;
    for (std::string const& allowedName : allowed) names += '\'' + allowedName + "' ";
    return warningAt(line, column, "element not recognised in this context <" + name + '>') +
           warningAt(line, column,
                     "Element is '" + name + "'. Possible valid elements are " + names +
                         ". outerContext->currentElement->elementName = '" + outer + '\'') +
           warningAt(line, column, ". outerOuterContextElementName = '" + outerOuter + '\'');
}

// The warning about an end tag behind an error that finds nothing open.
inline std::string unwoundAt(int line, int column, std::string const& name) {
    return warningAt(line, column,
                     "mainEndElementHandler name='" + name +
                         "' outerContext is NULL meaning this is the top level ZorXmlParser owned "
                         "context which we should _not_ be deleting!");
}

class ImportStore {
public:
    explicit ImportStore(TestDictionary* schemaDictionary = nullptr,
                         char const* collectionName = "phone")
        : collection(collectionName, schemaDictionary), dictionary(schemaDictionary) {
        for (std::size_t length = 1; length <= 5; ++length) {
            twins.push_back(std::make_unique<Twin>(collectionName, dictionary, length));
        }
    }

    // Imports the text; the incidents that it raised.
    std::string import(std::string const& text) {
        collection.importXML(text.c_str());
        std::string const incidents = log.take();
        if (dictionary) dictionaryCalls = dictionary->takeCalls();
        for (auto const& twin : twins) {
            twin->import(text);
            std::string const where = "pieces of " + std::to_string(twin->pieceLength);
            EXPECT_EQ(log.take(), incidents) << where;
            EXPECT_EQ(dictionary ? dictionary->takeCalls() : "", dictionaryCalls) << where;
            EXPECT_EQ(contentOf(twin->collection), contentOf(collection)) << where;
        }
        return incidents;
    }

    // Imports a schema "s" of that content, which begins in line 2.
    std::string define(std::string const& content) {
        return import("<phone><schema name='s'>\n" + content + "\n</schema></phone>");
    }

    // Imports a document "d" of schema "s" of that content, which begins in line 2.
    std::string fill(std::string const& content) {
        return import("<phone><document name='d' schema='s'>\n" + content +
                      "\n</document></phone>");
    }

    // Does the same to all collections.
    template <typename Action>
    void each(Action const& action) {
        action(collection);
        for (auto const& twin : twins) action(twin->collection);
    }

    std::string shape(char const* schemaName = "s") {
        ZorSchema const* const schema = collection.getSchema(schemaName);
        return schema ? shapeOf(schema->getRootNode()) : "no schema";
    }
    std::string types(char const* schemaName = "s") {
        return typesOf(collection.getSchema(schemaName));
    }
    std::string values(char const* documentName = "d") {
        return valuesOf(collection.getDocument(documentName));
    }
    std::string content() { return contentOf(collection); }

    // What the last import asked the dictionary.
    std::string calls() const { return dictionaryCalls; }

    IncidentLog log;
    ZorCollection collection;

private:
    // A collection whose imports come in small pieces.
    struct Twin {
        Twin(char const* name, ZorDictionary* schemaDictionary, std::size_t length)
            : collection(name, schemaDictionary), incidents("", nullptr, nullptr),
              parser(&collection, &incidents), pieceLength(length) {}

        void import(std::string const& text) {
            parser.reset(&collection);
            std::size_t at = 0;
            do {
                std::string const piece = text.substr(at, pieceLength);
                at += pieceLength;
                parser.parse(piece.data(), static_cast<int>(piece.size()), at >= text.size());
                // A broken input repeats its complaint for every further piece.
            } while (at < text.size() && !isBroken());
        }

        bool isBroken() const { return XML_GetErrorCode(parser.expatParser) != XML_ERROR_NONE; }

        ZorCollection collection;
        ZorIncidentContext incidents;
        ZorXmlParser parser;
        std::size_t pieceLength;
    };

    TestDictionary* dictionary;
    std::string dictionaryCalls;
    std::vector<std::unique_ptr<Twin>> twins;
};
