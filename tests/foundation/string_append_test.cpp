// Strings: appending, and how buffers grow.

#include <gtest/gtest.h>

#include "tests/foundation/strings.h"
#include "tests/support/allocations.h"
#include "tests/support/text.h"
#include "zor/string.h"

TEST(StringAppend, AddsThePairsInOrder) {
    ZorString* string = ZorString::create("line", -1);
    ZorString* const before = string;
    string = string->append(3, "Key", -1, "s and more", 1, "1", 1);
    EXPECT_EQ(string, before);
    EXPECT_EQ(string->refCount, 1);
    expectSound(string);
    EXPECT_EQ(taken(string), "lineKeys1");
}

// A pair without a text, or with a length of 0 or below -1, adds nothing.
TEST(StringAppend, SkipsPairsWithoutCharacters) {
    ZorString* string = ZorString::create("a", -1);
    string = string->append(6, nullptr, 3, "xyz", 0, "xyz", -2, "", -1, nullptr, -1, "b", -1);
    EXPECT_EQ(taken(string), "ab");
}

TEST(StringAppend, KeepsCharactersBehindANul) {
    ZorString* string = ZorString::create("a", -1);
    string = string->append(2, "\0b", 2, "c", 1);
    EXPECT_EQ(taken(string), std::string("a\0bc", 4));
}

TEST(StringAppend, OfNoPairsReturnsAPrivateStringAsItIs) {
    ZorString* const string = ZorString::create("volume", -1);
    EXPECT_EQ(string->append(0, nullptr, 0), string);
    EXPECT_EQ(taken(string), "volume");
}

// What another holder sees stays as it is; the caller's reference goes over to the new string.
TEST(StringAppend, LeavesASharedStringUntouched) {
    ZorString* const held = ZorString::create("volume", -1);
    ZorString* const appended = shared(held)->append(1, "s", -1);
    EXPECT_NE(appended, held);
    EXPECT_EQ(appended->refCount, 1);
    EXPECT_EQ(held->refCount, 1);
    EXPECT_EQ(taken(held), "volume");
    EXPECT_EQ(taken(appended), "volumes");
}

// Even when nothing is added, a shared string is answered with a private copy.
TEST(StringAppend, OfNothingToASharedStringCopiesIt) {
    ZorString* const held = ZorString::create(characters(50).c_str(), -1);
    ZorString* const appended = shared(held)->append(1, "", -1);
    EXPECT_NE(appended, held);
    EXPECT_EQ(appended->capacity, held->capacity);
    EXPECT_EQ(held->refCount, 1);
    EXPECT_EQ(taken(appended), characters(50));
    held->removeRef();
}

TEST(StringAppend, LeavesPermanentStringsUntouched) {
    ZorString* const appended = ZorString::create("schema", -1)->append(1, "s", -1);
    EXPECT_EQ(content(permanent("schema")), "schema");
    EXPECT_EQ(permanent("schema")->refCount, 0xFFFF);
    EXPECT_EQ(appended->refCount, 1);
    EXPECT_EQ(taken(appended), "schemas");
}

// A private string that becomes a permanent text is freed, and the permanent object returned.
TEST(StringAppend, BecomesAPermanentString) {
    long const before = liveBlocks();
    ZorString* const string = ZorString::create("tru", -1);
    EXPECT_EQ(string->append(1, "e", -1), permanent("true"));
    EXPECT_EQ(liveBlocks(), before);
}

// The same with another holder: that one keeps its string.
TEST(StringAppend, BecomesAPermanentStringBesideASharedOne) {
    ZorString* const held = ZorString::create("tru", -1);
    long const before = liveBlocks();
    EXPECT_EQ(shared(held)->append(1, "e", -1), permanent("true"));
    EXPECT_EQ(liveBlocks(), before);
    EXPECT_EQ(held->refCount, 1);
    EXPECT_EQ(taken(held), "tru");
}

// Only the result of all pairs is looked up, not what stands there in between.
TEST(StringAppend, PassesThroughPermanentTexts) {
    ZorString* const string = ZorString::create("tru", -1);
    zor_stringPreAllocate(string, 60);
    ZorString* const appended = string->append(2, "e", 1, "x", 1);
    EXPECT_EQ(appended, string);
    EXPECT_EQ(appended->capacity, 64);
    EXPECT_EQ(taken(appended), "truex");
}

// Appending nothing to a private string with a permanent text still finds the permanent one.
TEST(StringAppend, OfNothingFindsThePermanentString) {
    EXPECT_EQ(privateString("occurrence")->append(0, nullptr, 0), permanent("occurrence"));
    EXPECT_EQ(privateString("")->append(1, nullptr, 5), permanent(""));
    EXPECT_EQ(permanent("false")->append(1, "", 0), permanent("false"));
}

// A string under construction (count 0) stays what it is.
TEST(StringAppend, NeverReplacesAStringUnderConstruction) {
    ZorString* const string = privateString("tru");
    string->refCount = 0;
    EXPECT_EQ(string->append(1, "e", -1), string);
    EXPECT_EQ(string->refCount, 0);
    string->refCount = 1;
    EXPECT_EQ(taken(string), "true");
}

// The 33rd character moves a text from the string itself to a block of 48 bytes.
TEST(StringAppend, MovesToABlockAt33Characters) {
    ZorString* string = ZorString::create(characters(31).c_str(), -1);
    string = string->append(1, "x", 1);
    EXPECT_EQ(string->length, 32);
    EXPECT_TRUE(usesLocalBuffer(string));
    EXPECT_EQ(string->capacity, 33);
    string = string->append(1, "y", 1);
    EXPECT_EQ(string->length, 33);
    EXPECT_FALSE(usesLocalBuffer(string));
    EXPECT_EQ(string->capacity, 48);
    expectSound(string);
    EXPECT_EQ(taken(string), characters(31) + "xy");
}

// A block of n bytes is used up to n - 1 characters, then replaced by one 16 bytes larger.
TEST(StringAppend, GrowsInStepsOf16) {
    ZorString* string = ZorString::create("", -1)->append(1, "a", 1);
    std::string expected = "a";
    int capacity = 33;
    for (int i = 1; i < 300; ++i) {
        string = string->append(1, "b", 1);
        expected += 'b';
        if (i + 2 > capacity) capacity = grownCapacity(i + 2);
        ASSERT_EQ(string->capacity, capacity) << i + 1 << " characters";
        ASSERT_EQ(content(string), expected);
    }
    string->removeRef();
}

// The block that was outgrown is freed.
TEST(StringAppend, FreesTheBlockThatWasOutgrown) {
    ZorString* string = ZorString::create(characters(40).c_str(), -1);
    long const before = liveBlocks();
    string = string->append(1, "0123456789", -1);
    EXPECT_EQ(liveBlocks(), before);
    EXPECT_EQ(string->capacity, 64);
    EXPECT_EQ(taken(string), characters(40) + "0123456789");
}

// Room for `size` characters is one byte more, rounded up to the next multiple of 16 above.
TEST(StringGrowth, PreAllocateRoundsUp) {
    struct {
        int size;
        int capacity;
    } const cases[] = {
        {-5, 33},     {-1, 33},     {0, 33},        {1, 33},        {32, 33},       {33, 48},
        {46, 48},     {47, 64},     {48, 64},       {62, 64},       {63, 80},       {64, 80},
        {1000, 1008}, {1007, 1024}, {65500, 65504}, {65502, 65504}, {65503, 65520}, {65518, 65520},
    };
    for (auto const& c : cases) {
        ZorString* const string = ZorString::create("volume", -1);
        zor_stringPreAllocate(string, c.size);
        expectSound(string);
        EXPECT_EQ(string->capacity, c.capacity) << "room for " << c.size;
        EXPECT_EQ(taken(string), "volume");
    }
}

// The rule for the bytes needed, also below the size of the buffer that every string begins with:
// a string that claims to have less is made to grow.
TEST(StringGrowth, RuleForEveryNeed) {
    struct {
        int need;
        int capacity;
    } const cases[] = {{1, 16},  {15, 16}, {16, 32}, {17, 32}, {31, 32},
                       {32, 48}, {33, 48}, {47, 48}, {48, 64}};
    for (auto const& c : cases) {
        ZorString* const string = privateString("");
        string->capacity = 0;
        zor_stringPreAllocate(string, c.need - 1);
        EXPECT_EQ(string->capacity, c.capacity) << c.need << " bytes needed";
        EXPECT_EQ(grownCapacity(c.need), c.capacity) << c.need << " bytes needed";
        string->removeRef();
    }
}

TEST(StringGrowth, PreAllocateNeverShrinks) {
    ZorString* const string = ZorString::create(characters(100).c_str(), -1);
    char* const block = string->text;
    zor_stringPreAllocate(string, 10);
    zor_stringPreAllocate(string, 111);
    EXPECT_EQ(string->text, block);
    EXPECT_EQ(string->capacity, 112);
    EXPECT_EQ(taken(string), characters(100));
}

TEST(StringGrowth, PreAllocatedRoomIsUsedWithoutAllocation) {
    ZorString* string = ZorString::create("x", -1);
    zor_stringPreAllocate(string, 500);
    std::string const more = characters(499);
    long const before = allocatedBlocks();
    for (char const c : more) string = string->append(1, &c, 1);
    EXPECT_EQ(allocatedBlocks(), before);
    EXPECT_EQ(taken(string), "x" + more);
}

// No permanent string takes the place of one that is given room.
TEST(StringGrowth, PreAllocateDoesNotIntern) {
    ZorString* const string = privateString("true");
    zor_stringPreAllocate(string, 40);
    EXPECT_EQ(string->refCount, 1);
    EXPECT_EQ(string->capacity, 48);
    EXPECT_EQ(taken(string), "true");
}
