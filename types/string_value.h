// The value functions of all types whose values are strings. Every value owns one reference.

#pragma once

#include "zor/types.h"

namespace zor_internal {

u_zorItemValue stringFromText(char const* text);
u_zorItemValue stringCopy(u_zorItemValue value);
void stringFree(u_zorItemValue value);
void stringSetFromText(u_zorItemValue* value, char const* text);
ZorString* stringToText(u_zorItemValue value);

// A type of string values.
ZorDataType* makeStringType(char const* name, char const* defaultText, ZorValidateFn validate,
                            ZorCompareFn compare);

} // namespace zor_internal
