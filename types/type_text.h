// Validation and comparison of plain characters. Unlike the public operations these never take a
// text for a ZorString, whatever its first byte.

#pragma once

#include "zor/types.h"

namespace zor_internal {

inline int validateText(ZorDataType const* type, char const* text) {
    return type->validateFn ? type->validateFn(type->userData, text) : 1;
}

inline int compareText(ZorDataType const* type, char const* a, char const* b) {
    return type->compareFn ? type->compareFn(type->userData, a, b) : 0;
}

} // namespace zor_internal
