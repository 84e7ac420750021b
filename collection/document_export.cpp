// A document's changed values as XML.

#include <cstring>
#include <string>
#include <vector>

#include "collection/default_schema.h"
#include "foundation/escape.h"
#include "foundation/string_ref.h"
#include "foundation/write_text.h"
#include "platform/lock_holder.h"
#include "types/number_text.h"
#include "zor/document.h"

using zor_internal::escaped;
using zor_internal::isDefaultSchema;
using zor_internal::LockHolder;
using zor_internal::StringRef;
using zor_internal::textFromUInt;
using zor_internal::writeText;

namespace {

// The part of a schema that has changed values. Branches without cells may repeat so often that
// walking over their occurrences would take for ever, and most of a document is as it was made, so
// both are left out beforehand.
//
// Nodes stand in depth-first order, each before what is below it.
class ExportPlan {
public:
    struct Entry {
        ZorSchemaNode* node;
        std::size_t end; // behind the last entry below the node
    };

    // Plans what is below `top`. REQUIRES: the caller holds the document's lock.
    ExportPlan(ZorDocument* exported, ZorSchemaNode const* top) : document(exported) {
        addChildren(top);
    }

    std::size_t size() const { return entries.size(); }
    Entry const& operator[](std::size_t index) const { return entries[index]; }

private:
    void addChildren(ZorSchemaNode const* parent) {
        for (ZorSchemaNode* child = parent->getFirstChildNode(); child; child = child->next) {
            if (child->getOccurrences() < 1) continue;
            std::size_t const index = entries.size();
            entries.push_back({child, 0});
            addChildren(child);
            if (child->isDataNode() ? isChanged(child) : entries.size() > index + 1)
                entries[index].end = entries.size();
            else
                entries.pop_back();
        }
    }

    // Whether any of the node's values was changed.
    bool isChanged(ZorSchemaNode* node) const {
        ZorValueNode const* const cells = document->getDataItem(node, 0, 0);
        if (!cells) return false;
        ZorValueNode const* const end = cells + node->getTotalOccurrences();
        ZorValueNode const* cell = cells;
        while (cell < end && !(cell->flags & ZorValueNode::changed)) ++cell;
        return cell < end;
    }

    ZorDocument* document;
    std::vector<Entry> entries;
};

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
        StringRef const number(textFromUInt(static_cast<std::uint32_t>(element->occurrence + 1)));
        writeText(writer, number.text());
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

// Writes the values of the planned nodes from `index` to `end` under one occurrence of their
// parent. Whether there was anything.
bool writeNodes(ZorDataWriter* writer, ZorDocument* document, ExportPlan const& plan,
                std::size_t index, std::size_t end, long parentOccurrence, Element* outer) {
    bool wroteAny = false;
    for (; index < end; index = plan[index].end) {
        ZorSchemaNode* const node = plan[index].node;
        long const count = node->getOccurrences();
        long next = 0; // the occurrence that an element without number would be read as
        for (long k = 0; k < count; ++k) {
            long const flat = parentOccurrence * count + k;
            Element element{outer, node->getName(), k, next < k, false};
            if (node->isDataNode())
                writeValue(writer, document, node, flat, &element);
            else
                writeNodes(writer, document, plan, index + 1, plan[index].end, flat, &element);
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
    ExportPlan const plan(this, node);
    return writeNodes(writer, this, plan, 0, plan.size(), parentOccurrence, nullptr);
}
