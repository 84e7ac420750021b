// Cursor-style scanning and dotted quads.

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "zor/text.h"

namespace {

// A text with a cursor at its start.
class Scan {
public:
    explicit Scan(std::string const& all) : text(all), cursor(text.data()) {}
    Scan(Scan const&) = delete;
    Scan& operator=(Scan const&) = delete;

    char** operator&() { return &cursor; }
    std::string rest() const { return cursor; }

private:
    std::string text;
    char* cursor;
};

} // namespace

TEST(Scan, SkipSpaceMovesOverWhiteSpace) {
    struct {
        char const* text;
        int moved;
        char const* rest;
    } const cases[] = {
        {"  a b", 1, "a b"}, {" \t\n\v\f\r1", 1, "1"}, {"a ", 0, "a "},       {"", 0, ""},
        {"   ", 1, ""},      {"\x1F ", 0, "\x1F "},    {"\xA0 ", 0, "\xA0 "}, {" \xA0", 1, "\xA0"},
        {"\b", 0, "\b"},     {"\x0E", 0, "\x0E"},
    };
    for (auto const& c : cases) {
        Scan scan(c.text);
        EXPECT_EQ(skipSpace(&scan), c.moved) << '[' << c.text << ']';
        EXPECT_EQ(scan.rest(), c.rest) << '[' << c.text << ']';
    }
}

// The NUL ends the text, even when white space follows it in memory.
TEST(Scan, SkipSpaceNeverPassesTheNul) {
    char text[] = "  \0  a";
    char* cursor = text;
    EXPECT_EQ(skipSpace(&cursor), 1);
    EXPECT_EQ(cursor, text + 2);
    EXPECT_EQ(skipSpace(&cursor), 0);
    EXPECT_EQ(cursor, text + 2);
}

TEST(Scan, ReadUIntReadsARunOfDigits) {
    struct {
        char const* text;
        long value;
        char const* rest;
    } const cases[] = {
        {"12ab", 12, "ab"}, {"0", 0, ""},       {"007", 7, ""},
        {"9 9", 9, " 9"},   {"1-2", 1, "-2"},   {"2147483647", 2147483647, ""},
        {"3.14", 3, ".14"}, {"0x10", 0, "x10"},
    };
    for (auto const& c : cases) {
        Scan scan(c.text);
        long value = -77;
        EXPECT_EQ(readUInt(&scan, &value), 1) << c.text;
        EXPECT_EQ(value, c.value) << c.text;
        EXPECT_EQ(scan.rest(), c.rest) << c.text;
    }
}

// No sign and no white space is read; a failure leaves cursor and value untouched.
TEST(Scan, ReadUIntNeedsADigit) {
    for (char const* const text : {"-1", "+1", " 1", "", "a1", "/", ":", "\xB2"}) {
        Scan scan(text);
        long value = -77;
        EXPECT_EQ(readUInt(&scan, &value), 0) << '[' << text << ']';
        EXPECT_EQ(value, -77) << '[' << text << ']';
        EXPECT_EQ(scan.rest(), text);
    }
}

// Too many digits wrap; nothing checks for an overflow.
TEST(Scan, ReadUIntWraps) {
    std::string const digits = "123456789012345678901234567890";
    unsigned long expected = 0;
    for (char const c : digits) expected = expected * 10 + static_cast<unsigned long>(c - '0');
    Scan scan(digits + "x");
    long value = 0;
    EXPECT_EQ(readUInt(&scan, &value), 1);
    EXPECT_EQ(value, static_cast<long>(expected));
    EXPECT_EQ(scan.rest(), "x");

    Scan largest(std::to_string(ULONG_MAX));
    EXPECT_EQ(readUInt(&largest, &value), 1);
    EXPECT_EQ(value, -1);
}

TEST(Scan, SkipTokenMovesBehindTheToken) {
    struct {
        char const* text;
        char const* token;
        int found;
        char const* rest;
    } const cases[] = {
        {"..20", "..", 1, "20"}, {"..", "..", 1, ""},      {".", "..", 0, "."},
        {"", "..", 0, ""},       {"ab", "b", 0, "ab"},     {"Ab", "ab", 0, "Ab"},
        {"ab", "", 1, "ab"},     {"", "", 1, ""},          {" ab", "ab", 0, " ab"},
        {"abab", "ab", 1, "ab"}, {"abx", "aby", 0, "abx"},
    };
    for (auto const& c : cases) {
        Scan scan(c.text);
        EXPECT_EQ(skipToken(&scan, c.token), c.found) << c.text << " by " << c.token;
        EXPECT_EQ(scan.rest(), c.rest) << c.text << " by " << c.token;
    }
}

// The scanners work one behind the other on one cursor.
TEST(Scan, ScannersShareACursor) {
    Scan scan("  10 .. 20;");
    long low = 0;
    long high = 0;
    EXPECT_EQ(skipSpace(&scan), 1);
    EXPECT_EQ(readUInt(&scan, &low), 1);
    EXPECT_EQ(skipSpace(&scan), 1);
    EXPECT_EQ(skipToken(&scan, ".."), 1);
    EXPECT_EQ(skipSpace(&scan), 1);
    EXPECT_EQ(readUInt(&scan, &high), 1);
    EXPECT_EQ(low, 10);
    EXPECT_EQ(high, 20);
    EXPECT_EQ(scan.rest(), ";");
}

TEST(IpAddress, ReadsFourNumbers) {
    struct {
        char const* text;
        unsigned long address;
    } const cases[] = {
        {"192.168.0.1", 0xC0A80001},     {"0.0.0.0", 0},
        {"255.255.255.255", 0xFFFFFFFF}, {"1.2.3.4", 0x01020304},
        {"010.001.08.9", 0x0A010809},    {"000.0.00.000", 0},
        {"128.0.0.0", 0x80000000},
    };
    for (auto const& c : cases) {
        unsigned long address = 77;
        EXPECT_EQ(parseIpAddress(c.text, &address), 1) << c.text;
        EXPECT_EQ(address, c.address) << c.text;
    }
}

// Anything else is refused and leaves the address untouched.
TEST(IpAddress, RefusesAnythingElse) {
    char const* const cases[] = {
        "",           "1",          "1.2",       "1.2.3",     "1.2.3.",    "1.2.3.4.",
        "1.2.3.4.5",  "1..3.4",     ".1.2.3",    ".1.2.3.4",  "...",       "....",
        "256.1.1.1",  "1.256.1.1",  "1.1.256.1", "1.1.1.256", "999.1.1.1", "1234.1.1.1",
        "0001.1.1.1", "1.1.1.0001", "1.2.3.a",   "a.2.3.4",   "1.2.3.4a",  "1.2.3.4 ",
        " 1.2.3.4",   "1. 2.3.4",   "1.2.3.-4",  "+1.2.3.4",  "0x1.2.3.4", "1,2,3,4",
        "1.2.3.4/8",  "1.2.3.\xB2", "1.2.3.4\n",
    };
    for (char const* const text : cases) {
        unsigned long address = 77;
        EXPECT_EQ(parseIpAddress(text, &address), 0) << '[' << text << ']';
        EXPECT_EQ(address, 77U) << '[' << text << ']';
    }
}

// Every number from 0 to 299 in every place, against a plain comparison.
TEST(IpAddress, BoundOfEachPartIs255) {
    for (int part = 0; part < 4; ++part) {
        for (unsigned number = 0; number < 300; ++number) {
            std::string text;
            for (int i = 0; i < 4; ++i) {
                text += (i > 0 ? "." : "") + (i == part ? std::to_string(number) : "1");
            }
            unsigned long address = 77;
            unsigned const shift = 8U * static_cast<unsigned>(3 - part);
            unsigned long const expected =
                (0x01010101UL & ~(0xFFUL << shift)) | (static_cast<unsigned long>(number) << shift);
            EXPECT_EQ(parseIpAddress(text.c_str(), &address), number < 256) << text;
            EXPECT_EQ(address, number < 256 ? expected : 77U) << text;
        }
    }
}
