// "string", "domain_name" and "url": any text is valid.

#include <cstring>

#include "types/builtin_makers.h"
#include "types/string_value.h"

namespace zor_internal {

namespace {

// Kept: the raw result of strcmp, where other types answer 1, 0 or -1.
int stringCompare(void*, char const* a, char const* b) { return std::strcmp(a, b); }

// Kept: the names "domain_name" and "url" state an intent; nothing is checked.
int anyTextIsValid(void*, char const*) { return 1; }

} // namespace

ZorDataType* makePlainStringType() { return makeStringType("string", "", nullptr, stringCompare); }

ZorDataType* makeDomainNameType() {
    return makeStringType("domain_name", nullptr, anyTextIsValid, nullptr);
}

ZorDataType* makeUrlType() { return makeStringType("url", nullptr, anyTextIsValid, nullptr); }

} // namespace zor_internal
