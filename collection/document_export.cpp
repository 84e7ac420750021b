// A document's changed values as XML.

#include <cstdint>
#include <cstring>
#include <vector>

#include "collection/default_schema.h"
#include "document/cell_of.h"
#include "foundation/escape.h"
#include "foundation/piece_writer.h"
#include "platform/lock_holder.h"
#include "types/value_text.h"
#include "zor/document.h"

using zor_internal::cellOf;
using zor_internal::forEachEscapedPiece;
using zor_internal::isDefaultSchema;
using zor_internal::kLongestDecimal;
using zor_internal::LockHolder;
using zor_internal::PieceWriter;
using zor_internal::ValueText;
using zor_internal::writeDecimal;

namespace {

// The part of a schema that has changed values. Branches without cells may repeat so often that
// walking over their occurrences would take for ever, and most of a document is as it was made, so
// both are left out beforehand.
//
// Nodes stand in depth-first order, each before what is below it. What is the same for all their
// occurrences is looked up here, once.
class ExportPlan {
public:
    struct Entry {
        ZorSchemaNode* node;
        std::size_t end;           // behind the last entry below the node
        ZorValueNode const* cells; // of a data node's flat occurrences; null for a branch
        std::size_t nameLength;
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
            ZorValueNode const* const cells = cellOf(document, child, 0);
            entries.push_back({child, 0, cells, std::strlen(child->getName())});
            addChildren(child);
            if (child->isDataNode() ? isChanged(cells, child) : entries.size() > index + 1)
                entries[index].end = entries.size();
            else
                entries.pop_back();
        }
    }

    // Whether any of the node's values was changed.
    static bool isChanged(ZorValueNode const* cell, ZorSchemaNode const* node) {
        if (!cell) return false;
        ZorValueNode const* const end = cell + node->getTotalOccurrences();
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
    ExportPlan::Entry const* planned;
    long occurrence;
    bool numbered; // occurrences before it were left out
    bool written;
};

void writeStart(PieceWriter& out, Element* element) {
    if (!element || element->written) return;
    writeStart(out, element->outer);
    out.write("<");
    out.write(element->planned->node->getName(), element->planned->nameLength);
    if (element->numbered) {
        out.write(" occurrence=\"");
        char digits[kLongestDecimal];
        char* const end = digits + sizeof digits;
        char const* const number =
            writeDecimal(static_cast<std::uint32_t>(element->occurrence + 1), false, end);
        out.write(number, static_cast<std::size_t>(end - number));
        out.write("\"");
    }
    out.write(">");
    element->written = true;
}

void writeEnd(PieceWriter& out, Element const& element) {
    out.write("</");
    out.write(element.planned->node->getName(), element.planned->nameLength);
    out.write(">");
}

// Writes the start of the element and its value, if that was changed.
void writeValue(PieceWriter& out, ZorValueNode const& cell, Element* element) {
    if (!(cell.flags & ZorValueNode::changed)) return;
    writeStart(out, element);
    if (cell.flags & ZorValueNode::noValue) return;
    ValueText const text(element->planned->node->dataType, cell.value);
    if (!text.get()) return;
    forEachEscapedPiece(
        text.get(), [&out](char const* piece, std::size_t length) { out.write(piece, length); });
}

// Writes the values of the planned nodes from `index` to `end` under one occurrence of their
// parent. Whether there was anything.
bool writeNodes(PieceWriter& out, ExportPlan const& plan, std::size_t index, std::size_t end,
                long parentOccurrence, Element* outer) {
    bool wroteAny = false;
    for (; index < end; index = plan[index].end) {
        ExportPlan::Entry const& planned = plan[index];
        long const count = planned.node->getOccurrences();
        long next = 0; // the occurrence that an element without number would be read as
        for (long k = 0; k < count; ++k) {
            long const flat = parentOccurrence * count + k;
            Element element{outer, &planned, k, next < k, false};
            if (planned.cells)
                writeValue(out, planned.cells[flat], &element);
            else
                writeNodes(out, plan, index + 1, planned.end, flat, &element);
            if (!element.written) continue;
            writeEnd(out, element);
            next = k + 1;
            wroteAny = true;
        }
    }
    return wroteAny;
}

bool writeChildren(PieceWriter& out, ZorDocument* document, ZorSchemaNode const* node,
                   long parentOccurrence) {
    // From here on every occurrence follows from that of the parent, and needs no look at its
    // range.
    if (parentOccurrence < 0 || parentOccurrence >= node->getTotalOccurrences()) return false;
    ExportPlan const plan(document, node);
    return writeNodes(out, plan, 0, plan.size(), parentOccurrence, nullptr);
}

} // namespace

void ZorDocument::exportXML(ZorDataWriter* writer) {
    LockHolder const holder(lock);
    PieceWriter out(writer);
    out.write("<document");
    if (!isDefaultSchema(rootNode)) {
        out.write(" schema=\"");
        out.write(rootNode->getName());
        out.write("\"");
    }
    // Kept: names are written as they are, unescaped.
    out.write(" name=\"");
    out.write(name->text);
    out.write("\">");
    writeChildren(out, this, rootNode, 0);
    out.write("</document>");
    out.flush();
}

bool ZorDocument::exportXML(ZorSchemaNode* node, long parentOccurrence, ZorDataWriter* writer) {
    PieceWriter out(writer);
    bool const wroteAny = writeChildren(out, this, node, parentOccurrence);
    out.flush();
    return wroteAny;
}
