// "string", "domain_name" and "url": any text is valid.

#include <cstring>

#include "types/builtin_makers.h"
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

namespace {

// Kept: the raw result of strcmp, where other types answer 1, 0 or -1.
int stringCompare(void*, char const* a, char const* b) { return std::strcmp(a, b); }

} // namespace

ZorDataType* makePlainStringType() { return makeStringType("string", "", nullptr, stringCompare); }

// Kept: the names "domain_name" and "url" state an intent; nothing is checked.
ZorDataType* makeDomainNameType() {
    return makeStringType("domain_name", nullptr, nullptr, nullptr);
}

ZorDataType* makeUrlType() { return makeStringType("url", nullptr, nullptr, nullptr); }

} // namespace zor_internal
