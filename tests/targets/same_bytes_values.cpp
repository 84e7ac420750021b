// What types make of texts and numbers.
//
// Numbers beyond 32 bits are given as text only: a host's long has 64 bits on some machines, where
// a number that no 32-bit host can pass is another value.

#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdio>
#include <limits>

#include "tests/support/text.h"
#include "tests/targets/same_bytes.h"

namespace same_bytes {
namespace {

char const* const kTexts[] = {
    "",
    " ",
    "a",
    "B",
    "true",
    "false",
    "TRUE",
    "true ",
    "0",
    "1",
    "-1",
    "+1",
    " 1",
    "1 ",
    "x1",
    "1x",
    // Signed limits, and those of 32 bits; beyond them, in text only.
    "-0",
    "+000",
    "-",
    "+",
    "--1",
    "127",
    "128",
    "-32768",
    "32768",
    "65535",
    "65536",
    "2147483646",
    "2147483647",
    "2147483648",
    "-2147483647",
    "-2147483648",
    "-2147483649",
    "4294967294",
    "4294967295",
    "4294967296",
    "-4294967295",
    "-4294967296",
    "9999999999",
    "9223372036854775807",
    "9223372036854775808",
    "-9223372036854775809",
    "18446744073709551615",
    "18446744073709551616",
    "0000000000002147483647",
    "-0000000000002147483649",
    "0x1F",
    "1e3",
    "1,5",
    "\t\n\v\f\r7",
    "\2407",
    // Addresses and masks.
    "0.0.0.0",
    "0.0.0.1",
    "1.2.3.4",
    "001.002.003.004",
    "127.255.255.255",
    "128.0.0.0",
    "255.255.255.255",
    "255.255.255.254",
    "255.255.0.0",
    "255.0.255.0",
    "254.0.0.0",
    "256.1.1.1",
    "1.2.3",
    "1.2.3.4.5",
    "1.2.3.4x",
    " 1.2.3.4",
    "1.2.3.-4",
    "1..3.4",
    "4294967297.0.0.1",
    "1.2.3.18446744073709551617",
    // Digits, and bytes above 127.
    "+1 #*",
    "12-34",
    "+",
    "++1",
    "*97#",
    "\x80",
    "\xFF",
    "\xC3\xA9",
    "z\xC3\xA9",
    "\xE2\x82\xAC 5",
    "thirty-two characters are inside",
    "thirty-three characters are inside",
};

// Around the bounds of the ranges below, for types that share their text rules with another.
char const* const kFewTexts[] = {
    "",
    "a",
    "1",
    "true",
    "-1",
    "0",
    "-2147483648",
    "-2147483649",
    "2147483647",
    "2147483648",
    "4294967294",
    "4294967295",
    "4294967296",
    "127.255.255.255",
    "128.0.0.0",
    "255.255.255.254",
    "-12.5",
    "0.1",
    "0.10000000000000001",
    "5e-324",
    "0",
    "1e309",
    "z",
    "z\xC3\xA9",
    "\xC3\xA9",
    "\xC3\xAA",
    "\xFF",
    "thirty-two characters are inside",
};

char const* const kFloatTexts[] = {
    "-0.0",
    ".5",
    "5.",
    ".",
    "0.1",
    "-0.1",
    "1e20",
    "1e21",
    "1E-5",
    "1e+5",
    "1e",
    "1e+",
    "100000",
    "1000000",
    "123456789012345",
    "1234567890123456",
    "12345678901234567890",
    "0.30000000000000004",
    "0.1000000000000000055511151231257827",
    "9007199254740993",
    "9007199254740992.5",
    "1e22",
    "1e23",
    "8.5e-5",
    "0.00001",
    "0.0001",
    "1.5xyz",
    "3.4028234663852886e38",
    "1.1754943508222875e-38",
    "1.7976931348623157e308",
    "1.7976931348623159e308",
    "1e309",
    "-1e309",
    "2.2250738585072014e-308",
    "2.2250738585072011e-308",
    "4.9406564584124654e-324",
    "2.4703282292062327e-324",
    "2.4703282292062328e-324",
    "1e-400",
    "inf",
    "-INFINITY",
    "nan",
    "-nan",
    "infinit",
    "0x1.8p1",
    "0x1p-1074",
    "0x1.fffffffffffff8p0",
    "0x1.fffffffffffff7fp0",
    "0xp1",
    "0x.8",
    "0x1p99999",
    "6.02214076e23",
    "2.5e0005",
    "179769313486231570814527423731704356798070567525844996598917476803157",
};

long const kInts[] = {0, 1, -1, 127, 128, 65536, INT_MAX, INT_MIN, INT_MIN + 1};
unsigned long const kUInts[] = {0,          1,          255,        65536,
                                0x7FFFFFFF, 0x80000000, 0xFF000000, 0xFFFFFF00,
                                0xFF00FF00, 0xFFFFFFFE, 0xFFFFFFFF};
double const kDoubles[] = {0.0,         -0.0, 0.1,     -12.5,       12.5,     1.0 / 3.0,
                           1e15,        1e16, DBL_MAX, -DBL_MAX,    DBL_MIN,  5e-324,
                           FLT_EPSILON, 1e-5, 1e100,   123456789.0, INFINITY, -INFINITY};

ZorDataType* builtIn(char const* name) { return ZorBuiltIn::getDataType(name); }

// A host number as it travels, and back as text.
u_zorItemValue external(long number) {
    u_zorItemValue value;
    value.intValue = number;
    return value;
}

std::string textOfDouble(double number) {
    char text[40];
    std::snprintf(text, sizeof text, "%.17g", number);
    return text;
}

// The value as every host number that the type converts to.
std::string numbersOf(ZorDataType const& type, u_zorItemValue value) {
    std::string out;
    u_zorItemValue number = external(0);
    if (auto const get = type.extFuncs[zorExtLong].getExternal) {
        get(value, &number);
        out += " int " + std::to_string(number.intValue);
    }
    if (auto const get = type.extFuncs[zorExtULong].getExternal) {
        get(value, &number);
        out += " uint " + std::to_string(number.uintValue);
    }
    if (auto const get = type.extFuncs[zorExtDouble].getExternal) {
        double real = 0;
        number.floatValue = &real;
        get(value, &number);
        out += " float " + textOfDouble(real);
    }
    return out;
}

// The sign of a comparison: strcmp may return any number of it.
char signOf(int comparison) { return comparison < 0 ? '<' : comparison > 0 ? '>' : '='; }

// Whether the text is valid, what is read from it alone and over another value, and how it
// compares.
std::string formOf(ZorDataType* type, char const* text) {
    Text const string(text); // plain text must not begin with the byte 0xFF
    std::string line =
        "  " + quoted(text) + (zor_dataTypeValidate(type, string) ? " valid" : " refused");
    u_zorItemValue const made = type->fromStringFn(text);
    u_zorItemValue copy = type->copyValueFn(made);
    line += " reads " + quotedAndReleased(type->toStringFn(made)) + numbersOf(*type, made);
    type->freeValueFn(made);
    type->setFromStringFn(&copy, "1");
    type->setFromStringFn(&copy, text);
    line += " again " + quotedAndReleased(type->toStringFn(copy)) + ' ';
    type->freeValueFn(copy);
    for (char const* const other : {"", "0", "true", "10.0.0.0", "\x80", "-3e9"}) {
        line += signOf(zor_dataTypeCompare(type, string, other));
    }
    return line + '\n';
}

// Which numbers of a host kind the type accepts and how they compare, a character each; nothing for
// a kind that it does not know.
template <typename Number, int N>
std::string acceptedFrom(ZorDataType* type, ZorExternalDataType kind, Number const (&numbers)[N],
                         int (*validate)(ZorDataType*, Number),
                         int (*compare)(ZorDataType*, Number, Number)) {
    if (!type->extFuncs[kind].validate) return "";
    std::string out = "  accepts ";
    for (Number const number : numbers) {
        out += validate(type, number) ? '1' : '0';
        for (Number const other : numbers) out += signOf(compare(type, number, other));
    }
    return out + '\n';
}

std::string acceptedNumbers(ZorDataType* type) {
    return acceptedFrom(type, zorExtLong, kInts, zor_dataTypeValidateInt, zor_dataTypeCompareInt) +
           acceptedFrom(type, zorExtULong, kUInts, zor_dataTypeValidateUInt,
                        zor_dataTypeCompareUInt) +
           acceptedFrom(type, zorExtDouble, kDoubles, zor_dataTypeValidateFloat,
                        zor_dataTypeCompareFloat);
}

// How host numbers of a kind are written, where the type takes that kind.
template <typename Numbers, typename ToExternal>
std::string writtenFrom(ZorDataType* type, ZorExternalDataType kind, Numbers const& numbers,
                        ToExternal const& toExternal) {
    ZorExtTypeFuncs const& functions = type->extFuncs[kind];
    if (!functions.toInternal) return "";
    std::string out = "  written";
    for (auto number : numbers) {
        u_zorItemValue const value = functions.toInternal(toExternal(number));
        out += ' ' + quotedAndReleased(type->toStringFn(value));
        type->freeValueFn(value);
    }
    return out + '\n';
}

std::string writtenNumbers(ZorDataType* type) {
    auto const fromUInt = [](unsigned long number) {
        u_zorItemValue value;
        value.uintValue = number;
        return value;
    };
    auto const fromDouble = [](double& number) {
        u_zorItemValue value;
        value.floatValue = &number;
        return value;
    };
    return writtenFrom(type, zorExtLong, kInts, external) +
           writtenFrom(type, zorExtULong, kUInts, fromUInt) +
           writtenFrom(type, zorExtDouble, kDoubles, fromDouble);
}

template <typename Texts>
std::string formsOf(ZorDataType* type, Texts const& texts) {
    std::string lines = std::string(zor_dataTypeName(type)) + " default " +
                        quotedAndReleased(zor_dataTypeDefault(type)) + '\n';
    for (char const* const text : texts) lines += formOf(type, text);
    lines += acceptedNumbers(type);
    return lines + writtenNumbers(type);
}

std::string formsOfBuiltInTypes() {
    std::string lines;
    for (char const* const name :
         {"string", "int", "uint", "bool", "float", "digit_string", "ip_address", "ip_mask"}) {
        lines += formsOf(builtIn(name), kTexts);
    }
    lines += formsOf(builtIn("float"), kFloatTexts);
    for (char const* const name : {"domain_name", "url"})
        lines += formsOf(builtIn(name), kFewTexts);
    return lines;
}

std::string formsOfRanges() {
    struct {
        char const* base;
        char const* min;
        char const* max;
    } const ranges[] = {
        {"int", "-2147483648", "-1"},
        {"int", "-1", "2147483647"},
        {"uint", "1", "4294967295"},
        {"uint", "2147483648", "4294967294"},
        {"bool", "true", "true"},
        {"float", "-12.5", "0.1"},
        {"float", "5e-324", "1e309"},
        {"string", "0", "a"},
        {"string", "z", "\xC3\xA9"},
        {"ip_address", "127.255.255.255", "128.0.0.0"},
        {"ip_mask", "128.0.0.0", "255.255.255.254"},
    };
    std::string lines;
    for (auto const& [base, min, max] : ranges) {
        std::string const name = std::string(base) + " from " + min + " to " + max;
        ZorDataType* const type = zor_rangeMake(builtIn(base), name.c_str(), min, max);
        lines += formsOf(type, kFewTexts);
        delete type;
    }
    return lines;
}

std::string formsOfAChoice() {
    ZorDataType* const choice = zor_choiceMake("choice");
    for (char const* const option : {"a", "1", "\xFF", "thirty-two characters are inside"}) {
        zor_choiceAddOption(choice, Text(option));
    }
    std::string const lines = formsOf(choice, kFewTexts);
    delete choice;
    return lines;
}

} // namespace

std::string valueForms() { return formsOfBuiltInTypes() + formsOfRanges() + formsOfAChoice(); }

} // namespace same_bytes
