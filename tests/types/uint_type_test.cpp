// "uint".

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <string>

#include "tests/support/text.h"
#include "tests/types/typed_value.h"
#include "zor/types.h"

namespace {

ZorDataType* uintType() { return ZorBuiltIn::getDataType("uint"); }

bool isValid(std::string const& text) {
    return zor_dataTypeValidate(uintType(), text.c_str()) != 0;
}

int compared(char const* a, char const* b) { return zor_dataTypeCompare(uintType(), a, b); }

// The rule without any thought for overflow: for texts whose number fits 64 bits.
bool isValidByTheNumber(std::string const& text) {
    std::size_t const start = !text.empty() && text[0] == '+' ? 1 : 0;
    if (start == text.size()) return false;
    if (text.find_first_not_of("0123456789", start) != std::string::npos) return false;
    return std::strtoll(text.c_str(), nullptr, 10) <= 4294967295LL;
}

} // namespace

TEST(UIntType, ValidatesTexts) {
    struct {
        char const* text;
        bool valid;
    } constexpr kTable[] = {
        {"0", true},
        {"1", true},
        {"+7", true},
        {"4294967295", true},
        {"4294967296", false},
        {"+4294967295", true},
        {"+4294967296", false},
        {"4294967294", true},
        {"4294967305", false},
        {"4294966999", true}, // a smaller digit settles it
        {"3999999999", true},
        {"5000000000", false},
        {"9999999999", false},
        {"999999999", true},
        {"10000000000", false},
        {"99999999999999999999999999", false},
        {"-1", false},
        {"-0", false},
        {"-", false},
        {"+", false},
        {"", false},
        {"++1", false},
        {"+-1", false},
        {" 1", false},
        {"1 ", false},
        {"0x1", false},
        {"1.0", false},
        {"abc", false},
        {"+000", true},
        {"0000000000004294967295", true}, // leading zeros never count
        {"0000000000004294967296", false},
        {"3999999x99", false}, // a character that is no digit counts behind the difference, too
        {"399999999x", false},
        {"429496729x", false},
    };
    for (auto const& row : kTable) EXPECT_EQ(isValid(row.text), row.valid) << row.text;
}

// The digit rule agrees with the plain number around every limit, with any sign and zeros.
TEST(UIntType, ValidationAgreesWithTheNumber) {
    for (long long const around :
         {0LL, 10LL, 999999999LL, 2147483647LL, 4294967295LL, 9999999999LL, 42949672950LL}) {
        for (long long number = around - 12; number <= around + 12; ++number) {
            if (number < 0) continue;
            for (char const* const sign : {"", "+", "-", "++", " "}) {
                for (char const* const zeros : {"", "0", "00000000000000"}) {
                    std::string const text = sign + (zeros + std::to_string(number));
                    EXPECT_EQ(isValid(text), isValidByTheNumber(text)) << text;
                }
            }
        }
    }
}

TEST(UIntType, ReadsAndWritesTexts) {
    struct {
        char const* text;
        char const* expected;
    } constexpr kTable[] = {
        {"0", "0"},
        {"+7", "7"},
        {"007", "7"},
        {" \t\n\v\f\r5", "5"},
        {"12abc", "12"},
        {"2147483648", "2147483648"},
        {"4294967295", "4294967295"},
        {"4294967296", "4294967295"}, // out of range: the bound
        {"99999999999999999999999", "4294967295"},
        {"-1", "4294967295"}, // a minus sign negates modulo 2 to the 32nd
        {"-2", "4294967294"},
        {"-2147483648", "2147483648"},
        {"-4294967295", "1"},
        {"-4294967296", "4294967295"},
        {"-99999999999999999999999", "4294967295"},
        {"-0", "0"},
        {"", "0"}, // nothing to read: 0
        {"+", "0"},
        {"abc", "0"},
        {"--1", "0"},
        {"0x1F", "0"},
    };
    for (auto const& row : kTable) EXPECT_EQ(readBack("uint", row.text), row.expected) << row.text;
}

TEST(UIntType, IsSetInPlaceFromText) {
    TypedValue value(uintType(), "5");
    value.set("4294967295");
    EXPECT_EQ(value.value.uintValue, 4294967295UL);
    value.set("nonsense");
    EXPECT_EQ(value.value.uintValue, 0U);
}

TEST(UIntType, CopiesAreIndependent) {
    TypedValue value(uintType(), "5");
    TypedValue const copy(value);
    value.set("6");
    EXPECT_EQ(copy.text(), "5");
}

TEST(UIntType, ComparesTextsAsUnsignedNumbers) {
    EXPECT_EQ(compared("2", "10"), -1);
    EXPECT_EQ(compared("10", "2"), 1);
    EXPECT_EQ(compared("007", "+7"), 0);
    EXPECT_EQ(compared("2147483648", "2147483647"), 1);
    EXPECT_EQ(compared("-1", "5"), 1); // reads as 4294967295
    EXPECT_EQ(compared("-1", "4294967295"), 0);
    EXPECT_EQ(compared("4294967296", "4294967295"), 0);
    EXPECT_EQ(compared("abc", "0"), 0);
}

TEST(UIntType, ConvertsUnsignedLongs) {
    for (unsigned long const number : {0UL, 1UL, 2147483647UL, 2147483648UL, 4294967295UL}) {
        EXPECT_EQ(zor_dataTypeValidateUInt(uintType(), number), 1) << number;
        TypedValue value(uintType(), number);
        EXPECT_EQ(value.text(), std::to_string(number));
        EXPECT_EQ(value.asULong(), number);
        value.set("5");
        value.set(number);
        EXPECT_EQ(value.asULong(), number);
    }
}

TEST(UIntType, ComparesUnsignedLongs) {
    EXPECT_EQ(zor_dataTypeCompareUInt(uintType(), 1, 2), -1);
    EXPECT_EQ(zor_dataTypeCompareUInt(uintType(), 2, 1), 1);
    EXPECT_EQ(zor_dataTypeCompareUInt(uintType(), 2, 2), 0);
    EXPECT_EQ(zor_dataTypeCompareUInt(uintType(), 4294967295UL, 0), 1);
}

#if LONG_MAX > 2147483647
// Values are 32 bits wide; a wider number is not cut.
TEST(UIntType, RefusesUnsignedLongsBeyond32Bits) {
    for (unsigned long const number : {4294967296UL, 4294967297UL, 8589934592UL, ULONG_MAX}) {
        EXPECT_EQ(zor_dataTypeValidateUInt(uintType(), number), 0) << number;
    }
}
#endif
