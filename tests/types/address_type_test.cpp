// "ip_address" and "ip_mask".

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <random>
#include <string>

#include "tests/support/text.h"
#include "tests/types/typed_value.h"
#include "zor/types.h"

namespace {

ZorDataType* addressType() { return ZorBuiltIn::getDataType("ip_address"); }

ZorDataType* maskType() { return ZorBuiltIn::getDataType("ip_mask"); }

std::string dotted(std::uint32_t number) {
    return std::to_string(number >> 24) + '.' + std::to_string((number >> 16) & 255) + '.' +
           std::to_string((number >> 8) & 255) + '.' + std::to_string(number & 255);
}

// Bit by bit: behind the first zero no one may follow.
bool isMaskBitByBit(std::uint32_t number) {
    bool zeroSeen = false;
    for (int bit = 31; bit >= 0; --bit) {
        bool const one = (number >> bit) & 1;
        if (one && zeroSeen) return false;
        if (!one) zeroSeen = true;
    }
    return true;
}

void expectMaskDecision(std::uint32_t number) {
    bool const expected = isMaskBitByBit(number);
    EXPECT_EQ(zor_dataTypeValidateUInt(maskType(), number) != 0, expected) << dotted(number);
    EXPECT_EQ(zor_dataTypeValidate(maskType(), dotted(number).c_str()) != 0, expected)
        << dotted(number);
}

} // namespace

TEST(AddressType, ValidatesTexts) {
    for (char const* const text :
         {"0.0.0.0", "192.168.1.1", "255.255.255.255", "010.001.000.09", "1.2.3.4"}) {
        EXPECT_EQ(zor_dataTypeValidate(addressType(), text), 1) << text;
    }
    for (char const* const text :
         {"",          ".",         "...",        "1",          "1.2.3",     "1.2.3.",
          "1.2.3.4.",  "1.2.3.4.5", "1..3.4",     ".1.2.3.4",   "256.1.1.1", "1.256.1.1",
          "1.1.256.1", "1.1.1.256", "1234.1.1.1", "1.1.1.0001", "1.2.3.a",   "a.2.3.4",
          " 1.2.3.4",  "1.2.3.4 ",  "1. 2.3.4",   "-1.2.3.4",   "+1.2.3.4",  "1,2,3,4",
          "0x1.2.3.4", "localhost"}) {
        EXPECT_EQ(zor_dataTypeValidate(addressType(), text), 0) << '"' << text << '"';
        EXPECT_EQ(zor_dataTypeValidate(maskType(), text), 0) << '"' << text << '"';
    }
    EXPECT_EQ(zor_dataTypeValidate(addressType(), static_cast<ZorString*>(Text("1.2.3.4"))), 1);
}

TEST(AddressType, ReadsAndWritesTexts) {
    struct {
        char const* text;
        char const* expected;
    } constexpr kTable[] = {
        {"192.168.1.1", "192.168.1.1"},
        {"0.0.0.0", "0.0.0.0"},
        {"255.255.255.255", "255.255.255.255"},
        {"010.001.000.09", "10.1.0.9"}, // leading zeros are decimal, too
        {"1.2.3", "0.0.0.0"},           // nothing to read: 0
        {"256.1.1.1", "0.0.0.0"},
        {"", "0.0.0.0"},
    };
    for (auto const& row : kTable) {
        EXPECT_EQ(readBack("ip_address", row.text), row.expected) << row.text;
        EXPECT_EQ(readBack("ip_mask", row.text), row.expected) << row.text;
    }
}

// The first octet is the most significant byte.
TEST(AddressType, IsHeldAsOneNumber) {
    EXPECT_EQ(TypedValue(addressType(), "192.168.0.1").value.uintValue, 0xC0A80001UL);
    EXPECT_EQ(TypedValue(addressType(), "255.0.0.0").value.uintValue, 0xFF000000UL);
    EXPECT_EQ(TypedValue(addressType(), "0.0.0.255").value.uintValue, 0x000000FFUL);
}

// Every single octet survives in every place.
TEST(AddressType, EveryOctetRoundTrips) {
    for (std::uint32_t octet = 0; octet < 256; ++octet) {
        for (int shift = 0; shift < 32; shift += 8) {
            std::string const text = dotted(octet << shift);
            EXPECT_EQ(readBack("ip_address", text.c_str()), text);
        }
    }
}

TEST(AddressType, IsSetInPlaceFromText) {
    TypedValue value(addressType(), "1.2.3.4");
    value.set("4.3.2.1");
    EXPECT_EQ(value.value.uintValue, 0x04030201UL);
    value.set("nonsense");
    EXPECT_EQ(value.value.uintValue, 0UL);
}

TEST(AddressType, CopiesAreIndependent) {
    TypedValue value(addressType(), "1.2.3.4");
    TypedValue const copy(value);
    value.set("4.3.2.1");
    EXPECT_EQ(copy.text(), "1.2.3.4");
}

TEST(AddressType, ComparesTextsAsNumbers) {
    for (ZorDataType* const type : {addressType(), maskType()}) {
        EXPECT_EQ(zor_dataTypeCompare(type, "9.0.0.0", "10.0.0.0"), -1);
        EXPECT_EQ(zor_dataTypeCompare(type, "10.0.0.0", "9.0.0.0"), 1);
        EXPECT_EQ(zor_dataTypeCompare(type, "10.0.0.1", "010.0.0.001"), 0);
        EXPECT_EQ(zor_dataTypeCompare(type, "255.0.0.0", "127.0.0.0"), 1); // unsigned
        EXPECT_EQ(zor_dataTypeCompare(type, "nonsense", "0.0.0.0"), 0);
        EXPECT_EQ(zor_dataTypeCompare(type, "nonsense", "0.0.0.1"), -1);
    }
}

TEST(AddressType, ConvertsUnsignedLongs) {
    for (unsigned long const number : {0UL, 1UL, 0x80000000UL, 0xC0A80001UL, 0xFFFFFFFFUL}) {
        EXPECT_EQ(zor_dataTypeValidateUInt(addressType(), number), 1) << number;
        TypedValue value(addressType(), number);
        EXPECT_EQ(value.text(), dotted(static_cast<std::uint32_t>(number)));
        EXPECT_EQ(value.asULong(), number);
        value.set("1.2.3.4");
        value.set(number);
        EXPECT_EQ(value.asULong(), number);
    }
}

TEST(AddressType, ComparesUnsignedLongs) {
    for (ZorDataType* const type : {addressType(), maskType()}) {
        EXPECT_EQ(zor_dataTypeCompareUInt(type, 1, 2), -1);
        EXPECT_EQ(zor_dataTypeCompareUInt(type, 0xFFFFFFFFUL, 2), 1);
        EXPECT_EQ(zor_dataTypeCompareUInt(type, 5, 5), 0);
    }
}

#if LONG_MAX > 2147483647
// Values are 32 bits wide; a wider number is not cut, even when its low bits would do.
TEST(AddressType, RefusesUnsignedLongsBeyond32Bits) {
    for (unsigned long const number :
         {0x100000000UL, 0x1FFFFFF00UL, 0xFFFFFFFFFFFFFF00UL, ULONG_MAX}) {
        EXPECT_EQ(zor_dataTypeValidateUInt(addressType(), number), 0) << number;
        EXPECT_EQ(zor_dataTypeValidateUInt(maskType(), number), 0) << number;
    }
}
#endif

TEST(MaskType, ValidatesTexts) {
    for (char const* const text :
         {"255.255.255.0", "0.0.0.0", "255.255.255.255", "128.0.0.0", "255.255.255.254"}) {
        EXPECT_EQ(zor_dataTypeValidate(maskType(), text), 1) << text;
    }
    for (char const* const text : {"255.0.255.0", "255.255.0.255", "0.255.255.255", "0.0.0.1",
                                   "127.255.255.255", "255.255.255.253", "192.168.1.1"}) {
        EXPECT_EQ(zor_dataTypeValidate(maskType(), text), 0) << text;
    }
}

TEST(MaskType, ValidatesHostNumbers) {
    EXPECT_EQ(zor_dataTypeValidateUInt(maskType(), 0xFFFFFF00UL), 1);
    EXPECT_EQ(zor_dataTypeValidateUInt(maskType(), 0x00FFFFFFUL), 0);
    EXPECT_EQ(zor_dataTypeValidateUInt(maskType(), 0UL), 1);
    EXPECT_EQ(zor_dataTypeValidateUInt(maskType(), 0xFFFFFFFFUL), 1);
}

// Every prefix length from 0 to 32, and each of those masks with any one bit turned.
TEST(MaskType, AgreesWithTheBitByBitTest) {
    for (int prefix = 0; prefix <= 32; ++prefix) {
        std::uint32_t const mask = static_cast<std::uint32_t>(0xFFFFFFFF00000000ULL >> prefix);
        ASSERT_TRUE(isMaskBitByBit(mask));
        expectMaskDecision(mask);
        for (int bit = 0; bit < 32; ++bit) expectMaskDecision(mask ^ (1U << bit));
        expectMaskDecision(~mask);
    }
    std::mt19937 random(1);
    for (int i = 0; i < 20000; ++i) expectMaskDecision(static_cast<std::uint32_t>(random()));
}

TEST(MaskType, ConvertsUnsignedLongs) {
    TypedValue value(maskType(), 0xFFFFFF00UL);
    EXPECT_EQ(value.text(), "255.255.255.0");
    value.set(0xFFFF0000UL);
    EXPECT_EQ(value.asULong(), 0xFFFF0000UL);
}
