// "digit_string": what can be dialled.

#include "foundation/ascii.h"
#include "types/builtin_makers.h"
#include "types/string_value.h"

namespace zor_internal {
namespace {

int digitStringIsValid(void*, char const* text) {
    if (!*text) return 1;
    if (*text == '+' && !*++text) return 0;
    for (; *text; ++text) {
        if (!isDigit(*text) && *text != '#' && *text != '*' && *text != ' ') return 0;
    }
    return 1;
}

} // namespace

ZorDataType* makeDigitStringType() {
    return makeStringType("digit_string", "", digitStringIsValid, nullptr);
}

} // namespace zor_internal
