#include "types/value_text.h"

#include "types/number_value.h"
#include "types/string_value.h"

namespace zor_internal {

ValueText::ValueText(ZorDataType const* type, u_zorItemValue value)
    : chars(nullptr), made(nullptr), buffer{} {
    if (type->toStringFn == stringToText) {
        chars = value.stringValue->text;
    } else if (type->toStringFn == intToText) {
        auto const number = static_cast<std::int32_t>(value.intValue);
        setDecimal(magnitudeOf(number), number < 0);
    } else if (type->toStringFn == uintToText) {
        setDecimal(static_cast<std::uint32_t>(value.uintValue), false);
    } else {
        made = type->toStringFn(value);
        if (made) chars = made->text;
    }
}

void ValueText::setDecimal(std::uint32_t magnitude, bool negative) {
    chars = writeDecimal(magnitude, negative, buffer + kLongestDecimal);
}

} // namespace zor_internal
