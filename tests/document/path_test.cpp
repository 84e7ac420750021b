// The grammar of select paths.

#include "document/path.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "tests/support/incidents.h"

using zor_internal::ParsedPath;

namespace {

class Path : public testing::Test {
protected:
    IncidentLog log;
};

// The steps: "//" before a descendant step, the name, the occurrence from 0 if there is one, "|".
std::string stepsOf(std::string const& path) {
    ParsedPath parsed(path.c_str());
    std::string text;
    for (int i = 0; i < parsed.count(); ++i) {
        XPathStep const& step = parsed.first()[i];
        if (step.descendant) text += "//";
        text += zor_stringValue(step.name);
        if (step.occurrence != -1) text += '[' + std::to_string(step.occurrence) + ']';
        text += '|';
    }
    return parsed.count() ? text : "nothing";
}

std::string repeated(char const* piece, int count) {
    std::string text;
    for (int i = 0; i < count; ++i) text += piece;
    return text;
}

} // namespace

TEST_F(Path, IsReadStepByStep) {
    struct {
        char const* path;
        char const* steps;
    } const cases[] = {
        {"", "nothing"},
        {"a", "a|"},
        {"/a", "a|"},
        {"//a", "//a|"},
        {"///a", "nothing"},
        {"////a", "nothing"},
        {"a/b", "a|b|"},
        {"a//b", "a|//b|"},
        {"a///b", "nothing"},
        {"a/", "a||"},
        {"a//", "a|//|"},
        {"a///", "nothing"},
        {"/", "|"},
        {"//", "//|"},
        {"*", "*|"},
        {"*x/a*", "*x|a*|"},
        {" a / b ", " a | b |"},
        {"a]b", "a]b|"},
        {"\xC3\xA4/\xFF", "\xC3\xA4|\xFF|"},
    };
    for (auto const& [path, steps] : cases) EXPECT_EQ(stepsOf(path), steps) << path;
}

TEST_F(Path, APredicateCountsFromOne) {
    struct {
        char const* path;
        char const* steps;
    } const cases[] = {
        {"a[1]", "a[0]|"},       {"a[12]/b[3]", "a[11]|b[2]|"},
        {"a[001]", "a[0]|"},     {"//a[2]", "//a[1]|"},
        {"*[2]", "*[1]|"},       {"[2]", "[1]|"},
        {"a/[2]", "a|[1]|"},     {"a[ 2]", "a[1]|"},
        {"a[2 ]", "a[1]|"},      {"a[ \t\n\v\f\r2 \t\n\v\f\r]", "a[1]|"},
        {"a[2 3]", "a[1]|"}, // what follows the number is not looked at
        {"a[2 x]", "a[1]|"},     {"a[2 []", "a[1]|"},
        {"a[2 /]/b", "a[1]|b|"}, {"a[0]", "nothing"},
        {"a[000]", "nothing"},   {"a[]", "nothing"},
        {"a[ ]", "nothing"},     {"a[x]", "nothing"},
        {"a[-1]", "nothing"},    {"a[+1]", "nothing"},
        {"a[1x]", "nothing"},    {"a[1.0]", "nothing"},
        {"a[1/2]", "nothing"},   {"a[x 1]", "nothing"},
        {"a[*]", "nothing"},     {"a[2", "nothing"},
        {"a[", "nothing"},       {"a[2/b", "nothing"},
        {"a[b/c]", "nothing"},   {"a/b[0]/c", "nothing"},
        {"a[1]/b[", "nothing"},
    };
    for (auto const& [path, steps] : cases) EXPECT_EQ(stepsOf(path), steps) << path;
}

// What stands behind a predicate begins a step, with or without a slash.
TEST_F(Path, AStepMayFollowAPredicateAtOnce) {
    EXPECT_EQ(stepsOf("a[1]b"), "a[0]|b|");
    EXPECT_EQ(stepsOf("a[1][2]"), "a[0]|[1]|");
    EXPECT_EQ(stepsOf("a[1]]"), "a[0]|]|");
    EXPECT_EQ(stepsOf("a[1]//b"), "a[0]|//b|");
    EXPECT_EQ(stepsOf("a[1]/"), "a[0]||");
    EXPECT_EQ(stepsOf("a[1]///b"), "nothing");
}

TEST_F(Path, APredicateBeyond31BitsSelectsNothing) {
    EXPECT_EQ(stepsOf("a[2147483647]"), "a[2147483646]|");
    EXPECT_EQ(stepsOf("a[0000000000000000000000002147483647]"), "a[2147483646]|");
    for (std::string const number :
         {"2147483648", "2147483649", "4294967295", "4294967296", "4294967297",
          "9223372036854775808", "18446744073709551616", "18446744073709551617"}) {
        EXPECT_EQ(stepsOf("a[" + number + "]"), "nothing") << number;
    }
    EXPECT_EQ(stepsOf("a[1" + std::string(100000, '0') + "]"), "nothing");
}

TEST_F(Path, HasAtMost31Steps) {
    EXPECT_EQ(stepsOf(repeated("/a", 31)), repeated("a|", 31));
    EXPECT_EQ(stepsOf(repeated("/a", 32)), "nothing");
    EXPECT_EQ(stepsOf(repeated("/a", 33)), "nothing");
    EXPECT_EQ(stepsOf(repeated("[1]", 31)), repeated("[0]|", 31));
    EXPECT_EQ(stepsOf(repeated("[1]", 32)), "nothing");
    EXPECT_EQ(stepsOf(repeated("/", 1) + repeated("a/", 31)), "nothing"); // an empty one at the end
    EXPECT_EQ(stepsOf(repeated("a//", 30)), repeated("a|//", 30) + '|');
    EXPECT_EQ(stepsOf(repeated("a/", 5000)), "nothing");
}

TEST_F(Path, TheLongestNameIsThatOfAString) {
    std::string const name(65534, 'n');
    EXPECT_EQ(stepsOf(name), name + '|');
    EXPECT_EQ(stepsOf(name + "n"), "nothing");
    EXPECT_EQ(stepsOf("a/b[2]/" + name + "n"), "nothing");
}
