// A document's changed values as XML.

#include <cstring>
#include <string>

#include "collection/default_schema.h"
#include "foundation/escape.h"
#include "foundation/string_ref.h"
#include "foundation/write_text.h"
#include "platform/lock_holder.h"
#include "zor/document.h"

using zor_internal::isDefaultSchema;
using zor_internal::LockHolder;
using zor_internal::StringRef;
using zor_internal::writeEscaped;
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

// Collects the value of a data cell. Whether it was changed, and so is to be written.
bool collectValue(ZorDocument* document, ZorSchemaNode* node, long flat, ZorDataWriter* content) {
    ZorValueNode const* const cell = document->getDataItem(node, flat, 0);
    if (!cell || !(cell->flags & ZorValueNode::changed)) return false;
    StringRef const text(document->nonBlockingGetStringNodeValue(node, flat));
    if (text) writeEscaped(content, text.text());
    return true;
}

// Writes one occurrence; with its number where occurrences before it were left out.
void writeElement(ZorDataWriter* writer, char const* name, long occurrence, bool numbered,
                  std::string const& content) {
    writeText(writer, "<");
    writeText(writer, name);
    if (numbered) {
        writeText(writer, " occurrence=\"");
        writeText(writer, std::to_string(occurrence + 1).c_str());
        writeText(writer, "\"");
    }
    writeText(writer, ">");
    writeText(writer, content.c_str());
    writeText(writer, "</");
    writeText(writer, name);
    writeText(writer, ">");
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
    bool wroteAny = false;
    for (ZorSchemaNode* child = node->getFirstChildNode(); child; child = child->next) {
        if (!hasCells(child)) continue;
        long const count = child->getOccurrences();
        long next = 0; // the occurrence that an element without number would be read as
        for (long k = 0; k < count; ++k) {
            long const flat = parentOccurrence * count + k;
            ZorStringWriter content;
            bool const written = child->isDataNode() ? collectValue(this, child, flat, &content)
                                                     : exportXML(child, flat, &content);
            if (!written) continue;
            writeElement(writer, child->getName(), k, next < k, content.getValue());
            next = k + 1;
            wroteAny = true;
        }
    }
    return wroteAny;
}
