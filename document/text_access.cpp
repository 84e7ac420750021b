// Values as text.

#include "document/text_access.h"

#include <cstring>

#include "document/cell_of.h"
#include "foundation/text_argument.h"
#include "incident/raise.h"
#include "platform/lock_holder.h"
#include "types/type_text.h"

using zor_internal::cellOf;
using zor_internal::isData;
using zor_internal::LockHolder;
using zor_internal::raiseError;
using zor_internal::setText;
using zor_internal::textOf;
using zor_internal::validateText;

namespace {

ZorString* readText(ZorDocument* document, ZorSchemaNode* node, long occurrence) {
    ZorValueNode const* const cell = cellOf(document, node, occurrence);
    if (!cell || (cell->flags & ZorValueNode::noValue)) return nullptr;
    return node->dataType->toStringFn(cell->value);
}

// The characters of a value; null for none.
char const* charactersOf(void const* value) { return value ? textOf(value) : nullptr; }

bool isTooLong(char const* text) {
    return strnlen(text, ZorString::maxLength + 1) > ZorString::maxLength;
}

void storeText(ZorDataType const* type, ZorValueNode* cell, char const* text) {
    bool const empty = cell->flags & ZorValueNode::noValue;
    if (text) {
        if (empty)
            cell->value = type->fromStringFn(text);
        else
            type->setFromStringFn(&cell->value, text);
        cell->flags = static_cast<unsigned char>(cell->flags & ~ZorValueNode::noValue);
    } else if (!empty) {
        cell->flags |= ZorValueNode::noValue;
        type->freeValueFn(cell->value);
    }
}

// Validates and stores; null empties the cell. The cell that was written, or null after reporting
// why nothing was.
ZorValueNode* writeText(ZorDocument* document, ZorSchemaNode* node, long occurrence,
                        char const* text) {
    if (!isData(node)) {
        raiseError(nullptr, incidentInvalidArgument, "setStringNodeValue: node is not a data node");
        return nullptr;
    }
    if (text && (isTooLong(text) || !validateText(node->dataType, text))) {
        raiseError(nullptr, incidentInvalidArgument, "setStringNodeValue: value (", text,
                   ") is not valid");
        return nullptr;
    }
    ZorValueNode* const cell = cellOf(document, node, occurrence);
    if (!cell) {
        raiseError(nullptr, incidentInvalidArgument,
                   "setStringNodeValue: occurrence is out of range");
        return nullptr;
    }
    storeText(node->dataType, cell, text);
    return cell;
}

} // namespace

ZorString* ZorDocument::getStringNodeValue(ZorSchemaNode* node, long occurrence) {
    LockHolder const holder(lock);
    return readText(this, node, occurrence);
}

int zor_internal::setText(ZorDocument* document, ZorSchemaNode* node, long occurrence,
                          char const* text) {
    LockHolder const holder(document->lock);
    ZorValueNode* const cell = writeText(document, node, occurrence, text);
    if (!cell) return 0;
    cell->flags |= ZorValueNode::changed;
    return 1;
}

int ZorDocument::setStringNodeValue(ZorSchemaNode* node, long occurrence, void const* value) {
    return setText(this, node, occurrence, charactersOf(value));
}

ZorString* ZorDocument::nonBlockingGetStringNodeValue(ZorSchemaNode* node, long occurrence) {
    return readText(this, node, occurrence);
}

void ZorDocument::nonBlockingSetStringNodeValue(ZorSchemaNode* node, long occurrence,
                                                void const* value) {
    // Kept: the changed mark stays as it is, and no status is given.
    writeText(this, node, occurrence, charactersOf(value));
}
