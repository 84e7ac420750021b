// The text of values in place, compared with what their types make of them.

#include "types/value_text.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/support/allocations.h"
#include "tests/types/call_log.h"
#include "tests/types/typed_value.h"

using zor_internal::kLongestDecimal;
using zor_internal::ValueText;
using zor_internal::writeDecimal;

namespace {

char const* const kTexts[] = {
    "",           "0",          "7",           "-7",
    "true",       "false",      "2147483647",  "-2147483648",
    "4294967295", "1.5",        "-0.25",       "1e300",
    "*12#",       "10.0.255.9", "255.255.0.0", "a text that is longer than the buffer of a string",
    "schema"};

void expectSame(ZorDataType const* type, u_zorItemValue value) {
    ZorString* const expected = type->toStringFn(value);
    {
        ValueText const text(type, value);
        EXPECT_STREQ(text.get(), expected ? expected->text : nullptr) << type->name->text;
    }
    if (expected) expected->removeRef();
}

void expectSameForAllTexts(ZorDataType* type) {
    for (char const* const text : kTexts) {
        TypedValue const value(type, text);
        expectSame(type, value.value);
    }
}

std::string decimal(std::uint32_t magnitude, bool negative) {
    char buffer[kLongestDecimal];
    char* const end = buffer + sizeof buffer;
    return std::string(writeDecimal(magnitude, negative, end), end);
}

} // namespace

TEST(ValueText, IsThatOfEveryBuiltInType) {
    for (char const* const name : {"string", "int", "uint", "bool", "float", "digit_string",
                                   "ip_address", "ip_mask", "domain_name", "url"}) {
        expectSameForAllTexts(ZorBuiltIn::getDataType(name));
    }
}

TEST(ValueText, IsThatOfChoicesAndRanges) {
    std::unique_ptr<ZorDataType> const choice(zor_choiceMake("choice"));
    zor_choiceAddOption(choice.get(), "true");
    expectSameForAllTexts(choice.get());
    for (char const* const base : {"int", "uint", "float", "string"}) {
        std::unique_ptr<ZorDataType> const range(
            zor_rangeMake(ZorBuiltIn::getDataType(base), "range", "1", "5"));
        expectSameForAllTexts(range.get());
    }
}

TEST(ValueText, IsThatOfAHostsTypes) {
    for (char const* const base : {"int", "uint", "string", "bool"}) {
        std::unique_ptr<ZorDataType> const derived(
            zor_derivedTypeMake("derived", nullptr, nullptr, nullptr, nullptr, nullptr,
                                ZorBuiltIn::getDataType(base), nullptr));
        expectSameForAllTexts(derived.get());
    }
    std::unique_ptr<ZorDataType> const own(makeProbe("own", nullptr, nullptr));
    expectSameForAllTexts(own.get());
    own->toStringFn = [](u_zorItemValue) -> ZorString* { return nullptr; };
    expectSame(own.get(), host(5L));
}

// Also where a host's function left more than 32 bits in it.
TEST(ValueText, IsThatOfAnyNumber) {
    std::mt19937_64 dice(32);
    for (char const* const name : {"int", "uint", "ip_address"}) {
        ZorDataType const* const type = ZorBuiltIn::getDataType(name);
        for (long const number : {0L, 1L, -1L, LONG_MAX, LONG_MIN}) expectSame(type, host(number));
        for (int i = 0; i < 5000; ++i) {
            expectSame(type, host(static_cast<long>(dice() >> (dice() % 64))));
            ASSERT_FALSE(HasFailure()) << name;
        }
    }
}

// Strings and decimal numbers cost no block; what a type makes is released.
TEST(ValueText, OfStringsAndNumbersAllocatesNothing) {
    for (char const* const name : {"string", "url", "int", "uint"}) {
        TypedValue const value(ZorBuiltIn::getDataType(name), "12345678901234567890");
        long const before = allocatedBlocks();
        ValueText const text(value.type, value.value);
        EXPECT_EQ(allocatedBlocks(), before) << name;
        EXPECT_NE(text.get(), nullptr);
    }
}

TEST(WriteDecimal, AgreesWithPrintf) {
    std::mt19937 dice(10);
    std::vector<std::uint32_t> numbers{0, 9, 10, 99, 100, INT_MAX, INT_MAX + 1U, UINT_MAX};
    for (int i = 0; i < 10000; ++i) {
        numbers.push_back(static_cast<std::uint32_t>(dice()) >> dice() % 32);
    }
    for (std::uint32_t const number : numbers) {
        char expected[32];
        std::snprintf(expected, sizeof expected, "-%lu", static_cast<unsigned long>(number));
        ASSERT_EQ(decimal(number, true), expected);
        ASSERT_EQ(decimal(number, false), expected + 1);
    }
}

TEST(AddressText, AgreesWithPrintf) {
    std::mt19937 dice(4);
    ZorDataType const* const type = ZorBuiltIn::getDataType("ip_address");
    for (int i = 0; i < 20000; ++i) {
        auto address = static_cast<unsigned>(dice());
        if (i % 2) address &= static_cast<unsigned>(dice() & dice()); // short parts, too
        char expected[16];
        std::snprintf(expected, sizeof expected, "%u.%u.%u.%u", address >> 24, address >> 16 & 255,
                      address >> 8 & 255, address & 255);
        ASSERT_EQ(taken(type->toStringFn(host(static_cast<unsigned long>(address)))), expected);
    }
}
