// Values as text.

#include "document/text_access.h"

#include <cstring>
#include <utility>

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
using zor_internal::setText;
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
    char const* chars;
    bool fits;         // known to fit into a string
    ZorString** given; // the string that it is, if the cell may have that, or null
};

Text textIn(void const* value) {
    if (!value) return {nullptr, true, nullptr};
    return {textOf(value), zor_isString(value) != 0, nullptr};
}

bool isTooLong(Text const& text) {
    return !text.fits && strnlen(text.chars, ZorString::maxLength + 1) > ZorString::maxLength;
}

// Whether the cell of a type may have the string instead of a copy: nobody else holds it, and it
// has no more memory than a copy would have.
bool mayHave(ZorDataType const* type, ZorString const* string) {
    return type->fromStringFn == stringFromText && type->setFromStringFn == stringSetFromText &&
           string->refCount == 1 && string->capacity == ZorString::localSize;
}

void storeText(ZorDataType const* type, ZorValueNode* cell, Text const& text) {
    bool const empty = cell->flags & ZorValueNode::noValue;
    if (!text.chars) {
        cell->flags |= ZorValueNode::noValue;
        if (!empty) type->freeValueFn(cell->value);
        return;
    }
    if (text.given && mayHave(type, *text.given)) {
        ZorString* const earlier = empty ? nullptr : cell->value.stringValue;
        cell->value.stringValue = std::exchange(*text.given, earlier);
    } else if (empty) {
        cell->value = type->fromStringFn(text.chars);
    } else {
        type->setFromStringFn(&cell->value, text.chars);
    }
    cell->flags = static_cast<unsigned char>(cell->flags & ~ZorValueNode::noValue);
}

// Validates and stores. The cell that was written, or null after reporting why nothing was.
ZorValueNode* writeText(ZorDocument* document, ZorSchemaNode* node, long occurrence,
                        Text const& text) {
    if (!isData(node)) {
        raiseError(nullptr, incidentInvalidArgument, "setStringNodeValue: node is not a data node");
        return nullptr;
    }
    if (text.chars && (isTooLong(text) || !validateText(node->dataType, text.chars))) {
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
    return setLocked(document, node, occurrence, {text, !text, nullptr});
}

int zor_internal::giveText(ZorDocument* document, ZorSchemaNode* node, long occurrence,
                           ZorString** text) {
    return setLocked(document, node, occurrence, {(*text)->text, true, text});
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
