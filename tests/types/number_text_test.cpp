// Numbers and text, compared with the C library's scanf and printf.

#include "types/number_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "tests/support/text.h"
#include "tests/types/foreign_locale.h"

using zor_internal::floatFromText;
using zor_internal::intFromText;
using zor_internal::textFromFloat;
using zor_internal::textFromInt;
using zor_internal::textFromUInt;
using zor_internal::uintFromText;

namespace {

// scanf with 64 bits, then held at the bounds of 32.
std::int32_t intByScanf(char const* text) {
    long long number = 0;
    if (std::sscanf(text, "%lld", &number) != 1) return 0;
    if (number > INT32_MAX) return INT32_MAX;
    if (number < INT32_MIN) return INT32_MIN;
    return static_cast<std::int32_t>(number);
}

std::uint32_t uintByScanf(char const* text) {
    long long number = 0;
    if (std::sscanf(text, "%lld", &number) != 1) return 0;
    if (number > std::int64_t(UINT32_MAX) || number < -std::int64_t(UINT32_MAX)) return UINT32_MAX;
    return static_cast<std::uint32_t>(number);
}

// Outcome and number of reading a text, as one line. 17 digits tell any two doubles apart.
std::string floatOutcome(int result, double number) {
    char line[64];
    std::snprintf(line, sizeof line, "%d %.17g", result, number);
    return line;
}

std::string floatByScanf(std::string const& text) {
    double number = 42; // stays when nothing is read
    int const result = std::sscanf(text.c_str(), "%lg", &number);
    return floatOutcome(result, number);
}

std::string floatByUs(std::string const& text) {
    double number = 42;
    int const result = floatFromText(text.c_str(), &number);
    return floatOutcome(result, number);
}

// Adds a line; ten tell enough.
void noteLine(std::string& lines, std::string const& line) {
    if (std::count(lines.begin(), lines.end(), '\n') < 10) lines += line + '\n';
}

// Adds a line when a text reads differently.
void noteDifference(std::string& differences, std::string const& text) {
    std::string const ours = floatByUs(text);
    std::string const theirs = floatByScanf(text);
    if (ours == theirs) return;
    noteLine(differences, '"' + text.substr(0, 60) + "\" reads " + ours + ", by scanf " + theirs);
}

std::string printed(double number) {
    char text[64];
    std::snprintf(text, sizeof text, "%.15g", number);
    return text;
}

std::vector<std::string> integerTexts() {
    std::vector<std::string> texts;
    char const* const numbers[] = {"",
                                   "0",
                                   "1",
                                   "9",
                                   "10",
                                   "00012",
                                   "2147483646",
                                   "2147483647",
                                   "2147483648",
                                   "2147483649",
                                   "4294967294",
                                   "4294967295",
                                   "4294967296",
                                   "4294967297",
                                   "9999999999",
                                   "18446744073709551615",
                                   "18446744073709551616",
                                   "99999999999999999999999999",
                                   "000000000000000000000000012"};
    for (char const* const space : {"", " ", " \t\n\v\f\r", "\xA0"}) {
        for (char const* const sign : {"", "+", "-", "--", "+-", "- "}) {
            for (char const* const number : numbers) {
                for (char const* const rest : {"", " ", "x", ".5", "e3", ",5", "-1"}) {
                    texts.push_back(std::string(space) + sign + number + rest);
                }
            }
        }
    }
    return texts;
}

std::vector<std::string> floatTexts() {
    std::vector<std::string> numbers = {
        "", "0", "1", "12", "1.5", ".5", "5.", ".", "..5", "1.5.5", "0.1", "000.00012", "1,5",
        "1e5", "1E5", "1e+5", "1e-5", "1e0005", "e5", "1x5", "1_0", "1'0", "abc", "#1", "\xFF",
        "12345678901234567890123", "9007199254740993", "1e22", "1e23", "123456789012345678e-17",
        // around the largest and the smallest double
        "1.7976931348623157e308", "1.7976931348623159e308", "1e308", "1e309", "2e308", "1e999",
        "1e999999999999999999999", "2.2250738585072011e-308", "2.2250738585072014e-308", "4.9e-324",
        "2.5e-324", "2.4e-324", "1e-400", "1e-999999999999999999999", "0e999999", "0.0e99999999999",
        "0.001e2147483647", "1000e-2147483648", "1000e2147483647", "0.001e-2147483648",
        // hexadecimal
        "0x", "0X", "0xg", "0x1", "0X1F", "0x1.8", "0x1.8p3", "0x1P-3", "0x.8", "0x1e5", "0xp1",
        "0x1.p1", "0x1p1023", "0x1p1024", "0x1p-1074", "0x1p-1075", "0x1.8p-1075", "0x1p-9999",
        "0x1p99999999999999999999", "0x0p99999",
        // neither signs nor words behind the 0x, and one sign in an exponent
        "0x-5", "0x+5", "0xinf", "0xnan", "0xf2p+-4", "0xf2p-+4", "1e+-4", "1e--4",
        // infinity and what is no number
        "inf", "INF", "Inf", "infinity", "INFINITY", "infinityx", "i", "in", "infi", "infin",
        "infini", "infinit", "infix", "nan", "NaN", "n", "na"};
    // Digits that no exponent of their own shows: the exponent has to be weighed against them.
    numbers.push_back(std::string(400, '9'));
    numbers.push_back(std::string(400, '9') + "e-399");
    numbers.push_back("0." + std::string(400, '0') + "1");
    numbers.push_back("0." + std::string(400, '0') + "1e401");
    numbers.push_back("0x" + std::string(256, 'f'));
    numbers.push_back("0x" + std::string(300, 'f'));
    numbers.push_back("0x0." + std::string(300, '0') + "1");
    numbers.push_back("0x0." + std::string(300, '0') + "1p1204");
    numbers.push_back("0x1" + std::string(300, '0') + "p-1200");
    // The same beyond what a double holds.
    numbers.push_back(std::string(800, '9') + "e-400");
    numbers.push_back("0." + std::string(800, '0') + "1e400");
    numbers.push_back("0x1" + std::string(400, '0') + "p-500");
    numbers.push_back("0x0." + std::string(400, '0') + "1p450");

    std::vector<std::string> texts;
    for (char const* const space : {"", "  ", " \t\n\v\f\r"}) {
        for (char const* const sign : {"", "+", "-", "+-", "-+", "--", "- "}) {
            for (std::string const& number : numbers) {
                for (char const* const rest : {"", " ", "x"}) {
                    texts.push_back(space + (sign + number) + rest);
                }
            }
        }
    }
    return texts;
}

// Numbers of every size, special ones first, then any pattern of bits.
std::vector<double> doubles() {
    using Limits = std::numeric_limits<double>;
    std::vector<double> numbers = {0.0,
                                   -0.0,
                                   1,
                                   0.1,
                                   1e20,
                                   1e15,
                                   1e14,
                                   123456789012345,
                                   999999999999999.5,
                                   0.0001,
                                   0.00001,
                                   1.5,
                                   100000,
                                   1.0 / 3,
                                   Limits::max(),
                                   Limits::min(),
                                   Limits::denorm_min(),
                                   Limits::infinity(),
                                   -Limits::infinity(),
                                   Limits::quiet_NaN()};
    std::mt19937_64 random(1);
    for (int i = 0; i < 20000; ++i) {
        std::uint64_t const bits = random();
        double number;
        std::memcpy(&number, &bits, sizeof number);
        numbers.push_back(number);
        numbers.push_back(static_cast<double>(static_cast<std::int64_t>(bits)) / 1000);
    }
    return numbers;
}

// What all texts read as and all numbers are written as, doubles bit by bit.
std::vector<std::string> everything() {
    std::vector<std::string> lines;
    for (std::string const& text : floatTexts()) {
        double number = 42;
        int const result = floatFromText(text.c_str(), &number);
        std::uint64_t bits;
        std::memcpy(&bits, &number, sizeof bits);
        lines.push_back(text + ": " + std::to_string(result) + ' ' + std::to_string(bits));
    }
    for (std::string const& text : integerTexts()) {
        lines.push_back(text + ": " + std::to_string(intFromText(text.c_str())) + ' ' +
                        std::to_string(uintFromText(text.c_str())));
    }
    for (double const number : doubles()) lines.push_back(taken(textFromFloat(number)));
    for (std::int32_t const number : {0, -1234567, INT32_MAX, INT32_MIN}) {
        lines.push_back(taken(textFromInt(number)));
        lines.push_back(taken(textFromUInt(static_cast<std::uint32_t>(number))));
    }
    return lines;
}

} // namespace

TEST(NumberText, ReadsIntAsScanfDoes) {
    for (std::string const& text : integerTexts()) {
        EXPECT_EQ(intFromText(text.c_str()), intByScanf(text.c_str())) << '"' << text << '"';
    }
}

TEST(NumberText, ReadsUIntAsScanfDoes) {
    for (std::string const& text : integerTexts()) {
        EXPECT_EQ(uintFromText(text.c_str()), uintByScanf(text.c_str())) << '"' << text << '"';
    }
}

TEST(NumberText, ReadsFloatAsScanfDoes) {
    std::string differences;
    for (std::string const& text : floatTexts()) noteDifference(differences, text);
    EXPECT_EQ(differences, "");
}

// An exponent without digits belongs to what follows the number. (C libraries differ here, so
// scanf is not asked.)
TEST(NumberText, ReadsFloatUpToAnUnfinishedExponent) {
    for (char const* const text :
         {"15e", "15e+", "15e-", "15e+x", "15ex", "15 e5", "0xFp", "0xFp-"}) {
        EXPECT_EQ(floatByUs(text), "1 15") << '"' << text << '"';
    }
}

// Random texts out of the characters that numbers are made of.
TEST(NumberText, ReadsAnyFloatAsScanfDoes) {
    char const alphabet[] = "00112233456789...+--eExpifnabt \t";
    std::mt19937 random(1);
    std::string differences;
    for (int i = 0; i < 100000; ++i) {
        std::string text;
        std::size_t const length = 1 + random() % 9;
        while (text.size() < length) text += alphabet[random() % (sizeof alphabet - 1)];
        // C libraries differ in whether a point alone behind 0x is a number.
        if (text.find("0x.") != std::string::npos) continue;
        noteDifference(differences, text);
    }
    EXPECT_EQ(differences, "");
}

TEST(NumberText, LeavesTheNumberAloneWhenThereIsNone) {
    double number = 42;
    EXPECT_EQ(floatFromText("", &number), -1);
    EXPECT_EQ(floatFromText(" \t\n", &number), -1);
    EXPECT_EQ(floatFromText("abc", &number), 0);
    EXPECT_EQ(floatFromText("-", &number), 0);
    EXPECT_EQ(number, 42);
}

TEST(NumberText, KeepsTheSignOfZeroAndOfWhatVanishes) {
    for (char const* const text : {"-0", "-0.0", "-1e-999", "-0x1p-9999"}) {
        double number = 42;
        ASSERT_EQ(floatFromText(text, &number), 1) << text;
        EXPECT_EQ(number, 0) << text;
        EXPECT_TRUE(std::signbit(number)) << text;
    }
}

TEST(NumberText, WritesIntegersAsPrintfDoes) {
    for (std::int64_t const number :
         {std::int64_t(0), std::int64_t(1), std::int64_t(-1), std::int64_t(10),
          std::int64_t(INT32_MAX), std::int64_t(INT32_MIN), std::int64_t(-1234567)}) {
        EXPECT_EQ(taken(textFromInt(static_cast<std::int32_t>(number))), std::to_string(number));
    }
    for (std::uint32_t const number : {0U, 1U, 10U, 2147483648U, 4294967295U}) {
        EXPECT_EQ(taken(textFromUInt(number)), std::to_string(number));
    }
}

TEST(NumberText, WritesFloatAsPrintfDoes) {
    for (double const number : doubles()) {
        EXPECT_EQ(taken(textFromFloat(number)), printed(number));
    }
}

// A number of up to 15 digits is read and written back as it is.
TEST(NumberText, FifteenDigitsSurvive) {
    std::mt19937_64 random(2);
    for (int i = 0; i < 20000; ++i) {
        std::uint64_t const digits = 100000000000000 + random() % 900000000000000;
        int const exponent = static_cast<int>(random() % 500) - 250;
        double number = 0;
        std::string const text = std::to_string(digits) + 'e' + std::to_string(exponent);
        ASSERT_EQ(floatFromText(text.c_str(), &number), 1);
        std::string const once = taken(textFromFloat(number));
        double again = 0;
        ASSERT_EQ(floatFromText(once.c_str(), &again), 1);
        ASSERT_EQ(taken(textFromFloat(again)), once) << text;
    }
}

// All of this is the same in every locale of the host.
TEST(NumberText, DoesNotDependOnTheLocale) {
    std::vector<std::string> const before = everything();
    std::vector<std::string> inLocale;
    {
        ForeignLocale const locale;
        ASSERT_TRUE(locale.isInForce()) << locale.problem();
        inLocale = everything();
    }
    ASSERT_EQ(inLocale.size(), before.size());
    std::string differences;
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (inLocale[i] != before[i]) noteLine(differences, before[i] + ", there " + inLocale[i]);
    }
    EXPECT_EQ(differences, "");
}
