#include "tree.h"

#include <cstdio>
#include <list>
#include <string>

namespace {

std::string options; // collected by the callback, which takes no data

void collectOption(int index, char const* text) {
    options += (index ? " | " : "") + std::string(text);
}

std::string describe(ZorDataType* type) {
    std::string text = zor_dataTypeName(type);
    if (zor_datatypeIsRange(type)) {
        text += std::string(" (") + zor_dataTypeName(zor_rangeBaseType(type)) + " " +
                zor_rangeMin(type) + " to " + zor_rangeMax(type) + ")";
    } else if (zor_datatypeIsChoice(type)) {
        options.clear();
        zor_choiceEnumerate(type, collectOption);
        text += " (" + options + ")";
    }
    return text;
}

void printLine(int depth, std::string const& text) {
    std::printf("%*s%s\n", depth * 2, "", text.c_str());
}

void printNode(ZorSchemaNode const* node, int depth) {
    std::string line = node->getName();
    if (node->isBranchNode()) line += "/";
    if (node->getOccurrences() != 1) line += " [" + std::to_string(node->getOccurrences()) + "]";
    if (node->isDataNode()) {
        line += ": " + describe(node->getDataType());
        if (ZorString* const text = node->getDefaultValue()) {
            line += " = \"" + std::string(zor_stringValue(text)) + "\"";
            text->removeRef();
        }
    }
    printLine(depth, line);
    for (ZorSchemaNode const* child = node->getFirstChildNode(); child;
         child = child->getNextNode()) {
        printNode(child, depth + 1);
    }
}

} // namespace

void printTree(ZorCollection& collection, int depth) {
    std::list<ZorSchema*> schemas;
    collection.getSchemas(schemas);
    for (ZorSchema const* const schema : schemas) {
        printLine(depth, std::string("schema ") + schema->getName());
        ZorSchemaNode const* node = schema->getRootNode()->getFirstChildNode();
        for (; node; node = node->getNextNode()) printNode(node, depth + 1);
    }
    std::list<ZorCollection*> collections;
    collection.getCollections(collections);
    for (ZorCollection* const inner : collections) {
        printLine(depth, std::string("collection ") + inner->getName());
        printTree(*inner, depth + 1);
    }
}
