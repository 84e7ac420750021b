// One maker for each built-in type. Each result is a new reference, with its host conversions set.

#pragma once

#include "zor/types.h"

namespace zor_internal {

ZorDataType* makePlainStringType();
ZorDataType* makeIntType();
ZorDataType* makeUIntType();
ZorDataType* makeBoolType();
ZorDataType* makeFloatType();
ZorDataType* makeDigitStringType();
ZorDataType* makeIpAddressType();
ZorDataType* makeIpMaskType();
ZorDataType* makeDomainNameType();
ZorDataType* makeUrlType();

} // namespace zor_internal
