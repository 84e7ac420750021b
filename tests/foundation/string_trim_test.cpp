// Strings: removing white space at both ends.

#include <gtest/gtest.h>

#include "tests/foundation/strings.h"
#include "tests/support/allocations.h"
#include "tests/support/text.h"
#include "zor/string.h"

TEST(StringTrim, RemovesWhiteSpaceAtBothEnds) {
    struct {
        char const* text;
        char const* trimmed;
    } const cases[] = {
        {"  a b  ", "a b"},
        {"   ", ""},
        {" ", ""},
        {"abc", "abc"},
        {" abc", "abc"},
        {"abc ", "abc"},
        {"a ", "a"},
        {" a", "a"},
        {"\t\n\v\f\r a", "a"},
        {"a \t\n\v\f\r", "a"},
        {"\r\n", ""},
        {"a\nb\n", "a\nb"},
        {"\xA0"
         "a\x85",
         "\xA0"
         "a\x85"},
        {"\x1F"
         "a\b",
         "\x1F"
         "a\b"},
        {" \xFF ", "\xFF"},
    };
    for (auto const& c : cases) {
        ZorString* const trimmed = ZorString::create(c.text, -1)->trim();
        expectSound(trimmed);
        EXPECT_EQ(taken(trimmed), c.trimmed) << '[' << c.text << ']';
    }
}

TEST(StringTrim, KeepsANulAtTheEnds) {
    std::string const text("\0 a\0", 4);
    EXPECT_EQ(taken(privateString(" " + text + " ")->trim()), text);
}

// Nothing to remove: the same object, shared or not, and no permanent string in its place.
TEST(StringTrim, ReturnsTheStringItselfWhenThereIsNothingToRemove) {
    for (char const* const text : {"abc", "true", ""}) {
        ZorString* const string = privateString(text);
        EXPECT_EQ(string->trim(), string) << text;
        EXPECT_EQ(shared(string)->trim(), string) << text;
        EXPECT_EQ(string->refCount, 2) << text;
        string->removeRef();
        string->removeRef();
    }
    for (ZorString& string : ZorString::stdZorStrings) EXPECT_EQ(string.trim(), &string);
}

TEST(StringTrim, WorksInPlaceOnAPrivateString) {
    ZorString* const string = ZorString::create("  volume ", -1);
    long const before = allocatedBlocks();
    EXPECT_EQ(string->trim(), string);
    EXPECT_EQ(allocatedBlocks(), before);
    EXPECT_EQ(string->refCount, 1);
    EXPECT_EQ(taken(string), "volume");
}

TEST(StringTrim, LeavesASharedStringUntouched) {
    ZorString* const held = ZorString::create("  volume ", -1);
    ZorString* const trimmed = shared(held)->trim();
    EXPECT_NE(trimmed, held);
    EXPECT_EQ(trimmed->refCount, 1);
    EXPECT_EQ(held->refCount, 1);
    EXPECT_EQ(taken(held), "  volume ");
    EXPECT_EQ(taken(trimmed), "volume");
}

// A permanent text found by trimming is the permanent object; a private string is freed.
TEST(StringTrim, BecomesAPermanentString) {
    long const before = liveBlocks();
    EXPECT_EQ(ZorString::create(" true\n", -1)->trim(), permanent("true"));
    EXPECT_EQ(ZorString::create("   ", -1)->trim(), permanent(""));
    EXPECT_EQ(ZorString::create(std::string(50, ' ').c_str(), -1)->trim(), permanent(""));
    EXPECT_EQ(liveBlocks(), before);

    ZorString* const held = ZorString::create(" schema", -1);
    EXPECT_EQ(shared(held)->trim(), permanent("schema"));
    EXPECT_EQ(held->refCount, 1);
    EXPECT_EQ(taken(held), " schema");
}

// What fits goes back into the string itself; a larger text keeps its block when the size is right
// and gets a smaller one otherwise.
TEST(StringTrim, FitsTheBuffer) {
    struct {
        int kept;
        int blanks;
        int capacity;
        bool sameBlock;
    } const cases[] = {
        {31, 10, 33, false}, {32, 1, 33, false},  {32, 100, 33, false}, {33, 1, 48, true},
        {33, 13, 48, true},  {33, 14, 48, false}, {46, 1, 48, false},   {47, 1, 64, true},
        {47, 15, 64, true},  {48, 15, 64, false}, {100, 1, 112, true},  {100, 1000, 112, false},
    };
    for (auto const& c : cases) {
        for (int const leading : {0, c.blanks / 2, c.blanks}) {
            std::string const before(static_cast<unsigned>(leading), ' ');
            std::string const after(static_cast<unsigned>(c.blanks - leading), ' ');
            ZorString* const string = privateString(before + characters(c.kept) + after);
            char* const block = string->text;
            EXPECT_EQ(string->trim(), string);
            expectSound(string);
            EXPECT_EQ(string->capacity, c.capacity) << c.kept << " of " << c.kept + c.blanks;
            EXPECT_EQ(string->text == block, c.sameBlock) << c.kept << " of " << c.kept + c.blanks;
            EXPECT_EQ(taken(string), characters(c.kept));
        }
    }
}

// A string that was given more room than it needs gives it back.
TEST(StringTrim, GivesUpSpareRoom) {
    ZorString* const string = privateString(" " + characters(40));
    zor_stringPreAllocate(string, 1000);
    EXPECT_EQ(string->trim(), string);
    EXPECT_EQ(string->capacity, 48);
    EXPECT_EQ(taken(string), characters(40));
}

TEST(StringTrim, NeverReplacesAStringUnderConstruction) {
    ZorString* const string = privateString(" true");
    string->refCount = 0;
    EXPECT_EQ(string->trim(), string);
    string->refCount = 1;
    EXPECT_EQ(taken(string), "true");
}
