// "ip_address" and "ip_mask": dotted quads, held as one number with the first octet on top.

#include "types/builtin_makers.h"
#include "types/number_text.h"
#include "types/number_value.h"

namespace zor_internal {
namespace {

unsigned long addressIn(char const* text) {
    unsigned long address = 0;
    parseIpAddress(text, &address);
    return address;
}

int addressIsValid(void*, char const* text) {
    unsigned long address;
    return parseIpAddress(text, &address);
}

// A contiguous mask: ones from the top, then zeros. Then the complement is one below a power of 2.
int isMask(unsigned long number) {
    auto const zeros = ~static_cast<std::uint32_t>(number);
    return (zeros & (zeros + 1)) == 0;
}

int maskIsValid(void*, char const* text) {
    unsigned long address;
    return parseIpAddress(text, &address) && isMask(address);
}

int maskIsAcceptable(void*, u_zorItemValue external) {
    return numberIsUInt32(nullptr, external) && isMask(external.uintValue);
}

int addressCompare(void*, char const* a, char const* b) {
    return compareNumbers(addressIn(a), addressIn(b));
}

u_zorItemValue addressFromString(char const* text) { return uintValueOf(addressIn(text)); }

void addressSetFromString(u_zorItemValue* value, char const* text) {
    *value = addressFromString(text);
}

ZorString* addressToString(u_zorItemValue value) {
    char buffer[kLongestDecimal + sizeof "255.255.255"];
    char* const end = buffer + sizeof buffer;
    char* at = end;
    for (int shift = 0; shift < 32; shift += 8) {
        if (shift > 0) *--at = '.';
        at = writeDecimal(static_cast<std::uint32_t>(value.uintValue >> shift) & 0xFFU, false, at);
    }
    return ZorString::create(at, static_cast<int>(end - at));
}

ZorDataType* makeType(char const* name, ZorValidateFn validate, ZorExtValidateFn accept) {
    auto* const type = new ZorDataType(name, nullptr, nullptr, validate, addressCompare, nullptr,
                                       addressFromString, numberCopy, numberFree,
                                       addressSetFromString, addressToString, nullptr);
    zor_dataTypeSetConversionFuncs(type, zorExtULong, numberToInternal, numberSetInternal,
                                   numberGetUInt, accept, numberCompareUInt);
    return type;
}

} // namespace

ZorDataType* makeIpAddressType() { return makeType("ip_address", addressIsValid, numberIsUInt32); }

ZorDataType* makeIpMaskType() { return makeType("ip_mask", maskIsValid, maskIsAcceptable); }

} // namespace zor_internal
