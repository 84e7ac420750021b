// "bool".

#include <gtest/gtest.h>

#include <climits>

#include "tests/support/text.h"
#include "tests/types/typed_value.h"
#include "zor/types.h"

namespace {

ZorDataType* boolType() { return ZorBuiltIn::getDataType("bool"); }

int compared(char const* a, char const* b) { return zor_dataTypeCompare(boolType(), a, b); }

} // namespace

TEST(BoolType, ValidTextsAreExactlyTrueAndFalse) {
    EXPECT_EQ(zor_dataTypeValidate(boolType(), "true"), 1);
    EXPECT_EQ(zor_dataTypeValidate(boolType(), "false"), 1);
    for (char const* const text : {"", "TRUE", "True", "FALSE", "1", "0", " true", "true ", "tru",
                                   "truex", "falsex", "yes", "no"}) {
        EXPECT_EQ(zor_dataTypeValidate(boolType(), text), 0) << '"' << text << '"';
    }
    EXPECT_EQ(zor_dataTypeValidate(boolType(), static_cast<ZorString*>(Text("true"))), 1);
}

// Any text but "true" reads as false.
TEST(BoolType, ReadsAndWritesTexts) {
    EXPECT_EQ(readBack("bool", "true"), "true");
    for (char const* const text : {"false", "TRUE", "1", "", "true ", "truex"}) {
        EXPECT_EQ(readBack("bool", text), "false") << '"' << text << '"';
    }
}

TEST(BoolType, IsHeldAsOneOrZero) {
    EXPECT_EQ(TypedValue(boolType(), "true").value.intValue, 1);
    EXPECT_EQ(TypedValue(boolType(), "false").value.intValue, 0);
}

TEST(BoolType, IsSetInPlaceFromText) {
    TypedValue value(boolType(), "false");
    value.set("true");
    EXPECT_EQ(value.value.intValue, 1);
    value.set("TRUE");
    EXPECT_EQ(value.value.intValue, 0);
}

TEST(BoolType, CopiesAreIndependent) {
    TypedValue value(boolType(), "true");
    TypedValue const copy(value);
    value.set("false");
    EXPECT_EQ(copy.text(), "true");
}

// The texts are permanent strings, so writing one costs no memory.
TEST(BoolType, WritesPermanentStrings) {
    ZorString* const text = boolType()->toStringFn(host(1L));
    EXPECT_EQ(text->refCount, ZorString::permanentCount);
    EXPECT_EQ(taken(text), "true");
}

TEST(BoolType, TrueIsGreater) {
    EXPECT_EQ(compared("true", "false"), 1);
    EXPECT_EQ(compared("false", "true"), -1);
    EXPECT_EQ(compared("true", "true"), 0);
    EXPECT_EQ(compared("false", "false"), 0);
    EXPECT_EQ(compared("true", "TRUE"), 1);
    EXPECT_EQ(compared("1", "true"), -1);
    EXPECT_EQ(compared("TRUE", "false"), 0); // neither is exactly "true"
}

// Any number but 0 is true, and reads back as the number it was.
TEST(BoolType, ConvertsLongs) {
    for (long const number : {0L, 1L, 2L, -1L, 2147483647L, -2147483647L - 1}) {
        EXPECT_EQ(zor_dataTypeValidateInt(boolType(), number), 1) << number;
        TypedValue value(boolType(), number);
        EXPECT_EQ(value.text(), number ? "true" : "false") << number;
        EXPECT_EQ(value.asLong(), number);
        value.set("false");
        value.set(number);
        EXPECT_EQ(value.asLong(), number);
    }
}

TEST(BoolType, ConvertsUnsignedLongs) {
    for (unsigned long const number : {0UL, 1UL, 2UL, 2147483648UL, 4294967295UL}) {
        EXPECT_EQ(zor_dataTypeValidateUInt(boolType(), number), 1) << number;
        TypedValue value(boolType(), number);
        EXPECT_EQ(value.text(), number ? "true" : "false") << number;
        EXPECT_EQ(value.asULong(), number);
        value.set("false");
        value.set(number);
        EXPECT_EQ(value.asULong(), number);
    }
}

// A number read through the other host kind converts as 32-bit two's complement.
TEST(BoolType, ReadsThroughTheOtherHostKindIn32Bits) {
    TypedValue value(boolType(), 4294967295UL);
    EXPECT_EQ(value.asLong(), -1L);
    value.set(2147483648UL);
    EXPECT_EQ(value.asLong(), -2147483647L - 1);
    value.set(2147483647UL);
    EXPECT_EQ(value.asLong(), 2147483647L);
    value.set(-1L);
    EXPECT_EQ(value.asULong(), 4294967295UL);
    value.set(-2147483647L - 1);
    EXPECT_EQ(value.asULong(), 2147483648UL);
    EXPECT_EQ(value.text(), "true");
    TypedValue const negative(boolType(), -2L);
    EXPECT_EQ(TypedValue(negative).asULong(), 4294967294UL);
}

// Host numbers compare as false and true: all numbers but 0 are equal.
TEST(BoolType, ComparesHostNumbers) {
    EXPECT_EQ(zor_dataTypeCompareInt(boolType(), 0, 5), -1);
    EXPECT_EQ(zor_dataTypeCompareInt(boolType(), -5, 0), 1);
    EXPECT_EQ(zor_dataTypeCompareInt(boolType(), -5, 7), 0);
    EXPECT_EQ(zor_dataTypeCompareInt(boolType(), 0, 0), 0);
    EXPECT_EQ(zor_dataTypeCompareUInt(boolType(), 0, 4294967295UL), -1);
    EXPECT_EQ(zor_dataTypeCompareUInt(boolType(), 1, 0), 1);
    EXPECT_EQ(zor_dataTypeCompareUInt(boolType(), 1, 4294967295UL), 0);
    EXPECT_EQ(zor_dataTypeCompareUInt(boolType(), 0, 0), 0);
}

#if LONG_MAX > 2147483647
// Values are 32 bits wide; a wider number is not cut, which could make it false.
TEST(BoolType, RefusesHostNumbersBeyond32Bits) {
    for (long const number : {2147483648L, -2147483649L, 4294967295L, 4294967296L, LONG_MIN}) {
        EXPECT_EQ(zor_dataTypeValidateInt(boolType(), number), 0) << number;
    }
    for (unsigned long const number : {4294967296UL, 8589934592UL, ULONG_MAX}) {
        EXPECT_EQ(zor_dataTypeValidateUInt(boolType(), number), 0) << number;
    }
}
#endif
