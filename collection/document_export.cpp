// A document's changed values as XML.

#include <cstring>
#include <string>

#include "collection/default_schema.h"
#include "foundation/escape.h"
#include "foundation/string_ref.h"
#include "foundation/write_text.h"
#include "platform/lock_holder.h"
#include "zor/document.h"

using zor_internal::escaped;
using zor_internal::isDefaultSchema;
using zor_internal::LockHolder;
using zor_internal::StringRef;
using zor_internal::writeText;

namespace {

// Whether there is any cell in or below the node. Branches without cells may repeat so often that
// walking over their occurrences would take forever.
bool hasCells(ZorSchemaNode const* node) {
    if (node->getOccurrences() < 1) return false;
    if (node->isDataNode()) return true;
    ZorSchemaNode const* child = node->getFirstChildNode();
    while (child && !hasCells(child)) child = child->next;
    return child != nullptr;
}

// An element around the values that are being written. Its start tag is held back until there is
// something to write inside it: a branch without changed values is left out whole.
struct Element {
    Element* outer; // null at the top
    char const* name;
    long occurrence;
    bool numbered; // occurrences before it were left out
    bool written;
};

void writeStart(ZorDataWriter* writer, Element* element) {
    if (!element || element->written) return;
    writeStart(writer, element->outer);
    writeText(writer, "<");
    writeText(writer, element->name);
    if (element->numbered) {
        writeText(writer, " occurrence=\"");
        writeText(writer, std::to_string(element->occurrence + 1));
        writeText(writer, "\"");
    }
    writeText(writer, ">");
    element->written = true;
}

void writeEnd(ZorDataWriter* writer, Element const& element) {
    writeText(writer, "</");
    writeText(writer, element.name);
    writeText(writer, ">");
}

// Writes the start of the element and its value, if that was changed.
void writeValue(ZorDataWriter* writer, ZorDocument* document, ZorSchemaNode* node, long flat,
                Element* element) {
    ZorValueNode const* const cell = document->getDataItem(node, flat, 0);
    if (!cell || !(cell->flags & ZorValueNode::changed)) return;
    writeStart(writer, element);
    StringRef const text(document->nonBlockingGetStringNodeValue(node, flat));
    if (text) writeText(writer, escaped(text.text()));
}

// Writes the children of `node` under one of its occurrences. Whether there was anything.
bool writeChildren(ZorDataWriter* writer, ZorDocument* document, ZorSchemaNode const* node,
                   long parentOccurrence, Element* outer) {
    bool wroteAny = false;
    for (ZorSchemaNode* child = node->getFirstChildNode(); child; child = child->next) {
        if (!hasCells(child)) continue;
        long const count = child->getOccurrences();
        long next = 0; // the occurrence that an element without number would be read as
        for (long k = 0; k < count; ++k) {
            long const flat = parentOccurrence * count + k;
            Element element{outer, child->getName(), k, next < k, false};
            if (child->isDataNode())
                writeValue(writer, document, child, flat, &element);
            else
                writeChildren(writer, document, child, flat, &element);
            if (!element.written) continue;
            writeEnd(writer, element);
            next = k + 1;
            wroteAny = true;
        }
    }
    return wroteAny;
}

} // namespace

void ZorDocument::exportXML(ZorDataWriter* writer) {
    LockHolder const holder(lock);
    writeText(writer, "<document");
    if (!isDefaultSchema(rootNode)) {
        writeText(writer, " schema=\"");
        writeText(writer, rootNode->getName());
        writeText(writer, "\"");
    }
    // Kept: names are written as they are, unescaped.
    writeText(writer, " name=\"");
    writeText(writer, name->text);
    writeText(writer, "\">");
    exportXML(rootNode, 0, writer);
    writeText(writer, "</document>");
}

bool ZorDocument::exportXML(ZorSchemaNode* node, long parentOccurrence, ZorDataWriter* writer) {
    return writeChildren(writer, this, node, parentOccurrence, nullptr);
}
