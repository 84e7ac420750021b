// Ranges: host numbers, ranges over ranges, copies, export.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <climits>
#include <limits>
#include <string>
#include <vector>

#include "tests/support/allocations.h"
#include "tests/support/text.h"
#include "tests/types/foreign_locale.h"
#include "tests/types/range.h"
#include "tests/types/recording_writer.h"
#include "types/range_params.h"
#include "zor/types.h"

namespace {

ZorDataType* builtIn(char const* name) { return ZorBuiltIn::getDataType(name); }

std::vector<std::string> exported(ZorDataType* type) {
    RecordingWriter writer;
    zor_dataTypeExportXML(&writer, type);
    return writer.writes;
}

using Writes = std::vector<std::string>;

} // namespace

TEST(RangeHost, OverIntTakesLongsOnly) {
    Range const range(builtIn("int"), "r", "1", "10");
    EXPECT_TRUE(range.acceptsInt(1));
    EXPECT_TRUE(range.acceptsInt(5));
    EXPECT_TRUE(range.acceptsInt(10));
    EXPECT_FALSE(range.acceptsInt(0));
    EXPECT_FALSE(range.acceptsInt(11));
    EXPECT_FALSE(range.acceptsInt(-5));
    EXPECT_FALSE(range.acceptsUInt(5));
    EXPECT_FALSE(range.acceptsFloat(5));
}

TEST(RangeHost, OverUIntTakesUnsignedLongsOnly) {
    Range const range(builtIn("uint"), "r", "5", "4294967295");
    EXPECT_TRUE(range.acceptsUInt(5));
    EXPECT_TRUE(range.acceptsUInt(4294967295UL));
    EXPECT_TRUE(range.acceptsUInt(2147483648UL));
    EXPECT_FALSE(range.acceptsUInt(4));
    EXPECT_FALSE(range.acceptsInt(5));
    EXPECT_FALSE(range.acceptsFloat(5));
}

TEST(RangeHost, OverFloatTakesDoublesOnly) {
    Range const range(builtIn("float"), "r", "-0.5", "1e1");
    long const before = liveBlocks();
    EXPECT_TRUE(range.acceptsFloat(-0.5));
    EXPECT_TRUE(range.acceptsFloat(10));
    EXPECT_TRUE(range.acceptsFloat(0.25));
    EXPECT_FALSE(range.acceptsFloat(-0.5000001));
    EXPECT_FALSE(range.acceptsFloat(10.000001));
    EXPECT_FALSE(range.acceptsFloat(std::numeric_limits<double>::infinity()));
    EXPECT_FALSE(range.acceptsInt(1));
    EXPECT_FALSE(range.acceptsUInt(1));
    EXPECT_EQ(liveBlocks(), before) << "reading the bounds leaves memory";
}

// What is no number is neither below nor above a bound.
TEST(RangeHost, NotANumberLiesWithinEveryRange) {
    Range const range(builtIn("float"), "r", "1", "2");
    EXPECT_TRUE(range.acceptsFloat(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_TRUE(range.accepts("nan"));
}

TEST(RangeHost, OverStringTakesNone) {
    Range const range(builtIn("string"), "r", "1", "9");
    EXPECT_FALSE(range.acceptsInt(5));
    EXPECT_FALSE(range.acceptsUInt(5));
    EXPECT_FALSE(range.acceptsFloat(5));
}

// The bounds are read as the host kind's own numbers, whatever the base: "false" and "true" are
// both 0 then, and of an address its first number.
TEST(RangeHost, ReadsTheBoundsAsNumbers) {
    Range const onOff(builtIn("bool"), "r", "false", "true");
    EXPECT_TRUE(onOff.acceptsInt(0));
    EXPECT_FALSE(onOff.acceptsInt(1));
    EXPECT_FALSE(onOff.acceptsInt(-1));
    EXPECT_TRUE(onOff.acceptsUInt(0));
    EXPECT_FALSE(onOff.acceptsUInt(1));
    EXPECT_FALSE(onOff.acceptsFloat(0));

    Range const addresses(builtIn("ip_address"), "r", "10.0.0.1", "12.0.0.9");
    EXPECT_TRUE(addresses.acceptsUInt(10));
    EXPECT_TRUE(addresses.acceptsUInt(12));
    EXPECT_FALSE(addresses.acceptsUInt(9));
    EXPECT_FALSE(addresses.acceptsUInt(13));
    EXPECT_FALSE(addresses.acceptsUInt(0x0A000005UL));
    EXPECT_FALSE(addresses.acceptsInt(10));

    Range const masks(builtIn("ip_mask"), "r", "0.0.0.0", "255.255.255.0");
    EXPECT_TRUE(masks.acceptsUInt(0));
    EXPECT_FALSE(masks.acceptsUInt(100)) << "within 0 to 255, but no mask";
    EXPECT_FALSE(masks.acceptsUInt(0xFF000000UL)) << "a mask, but beyond 255";
}

// What follows the number in a bound of a base without validation is ignored.
TEST(RangeHost, BoundOutOfRangeIsTheNearest) {
    ZorDataType* const base =
        zor_derivedTypeMake("free", nullptr, nullptr, nullptr, builtIn("int")->compareFn, nullptr,
                            builtIn("int"), nullptr);
    for (ZorExternalDataType const ext : {zorExtLong, zorExtULong}) {
        ZorExtTypeFuncs const& from = builtIn(ext == zorExtLong ? "int" : "uint")->extFuncs[ext];
        zor_dataTypeSetConversionFuncs(base, ext, from.toInternal, from.setInternal,
                                       from.getExternal, from.validate, from.compare);
    }
    {
        Range const range(base, "r", "-99999999999", "99999999999");
        EXPECT_TRUE(range.acceptsInt(2147483647L));
        EXPECT_TRUE(range.acceptsInt(-2147483647L - 1));
        // As unsigned numbers both bounds are beyond 32 bits, and so both the largest one.
        EXPECT_TRUE(range.acceptsUInt(4294967295UL));
        EXPECT_FALSE(range.acceptsUInt(4294967294UL));
    }
    {
        Range const range(base, "r", "1 to start with", "3rd");
        EXPECT_FALSE(range.acceptsInt(0));
        EXPECT_TRUE(range.acceptsInt(1));
        EXPECT_TRUE(range.acceptsUInt(3));
        EXPECT_FALSE(range.acceptsUInt(4));
    }
    delete base;
}

#if LONG_MAX > 2147483647
// Values are 32 bits wide; a wider number is not cut, even when its low bits would do.
TEST(RangeHost, RefusesNumbersBeyond32Bits) {
    Range const ints(builtIn("int"), "r", "-2147483648", "2147483647");
    for (long const number : {2147483648L, -2147483649L, 4294967301L, LONG_MAX, LONG_MIN}) {
        EXPECT_FALSE(ints.acceptsInt(number)) << number;
    }
    Range const uints(builtIn("uint"), "r", "0", "4294967295");
    for (unsigned long const number : {4294967296UL, 4294967301UL, ULONG_MAX}) {
        EXPECT_FALSE(uints.acceptsUInt(number)) << number;
    }
}
#endif

// Only the validation of host numbers is the range's own; everything else is its base's.
TEST(RangeHost, TakesConversionsOfItsBase) {
    for (char const* const name : {"int", "uint", "bool", "float", "string"}) {
        ZorDataType const* const base = builtIn(name);
        char const* const bound = name == std::string("bool") ? "true" : "1";
        Range const range(builtIn(name), "r", bound, bound);
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(range->extFuncs[i].toInternal, base->extFuncs[i].toInternal) << name << i;
            EXPECT_EQ(range->extFuncs[i].setInternal, base->extFuncs[i].setInternal) << name << i;
            EXPECT_EQ(range->extFuncs[i].getExternal, base->extFuncs[i].getExternal) << name << i;
            EXPECT_EQ(range->extFuncs[i].compare, base->extFuncs[i].compare) << name << i;
            EXPECT_NE(range->extFuncs[i].validate, base->extFuncs[i].validate) << name << i;
            EXPECT_NE(range->extFuncs[i].validate, nullptr) << name << i;
        }
    }
    EXPECT_EQ(zor_dataTypeCompareInt(Range(builtIn("int"), "r", "1", "9"), 2, 1), 1);
}

TEST(RangeHost, DoesNotDependOnTheLocale) {
    ForeignLocale const locale;
    ASSERT_TRUE(locale.isInForce()) << locale.problem();
    Range const range(builtIn("float"), "r", "0.5", "0.75");
    EXPECT_TRUE(range.accepts("0.625"));
    EXPECT_FALSE(range.accepts("0.4"));
    EXPECT_TRUE(range.acceptsFloat(0.5));
    EXPECT_FALSE(range.acceptsFloat(0.25));
    EXPECT_EQ(taken(zor_dataTypeDefault(range)), "0.5");
}

// A range may restrict a range: a value has to lie in both.
TEST(RangeOverRange, AcceptsWhatBothAccept) {
    Range const wide(builtIn("int"), "wide", "0", "100");
    Range const narrow(wide, "narrow", "10", "20");
    EXPECT_EQ(zor_rangeBaseType(narrow), wide.get());
    EXPECT_TRUE(narrow.accepts("10"));
    EXPECT_TRUE(narrow.accepts("20"));
    EXPECT_FALSE(narrow.accepts("9"));
    EXPECT_FALSE(narrow.accepts("21"));
    EXPECT_TRUE(narrow.acceptsInt(15));
    EXPECT_FALSE(narrow.acceptsInt(50));
    EXPECT_FALSE(narrow.acceptsUInt(15));
    EXPECT_EQ(taken(zor_dataTypeDefault(narrow)), "10");

    // A third one, and one over another kind of number.
    Range const third(narrow, "third", "12", "12");
    EXPECT_TRUE(third.acceptsInt(12));
    EXPECT_FALSE(third.acceptsInt(13));
    Range const share(builtIn("float"), "share", "0", "1");
    Range const half(share, "half", "0", "0.5");
    EXPECT_TRUE(half.acceptsFloat(0.5));
    EXPECT_FALSE(half.acceptsFloat(0.75));
}

// A base that compares host numbers in its own way is asked, on both sides of both bounds.
TEST(RangeHost, ABaseThatComparesItselfIsAsked) {
    std::unique_ptr<ZorDataType> const base(zor_derivedTypeMake("parts", "0", nullptr, nullptr,
                                                                builtIn("uint")->compareFn, nullptr,
                                                                builtIn("uint"), nullptr));
    ZorExtTypeFuncs const& plain = builtIn("uint")->extFuncs[zorExtULong];
    zor_dataTypeSetConversionFuncs(base.get(), zorExtULong, plain.toInternal, plain.setInternal,
                                   plain.getExternal, plain.validate,
                                   [](void*, u_zorItemValue a, u_zorItemValue b) {
                                       return int(a.uintValue / 10) - int(b.uintValue / 10);
                                   });
    Range const tens(base.get(), "tens", "25", "44");
    for (unsigned long const number : {20UL, 49UL}) EXPECT_TRUE(tens.acceptsUInt(number));
    for (unsigned long const number : {19UL, 50UL}) EXPECT_FALSE(tens.acceptsUInt(number));
}

TEST(RangeOverRange, ExportsTheNameOfItsBase) {
    Range const wide(builtIn("int"), "wide", "0", "100");
    Range const narrow(wide, "narrow", "10", "20");
    EXPECT_EQ(exported(narrow),
              Writes{"<range name=\"narrow\" baseType=\"wide\" minValue=\"10\" maxValue=\"20\"/>"});
}

TEST(RangeParams, FieldsStandInTheDeclaredOrder) {
    Range const range(builtIn("int"), "r", "1", "2");
    auto const* const params = static_cast<RangeParams const*>(range->userData);
    EXPECT_LT(static_cast<void const*>(&params->baseType),
              static_cast<void const*>(&params->minValue));
    EXPECT_LT(static_cast<void const*>(&params->minValue),
              static_cast<void const*>(&params->maxValue));
}

// Destruction releases the bounds that are there. (In a process of its own, because a null bound
// could end it.)
TEST(RangeParams, DestructionSkipsMissingBounds) {
    pid_t const child = fork();
    if (child == 0) {
        auto* const params = new RangeParams(nullptr, "1", "2");
        params->minValue->removeRef();
        params->maxValue->removeRef();
        params->minValue = nullptr;
        params->maxValue = nullptr;
        delete params;
        _exit(0);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST(RangeParams, ReleasingNoneDoesNothing) {
    Range const range(builtIn("int"), "r", "1", "2");
    long const before = liveBlocks();
    range->freeUserDataFn(nullptr);
    EXPECT_EQ(liveBlocks(), before);
}

TEST(RangeCopy, HasParametersOfItsOwn) {
    ZorDataType* const source = zor_rangeMake(builtIn("int"), "r", "1", "10");
    Range const copy(new ZorDataType(source));
    EXPECT_NE(copy->userData, source->userData);
    delete source;
    EXPECT_NE(zor_datatypeIsRange(copy), 0);
    EXPECT_TRUE(copy.accepts("10"));
    EXPECT_FALSE(copy.accepts("11"));
    EXPECT_TRUE(copy.acceptsInt(1));
    EXPECT_FALSE(copy.acceptsInt(0));
    EXPECT_EQ(taken(zor_dataTypeDefault(copy)), "1");
    EXPECT_EQ(zor_rangeBaseType(copy), builtIn("int"));
    EXPECT_EQ(exported(copy),
              Writes{"<range name=\"r\" baseType=\"int\" minValue=\"1\" maxValue=\"10\"/>"});
}

TEST(RangeCopy, SharesTheBoundStrings) {
    Text const min("000000000000000000000001");
    Text const max("000000000000000000000010");
    ZorString* const strings[] = {min, max};
    {
        Range const source(builtIn("int"), "r", strings[0], strings[1]);
        {
            Range const copy(new ZorDataType(source));
            for (ZorString const* const string : strings) EXPECT_EQ(string->refCount, 3);
        }
        for (ZorString const* const string : strings) EXPECT_EQ(string->refCount, 2);
    }
    for (ZorString const* const string : strings) EXPECT_EQ(string->refCount, 1);
}

// The default of a copy is the lower bound's value, a double of its own for "float".
TEST(RangeCopy, HasADefaultOfItsOwn) {
    Range const source(builtIn("float"), "r", "0.5", "1");
    Range const copy(new ZorDataType(source));
    EXPECT_NE(copy->defaultValue.floatValue, source->defaultValue.floatValue);
    EXPECT_EQ(*copy->defaultValue.floatValue, 0.5);
}

TEST(RangeExport, IsOneWrite) {
    EXPECT_EQ(exported(Range(builtIn("int"), "r", "1", "10")),
              Writes{"<range name=\"r\" baseType=\"int\" minValue=\"1\" maxValue=\"10\"/>"});
}

// Bounds are written as they were given, not as their values read.
TEST(RangeExport, KeepsTheTextOfTheBounds) {
    EXPECT_EQ(exported(Range(builtIn("int"), "r", "+01", "0010")),
              Writes{"<range name=\"r\" baseType=\"int\" minValue=\"+01\" maxValue=\"0010\"/>"});
}

TEST(RangeExport, EscapesNothing) {
    EXPECT_EQ(exported(Range(builtIn("string"), "a&b", "\"%s", "<x>")),
              Writes{"<range name=\"a&b\" baseType=\"string\" minValue=\"\"%s\" "
                     "maxValue=\"<x>\"/>"});
}

// No length limits the line, nor does it change the number of writes.
TEST(RangeExport, WritesLongTextsWhole) {
    for (std::size_t const length : {130U, 199U, 200U, 201U, 5000U}) {
        std::string const name(length, 'n');
        std::string const min(length, 'a');
        std::string const max(length, 'b');
        std::string expected = "<range name=\"";
        expected += name;
        expected += "\" baseType=\"string\" minValue=\"";
        expected += min;
        expected += "\" maxValue=\"";
        expected += max;
        expected += "\"/>";
        EXPECT_EQ(exported(Range(builtIn("string"), name.c_str(), min.c_str(), max.c_str())),
                  Writes{expected});
    }
}
