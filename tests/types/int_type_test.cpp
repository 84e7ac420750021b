// "int".

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <string>

#include "tests/support/text.h"
#include "tests/types/typed_value.h"
#include "zor/types.h"

namespace {

ZorDataType* intType() { return ZorBuiltIn::getDataType("int"); }

bool isValid(std::string const& text) { return zor_dataTypeValidate(intType(), text.c_str()) != 0; }

int compared(char const* a, char const* b) { return zor_dataTypeCompare(intType(), a, b); }

// The rule without any thought for overflow: for texts whose number fits 64 bits.
bool isValidByTheNumber(std::string const& text) {
    std::size_t const start = !text.empty() && (text[0] == '+' || text[0] == '-') ? 1 : 0;
    if (start == text.size()) return false;
    if (text.find_first_not_of("0123456789", start) != std::string::npos) return false;
    long long const number = std::strtoll(text.c_str(), nullptr, 10);
    return number >= -2147483648LL && number <= 2147483647LL;
}

} // namespace

TEST(IntType, ValidatesTexts) {
    struct {
        char const* text;
        bool valid;
    } constexpr kTable[] = {
        {"0", true},
        {"1", true},
        {"-1", true},
        {"+1", true},
        {"2147483647", true},
        {"2147483648", false},
        {"+2147483647", true},
        {"+2147483648", false},
        {"-2147483648", true},
        {"-2147483649", false},
        {"2147483646", true},
        {"3000000000", false},
        {"3147483647", false},
        {"2147483657", false},
        {"2147493640", false},
        {"1999999999", true}, // a smaller digit settles it
        {"2099999999", true},
        {"9999999999", false},
        {"999999999", true},
        {"10000000000", false},
        {"99999999999999999999999999", false},
        {"", false},
        {"+", false},
        {"-", false},
        {"+-1", false},
        {"--1", false},
        {"++1", false},
        {"-+1", false},
        {" 1", false},
        {"1 ", false},
        {"0x1", false},
        {"1.0", false},
        {"1e3", false},
        {"1,000", false},
        {"abc", false},
        {"12a", false},
        {"-0", true},
        {"+0", true},
        {"00", true},
        {"+000", true},
        {"-000", true},
        {"0000000000002147483647", true}, // leading zeros never count
        {"0000000000002147483648", false},
        {"-0000000000002147483648", true},
        {"-0000000000002147483649", false},
        {"+0000000000002147483648", false},
        {"0-1", false},
        {"0 ", false},
        {"1999999x99", false}, // a character that is no digit counts behind the difference, too
        {"199999999x", false},
        {"x999999999", false},
        {"0x99999999", false},
        {"2147483647x", false},
        {"214748364x", false},
    };
    for (auto const& row : kTable) EXPECT_EQ(isValid(row.text), row.valid) << row.text;
}

TEST(IntType, ValidatesAStringObject) {
    EXPECT_EQ(zor_dataTypeValidate(intType(), static_cast<ZorString*>(Text("-12"))), 1);
    EXPECT_EQ(zor_dataTypeValidate(intType(), static_cast<ZorString*>(Text("12-"))), 0);
}

// The digit rule agrees with the plain number around every limit, with any sign and zeros.
TEST(IntType, ValidationAgreesWithTheNumber) {
    for (long long const around : {0LL, 10LL, 999999999LL, 2147483647LL, 2147483648LL, 4294967295LL,
                                   9999999999LL, 21474836470LL}) {
        for (long long number = around - 12; number <= around + 12; ++number) {
            if (number < 0) continue;
            for (char const* const sign : {"", "+", "-", "--", " "}) {
                for (char const* const zeros : {"", "0", "00000000000000"}) {
                    std::string const text = sign + (zeros + std::to_string(number));
                    EXPECT_EQ(isValid(text), isValidByTheNumber(text)) << text;
                }
            }
        }
    }
}

// Every byte but a digit spoils a number, wherever it stands.
TEST(IntType, EveryOtherByteIsRefused) {
    for (int byte = 1; byte < 256; ++byte) {
        char const character = static_cast<char>(byte);
        bool const isDigit = byte >= '0' && byte <= '9';
        bool const isSign = byte == '+' || byte == '-';
        for (std::size_t at = 0; at < 10; ++at) {
            std::string text = "1111111111";
            text[at] = character;
            // As a string object: a plain text may not begin with the marker byte.
            int const valid = zor_dataTypeValidate(intType(), static_cast<ZorString*>(Text(text)));
            bool const expected = (isDigit && isValidByTheNumber(text)) || (isSign && at == 0);
            EXPECT_EQ(valid != 0, expected) << "byte " << byte << " at " << at;
        }
    }
}

TEST(IntType, ReadsAndWritesTexts) {
    struct {
        char const* text;
        char const* expected;
    } constexpr kTable[] = {
        {"0", "0"},
        {"-0", "0"},
        {"+7", "7"},
        {"-12", "-12"},
        {"007", "7"},
        {" \t\n\v\f\r5", "5"},
        {"12abc", "12"},
        {"1.9", "1"},
        {"2147483647", "2147483647"},
        {"-2147483648", "-2147483648"},
        {"2147483648", "2147483647"}, // out of range: the nearest bound
        {"4294967295", "2147483647"},
        {"-2147483649", "-2147483648"},
        {"99999999999999999999999", "2147483647"},
        {"-99999999999999999999999", "-2147483648"},
        {"", "0"}, // nothing to read: 0
        {"-", "0"},
        {"abc", "0"},
        {"--5", "0"},
        {"0x1F", "0"},
    };
    for (auto const& row : kTable) EXPECT_EQ(readBack("int", row.text), row.expected) << row.text;
}

TEST(IntType, IsSetInPlaceFromText) {
    TypedValue value(intType(), "5");
    value.set("-17");
    EXPECT_EQ(value.value.intValue, -17);
    value.set("3000000000");
    EXPECT_EQ(value.value.intValue, 2147483647);
    value.set("nonsense");
    EXPECT_EQ(value.value.intValue, 0);
}

TEST(IntType, CopiesAreIndependent) {
    TypedValue value(intType(), "5");
    TypedValue const copy(value);
    value.set("6");
    EXPECT_EQ(copy.text(), "5");
    EXPECT_EQ(value.text(), "6");
}

TEST(IntType, ComparesTextsAsNumbers) {
    EXPECT_EQ(compared("2", "10"), -1);
    EXPECT_EQ(compared("10", "2"), 1);
    EXPECT_EQ(compared("-1", "1"), -1);
    EXPECT_EQ(compared("007", "+7"), 0);
    EXPECT_EQ(compared("-2147483648", "2147483647"), -1);
    EXPECT_EQ(compared("2147483647", "-2147483648"), 1);
    EXPECT_EQ(compared("2147483647", "2147483648"), 0); // both read as the bound
    EXPECT_EQ(compared("abc", "0"), 0);
    EXPECT_EQ(compared("abc", "1"), -1);
    EXPECT_EQ(zor_dataTypeCompare(intType(), static_cast<ZorString*>(Text("9")),
                                  static_cast<ZorString*>(Text("10"))),
              -1);
}

TEST(IntType, ConvertsLongs) {
    for (long const number : {0L, 1L, -1L, 2147483647L, -2147483647L - 1}) {
        EXPECT_EQ(zor_dataTypeValidateInt(intType(), number), 1) << number;
        TypedValue value(intType(), number);
        EXPECT_EQ(value.text(), std::to_string(number));
        EXPECT_EQ(value.asLong(), number);
        value.set("5");
        value.set(number);
        EXPECT_EQ(value.asLong(), number);
    }
}

TEST(IntType, ComparesLongs) {
    EXPECT_EQ(zor_dataTypeCompareInt(intType(), -1, 1), -1);
    EXPECT_EQ(zor_dataTypeCompareInt(intType(), 1, -1), 1);
    EXPECT_EQ(zor_dataTypeCompareInt(intType(), 3, 3), 0);
    EXPECT_EQ(zor_dataTypeCompareInt(intType(), -2147483647L - 1, 2147483647L), -1);
}

#if LONG_MAX > 2147483647
// Values are 32 bits wide; a wider number is not cut.
TEST(IntType, RefusesLongsBeyond32Bits) {
    for (long const number :
         {2147483648L, -2147483649L, 4294967295L, 4294967296L, 4294967301L, LONG_MAX, LONG_MIN}) {
        EXPECT_EQ(zor_dataTypeValidateInt(intType(), number), 0) << number;
    }
}
#endif
