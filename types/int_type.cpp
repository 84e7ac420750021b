// "int": signed, 32 bits.

#include "types/builtin_makers.h"
#include "types/decimal_rule.h"
#include "types/number_text.h"
#include "types/number_value.h"

namespace zor_internal {
namespace {

int intIsValid(void*, char const* text) {
    return decimalIsValid(text, "+-", *text == '-' ? 2147483648U : 2147483647U);
}

u_zorItemValue intFromString(char const* text) { return intValueOf(intFromText(text)); }

void intSetFromString(u_zorItemValue* value, char const* text) { *value = intFromString(text); }

} // namespace

int intCompareTexts(void*, char const* a, char const* b) {
    return compareNumbers(intFromText(a), intFromText(b));
}

ZorString* intToText(u_zorItemValue value) {
    return textFromInt(static_cast<std::int32_t>(value.intValue));
}

ZorDataType* makeIntType() {
    auto* const type =
        new ZorDataType("int", "0", nullptr, intIsValid, intCompareTexts, nullptr, intFromString,
                        numberCopy, numberFree, intSetFromString, intToText, nullptr);
    zor_dataTypeSetConversionFuncs(type, zorExtLong, numberToInternal, numberSetInternal,
                                   numberGetInt, numberIsInt32, numberCompareInt);
    return type;
}

} // namespace zor_internal
