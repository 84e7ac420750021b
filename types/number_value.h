// What the types whose values are plain numbers share: the value functions that have nothing to
// do, and the conversions of host numbers.
//
// Numbers are 32 bits wide as on the device. Where long is wider, a host number beyond 32 bits is
// not valid, and what is read through the other kind converts as 32-bit two's complement.

#pragma once

#include <cstdint>

#include "zor/types.h"

namespace zor_internal {

inline u_zorItemValue numberCopy(u_zorItemValue value) { return value; }

inline void numberFree(u_zorItemValue) {}

// The order of two texts by the numbers in them, for "int" and "uint".
int intCompareTexts(void* userData, char const* a, char const* b);
int uintCompareTexts(void* userData, char const* a, char const* b);

// The texts of "int" and "uint". New reference.
ZorString* intToText(u_zorItemValue value);
ZorString* uintToText(u_zorItemValue value);

inline u_zorItemValue intValueOf(long number) {
    u_zorItemValue value;
    value.intValue = number;
    return value;
}

inline u_zorItemValue uintValueOf(unsigned long number) {
    u_zorItemValue value;
    value.uintValue = number;
    return value;
}

inline int threeWay(bool less, bool greater) { return int(greater) - int(less); }

template <typename Number>
int compareNumbers(Number a, Number b) {
    return threeWay(a < b, b < a);
}

inline u_zorItemValue numberToInternal(u_zorItemValue external) { return external; }

inline void numberSetInternal(u_zorItemValue* internal, u_zorItemValue external) {
    *internal = external;
}

inline void numberGetInt(u_zorItemValue internal, u_zorItemValue* external) {
    external->intValue = static_cast<std::int32_t>(internal.intValue);
}

inline void numberGetUInt(u_zorItemValue internal, u_zorItemValue* external) {
    external->uintValue = static_cast<std::uint32_t>(internal.uintValue);
}

inline int numberIsInt32(void*, u_zorItemValue external) {
    return external.intValue == static_cast<std::int32_t>(external.intValue);
}

inline int numberIsUInt32(void*, u_zorItemValue external) {
    return external.uintValue == static_cast<std::uint32_t>(external.uintValue);
}

inline int numberCompareInt(void*, u_zorItemValue a, u_zorItemValue b) {
    return compareNumbers(a.intValue, b.intValue);
}

inline int numberCompareUInt(void*, u_zorItemValue a, u_zorItemValue b) {
    return compareNumbers(a.uintValue, b.uintValue);
}

} // namespace zor_internal
