// A document's changed values as XML.

#include <cstring>
#include <string>

#include "collection/default_schema.h"
#include "foundation/escape.h"
#include "foundation/string_ref.h"
#include "platform/lock_holder.h"
#include "zor/document.h"

using zor_internal::isDefaultSchema;
using zor_internal::LockHolder;
using zor_internal::StringRef;
using zor_internal::writeEscaped;

namespace {

void write(ZorDataWriter* writer, char const* text) {
    writer->writeData(text, static_cast<int>(std::strlen(text)));
}

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
    write(writer, "<");
    write(writer, name);
    if (numbered) {
        write(writer, " occurrence=\"");
        write(writer, std::to_string(occurrence + 1).c_str());
        write(writer, "\"");
    }
    write(writer, ">");
    write(writer, content.c_str());
    write(writer, "</");
    write(writer, name);
    write(writer, ">");
}

} // namespace

void ZorDocument::exportXML(ZorDataWriter* writer) {
    LockHolder const holder(lock);
    write(writer, "<document");
    if (!isDefaultSchema(rootNode)) {
        write(writer, " schema=\"");
        write(writer, rootNode->getName());
        write(writer, "\"");
    }
    // Kept: names are written as they are, unescaped.
    write(writer, " name=\"");
    write(writer, name->text);
    write(writer, "\">");
    exportXML(rootNode, 0, writer);
    write(writer, "</document>");
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
