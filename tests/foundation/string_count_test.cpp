// Strings: counting references.

#include <gtest/gtest.h>

#include "tests/foundation/strings.h"
#include "tests/support/allocations.h"
#include "tests/support/text.h"
#include "zor/string.h"

TEST(StringCount, EachReferenceIsReleasedOnce) {
    ZorString* const string = ZorString::create("volume", -1);
    zor_stringAddRef(string);
    zor_stringAddRef(string);
    EXPECT_EQ(string->refCount, 3);
    string->removeRef();
    string->removeRef();
    EXPECT_EQ(string->refCount, 1);
    EXPECT_EQ(content(string), "volume");
    string->removeRef();
}

// The last release gives back the object and its block.
TEST(StringCount, LastReleaseFreesEverything) {
    std::string const text = characters(100);
    long const before = liveBlocks();
    ZorString* const string = ZorString::create(text.c_str(), -1);
    EXPECT_EQ(liveBlocks() - before, 2);
    string->removeRef();
    EXPECT_EQ(liveBlocks(), before);
}

TEST(StringCount, PermanentStringsAreNotCounted) {
    for (ZorString& string : ZorString::stdZorStrings) {
        zor_stringAddRef(&string);
        EXPECT_EQ(string.refCount, 0xFFFF) << string.text;
        for (int i = 0; i < 3; ++i) string.removeRef();
        EXPECT_EQ(string.refCount, 0xFFFF) << string.text;
    }
}

// A count that climbs to 0xFFFF makes the string permanent; one below, it is still counted.
TEST(StringCount, CountSaturates) {
    ZorString* const string = ZorString::create("volume", -1);
    for (int count = 2; count <= 0xFFFE; ++count) zor_stringAddRef(string);
    EXPECT_EQ(string->refCount, 0xFFFE);
    string->removeRef();
    EXPECT_EQ(string->refCount, 0xFFFD);

    zor_stringAddRef(string);
    zor_stringAddRef(string);
    EXPECT_EQ(string->refCount, 0xFFFF);
    zor_stringAddRef(string);
    string->removeRef();
    string->removeRef();
    EXPECT_EQ(string->refCount, 0xFFFF);
    EXPECT_EQ(content(string), "volume");

    string->refCount = 1;
    string->removeRef();
}

// Releasing a string whose count is 0 already wraps the count: the string becomes permanent.
TEST(StringCount, ReleaseBelowZeroMakesPermanent) {
    ZorString* const string = ZorString::create("volume", -1);
    string->refCount = 0;
    string->removeRef();
    EXPECT_EQ(string->refCount, 0xFFFF);
    EXPECT_EQ(content(string), "volume");

    string->refCount = 1;
    string->removeRef();
}

// A string that became permanent by its count is never changed in place.
TEST(StringCount, SaturatedStringIsCopiedBeforeAChange) {
    ZorString* const string = ZorString::create("volume", -1);
    string->refCount = 0xFFFF;
    ZorString* const changed = string->append(1, "s", 1);
    EXPECT_EQ(content(string), "volume");
    EXPECT_EQ(string->refCount, 0xFFFF);
    EXPECT_EQ(taken(changed), "volumes");

    string->refCount = 1;
    string->removeRef();
}
