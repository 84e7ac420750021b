// "float": every value is a double of its own on the heap.

#include "types/builtin_makers.h"
#include "types/number_text.h"
#include "types/number_value.h"

namespace zor_internal {
namespace {

double numberIn(char const* text) {
    double number = 0;
    floatFromText(text, &number);
    return number;
}

// Kept: a text without any number in it (empty, or white space only) is valid, and so is a number
// with something behind it; only a text that begins with something else is not.
int floatIsValid(void*, char const* text) {
    double number;
    return floatFromText(text, &number) != 0;
}

int floatCompare(void*, char const* a, char const* b) {
    return compareNumbers(numberIn(a), numberIn(b));
}

u_zorItemValue floatOf(double number) {
    u_zorItemValue value;
    value.floatValue = new double(number);
    return value;
}

u_zorItemValue floatFromString(char const* text) { return floatOf(numberIn(text)); }

u_zorItemValue floatCopy(u_zorItemValue value) { return floatOf(*value.floatValue); }

void floatFree(u_zorItemValue value) { delete value.floatValue; }

void floatSetFromString(u_zorItemValue* value, char const* text) {
    *value->floatValue = numberIn(text);
}

ZorString* floatToString(u_zorItemValue value) { return textFromFloat(*value.floatValue); }

u_zorItemValue floatToInternal(u_zorItemValue external) { return floatOf(*external.floatValue); }

void floatSetInternal(u_zorItemValue* internal, u_zorItemValue external) {
    *internal->floatValue = *external.floatValue;
}

void floatGetExternal(u_zorItemValue internal, u_zorItemValue* external) {
    *external->floatValue = *internal.floatValue;
}

int floatIsAcceptable(void*, u_zorItemValue) { return 1; }

int floatCompareExternal(void*, u_zorItemValue a, u_zorItemValue b) {
    return compareNumbers(*a.floatValue, *b.floatValue);
}

} // namespace

ZorDataType* makeFloatType() {
    auto* const type =
        new ZorDataType("float", "0", nullptr, floatIsValid, floatCompare, nullptr, floatFromString,
                        floatCopy, floatFree, floatSetFromString, floatToString, nullptr);
    zor_dataTypeSetConversionFuncs(type, zorExtDouble, floatToInternal, floatSetInternal,
                                   floatGetExternal, floatIsAcceptable, floatCompareExternal);
    return type;
}

} // namespace zor_internal
