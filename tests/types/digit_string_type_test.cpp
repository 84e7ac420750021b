// "digit_string".

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "tests/support/text.h"
#include "zor/types.h"

namespace {

ZorDataType* digitStringType() { return ZorBuiltIn::getDataType("digit_string"); }

// As a string object: a plain text may not begin with the marker byte.
bool isValid(std::string const& text) {
    return zor_dataTypeValidate(digitStringType(), static_cast<ZorString*>(Text(text))) != 0;
}

bool mayBeDialled(char character) { return std::strchr("0123456789#* ", character) != nullptr; }

} // namespace

TEST(DigitStringType, ValidatesTexts) {
    for (char const* const text :
         {"", "0", "0123456789", "+1", "+1 #*", "+ ", "+#", "#", "*", " ", "**21*0123#", "1 2 3"}) {
        EXPECT_EQ(zor_dataTypeValidate(digitStringType(), text), 1) << '"' << text << '"';
    }
    for (char const* const text :
         {"+", "++1", "1+", "+1+", "12a", "a12", "-1", "1.2", "(0)1", "1\t2", "+a", " +1"}) {
        EXPECT_EQ(zor_dataTypeValidate(digitStringType(), text), 0) << '"' << text << '"';
    }
}

// Of all 255 bytes only those that can be dialled are accepted, and a plus in front only.
TEST(DigitStringType, EveryOtherByteIsRefused) {
    for (int byte = 1; byte < 256; ++byte) {
        char const character = static_cast<char>(byte);
        bool const expected = mayBeDialled(character);
        std::string const single(1, character);
        EXPECT_EQ(isValid(single), expected) << "byte " << byte << " alone";
        EXPECT_EQ(isValid(single + "12"), expected || character == '+') << byte << " first";
        EXPECT_EQ(isValid("1" + single + "2"), expected) << "byte " << byte << " in the middle";
        EXPECT_EQ(isValid("12" + single), expected) << "byte " << byte << " last";
        EXPECT_EQ(isValid("+" + single), expected) << "byte " << byte << " behind a plus";
    }
}

TEST(DigitStringType, HasNoOrder) {
    EXPECT_EQ(zor_dataTypeCompare(digitStringType(), "1", "2"), 0);
    EXPECT_EQ(zor_dataTypeCompare(digitStringType(), "2", "1"), 0);
}

// No length limits a number to dial.
TEST(DigitStringType, MayBeLong) {
    EXPECT_TRUE(isValid(std::string(5000, '7')));
    EXPECT_FALSE(isValid(std::string(5000, '7') + 'x'));
}
