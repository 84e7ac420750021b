// Documents: life, cells, defaults.

#include "zor/document.h"

#include <memory>

#include "foundation/string_ref.h"
#include "foundation/text_argument.h"
#include "platform/lock_holder.h"
#include "schema/document_count.h"

using zor_internal::countDocuments;
using zor_internal::LockHolder;
using zor_internal::stringOf;
using zor_internal::StringRef;

namespace {

// As many cells as the tree needs, all without value.
ZorValueNode* makeCells(ZorSchemaNode* rootNode) {
    auto const count = static_cast<std::size_t>(rootNode->countRequiredValueNodes());
    auto* const cells = new ZorValueNode[count]();
    for (std::size_t i = 0; i < count; ++i) cells[i].flags = ZorValueNode::noValue;
    return cells;
}

} // namespace

ZorDocument::ZorDocument(ZorSchema* schema, void const* documentName)
    : values(makeCells(schema->rootNode)), name(stringOf(documentName)), rootNode(schema->rootNode),
      lock(1, 1, false) {
    rootNode->makeValueNodes(values, 0, 1);
    countDocuments(rootNode, 1);
}

ZorDocument::ZorDocument(ZorDocument const& other, ZorSchema* schema)
    : values(makeCells(schema->rootNode)), name(zor_stringCopy(other.name)),
      rootNode(schema->rootNode), lock(1, 1, false) {
    rootNode->copyValueNodes(other.values, values, 0, 1);
    countDocuments(rootNode, 1);
}

ZorDocument::~ZorDocument() {
    LockHolder const holder(lock);
    name->removeRef();
    rootNode->freeValueNodes(values, 1);
    delete[] values;
    countDocuments(rootNode, -1);
}

ZorValueNode* ZorDocument::getDataItem(ZorSchemaNode* node, long occurrence, int) {
    if (!node || !node->isDataNode()) return nullptr;
    if (occurrence < 0 || occurrence >= node->totalOccurrences || node->valueIndex < 0) {
        return nullptr;
    }
    if (node->getSchemaRootNode() != rootNode) return nullptr;
    return &values[node->valueIndex + occurrence];
}

bool ZorDocument::wasChanged(ZorSchemaNode* node, long occurrence) {
    LockHolder const holder(lock);
    ZorValueNode const* const cell = getDataItem(node, occurrence, 0);
    return cell && (cell->flags & ZorValueNode::changed);
}

void ZorDocument::restoreDefault(ZorSchemaNode* node, long occurrence) {
    LockHolder const holder(lock);
    ZorValueNode* const cell = getDataItem(node, occurrence, 0);
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
