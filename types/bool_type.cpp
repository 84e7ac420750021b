// "bool": exactly "true" or "false"; held as a number, which a host may also set to any other
// number for true.

#include <cstring>

#include "types/builtin_makers.h"
#include "types/number_value.h"

namespace zor_internal {
namespace {

bool isTrue(char const* text) { return std::strcmp(text, "true") == 0; }

int boolIsValid(void*, char const* text) { return isTrue(text) || std::strcmp(text, "false") == 0; }

int boolCompare(void*, char const* a, char const* b) {
    return compareNumbers(int(isTrue(a)), int(isTrue(b)));
}

u_zorItemValue boolFromString(char const* text) { return intValueOf(isTrue(text)); }

void boolSetFromString(u_zorItemValue* value, char const* text) { *value = boolFromString(text); }

ZorString* boolToString(u_zorItemValue value) {
    return ZorString::create(value.intValue ? "true" : "false", -1);
}

int boolCompareInt(void*, u_zorItemValue a, u_zorItemValue b) {
    return compareNumbers(int(a.intValue != 0), int(b.intValue != 0));
}

int boolCompareUInt(void*, u_zorItemValue a, u_zorItemValue b) {
    return compareNumbers(int(a.uintValue != 0), int(b.uintValue != 0));
}

} // namespace

ZorDataType* makeBoolType() {
    auto* const type =
        new ZorDataType("bool", "false", nullptr, boolIsValid, boolCompare, nullptr, boolFromString,
                        numberCopy, numberFree, boolSetFromString, boolToString, nullptr);
    zor_dataTypeSetConversionFuncs(type, zorExtLong, numberToInternal, numberSetInternal,
                                   numberGetInt, numberIsInt32, boolCompareInt);
    zor_dataTypeSetConversionFuncs(type, zorExtULong, numberToInternal, numberSetInternal,
                                   numberGetUInt, numberIsUInt32, boolCompareUInt);
    return type;
}

} // namespace zor_internal
