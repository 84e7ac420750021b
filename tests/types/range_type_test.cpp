// Ranges: what they accept, what they are made of, and why none is made.

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/support/allocations.h"
#include "tests/support/incidents.h"
#include "tests/support/text.h"
#include "tests/types/call_log.h"
#include "tests/types/range.h"
#include "types/range_params.h"
#include "zor/types.h"

namespace {

char tag[] = "tag";

ZorDataType* builtIn(char const* name) { return ZorBuiltIn::getDataType(name); }

// What making a range reports, which makes none.
std::string refusal(ZorDataType* base, void const* name, void const* min, void const* max) {
    IncidentLog log;
    long const before = liveBlocks();
    EXPECT_EQ(zor_rangeMake(base, name, min, max), nullptr);
    std::string said = log.take();
    long const ofTheMessage = liveBlocks() - before;
    EXPECT_EQ(ofTheMessage, said.capacity() > 15 ? 1 : 0) << "a refused range leaves memory";
    return said;
}

int neverValid(void*, char const*) { return 0; }

} // namespace

TEST(Range, AcceptsTextsFromMinToMax) {
    struct {
        char const* base;
        char const* min;
        char const* max;
        std::vector<char const*> valid;
        std::vector<char const*> invalid;
    } const table[] = {
        {"int", "1", "10", {"1", "10", "5", "+5", "0010"}, {"0", "11", "x", "", "5 ", "-1"}},
        {"int", "-5", "-1", {"-5", "-1", "-3"}, {"-6", "0", "3"}},
        {"int",
         "-2147483648",
         "2147483647",
         {"-2147483648", "2147483647", "0"},
         {"2147483648", "-2147483649"}},
        {"uint", "1", "4294967295", {"1", "4294967295", "2147483648"}, {"0", "4294967296", "-1"}},
        {"bool", "false", "true", {"false", "true"}, {"TRUE", "1", ""}},
        {"bool", "true", "true", {"true"}, {"false", "TRUE"}},
        {"float", "-0.5", "1.5", {"-0.5", "1.5", "0", "1.50", "1e0", ""}, {"1.51", "-1", "abc"}},
        {"string", "b", "d", {"b", "c", "cz", "d"}, {"a", "e", "", "dd", "B"}},
        {"string", "", "b", {"", "a", "b", "A"}, {"c", "ba"}},
        {"ip_address",
         "10.0.0.1",
         "10.0.0.9",
         {"10.0.0.1", "10.0.0.9", "010.0.0.5"},
         {"10.0.0.0", "10.0.0.10", "9.0.0.5", "10.0.0"}},
        {"ip_mask",
         "255.0.0.0",
         "255.255.255.0",
         {"255.0.0.0", "255.255.0.0", "255.255.255.0"},
         {"254.0.0.0", "255.255.255.128", "255.0.255.0", "0.0.0.0"}},
    };
    for (auto const& row : table) {
        Range const range(builtIn(row.base), "r", row.min, row.max);
        std::string const what = std::string(row.base) + ' ' + row.min + ".." + row.max + ": ";
        for (char const* const text : row.valid) EXPECT_TRUE(range.accepts(text)) << what << text;
        for (char const* const text : row.invalid) {
            EXPECT_FALSE(range.accepts(text)) << what << text;
        }
    }
}

TEST(Range, OfEqualBoundsHasOneValue) {
    Range const range(builtIn("int"), "r", "7", "+07");
    EXPECT_TRUE(range.accepts("7"));
    EXPECT_FALSE(range.accepts("6"));
    EXPECT_FALSE(range.accepts("8"));
}

TEST(Range, IsARangeAndNoChoice) {
    Range const range(builtIn("int"), "r", "1", "10");
    EXPECT_STREQ(zor_dataTypeName(range), "r");
    EXPECT_NE(zor_datatypeIsRange(range), 0);
    EXPECT_EQ(zor_datatypeIsChoice(range), 0);
}

// Bounds are kept as they were written.
TEST(Range, AnswersItsBoundsAndBase) {
    Range const range(builtIn("int"), "r", "+01", "0010");
    EXPECT_STREQ(zor_rangeMin(range), "+01");
    EXPECT_STREQ(zor_rangeMax(range), "0010");
    EXPECT_EQ(zor_rangeBaseType(range), builtIn("int"));
}

TEST(Range, OtherTypesHaveNoBounds) {
    ZorDataType* const choice = zor_choiceMake("c");
    zor_choiceAddOption(choice, "a");
    ZorDataType* const derived = zor_derivedTypeMake("d", nullptr, nullptr, nullptr, nullptr,
                                                     nullptr, builtIn("int"), nullptr);
    for (ZorDataType* const type : {builtIn("int"), choice, derived}) {
        EXPECT_EQ(zor_rangeMin(type), nullptr) << zor_dataTypeName(type);
        EXPECT_EQ(zor_rangeMax(type), nullptr) << zor_dataTypeName(type);
        EXPECT_EQ(zor_rangeBaseType(type), nullptr) << zor_dataTypeName(type);
    }
    delete choice;
    delete derived;
}

// The default is the lower bound, in the base's text form.
TEST(Range, DefaultIsTheLowerBound) {
    struct {
        char const* base;
        char const* min;
        char const* max;
        char const* expected;
    } constexpr kTable[] = {
        {"int", "1", "10", "1"},
        {"int", "+007", "10", "7"},
        {"uint", "3", "3", "3"},
        {"bool", "false", "true", "false"},
        {"float", "0.50", "1", "0.5"},
        {"string", "b", "d", "b"},
        {"string", "", "d", ""},
        {"ip_address", "010.0.0.1", "10.0.0.2", "10.0.0.1"},
        {"ip_mask", "0.0.0.0", "255.0.0.0", "0.0.0.0"},
    };
    for (auto const& row : kTable) {
        Range const range(builtIn(row.base), "r", row.min, row.max);
        EXPECT_EQ(taken(zor_dataTypeDefault(range)), row.expected) << row.base;
    }
}

TEST(Range, TakesValueFunctionsAndComparisonOfItsBase) {
    for (char const* const name : {"string", "int", "uint", "bool", "float", "ip_address"}) {
        ZorDataType const* const base = builtIn(name);
        Text const bound(name == std::string("bool")         ? "true"
                         : name == std::string("ip_address") ? "1.2.3.4"
                                                             : "1");
        Range const range(builtIn(name), "r", static_cast<ZorString*>(bound),
                          static_cast<ZorString*>(bound));
        EXPECT_EQ(range->fromStringFn, base->fromStringFn) << name;
        EXPECT_EQ(range->copyValueFn, base->copyValueFn) << name;
        EXPECT_EQ(range->freeValueFn, base->freeValueFn) << name;
        EXPECT_EQ(range->setFromStringFn, base->setFromStringFn) << name;
        EXPECT_EQ(range->toStringFn, base->toStringFn) << name;
        EXPECT_EQ(range->compareFn, base->compareFn) << name;
    }
    Range const range(builtIn("int"), "r", "1", "10");
    EXPECT_EQ(zor_dataTypeCompare(range, "2", "10"), -1);
}

// The base's comparison is called with the range's own user data from then on; the bounds were
// compared with the base's.
TEST(Range, ComparesWithItsOwnUserData) {
    CallLog calls;
    ZorDataType* const base = makeProbe("base", nullptr, tag);
    {
        Range const range(base, "r", "1", "5");
        EXPECT_EQ(calls.take(), "compare tag 1 5;validate tag 1;validate tag 5;fromString 1;");
        EXPECT_EQ(range->compareFn, probe::compare);
        EXPECT_TRUE(range.accepts("3"));
        EXPECT_EQ(calls.take(), "validate tag 3;compare tag 3 1;compare tag 3 5;");
    }
    EXPECT_EQ(calls.take(), "freeValue 1;");
    delete base;
}

TEST(Range, SharesNameAndBoundsGivenAsStrings) {
    Text const name("a range's name");
    Text const min("00000000000000000000001");
    Text const max("00000000000000000000009");
    ZorString* const strings[] = {name, min, max};
    {
        Range const range(builtIn("int"), strings[0], strings[1], strings[2]);
        for (ZorString const* const string : strings) EXPECT_EQ(string->refCount, 2);
        EXPECT_EQ(range->name, strings[0]);
        EXPECT_EQ(zor_rangeMin(range), zor_stringValue(strings[1]));
        EXPECT_EQ(zor_rangeMax(range), zor_stringValue(strings[2]));
    }
    for (ZorString const* const string : strings) EXPECT_EQ(string->refCount, 1);
}

TEST(Range, CopiesBoundsGivenAsTexts) {
    char min[] = "1";
    char max[] = "9";
    Range const range(builtIn("int"), "r", min, max);
    min[0] = max[0] = 'X';
    EXPECT_STREQ(zor_rangeMin(range), "1");
    EXPECT_STREQ(zor_rangeMax(range), "9");
}

// A bound whose first byte is 0xFF is text, not a string object.
// Who takes a bound out leaves null, which is released by nobody.
TEST(Range, ReleasesTheBoundsThatAreThere) {
    Text const low("the lower bound, longer than a local buffer");
    Text const high("the upper bound, longer than a local buffer");
    {
        RangeParams params(builtIn("string"), static_cast<ZorString*>(low),
                           static_cast<ZorString*>(high));
        EXPECT_EQ(static_cast<ZorString*>(low)->refCount, 2);
        std::exchange(params.minValue, nullptr)->removeRef();
        RangeParams other(builtIn("string"), static_cast<ZorString*>(low),
                          static_cast<ZorString*>(high));
        std::exchange(other.maxValue, nullptr)->removeRef();
        EXPECT_EQ(static_cast<ZorString*>(low)->refCount, 2);
        EXPECT_EQ(static_cast<ZorString*>(high)->refCount, 2);
    }
    EXPECT_EQ(static_cast<ZorString*>(low)->refCount, 1);
    EXPECT_EQ(static_cast<ZorString*>(high)->refCount, 1);
}

TEST(Range, BoundsMayBeginWithTheMarkerByte) {
    Text const min("\xFF");
    Text const max("\xFF\x05");
    Text const inside("\xFF\x03");
    Text const above("\xFF\x06");
    Range const range(builtIn("string"), "r", static_cast<ZorString*>(min),
                      static_cast<ZorString*>(max));
    EXPECT_EQ(taken(zor_dataTypeDefault(range)), "\xFF");
    Range const copy(new ZorDataType(range));
    for (ZorDataType* const type : {range.get(), copy.get()}) {
        EXPECT_NE(zor_dataTypeValidate(type, static_cast<ZorString*>(min)), 0);
        EXPECT_NE(zor_dataTypeValidate(type, static_cast<ZorString*>(inside)), 0);
        EXPECT_NE(zor_dataTypeValidate(type, static_cast<ZorString*>(max)), 0);
        EXPECT_EQ(zor_dataTypeValidate(type, static_cast<ZorString*>(above)), 0);
        EXPECT_EQ(zor_dataTypeValidate(type, "z"), 0);
    }
}

TEST(Range, NullBoundsAreEmptyOnes) {
    Range const range(builtIn("string"), nullptr, nullptr, nullptr);
    EXPECT_STREQ(zor_dataTypeName(range), "");
    EXPECT_STREQ(zor_rangeMin(range), "");
    EXPECT_TRUE(range.accepts(""));
    EXPECT_FALSE(range.accepts("a"));
    EXPECT_EQ(refusal(builtIn("int"), nullptr, nullptr, "5"),
              "3 zor_rangeMake(): min value () is not valid\n");
}

TEST(RangeRefusal, BaseWithoutOrder) {
    for (char const* const name : {"digit_string", "domain_name", "url"}) {
        EXPECT_EQ(refusal(builtIn(name), "r", "1", "2"),
                  std::string("3 zor_rangeMake(r): baseType (") + name +
                      ") is not suitable for a range\n");
    }
    ZorDataType* const choice = zor_choiceMake("mode");
    zor_choiceAddOption(choice, "1");
    EXPECT_EQ(refusal(choice, "r", "1", "1"),
              "3 zor_rangeMake(r): baseType (mode) is not suitable for a range\n");
    delete choice;
    ZorDataType* const derived = zor_derivedTypeMake("plain", nullptr, nullptr, nullptr, nullptr,
                                                     nullptr, builtIn("int"), nullptr);
    EXPECT_EQ(refusal(derived, "r", "1", "2"),
              "3 zor_rangeMake(r): baseType (plain) is not suitable for a range\n");
    delete derived;
}

TEST(RangeRefusal, MaxBelowMin) {
    char const* const expected =
        "3 zor_rangeMake(r): max value must be greater than or equal to min value\n";
    EXPECT_EQ(refusal(builtIn("int"), "r", "10", "1"), expected);
    EXPECT_EQ(refusal(builtIn("string"), "r", "b", "a"), expected);
    EXPECT_EQ(refusal(builtIn("bool"), "r", "true", "false"), expected);
    EXPECT_EQ(refusal(builtIn("float"), "r", "1.5", "1.49"), expected);
    EXPECT_EQ(refusal(builtIn("ip_address"), "r", "10.0.0.1", "9.0.0.1"), expected);
}

TEST(RangeRefusal, MinNotValid) {
    EXPECT_EQ(refusal(builtIn("int"), "r", "x", "5"),
              "3 zor_rangeMake(r): min value (x) is not valid\n");
    EXPECT_EQ(refusal(builtIn("int"), "r", "", "5"),
              "3 zor_rangeMake(r): min value () is not valid\n");
    EXPECT_EQ(refusal(builtIn("ip_mask"), "r", "0.0.0.1", "255.0.0.0"),
              "3 zor_rangeMake(r): min value (0.0.0.1) is not valid\n");
}

TEST(RangeRefusal, MaxNotValid) {
    EXPECT_EQ(refusal(builtIn("int"), "r", "-1", "5x"),
              "3 zor_rangeMake(r): max value (5x) is not valid\n");
    EXPECT_EQ(refusal(builtIn("uint"), "r", "5", "4294967296"),
              "3 zor_rangeMake(r): max value (4294967296) is not valid\n");
    EXPECT_EQ(refusal(builtIn("bool"), "r", "false", "TRUE"),
              "3 zor_rangeMake(r): max value (TRUE) is not valid\n");
}

// One refusal only: base before order, order before min, min before max.
TEST(RangeRefusal, ReportsTheFirstFault) {
    EXPECT_EQ(refusal(builtIn("url"), "r", "2", "1"),
              "3 zor_rangeMake(r): baseType (url) is not suitable for a range\n");
    // "-1" reads as 4294967295 before anybody finds it not valid.
    EXPECT_EQ(refusal(builtIn("uint"), "r", "-1", "5"),
              "3 zor_rangeMake(r): max value must be greater than or equal to min value\n");
    EXPECT_EQ(refusal(builtIn("int"), "r", "1", "x"),
              "3 zor_rangeMake(r): max value must be greater than or equal to min value\n");
    EXPECT_EQ(refusal(builtIn("int"), "r", "x", "y"),
              "3 zor_rangeMake(r): min value (x) is not valid\n");
}

TEST(RangeRefusal, NamesWhatIsGivenAsStrings) {
    Text const name("volume");
    Text const min("low");
    Text const max("\xFFhigh");
    EXPECT_EQ(
        refusal(builtIn("int"), static_cast<ZorString*>(name), static_cast<ZorString*>(min), "7"),
        "3 zor_rangeMake(volume): min value (low) is not valid\n");
    EXPECT_EQ(
        refusal(builtIn("int"), static_cast<ZorString*>(name), "-7", static_cast<ZorString*>(max)),
        "3 zor_rangeMake(volume): max value (\xFFhigh) is not valid\n");
    for (ZorString const* const string :
         {name.operator ZorString*(), min.operator ZorString*(), max.operator ZorString*()}) {
        EXPECT_EQ(string->refCount, 1);
    }
}

// Without validation in the base any bounds in order will do.
TEST(RangeRefusal, BaseWithoutValidationTakesAnyBounds) {
    ZorDataType* const base =
        zor_derivedTypeMake("free", nullptr, nullptr, nullptr, builtIn("int")->compareFn, nullptr,
                            builtIn("int"), nullptr);
    {
        Range const range(base, "r", "x", "5y");
        EXPECT_TRUE(range.accepts("anything")); // reads as 0
        EXPECT_TRUE(range.accepts("5"));
        EXPECT_FALSE(range.accepts("6"));
        EXPECT_FALSE(range.accepts("-1"));
    }
    base->validateFn = neverValid;
    EXPECT_EQ(refusal(base, "r", "1", "2"), "3 zor_rangeMake(r): min value (1) is not valid\n");
    delete base;
}
