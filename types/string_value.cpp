// String values: each owns one reference.

#include "types/string_value.h"

namespace zor_internal {

u_zorItemValue stringFromText(char const* text) {
    u_zorItemValue value;
    value.stringValue = ZorString::create(text, -1);
    return value;
}

u_zorItemValue stringCopy(u_zorItemValue value) {
    value.stringValue = zor_stringCopy(value.stringValue);
    return value;
}

void stringFree(u_zorItemValue value) { value.stringValue->removeRef(); }

void stringSetFromText(u_zorItemValue* value, char const* text) {
    value->stringValue = value->stringValue->set(1, text, -1);
}

ZorString* stringToText(u_zorItemValue value) { return zor_stringCopy(value.stringValue); }

ZorDataType* makeStringType(char const* name, char const* defaultText, ZorValidateFn validate,
                            ZorCompareFn compare) {
    return new ZorDataType(name, defaultText, nullptr, validate, compare, nullptr, stringFromText,
                           stringCopy, stringFree, stringSetFromText, stringToText, nullptr);
}

} // namespace zor_internal
