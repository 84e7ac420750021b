// A schema in the definition language.
//
// Kept: names, types, defaults and paths are written as they are, unescaped.

#include <string>

#include "foundation/list_ref.h"
#include "foundation/string_ref.h"
#include "foundation/write_text.h"
#include "platform/lock_holder.h"
#include "zor/schema.h"

using zor_internal::ListRef;
using zor_internal::LockHolder;
using zor_internal::StringRef;
using zor_internal::writeText;

namespace {

std::string attribute(char const* name, std::string const& value) {
    return std::string(" ") + name + "=\"" + value + "\"";
}

// The names from below the root down to the node, each behind a slash.
std::string pathOf(ZorSchemaNode const* node) {
    std::string path;
    for (; node && !node->isSchemaRootNode(); node = node->parent) {
        path.insert(0, std::string("/") + node->getName());
    }
    return path;
}

void writeOccurrencesAndParent(ZorDataWriter* writer, ZorSchemaNode const* node) {
    if (node->getOccurrences() >= 2) {
        writeText(writer, attribute("occurrences", std::to_string(node->getOccurrences())));
    }
    ZorSchemaNode const* const parent = node->getParentNode();
    if (parent && !parent->isSchemaRootNode())
        writeText(writer, attribute("parent", pathOf(parent)));
}

void writeItem(ZorDataWriter* writer, ZorSchemaNode const* node) {
    writeText(writer, std::string("<item") + attribute("name", node->getName()) +
                          attribute("type", zor_dataTypeName(node->dataType)));
    StringRef const defaultText(node->getDefaultValue());
    if (defaultText) writeText(writer, attribute("default", defaultText.text()));
    writeOccurrencesAndParent(writer, node);
    writeText(writer, ">");
    writeText(writer, "</item>");
}

void writeBranch(ZorDataWriter* writer, ZorSchemaNode const* node) {
    writeText(writer, std::string("<branch") + attribute("name", node->getName()));
    writeOccurrencesAndParent(writer, node);
    writeText(writer, ">");
    writeText(writer, "</branch>");
}

} // namespace

void ZorSchema::exportXML(ZorDataWriter* writer) {
    LockHolder const holder(lock);
    exportSchemaNode(writer, rootNode);
}

void ZorSchema::exportSchemaNode(ZorDataWriter* writer, ZorSchemaNode* node) {
    if (node->isDataNode()) {
        writeItem(writer, node);
    } else if (node->isBranchNode()) {
        writeBranch(writer, node);
        exportChildNodes(writer, node);
    } else {
        writeText(writer, std::string("<schema") + attribute("name", node->getName()) + ">");
        ListRef const ownTypes(getDataTypes());
        for (ZorListNode const* at = ownTypes.first(); at; at = at->next) {
            zor_dataTypeExportXML(writer, static_cast<ZorDataType*>(at->value));
        }
        exportChildNodes(writer, node);
        writeText(writer, "</schema>");
    }
}

void ZorSchema::exportChildNodes(ZorDataWriter* writer, ZorSchemaNode* node) {
    for (ZorSchemaNode* child = node->getFirstChildNode(); child; child = child->next) {
        exportSchemaNode(writer, child);
    }
}
