// "float".

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "tests/support/allocations.h"
#include "tests/support/text.h"
#include "tests/types/foreign_locale.h"
#include "tests/types/typed_value.h"
#include "zor/types.h"

namespace {

ZorDataType* floatType() { return ZorBuiltIn::getDataType("float"); }

int compared(char const* a, char const* b) { return zor_dataTypeCompare(floatType(), a, b); }

} // namespace

// Only a text that begins with something else than a number is refused: nothing at all and blanks
// are accepted, and so is what follows a number.
TEST(FloatType, ValidatesTexts) {
    for (char const* const text : {"0",     "1",      "-1.5",
                                   "+2",    ".5",     "5.",
                                   "1e5",   "1E-5",   "1.5xyz",
                                   "1,5",   " 7",     "7 ",
                                   "",      " ",      "   \t\n",
                                   "0x1F",  "inf",    "nan",
                                   "1e999", "1e-999", "123456789012345678901234567890"}) {
        EXPECT_NE(zor_dataTypeValidate(floatType(), text), 0) << '"' << text << '"';
    }
    for (char const* const text :
         {"abc", "x1.5", "-", "+", ".", "-.", "e5", "--1", "+-1", ",5", "  abc", "true", "$1"}) {
        EXPECT_EQ(zor_dataTypeValidate(floatType(), text), 0) << '"' << text << '"';
    }
    EXPECT_NE(zor_dataTypeValidate(floatType(), static_cast<ZorString*>(Text("2.5"))), 0);
    EXPECT_EQ(zor_dataTypeValidate(floatType(), static_cast<ZorString*>(Text("two"))), 0);
}

TEST(FloatType, ReadsAndWritesTexts) {
    struct {
        char const* text;
        char const* expected;
    } constexpr kTable[] = {
        {"0", "0"},
        {"-0", "-0"},
        {"1.50", "1.5"},
        {"0.1", "0.1"},
        {"1e20", "1e+20"},
        {"1e15", "1e+15"},
        {"1e14", "100000000000000"},
        {"0.0001", "0.0001"},
        {"0.00001", "1e-05"},
        {"1.5xyz", "1.5"},
        {" \t2.5", "2.5"},
        {"123456789012345", "123456789012345"},
        {"1234567890123456", "1.23456789012346e+15"}, // 15 digits
        {"0.3333333333333333333", "0.333333333333333"},
        {"1e999", "inf"},
        {"-1e999", "-inf"},
        {"1e-999", "0"},
        {"nan", "nan"},
        {"0x10", "16"},
        {"1,5", "1"},
        {"", "0"}, // nothing to read: 0
        {"   ", "0"},
        {"abc", "0"},
        {"-", "0"},
    };
    for (auto const& row : kTable) EXPECT_EQ(readBack("float", row.text), row.expected) << row.text;
}

// Every value is a double of its own on the heap, which its type releases.
TEST(FloatType, EveryValueIsADoubleOfItsOwn) {
    floatType();
    long const before = liveBlocks();
    {
        TypedValue const value(floatType(), "2.5");
        EXPECT_EQ(liveBlocks(), before + 1);
        TypedValue const copy(value);
        EXPECT_EQ(liveBlocks(), before + 2);
        EXPECT_NE(copy.value.floatValue, value.value.floatValue);
        EXPECT_EQ(*copy.value.floatValue, 2.5);
    }
    EXPECT_EQ(liveBlocks(), before);
}

// Setting writes into the double that is there and allocates none.
TEST(FloatType, IsSetInPlace) {
    TypedValue value(floatType(), "2.5");
    double const* const place = value.value.floatValue;
    long const before = allocatedBlocks();
    value.set("-4.25");
    EXPECT_EQ(value.value.floatValue, place);
    EXPECT_EQ(*place, -4.25);
    value.set(8.5);
    EXPECT_EQ(value.value.floatValue, place);
    EXPECT_EQ(*place, 8.5);
    value.set("nonsense");
    EXPECT_EQ(value.value.floatValue, place);
    EXPECT_EQ(*place, 0);
    EXPECT_EQ(allocatedBlocks(), before);
}

TEST(FloatType, CopiesAreIndependent) {
    TypedValue value(floatType(), "2.5");
    TypedValue const copy(value);
    value.set("3");
    EXPECT_EQ(copy.text(), "2.5");
    EXPECT_EQ(value.text(), "3");
}

TEST(FloatType, ComparesTextsAsNumbers) {
    EXPECT_EQ(compared("2", "10"), -1);
    EXPECT_EQ(compared("10", "2"), 1);
    EXPECT_EQ(compared("1.50", "1.5"), 0);
    EXPECT_EQ(compared("1e3", "999.5"), 1);
    EXPECT_EQ(compared("-1", "-2"), 1);
    EXPECT_EQ(compared("-0", "0"), 0);
    EXPECT_EQ(compared("-inf", "inf"), -1);
    EXPECT_EQ(compared("abc", "0"), 0);
    EXPECT_EQ(compared("", "1"), -1);
}

// What is no number is neither smaller nor greater than any.
TEST(FloatType, NotANumberComparesAsZero) {
    EXPECT_EQ(compared("nan", "1"), 0);
    EXPECT_EQ(compared("1", "nan"), 0);
    EXPECT_EQ(compared("nan", "nan"), 0);
}

TEST(FloatType, ConvertsDoubles) {
    using Limits = std::numeric_limits<double>;
    for (double const number : {0.0, 1.5, -1.5, 1e300, Limits::max(), Limits::lowest(),
                                Limits::denorm_min(), Limits::infinity()}) {
        EXPECT_EQ(zor_dataTypeValidateFloat(floatType(), number), 1) << number;
        TypedValue const value(floatType(), number);
        EXPECT_EQ(value.asDouble(), number);
    }
    EXPECT_EQ(zor_dataTypeValidateFloat(floatType(), Limits::quiet_NaN()), 1);
    EXPECT_TRUE(std::isnan(TypedValue(floatType(), Limits::quiet_NaN()).asDouble()));
}

// The caller's double is copied, not kept.
TEST(FloatType, KeepsNothingOfTheCallersDouble) {
    double number = 1.5;
    u_zorItemValue value = floatType()->extFuncs[zorExtDouble].toInternal(host(&number));
    EXPECT_NE(value.floatValue, &number);
    number = 9;
    EXPECT_EQ(*value.floatValue, 1.5);
    floatType()->extFuncs[zorExtDouble].setInternal(&value, host(&number));
    EXPECT_NE(value.floatValue, &number);
    EXPECT_EQ(*value.floatValue, 9);
    double out = 0;
    u_zorItemValue external = host(&out);
    floatType()->extFuncs[zorExtDouble].getExternal(value, &external);
    EXPECT_EQ(external.floatValue, &out);
    EXPECT_EQ(out, 9);
    floatType()->freeValueFn(value);
}

TEST(FloatType, ComparesDoubles) {
    EXPECT_EQ(zor_dataTypeCompareFloat(floatType(), 1, 2), -1);
    EXPECT_EQ(zor_dataTypeCompareFloat(floatType(), 2, 1), 1);
    EXPECT_EQ(zor_dataTypeCompareFloat(floatType(), 2, 2), 0);
    EXPECT_EQ(zor_dataTypeCompareFloat(floatType(), 0.1, 0.1000001), -1);
    double const nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(zor_dataTypeCompareFloat(floatType(), nan, 1), 0);
}

// Text forms are the same in every locale of the host.
TEST(FloatType, DoesNotDependOnTheLocale) {
    ForeignLocale const locale;
    ASSERT_TRUE(locale.isInForce()) << locale.problem();
    EXPECT_EQ(readBack("float", "1.5"), "1.5");
    EXPECT_EQ(readBack("float", "1,5"), "1");
    EXPECT_EQ(readBack("float", "INF"), "inf");
    EXPECT_EQ(readBack("float", "1234567.25"), "1234567.25");
    EXPECT_EQ(compared("1.5", "1.25"), 1);
    EXPECT_EQ(zor_dataTypeValidate(floatType(), ",5"), 0);
    EXPECT_NE(zor_dataTypeValidate(floatType(), ".5"), 0);
    TypedValue value(floatType(), "0");
    value.set("0.5");
    EXPECT_EQ(value.asDouble(), 0.5);
}
