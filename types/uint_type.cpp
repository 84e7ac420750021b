// "uint": unsigned, 32 bits.

#include "types/builtin_makers.h"
#include "types/decimal_rule.h"
#include "types/number_text.h"
#include "types/number_value.h"

namespace zor_internal {
namespace {

int uintIsValid(void*, char const* text) { return decimalIsValid(text, "+", 4294967295U); }

u_zorItemValue uintFromString(char const* text) { return uintValueOf(uintFromText(text)); }

void uintSetFromString(u_zorItemValue* value, char const* text) { *value = uintFromString(text); }

} // namespace

int uintCompareTexts(void*, char const* a, char const* b) {
    return compareNumbers(uintFromText(a), uintFromText(b));
}

ZorString* uintToText(u_zorItemValue value) {
    return textFromUInt(static_cast<std::uint32_t>(value.uintValue));
}

ZorDataType* makeUIntType() {
    auto* const type = new ZorDataType("uint", "0", nullptr, uintIsValid, uintCompareTexts, nullptr,
                                       uintFromString, numberCopy, numberFree, uintSetFromString,
                                       uintToText, nullptr);
    zor_dataTypeSetConversionFuncs(type, zorExtULong, numberToInternal, numberSetInternal,
                                   numberGetUInt, numberIsUInt32, numberCompareUInt);
    return type;
}

} // namespace zor_internal
