// A document of a schema written as text (see tests/schema/shape.h), its operations as verbs.
//
//     Store phone("line*2{label:string=x}");
//     phone.set("line/label", 1, "Reception");
//     EXPECT_EQ(phone.text("line/label", 1), "Reception");
//     EXPECT_EQ(phone.cells(), "line/label=x,Reception*;"); // the star: changed
//     EXPECT_EQ(phone.select("line[2]/*"), "line/label[1]@1 ");

#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/schema/shape.h"
#include "tests/support/text.h"
#include "zor/document.h"

// The results from the cursor on, which moves to the end: path, occurrence from 1, flat occurrence.
inline std::string describe(ZorResultSet& results) {
    std::string text;
    for (; !results.eof(); results.next()) {
        text += pathOf(results.getDefinition()) + '[' + std::to_string(results.getOccurrence()) +
                "]@" + std::to_string(results.results[results.cursor]->flat) + ' ';
    }
    return text;
}

inline std::string describeSelection(ZorDocument& document, void const* path) {
    std::unique_ptr<ZorResultSet> const results(document.select(path));
    return describe(*results);
}

// Every cell of the document: "-" where there is no value, a star behind what is changed.
inline std::string cellsOf(ZorDocument& document) {
    std::string text;
    for (ZorSchemaNode* const node : nodesBelow(document.rootNode)) {
        if (!node->isDataNode()) continue;
        text += pathOf(node) + '=';
        for (int i = 0; i < node->getTotalOccurrences(); ++i) {
            ZorString* const value = document.getStringNodeValue(node, i);
            text += (i ? "," : "") + (value ? taken(value) : "-");
            if (document.wasChanged(node, i)) text += '*';
        }
        text += ';';
    }
    return text;
}

class Store {
public:
    explicit Store(std::string const& shapeText, std::vector<ZorDataType*> const& ownTypes = {})
        : shape(shapeText, ownTypes), document(&shape.schema, "document") {}

    ZorSchemaNode* operator[](std::string const& path) const { return shape[path]; }

    std::string text(char const* path, long occurrence = 0) {
        return taken(document.getStringNodeValue(shape[path], occurrence));
    }
    int set(char const* path, long occurrence, void const* value) {
        return document.setStringNodeValue(shape[path], occurrence, value);
    }
    bool changed(char const* path, long occurrence = 0) {
        return document.wasChanged(shape[path], occurrence);
    }
    std::string cells() { return cellsOf(document); }
    std::string select(void const* path) { return describeSelection(document, path); }

    Shape shape;
    ZorDocument document;
};
