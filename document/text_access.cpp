// Values as text.

#include "document/text_access.h"

#include <cstring>

#include "document/cell_of.h"
#include "foundation/text_argument.h"
#include "incident/raise.h"
#include "platform/lock_holder.h"
#include "types/string_value.h"
#include "types/type_text.h"

using zor_internal::cellOf;
using zor_internal::isData;
using zor_internal::LockHolder;
using zor_internal::raiseError;
using zor_internal::stringFromText;
using zor_internal::stringSetFromText;
using zor_internal::textOf;
using zor_internal::validateText;

namespace {

ZorString* readText(ZorDocument* document, ZorSchemaNode* node, long occurrence) {
    ZorValueNode const* const cell = cellOf(document, node, occurrence);
    if (!cell || (cell->flags & ZorValueNode::noValue)) return nullptr;
    return node->dataType->toStringFn(cell->value);
}

// A text to write; without characters, it empties the cell.
struct Text {
    explicit Text(char const* text)
        : chars(text), length(text ? strnlen(text, ZorString::maxLength + 1) : 0) {}

    bool isTooLong() const { return length > ZorString::maxLength; }

    char const* chars;
    std::size_t length;
};

Text textIn(void const* value) { return Text(value ? textOf(value) : nullptr); }

// Stores the text where values are strings. The length is known; to count it again takes 7 %.
void storeString(ZorValueNode* cell, bool empty, Text const& text) {
    ZorString*& value = cell->value.stringValue;
    auto const length = static_cast<int>(text.length);
    value = empty ? ZorString::create(text.chars, length) : value->set(1, text.chars, length);
}

void storeText(ZorDataType const* type, ZorValueNode* cell, Text const& text) {
    bool const empty = cell->flags & ZorValueNode::noValue;
    if (!text.chars) {
        cell->flags |= ZorValueNode::noValue;
        if (!empty) type->freeValueFn(cell->value);
        return;
    }
    if (type->fromStringFn == stringFromText && type->setFromStringFn == stringSetFromText)
        storeString(cell, empty, text);
    else if (empty)
        cell->value = type->fromStringFn(text.chars);
    else
        type->setFromStringFn(&cell->value, text.chars);
    cell->flags = static_cast<unsigned char>(cell->flags & ~ZorValueNode::noValue);
}

// Validates and stores. The cell that was written, or null after reporting why nothing was.
ZorValueNode* writeText(ZorDocument* document, ZorSchemaNode* node, long occurrence,
                        Text const& text) {
    if (!isData(node)) {
        raiseError(nullptr, incidentInvalidArgument, "setStringNodeValue: node is not a data node");
        return nullptr;
    }
    if (text.chars && (text.isTooLong() || !validateText(node->dataType, text.chars))) {
        raiseError(nullptr, incidentInvalidArgument, "setStringNodeValue: value (", text.chars,
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

int setLocked(ZorDocument* document, ZorSchemaNode* node, long occurrence, Text const& text) {
    LockHolder const holder(document->lock);
    ZorValueNode* const cell = writeText(document, node, occurrence, text);
    if (!cell) return 0;
    cell->flags |= ZorValueNode::changed;
    return 1;
}

} // namespace

ZorString* ZorDocument::getStringNodeValue(ZorSchemaNode* node, long occurrence) {
    LockHolder const holder(lock);
    return readText(this, node, occurrence);
}

int zor_internal::setText(ZorDocument* document, ZorSchemaNode* node, long occurrence,
                          char const* text) {
    return setLocked(document, node, occurrence, Text(text));
}

int ZorDocument::setStringNodeValue(ZorSchemaNode* node, long occurrence, void const* value) {
    return setLocked(this, node, occurrence, textIn(value));
}

ZorString* ZorDocument::nonBlockingGetStringNodeValue(ZorSchemaNode* node, long occurrence) {
    return readText(this, node, occurrence);
}

void ZorDocument::nonBlockingSetStringNodeValue(ZorSchemaNode* node, long occurrence,
                                                void const* value) {
    // Kept: the changed mark stays as it is, and no status is given.
    writeText(this, node, occurrence, textIn(value));
}
