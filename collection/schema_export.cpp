// A schema in the definition language.
//
// Kept: names, types, defaults and paths are written as they are, unescaped.

#include <string>

#include "foundation/list_ref.h"
#include "foundation/string_ref.h"
#include "foundation/write_text.h"
#include "platform/lock_holder.h"
#include "types/number_text.h"
#include "zor/schema.h"

using zor_internal::ListRef;
using zor_internal::LockHolder;
using zor_internal::StringRef;
using zor_internal::textFromInt;
using zor_internal::writeJoined;
using zor_internal::writeText;

namespace {

// The names from below the root down to the node, each behind a slash.
std::string pathOf(ZorSchemaNode const* node) {
    std::string path;
    for (; node && !node->isSchemaRootNode(); node = node->parent) {
        path.insert(0, node->getName()).insert(0, 1, '/');
    }
    return path;
}

void writeOccurrencesAndParent(ZorDataWriter* writer, ZorSchemaNode const* node) {
    if (node->getOccurrences() >= 2) {
        StringRef const number(textFromInt(node->getOccurrences()));
        writeJoined(writer, {" occurrences=\"", number.text(), "\""});
    }
    ZorSchemaNode const* const parent = node->getParentNode();
    if (parent && !parent->isSchemaRootNode()) {
        writeJoined(writer, {" parent=\"", pathOf(parent).c_str(), "\""});
    }
}

void writeItem(ZorDataWriter* writer, ZorSchemaNode const* node) {
    writeJoined(writer, {"<item name=\"", node->getName(), "\" type=\"",
                         zor_dataTypeName(node->dataType), "\""});
    StringRef const defaultText(node->getDefaultValue());
    if (defaultText) writeJoined(writer, {" default=\"", defaultText.text(), "\""});
    writeOccurrencesAndParent(writer, node);
    writeText(writer, ">");
    writeText(writer, "</item>");
}

void writeBranch(ZorDataWriter* writer, ZorSchemaNode const* node) {
    writeJoined(writer, {"<branch name=\"", node->getName(), "\""});
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
        writeJoined(writer, {"<schema name=\"", node->getName(), "\">"});
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
