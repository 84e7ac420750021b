// Documents: life, cells, defaults.

#include "zor/document.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>

#include "document/cell_of.h"
#include "foundation/string_ref.h"
#include "foundation/text_argument.h"
#include "platform/lock_holder.h"
#include "schema/document_count.h"

using zor_internal::cellOf;
using zor_internal::countDocuments;
using zor_internal::LockHolder;
using zor_internal::stringOf;
using zor_internal::StringRef;

namespace {

// The cells of a document that is being made: as many as the tree needs, all without value.
class Cells {
public:
    explicit Cells(ZorSchemaNode* root) : rootNode(root) {
        // Beyond what memory can hold, the allocator refuses any number.
        auto const count = std::min(static_cast<std::size_t>(rootNode->countRequiredValueNodes()),
                                    std::size_t(PTRDIFF_MAX) / sizeof(ZorValueNode));
        cells = new ZorValueNode[count];
        std::fill_n(cells, count, ZorValueNode{u_zorItemValue{}, ZorValueNode::noValue});
    }
    Cells(Cells const&) = delete;
    Cells& operator=(Cells const&) = delete;
    ~Cells() {
        if (!cells) return;
        rootNode->freeValueNodes(cells, 1);
        delete[] cells;
    }

    ZorValueNode* first() const { return cells; }
    [[nodiscard]] ZorValueNode* release() { return std::exchange(cells, nullptr); }

private:
    ZorSchemaNode* rootNode;
    ZorValueNode* cells;
};

// Gives a document that is being made its name, on which it takes over the reference, and its
// cells: copies of those at `from`, or the defaults when that is null.
void build(ZorDocument* document, ZorString* ownName, ZorValueNode const* from) {
    StringRef name(ownName);
    ZorSchemaNode* const rootNode = document->rootNode;
    Cells cells(rootNode);
    if (from)
        rootNode->copyValueNodes(from, cells.first(), 0, 1);
    else
        rootNode->makeValueNodes(cells.first(), 0, 1);
    document->values = cells.release();
    document->name = name.release();
    countDocuments(rootNode, 1);
}

} // namespace

ZorDocument::ZorDocument(ZorSchema* schema, void const* documentName)
    : values(nullptr), name(nullptr), rootNode(schema->rootNode), lock(1, 1, false) {
    build(this, stringOf(documentName), nullptr);
}

ZorDocument::ZorDocument(ZorDocument const& other, ZorSchema* schema)
    : values(nullptr), name(nullptr), rootNode(schema->rootNode), lock(1, 1, false) {
    build(this, zor_stringCopy(other.name), other.values);
}

ZorDocument::~ZorDocument() {
    LockHolder const holder(lock);
    name->removeRef();
    rootNode->freeValueNodes(values, 1);
    delete[] values;
    countDocuments(rootNode, -1);
}

ZorValueNode* ZorDocument::getDataItem(ZorSchemaNode* node, long occurrence, int) {
    return cellOf(this, node, occurrence);
}

bool ZorDocument::wasChanged(ZorSchemaNode* node, long occurrence) {
    LockHolder const holder(lock);
    ZorValueNode const* const cell = cellOf(this, node, occurrence);
    return cell && (cell->flags & ZorValueNode::changed);
}

void ZorDocument::restoreDefault(ZorSchemaNode* node, long occurrence) {
    LockHolder const holder(lock);
    ZorValueNode* const cell = cellOf(this, node, occurrence);
    if (!cell) return;
    bool const empty = cell->flags & ZorValueNode::noValue;
    StringRef const defaultText(node->getDefaultValue());
    if (!defaultText) {
        if (!empty) node->dataType->freeValueFn(cell->value);
        cell->flags |= ZorValueNode::noValue;
    } else {
        if (empty)
            cell->value = node->dataType->fromStringFn(defaultText.text());
        else
            node->dataType->setFromStringFn(&cell->value, defaultText.text());
        cell->flags = static_cast<unsigned char>(cell->flags & ~ZorValueNode::noValue);
    }
    cell->flags = static_cast<unsigned char>(cell->flags & ~ZorValueNode::changed);
}

void ZorDocument::restoreDefaults() {
    // Kept: only the data nodes directly under the root are reached, and they count as changed.
    std::unique_ptr<ZorResultSet> const results(select("*"));
    for (; !results->eof(); results->next()) {
        ZorSchemaNode const* const node = results->getDefinition();
        if (!node->isDataNode()) continue;
        StringRef const defaultText(node->getDefaultValue());
        results->setValue(defaultText ? defaultText.text() : nullptr);
    }
}

ZorSchemaNode* ZorDocument::getRootNode() const { return rootNode; }

char const* ZorDocument::getName() const { return name->text; }
